#include "cli/Shot.h"

#include <algorithm>
#include <system_error>

#include "cli/FramePattern.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/files/PutFile.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

/// A name that looks like a pattern but is a file that there is, is that file.
std::optional<FramePattern> inputPattern(const fs::path& input) {
  std::error_code ignored;
  if (fs::exists(input, ignored)) return std::nullopt;
  return FramePattern::in(input);
}

std::vector<int32_t> numbersFrom(const FramePattern& pattern, const fs::path& input) {
  std::vector<int32_t> numbers = pattern.numbersOnDisk();
  if (numbers.empty()) throw UserError("no files " + quoted(input));
  for (std::size_t i = 1; i < numbers.size(); ++i) {
    if (numbers[i] == numbers[i - 1] + 1) continue;
    throw UserError(quoted(input) + " has no frame " + std::to_string(numbers[i - 1] + 1) +
                    "; --frames says which ones are meant");
  }
  return numbers;
}

/// Part K of N of a list, in runs of neighbours whose lengths differ by one at most.
std::vector<ShotFrame> partOf(const std::vector<ShotFrame>& frames, int32_t part, int32_t parts) {
  const auto cut = [&](int32_t k) {
    return frames.begin() +
           static_cast<std::ptrdiff_t>(frames.size() * static_cast<std::size_t>(k) / static_cast<std::size_t>(parts));
  };
  return {cut(part - 1), cut(part)};
}

}  // namespace

bool isShot(const Arguments& arguments) {
  return !arguments.frames.empty() || inputPattern(arguments.input).has_value();
}

std::vector<ShotFrame> framesOfShot(const Arguments& arguments) {
  const auto in = inputPattern(arguments.input);
  const auto out = FramePattern::in(arguments.output);
  const std::vector<int32_t> numbers = arguments.frames.empty() ? numbersFrom(*in, arguments.input) : arguments.frames;
  if (!out && numbers.size() > 1) {
    throw UserError(quoted(arguments.output) + " needs a place for the frame's number, such as out.####.png");
  }
  std::vector<ShotFrame> frames;
  frames.reserve(numbers.size());
  std::error_code ignored;
  for (const int32_t number : numbers) {
    ShotFrame frame{number, in ? in->fileOf(number) : arguments.input, out ? out->fileOf(number) : arguments.output};
    if (in && !fs::exists(frame.input, ignored)) {
      throw UserError("no file " + quoted(frame.input) + " for frame " + std::to_string(number));
    }
    if (number < arguments.start) {
      throw UserError("frame " + std::to_string(number) + " lies before --start " + std::to_string(arguments.start));
    }
    frames.push_back(std::move(frame));
  }
  checkPlace(frames.front().output);
  return partOf(frames, arguments.chunk, arguments.chunks);
}

}  // namespace cli
