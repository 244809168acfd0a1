#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>
#include <utility>
#include <vector>

#include "module/mledit/random_mline.h"

/// What is drawn of element lines: for each element and segment the stretches, by their distances from the corner at which
/// the segment starts.
struct Ink {
  using Stretches = std::vector<std::pair<double, double>>;

  double tolerance = 0;
  std::map<std::pair<int, int>, Stretches> lines;

  void add(int element, int segment, double from, double to) {
    if (to - from <= tolerance) return;
    Stretches& line = lines[{element, segment}];
    line.emplace_back(from, to);
    std::sort(line.begin(), line.end());
    for (std::size_t i = 1; i < line.size();) {
      if (line[i].first > line[i - 1].second + tolerance) {
        ++i;
        continue;
      }
      line[i - 1].second = std::max(line[i - 1].second, line[i].second);
      line.erase(line.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }

  void remove(int element, int segment, double from, double to) {
    const auto line = to - from > tolerance ? lines.extract({element, segment}) : decltype(lines)::node_type();
    if (line.empty()) return;
    for (const auto& [start, stop] : line.mapped()) {
      add(element, segment, start, std::min(stop, from));
      add(element, segment, std::max(start, to), stop);
    }
  }

  /// Removes what lies between two spots of an element line, in the order of the segments.
  void remove(const RandomMline& mline, Spot a, Spot b) {
    if (std::pair(b.segment, b.along) < std::pair(a.segment, a.along)) std::swap(a, b);
    for (int s = a.segment; s <= b.segment; ++s) {
      remove(a.element, s, s == a.segment ? a.along : 0, s == b.segment ? b.along : mline.length(a.element, s));
    }
  }

  bool covers(const Spot& spot) const {
    const auto line = lines.find({spot.element, spot.segment});
    return line != lines.end() && std::any_of(line->second.begin(), line->second.end(), [&](const auto& stretch) {
             return stretch.first + tolerance < spot.along && spot.along < stretch.second - tolerance;
           });
  }

  bool operator==(const Ink& other) const {
    const auto isNear = [&](const auto& a, const auto& b) {
      return std::abs(a.first - b.first) <= tolerance && std::abs(a.second - b.second) <= tolerance;
    };
    return std::equal(lines.begin(), lines.end(), other.lines.begin(), other.lines.end(), [&](const auto& a, const auto& b) {
      return a.first == b.first && std::equal(a.second.begin(), a.second.end(), b.second.begin(), b.second.end(), isNear);
    });
  }
};

inline std::ostream& operator<<(std::ostream& os, const Ink& ink) {
  for (const auto& [line, stretches] : ink.lines) {
    os << "\n  element " << line.first << ", segment " << line.second << ':';
    for (const auto& [from, to] : stretches) os << ' ' << from << ".." << to;
  }
  return os;
}

/// The multiline drawn whole.
inline Ink wholeInk(const RandomMline& mline, double tolerance) {
  Ink ink{tolerance, {}};
  for (int e = 0; e < mline.elements(); ++e) {
    for (int s = 0; s < mline.segments(); ++s) ink.add(e, s, 0, mline.length(e, s));
  }
  return ink;
}
