#include "cli/FrameRate.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

#include "cli/UserError.h"

namespace cli {
namespace {

template <class Number>
std::optional<Number> whole(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<FrameRate> fraction(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const auto scale = whole<int32_t>(text.substr(0, slash));
  const auto step = whole<int32_t>(text.substr(slash + 1));
  // Within these a million frames can be counted in 32 bits.
  if (!scale || !step || *scale < 1 || *scale > 1000000 || *step < 1 || *step > 2000) return std::nullopt;
  return FrameRate{*scale, *step};
}

std::optional<FrameRate> decimal(std::string_view text) {
  const auto number = whole<double>(text);
  if (!number || !(*number >= 1.0 && *number <= 999.0)) return std::nullopt;
  const double nearest = std::round(*number);
  if (*number == nearest) return FrameRate{static_cast<int32_t>(nearest), 1};
  const bool broadcast = std::abs(*number - nearest * 1000.0 / 1001.0) < 0.005;
  if (broadcast) return FrameRate{static_cast<int32_t>(nearest) * 1000, 1001};
  return FrameRate{static_cast<int32_t>(std::round(*number * 1000.0)), 1000};
}

}  // namespace

FrameRate frameRateFrom(const std::string& text) {
  auto rate = fraction(text);
  if (!rate) rate = decimal(text);
  if (!rate || rate->framesPerSecond() < 1.0 || rate->framesPerSecond() > 999.0) {
    throw UserError("--fps takes a number from 1 to 999, or two as in 24000/1001, not '" + text + "'");
  }
  return *rate;
}

}  // namespace cli
