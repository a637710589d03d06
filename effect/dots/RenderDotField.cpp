#include "effect/dots/RenderDotField.h"

#include <algorithm>
#include <array>

#include "effect/dots/EffectMap.h"
#include "effect/dots/SortInOrder.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/DrawDot.h"

namespace vindrel {
namespace {

/// Makes the record of one cell after the other.
///
/// The front ordering starts as possible and is given up for the frame at the first dot that no front centre ranks.
/// Keys hang on flags that are the same for all dots, so that is the first dot or none.
template <class Pixel>
class DotMaker {
 public:
  DotMaker(const FieldSettings<Pixel>& fieldSettings, const DotGrid& dotGrid, int32_t width, int32_t height)
      : settings(fieldSettings),
        grid(dotGrid),
        // A disabled effector has its map too.
        maps{MakeEffectMap(settings.effectors[0], width, height), MakeEffectMap(settings.effectors[1], width, height),
             MakeEffectMap(settings.effectors[2], width, height)} {}

  /// Takes the nine draws of a cell, whose turned place is (x, y).
  FinishedDot<Pixel> makeDot(double x, double y) {
    const BaseDot<Pixel>& base = settings.base;
    const JitterAmounts& jitter = settings.jitter;
    DotDraft<Pixel> dot{};
    dot.x = x + drawJitter(settings.lattice.jitterX) * grid.pitchX;
    dot.y = y + drawJitter(settings.lattice.jitterY) * grid.pitchY;
    dot.frontKey = frontOrderingPossible && settings.centerDotToFront ? keyFromGridCenter(dot.x, dot.y) : noFrontKey;
    dot.size = drawSize(jitter.size, base.baseSize);
    dot.aspect = drawJitter(jitter.aspect) + base.baseAspect;
    dot.rotation = drawRotation(jitter.rotation, base.baseRotation);
    dot.opacity = drawOpacity(jitter.opacity, base.baseOpacity);
    dot.color = base.baseColor;
    for (std::size_t i = 0; i < maps.size(); ++i) {
      const EffectorState<Pixel>& effector = settings.effectors[i];
      if (effector.enabled) applyEffector(effector, *maps[i], frontOrderingPossible, dot);
    }
    dot.color = drawColor(jitter, dot.color);
    if (dot.frontKey == noFrontKey) frontOrderingPossible = false;
    return finishDot(dot, dotAngle(base.rotationType, grid, dot.x, dot.y, dot.rotation));
  }

  DotOrder order() const { return frontOrderingPossible ? DotOrder::nearestOnTop : DotOrder::reading; }

 private:
  double keyFromGridCenter(double x, double y) const {
    const double dx = x - grid.gridCenterX;
    const double dy = y - grid.gridCenterY;
    return dx * dx + dy * dy;
  }

  const FieldSettings<Pixel>& settings;
  const DotGrid& grid;
  const std::array<EffectMapPtr, 3> maps;
  bool frontOrderingPossible = true;
};

/// The dots of a whole walk. Leaves the generator as it was.
std::size_t countDots(const DotGrid& grid) {
  const uint32_t state = randomState;
  std::size_t dots = 0;
  walkGrid(grid, [&](double, double) { ++dots; });
  randomState = state;
  return dots;
}

template <class Pixel>
DotRecord<Pixel> recordOf(const FinishedDot<Pixel>& dot, DotShape shape) {
  DotRecord<Pixel> record{};
  record.frontKey = dot.frontKey;
  record.x = dot.x;
  record.y = dot.y;
  record.color = dot.color;
  record.width = dot.width;
  record.height = dot.height;
  record.angle = dot.angle;
  record.shape = shape;
  return record;
}

template <class Pixel>
int32_t drawDots(const DotField<Pixel>& field, DotShape shape, DrawContext<Pixel>& context,
                 const ProgressCall& progress) {
  const std::size_t total = field.records.size();
  int32_t result = 0;
  for (std::size_t drawn = 0; drawn < total && result == 0;) {
    const std::size_t place = field.order == DotOrder::nearestOnTop ? total - 1 - drawn : drawn;
    drawDot(context, recordOf(field.records[place], shape));
    ++drawn;
    if (progress.tell != nullptr) result = progress.tell(progress.listener, progressPercent(drawn, total));
  }
  return result;
}

}  // namespace

template <class Pixel>
DotField<Pixel> collectDots(const FieldSettings<Pixel>& settings, int32_t width, int32_t height) {
  const DotGrid grid = makeDotGrid(settings.lattice, width, height);
  RandomReseed(settings.random);
  DotMaker<Pixel> maker(settings, grid, width, height);
  DotField<Pixel> field;
  walkGrid(grid, [&](double x, double y) {
    if (field.records.size() == dotsWithoutCounting) field.records.reserve(countDots(grid));
    field.records.push_back(maker.makeDot(x, y));
  });
  field.order = maker.order();
  return field;
}

template <class Pixel>
void SortDots(std::vector<FinishedDot<Pixel>>& records, DotOrder order) {
  using Dot = FinishedDot<Pixel>;
  if (order == DotOrder::nearestOnTop) {
    sortInOrder(records.begin(), records.end(), [](const Dot& a, const Dot& b) { return a.frontKey < b.frontKey; });
  } else {
    sortInOrder(records.begin(), records.end(),
                [](const Dot& a, const Dot& b) { return a.y < b.y || (a.y == b.y && a.x < b.x); });
  }
}

// Every dot is made before the first is drawn, because the order of drawing hangs on all of them.
template <class Pixel>
int32_t RenderDotField(const FieldSettings<Pixel>& settings, DrawContext<Pixel>& context,
                       const ProgressCall& progress) {
  DotField<Pixel> field = collectDots(settings, context.canvas.width, context.canvas.height);
  SortDots(field.records, field.order);
  return drawDots(field, settings.base.shape, context, progress);
}

template DotField<Pixel8> collectDots(const FieldSettings<Pixel8>&, int32_t, int32_t);
template DotField<Pixel16> collectDots(const FieldSettings<Pixel16>&, int32_t, int32_t);
template DotField<Pixel32> collectDots(const FieldSettings<Pixel32>&, int32_t, int32_t);
template void SortDots(std::vector<FinishedDot<Pixel8>>&, DotOrder);
template void SortDots(std::vector<FinishedDot<Pixel16>>&, DotOrder);
template void SortDots(std::vector<FinishedDot<Pixel32>>&, DotOrder);
template int32_t RenderDotField(const FieldSettings<Pixel8>&, DrawContext<Pixel8>&, const ProgressCall&);
template int32_t RenderDotField(const FieldSettings<Pixel16>&, DrawContext<Pixel16>&, const ProgressCall&);
template int32_t RenderDotField(const FieldSettings<Pixel32>&, DrawContext<Pixel32>&, const ProgressCall&);

}  // namespace vindrel
