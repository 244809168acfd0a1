#include "db/mline_style_data.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <vector>

#include "db/angles.h"
#include "db/color_groups.h"
#include "db/record_groups.h"

namespace torva::db {

namespace {

constexpr std::string_view kClassMark = "AcDbMlineStyle";
constexpr int kFirstXdataCode = 1000;
constexpr int kFillColorIndex = 256, kElementColorIndex = 0;

/// Tells which groups of an MLINESTYLE record belong to the style part, and to which element.
class StyleClassifier {
 public:
  enum class Place { outside, style, element };

  Place classify(const dxf::Group& group) {
    if (m_isPast || m_application.contains(group)) return Place::outside;
    if (group.code == 100) {
      m_isPast = m_isInside;
      m_isInside = group.value == kClassMark;
      return Place::outside;
    }
    if (group.code >= kFirstXdataCode || group.code == 101) m_isPast = true;
    if (m_isPast || !m_isInside) return Place::outside;
    if (group.code == 49) ++m_element;
    return m_element < 0 ? Place::style : Place::element;
  }
  int element() const { return m_element; }
  bool isPast() const { return m_isPast; }

 private:
  ApplicationGroups m_application;
  bool m_isInside = false, m_isPast = false;
  int m_element = -1;
};

/// A style as its record has it. Colors are kept as groups until all of theirs are read.
struct StyleSource {
  MlineStyleData data;
  std::bitset<128> codes;  ///< Of the groups before the elements.
  bool isEmpty = true;
};

StyleSource readSource(const dxf::DrawingFile& file, dxf::Groups groups) {
  StyleSource source;
  MlineStyleData& data = source.data;
  ColorGroups fill;
  std::vector<ColorGroups> colors;
  StyleClassifier classifier;
  for (const dxf::Group& group : groups) {
    const auto place = classifier.classify(group);
    if (place == StyleClassifier::Place::outside) continue;
    source.isEmpty = false;
    if (place == StyleClassifier::Place::style) {
      if (group.code >= 0 && group.code < 128) source.codes.set(static_cast<std::size_t>(group.code));
      switch (group.code) {
        case 2:
          data.name = file.text(group);
          break;
        case 3:
          data.description = file.text(group);
          break;
        case 70:
          data.flags = static_cast<int>(group.integerOr(0));
          break;
        case 51:
          data.startAngleRad = radiansFrom(group.realOr(90));
          break;
        case 52:
          data.endAngleRad = radiansFrom(group.realOr(90));
          break;
        default:
          if (ColorGroups::isColorCode(group.code)) fill.take(file, group);
      }
      continue;
    }
    if (group.code == 49) {
      data.elements.emplace_back().offset = group.realOr(0);
      colors.emplace_back();
    } else if (group.code == 6) {
      data.elements.back().linetype = file.text(group);
    } else if (ColorGroups::isColorCode(group.code)) {
      colors.back().take(file, group);
    }
  }
  data.fillColor = fill.color(kFillColorIndex);
  for (std::size_t i = 0; i < colors.size(); ++i) data.elements[i].color = colors[i].color(kElementColorIndex);
  return source;
}

/// For every element of `source` the one of `target` that takes its place, -1 for one that is gone. Equal ones at the front
/// and at the back go together, those between in their order.
std::vector<int> align(const MlineStyleElements& source, const MlineStyleElements& target) {
  const std::size_t shorter = std::min(source.size(), target.size());
  std::size_t front = 0, back = 0;
  while (front < shorter && source[front] == target[front]) ++front;
  while (back < shorter - front && source[source.size() - 1 - back] == target[target.size() - 1 - back]) ++back;
  std::vector<int> targetOf(source.size(), -1);
  for (std::size_t i = 0; i < shorter - back; ++i) targetOf[i] = static_cast<int>(i);
  for (std::size_t i = 1; i <= back; ++i) targetOf[source.size() - i] = static_cast<int>(target.size() - i);
  return targetOf;
}

constexpr std::array kColorCodes = {62, 420, 430};

/// Writes the groups of one color over its source.
class ColorWriter {
 public:
  void begin(const KdCmColor& source, const KdCmColor& target) {
    m_target = ColorGroups::of(target);
    m_isChanged = source != target;
    m_seen.fill(false);
    m_isDue = true;
  }
  void write(const dxf::DrawingFile& file, dxf::RecordBuilder& out, const dxf::Group& group) {
    const std::size_t place = static_cast<std::size_t>(std::ranges::find(kColorCodes, group.code) - kColorCodes.begin());
    if (m_seen[place]) return;
    m_seen[place] = true;
    // Beside a true color that is new the index has to follow, for readers that know the index alone.
    const bool isFormerIndex = m_isChanged && group.code == 62 && group.integer() != m_target.index;
    if (m_target.says(file, group) && !isFormerIndex) {
      out.copy(group);
    } else {
      m_target.write(out, group.code);
    }
  }
  /// Adds what the source lacks, unless it is only what a missing group 62 stands for.
  void end(dxf::RecordBuilder& out, int missing) {
    if (!std::exchange(m_isDue, false)) return;
    for (std::size_t i = 0; i < kColorCodes.size(); ++i) {
      if (m_seen[i]) continue;
      if (kColorCodes[i] == 62 && (m_target.rgb || m_target.index == missing)) continue;
      m_target.write(out, kColorCodes[i]);
    }
  }

