#include "mledit/PointTable.h"

double (**newPointTable(int rows, int columns))[3] {
  using Row = double(*)[3];
  auto* table = new Row[static_cast<std::size_t>(rows)]();
  for (int row = 0; row < rows; ++row) table[row] = new double[static_cast<std::size_t>(columns)][3]();
  return table;
}

void freePointTable(double (***table)[3], int* rows) {
  for (int row = 0; *table && row < *rows; ++row) delete[](*table)[row];
  delete[] * table;
  *table = nullptr;
  *rows = 0;
}

void elementPoint(const KdDbMline& mline, int vertex, int element, double out[3]) {
  const KdMLSegment* segment = mline.segmentAt(vertex, element);
  const double offset = segment && !segment->elementParameters.empty() ? segment->elementParameters.front() : 0.0;
  const KdGePoint3d point = mline.vertexAt(vertex) + mline.miterAt(vertex) * offset;
  out[0] = point.x;
  out[1] = point.y;
  out[2] = point.z;
}
