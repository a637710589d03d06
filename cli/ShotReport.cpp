#include "cli/ShotReport.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace cli {
namespace {

const char* nameOf(FrameResult::Kind kind) {
  switch (kind) {
    case FrameResult::Kind::done:
      return "done";
    case FrameResult::Kind::skipped:
      return "skipped";
    case FrameResult::Kind::failed:
      break;
  }
  return "failed";
}

std::string textLine(const ShotFrame& frame, const FrameResult& result) {
  std::array<char, 64> numbers{};
  std::snprintf(numbers.data(), numbers.size(), "  %.3f s  %.0f MB  ", result.seconds,
                static_cast<double>(result.peakMemory) / 1e6);
  return "frame " + std::to_string(frame.number) + "  " + frame.output.string() + numbers.data() + nameOf(result.kind) +
         (result.message.empty() ? "" : ": " + result.message);
}

std::string jsonLine(const ShotFrame& frame, const FrameResult& result) {
  nlohmann::ordered_json line;
  line["frame"] = frame.number;
  line["file"] = frame.output.string();
  line["seconds"] = result.seconds;
  line["peakMemory"] = result.peakMemory;
  line["result"] = nameOf(result.kind);
  if (!result.message.empty()) line["message"] = result.message;
  // Names of files needn't be UTF-8.
  return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

ShotReport::ShotReport(const std::vector<ShotFrame>& frames, const Arguments& arguments,
                       const Surroundings& surroundings)
    : frames_(frames),
      form_(arguments.log),
      checkOnly_(arguments.checkOnly),
      surroundings_(surroundings),
      bar_(surroundings.err, arguments.quiet ? Terminal() : surroundings.terminal) {}

void ShotReport::take(const FrameResult& result) {
  const std::scoped_lock lock(mutex_);
  const ShotFrame& frame = frames_[result.index];
  // On a terminal the line must not begin behind the bar.
  if (form_ != LogForm::none) bar_.clear();
  if (form_ == LogForm::text) surroundings_.out << textLine(frame, result) << std::endl;
  if (form_ == LogForm::json) surroundings_.out << jsonLine(frame, result) << std::endl;
  if (result.kind == FrameResult::Kind::failed) failed_.push_back(result);
  ++taken_;
  showProgress();
}

void ShotReport::pass(FrameStep step) {
  const std::scoped_lock lock(mutex_);
  ++(step == FrameStep::read ? read_ : drawn_);
  showProgress();
}

void ShotReport::showProgress() {
  // Reading, drawing and writing go on beside each other and count alike. A frame that is done with has all behind it,
  // whether it was told of or not.
  const std::size_t steps = std::max(read_, taken_) + std::max(drawn_, taken_) + taken_;
  bar_.show(std::to_string(taken_) + " of " + std::to_string(frames_.size()) + " frames",
            static_cast<double>(steps) / static_cast<double>(3 * frames_.size()));
}

int ShotReport::finish() {
  bar_.clear();
  if (failed_.empty()) return exitDone;
  std::sort(failed_.begin(), failed_.end(),
            [](const FrameResult& a, const FrameResult& b) { return a.index < b.index; });
  std::string numbers;
  for (const FrameResult& result : failed_) {
    const std::string number = std::to_string(frames_[result.index].number);
    surroundings_.err << "vindrel: frame " << number << ": " << result.message << '\n';
    numbers += (numbers.empty() ? "" : ",") + number;
  }
  surroundings_.err << "vindrel: " << failed_.size() << " of " << frames_.size() << " frames "
                    << (checkOnly_ ? "don't stand: " : "failed: ") << numbers << '\n';
  return exitEffectFailed;
}

uint64_t peakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<uint64_t>(usage.ru_maxrss) * 1024;
}

}  // namespace cli