 private:
  ColorGroups m_target;
  std::array<bool, 3> m_seen = {};
  bool m_isDue = false;
  bool m_isChanged = false;
};

class StyleWriter {
 public:
  StyleWriter(const dxf::DrawingFile& file, std::string_view bytes, const MlineStyleData& target)
      : m_file(file),
        m_groups(file.groupsOf(bytes)),
        m_source(readSource(file, m_groups)),
        m_target(target),
        m_targetOf(align(m_source.data.elements, target.elements)),
        m_out(file) {}

  std::string write() {
    if (m_source.isEmpty) return writeAll();
    m_color.begin(m_source.data.fillColor, m_target.fillColor);
    StyleClassifier classifier;
    for (const dxf::Group& group : m_groups) {
      const auto place = classifier.classify(group);
      if (classifier.isPast()) finish();
      if (place == StyleClassifier::Place::outside) {
        m_out.copy(group);
      } else if (place == StyleClassifier::Place::style) {
        writeStyleGroup(group);
      } else {
        writeElementGroup(group, classifier.element());
      }
    }
    finish();
    return m_out.take();
  }

 private:
  void writeStyleGroup(const dxf::Group& group) {
    const MlineStyleData& source = m_source.data;
    switch (group.code) {
      case 2:
        text(group, source.name, m_target.name);
        break;
      case 3:
        text(group, source.description, m_target.description);
        break;
      case 70:
        integer(group, source.flags, m_target.flags);
        break;
      case 51:
        angle(group, source.startAngleRad, m_target.startAngleRad);
        break;
      case 52:
        angle(group, source.endAngleRad, m_target.endAngleRad);
        break;
      case 71:
        endStyle();
        integer(group, static_cast<int>(source.elements.size()), static_cast<int>(m_target.elements.size()));
        break;
      default:
        if (ColorGroups::isColorCode(group.code)) {
          m_color.write(m_file, m_out, group);
        } else {
          m_out.copy(group);
        }
    }
  }

  /// Adds what the groups before the elements lack, where it differs from what a missing group stands for.
  void endStyle() {
    if (std::exchange(m_isStyleComplete, true)) return;
    m_color.end(m_out, kFillColorIndex);
    const MlineStyleData& source = m_source.data;
    const auto isMissing = [&](std::size_t code, bool isChanged) { return isChanged && !m_source.codes.test(code); };
    if (isMissing(2, source.name != m_target.name)) m_out.text(2, m_target.name);
    if (isMissing(70, source.flags != m_target.flags)) m_out.integer(70, m_target.flags);
    if (isMissing(3, source.description != m_target.description)) m_out.text(3, m_target.description);
    if (isMissing(51, source.startAngleRad != m_target.startAngleRad)) m_out.real(51, degreesFrom(m_target.startAngleRad));
    if (isMissing(52, source.endAngleRad != m_target.endAngleRad)) m_out.real(52, degreesFrom(m_target.endAngleRad));
  }

