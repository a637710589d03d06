#include "effect/dots/RenderDotField.h"

#include "effect/dots/CollectDots.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/DrawDot.h"

namespace vindrel {
namespace {

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

// Every dot is made before the first is drawn, because the order of drawing hangs on all of them.
template <class Pixel>
int32_t RenderDotField(const FieldSettings<Pixel>& settings, DrawContext<Pixel>& context,
                       const ProgressCall& progress) {
  DotField<Pixel> field = collectDots(settings, context.canvas.width, context.canvas.height);
  SortDots(field.records, field.order);
  return drawDots(field, settings.base.shape, context, progress);
}

template int32_t RenderDotField(const FieldSettings<Pixel8>&, DrawContext<Pixel8>&, const ProgressCall&);
template int32_t RenderDotField(const FieldSettings<Pixel16>&, DrawContext<Pixel16>&, const ProgressCall&);
template int32_t RenderDotField(const FieldSettings<Pixel32>&, DrawContext<Pixel32>&, const ProgressCall&);

}  // namespace vindrel
