#pragma once

#include <kdrx/db_database.h>
#include <kdrx/db_mline_style.h>

// The elements and flags of a multiline style as flat arrays, one entry per element in element order. Every function takes
// the style first (open for write where it changes something), changes one property of every element and leaves the others
// as they were. All return 1, and 0 when the style is null. A null array changes nothing.
//
// A style is built in the order SetNumElements, SetElemOffset, SetElemColor, SetElemRgb (true colors), SetElemName
// (color-book colors), SetElemLtype, SetFlag.

/// Bits of a style's flag word (group 70, and the style library file). 4, 8 and 128 carry no meaning.
enum MlineStyleFlag : int {
  kStyleFilled = 1,
  kStyleShowMiters = 2,
  kStyleStartSquareCap = 16,
  kStyleStartInnerArcs = 32,
  kStyleStartRoundCap = 64,
  kStyleEndSquareCap = 256,
  kStyleEndInnerArcs = 512,
  kStyleEndRoundCap = 1024,
};

/// An entry of SetElemRgb() that leaves its element alone, as all from 0x1000000 on do.
inline constexpr unsigned kNoRgb = 0xFFFFFFFF;

/// Makes the style hold n elements (n < 0 counts as 0). New ones come at the end, with offset 0.5, by layer. Surplus ones
/// are taken from the front of the list, not its end: our own decision, which the callers that refill the list rely on.
int SetNumElements(KdDbMlineStyle* style, int n);

/// Element i gets the offset at i, 0.0 from `count` on.
int SetElemOffset(KdDbMlineStyle* style, const double* offsets, int count);
/// Writes `count` offsets, 0.0 beyond the last element.
int GetElemOffset(const KdDbMlineStyle* style, double* offsets, int count);

/// Element i gets the color index at i: 0 by block, 256 by layer; by layer from `count` on. An entry outside 0 to 256 counts
/// as 256 and is rewritten to that in the caller's array, which is intended: the caller goes on with what was set.
int SetElemColor(KdDbMlineStyle* style, int* indices, int count);
/// Element i gets the true color 0x00RRGGBB at i, unless that is 0x1000000 or more. The entry of every element is read, also
/// from `count` on, where it is without effect: the array always holds one per element, which is intended.
int SetElemRgb(KdDbMlineStyle* style, const unsigned* rgbs, int count);
/// Element i, below `count`, gets the color-book name at i ("BOOK$COLOR"); one that is not valid takes its name away.
/// Without a first entry nothing changes.
int SetElemName(KdDbMlineStyle* style, const wchar_t* const* names, int count);
/// Whether a text is a color-book name: not empty, with at most one "$", which is neither its first nor its last character.
bool IsColorBookNameValid(const wchar_t* name);

/// Sets each element's linetype by name; a null name leaves its element alone. A linetype that the drawing lacks is loaded
/// from "torva.lin", in a metric drawing ("MEASUREMENT") from "torvaiso.lin"; one that is not there either becomes
/// "Continuous".
/// @param names one per element; `count` is not consulted
int SetElemLtype(KdDbMlineStyle* style, const wchar_t* const* names, int count, KdDbDatabase* database);

/// Sets all eight properties of the flag word, on or off.
int SetFlag(KdDbMlineStyle* style, int flags);
