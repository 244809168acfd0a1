#include "mlaccess/mline_records.h"

#include <algorithm>
#include <memory>

#include "mlaccess/mline_access.h"

namespace {

using Triples = std::unique_ptr<double[][3]>;

Triples read(const KdDbMline* mline, int (*get)(const KdDbMline*, double (*)[3])) {
  auto triples = std::make_unique<double[][3]>(static_cast<std::size_t>(mline->numVertices()));
  get(mline, triples.get());
  return triples;
}

void readElement(const KdDbMline* mline, int vertex, int element, db_mlelemlink& record) {
  GetNumLine(mline, &record.lineCount, vertex, element);
  if (record.lineCount > 0) {
    record.lineParameters = new double[static_cast<std::size_t>(record.lineCount)];
    GetLineArray(mline, record.lineParameters, record.lineCount, vertex, element);
  }
  GetNumArea(mline, &record.areaCount, vertex, element);
  if (record.areaCount > 0) {
    record.areaParameters = new double[static_cast<std::size_t>(record.areaCount)];
    GetAreaArray(mline, record.areaParameters, record.areaCount, vertex, element);
  }
}

}  // namespace

db_mlvertlink* ret_vert(const KdDbMline* mline) {
  const int n = mline ? mline->numVertices() : 0;
  if (n < 1) return nullptr;
  int e = 0;
  GetSegmentsSize(mline, &e);
  const Triples positions = read(mline, GetVertices), axes = read(mline, GetAxis), miters = read(mline, GetMilters);
  auto* records = new db_mlvertlink[static_cast<std::size_t>(n)];
  for (int vertex = 0; vertex < n; ++vertex) {
    db_mlvertlink& record = records[vertex];
    std::copy_n(positions[static_cast<std::size_t>(vertex)], 3, record.position);
    std::copy_n(axes[static_cast<std::size_t>(vertex)], 3, record.axis);
    std::copy_n(miters[static_cast<std::size_t>(vertex)], 3, record.miter);
    if (e == 0) continue;
    record.elements = new db_mlelemlink[static_cast<std::size_t>(e)];
    for (int element = 0; element < e; ++element) readElement(mline, vertex, element, record.elements[element]);
  }
  return records;
}

void free_vert(db_mlvertlink* records, int numVertices, int numElements) {
  if (!records) return;
  for (int vertex = 0; vertex < numVertices; ++vertex) {
    db_mlelemlink* elements = records[vertex].elements;
    for (int element = 0; elements && element < numElements; ++element) {
      delete[] elements[element].lineParameters;
      delete[] elements[element].areaParameters;
    }
    delete[] elements;
  }
  delete[] records;
}

CMlineRecords::CMlineRecords(const KdDbMline* mline) : m_records(ret_vert(mline)) {
  if (!m_records) return;
  m_numVertices = mline->numVertices();
  GetSegmentsSize(mline, &m_numElements);
}
