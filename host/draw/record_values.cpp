#include "draw/record_values.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace torva::draw {
namespace {

constexpr int kFirstInteger = 60, kExtendedData = 1001, kEmbeddedObject = 101;

}  // namespace

RecordValues::RecordValues(const dxf::Groups& groups) {
  for (const dxf::Group& group : groups) {
    if (group.code == kExtendedData || group.code == kEmbeddedObject) break;
    if (!isCode(group.code)) continue;
    if (group.code < kFirstInteger) {
      if (const auto value = group.real()) set(group.code, *value);
    } else {
      if (const auto value = group.integer()) set(group.code, static_cast<double>(*value));
    }
  }
}

int RecordValues::integer(int code, int fallback) const {
  const double value = real(code, fallback);
  const bool fits = std::abs(value) <= std::numeric_limits<int>::max();
  return fits ? static_cast<int>(value) : fallback;
}

KdGePoint3d RecordValues::point(int code) const {
  return {real(code), real(code + 10), real(code + 20)};
}

KdGeVector3d RecordValues::vector(int code) const {
  return {real(code), real(code + 10), real(code + 20)};
}

std::wstring textOf(const dxf::DrawingFile& file, dxf::RecordId record, int code) {
  for (const dxf::Group& group : file.groups(record)) {
    if (group.code == code) return file.text(group);
  }
  return {};
}

double radians(double degrees) {
  return degrees * (std::numbers::pi / 180);
}

}  // namespace torva::draw
