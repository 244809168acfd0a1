#include "mledit/PointTable.h"

#include <cstddef>
#include <new>

namespace {

using Row = double (*)[3];

// A table is one piece of memory: this, the rows, and then all points.
struct Head {
  std::size_t rows, columns, holders = 1;
};

Head* headOf(Row* table) {
  return reinterpret_cast<Head*>(table) - 1;
}

// Where a line passes a vertex that is this far away from it along the miter.
void storePoint(const KdGePoint3d& vertex, const KdGeVector3d& miter, double offset, double out[3]) {
  const KdGePoint3d point = vertex + miter * offset;
  out[0] = point.x;
  out[1] = point.y;
  out[2] = point.z;
}

double offsetOf(const KdMLSegmentView& element) {
  return element.elementParameters.empty() ? 0.0 : element.elementParameters.front();
}

}  // namespace

double (**newPointTable(int rows, int columns))[3] {
  const auto rowCount = static_cast<std::size_t>(rows), rowSize = static_cast<std::size_t>(columns);
  void* memory = ::operator new(sizeof(Head) + rowCount * (sizeof(Row) + rowSize * sizeof(double[3])));
  Row* table = reinterpret_cast<Row*>(new (memory) Head{rowCount, rowSize} + 1);
  const Row points = reinterpret_cast<Row>(table + rowCount);
  for (std::size_t row = 0; row < rowCount; ++row) table[row] = points + row * rowSize;
  return table;
}

double (**renewPointTable(double (**table)[3], int rows, int columns))[3] {
  const Head* head = table ? headOf(table) : nullptr;
  const bool fits = head && head->holders == 1 && head->rows == static_cast<std::size_t>(rows) &&
                    head->columns == static_cast<std::size_t>(columns);
  if (fits) return table;
  int oldRows = 0;
  freePointTable(&table, &oldRows);
  return newPointTable(rows, columns);
}

double (**sharePointTable(double (**table)[3]))[3] {
  if (table) ++headOf(table)->holders;
  return table;
}

void freePointTable(double (***table)[3], int* rows) {
  if (*table && --headOf(*table)->holders == 0) ::operator delete(headOf(*table));
  *table = nullptr;
  *rows = 0;
}

void elementPoint(const KdDbMline& mline, int vertex, int element, double out[3]) {
  const double offset = offsetOf(mline.segmentsAt(vertex)[static_cast<std::size_t>(element)]);
  storePoint(mline.vertexAt(vertex), mline.miterAt(vertex), offset, out);
}

void elementPoints(const KdDbMline& mline, int vertex, double (**table)[3], int rows) {
  const KdGePoint3d position = mline.vertexAt(vertex);
  const KdGeVector3d miter = mline.miterAt(vertex);
  const KdMLSegments& segments = mline.segmentsAt(vertex);
  for (int row = 0; row < rows; ++row) {
    storePoint(position, miter, offsetOf(segments[static_cast<std::size_t>(row)]), table[row][vertex]);
  }
}
