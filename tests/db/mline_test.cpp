#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <numbers>

#include "db/mline_data.h"
#include "db/plan.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_imp.h>

namespace torva::test {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

constexpr double kRounding = 1e-12;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<double> listAt(const KdDbMline& mline, int vertex, int element) {
  const auto list = mline.segmentsAt(vertex)[static_cast<std::size_t>(element)].elementParameters;
  return {list.begin(), list.end()};
}

void setList(KdDbMline& mline, int vertex, int element, const std::vector<double>& values) {
  std::vector<std::vector<KdMLSegment>> parameters;
  ASSERT_EQ(mline.getParametersAt(vertex, parameters), KdStatus::ok);
  parameters[0][static_cast<std::size_t>(element)].elementParameters = values;
  ASSERT_EQ(mline.setParametersAt(vertex, parameters), KdStatus::ok);
}

class MlineTest : public PlanTest {
 protected:
  void draw(KdDbMline& mline, std::initializer_list<KdGePoint3d> path) {
    for (const KdGePoint3d& point : path) ASSERT_EQ(mline.appendSeg(point), KdStatus::ok);
  }
};

auto near(const std::vector<double>& values) {
  return Pointwise(testing::DoubleNear(kRounding), values);
}

TEST_F(MlineTest, AppendedVerticesFollowStyleAndPath) {
  KdDbMline mline;
  draw(mline, {{0, 0, 0}, {10, 0, 0}, {10, 20, 0}});
  const double h = std::sqrt(0.5);
  EXPECT_TRUE(mline.axisAt(0).isEqualTo({1, 0, 0}));
  EXPECT_TRUE(mline.axisAt(1).isEqualTo({0, 1, 0}));
  EXPECT_TRUE(mline.axisAt(2).isEqualTo({0, 1, 0}));
  EXPECT_TRUE(mline.miterAt(0).isEqualTo({0, 1, 0}));
  EXPECT_TRUE(mline.miterAt(1).isEqualTo({-h, h, 0}));
  EXPECT_TRUE(mline.miterAt(2).isEqualTo({-1, 0, 0}));
  for (const int vertex : {0, 2}) {
    EXPECT_THAT(listAt(mline, vertex, 0), near({0.5, 0}));
    EXPECT_THAT(listAt(mline, vertex, 1), near({-0.5, 0}));
  }
  EXPECT_THAT(listAt(mline, 1, 0), near({0.5 / h, 0}));
  EXPECT_EQ(mline.segmentsAt(0).size(), 2u);
  for (const int vertex : {3, -1}) EXPECT_TRUE(mline.segmentsAt(vertex).empty());
}

TEST_F(MlineTest, JustificationAndScaleMoveTheElements) {
  const struct {
    KdMlineJustification justification;
    double scale;
    std::vector<double> distances;
  } cases[] = {
      {KdMlineJustification::top, 1, {0, -1}},     {KdMlineJustification::zero, 1, {0.5, -0.5}},
      {KdMlineJustification::bottom, 1, {1, 0}},   {KdMlineJustification::top, -1, {0, 1}},
      {KdMlineJustification::zero, 20, {10, -10}}, {KdMlineJustification::bottom, 0, {0, 0}},
  };
  for (const bool isDrawnFirst : {true, false}) {
    for (const auto& row : cases) {
      KdDbMline mline;
      if (isDrawnFirst) draw(mline, {{0, 0, 0}, {100, 0, 0}});
      EXPECT_EQ(mline.setJustification(row.justification), KdStatus::ok);
      EXPECT_EQ(mline.setScale(row.scale), KdStatus::ok);
      if (!isDrawnFirst) draw(mline, {{0, 0, 0}, {100, 0, 0}});
      for (int element = 0; element < 2; ++element) {
        const double distance = row.distances[static_cast<std::size_t>(element)];
        EXPECT_THAT(listAt(mline, 0, element), near({distance, 0}))
            << static_cast<int>(row.justification) << ' ' << row.scale;
      }
    }
  }
}

TEST_F(MlineTest, OpenEndsAreTurnedByTheStylesAngles) {
  KdDbMline mline;
  ASSERT_EQ(mline.setStyle(id(0x19)), KdStatus::ok);
  EXPECT_EQ(mline.setJustification(KdMlineJustification::zero), KdStatus::ok);
  draw(mline, {{0, 0, 0}, {100, 0, 0}});
  const double degree = std::numbers::pi / 180;
  EXPECT_TRUE(mline.miterAt(0).isEqualTo({std::cos(45 * degree), std::sin(45 * degree), 0}));
  EXPECT_TRUE(mline.miterAt(1).isEqualTo({std::cos(60 * degree), std::sin(60 * degree), 0}));
  EXPECT_THAT(listAt(mline, 0, 0), near({2 / std::sin(45 * degree), 0}));
  EXPECT_THAT(listAt(mline, 1, 2), near({-1 / std::sin(60 * degree), 0}));
}

/// The point at which a value of an element's list lies, in the drawing.
KdGePoint3d pointAt(const KdDbMline& mline, int vertex, int element, std::size_t index) {
  const std::vector<double> list = listAt(mline, vertex, element);
  const KdGePoint3d start = mline.vertexAt(vertex) + mline.miterAt(vertex) * list[0];
  return index == 0 ? start : start + mline.axisAt(vertex) * list[index];
}

TEST_F(MlineTest, BreaksStayWhereTheyAreWhenTheListsAreRecomputed) {
  const struct {
    const char* name;
    std::function<void(KdDbMline&)> change;
    std::vector<int> segments;  // those that stay
    bool isSideways;            // the element itself moves
  } cases[] = {
      {"append",
       [](auto& m) {
         EXPECT_EQ(m.appendSeg({50, 80, 0}), KdStatus::ok);
       },
       {0, 1},
       false},
      {"close", [](auto& m) { EXPECT_EQ(m.setClosedMline(true), KdStatus::ok); }, {0, 1}, false},
      {"remove",
       [](auto& m) {
         KdGePoint3d p;
         EXPECT_EQ(m.removeLastSeg(p), KdStatus::ok);
       },
       {0},
       false},
      {"scale", [](auto& m) { EXPECT_EQ(m.setScale(3), KdStatus::ok); }, {0, 1}, true},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    KdDbMline mline;
    draw(mline, {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}});
    for (const int vertex : {0, 1}) setList(mline, vertex, 1, {listAt(mline, vertex, 1)[0], 0, 40, 60});
    std::vector<KdGePoint3d> before;
    for (const int vertex : {0, 1})
      before.push_back(pointAt(mline, vertex, 1, 2)), before.push_back(pointAt(mline, vertex, 1, 3));
    row.change(mline);
    for (const int vertex : row.segments) {
      ASSERT_EQ(listAt(mline, vertex, 1).size(), 4u);
      EXPECT_EQ(listAt(mline, vertex, 1)[1], 0) << "a line that starts at the joint goes on doing so";
      for (const std::size_t i : {2u, 3u}) {
        const KdGeVector3d moved = pointAt(mline, vertex, 1, i) - before[static_cast<std::size_t>(2 * vertex) + i - 2];
        EXPECT_NEAR(moved.dotProduct(mline.axisAt(vertex)), 0, kRounding);
        EXPECT_EQ(moved.length() > kRounding, row.isSideways);
      }
    }
  }
}

