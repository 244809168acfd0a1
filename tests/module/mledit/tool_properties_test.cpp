#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "command/command_preview.h"
#include "module/mledit/random_drawing.h"

namespace {

using torva::dxf::Handle;

const std::set<Handle> kNone;

struct Tool {
  std::string name;
  bool isOneOf(const std::string& names) const { return names.find(name) != std::string::npos; }
  bool hasOnePick = isOneOf("AV DV"), isOnOne = isOneOf("CS CA WA"), isJoint = isOneOf("CT OT MT CJ");
};

Tool anyTool() {
  return {*rc::gen::element("CC", "OC", "MC", "CT", "OT", "MT", "CJ", "AV", "DV", "CS", "CA", "WA")};
}

RC_GTEST_PROP(ToolProperties, TheHostDrawsAMultilineWhereItsElementsRun, ()) {
  RandomDrawing drawing(*frames({kUp, kDown, kTilted}));
  const Wall wall(drawing, *mlines(drawing.frame()));
  RC_ASSERT(drawing.inkOf(wall.handle, wall.sketch) == wall.ink);
}

RC_GTEST_PROP(ToolProperties, ACutRemovesItsStretchAndAWeldDrawsItAgain, ()) {
  RandomDrawing drawing(*frames({kUp, kDown}));
  const Wall wall(drawing, *mlines(drawing.frame()));
  const auto before = drawing.records();
  const Spot a = *spots(wall.sketch, drawing.frame()), b = *spots(wall.sketch, drawing.frame());
  const std::string tool = *rc::gen::element("CS", "CA"), picks = wall.pick(a) + wall.pick(b);
  Ink cut = wall.ink;
  for (int e = 0; e < wall.sketch.elements(); ++e) {
    if (tool == "CS" && e != a.element) continue;
    const Spot from = wall.sketch.carried(a, e), to = wall.sketch.carried(b, e);
    // A weld does not see a gap within its pick tolerance.
    const double gap = std::abs(to.along - from.along);
    RC_PRE(from.segment != to.segment || gap == 0 || gap > drawing.frame().unit());
    // Nor does it draw a segment of which nothing is left where it ends with that segment.
    const Spot& later = std::pair(from.segment, from.along) < std::pair(to.segment, to.along) ? to : from;
    RC_PRE(from.segment == to.segment || later.along < wall.sketch.length(e, later.segment));
    cut.remove(wall.sketch, from, to);
  }
  drawing.mledit(tool, picks);
  RC_ASSERT(drawing.inkOf(wall.handle, wall.sketch) == cut);
  drawing.mledit("WA", picks);
  RC_ASSERT(drawing.inkOf(wall.handle, wall.sketch) == wall.ink);
  RC_ASSERT(drawing.changedSince(before) == kNone);
}

RC_GTEST_PROP(ToolProperties, ACrossEndsEveryLineOnTheLineThatItMeets, ()) {
  RandomDrawing drawing(*frames({kUp, kDown}));
  CrossingPair pair(drawing);
  for (Wall* wall : {&pair.first, &pair.second}) {
    if (*rc::gen::arbitrary<bool>()) continue;
    const Spot a = *spots(wall->sketch, drawing.frame()), b = *spots(wall->sketch, drawing.frame());
    drawing.mledit("CS", wall->pick(a) + wall->pick(b));
    wall->ink.remove(wall->sketch, a, wall->sketch.carried(b, a.element));
  }
  RC_PRE(pair.first.ink.covers(pair.onFirst) && pair.second.ink.covers(pair.onSecond));

  const std::string tool = *rc::gen::element("CC", "OC", "MC");
  const int m = pair.first.sketch.elements(), n = pair.second.sketch.elements();
  for (int i = 0; i < m; ++i) {
    const int depth = tool == "MC" ? std::min({i, m - 1 - i, (n - 1) / 2}) : 0;
    pair.openFirst(i, depth, n - 1 - depth);
  }
  for (int j = 0; j < n && tool != "CC"; ++j) {
    const int depth = std::min({j, n - 1 - j, (m - 1) / 2});
    if (tool == "MC" || j == 0 || j == n - 1) pair.openSecond(j, depth, m - 1 - depth);
  }
  drawing.mledit(tool, pair.picks());
  for (const Wall* wall : {&pair.first, &pair.second}) RC_ASSERT(drawing.inkOf(wall->handle, wall->sketch) == wall->ink);
}

// With the normal (0, 0, -1) the vertex tools put the elements on the other side: our own decision, as elsewhere.
RC_GTEST_PROP(ToolProperties, AVertexAddedAndDeletedChangesNoLine, ()) {
  RandomDrawing drawing(*frames({kUp}));
  const Wall wall(drawing, *mlines(drawing.frame()));
  const RandomMline& sketch = wall.sketch;
  const int segment = *between(0, sketch.segments() - 1), element = *between(0, sketch.elements() - 1);
  // Where all elements run side by side, by the distance from the picked one's corner.
  double from = 0, to = sketch.length(element, segment);
  for (int e = 0; e < sketch.elements(); ++e) {
    from = std::max(from, sketch.along(element, segment, sketch.corner(e, segment)));
    to = std::min(to, sketch.along(element, segment, sketch.corner(e, segment + 1)));
  }
  const double margin = 0.15 * drawing.frame().size;
  Spot spot{element, segment, from + margin + (to - from - 2 * margin) * *between(0, 1000) / 1000};
  drawing.mledit("AV", wall.pick(spot));
  RC_ASSERT(drawing.mline(wall.handle).vertices.size() == sketch.path.size() + 1);
  RC_ASSERT(drawing.inkOf(wall.handle, sketch) == wall.ink);
  spot.along -= margin / 8;
  drawing.mledit("DV", wall.pick(spot));
  RC_ASSERT(drawing.mline(wall.handle).vertices.size() == sketch.path.size());
  RC_ASSERT(drawing.inkOf(wall.handle, sketch) == wall.ink);
}

// Element 0 runs on the path, as directions are taken from it. The distances are measured at vertex 0 against the first
// segment, which is another one when vertex 1 goes; and without its last vertex a closed path keeps the miter of vertex 0.
RC_GTEST_PROP(ToolProperties, WithoutAVertexTheRestIsDrawnAnew, ()) {
  RandomDrawing drawing(*frames({kUp}));
  RandomMline sketch = *mlines(drawing.frame());
  sketch.justification = KdMlineJustification::top;
  const Wall wall(drawing, sketch);
  const int vertex = *between(0, sketch.vertices() - 1);
  RC_PRE(sketch.vertices() > (sketch.isClosed ? 3 : 2) && vertex != 1);
  RC_PRE(!sketch.isClosed || vertex + 1 < sketch.vertices());
  const int segment = std::max(vertex - 1, 0);
  const double share = vertex == 0 ? 0.3 : 0.7;
  drawing.mledit("DV", wall.pick({0, segment, share * sketch.length(0, segment)}));
  sketch.path.erase(sketch.path.begin() + vertex);
  RC_ASSERT(drawing.inkOf(wall.handle, sketch) == wholeInk(sketch, drawing.frame().tolerance()));
}

RC_GTEST_PROP(ToolProperties, AnEditTouchesNothingElseReadsBackEqualAndIsUndone, ()) {
  RandomDrawing drawing(*frames({kUp, kDown, kTilted}));
  const Tool tool = anyTool();
  // The tees and the corner refuse closed multilines and ask for another one.
  const auto made = tool.isJoint ? rc::gen::map(mlines(drawing.frame()), opened) : mlines(drawing.frame());
  const CrossingPair pair{drawing, *made, *made};
  const Wall bystander(drawing, *made);
  const auto anyPick = [&](const Wall& wall) { return wall.pick(*spots(wall.sketch, drawing.frame())); };
  const auto anyPicks = [&](const Wall& a, const Wall& b) {
    const std::string first = anyPick(a);
    return first + anyPick(b);
  };
  const auto anyEdit = [&] {
    if (tool.hasOnePick) return anyPick(pair.first);
    const bool isWithItself = tool.isOnOne || *rc::gen::arbitrary<bool>();
    return anyPicks(pair.first, isWithItself ? pair.first : pair.second);
  };
  if (*rc::gen::arbitrary<bool>()) drawing.mledit("CA", anyPicks(pair.first, pair.first));
  const auto before = drawing.records();
  const std::string edit = tool.hasOnePick || tool.isOnOne || *rc::gen::arbitrary<bool>() ? anyEdit() : pair.picks();

  drawing.mledit(tool.name, edit + "undo\n");
  RC_ASSERT(drawing.changedSince(before) == kNone);
  drawing.mledit(tool.name, edit);
  const auto edited = drawing.records();
  std::set<Handle> changed = drawing.changedSince(before);
  RC_CLASSIFY(!changed.empty(), tool.name);
  for (const Handle handle : changed) RC_ASSERT(drawing.readsBackEqual(handle));

  if (!changed.empty()) drawing.editor().database().undo();
  RC_ASSERT(drawing.changedSince(before) == kNone);
  drawing.mledit(tool.name, edit + anyEdit() + "undo\n");
  RC_ASSERT(drawing.changedSince(edited) == kNone);

  changed.erase(pair.first.handle);
  if (!tool.hasOnePick && !tool.isOnOne && !tool.isOneOf("CC CT")) changed.erase(pair.second.handle);
  RC_ASSERT(changed == kNone);
}

// The points of all that entities draw, in order.
std::vector<KdGePoint3d> pointsOf(const torva::draw::DisplayList& list) {
  std::vector<KdGePoint3d> points;
  for (const auto& primitive : list.primitives) {
    const auto* polyline = std::get_if<torva::draw::Polyline>(&primitive.shape);
    if (polyline) points.insert(points.end(), polyline->points.begin(), polyline->points.end());
  }
  return points;
}

RC_GTEST_PROP(ToolProperties, APreviewShowsWhatTheEditMakesAndChangesNothing, ()) {
  RandomDrawing drawing(*frames({kUp, kDown}));
  const CrossingPair pair{drawing, opened(*mlines(drawing.frame())), opened(*mlines(drawing.frame()))};
  const Tool tool = anyTool();
  const Spot first = pair.onFirst, second = tool.isOnOne ? *spots(pair.first.sketch, drawing.frame()) : pair.onSecond;
  const Wall& other = tool.isOnOne || tool.hasOnePick ? pair.first : pair.second;
  const Spot& last = tool.hasOnePick ? first : second;

  torva::db::Database& database = drawing.editor().database();
  const auto recordOf = [&](const Wall& wall) { return database.file().find(wall.handle); };
  std::vector<torva::command::EntityPick> picks;
  if (!tool.hasOnePick) picks.push_back({recordOf(pair.first), pair.first.sketch.pointOf(first)});
  const auto before = drawing.records();
  const auto preview = commandPreview(drawing.editor(), L"-MLEDIT " + std::wstring(tool.name.begin(), tool.name.end()),
                                      picks, std::chrono::hours(1));
  const auto shown = pointsOf(preview({other.sketch.pointOf(last), recordOf(other)}));
  RC_ASSERT(drawing.changedSince(before) == kNone);

  drawing.mledit(tool.name, (tool.hasOnePick ? "" : pair.first.pick(first)) + other.pick(last));
  torva::draw::DisplayList list;
  for (const Wall* wall : {&pair.first, &pair.second}) {
    if (wall == &pair.first || wall == &other) drawing.editor().picker().drawer().drawShapes(recordOf(*wall), list);
  }
  const auto made = drawing.changedSince(before) == kNone ? std::vector<KdGePoint3d>() : pointsOf(list);
  RC_CLASSIFY(!made.empty(), tool.name);
  RC_ASSERT(shown.size() == made.size());
  for (std::size_t i = 0; i < made.size(); ++i) RC_ASSERT(shown[i].isEqualTo(made[i]));
}

}  // namespace
