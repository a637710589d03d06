#include "effect/dots/RenderDotField.h"

#include "effect/dots/CollectDots.h"
#include "effect/dots/DotOrder.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {

template <class Pixel>
PF_Err RenderDotField(FrameRecord& frame, DrawContext<Pixel>& context) {
  DotField<Pixel> field = collectDots<Pixel>(frame.params, frame.in_data, context.width, context.height);
  SortDots(field.records, field.order);
  return DrawDots(frame.in_data, context, field);
}

template PF_Err RenderDotField(FrameRecord&, DrawContext<Pixel8>&);
template PF_Err RenderDotField(FrameRecord&, DrawContext<Pixel16>&);
template PF_Err RenderDotField(FrameRecord&, DrawContext<Pixel32>&);

}  // namespace vindrel
