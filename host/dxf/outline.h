#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/watch.h"
#include "dxf/group.h"
#include "dxf/record_index.h"
#include "dxf/type_names.h"

namespace torva::dxf {

/// Where a pass over a drawing came to an end.
struct ScanEnd {
  enum class Reason : std::uint8_t {
    eofRecord,        ///< Record EOF was met; what follows belongs to it.
    contentEnd,       ///< The content ended behind a whole group.
    incompleteGroup,  ///< The content ended inside the group at `offset`.
    badGroupCode,     ///< At `offset` should stand a group code and does not.
    cancelled,        ///< Nobody wants the result any more.
  };
  Reason reason = Reason::contentEnd;
  std::size_t offset = 0;
};

/// What one pass over a drawing notes of it.
struct Outline {
  RecordIndex index;
  TypeNames names;
  /// The records that give a drawing its structure (SECTION ... EOF), in order.
  std::vector<RecordId> marks;
  /// The first records whose handle cannot be read.
  std::vector<RecordId> badHandles;
  /// Place of the first byte that is no ASCII character, at most 63 bytes too small.
  std::optional<std::size_t> firstHighByte;
  /// Place of the first comment in the binary form, which may have none.
  std::optional<std::size_t> binaryComment;

  /// The longest record but the last, and its size.
  RecordId longest = kNoRecord;
  std::size_t longestSize = 0;

  /// Adds a record of the type with that name; a structure record becomes a mark too.
  RecordId addRecord(std::size_t offset, std::string_view typeName);
  void readHandle(RecordId id, std::string_view value);

 private:
  std::size_t m_lastOffset = 0;
};

/// The group code that gives records of a type their handle; kUnreadableCode for those that have none.
constexpr int handleCode(RecordType type) {
  switch (type) {
    case RecordType::none:
    case RecordType::section:  // the header's variables are groups of its SECTION record, some with code 5
    case RecordType::endsec:
    case RecordType::endtab:
    case RecordType::eof:
    case RecordType::classRecord:
      return kUnreadableCode;
    case RecordType::dimstyle:
      return 105;  // 5 is the name of a block there
    default:
      return 5;
  }
}

/// Passes over a drawing in the text form from the code line at `from`, adding its records to `outline`.
/// Costs less than searching the content for line ends one by one.
/// `progress` is that of the whole content and is told every few MB.
ScanEnd scanText(std::string_view content, std::size_t from, LineEnds ends, Outline& outline, const Progress& progress = {});

/// The same for the binary form.
ScanEnd scanBinary(std::string_view content, std::size_t from, BinaryCodes codes, Outline& outline,
                   const Progress& progress = {});

}  // namespace torva::dxf
