#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <type_traits>

#include "PlainTransfer.h"
#include "host/FillWorld.h"
#include "host/Image.h"
#include "host/TransferRect.h"

namespace {

using standin::Depth;
using standin::Image;
using standin::TransferMask;

PF_CompositeMode modeOf(PF_TransferMode xfer, int opacity = 255, int opacitySu = 32768) {
  return {xfer, 0, static_cast<A_u_char>(opacity), 0, static_cast<A_u_short>(opacitySu)};
}

TransferMask maskOf(const Image& image, int32_t h = 0, int32_t v = 0, bool inverted = false) {
  return {image.view(), {h, v}, inverted, false};
}

Image onePixel(PF_Pixel pixel) {
  Image image(Depth::k8, 1, 1);
  image.at<PF_Pixel>(0, 0) = pixel;
  return image;
}

void expectPixel(const PF_Pixel& got, const PF_Pixel& expected, const std::string& where = "") {
  EXPECT_EQ(int{got.alpha}, int{expected.alpha}) << where;
  EXPECT_EQ(int{got.red}, int{expected.red}) << where;
  EXPECT_EQ(int{got.green}, int{expected.green}) << where;
  EXPECT_EQ(int{got.blue}, int{expected.blue}) << where;
}

PF_Pixel transferred(PF_Pixel source, PF_Pixel target, const PF_CompositeMode& mode,
                     const std::optional<TransferMask>& mask = std::nullopt) {
  const Image from = onePixel(source);
  Image to = onePixel(target);
  EXPECT_EQ(standin::transferRect(Depth::k8, nullptr, from.view(), mode, mask, 0, 0, to.view()), PF_Err_NONE);
  return to.at<PF_Pixel>(0, 0);
}

// The slow twin: fractions of full scale, each result to nearest with halves up, one division at a time.
struct Twin {
  uint64_t full;
  uint64_t opacityFull;

