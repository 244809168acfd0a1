#pragma once

namespace torva {

/// A plain decimal ("-12.5") of 1 to 8 digits in front of its point and 1 to 16 behind it, within two units in the last
/// place: where numbers only make boxes, that is enough, and takes half the time.
struct NearDecimal {
  double value = 0;
  const char* end = nullptr;  ///< Behind the last digit, where anything may follow; null when there is no such decimal.
};

/// Reads the decimal at the front of a text. The 8 characters in front of it are read too.
NearDecimal nearDecimal(const char* begin, const char* end);

}  // namespace torva
