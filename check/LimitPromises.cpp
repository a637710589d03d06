// Time and memory: what a frame may take, and what may be left of it.
#include <algorithm>
#include <chrono>
#include <ctime>

#include "check/ChildProcess.h"
#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

constexpr double kMostSeconds = 10;
constexpr int32_t kWarmUp = 40;
constexpr int32_t kFrames = 160;
#if defined(__SANITIZE_ADDRESS__)
// The sanitizer holds back what was freed.
constexpr uint64_t kMostGrowth = uint64_t{100} << 20;
#else
constexpr uint64_t kMostGrowth = uint64_t{24} << 20;
#endif

struct Times {
  double passed = 1e9;     ///< seconds by the clock
  double processor = 1e9;  ///< seconds of the processor; other programs count little there
};

// The least of three frames.
Times timesOf(Life& life, const Way& way, int32_t width, int32_t height) {
  using Clock = std::chrono::steady_clock;
  const standin::FrameRequest frame = frameOf(way.depth, width, height);
  Times least;
  for (int32_t i = 0; i < 3; ++i) {
    const Clock::time_point start = Clock::now();
    const std::clock_t processor = std::clock();
    static_cast<void>(drawn(life, way, frame, life.host.defaults()));
    least.passed = std::min(least.passed, std::chrono::duration<double>(Clock::now() - start).count());
    least.processor = std::min(least.processor, static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC);
  }
  return least;
}

std::string secondsText(double seconds) {
  return std::to_string(static_cast<int64_t>(seconds * 1000)) + " ms";
}

void endsInTime(Trial& trial) {
  Life life(trial);
  for (const Way& way : waysOf(life)) {
    trial.step("drawing 320 x 240 pixels by " + way.text());
    const double seconds = timesOf(life, way, 320, 240).passed;
    trial.note(secondsText(seconds) + " for 320 x 240 pixels by " + way.text());
    if (seconds > kMostSeconds) trial.finding("it takes " + secondsText(seconds));
  }
}

void timeGrowsWithTheFrame(Trial& trial) {
  Life life(trial);
  const Way way = mainWay(life.host);
  trial.step("drawing 96 x 72 pixels");
  const double small = timesOf(life, way, 96, 72).processor;
  trial.step("drawing 384 x 288 pixels");
  const double large = timesOf(life, way, 384, 288).processor;
  // Sixteen times the pixels; what a frame costs at all, and small times, are not counted.
  if (large > 16 * 4 * std::max(small, 0.002)) {
    trial.finding("16 times the pixels take " + secondsText(large) + " and not " + secondsText(small));
  }
}

void memoryDoesNotGrow(Trial& trial) {
  Life life(trial);
  const std::vector<Way> ways = waysOf(life);
  uint64_t before = 0;
  int32_t handlesBefore = 0;
  for (int32_t i = 0; i < kWarmUp + kFrames; ++i) {
    if (i == kWarmUp) {
      before = residentMemory();
      handlesBefore = life.host.books().openCount(standin::Matter::kHandle);
    }
    const Way& way = ways[static_cast<size_t>(i) % ways.size()];
    trial.step("drawing " + std::to_string(kWarmUp + kFrames) + " frames");
    static_cast<void>(drawn(life, way, frameOf(way.depth, 64, 48), life.host.defaults()));
    // The host's own notes would grow as well; handles are known to its store and stay counted.
    life.host.log().clear();
    const int32_t handles = life.host.books().openCount(standin::Matter::kHandle);
    if (i + 1 == kWarmUp + kFrames && handles > handlesBefore) {
      trial.finding(std::to_string(handles - handlesBefore) + " more handles of host memory are open");
    }
  }
  const uint64_t after = residentMemory();
  if (before == 0) throw Skipped("the system doesn't tell how much memory a process holds");
  const uint64_t growth = after > before ? after - before : 0;
  trial.note("memory grew by " + std::to_string(growth >> 20) + " MB over " + std::to_string(kFrames) + " frames");
  if (growth > kMostGrowth) {
    trial.finding("the process holds " + std::to_string(growth >> 20) + " MB more after " + std::to_string(kFrames) +
                  " frames");
  }
}

void memoryOfAFrame(Trial& trial) {
  Life life(trial);
  const Way way = mainWay(life.host);
  const standin::FrameRequest frame = frameOf(way.depth, 512, 384);
  life.host.log().handleCallsToo = true;
  trial.step("drawing 512 x 384 pixels");
  static_cast<void>(drawn(life, way, frame, life.host.defaults()));
  uint64_t all = 0;
  for (const standin::HandleCall& call : life.host.log().handles) {
    if (call.step == standin::HandleCall::Step::kNew) all += call.size;
  }
  constexpr uint64_t most = uint64_t{200} << 20;
  trial.note("512 x 384 pixels take " + std::to_string(all >> 10) + " kB of host memory in all");
  if (all > most) trial.finding("it takes " + std::to_string(all >> 20) + " MB of host memory in all");
}

constexpr Promise kPromises[] = {
    {"a-frame-ends-in-time", "A frame of 320 x 240 pixels at the defaults takes less than ten seconds.", Weight::kMust,
     2 * kUsualSeconds, endsInTime},
    {"time-grows-with-the-frame", "Sixteen times the pixels take sixteen times as long, or four times that at most.",
     Weight::kShould, 2 * kUsualSeconds, timeGrowsWithTheFrame},
    {"memory-does-not-grow", "Memory doesn't grow with the number of frames.", Weight::kMust, 2 * kUsualSeconds,
     memoryDoesNotGrow},
    {"memory-of-a-frame-is-bounded",
     "A frame of 512 x 384 pixels at the defaults takes less than 200 MB of host memory.", Weight::kMust,
     2 * kUsualSeconds, memoryOfAFrame},
};

}  // namespace

Subject limitPromises() {
  return {"time and memory", kPromises};
}

}  // namespace check
