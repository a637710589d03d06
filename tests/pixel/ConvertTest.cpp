// Channels to the unit range and back, and control colours at each depth.
#include "effect/pixel/Convert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vindrel {
namespace {

TEST(Convert, thirtyThreeComesBackFromTheUnitRangeAsThirtyTwo) {
  EXPECT_EQ(toUnit<Pixel8>(33), 33 * 0.00392156862745098);
  EXPECT_EQ(fromUnit<Pixel8>(toUnit<Pixel8>(33)), 32);
}

TEST(Convert, twentyFourOf256LevelsLoseOneAndThirtyThreeIsTheFirst) {
  int lost = 0;
  int first = -1;
  for (int level = 0; level < 256; ++level) {
    const int back = fromUnit<Pixel8>(toUnit<Pixel8>(static_cast<uint8_t>(level)));
    if (back == level) continue;
    EXPECT_EQ(back, level - 1) << "level " << level;
    if (first < 0) first = level;
    ++lost;
  }
  EXPECT_EQ(lost, 24);
  EXPECT_EQ(first, 33);
}

TEST(Convert, fullScaleStaysFullScaleThroughTheUnitRangeAt8Bits) {
  EXPECT_EQ(fromUnit<Pixel8>(toUnit<Pixel8>(255)), 255);
}

TEST(Convert, no16BitLevelChangesThroughTheUnitRange) {
  for (int level = 0; level <= 32768; ++level) {
    ASSERT_EQ(fromUnit<Pixel16>(toUnit<Pixel16>(static_cast<uint16_t>(level))), level);
  }
}

TEST(Convert, whiteIs32768InAllChannelsAt16Bits) {
  EXPECT_EQ((pixelFrom8<Pixel16>(255, 255, 255, 255)), (Pixel16{32768, 32768, 32768, 32768}));
}

TEST(Convert, unitValuesAreTruncatedAndNotRounded) {
  EXPECT_EQ(fromUnit<Pixel8>(0.999), 254);       // 254.745
  EXPECT_EQ(fromUnit<Pixel16>(0.99999), 32767);  // 32767.67
  EXPECT_EQ(fromUnit<Pixel8>(-0.003), 0);        // -0.765 goes toward zero
}

TEST(Convert, unitValuesOutOfRangeKeepTheirLowBits) {
  EXPECT_EQ(fromUnit<Pixel8>(2.0), 254);                // 510 - 256
  EXPECT_EQ(fromUnit<Pixel8>(-0.01), 254);              // -2.55 -> -2
  EXPECT_EQ(fromUnit<Pixel16>(2.5), 16384);             // 81920 - 65536
  EXPECT_EQ(fromUnit<Pixel16>(-1.0 / 32768.0), 65535);  // -1
  EXPECT_EQ(fromUnit<Pixel8>(1e18), 0);                 // beyond 32 bits: the smallest integer, low bits 0
  EXPECT_EQ(fromUnit<Pixel16>(std::nan("")), 0);
  EXPECT_EQ(fromUnit<Pixel8>(std::numeric_limits<double>::infinity()), 0);
}

TEST(Convert, floatChannelsGoThroughAsTheyAre) {
  EXPECT_EQ(toUnit<Pixel32>(2.5F), 2.5);
  EXPECT_EQ(toUnit<Pixel32>(-0.25F), -0.25);
  EXPECT_EQ(fromUnit<Pixel32>(2.5), 2.5F);
  EXPECT_EQ(fromUnit<Pixel32>(-7.0), -7.0F);
  EXPECT_EQ(fromUnit<Pixel32>(0.1), 0.1F);
}

TEST(Convert, everyByteOfAControlIsItselfAt8Bits) {
  for (int byte = 0; byte < 256; ++byte) {
    ASSERT_EQ(channelFrom8<Pixel8>(static_cast<uint8_t>(byte)), byte);
  }
}

TEST(Convert, bytesOfAControlAreTruncatedTo16Bits) {
  EXPECT_EQ(channelFrom8<Pixel16>(0), 0);
  EXPECT_EQ(channelFrom8<Pixel16>(1), 128);      // 128.50
  EXPECT_EQ(channelFrom8<Pixel16>(128), 16448);  // 16448.25
  EXPECT_EQ(channelFrom8<Pixel16>(254), 32639);  // 32639.49
  EXPECT_EQ(channelFrom8<Pixel16>(255), 32768);
}

TEST(Convert, bytesOfAControlAreDividedInDoubleForFloat) {
  EXPECT_EQ(channelFrom8<Pixel32>(0), 0.0F);
  EXPECT_EQ(channelFrom8<Pixel32>(51), 0.2F);
  EXPECT_EQ(channelFrom8<Pixel32>(102), 0.4F);
  EXPECT_EQ(channelFrom8<Pixel32>(255), 1.0F);
}

TEST(Convert, theFourBytesKeepTheirPlaces) {
  EXPECT_EQ((pixelFrom8<Pixel8>(1, 2, 3, 4)), (Pixel8{1, 2, 3, 4}));
  EXPECT_EQ((pixelFrom8<Pixel32>(0, 51, 102, 255)), (Pixel32{0.0F, 0.2F, 0.4F, 1.0F}));
}

}  // namespace
}  // namespace vindrel
