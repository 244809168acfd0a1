#pragma once

#include <optional>
#include <span>
#include <vector>

#include "draw/record_values.h"
#include "draw/sketch.h"

namespace torva::draw {

/// Each draws one entity from its record's values, in the entity's own coordinate system.
void drawLine(const RecordValues& values, Sketch& sketch, std::uint32_t appearance);
void drawPoint(const RecordValues& values, Sketch& sketch, std::uint32_t appearance);
void drawCircle(const RecordValues& values, Sketch& sketch, std::uint32_t appearance);
void drawArc(const RecordValues& values, Sketch& sketch, std::uint32_t appearance);
/// World coordinates; the normal gives the direction of the minor axis.
void drawEllipse(const RecordValues& values, const KdGeVector3d& normal, Sketch& sketch, std::uint32_t appearance);
void drawFace(const RecordValues& values, Sketch& sketch, std::uint32_t appearance);
void drawSolid(const RecordValues& values, Sketch& sketch, std::uint32_t appearance);
/// The frame of a picture.
void drawImageFrame(const RecordValues& values, Sketch& sketch, std::uint32_t appearance);
void drawSpline(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance);
void drawLeader(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance);

/// A B-spline; weights may be empty.
struct Spline {
  int degree = 3;
  std::vector<double> knots, weights;
  std::vector<KdGePoint3d> controlPoints;

  /// Points along the curve, ends included; the control polygon when degree, knots and points do not fit together.
  std::vector<KdGePoint3d> sample() const;
};

}  // namespace torva::draw
