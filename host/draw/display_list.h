#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/export.h"
#include "geom/box.h"

#include <kdrx/ge.h>

namespace torva::draw {

/// How a primitive is stroked or filled, by-layer and by-block resolved.
struct Appearance {
  std::uint32_t rgb = 0;            ///< 0x00RRGGBB
  bool isForeground = false;        ///< Color index 7: black on light paper, white on a dark background; rgb counts not.
  std::vector<double> dashes;       ///< Linetype in drawing units: positive dash, negative gap, 0 dot; empty: continuous.
  int lineweightHundredthsMm = -3;  ///< -3: the default width.

  /// Continuous lines of the default width in the foreground color.
  static Appearance foreground() {
    Appearance appearance;
    appearance.isForeground = true;
    return appearance;
  }

  bool operator==(const Appearance&) const = default;
};

/// Points in world coordinates; n >= 1, one point is a dot. Closed: a segment runs from the last to the first.
struct Polyline {
  std::vector<KdGePoint3d> points;
  bool isClosed = false;
  bool isCurve = false;  ///< Stands for a curve that the points were taken from: those between the ends are no corners.
};

/// Elliptical arc: center + xAxis cos t + yAxis sin t for t from startRad over sweepRad (2 pi: whole; negative: clockwise).
struct Arc {
  KdGePoint3d center;
  KdGeVector3d xAxis, yAxis;
  double startRad = 0, sweepRad = 0;

  KdGePoint3d at(double angleRad) const;
};

/// Area inside the loops by the even-odd rule; every loop is closed, n >= 3.
struct Fill {
  std::vector<std::vector<KdGePoint3d>> loops;
};

/// One line of text. `xAxis` points along the line, `yAxis` up; their lengths are the em width factor times height and the
/// height of capitals. The line is nominalTextWidth() times `xAxis` long, whatever font it is shown in.
struct Text {
  std::wstring text;
  KdGePoint3d origin;  ///< Left end of the base line.
  KdGeVector3d xAxis, yAxis;
};

using Shape = std::variant<Polyline, Arc, Fill, Text>;

struct Primitive {
  Shape shape;
  std::uint32_t appearance = 0;  ///< Index into DisplayList::appearances.
};

/// What an entity looks like. Canvas, picking, extents, plotting and exploding all use this one description.
struct DisplayList {
  std::vector<Appearance> appearances;
  std::vector<Primitive> primitives;  ///< In drawing order: later ones lie above.

  /// Index of `appearance`, added when new.
  std::uint32_t indexOf(const Appearance& appearance);
  void clear();
};

/// Moves all primitives.
void displace(DisplayList& list, const KdGeVector3d& displacementWcs);

/// Extents of the primitives in world coordinates; empty for an empty list. Arcs by their true extents, texts by
/// textCorners().
geom::Box3 extents(const DisplayList& list);
TORVA_API geom::Box3 extents(const Shape& shape);

/// Width of a line of text in heights of a capital letter, from typical widths of letters: the same on every machine.
TORVA_API double nominalTextWidth(std::wstring_view text);

/// At least the width of the text that the bytes of a drawing stand for, whatever their code page.
double mostTextWidth(std::string_view bytes);

/// Widest letter that nominalTextWidth() knows, in heights of a capital letter.
inline constexpr double kWidestLetter = 1.5;
/// How far letters reach below the base line and above it, in heights of a capital letter.
inline constexpr double kTextDescent = 0.3;
inline constexpr double kTextAscent = 1.2;

/// The corners of a text's rectangle, descenders and accents included: four points around it.
std::vector<KdGePoint3d> textCorners(const Text& text);

/// Points along an arc, ends included, n >= 2: chords that stray at most `tolerance` drawing units from it (at most 720
/// chords a turn).
TORVA_API std::vector<KdGePoint3d> flatten(const Arc& arc, double tolerance);

}  // namespace torva::draw
