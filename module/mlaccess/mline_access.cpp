#include "mlaccess/mline_access.h"

#include <algorithm>
#include <span>
#include <vector>

#include <kdrx/db_mline_imp.h>

namespace {

using ParameterList = std::span<const double> KdMLSegmentView::*;
constexpr ParameterList kLine = &KdMLSegmentView::elementParameters;
constexpr ParameterList kArea = &KdMLSegmentView::areaFillParameters;

// The list at clamped indices; empty also when the vertex has no such element.
std::span<const double> listAt(const KdDbMline* mline, int vertex, int element, ParameterList list) {
  int elements = 0;
  GetSegmentsSize(mline, &elements);
  if (elements == 0) return {};
  vertex = std::clamp(vertex, 0, mline->numVertices() - 1);
  element = std::clamp(element, 0, elements - 1);
  return mline->segmentsAt(vertex)[static_cast<std::size_t>(element)].*list;
}

int countAt(const KdDbMline* mline, int* count, int vertex, int element, ParameterList list) {
  if (!mline || !count) return 0;
  *count = static_cast<int>(listAt(mline, vertex, element, list).size());
  return 1;
}

int copyList(const KdDbMline* mline, double* out, int capacity, int vertex, int element, ParameterList list) {
  if (!mline || !out) return 0;
  const std::span<const double> values = listAt(mline, vertex, element, list);
  if (values.empty()) return 1;
  if (capacity < 0 || values.size() > static_cast<std::size_t>(capacity)) return 0;
  std::ranges::copy(values, out);
  return 1;
}

int replaceList(KdDbMline* mline, std::span<const double> values, int vertex, int element, ParameterList list) {
  int elements = 0;
  GetSegmentsSize(mline, &elements);
  if (element >= elements) return 0;
  const auto set = list == kLine ? &KdDbMline::setElementParametersAt : &KdDbMline::setAreaFillParametersAt;
  return (mline->*set)(vertex, element, values) == KdStatus::ok ? 1 : 0;
}

int replaceByZeros(KdDbMline* mline, int count, int vertex, int element, ParameterList list) {
  if (!mline || count < 0) return 0;
  return replaceList(mline, std::vector<double>(static_cast<std::size_t>(count)), vertex, element, list);
}

// Both lists are filled by the length of the element parameters; see SetAreaArray().
int replaceByValues(KdDbMline* mline, const double* values, int vertex, int element, ParameterList list) {
  int count = 0;
  if (!values || !GetNumLine(mline, &count, vertex, element) || count == 0) return 0;
  return replaceList(mline, {values, values + count}, vertex, element, list);
}

void store(const KdGePoint3d& point, double out[3]) {
  out[0] = point.x;
  out[1] = point.y;
  out[2] = point.z;
}

void store(const KdGeVector3d& vector, double out[3]) {
  out[0] = vector.x;
  out[1] = vector.y;
  out[2] = vector.z;
}

template <class Value>
int copyPerVertex(const KdDbMline* mline, double (*out)[3], Value (KdDbMline::*at)(int) const) {
  if (!mline || !out) return 0;
  for (int i = 0; i < mline->numVertices(); ++i) store((mline->*at)(i), out[i]);
  return 1;
}

template <class Value>
std::vector<Value> collectPerVertex(const KdDbMline* mline, const double (*values)[3]) {
  std::vector<Value> all;
  const int n = mline->numVertices();
  all.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) all.push_back({values[i][0], values[i][1], values[i][2]});
  return all;
}

KdDbMlineImp* internals(KdDbMline* mline) {
  return KdDbMlineImp::of(KdDbSystemInternals::getImpObject(mline));
}

int replaceVectors(KdDbMline* mline, const double (*vectors)[3], KdDbMlineImp::Selector selector) {
  if (!mline || !vectors) return 0;
  KdDbMlineImp* imp = internals(mline);
  return imp && imp->appendSeg(collectPerVertex<KdGeVector3d>(mline, vectors), selector) ? 1 : 0;
}

bool setIfDifferent(KdDbMline* mline, bool wanted, bool current, KdStatus (KdDbMline::*set)(bool)) {
  return wanted == current || (mline->*set)(wanted) == KdStatus::ok;
}

}  // namespace

int GetFlag(const KdDbMline* mline, int* flags) {
  if (!mline || !flags) return 0;
  *flags = (mline->numVertices() > 0 ? kMlineHasVertices : 0) | (mline->closedMline() ? kMlineIsClosed : 0) |
           (mline->supressStartCaps() ? kMlineStartCapsSuppressed : 0) |
           (mline->supressEndCaps() ? kMlineEndCapsSuppressed : 0);
  return 1;
}

