// A layer as weight field and as colour source: what is read where, at each depth and with each tiling.
#include "effect/dots/LayerEffectMap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "tests/dots/LayerWorld.h"
#include "tests/support/AllPixels.h"

namespace vindrel {
namespace {

using test::LayerWorld;

constexpr Tiling none = Tiling::none;
constexpr Tiling repeat = Tiling::repeat;
constexpr Tiling mirror = Tiling::mirror;
constexpr Tiling extend = Tiling::extendEdge;
constexpr Tiling unknown = Tiling::unknown;

/// Names the tiling of a failure.
const char* nameOf(Tiling tiling) {
  constexpr const char* names[] = {"none", "repeat", "mirror", "extend edge", "unknown"};
  return names[static_cast<int32_t>(tiling)];
}

/// A map under which canvas pixel (x, y) is layer pixel (x, y).
template <class Pixel>
LayerEffectMap<Pixel> onTopLeft(LayerWorld<Pixel>& layer, Tiling tiling) {
  return {layer.view().width * 0.5, layer.view().height * 0.5, 0.0, 1.0, 1.0, tiling, layer.view()};
}

/// A layer of 10 by 6 pixels, each of which says where it is, seen from its top left corner.
struct TenBySix {
  explicit TenBySix(Tiling tiling) : map(onTopLeft(numbered(layer), tiling)) {}

  static LayerWorld<Pixel16>& numbered(LayerWorld<Pixel16>& layer) {
    layer.number();
    return layer;
  }
  int column(double x) const { return map.SamplePixel(x, 0.0).red; }
  int row(double y) const { return map.SamplePixel(0.0, y).green; }

