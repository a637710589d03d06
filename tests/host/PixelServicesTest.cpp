// The pixel services at all three depths, through the tables that a module gets: what each draws is worked out by hand
// from the formulas in the headers of host/.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "HostTest.h"
#include "ae/PixelSuites.h"
#include "host/Image.h"
#include "tests/support/Fixed.h"
#include "tests/support/PixelText.h"

namespace {

using standin::Depth;
using standin::Image;
using standin::PixelFacts;
using vindrel::test::fixed;
using vindrel::test::textOf;

/// One row of pixels.
template <class Pixel>
Image rowOf(const std::vector<Pixel>& pixels) {
  Image image(PixelFacts<Pixel>::depth, static_cast<int32_t>(pixels.size()), 1, 4);
  for (size_t x = 0; x < pixels.size(); ++x) image.at<Pixel>(static_cast<int32_t>(x), 0) = pixels[x];
  return image;
}

/// All pixels of a picture, row by row.
template <class Pixel>
std::string pixelsOf(const Image& image) {
  std::string text;
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) text += textOf(image.at<Pixel>(x, y));
  }
  return text;
}

std::string textOfAny(const Image& image) {
  return standin::withPixelOf(image.depth(), [&](auto pixel) { return pixelsOf<decltype(pixel)>(image); });
}

class PixelServices : public scripted::HostTest {
 protected:
  PF_EffectWorld lend(const Image& image) { return host.lendWorld(image, "picture"); }

  const PF_FillMatteSuite2* fills = suite<PF_FillMatteSuite2>(kPFFillMatteSuite, 2);
  const PF_WorldTransformSuite1* moves = suite<PF_WorldTransformSuite1>(kPFWorldTransformSuite, 1);
  const PF_CompositeMode copies{PF_Xfer_COPY, 0, 255, 0, 32768};
};

TEST_F(PixelServices, fillTurnsAColourOfEveryDepthIntoTheWorlds) {
  const PF_Pixel small{255, 0, 51, 255};
  const PF_Pixel16 deep{32768, 0, 8192, 32768};
  const PF_PixelFloat real{1.0F, 0.0F, 0.75F, 1.0F};
  const auto filled = [&](Depth depth, auto service, const auto* color) {
    const Image image(depth, 1, 1, 0, 1);
    PF_EffectWorld world = lend(image);
    EXPECT_EQ(service(ref(), color, nullptr, &world), PF_Err_NONE);
    return textOfAny(image);
  };
  EXPECT_EQ(filled(Depth::k8, fills->fill, &small), "(255 0 51 255)");
  EXPECT_EQ(filled(Depth::k8, fills->fill16, &deep), "(255 0 64 255)");        // 255 / 4 = 63.75
  EXPECT_EQ(filled(Depth::k8, fills->fill_float, &real), "(255 0 191 255)");   // 255 * 0.75 = 191.25
  EXPECT_EQ(filled(Depth::k16, fills->fill, &small), "(32768 0 6554 32768)");  // 32768 / 5 = 6553.6
  EXPECT_EQ(filled(Depth::k16, fills->fill16, &deep), "(32768 0 8192 32768)");
  EXPECT_EQ(filled(Depth::k16, fills->fill_float, &real), "(32768 0 24576 32768)");
  EXPECT_EQ(filled(Depth::k32, fills->fill, &small), "(1 0 0.200000003 1)");
  EXPECT_EQ(filled(Depth::k32, fills->fill16, &deep), "(1 0 0.25 1)");
  EXPECT_EQ(filled(Depth::k32, fills->fill_float, &real), "(1 0 0.75 1)");
  for (const Depth depth : standin::kAllDepths) {
    EXPECT_EQ(filled(depth, fills->fill, static_cast<PF_Pixel*>(nullptr)), "(0 0 0 0)");
    EXPECT_EQ(filled(depth, fills->fill16, static_cast<PF_Pixel16*>(nullptr)), "(0 0 0 0)");
    EXPECT_EQ(filled(depth, fills->fill_float, static_cast<PF_PixelFloat*>(nullptr)), "(0 0 0 0)");
  }
}

TEST_F(PixelServices, fillKeepsToItsRectangleAndTheLogTellsIt) {
  const Image image(Depth::k16, 2, 1);
  PF_EffectWorld world = lend(image);
  const PF_Pixel16 color{1, 2, 3, 4};
  const PF_Rect right{1, 0, 2, 1};
  EXPECT_EQ(fills->fill16(ref(), &color, &right, &world), PF_Err_NONE);
  EXPECT_EQ(textOfAny(image), "(0 0 0 0)(1 2 3 4)");
  EXPECT_EQ(host.log().calls.back().arguments, "picture 2 x 1 (1, 0, 2, 1)");
  EXPECT_EQ(host.log().fills.back().rect->left, 1);
}

TEST_F(PixelServices, premultiplyColorMixesWithAColourOfEveryDepth) {
  const PF_Pixel small{0, 255, 0, 0};
  const PF_Pixel16 deep{0, 32768, 0, 0};
  const PF_PixelFloat real{0.0F, 1.0F, 0.0F, 0.0F};
  // A pixel of a fifth or a quarter of full alpha without red over full red, there and back, and over black.
  const auto turned = [&](const auto& pixel, auto service, const auto* color, const char* there, const char* over) {
    const Image source = rowOf<std::remove_cvref_t<decltype(pixel)>>({pixel});
    const Image target(source.depth(), 1, 1, 0, 3);
    PF_EffectWorld from = lend(source);
    PF_EffectWorld to = lend(target);
    EXPECT_EQ(service(ref(), &from, color, 1, &to), PF_Err_NONE);
    EXPECT_EQ(textOfAny(target), there);
    EXPECT_EQ(service(ref(), &to, color, 0, &to), PF_Err_NONE);
    EXPECT_EQ(textOfAny(target), textOfAny(source)) << "and back";
    EXPECT_EQ(service(ref(), &from, nullptr, 1, &to), PF_Err_NONE);
    EXPECT_EQ(textOfAny(target), over);
  };
  const PF_Pixel pixel8{51, 0, 255, 0};
  const PF_Pixel16 pixel16{8192, 0, 32768, 0};
  const PF_PixelFloat pixelFloat{0.25F, 0.0F, 1.0F, 0.0F};
  // Red 1 - alpha of full, green alpha of full.
  turned(pixel8, fills->premultiply_color, &small, "(51 204 51 0)", "(51 0 51 0)");
  turned(pixel8, fills->premultiply_color16, &deep, "(51 204 51 0)", "(51 0 51 0)");
  turned(pixel8, fills->premultiply_color_float, &real, "(51 204 51 0)", "(51 0 51 0)");
  turned(pixel16, fills->premultiply_color, &small, "(8192 24576 8192 0)", "(8192 0 8192 0)");
  turned(pixel16, fills->premultiply_color16, &deep, "(8192 24576 8192 0)", "(8192 0 8192 0)");
  turned(pixel16, fills->premultiply_color_float, &real, "(8192 24576 8192 0)", "(8192 0 8192 0)");
  turned(pixelFloat, fills->premultiply_color, &small, "(0.25 0.75 0.25 0)", "(0.25 0 0.25 0)");
  turned(pixelFloat, fills->premultiply_color16, &deep, "(0.25 0.75 0.25 0)", "(0.25 0 0.25 0)");
  turned(pixelFloat, fills->premultiply_color_float, &real, "(0.25 0.75 0.25 0)", "(0.25 0 0.25 0)");
}

