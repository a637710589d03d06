// Colours to hue, lightness and saturation and back, against the other usual way of telling them; and to YIQ.
#include "host/ConvertColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using standin::Hls;
using standin::Yiq;

struct Rgb {
  double red, green, blue;
};

/// By chroma: the colour is a grey of lightness - chroma / 2, with chroma and a part of it on two channels, by the
/// sixth of the circle.
Rgb plainRgb(const Hls& hls) {
  const double chroma = (1.0 - std::abs(2.0 * hls.lightness - 1.0)) * hls.saturation;
  const double sixth = hls.hue * 6.0;
  const double part = chroma * (1.0 - std::abs(std::fmod(sixth, 2.0) - 1.0));
  const double grey = hls.lightness - chroma / 2.0;
  const double high = grey + chroma;
  const double between = grey + part;
  switch (static_cast<int>(sixth)) {
    case 0:
      return {high, between, grey};
    case 1:
      return {between, high, grey};
    case 2:
      return {grey, high, between};
    case 3:
      return {grey, between, high};
    case 4:
      return {between, grey, high};
    default:
      return {high, grey, between};
  }
}

class ColoursOfHue : public testing::Test {
 protected:
  Hls next() {
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    // Nearly grey and nearly black or white colours have a hue that rounding decides.
    std::uniform_real_distribution<double> inner(0.1, 0.9);
    return {unit(random_), inner(random_), inner(random_)};
  }
  std::mt19937 random_{7};
};

TEST_F(ColoursOfHue, becomeThePlainColour) {
  for (int32_t i = 0; i < 3000; ++i) {
    const Hls hls = next();
    SCOPED_TRACE(testing::Message() << "colour " << i << ": " << hls.hue << ' ' << hls.lightness << ' '
                                    << hls.saturation);
    const Rgb rgb = plainRgb(hls);
    PF_PixelFloat pixel{0.25F, 9.0F, 9.0F, 9.0F};
    standin::setHls(hls, pixel);
    ASSERT_EQ(pixel.alpha, 0.25F);
    ASSERT_NEAR(pixel.red, rgb.red, 1e-6);
    ASSERT_NEAR(pixel.green, rgb.green, 1e-6);
    ASSERT_NEAR(pixel.blue, rgb.blue, 1e-6);
    PF_Pixel bytes{7, 0, 0, 0};
    standin::setHls(hls, bytes);
    ASSERT_EQ(int{bytes.alpha}, 7);
    ASSERT_NEAR(bytes.red, rgb.red * 255.0, 0.5 + 1e-6);
    ASSERT_NEAR(bytes.green, rgb.green * 255.0, 0.5 + 1e-6);
    ASSERT_NEAR(bytes.blue, rgb.blue * 255.0, 0.5 + 1e-6);
    PF_Pixel16 words{7, 0, 0, 0};
    standin::setHls(hls, words);
    ASSERT_NEAR(words.red, rgb.red * 32768.0, 0.5 + 1e-6);
    ASSERT_NEAR(words.green, rgb.green * 32768.0, 0.5 + 1e-6);
    ASSERT_NEAR(words.blue, rgb.blue * 32768.0, 0.5 + 1e-6);
  }
}

TEST_F(ColoursOfHue, areFoundAgainInThePlainColour) {
  for (int32_t i = 0; i < 3000; ++i) {
    const Hls hls = next();
    const Rgb rgb = plainRgb(hls);
    const Hls found = standin::hlsOf(
        PF_PixelFloat{1.0F, static_cast<float>(rgb.red), static_cast<float>(rgb.green), static_cast<float>(rgb.blue)});
    SCOPED_TRACE(testing::Message() << "colour " << i << ": " << hls.hue << ' ' << hls.lightness << ' '
                                    << hls.saturation);
    const double turn = std::abs(found.hue - hls.hue);
    ASSERT_LT(std::min(turn, 1.0 - turn), 1e-4);
    ASSERT_NEAR(found.lightness, hls.lightness, 1e-6);
    ASSERT_NEAR(found.saturation, hls.saturation, 1e-5);
  }
}

TEST_F(ColoursOfHue, ofAGreyAreItsLightnessAlone) {
  const Hls grey = standin::hlsOf(PF_Pixel16{32768, 8192, 8192, 8192});
  EXPECT_EQ(grey.hue, 0.0);
  EXPECT_EQ(grey.lightness, 0.25);
  EXPECT_EQ(grey.saturation, 0.0);
}

TEST(ColoursOfYiq, areTheSumsThatAreTold) {
  // 0.299 / 4 + 0.587 / 2 + 0.114, 0.5959 / 4 - 0.2746 / 2 - 0.3213, 0.2115 / 4 - 0.5227 / 2 + 0.3112
  const Yiq yiq = standin::yiqOf(PF_PixelFloat{1.0F, 0.25F, 0.5F, 1.0F});
  EXPECT_NEAR(yiq.y, 0.48225, 1e-12);
  EXPECT_NEAR(yiq.i, -0.309625, 1e-12);
  EXPECT_NEAR(yiq.q, 0.102725, 1e-12);
  PF_PixelFloat pixel{0.25F, 9.0F, 9.0F, 9.0F};
  standin::setYiq(Yiq{0.5, 0.1, 0.2}, pixel);
  EXPECT_EQ(pixel.alpha, 0.25F);
  EXPECT_NEAR(pixel.red, 0.7194, 1e-6);    // 0.5 + 0.0956 + 0.1238
  EXPECT_NEAR(pixel.green, 0.3434, 1e-6);  // 0.5 - 0.0272 - 0.1294
  EXPECT_NEAR(pixel.blue, 0.73, 1e-6);     // 0.5 - 0.1106 + 0.3406
}

TEST(ColoursOfYiq, areHeldToTheScaleOfWholeNumbers) {
  PF_Pixel bytes{7, 1, 1, 1};
  standin::setYiq(Yiq{1.0, 0.0, 1.0}, bytes);
  EXPECT_EQ(int{bytes.red}, 255);   // 1.619
  EXPECT_EQ(int{bytes.green}, 90);  // 0.353 * 255 = 90.015
  EXPECT_EQ(int{bytes.blue}, 255);  // 2.703
  PF_Pixel16 words{7, 1, 1, 1};
  standin::setYiq(Yiq{0.25, 1.0, 0.0}, words);
  EXPECT_EQ(int{words.red}, 32768);  // 1.206
  EXPECT_EQ(int{words.green}, 0);    // below 0
  EXPECT_EQ(int{words.blue}, 0);
}

}  // namespace
