#include "check/CheckCommand.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <thread>

#include "check/Report.h"
#include "check/Runner.h"

namespace check {

namespace {

namespace fs = std::filesystem;

template <class Number>
Number numberIn(const std::string& option, const std::string& text, Number least, Number most) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !(number >= least && number <= most)) {
    throw BadInput(option + " doesn't take '" + text + "'");
  }
  return number;
}

std::string utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

std::vector<const Promise*> wanted(const std::vector<std::string>& names) {
  std::vector<const Promise*> promises;
  for (const std::string& name : names) {
    if (findPromise(name) == nullptr) throw BadInput("there is no promise '" + name + "'; --list names them all");
  }
  for (const Subject& subject : subjects()) {
    for (const Promise& promise : subject.promises) {
      const bool asked = std::find(names.begin(), names.end(), promise.name) != names.end();
      if (names.empty() || asked) promises.push_back(&promise);
    }
  }
  return promises;
}

Expectations expectationsFor(const CheckWords& words) {
  if (words.expected == "none") return {};
  fs::path file = fs::path(reinterpret_cast<const char8_t*>(words.expected.c_str()));
  if (words.expected.empty()) {
    file = fs::path(words.module).replace_extension("expected");
    std::error_code ignored;
    if (!fs::exists(file, ignored)) return {};
  }
  try {
    return readExpectations(file);
  } catch (const std::runtime_error& error) {
    throw BadInput(error.what());
  }
}

}  // namespace

CheckWords readCheckWords(const std::vector<std::string>& words) {
  CheckWords taken;
  for (size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    const auto next = [&]() -> const std::string& {
      if (i + 1 == words.size()) throw BadInput(word + " wants a word behind it");
      return words[++i];
    };
    if (word == "--only") {
      taken.only.push_back(next());
    } else if (word == "--seed") {
      taken.seed = numberIn<uint64_t>(word, next(), 0, UINT64_MAX);
    } else if (word == "--jobs") {
      taken.jobs = numberIn<int32_t>(word, next(), 1, 256);
    } else if (word == "--time-factor") {
      taken.timeFactor = numberIn<double>(word, next(), 0.01, 1000);
    } else if (word == "--expected") {
      taken.expected = next();
    } else if (word == "--json") {
      taken.json = true;
    } else if (word == "--list") {
      taken.list = true;
    } else if (word == "--markdown") {
      taken.markdown = true;
    } else if (word.starts_with("--") || !taken.module.empty()) {
      throw BadInput("check does not know '" + word + "'");
    } else {
      taken.module = fs::path(reinterpret_cast<const char8_t*>(word.c_str()));
    }
  }
  return taken;
}

int runCheck(const CheckWords& words, const fs::path& program, const std::string& command, std::ostream& out) {
  if (words.markdown && !words.list) throw BadInput("--markdown goes with --list");
  if (words.list) {
    words.markdown ? writeMarkdown(out) : writeList(out);
    return kNothingFailed;
  }
  std::error_code ignored;
  if (words.module.empty()) throw BadInput("check wants a module");
  if (!fs::is_regular_file(words.module, ignored)) throw BadInput("no module '" + utf8(words.module) + "'");
  RunSettings settings;
  settings.module = fs::absolute(words.module);
  settings.promises = wanted(words.only);
  settings.seed = words.seed;
  settings.jobs = words.jobs > 0 ? words.jobs : std::max(1, static_cast<int32_t>(std::thread::hardware_concurrency()));
  settings.timeFactor = words.timeFactor;
  settings.repeatWith = command + " " + utf8(words.module);
  settings.expectations = expectationsFor(words);

  const auto start = std::chrono::steady_clock::now();
  const std::vector<Result> results = runPromises(settings, program);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (words.json) {
    writeJson(out, settings, results, seconds);
  } else {
    writeText(out, results, seconds);
  }
  return countOf(results, Verdict::kFail) == 0 ? kNothingFailed : kSomethingFailed;
}

}  // namespace check
