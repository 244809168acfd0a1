#pragma once

#include <array>
#include <bitset>
#include <string>

#include "dxf/drawing_file.h"

#include <kdrx/ge.h>

namespace torva::draw {

/// The numbers of a record's own groups (codes 10 to 79) by their codes; of several with one code the first. Extended data
/// and embedded objects are left out.
class RecordValues {
 public:
  RecordValues() = default;
  explicit RecordValues(const dxf::Groups& groups);

  static bool isCode(int code) { return code >= kFirst && code < kEnd; }
  /// Keeps a value unless there is one with its code. Requires: isCode(code).
  void set(int code, double value) {
    const std::size_t index = indexOf(code);
    if (m_isSet[index]) return;
    m_values[index] = value;
    m_isSet[index] = true;
  }

  bool has(int code) const { return m_isSet[indexOf(code)]; }
  double real(int code, double fallback = 0) const { return has(code) ? m_values[indexOf(code)] : fallback; }
  int integer(int code, int fallback = 0) const;
  /// The point that begins with a group code (10: 10, 20, 30); parts that are missing count as 0.
  KdGePoint3d point(int code) const;
  KdGeVector3d vector(int code) const;

 private:
  static constexpr int kFirst = 10, kEnd = 80;
  static std::size_t indexOf(int code) { return static_cast<std::size_t>(code - kFirst); }

  std::array<double, kEnd - kFirst> m_values;  // only those with a bit: clearing all would take longer than a record does
  std::bitset<kEnd - kFirst> m_isSet;
};

/// The first text with a group code, decoded; empty when there is none.
std::wstring textOf(const dxf::DrawingFile& file, dxf::RecordId record, int code);

double radians(double degrees);

}  // namespace torva::draw
