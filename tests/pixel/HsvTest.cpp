// Colours as hue, saturation and value, by hand and through a plain twin.
#include "effect/pixel/Hsv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "effect/pixel/Convert.h"

namespace vindrel {
namespace {

constexpr double sixth = 0.166666666666667;  // as the hue is scaled, not the true sixth

TEST(RgbToHsv, theSixCornersOfTheColorWheelHaveTheirHues) {
  const auto hueOf = [](uint8_t red, uint8_t green, uint8_t blue) { return rgbToHsv(Pixel8{0, red, green, blue}).hue; };
  EXPECT_EQ(hueOf(255, 0, 0), 0.0);
  EXPECT_EQ(hueOf(255, 255, 0), 1.0 * sixth);
  EXPECT_EQ(hueOf(0, 255, 0), 2.0 * sixth);
  EXPECT_EQ(hueOf(0, 255, 255), 3.0 * sixth);
  EXPECT_EQ(hueOf(0, 0, 255), 4.0 * sixth);
  EXPECT_EQ(hueOf(255, 0, 255), -1.0 * sixth + 1.0);
}

TEST(RgbToHsv, theScaleOfTheHueIsNotQuiteOneSixth) {
  EXPECT_NE(rgbToHsv(Pixel32{0.0F, 0.0F, 1.0F, 0.0F}).hue, 2.0 / 6.0);
  EXPECT_EQ(rgbToHsv(Pixel32{0.0F, 0.0F, 1.0F, 0.0F}).hue, 0.333333333333334);
}

TEST(RgbToHsv, aHueBelowZeroTurnsOnceUp) {
  // Red is largest: (0.25 - 0.5) / (1.0 - 0.25) = -1/3 of a sector.
  const Hsv hsv = rgbToHsv(Pixel32{1.0F, 1.0F, 0.25F, 0.5F});
  EXPECT_EQ(hsv.hue, -0.25 / 0.75 * sixth + 1.0);
  EXPECT_EQ(hsv.saturation, 0.75);
  EXPECT_EQ(hsv.value, 1.0);
}

TEST(RgbToHsv, whereGreenAndBlueAreLargestTheirOffsetsCount) {
  EXPECT_EQ(rgbToHsv(Pixel32{1.0F, 0.25F, 1.0F, 0.5F}).hue, (0.25 / 0.75 + 2.0) * sixth);
  EXPECT_EQ(rgbToHsv(Pixel32{1.0F, 0.5F, 0.25F, 1.0F}).hue, (0.25 / 0.75 + 4.0) * sixth);
}

TEST(RgbToHsv, aGreyHasNoHueAndNoSaturation) {
  const Hsv hsv = rgbToHsv(Pixel8{9, 102, 102, 102});
  EXPECT_EQ(hsv.hue, 0.0);
  EXPECT_EQ(hsv.saturation, 0.0);
  EXPECT_EQ(hsv.value, 102 * 0.00392156862745098);
}

TEST(RgbToHsv, blackHasNoSaturation) {
  const Hsv hsv = rgbToHsv(Pixel16{32768, 0, 0, 0});
  EXPECT_EQ(hsv.hue, 0.0);
  EXPECT_EQ(hsv.saturation, 0.0);
  EXPECT_EQ(hsv.value, 0.0);
}

TEST(RgbToHsv, alphaPlaysNoPart) {
  const Hsv clear = rgbToHsv(Pixel16{0, 100, 200, 300});
  const Hsv opaque = rgbToHsv(Pixel16{32768, 100, 200, 300});
  EXPECT_EQ(clear.hue, opaque.hue);
  EXPECT_EQ(clear.saturation, opaque.saturation);
  EXPECT_EQ(clear.value, opaque.value);
}

TEST(RgbToHsv, overbrightFloatChannelsAreNotClamped) {
  const Hsv hsv = rgbToHsv(Pixel32{1.0F, 4.0F, 1.0F, 1.0F});
  EXPECT_EQ(hsv.saturation, 0.75);
  EXPECT_EQ(hsv.value, 4.0);
}

TEST(RgbToHsv, floatChannelsAreWidenedBeforeTheArithmetic) {
  // In single precision 1 - 0.1F would be rounded before the division.
  const double small = static_cast<double>(0.1F);
  EXPECT_EQ(rgbToHsv(Pixel32{1.0F, 1.0F, 0.1F, 0.1F}).saturation, 1.0 - small);
}

TEST(HsvToRgb, theSixSectorsChooseTheirChannels) {
  // Saturation 0.5 and value 1.0, a quarter into each sector: low 0.5, falling 0.875, rising 0.625.
  const auto at = [](double sector) { return hsvToRgb<Pixel32>({(sector + 0.25) / 6.0, 0.5, 1.0}); };
  const auto near = [](const Pixel32& pixel, float red, float green, float blue) {
    EXPECT_FLOAT_EQ(pixel.red, red);
    EXPECT_FLOAT_EQ(pixel.green, green);
    EXPECT_FLOAT_EQ(pixel.blue, blue);
  };
  near(at(0), 1.0F, 0.625F, 0.5F);
  near(at(1), 0.875F, 1.0F, 0.5F);
  near(at(2), 0.5F, 1.0F, 0.625F);
  near(at(3), 0.5F, 0.875F, 1.0F);
  near(at(4), 0.625F, 0.5F, 1.0F);
  near(at(5), 1.0F, 0.5F, 0.875F);
}

TEST(HsvToRgb, wholeTurnsMakeNoDifference) {
  const Pixel16 expected = hsvToRgb<Pixel16>({0.375, 0.5, 0.75});
  for (const double turns : {-3.0, -2.0, -1.0, 1.0, 2.0, 17.0}) {
    EXPECT_EQ(hsvToRgb<Pixel16>({0.375 + turns, 0.5, 0.75}), expected) << turns << " turns";
  }
}

TEST(HsvToRgb, exactlyMinusOneTurnIsRed) {
  EXPECT_EQ(hsvToRgb<Pixel8>({-1.0, 1.0, 1.0}), (Pixel8{255, 255, 0, 0}));
  EXPECT_EQ(hsvToRgb<Pixel8>({1.0, 1.0, 1.0}), (Pixel8{255, 255, 0, 0}));
}

TEST(HsvToRgb, aHueJustBelowZeroIsRedAndNotASeventhSector) {
  EXPECT_EQ(hsvToRgb<Pixel8>({-1e-20, 1.0, 1.0}), (Pixel8{255, 255, 0, 0}));
}

TEST(HsvToRgb, channelsAreTruncatedAtTheIntegerDepths) {
  EXPECT_EQ(hsvToRgb<Pixel8>({0.0, 0.0, 0.999}), (Pixel8{255, 254, 254, 254}));
  EXPECT_EQ(hsvToRgb<Pixel16>({0.0, 0.0, 0.99999}), (Pixel16{32768, 32767, 32767, 32767}));
}

TEST(HsvToRgb, alphaIsFullScaleAtEveryDepth) {
  EXPECT_EQ(hsvToRgb<Pixel8>({0.2, 0.4, 0.6}).alpha, 255);
  EXPECT_EQ(hsvToRgb<Pixel16>({0.2, 0.4, 0.6}).alpha, 32768);
  EXPECT_EQ(hsvToRgb<Pixel32>({0.2, 0.4, 0.6}).alpha, 1.0F);
}

TEST(HsvToRgb, aHueThatIsNoNumberOrFarTooLargeIsBlack) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double hue : {std::nan(""), infinity, -infinity, 1e300, -1e300}) {
    EXPECT_EQ(hsvToRgb<Pixel8>({hue, 0.5, 1.0}), (Pixel8{255, 0, 0, 0})) << hue;
    EXPECT_EQ(hsvToRgb<Pixel32>({hue, 0.5, 1.0}), (Pixel32{1.0F, 0.0F, 0.0F, 0.0F})) << hue;
  }
}

