#include "command/selection_summary.h"

#include <algorithm>

#include "base/text.h"
#include "db/entity_properties.h"
#include "db/mline_geometry.h"
#include "draw/mline_shape.h"

namespace torva::command {

namespace {

/// Takes a further value of what is to be common; the first one always is.
template <class T>
void join(std::optional<T>& common, const T& value, bool isFirst) {
  if (isFirst) {
    common = value;
  } else if (common != value) {
    common.reset();
  }
}

void join(std::optional<std::wstring>& common, const std::wstring& name, bool isFirst) {
  if (isFirst) {
    common = name;
  } else if (common && !equalsIgnoringCase(*common, name)) {
    common.reset();
  }
}

void count(std::vector<SelectionSummary::TypeCount>& types, const std::wstring& type) {
  const auto found = std::ranges::find(types, type, &SelectionSummary::TypeCount::type);
  if (found == types.end()) {
    types.push_back({type, 1});
  } else {
    ++found->count;
  }
}

void join(SelectionSummary::Mlines& mlines, const db::MlineData& mline) {
  const bool isFirst = mlines.count++ == 0;
  join(mlines.style, mline.styleName, isFirst);
  join(mlines.scale, mline.scale, isFirst);
  join(mlines.justification, mline.justification, isFirst);
  join(mlines.isClosed, mline.isClosed, isFirst);
  mlines.pathLength += db::pathLength(mline);
  const auto elements = static_cast<std::size_t>(mline.elementCount());
  mlines.drawnLengths.resize(std::max(mlines.drawnLengths.size(), elements));
  for (std::size_t i = 0; i < elements; ++i) mlines.drawnLengths[i] += draw::drawnLength(mline, i);
}

}  // namespace

SelectionSummary summaryOf(const db::Database& database, const std::vector<dxf::RecordId>& entities) {
  const dxf::DrawingFile& file = database.file();
  SelectionSummary summary;
  for (const dxf::RecordId entity : entities) {
    const bool isFirst = summary.types.empty();
    const db::EntityProperties properties = db::readEntityProperties(file, entity);
    count(summary.types, file.decode(file.typeName(entity)));
    join(summary.layer, properties.layer, isFirst);
    join(summary.color, properties.color, isFirst);
    join(summary.linetype, properties.linetype, isFirst);
    join(summary.lineWeight, properties.lineWeight, isFirst);
    if (file.type(entity) == dxf::RecordType::mline) join(summary.mlines, database.mline(entity));
  }
  return summary;
}

}  // namespace torva::command