  LayerWorld<Pixel16> layer{10, 6};
  LayerEffectMap<Pixel16> map;
};

constexpr Pixel16 opaqueBlack16{32768, 0, 0, 0};

// Where a position falls.

TEST(LayerEffectMap, aPositionInsideReadsItsOwnPixelUnderEveryTiling) {
  for (const Tiling tiling : {none, repeat, mirror, extend, unknown}) {
    const TenBySix ten(tiling);
    for (int row = 0; row < 6; ++row) {
      for (int column = 0; column < 10; ++column) {
        EXPECT_EQ(ten.map.SamplePixel(column, row),
                  (Pixel16{1, static_cast<uint16_t>(column), static_cast<uint16_t>(row), 7}))
            << "tiling " << nameOf(tiling);
      }
    }
  }
}

TEST(LayerEffectMap, positionsAreRoundedToTheNearestPixelAndHalvesGoUp) {
  const TenBySix ten(extend);
  EXPECT_EQ(ten.column(2.499), 2);
  EXPECT_EQ(ten.column(2.5), 3);
  EXPECT_EQ(ten.column(3.49), 3);
  EXPECT_EQ(ten.column(0.0), 0);
}

TEST(LayerEffectMap, negativeHalvesGoUpToo) {
  const TenBySix ten(mirror);      // on the low side -1 is column 1, -2 column 2
  EXPECT_EQ(ten.column(-0.5), 0);  // not -1
  EXPECT_EQ(ten.column(-0.51), 1);
  EXPECT_EQ(ten.column(-1.5), 1);  // not -2
  EXPECT_EQ(ten.column(-1.51), 2);
  EXPECT_EQ(ten.column(-2.49), 2);
}

TEST(LayerEffectMap, theNumberNextToMinusOneHalfGoesDown) {
  // The largest number below one half: adding a half gives a fraction, and taking one away rounds to -1.
  const TenBySix ten(mirror);
  EXPECT_EQ(ten.column(-0.49999999999999994), 1);
  EXPECT_EQ(ten.column(-0.4999999999999999), 0);
}

TEST(LayerEffectMap, theCentreOfTheLayerSitsOnTheGivenPoint) {
  LayerWorld<Pixel16> layer(10, 6);
  layer.number();
  const LayerEffectMap<Pixel16> map(100.0, 200.0, 0.0, 1.0, 1.0, none, layer.view());
  EXPECT_EQ(map.SamplePixel(100.0, 200.0), (Pixel16{1, 5, 3, 7}));
  EXPECT_EQ(map.SamplePixel(95.0, 197.0), (Pixel16{1, 0, 0, 7}));
  EXPECT_EQ(map.SamplePixel(104.0, 202.0), (Pixel16{1, 9, 5, 7}));
  EXPECT_EQ(map.SamplePixel(94.0, 197.0), opaqueBlack16);
  EXPECT_EQ(map.SamplePixel(105.0, 197.0), opaqueBlack16);
}

TEST(LayerEffectMap, anAngleTurnsTheLayerClockwiseAboutItsCentre) {
  LayerWorld<Pixel16> layer(20, 20);
  layer.number();
  const LayerEffectMap<Pixel16> quarter(50.0, 50.0, 90.0, 1.0, 1.0, none, layer.view());
  EXPECT_EQ(quarter.SamplePixel(55.0, 50.0), (Pixel16{1, 10, 5, 7}));   // right of the centre shows what was above
  EXPECT_EQ(quarter.SamplePixel(50.0, 55.0), (Pixel16{1, 15, 10, 7}));  // below shows what was to the right
  const LayerEffectMap<Pixel16> half(50.0, 50.0, 180.0, 1.0, 1.0, none, layer.view());
  EXPECT_EQ(half.SamplePixel(53.0, 54.0), (Pixel16{1, 7, 6, 7}));
}

TEST(LayerEffectMap, scalesCountLayerPixelsPerCanvasPixel) {
  LayerWorld<Pixel16> layer(20, 10);
  layer.number();
  const LayerEffectMap<Pixel16> map(5.0, 10.0, 0.0, 2.0, 0.5, none, layer.view());
  EXPECT_EQ(map.SamplePixel(0.0, 0.0), (Pixel16{1, 0, 0, 7}));
  EXPECT_EQ(map.SamplePixel(9.0, 18.0), (Pixel16{1, 18, 9, 7}));
  EXPECT_EQ(map.SamplePixel(3.0, 4.0), (Pixel16{1, 6, 2, 7}));
}

// Outside the layer.

TEST(LayerTiling, noneGivesOpaqueBlackOutsideAndSoNoWeight) {
  const TenBySix ten(none);
  for (const double x : {-1.0, 10.0, 1000.0, -1e12, 1e12}) {
    EXPECT_EQ(ten.map.SamplePixel(x, 0.0), opaqueBlack16) << x;
    EXPECT_EQ(ten.map.Evaluate(x, 0.0), 0.0) << x;
  }
  EXPECT_EQ(ten.map.SamplePixel(0.0, -1.0), opaqueBlack16);
  EXPECT_EQ(ten.map.SamplePixel(0.0, 6.0), opaqueBlack16);
}

TEST(LayerTiling, extendRepeatsTheEdgePixels) {
  const TenBySix ten(extend);
  EXPECT_EQ(ten.column(-1.0), 0);
  EXPECT_EQ(ten.column(-5000.0), 0);
  EXPECT_EQ(ten.column(10.0), 9);
  EXPECT_EQ(ten.column(5000.0), 9);
  EXPECT_EQ(ten.row(-1.0), 0);
  EXPECT_EQ(ten.row(6.0), 5);
}

TEST(LayerTiling, repeatBeginsAgainOnBothSides) {
  const TenBySix ten(repeat);
  EXPECT_EQ(ten.column(-1.0), 9);
  EXPECT_EQ(ten.column(-10.0), 0);
  EXPECT_EQ(ten.column(-11.0), 9);
  EXPECT_EQ(ten.column(-20.0), 0);
  EXPECT_EQ(ten.column(10.0), 0);
  EXPECT_EQ(ten.column(25.0), 5);
  EXPECT_EQ(ten.row(-1.0), 5);
  EXPECT_EQ(ten.row(-6.0), 0);
  EXPECT_EQ(ten.row(6.0), 0);
}

TEST(LayerTiling, mirrorRepeatsTheEdgePixelOnTheHighSideOnly) {
  const TenBySix ten(mirror);
  EXPECT_EQ(ten.column(10.0), 9);
  EXPECT_EQ(ten.column(19.0), 0);
  EXPECT_EQ(ten.column(20.0), 0);
  EXPECT_EQ(ten.column(-1.0), 1);
  EXPECT_EQ(ten.column(-10.0), 9);
  EXPECT_EQ(ten.column(-9.0), 9);
  EXPECT_EQ(ten.row(6.0), 5);
  EXPECT_EQ(ten.row(11.0), 0);
  EXPECT_EQ(ten.row(-1.0), 1);
}

TEST(LayerTiling, eachAxisIsTiledByItself) {
  const TenBySix ten(repeat);
  EXPECT_EQ(ten.map.SamplePixel(-1.0, 7.0), (Pixel16{1, 9, 1, 7}));
  EXPECT_EQ(ten.map.SamplePixel(3.0, -2.0), (Pixel16{1, 3, 4, 7}));
}

TEST(LayerTiling, agreesWithASlowWalkOverManyTiles) {
  // Step by step from the layer outward, with nothing but additions.
  for (const int32_t n : {1, 2, 3, 10}) {
    LayerWorld<Pixel16> layer(n, 1);
    layer.number();
    const LayerEffectMap<Pixel16> repeated = onTopLeft(layer, repeat);
    const LayerEffectMap<Pixel16> mirrored = onTopLeft(layer, mirror);
    int up = 0;
    int turning = 0;
    int step = 1;
    for (int c = 0; c < 5 * n; ++c) {
      ASSERT_EQ(repeated.SamplePixel(c, 0.0).red, up) << "n " << n << " c " << c;
      ASSERT_EQ(mirrored.SamplePixel(c, 0.0).red, turning) << "n " << n << " c " << c;
      // The low side is the high side's picture seen from column 0, which is not repeated there.
      ASSERT_EQ(mirrored.SamplePixel(-c, 0.0).red, turning) << "n " << n << " c " << -c;
      up = up + 1 == n ? 0 : up + 1;
      if (turning + step < 0 || turning + step >= n) {
        step = -step;
      } else {
        turning += step;
      }
    }
    int down = 0;
    for (int c = 0; c > -5 * n; --c) {
      ASSERT_EQ(repeated.SamplePixel(c, 0.0).red, down) << "n " << n << " c " << c;
      down = down == 0 ? n - 1 : down - 1;
    }
  }
}

TEST(LayerTiling, anUnknownTilingGivesOpaqueBlackFarOutside) {
  const TenBySix ten(unknown);
  EXPECT_EQ(ten.map.SamplePixel(-1.0, 0.0), opaqueBlack16);
  EXPECT_EQ(ten.map.SamplePixel(11.0, 0.0), opaqueBlack16);
  EXPECT_EQ(ten.map.SamplePixel(0.0, 7.0), opaqueBlack16);
}

TEST(LayerTiling, anUnknownTilingNeverReadsBeyondTheMemory) {
  // One column or one row beyond passes as inside; what lies beyond the memory must still not be read.
  const TenBySix ten(unknown);
  EXPECT_EQ(ten.map.SamplePixel(10.0, 5.0), opaqueBlack16);
  EXPECT_EQ(ten.map.SamplePixel(10.0, 6.0), opaqueBlack16);
  for (int column = 0; column <= 10; ++column) EXPECT_EQ(ten.map.SamplePixel(column, 6.0), opaqueBlack16);
}

TEST(LayerTiling, anUnknownTilingReadsOnInTheMemoryOneColumnBeyond) {
  // Rows without padding: the column beyond the last is the first of the next row.
  const TenBySix ten(unknown);
  EXPECT_EQ(ten.map.SamplePixel(10.0, 2.0), (Pixel16{1, 0, 3, 7}));
}

TEST(LayerTiling, positionsBeyond32BitsAndNoNumbersAreHarmless) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double x : {1e300, -1e300, infinity, -infinity, std::nan("")}) {
    // All of them become the smallest integer, -2147483648.
    EXPECT_EQ(TenBySix(none).map.SamplePixel(x, 0.0), opaqueBlack16) << x;
    EXPECT_EQ(TenBySix(extend).column(x), 0) << x;
    // Repeat wraps to column 18 and mirror to column -8, both outside the layer.
    EXPECT_EQ(TenBySix(repeat).map.SamplePixel(x, 0.0), opaqueBlack16) << x;
    EXPECT_EQ(TenBySix(mirror).map.SamplePixel(x, 0.0), opaqueBlack16) << x;
    EXPECT_EQ(TenBySix(unknown).map.SamplePixel(x, 0.0), opaqueBlack16) << x;
  }
}

