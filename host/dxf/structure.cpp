#include "dxf/structure.h"

#include <algorithm>

#include "base/numbers.h"

namespace torva::dxf {
namespace {

constexpr std::size_t kAbsurdRecordSize = std::size_t{64} << 20;
constexpr std::size_t kMostDuplicates = 20;

std::string sectionName(const OpenedDrawing& drawing, RecordId id) {
  for (const Group& group : drawing.groups(id)) {
    if (group.code == 2) return std::string(group.value);
    if (group.code == 9) break;
  }
  return {};
}

std::string typeName(const OpenedDrawing& drawing, RecordId id) {
  const Groups groups = drawing.groups(id);
  const auto first = groups.begin();
  return first == groups.end() ? std::string() : std::string(first->value);
}

/// Follows the begin and end marks of sections, tables and blocks.
class StructureChecker {
 public:
  StructureChecker(OpenedDrawing& drawing, FindingsLog& log) : m_drawing(drawing), m_log(log) {}

  void follow() {
    for (const RecordId id : m_drawing.outline.marks) take(id);
  }

  bool isSectionOpen() const { return m_isSectionOpen; }

  void closeSection(std::size_t offset) {
    closeTable(offset);
    closeBlock(offset);
    if (!m_isSectionOpen) return;
    m_isSectionOpen = false;
    m_log.addAt(FindingCode::missingEndsec, offset, "section " + m_drawing.sections.back().name + " has no ENDSEC");
  }

 private:
  void take(RecordId id) {
    const std::size_t offset = m_drawing.outline.index.offset(id);
    switch (m_drawing.outline.index.type(id)) {
      case RecordType::section:
        closeSection(offset);
        endSection(id);
        m_drawing.sections.push_back({sectionName(m_drawing, id), id, m_drawing.outline.index.size()});
        m_isSectionOpen = true;
        break;
      case RecordType::endsec:
        closeTable(offset);
        closeBlock(offset);
        if (m_isSectionOpen) endSection(id + 1);
        m_isSectionOpen = false;
        break;
      case RecordType::table:
        closeTable(offset);
        m_isTableOpen = true;
        break;
      case RecordType::endtab:
        m_isTableOpen = false;
        break;
      case RecordType::block:
        closeBlock(offset);
        m_isBlockOpen = true;
        break;
      case RecordType::endblk:
        m_isBlockOpen = false;
        break;
      case RecordType::eof:
        if (m_isSectionOpen) endSection(id);
        closeSection(offset);
        break;
      default:
        break;
    }
  }

  void endSection(RecordId end) {
    const bool isWithoutEnd = !m_drawing.sections.empty() && m_drawing.sections.back().end == m_drawing.outline.index.size();
    if (isWithoutEnd) m_drawing.sections.back().end = end;
  }

  void closeTable(std::size_t offset) {
    if (m_isTableOpen) m_log.addAt(FindingCode::missingEndtab, offset, "a table has no ENDTAB");
    m_isTableOpen = false;
  }

  void closeBlock(std::size_t offset) {
    if (m_isBlockOpen) m_log.addAt(FindingCode::missingEndblk, offset, "a block has no ENDBLK");
    m_isBlockOpen = false;
  }

