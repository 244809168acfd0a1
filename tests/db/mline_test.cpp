#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>

#include "db/mline_data.h"
#include "db/plan.h"

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_imp.h>

namespace torva::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kRounding = 1e-12;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<double> listAt(const KdDbMline& mline, int vertex, std::size_t element) {
  const auto list = mline.segmentsAt(vertex)[element].elementParameters;
  return {list.begin(), list.end()};
}

void setList(KdDbMline& mline, int vertex, std::size_t element, const std::vector<double>& values) {
  std::vector<std::vector<KdMLSegment>> parameters;
  ASSERT_EQ(mline.getParametersAt(vertex, parameters), KdStatus::ok);
  parameters[0][element].elementParameters = values;
  ASSERT_EQ(mline.setParametersAt(vertex, parameters), KdStatus::ok);
}

class MlineTest : public PlanTest {
 protected:
  using Path = std::vector<KdGePoint3d>;
  void draw(KdDbMline& mline, const Path& path) {
    for (const KdGePoint3d& point : path) ASSERT_EQ(mline.appendSeg(point), KdStatus::ok);
  }
  std::vector<std::string> groupsOf(db::Database& database, KdDbObjectId id) {
    database.flush();
    return groupLines(database.file().bytes(database.recordOf(id)));
  }
};

/// The point at which a value of element 1's list lies, in the drawing.
KdGePoint3d pointAt(const KdDbMline& mline, int vertex, std::size_t index) {
  const std::vector<double> list = listAt(mline, vertex, 1);
  return mline.vertexAt(vertex) + mline.miterAt(vertex) * list.at(0) + mline.axisAt(vertex) * list.at(index);
}

TEST_F(MlineTest, BreaksStayWhereTheyAreWhenTheListsAreRecomputed) {
  KdGePoint3d point{50, 80, 0};
  const struct {
    const char* name;
    std::function<KdStatus(KdDbMline&)> change;
    int segments;     // that stay
    bool isSideways;  // the element itself moves
  } cases[] = {
      {"append", [&](auto& m) { return m.appendSeg(point); }, 2, false},
      {"close", [](auto& m) { return m.setClosedMline(true); }, 2, false},
      {"scale", [](auto& m) { return m.setScale(3); }, 2, true},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    KdDbMline mline;
    draw(mline, {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}});
    for (const int vertex : {0, 1}) setList(mline, vertex, 1, {listAt(mline, vertex, 1)[0], 0, 40, 60});
    KdDbMline before;
    ASSERT_EQ(before.copyFrom(&mline), KdStatus::ok);
    EXPECT_EQ(row.change(mline), KdStatus::ok);
    for (int vertex = 0; vertex < row.segments; ++vertex) {
      ASSERT_EQ(listAt(mline, vertex, 1).size(), 4u);
      EXPECT_EQ(listAt(mline, vertex, 1)[1], 0) << "a line that starts at the joint goes on doing so";
      for (const std::size_t i : {2u, 3u}) {
        const KdGeVector3d moved = pointAt(mline, vertex, i) - pointAt(before, vertex, i);
        EXPECT_NEAR(moved.dotProduct(mline.axisAt(vertex)), 0, kRounding);
        EXPECT_EQ(moved.length() > kRounding, row.isSideways);
      }
    }
  }
}