TEST_F(PixelServices, premultiplyLeavesClearPixelsOnTheWayBackAndHoldsAlphaToFull) {
  const auto turned = [&](const Image& image, A_long forward) {
    PF_EffectWorld world = lend(image);
    EXPECT_EQ(fills->premultiply(ref(), forward, &world), PF_Err_NONE);
    return textOfAny(image);
  };
  EXPECT_EQ(turned(rowOf<PF_Pixel>({{0, 9, 0, 0}}), 0), "(0 9 0 0)");
  EXPECT_EQ(turned(rowOf<PF_Pixel>({{0, 9, 0, 0}}), 1), "(0 0 0 0)");
  EXPECT_EQ(turned(rowOf<PF_Pixel16>({{0, 9, 0, 0}, {40000, 9, 0, 0}}), 0), "(0 9 0 0)(40000 9 0 0)");
  EXPECT_EQ(turned(rowOf<PF_Pixel16>({{40000, 9, 0, 0}}), 1), "(40000 9 0 0)");
  const float none = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(turned(rowOf<PF_PixelFloat>({{0.0F, 9.0F, 0.0F, 0.0F}, {-1.0F, 9.0F, 0.0F, 0.0F}}), 0),
            "(0 9 0 0)(-1 9 0 0)");
  EXPECT_EQ(turned(rowOf<PF_PixelFloat>({{none, 9.0F, 0.0F, 0.0F}, {2.0F, 9.0F, 0.0F, 0.0F}}), 1),
            "(nan 0 0 0)(2 9 0 0)");
}

TEST_F(PixelServices, premultiplyOfAWorldWithoutPixelsIsNothing) {
  PF_EffectWorld nothing{};
  EXPECT_EQ(fills->premultiply(ref(), 1, &nothing), PF_Err_NONE);
  EXPECT_EQ(report(), "");
}

TEST_F(PixelServices, compositeRectLaysAWorldOverAnotherByItsOpacity) {
  const auto laid = [&](const Image& source, const Image& target, A_long opacity, PF_XferMode mode) {
    PF_EffectWorld from = lend(source);
    PF_EffectWorld to = lend(target);
    PF_Rect all{0, 0, 1, 1};
    EXPECT_EQ(host.utils()->composite_rect(ref(), &all, opacity, &from, 0, 0, PF_Field_FRAME, mode, &to), PF_Err_NONE);
    return textOfAny(target);
  };
  const Image small = rowOf<PF_Pixel>({{255, 100, 0, 0}});
  const auto white8 = [] { return rowOf<PF_Pixel>({{255, 255, 255, 255}}); };
  // 51 of 255: a fifth of the source and four fifths of white; (100 + 4 * 255) / 5, 4 * 255 / 5.
  EXPECT_EQ(laid(small, white8(), 51, PF_Xfer_IN_FRONT), "(255 224 204 204)");
  EXPECT_EQ(laid(small, white8(), 999, PF_Xfer_IN_FRONT), "(255 100 0 0)") << "held to full";
  EXPECT_EQ(laid(small, white8(), -5, PF_Xfer_IN_FRONT), "(255 255 255 255)") << "held to none";
  EXPECT_EQ(laid(small, white8(), 255, PF_Xfer_BEHIND), "(255 255 255 255)");
  // 51 / 255 of 32768 is 6553.6, taken as 6554: (32768 * (32768 - 6554)) / 32768.
  const Image deep = rowOf<PF_Pixel16>({{32768, 0, 0, 32768}});
  EXPECT_EQ(laid(deep, rowOf<PF_Pixel16>({{32768, 32768, 0, 32768}}), 51, PF_Xfer_IN_FRONT), "(32768 26214 0 32768)");
  const Image real = rowOf<PF_PixelFloat>({{1.0F, 0.5F, 2.0F, 0.0F}});
  EXPECT_EQ(laid(real, rowOf<PF_PixelFloat>({{0.0F, 0.0F, 0.0F, 0.0F}}), 255, PF_Xfer_COPY), "(1 0.5 2 0)");
  EXPECT_EQ(report(), "");
}

TEST_F(PixelServices, transferRectGoesThroughAMaskOfItsDepth) {
  const Image source = rowOf<PF_PixelFloat>({{1.0F, 1.0F, 0.0F, 0.0F}, {1.0F, 1.0F, 0.0F, 0.0F}});
  const Image target(Depth::k32, 2, 1);
  const Image shape = rowOf<PF_PixelFloat>({{0.0F, 0.0F, 0.0F, 0.0F}, {0.5F, 0.0F, 0.0F, 0.0F}});
  PF_EffectWorld from = lend(source);
  PF_EffectWorld to = lend(target);
  PF_MaskWorld mask{};
  mask.mask = lend(shape);
  const PF_CompositeMode inFront{PF_Xfer_IN_FRONT, 0, 255, 0, 32768};
  EXPECT_EQ(moves->transfer_rect(ref(), PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, nullptr, &from, &inFront,
                                 &mask, 0, 0, &to),
            PF_Err_NONE);
  EXPECT_EQ(textOfAny(target), "(0 0 0 0)(0.5 1 0 0)");
}

