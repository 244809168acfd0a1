#include <algorithm>

#include "geometry/vectors.h"
#include "mledit/MlineEdit.h"

namespace {

C3Point difference(const double* a, const double* b) {
  C3Point result(a);
  result -= C3Point(b);
  return result;
}

}  // namespace

void CMlineEdit::Distance_PointToPoint(const double* a, const double* b, double* dist, const double* ref) {
  *dist = vexengine_distance(a, b);
  if (ref && Determinant(difference(a, b), difference(ref, b), nullptr) > 0) *dist = -*dist;
}

void CMlineEdit::Distance_PointToLine(const double* p, const double* a, const double* b, const double* normal, double* dist,
                                      double* foot) {
  double onLine[3];
  gx_ptlndist(p, a, b, dist, onLine);
  if (dist && Determinant(difference(p, onLine), difference(b, onLine), nullptr) > 0) *dist = -*dist;
  if (dist && normal[2] < 0) *dist = -*dist;
  if (foot) std::copy_n(onLine, 3, foot);
}
