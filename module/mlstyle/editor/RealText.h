#pragma once

/// Whether a text is a real number as the edits of the module take it: digits, at most one point, and with `allowsMinus` a
/// minus in front. A minus or a point alone counts, as 0; a plus, an exponent, a blank or nothing at all does not, nor does
/// a number beyond what a real can hold.
/// @param text null is none; only the first 512 characters are looked at
/// @param trims white space around it is passed over
/// @param[out] value may be null; unchanged unless the text is a number
bool gx_strIsValidReal(const wchar_t* text, bool allowsMinus, bool trims, double* value);
