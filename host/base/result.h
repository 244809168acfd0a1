#pragma once

#include <cstddef>
#include <string>
#include <tl/expected.hpp>
#include <utility>

#include "base/export.h"

namespace torva {

/// Causes of failure inside the host. Texts are for people; tests and callers look at the code.
enum class ErrorCode {
  fileNotFound,
  fileNotReadable,
  fileNotWritable,
  isDirectory,
  diskFull,
  emptyFile,
  notADrawing,
  unsupportedVersion,
  damagedDrawing,
  fileChangedOnDisk,
  badNumber,
  badText,
  unknownName,
  invalidValue,
  readOnly,
  moduleRefused,
  libraryNotLoadable,
  cancelled,
  notApplicable,
};

/// Why an operation failed, in one clear sentence, with its place where there is one.
struct TORVA_API Error {
  ErrorCode code;
  std::string text;       ///< UTF-8, without file and line.
  std::string file = {};  ///< Empty when no file is concerned.
  std::size_t line = 0;   ///< Counted from 1; 0 when no line is concerned.

  /// "file:line: text", leaving out what is not known.
  std::string message() const;
};

template <class T>
using Result = tl::expected<T, Error>;

inline tl::unexpected<Error> fail(ErrorCode code, std::string text, std::string file = {}, std::size_t line = 0) {
  return tl::unexpected<Error>(Error{code, std::move(text), std::move(file), line});
}

}  // namespace torva
