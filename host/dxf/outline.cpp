#include "dxf/outline.h"

#include "base/numbers.h"
#include "base/text.h"

namespace torva::dxf {
namespace {

constexpr std::size_t kMostBadHandles = 20;

}  // namespace

RecordId Outline::addRecord(std::size_t offset, std::string_view typeName) {
  const RecordType type = names.intern(withoutBlanks(typeName));
  const RecordId id = index.append(offset, type);
  if (offset - m_lastOffset > longestSize) {
    longestSize = offset - m_lastOffset;
    longest = id == 0 ? id : id - 1;
  }
  m_lastOffset = offset;
  if (type <= RecordType::eof) marks.push_back(id);
  return id;
}

void Outline::readHandle(RecordId id, std::string_view value) {
  const Handle handle = parseHandle(value).value_or(0);
  if (handle == 0 && badHandles.size() < kMostBadHandles) badHandles.push_back(id);
  index.setHandle(id, handle);
}

}  // namespace torva::dxf
