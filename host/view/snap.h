#pragma once

#include <optional>

#include "base/export.h"
#include "view/picker.h"

namespace torva::view {

/// Kinds of points that the cursor snaps to; the values are their bits in the variable OSMODE.
enum class SnapKind : int {
  end = 1,              ///< An end of a line, an arc or a spline, any corner of a polyline, a dot.
  middle = 2,           ///< The middle of a straight piece; of an arc by its angle.
  centre = 4,           ///< Of a circle, an ellipse or an arc.
  intersection = 32,    ///< Where two drawn pieces meet in space, those of one entity too.
  perpendicular = 128,  ///< Where the way from the base point meets a drawn piece at right angles, in space.
  nearest = 512,        ///< The point of a drawn piece that is seen nearest to the cursor.
};

/// The bit of OSMODE that switches all snaps off and keeps the others for later.
inline constexpr int kSnapsOff = 16384;

struct SnapRequest {
  KdGePoint3d cursorWcs;
  /// Half the side of the square about the cursor in which snaps are looked for; APERTURE.
  double aperturePx = 10;
  /// Bits of SnapKind, and kSnapsOff; other bits are passed over.
  int modes = 0;
  /// Where the next piece begins; there is no perpendicular without it.
  std::optional<KdGePoint3d> baseWcs = {};
};

struct Snap {
  SnapKind kind = SnapKind::nearest;
  KdGePoint3d pointWcs;
  double distancePx = 0;  ///< From the cursor, as seen.
};

/// More entities than these in the aperture are a black spot in which nobody means a single point: then only the nearest
/// points are offered, of so many entities drawn last.
inline constexpr std::size_t kMostSnapEntities = 500;
/// Intersections are looked for among so many pieces in the aperture, those drawn last.
inline constexpr std::size_t kMostCrossedPieces = 500;

/// The best point to snap to; nothing when there is none. All other kinds come before `nearest`, then the one seen nearest
/// to the cursor is the best; of points that are seen less than a millionth of a pixel apart the one whose kind comes first:
/// end, intersection, centre, middle, perpendicular.
///
/// Pieces are what is drawn: straight pieces of lines, polylines and the elements of multilines between gaps and corners,
/// and arcs, those in blocks included; splines by the chords they are drawn with, which have no middles. Fills, texts and
/// hatches are passed over, and the gaps of linetypes are no gaps. A piece counts when it meets the aperture, its border
/// included. Ends, middles and intersections have to lie in the aperture themselves; a centre and a perpendicular may lie
/// elsewhere, as far as their piece counts. The centre of a whole circle or ellipse counts in the aperture in any case.
///
/// Ends and middles are exact to rounding. Pieces meet when they come within 1e-9 drawing units, times the largest
/// coordinate of the cursor where that is above 1; what ends on another piece meets it. Parallel pieces, also where they lie
/// on each other, and pieces that the view shows as points, have no intersections; ellipses that only touch may be missed.
/// There is no perpendicular at the base point itself, nor from the center of a circle. A piece without length is a dot. Not
/// more than kMostSnapEntities entities are drawn for it.
TORVA_API std::optional<Snap> findSnap(Picker& picker, const View& view, const SnapRequest& request);

}  // namespace torva::view
