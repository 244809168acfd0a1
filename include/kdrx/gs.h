#pragma once

#include <kdrx/export.h>

/// The view that the user looks at. Owned by the host, valid while the command runs.
class KDRX_API KdGsView {
 public:
  virtual ~KdGsView();

  /// Drawing units that one display pixel spans, times `scale`.
  virtual double unitsPerPixel(double scale) const = 0;
  /// Maps a world point to display coordinates: drawing units in the plane of the view, x to the right, y up, z towards the
  /// eye. Distances in that plane are distances in the drawing.
  virtual void worldToDisplay(const double world[3], double display[3]) const = 0;
  virtual void displayToWorld(const double display[3], double world[3]) const = 0;
};

/// The current view of the active document; null when there is none.
KDRX_API const KdGsView* kdgsActiveView() noexcept;