  OpenedDrawing& m_drawing;
  FindingsLog& m_log;
  bool m_isSectionOpen = false;
  bool m_isTableOpen = false;
  bool m_isBlockOpen = false;
};

/// Place of the last byte that belongs to the drawing's last line.
std::size_t lastByte(std::string_view bytes) {
  std::size_t end = bytes.size();
  while (end > 1 && (bytes[end - 1] == '\n' || bytes[end - 1] == '\r')) --end;
  return end - 1;
}

bool isFiller(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\0' || c == '\x1A';
}

void checkBehindEof(const OpenedDrawing& drawing, FindingsLog& log) {
  const RecordId eof = drawing.outline.index.size() - 1;
  const Groups groups = drawing.groups(eof);
  const auto first = groups.begin();
  if (first == groups.end()) return;
  const std::string_view rest = drawing.bytes(eof).substr(first->source.size());
  const auto* content = std::find_if_not(rest.begin(), rest.end(), isFiller);
  if (content == rest.end()) return;
  log.addAt(FindingCode::contentAfterEof, static_cast<std::size_t>(content - drawing.content.bytes().data()),
            "what follows EOF is kept unread");
}

bool needsHandle(RecordType type) {
  return handleCode(type) != kUnreadableCode;
}

}  // namespace

Result<void> checkStructure(OpenedDrawing& drawing, const ScanEnd& end, const std::string& name, DamagePolicy policy,
                            FindingsLog& log) {
  StructureChecker checker(drawing, log);
  checker.follow();
  if (end.reason == ScanEnd::Reason::eofRecord) {
    checkBehindEof(drawing, log);
    return {};
  }
  const std::string_view bytes = drawing.content.bytes();
  if (checker.isSectionOpen() && policy == DamagePolicy::refuse) {
    const std::string where = "section " + drawing.sections.back().name;
    const std::size_t line = drawing.form == Form::text ? log.placeOf(lastByte(bytes)) : 0;
    return fail(ErrorCode::damagedDrawing, "the drawing ends inside " + where + ": it was cut short", name, line);
  }
  if (end.reason == ScanEnd::Reason::incompleteGroup) {
    log.addAt(FindingCode::truncatedGroup, end.offset, "the last group is not complete");
  }
  checker.closeSection(lastByte(bytes));
  log.addAt(FindingCode::missingEof, lastByte(bytes), "the drawing ends without EOF");
  return {};
}

void checkRecords(const OpenedDrawing& drawing, FindingsLog& log) {
  const RecordIndex& index = drawing.outline.index;
  for (const RecordId id : drawing.outline.badHandles) {
    log.addAtRecord(FindingCode::badHandle, id, "the handle of " + typeName(drawing, id) + " cannot be read or is 0");
  }
  if (drawing.outline.binaryComment) {
    log.addAt(FindingCode::commentInBinary, *drawing.outline.binaryComment, "a comment, which the binary form may not have");
  }
  if (drawing.outline.longestSize > kAbsurdRecordSize) {
    const RecordId id = drawing.outline.longest;
    log.addAtRecord(FindingCode::absurdRecord, id,
                    typeName(drawing, id) + " is " + std::to_string(drawing.outline.longestSize >> 20) + " MB long");
  }
  if (drawing.version < Version::r13) return;
  std::size_t count = 0;
  RecordId first = kNoRecord;
  for (const std::string_view name : {"TABLES", "BLOCKS", "ENTITIES", "OBJECTS"}) {
    const Section* section = drawing.section(name);
    if (section == nullptr) continue;
    for (RecordId id = section->first; id < section->end; ++id) {
      if (index.handle(id) != 0 || !needsHandle(index.type(id))) continue;
      first = std::min(first, id);
      ++count;
    }
  }
  if (count == 0) return;
  const std::string others = count > 1 ? " and " + std::to_string(count - 1) + " other records have" : " has";
  log.addAtRecord(FindingCode::missingHandle, first, typeName(drawing, first) + others + " no handle");
}

HandleTable tableOfHandles(const OpenedDrawing& drawing, FindingsLog& log) {
  std::vector<std::pair<RecordId, RecordId>> duplicates;  // later, earlier
  HandleTable table(drawing.outline.index, [&](RecordId earlier, RecordId later) {
    if (duplicates.size() < kMostDuplicates) duplicates.emplace_back(later, earlier);
  });
  std::sort(duplicates.begin(), duplicates.end());
  for (const auto& [later, earlier] : duplicates) {
    const std::string handle = formatHandle(drawing.outline.index.handle(later));
    log.addAtRecord(
        FindingCode::duplicateHandle, later,
        "handle " + handle + " of " + typeName(drawing, later) + " is that of " + typeName(drawing, earlier) + " too");
  }
  return table;
}

}  // namespace torva::dxf
