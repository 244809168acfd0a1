#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <tuple>

#include "geometry/intersect.h"
#include "geometry/vectors.h"
#include "module/mledit/engine.h"

namespace {

using Path = std::vector<KdGePoint3d>;

// One element on the path itself; unlike a drawn one it may have segments without length and turn back.
std::unique_ptr<KdDbMline> onPath(const Path& path, bool isClosed) {
  MlineSketch straight{{}, {0}, isClosed};
  for (std::size_t i = 0; i < path.size(); ++i)
    straight.path.push_back({static_cast<double>(i), isClosed && i ? 1.0 : 0.0, 0});
  auto mline = makeMline(straight);
  const auto points = std::make_unique<double[][3]>(path.size());
  for (std::size_t i = 0; i < path.size(); ++i) points[i][0] = path[i].x, points[i][1] = path[i].y, points[i][2] = path[i].z;
  SetVertices(mline.get(), points.get());
  return mline;
}

void pickPath(CMlineEdit& engine, CMlineSegment& seg, KdDbMline& mline, long name, int segment, double part) {
  pick(engine, seg, mline, name, segment, 0, 0);
  const double* from = seg.ptList[0][segment];
  const double* to = seg.ptList[0][seg.nextVertex(segment)];
  for (int k = 0; k < 3; ++k) seg.point[k] = from[k] + (to[k] - from[k]) * part;
  seg.adoptPick();
}

struct Choice {
  int segA = -1, segB = -1;
  double point[3] = {};
};

// The choice as it is defined: pair by pair.
Choice chooseByAllPairs(CMlineEdit& engine, CMlineSegment& a, CMlineSegment& b, bool touching) {
  Choice choice;
  const auto p = [](const double* q) { return KdGePoint3d{q[0], q[1], q[2]}; };
  const double(*va)[3] = a.ptList[0];
  const double(*vb)[3] = b.ptList[0];
  const bool isSame = a.isSameEntity(b);
  if (isSame && a.segment == b.segment) return choice;
  double pickA[3], pickB[3], best = 4294967295.0;
  engine.mappingToSpecifyMongline(&a, -1, pickA);
  engine.mappingToSpecifyMongline(&b, -1, pickB);
  const auto take = [&](int i, int j, const double* x) { choice = {i, j, {x[0], x[1], x[2]}}; };
  for (int i = 0; i + 1 < a.numVertices; ++i) {
    for (int j = 0; j < b.numVertices && b.nextVertex(j) >= 0; ++j) {
      if (isSame && i == j) continue;
      const int next = b.nextVertex(j);
      double x[3] = {0, 0, va[i][2]};
      const short r = gx_linexline(va[i], va[i + 1], vb[j], vb[next], x);
      if (r < 0) continue;
      const bool isInside = engine.leadsOn(va[i], x, va[i + 1]) && engine.leadsOn(vb[j], x, vb[next]);
      const bool isAtEnd = engine.isSamePlace(va[i], x) || engine.isSamePlace(x, va[i + 1]);
      if (!isInside && !(touching ? r >= 1 : r == 2 || (r == 3 && isAtEnd))) continue;
      const bool isInLine = isCollinear(p(va[i]), p(va[i + 1]), p(va[a.segment]), p(va[a.nextVertex(a.segment)])) &&
                            isCollinear(p(vb[j]), p(vb[next]), p(vb[b.segment]), p(vb[b.nextVertex(b.segment)]));
      if (r == 3 && ((i == a.segment && j == b.segment) || isInLine)) {
        take(i, j, x);
        return choice;
      }
      const double score = vexengine_distance(x, pickA) + vexengine_distance(x, pickB);
      if (score >= best) continue;
      best = score;
      take(i, j, x);
    }
  }
  return choice;
}

class RandomPaths {
 public:
  explicit RandomPaths(unsigned seed) : m_random(seed) {}

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }
  double part() { return std::uniform_real_distribution<double>(0, 1)(m_random); }

