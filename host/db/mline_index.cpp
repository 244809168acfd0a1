#include "db/mline_index.h"

#include <bit>
#include <optional>

#include "base/numbers.h"
#include "db/database.h"
#include "dxf/byte_masks.h"

namespace torva::db {

namespace {

constexpr std::size_t kLookAhead = 8;                    // multilines
constexpr std::size_t kBlock = 64, kFront = 3 * kBlock;  // bytes in which the style's handle stands as a rule

/// Asks the processor for the front of a record, which is far from the one before: waiting for each would be most of the
/// cost.
void prefetch(const dxf::DrawingFile& file, dxf::RecordId record) {
  const char* const bytes = file.bytes(record).data();
  for (std::size_t at = 0; at < kFront; at += kBlock) __builtin_prefetch(bytes + at);
}

std::optional<dxf::Handle> handleAt(std::string_view rest) {
  const std::size_t end = rest.find('\n');
  return end == rest.npos ? std::nullopt : parseHandle(dxf::withoutCarriageReturn(rest.substr(0, end)));
}

/// The style's handle by the line ends alone, 64 bytes at a time; nothing when it is not so found. Every other line is a
/// code.
std::optional<dxf::Handle> findStyleHandle(std::string_view bytes) {
  constexpr std::string_view kStyleCode = "340";
  if (bytes.size() < kFront + kStyleCode.size()) return std::nullopt;
  bool isCode = true;
  for (std::size_t block = 0; block < kFront; block += kBlock) {
    for (std::uint64_t ends = dxf::equalMask64(bytes.data() + block, '\n'); ends != 0; ends &= ends - 1) {
      const std::size_t line = block + static_cast<std::size_t>(std::countr_zero(ends)) + 1;
      isCode = !isCode;
      if (isCode && bytes.substr(line, kStyleCode.size()) == kStyleCode) {
        const std::size_t end = bytes.find('\n', line);
        return end == bytes.npos ? std::nullopt : handleAt(bytes.substr(end + 1));
      }
    }
  }
  return std::nullopt;
}

/// It stands in front of the first vertex; 0 when there is none.
dxf::Handle readStyleHandle(const dxf::DrawingFile& file, dxf::RecordId record) {
  if (file.form() == dxf::Form::text && file.lineEnds() == dxf::LineEnds::lf) {
    if (const auto handle = findStyleHandle(file.bytes(record))) return *handle;
  }
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == 340) return group.handle().value_or(0);
    if (group.code == 11) break;
  }
  return 0;
}

}  // namespace

MlineIndex::MlineIndex(const Database& database) {
  const dxf::DrawingFile& file = database.file();
  const std::vector<dxf::RecordId> records = file.recordsOf(dxf::RecordType::mline);
  m_entries.reserve(records.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (i + kLookAhead < records.size()) prefetch(file, records[i + kLookAhead]);
    const dxf::RecordId record = records[i];
    if (file.isErased(record)) continue;
    const bool hasObject = database.hasObject(record);
    m_entries.push_back({record, hasObject ? database.mline(record).styleHandle : readStyleHandle(file, record)});
  }
}

}  // namespace torva::db
