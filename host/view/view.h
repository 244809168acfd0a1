#pragma once

#include "base/export.h"
#include "db/database.h"
#include "geom/box.h"

#include <kdrx/ge.h>
#include <kdrx/gs.h>

namespace torva::view {

/// A parallel projection onto a viewport of pixels.
class TORVA_API View final : public KdGsView {
 public:
  /// The drawing's active viewport (*ACTIVE in VPORT: center, height, direction, twist), or a plan view 10 units high.
  static View ofDrawing(const db::Database& database, int widthPx, int heightPx);

  double unitsPerPixel(double scale) const override;
  void worldToDisplay(const double world[3], double display[3]) const override;
  void displayToWorld(const double display[3], double world[3]) const override;
  KdGePoint3d toDisplay(const KdGePoint3d& world) const;
  KdGePoint3d toWorld(const KdGePoint3d& display) const;

  /// Whether it looks straight down or up, so that a place in it is a place in x and y.
  bool isPlan() const { return m_zAxis.x == 0 && m_zAxis.y == 0; }
  /// Whether both look in the same direction, turned alike: they differ in place, scale and size alone.
  bool isParallelTo(const View& view) const;

  /// Middle of the view and its height, in display coordinates and drawing units; height > 0.
  KdGePoint3d centerDcs() const { return m_centerDcs; }
  double height() const { return m_height; }
  double width() const { return m_height * m_widthPx / m_heightPx; }
  int widthPx() const { return m_widthPx; }
  int heightPx() const { return m_heightPx; }

  /// Requires: height > 0 and finite.
  void set(const KdGePoint3d& centerDcs, double height);
  /// Shows a box of display coordinates as a whole, with a margin as a share of its size.
  void fit(const geom::Box3& boxDcs, double margin = 0.0);
  void resize(int widthPx, int heightPx);

 private:
  KdGePoint3d m_centerDcs;
  double m_height = 10;
  int m_widthPx = 1000, m_heightPx = 1000;
  KdGePoint3d m_targetWcs;
  KdGeVector3d m_xAxis{1, 0, 0}, m_yAxis{0, 1, 0}, m_zAxis{0, 0, 1};  // of the display, in the world
};

}  // namespace torva::view
