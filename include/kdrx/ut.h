#pragma once

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

/// Prints a message on the command line. The text is shown as it stands; it is no format.
KDRX_API void kdutPrint(const wchar_t* text) noexcept;
