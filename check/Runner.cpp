#include "check/Runner.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <list>
#include <random>
#include <stdexcept>
#include <thread>

#include "check/ChildProcess.h"
#include "check/OnePromise.h"

namespace check {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A folder of its own for the children's reports, gone at the end.
class ReportFolder {
 public:
  ReportFolder() {
    std::random_device chance;
    for (int32_t tries = 0; tries < 100; ++tries) {
      path_ = fs::temp_directory_path() / ("module-check-" + std::to_string(chance()));
      if (fs::create_directory(path_)) return;
    }
    throw std::runtime_error("can't make a folder in " + fs::temp_directory_path().string());
  }
  ~ReportFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  ReportFolder(const ReportFolder&) = delete;
  ReportFolder& operator=(const ReportFolder&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

std::string utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

// What the process said of itself last; programs tell there why they end.
std::string lastWords(const fs::path& file) {
  std::ifstream lines(file);
  std::string line;
  std::string last;
  while (std::getline(lines, line)) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    if (!line.empty()) last = line.substr(0, 300);
  }
  return last;
}

struct Running {
  size_t index = 0;  ///< among the promises
  ChildProcess process;
  fs::path report;
  fs::path output;
  Clock::time_point start;
  bool overdue = false;
};

// Takes the lines that a child wrote. False when it did not come to its end.
// @param counts  lines of a number and a finding or warning that came so often
bool takeReport(const fs::path& file, Result& result, std::string& lastStep, std::vector<std::string>& counts) {
  std::ifstream lines(file);
  std::string line;
  bool done = false;
  const auto taken = [&line](const char* kind, std::string& text) {
    const size_t length = std::strlen(kind);
    if (line.compare(0, length, kind) != 0 || line.size() <= length || line[length] != ' ') return false;
    text = line.substr(length + 1);
    return true;
  };
  while (std::getline(lines, line)) {
    std::string text;
    if (taken("step", text)) lastStep = text;
    if (taken("finding", text)) result.findings.push_back(text);
    if (taken("warning", text)) result.warnings.push_back(text);
    if (taken("note", text)) result.notes.push_back(text);
    if (taken("skip", text)) result.reason = text;
    if (taken("count", text)) counts.push_back(text);
    if (taken("done", text)) done = true;
  }
  return done;
}

// What a child that never told its end has come to.
std::string sayEnd(const Running& child, const ChildEnd& end, const std::string& lastStep, double seconds) {
  const std::string where = lastStep.empty() ? "" : "while " + lastStep + ": ";
  if (child.overdue) {
    return where + "it hangs: no end after " + std::to_string(static_cast<int64_t>(seconds)) + " seconds";
  }
  std::string text = where + (end.byItself ? "the module ended its process, with " : "it crashes: ") + end.text;
  if (const std::string words = lastWords(child.output); !words.empty()) text += "; its last words: " + words;
  return text;
}

void addOnce(std::vector<std::string>& texts, const std::string& text) {
  if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(text);
}

void judge(Result& result, const Expectations& expectations) {
  for (const std::string& finding : result.findings) {
    const Expectation* known = findExpectation(expectations, result.promise->name, finding);
    if (known == nullptr) {
      result.expected.clear();
      result.verdict = result.promise->weight == Weight::kMust ? Verdict::kFail : Verdict::kWarn;
      return;
    }
    addOnce(result.expected, known->reason);
  }
  for (const std::string& warning : result.warnings) {
    const Expectation* known = findExpectation(expectations, result.promise->name, warning);
    if (known != nullptr) addOnce(result.expected, known->reason);
  }
  if (!result.findings.empty() || !result.warnings.empty()) {
    result.verdict = Verdict::kWarn;
  } else {
    result.verdict = result.reason.empty() ? Verdict::kPass : Verdict::kSkip;
  }
}

class Run {
 public:
  Run(const RunSettings& settings, fs::path program) : settings_(settings), program_(std::move(program)) {
    results_.resize(settings.promises.size());
    for (size_t i = 0; i < results_.size(); ++i) {
      results_[i].promise = settings.promises[i];
      results_[i].repeat = settings.repeatWith + " --only " + std::string(settings.promises[i]->name) + " --seed " +
                           std::to_string(settings.seed);
      waiting_.push_back(i);
    }
    // The long ones first, so that none is left alone at the end.
    std::stable_sort(waiting_.begin(), waiting_.end(),
                     [&](size_t a, size_t b) { return settings.promises[a]->seconds > settings.promises[b]->seconds; });
  }

  std::vector<Result> go(const std::function<void(const Result&)>& told) {
    while (!waiting_.empty() || !running_.empty()) {
      while (!waiting_.empty() && running_.size() < static_cast<size_t>(std::max(settings_.jobs, 1))) {
        start(waiting_.front());
        waiting_.erase(waiting_.begin());
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      for (auto child = running_.begin(); child != running_.end();) {
        const bool gone = look(*child);
        if (gone && told) told(results_[child->index]);
        child = gone ? running_.erase(child) : std::next(child);
      }
    }
    return std::move(results_);
  }

 private:
  double limitOf(const Running& child) const { return settings_.promises[child.index]->seconds * settings_.timeFactor; }

  void start(size_t index) {
    const std::string name(settings_.promises[index]->name);
    const fs::path report = folder_.path() / (name + ".report");
    const fs::path output = folder_.path() / (name + ".output");
    running_.push_back(
        {index,
         ChildProcess(program_,
                      {kOnePromise, name, utf8(settings_.module), std::to_string(settings_.seed), utf8(report)},
                      output),
         report, output, Clock::now()});
  }

  // True when the child has ended and its result stands.
  bool look(Running& child) {
    const auto end = child.process.ended();
    if (!end) {
      if (!child.overdue && secondsSince(child.start) > limitOf(child)) {
        child.overdue = true;
        child.process.end();
      }
      return false;
    }
    Result& result = results_[child.index];
    result.seconds = secondsSince(child.start);
    std::string lastStep;
    std::vector<std::string> counts;
    const bool done = takeReport(child.report, result, lastStep, counts);
    if (!done) {
      result.findings.push_back(sayEnd(child, *end, lastStep, limitOf(child)));
    } else if (!end->byItself || end->code != 0) {
      result.findings.push_back("after all was done: " + std::string(end->byItself ? "" : "it crashes: ") + end->text);
    }
    judge(result, settings_.expectations);
    // Expectations are about what was seen, not about how often.
    for (const std::string& line : counts) {
      const size_t blank = line.find(' ');
      const std::string text = line.substr(blank + 1);
      for (std::vector<std::string>* lines : {&result.findings, &result.warnings}) {
        const auto found = std::find(lines->begin(), lines->end(), text);
        if (found != lines->end()) *found += " (" + line.substr(0, blank) + " times in all)";
      }
    }
    return true;
  }

  const RunSettings& settings_;
  fs::path program_;
  ReportFolder folder_;
  std::vector<Result> results_;
  std::vector<size_t> waiting_;
  std::list<Running> running_;
};

}  // namespace

std::string_view verdictName(Verdict verdict) {
  switch (verdict) {
    case Verdict::kPass:
      return "pass";
    case Verdict::kFail:
      return "fail";
    case Verdict::kWarn:
      return "warn";
    default:
      return "skip";
  }
}

std::vector<Result> runPromises(const RunSettings& settings, const std::filesystem::path& program,
                                const std::function<void(const Result&)>& told) {
  return Run(settings, program).go(told);
}

}  // namespace check