TEST_F(PixelServices, transferRectOfOrIntoAWorldWithoutPixelsIsNothing) {
  const Image image = rowOf<PF_Pixel>({{1, 2, 3, 4}});
  PF_EffectWorld world = lend(image);
  PF_EffectWorld nothing{};
  const auto laid = [&](PF_EffectWorld* from, PF_EffectWorld* to) {
    return moves->transfer_rect(ref(), PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, nullptr, from, &copies,
                                nullptr, 0, 0, to);
  };
  EXPECT_EQ(laid(&nothing, &world), PF_Err_NONE);
  EXPECT_EQ(laid(&world, &nothing), PF_Err_NONE);
  EXPECT_EQ(textOfAny(image), "(1 2 3 4)");
  EXPECT_EQ(report(), "");
}

TEST_F(PixelServices, blendMixesByTheRatioAtEveryDepth) {
  const auto blended = [&](const Image& first, const Image& second, double ratio) {
    const Image target(first.depth(), first.width(), 1, 0, 7);
    PF_EffectWorld one = lend(first);
    PF_EffectWorld two = lend(second);
    PF_EffectWorld to = lend(target);
    EXPECT_EQ(moves->blend(ref(), &one, &two, fixed(ratio), &to), PF_Err_NONE);
    return textOfAny(target);
  };
  // Half of a full and half of a clear pixel: the colour is the full one's. Two clear ones mix by the ratio alone.
  EXPECT_EQ(
      blended(rowOf<PF_Pixel>({{255, 80, 0, 0}, {0, 100, 0, 0}}), rowOf<PF_Pixel>({{0, 7, 7, 7}, {0, 200, 0, 0}}), 0.5),
      "(128 80 0 0)(0 150 0 0)");
  EXPECT_EQ(blended(rowOf<PF_Pixel16>({{32768, 80, 0, 0}, {0, 100, 0, 0}}),
                    rowOf<PF_Pixel16>({{0, 7, 7, 7}, {0, 200, 0, 0}}), 0.25),
            "(24576 80 0 0)(0 125 0 0)");
  EXPECT_EQ(blended(rowOf<PF_PixelFloat>({{1.0F, 8.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F, 0.0F}}),
                    rowOf<PF_PixelFloat>({{1.0F, 4.0F, 0.0F, 0.0F}, {0.0F, 3.0F, 0.0F, 0.0F}}), 0.25),
            "(1 7 0 0)(0 1.5 0 0)");
  const Image one = rowOf<PF_Pixel>({{255, 1, 2, 3}});
  const Image two = rowOf<PF_Pixel>({{255, 9, 8, 7}});
  EXPECT_EQ(blended(one, two, -3.0), "(255 1 2 3)") << "held to the first";
  EXPECT_EQ(blended(one, two, 3.0), "(255 9 8 7)") << "held to the second";
}

TEST_F(PixelServices, blendOfWorldsWithoutPixelsIsNothing) {
  const Image image = rowOf<PF_Pixel>({{1, 2, 3, 4}});
  PF_EffectWorld world = lend(image);
  PF_EffectWorld nothing{};
  EXPECT_EQ(moves->blend(ref(), &nothing, &world, 0, &world), PF_Err_NONE);
  EXPECT_EQ(moves->blend(ref(), &world, &nothing, 0, &world), PF_Err_NONE);
  EXPECT_EQ(moves->blend(ref(), &world, &world, 0, &nothing), PF_Err_NONE);
  EXPECT_EQ(textOfAny(image), "(1 2 3 4)");
  EXPECT_EQ(report(), "");
}

class Convolve : public PixelServices {
 protected:
  // Three entries along the row, for red alone.
  std::string reds(const Image& source, std::array<A_long, 3> entries, PF_KernelFlags flags,
                   const PF_Rect* area = nullptr) {
    const Image target(source.depth(), source.width(), 1);
    PF_EffectWorld from = lend(source);
    PF_EffectWorld to = lend(target);
    EXPECT_EQ(moves->convolve(ref(), &from, area, PF_KernelFlag_1D | flags, 3, nullptr, entries.data(), nullptr,
                              nullptr, &to),
              PF_Err_NONE);
    return standin::withPixelOf(source.depth(), [&](auto pixel) {
      std::string text;
      for (int32_t x = 0; x < target.width(); ++x) {
        std::ostringstream out;
        out << +target.at<decltype(pixel)>(x, 0).red << ' ';
        text += out.str();
      }
      return text;
    });
  }
  const Image small = rowOf<PF_Pixel>({{255, 3, 0, 0}, {255, 0, 0, 0}, {255, 4, 0, 0}});
  const Image deep = rowOf<PF_Pixel16>({{255, 3, 0, 0}, {255, 0, 0, 0}, {255, 4, 0, 0}});
  const Image real =
      rowOf<PF_PixelFloat>({{1.0F, 3.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F, 0.0F}, {1.0F, -4.0F, 0.0F, 0.0F}});
};

TEST_F(Convolve, roundsHalvesUpBelowZeroTooAndKeepsTheLowBitsWhereNothingIsHeld) {
  // Own value times -1, the right one's times 1, the left one's times 2, by the sum of 2:
  // -3 / 2 = -1.5 becomes -1, (2 * 3 + 4) / 2 = 5, -4 / 2 = -2.
  constexpr auto free = PF_KernelFlag_NORMALIZED | PF_KernelFlag_NO_CLAMP;
  EXPECT_EQ(reds(small, {2, -1, 1}, free), "255 5 254 ");
  EXPECT_EQ(reds(deep, {2, -1, 1}, free), "65535 5 65534 ");
  EXPECT_EQ(reds(small, {2, -1, 1}, PF_KernelFlag_NORMALIZED), "0 5 0 ");
  EXPECT_EQ(reds(deep, {2, -1, 1}, PF_KernelFlag_NORMALIZED), "0 5 0 ");
  // By the sum of 4: -9 / 4 = -2.25 becomes -2, 7 * 4 / 4 = 7, -12 / 4 = -3.
  EXPECT_EQ(reds(small, {0, -3, 7}, free), "254 7 253 ");
}

