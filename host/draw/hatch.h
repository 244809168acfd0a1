#pragma once

#include "draw/sketch.h"
#include "dxf/group.h"

namespace torva::draw {

/// Draws a HATCH: its area when it is solid, else the lines of its pattern. A pattern that is missing or too dense to be
/// seen gives the outlines instead.
void drawHatch(const dxf::Groups& groups, Sketch& sketch, std::uint32_t appearance);

/// Box of a hatch's outlines, in its own coordinate system.
geom::Box3 hatchExtents(const dxf::Groups& groups);

}  // namespace torva::draw
