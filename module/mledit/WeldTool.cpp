#include <algorithm>
#include <span>
#include <utility>

#include "geometry/compare.h"
#include "geometry/conversions.h"
#include "geometry/vectors.h"
#include "mledit/MlineEdit.h"
#include "mledit/MlineTool.h"
#include "mledit/PointTable.h"

#include <kdrx/ut.h>

namespace {

constexpr double kEntryTolerance = 1e-10;

// The point nearest to `p` on the segment; the foot of the square, or the end that it lies beyond.
void nearestPoint(const double* p, const double* from, const double* to, double* out) {
  const short place = gx_ptlndist(p, from, to, nullptr, out);
  if (place != 0) return;
  const bool isBefore = vexengine_distance(out, from) < vexengine_distance(out, to);
  std::copy_n(isBefore ? from : to, 3, out);
}

bool isAtVertex(const KdDbMline& mline, int vertex, int element, double* point) {
  double passed[3];
  elementPoint(mline, vertex, element, passed);
  return gx_pt_equal(point, passed);
}

bool hasParameters(const KdDbMline& mline, int segment, int element) {
  return !mline.segmentsAt(segment)[static_cast<std::size_t>(element)].elementParameters.empty();
}

// Moves the earlier position off the end of its segment, onto the next one. Only in the first half of the multiline: our own
// decision, beyond it such a position stays where it is, and the segment's last break goes as well.
void snapStart(const KdDbMline& mline, CMlineSegment& a) {
  const int next = a.origSegment + 1;
  if (next >= mline.numVertices() / 2 || !isAtVertex(mline, next, a.origElement, a.origPoint)) return;
  a.origSegment = next;
  a.origDistance = 0;
}

// Moves the later position off the start of its segment, onto the one before.
void snapEnd(const KdDbMline& mline, CMlineSegment& b) {
  if (b.origSegment == 0 || !isAtVertex(mline, b.origSegment, b.origElement, b.origPoint)) return;
  --b.origSegment;
  double start[3];
  elementPoint(mline, b.origSegment, b.origElement, start);
  b.origDistance = vexengine_distance(start, b.origPoint);
}

// A position on an element line, and whether breaks within the tolerance of it are welded as well.
struct WeldEnd {
  int segment;
  double distance;
  bool takesBreaksAtIt;
  double tolerance;

  bool isAt(double entry) const { return takesBreaksAtIt && mlineRealEqual(entry, distance, tolerance); }
};

std::ptrdiff_t firstWelded(const std::vector<double>& list, const WeldEnd& a) {
  if (list.size() > 1 && KvMath::isEqual(a.distance, list[1], kEntryTolerance)) return 1;
  const auto found =
      std::find_if(list.begin() + 1, list.end(), [&](double entry) { return entry > a.distance || a.isAt(entry); });
  return found - list.begin();
}

// The last entry that the weld takes away; 0 when there is none, as the offset always stays.
std::ptrdiff_t lastWelded(const std::vector<double>& list, const WeldEnd& b) {
  auto index = static_cast<std::ptrdiff_t>(list.size()) - 1;
  const auto isWelded = [&](double entry) { return b.distance > entry || b.isAt(entry); };
  while (index > 0 && !isWelded(list[static_cast<std::size_t>(index)])) --index;
  return index;
}

void drawWholeIfEmpty(std::vector<double>& list) {
  if (list.size() == 1) list.push_back(0);
}

void weldBehind(std::vector<double>& list, const WeldEnd& a) {
  list.erase(list.begin() + firstWelded(list, a), list.end());
  drawWholeIfEmpty(list);
}

void weldAhead(std::vector<double>& list, const WeldEnd& b) {
  const std::ptrdiff_t last = lastWelded(list, b);
  list.erase(list.begin() + 1, list.begin() + last + 1);
  if (last % 2 == 1) list.insert(list.begin() + 1, 0.0);
}

// Unlike in weldAhead(), an odd number of breaks taken away is not made up for. Our own decision: a weld between a drawn
// stretch and a gap leaves the rest of the segment the other way round.
void weldWithin(std::vector<double>& list, const WeldEnd& a, const WeldEnd& b) {
  const std::ptrdiff_t first = firstWelded(list, a), last = lastWelded(list, b);
  if (first <= last) list.erase(list.begin() + first, list.begin() + last + 1);
  drawWholeIfEmpty(list);
}

}  // namespace

int CMlineEdit::cmd_mledit_WeldAll(KdModuleHandle module) {
  return runTool(module, {.command = L"-MLEDIT WA",
                          .prompts = kStretchPrompts,
                          .acceptsFirst = &CMlineEdit::isAnythingPicked,
                          .acceptsSecond = &CMlineEdit::isPickedAgain,
                          .resolve = &CMlineEdit::mlineEditInitializeForWeldAll,
                          .edit = &CMlineEdit::weldAll});
}

bool CMlineEdit::isAnythingPicked() {
  return pickName[0] != 0 || pickName[1] != 0;
}

