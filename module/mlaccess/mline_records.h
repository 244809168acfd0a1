#pragma once

#include <kdrx/db_mline.h>

/// One element at one vertex: its two lists, null where empty.
struct db_mlelemlink {
  int lineCount = 0;
  double* lineParameters = nullptr;
  int areaCount = 0;
  double* areaParameters = nullptr;
};

/// One vertex with its elements; the element array is null when the multiline has no element.
struct db_mlvertlink {
  double position[3] = {0, 0, 0};
  double axis[3] = {0, 0, 0};
  double miter[3] = {0, 0, 0};
  db_mlelemlink* elements = nullptr;
};

/// A snapshot of all vertices: as many records as the multiline has vertices, each with as many elements as
/// GetSegmentsSize() says.
/// @return null when the multiline is null or has no vertex. The caller owns the whole tree: free_vert() releases it, or
///   each parameter array, element array and the vertex array as arrays
db_mlvertlink* ret_vert(const KdDbMline* mline);

/// Releases a tree of ret_vert(); null is allowed.
void free_vert(db_mlvertlink* records, int numVertices, int numElements);

/// Owns a tree of ret_vert().
class CMlineRecords {
 public:
  explicit CMlineRecords(const KdDbMline* mline);
  ~CMlineRecords() { free_vert(m_records, m_numVertices, m_numElements); }
  CMlineRecords(const CMlineRecords&) = delete;
  CMlineRecords& operator=(const CMlineRecords&) = delete;

  int numVertices() const { return m_numVertices; }
  int numElements() const { return m_numElements; }
  /// Requires: 0 <= vertex < numVertices().
  const db_mlvertlink& operator[](int vertex) const { return m_records[vertex]; }

 private:
  db_mlvertlink* m_records;
  int m_numVertices = 0, m_numElements = 0;
};