TEST_F(Convolve, dividesByASumBelowZeroAndByOneWhereTheSumIsNone) {
  EXPECT_EQ(reds(small, {0, -1, 0}, PF_KernelFlag_NORMALIZED), "3 0 4 ");
  EXPECT_EQ(reds(deep, {0, -2, 0}, PF_KernelFlag_NORMALIZED), "3 0 4 ");
  EXPECT_EQ(reds(small, {1, -1, 0}, PF_KernelFlag_NORMALIZED), "0 3 0 ");
  EXPECT_EQ(reds(real, {1, -1, 0}, PF_KernelFlag_NORMALIZED | PF_KernelFlag_NO_CLAMP), "-3 3 4 ");
}

TEST_F(Convolve, holdsFloatsToOneUnlessItIsTold) {
  EXPECT_EQ(reds(real, {0, 1, 0}, PF_KernelFlag_NORMALIZED), "1 0 0 ");
  EXPECT_EQ(reds(real, {0, 1, 0}, PF_KernelFlag_NORMALIZED | PF_KernelFlag_NO_CLAMP), "3 0 -4 ");
  // 255 times three entries is the divisor without their sum.
  EXPECT_EQ(reds(real, {0, 765, 0}, PF_KernelFlag_NO_CLAMP), "3 0 -4 ");
}

TEST_F(Convolve, drawsInItsAreaOnly) {
  const PF_Rect middle{1, -5, 2, 9};
  EXPECT_EQ(reds(small, {1, 0, 0}, PF_KernelFlag_NORMALIZED, &middle), "0 3 0 ");
  EXPECT_EQ(reds(deep, {0, 0, 1}, PF_KernelFlag_NORMALIZED, &middle), "0 4 0 ");
}

TEST_F(Convolve, refusesAWorldIntoItself) {
  PF_EffectWorld world = lend(small);
  EXPECT_EQ(moves->convolve(ref(), &world, nullptr, 0, 1, nullptr, nullptr, nullptr, nullptr, &world),
            PF_Err_BAD_CALLBACK_PARAM);
  ASSERT_EQ(host.books().complaints().size(), 1U);
  EXPECT_EQ(host.books().complaints()[0].text, "convolve of a world into itself");
}

class TransformWorld : public PixelServices {
 protected:
  std::string seen(const Image& source, const std::vector<PF_FloatMatrix>& matrices, PF_Quality quality,
                   const PF_Rect* area = nullptr, const PF_CompositeMode& mode = {PF_Xfer_COPY, 0, 255, 0, 32768}) {
    const Image target(source.depth(), 3, 1);
    PF_EffectWorld from = lend(source);
    PF_EffectWorld to = lend(target);
    EXPECT_EQ(moves->transform_world(ref(), quality, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &from, &mode, nullptr,
                                     matrices.data(), static_cast<A_long>(matrices.size()), 1, area, &to),
              PF_Err_NONE);
    return textOfAny(target);
  }
  static PF_FloatMatrix movedBy(double x) { return {{{1, 0, 0}, {0, 1, 0}, {x, 0, 1}}}; }

  const Image small = rowOf<PF_Pixel>({{255, 10, 0, 0}, {255, 20, 0, 0}});
  const Image deep = rowOf<PF_Pixel16>({{32768, 10, 0, 0}, {32768, 20, 0, 0}});
  const Image real = rowOf<PF_PixelFloat>({{1.0F, 1.0F, 0.0F, 0.0F}, {1.0F, 2.0F, 0.0F, 0.0F}});
};

TEST_F(TransformWorld, movesAtEveryDepth) {
  EXPECT_EQ(seen(small, {movedBy(1)}, PF_Quality_LO), "(0 0 0 0)(255 10 0 0)(255 20 0 0)");
  EXPECT_EQ(seen(deep, {movedBy(1)}, PF_Quality_LO), "(0 0 0 0)(32768 10 0 0)(32768 20 0 0)");
  EXPECT_EQ(seen(real, {movedBy(1)}, PF_Quality_LO), "(0 0 0 0)(1 1 0 0)(1 2 0 0)");
  // Halfway between two pixels each counts half; outside alpha is 0 and no colour counts.
  EXPECT_EQ(seen(deep, {movedBy(0.5)}, PF_Quality_HI), "(16384 10 0 0)(32768 15 0 0)(16384 20 0 0)");
  EXPECT_EQ(seen(real, {movedBy(0.5)}, PF_Quality_HI), "(0.5 1 0 0)(1 1.5 0 0)(0.5 2 0 0)");
}

TEST_F(TransformWorld, mixesSeveralMatricesWithTheSameWeight) {
  EXPECT_EQ(seen(real, {movedBy(0), movedBy(1)}, PF_Quality_LO), "(0.5 1 0 0)(1 1.5 0 0)(0.5 2 0 0)");
  EXPECT_EQ(seen(small, {movedBy(0), movedBy(1)}, PF_Quality_LO), "(128 10 0 0)(255 15 0 0)(128 20 0 0)");
}

TEST_F(TransformWorld, drawsNothingByAMatrixWithoutAnInverse) {
  const PF_FloatMatrix flat{{{1, 0, 0}, {0, 0, 0}, {0, 0, 1}}};
  EXPECT_EQ(seen(small, {flat}, PF_Quality_HI), "(0 0 0 0)(0 0 0 0)(0 0 0 0)");
  EXPECT_EQ(seen(real, {flat, movedBy(0)}, PF_Quality_LO), "(0.5 1 0 0)(0.5 2 0 0)(0 0 0 0)") << "its share is clear";
}

TEST_F(TransformWorld, keepsToTheTargetsRectangle) {
  const PF_Rect middle{1, -3, 2, 5};
  EXPECT_EQ(seen(small, {movedBy(0)}, PF_Quality_LO, &middle), "(0 0 0 0)(255 20 0 0)(0 0 0 0)");
  const PF_Rect outside{5, 5, 9, 9};
  EXPECT_EQ(seen(small, {movedBy(0)}, PF_Quality_LO, &outside), "(0 0 0 0)(0 0 0 0)(0 0 0 0)");
}