TEST(LayerColor, aPositionOutsideGivesTheFallbackWhateverTheTiling) {
  const Pixel16 fallback{9, 8, 7, 6};
  for (const Tiling tiling : {none, repeat, mirror, extend, unknown}) {
    const TenBySix ten(tiling);
    for (const double x : {-1.0, 10.0, 11.0, 1e300}) {
      EXPECT_EQ(ten.map.SamplePixelOr(x, 0.0, fallback), fallback) << "tiling " << nameOf(tiling) << " x " << x;
    }
    EXPECT_EQ(ten.map.SamplePixelOr(0.0, -1.0, fallback), fallback);
    EXPECT_EQ(ten.map.SamplePixelOr(0.0, 6.0, fallback), fallback);
    EXPECT_EQ(ten.map.SamplePixelOr(9.0, 5.0, fallback), (Pixel16{1, 9, 5, 7}));
    EXPECT_EQ(ten.map.SamplePixelOr(0.0, 0.0, fallback), (Pixel16{1, 0, 0, 7}));
  }
}

// The memory of a layer.

template <class Pixel>
class LayerMemory : public ::testing::Test {};
TYPED_TEST_SUITE(LayerMemory, test::AllPixels);

TYPED_TEST(LayerMemory, rowsMayBePaddedAndUnaligned) {
  for (const int32_t padding : {0, 1, 3, 16, 61}) {
    LayerWorld<TypeParam> layer(5, 4, padding);
    layer.number();
    const LayerEffectMap<TypeParam> map = onTopLeft(layer, none);
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 5; ++column) {
        const TypeParam pixel = map.SamplePixel(column, row);
        EXPECT_EQ(pixel.red, column) << "padding " << padding;
        EXPECT_EQ(pixel.green, row) << "padding " << padding;
      }
    }
  }
}

