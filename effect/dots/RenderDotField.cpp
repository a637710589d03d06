#include "effect/dots/RenderDotField.h"

#include "effect/dots/CollectDots.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/DrawDot.h"

namespace vindrel {
namespace {

template <class Pixel>
int32_t drawDots(const DotField<Pixel>& field, DrawContext<Pixel>& context, const ProgressCall& progress) {
  const std::size_t total = field.records.size();
  int32_t result = 0;
  for (std::size_t drawn = 0; drawn < total && result == 0;) {
    const std::size_t place = field.order == DotOrder::nearestOnTop ? total - 1 - drawn : drawn;
    drawDot(context, field.records[place]);
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
  DotField<Pixel> field = collectDots(settings, context.width, context.height);
  SortDots(field.records, field.order);
  return drawDots(field, context, progress);
}

template int32_t RenderDotField(const FieldSettings<Pixel8>&, DrawContext<Pixel8>&, const ProgressCall&);
template int32_t RenderDotField(const FieldSettings<Pixel16>&, DrawContext<Pixel16>&, const ProgressCall&);
template int32_t RenderDotField(const FieldSettings<Pixel32>&, DrawContext<Pixel32>&, const ProgressCall&);

}  // namespace vindrel
