/// "PF Fill Matte Suite", and the same calls among the utilities: fill and premultiply, by the depth of the world
/// whatever the service is called. A colour of another depth is turned into the world's.
#include "host/FillWorld.h"
#include "host/HostState.h"
#include "host/PremultiplyWorld.h"

namespace standin {

namespace {

template <class Color>
PF_Err fill(std::string_view service, PF_ProgPtr ref, const Color* color, const PF_Rect* rect, PF_EffectWorld* world) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, service);
  FillCall call;
  call.order = host->log.nextOrder;
  call.hasColor = color != nullptr;
  if constexpr (std::is_same_v<Color, PF_Pixel>) call.color = color == nullptr ? PF_Pixel{} : *color;
  if (rect != nullptr) call.rect = *rect;
  if (world != nullptr) call.world = *world;
  host->log.fills.push_back(call);
  const auto fault = host->fault(service);
  PF_Err result = fault.value_or(PF_Err_NONE);
  if (!fault) {
    if (const auto depth = host->depthToWrite(world, service)) {
      withPixelOf(*depth, [&](auto pixel) {
        using Pixel = decltype(pixel);
        fillWorld<Pixel>(*world, rect, color == nullptr ? Pixel{} : convertPixel<Pixel>(*color));
      });
    } else {
      result = PF_Err_BAD_CALLBACK_PARAM;
    }
  }
  return host->note(service, worldText(world) + " " + rectText(rect), result);
}

PF_Err fillFloat(PF_ProgPtr ref, const PF_PixelFloat* color, const PF_Rect* rect, PF_EffectWorld* world) {
  return fill("fill_float", ref, color, rect, world);
}

// A null colour is black.
template <class Color>
PF_Err premultiplyOver(std::string_view service, PF_ProgPtr ref, PF_EffectWorld* source, const Color* color,
                       A_long forward, PF_EffectWorld* target) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, service);
  const std::string text = worldText(source) + " to " + worldText(target) + (forward != 0 ? ", forward" : ", back");
  if (const auto fault = host->fault(service)) return host->note(service, text, *fault);
  const auto depth = host->commonDepth(service, source, target);
  if (!depth) return host->note(service, text, PF_Err_BAD_CALLBACK_PARAM);
  withPixelOf(*depth, [&](auto pixel) {
    using Pixel = decltype(pixel);
    premultiplyWorld<Pixel>(*source, color == nullptr ? Pixel{} : convertPixel<Pixel>(*color), forward != 0, *target);
  });
  return host->note(service, text, PF_Err_NONE);
}

PF_Err premultiplyColorFloat(PF_ProgPtr ref, PF_EffectWorld* source, const PF_PixelFloat* color, A_long forward,
                             PF_EffectWorld* target) {
  return premultiplyOver("premultiply_color_float", ref, source, color, forward, target);
}

}  // namespace

PF_Err fill8(PF_ProgPtr ref, const PF_Pixel* color, const PF_Rect* rect, PF_EffectWorld* world) {
  return fill("fill", ref, color, rect, world);
}

PF_Err fill16(PF_ProgPtr ref, const PF_Pixel16* color, const PF_Rect* rect, PF_EffectWorld* world) {
  return fill("fill16", ref, color, rect, world);
}

PF_Err premultiply(PF_ProgPtr ref, A_long forward, PF_EffectWorld* world) {
  return premultiplyOver<PF_Pixel>("premultiply", ref, world, nullptr, forward, world);
}

PF_Err premultiplyColor8(PF_ProgPtr ref, PF_EffectWorld* source, const PF_Pixel* color, A_long forward,
                         PF_EffectWorld* target) {
  return premultiplyOver("premultiply_color", ref, source, color, forward, target);
}

PF_Err premultiplyColor16(PF_ProgPtr ref, PF_EffectWorld* source, const PF_Pixel16* color, A_long forward,
                          PF_EffectWorld* target) {
  return premultiplyOver("premultiply_color16", ref, source, color, forward, target);
}

const PF_FillMatteSuite2* fillMatteSuite() {
  static const PF_FillMatteSuite2 suite = {
      fill8, fill16, fillFloat, premultiply, premultiplyColor8, premultiplyColor16, premultiplyColorFloat};
  return &suite;
}

}  // namespace standin