void CMlineEdit::weldAll() {
  for (int element = 0; element < segFirst.numElements; ++element) {
    const bool isFirstMapped = mappingToSpecifyMonglineForWeldAll(&segFirst, element, nullptr);
    if (isFirstMapped && mappingToSpecifyMonglineForWeldAll(&segSecond, element, nullptr))
      Weld_Mongline(&segFirst, &segSecond);
  }
}

void CMlineEdit::mlineEditInitializeForWeldAll(CMlineSegment* seg, long* name, CMlineSegment* other) {
  double pick[3] = {pickPoint[0], pickPoint[1], pickPoint[2]};
  uc2wc(pickPoint, pick, 0);
  openPicked(seg, name, other);
  if (!resolveWeldPick(seg, pick)) seg->segment = -1;
  seg->adoptPick();
  std::fill_n(name, 2, 0L);
}

// The first accepted in loop order wins, the closing segment being the last. A segment holds both its ends, and what lies
// beyond one by less than the tolerance belongs to that end.
bool CMlineEdit::resolveWeldPick(CMlineSegment* seg, const double* pick) {
  double pickDcs[3];
  if (vex_wcs2dcs(pick, pickDcs) != 0) return false;
  const auto isOnSegment = [&](const double* from, const double* to) {
    double foot[3], footDcs[3];
    gx_ptlndist(pick, from, to, nullptr, foot);
    return mlineRealBetween(foot[0], from[0], to[0], spaceBetween) &&
           mlineRealBetween(foot[1], from[1], to[1], spaceBetween) && vex_wcs2dcs(foot, footDcs) == 0 &&
           kdutDistance(pickDcs, footDcs) < spaceBetween;
  };
  for (int s = 0; s < seg->numVertices; ++s) {
    const int next = seg->nextVertex(s);
    for (int e = 0; next >= 0 && e < seg->ptListCount; ++e) {
      const double *from = seg->ptList[e][s], *to = seg->ptList[e][next];
      if (!isOnSegment(from, to)) continue;
      nearestPoint(pick, from, to, seg->point);
      seg->distance = vexengine_distance(from, seg->point);
      seg->segment = s;
      seg->element = e;
      return true;
    }
  }
  return false;
}

bool CMlineEdit::mappingToSpecifyMonglineForWeldAll(CMlineSegment* seg, int element, double* point) {
  const int next = seg->nextVertex(seg->segment);
  if (!seg->mline || next < 0 || !seg->hasElement(element)) return false;
  seg->adoptPick();
  const double* from = seg->ptList[element][seg->segment];
  nearestPoint(seg->point, from, seg->ptList[element][next], seg->origPoint);
  seg->origElement = element;
  seg->origDistance = vexengine_distance(from, seg->origPoint);
  if (point) std::copy_n(seg->origPoint, 3, point);
  return true;
}

bool IsPositionCutPt(CMlineSegment* seg, bool atStart, double tol) {
  if (!seg || !seg->mline) return false;
  const auto element = static_cast<std::size_t>(seg->origElement);
  const std::span<const double> list = seg->mline->segmentsAt(seg->origSegment)[element].elementParameters;
  if (list.empty()) return false;
  const double distance = seg->origDistance;
  const auto next = std::find_if(list.begin() + 1, list.end(),
                                 [=](double entry) { return entry > distance && !mlineRealEqual(entry, distance, tol); });
  const auto reached = next - list.begin() - 1;
  return (reached % 2 == 0) == atStart;
}

void CMlineEdit::Weld_Mongline(CMlineSegment* first, CMlineSegment* second) {
  KdDbMline* mline = first->mline;
  if (!mline || !second->mline || gx_pt_equal(first->origPoint, second->origPoint)) return;
  CMlineSegment *a = first, *b = second;
  if (std::pair(a->origSegment, a->origDistance) > std::pair(b->origSegment, b->origDistance)) std::swap(a, b);
  snapStart(*mline, *a);
  snapEnd(*mline, *b);
  const int element = a->origElement;
  if (a->origSegment > b->origSegment) return;
  if (!hasParameters(*mline, a->origSegment, element) || !hasParameters(*mline, b->origSegment, element)) return;

  set_SpaceBetween(&spaceBetween);
  const WeldEnd start{a->origSegment, a->origDistance, IsPositionCutPt(a, true, spaceBetween), spaceBetween};
  const WeldEnd end{b->origSegment, b->origDistance, IsPositionCutPt(b, false, spaceBetween), spaceBetween};
  setRealVector(mline, start.segment, element);
  if (start.segment == end.segment) {
    weldWithin(paramList, start, end);
    writeRealVector(mline, start.segment, element);
    return;
  }
  weldBehind(paramList, start);
  writeRealVector(mline, start.segment, element);
  setRealVector(mline, end.segment, element);
  weldAhead(paramList, end);
  writeRealVector(mline, end.segment, element);
  for (int v = start.segment + 1; v < end.segment; ++v) {
    setRealVector(mline, v, element);
    const bool isWhole = paramList.size() == 2 && paramList[1] == 0;
    if (isWhole || paramList.empty()) continue;
    paramList.resize(2);
    paramList[1] = 0;
    writeRealVector(mline, v, element);
  }
}