int SetFlag(KdDbMline* mline, int flags) {
  if (!mline) return 0;
  const bool isClosed = mline->closedMline();
  const bool shallBeClosed = mline->numVertices() > 2 ? (flags & kMlineIsClosed) != 0 : isClosed;
  const bool isDone =
      setIfDifferent(mline, shallBeClosed, isClosed, &KdDbMline::setClosedMline) &&
      setIfDifferent(mline, (flags & kMlineStartCapsSuppressed) != 0, mline->supressStartCaps(),
                     &KdDbMline::setSupressStartCaps) &&
      setIfDifferent(mline, (flags & kMlineEndCapsSuppressed) != 0, mline->supressEndCaps(), &KdDbMline::setSupressEndCaps);
  return isDone ? 1 : 0;
}

int SetNumVertices(KdDbMline* mline, int n) {
  if (!mline || n < 2) return 0;
  for (int excess = mline->numVertices() - n; excess > 0; --excess) {
    KdGePoint3d removed;
    if (mline->removeLastSeg(removed) != KdStatus::ok) return 0;
  }
  for (int missing = n - mline->numVertices(); missing > 0; --missing) {
    if (mline->appendSeg({0, 0, 0}) != KdStatus::ok) return 0;
  }
  return 1;
}

int GetVertices(const KdDbMline* mline, double (*points)[3]) {
  return copyPerVertex(mline, points, &KdDbMline::vertexAt);
}

int SetVertices(KdDbMline* mline, const double (*points)[3]) {
  if (!mline || !points) return 0;
  KdDbMlineImp* imp = internals(mline);
  return imp && imp->appendSegments(collectPerVertex<KdGePoint3d>(mline, points)) ? 1 : 0;
}

int GetAxis(const KdDbMline* mline, double (*vectors)[3]) {
  return copyPerVertex(mline, vectors, &KdDbMline::axisAt);
}

int SetAxis(KdDbMline* mline, const double (*vectors)[3]) {
  return replaceVectors(mline, vectors, KdDbMlineImp::kAxes);
}

int GetMilters(const KdDbMline* mline, double (*vectors)[3]) {
  return copyPerVertex(mline, vectors, &KdDbMline::miterAt);
}

int SetMilters(KdDbMline* mline, const double (*vectors)[3]) {
  return replaceVectors(mline, vectors, KdDbMlineImp::kMiters);
}

int GetSegmentsSize(const KdDbMline* mline, int* size) {
  if (!mline || !size) return 0;
  *size = static_cast<int>(mline->segmentsAt(0).size());
  return 1;
}

int SetSegmentsSize(KdDbMline* mline, int n) {
  if (!mline || n < 1) return 0;
  std::vector<std::vector<KdMLSegment>> parameters;
  for (int vertex = 0; vertex < mline->numVertices(); ++vertex) {
    if (mline->getParametersAt(vertex, parameters) != KdStatus::ok) return 0;
    parameters.resize(1);
    parameters.front().resize(static_cast<std::size_t>(n));
    if (mline->setParametersAt(vertex, parameters) != KdStatus::ok) return 0;
  }
  return 1;
}

int GetNumLine(const KdDbMline* mline, int* count, int vertex, int element) {
  return countAt(mline, count, vertex, element, kLine);
}

int SetNumLine(KdDbMline* mline, int count, int vertex, int element) {
  return replaceByZeros(mline, count, vertex, element, kLine);
}

int GetLineArray(const KdDbMline* mline, double* values, int capacity, int vertex, int element) {
  return copyList(mline, values, capacity, vertex, element, kLine);
}

int SetLineArray(KdDbMline* mline, const double* values, int vertex, int element) {
  return replaceByValues(mline, values, vertex, element, kLine);
}

int GetNumArea(const KdDbMline* mline, int* count, int vertex, int element) {
  return countAt(mline, count, vertex, element, kArea);
}

int SetNumArea(KdDbMline* mline, int count, int vertex, int element) {
  return replaceByZeros(mline, count, vertex, element, kArea);
}

int GetAreaArray(const KdDbMline* mline, double* values, int capacity, int vertex, int element) {
  return copyList(mline, values, capacity, vertex, element, kArea);
}

int SetAreaArray(KdDbMline* mline, const double* values, int vertex, int element) {
  return replaceByValues(mline, values, vertex, element, kArea);
}

int GetMlStyle(const KdDbMline* mline, KdDbMlineStyle** style) {
  if (!mline || !style) return 0;
  KdDbMlineStyle* opened = nullptr;
  if (kddbOpenObject(opened, mline->style(), KdOpenMode::forRead) == KdStatus::ok) *style = opened;
  return 1;
}

int GetNormal(const KdDbMline* mline, double normal[3]) {
  if (!mline || !normal) return 0;
  store(mline->normal(), normal);
  return 1;
}
