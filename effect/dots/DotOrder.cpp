#include "effect/dots/DotOrder.h"

#include <algorithm>

#include "effect/pixel/Pixel.h"
#include "effect/raster/DrawDot.h"

namespace vindrel {

template <class Pixel>
void SortDots(std::vector<DotRecord<Pixel>>& records, DotOrder order) {
  using Dot = DotRecord<Pixel>;
  if (order == DotOrder::nearestOnTop) {
    std::sort(records.begin(), records.end(), [](const Dot& a, const Dot& b) { return a.frontKey < b.frontKey; });
  } else {
    std::sort(records.begin(), records.end(),
              [](const Dot& a, const Dot& b) { return a.y < b.y || (a.y == b.y && a.x < b.x); });
  }
}

template <class Pixel>
PF_Err DrawDots(const PF_InData* in_data, DrawContext<Pixel>& context, const DotField<Pixel>& field) {
  const std::size_t total = field.records.size();
  PF_Err result = 0;
  for (std::size_t drawn = 0; drawn < total && result == 0;) {
    const std::size_t place = field.order == DotOrder::nearestOnTop ? total - 1 - drawn : drawn;
    drawDot(context, field.records[place]);
    ++drawn;
    if (in_data != nullptr) result = in_data->inter.progress(in_data->effect_ref, progressPercent(drawn, total), 100);
  }
  return result;
}

template void SortDots(std::vector<DotRecord<Pixel8>>&, DotOrder);
template void SortDots(std::vector<DotRecord<Pixel16>>&, DotOrder);
template void SortDots(std::vector<DotRecord<Pixel32>>&, DotOrder);
template PF_Err DrawDots(const PF_InData*, DrawContext<Pixel8>&, const DotField<Pixel8>&);
template PF_Err DrawDots(const PF_InData*, DrawContext<Pixel16>&, const DotField<Pixel16>&);
template PF_Err DrawDots(const PF_InData*, DrawContext<Pixel32>&, const DotField<Pixel32>&);

}  // namespace vindrel
