#pragma once

#include <kdrx/db_mline.h>
#include <kdrx/db_mline_style.h>

// A multiline as its exchange record lays it out: per vertex a position, an axis (direction of the segment that starts
// there) and a miter, and per vertex and element a list of element parameters (group 41) and of area-fill parameters (group
// 42).
//
// Every function takes the opened multiline first (for write where it changes something) and returns 1 for success, 0 for
// failure; a null multiline and a null output always give 0. What a function may not write stays unchanged on failure.
// Points and vectors are arrays of 3 doubles, one for each vertex, in world coordinates.
//
// The element count is the length of the element list at vertex 0. An index is either checked (outside its range: 0, nothing
// done) or clamped (below 0 becomes 0, at or beyond the count becomes count - 1). A vertex that has fewer elements than
// vertex 0 counts as having empty lists for those it lacks.

/// Bits of a multiline's flag word (group 71).
enum MlineFlag : int {
  kMlineHasVertices = 1,
  kMlineIsClosed = 2,
  kMlineStartCapsSuppressed = 4,
  kMlineEndCapsSuppressed = 8,
};

int GetFlag(const KdDbMline* mline, int* flags);
/// Applies the bits for closed (only with more than 2 vertices) and for the caps; the bit for vertices is ignored.
int SetFlag(KdDbMline* mline, int flags);

/// Shortens the multiline at its end, or lengthens it by vertices at (0, 0, 0). Fails when n < 2.
int SetNumVertices(KdDbMline* mline, int n);
/// `points` has room for all vertices.
int GetVertices(const KdDbMline* mline, double (*points)[3]);
int SetVertices(KdDbMline* mline, const double (*points)[3]);
int GetAxis(const KdDbMline* mline, double (*vectors)[3]);
int SetAxis(KdDbMline* mline, const double (*vectors)[3]);
/// The miters. The names of this pair are our own and stay as they are.
int GetMilters(const KdDbMline* mline, double (*vectors)[3]);
int SetMilters(KdDbMline* mline, const double (*vectors)[3]);

/// The element count; 0 without vertices.
int GetSegmentsSize(const KdDbMline* mline, int* size);
/// Gives every vertex n elements: cuts the list, or lengthens it by elements without parameters. Fails when n < 1.
int SetSegmentsSize(KdDbMline* mline, int n);

/// Number of element parameters. Indices are clamped; 0 when there are none.
int GetNumLine(const KdDbMline* mline, int* count, int vertex, int element);
/// Replaces the element parameters by `count` zeros. Indices are checked; fails when count < 0.
int SetNumLine(KdDbMline* mline, int count, int vertex, int element);
/// Copies the element parameters. Indices are clamped. Fails, copying nothing, when they exceed `capacity` doubles.
int GetLineArray(const KdDbMline* mline, double* values, int capacity, int vertex, int element);
/// Replaces the element parameters by as many values as there are now: SetNumLine() comes first. Indices are checked; fails
/// when there are none now.
int SetLineArray(KdDbMline* mline, const double* values, int vertex, int element);

/// The same four for the area-fill parameters.
int GetNumArea(const KdDbMline* mline, int* count, int vertex, int element);
int SetNumArea(KdDbMline* mline, int count, int vertex, int element);
int GetAreaArray(const KdDbMline* mline, double* values, int capacity, int vertex, int element);
/// Takes as many values as there are element parameters, not area-fill parameters; `values` has to hold them. Our own
/// decision: the two lists of an element are rewritten together, in the same length. Fails when there are no element
/// parameters.
int SetAreaArray(KdDbMline* mline, const double* values, int vertex, int element);

/// Opens the multiline's style for read; the caller closes it. 1 also when there is no style or it cannot be opened: `style`
/// is unchanged then.
int GetMlStyle(const KdDbMline* mline, KdDbMlineStyle** style);
int GetNormal(const KdDbMline* mline, double normal[3]);