  // Kinds: on a grid (shared vertices, lines in line, equal scores, no length), free, a gentle wave, a comb; the last two
  // are so long that most of them is passed over.
  Path path(int kind, int n) {
    Path points;
    const double phase = part() * 6, slope = part();
    for (int i = 0; i < n; ++i) {
      const double t = i;
      if (kind == 0) points.push_back({double(below(7)), double(below(7)), double(below(8) / 7)});
      if (kind == 1) points.push_back({part() * 50, part() * 50, 0});
      if (kind == 2) points.push_back({t - n / 2.0, slope * t + 3 * std::sin(t / 5 + phase), 0});
      if (kind == 3) points.push_back({double(i / 2), i % 4 == 1 || i % 4 == 2 ? 5.0 : -5.0, 0});
    }
    return points;
  }

  // Turns, scales and moves a path as a whole; a grid that is turned is parallel up to rounding only.
  static void place(Path& path, double angle, double scale, double shift) {
    for (KdGePoint3d& p : path) {
      const double x = p.x * std::cos(angle) - p.y * std::sin(angle), y = p.x * std::sin(angle) + p.y * std::cos(angle);
      p = {x * scale + shift, y * scale - shift, p.z * scale};
    }
  }

 private:
  std::mt19937 m_random;
};

TEST(CrossingSearch, ChoosesAsIfItRanThroughAllPairs) {
  constexpr unsigned kSeed = 4711;
  RandomPaths random(kSeed);
  int found = 0, refused = 0;
  for (int round = 0; round < 5000; ++round) {
    SCOPED_TRACE(::testing::Message() << "seed " << kSeed << " round " << round);
    const int n = 2 + random.below(round % 10 == 0 ? 120 : 20), m = 2 + random.below(30);
    Path first = random.path(random.below(4), n), second = random.path(random.below(4), m);
    const double angle = random.below(3) ? 0 : random.part() * 6, scale = std::pow(10, random.below(6) - 3);
    const double shift = random.below(3) ? 0 : 1e6 * random.part();
    RandomPaths::place(first, angle, scale, shift);
    RandomPaths::place(second, random.below(2) ? angle : angle + 1.5707963267948966, scale, shift);
    const auto a = onPath(first, n > 2 && random.below(2)), b = onPath(second, m > 2 && random.below(2));
    const bool isSame = random.below(5) == 0, touching = random.below(2);
    KdDbMline& other = isSame ? *a : *b;

    CMlineEdit engine;
    pickPath(engine, engine.segFirst, *a, 1, random.below(n - 1), random.part());
    pickPath(engine, engine.segSecond, other, isSame ? 1 : 2, random.below(other.numVertices() - 1), random.part());
    const Choice wanted = chooseByAllPairs(engine, engine.segFirst, engine.segSecond, touching);
    Choice got;
    const bool isFound =
        engine.getSegmentNumbers(&engine.segFirst, &engine.segSecond, &got.segA, &got.segB, got.point, touching);
    ASSERT_EQ(std::tuple(isFound, got.segA, got.segB), std::tuple(wanted.segA >= 0, wanted.segA, wanted.segB));
    ASSERT_THAT(got.point, ::testing::ElementsAreArray(wanted.point));
    ASSERT_TRUE(!isFound || (engine.segFirst.segment == got.segA && engine.segSecond.origSegment == got.segB));
    ++(isFound ? found : refused);
  }
  EXPECT_GT(found, 2500);
  EXPECT_GT(refused, 50);
}

TEST(CrossingSearch, AcceptsWhatEndsWithinTheToleranceOfALine) {
  // 5e-8 beyond the end of a segment of length 1 is still on it, 2e-7 is not.
  for (const auto& [beyond, isFound] : {std::pair(5e-8, true), std::pair(2e-7, false)}) {
    const auto a = onPath({{0, 0, 0}, {1, 0, 0}}, false), b = onPath({{1 + beyond, 1, 0}, {1 + beyond, 2, 0}}, false);
    CMlineEdit engine;
    pickPath(engine, engine.segFirst, *a, 1, 0, 0.5);
    pickPath(engine, engine.segSecond, *b, 2, 0, 0.5);
    Choice got;
    EXPECT_EQ(engine.getSegmentNumbers(&engine.segFirst, &engine.segSecond, &got.segA, &got.segB, got.point, true), isFound)
        << beyond;
  }
}

}  // namespace
