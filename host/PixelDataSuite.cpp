/// A world's pixels as a pointer of one depth: "PF Pixel Data Suite", and the same calls among the utilities.
#include "ae/PixelSuites.h"
#include "host/HostState.h"

namespace standin {

namespace {

// The pixels that the caller named, else the world's own; null, which is no error, when the world has another depth.
template <class Pixel>
PF_Err pixelData(std::string_view service, PF_EffectWorld* world, PF_PixelPtr pixels, Pixel** out) {
  HostState* host = HostState::current();
  if (host == nullptr || out == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  *out = nullptr;
  if (const auto fault = host->fault(service)) return host->note(service, worldText(world), *fault);
  const auto depth = host->depthOf(world, service);
  if (depth && *depth == PixelFacts<Pixel>::depth) {
    *out = reinterpret_cast<Pixel*>(pixels == nullptr ? world->data : pixels);
  }
  return host->note(service, worldText(world), depth ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM);
}

PF_Err pixelData8(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel** out) {
  return pixelData("get_pixel_data8", world, pixels, out);
}
PF_Err pixelData16(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel16** out) {
  return pixelData("get_pixel_data16", world, pixels, out);
}
PF_Err pixelDataFloat(PF_EffectWorld* world, PF_PixelPtr pixels, PF_PixelFloat** out) {
  return pixelData("get_pixel_data_float", world, pixels, out);
}

// No world of this host lies on a graphics card.
PF_Err pixelDataGpu(PF_EffectWorld* world, void** out) {
  HostState* host = HostState::current();
  if (host == nullptr || out == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  *out = nullptr;
  return host->note("get_pixel_data_float_gpu", worldText(world), PF_Err_NONE);
}

}  // namespace

const PF_PixelDataSuite* pixelDataSuite() {
  static const PF_PixelDataSuite suite = {pixelData8, pixelData16, pixelDataFloat, pixelDataGpu};
  return &suite;
}

}  // namespace standin