TEST(HsvRoundTrip, aGreyCanLoseALevelAt8BitsAndNeverGainsOne) {
  int lost = 0;
  for (int level = 0; level < 256; ++level) {
    const auto channel = static_cast<uint8_t>(level);
    const Pixel8 back = hsvToRgb<Pixel8>(rgbToHsv(Pixel8{255, channel, channel, channel}));
    EXPECT_EQ(back.red, back.green);
    EXPECT_EQ(back.red, back.blue);
    ASSERT_TRUE(back.red == level || back.red == level - 1) << "level " << level;
    lost += back.red == level ? 0 : 1;
  }
  EXPECT_EQ(lost, 24);
  EXPECT_EQ(hsvToRgb<Pixel8>(rgbToHsv(Pixel8{255, 33, 33, 33})), (Pixel8{255, 32, 32, 32}));
  EXPECT_EQ(hsvToRgb<Pixel8>(rgbToHsv(Pixel8{255, 32, 32, 32})), (Pixel8{255, 32, 32, 32}));
}

TEST(HsvRoundTrip, every16BitGreyIsKept) {
  for (int level = 0; level <= 32768; ++level) {
    const auto channel = static_cast<uint16_t>(level);
    const Pixel16 grey{32768, channel, channel, channel};
    ASSERT_EQ(hsvToRgb<Pixel16>(rgbToHsv(grey)), grey);
  }
}

TEST(HsvRoundTrip, primariesComeBackWhole) {
  for (const Pixel8 pixel : {Pixel8{255, 255, 0, 0}, Pixel8{255, 0, 255, 0}, Pixel8{255, 0, 0, 255}}) {
    EXPECT_EQ(hsvToRgb<Pixel8>(rgbToHsv(pixel)), pixel);
  }
}

TEST(HsvRoundTrip, theScaleOfTheHueCostsMixedPrimariesALevel) {
  // Yellow's hue is 0.166666666666667, six of which are 1 + 2e-15: just past the corner, so red falls below 1.
  EXPECT_EQ(hsvToRgb<Pixel8>(rgbToHsv(Pixel8{255, 255, 255, 0})), (Pixel8{255, 254, 255, 0}));
  EXPECT_EQ(hsvToRgb<Pixel8>(rgbToHsv(Pixel8{255, 0, 255, 255})), (Pixel8{255, 0, 254, 255}));
  EXPECT_EQ(hsvToRgb<Pixel8>(rgbToHsv(Pixel8{255, 255, 0, 255})), (Pixel8{255, 254, 0, 255}));
  EXPECT_EQ(hsvToRgb<Pixel16>(rgbToHsv(Pixel16{32768, 32768, 32768, 0})), (Pixel16{32768, 32767, 32768, 0}));
}