TYPED_TEST(LayerMemory, aLayerOfOnePixelIsReadUnderEveryTiling) {
  LayerWorld<TypeParam> layer(1, 1);
  const TypeParam pixel{1, 0, 1, 0};
  layer.set(0, 0, pixel);
  for (const Tiling tiling : {repeat, mirror, extend}) {
    const LayerEffectMap<TypeParam> map = onTopLeft(layer, tiling);
    for (const double x : {-7.0, -1.0, 0.0, 1.0, 12.0}) EXPECT_EQ(map.SamplePixel(x, -x), pixel) << x;
  }
}

TYPED_TEST(LayerMemory, withoutALayerThereIsNoWeightAndNoColor) {
  const TypeParam fallback{1, 0, 1, 0};
  const LayerView<TypeParam> noLayer;
  for (const Tiling tiling : {none, repeat, mirror, extend, unknown}) {
    const LayerEffectMap<TypeParam> map(3.0, 4.0, 30.0, 1.0, 1.0, tiling, noLayer);
    EXPECT_FALSE(map.hasPixels());
    EXPECT_EQ(map.Evaluate(3.0, 4.0), 0.0);
    EXPECT_EQ(map.SamplePixelOr(3.0, 4.0, fallback), fallback);
    EXPECT_EQ(map.SamplePixel(3.0, 4.0), (TypeParam{PixelTraits<TypeParam>::fullScale, 0, 0, 0}));
  }
}

TYPED_TEST(LayerMemory, aLayerOfNoWidthOrNoHeightIsAsNone) {
  const TypeParam fallback{1, 0, 1, 0};
  for (const auto& [width, height] : {std::pair{0, 5}, std::pair{5, 0}, std::pair{0, 0}, std::pair{-5, 5}}) {
    for (const Tiling tiling : {none, repeat, mirror, extend, unknown}) {
      LayerWorld<TypeParam> layer(1, 1);  // there is memory: the size alone tells
      layer.view().width = width;
      layer.view().height = height;
      const LayerEffectMap<TypeParam> map = onTopLeft(layer, tiling);
      EXPECT_FALSE(map.hasPixels());
      EXPECT_EQ(map.Evaluate(0.0, 0.0), 0.0);
      EXPECT_EQ(map.Evaluate(-7.0, 9.0), 0.0);
      EXPECT_EQ(map.SamplePixelOr(0.0, 0.0, fallback), fallback);
    }
  }
}