  void writeElementGroup(const dxf::Group& group, int element) {
    if (group.code == 49) beginElement(element);
    const bool isKnown = group.code == 49 || group.code == 6 || ColorGroups::isColorCode(group.code);
    if (!isKnown) {
      m_out.copy(group);
      return;
    }
    if (!m_element) return;
    const MlineStyleElement& source = m_source.data.elements[static_cast<std::size_t>(element)];
    if (group.code == 49) {
      if (source.offset == m_element->offset) {
        m_out.copy(group);
      } else {
        m_out.real(49, m_element->offset);
      }
    } else if (group.code == 6) {
      m_color.end(m_out, kElementColorIndex);
      m_hasLinetype = true;
      text(group, source.linetype, m_element->linetype);
    } else {
      m_color.write(m_file, m_out, group);
    }
  }

  void beginElement(int element) {
    endElement();
    const int target = m_targetOf[static_cast<std::size_t>(element)];
    m_element = target < 0 ? nullptr : &m_target.elements[static_cast<std::size_t>(target)];
    if (!m_element) return;
    writeElementsUpTo(target);
    m_written = target + 1;
    m_hasLinetype = false;
    m_color.begin(m_source.data.elements[static_cast<std::size_t>(element)].color, m_element->color);
  }

  void endElement() {
    endStyle();
    m_color.end(m_out, kElementColorIndex);
    if (!m_element) return;
    if (!m_hasLinetype && m_element->linetype != MlineStyleElement().linetype) m_out.text(6, m_element->linetype);
    m_element = nullptr;
  }

  void writeElementsUpTo(int end) {
    for (; m_written < end; ++m_written) {
      const MlineStyleElement& element = m_target.elements[static_cast<std::size_t>(m_written)];
      m_out.real(49, element.offset);
      color(element.color);
      m_out.text(6, element.linetype);
    }
  }

  void finish() {
    if (std::exchange(m_isFinished, true)) return;
    endElement();
    writeElementsUpTo(static_cast<int>(m_target.elements.size()));
  }

  std::string writeAll() {
    for (const dxf::Group& group : m_groups) m_out.copy(group);
    m_out.text(2, m_target.name);
    m_out.integer(70, m_target.flags);
    m_out.text(3, m_target.description);
    color(m_target.fillColor);
    m_out.real(51, degreesFrom(m_target.startAngleRad));
    m_out.real(52, degreesFrom(m_target.endAngleRad));
    m_out.integer(71, static_cast<std::int64_t>(m_target.elements.size()));
    writeElementsUpTo(static_cast<int>(m_target.elements.size()));
    return m_out.take();
  }

  void color(const KdCmColor& value) {
    const ColorGroups groups = ColorGroups::of(value);
    for (const int code : kColorCodes) groups.write(m_out, code);
  }
  void text(const dxf::Group& group, const std::wstring& source, const std::wstring& target) {
    if (source == target) {
      m_out.copy(group);
    } else {
      m_out.text(group.code, target);
    }
  }
  void integer(const dxf::Group& group, int source, int target) {
    if (source == target) {
      m_out.copy(group);
    } else {
      m_out.integer(group.code, target);
    }
  }
  void angle(const dxf::Group& group, double source, double target) {
    if (source == target) {
      m_out.copy(group);
    } else {
      m_out.real(group.code, degreesFrom(target));
    }
  }

  const dxf::DrawingFile& m_file;
  dxf::Groups m_groups;
  StyleSource m_source;
  const MlineStyleData& m_target;
  std::vector<int> m_targetOf;
  dxf::RecordBuilder m_out;
  ColorWriter m_color;
  const MlineStyleElement* m_element = nullptr;  // null before the first element and in one that is gone
  bool m_hasLinetype = false;
  int m_written = 0;  // elements of the target
  bool m_isStyleComplete = false;
  bool m_isFinished = false;
};

}  // namespace

MlineStyleData readMlineStyle(const dxf::DrawingFile& file, dxf::Groups groups) {
  return readSource(file, groups).data;
}

std::string writeMlineStyle(const dxf::DrawingFile& file, std::string_view bytes, const MlineStyleData& data) {
  return StyleWriter(file, bytes, data).write();
}

}  // namespace torva::db