TEST_F(MlineTest, ClosingAndOpeningGivesTheSameAgain) {
  KdDbMline mline;
  draw(mline, {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}, {0, 100, 0}});
  ASSERT_EQ(mline.setClosedMline(true), KdStatus::ok);
  const double h = std::sqrt(0.5);
  EXPECT_TRUE(mline.axisAt(3).isEqualTo({0, -1, 0}));
  EXPECT_TRUE(mline.miterAt(3).isEqualTo({h, -h, 0}));
  EXPECT_TRUE(mline.miterAt(0).isEqualTo({h, h, 0}));
  EXPECT_THAT(listAt(mline, 0, 0), near({0.5 / h, 0}));
  EXPECT_THAT(listAt(mline, 3, 1), near({-0.5 / h, 0}));
  ASSERT_EQ(mline.setClosedMline(false), KdStatus::ok);
  EXPECT_TRUE(mline.axisAt(3).isEqualTo({-1, 0, 0}));
  EXPECT_TRUE(mline.miterAt(3).isEqualTo({0, -1, 0}));
  EXPECT_TRUE(mline.miterAt(0).isEqualTo({0, 1, 0}));
  EXPECT_THAT(listAt(mline, 0, 0), near({0.5, 0}));
}

TEST_F(MlineTest, NoPathGivesValuesThatAreNoNumbers) {
  const struct {
    const char* name;
    std::vector<KdGePoint3d> path;
  } cases[] = {
      {"one vertex", {{1, 2, 3}}},
      {"the same point again and again", {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}},
      {"turn back", {{0, 0, 0}, {10, 0, 0}, {5, 0, 0}}},
      {"nearly turn back", {{0, 0, 0}, {10, 0, 0}, {0, 1e-12, 0}}},
      {"along the normal", {{0, 0, 0}, {0, 0, 10}, {10, 0, 10}}},
      {"far apart", {{-1e308, 0, 0}, {1e308, 0, 0}, {0, 1e308, 0}}},
  };
  for (const auto& row : cases) {
    for (const bool isClosed : {false, true}) {
      SCOPED_TRACE(row.name);
      KdDbMline mline;
      EXPECT_EQ(mline.setClosedMline(isClosed), KdStatus::ok);
      for (const KdGePoint3d& point : row.path) ASSERT_EQ(mline.appendSeg(point), KdStatus::ok);
      for (int vertex = 0; vertex < mline.numVertices(); ++vertex) {
        EXPECT_NEAR(mline.axisAt(vertex).length(), 1, kRounding);
        EXPECT_NEAR(mline.miterAt(vertex).length(), 1, kRounding);
        for (const double value : listAt(mline, vertex, 0)) EXPECT_TRUE(std::isfinite(value));
      }
      KdGePoint3d last;
      while (mline.numVertices() > 0) EXPECT_EQ(mline.removeLastSeg(last), KdStatus::ok);
      EXPECT_EQ(last.x, row.path.front().x);
      EXPECT_EQ(mline.removeLastSeg(last), KdStatus::invalidIndex);
    }
  }
}

