#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace torva::dxf {

/// Something about a drawing that was found while opening it and was mended in the view that the program has of it; the
/// file's bytes stay as they are.
enum class FindingCode : std::uint8_t {
  missingEof,
  missingEndsec,
  missingEndtab,
  missingEndblk,
  truncatedGroup,
  badGroupCode,
  badNumber,
  duplicateHandle,
  missingHandle,
  badHandle,
  danglingPointer,
  absurdRecord,
  codePageMismatch,
  unknownCodePage,
  commentInBinary,
  contentAfterEof,
  badHandseed,
  unknownVersion,
};

struct Finding {
  FindingCode code;
  std::size_t line = 0;  ///< Line in the text form, byte offset in the binary form; 0 when no place is concerned.
  std::string text;
};

/// How a damaged drawing is met: refused when content would be lost, or opened with what can be saved.
enum class DamagePolicy { refuse, recover };

}  // namespace torva::dxf
