// The blend modes by hand arithmetic, each oddity in a test of its own.
#include "effect/pixel/Blend.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vindrel {
namespace {

constexpr int32_t firstMode = normalBlend;
constexpr int32_t lastMode = exclusionBlend;

template <class Pixel>
Pixel blended(Pixel pixel, const Pixel& source, int32_t code) {
  blendPixel(pixel, source, code);
  return pixel;
}

/// The red channel that comes of one channel over another, both opaque.
template <class Pixel>
Channel<Pixel> opaque(int32_t code, Channel<Pixel> d, Channel<Pixel> s) {
  constexpr auto full = PixelTraits<Pixel>::fullScale;
  return blended(Pixel{full, d, d, d}, Pixel{full, s, s, s}, code).red;
}

// Normal, and the weighing of the source by its alpha.

TEST(BlendNormal, aPixelOfAlphaZeroTakesTheSourceExactlyAndStaysAtAlphaZero) {
  EXPECT_EQ((blended(Pixel8{0, 10, 20, 30}, Pixel8{128, 200, 100, 50}, normalBlend)), (Pixel8{0, 200, 100, 50}));
  EXPECT_EQ((blended(Pixel16{0, 10, 20, 30}, Pixel16{128, 200, 100, 50}, normalBlend)), (Pixel16{0, 200, 100, 50}));
  EXPECT_EQ((blended(Pixel32{0.0F, 1.0F, 2.0F, 3.0F}, Pixel32{0.5F, 0.25F, 0.5F, 4.0F}, normalBlend)),
            (Pixel32{0.0F, 0.25F, 0.5F, 4.0F}));
}

TEST(BlendNormal, anOpaqueSourceIsCopiedAndTheAlphaStays) {
  EXPECT_EQ((blended(Pixel8{77, 10, 20, 30}, Pixel8{255, 200, 100, 50}, normalBlend)), (Pixel8{77, 200, 100, 50}));
  EXPECT_EQ((blended(Pixel16{77, 10, 20, 30}, Pixel16{32768, 200, 100, 50}, normalBlend)), (Pixel16{77, 200, 100, 50}));
}

TEST(NormalOver, theOldColorWeighsWhatTheSourceLeavesOfIt) {
  // i = (255 - 128) * 255 >> 8 = 126, t = 254: (200 * 128 + 10 * 126) / 254 = 26860 / 254 = 105.7
  Pixel8 pixel{255, 10, 0, 255};
  normalOver(pixel, Pixel8{128, 200, 255, 0});
  EXPECT_EQ(pixel, (Pixel8{255, 105, 128, 126}));  // 32640 / 254 = 128.5; 32130 / 254 = 126.5
}

TEST(NormalOver, the16BitWeightIsExact) {
  // i = (32768 - 8192) * 16384 >> 15 = 12288, t = 20480: (1000 * 8192 + 3000 * 12288) / 20480 = 2200
  Pixel16 pixel{16384, 3000, 0, 32768};
  normalOver(pixel, Pixel16{8192, 1000, 32768, 0});
  EXPECT_EQ(pixel, (Pixel16{16384, 2200, 13107, 19660}));  // 32768 * 0.4 = 13107.2; 32768 * 0.6 = 19660.8
}

TEST(NormalOver, floatWeighsByPlainDivision) {
  // i = 0.5 * 1.0, t = 1.0
  Pixel32 pixel{1.0F, 0.0F, 1.0F, 3.0F};
  normalOver(pixel, Pixel32{0.5F, 1.0F, 0.5F, 1.0F});
  EXPECT_EQ(pixel, (Pixel32{1.0F, 0.5F, 0.75F, 2.0F}));
}

TEST(NormalOver, theAlphaOfThePixelIsNeverRaised) {
  Pixel16 pixel{100, 1, 2, 3};
  normalOver(pixel, Pixel16{30000, 5, 6, 7});
  EXPECT_EQ(pixel.alpha, 100);
}

TEST(NormalOver, overbrightFloatColorIsKept) {
  Pixel32 pixel{1.0F, 0.5F, 0.5F, 0.5F};
  normalOver(pixel, Pixel32{1.0F, 2.5F, -1.0F, 0.0F});
  EXPECT_EQ(pixel, (Pixel32{1.0F, 2.5F, -1.0F, 0.0F}));
}

TEST(BlendFloat, onlyAddAndMultiplyOfThePlainModesCutAnOverbrightRed) {
  const Pixel32 bright{1.0F, 2.5F, 0.0F, 0.0F};
  const Pixel32 white{1.0F, 1.0F, 1.0F, 1.0F};
  EXPECT_EQ(blended(white, bright, normalBlend).red, 2.5F);
  EXPECT_EQ(blended(bright, white, addBlend).red, 1.0F);
  EXPECT_EQ(blended(bright, white, multiplyBlend).red, 1.0F);
  EXPECT_EQ(blended(bright, white, lightenBlend).red, 2.5F);
  EXPECT_EQ(blended(bright, white, differenceBlend).red, 1.5F);
  EXPECT_EQ(blended(bright, white, subtractBlend).red, 1.5F);
}

// Add and Subtract.

TEST(BlendAdd, isCutAtFullScaleAt8Bits) {
  // (200 * 255) >> 8 = 199, and 200 + 199 = 399
  EXPECT_EQ(opaque<Pixel8>(addBlend, 200, 200), 255);
  EXPECT_EQ(opaque<Pixel8>(addBlend, 10, 200), 209);
}

TEST(BlendAdd, weakSourcesVanishAt8Bits) {
  EXPECT_EQ((blended(Pixel8{255, 7, 8, 9}, Pixel8{1, 255, 255, 255}, addBlend)), (Pixel8{255, 7, 8, 9}));
}

TEST(BlendAdd, weighsBySourceAlphaOnlyAndNotByThePixels) {
  EXPECT_EQ((blended(Pixel16{0, 100, 200, 32768}, Pixel16{16384, 100, 50, 2}, addBlend)),
            (Pixel16{0, 150, 225, 32768}));
  EXPECT_EQ((blended(Pixel32{0.0F, 0.25F, 0.5F, -1.0F}, Pixel32{0.5F, 0.5F, 2.0F, 1.0F}, addBlend)),
            (Pixel32{0.0F, 0.5F, 1.0F, -0.5F}));
}

TEST(BlendSubtract, isCutAtZero) {
  EXPECT_EQ((blended(Pixel8{255, 5, 5, 5}, Pixel8{255, 200, 200, 200}, subtractBlend)), (Pixel8{255, 0, 0, 0}));
  EXPECT_EQ(opaque<Pixel16>(subtractBlend, 5, 200), 0);
  EXPECT_EQ(opaque<Pixel32>(subtractBlend, 0.25F, 0.5F), 0.0F);
}

TEST(BlendSubtract, takesTheWeighedSourceAway) {
  // (100 * 128) >> 8 = 50
  EXPECT_EQ((blended(Pixel8{9, 200, 50, 49}, Pixel8{128, 100, 100, 100}, subtractBlend)), (Pixel8{9, 150, 0, 0}));
  EXPECT_EQ(opaque<Pixel16>(subtractBlend, 300, 200), 100);
}

// Multiply and Screen.

TEST(BlendMultiply, fullTimesFullLosesALevelAt8BitsOnly) {
  EXPECT_EQ(opaque<Pixel8>(multiplyBlend, 255, 255), 254);
  EXPECT_EQ(opaque<Pixel16>(multiplyBlend, 32768, 32768), 32768);
  EXPECT_EQ(opaque<Pixel32>(multiplyBlend, 1.0F, 1.0F), 1.0F);
}

TEST(BlendScreen, fullOverFullLosesALevelAt8BitsOnly) {
  EXPECT_EQ(opaque<Pixel8>(screenBlend, 255, 255), 254);
  EXPECT_EQ(opaque<Pixel16>(screenBlend, 32768, 32768), 32768);
  EXPECT_EQ(opaque<Pixel32>(screenBlend, 1.0F, 1.0F), 1.0F);
}

TEST(BlendScreen, ofHalvesIsThreeQuarters) {
  EXPECT_EQ(opaque<Pixel16>(screenBlend, 16384, 16384), 24576);
  EXPECT_EQ(opaque<Pixel32>(screenBlend, 0.5F, 0.5F), 0.75F);
  EXPECT_EQ(screenChannel(0.5F, 0.25F), 0.625F);
}

// Overlay, Hard Light, Soft Light.

TEST(BlendOverlay, turnsOverAt128At8Bits) {
  EXPECT_EQ(opaque<Pixel8>(overlayBlend, 127, 255), 253);  // (127 * 255) >> 7
  EXPECT_EQ(opaque<Pixel8>(overlayBlend, 128, 0), 2);      // 255 - ((127 * 255) >> 7)
}

TEST(BlendOverlay, turnsOverAt16385At16Bits) {
  EXPECT_EQ(overlayChannel<Pixel16>(16384, 32768), 32768);  // (16384 * 32768) >> 14
  EXPECT_EQ(overlayChannel<Pixel16>(16384, 0), 0);
  EXPECT_EQ(overlayChannel<Pixel16>(16385, 0), 2);  // 32768 - ((16383 * 32768) >> 14)
}

TEST(BlendOverlay, turnsOverAboveOneHalfInFloatAndIsCutAtOne) {
  EXPECT_EQ(overlayChannel<Pixel32>(0.5F, 1e-8F), 1e-8F);    // the other branch would round to 0
  EXPECT_EQ(overlayChannel<Pixel32>(0.75F, 0.25F), 0.625F);  // 1 - 0.25 * 0.75 * 2
  EXPECT_EQ(overlayChannel<Pixel32>(0.5F, 4.0F), 1.0F);
}

TEST(BlendOverlay, isCutAtOneAboveTheMiddleTooInFloat) {
  EXPECT_EQ(overlayChannel<Pixel32>(0.75F, 3.0F), 1.0F);  // 1 - 0.25 * -2 * 2 = 2
}

TEST(BlendOverlay, keepsTheLowBitsAndIsCutAfterwardsAt16Bits) {
  EXPECT_EQ(overlayChannel<Pixel16>(16384, 65535), 32768);  // (16384 * 65535) >> 14 = 65535: cut
  EXPECT_EQ(overlayChannel<Pixel16>(65535, 0), 32766);      // 32768 + 65534 = 98302, less 65536: not cut
}

TEST(BlendHardLight, turnsOverOnTheSource) {
  EXPECT_EQ(hardLightChannel<Pixel8>(255, 127), 253);
  EXPECT_EQ(hardLightChannel<Pixel8>(0, 128), 2);
  EXPECT_EQ(hardLightChannel<Pixel16>(32768, 16384), 32768);
  EXPECT_EQ(hardLightChannel<Pixel16>(0, 16385), 2);
  EXPECT_EQ(hardLightChannel<Pixel32>(1e-8F, 0.5F), 1e-8F);  // the other branch would round to 0
  EXPECT_EQ(hardLightChannel<Pixel32>(0.25F, 0.75F), 0.625F);
}

TEST(BlendHardLight, isNotCutInFloat) {
  EXPECT_EQ(hardLightChannel<Pixel32>(4.0F, 0.5F), 4.0F);
}

TEST(BlendSoftLight, aSourceOf128IsJustAboveTheMiddleAndTakesTheRootFrom32On) {
  // B = 128 / 255, so 2 B - 1 = 1 / 255 and the root branch adds (sqrt(A) - A) levels of one channel.
  for (int d = 32; d < 256; ++d) {
    const long double A = d / 255.0L;
    const auto expected = static_cast<int>(std::floor(d + (std::sqrt(A) - A)));
    ASSERT_EQ(softLightChannel<Pixel8>(static_cast<uint8_t>(d), 128), expected) << "d " << d;
  }
}

TEST(BlendSoftLight, bendsAtOneEighthAndNotAtOneQuarter) {
  // A = 0.1875 lies between the two: sqrt(0.1875) - 0.1875 = 0.24551..., times 0.5 for B = 0.75.
  EXPECT_FLOAT_EQ(softLightChannel<Pixel32>(0.1875F, 0.75F), 0.31025635F);
  // A = 0.0625 lies below both: (0.0625 - 0.00390625) * (3 - 0.5) = 0.146484375, times 0.5.
  EXPECT_EQ(softLightChannel<Pixel32>(0.0625F, 0.75F), 0.1357421875F);
}

TEST(BlendSoftLight, atExactlyOneEighthTheRootIsTaken) {
  // sqrt(0.125) = 0.353553...; the other branch would give 0.125 + 0.109375 * 2 = 0.34375.
  EXPECT_FLOAT_EQ(softLightChannel<Pixel32>(0.125F, 1.0F), 0.35355339F);
  EXPECT_EQ(softLightChannel<Pixel16>(4096, 32768), 11585);  // 0.353553 * 32768 = 11585.2
}

TEST(BlendSoftLight, darkensBelowTheMiddle) {
  // T = 0.5 - 0.25, r = 0.25 * (2 * 0.25 - 1) + 0.5
  EXPECT_EQ(softLightChannel<Pixel32>(0.5F, 0.25F), 0.375F);
  EXPECT_EQ(softLightChannel<Pixel16>(16384, 8192), 12288);
}

TEST(BlendSoftLight, leavesBlackAndWhiteAloneAtEveryDepth) {
  for (const uint8_t s : {uint8_t{0}, uint8_t{60}, uint8_t{128}, uint8_t{200}, uint8_t{255}}) {
    EXPECT_EQ(softLightChannel<Pixel8>(0, s), 0);
    EXPECT_EQ(softLightChannel<Pixel8>(255, s), 255);
  }
  EXPECT_EQ(softLightChannel<Pixel16>(32768, 20000), 32768);
  EXPECT_EQ(softLightChannel<Pixel32>(1.0F, 0.75F), 1.0F);
}

TEST(BlendSoftLight, isCutAtFullScale) {
  // A = 2 at s = full: T = sqrt(2) - 2, r = sqrt(2): above full scale.
  EXPECT_EQ(softLightChannel<Pixel32>(2.0F, 1.0F), 1.0F);
  EXPECT_EQ(softLightChannel<Pixel16>(65535, 32768), 32768);
}

// Darken, Lighten, Difference, Exclusion.

TEST(BlendDarken, takesTheSmallerOfEachChannel) {
  EXPECT_EQ((blended(Pixel8{255, 10, 200, 30}, Pixel8{255, 20, 100, 30}, darkenBlend)), (Pixel8{255, 10, 100, 30}));
}

TEST(BlendLighten, takesTheLargerOfEachChannel) {
  EXPECT_EQ((blended(Pixel8{255, 10, 200, 30}, Pixel8{255, 20, 100, 30}, lightenBlend)), (Pixel8{255, 20, 200, 30}));
}

TEST(BlendDifference, isTheDistanceOfTheChannels) {
  EXPECT_EQ(opaque<Pixel8>(differenceBlend, 10, 250), 240);
  EXPECT_EQ(opaque<Pixel8>(differenceBlend, 250, 10), 240);
  EXPECT_EQ(opaque<Pixel16>(differenceBlend, 0, 32768), 32768);
  EXPECT_EQ(opaque<Pixel32>(differenceBlend, 0.25F, 1.0F), 0.75F);
}

TEST(BlendExclusion, ofFullAndZeroIsFullLessOneLevelAt8Bits) {
  EXPECT_EQ(opaque<Pixel8>(exclusionBlend, 255, 0), 254);  // 65025 >> 8
  EXPECT_EQ(opaque<Pixel8>(exclusionBlend, 255, 255), 0);
  EXPECT_EQ(opaque<Pixel16>(exclusionBlend, 32768, 0), 32768);
  EXPECT_EQ(opaque<Pixel32>(exclusionBlend, 0.75F, 0.5F), 0.5F);  // 0.25 * 0.5 + 0.5 * 0.75
}

// What holds for all modes.

TEST(BlendAll, aSourceOfAlphaZeroLeavesThePixelWholeAtTheIntegerDepths) {
  const Pixel8 pixel8{12, 34, 56, 78};
  const Pixel16 pixel16{1200, 3400, 5600, 7800};
  for (int32_t code = firstMode; code <= lastMode; ++code) {
    EXPECT_EQ(blended(pixel8, Pixel8{0, 250, 128, 3}, code), pixel8) << "code " << code;
    EXPECT_EQ(blended(pixel16, Pixel16{0, 32768, 128, 3}, code), pixel16) << "code " << code;
  }
}

TEST(BlendAll, aSourceOfAlphaZeroLeavesAPixelOfAlphaZeroWholeToo) {
  // Neither of the two has a weight here, so that mixing would divide by zero.
  for (int32_t code = firstMode; code <= lastMode; ++code) {
    EXPECT_EQ((blended(Pixel8{0, 34, 56, 78}, Pixel8{0, 250, 128, 3}, code)), (Pixel8{0, 34, 56, 78}));
    EXPECT_EQ((blended(Pixel16{0, 34, 56, 78}, Pixel16{0, 250, 128, 3}, code)), (Pixel16{0, 34, 56, 78}));
  }
}

TEST(BlendAll, theAlphaOfThePixelNeverChanges) {
  for (int32_t code = firstMode; code <= lastMode; ++code) {
    EXPECT_EQ(blended(Pixel8{12, 34, 56, 78}, Pixel8{99, 250, 128, 3}, code).alpha, 12) << "code " << code;
    EXPECT_EQ(blended(Pixel16{12, 34, 56, 78}, Pixel16{99, 250, 128, 3}, code).alpha, 12) << "code " << code;
    EXPECT_EQ(blended(Pixel32{0.25F, 1.0F, 0.5F, 0.0F}, Pixel32{0.5F, 1.0F, 1.0F, 1.0F}, code).alpha, 0.25F)
        << "code " << code;
  }
}

TEST(BlendAll, aCodeOutsideTheTwelveReplacesThePixelAlphaIncluded) {
  for (const int32_t code : {-1, 0, 13, 1000}) {
    EXPECT_EQ((blended(Pixel8{255, 1, 2, 3}, Pixel8{9, 8, 7, 6}, code)), (Pixel8{9, 8, 7, 6})) << "code " << code;
    EXPECT_EQ((blended(Pixel32{1.0F, 1.0F, 1.0F, 1.0F}, Pixel32{0.5F, 2.0F, 3.0F, 4.0F}, code)),
              (Pixel32{0.5F, 2.0F, 3.0F, 4.0F}))
        << "code " << code;
  }
}

TEST(BlendAll, theOldColorIsWeighedAgainstTheResultOfTheMode) {
  // Difference 10 and 250 is 240; i = (127 * 255) >> 8 = 126, t = 254: (240 * 128 + 10 * 126) / 254 = 125.9
  EXPECT_EQ((blended(Pixel8{255, 10, 10, 10}, Pixel8{128, 250, 250, 250}, differenceBlend).red), 125);
}

TEST(BlendFloat, everyStepIsRoundedToSinglePrecision) {
  // 1 - 1e-8 is 1 in single precision, so nothing is left of two weak channels; in double 2e-8 would be.
  EXPECT_EQ(screenChannel(1e-8F, 1e-8F), 0.0F);
  // (1 + 2^-12) squared loses its 2^-24 before it is taken away.
  const float a = 1.0F + std::ldexp(1.0F, -12);
  const float d = 1.0F + std::ldexp(1.0F, -11) + std::ldexp(1.0F, -23);
  EXPECT_EQ((blended(Pixel32{1.0F, d, d, d}, Pixel32{a, a, a, a}, subtractBlend).red), std::ldexp(1.0F, -23));
}

TEST(BlendFloat, whatIsNotANumberStaysInItsChannel) {
  const float none = std::numeric_limits<float>::quiet_NaN();
  for (int32_t code = firstMode; code <= lastMode; ++code) {
    const Pixel32 result = blended(Pixel32{1.0F, 0.5F, 0.5F, 0.5F}, Pixel32{0.5F, none, 0.25F, 0.25F}, code);
    EXPECT_EQ(result.green, result.blue) << "code " << code;
    EXPECT_TRUE(std::isfinite(result.green)) << "code " << code;
  }
}

TEST(Blend16, channelsBeyondFullScaleWrapHarmlessly) {
  // A layer may hold more than 32768. 65535 squared is 0xFFFE0001, a negative 32-bit integer: -131071 >> 15 = -4.
  EXPECT_EQ(opaque<Pixel16>(multiplyBlend, 65535, 65535), 65532);
  // (-32767 * 65535) twice is 196606 modulo 2^32: 196606 >> 15 = 5.
  EXPECT_EQ(opaque<Pixel16>(exclusionBlend, 65535, 65535), 5);
  // 40000 squared is 1600000000, >> 15 = 48828: cut.
  EXPECT_EQ(opaque<Pixel16>(multiplyBlend, 40000, 40000), 32768);
  // 2^30 - 32767^2 = 65535, >> 15 = 1
  EXPECT_EQ(opaque<Pixel16>(screenBlend, 65535, 65535), 1);
  // Alpha beyond full scale: i = (-32767 * 65535) >> 15 = -65534, t = 1; 100 * 65535 - 7 * 65534 = 6094762,
  // whose low 16 bits are 6094762 - 92 * 65536 = 65450.
  Pixel16 pixel{65535, 7, 7, 7};
  normalOver(pixel, Pixel16{65535, 100, 100, 100});
  EXPECT_EQ(pixel, (Pixel16{65535, 65450, 65450, 65450}));
}

}  // namespace
}  // namespace vindrel
