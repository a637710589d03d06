// Side layers of every kind that a user can choose.
#include "check/RandomValues.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::ByIndex;
using standin::Control;
using standin::Depth;
using standin::Image;
using standin::LayerValue;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;

constexpr int32_t kFramesForEach = 10;

std::vector<int32_t> layersOf(const standin::StandInHost& host) {
  std::vector<int32_t> indices;
  for (const Control& control : host.controls()) {
    if (control.type == PF_Param_LAYER) indices.push_back(control.index);
  }
  if (indices.empty()) throw Skipped("no parameter is a layer");
  return indices;
}

struct Kind {
  std::string what;
  LayerValue value;
};

// Frames with random usual values, so that layers are used in all the ways that there are, and this layer everywhere.
void drawWith(Trial& trial, const std::vector<Kind>& kinds) {
  Life life(trial);
  const std::vector<int32_t> layers = layersOf(life.host);
  Chance chance(trial.seed());
  Patience patience(life.host, 2);
  for (const Way& way : waysOf(life, Roads::kAll)) {
    for (const Kind& kind : kinds) {
      for (int32_t i = 0; i < kFramesForEach; ++i) {
        ParameterValues values = i == 0 ? life.host.defaults() : randomValues(life.host, chance, Reach::kUsual);
        for (const int32_t index : layers) values.setLayer(ByIndex{index}, kind.value);
        trial.step("drawing with " + kind.what + " by " + way.text() + " with " + valuesText(values));
        const size_t before = life.host.books().complaints().size();
        patience.startAgain();
        const RenderResult result = draw(life.host, way, frameOf(way.depth, 24, 18), values);
        if (result.error != PF_Err_NONE && !patience.ranOut()) {
          trial.finding("it answers " + errorText(life.host, result.error));
        }
        tellComplaints(trial, life.host, {Matter::kOutside, Matter::kBadWorld}, before);
      }
    }
  }
}

void missing(Trial& trial) {
  drawWith(trial, {{"no layer", LayerValue::none()}});
}

void itself(Trial& trial) {
  drawWith(trial, {{"the layer itself", LayerValue::itself()}});
}

void empty(Trial& trial) {
  std::vector<Kind> kinds;
  for (const auto& [width, height] : {std::pair(0, 0), std::pair(0, 12), std::pair(12, 0)}) {
    kinds.push_back({"layers of " + sizeText(width, height), LayerValue::of(Image(Depth::k8, width, height))});
  }
  drawWith(trial, kinds);
}

void otherSizes(Trial& trial) {
  std::vector<Kind> kinds;
  for (const auto& [width, height] :
       {std::pair(1, 1), std::pair(23, 18), std::pair(24, 19), std::pair(60, 50), std::pair(1, 40), std::pair(40, 1)}) {
    kinds.push_back({"layers of " + sizeText(width, height), LayerValue::of(picture(Depth::k8, width, height, 5))});
  }
  drawWith(trial, kinds);
}

void otherDepths(Trial& trial) {
  std::vector<Kind> kinds;
  for (const Depth depth : standin::kAllDepths) {
    kinds.push_back({"layers of " + std::to_string(static_cast<int32_t>(depth)) + " bits",
                     LayerValue::of(picture(depth, 24, 18, 5))});
  }
  drawWith(trial, kinds);
}

void elsewhere(Trial& trial) {
  Image moved = picture(Depth::k8, 12, 9, 5);
  moved.originX = -7;
  moved.originY = 20;
  drawWith(trial, {{"layers that lie elsewhere", LayerValue::of(moved)}});
}

void leftAlone(Trial& trial) {
  Life life(trial);
  const std::vector<int32_t> layers = layersOf(life.host);
  Chance chance(trial.seed());
  Patience patience(life.host, 2);
  for (const Way& way : waysOf(life, Roads::kAll)) {
    for (int32_t i = 0; i < kFramesForEach; ++i) {
      ParameterValues values = randomValues(life.host, chance, Reach::kUsual);
      // Of the frame's depth and size, so that the very picture is lent.
      const Image before = picture(way.depth, 24, 18, 5);
      for (const int32_t index : layers) values.setLayer(ByIndex{index}, LayerValue::of(before));
      trial.step("drawing with layers by " + way.text() + " with " + valuesText(values));
      patience.startAgain();
      static_cast<void>(draw(life.host, way, frameOf(way.depth, 24, 18), values));
      for (const int32_t index : layers) {
        const std::string differs = difference(before, *values.layer(ByIndex{index}).picture);
        if (!differs.empty()) trial.finding("a layer's pixels were changed: " + differs);
      }
    }
  }
}

void gone(Trial& trial) {
  Life life(trial);
  const std::vector<int32_t> layers = layersOf(life.host);
  ParameterValues values = life.host.defaults();
  for (const int32_t index : layers) {
    values.setLayer(ByIndex{index}, LayerValue::of(picture(Depth::k8, 24, 18, 5)));
  }
  life.host.valueAt = [&](int32_t index, A_long, A_u_long) {
    const ParameterValues::Value& now = values.value(index);
    return std::holds_alternative<LayerValue>(now) ? ParameterValues::Value(LayerValue::none()) : now;
  };
  for (const Way& way : waysOf(life, Roads::kAll)) {
    for (const A_long time : {0, 100, 299}) {
      standin::FrameRequest frame = frameOf(way.depth, 24, 18);
      frame.currentTime = time;
      trial.step("drawing at time " + std::to_string(time) + " by " + way.text() + " with layers that are there alone");
      const RenderResult result = draw(life.host, way, frame, values);
      if (result.error != PF_Err_NONE) trial.finding("it answers " + errorText(life.host, result.error));
    }
  }
  life.host.valueAt = nullptr;
}

constexpr Promise kPromises[] = {
    {"layers-missing", "A layer parameter without a layer is no error.", Weight::kMust, kUsualSeconds, missing},
    {"layers-that-are-the-layer-itself", "A layer parameter may show the layer that the effect is on.", Weight::kMust,
     kUsualSeconds, itself},
    {"layers-empty", "A layer without a pixel is no error.", Weight::kMust, kUsualSeconds, empty},
    {"layers-of-other-sizes", "Layers smaller and larger than the frame are no error.", Weight::kMust, kUsualSeconds,
     otherSizes},
    {"layers-of-other-depths", "Layers from pictures of other depths are no error.", Weight::kMust, kUsualSeconds,
     otherDepths},
    {"layers-elsewhere", "Layers whose place isn't the frame's are no error.", Weight::kMust, kUsualSeconds, elsewhere},
    {"layers-gone-at-other-times", "A layer that is missing before and after the frame is no error.", Weight::kMust,
     kUsualSeconds, gone},
    {"layers-are-left-alone", "A frame leaves the pixels of its layers as they are.", Weight::kMust, kUsualSeconds,
     leftAlone},
};

}  // namespace

Subject layerPromises() {
  return {"layers", kPromises};
}

}  // namespace check
