#include "effect/dots/CollectDots.h"

#include <array>
#include <cstddef>

#include "effect/dots/DotJitter.h"
#include "effect/dots/EffectMap.h"
#include "effect/dots/Effector.h"
#include "effect/dots/FinishDot.h"
#include "effect/dots/Grid.h"
#include "effect/dots/Random.h"
#include "effect/pixel/Convert.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {
namespace {

RandomSchedule randomSchedule(const RenderParams& params, const PF_InData* in_data) {
  RandomSchedule schedule{.seed = params.randomSeed, .interval = params.randomInterval, .array = params.randomArray};
  if (in_data != nullptr) {
    schedule.currentTime = in_data->current_time;
    schedule.timeStep = in_data->time_step;
  }
  return schedule;
}

/// Everything that one effector needs for the dots of a frame.
template <class Pixel>
struct FrameEffector {
  EffectorState state;
  Pixel blendColor;
  EffectMapPtr map;  // built for a disabled effector too
};

template <class Pixel>
FrameEffector<Pixel> makeFrameEffector(const EffectorParams& params, int32_t width, int32_t height) {
  const EffectorState state = makeEffectorState(params, width, height);
  const PF_Pixel& blend = state.blendColor;
  return {state, pixelFrom8<Pixel>(blend.alpha, blend.red, blend.green, blend.blue), MakeEffectMap<Pixel>(state)};
}

/// Makes the record of one cell after the other.
///
/// The front ordering starts as possible and is given up for the frame at the first dot that no front centre ranks.
/// Keys hang on flags that are the same for all dots, so that is the first dot or none.
template <class Pixel>
class DotMaker {
 public:
  DotMaker(const RenderParams& params, const DotGrid& dotGrid, int32_t width, int32_t height)
      : grid(dotGrid),
        base(makeBaseDot<Pixel>(params)),
        jitter(makeJitterAmounts(params)),
        effectors{makeFrameEffector<Pixel>(params.effector[0], width, height),
                  makeFrameEffector<Pixel>(params.effector[1], width, height),
                  makeFrameEffector<Pixel>(params.effector[2], width, height)},
        centerDotToFront(params.centerDotToFront != 0),
        rotationType(params.rotationType),
        shape(params.dotShape) {}

  /// Takes the nine draws of a cell, whose turned place is (x, y).
  DotRecord<Pixel> makeDot(double x, double y) {
    DotDraft<Pixel> dot{};
    dot.x = x + drawJitter(jitter.distanceX) * grid.pitchX;
    dot.y = y + drawJitter(jitter.distanceY) * grid.pitchY;
    dot.frontKey = frontOrderingPossible && centerDotToFront ? keyFromGridCenter(dot.x, dot.y) : noFrontKey;
    dot.size = drawSize(jitter.size, base.baseSize);
    dot.aspect = drawJitter(jitter.aspect) + base.baseAspect;
    dot.rotation = drawRotation(jitter.rotation, base.baseRotation);
    dot.opacity = drawOpacity(jitter.opacity, base.baseOpacity);
    dot.color = base.baseColor;
    for (const FrameEffector<Pixel>& effector : effectors) {
      if (effector.state.enabled == 0) continue;
      applyEffector(effector.state, *effector.map, effector.blendColor, frontOrderingPossible, dot);
    }
    dot.color = drawColor(jitter, dot.color);
    if (dot.frontKey == noFrontKey) frontOrderingPossible = false;
    return finishDot(dot, dotAngle(rotationType, grid, dot.x, dot.y, dot.rotation), shape);
  }

  DotOrder order() const { return frontOrderingPossible ? DotOrder::nearestOnTop : DotOrder::reading; }

 private:
  double keyFromGridCenter(double x, double y) const {
    const double dx = x - grid.gridCenterX;
    const double dy = y - grid.gridCenterY;
    return dx * dx + dy * dy;
  }

  const DotGrid& grid;
  const BaseDot<Pixel> base;
  const JitterAmounts jitter;
  const std::array<FrameEffector<Pixel>, 3> effectors;
  const bool centerDotToFront;
  const int32_t rotationType;
  const int32_t shape;
  bool frontOrderingPossible = true;
};

}  // namespace

template <class Pixel>
DotField<Pixel> collectDots(const RenderParams& params, const PF_InData* in_data, int32_t width, int32_t height) {
  const DotGrid grid = makeDotGrid(params, width, height);
  RandomReseed(randomSchedule(params, in_data));
  DotMaker<Pixel> maker(params, grid, width, height);
  DotField<Pixel> field;
  walkGrid(grid, [&](double x, double y) { field.records.push_back(maker.makeDot(x, y)); });
  field.order = maker.order();
  return field;
}

template DotField<Pixel8> collectDots(const RenderParams&, const PF_InData*, int32_t, int32_t);
template DotField<Pixel16> collectDots(const RenderParams&, const PF_InData*, int32_t, int32_t);
template DotField<Pixel32> collectDots(const RenderParams&, const PF_InData*, int32_t, int32_t);

}  // namespace vindrel
