/// The host's pixel loops: in three suites, among the utilities, and the general loop.
///
/// One thread, rows from the top down, columns from the left. area is a rectangle of the destination (null: all of it);
/// it is cut to the destination and, but for the non-clip form, to where the source lies. The source's pixel for
/// destination pixel (x, y) is (x - origin.h, y - origin.v); x and y themselves are always the destination's. Without a
/// source the function gets the destination's own pixel to read; where the non-clip form has no source pixel it gets a
/// transparent black one that is made anew for each call. The worlds' own origins do not count.
///
/// Before row i of the area progress_base + i of progress_final is told, if progress_final is not 0, and whether to go
/// on is asked; what says stop, and what the function returns other than 0, ends the loop and is handed on. Worlds of
/// another depth than the function's pixels are refused.
#include <algorithm>

#include "ae/AegpSuites.h"
#include "ae/PixelSuites.h"
#include "host/HostState.h"
#include "host/PixelAccess.h"
#include "host/Rects.h"

namespace standin {

namespace {

/// Where a loop runs.
struct Loop {
  PF_LRect area{};  ///< of the destination, inside it
  int64_t dx = 0;   ///< source column less destination column
  int64_t dy = 0;
};

// The source's place in the destination, cut to 32 bits where it reaches beyond.
PF_LRect shifted(const PF_EffectWorld& source, const Loop& loop) {
  const auto held = [](int64_t value) { return static_cast<A_long>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX)); };
  return {held(-loop.dx), held(-loop.dy), held(source.width - loop.dx), held(source.height - loop.dy)};
}

template <class Pixel>
bool usable(HostState& host, std::string_view service, const PF_EffectWorld* world) {
  const auto depth = host.depthOf(world, service);
  if (!depth) return false;
  if (*depth == PixelFacts<Pixel>::depth) return true;
  host.complain(Matter::kBadWorld, std::string(service) + " of a world of another depth");
  return false;
}

/// Runs work(source pixel or null, target pixel, x, y) over the loop, with progress before each row.
template <class Pixel, class Work>
PF_Err runOver(HostState& host, const Loop& loop, A_long base, A_long final, const PF_EffectWorld* source,
               const PF_EffectWorld& target, Work&& work) {
  for (A_long y = loop.area.top; y < loop.area.bottom; ++y) {
    if (const PF_Err stop = host.askToGoOn(int64_t{base} + y - loop.area.top, final)) return stop;
    Pixel* to = worldRow<Pixel>(target, y);
    const int64_t sourceY = y + loop.dy;
    const bool rowExists = source != nullptr && sourceY >= 0 && sourceY < source->height;
    Pixel* from = rowExists ? worldRow<Pixel>(*source, static_cast<int32_t>(sourceY)) : nullptr;
    for (A_long x = loop.area.left; x < loop.area.right; ++x) {
      const int64_t sourceX = x + loop.dx;
      Pixel* in = from != nullptr && sourceX >= 0 && sourceX < source->width ? from + sourceX : nullptr;
      if (const PF_Err err = work(in, to + x, x, y)) return err;
    }
  }
  return PF_Err_NONE;
}

template <class Pixel>
using PixelFunction = PF_Err (*)(void*, A_long, A_long, Pixel*, Pixel*);

enum class Source { kClips, kDoesNotClip };

template <class Pixel>
PF_Err iterateOver(std::string_view service, PF_InData* in_data, A_long base, A_long final, PF_EffectWorld* source,
                   const PF_Rect* area, const PF_Point* origin, void* refcon, PixelFunction<Pixel> function,
                   PF_EffectWorld* target, Source clipping) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const std::string text = worldText(source) + " to " + worldText(target) + " " + rectText(area);
  if (const auto fault = host->fault(service)) return host->note(service, text, *fault);
  if (in_data != nullptr) host->checkRef(in_data->effect_ref, service);
  if (function == nullptr || !usable<Pixel>(*host, service, target) ||
      (source != nullptr && !usable<Pixel>(*host, service, source))) {
    return host->note(service, text, PF_Err_BAD_CALLBACK_PARAM);
  }
  Loop loop;
  if (origin != nullptr) {
    loop.dx = -int64_t{origin->h};
    loop.dy = -int64_t{origin->v};
  }
  loop.area = area == nullptr ? wholeOf(*target) : intersection(*area, wholeOf(*target));
  if (source != nullptr && clipping == Source::kClips) loop.area = intersection(loop.area, shifted(*source, loop));
  const PF_Err result =
      runOver<Pixel>(*host, loop, base, final, source, *target, [&](Pixel* in, Pixel* out, A_long x, A_long y) {
        Pixel nothing{};
        if (in == nullptr) in = source == nullptr ? out : &nothing;
        return function(refcon, x, y, in, out);
      });
  return host->note(service, text, result);
}

