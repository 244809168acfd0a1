#pragma once

namespace torva {

/// Reads the plain decimal ("-12.5", ".5", "3") of at most 18 digits at the front of a text, rounded correctly: what nearly
/// all numbers in a drawing are, and faster than parseReal().
/// @param[out] value unchanged when there is none
/// @return where the decimal ends; null when there is none
const char* readDecimal(const char* begin, const char* end, double& value);

/// The same within two units in the last place, for a decimal of 1 to 8 digits in front of the point and 1 to 16
/// behind it, or without a point; several times faster again.
const char* readNearDecimal(const char* begin, const char* end, double& value);

}  // namespace torva
