#pragma once

#include <kdrx/db_mline.h>

// Tables of points: rows of equally long arrays of 3 doubles (world coordinates), table[row][column].

/// Makes a table of points at the origin. Requires: rows >= 0, columns >= 0. The caller releases it with freePointTable().
double (**newPointTable(int rows, int columns))[3];

/// Releases a table and sets it and its number of rows to none; a null table is allowed.
void freePointTable(double (***table)[3], int* rows);

/// The point where an element line passes a vertex: the vertex plus its miter times the first element parameter (0 for an
/// empty list).
void elementPoint(const KdDbMline& mline, int vertex, int element, double out[3]);
