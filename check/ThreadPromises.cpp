// Frames on several threads, one after the other and side by side.
#include <atomic>
#include <memory>
#include <thread>

#include "check/RandomValues.h"
#include "check/Subjects.h"
#include "host/SideBySide.h"

namespace check {

namespace {

using standin::FrameRequest;
using standin::Image;
using standin::ParameterValues;
using standin::RenderResult;

constexpr size_t kThreads = 4;
constexpr int32_t kFramesOfEach = 60;

struct Wanted {
  Way way;
  FrameRequest frame;
  ParameterValues values;
  Image alone;
};

// Frames as they look when they are drawn alone; those with an error are left out.
std::vector<Wanted> framesAlone(Life& life, bool randomToo) {
  std::vector<Wanted> frames;
  Chance chance(life.trial.seed());
  Patience patience(life.host, 1);
  for (const Way& way : waysOf(life)) {
    for (int32_t i = 0; i < 10; ++i) {
      Wanted wanted{way,
                    randomFrame(chance, way.depth),
                    randomToo ? randomValues(life.host, chance, Reach::kUsual) : life.host.defaults(),
                    {}};
      life.trial.step("drawing a frame alone by " + way.text() + " with " + valuesText(wanted.values));
      patience.startAgain();
      RenderResult result = draw(life.host, way, wanted.frame, wanted.values);
      if (result.error != PF_Err_NONE || patience.ranOut()) continue;
      wanted.alone = std::move(result.output);
      frames.push_back(std::move(wanted));
    }
  }
  if (frames.empty()) throw Skipped("no frame can be drawn");
  return frames;
}

bool saysThreads(const Life& life) {
  return (life.host.outFlags2() & PF_OutFlag2_SUPPORTS_THREADED_RENDERING) != 0;
}

// What one thread saw: texts, and the frames that it drew.
struct Seen {
  std::vector<std::string> findings;
  int32_t frames = 0;
};

void drawOnThreads(Trial& trial, bool randomToo) {
  Life life(trial);
  const std::vector<Wanted> frames = framesAlone(life, randomToo);
  std::vector<std::unique_ptr<standin::StandInHost>> hosts;
  for (size_t i = 0; i < kThreads; ++i) hosts.push_back(standin::hostBeside(life.host));
  trial.step("drawing frames on " + std::to_string(kThreads) + " threads at once");
  std::vector<Seen> seen(kThreads);
  std::vector<std::thread> threads;
  for (size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int32_t i = 0; i < kFramesOfEach; ++i) {
        const size_t which = (thread * 7 + static_cast<size_t>(i) * 5) % frames.size();
        const Wanted& wanted = frames[which];
        const RenderResult result = draw(*hosts[thread], wanted.way, wanted.frame, wanted.values);
        ++seen[thread].frames;
        std::string what = result.error != PF_Err_NONE ? "it answers error " + std::to_string(result.error)
                                                       : difference(wanted.alone, result.output);
        if (!what.empty()) {
          what.insert(0,
                      "it isn't as it is alone, by " + wanted.way.text() + " with " + valuesText(wanted.values) + ": ");
          seen[thread].findings.push_back(std::move(what));
        }
        hosts[thread]->log().clear();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  int32_t count = 0;
  for (const Seen& each : seen) {
    count += each.frames;
    for (const std::string& finding : each.findings) {
      // A module that doesn't say that it can is not drawn so by hosts of today.
      saysThreads(life) ? trial.finding(finding) : trial.warning(finding);
    }
  }
  trial.note(std::to_string(count) + " frames were drawn on " + std::to_string(kThreads) + " threads");
}

void sideBySide(Trial& trial) {
  drawOnThreads(trial, false);
}
void randomSideBySide(Trial& trial) {
  drawOnThreads(trial, true);
}

void onThreadsInTurn(Trial& trial) {
  Life life(trial);
  const std::vector<Wanted> frames = framesAlone(life, false);
  for (const Wanted& wanted : frames) {
    trial.step("drawing on a thread that is new, by " + wanted.way.text());
    RenderResult result;
    std::thread([&] {
      life.host.makeCurrent();
      result = draw(life.host, wanted.way, wanted.frame, wanted.values);
    }).join();
    if (result.error != PF_Err_NONE) {
      trial.finding("it answers error " + std::to_string(result.error));
    } else if (const std::string differs = difference(wanted.alone, result.output); !differs.empty()) {
      trial.finding(differs);
    }
  }
  life.host.makeCurrent();
}

constexpr Promise kPromises[] = {
    {"frames-on-threads-in-turn", "A frame on another thread than that of the set-up is the same.", Weight::kMust,
     kUsualSeconds, onThreadsInTurn},
    {"frames-side-by-side", "Frames at the defaults that are drawn on several threads at once look as they do alone.",
     Weight::kMust, 2 * kUsualSeconds, sideBySide},
    {"random-frames-side-by-side",
     "Frames with random values that are drawn on several threads at once look as they do alone.", Weight::kMust,
     2 * kUsualSeconds, randomSideBySide},
};

}  // namespace

Subject threadPromises() {
  return {"threads", kPromises};
}

}  // namespace check
