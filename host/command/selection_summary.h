#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/export.h"
#include "db/database.h"

namespace torva::command {

/// What entities have in common, as plain data. A value is missing where they differ, and where there are none.
struct SelectionSummary {
  struct TypeCount {
    std::wstring type;  ///< As the drawing names it: "LINE".
    std::size_t count = 0;
  };
  /// Of the multilines among them.
  struct Mlines {
    std::size_t count = 0;
    std::optional<std::wstring> style;
    std::optional<double> scale;
    std::optional<KdMlineJustification> justification;
    std::optional<bool> isClosed;
    double pathLength = 0;  ///< Of all together, in drawing units, gaps included.
    /// What is drawn of each element, of all together; as many as the multiline with the most elements has.
    std::vector<double> drawnLengths;
  };

  std::vector<TypeCount> types;  ///< In the order in which they come first.
  std::optional<std::wstring> layer;
  std::optional<KdCmColor> color;
  std::optional<std::wstring> linetype;
  std::optional<int> lineWeight;  ///< As in db::EntityProperties.
  Mlines mlines;
};

/// Names that differ in case alone are the same. Requires: they are entities that are not erased; changed objects are
/// flushed.
TORVA_API SelectionSummary summaryOf(const db::Database& database, const std::vector<dxf::RecordId>& entities);

}  // namespace torva::command
