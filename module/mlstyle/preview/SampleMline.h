#pragma once

#include <memory>

#include <kdrx/db_mline.h>

class KdDbMlineStyle;

/// A multiline outside of any drawing that shows a style: three vertices on the x axis at 0, half of `width` (in whole
/// units) and `width`, the elements above it, `height` from the lowest to the highest. It is less high where slanting ends
/// would else reach far along the axis. Elements of one and the same offset lie on the axis.
/// @param width, height > 0, drawing units
std::unique_ptr<KdDbMline> makeSampleMline(const KdDbMlineStyle& style, int width, int height);
