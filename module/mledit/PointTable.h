#pragma once

#include <kdrx/db_mline.h>

// Tables of points: rows of equally long arrays of 3 doubles (world coordinates), table[row][column].

/// Makes a table whose points are to be set. Requires: rows >= 0, columns >= 0. The caller releases it with
/// freePointTable().
double (**newPointTable(int rows, int columns))[3];

/// A table of that size in place of another one, whose points are given up; in the same memory where that will do. The other
/// one may be null.
double (**renewPointTable(double (**table)[3], int rows, int columns))[3];

/// The same table for another holder, who releases it too; neither changes it then. Null for null.
double (**sharePointTable(double (**table)[3]))[3];

/// Releases a table and sets it and its number of rows to none; a null table is allowed.
void freePointTable(double (***table)[3], int* rows);

/// The point where an element line passes a vertex: the vertex plus its miter times the first element parameter (0 for an
/// empty list). The origin where there is no such vertex.
void elementPoint(const KdDbMline& mline, int vertex, int element, double out[3]);

/// The same for the vertices 0 to columns - 1 and the elements 0 to rows - 1, into a table of that size.
void elementPoints(const KdDbMline& mline, double (**table)[3], int rows, int columns);
