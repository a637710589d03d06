#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <random>

#include "host/CopyWorld.h"
#include "host/FillWorld.h"
#include "host/Image.h"
#include "host/TransferRect.h"

namespace {

using standin::Depth;
using standin::Image;

// A picture whose pixels all differ.
template <class Pixel>
Image numbered(int32_t width, int32_t height) {
  Image image(standin::PixelFacts<Pixel>::depth, width, height, 8);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const PF_Pixel small{255, static_cast<A_u_char>(x * 10), static_cast<A_u_char>(y * 10),
                           static_cast<A_u_char>(x + 16 * y)};
      image.at<Pixel>(x, y) = standin::convertPixel<Pixel>(small);
    }
  }
  return image;
}

int32_t redAt(const Image& image, int32_t x, int32_t y) {
  return image.at<PF_Pixel>(x, y).red;
}

TEST(Fill, aColorGoesIntoTheRectangleOnly) {
  Image image(Depth::k8, 4, 4, 4);
  PF_EffectWorld world = image.view();
  const PF_Rect rect{1, 2, 3, 9};
  standin::fillWorld<PF_Pixel>(world, &rect, {1, 2, 3, 4});
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 4; ++x) {
      const bool inside = x >= 1 && x < 3 && y >= 2;
      EXPECT_EQ(image.at<PF_Pixel>(x, y).blue, inside ? 4 : 0) << x << " " << y;
    }
  }
  EXPECT_TRUE(image.guardsIntact());
}

TEST(Fill, aNullRectangleIsTheWholeWorld) {
  Image image(Depth::k32, 3, 2, 4);
  PF_EffectWorld world = image.view();
  standin::fillWorld<PF_PixelFloat>(world, nullptr, {0.5F, 0.25F, 1.0F, 2.0F});
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x < 3; ++x) EXPECT_EQ(image.at<PF_PixelFloat>(x, y).blue, 2.0F);
  }
  EXPECT_TRUE(image.guardsIntact());
}

template <class Pixel>
class CopyAtDepth : public testing::Test {};
using Pixels = testing::Types<PF_Pixel, PF_Pixel16, PF_PixelFloat>;
TYPED_TEST_SUITE(CopyAtDepth, Pixels);

TYPED_TEST(CopyAtDepth, equalSizesGiveTheSameBytes) {
  const Image source = numbered<TypeParam>(5, 4);
  for (const bool smoothly : {false, true}) {
    Image target(source.depth(), 5, 4, 12);
    const auto copy = smoothly ? standin::copyWorldSmoothly : standin::copyWorld;
    copy(source.depth(), source.view(), target.view(), nullptr, nullptr);
    EXPECT_TRUE(samePixels(source, target));
    EXPECT_TRUE(target.guardsIntact());
  }
}

TYPED_TEST(CopyAtDepth, aShiftedCopyIsClippedOnEverySide) {
  const Image source = numbered<TypeParam>(5, 4);
  for (int32_t dx = -6; dx <= 6; ++dx) {
    for (int32_t dy = -5; dy <= 5; ++dy) {
      Image target(source.depth(), 4, 3);
      const PF_Rect from{0, 0, 5, 4};
      const PF_Rect to{dx, dy, dx + 5, dy + 4};
      standin::copyWorld(source.depth(), source.view(), target.view(), &from, &to);
      for (int32_t y = 0; y < 3; ++y) {
        for (int32_t x = 0; x < 4; ++x) {
          const bool covered = x - dx >= 0 && x - dx < 5 && y - dy >= 0 && y - dy < 4;
          const TypeParam expected = covered ? source.at<TypeParam>(x - dx, y - dy) : TypeParam{};
          ASSERT_EQ(target.at<TypeParam>(x, y).red, expected.red) << dx << " " << dy << " " << x << " " << y;
          ASSERT_EQ(target.at<TypeParam>(x, y).alpha, expected.alpha) << dx << " " << dy << " " << x << " " << y;
        }
      }
      ASSERT_TRUE(target.guardsIntact());
    }
  }
}

TYPED_TEST(CopyAtDepth, doubleSizeByNearestDoublesEachPixel) {
  const Image source = numbered<TypeParam>(3, 2);
  Image target(source.depth(), 6, 4);
  standin::copyWorld(source.depth(), source.view(), target.view(), nullptr, nullptr);
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 6; ++x) {
      EXPECT_EQ(target.at<TypeParam>(x, y).blue, source.at<TypeParam>(x / 2, y / 2).blue);
    }
  }
}

