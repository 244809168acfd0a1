#pragma once

#include <cmath>
#include <numbers>

namespace torva::db {

inline double radiansFrom(double degrees) {
  return degrees * (std::numbers::pi / 180);
}

/// Degrees for an angle: of those that say the same the one with the fewest decimals, up to 12.
inline double degreesFrom(double angleRad) {
  constexpr double kMostDecimals = 1e12;
  const double degrees = angleRad * (180 / std::numbers::pi);
  for (double factor = 1; factor <= kMostDecimals; factor *= 10) {
    const double rounded = std::round(degrees * factor) / factor;
    if (radiansFrom(rounded) == angleRad) return rounded;
  }
  return degrees;
}

}  // namespace torva::db
