#include <algorithm>
#include <array>
#include <cmath>

#include "base/numbers.h"
#include "db/database.h"
#include "db/mline_groups.h"
#include "db/mline_imp.h"
#include "db/mline_styles.h"
#include "db/new_entity.h"
#include "db/recent_mlines.h"
#include "db/record_groups.h"

namespace torva::db {

namespace {

template <class Triple>
bool isFinite(const Triple& triple) {
  return std::isfinite(triple.x) && std::isfinite(triple.y) && std::isfinite(triple.z);
}

}  // namespace

void MlineImp::enter() {
  if (!m_data) m_data = std::make_shared<MlineData>();
  // Handles of another drawing mean nothing here, names do.
  MlineData& data = own();
  if (m_origin != database()->serial()) data.styleHandle = 0;
  m_origin = 0;
  const dxf::RecordId found = style();
  data.styleHandle = found == dxf::kNoRecord ? 0 : file().handle(found);
  if (found != dxf::kNoRecord && data.styleName.empty()) data.styleName = database()->mlineStyle(found).name;

  const EntityProperties fitting = fittingProperties(*database(), properties());
  if (fitting != properties()) m_newProperties = fitting;
}

std::shared_ptr<const MlineSource> MlineImp::load() const {
  const std::shared_ptr<MlineSource> source = database()->recentMlines().source(record());
  m_data = {source, &source->data};
  m_original.reset();
  if (!file().isChanged(record())) m_original = source;
  return source;
}

void MlineImp::read() {
  const std::shared_ptr<const MlineSource> source = load();
  if (const auto& unreadable = source->unreadable) {
    const std::string name = "MLINE " + formatHandle(file().handle(record()));
    database()->note(
        {dxf::FindingCode::badNumber, file().place(*unreadable), "a value of " + name + " is no number and counts as 0"});
  }
  m_newProperties.reset();
  if (file().isChanged(record())) m_newProperties = readEntityProperties(file(), record());
}

void MlineImp::letGo() {
  m_data.reset();
  m_original.reset();
}

const MlineData& MlineImp::data() const {
  static const MlineData kNew;
  if (!m_data && database()) load();
  return m_data ? *m_data : kNew;
}

dxf::RecordText MlineImp::write() const {
  const bool isChanged = file().isChanged(record());
  const std::shared_ptr<const MlineSource> original = isChanged ? nullptr : m_original.lock();
  dxf::RecordText text =
      original ? writeMline(file(), file().bytes(record()), *original, data()) : writeMline(file(), record(), data());
  if (m_newProperties) return writeEntityProperties(file(), text.bytes(), *m_newProperties);
  // What the record says now is kept by nobody once it says something else; only what the file says stays.
  if (isChanged) (void)text.bytes();
  return text;
}

MlineData& MlineImp::change() {
  touch();
  return own();
}

MlineData& MlineImp::own() {
  const MlineData& present = data();
  // What the record says stays as it is, also when nobody else looks at it now: the writer compares with it.
  const bool isOriginal = !m_data.owner_before(m_original) && !m_original.owner_before(m_data);
  if (m_data.use_count() == 1 && !isOriginal) return *m_data;
  auto copy = std::make_shared<MlineData>();
  copy->vertices.reserve(present.vertices.size() + 1);  // an edit often adds one
  *copy = present;
  m_data = std::move(copy);
  return *m_data;
}

EntityProperties MlineImp::properties() const {
  if (m_newProperties) return *m_newProperties;
  return database() ? readEntityProperties(file(), record()) : EntityProperties();
}

void MlineImp::setProperties(EntityProperties properties) {
  touch();
  m_newProperties = std::move(properties);
}

void MlineImp::copyFrom(const MlineImp& source) {
  const std::uint32_t from = source.database() ? source.database()->serial() : source.m_origin;
  touch();
  (void)source.data();
  m_data = source.m_data;
  if (EntityProperties properties = source.properties(); properties != this->properties()) m_newProperties = properties;
  m_origin = from;
  if (database() && from != database()->serial()) enter();
}

dxf::RecordId MlineImp::style() const {
  const Database* const database = context();
  if (!database) return dxf::kNoRecord;
  const bool hasOwnHandles = this->database() || m_origin == database->serial();
  return mlineStyleOf(*database, hasOwnHandles ? data().styleHandle : 0, data().styleName);
}

MlineShape MlineImp::shape() const {
  const dxf::RecordId record = style();
  return shapeOf(data(), record == dxf::kNoRecord ? std::nullopt : std::optional(context()->mlineStyle(record)));
}

void MlineImp::restyle() {
  const dxf::RecordId record = style();
  if (record != dxf::kNoRecord) db::restyle(own(), context()->mlineStyle(record));
}

void MlineImp::setStyle(dxf::RecordId style) {
  MlineData& data = change();
  data.styleHandle = context()->file().handle(style);
  data.styleName = context()->mlineStyle(style).name;
  if (!database()) m_origin = context()->serial();
  restyle();
}

bool MlineImp::appendSegments(const std::vector<KdGePoint3d>& points) {
  if (!isWritable() || points.size() != data().vertices.size() || !std::ranges::all_of(points, isFinite<KdGePoint3d>))
    return false;
  MlineData& data = change();
  for (std::size_t i = 0; i < points.size(); ++i) data.vertices[i].position = points[i];
  return true;
}

bool MlineImp::appendSeg(const std::vector<KdGeVector3d>& vectors, int selector) {
  if (selector != kAxes && selector != kMiters) return false;
  if (!isWritable() || vectors.size() != data().vertices.size() || !std::ranges::all_of(vectors, isFinite<KdGeVector3d>)) {
    return false;
  }
  MlineData& data = change();
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    (selector == kAxes ? data.vertices[i].axis : data.vertices[i].miter) = vectors[i];
  }
  return true;
}

}  // namespace torva::db

