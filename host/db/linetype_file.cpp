#include "db/linetype_file.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "base/numbers.h"
#include "base/text.h"
#include "db/database.h"
#include "dxf/line_ends.h"

namespace torva::db {

namespace {

constexpr std::size_t kMostDashes = 12;  // more is for no program to read
constexpr std::string_view kComment = ";";

/// The lines of a text that say something.
class Lines {
 public:
  explicit Lines(std::string_view content) : m_rest(content) {
    if (m_rest.starts_with(dxf::kByteOrderMark)) m_rest.remove_prefix(dxf::kByteOrderMark.size());
  }

  /// Nothing at the end.
  std::optional<std::string_view> next() {
    while (!m_rest.empty()) {
      const std::size_t end = std::min(m_rest.find('\n'), m_rest.size());
      const std::string_view line = withoutBlanks(dxf::withoutCarriageReturn(m_rest.substr(0, end)));
      m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
      ++m_number;
      if (!line.empty() && !line.starts_with(kComment)) return line;
    }
    return std::nullopt;
  }
  std::size_t number() const { return m_number; }

 private:
  std::string_view m_rest;
  std::size_t m_number = 0;
};

/// The part of a text in front of its first comma; the text becomes what stands behind.
std::string_view takePart(std::string_view& text) {
  const std::size_t end = std::min(text.find(','), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return withoutBlanks(part);
}

bool readDashes(std::string_view line, std::vector<double>& dashes) {
  if (!equalsIgnoringCase(takePart(line), "A")) return false;
  while (!line.empty()) {
    const auto dash = parseReal(takePart(line));
    if (!dash || dashes.size() == kMostDashes) return false;
    dashes.push_back(*dash);
  }
  return dashes.size() >= 2 && dashes.front() >= 0;
}

Result<std::string> readFile(const std::string& path) {
  // Opening a pipe would wait for its other end.
  std::error_code ignored;
  std::ifstream file;
  if (std::filesystem::is_regular_file(path, ignored)) file.open(path, std::ios::binary);
  if (!file.is_open()) return fail(ErrorCode::fileNotFound, "there is no linetype file", path);
  std::string content{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) return fail(ErrorCode::fileNotReadable, "the linetype file cannot be read", path);
  return content;
}

dxf::RecordId addLinetype(Database& database, dxf::RecordId table, const LinetypeDefinition& linetype) {
  constexpr int kAlignedAtEnds = 65;
  dxf::DrawingFile& file = database.file();
  dxf::RecordBuilder bytes(file);
  bytes.name(0, "LTYPE");
  if (file.usesHandles()) bytes.handle(5, file.newHandle());
  const bool isOld = file.version() < dxf::Version::r13;
  if (!isOld) {
    if (const dxf::Handle owner = file.handle(table); owner != 0) bytes.handle(330, owner);
    bytes.name(100, "AcDbSymbolTableRecord");
    bytes.name(100, "AcDbLinetypeTableRecord");
  }
  bytes.text(2, linetype.name);
  bytes.integer(70, 0);
  bytes.text(3, linetype.description);
  bytes.integer(72, kAlignedAtEnds);
  bytes.integer(73, static_cast<std::int64_t>(linetype.dashes.size()));
  double length = 0;
  for (const double dash : linetype.dashes) length += std::fabs(dash);
  bytes.real(40, length);
  for (const double dash : linetype.dashes) {
    bytes.real(49, dash);
    if (!isOld) bytes.integer(74, 0);
  }
  return database.appendToTable(table, bytes.take());
}

}  // namespace

Result<LinetypeDefinition> readLinetype(std::string_view content, std::wstring_view name) {
  Lines lines(content);
  while (const auto line = lines.next()) {
    std::string_view head = *line;
    if (!head.starts_with('*')) continue;
    head.remove_prefix(1);
    LinetypeDefinition linetype;
    linetype.name = wideFromUtf8(takePart(head));
    if (!equalsIgnoringCase(linetype.name, name)) continue;
    linetype.description = wideFromUtf8(withoutBlanks(head));
    const auto dashes = lines.next();
    if (dashes && readDashes(*dashes, linetype.dashes)) return linetype;
    return fail(ErrorCode::invalidValue, "the linetype " + utf8FromWide(linetype.name) + " cannot be read", {},
                lines.number());
  }
  return fail(ErrorCode::unknownName, "there is no linetype " + utf8FromWide(name));
}

Result<dxf::RecordId> loadLinetype(Database& database, const std::string& path, const std::wstring& name) {
  const dxf::RecordId present = database.findSymbol(dxf::RecordType::ltype, name);
  if (present != dxf::kNoRecord) return present;
  const dxf::RecordId table = database.findTable("LTYPE");
  if (table == dxf::kNoRecord) return fail(ErrorCode::notApplicable, "the drawing has no linetype table");
  const auto content = readFile(path);
  if (!content) return tl::unexpected(content.error());
  auto linetype = readLinetype(*content, name);
  if (linetype) return addLinetype(database, table, *linetype);
  linetype.error().file = path;
  return tl::unexpected(linetype.error());
}

}  // namespace torva::db
