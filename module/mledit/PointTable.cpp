#include "mledit/PointTable.h"

#include <cstddef>
#include <new>
#include <span>

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

// The vertex, or one at the origin where there is none.
const KdMlineVertex& vertexAt(std::span<const KdMlineVertex> vertices, int index) {
  static const KdMlineVertex none;
  const bool isThere = index >= 0 && index < static_cast<int>(vertices.size());
  return isThere ? vertices[static_cast<std::size_t>(index)] : none;
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
  const KdMlineVertex& at = vertexAt(mline.vertices(), vertex);
  storePoint(at.position, at.miter, offsetOf(at.elements[static_cast<std::size_t>(element)]), out);
}

void elementPoints(const KdDbMline& mline, double (**table)[3], int rows, int columns) {
  const std::span<const KdMlineVertex> vertices = mline.vertices();
  for (int column = 0; column < columns; ++column) {
    const KdMlineVertex& at = vertexAt(vertices, column);
    for (int row = 0; row < rows; ++row) {
      storePoint(at.position, at.miter, offsetOf(at.elements[static_cast<std::size_t>(row)]), table[row][column]);
    }
  }
}
