#pragma once

namespace torva::command {

class Editor;

/// Draws a circle in the plane of the user coordinate system: by center and radius or diameter, by the ends of a diameter,
/// or by three of its points.
void circleCommand(Editor& editor);

}  // namespace torva::command