TYPED_TEST(LayerMemory, aWorldWithoutMemoryIsAsNone) {
  LayerWorld<TypeParam> layer(4, 4);
  layer.view().pixels = nullptr;
  const LayerEffectMap<TypeParam> map = onTopLeft(layer, repeat);
  EXPECT_FALSE(map.hasPixels());
  EXPECT_EQ(map.Evaluate(1.0, 1.0), 0.0);
}

// The weight of a pixel.

template <class Pixel>
double weightOf(const Pixel& pixel) {
  LayerWorld<Pixel> layer(1, 1);
  layer.set(0, 0, pixel);
  return onTopLeft(layer, none).Evaluate(0.0, 0.0);
}

TEST(LayerWeight, blackAndTransparentPixelsHaveNone) {
  EXPECT_EQ(weightOf(Pixel8{255, 0, 0, 0}), 0.0);
  EXPECT_EQ(weightOf(Pixel8{0, 255, 255, 255}), 0.0);
  EXPECT_EQ(weightOf(Pixel16{32768, 0, 0, 0}), 0.0);
  EXPECT_EQ(weightOf(Pixel16{0, 32768, 32768, 32768}), 0.0);
  EXPECT_EQ(weightOf(Pixel32{1.0F, 0.0F, 0.0F, 0.0F}), 0.0);
  EXPECT_EQ(weightOf(Pixel32{0.0F, 1.0F, 1.0F, 1.0F}), 0.0);
}

TEST(LayerWeight, eachChannelHasItsShareAt8Bits) {
  EXPECT_DOUBLE_EQ(weightOf(Pixel8{255, 255, 0, 0}), 0.298912);
  EXPECT_DOUBLE_EQ(weightOf(Pixel8{255, 0, 255, 0}), 0.586611);
  EXPECT_DOUBLE_EQ(weightOf(Pixel8{255, 0, 0, 255}), 0.114478);
}

TEST(LayerWeight, eachChannelHasItsShareAt16Bits) {
  EXPECT_EQ(weightOf(Pixel16{32768, 32768, 0, 0}), 0.298912);
  EXPECT_EQ(weightOf(Pixel16{32768, 0, 32768, 0}), 0.586611);
  EXPECT_EQ(weightOf(Pixel16{16384, 0, 0, 32768}), 0.114478 / 2.0);
}

TEST(LayerWeight, eachChannelHasItsShareInFloat) {
  EXPECT_EQ(weightOf(Pixel32{1.0F, 1.0F, 0.0F, 0.0F}), 0.298912);
  EXPECT_EQ(weightOf(Pixel32{1.0F, 0.0F, 1.0F, 0.0F}), 0.586611);
  EXPECT_EQ(weightOf(Pixel32{0.5F, 0.0F, 0.0F, 1.0F}), 0.114478 / 2.0);
}

TEST(LayerWeight, whiteIsCutToOneAtTheIntegerDepths) {
  // The three shares sum to 1.000001.
  EXPECT_EQ(weightOf(Pixel8{255, 255, 255, 255}), 255 * 0.00392156862745098);
  EXPECT_EQ(weightOf(Pixel16{32768, 32768, 32768, 32768}), 1.0);
  EXPECT_EQ(weightOf(Pixel8{51, 255, 255, 255}), 51 * 0.00392156862745098);
}

TEST(LayerWeight, isNotCutInFloat) {
  EXPECT_DOUBLE_EQ(weightOf(Pixel32{1.0F, 1.0F, 1.0F, 1.0F}), 1.000001);
  EXPECT_DOUBLE_EQ(weightOf(Pixel32{1.0F, 3.0F, 3.0F, 3.0F}), 3.000003);
  EXPECT_DOUBLE_EQ(weightOf(Pixel32{2.0F, 0.0F, -1.0F, 0.0F}), -1.173222);
}

TEST(LayerWeight, floatChannelsAreWidenedBeforeTheyAreMixed) {
  const auto tenth = static_cast<double>(0.1F);
  EXPECT_EQ(weightOf(Pixel32{0.1F, 0.1F, 0.1F, 0.1F}),
            (tenth * 0.586611 + tenth * 0.298912 + tenth * 0.114478) * tenth);
}

}  // namespace
}  // namespace vindrel