using torva::db::MlineImp;
using torva::db::MlineVertex;

namespace {

MlineImp& impOf(const KdDbMline& mline) {
  return static_cast<MlineImp&>(*KdDbSystemInternals::getImpObject(&mline));
}

const MlineVertex* vertexOf(const KdDbMline& mline, int index) {
  const std::vector<MlineVertex>& vertices = impOf(mline).data().vertices;
  return index >= 0 && index < static_cast<int>(vertices.size()) ? &vertices[static_cast<std::size_t>(index)] : nullptr;
}

bool areFinite(std::span<const double> values) {
  return std::ranges::all_of(values, [](double value) { return std::isfinite(value); });
}

bool isFinite(const KdMLSegments& elements) {
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const KdMLSegmentView lists = elements[i];
    if (!areFinite(lists.elementParameters) || !areFinite(lists.areaFillParameters)) return false;
  }
  return true;
}

bool isFinite(const KdMlineVertex& vertex) {
  using torva::db::isFinite;
  return isFinite(vertex.position) && isFinite(vertex.axis) && isFinite(vertex.miter) && ::isFinite(vertex.elements);
}

/// Sets one value of a multiline that may be changed.
template <class Member, class Value>
KdStatus set(const KdDbMline& mline, Member member, const Value& value) {
  MlineImp& imp = impOf(mline);
  if (!imp.isWritable()) return KdStatus::notOpen;
  imp.change().*member = value;
  return KdStatus::ok;
}

/// The same for a value on which the lists depend.
template <class Member, class Value>
KdStatus setShaping(const KdDbMline& mline, Member member, const Value& value) {
  MlineImp& imp = impOf(mline);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (imp.data().*member == value) return KdStatus::ok;
  imp.change().*member = value;
  imp.restyle();
  return KdStatus::ok;
}

KdStatus setList(const KdDbMline& mline, int vertex, int element, std::span<const double> KdMLSegmentView::*list,
                 std::span<const double> values) {
  MlineImp& imp = impOf(mline);
  const auto index = static_cast<std::size_t>(element);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (element < 0 || index >= mline.segmentsAt(vertex).size()) return KdStatus::invalidIndex;
  if (!areFinite(values)) return KdStatus::invalidInput;
  KdMLSegments& changed = imp.change().vertices[static_cast<std::size_t>(vertex)].elements;
  KdMLSegmentView lists = changed[index];
  lists.*list = values;
  changed.set(index, lists);
  return KdStatus::ok;
}

}  // namespace