TEST(Copy, threePixelsIntoTwoTakeTheNearestCentres) {
  // Centres of the two lie at 0.75 and 2.25 of three: pixels 0 and 2.
  const Image source = numbered<PF_Pixel>(3, 1);
  Image target(Depth::k8, 2, 1);
  standin::copyWorld(Depth::k8, source.view(), target.view(), nullptr, nullptr);
  EXPECT_EQ(redAt(target, 0, 0), 0);
  EXPECT_EQ(redAt(target, 1, 0), 20);
}

TEST(Copy, aStretchOverMoreThanThirtyTwoBitsHoldCountsInMore) {
  // The rectangle is 2147483654 wide and the target its last 6 columns: two source pixels stretched over it put the
  // second one there, since (2 * 2147483648 + 1) * 2 / (2 * 2147483654) is between 1 and 2.
  Image source(Depth::k8, 2, 1);
  source.at<PF_Pixel>(0, 0) = {255, 10, 0, 0};
  source.at<PF_Pixel>(1, 0) = {255, 20, 0, 0};
  const PF_Rect wide{std::numeric_limits<int32_t>::min(), 0, 6, 1};
  Image target(Depth::k8, 6, 1);
  standin::copyWorld(Depth::k8, source.view(), target.view(), nullptr, &wide);
  for (int32_t x = 0; x < 6; ++x) EXPECT_EQ(redAt(target, x, 0), 20) << x;
}

TEST(Worlds, rowsBeyondTwoGigabytesAreFound) {
  // Two rows' distance is 2^31 bytes, which no 32-bit offset holds. Only the few bytes that are written take memory.
  constexpr int32_t rowBytes = 1 << 30;
  const std::unique_ptr<void, decltype(&std::free)> memory(std::calloc(1, (size_t{1} << 31) + 64), std::free);
  ASSERT_NE(memory, nullptr);
  PF_EffectWorld world{};
  world.data = static_cast<PF_PixelPtr>(memory.get());
  world.rowbytes = rowBytes;
  world.width = 2;
  world.height = 3;
  const PF_Pixel* last =
      reinterpret_cast<const PF_Pixel*>(static_cast<unsigned char*>(memory.get()) + (size_t{1} << 31));
  const PF_Rect lastRow{0, 2, 2, 3};
  standin::fillWorld<PF_Pixel>(world, &lastRow, {1, 2, 3, 4});
  EXPECT_EQ(int{last[1].blue}, 4);
  const Image source(Depth::k8, 2, 1, 0, 0x44);
  standin::copyWorld(Depth::k8, source.view(), world, nullptr, &lastRow);
  EXPECT_EQ(int{last[1].blue}, 0x44);
  Image opaque(Depth::k8, 2, 1);
  opaque.at<PF_Pixel>(1, 0) = {255, 7, 8, 9};
  const PF_CompositeMode mode{PF_Xfer_IN_FRONT, 0, 255, 0, 32768};
  standin::transferRect(Depth::k8, nullptr, opaque.view(), mode, std::nullopt, 0, 2, world);
  EXPECT_EQ(int{last[1].blue}, 9);
  EXPECT_EQ(int{last[0].blue}, 0x44);
}

TEST(Copy, anEmptyOrReversedRectangleCopiesNothing) {
  const Image source = numbered<PF_Pixel>(3, 3);
  for (const PF_Rect to : {PF_Rect{2, 0, 2, 3}, PF_Rect{3, 0, 1, 3}, PF_Rect{0, 2, 3, 1}}) {
    for (const auto copy : {standin::copyWorld, standin::copyWorldSmoothly}) {
      Image target(Depth::k8, 3, 3);
      copy(Depth::k8, source.view(), target.view(), nullptr, &to);
      EXPECT_TRUE(samePixels(target, Image(Depth::k8, 3, 3)));
    }
  }
}

