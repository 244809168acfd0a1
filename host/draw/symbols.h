#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/database.h"
#include "db/mline_style_data.h"

#include <kdrx/cm_color.h>

namespace torva::draw {

/// What drawing needs to know of a layer.
struct LayerLook {
  bool isVisible = true;  ///< On and thawed.
  bool isPlotted = true;
  KdCmColor color;
  std::wstring linetype;
  int lineweight = -3;
};

/// The drawing's layers, linetypes and multiline styles, read when first asked for and kept until clear(). Names are given
/// as the bytes that stand in the file. References are valid until clear().
class Symbols {
 public:
  explicit Symbols(const db::Database& database) : m_database(database) {}

  /// A visible white layer for a name that the drawing does not have.
  const LayerLook& layer(std::string_view name) const;
  /// The pattern of a linetype: positive dash, negative gap, 0 dot; empty for continuous and unknown ones.
  const std::vector<double>& dashes(std::wstring_view name) const;
  /// The style by handle, if that is dead by name, else STANDARD. Without elements when there is none of these.
  const db::MlineStyleData& mlineStyle(dxf::Handle handle, std::wstring_view name) const;
  /// LTSCALE; 1 when it is missing or not positive.
  double linetypeScale() const;

  void clear();

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    std::size_t operator()(std::wstring_view text) const { return std::hash<std::wstring_view>{}(text); }
  };
  template <class Text, class Value>
  using Map = std::unordered_map<Text, Value, Hash, std::equal_to<>>;

  const db::Database& m_database;
  mutable Map<std::string, LayerLook> m_layers;
  mutable Map<std::wstring, std::vector<double>> m_linetypes;
  mutable std::unordered_map<dxf::RecordId, db::MlineStyleData> m_mlineStyles;
  mutable std::optional<double> m_linetypeScale;
};

}  // namespace torva::draw