TEST_F(MlineTest, WithoutItsStyleItKeepsTheDistancesItHas) {
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  setList(*mline, 0, 0, {7, 0});
  for (int vertex = 0; vertex < 2; ++vertex) {
    std::vector<std::vector<KdMLSegment>> parameters;
    ASSERT_EQ(mline->getParametersAt(vertex, parameters), KdStatus::ok);
    parameters[0].push_back({{}, {-3, 0}});
    ASSERT_EQ(mline->setParametersAt(vertex, parameters), KdStatus::ok);
  }
  ASSERT_EQ(mline->appendSeg({100, 50, 0}), KdStatus::ok);
  EXPECT_THAT(listAt(*mline, 2, 0), near({7, 0}));
  EXPECT_THAT(listAt(*mline, 2, 2), near({-3, 0}));
}

TEST_F(MlineTest, RefusesValuesThatAreNoNumbersAndIndicesOutside) {
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  EXPECT_EQ(mline->appendSeg({0, kNaN, 0}), KdStatus::invalidInput);
  EXPECT_EQ(mline->setScale(std::numeric_limits<double>::infinity()), KdStatus::invalidInput);
  EXPECT_EQ(mline->setNormal({0, 0, 0}), KdStatus::invalidInput);
  EXPECT_EQ(mline->setParametersAt(0, {}), KdStatus::invalidInput);
  EXPECT_EQ(mline->setParametersAt(0, {{{{}, {0.5, kNaN}}}}), KdStatus::invalidInput);
  EXPECT_EQ(mline->setParametersAt(0, {{{{kNaN}, {0.5}}}}), KdStatus::invalidInput);
  EXPECT_EQ(mline->setParametersAt(2, {{}}), KdStatus::invalidIndex);
  EXPECT_EQ(mline->setVertexAt(0, {{0, 0, 0}, {1, 0, 0}, {0, kNaN, 0}, {}}), KdStatus::invalidInput);
  EXPECT_EQ(mline->insertVertexAt(0, {{}, {}, {}, {{{{}, {kNaN}}}}}), KdStatus::invalidInput);
  EXPECT_EQ(mline->setVertexAt(2, {}), KdStatus::invalidIndex);
  EXPECT_EQ(mline->insertVertexAt(3, {}), KdStatus::invalidIndex);
  EXPECT_EQ(mline->removeVerticesAt(-1, 1), KdStatus::invalidIndex);
  EXPECT_EQ(mline->removeVerticesAt(1, 2), KdStatus::invalidIndex);
  std::vector<std::vector<KdMLSegment>> parameters(3);
  EXPECT_EQ(mline->getParametersAt(-1, parameters), KdStatus::invalidIndex);
  EXPECT_EQ(parameters.size(), 3u);
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(MlineTest, ChangesNothingUnlessOpenForWrite) {
  auto* mline = open<KdDbMline>(0xA0);
  const KdDbMline other;
  KdGePoint3d point;
  EXPECT_EQ(mline->appendSeg({1, 1, 0}), KdStatus::notOpen);
  EXPECT_EQ(mline->removeLastSeg(point), KdStatus::notOpen);
  EXPECT_EQ(mline->setParametersAt(0, {{}}), KdStatus::notOpen);
  EXPECT_EQ(mline->setVertexAt(0, {}), KdStatus::notOpen);
  EXPECT_EQ(mline->insertVertexAt(0, {}), KdStatus::notOpen);
  EXPECT_EQ(mline->removeVerticesAt(0, 1), KdStatus::notOpen);
  EXPECT_EQ(mline->setClosedMline(true), KdStatus::notOpen);
  EXPECT_EQ(mline->setSupressStartCaps(true), KdStatus::notOpen);
  EXPECT_EQ(mline->setScale(2), KdStatus::notOpen);
  EXPECT_EQ(mline->setStyle(id(0x19)), KdStatus::notOpen);
  EXPECT_EQ(mline->copyFrom(&other), KdStatus::notOpen);
  KdDbMlineImp* imp = KdDbMlineImp::of(KdDbSystemInternals::getImpObject(mline));
  EXPECT_FALSE(imp->appendSegments({{5, 5, 0}, {6, 6, 0}}));
  EXPECT_FALSE(imp->appendSeg({{1, 0, 0}, {1, 0, 0}}, KdDbMlineImp::kAxes));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(MlineTest, InternalSideReplacesWholeLists) {
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  KdDbMlineImp* imp = KdDbMlineImp::of(KdDbSystemInternals::getImpObject(mline));
  ASSERT_NE(imp, nullptr);
  EXPECT_EQ(KdDbMlineImp::of(nullptr), nullptr);
  EXPECT_EQ(KdDbMlineImp::of(KdDbSystemInternals::getImpObject(open<KdDbEntity>(0xA1))), nullptr);

  EXPECT_FALSE(imp->appendSegments({{5, 5, 0}}));
  EXPECT_FALSE(imp->appendSegments({{5, 5, 0}, {kNaN, 0, 0}}));
  EXPECT_FALSE(imp->appendSeg({{1, 0, 0}, {1, 0, 0}}, 2));
  EXPECT_TRUE(imp->appendSegments({{0, 0, 0}, {100, 7, 0}}));
  EXPECT_TRUE(imp->appendSeg({{1, 0, 0}, {0, 1, 0}}, KdDbMlineImp::kAxes));
  EXPECT_TRUE(imp->appendSeg({{0, 1, 0}, {-1, 0, 0}}, KdDbMlineImp::kMiters));
  mline->close();
  EXPECT_THAT(changes(), ElementsAre("-21 0.0", "+21 7.0", "-12 1.0", "-22 0.0", "+12 0.0", "+22 1.0", "-13 0.0", "-23 1.0",
                                     "+13 -1.0", "+23 0.0"));
}

TEST_F(MlineTest, VerticesAreReplacedAddedAndRemovedAlone) {
  KdDbMline mline;
  draw(mline, {{0, 0, 0}, {10, 0, 0}, {10, 20, 0}, {30, 20, 0}});
  const std::vector<KdMlineVertex> before(mline.vertices().begin(), mline.vertices().end());
  const KdMlineVertex odd{{7, 8, 9}, {0, 0, 1}, {0, 1, 0}, {{{{4}, {1, 2, 3}}}}};
  const auto expectVertices = [&](const std::vector<KdMlineVertex>& wanted, const char* step) {
    const std::span<const KdMlineVertex> vertices = mline.vertices();
    ASSERT_EQ(vertices.size(), wanted.size()) << step;
    for (std::size_t i = 0; i < wanted.size(); ++i) EXPECT_TRUE(db::isSame(vertices[i], wanted[i])) << step << i;
  };
  ASSERT_EQ(mline.insertVertexAt(1, odd), KdStatus::ok);
  expectVertices({before[0], odd, before[1], before[2], before[3]}, "inserted");
  ASSERT_EQ(mline.setVertexAt(0, mline.vertices()[1]), KdStatus::ok);
  expectVertices({odd, odd, before[1], before[2], before[3]}, "replaced");
  ASSERT_EQ(mline.removeVerticesAt(1, 2), KdStatus::ok);
  ASSERT_EQ(mline.insertVertexAt(3, odd), KdStatus::ok);
  expectVertices({odd, before[2], before[3], odd}, "removed, added at the end");
}

TEST_F(MlineTest, TellsTheLineOfTheFirstValueThatIsNoNumber) {
  for (const std::string& good : {planText(), inColumns(planText())}) {
    const std::size_t value = good.find("41\n-0.5\n", good.find("AcDbMline\n")) + 3;
    for (const char* bad : {"-O.5", "", "nan"}) {
      const auto drawing = openText(std::string(good).replace(value, 4, bad));
      const Current<db::Database> current(*drawing);
      KdDbMline* mline = nullptr;
      ASSERT_EQ(kddbOpenObject(mline, drawing->idOfHandle(0xA0), KdOpenMode::forRead), KdStatus::ok);
      EXPECT_THAT(listAt(*mline, 0, 1), ElementsAre(0, 0));
      const std::vector<dxf::Finding> findings = drawing->takeFindings();
      ASSERT_EQ(findings.size(), 1u) << bad;
      EXPECT_EQ(findings[0].code, dxf::FindingCode::badNumber);
      EXPECT_EQ(findings[0].line, 1 + static_cast<std::size_t>(std::count(good.data(), good.data() + value, '\n')));
    }
  }
}

TEST_F(MlineTest, ACopyOutsideTheDatabaseBringsEverythingBack) {
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  KdDbMline copy;
  ASSERT_EQ(copy.copyFrom(mline), KdStatus::ok);
  EXPECT_TRUE(copy.objectId().isNull());
  EXPECT_EQ(copy.style(), id(0x18));
  EXPECT_EQ(copy.layerId(), id(0x11));

  ASSERT_EQ(mline->appendSeg({50, 50, 0}), KdStatus::ok);
  ASSERT_EQ(mline->setStyle(id(0x19)), KdStatus::ok);
  EXPECT_EQ(mline->setSupressEndCaps(true), KdStatus::ok);
  EXPECT_EQ(copy.numVertices(), 2);
  mline->close();
  database().flush();
  open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  ASSERT_EQ(mline->copyFrom(&copy), KdStatus::ok);
  mline->close();
  database().flush();
  const db::MlineData now = db::readMline(database().file(), database().recordOf(id(0xA0)));
  EXPECT_EQ(now.vertices.size(), 2u);
  EXPECT_EQ(mline->style(), id(0x18));
  EXPECT_EQ(mline->layerId(), id(0x11));

  EXPECT_EQ(copy.copyFrom(nullptr), KdStatus::nullPointer);
  EXPECT_EQ(copy.copyFrom(open<KdDbEntity>(0xA1)), KdStatus::wrongClass);
  EXPECT_EQ(copy.copyFrom(&copy), KdStatus::ok);
  EXPECT_EQ(copy.numVertices(), 2);
  EXPECT_EQ(copy.close(), KdStatus::notOpen);
  EXPECT_EQ(copy.erase(), KdStatus::notInDatabase);
}

TEST_F(MlineTest, CopyingTakesThePropertiesToo) {
  KdDbObjectId made;
  auto* space = open<KdDbBlockTableRecord>(0x1F, KdOpenMode::forWrite);
  auto* wall = new KdDbMline;
  ASSERT_EQ(space->appendEntity(wall, made), KdStatus::ok);
  wall->close();
  space->close();
  EXPECT_EQ(wall->layerId(), id(0x10));
  KdDbMline* again = nullptr;
  ASSERT_EQ(kddbOpenObject(again, made, KdOpenMode::forWrite), KdStatus::ok);
  ASSERT_EQ(again->copyFrom(open<KdDbMline>(0xA0)), KdStatus::ok);
  again->close();
  database().flush();
  EXPECT_EQ(again->layerId(), id(0x11));
  const std::string text(database().file().bytes(database().recordOf(made)));
  EXPECT_NE(text.find("WALLS"), std::string::npos);
  const auto groups = groupLines(text);
  EXPECT_THAT(groups, testing::Contains("62      3"));
}

/// The plan with STANDARD under another handle and without layer WALLS.
std::string otherPlan() {
  std::string text = planText();
  const auto replace = [&](std::string_view what, std::string_view by) { text.replace(text.find(what), what.size(), by); };
  replace("\n5\n18\n", "\n5\nE8\n");
  replace("350\n18\n", "350\nE8\n");
  replace("2\nWalls\n", "2\nRooms\n");
  replace("8\nWALLS\n", "8\nRooms\n");
  replace("8\nWALLS\n", "8\nRooms\n");
  return text;
}

TEST_F(MlineTest, InAnotherDrawingNamesCountInsteadOfHandles) {
  const auto other = openText(otherPlan());
  const auto* source = open<KdDbMline>(0xA0);
  KdDbMline copy;
  ASSERT_EQ(copy.copyFrom(source), KdStatus::ok);
  auto* added = new KdDbMline;
  ASSERT_EQ(added->copyFrom(source), KdStatus::ok);

  const Current<db::Database> current(*other);
  EXPECT_EQ(copy.style(), other->idOfHandle(0xE8));
  KdDbMline* target = nullptr;
  ASSERT_EQ(kddbOpenObject(target, other->idOfHandle(0xA0), KdOpenMode::forWrite), KdStatus::ok);
  ASSERT_EQ(target->copyFrom(&copy), KdStatus::ok);
  target->close();
  KdDbBlockTableRecord* space = nullptr;
  KdDbObjectId made;
  ASSERT_EQ(kddbOpenObject(space, other->modelSpaceId(), KdOpenMode::forWrite), KdStatus::ok);
  ASSERT_EQ(space->appendEntity(added, made), KdStatus::ok);
  added->close();
  space->close();
  other->flush();
  for (const dxf::RecordId record : {other->file().find(0xA0), other->recordOf(made)}) {
    const auto groups = groupLines(other->file().bytes(record));
    EXPECT_THAT(groups, testing::Contains("340 E8"));
    EXPECT_THAT(groups, testing::Contains("8 0")) << "a layer that the drawing does not have";
    EXPECT_THAT(groups, testing::Contains("62      3"));
  }
}

TEST_F(MlineTest, ANewMultilineWithoutAStyleHasTheStandardOne) {
  auto* space = open<KdDbBlockTableRecord>(0x1F, KdOpenMode::forWrite);
  auto* mline = new KdDbMline;
  KdDbObjectId made;
  ASSERT_EQ(space->appendEntity(mline, made), KdStatus::ok);
  EXPECT_THAT(groupLines(database().file().bytes(database().recordOf(made))),
              testing::IsSupersetOf({"2 STANDARD", "340 18"}));
}

TEST_F(MlineTest, ChangedPropertiesSurviveTheUndoOfALaterEdit) {
  KdDbMline plain;
  const auto edit = [&](const std::function<void(KdDbMline&)>& change) {
    database().beginUndoStep(L"");
    auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
    change(*mline);
    mline->close();
    database().endUndoStep();
  };
  ASSERT_EQ(plain.copyFrom(open<KdDbMline>(0xA0)), KdStatus::ok);
  database().closeAll();
  edit([](KdDbMline& mline) {
    const KdDbMline byDefault;
    EXPECT_EQ(mline.copyFrom(&byDefault), KdStatus::ok);
  });
  edit([](KdDbMline& mline) { EXPECT_EQ(mline.setScale(5), KdStatus::ok); });
  database().undo();
  edit([](KdDbMline& mline) { EXPECT_EQ(mline.setScale(6), KdStatus::ok); });
  const auto groups = groupLines(database().file().bytes(database().file().find(0xA0)));
  EXPECT_THAT(groups, testing::Contains("8 0"));
  EXPECT_THAT(groups, testing::Not(testing::Contains("62      3")));
  edit([&](KdDbMline& mline) { EXPECT_EQ(mline.copyFrom(&plain), KdStatus::ok); });
  EXPECT_THAT(changes(), IsEmpty()) << "what comes back has the text that it had";
}

TEST(MlineStyleLookup, GoesByHandleThenByNameThenToStandard) {
  const struct {
    const char* groups;
    dxf::Handle style;
  } cases[] = {
      {"2 DOUBLE\n340 18", 0x18}, {"2 double\n340 BEEF", 0x19}, {"2 DOUBLE\n340 A0", 0x19},
      {"2 nowhere\n340 0", 0x18}, {"2 DOUBLE", 0x19},           {"70 0", 0x18},
  };
  for (const auto& row : cases) {
    const auto database = openText(planText(std::string("0 MLINE\n5 A0\n100 AcDbMline\n") + row.groups));
    const Current<db::Database> current(*database);
    KdDbMline* mline = nullptr;
    ASSERT_EQ(kddbOpenObject(mline, database->idOfHandle(0xA0), KdOpenMode::forRead), KdStatus::ok);
    EXPECT_EQ(mline->style(), database->idOfHandle(row.style)) << row.groups;
  }
}

}  // namespace
}  // namespace torva::test