  static uint64_t nearest(uint64_t value, uint64_t by) {
    const uint64_t whole = value / by;
    return 2 * (value - whole * by) >= by ? whole + 1 : whole;
  }
  struct Values {
    uint64_t alpha;
    uint64_t color;
  };
  Values inFront(uint64_t s, uint64_t c, uint64_t targetAlpha, uint64_t targetColor, uint64_t opacity,
                 uint64_t mask) const {
    const uint64_t a = nearest(s * opacity * mask, opacityFull * full);
    if (a == 0) return {targetAlpha, targetColor};
    const uint64_t over = a * full;
    const uint64_t under = targetAlpha * (full - a);
    return {nearest(over + under, full), nearest(c * over + targetColor * under, over + under)};
  }
};

TEST(Transfer, halfOpaqueBlackOverWhiteIsGrey) {
  // (0 * 128 + 255 * 127) / 255
  expectPixel(transferred({128, 0, 0, 0}, {255, 255, 255, 255}, modeOf(PF_Xfer_IN_FRONT)), {255, 127, 127, 127});
}

TEST(Transfer, overNothingTheSourceKeepsItsColorAndAlpha) {
  expectPixel(transferred({40, 10, 20, 30}, {0, 9, 9, 9}, modeOf(PF_Xfer_IN_FRONT)), {40, 10, 20, 30});
}

TEST(Transfer, nothingOverAPixelLeavesIt) {
  expectPixel(transferred({0, 200, 200, 200}, {7, 1, 2, 3}, modeOf(PF_Xfer_IN_FRONT)), {7, 1, 2, 3});
}

TEST(Transfer, anOpaqueSourceReplacesThePixel) {
  expectPixel(transferred({255, 10, 20, 30}, {77, 1, 2, 3}, modeOf(PF_Xfer_IN_FRONT)), {255, 10, 20, 30});
}

TEST(Transfer, opacityScalesTheSourcesAlpha) {
  // 255 * 128 / 255 = 128
  expectPixel(transferred({255, 0, 0, 0}, {255, 255, 255, 255}, modeOf(PF_Xfer_IN_FRONT, 128)), {255, 127, 127, 127});
}

TEST(Transfer, behindFillsOnlyWhatTheTargetLeavesOpen) {
  expectPixel(transferred({255, 9, 9, 9}, {255, 1, 2, 3}, modeOf(PF_Xfer_BEHIND)), {255, 1, 2, 3});
  expectPixel(transferred({255, 9, 9, 9}, {0, 1, 2, 3}, modeOf(PF_Xfer_BEHIND)), {255, 9, 9, 9});
  // Half of each: alpha full, colour (100 * 128 + 0 * 127) / 255 = 50.2
  expectPixel(transferred({255, 0, 0, 0}, {128, 100, 100, 100}, modeOf(PF_Xfer_BEHIND)), {255, 50, 50, 50});
}

TEST(Transfer, copyTakesTheBytesAndMixesWhereTheMaskIsHalf) {
  expectPixel(transferred({0, 9, 8, 7}, {255, 1, 2, 3}, modeOf(PF_Xfer_COPY)), {0, 9, 8, 7});
  const Image half = onePixel({51, 0, 0, 0});  // a fifth
  // alpha (255 * 51 + 255 * 204) / 255 = 255; red (200 * 51 + 100 * 204) / 255 = 120
  expectPixel(transferred({255, 200, 0, 0}, {255, 100, 0, 0}, modeOf(PF_Xfer_COPY), maskOf(half)), {255, 120, 0, 0});
}

TEST(Transfer, rgbOnlyKeepsTheTargetsAlpha) {
  PF_CompositeMode mode = modeOf(PF_Xfer_IN_FRONT);
  mode.rgb_only = 1;
  expectPixel(transferred({255, 10, 20, 30}, {40, 1, 2, 3}, mode), {40, 10, 20, 30});
}

TEST(Transfer, theMasksAlphaHoldsBackAndItsColorDoesNotCount) {
  const Image mask = onePixel({128, 255, 255, 255});
  expectPixel(transferred({255, 0, 0, 0}, {255, 255, 255, 255}, modeOf(PF_Xfer_IN_FRONT), maskOf(mask)),
              {255, 127, 127, 127});
}

TEST(Transfer, anInvertedMaskLetsThroughWhatTheMaskHolds) {
  const Image mask = onePixel({255, 0, 0, 0});
  expectPixel(transferred({255, 9, 9, 9}, {255, 1, 2, 3}, modeOf(PF_Xfer_IN_FRONT), maskOf(mask, 0, 0, true)),
              {255, 1, 2, 3});
  const Image open = onePixel({0, 0, 0, 0});
  expectPixel(transferred({255, 9, 9, 9}, {255, 1, 2, 3}, modeOf(PF_Xfer_IN_FRONT), maskOf(open, 0, 0, true)),
              {255, 9, 9, 9});
}

TEST(Transfer, aLuminanceMaskGoesByColorTimesAlpha) {
  // Pure green of full alpha: 0.587 * 255 = 149.685, to nearest 150.
  const Image mask = onePixel({255, 0, 255, 0});
  TransferMask through = maskOf(mask);
  through.luminance = true;
  expectPixel(transferred({255, 10, 10, 10}, {0, 0, 0, 0}, modeOf(PF_Xfer_IN_FRONT), through), {150, 10, 10, 10});
}

TEST(Transfer, anAllZeroMaskLetsNothingThroughAndInvertedEverything) {
  const TransferMask nothing{PF_EffectWorld{}, {0, 0}, false, false};
  expectPixel(transferred({255, 9, 9, 9}, {255, 1, 2, 3}, modeOf(PF_Xfer_IN_FRONT), nothing), {255, 1, 2, 3});
  TransferMask everything = nothing;
  everything.inverted = true;
  expectPixel(transferred({255, 9, 9, 9}, {255, 1, 2, 3}, modeOf(PF_Xfer_IN_FRONT), everything), {255, 9, 9, 9});
}

TEST(Transfer, everyEightBitAlphaIsWhatThePlainFormGives) {
  const Twin twin{255, 255};
  Image source(Depth::k8, 256, 1);
  Image mask(Depth::k8, 256, 1);
  for (const int maskAlpha : {0, 1, 100, 127, 128, 254, 255}) {
    for (const int opacity : {255, 77}) {
      for (const bool inverted : {false, true}) {
        for (int targetAlpha = 0; targetAlpha < 256; ++targetAlpha) {
          Image target(Depth::k8, 256, 1);
          for (int x = 0; x < 256; ++x) {
            source.at<PF_Pixel>(x, 0) = {static_cast<A_u_char>(x), 200, static_cast<A_u_char>(255 - x), 3};
            target.at<PF_Pixel>(x, 0) = {static_cast<A_u_char>(targetAlpha), 10, static_cast<A_u_char>(x), 250};
            mask.at<PF_Pixel>(x, 0).alpha = static_cast<A_u_char>(maskAlpha);
          }
          standin::transferRect(Depth::k8, nullptr, source.view(), modeOf(PF_Xfer_IN_FRONT, opacity),
                                maskOf(mask, 0, 0, inverted), 0, 0, target.view());
          const auto m = static_cast<uint64_t>(inverted ? 255 - maskAlpha : maskAlpha);
          for (int x = 0; x < 256; ++x) {
            const auto o = static_cast<uint64_t>(opacity);
            const auto s = static_cast<uint64_t>(x);
            const auto t = static_cast<uint64_t>(targetAlpha);
            const PF_Pixel& got = target.at<PF_Pixel>(x, 0);
            const auto red = twin.inFront(s, 200, t, 10, o, m);
            const auto green = twin.inFront(s, 255 - s, t, s, o, m);
            const auto blue = twin.inFront(s, 3, t, 250, o, m);
            ASSERT_TRUE(got.alpha == red.alpha && got.red == red.color && got.green == green.color &&
                        got.blue == blue.color)
                << "source alpha " << x << ", target alpha " << targetAlpha << ", mask " << m << ", opacity "
                << opacity;
          }
        }
      }
    }
  }
}

TEST(Transfer, sixteenBitAlphasAreWhatThePlainFormGives) {
  const Twin twin{32768, 32768};
  std::mt19937 random(771);
  const auto draw = [&] {
    const uint32_t edge = random() % 8;
    return static_cast<A_u_short>(edge == 0 ? 0 : edge == 1 ? 32768 : random() % 32769);
  };
  for (int round = 0; round < 200; ++round) {
    Image source(Depth::k16, 500, 1);
    Image target(Depth::k16, 500, 1);
    Image mask(Depth::k16, 500, 1);
    for (int x = 0; x < 500; ++x) {
      source.at<PF_Pixel16>(x, 0) = {draw(), draw(), draw(), draw()};
      target.at<PF_Pixel16>(x, 0) = {draw(), draw(), draw(), draw()};
      mask.at<PF_Pixel16>(x, 0) = {draw(), draw(), draw(), draw()};
    }
    const Image before = target;
    const int opacity = draw();
    standin::transferRect(Depth::k16, nullptr, source.view(), modeOf(PF_Xfer_IN_FRONT, 13, opacity), maskOf(mask), 0, 0,
                          target.view());
    for (int x = 0; x < 500; ++x) {
      const PF_Pixel16& s = source.at<PF_Pixel16>(x, 0);
      const PF_Pixel16& b = before.at<PF_Pixel16>(x, 0);
      const PF_Pixel16& got = target.at<PF_Pixel16>(x, 0);
      const uint64_t m = mask.at<PF_Pixel16>(x, 0).alpha;
      const auto o = static_cast<uint64_t>(opacity);
      const auto red = twin.inFront(s.alpha, s.red, b.alpha, b.red, o, m);
      const auto blue = twin.inFront(s.alpha, s.blue, b.alpha, b.blue, o, m);
      ASSERT_TRUE(got.alpha == red.alpha && got.red == red.color && got.blue == blue.color)
          << "source " << s.alpha << " " << s.red << ", target " << b.alpha << " " << b.red << ", mask " << m
          << ", opacity " << opacity << ", round " << round;
    }
  }
}

TEST(Transfer, floatIsTheFormulaRoundedOnce) {
  std::mt19937 random(99);
  std::uniform_real_distribution<float> unit(0.0F, 1.0F);
  for (int round = 0; round < 20000; ++round) {
    Image source(Depth::k32, 1, 1);
    Image target(Depth::k32, 1, 1);
    Image mask(Depth::k32, 1, 1);
    const PF_PixelFloat s{unit(random), unit(random) * 3.0F, unit(random), unit(random)};
    const PF_PixelFloat b{unit(random), unit(random), unit(random), unit(random)};
    const float m = unit(random);
    source.at<PF_PixelFloat>(0, 0) = s;
    target.at<PF_PixelFloat>(0, 0) = b;
    mask.at<PF_PixelFloat>(0, 0).alpha = m;
    standin::transferRect(Depth::k32, nullptr, source.view(), modeOf(PF_Xfer_IN_FRONT, 0, 16384), maskOf(mask), 0, 0,
                          target.view());
    const long double a = static_cast<long double>(s.alpha) * 0.5L * static_cast<long double>(m);
    const long double under = static_cast<long double>(b.alpha) * (1.0L - a);
    const long double red =
        (static_cast<long double>(s.red) * a + static_cast<long double>(b.red) * under) / (a + under);
    const PF_PixelFloat& got = target.at<PF_PixelFloat>(0, 0);
    const auto close = [](float value, long double expected) {
      const float nearest = static_cast<float>(expected);
      return value == nearest || value == std::nextafter(nearest, 9.0F) || value == std::nextafter(nearest, -9.0F);
    };
    ASSERT_TRUE(close(got.alpha, a + under) && close(got.red, red)) << "round " << round << ", seed 99";
  }
}

TEST(Transfer, aSourceRectangleThatBeginsOutsideMovesItsPlaceAlong) {
  Image source(Depth::k8, 3, 3);
  PF_EffectWorld world = source.view();
  standin::fillWorld<PF_Pixel>(world, nullptr, {255, 1, 1, 1});
  source.at<PF_Pixel>(0, 0).red = 99;
  Image target(Depth::k8, 6, 6, 4);
  const PF_Rect rect{-2, -1, 3, 3};
  standin::transferRect(Depth::k8, &rect, source.view(), modeOf(PF_Xfer_IN_FRONT), std::nullopt, 0, 0, target.view());
  for (int32_t y = 0; y < 6; ++y) {
    for (int32_t x = 0; x < 6; ++x) {
      const bool covered = x >= 2 && x < 5 && y >= 1 && y < 4;
      EXPECT_EQ(target.at<PF_Pixel>(x, y).alpha, covered ? 255 : 0) << x << " " << y;
    }
  }
  EXPECT_EQ(target.at<PF_Pixel>(2, 1).red, 99);
  EXPECT_TRUE(target.guardsIntact());
}

TEST(Transfer, theTargetPlaceMayLieOutsideOnEverySide) {
  Image source(Depth::k8, 3, 2);
  PF_EffectWorld world = source.view();
  standin::fillWorld<PF_Pixel>(world, nullptr, {255, 1, 1, 1});
  for (int32_t dx = -4; dx <= 5; ++dx) {
    for (int32_t dy = -3; dy <= 5; ++dy) {
      Image target(Depth::k8, 4, 4, 4);
      standin::transferRect(Depth::k8, nullptr, source.view(), modeOf(PF_Xfer_IN_FRONT), std::nullopt, dx, dy,
                            target.view());
      for (int32_t y = 0; y < 4; ++y) {
        for (int32_t x = 0; x < 4; ++x) {
          const bool covered = x >= dx && x < dx + 3 && y >= dy && y < dy + 2;
          ASSERT_EQ(target.at<PF_Pixel>(x, y).alpha, covered ? 255 : 0) << dx << " " << dy << ": " << x << " " << y;
        }
      }
      ASSERT_TRUE(target.guardsIntact());
    }
  }
}

TEST(Transfer, theMaskLiesAtItsOffsetInTheTarget) {
  Image source(Depth::k8, 5, 5);
  PF_EffectWorld world = source.view();
  standin::fillWorld<PF_Pixel>(world, nullptr, {255, 1, 1, 1});
  Image mask(Depth::k8, 2, 1);
  mask.at<PF_Pixel>(0, 0).alpha = 255;
  mask.at<PF_Pixel>(1, 0).alpha = 51;
  Image target(Depth::k8, 5, 5);
  standin::transferRect(Depth::k8, nullptr, source.view(), modeOf(PF_Xfer_IN_FRONT), maskOf(mask, 2, 3), 0, 0,
                        target.view());
  for (int32_t y = 0; y < 5; ++y) {
    for (int32_t x = 0; x < 5; ++x) {
      const int expected = y == 3 && x == 2 ? 255 : y == 3 && x == 3 ? 51 : 0;
      EXPECT_EQ(target.at<PF_Pixel>(x, y).alpha, expected) << x << " " << y;
    }
  }
  Image inverted(Depth::k8, 5, 5);
  standin::transferRect(Depth::k8, nullptr, source.view(), modeOf(PF_Xfer_IN_FRONT), maskOf(mask, -1, 0, true), 0, 0,
                        inverted.view());
  // Of the mask only its second pixel lies over the target, at (0, 0); outside it everything goes through.
  EXPECT_EQ(inverted.at<PF_Pixel>(0, 0).alpha, 204);
  EXPECT_EQ(inverted.at<PF_Pixel>(1, 0).alpha, 255);
  EXPECT_EQ(inverted.at<PF_Pixel>(4, 4).alpha, 255);
}

TEST(Transfer, anotherModeIsRefusedAndDrawsNothing) {
  const Image source = onePixel({255, 9, 9, 9});
  Image target = onePixel({1, 2, 3, 4});
  EXPECT_EQ(standin::transferRect(Depth::k8, nullptr, source.view(), modeOf(PF_Xfer_MULTIPLY), std::nullopt, 0, 0,
                                  target.view()),
            PF_Err_BAD_CALLBACK_PARAM);
  expectPixel(target.at<PF_Pixel>(0, 0), {1, 2, 3, 4});
}

// One channel of a random pixel: often an end of the scale or a value beyond it, for all of which the forms differ.
template <class Pixel>
auto oddChannel(std::mt19937& random) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  const auto full = standin::PixelFacts<Pixel>::full;
  const uint32_t kind = random() % 8;
  if (kind < 2) return Channel{0};
  if (kind < 4) return full;
  if constexpr (std::is_floating_point_v<Channel>) {
    constexpr float odd[] = {-0.0F,
                             -0.25F,
                             1.5F,
                             1e-42F,
                             3e38F,
                             std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN(),
                             0.99999994F};
    if (kind == 4) return odd[random() % 8];
    return static_cast<float>(random()) / 4294967296.0F;
  } else {
    if (kind == 4) return static_cast<Channel>(full - 1);
    if (kind == 5) return static_cast<Channel>(random());  // of 16 bits: beyond full scale, too
    return static_cast<Channel>(random() % (uint32_t{full} + 1));
  }
}

