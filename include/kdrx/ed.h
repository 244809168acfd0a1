#pragma once

#include <kdrx/export.h>
#include <kdrx/status.h>
#include <kdrx/ut.h>

// Input at the command line. Every function asks the one input queue (script, terminal or window), blocks until it is
// answered and returns a KdInputStatus. Points are in the current user coordinate system unless told otherwise.

/// Longest answer, with its terminating 0.
inline constexpr int kKdInputCapacity = 2049;

/// Restrictions for the next input call.
enum KdInitGetFlags : int {
  kKdInitGetNone = 0,
  kKdNoEmptyAnswer = 1,
  kKdNoZero = 2,
  kKdNoNegative = 4,
};

/// Sets restrictions and keywords for the next input call, which consumes them.
/// @param keywords names separated by blanks, or null for none. The capital letters and digits of a name are its short form;
///   a name in capitals throughout has none but itself, or any unambiguous beginning
/// @return kKdInputNormal, or kKdInputError for a keyword list that cannot be read
[[nodiscard]] KDRX_API int kdedInitGet(int flags, const wchar_t* keywords) noexcept;

/// Asks for one of the keywords set by kdedInitGet(); anything else is asked for again.
/// @param[out] keyword the keyword in its full spelling, cut to `capacity` - 1 characters
/// @return kKdInputNormal, kKdInputNone (empty answer), kKdInputCancel, kKdInputError
[[nodiscard]] KDRX_API int kdedGetKword(const wchar_t* prompt, wchar_t* keyword, int capacity = 2048) noexcept;

/// Asks for an entity.
/// @param[out] name the entity picked; cleared first, so it is null unless the result is kKdInputNormal
/// @param[out] point the pick point, user coordinates; unchanged unless the result is kKdInputNormal or a miss
/// @return kKdInputNormal; kKdInputKeyword; kKdInputCancel; kKdInputError with "ERRNO" kKdErrnoPickMissed when the pick met
///   nothing and kKdErrnoEmptyAnswer for an empty answer. An answer that is neither a point, a handle nor an offered keyword
///   is asked for again
[[nodiscard]] KDRX_API int kdedEntSel(const wchar_t* prompt, KdName name, double point[3]) noexcept;

/// Names the tool that is at work by the command line that starts it: previews run that, and help is looked up under it.
/// Holds until the running command ends.
/// @param command a command of the module with the answers that choose the tool, separated by blanks
/// @return kKdInputNormal, or kKdInputError for a null pointer
KDRX_API int kdedSetTool(const wchar_t* command) noexcept;

/// Lets the next kdedEntSel() show, while it waits, what the tool would make of the entity under the cursor: a window runs
/// the tool on copies, answered with the picks and then Enter, and shows what becomes of them. To be called after
/// kdedInitGet(), which takes it back. A module that uses it must bear that its command runs while the same command waits.
/// @param first the entity picked before, and
/// @param firstPoint where it was picked, user coordinates; both null when the next pick is the only one
/// @return kKdInputNormal, or kKdInputError when no tool was named, `first` is no entity or only one of the two is null
KDRX_API int kdedOfferPreview(const long* first, const double firstPoint[3]) noexcept;

/// Asks for a point. @param base null, or the point from which a rubber band and relative input start
[[nodiscard]] KDRX_API int kdedGetPoint(const double* base, const wchar_t* prompt, double point[3]) noexcept;
/// Asks for a real number.
[[nodiscard]] KDRX_API int kdedGetReal(const wchar_t* prompt, double* value) noexcept;
/// Asks for an integer.
[[nodiscard]] KDRX_API int kdedGetInt(const wchar_t* prompt, int* value) noexcept;
/// Asks for a text. @param blanksAllowed 0: a blank ends the answer as the line's end does; 1: only the line's end does
[[nodiscard]] KDRX_API int kdedGetString(int blanksAllowed, const wchar_t* prompt, wchar_t* text, int capacity) noexcept;

/// The keyword that the last input call ended with (kKdInputKeyword), in its full spelling.
/// @param[out] keyword at least kKdInputCapacity characters
/// @return kKdInputNormal, or kKdInputError when the last call ended otherwise; `keyword` is empty then
[[nodiscard]] KDRX_API int kdedGetInput(wchar_t* keyword) noexcept;

/// Reads a system variable (name without regard to case).
/// @param[out] value type and value; a string is released with kdutDelString()
/// @return kKdInputNormal, or kKdInputError for an unknown name; `value` is unchanged then
[[nodiscard]] KDRX_API int kdedGetVar(const wchar_t* name, KdResbuf* value) noexcept;
/// Sets a system variable.
/// @return kKdInputNormal, or kKdInputError for an unknown or read-only name, a wrong type or a value outside its range
[[nodiscard]] KDRX_API int kdedSetVar(const wchar_t* name, const KdResbuf* value) noexcept;

/// What kdedGetFileD() asks for; other flags are accepted and do nothing.
enum KdFileFlags : int {
  kKdFileToWrite = 1,       ///< A file that need not exist. Nothing is asked about one that does.
  kKdFileNoTypedEntry = 2,  ///< The command line is no alternative to the dialog; it is used only where there is no dialog.
};

/// Asks for a file: with a dialog in a host that shows them, else at the command line.
/// @param start the file, or with '/' at its end the folder, that is offered; null or empty: no one
/// @param extension without its point; appended to a name that has none
/// @param[out] result of type kKdResultString with the path, released with kdutDelString(); unchanged unless the result is
///   kKdInputNormal
/// @return kKdInputNormal, kKdInputCancel, kKdInputNone (an empty answer where none is offered), kKdInputError
[[nodiscard]] KDRX_API int kdedGetFileD(const wchar_t* title, const wchar_t* start, const wchar_t* extension, int flags,
                                        KdResbuf* result) noexcept;

/// Coordinate systems of kdedTrans(), as the short integer of its result buffers.
enum KdCoordinateSystem : int { kKdWorld = 0, kKdUser = 1, kKdDisplay = 2 };

/// Converts a point (`isDisplacement` 0) or a displacement (1) between coordinate systems.
/// @param from, to of type kKdResultShort with a KdCoordinateSystem
/// @param[out] out may be the same array as `in`
/// @return kKdInputNormal, or kKdInputError for an unknown system or a null pointer; `out` is unchanged then
[[nodiscard]] KDRX_API int kdedTrans(const double in[3], const KdResbuf* from, const KdResbuf* to, int isDisplacement,
                                     double out[3]) noexcept;

/// Redraw modes of kdedRedraw().
enum KdRedrawMode : int { kKdRedrawShow = 1, kKdRedrawHide = 2, kKdRedrawHighlight = 3, kKdRedrawUnhighlight = 4 };

/// Redraws an entity in a mode, or with a null name the whole view.
/// @return kKdInputNormal, or kKdInputError when there is no such entity
KDRX_API int kdedRedraw(const long* name, int mode) noexcept;

/// Type of a command function: no argument, no result, runs on the command thread.
using KdCommandFunction = void (*)();
