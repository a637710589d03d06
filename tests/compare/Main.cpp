// The program compare_modules: what `./dev compare` runs.
#include <charconv>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/LoadedModule.h"
#include "tests/compare/CompareModules.h"

namespace {

constexpr const char* usage =
    "Usage: compare_modules THIS OTHER [--frames N] [--seed S] [--no-memory | --no-calls]\n"
    "\n"
    "Drives two modules with the same random frames and compares what a host sees of them.\n"
    "  --frames N     how many frames (3000)\n"
    "  --seed S       number of the first frame (1)\n"
    "  --calls        compares every call to the host, the default\n"
    "  --no-memory    compares every call but those for handles\n"
    "  --no-calls     compares outputs, answers and stored data only\n"
    "Exit codes: 0 no difference, 1 a difference, 2 not compared\n";

struct Request {
  std::vector<std::string> modules;
  compare::Options options;
  bool help = false;
};

template <class Number>
Number numberOf(std::string_view option, std::string_view text, Number least) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || number < least) {
    throw std::runtime_error(std::string(option) + " takes a whole number from " + std::to_string(least) + ", not '" +
                             std::string(text) + "'");
  }
  return number;
}

Request readArguments(const std::vector<std::string>& words) {
  Request request;
  for (size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    const auto value = [&]() -> const std::string& {
      if (++i == words.size()) throw std::runtime_error(word + " takes a number");
      return words[i];
    };
    if (word == "--frames") {
      request.options.frames = numberOf<int32_t>(word, value(), 1);
    } else if (word == "--seed") {
      request.options.seed = numberOf<uint64_t>(word, value(), 0);
    } else if (word == "--calls") {
      request.options.calls = compare::Calls::kAll;
    } else if (word == "--no-memory") {
      request.options.calls = compare::Calls::kAllButMemory;
    } else if (word == "--no-calls") {
      request.options.calls = compare::Calls::kNone;
    } else if (word == "--help") {
      request.help = true;
    } else if (word.starts_with("-")) {
      throw std::runtime_error("there is no option " + word);
    } else {
      request.modules.push_back(word);
    }
  }
  if (!request.help && request.modules.size() != 2) throw std::runtime_error("two modules are compared");
  return request;
}

void tell(const compare::Tally& tally) {
  std::printf(
      "%d frames (%d at 8, %d at 16, %d at 32 bits; %d by the smart road, %d by the classic one), %d with an output\n",
      tally.frames, tally.framesOfDepth[0], tally.framesOfDepth[1], tally.framesOfDepth[2], tally.smartFrames,
      tally.frames - tally.smartFrames, tally.drawn);
  std::printf("  again: %d ended in their midst, %d with a failing call; %d controls changed, %d flattened, %d lives\n",
              tally.interrupted, tally.faults, tally.changes, tally.flattened, tally.lives);
}

// A module that is loaded afresh each time its entry is asked for.
class Reloaded {
 public:
  explicit Reloaded(std::string path) : path_(std::move(path)), module_(path_) {}
  const standin::LoadedModule& module() const { return *module_; }
  PF_EffectEntryPoint entry() {
    module_.reset();
    module_.emplace(path_);
    return module_->entry();
  }

 private:
  std::string path_;
  std::optional<standin::LoadedModule> module_;
};

int run(const Request& request) {
  Reloaded one(request.modules[0]);
  Reloaded other(request.modules[1]);
  std::error_code ignored;
  if (std::filesystem::equivalent(one.module().path(), other.module().path(), ignored)) {
    throw std::runtime_error(one.module().path() + " is compared with itself");
  }
  std::printf("this:  %s\nother: %s\n", one.module().path().c_str(), other.module().path().c_str());
  std::fflush(stdout);
  const compare::Outcome outcome =
      compare::compareModules([&] { return one.entry(); }, [&] { return other.entry(); }, request.options,
                              [](const compare::Tally& tally) {
                                if (tally.frames % 500 != 0) return;
                                std::printf("  %d frames\n", tally.frames);
                                std::fflush(stdout);
                              });
  const compare::Tally& tally = outcome.tally;
  tell(tally);
  std::printf("  compared: %lld bytes of pixels", static_cast<long long>(tally.outputBytes));
  if (request.options.calls == compare::Calls::kNone) {
    std::printf("; the calls to the host were not\n");
  } else {
    std::printf(", %lld calls to the host%s\n", static_cast<long long>(tally.hostCalls),
                request.options.calls == compare::Calls::kAll ? "" : "; those for handles were not");
  }
  if (tally.blocksOfOtherSize != 0) {
    std::printf("  %lld blocks of host memory were of another size, which is no difference\n",
                static_cast<long long>(tally.blocksOfOtherSize));
  }
  if (outcome.difference) {
    std::printf("DIFFERENT %s\n", outcome.difference->c_str());
    return 1;
  }
  std::printf("no difference\n");
  return 0;
}

}  // namespace

int main(int count, char** words) {
  try {
    const Request request = readArguments(std::vector<std::string>(words + 1, words + count));
    if (request.help) {
      std::fputs(usage, stdout);
      return 0;
    }
    return run(request);
  } catch (const std::exception& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "compare_modules: %s\n", error.what());
    return 2;
  }
}
