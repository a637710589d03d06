#include "cli/FramePattern.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "cli/UserError.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

std::optional<int32_t> numberIn(std::string_view text) {
  int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (text.empty() || text[0] == '-' || number > lastFrameNumber) return std::nullopt;
  return number;
}

struct NumberPlace {
  std::size_t start = 0;
  std::size_t length = 0;
  std::size_t width = 1;
};

/// The next place of a number at or behind `from`: a run of #, or %d, %4d and %04d.
std::optional<NumberPlace> placeFrom(const std::string& name, std::size_t from) {
  for (std::size_t i = from; i < name.size(); ++i) {
    if (name[i] == '#') {
      const std::size_t end = std::min(name.find_first_not_of('#', i), name.size());
      return NumberPlace{i, end - i, end - i};
    }
    if (name[i] != '%') continue;
    const std::size_t end = name.find_first_not_of("0123456789", i + 1);
    if (end == std::string::npos || name[end] != 'd' || end - i > 3) continue;
    const auto width = numberIn(std::string_view(name).substr(i + 1, end - i - 1));
    return NumberPlace{i, end + 1 - i, static_cast<std::size_t>(width.value_or(1))};
  }
  return std::nullopt;
}

void addRange(const std::string& part, const std::string& text, std::vector<int32_t>& frames) {
  const std::size_t times = part.find('x');
  const std::string range = part.substr(0, times);
  const std::size_t dash = range.find('-');
  const auto first = numberIn(std::string_view(range).substr(0, dash));
  const auto last = dash == std::string::npos ? first : numberIn(std::string_view(range).substr(dash + 1));
  const auto step =
      times == std::string::npos ? std::optional<int32_t>(1) : numberIn(std::string_view(part).substr(times + 1));
  if (!first || !last || !step || *step < 1 || *last < *first) {
    throw UserError("--frames takes numbers and ranges such as 1-200, 1-200x2 or 1,5,9-12, up to " +
                    std::to_string(lastFrameNumber) + ", not '" + text + "'");
  }
  for (int32_t frame = *first; frame <= *last; frame += *step) frames.push_back(frame);
}

}  // namespace

std::optional<FramePattern> FramePattern::in(const fs::path& file) {
  const std::string name = file.filename().string();
  const auto place = placeFrom(name, 0);
  if (!place) return std::nullopt;
  if (placeFrom(name, place->start + place->length)) {
    throw UserError("'" + file.string() + "' has two places for a number; it must have one");
  }
  FramePattern pattern;
  pattern.folder_ = file.parent_path();
  pattern.before_ = name.substr(0, place->start);
  pattern.after_ = name.substr(place->start + place->length);
  pattern.width_ = place->width;
  return pattern;
}

fs::path FramePattern::fileOf(int32_t number) const {
  std::string digits = std::to_string(number);
  if (digits.size() < width_) digits.insert(0, width_ - digits.size(), '0');
  return folder_ / (before_ + digits + after_);
}

std::vector<int32_t> FramePattern::numbersOnDisk() const {
  std::vector<int32_t> numbers;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder_.empty() ? fs::path(".") : folder_, ignored)) {
    const std::string name = entry.path().filename().string();
    if (name.size() <= before_.size() + after_.size() || !name.starts_with(before_) || !name.ends_with(after_))
      continue;
    const auto number =
        numberIn(std::string_view(name).substr(before_.size(), name.size() - before_.size() - after_.size()));
    if (number && fileOf(*number).filename() == entry.path().filename()) numbers.push_back(*number);
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

std::vector<int32_t> frameList(const std::string& text) {
  std::vector<int32_t> frames;
  std::size_t start = 0;
  while (start <= text.size()) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    addRange(text.substr(start, comma - start), text, frames);
    start = comma + 1;
  }
  std::sort(frames.begin(), frames.end());
  frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
  return frames;
}

}  // namespace cli
