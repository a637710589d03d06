// Numbers as the settings file spells them: what "%f" writes and atof reads in the "C" locale, whatever locale the host
// has chosen for the process. With the C library's own, a comma as decimal sign would spoil files made elsewhere.
#pragma once

namespace vindrel {

/// Room for the longest double with six decimals: a sign, 309 digits, a point, six digits and the closing zero.
inline constexpr int decimalTextSize = 320;

/// Writes `value` with six decimals, zero-ended.
void writeDecimal(char (&text)[decimalTextSize], double value);

/// The number at the start of a zero-ended text, blanks before it skipped; what follows it does not count. 0 when the
/// text begins with no number; infinite when the number is beyond a double.
double readDecimal(const char* text);

}  // namespace vindrel
