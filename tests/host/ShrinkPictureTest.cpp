#include "host/ShrinkPicture.h"

#include <gtest/gtest.h>

using standin::Depth;
using standin::Image;

namespace {

Image rowOf(std::initializer_list<PF_Pixel> pixels) {
  Image image(Depth::k8, static_cast<int32_t>(pixels.size()), 1);
  int32_t x = 0;
  for (const PF_Pixel& pixel : pixels) image.at<PF_Pixel>(x++, 0) = pixel;
  return image;
}

void expectPixel(const PF_Pixel& pixel, int alpha, int red, int green, int blue) {
  EXPECT_EQ(pixel.alpha, alpha);
  EXPECT_EQ(pixel.red, red);
  EXPECT_EQ(pixel.green, green);
  EXPECT_EQ(pixel.blue, blue);
}

}  // namespace

TEST(ShrinkPictureTest, factorOneGivesTheSamePicture) {
  const Image image = rowOf({{255, 1, 2, 3}, {0, 4, 5, 6}});
  EXPECT_TRUE(samePixels(standin::shrunk(image, 1), image));
}

TEST(ShrinkPictureTest, sizesAreRoundedWithHalvesUp) {
  EXPECT_EQ(standin::shrunk(Image(Depth::k8, 451, 300), 2).width(), 226);
  EXPECT_EQ(standin::shrunk(Image(Depth::k8, 451, 300), 2).height(), 150);
  EXPECT_EQ(standin::shrunk(Image(Depth::k8, 451, 449), 4).width(), 113);
  EXPECT_EQ(standin::shrunk(Image(Depth::k8, 451, 449), 4).height(), 112);
  EXPECT_TRUE(standin::shrunk(Image(Depth::k8, 1, 1), 4).empty());
}

TEST(ShrinkPictureTest, aPixelIsTheMeanOfItsBlock) {
  Image image(Depth::k8, 2, 2);
  image.at<PF_Pixel>(0, 0) = {255, 10, 0, 255};
  image.at<PF_Pixel>(1, 0) = {255, 20, 0, 255};
  image.at<PF_Pixel>(0, 1) = {255, 30, 1, 255};
  image.at<PF_Pixel>(1, 1) = {255, 41, 1, 255};
  // 101 / 4 = 25.25; 2 / 4 = 0.5, rounded up
  expectPixel(standin::shrunk(image, 2).at<PF_Pixel>(0, 0), 255, 25, 1, 255);
}

TEST(ShrinkPictureTest, theRestAtTheEdgeIsItsOwnMean) {
  const Image image = rowOf({{255, 0, 0, 0}, {255, 100, 0, 0}, {255, 200, 7, 9}});
  Image twoRows(Depth::k8, 3, 2);
  for (int32_t x = 0; x < 3; ++x) {
    twoRows.at<PF_Pixel>(x, 0) = image.at<PF_Pixel>(x, 0);
    twoRows.at<PF_Pixel>(x, 1) = image.at<PF_Pixel>(x, 0);
  }
  const Image small = standin::shrunk(twoRows, 2);
  ASSERT_EQ(small.width(), 2);
  expectPixel(small.at<PF_Pixel>(0, 0), 255, 50, 0, 0);
  expectPixel(small.at<PF_Pixel>(1, 0), 255, 200, 7, 9);
}

TEST(ShrinkPictureTest, colorUnderClearPixelsDoesNotBleed) {
  Image image = rowOf({{0, 255, 255, 255}, {100, 10, 20, 30}});
  // 100 / 2 = 50; only the second pixel's colour counts
  expectPixel(standin::shrunk(image, 2).at<PF_Pixel>(0, 0), 50, 10, 20, 30);
  image = rowOf({{0, 100, 0, 0}, {0, 200, 0, 0}});
  expectPixel(standin::shrunk(image, 2).at<PF_Pixel>(0, 0), 0, 150, 0, 0);
}

TEST(ShrinkPictureTest, theDeeperPixelsAreMeansToo) {
  Image deep(Depth::k16, 2, 1);
  deep.at<PF_Pixel16>(0, 0) = {32768, 32768, 1, 0};
  deep.at<PF_Pixel16>(1, 0) = {32768, 0, 2, 0};
  const PF_Pixel16 mean = standin::shrunk(deep, 2).at<PF_Pixel16>(0, 0);
  EXPECT_EQ(mean.red, 16384);
  EXPECT_EQ(mean.green, 2);

  Image light(Depth::k32, 2, 1);
  light.at<PF_PixelFloat>(0, 0) = {1.0F, 3.0F, -1.0F, 0.0F};
  light.at<PF_PixelFloat>(1, 0) = {1.0F, 0.5F, 0.5F, 0.0F};
  const PF_PixelFloat lightMean = standin::shrunk(light, 2).at<PF_PixelFloat>(0, 0);
  EXPECT_EQ(lightMean.red, 1.75F);
  EXPECT_EQ(lightMean.green, -0.25F);
}
