// A frame is what its values and layers say, whatever was drawn before it.
#include <algorithm>

#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::FrameRequest;
using standin::Image;
using standin::RenderResult;

// Frames of several sizes, times, pictures and depths.
struct Wanted {
  Way way;
  FrameRequest frame;
};

std::vector<Wanted> severalFrames(Life& life) {
  std::vector<Wanted> frames;
  for (const Way& way : waysOf(life, Roads::kAll)) {
    for (int32_t i = 0; i < 4; ++i) {
      Wanted wanted{way, frameOf(way.depth, 20 + 9 * i, 34 - 7 * i, life.trial.seed() + static_cast<uint64_t>(i))};
      wanted.frame.currentTime = 7 * i;
      frames.push_back(std::move(wanted));
    }
  }
  return frames;
}

void theSameFrameTwice(Trial& trial) {
  Life life(trial);
  for (const Wanted& wanted : severalFrames(life)) {
    trial.step("drawing a frame twice by " + wanted.way.text());
    const Image first = drawn(life, wanted.way, wanted.frame, life.host.defaults());
    for (int32_t again = 0; again < 2; ++again) {
      const std::string differs = difference(first, drawn(life, wanted.way, wanted.frame, life.host.defaults()));
      if (!differs.empty()) trial.finding(differs);
    }
  }
}

void anyOrderOfFrames(Trial& trial) {
  Life life(trial);
  const std::vector<Wanted> frames = severalFrames(life);
  std::vector<Image> forward;
  forward.reserve(frames.size());
  trial.step("drawing frames in order");
  for (const Wanted& wanted : frames) {
    forward.push_back(drawn(life, wanted.way, wanted.frame, life.host.defaults()));
  }
  std::vector<size_t> order(frames.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = order.size() - 1 - i;
  Chance chance(trial.seed());
  for (int32_t round = 0; round < 3; ++round) {
    for (const size_t i : order) {
      trial.step("drawing the same frames in another order, by " + frames[i].way.text());
      const std::string differs =
          difference(forward[i], drawn(life, frames[i].way, frames[i].frame, life.host.defaults()));
      if (!differs.empty()) trial.finding("frame " + std::to_string(i) + ": " + differs);
    }
    for (size_t i = order.size(); i > 1; --i) {
      std::swap(order[i - 1], order[static_cast<size_t>(chance.whole(0, static_cast<int32_t>(i) - 1))]);
    }
  }
  trial.note(std::to_string(4 * frames.size()) + " frames were drawn in four orders");
}

void aFrameAlone(Trial& trial) {
  std::vector<Image> later;
  {
    Life life(trial);
    for (const Wanted& wanted : severalFrames(life)) {
      later.push_back(drawn(life, wanted.way, wanted.frame, life.host.defaults()));
    }
  }
  for (size_t i = 0; i < later.size(); ++i) {
    Life life(trial);
    const std::vector<Wanted> frames = severalFrames(life);
    if (frames.size() != later.size()) return trial.finding("another load offers other roads or depths");
    trial.step("drawing a frame alone in its life by " + frames[i].way.text());
    const std::string differs = difference(later[i], drawn(life, frames[i].way, frames[i].frame, life.host.defaults()));
    if (!differs.empty()) trial.finding("after others it looked otherwise: " + differs);
  }
}

void anEndIsHeeded(Trial& trial) {
  Life life(trial);
  int32_t asked = 0;
  for (const Wanted& wanted : severalFrames(life)) {
    const Image whole = drawn(life, wanted.way, wanted.frame, life.host.defaults());
    trial.step("ending a frame in its midst by " + wanted.way.text());
    int32_t calls = 0;
    const auto stop = [&calls]() -> PF_Err { return ++calls >= 2 ? PF_Interrupt_CANCEL : PF_Err_NONE; };
    life.host.onProgress = [&stop](A_long, A_long) { return stop(); };
    life.host.onAbort = stop;
    const RenderResult ended = draw(life.host, wanted.way, wanted.frame, life.host.defaults());
    life.host.onProgress = nullptr;
    life.host.onAbort = nullptr;
    if (calls >= 2) ++asked;
    if (ended.error == PF_Err_NONE && calls >= 2 && !difference(whole, ended.output).empty()) {
      trial.finding("it answers 0 for a frame that it did not draw to its end");
    }
    trial.step("drawing a frame after one that was ended, by " + wanted.way.text());
    const std::string differs = difference(whole, drawn(life, wanted.way, wanted.frame, life.host.defaults()));
    if (!differs.empty()) trial.finding(differs);
  }
  if (asked == 0) throw Skipped("the module never asks whether to go on in so small a frame");
}

void anyTimeDraws(Trial& trial) {
  Life life(trial);
  struct Moment {
    A_long time, step;
    A_u_long scale;
  };
  constexpr Moment moments[] = {
      {0, 1, 30},         {-1, 1, 30}, {299, 1, 30}, {1001, 1001, 24000}, {-100000, 512, 7680},
      {2000000000, 1, 1}, {5, 0, 30},  {5, -1, 30},  {0, 1, 1},           {1, 1, 4000000000}};
  for (const Way& way : waysOf(life)) {
    for (const Moment& moment : moments) {
      FrameRequest frame = frameOf(way.depth, 20, 14);
      frame.currentTime = moment.time;
      frame.timeStep = moment.step;
      frame.timeScale = moment.scale;
      trial.step("drawing at time " + std::to_string(moment.time) + " of " + std::to_string(moment.scale) +
                 " a second with steps of " + std::to_string(moment.step) + " by " + way.text());
      const RenderResult result = draw(life.host, way, frame, life.host.defaults());
      if (result.error != PF_Err_NONE) trial.finding("it answers " + errorText(life.host, result.error));
    }
  }
}

constexpr Promise kPromises[] = {
    {"the-same-frame-twice", "A frame drawn again is the same.", Weight::kMust, kUsualSeconds, theSameFrameTwice},
    {"any-order-of-frames", "Frames are the same in whatever order they are drawn.", Weight::kMust, kUsualSeconds,
     anyOrderOfFrames},
    {"a-frame-alone", "A frame that is the first after a load is the same as after others.", Weight::kMust,
     kUsualSeconds, aFrameAlone},
    {"an-end-is-heeded", "A frame that the host ends in its midst isn't taken for whole, and the next one is.",
     Weight::kMust, kUsualSeconds, anEndIsHeeded},
    {"any-time-draws", "A frame is drawn at any time, also before 0, and with any length of a frame.", Weight::kMust,
     kUsualSeconds, anyTimeDraws},
};

}  // namespace

Subject framePromises() {
  return {"frames one after the other", kPromises};
}

}  // namespace check
