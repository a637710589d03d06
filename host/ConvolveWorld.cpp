#include "host/ConvolveWorld.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "host/PixelAccess.h"
#include "host/Rects.h"

namespace standin {

namespace {

// value / by to nearest, halves toward plus infinity; by may be below 0.
int64_t roundedToNearest(int64_t value, int64_t by) {
  if (by < 0) {
    value = -value;
    by = -by;
  }
  const int64_t twice = 2 * value + by;
  const int64_t quotient = twice / (2 * by);
  return twice % (2 * by) < 0 ? quotient - 1 : quotient;
}

struct Shape {
  A_long columns;
  A_long rows;
};

Shape shapeOf(const ConvolveKernels& kernels) {
  if (kernels.twoDimensions) return {kernels.size, kernels.size};
  return kernels.vertical ? Shape{1, kernels.size} : Shape{kernels.size, 1};
}

template <class Pixel>
void convolvePixel(const PF_EffectWorld& source, A_long x, A_long y, const ConvolveKernels& kernels,
                   const std::array<int64_t, 4>& divisors, Pixel& target) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Sum = std::conditional_t<std::is_floating_point_v<Channel>, double, int64_t>;
  const Shape shape = shapeOf(kernels);
  for (int c = 0; c < 4; ++c) {
    const A_long* entries = kernels.entries[static_cast<size_t>(c)];
    if (entries == nullptr) {
      channel(target, c) = channel(worldRow<Pixel>(source, y)[x], c);
      continue;
    }
    Sum sum{0};
    for (A_long row = 0; row < shape.rows; ++row) {
      const A_long sourceY = y + row - shape.rows / 2;
      if (sourceY < 0 || sourceY >= source.height) continue;
      for (A_long column = 0; column < shape.columns; ++column) {
        const A_long sourceX = x + column - shape.columns / 2;
        if (sourceX < 0 || sourceX >= source.width) continue;
        sum += static_cast<Sum>(entries[row * shape.columns + column]) *
               static_cast<Sum>(channel(worldRow<Pixel>(source, sourceY)[sourceX], c));
      }
    }
    const int64_t divisor = divisors[static_cast<size_t>(c)];
    if constexpr (std::is_floating_point_v<Channel>) {
      double value = sum / static_cast<double>(divisor);
      if (kernels.limited) value = value > 0.0 ? std::min(value, 1.0) : 0.0;
      channel(target, c) = static_cast<Channel>(value);
    } else {
      int64_t value = roundedToNearest(sum, divisor);
      if (kernels.limited) value = std::clamp<int64_t>(value, 0, PixelFacts<Pixel>::full);
      channel(target, c) = static_cast<Channel>(value);
    }
  }
}

}  // namespace

void convolveWorld(Depth depth, const PF_EffectWorld& source, const PF_Rect* area, const ConvolveKernels& kernels,
                   const PF_EffectWorld& target) {
  const Shape shape = shapeOf(kernels);
  const int64_t count = int64_t{shape.columns} * shape.rows;
  std::array<int64_t, 4> divisors{};
  for (size_t c = 0; c < 4; ++c) {
    divisors[c] = 255 * count;
    if (!kernels.normalized || kernels.entries[c] == nullptr) continue;
    divisors[c] = 0;
    for (int64_t i = 0; i < count; ++i) divisors[c] += kernels.entries[c][i];
    if (divisors[c] == 0) divisors[c] = 1;
  }
  const PF_LRect both = intersection(wholeOf(source), wholeOf(target));
  const PF_LRect reach = area == nullptr ? both : intersection(*area, both);
  withPixelOf(depth, [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (A_long y = reach.top; y < reach.bottom; ++y) {
      Pixel* to = worldRow<Pixel>(target, y);
      for (A_long x = reach.left; x < reach.right; ++x) convolvePixel<Pixel>(source, x, y, kernels, divisors, to[x]);
    }
  });
}

}  // namespace standin
