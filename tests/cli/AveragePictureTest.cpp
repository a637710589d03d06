#include "cli/tone/AveragePicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "cli/tone/PrepareLayers.h"
#include "cli/tone/ToneCurve.h"

using cli::Plane;

namespace {

/// One channel that is 0 but for a single 1.
Plane point(int32_t side, int32_t x, int32_t y) {
  Plane plane{side, side, 1, std::vector<float>(static_cast<std::size_t>(side) * static_cast<std::size_t>(side), 0.0F)};
  plane.values[static_cast<std::size_t>(y) * static_cast<std::size_t>(side) + static_cast<std::size_t>(x)] = 1.0F;
  return plane;
}

float at(const Plane& plane, int32_t x, int32_t y) {
  const auto row = static_cast<std::size_t>(y) * static_cast<std::size_t>(plane.width);
  return plane.values[row + static_cast<std::size_t>(x)];
}

}  // namespace

TEST(AveragePictureTest, anUprightPatchIsAPlainMean) {
  // 3 by 2 pixels: three whole columns; of the rows the middle one and a half of both neighbours.
  const Plane mean = cli::averaged(point(9, 4, 4), {{3, 0}, {0, 2}});
  for (int32_t x = 0; x < 9; ++x) {
    const float column = x >= 3 && x <= 5 ? 1.0F / 3.0F : 0.0F;
    EXPECT_NEAR(at(mean, x, 4), column / 2.0F, 1e-6F) << x;
    EXPECT_NEAR(at(mean, x, 3), column / 4.0F, 1e-6F) << x;
    EXPECT_NEAR(at(mean, x, 5), column / 4.0F, 1e-6F) << x;
    EXPECT_NEAR(at(mean, x, 6), 0.0F, 1e-6F) << x;
  }
}

TEST(AveragePictureTest, aTurnedPatchKeepsTheSumAndLosesItsOwnPattern) {
  const double angle = 0.6;
  const double pitch = 7.3;
  const cli::Patch cell{{pitch * std::cos(angle), pitch * std::sin(angle)},
                        {-pitch * std::sin(angle), pitch * std::cos(angle)}};
  double sum = 0.0;
  for (const float value : cli::averaged(point(41, 20, 20), cell).values) sum += static_cast<double>(value);
  EXPECT_NEAR(sum, 1.0, 1e-5);

  // Stripes as wide as the patch and along its edge are gone in the mean.
  Plane stripes{60, 60, 1, {}};
  for (int32_t y = 0; y < 60; ++y) {
    for (int32_t x = 0; x < 60; ++x) {
      const double along = x * std::cos(angle) + y * std::sin(angle);
      stripes.values.push_back(static_cast<float>(0.5 + 0.5 * std::cos(2.0 * std::numbers::pi * along / pitch)));
    }
  }
  const Plane grey = cli::averaged(stripes, cell);
  for (int32_t y = 15; y < 45; ++y) {
    for (int32_t x = 15; x < 45; ++x) EXPECT_NEAR(at(grey, x, y), 0.5F, 0.02F) << x << ", " << y;
  }
}

TEST(AveragePictureTest, theEdgeGoesOnOutside) {
  Plane plane{4, 3, 2, {}};
  for (int32_t i = 0; i < 12; ++i) plane.values.insert(plane.values.end(), {0.25F, 0.5F});
  for (const cli::Patch& patch :
       {cli::Patch{{30, 0}, {0, 30}}, cli::Patch{{9, 9}, {-9, 9}}, cli::Patch{{0.3, 0}, {0, 0}}}) {
    const Plane mean = cli::averaged(plane, patch);
    for (std::size_t i = 0; i < mean.values.size(); i += 2) {
      EXPECT_NEAR(mean.values[i], 0.25F, 1e-5F);
      EXPECT_NEAR(mean.values[i + 1], 0.5F, 1e-5F);
    }
  }
}