TEST_F(TransformWorld, refusesModesAsTransferRectDoes) {
  const Image target(Depth::k8, 3, 1);
  PF_EffectWorld from = lend(small);
  PF_EffectWorld to = lend(target);
  const PF_CompositeMode adds{PF_Xfer_ADD, 0, 255, 0, 32768};
  const PF_FloatMatrix matrix = movedBy(0);
  EXPECT_EQ(moves->transform_world(ref(), PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &from, &adds, nullptr,
                                   &matrix, 1, 1, nullptr, &to),
            PF_Err_BAD_CALLBACK_PARAM);
  ASSERT_EQ(host.books().complaints().size(), 1U);
  EXPECT_EQ(host.books().complaints()[0].text, "transform_world with the mode 4");
}

TEST_F(TransformWorld, seesNothingOfAWorldWithoutPixels) {
  PF_EffectWorld nothing{};
  const Image target = rowOf<PF_Pixel>({{1, 2, 3, 4}});
  PF_EffectWorld to = lend(target);
  const PF_FloatMatrix matrix = movedBy(0);
  const PF_CompositeMode inFront{PF_Xfer_IN_FRONT, 0, 255, 0, 32768};
  EXPECT_EQ(moves->transform_world(ref(), PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &nothing, &inFront,
                                   nullptr, &matrix, 1, 1, nullptr, &to),
            PF_Err_NONE);
  EXPECT_EQ(textOfAny(target), "(1 2 3 4)");
}

/// Samples in a frame of one quality.
class Samples : public PixelServices {
 protected:
  template <class Pixel, class Sampler>
  std::string sampled(const Image& source, Sampler sampler, double x, double y, PF_Quality quality = PF_Quality_HI) {
    world = lend(source);
    params.src = &world;
    Pixel pixel{};
    effect.on[PF_Cmd_RENDER] = [&](const scripted::Call&) {
      return sampler(ref(), fixed(x), fixed(y), &params, &pixel);
    };
    standin::FrameRequest frame;
    frame.input = Image(Depth::k8, 1, 1);
    frame.quality = quality;
    answer = host.renderClassic(frame, host.defaults()).error;
    return textOf(pixel);
  }

  PF_EffectWorld world{};
  PF_SampPB params{};
  PF_Err answer = PF_Err_NONE;
  const PF_Sampling8Suite* eight = suite<PF_Sampling8Suite>(kPFSampling8Suite, 1);
  const PF_Sampling16Suite* sixteen = suite<PF_Sampling16Suite>(kPFSampling16Suite, 1);
  const PF_SamplingFloatSuite* floats = suite<PF_SamplingFloatSuite>(kPFSamplingFloatSuite, 1);
  const Image small = rowOf<PF_Pixel>({{255, 10, 0, 0}, {255, 20, 0, 0}});
  const Image deep = rowOf<PF_Pixel16>({{32768, 10, 0, 0}, {32768, 20, 0, 0}});
  const Image real = rowOf<PF_PixelFloat>({{1.0F, 1.0F, 0.0F, 0.0F}, {0.5F, 4.0F, 0.0F, 0.0F}});
};

TEST_F(Samples, betweenTwoPixelsAreMixedAtEveryDepth) {
  EXPECT_EQ(sampled<PF_Pixel>(small, eight->subpixel_sample, 0.5, 0.0), "(255 15 0 0)");
  EXPECT_EQ(sampled<PF_Pixel16>(deep, sixteen->subpixel_sample16, 0.5, 0.0), "(32768 15 0 0)");
  // (1 + 0.5) / 2; (1 * 1 + 0.5 * 4) / 1.5.
  EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->subpixel_sample_float, 0.5, 0.0), "(0.75 2 0 0)");
}

TEST_F(Samples, ofAnAreaAreItsMeanAtEveryDepth) {
  // A square of two pixels' side around the border between the two: half of it lies outside.
  params.x_radius = params.y_radius = fixed(1.0);
  EXPECT_EQ(sampled<PF_Pixel>(small, eight->area_sample, 0.5, 0.0), "(128 15 0 0)");
  EXPECT_EQ(sampled<PF_Pixel16>(deep, sixteen->area_sample16, 0.5, 0.0), "(16384 15 0 0)");
  EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->area_sample_float, 0.5, 0.0), "(0.375 2 0 0)");
  params.x_radius = 0;
  EXPECT_EQ(sampled<PF_Pixel>(small, eight->area_sample, 0.0, 0.0), "(0 0 0 0)") << "an area of nothing";
  params.x_radius = fixed(1.0);
  params.y_radius = 0;
  EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->area_sample_float, 0.0, 0.0), "(0 0 0 0)");
}

TEST_F(Samples, atLowQualityAreTheNearestPixel) {
  params.x_radius = params.y_radius = fixed(1.0);
  EXPECT_EQ(sampled<PF_Pixel>(small, eight->subpixel_sample, 0.75, 0.0, PF_Quality_LO), "(255 20 0 0)");
  EXPECT_EQ(sampled<PF_Pixel16>(deep, sixteen->area_sample16, 0.25, 0.0, PF_Quality_LO), "(32768 10 0 0)");
  EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->area_sample_float, 0.75, 0.0, PF_Quality_LO), "(0.5 4 0 0)");
  EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->nn_sample_float, 0.75, 0.0), "(0.5 4 0 0)") << "as asked";
}

