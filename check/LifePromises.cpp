// More than one life: set down and up again, loaded again, several instances.
#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::Image;
using standin::StandInHost;

constexpr int32_t kLives = 25;

// A whole life in a host that may have seen others of this module; the picture of its frame.
Image liveOnce(Trial& trial, StandInHost& host, const std::string& which) {
  trial.step("it is set up in " + which);
  PF_Err error = host.start();
  if (error != PF_Err_NONE) {
    trial.finding("it answers " + errorText(host, error));
    return {};
  }
  const Way way = mainWay(host);
  trial.step("drawing in " + which);
  standin::RenderResult result = draw(host, way, frameOf(way.depth, 24, 18), host.defaults());
  if (result.error != PF_Err_NONE) trial.finding("it answers " + errorText(host, result.error));
  trial.step("it is set down in " + which);
  error = host.finish();
  if (error != PF_Err_NONE) trial.finding("it answers " + errorText(host, error));
  return std::move(result.output);
}

Image firstLife(Trial& trial) {
  Life life(trial);
  const Way way = mainWay(life.host);
  return drawn(life, way, frameOf(way.depth, 24, 18), life.host.defaults());
}

void aSecondLife(Trial& trial) {
  const Image first = firstLife(trial);
  Loaded loaded(trial);
  liveOnce(trial, loaded.host, "a first life");
  for (const char* which : {"a second life of one load", "a third life of one load"}) {
    const std::string differs = difference(first, liveOnce(trial, loaded.host, which));
    if (!differs.empty()) trial.finding("its frame differs: " + differs);
  }
}

void anotherLoad(Trial& trial) {
  const Image first = firstLife(trial);
  for (int32_t i = 0; i < 5; ++i) {
    Loaded loaded(trial);
    const std::string differs = difference(first, liveOnce(trial, loaded.host, "another load"));
    if (!differs.empty()) trial.finding("its frame differs: " + differs);
  }
}

void twoInstances(Trial& trial) {
  Life life(trial);
  StandInHost& host = life.host;
  const Way way = mainWay(host);
  const Image alone = drawn(life, way, frameOf(way.depth, 24, 18), host.defaults());
  PF_Handle first = host.sequenceData();
  trial.step("a second instance is set up");
  host.setSequenceData(nullptr);
  const PF_Err error = host.sequenceSetup();
  if (error != PF_Err_NONE) return trial.finding("it answers " + errorText(host, error));
  PF_Handle second = host.sequenceData();
  for (int32_t i = 0; i < 4; ++i) {
    host.setSequenceData(i % 2 == 0 ? second : first);
    trial.step(i % 2 == 0 ? "drawing by the second of two instances" : "drawing by the first of two instances");
    const std::string differs = difference(alone, drawn(life, way, frameOf(way.depth, 24, 18), host.defaults()));
    if (!differs.empty()) trial.finding(differs);
  }
  host.setSequenceData(second);
  trial.step("the second instance is set down");
  host.sequenceSetdown();
  host.setSequenceData(first);
  trial.step("drawing by an instance after another one is gone");
  const std::string differs = difference(alone, drawn(life, way, frameOf(way.depth, 24, 18), host.defaults()));
  if (!differs.empty()) trial.finding(differs);
}

void manyLives(Trial& trial) {
  const Image first = firstLife(trial);
  Loaded loaded(trial);
  for (int32_t i = 1; i <= kLives; ++i) {
    const std::string differs = difference(first, liveOnce(trial, loaded.host, "life " + std::to_string(i)));
    if (!differs.empty()) trial.finding("its frame differs: " + differs);
  }
  trial.note(std::to_string(kLives) + " lives were lived");
}

constexpr Promise kPromises[] = {
    {"a-second-life", "After a global set-down the module can be set up again, and draws the same.", Weight::kMust,
     kUsualSeconds, aSecondLife},
    {"many-lives", "The module can be set up and down many times, and draws the same.", Weight::kMust, kUsualSeconds,
     manyLives},
    {"another-load", "The module can be unloaded and loaded again, and draws the same.", Weight::kMust, kUsualSeconds,
     anotherLoad},
    {"two-instances", "Two instances draw as one does, and one outlives the other.", Weight::kMust, kUsualSeconds,
     twoInstances},
};

}  // namespace

Subject lifePromises() {
  return {"lives", kPromises};
}

}  // namespace check