template <class Pixel>
void fillOddly(Image& image, std::mt19937& random) {
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) {
      image.at<Pixel>(x, y) = {oddChannel<Pixel>(random), oddChannel<Pixel>(random), oddChannel<Pixel>(random),
                               oddChannel<Pixel>(random)};
    }
  }
}

// Bit for bit, but that one "not a number" is as good as another: which one a sum hands on is the compiler's choice.
template <class Pixel>
bool sameBits(const Image& a, const Image& b) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  const auto same = [](Channel one, Channel other) {
    if constexpr (std::is_same_v<Channel, float>) {
      return std::bit_cast<uint32_t>(one) == std::bit_cast<uint32_t>(other) || (std::isnan(one) && std::isnan(other));
    } else {
      return one == other;
    }
  };
  for (int32_t y = 0; y < a.height(); ++y) {
    for (int32_t x = 0; x < a.width(); ++x) {
      const Pixel& p = a.at<Pixel>(x, y);
      const Pixel& q = b.at<Pixel>(x, y);
      if (!same(p.alpha, q.alpha) || !same(p.red, q.red) || !same(p.green, q.green) || !same(p.blue, q.blue)) {
        return false;
      }
    }
  }
  return true;
}

template <class Pixel>
class TransferTwin : public testing::Test {};
using PixelTypes = testing::Types<PF_Pixel, PF_Pixel16, PF_PixelFloat>;
TYPED_TEST_SUITE(TransferTwin, PixelTypes);

