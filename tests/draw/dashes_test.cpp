#include "draw/dashes.h"

#include <gtest/gtest.h>

namespace torva::draw {
namespace {

using Points = std::vector<KdGePoint3d>;

TEST(Dashes, SplitAPath) {
  struct Case {
    const char* name;
    Points path;
    std::vector<double> dashes;
    std::vector<Points> pieces;
  };
  const std::vector<Case> cases = {
      {"dash and gap", {{0, 0, 0}, {10, 0, 0}}, {3, -2}, {{{0, 0, 0}, {3, 0, 0}}, {{5, 0, 0}, {8, 0, 0}}}},
      {"around a corner",
       {{0, 0, 0}, {2, 0, 0}, {2, 5, 0}},
       {4, -2},
       {{{0, 0, 0}, {2, 0, 0}, {2, 2, 0}}, {{2, 4, 0}, {2, 5, 0}}}},
      {"dots", {{0, 0, 0}, {5, 0, 0}}, {0, -2}, {{{0, 0, 0}}, {{2, 0, 0}}, {{4, 0, 0}}}},
      {"gap first", {{0, 0, 0}, {5, 0, 0}}, {-1, 2}, {{{1, 0, 0}, {3, 0, 0}}, {{4, 0, 0}, {5, 0, 0}}}},
      {"no length", {{0, 0, 0}, {5, 0, 0}}, {0, 0}, {{{0, 0, 0}, {5, 0, 0}}}},
      {"too many pieces", {{0, 0, 0}, {5, 0, 0}}, {1e-9, -1e-9}, {{{0, 0, 0}, {5, 0, 0}}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto pieces = splitIntoDashes(c.path, c.dashes);
    ASSERT_EQ(pieces.size(), c.pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      ASSERT_EQ(pieces[i].size(), c.pieces[i].size()) << "piece " << i;
      for (std::size_t k = 0; k < pieces[i].size(); ++k) EXPECT_LE(pieces[i][k].distanceTo(c.pieces[i][k]), 1e-12);
    }
  }
}

}  // namespace
}  // namespace torva::draw
