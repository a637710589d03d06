/// The colour suites at three depths, and the same calls among the utilities. The formulas are ConvertColor.h's.
///
/// Whole numbers: hue 0..255 for 0..360 degrees; lightness and saturation 0..255, of 16 bits 0..32768; luminance is 100
/// times luma in units of the depth, (299 R + 587 G + 114 B) / 10 rounded to nearest, halves up. Float: degrees, 0..1,
/// and luma itself.
#include <cmath>

#include "ae/PixelSuites.h"
#include "host/ConvertColor.h"
#include "host/HostState.h"

namespace standin {

namespace {

PF_Fixed toFixed(double value) {
  return static_cast<PF_Fixed>(std::floor(value * 65536.0 + 0.5));
}
double fromFixed(PF_Fixed value) {
  return static_cast<double>(value) / 65536.0;
}

/// What every call does first and last.
template <class Work>
PF_Err converted(std::string_view service, PF_ProgPtr ref, bool usable, Work&& work) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, service);
  // A frame may ask for millions of these, so that they are not noted one by one.
  if (const auto fault = host->fault(service)) return *fault;
  if (!usable) return PF_Err_BAD_CALLBACK_PARAM;
  work();
  return PF_Err_NONE;
}

template <class Pixel>
PF_Err rgbToHls(PF_ProgPtr ref, Pixel* rgb, PF_Fixed* hls) {
  return converted("RGBtoHLS", ref, rgb != nullptr && hls != nullptr, [&] {
    const Hls value = hlsOf(*rgb);
    hls[0] = toFixed(value.hue);
    hls[1] = toFixed(value.lightness);
    hls[2] = toFixed(value.saturation);
  });
}

template <class Pixel>
PF_Err hlsToRgb(PF_ProgPtr ref, PF_Fixed* hls, Pixel* rgb) {
  return converted("HLStoRGB", ref, rgb != nullptr && hls != nullptr, [&] {
    setHls({fromFixed(hls[0]), fromFixed(hls[1]), fromFixed(hls[2])}, *rgb);
  });
}

template <class Pixel>
PF_Err rgbToYiq(PF_ProgPtr ref, Pixel* rgb, PF_Fixed* yiq) {
  return converted("RGBtoYIQ", ref, rgb != nullptr && yiq != nullptr, [&] {
    const Yiq value = yiqOf(*rgb);
    yiq[0] = toFixed(value.y);
    yiq[1] = toFixed(value.i);
    yiq[2] = toFixed(value.q);
  });
}

template <class Pixel>
PF_Err yiqToRgb(PF_ProgPtr ref, PF_Fixed* yiq, Pixel* rgb) {
  return converted("YIQtoRGB", ref, rgb != nullptr && yiq != nullptr, [&] {
    setYiq({fromFixed(yiq[0]), fromFixed(yiq[1]), fromFixed(yiq[2])}, *rgb);
  });
}

template <class Pixel>
constexpr bool isFloat = PixelFacts<Pixel>::depth == Depth::k32;

template <class Pixel>
using Answer = std::conditional_t<isFloat<Pixel>, PF_FpShort, A_long>;

// value in 0..1 at the scale of the answer: as it is for float, else rounded.
template <class Pixel>
Answer<Pixel> scaled(double value, double scale) {
  if constexpr (isFloat<Pixel>) {
    return static_cast<PF_FpShort>(value);
  } else {
    return static_cast<A_long>(std::floor(value * scale + 0.5));
  }
}

template <class Pixel>
PF_Err luminance(PF_ProgPtr ref, Pixel* rgb, Answer<Pixel>* answer) {
  return converted("Luminance", ref, rgb != nullptr && answer != nullptr, [&] {
    if constexpr (isFloat<Pixel>) {
      *answer = static_cast<PF_FpShort>(yiqOf(*rgb).y);
    } else {
      *answer = (A_long{299} * rgb->red + A_long{587} * rgb->green + A_long{114} * rgb->blue + 5) / 10;
    }
  });
}

template <class Pixel>
PF_Err hue(PF_ProgPtr ref, Pixel* rgb, Answer<Pixel>* answer) {
  return converted("Hue", ref, rgb != nullptr && answer != nullptr, [&] {
    const double value = hlsOf(*rgb).hue;
    *answer = scaled<Pixel>(isFloat<Pixel> ? value * 360.0 : value, 255.0);
  });
}

template <class Pixel>
PF_Err lightness(PF_ProgPtr ref, Pixel* rgb, Answer<Pixel>* answer) {
  return converted("Lightness", ref, rgb != nullptr && answer != nullptr, [&] {
    *answer = scaled<Pixel>(hlsOf(*rgb).lightness, static_cast<double>(PixelFacts<Pixel>::full));
  });
}

template <class Pixel>
PF_Err saturation(PF_ProgPtr ref, Pixel* rgb, Answer<Pixel>* answer) {
  return converted("Saturation", ref, rgb != nullptr && answer != nullptr, [&] {
    *answer = scaled<Pixel>(hlsOf(*rgb).saturation, static_cast<double>(PixelFacts<Pixel>::full));
  });
}

template <class Suite, class Pixel>
constexpr Suite tableOf() {
  return {rgbToHls<Pixel>,  hlsToRgb<Pixel>, rgbToYiq<Pixel>,  yiqToRgb<Pixel>,
          luminance<Pixel>, hue<Pixel>,      lightness<Pixel>, saturation<Pixel>};
}

}  // namespace

const PF_ColorSuite* colorSuite() {
  static const auto suite = tableOf<PF_ColorSuite, PF_Pixel>();
  return &suite;
}
const PF_Color16Suite* color16Suite() {
  static const auto suite = tableOf<PF_Color16Suite, PF_Pixel16>();
  return &suite;
}
const PF_ColorFloatSuite* colorFloatSuite() {
  static const auto suite = tableOf<PF_ColorFloatSuite, PF_PixelFloat>();
  return &suite;
}

PF_ColorCallbacks colorCallbacks() {
  return tableOf<PF_ColorCallbacks, PF_Pixel>();
}

}  // namespace standin