TYPED_TEST(TransferTwin, everyModeGivesTheBytesOfThePlainForm) {
  constexpr Depth depth = standin::PixelFacts<TypeParam>::depth;
  constexpr uint32_t seed = 20260;
  std::mt19937 random(seed);
  for (int round = 0; round < 1500; ++round) {
    Image source(depth, 24, 9);
    Image target(depth, 20, 11, 8);
    Image maskImage(depth, 13, 8, 4);
    fillOddly<TypeParam>(source, random);
    fillOddly<TypeParam>(target, random);
    fillOddly<TypeParam>(maskImage, random);
    constexpr PF_TransferMode modes[] = {PF_Xfer_COPY, PF_Xfer_BEHIND, PF_Xfer_IN_FRONT};
    const bool whole = random() % 2 == 0;
    PF_CompositeMode mode = modeOf(modes[random() % 3], whole ? 255 : static_cast<int>(random() % 256),
                                   whole ? 32768 : static_cast<int>(random() % 65536));
    mode.rgb_only = random() % 4 == 0 ? 1 : 0;
    std::optional<TransferMask> mask;
    if (random() % 3 != 0) {
      mask = maskOf(maskImage, static_cast<int32_t>(random() % 9) - 4, static_cast<int32_t>(random() % 9) - 4,
                    random() % 2 == 0);
      mask->luminance = random() % 2 == 0;
      if (random() % 8 == 0) mask->world.data = nullptr;
    }
    const auto x = static_cast<int32_t>(random() % 11) - 5;
    const auto y = static_cast<int32_t>(random() % 11) - 5;
    Image expected = target;
    plain::Transfer<TypeParam>::rect(source, mode, mask, x, y, expected);
    standin::transferRect(depth, nullptr, source.view(), mode, mask, x, y, target.view());
    ASSERT_TRUE(sameBits<TypeParam>(target, expected))
        << "seed " << seed << ", round " << round << ", mode " << mode.xfer << ", rgb only " << int{mode.rgb_only}
        << ", opacity " << int{mode.opacity} << " " << mode.opacitySu << ", at " << x << ", " << y
        << (mask ? ", with a mask" : "");
    ASSERT_TRUE(target.guardsIntact());
  }
}