template <class Pixel>
PF_Err iterate(PF_InData* in_data, A_long base, A_long final, PF_EffectWorld* source, const PF_Rect* area, void* refcon,
               PixelFunction<Pixel> function, PF_EffectWorld* target) {
  return iterateOver<Pixel>("iterate", in_data, base, final, source, area, nullptr, refcon, function, target,
                            Source::kClips);
}

template <class Pixel>
PF_Err iterateOrigin(PF_InData* in_data, A_long base, A_long final, PF_EffectWorld* source, const PF_Rect* area,
                     const PF_Point* origin, void* refcon, PixelFunction<Pixel> function, PF_EffectWorld* target) {
  return iterateOver<Pixel>("iterate_origin", in_data, base, final, source, area, origin, refcon, function, target,
                            Source::kClips);
}

template <class Pixel>
PF_Err iterateNonClip(PF_InData* in_data, A_long base, A_long final, PF_EffectWorld* source, const PF_Rect* area,
                      const PF_Point* origin, void* refcon, PixelFunction<Pixel> function, PF_EffectWorld* target) {
  return iterateOver<Pixel>("iterate_origin_non_clip_src", in_data, base, final, source, area, origin, refcon, function,
                            target, Source::kDoesNotClip);
}

// Destination channel = table[source channel]; a null table leaves the channel as in the source. Without a source the
// destination is changed in place.
PF_Err iterateLut(PF_InData* in_data, A_long base, A_long final, PF_EffectWorld* source, const PF_Rect* area,
                  A_u_char* alphaTable, A_u_char* redTable, A_u_char* greenTable, A_u_char* blueTable,
                  PF_EffectWorld* target) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const std::string text = worldText(source) + " to " + worldText(target) + " " + rectText(area);
  if (const auto fault = host->fault("iterate_lut")) return host->note("iterate_lut", text, *fault);
  if (in_data != nullptr) host->checkRef(in_data->effect_ref, "iterate_lut");
  if (!usable<PF_Pixel>(*host, "iterate_lut", target) ||
      (source != nullptr && !usable<PF_Pixel>(*host, "iterate_lut", source))) {
    return host->note("iterate_lut", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  Loop loop;
  loop.area = area == nullptr ? wholeOf(*target) : intersection(*area, wholeOf(*target));
  if (source != nullptr) loop.area = intersection(loop.area, wholeOf(*source));
  const auto looked = [](const A_u_char* table, A_u_char value) { return table == nullptr ? value : table[value]; };
  const PF_Err result =
      runOver<PF_Pixel>(*host, loop, base, final, source, *target, [&](PF_Pixel* in, PF_Pixel* out, A_long, A_long) {
        const PF_Pixel from = in == nullptr ? *out : *in;
        *out = {looked(alphaTable, from.alpha), looked(redTable, from.red), looked(greenTable, from.green),
                looked(blueTable, from.blue)};
        return PF_Err{PF_Err_NONE};
      });
  return host->note("iterate_lut", text, result);
}

// i from 0 to iterations - 1 on the one thread, whose number is 0; "once a processor" is once, told as 1 of 1.
PF_Err iterateGeneric(A_long iterations, void* refcon, PF_GenericFunc function) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const std::string text = std::to_string(iterations) + " times";
  if (const auto fault = host->fault("iterate_generic")) return host->note("iterate_generic", text, *fault);
  PF_Err result = function == nullptr ? PF_Err_BAD_CALLBACK_PARAM : PF_Err_NONE;
  const A_long count = iterations == PF_Iterations_ONCE_PER_PROCESSOR ? 1 : iterations;
  for (A_long i = 0; result == PF_Err_NONE && i < count; ++i) result = function(refcon, 0, i, count);
  return host->note("iterate_generic", text, result);
}

A_Err numThreads(A_long* count) {
  HostState* host = HostState::current();
  if (host == nullptr || count == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (const auto fault = host->fault("AEGP_GetNumThreads")) return host->note("AEGP_GetNumThreads", "", *fault);
  *count = 1;
  return host->note("AEGP_GetNumThreads", "1", PF_Err_NONE);
}

}  // namespace

const PF_Iterate8Suite* iterate8Suite() {
  static const PF_Iterate8Suite suite = {iterate<PF_Pixel>, iterateOrigin<PF_Pixel>, iterateLut,
                                         iterateNonClip<PF_Pixel>, iterateGeneric};
  return &suite;
}

const PF_Iterate16Suite* iterate16Suite() {
  static const PF_Iterate16Suite suite = {iterate<PF_Pixel16>, iterateOrigin<PF_Pixel16>, iterateNonClip<PF_Pixel16>};
  return &suite;
}

const PF_IterateFloatSuite* iterateFloatSuite() {
  static const PF_IterateFloatSuite suite = {iterate<PF_PixelFloat>, iterateOrigin<PF_PixelFloat>,
                                             iterateNonClip<PF_PixelFloat>};
  return &suite;
}

const AEGP_IterateSuite* aegpIterateSuite() {
  static const AEGP_IterateSuite suite = {numThreads, iterateGeneric};
  return &suite;
}

}  // namespace standin