TEST(AveragePictureTest, clearPixelsLendNoColorToAMean) {
  standin::Image picture(standin::Depth::k8, 2, 1);
  picture.at<PF_Pixel>(0, 0) = {255, 51, 102, 204};
  picture.at<PF_Pixel>(1, 0) = {0, 255, 255, 255};
  const standin::Image mean = cli::pictureOf(cli::averaged(cli::premultiplied(picture), {{2, 0}, {0, 0}}));
  // The left pixel's patch reaches half a pixel beyond both neighbours: 3/4 of it solid, its edge going on.
  EXPECT_NEAR(mean.at<PF_PixelFloat>(0, 0).alpha, 0.75F, 1e-6F);
  EXPECT_NEAR(mean.at<PF_PixelFloat>(0, 0).red, 0.2F, 1e-6F);
  EXPECT_NEAR(mean.at<PF_PixelFloat>(0, 0).blue, 0.8F, 1e-6F);
}

TEST(AveragePictureTest, anotherSizeKeepsMeansAndReadsBetweenPixels) {
  Plane plane{4, 2, 1, {0, 1, 2, 3, 4, 5, 6, 7}};
  const Plane half = cli::resampled(plane, 0, 0, 4, 2, 2, 1);
  ASSERT_EQ(half.values.size(), 2U);
  EXPECT_NEAR(half.values[0], 2.5F, 1e-6F);
  EXPECT_NEAR(half.values[1], 4.5F, 1e-6F);
  const Plane doubled = cli::resampled(plane, 0, 0, 4, 1, 8, 1);
  for (int32_t x = 0; x < 8; ++x) {
    EXPECT_NEAR(static_cast<double>(doubled.values[static_cast<std::size_t>(x)]), std::clamp(x * 0.5 - 0.25, 0.0, 3.0),
                1e-6);
  }
}

TEST(ToneTest, toneIsTheMixThatTheMapsHaveAndLightIsLinear) {
  using Tone = cli::Preparation::Tone;
  EXPECT_NEAR(cli::toneOf(1, 0, 0, Tone::area), 0.298912F, 1e-6F);
  EXPECT_NEAR(cli::toneOf(0, 1, 0, Tone::area), 0.586611F, 1e-6F);
  EXPECT_NEAR(cli::toneOf(0, 0, 1, Tone::area), 0.114478F, 1e-6F);
  EXPECT_NEAR(cli::toneOf(1, 1, 1, Tone::area), 1.0F, 1e-6F);
  EXPECT_NEAR(cli::toneOf(2, -3, 0, Tone::area), 0.298912F, 1e-6F) << "held to the coded range";
  EXPECT_NEAR(cli::toneOf(0, 1, 0, Tone::light), 0.7152F, 1e-6F);
  // Half of full light is coded as 188 of 255.
  EXPECT_NEAR(cli::toneOf(188 / 255.0F, 188 / 255.0F, 188 / 255.0F, Tone::light), 0.503F, 1e-3F);
}

TEST(ToneTest, theCurveTurnsCoverageBack) {
  // Dots that close at 0.8 and vanish at 0.1 of the weight, with area by the square.
  const cli::ToneCurve rising([](double w) { return std::pow(std::clamp((w - 0.1) / 0.7, 0.0, 1.0), 2.0); });
  EXPECT_FALSE(rising.printsDark());
  EXPECT_EQ(rising.weightFor(0.0), 0.0);
  EXPECT_EQ(rising.weightFor(1.0), 1.0);
  for (const double tone : {0.05, 0.25, 0.5, 0.81})
    EXPECT_NEAR(rising.weightFor(tone), 0.1 + 0.7 * std::sqrt(tone), 0.003);

  const cli::ToneCurve falling([](double w) { return 1.0 - w * w; });
  EXPECT_TRUE(falling.printsDark());
  EXPECT_EQ(falling.weightFor(0.0), 1.0);
  EXPECT_EQ(falling.weightFor(1.0), 0.0);
  EXPECT_NEAR(falling.weightFor(0.75), 0.5, 0.003);
}

TEST(ToneTest, tonesArePressedIntoWhatTheDotsCanCover) {
  const cli::ToneCurve curve([](double w) { return 0.2 + 0.4 * w; });
  EXPECT_NEAR(curve.least(), 0.2, 1e-12);
  EXPECT_NEAR(curve.most(), 0.6, 1e-12);
  EXPECT_NEAR(curve.weightFor(0.5), 0.5, 1e-9) << "0.4 of the ground";
}
