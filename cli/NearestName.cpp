#include "cli/NearestName.h"

#include <algorithm>

namespace cli {
namespace {

// By hand, because the C library's tolower goes by the locale of the machine.
char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool sameLetter(char left, char right) {
  return lowered(left) == lowered(right);
}

/// The words of a text; everything but blanks belongs to one.
std::vector<std::string_view> wordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) words.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}

/// Two words or more, all of which stand in the name in the same order.
bool holdsWords(std::string_view name, std::string_view wanted) {
  const std::vector<std::string_view> all = wordsOf(name);
  const std::vector<std::string_view> some = wordsOf(wanted);
  if (some.size() < 2) return false;
  auto place = all.begin();
  for (const std::string_view word : some) {
    place = std::find_if(place, all.end(), [&](std::string_view other) { return equalIgnoringCase(word, other); });
    if (place == all.end()) return false;
    ++place;
  }
  return true;
}

}  // namespace

bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), sameLetter);
}

std::size_t editDistance(std::string_view left, std::string_view right) {
  // Three rows of the usual table: cost[j] turns the first i letters of left into the first j of right. The row
  // before the last one is needed for the swap of two neighbours.
  std::vector<std::size_t> beforeLast(right.size() + 1);
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> cost(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) last[j] = j;

  for (std::size_t i = 1; i <= left.size(); ++i) {
    cost[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (sameLetter(left[i - 1], right[j - 1]) ? 0 : 1);
      cost[j] = std::min({last[j] + 1, cost[j - 1] + 1, replaced});
      const bool swapped =
          i > 1 && j > 1 && sameLetter(left[i - 1], right[j - 2]) && sameLetter(left[i - 2], right[j - 1]);
      if (swapped) cost[j] = std::min(cost[j], beforeLast[j - 2] + 1);
    }
    beforeLast.swap(last);
    last.swap(cost);
  }
  return last[right.size()];
}

std::string nearestName(std::string_view wanted, const std::vector<std::string>& names) {
  const std::string* nearest = nullptr;
  std::size_t least = 0;
  for (const std::string& name : names) {
    const std::size_t distance = editDistance(wanted, name);
    if (nearest == nullptr || distance < least) {
      nearest = &name;
      least = distance;
    }
  }
  if (nearest == nullptr) return {};
  const std::size_t letters = std::max(wanted.size(), nearest->size());
  if (least <= std::max<std::size_t>(1, letters / 3)) return *nearest;
  // "Mask Layer" is far from "Mask Target Layer" by its letters, but nothing else was meant.
  const auto holdsAll = [&](const std::string& name) { return holdsWords(name, wanted); };
  const auto found = std::find_if(names.begin(), names.end(), holdsAll);
  return found == names.end() ? std::string() : *found;
}

std::string suggestion(std::string_view wanted, const std::vector<std::string>& names, std::string_view otherwise) {
  const std::string nearest = nearestName(wanted, names);
  if (nearest.empty()) return std::string(otherwise);
  return "; did you mean '" + nearest + "'?";
}

std::string listed(const std::vector<std::string>& names, std::string_view last) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " " + std::string(last) + " " : ", ";
    text += names[i];
  }
  return text;
}

}  // namespace cli
