#pragma once

// Conversions between coordinate systems, through the host.

/// Converts from the user to the world system. @param disp 0 for a point, 1 for a displacement
/// @return true when the host converted; `out` is unchanged otherwise
bool uc2wc(const double* in, double* out, int disp);

/// Converts from the world to the user system; as uc2wc().
bool wc2uc(const double* in, double* out, int disp);

/// Maps a world point to the display plane of the current view, in drawing units; z becomes 0.0.
/// @return 0, or -1 without a view; `out` is unchanged then
int vex_wcs2dcs(const double* in, double* out);

/// Leaves `out` as it is and returns 0: nothing here is measured in the points of a raster. Our own decision.
int vex_ucs2rp(const double* in, double* out);