TEST_F(Samples, outsideTheWorldAreClearOnEverySide) {
  params.x_radius = params.y_radius = fixed(0.5);
  for (const auto& [x, y] : {std::pair{-2.0, 0.0}, {0.0, -2.0}, {4.0, 0.0}, {0.0, 4.0}}) {
    EXPECT_EQ(sampled<PF_Pixel>(small, eight->nn_sample, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_Pixel>(small, eight->subpixel_sample, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_Pixel>(small, eight->area_sample, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_Pixel16>(deep, sixteen->nn_sample16, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_Pixel16>(deep, sixteen->subpixel_sample16, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_Pixel16>(deep, sixteen->area_sample16, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->nn_sample_float, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->subpixel_sample_float, x, y), "(0 0 0 0)");
    EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->area_sample_float, x, y), "(0 0 0 0)");
  }
}

TEST_F(Samples, ofAnAreaBelowNothingAreRefused) {
  const auto refused = [&](PF_Fixed x, PF_Fixed y) {
    params.x_radius = x;
    params.y_radius = y;
    EXPECT_EQ(sampled<PF_Pixel>(small, eight->area_sample, 0.0, 0.0), "(0 0 0 0)");
    EXPECT_EQ(answer, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(sampled<PF_Pixel16>(deep, sixteen->area_sample16, 0.0, 0.0), "(0 0 0 0)");
    EXPECT_EQ(answer, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(sampled<PF_PixelFloat>(real, floats->area_sample_float, 0.0, 0.0), "(0 0 0 0)");
    EXPECT_EQ(answer, PF_Err_BAD_CALLBACK_PARAM);
    ASSERT_EQ(host.books().complaints().size(), 3U) << report();
    EXPECT_EQ(host.books().complaints()[0].text, "area_sample with a radius below 0");
    host.books().clear();
  };
  refused(-1, 0);
  refused(0, -1);
}

TEST_F(Samples, ofAWorldWithoutPixelsAreClear) {
  PF_EffectWorld nothing{};
  params.src = &nothing;
  params.x_radius = params.y_radius = fixed(1.0);
  PF_Pixel pixel{1, 2, 3, 4};
  effect.on[PF_Cmd_RENDER] = [&](const scripted::Call&) {
    for (const auto sampler : {eight->nn_sample, eight->subpixel_sample, eight->area_sample}) {
      pixel = {1, 2, 3, 4};
      EXPECT_EQ(sampler(ref(), 0, 0, &params, &pixel), PF_Err_NONE);
      EXPECT_EQ(textOf(pixel), "(0 0 0 0)");
    }
    return PF_Err{PF_Err_NONE};
  };
  standin::FrameRequest frame;
  frame.input = Image(Depth::k8, 1, 1);
  EXPECT_EQ(host.renderClassic(frame, host.defaults()).error, PF_Err_NONE);
}

/// The loops at one depth; the function writes the source's red into the target's green.
template <class Pixel>
class Loops : public PixelServices {
 protected:
  const auto* loops() {
    if constexpr (std::is_same_v<Pixel, PF_Pixel>) {
      return this->template suite<PF_Iterate8Suite>(kPFIterate8Suite, 1);
    } else if constexpr (std::is_same_v<Pixel, PF_Pixel16>) {
      return this->template suite<PF_Iterate16Suite>(kPFIterate16Suite, 1);
    } else {
      return this->template suite<PF_IterateFloatSuite>(kPFIterateFloatSuite, 1);
    }
  }

  static Image numbered(int32_t width, int32_t height) {
    Image image(PixelFacts<Pixel>::depth, width, height);
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        image.at<Pixel>(x, y).red = static_cast<typename PixelFacts<Pixel>::Channel>(1 + x + 10 * y);
      }
    }
    return image;
  }

  static PF_Err mark(void* refcon, A_long x, A_long y, Pixel* from, Pixel* target) {
    target->green = from->red;
    auto* stopAt = static_cast<PF_Point*>(refcon);
    return stopAt != nullptr && stopAt->h == x && stopAt->v == y ? PF_Err{99} : PF_Err{PF_Err_NONE};
  }

  // The greens of a 3 x 2 target, "-" where nothing was written.
  static std::string greens(const Image& target) {
    std::string text;
    for (int32_t y = 0; y < target.height(); ++y) {
      for (int32_t x = 0; x < target.width(); ++x) {
        const auto green = target.at<Pixel>(x, y).green;
        text += green == 50 ? "-" : std::to_string(static_cast<int>(green));
        text += x + 1 < target.width() ? " " : "\n";
      }
    }
    return text;
  }

  static Image blank() {
    Image image(PixelFacts<Pixel>::depth, 3, 2);
    for (int32_t y = 0; y < 2; ++y) {
      for (int32_t x = 0; x < 3; ++x) image.at<Pixel>(x, y).green = 50;
    }
    return image;
  }
};

using HostPixels = testing::Types<PF_Pixel, PF_Pixel16, PF_PixelFloat>;
TYPED_TEST_SUITE(Loops, HostPixels);

TYPED_TEST(Loops, readWhereTheSourceLiesAndWriteNowhereElse) {
  const Image source = this->numbered(2, 2);
  PF_EffectWorld from = this->lend(source);
  const auto drawn = [&](const PF_Point* origin, const PF_Rect* area) {
    const Image target = this->blank();
    PF_EffectWorld to = this->lend(target);
    EXPECT_EQ(this->loops()->iterate_origin(this->in(), 0, 0, &from, area, origin, nullptr, this->mark, &to),
              PF_Err_NONE);
    return this->greens(target);
  };
  EXPECT_EQ(drawn(nullptr, nullptr), "1 2 -\n11 12 -\n");
  const PF_Point right{2, 1};
  EXPECT_EQ(drawn(&right, nullptr), "- - -\n- - 1\n");
  const PF_Point left{-1, -1};
  EXPECT_EQ(drawn(&left, nullptr), "12 - -\n- - -\n");
  const PF_Rect column{1, 0, 2, 9};
  EXPECT_EQ(drawn(nullptr, &column), "- 2 -\n- 12 -\n");
}

TYPED_TEST(Loops, withoutClippingReadNothingWhereNoSourceIs) {
  const Image source = this->numbered(2, 2);
  PF_EffectWorld from = this->lend(source);
  const auto drawn = [&](PF_Point origin) {
    const Image target = this->blank();
    PF_EffectWorld to = this->lend(target);
    EXPECT_EQ(
        this->loops()->iterate_origin_non_clip_src(this->in(), 0, 0, &from, nullptr, &origin, nullptr, this->mark, &to),
        PF_Err_NONE);
    return this->greens(target);
  };
  EXPECT_EQ(drawn({1, 1}), "0 0 0\n0 1 2\n");
  EXPECT_EQ(drawn({-1, -1}), "12 0 0\n0 0 0\n");
}

TYPED_TEST(Loops, withoutASourceReadTheTargetAndWithoutABlockComplainOfNobody) {
  const Image target = this->numbered(3, 2);
  PF_EffectWorld to = this->lend(target);
  EXPECT_EQ(this->loops()->iterate(nullptr, 0, 0, nullptr, nullptr, nullptr, this->mark, &to), PF_Err_NONE);
  EXPECT_EQ(this->greens(target), "1 2 3\n11 12 13\n");
  EXPECT_EQ(this->report(), "");
}

TYPED_TEST(Loops, endWithTheirFunctionsCodeOrWithTheProgressAndNoteIt) {
  const Image source = this->numbered(3, 2);
  const Image target = this->blank();
  PF_EffectWorld from = this->lend(source);
  PF_EffectWorld to = this->lend(target);
  PF_Point stopAt{1, 0};
  EXPECT_EQ(this->loops()->iterate(this->in(), 0, 0, &from, nullptr, &stopAt, this->mark, &to), 99);
  EXPECT_EQ(this->greens(target), "1 2 -\n- - -\n");
  EXPECT_EQ(this->host.log().calls.back().result, 99);
  this->host.faults().fail("progress", 2, 88);
  EXPECT_EQ(this->loops()->iterate(this->in(), 0, 2, &from, nullptr, nullptr, this->mark, &to), 88);
  EXPECT_EQ(this->greens(target), "1 2 3\n- - -\n");
  this->host.faults().fail("abort", 1, 87);
  EXPECT_EQ(this->loops()->iterate(this->in(), 0, 0, &from, nullptr, nullptr, this->mark, &to), 87);
  EXPECT_EQ(this->greens(target), "1 2 3\n- - -\n");
}

TEST_F(PixelServices, iterateLutLooksUpEachChannelThatHasATable) {
  A_u_char inverse[256];
  for (int i = 0; i < 256; ++i) inverse[i] = static_cast<A_u_char>(255 - i);
  const Image source = rowOf<PF_Pixel>({{1, 2, 3, 4}, {5, 6, 7, 8}});
  const Image target(Depth::k8, 3, 1);
  PF_EffectWorld from = lend(source);
  PF_EffectWorld to = lend(target);
  const auto* utils = host.utils();
  EXPECT_EQ(utils->iterate_lut(in(), 0, 0, &from, nullptr, inverse, nullptr, inverse, nullptr, &to), PF_Err_NONE);
  EXPECT_EQ(textOfAny(target), "(254 2 252 4)(250 6 248 8)(0 0 0 0)");
  const PF_Rect second{1, 0, 3, 1};
  EXPECT_EQ(utils->iterate_lut(nullptr, 0, 0, nullptr, &second, nullptr, inverse, nullptr, inverse, &to), PF_Err_NONE);
  EXPECT_EQ(textOfAny(target), "(254 2 252 4)(250 249 248 247)(0 255 0 255)") << "in place";
  host.onAbort = [] { return PF_Err{PF_Interrupt_CANCEL}; };
  EXPECT_EQ(utils->iterate_lut(in(), 0, 0, &from, nullptr, inverse, inverse, inverse, inverse, &to),
            PF_Interrupt_CANCEL);
}

TEST_F(PixelServices, theGeneralLoopEndsWithItsFunctionsCode) {
  int calls = 0;
  const auto work = [](void* refcon, A_long, A_long i, A_long) {
    ++*static_cast<int*>(refcon);
    return i == 1 ? PF_Err{99} : PF_Err{PF_Err_NONE};
  };
  EXPECT_EQ(host.utils()->iterate_generic(5, &calls, work), 99);
  EXPECT_EQ(calls, 2);
}

TEST_F(PixelServices, coloursComeBackFromTheirLumaAtEveryDepth) {
  // Luma a half without differences is a middle grey; alpha stays.
  PF_Fixed half[3] = {fixed(0.5), 0, 0};
  PF_Pixel pixel{7, 0, 0, 0};
  EXPECT_EQ(suite<PF_ColorSuite>(kPFColorSuite, 1)->YIQtoRGB(ref(), half, &pixel), PF_Err_NONE);
  EXPECT_EQ(textOf(pixel), "(7 128 128 128)");  // 127.5
  PF_Pixel16 deep{7, 0, 0, 0};
  EXPECT_EQ(suite<PF_Color16Suite>(kPFColor16Suite, 1)->YIQtoRGB(ref(), half, &deep), PF_Err_NONE);
  EXPECT_EQ(textOf(deep), "(7 16384 16384 16384)");
  PF_PixelFloat real{7.0F, 0.0F, 0.0F, 0.0F};
  EXPECT_EQ(suite<PF_ColorFloatSuite>(kPFColorFloatSuite, 1)->YIQtoRGB(ref(), half, &real), PF_Err_NONE);
  EXPECT_EQ(textOf(real), "(7 0.5 0.5 0.5)");
}

TEST_F(PixelServices, pixelDataIsGivenAtTheWorldsOwnDepthOnly) {
  const auto* data = suite<PF_PixelDataSuite>(kPFPixelDataSuite, 2);
  for (const Depth depth : standin::kAllDepths) {
    const Image image(depth, 1, 1);
    PF_EffectWorld world = lend(image);
    PF_Pixel elsewhere{};
    PF_Pixel* pixels8 = nullptr;
    PF_Pixel16* pixels16 = nullptr;
    PF_PixelFloat* pixelsFloat = nullptr;
    for (PF_Pixel* given : {static_cast<PF_Pixel*>(nullptr), &elsewhere}) {
      const void* own = given == nullptr ? world.data : given;
      EXPECT_EQ(data->get_pixel_data8(&world, given, &pixels8), PF_Err_NONE);
      EXPECT_EQ(static_cast<const void*>(pixels8), depth == Depth::k8 ? own : nullptr);
      EXPECT_EQ(data->get_pixel_data16(&world, given, &pixels16), PF_Err_NONE);
      EXPECT_EQ(static_cast<const void*>(pixels16), depth == Depth::k16 ? own : nullptr);
      EXPECT_EQ(data->get_pixel_data_float(&world, given, &pixelsFloat), PF_Err_NONE);
      EXPECT_EQ(static_cast<const void*>(pixelsFloat), depth == Depth::k32 ? own : nullptr);
    }
    void* card = &world;
    EXPECT_EQ(data->get_pixel_data_float_gpu(&world, &card), PF_Err_NONE);
    EXPECT_EQ(card, nullptr) << "no world of this host lies on a graphics card";
  }
  EXPECT_EQ(report(), "");
}

TEST_F(PixelServices, anEffectsOwnRecordGoesByItsDepthFlag) {
  const Image small(Depth::k8, 1, 1);
  const Image deep(Depth::k16, 1, 1);
  PF_EffectWorld own8 = small.view();
  PF_EffectWorld own16 = deep.view();
  const PF_Pixel color{255, 255, 0, 0};
  EXPECT_EQ(fills->fill(ref(), &color, nullptr, &own8), PF_Err_NONE);
  EXPECT_EQ(fills->fill(ref(), &color, nullptr, &own16), PF_Err_NONE);
  EXPECT_EQ(textOfAny(small), "(255 255 0 0)");
  EXPECT_EQ(textOfAny(deep), "(32768 32768 0 0)");
  EXPECT_EQ(host.log().calls.back().arguments, "own world 1 x 1 whole");
  EXPECT_EQ(report(), "");
}

TEST_F(PixelServices, theInputMayBeWrittenByAnEffectThatSaysSo) {
  effect.on[PF_Cmd_GLOBAL_SETUP] = [](const scripted::Call& call) {
    call.out->out_flags = PF_OutFlag_I_WRITE_INPUT_BUFFER;
    return PF_Err{PF_Err_NONE};
  };
  EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
  effect.on[PF_Cmd_RENDER] = [&](const scripted::Call& call) {
    PF_EffectWorld readOnly = call.params[0]->u.ld;
    readOnly.world_flags &= ~PF_WorldFlag_WRITEABLE;
    EXPECT_EQ(fills->fill(ref(), nullptr, nullptr, &readOnly), PF_Err_NONE);
    return fills->fill(ref(), nullptr, nullptr, &call.params[0]->u.ld);
  };
  standin::FrameRequest frame;
  frame.input = rowOf<PF_Pixel>({{1, 2, 3, 4}});
  EXPECT_EQ(host.renderClassic(frame, host.defaults()).error, PF_Err_NONE);
  EXPECT_EQ(report(), "");
}

/// Copies from and to rectangles that reach beyond their worlds.
template <class Pixel>
class Copies : public PixelServices {
 protected:
  // The reds of a target of 9s, after a copy of a source of 1 2 / 3 4.
  std::string reds(PF_Rect from, int32_t width, int32_t height, PF_Rect to) {
    Image source(PixelFacts<Pixel>::depth, 2, 2);
    Image target(PixelFacts<Pixel>::depth, width, height);
    fillWith(source, [](int32_t x, int32_t y) { return 1 + x + 2 * y; });
    fillWith(target, [](int32_t, int32_t) { return 9; });
    PF_EffectWorld one = lend(source);
    PF_EffectWorld other = lend(target);
    EXPECT_EQ(moves->copy(ref(), &one, &other, &from, &to), PF_Err_NONE);
    std::string text;
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) text += std::to_string(static_cast<int>(target.at<Pixel>(x, y).red));
      text += ' ';
    }
    return text;
  }

 private:
  template <class Value>
  static void fillWith(Image& image, Value value) {
    for (int32_t y = 0; y < image.height(); ++y) {
      for (int32_t x = 0; x < image.width(); ++x) {
        image.at<Pixel>(x, y).red = static_cast<typename PixelFacts<Pixel>::Channel>(value(x, y));
      }
    }
  }
};

TYPED_TEST_SUITE(Copies, HostPixels);

TYPED_TEST(Copies, ofAStretchedRectangleLeaveWhatHasNoSource) {
  // Two by two target pixels for each of the source's, of which only the middle or the right lower ones are there.
  EXPECT_EQ(this->reds({-1, -1, 1, 1}, 4, 4, {0, 0, 4, 4}), "9999 9999 9911 9911 ");
  EXPECT_EQ(this->reds({1, 1, 3, 3}, 4, 4, {0, 0, 4, 4}), "4499 4499 9999 9999 ");
}

TYPED_TEST(Copies, ofTheSameSizeGoWhereBothAre) {
  EXPECT_EQ(this->reds({0, 0, 2, 2}, 3, 3, {2, 1, 4, 3}), "999 991 993 ");
  EXPECT_EQ(this->reds({1, 0, 5, 2}, 2, 2, {-2, 0, 2, 2}), "99 99 ") << "what exists of both never meets";
}

TEST_F(PixelServices, aSmoothCopyOfClearPixelsMixesTheirColoursByPlaceAlone) {
  const Image source = rowOf<PF_PixelFloat>({{0.0F, 0.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F, 0.0F}});
  const Image target(Depth::k32, 4, 1);
  PF_EffectWorld from = lend(source);
  PF_EffectWorld to = lend(target);
  EXPECT_EQ(moves->copy_hq(ref(), &from, &to, nullptr, nullptr), PF_Err_NONE);
  EXPECT_EQ(textOfAny(target), "(0 0 0 0)(0 0.25 0 0)(0 0.75 0 0)(0 1 0 0)");
}

TEST_F(PixelServices, aFillOfARectangleBesideTheWorldIsNothingAtAnyDepth) {
  for (const Depth depth : standin::kAllDepths) {
    const Image image(depth, 2, 1);
    PF_EffectWorld world = lend(image);
    const PF_PixelFloat color{1.0F, 1.0F, 1.0F, 1.0F};
    for (const PF_Rect& beside :
         {PF_Rect{2, 0, 4, 1}, PF_Rect{0, -1, 2, 0}, PF_Rect{1, 0, 1, 1}, PF_Rect{1, 0, 0, 1}}) {
      EXPECT_EQ(fills->fill_float(ref(), &color, &beside, &world), PF_Err_NONE);
    }
    EXPECT_TRUE(standin::samePixels(image, Image(depth, 2, 1)));
  }
}

TEST_F(PixelServices, aWorldOfNoWidthOrNoHeightIsOneWithoutPixels) {
  PF_EffectWorld thin{};
  thin.height = 5;
  PF_EffectWorld flat{};
  flat.width = 5;
  EXPECT_EQ(fills->fill(ref(), nullptr, nullptr, &thin), PF_Err_NONE);
  EXPECT_EQ(fills->fill(ref(), nullptr, nullptr, &flat), PF_Err_NONE);
  EXPECT_EQ(report(), "");
}

}  // namespace
