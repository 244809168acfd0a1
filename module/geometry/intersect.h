#pragma once

// Intersections of two segments p1-p2 and p3-p4, in the plan and in space.

/// Intersects two segments in the plan: x and y decide, z is interpolated along a segment.
/// @param[in,out] out the intersection of the endless lines, written for results 0 to 3 only. Its z on entry takes part in
///   the test whether the intersection is an end point, so callers set it to the height they work at. Error in x and y: at
///   most 16 epsilon times the largest coordinate times the product of both lengths over their cross product
/// @return 0 on neither segment, 1 on the first only, 2 on the second only, 3 on both (ends included); -1 for parallel lines
///   and segments without length (1e-11)
short gx_linexline(const double* p1, const double* p2, const double* p3, const double* p4, double* out);

/// Intersects two segments in space; all tests use 1e-7.
/// @return 0 to 3: the lines meet in `out`, as in gx_linexline(); 3 also for segments of one line that touch end to end.
///   -1: parallel lines, `out` unchanged. -2: segments of one line that overlap, `out` is an end of the overlap.
///   -3: segments of one line apart, `out` unchanged. -4: skew lines that cross in the plan at different heights, `out` is
///   the point on the first line, or on the sloping one when the other is vertical
short linexline3d(const double* p1, const double* p2, const double* p3, const double* p4, double* out);
