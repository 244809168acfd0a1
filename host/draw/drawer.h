#pragma once

#include <memory>

#include "base/export.h"
#include "db/database.h"
#include "db/mline_data.h"
#include "draw/display_list.h"
#include "geom/box.h"

class KdDbMline;
class KdDbMlineStyle;

namespace torva::draw {

/// Counts the changes that concern many entities at once: what was taken at an earlier count is out of date.
struct Generation {
  std::size_t looks = 0;  ///< of what draw() gives
  std::size_t boxes = 0;  ///< of the boxes among it
};

/// Describes entities of a drawing. Keeps what it looked up (layers, linetypes, block extents) between calls; changes of the
/// drawing are noticed.
class TORVA_API Drawer {
 public:
  explicit Drawer(const db::Database& database);
  ~Drawer();

  /// Appends what a top-level entity draws. Nothing for one that is erased or on a layer that is off or frozen, and for
  /// types that draw nothing. Blocks are followed to a depth of 16 and to a million entities.
  void draw(dxf::RecordId entity, DisplayList& list) const;

  /// The same shapes, all in one appearance: for finding places, and cheaper.
  void drawShapes(dxf::RecordId entity, DisplayList& list) const;

  /// Those of a multiline that is no entity, in its style as the drawing has it.
  void drawShapes(const db::MlineData& mline, DisplayList& list) const;

  /// Appends what a multiline draws in a style; both may stand outside of the drawing. Linetypes are those of the drawing,
  /// by their names, with their dashes as long as they say: LTSCALE does not count.
  /// @param layer a LAYER record of the drawing, for what is by layer
  void draw(const KdDbMline& mline, const KdDbMlineStyle& style, dxf::RecordId layer, DisplayList& list) const;

  /// A box in world coordinates that holds all that draw() gives, without building it: at most slightly too large (texts,
  /// curves by their control points), never too small. Empty when nothing is drawn.
  geom::Box3 bounds(dxf::RecordId entity) const;

  /// The same for an entity of the ENTITIES section, but empty for one of a paper space.
  geom::Box3 modelSpaceBounds(dxf::RecordId entity) const;

  /// Whether bounds() may be much larger than what is drawn: texts, curves with control points, and what may contain them.
  bool hasLooseBounds(dxf::RecordId entity) const;

  /// The extents of what draw() gives, which is built for it.
  geom::Box3 drawnExtents(dxf::RecordId entity) const;

  /// False when it is sure that nothing that draw() gives meets a box of world coordinates in x and y; cheaper than drawing.
  bool mayMeet(dxf::RecordId entity, const geom::Box3& boxWcs) const;

  /// Whether the entity's layer is on and thawed.
  bool isVisible(dxf::RecordId entity) const;

  /// Whether the entity's layer is one that is plotted.
  bool isPlotted(dxf::RecordId entity) const;

  /// The color that an entity says of itself; no dashes, the default width. For one that is too small to be drawn in full.
  Appearance ownColor(dxf::RecordId entity) const;

  /// Forgets what was looked up when something that many entities depend on was changed since the last call: layers,
  /// linetypes, styles, blocks. The other functions do so by themselves.
  /// @return how often that was so until now
  Generation refresh() const;

 private:
  class TORVA_INTERNAL Imp;
  std::unique_ptr<Imp> m_imp;
};

}  // namespace torva::draw
