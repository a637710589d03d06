#include <algorithm>
#include <cstring>
#include <type_traits>

#include "host/CopyWorld.h"
#include "host/PixelAccess.h"
#include "host/Rects.h"

namespace standin {

namespace {

// The rectangles of a copy, with everything that does not depend on the pixels.
struct CopyPlan {
  PF_LRect from;   // as asked
  PF_LRect to;     // as asked
  PF_LRect reach;  // target pixels that exist
  bool sameSize = false;

  CopyPlan(const PF_EffectWorld& source, const PF_EffectWorld& target, const PF_Rect* sourceRect,
           const PF_Rect* targetRect)
      : from(sourceRect == nullptr ? wholeOf(source) : *sourceRect),
        to(targetRect == nullptr ? wholeOf(target) : *targetRect),
        reach(intersection(to, wholeOf(target))) {
    sameSize = fromWidth() == toWidth() && fromHeight() == toHeight();
  }
  bool nothing(const PF_EffectWorld& source) const {
    return isEmpty(from) || isEmpty(reach) || isEmpty(intersection(from, wholeOf(source)));
  }
  int64_t fromWidth() const { return int64_t{from.right} - from.left; }
  int64_t fromHeight() const { return int64_t{from.bottom} - from.top; }
  int64_t toWidth() const { return int64_t{to.right} - to.left; }
  int64_t toHeight() const { return int64_t{to.bottom} - to.top; }
};

void copyRows(Depth depth, const CopyPlan& plan, const PF_EffectWorld& source, const PF_EffectWorld& target) {
  const int64_t dx = int64_t{plan.from.left} - plan.to.left;
  const int64_t dy = int64_t{plan.from.top} - plan.to.top;
  const int64_t left = std::max<int64_t>(plan.reach.left, -dx);
  const int64_t right = std::min<int64_t>(plan.reach.right, source.width - dx);
  const int64_t top = std::max<int64_t>(plan.reach.top, -dy);
  const int64_t bottom = std::min<int64_t>(plan.reach.bottom, source.height - dy);
  if (left >= right) return;
  const auto bytes = static_cast<int64_t>(pixelBytes(depth));
  for (int64_t y = top; y < bottom; ++y) {
    std::memcpy(worldRow<unsigned char>(target, static_cast<int32_t>(y)) + left * bytes,
                worldRow<unsigned char>(source, static_cast<int32_t>(y + dy)) + (left + dx) * bytes,
                static_cast<size_t>((right - left) * bytes));
  }
}

template <class Pixel>
void stretchNearest(const CopyPlan& plan, const PF_EffectWorld& source, const PF_EffectWorld& target) {
  for (int32_t y = plan.reach.top; y < plan.reach.bottom; ++y) {
    const int64_t i = int64_t{y} - plan.to.top;
    const int64_t sourceY = plan.from.top + (2 * i + 1) * plan.fromHeight() / (2 * plan.toHeight());
    if (sourceY < 0 || sourceY >= source.height) continue;
    const Pixel* from = worldRow<Pixel>(source, static_cast<int32_t>(sourceY));
    Pixel* to = worldRow<Pixel>(target, y);
    for (int32_t x = plan.reach.left; x < plan.reach.right; ++x) {
      const int64_t j = int64_t{x} - plan.to.left;
      const int64_t sourceX = plan.from.left + (2 * j + 1) * plan.fromWidth() / (2 * plan.toWidth());
      if (sourceX >= 0 && sourceX < source.width) to[x] = from[sourceX];
    }
  }
}

// Where a target pixel's centre falls among the source's: between near and far, at far / whole of the way.
struct Between {
  int32_t near = 0;
  int32_t far = 0;
  uint64_t farPart = 0;
  uint64_t whole = 1;
};

Between between(int64_t i, int64_t sourceStart, int64_t sourceLength, int64_t targetLength, int64_t lowest,
                int64_t highest) {
  const int64_t whole = 2 * targetLength;
  const int64_t place = (2 * i + 1) * sourceLength - targetLength;  // in parts of a source pixel, whole to a pixel
  int64_t pixel = place / whole;
  if (place % whole < 0) --pixel;
  Between b;
  b.farPart = static_cast<uint64_t>(place - pixel * whole);
  b.whole = static_cast<uint64_t>(whole);
  b.near = static_cast<int32_t>(std::clamp(sourceStart + pixel, lowest, highest));
  b.far = static_cast<int32_t>(std::clamp(sourceStart + pixel + 1, lowest, highest));
  return b;
}

template <class Pixel>
Pixel mixed(const Pixel* const corners[4], const uint64_t weights[4], uint64_t sumOfWeights) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  constexpr auto full = PixelFacts<Pixel>::full;
  Pixel result{};
  if constexpr (std::is_floating_point_v<Channel>) {
    double alpha = 0;
    for (int k = 0; k < 4; ++k) alpha += static_cast<double>(weights[k]) * static_cast<double>(corners[k]->alpha);
    result.alpha = static_cast<Channel>(alpha / static_cast<double>(sumOfWeights));
    for (int c = 1; c < 4; ++c) {
      double sum = 0;
      for (int k = 0; k < 4; ++k) {
        const double weight =
            static_cast<double>(weights[k]) * (alpha > 0.0 ? static_cast<double>(corners[k]->alpha) : 1.0);
        sum += weight * static_cast<double>(channel(*corners[k], c));
      }
      channel(result, c) = static_cast<Channel>(sum / (alpha > 0.0 ? alpha : static_cast<double>(sumOfWeights)));
    }
  } else {
    // Weights add up to at most (2 * 30000)^2 < 2^32, alpha is at most 2^15, a channel below 2^16: sums stay in 64
    // bits.
    uint64_t alpha = 0;
    for (int k = 0; k < 4; ++k) alpha += weights[k] * std::min<uint64_t>(corners[k]->alpha, full);
    result.alpha = static_cast<Channel>(roundedQuotient(alpha, sumOfWeights));
    for (int c = 1; c < 4; ++c) {
      uint64_t sum = 0;
      for (int k = 0; k < 4; ++k) {
        const uint64_t weight = weights[k] * (alpha > 0 ? std::min<uint64_t>(corners[k]->alpha, full) : 1);
        sum += weight * channel(*corners[k], c);
      }
      channel(result, c) = static_cast<Channel>(roundedQuotient(sum, alpha > 0 ? alpha : sumOfWeights));
    }
  }
  return result;
}

template <class Pixel>
void stretchSmoothly(const CopyPlan& plan, const PF_EffectWorld& source, const PF_EffectWorld& target) {
  const PF_LRect given = intersection(plan.from, wholeOf(source));
  for (int32_t y = plan.reach.top; y < plan.reach.bottom; ++y) {
    const Between v = between(int64_t{y} - plan.to.top, plan.from.top, plan.fromHeight(), plan.toHeight(), given.top,
                              given.bottom - 1);
    const Pixel* upper = worldRow<Pixel>(source, v.near);
    const Pixel* lower = worldRow<Pixel>(source, v.far);
    Pixel* to = worldRow<Pixel>(target, y);
    for (int32_t x = plan.reach.left; x < plan.reach.right; ++x) {
      const Between h = between(int64_t{x} - plan.to.left, plan.from.left, plan.fromWidth(), plan.toWidth(), given.left,
                                given.right - 1);
      const Pixel* const corners[4] = {upper + h.near, upper + h.far, lower + h.near, lower + h.far};
      const uint64_t weights[4] = {(h.whole - h.farPart) * (v.whole - v.farPart), h.farPart * (v.whole - v.farPart),
                                   (h.whole - h.farPart) * v.farPart, h.farPart * v.farPart};
      to[x] = mixed(corners, weights, h.whole * v.whole);
    }
  }
}

}  // namespace

void copyWorld(Depth depth, const PF_EffectWorld& source, const PF_EffectWorld& target, const PF_Rect* sourceRect,
               const PF_Rect* targetRect) {
  const CopyPlan plan(source, target, sourceRect, targetRect);
  if (plan.nothing(source)) return;
  if (plan.sameSize) return copyRows(depth, plan, source, target);
  withPixelOf(depth, [&](auto pixel) { stretchNearest<decltype(pixel)>(plan, source, target); });
}

void copyWorldSmoothly(Depth depth, const PF_EffectWorld& source, const PF_EffectWorld& target,
                       const PF_Rect* sourceRect, const PF_Rect* targetRect) {
  const CopyPlan plan(source, target, sourceRect, targetRect);
  if (plan.nothing(source)) return;
  if (plan.sameSize) return copyRows(depth, plan, source, target);
  withPixelOf(depth, [&](auto pixel) { stretchSmoothly<decltype(pixel)>(plan, source, target); });
}

}  // namespace standin
