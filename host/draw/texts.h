#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "draw/record_values.h"
#include "draw/sketch.h"
#include "dxf/drawing_file.h"

namespace torva::draw {

/// Lines of MTEXT stand this many heights apart at line spacing 1.
inline constexpr double kMultilineSpacing = 5.0 / 3;

/// Where a line of text stands and how large its letters are; see Text.
struct TextFrame {
  KdGePoint3d origin;
  KdGeVector3d xAxis, yAxis;
};

/// The frame that a TEXT, ATTRIB or ATTDEF gives a line by its alignment, in the entity's coordinate system.
/// @param width of the line in capital heights
TextFrame textFrame(const RecordValues& values, dxf::RecordType type, double width);

/// Whether a text is fitted between two points, so that its size depends on its width.
bool isSqueezed(const RecordValues& values);

/// Draws TEXT, ATTRIB and ATTDEF: one line, placed by its alignment. ATTDEF shows its tag.
void drawText(const dxf::DrawingFile& file, dxf::RecordId record, Sketch& sketch, std::uint32_t appearance);

/// Draws MTEXT line by line, wrapped to its width.
/// @param normal of the text's plane
void drawMultilineText(const dxf::DrawingFile& file, dxf::RecordId record, const KdGeVector3d& normal, Sketch& sketch,
                       std::uint32_t appearance);

/// The text with its %% codes replaced by the signs they stand for (%%d, %%c, %%p, %%nnn); switches for lines (%%u, %%o,
/// %%k) go.
std::wstring withoutPercentCodes(std::wstring_view text);

/// The lines of an MTEXT's content without formatting codes; stacked parts are joined by a slash.
std::vector<std::wstring> plainLines(std::wstring_view content);

}  // namespace torva::draw