TEST(CopyHq, doubleSizeMixesByQuarters) {
  // Centres of four lie at -0.25, 0.25, 0.75, 1.25 between two pixels of 0 and 100.
  Image source(Depth::k8, 2, 1);
  source.at<PF_Pixel>(0, 0) = {255, 0, 0, 0};
  source.at<PF_Pixel>(1, 0) = {255, 100, 0, 0};
  Image target(Depth::k8, 4, 1);
  standin::copyWorldSmoothly(Depth::k8, source.view(), target.view(), nullptr, nullptr);
  EXPECT_EQ(redAt(target, 0, 0), 0);
  EXPECT_EQ(redAt(target, 1, 0), 25);
  EXPECT_EQ(redAt(target, 2, 0), 75);
  EXPECT_EQ(redAt(target, 3, 0), 100);
  EXPECT_EQ(target.at<PF_Pixel>(2, 0).alpha, 255);
}

TEST(CopyHq, aTransparentNeighbourGivesAlphaButNoColor) {
  Image source(Depth::k16, 2, 1);
  source.at<PF_Pixel16>(0, 0) = {0, 32768, 32768, 32768};
  source.at<PF_Pixel16>(1, 0) = {32768, 1000, 2000, 3000};
  Image target(Depth::k16, 4, 1);
  standin::copyWorldSmoothly(Depth::k16, source.view(), target.view(), nullptr, nullptr);
  EXPECT_EQ(target.at<PF_Pixel16>(1, 0).alpha, 8192);
  EXPECT_EQ(target.at<PF_Pixel16>(1, 0).red, 1000);
  EXPECT_EQ(target.at<PF_Pixel16>(1, 0).green, 2000);
}

// The plain form in long double: four corners, each weighed by its distance.
template <class Pixel>
long double plainBilinear(const Image& source, int32_t targetWidth, int32_t targetHeight, int32_t x, int32_t y,
                          int channel) {
  const long double u = (x + 0.5L) * source.width() / targetWidth - 0.5L;
  const long double v = (y + 0.5L) * source.height() / targetHeight - 0.5L;
  const auto left = static_cast<int32_t>(std::floor(u));
  const auto top = static_cast<int32_t>(std::floor(v));
  long double alpha = 0;
  long double color = 0;
  for (int k = 0; k < 4; ++k) {
    const int32_t sx = std::clamp(left + k % 2, 0, source.width() - 1);
    const int32_t sy = std::clamp(top + k / 2, 0, source.height() - 1);
    const long double wx = k % 2 == 1 ? u - left : 1 - (u - left);
    const long double wy = k / 2 == 1 ? v - top : 1 - (v - top);
    const Pixel& p = source.at<Pixel>(sx, sy);
    alpha += wx * wy * static_cast<long double>(p.alpha);
    color += wx * wy * static_cast<long double>(p.alpha) *
             static_cast<long double>(channel == 1   ? p.red
                                      : channel == 2 ? p.green
                                                     : p.blue);
  }
  return channel == 0 ? alpha : color / alpha;
}

TYPED_TEST(CopyAtDepth, aStretchIsThePlainBilinearFormRoundedOnce) {
  Image source = numbered<TypeParam>(7, 5);
  std::mt19937 random(20240501);
  for (int32_t y = 0; y < 5; ++y) {
    for (int32_t x = 0; x < 7; ++x) {
      const PF_Pixel p{static_cast<A_u_char>(1 + random() % 255), static_cast<A_u_char>(random()),
                       static_cast<A_u_char>(random()), static_cast<A_u_char>(random())};
      source.at<TypeParam>(x, y) = standin::convertPixel<TypeParam>(p);
    }
  }
  const bool isFloat = source.depth() == Depth::k32;
  for (const auto& [width, height] : {std::pair{11, 9}, std::pair{3, 2}, std::pair{7, 13}, std::pair{1, 1}}) {
    Image target(source.depth(), width, height, 4);
    standin::copyWorldSmoothly(source.depth(), source.view(), target.view(), nullptr, nullptr);
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        const TypeParam& p = target.at<TypeParam>(x, y);
        const long double got[4] = {static_cast<long double>(p.alpha), static_cast<long double>(p.red),
                                    static_cast<long double>(p.green), static_cast<long double>(p.blue)};
        for (int c = 0; c < 4; ++c) {
          const long double plain = plainBilinear<TypeParam>(source, width, height, x, y, c);
          const long double allowed = isFloat ? 1e-7L : 0.5L + 1e-9L;
          ASSERT_LE(std::fabs(got[c] - plain), allowed) << width << "x" << height << " at " << x << " " << y;
        }
      }
    }
    ASSERT_TRUE(target.guardsIntact());
  }
}

}  // namespace
