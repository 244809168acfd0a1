#pragma once

#include <cstdint>
#include <string>

#include <kdrx/export.h>

/// A color as drawings store it: by layer, by block, an index, or a true color, the last with an optional color-book name.
/// Held as one 32-bit word: the method in the top byte, the index or the RGB value below. A word whose top byte is no method
/// counts as by layer.
class KDRX_API KdCmColor {
 public:
  enum Method : std::uint8_t { kByLayer = 192, kByBlock = 193, kByColor = 194, kByIndex = 195 };

  KdCmColor() = default;
  static KdCmColor byIndex(int index);
  static KdCmColor trueColor(std::uint32_t rgb);

  std::uint8_t colorMethod() const { return static_cast<std::uint8_t>(m_color >> 24); }
  void setColorMethod(std::uint8_t method) { m_color = (m_color & 0xFFFFFFu) | std::uint32_t{method} << 24; }

  bool isByLayer() const { return colorMethod() < kByBlock || colorMethod() > kByIndex; }
  bool isByBlock() const { return colorMethod() == kByBlock; }
  bool isTrueColor() const { return colorMethod() == kByColor; }

  /// 0 for by block, 256 for by layer, 1 to 255 for an index; for a true color the index nearest to it.
  int colorIndex() const;
  /// Sets by block (0), by layer (256) or an index (1 to 255), which have no color-book name; any other value is ignored and
  /// gives false.
  bool setColorIndex(int index);

  /// The raw word.
  std::uint32_t color() const { return m_color; }
  /// Replaces the raw word; the names stay.
  void setColor(std::uint32_t word) { m_color = word; }
  /// 0x00RRGGBB: of a true color its value, of an index the usual palette's; 0 for by layer and by block.
  std::uint32_t rgb() const;

  /// The color-book key "BOOK$COLOR", empty when there is none.
  const std::wstring& dictionaryKey() const { return m_bookKey; }
  /// Sets book and color name from "BOOK$COLOR"; the empty key removes them.
  void setNamesFromDictionaryKey(const std::wstring& key) { m_bookKey = key; }
  /// The two parts of the key; a key without "$" is a color's name alone.
  std::wstring bookName() const;
  std::wstring colorName() const;

  /// What people call the color: its color-book name if it has one, else "ByLayer", "ByBlock", the index ("7"), or red,
  /// green and blue from 0 to 255 ("255,128,0").
  std::wstring displayName() const;

  bool operator==(const KdCmColor&) const = default;

 private:
  std::uint32_t m_color = std::uint32_t{kByLayer} << 24;
  std::wstring m_bookKey;
};