KdDbMlineImp* KdDbMlineImp::of(KdDbObjectImp* imp) {
  return imp ? imp->mline() : nullptr;
}

KdDbMline::KdDbMline() : KdDbEntity(std::make_unique<MlineImp>()) {}
KdDbMline::~KdDbMline() = default;

int KdDbMline::numVertices() const {
  return static_cast<int>(impOf(*this).data().vertices.size());
}

KdGePoint3d KdDbMline::vertexAt(int index) const {
  const MlineVertex* vertex = vertexOf(*this, index);
  return vertex ? vertex->position : KdGePoint3d();
}

KdGeVector3d KdDbMline::axisAt(int index) const {
  const MlineVertex* vertex = vertexOf(*this, index);
  return vertex ? vertex->axis : KdGeVector3d();
}

KdGeVector3d KdDbMline::miterAt(int index) const {
  const MlineVertex* vertex = vertexOf(*this, index);
  return vertex ? vertex->miter : KdGeVector3d();
}

std::span<const KdMlineVertex> KdDbMline::vertices() const {
  return impOf(*this).data().vertices;
}

KdStatus KdDbMline::setVertexAt(int index, KdMlineVertex vertex) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (!vertexOf(*this, index)) return KdStatus::invalidIndex;
  if (!isFinite(vertex)) return KdStatus::invalidInput;
  imp.change().vertices[static_cast<std::size_t>(index)] = std::move(vertex);
  return KdStatus::ok;
}

KdStatus KdDbMline::insertVertexAt(int index, KdMlineVertex vertex) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (index < 0 || index > numVertices()) return KdStatus::invalidIndex;
  if (!isFinite(vertex)) return KdStatus::invalidInput;
  std::vector<MlineVertex>& vertices = imp.change().vertices;
  vertices.insert(vertices.begin() + index, std::move(vertex));
  return KdStatus::ok;
}

KdStatus KdDbMline::removeVerticesAt(int index, int count) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (index < 0 || count < 0 || count > numVertices() - index) return KdStatus::invalidIndex;
  std::vector<MlineVertex>& vertices = imp.change().vertices;
  vertices.erase(vertices.begin() + index, vertices.begin() + index + count);
  return KdStatus::ok;
}

KdStatus KdDbMline::getParametersAt(int index, std::vector<std::vector<KdMLSegment>>& parameters) const {
  const MlineVertex* vertex = vertexOf(*this, index);
  if (!vertex) return KdStatus::invalidIndex;
  parameters.assign(1, vertex->elements.toVector());
  return KdStatus::ok;
}

KdStatus KdDbMline::setParametersAt(int index, const std::vector<std::vector<KdMLSegment>>& parameters) {
  if (!impOf(*this).isWritable()) return KdStatus::notOpen;
  if (!vertexOf(*this, index)) return KdStatus::invalidIndex;
  return parameters.empty() ? KdStatus::invalidInput : setSegmentsAt(index, parameters.front());
}

const KdMLSegments& KdDbMline::segmentsAt(int index) const {
  static const KdMLSegments kNone;
  const MlineVertex* vertex = vertexOf(*this, index);
  return vertex ? vertex->elements : kNone;
}

KdStatus KdDbMline::setSegmentsAt(int index, const KdMLSegments& segments) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (!vertexOf(*this, index)) return KdStatus::invalidIndex;
  if (!isFinite(segments)) return KdStatus::invalidInput;
  imp.change().vertices[static_cast<std::size_t>(index)].elements = segments;
  return KdStatus::ok;
}

KdStatus KdDbMline::setElementParametersAt(int vertex, int element, std::span<const double> values) {
  return setList(*this, vertex, element, &KdMLSegmentView::elementParameters, values);
}

