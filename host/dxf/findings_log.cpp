#include "dxf/findings_log.h"

namespace torva::dxf {
namespace {

constexpr int kMostOfAKind = 20;
constexpr std::size_t kMostQuoted = 40;

}  // namespace

void FindingsLog::addAt(FindingCode code, std::size_t offset, std::string text) {
  const int count = ++m_counts[static_cast<std::size_t>(code)];
  if (count > kMostOfAKind) return;
  if (count == kMostOfAKind) text += " (further ones are not listed)";
  m_findings.push_back({code, placeOf(offset), std::move(text)});
}

void FindingsLog::addAtRecord(FindingCode code, RecordId id, std::string text) {
  addAt(code, m_drawing.outline.index.offset(id), std::move(text));
}

std::size_t FindingsLog::placeOf(std::size_t offset) {
  return m_drawing.form == Form::text ? m_counter.lineAt(offset) : offset;
}

std::string quoted(std::string_view piece) {
  std::string text = "\"";
  for (const char c : piece.substr(0, kMostQuoted)) text += c >= ' ' && c != 0x7F ? c : '?';
  return text + (piece.size() > kMostQuoted ? "...\"" : "\"");
}

}  // namespace torva::dxf
