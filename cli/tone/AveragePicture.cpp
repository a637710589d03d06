#include "cli/tone/AveragePicture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace cli {
namespace {

/// One pixel that counts for a mean: where it lies from the middle, and how much.
struct Tap {
  int32_t x = 0;
  int32_t y = 0;
  float weight = 0.0F;
};

std::vector<Tap> tapsAlong(const Edge& edge) {
  const bool alongX = std::abs(edge.x) >= std::abs(edge.y);
  const double length = alongX ? edge.x : edge.y;
  const double half = std::abs(length) / 2.0;
  // Shorter than a pixel: nothing to average.
  if (half <= 0.5) return {{0, 0, 1.0F}};
  const double slope = (alongX ? edge.y : edge.x) / length;
  const auto reach = static_cast<int32_t>(std::ceil(half - 0.5));
  std::vector<Tap> taps;
  for (int32_t step = -reach; step <= reach; ++step) {
    const double covered = std::min(step + 0.5, half) - std::max(step - 0.5, -half);
    const double across = step * slope;
    const auto below = static_cast<int32_t>(std::floor(across));
    const double part = across - below;
    const double share = covered / (2.0 * half);
    for (const auto& [side, weight] : {std::pair(below, share * (1.0 - part)), std::pair(below + 1, share * part)}) {
      if (weight <= 0.0) continue;
      taps.push_back(alongX ? Tap{step, side, static_cast<float>(weight)}
                            : Tap{side, step, static_cast<float>(weight)});
    }
  }
  return taps;
}

/// to[x] += weight * from[x + shift] for a row of pixels, the ends of `from` going on.
void addRow(const float* from, float* to, int32_t width, int32_t channels, int32_t shift, float weight) {
  const int32_t first = std::clamp(-shift, 0, width);
  const int32_t end = std::clamp(width - shift, 0, width);
  for (int32_t x = 0; x < first; ++x) {
    for (int32_t c = 0; c < channels; ++c) to[x * channels + c] += weight * from[c];
  }
  const ptrdiff_t moved = ptrdiff_t{shift} * channels;
  for (ptrdiff_t i = ptrdiff_t{first} * channels; i < ptrdiff_t{end} * channels; ++i) to[i] += weight * from[i + moved];
  for (int32_t x = std::max(first, end); x < width; ++x) {
    for (int32_t c = 0; c < channels; ++c) {
      to[x * channels + c] += weight * from[static_cast<ptrdiff_t>(width - 1) * channels + c];
    }
  }
}

Plane averagedAlong(const Plane& plane, const Edge& edge) {
  const std::vector<Tap> taps = tapsAlong(edge);
  if (taps.size() == 1) return plane;
  Plane result{plane.width, plane.height, plane.channels, std::vector<float>(plane.values.size(), 0.0F)};
  const auto rowLength = static_cast<std::size_t>(plane.width) * static_cast<std::size_t>(plane.channels);
  for (int32_t y = 0; y < plane.height; ++y) {
    float* const to = result.values.data() + static_cast<std::size_t>(y) * rowLength;
    for (const Tap& tap : taps) {
      const auto row = static_cast<std::size_t>(std::clamp(y + tap.y, 0, plane.height - 1));
      addRow(plane.values.data() + row * rowLength, to, plane.width, plane.channels, tap.x, tap.weight);
    }
  }
  return result;
}

struct Between {
  int32_t lower = 0;
  int32_t upper = 0;
  float part = 0.0F;  ///< of the upper one
};

Between between(double place, int32_t count) {
  const double held = std::clamp(place - 0.5, 0.0, count - 1.0);
  const auto lower = static_cast<int32_t>(std::floor(held));
  return {lower, std::min(lower + 1, count - 1), static_cast<float>(held - lower)};
}

/// Places to read in the part of a row that a new pixel covers, a pixel or less apart.
std::vector<std::vector<Between>> readings(double from, double to, int32_t count, int32_t newCount) {
  const double step = (to - from) / newCount;
  const auto each = static_cast<int32_t>(std::max(1.0, std::ceil(step)));
  std::vector<std::vector<Between>> all(static_cast<std::size_t>(newCount));
  for (int32_t i = 0; i < newCount; ++i) {
    for (int32_t k = 0; k < each; ++k) {
      all[static_cast<std::size_t>(i)].push_back(between(from + (i + (k + 0.5) / each) * step, count));
    }
  }
  return all;
}

}  // namespace

Plane averaged(const Plane& plane, const Patch& patch) {
  return averagedAlong(averagedAlong(plane, patch.first), patch.second);
}

Plane premultiplied(const standin::Image& picture) {
  const standin::Image deep = picture.depth() == standin::Depth::k32 ? picture : picture.converted(standin::Depth::k32);
  Plane plane{deep.width(), deep.height(), 4, {}};
  plane.values.reserve(static_cast<std::size_t>(deep.width()) * static_cast<std::size_t>(deep.height()) * 4);
  for (int32_t y = 0; y < deep.height(); ++y) {
    for (int32_t x = 0; x < deep.width(); ++x) {
      const PF_PixelFloat& pixel = deep.at<PF_PixelFloat>(x, y);
      for (const float color : {pixel.red, pixel.green, pixel.blue}) plane.values.push_back(color * pixel.alpha);
      plane.values.push_back(pixel.alpha);
    }
  }
  return plane;
}

standin::Image pictureOf(const Plane& plane) {
  standin::Image picture(standin::Depth::k32, plane.width, plane.height);
  const float* value = plane.values.data();
  for (int32_t y = 0; y < plane.height; ++y) {
    for (int32_t x = 0; x < plane.width; ++x, value += 4) {
      const float alpha = value[3];
      const float factor = alpha > 0.0F ? 1.0F / alpha : 0.0F;
      picture.at<PF_PixelFloat>(x, y) = {alpha, value[0] * factor, value[1] * factor, value[2] * factor};
    }
  }
  return picture;
}

Plane resampled(const Plane& plane, double left, double top, double right, double bottom, int32_t width,
                int32_t height) {
  const auto columns = readings(left, right, plane.width, width);
  const auto rows = readings(top, bottom, plane.height, height);
  Plane result{width, height, plane.channels, {}};
  result.values.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                        static_cast<std::size_t>(plane.channels));
  const auto at = [&](int32_t x, int32_t y, int32_t c) {
    return plane
        .values[(static_cast<std::size_t>(y) * static_cast<std::size_t>(plane.width) + static_cast<std::size_t>(x)) *
                    static_cast<std::size_t>(plane.channels) +
                static_cast<std::size_t>(c)];
  };
  for (const auto& row : rows) {
    for (const auto& column : columns) {
      for (int32_t c = 0; c < plane.channels; ++c) {
        float sum = 0.0F;
        for (const Between& y : row) {
          for (const Between& x : column) {
            const float upper = at(x.lower, y.lower, c) * (1.0F - x.part) + at(x.upper, y.lower, c) * x.part;
            const float lower = at(x.lower, y.upper, c) * (1.0F - x.part) + at(x.upper, y.upper, c) * x.part;
            sum += upper * (1.0F - y.part) + lower * y.part;
          }
        }
        result.values.push_back(sum / static_cast<float>(row.size() * column.size()));
      }
    }
  }
  return result;
}

}  // namespace cli
