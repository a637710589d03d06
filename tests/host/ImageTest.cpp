#include <gtest/gtest.h>

#include <cstring>

#include "host/Image.h"

namespace {

using standin::Depth;
using standin::Image;

TEST(Image, aNewPictureIsTransparentBlackAtEveryDepth) {
  for (const Depth depth : standin::kAllDepths) {
    const Image image(depth, 3, 2);
    for (int32_t y = 0; y < 2; ++y) {
      for (int32_t i = 0; i < 3 * standin::pixelBytes(depth); ++i) EXPECT_EQ(image.rowStart(y)[i], 0);
    }
  }
}

TEST(Image, paddingIsRoundedUpToWholeChannels) {
  EXPECT_EQ(Image(Depth::k8, 5, 1, 3).rowBytes(), 23);
  EXPECT_EQ(Image(Depth::k16, 5, 1, 3).rowBytes(), 44);
  EXPECT_EQ(Image(Depth::k32, 5, 1, 3).rowBytes(), 84);
}

TEST(Image, aWriteBehindARowIsSeen) {
  Image image(Depth::k8, 2, 2, 4);
  EXPECT_TRUE(image.guardsIntact());
  image.rowStart(0)[8] = 0;
  EXPECT_FALSE(image.guardsIntact());
}

TEST(Image, aWriteBeforeTheFirstPixelIsSeen) {
  Image image(Depth::k8, 2, 2);
  image.rowStart(0)[-1] = 0;
  EXPECT_FALSE(image.guardsIntact());
}

TEST(Image, aWriteBehindTheLastPixelIsSeen) {
  Image image(Depth::k8, 2, 2);
  image.rowStart(1)[8] = 0;
  EXPECT_FALSE(image.guardsIntact());
}

TEST(Image, aWriteIntoThePixelsIsNoBreach) {
  Image image(Depth::k16, 2, 2, 6);
  for (int32_t y = 0; y < 2; ++y) std::memset(image.rowStart(y), 0xFF, 2 * 8);
  EXPECT_TRUE(image.guardsIntact());
}

TEST(Image, theFillLiesInThePixelsAndNotAroundThem) {
  const Image image(Depth::k8, 3, 2, 5, 0x21);
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t byte = 0; byte < 12; ++byte) EXPECT_EQ(image.rowStart(y)[byte], 0x21) << y << " " << byte;
  }
  EXPECT_TRUE(image.guardsIntact());
}

TEST(Image, theWorldBearsSizeOriginAndDepthFlag) {
  Image image(Depth::k16, 4, 3, 2);
  image.originX = -5;
  image.originY = 7;
  const PF_EffectWorld world = image.view();
  EXPECT_EQ(world.width, 4);
  EXPECT_EQ(world.height, 3);
  EXPECT_EQ(world.rowbytes, 34);
  EXPECT_EQ(world.origin_x, -5);
  EXPECT_EQ(world.origin_y, 7);
  EXPECT_EQ(world.world_flags, PF_WorldFlag_DEEP | PF_WorldFlag_WRITEABLE);
  EXPECT_EQ(reinterpret_cast<const uint8_t*>(world.data), image.rowStart(0));
  EXPECT_EQ(Image(Depth::k32, 1, 1).view().world_flags, PF_WorldFlag_WRITEABLE);
}

TEST(Image, depthIsConvertedToTheNearestValue) {
  Image image(Depth::k8, 1, 1);
  image.at<PF_Pixel>(0, 0) = {255, 0, 128, 1};
  const Image deep = image.converted(Depth::k16);
  // 128 * 32768 / 255 = 16448.25; 32768 / 255 = 128.50...
  EXPECT_EQ(deep.at<PF_Pixel16>(0, 0).alpha, 32768);
  EXPECT_EQ(deep.at<PF_Pixel16>(0, 0).red, 0);
  EXPECT_EQ(deep.at<PF_Pixel16>(0, 0).green, 16448);
  EXPECT_EQ(deep.at<PF_Pixel16>(0, 0).blue, 129);
  const Image real = image.converted(Depth::k32);
  EXPECT_EQ(real.at<PF_PixelFloat>(0, 0).alpha, 1.0F);
  EXPECT_EQ(real.at<PF_PixelFloat>(0, 0).green, static_cast<float>(128.0 / 255.0));
  EXPECT_TRUE(samePixels(deep.converted(Depth::k8), image));
  EXPECT_TRUE(samePixels(real.converted(Depth::k8), image));
}

TEST(Image, floatBeyondFullScaleIsCutOffAtWholeNumberDepths) {
  Image image(Depth::k32, 1, 1);
  image.at<PF_PixelFloat>(0, 0) = {2.0F, -1.0F, 0.5F, std::numeric_limits<float>::quiet_NaN()};
  const Image small = image.converted(Depth::k8);
  EXPECT_EQ(small.at<PF_Pixel>(0, 0).alpha, 255);
  EXPECT_EQ(small.at<PF_Pixel>(0, 0).red, 0);
  EXPECT_EQ(small.at<PF_Pixel>(0, 0).green, 128);  // 127.5, halves up
  EXPECT_EQ(small.at<PF_Pixel>(0, 0).blue, 0);
}

TEST(Image, halfSizeIsTheMeanOfFourWeighedByAlpha) {
  Image image(Depth::k8, 2, 2);
  image.at<PF_Pixel>(0, 0) = {255, 200, 0, 0};
  image.at<PF_Pixel>(1, 0) = {255, 100, 0, 0};
  image.at<PF_Pixel>(0, 1) = {0, 7, 0, 0};  // its colour does not count
  image.at<PF_Pixel>(1, 1) = {0, 9, 0, 0};
  const Image half = image.resized(1, 1);
  EXPECT_EQ(half.at<PF_Pixel>(0, 0).alpha, 128);  // 510 / 4 = 127.5
  EXPECT_EQ(half.at<PF_Pixel>(0, 0).red, 150);
}

