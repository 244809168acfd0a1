#pragma once

#include <string>
#include <unordered_map>

#include <QFont>
#include <QPainterPath>

namespace torva::paint {

/// The letters of texts as outlines, kept for the next picture.
class TextOutlines {
 public:
  struct Outline {
    QPainterPath path;   ///< From the left end of the base line, y down.
    double advance = 0;  ///< Width of the line in the unit of the path.
  };

  /// Valid until the next call. Requires: a QGuiApplication.
  const Outline& of(const std::wstring& text);
  /// Height of a capital letter in the unit of the paths.
  double capHeight();

 private:
  void findFont();

  QFont m_font;
  double m_capHeight = 0;
  std::unordered_map<std::wstring, Outline> m_outlines;
};

}  // namespace torva::paint