TEST(HsvRoundTrip, randomColorsNeverMoveByMoreThanALevel) {
  constexpr unsigned seed = 20417;
  std::mt19937 random(seed);
  for (int round = 0; round < 20000; ++round) {
    const Pixel8 pixel{255, static_cast<uint8_t>(random() & 255U), static_cast<uint8_t>(random() & 255U),
                       static_cast<uint8_t>(random() & 255U)};
    const Pixel8 back = hsvToRgb<Pixel8>(rgbToHsv(pixel));
    ASSERT_TRUE(std::abs(back.red - pixel.red) <= 1 && std::abs(back.green - pixel.green) <= 1 &&
                std::abs(back.blue - pixel.blue) <= 1)
        << "seed " << seed << ", colour " << int{pixel.red} << ' ' << int{pixel.green} << ' ' << int{pixel.blue};
  }
}

/// There and back at 8 bits in plain steps. Levels hang on last bits: the low channel is (1 - (V - m) / V) * V, which
/// comes out at m or just below it.
Pixel8 twinThereAndBack(const Pixel8& pixel) {
  const double r = pixel.red * 0.00392156862745098;
  const double g = pixel.green * 0.00392156862745098;
  const double b = pixel.blue * 0.00392156862745098;
  const double V = std::fmax(r, std::fmax(g, b));
  const double m = std::fmin(r, std::fmin(g, b));
  double S = 0.0;
  if (V != 0.0) S = (V - m) / V;
  double H = 0.0;
  if (S != 0.0) {
    if (V == r) {
      H = (g - b) / (V - m);
    } else if (V == g) {
      H = (b - r) / (V - m) + 2.0;
    } else {
      H = (r - g) / (V - m) + 4.0;
    }
    H = H * sixth;
    if (H < 0.0) H = H + 1.0;
  }
  const double sectors = H * 6.0;  // below six: nothing to wrap
  const double f = sectors - std::floor(sectors);
  const double p = (1.0 - S) * V;
  const double q = (1.0 - f * S) * V;
  const double t = (1.0 - (1.0 - f) * S) * V;
  const double wheel[6][3] = {{V, t, p}, {q, V, p}, {p, V, t}, {p, q, V}, {t, p, V}, {V, p, q}};
  const double* rgb = wheel[static_cast<int>(sectors)];
  return {255, static_cast<uint8_t>(rgb[0] * 255.0), static_cast<uint8_t>(rgb[1] * 255.0),
          static_cast<uint8_t>(rgb[2] * 255.0)};
}

TEST(HsvRoundTrip, everyLastBitIsThatOfThePlainSteps) {
  for (int red = 0; red < 256; red += 3) {
    for (int green = 0; green < 256; green += 3) {
      for (int blue = 0; blue < 256; ++blue) {
        const Pixel8 pixel{255, static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue)};
        ASSERT_EQ(hsvToRgb<Pixel8>(rgbToHsv(pixel)), twinThereAndBack(pixel)) << red << ' ' << green << ' ' << blue;
      }
    }
  }
}

/// The same conversion by the textbook's other formula: channel(k) = V - V * S * clamp(min(k, 4 - k), 0, 1).
double twinChannel(const Hsv& hsv, long double n) {
  const auto hue = static_cast<long double>(hsv.hue);
  const auto saturation = static_cast<long double>(hsv.saturation);
  const auto value = static_cast<long double>(hsv.value);
  const long double k = std::fmod(n + (hue - std::floor(hue)) * 6.0L, 6.0L);
  const long double ramp = std::fmax(0.0L, std::fmin(1.0L, std::fmin(k, 4.0L - k)));
  return static_cast<double>(value - value * saturation * ramp);
}

TEST(HsvToRgb, agreesWithAnotherFormulaOverTheWholeWheel) {
  constexpr unsigned seed = 7031;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> hues(-5.0, 5.0);
  std::uniform_real_distribution<double> units(0.0, 1.0);
  for (int round = 0; round < 20000; ++round) {
    const Hsv hsv{hues(random), units(random), units(random)};
    const Pixel32 pixel = hsvToRgb<Pixel32>(hsv);
    const auto near = [](float a, double b) { return std::abs(static_cast<double>(a) - b) < 1e-6; };
    ASSERT_TRUE(near(pixel.red, twinChannel(hsv, 5.0L)) && near(pixel.green, twinChannel(hsv, 3.0L)) &&
                near(pixel.blue, twinChannel(hsv, 1.0L)))
        << "seed " << seed << ", hue " << hsv.hue << ", saturation " << hsv.saturation << ", value " << hsv.value;
  }
}

}  // namespace
}  // namespace vindrel
