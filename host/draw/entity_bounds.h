#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "db/database.h"
#include "draw/shape_boxes.h"
#include "draw/symbols.h"
#include "geom/box.h"

namespace torva::draw {

/// Finds the boxes of entities from their records, without building what they draw. Keeps the boxes of blocks.
class EntityBounds {
 public:
  EntityBounds(const db::Database& database, const Symbols& symbols);

  /// A box that holds all that a top-level entity draws; empty when it draws nothing.
  geom::Box3 of(dxf::RecordId entity) { return of(entity, Level::top); }
  /// The same, but empty for an entity of a paper space.
  geom::Box3 inModelSpace(dxf::RecordId entity) { return of(entity, Level::modelSpace); }

  /// False when nothing that the entity draws meets a box in x and y. True does not promise that something does.
  bool mayMeet(dxf::RecordId entity, const geom::Box3& box);

  void clear();

 private:
  using Facts = EntityFacts;
  enum class Level { top, modelSpace, inBlock };
  struct Block {
    geom::Box3 box;
    KdGePoint3d base;
  };
  struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
  };
  struct Style {
    std::string handle, name;
    const db::MlineStyleData* data = nullptr;
  };

  geom::Box3 of(dxf::RecordId entity, Level level);
  template <class Scan>
  geom::Box3 scanned(Scan scan, Facts& facts, dxf::RecordType type, dxf::RecordId entity, Level level);
  geom::Box3 drawn(dxf::RecordId entity) const;
  Facts factsOf(dxf::RecordId record) const;

  template <class Scan>
  geom::Box3 mlineBox(Scan scan, dxf::RecordId entity, Facts& facts);
  geom::Box3 shapeBox(dxf::RecordId entity, const Facts& facts, Level level);
  geom::Box3 insertBox(dxf::RecordId entity, const Facts& facts, Level level);
  geom::Box3 polylineBox(dxf::RecordId entity, const Facts& facts);
  /// The block's box in its own coordinates; empty while it is being measured: blocks may contain themselves.
  const Block& block(std::string_view name);

  bool isShown(const Facts& facts, Level level);
  bool isLayerVisible(std::string_view layer);
  const db::MlineStyleData& style(std::string_view handle, std::string_view name);

  const db::Database& m_database;
  const Symbols& m_symbols;
  bool m_isPlainText = false;  // text form with LF or CR LF
  std::unordered_map<std::string, Block, NameHash, std::equal_to<>> m_blocks;
  std::vector<Style> m_styles;  // those met last: a drawing has few
  // Neighbours mostly share the layer.
  std::string m_lastLayer;
  const LayerLook* m_lastLayerLook = nullptr;
};

}  // namespace torva::draw
