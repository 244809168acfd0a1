#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <kdrx/ge.h>

namespace torva::command {

/// What a point answer is read against, in user coordinates.
struct PointContext {
  KdGePoint3d last;      ///< Where relative answers (`@`) start.
  double elevation = 0;  ///< z of an answer that gives x and y alone.
};

/// Reads a point: `x,y`, `x,y,z`, `dist<angle` from the origin, and after `@` the same from the last point; `@` alone is the
/// last point. Angles are in degrees, counter-clockwise from the x axis. A relative point without z keeps the last one's.
/// Nothing for any other text and for coordinates that are not finite.
std::optional<KdGePoint3d> parsePoint(std::wstring_view text, const PointContext& context);

/// An entity named by its handle, with the pick point.
struct HandlePick {
  std::uint64_t handle = 0;
  KdGePoint3d point;
};

/// Reads `#2F:x,y`: a handle in hexadecimal digits and a point as parsePoint() reads it.
std::optional<HandlePick> parseHandlePick(std::wstring_view text, const PointContext& context);

/// Reads a number as parseReal() in base/numbers.h does, but none with a decimal comma.
std::optional<double> parseNumber(std::wstring_view text);

}  // namespace torva::command
