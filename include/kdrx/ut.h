#pragma once

#include <cstddef>
#include <cstdint>

#include <kdrx/export.h>

/// An entity name as selection returns it: two words, both 0 for "none". Converted by kddbGetObjectId().
using KdName = long[2];

/// Type codes of result buffers.
enum KdResultType : std::int16_t {
  kKdResultReal = 5001,
  kKdResultPoint = 5002,
  kKdResultShort = 5003,
  kKdResultString = 5005,
  kKdResultLong = 5010,
  kKdResultName = -1,
};

/// A typed value, or a chain of them. The chain and its strings are released with kdutRelRb(); a buffer on the stack whose
/// string came from the host is released with kdutDelString().
struct KdResbuf {
  KdResbuf* next = nullptr;
  std::int16_t restype = 0;
  union Value {
    double point[3];
    double real;
    std::int16_t shortInteger;
    std::int32_t longInteger;
    wchar_t* string;
    KdName name;
  } value = {{0, 0, 0}};
};

/// Distance of two points in space; 0.0 when either is null.
KDRX_API double kdutDistance(const double* p, const double* q) noexcept;

/// Copies a text into storage of the host. Null gives null.
/// @param[out] copy owned by the caller, released with kdutDelString()
/// @return kKdInputNormal, or kKdInputError when `copy` is null or memory has run out
[[nodiscard]] KDRX_API int kdutNewString(const wchar_t* text, wchar_t** copy) noexcept;

/// Releases a string that the host made; null is allowed.
KDRX_API void kdutDelString(wchar_t* text) noexcept;

/// Releases a chain of result buffers that the host made, with its strings; null is allowed.
KDRX_API void kdutRelRb(KdResbuf* chain) noexcept;

/// Forms of lengths and of angles as text.
enum KdLengthUnit : int { kKdScientific = 1, kKdDecimal = 2 };
enum KdAngleUnit : int { kKdDegrees = 0, kKdGrads = 2, kKdRadians = 3 };

/// A length as text, such as "12.50" or "1.25E+01". The system variable "DIMZIN" says what is left out: 4 the zero in front
/// of the point, 8 zeros at the end; both together are 12.
/// @param value drawing units
/// @param unit a KdLengthUnit
/// @param precision digits behind the point, 0 to 16
/// @param[out] text cut to `capacity` - 1 characters
/// @return kKdInputNormal, or kKdInputError for a value that is no number, an unknown unit or precision, or no room; `text`
///   is unchanged then
[[nodiscard]] KDRX_API int kddbRToS(double value, int unit, int precision, wchar_t* text, int capacity) noexcept;
/// An angle as text: degrees "22.5", grads "25.0g", radians "0.39r". It is not brought into one turn; else as kddbRToS().
/// @param unit a KdAngleUnit
[[nodiscard]] KDRX_API int kddbAngToS(double angleRad, int unit, int precision, wchar_t* text, int capacity) noexcept;
/// The angle that a text says: a number in `unit`, or in grads or radians if g or r stands behind it.
/// @param[out] angleRad unchanged on failure
/// @return kKdInputNormal, or kKdInputError for a text that is no angle or an unknown unit
[[nodiscard]] KDRX_API int kddbAngToF(const wchar_t* text, int unit, double* angleRad) noexcept;

/// Writes a file whole: beside `path`, then renamed there, so that at every moment the old or the new content is at `path`.
/// Links are followed, permissions kept. Where the folder takes no new files it is written in place, once there is room.
/// @param path UTF-8
/// @return kKdInputNormal, or kKdInputError when it cannot be written; the former file is untouched then, unless writing in
///   place fails on the way
[[nodiscard]] KDRX_API int kdutReplaceFile(const char* path, const char* content, std::size_t size) noexcept;

/// Prints a message on the command line. The text is shown as it stands; it is no format.
KDRX_API void kdutPrint(const wchar_t* text) noexcept;
