// Frames by each road and at each depth that the module offers.
#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::Matter;
using standin::RenderResult;

constexpr int32_t kWidth = 48;
constexpr int32_t kHeight = 36;

// A level of 8 bits.
constexpr double kStep = 1.0 / 255;

void drawsAt(Trial& trial, Depth depth) {
  Life life(trial);
  bool offered = false;
  for (const Way& way : waysOf(life)) {
    if (way.depth != depth) continue;
    offered = true;
    trial.step("drawing by " + way.text());
    const RenderResult result = draw(life.host, way, frameOf(depth, kWidth, kHeight), life.host.defaults());
    if (result.error != PF_Err_NONE) {
      trial.finding("it answers " + errorText(life.host, result.error));
    } else if (!result.rendered || result.output.empty()) {
      trial.finding("nothing is drawn");
    }
  }
  if (!offered) throw Skipped("the module's flags don't offer this depth");
}

void draws8(Trial& trial) {
  drawsAt(trial, Depth::k8);
}
void draws16(Trial& trial) {
  drawsAt(trial, Depth::k16);
}
void draws32(Trial& trial) {
  drawsAt(trial, Depth::k32);
}

void bothRoadsAgree(Trial& trial) {
  Life life(trial);
  if (!life.host.smartRoadOffered()) throw Skipped("the module has the classic road alone");
  const std::vector<Way> ways = waysOf(life, Roads::kAll);
  int32_t compared = 0;
  for (const Way& way : ways) {
    if (way.smart) continue;
    for (const uint64_t seed : {uint64_t{0}, trial.seed() + 1}) {
      trial.step("drawing one frame by both roads at " + std::to_string(static_cast<int32_t>(way.depth)) + " bits");
      const FrameRequest frame = frameOf(way.depth, kWidth, kHeight, seed);
      const Image smart = drawn(life, {true, way.depth}, frame, life.host.defaults());
      const Image classic = drawn(life, way, frame, life.host.defaults());
      const std::string differs = difference(smart, classic);
      if (!differs.empty()) trial.finding(differs);
      ++compared;
    }
  }
  if (compared == 0) throw Skipped("the classic road draws nothing, as is usual for modules of the smart one");
  trial.note(std::to_string(compared) + " frames were drawn by both roads");
}

void depthsAgree(Trial& trial) {
  Life life(trial);
  const std::vector<Way> ways = waysOf(life);
  if (ways.size() < 2) throw Skipped("the module has one depth");
  for (const uint64_t seed : {uint64_t{0}, trial.seed() + 1}) {
    const FrameRequest plain = frameOf(Depth::k8, kWidth, kHeight, seed);
    const Image least = drawn(life, ways[0], plain, life.host.defaults());
    for (size_t i = 1; i < ways.size(); ++i) {
      trial.step("comparing " + ways[i].text() + " with 8 bits");
      FrameRequest frame = plain;
      frame.input = plain.input.converted(ways[i].depth);
      const Image deep = drawn(life, ways[i], frame, life.host.defaults());
      // In float, so that no rounding of this comparison's own comes in.
      const std::string differs = difference(least.converted(Depth::k32), deep.converted(Depth::k32), kStep * 1.01);
      if (!differs.empty()) trial.finding(differs);
    }
  }
}

void wholeOutputIsWritten(Trial& trial) {
  const auto drawnOver = [&trial](uint8_t fill, size_t number) {
    standin::HostSettings settings;
    settings.fillOfOutputs = fill;
    settings.fillOfNewWorlds = fill;
    Life life(trial, settings);
    const std::vector<Way> ways = waysOf(life);
    const Way way = ways[std::min(number, ways.size() - 1)];
    trial.step("drawing by " + way.text() + " into an output that isn't clear");
    return std::pair(drawn(life, way, frameOf(way.depth, kWidth, kHeight), life.host.defaults()), ways.size());
  };
  for (size_t i = 0, count = 1; i < count; ++i) {
    auto [one, ways] = drawnOver(0xB7, i);
    count = ways;
    const Image other = drawnOver(0x11, i).first;
    trial.step("comparing frames into outputs that held different bytes");
    const std::string differs = difference(one, other);
    if (!differs.empty()) trial.finding("what stood in the output or in a new world shows: " + differs);
  }
}

void inputIsLeftAlone(Trial& trial) {
  Life life(trial);
  if ((life.host.outFlags() & PF_OutFlag_I_WRITE_INPUT_BUFFER) != 0) throw Skipped("the module says that it writes it");
  for (const Way& way : waysOf(life, Roads::kAll)) {
    trial.step("drawing by " + way.text());
    const FrameRequest frame = frameOf(way.depth, kWidth, kHeight);
    const FrameRequest copy = frame;
    // Both roads lend the request's own picture.
    static_cast<void>(drawn(life, way, frame, life.host.defaults()));
    const std::string differs = difference(frame.input, copy.input);
    if (!differs.empty()) trial.finding("the input was changed: " + differs);
    tellComplaints(trial, life.host, {Matter::kOutside});
  }
}

void lowQualityDraws(Trial& trial) {
  Life life(trial);
  for (const Way& way : waysOf(life)) {
    trial.step("drawing at low quality by " + way.text());
    FrameRequest frame = frameOf(way.depth, kWidth, kHeight);
    frame.quality = PF_Quality_LO;
    const RenderResult result = draw(life.host, way, frame, life.host.defaults());
    if (result.error != PF_Err_NONE) trial.finding("it answers " + errorText(life.host, result.error));
  }
}

constexpr Promise kPromises[] = {
    {"draws-at-8-bits", "A frame of 8 bits is drawn.", Weight::kMust, kUsualSeconds, draws8},
    {"draws-at-16-bits", "A module that is aware of deep colour draws a frame of 16 bits.", Weight::kMust,
     kUsualSeconds, draws16},
    {"draws-in-float", "A module that is aware of float draws a float frame.", Weight::kMust, kUsualSeconds, draws32},
    {"draws-at-low-quality", "A frame of low quality is drawn.", Weight::kMust, kUsualSeconds, lowQualityDraws},
    {"both-roads-agree", "A module that draws by both roads draws the same pixels by both.", Weight::kMust,
     kUsualSeconds, bothRoadsAgree},
    {"depths-agree", "A frame at 16 bits or in float is that of 8 bits, but for a step of 8 bits.", Weight::kMust,
     kUsualSeconds, depthsAgree},
    {"the-whole-output-is-written", "Nothing of what stood in the output, or in a new world, is seen in a frame.",
     Weight::kMust, kUsualSeconds, wholeOutputIsWritten},
    {"the-input-is-left-alone", "A frame leaves its input as it is, unless the module says that it writes to it.",
     Weight::kMust, kUsualSeconds, inputIsLeftAlone},
};

}  // namespace

Subject drawingPromises() {
  return {"roads and depths", kPromises};
}

}  // namespace check
