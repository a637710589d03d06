#include "effect/params/DecimalText.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>

namespace vindrel {
namespace {

/// What strtod answers when the number at `begin` is beyond a double: nothing when it is too small, else infinity.
/// No text that comes here has enough digits to do that without an exponent, so the exponent's sign decides.
double beyondRange(const char* begin, const char* end) {
  for (const char* at = begin; at + 1 < end; ++at) {
    if ((*at == 'e' || *at == 'E') && at[1] == '-') return 0.0;
  }
  return std::numeric_limits<double>::infinity();
}

bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

void writeDecimal(char (&text)[decimalTextSize], double value) {
  const auto result = std::to_chars(text, text + decimalTextSize - 1, value, std::chars_format::fixed, 6);
  *(result.ec == std::errc{} ? result.ptr : text) = '\0';
}

double readDecimal(const char* text) {
  while (isBlank(*text)) {
    ++text;
  }
  const bool negative = *text == '-';
  if (negative || *text == '+') {
    ++text;
  }
  // A second sign is no number; from_chars would take a minus.
  if (*text == '-') return 0.0;
  const char* const end = text + std::strlen(text);
  double value = 0.0;
  const auto result = std::from_chars(text, end, value);
  if (result.ec == std::errc::result_out_of_range) {
    value = beyondRange(text, result.ptr);
  } else if (result.ec != std::errc{}) {
    value = 0.0;
  }
  return std::copysign(value, negative ? -1.0 : 1.0);
}

}  // namespace vindrel