TEST(Transfer, placesBeyondThirtyTwoBitsLieOutside) {
  // 2147483647 - (-2147483648) and its like: in 32 bits the sum would come round and lie in the target.
  Image source(Depth::k8, 3, 2);
  PF_EffectWorld world = source.view();
  standin::fillWorld<PF_Pixel>(world, nullptr, {255, 1, 1, 1});
  constexpr int32_t least = std::numeric_limits<int32_t>::min();
  constexpr int32_t most = std::numeric_limits<int32_t>::max();
  const PF_Rect wide{least, least, 3, 2};
  for (const auto& [x, y] : {std::pair{most, 0}, std::pair{0, most}, std::pair{most, most}}) {
    Image target(Depth::k8, 4, 4, 4);
    standin::transferRect(Depth::k8, &wide, source.view(), modeOf(PF_Xfer_IN_FRONT), std::nullopt, x, y, target.view());
    EXPECT_TRUE(standin::samePixels(target, Image(Depth::k8, 4, 4))) << x << " " << y;
  }
  const PF_Rect wideOnly{least, 0, 3, 2};
  const PF_Rect highOnly{0, least, 3, 2};
  Image beside(Depth::k8, 4, 4, 4);
  standin::transferRect(Depth::k8, &wideOnly, source.view(), modeOf(PF_Xfer_IN_FRONT), std::nullopt, most, 0,
                        beside.view());
  standin::transferRect(Depth::k8, &highOnly, source.view(), modeOf(PF_Xfer_IN_FRONT), std::nullopt, 0, most,
                        beside.view());
  EXPECT_TRUE(standin::samePixels(beside, Image(Depth::k8, 4, 4)));
  // With the rectangle's own start as place the source lies at the target's left top.
  Image target(Depth::k8, 4, 4, 4);
  standin::transferRect(Depth::k8, &wide, source.view(), modeOf(PF_Xfer_IN_FRONT), std::nullopt, least, least,
                        target.view());
  EXPECT_EQ(target.at<PF_Pixel>(0, 0).alpha, 255);
  EXPECT_EQ(target.at<PF_Pixel>(2, 1).alpha, 255);
  EXPECT_EQ(target.at<PF_Pixel>(3, 2).alpha, 0);
}

}  // namespace
