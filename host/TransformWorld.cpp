#include "host/TransformWorld.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <type_traits>

#include "host/PixelAccess.h"
#include "host/TransferMask.h"

namespace standin {

namespace {

// By the adjugate; nothing where the determinant is 0 or no number.
std::optional<PF_FloatMatrix> inverseOf(const PF_FloatMatrix& m) {
  const auto& a = m.mat;
  const auto minor = [&](int r0, int r1, int c0, int c1) { return a[r0][c0] * a[r1][c1] - a[r0][c1] * a[r1][c0]; };
  const double determinant = a[0][0] * minor(1, 2, 1, 2) - a[0][1] * minor(1, 2, 0, 2) + a[0][2] * minor(1, 2, 0, 1);
  if (!(std::fabs(determinant) > 0.0)) return std::nullopt;
  PF_FloatMatrix inverse{};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const int r0 = column == 0 ? 1 : 0;
      const int r1 = column == 2 ? 1 : 2;
      const int c0 = row == 0 ? 1 : 0;
      const int c1 = row == 2 ? 1 : 2;
      const double sign = (row + column) % 2 == 0 ? 1.0 : -1.0;
      inverse.mat[row][column] = sign * minor(r0, r1, c0, c1) / determinant;
    }
  }
  return inverse;
}

/// What the samples of one target pixel add up to.
struct Sum {
  double alpha = 0;
  double colors[3] = {0, 0, 0};
};

template <class Pixel>
void addPixel(const PF_EffectWorld& world, double column, double row, double weight, Sum& sum) {
  if (!(column >= 0.0 && row >= 0.0 && column < world.width && row < world.height)) return;
  const Pixel& pixel = worldRow<Pixel>(world, static_cast<int32_t>(row))[static_cast<int32_t>(column)];
  const double weighed = weight * static_cast<double>(heldAlpha(pixel));
  sum.alpha += weighed;
  for (int c = 0; c < 3; ++c) sum.colors[c] += weighed * static_cast<double>(channel(pixel, c + 1));
}

template <class Pixel>
void addSample(const PF_EffectWorld& world, double x, double y, bool interpolated, Sum& sum) {
  if (!interpolated) return addPixel<Pixel>(world, std::floor(x), std::floor(y), 1.0, sum);
  const double left = std::floor(x - 0.5);
  const double top = std::floor(y - 0.5);
  const double right = x - 0.5 - left;
  const double lower = y - 0.5 - top;
  addPixel<Pixel>(world, left, top, (1.0 - right) * (1.0 - lower), sum);
  addPixel<Pixel>(world, left + 1.0, top, right * (1.0 - lower), sum);
  addPixel<Pixel>(world, left, top + 1.0, (1.0 - right) * lower, sum);
  addPixel<Pixel>(world, left + 1.0, top + 1.0, right * lower, sum);
}

template <class Channel>
Channel rounded(double value, double full) {
  if constexpr (std::is_floating_point_v<Channel>) {
    return static_cast<Channel>(value);
  } else {
    return static_cast<Channel>(std::min(std::floor(value + 0.5), full));
  }
}

template <class Pixel>
Pixel pixelOf(const Sum& sum, size_t count) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  constexpr double full = static_cast<double>(PixelFacts<Pixel>::full);
  if (!(sum.alpha > 0.0)) return Pixel{};
  return {rounded<Channel>(sum.alpha / static_cast<double>(count), full),
          rounded<Channel>(sum.colors[0] / sum.alpha, full), rounded<Channel>(sum.colors[1] / sum.alpha, full),
          rounded<Channel>(sum.colors[2] / sum.alpha, full)};
}

}  // namespace

Image transformedWorld(Depth depth, const PF_EffectWorld& source, const std::vector<PF_FloatMatrix>& matrices,
                       bool sourceToTarget, bool interpolated, const PF_LRect& area) {
  std::vector<PF_FloatMatrix> toSource;
  for (const PF_FloatMatrix& matrix : matrices) {
    if (!sourceToTarget) {
      toSource.push_back(matrix);
    } else if (const auto inverse = inverseOf(matrix)) {
      toSource.push_back(*inverse);
    }
  }
  Image result(depth, area.right - area.left, area.bottom - area.top);
  if (source.data == nullptr || result.empty()) return result;
  withPixelOf(depth, [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (int32_t row = 0; row < result.height(); ++row) {
      for (int32_t column = 0; column < result.width(); ++column) {
        const double x = static_cast<double>(area.left) + column + 0.5;
        const double y = static_cast<double>(area.top) + row + 0.5;
        Sum sum;
        for (const PF_FloatMatrix& m : toSource) {
          const double w = x * m.mat[0][2] + y * m.mat[1][2] + m.mat[2][2];
          addSample<Pixel>(source, (x * m.mat[0][0] + y * m.mat[1][0] + m.mat[2][0]) / w,
                           (x * m.mat[0][1] + y * m.mat[1][1] + m.mat[2][1]) / w, interpolated, sum);
        }
        result.at<Pixel>(column, row) = pixelOf<Pixel>(sum, matrices.size());
      }
    }
  });
  return result;
}

}  // namespace standin
