#pragma once

#include <array>
#include <string>
#include <vector>

#include "dxf/finding.h"
#include "dxf/reader.h"

namespace torva::dxf {

/// Collects findings with their places. Of each kind only the first ones are kept, so that a drawing broken all over neither
/// floods its reader nor costs a count of lines for each fault.
class FindingsLog {
 public:
  FindingsLog(const OpenedDrawing& drawing, std::vector<Finding>& findings)
      : m_drawing(drawing), m_counter(drawing.content.bytes(), drawing.lineEnds), m_findings(findings) {}

  void add(FindingCode code, std::string text) { m_findings.push_back({code, 0, std::move(text)}); }
  void addAt(FindingCode code, std::size_t offset, std::string text);
  void addAtRecord(FindingCode code, RecordId id, std::string text);

  /// Line (text form) or byte offset (binary form) of a byte.
  std::size_t placeOf(std::size_t offset);

 private:
  const OpenedDrawing& m_drawing;
  LineCounter m_counter;
  std::vector<Finding>& m_findings;
  std::array<int, static_cast<std::size_t>(FindingCode::unknownVersion) + 1> m_counts{};
};

/// A piece of a drawing as it can stand in a message: in quotes, short, without control characters.
std::string quoted(std::string_view piece);

}  // namespace torva::dxf