TEST_F(MlineTest, NoPathGivesValuesThatAreNoNumbers) {
  const std::pair<const char*, Path> cases[] = {
      {"one vertex", {{1, 2, 3}}},
      {"the same point again and again", {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}},
      {"turn back", {{0, 0, 0}, {10, 0, 0}, {5, 0, 0}}},
      {"along the normal", {{0, 0, 0}, {0, 0, 10}, {10, 0, 10}}},
      {"far apart", {{-1e308, 0, 0}, {1e308, 0, 0}, {0, 1e308, 0}}},
  };
  for (const auto& [name, path] : cases) {
    for (const bool isClosed : {false, true}) {
      SCOPED_TRACE(name);
      KdDbMline mline;
      EXPECT_EQ(mline.setClosedMline(isClosed), KdStatus::ok);
      draw(mline, path);
      for (int vertex = 0; vertex < mline.numVertices(); ++vertex) {
        EXPECT_NEAR(mline.axisAt(vertex).length(), 1, kRounding);
        EXPECT_NEAR(mline.miterAt(vertex).length(), 1, kRounding);
        for (const double value : listAt(mline, vertex, 0)) EXPECT_TRUE(std::isfinite(value));
      }
      KdGePoint3d last;
      while (mline.numVertices() > 0) EXPECT_EQ(mline.removeLastSeg(last), KdStatus::ok);
      EXPECT_EQ(last.x, path.front().x);
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
  for (const auto& [element, distance] : {std::pair{0, 7.0}, {1, -0.5}, {2, -3.0}})
    EXPECT_THAT(listAt(*mline, 2, static_cast<std::size_t>(element)), ElementsAre(distance, 0));
}

TEST_F(MlineTest, RefusesValuesThatAreNoNumbersAndIndicesOutside) {
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  std::vector<std::vector<KdMLSegment>> parameters(3);
  const KdStatus noNumbers[] = {mline->appendSeg({0, kNaN, 0}),
                                mline->setScale(std::numeric_limits<double>::infinity()),
                                mline->setNormal({0, 0, 0}),
                                mline->setParametersAt(0, {}),
                                mline->setParametersAt(0, {{{{}, {0.5, kNaN}}}}),
                                mline->setParametersAt(0, {{{{kNaN}, {0.5}}}}),
                                mline->setVertexAt(0, {{0, 0, 0}, {1, 0, 0}, {0, kNaN, 0}, {}}),
                                mline->insertVertexAt(0, {{}, {}, {}, {{{{}, {kNaN}}}}})};
  EXPECT_THAT(noNumbers, Each(KdStatus::invalidInput));
  const KdStatus outside[] = {mline->setParametersAt(2, {{}}), mline->setVertexAt(2, {}),
                              mline->insertVertexAt(3, {}),    mline->removeVerticesAt(-1, 1),
                              mline->removeVerticesAt(1, 2),   mline->getParametersAt(-1, parameters)};
  EXPECT_THAT(outside, Each(KdStatus::invalidIndex));
  EXPECT_EQ(parameters.size(), 3u);
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(MlineTest, ChangesNothingUnlessOpenForWrite) {
  auto* mline = open<KdDbMline>(0xA0);
  const KdDbMline other;
  KdGePoint3d point;
  const KdStatus refused[] = {mline->appendSeg({1, 1, 0}), mline->removeLastSeg(point),  mline->setParametersAt(0, {{}}),
                              mline->setVertexAt(0, {}),   mline->insertVertexAt(0, {}), mline->removeVerticesAt(0, 1),
                              mline->setClosedMline(true), mline->setStyle(id(0x19)),    mline->copyFrom(&other)};
  EXPECT_THAT(refused, Each(KdStatus::notOpen));
  EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(MlineTest, InternalSideReplacesWholeLists) {
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  KdDbMlineImp* imp = KdDbMlineImp::of(KdDbSystemInternals::getImpObject(mline));
  ASSERT_NE(imp, nullptr);
  EXPECT_EQ(KdDbMlineImp::of(KdDbSystemInternals::getImpObject(open<KdDbEntity>(0xA1))), nullptr);
  EXPECT_FALSE(imp->appendSegments({{5, 5, 0}}));
  EXPECT_FALSE(imp->appendSegments({{5, 5, 0}, {kNaN, 0, 0}}));
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
      EXPECT_THAT(listAt(*openIn<KdDbMline>(*drawing, 0xA0), 0, 1), ElementsAre(0, 0));
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
  ASSERT_EQ(mline->appendSeg({50, 50, 0}), KdStatus::ok);
  ASSERT_EQ(mline->setStyle(id(0x19)), KdStatus::ok);
  EXPECT_EQ(mline->setSupressEndCaps(true), KdStatus::ok);
  EXPECT_EQ(copy.numVertices(), 2);
  ASSERT_EQ(mline->copyFrom(&copy), KdStatus::ok);
  mline->close();
  EXPECT_THAT(changes(), IsEmpty());

  EXPECT_EQ(copy.copyFrom(nullptr), KdStatus::nullPointer);
  EXPECT_EQ(copy.copyFrom(open<KdDbEntity>(0xA1)), KdStatus::wrongClass);
  EXPECT_EQ(copy.copyFrom(&copy), KdStatus::ok);
  EXPECT_EQ(copy.numVertices(), 2);
  EXPECT_EQ(copy.close(), KdStatus::notOpen);
  EXPECT_EQ(copy.erase(), KdStatus::notInDatabase);
}

TEST_F(MlineTest, InAnotherDrawingNamesCountInsteadOfHandles) {
  std::string text = planText();
  for (const auto& [what, by] : {std::pair<std::string, std::string>{"\n5\n18\n", "\n5\nE8\n"},
                                 {"350\n18\n", "350\nE8\n"},
                                 {"2\nWalls\n", "2\nRooms\n"},
                                 {"8\nWALLS\n", "8\nRooms\n"}})
    for (std::size_t at; (at = text.find(what)) != std::string::npos;) text.replace(at, what.size(), by);
  const auto other = openText(text);
  auto* copy = new KdDbMline;
  ASSERT_EQ(copy->copyFrom(open<KdDbMline>(0xA0)), KdStatus::ok);
  const Current<db::Database> current(*other);
  auto* target = openIn<KdDbMline>(*other, 0xA0, KdOpenMode::forWrite);
  ASSERT_EQ(target->copyFrom(copy), KdStatus::ok);
  target->close();
  for (const KdDbObjectId mline : {target->objectId(), append(copy, other->modelSpaceId())}) {
    // The drawing does not have the layer.
    EXPECT_THAT(groupsOf(*other, mline), testing::IsSupersetOf({"340 E8", "8 0", "62      3"}));
  }
}

TEST_F(MlineTest, ChangedPropertiesSurviveTheUndoOfALaterEdit) {
  const auto edit = [&](const std::function<KdStatus(KdDbMline&)>& change) {
    database().beginUndoStep(L"");
    auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
    EXPECT_EQ(change(*mline), KdStatus::ok);
    mline->close();
    database().endUndoStep();
  };
  KdDbMline plain;
  const KdDbMline byDefault;
  ASSERT_EQ(plain.copyFrom(open<KdDbMline>(0xA0)), KdStatus::ok);
  database().closeAll();
  edit([&](KdDbMline& mline) { return mline.copyFrom(&byDefault); });
  edit([](KdDbMline& mline) { return mline.setScale(5); });
  database().undo();
  edit([](KdDbMline& mline) { return mline.setScale(6); });
  EXPECT_THAT(groupsOf(database(), id(0xA0)),
              testing::AllOf(testing::Contains("8 0"), testing::Not(testing::Contains("62      3"))));
  edit([&](KdDbMline& mline) { return mline.copyFrom(&plain); });
  EXPECT_THAT(changes(), IsEmpty()) << "what comes back has the text that it had";
}

TEST_F(MlineTest, SaysTheSameWhenManyOthersWereOpenedAfterIt) {
  const auto openOthers = [&] {
    for (const dxf::Handle other : {0xA1, 0x10, 0x11, 0x14, 0x18, 0x19, 0xC, 0xD, 0x17, 0x1F})
      open<KdDbObject>(other)->close();
  };
  database().beginUndoStep(L"");
  auto* mline = open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  setList(*mline, 1, 1, {-0.5, 7});
  mline->close();
  openOthers();
  EXPECT_THAT(listAt(*mline, 1, 1), ElementsAre(-0.5, 7)) << "newer than the record";
  database().endUndoStep();
  openOthers();
  EXPECT_THAT(listAt(*mline, 1, 1), ElementsAre(-0.5, 7)) << "as in the changed record";
  openOthers();
  database().undo();
  EXPECT_THAT(listAt(*mline, 1, 1), ElementsAre(-0.5, 0));
  openOthers();
  open<KdDbMline>(0xA0, KdOpenMode::forWrite);
  setList(*mline, 1, 1, {-0.5, 7});
  mline->close();
  EXPECT_THAT(changes(), ElementsAre("-41 0.0", "+41 7.0"));
}

TEST(MlineStyleLookup, GoesByHandleThenByNameThenToStandard) {
  const std::pair<const char*, dxf::Handle> cases[] = {
      {"2 DOUBLE\n340 18", 0x18}, {"2 double\n340 BEEF", 0x19}, {"2 DOUBLE\n340 A0", 0x19},
      {"2 nowhere\n340 0", 0x18}, {"2 DOUBLE", 0x19},           {"70 0", 0x18},
  };
  for (const auto& [groups, style] : cases) {
    const auto database = openText(planText(std::string("0 MLINE\n5 A0\n100 AcDbMline\n") + groups));
    const Current<db::Database> current(*database);
    EXPECT_EQ(openIn<KdDbMline>(*database, 0xA0)->style(), database->idOfHandle(style)) << groups;
  }
}

}  // namespace
}  // namespace torva::test
