#include "geometry/conversions.h"

#include <kdrx/ed.h>
#include <kdrx/gs.h>

namespace {

KdResbuf systemCode(KdCoordinateSystem system) {
  KdResbuf code;
  code.restype = kKdResultShort;
  code.value.shortInteger = static_cast<std::int16_t>(system);
  return code;
}

bool convert(const double* in, KdCoordinateSystem from, KdCoordinateSystem to, int disp, double* out) {
  const KdResbuf fromCode = systemCode(from), toCode = systemCode(to);
  return kdedTrans(in, &fromCode, &toCode, disp, out) == kKdInputNormal;
}

}  // namespace

bool uc2wc(const double* in, double* out, int disp) {
  return convert(in, kKdUser, kKdWorld, disp, out);
}

bool wc2uc(const double* in, double* out, int disp) {
  return convert(in, kKdWorld, kKdUser, disp, out);
}

int vex_wcs2dcs(const double* in, double* out) {
  const KdGsView* view = kdgsActiveView();
  if (!view) return -1;
  double display[3];
  view->worldToDisplay(in, display);
  out[0] = display[0];
  out[1] = display[1];
  out[2] = 0.0;
  return 0;
}

int vex_ucs2rp(const double*, double*) {
  return 0;
}