TEST(Image, aPartKeepsItsPlaceInTheLayer) {
  Image image(Depth::k8, 4, 4);
  image.originX = 10;
  image.originY = 20;
  image.at<PF_Pixel>(2, 1).red = 42;
  const Image part = image.part({2, 1, 9, 3});
  EXPECT_EQ(part.width(), 2);
  EXPECT_EQ(part.height(), 2);
  EXPECT_EQ(part.originX, 12);
  EXPECT_EQ(part.originY, 21);
  EXPECT_EQ(part.at<PF_Pixel>(0, 0).red, 42);
}

TEST(Image, aScaledLengthIsTruncatedAfterAHalfIsAdded) {
  EXPECT_EQ(standin::scaledLength(1921, {1, 2}), 961);
  EXPECT_EQ(standin::scaledLength(1920, {1, 2}), 960);
  EXPECT_EQ(standin::scaledLength(10, {1, 3}), 3);
  EXPECT_EQ(standin::scaledLength(0, {1, 1}), 0);
}

TEST(Image, aScaleThatIsNoneOrBelowLeavesNothing) {
  EXPECT_EQ(standin::scaledLength(10, {1, 0}), 0);
  EXPECT_EQ(standin::scaledLength(10, {-1, 2}), 0);
}

TEST(Image, aSizeThatDoesNotDivideTakesTheNearestPixels) {
  Image image(Depth::k16, 3, 1);
  for (int32_t x = 0; x < 3; ++x) image.at<PF_Pixel16>(x, 0) = {32768, static_cast<A_u_short>(10 + x), 0, 0};
  image.pixelAspect = {2, 1};
  const Image two = image.resized(2, 1);
  // The middles of the two lie at 0.75 and 2.25 of three.
  EXPECT_EQ(two.at<PF_Pixel16>(0, 0).red, 10);
  EXPECT_EQ(two.at<PF_Pixel16>(1, 0).red, 12);
  EXPECT_EQ(two.pixelAspect.num, 2);
  EXPECT_TRUE(standin::samePixels(Image(Depth::k8, 3, 2).resized(3, 3), Image(Depth::k8, 3, 3)))
      << "as wide and not as high";
}

TEST(Image, nothingAndAPictureOfNothingAreResizedToNothing) {
  EXPECT_TRUE(Image(Depth::k8, 4, 4).resized(0, 2).empty());
  EXPECT_TRUE(standin::samePixels(Image(Depth::k8, 0, 4).resized(2, 2), Image(Depth::k8, 2, 2)));
}

TEST(Image, halfSizeIsTheMeanAtEveryDepth) {
  Image deep(Depth::k16, 2, 1);
  deep.at<PF_Pixel16>(0, 0) = {32768, 100, 0, 0};
  deep.at<PF_Pixel16>(1, 0) = {16384, 400, 0, 0};
  // Colours go by alpha: (100 * 2 + 400) / 3.
  EXPECT_EQ(deep.resized(1, 1).at<PF_Pixel16>(0, 0).alpha, 24576);
  EXPECT_EQ(deep.resized(1, 1).at<PF_Pixel16>(0, 0).red, 200);
  Image real(Depth::k32, 2, 1);
  real.at<PF_PixelFloat>(0, 0) = {1.0F, 1.0F, 0.0F, 0.0F};
  real.at<PF_PixelFloat>(1, 0) = {0.5F, 4.0F, 0.0F, 0.0F};
  EXPECT_EQ(real.resized(1, 1).at<PF_PixelFloat>(0, 0).alpha, 0.75F);
  EXPECT_EQ(real.resized(1, 1).at<PF_PixelFloat>(0, 0).red, 2.0F);
}

TEST(Image, picturesOfOtherDepthsAndSizesDiffer) {
  const Image image(Depth::k8, 2, 2);
  EXPECT_TRUE(standin::samePixels(image, Image(Depth::k8, 2, 2, 12))) << "padding does not count";
  EXPECT_FALSE(standin::samePixels(image, Image(Depth::k16, 2, 2)));
  EXPECT_FALSE(standin::samePixels(image, Image(Depth::k8, 3, 2)));
  EXPECT_FALSE(standin::samePixels(image, Image(Depth::k8, 2, 3)));
  EXPECT_FALSE(standin::samePixels(image, Image(Depth::k8, 2, 2, 0, 1)));
}

TEST(Image, everyDepthGoesToEveryDepthAndKeepsWhatIsExactInBoth) {
  // Full scale and nothing are exact at all three; so is each depth in itself.
  for (const Depth from : standin::kAllDepths) {
    Image image(Depth::k8, 2, 2);
    image.at<PF_Pixel>(1, 1) = {255, 0, 255, 0};
    image = image.converted(from);
    image.originX = 3;
    for (const Depth to : standin::kAllDepths) {
      const Image there = image.converted(to);
      EXPECT_EQ(there.depth(), to);
      EXPECT_EQ(there.originX, 3);
      EXPECT_TRUE(standin::samePixels(there.converted(from), image));
      const Image small = there.converted(Depth::k8);
      const auto& pixel = small.at<PF_Pixel>(1, 1);
      EXPECT_TRUE(pixel.alpha == 255 && pixel.red == 0 && pixel.green == 255 && pixel.blue == 0);
      EXPECT_EQ(int{small.at<PF_Pixel>(0, 1).alpha}, 0);
    }
  }
}

}  // namespace