KdStatus KdDbMline::setAreaFillParametersAt(int vertex, int element, std::span<const double> values) {
  return setList(*this, vertex, element, &KdMLSegmentView::areaFillParameters, values);
}

KdStatus KdDbMline::appendSeg(const KdGePoint3d& point) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (!torva::db::isFinite(point)) return KdStatus::invalidInput;
  const torva::db::MlineShape shape = imp.shape();
  torva::db::appendVertex(imp.change(), point, shape);
  return KdStatus::ok;
}

KdStatus KdDbMline::removeLastSeg(KdGePoint3d& lastVertex) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (imp.data().vertices.empty()) return KdStatus::invalidIndex;
  const torva::db::MlineShape shape = imp.shape();
  lastVertex = imp.data().vertices.back().position;
  torva::db::removeLastVertex(imp.change(), shape);
  return KdStatus::ok;
}

bool KdDbMline::closedMline() const {
  return impOf(*this).data().isClosed;
}

KdStatus KdDbMline::setClosedMline(bool isClosed) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (imp.data().isClosed == isClosed) return KdStatus::ok;
  const torva::db::MlineShape shape = imp.shape();
  torva::db::setClosed(imp.change(), isClosed, shape);
  return KdStatus::ok;
}

bool KdDbMline::supressStartCaps() const {
  return impOf(*this).data().suppressesStartCaps;
}

KdStatus KdDbMline::setSupressStartCaps(bool isSuppressed) {
  return set(*this, &torva::db::MlineData::suppressesStartCaps, isSuppressed);
}

bool KdDbMline::supressEndCaps() const {
  return impOf(*this).data().suppressesEndCaps;
}

KdStatus KdDbMline::setSupressEndCaps(bool isSuppressed) {
  return set(*this, &torva::db::MlineData::suppressesEndCaps, isSuppressed);
}

KdGeVector3d KdDbMline::normal() const {
  return impOf(*this).data().normal;
}

KdStatus KdDbMline::setNormal(const KdGeVector3d& normal) {
  if (!torva::db::isFinite(normal) || normal.isZeroLength()) return KdStatus::invalidInput;
  return set(*this, &torva::db::MlineData::normal, normal.normal());
}

double KdDbMline::scale() const {
  return impOf(*this).data().scale;
}

KdStatus KdDbMline::setScale(double scale) {
  return std::isfinite(scale) ? setShaping(*this, &torva::db::MlineData::scale, scale) : KdStatus::invalidInput;
}

KdMlineJustification KdDbMline::justification() const {
  return impOf(*this).data().justification;
}

KdStatus KdDbMline::setJustification(KdMlineJustification justification) {
  return setShaping(*this, &torva::db::MlineData::justification, justification);
}

KdDbObjectId KdDbMline::style() const {
  const MlineImp& imp = impOf(*this);
  const torva::dxf::RecordId record = imp.style();
  return record == torva::dxf::kNoRecord ? KdDbObjectId() : imp.context()->idOf(record);
}

KdStatus KdDbMline::setStyle(KdDbObjectId style) {
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (style.isNull()) return KdStatus::nullObjectId;
  const torva::db::Database* database = imp.context();
  const torva::dxf::RecordId record = database ? database->recordOf(style) : torva::dxf::kNoRecord;
  if (record == torva::dxf::kNoRecord) return KdStatus::unknownObjectId;
  if (database->file().type(record) != torva::dxf::RecordType::mlineStyle) return KdStatus::wrongClass;
  imp.setStyle(record);
  return KdStatus::ok;
}

KdStatus KdDbMline::copyFrom(const KdDbObject* source) {
  if (!source) return KdStatus::nullPointer;
  if (!source->isKindOf(desc())) return KdStatus::wrongClass;
  MlineImp& imp = impOf(*this);
  if (!imp.isWritable()) return KdStatus::notOpen;
  if (source != this) imp.copyFrom(impOf(static_cast<const KdDbMline&>(*source)));
  return KdStatus::ok;
}
