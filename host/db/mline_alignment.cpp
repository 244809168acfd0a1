#include "db/mline_alignment.h"

#include <algorithm>
#include <numeric>

namespace torva::db {

namespace {

/// How far is looked ahead for a vertex among those that were added or removed: beyond, all are written anew. Keeps the cost
/// in proportion to the number of vertices.
constexpr int kLookAhead = 16;

bool isSamePlace(const MlineVertex& a, const MlineVertex& b) {
  return a.position.x == b.position.x && a.position.y == b.position.y && a.position.z == b.position.z;
}

}  // namespace

std::vector<int> alignVertices(const std::vector<MlineVertex>& source, const std::vector<MlineVertex>& target) {
  const int sourceCount = static_cast<int>(source.size());
  const int targetCount = static_cast<int>(target.size());
  std::vector<int> targetOf(source.size(), -1);
  if (sourceCount == targetCount) {
    std::iota(targetOf.begin(), targetOf.end(), 0);
    return targetOf;
  }

  int end = 0;  // vertices that agree from the back
  while (end < std::min(sourceCount, targetCount) &&
         isSamePlace(source[sourceCount - 1 - end], target[targetCount - 1 - end])) {
    ++end;
  }
  const auto distanceTo = [&](int i, int j, int iStep, int jStep) {
    for (int k = 1; k <= kLookAhead; ++k) {
      if (i + k * iStep >= sourceCount - end || j + k * jStep >= targetCount - end) return 0;
      if (isSamePlace(source[i + k * iStep], target[j + k * jStep])) return k;
    }
    return 0;
  };
  int i = 0, j = 0;
  while (i < sourceCount - end && j < targetCount - end) {
    if (!isSamePlace(source[i], target[j])) {
      const int added = distanceTo(i, j, 0, 1);
      const int removed = distanceTo(i, j, 1, 0);
      if (added > 0 && (removed == 0 || added <= removed)) {
        j += added;
      } else {
        i += removed;
      }
    }
    targetOf[i++] = j++;
  }
  for (int k = 1; k <= end; ++k) targetOf[sourceCount - k] = targetCount - k;
  return targetOf;
}

}  // namespace torva::db
