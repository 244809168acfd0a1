#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/export.h"

namespace torva {

/// Reads a real number as drawing files and users write it: blanks around, exponents with e, E, d or D, independent of the
/// locale. Lenient where the meaning is plain ("1,5", "1.000000E 20"). Nothing for an empty or unclear text, and for values
/// that are not finite.
std::optional<double> parseReal(std::string_view text);

/// Reads an integer; "3.0" counts as 3. Nothing for an unclear text or a value outside the type.
std::optional<std::int64_t> parseInteger(std::string_view text);

/// Reads a handle: 1 to 16 hexadecimal digits, blanks around. Nothing for anything else.
std::optional<std::uint64_t> parseHandle(std::string_view text);

/// The shortest text that reads back as the same value, at least one digit after a decimal point ("1.0", "2.5E-16").
TORVA_API std::string formatReal(double value);
/// The same at the end of a text.
void appendReal(std::string& text, double value);

/// Capital hexadecimal digits without leading zeros.
std::string formatHandle(std::uint64_t handle);

}  // namespace torva
