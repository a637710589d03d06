// Which map an effector gets, and with which numbers.
#include "effect/dots/EffectMap.h"

#include <gtest/gtest.h>

#include <cmath>

#include "effect/dots/Effector.h"
#include "effect/dots/LayerEffectMap.h"
#include "tests/dots/Frames.h"
#include "tests/dots/LayerWorld.h"

namespace vindrel {
namespace {

using test::fixed;
using test::LayerWorld;
using test::MappedEffector;

/// At (20, 30), reach 40, falloff a half.
EffectorParams effector(int32_t effectMap) {
  EffectorParams params{};
  params.effectMap = effectMap;
  params.position = {fixed(20.0), fixed(30.0)};
  params.size = 40.0;
  params.falloff = 50.0;
  params.tiling = 1;
  return params;
}

template <class Pixel = Pixel8>
MappedEffector<Pixel> mapOf(const EffectorParams& params, int32_t canvasWidth = 100, int32_t canvasHeight = 80) {
  return MappedEffector<Pixel>(params, canvasWidth, canvasHeight);
}

template <class Map, class Pixel>
bool is(const MappedEffector<Pixel>& effector) {
  return dynamic_cast<const Map*>(&*effector.map) != nullptr;
}

TEST(MakeEffectMap, eachPopupItemHasItsMap) {
  EXPECT_TRUE(is<LayerEffectMap<Pixel8>>(mapOf(effector(1))));
  EXPECT_TRUE(is<RadialEffectMap>(mapOf(effector(3))));
  EXPECT_TRUE(is<RadialEffectMap>(mapOf(effector(4))));
  EXPECT_TRUE(is<LinearEffectMap>(mapOf(effector(5))));
  EXPECT_TRUE(is<LinearEffectMap>(mapOf(effector(6))));
}

TEST(MakeEffectMap, theSeparatorAndUnknownItemsAreLinearWithoutMirror) {
  for (const int32_t item : {2, 0, -1, 7, 1000}) {
    const auto mapped = mapOf(effector(item));
    ASSERT_TRUE(is<LinearEffectMap>(mapped)) << item;
    EXPECT_EQ(mapped.map->Evaluate(20.0, 130.0), 1.0) << item;  // far behind the line
    EXPECT_EQ(mapped.map->Evaluate(20.0, 0.0), 0.5) << item;    // 30 of 40 up, the ramp begins at 20
  }
}

TEST(MakeEffectMap, aLayerMapIsOfTheDepthOfTheFrame) {
  EXPECT_TRUE(is<LayerEffectMap<Pixel16>>(mapOf<Pixel16>(effector(1))));
  EXPECT_TRUE(is<LayerEffectMap<Pixel32>>(mapOf<Pixel32>(effector(1))));
}

TEST(MakeEffectMap, itemsFourAndSixAreMirrored) {
  EXPECT_EQ(mapOf(effector(3)).map->Evaluate(20.0, 30.0), 1.0);
  EXPECT_EQ(mapOf(effector(4)).map->Evaluate(20.0, 30.0), 0.0);  // the full weight lies on the ring
  EXPECT_EQ(mapOf(effector(4)).map->Evaluate(40.0, 30.0), 1.0);
  EXPECT_EQ(mapOf(effector(5)).map->Evaluate(20.0, 130.0), 1.0);
  EXPECT_EQ(mapOf(effector(6)).map->Evaluate(20.0, 130.0), 0.0);
}

TEST(MakeEffectMap, aLinearMapTakesTheAngleInDegrees) {
  EffectorParams params = effector(5);
  params.angle = fixed(90.0);
  EXPECT_EQ(mapOf(params).map->Evaluate(50.0, 30.0), 0.5);
  EXPECT_EQ(mapOf(params).map->Evaluate(-50.0, 30.0), 1.0);
}

TEST(MakeEffectMap, aLayerSitsOnTheEffectorsPositionAndTurnsByItsAngle) {
  LayerWorld<Pixel8> layer(10, 10);
  layer.number();
  EffectorParams params = effector(1);
  params.customMapLayer = layer.world();
  EXPECT_EQ(mapOf(params).layerMap().SamplePixel(22.0, 29.0), (Pixel8{1, 7, 4, 7}));

  params.angle = fixed(180.0);
  EXPECT_EQ(mapOf(params).layerMap().SamplePixel(22.0, 29.0), (Pixel8{1, 3, 6, 7}));
}

TEST(MakeEffectMap, aFittedLayerOfTheCanvasSizeIsReadPixelForPixelWhateverPositionAndAngle) {
  LayerWorld<Pixel16> layer(33, 17);
  layer.number();
  EffectorParams params = effector(1);
  params.customMapLayer = layer.world();
  params.fitToLayer = 1;
  params.angle = fixed(77.0);
  params.position = {fixed(-5.5), fixed(812.25)};
  const auto mapped = mapOf<Pixel16>(params, 33, 17);
  const auto& layerMap = mapped.layerMap();
  for (int y = 0; y < 17; ++y) {
    for (int x = 0; x < 33; ++x) {
      ASSERT_EQ(layerMap.SamplePixel(x, y), (Pixel16{1, static_cast<uint16_t>(x), static_cast<uint16_t>(y), 7}));
    }
  }
}

TEST(MakeEffectMap, aFittedLayerIsStretchedOverTheCanvas) {
  LayerWorld<Pixel16> layer(20, 40);
  layer.number();
  EffectorParams params = effector(1);
  params.customMapLayer = layer.world();
  params.fitToLayer = 1;
  const auto mapped = mapOf<Pixel16>(params, 100, 80);
  const auto& layerMap = mapped.layerMap();
  EXPECT_EQ(layerMap.SamplePixel(0.0, 0.0), (Pixel16{1, 0, 0, 7}));
  EXPECT_EQ(layerMap.SamplePixel(50.0, 40.0), (Pixel16{1, 10, 20, 7}));
  EXPECT_EQ(layerMap.SamplePixel(95.0, 78.0), (Pixel16{1, 19, 39, 7}));
}

TEST(MakeEffectMap, aFittedLayerThatIsMissingGivesNoWeight) {
  EffectorParams params = effector(1);
  params.fitToLayer = 1;
  for (const int32_t tiling : {1, 2, 3, 4, 5}) {
    params.tiling = tiling;
    EXPECT_EQ(mapOf<Pixel8>(params).map->Evaluate(20.0, 30.0), 0.0);
    EXPECT_EQ(mapOf<Pixel16>(params).map->Evaluate(20.0, 30.0), 0.0);
    EXPECT_EQ(mapOf<Pixel32>(params).map->Evaluate(20.0, 30.0), 0.0);
  }
}

TEST(MakeEffectMap, aFittedLayerOfNoSizeGivesNoWeight) {
  LayerWorld<Pixel8> layer(0, 0);
  EffectorParams params = effector(1);
  params.customMapLayer = layer.world();
  params.fitToLayer = 1;
  for (const int32_t tiling : {1, 2, 3, 4}) {
    params.tiling = tiling;
    EXPECT_EQ(mapOf(params).map->Evaluate(20.0, 30.0), 0.0);
  }
}

TEST(MakeEffectMap, aFittedLayerOnACanvasOfNoSizeIsHarmless) {
  LayerWorld<Pixel8> layer(4, 4);
  layer.fill(Pixel8{255, 255, 255, 255});
  EffectorParams params = effector(1);
  params.customMapLayer = layer.world();
  params.fitToLayer = 1;
  EXPECT_EQ(mapOf(params, 0, 0).map->Evaluate(0.0, 0.0), 0.0);
}

TEST(MakeEffectMap, eachTilingItemReachesTheLayer) {
  LayerWorld<Pixel8> layer(10, 10);
  layer.number();
  EffectorParams params = effector(1);
  params.customMapLayer = layer.world();
  const auto columnLeftOfTheLayer = [&](int32_t tiling) {
    params.tiling = tiling;
    return int{mapOf(params).layerMap().SamplePixel(13.0, 30.0).red};  // column -2
  };
  EXPECT_EQ(columnLeftOfTheLayer(1), 0);  // opaque black
  EXPECT_EQ(columnLeftOfTheLayer(2), 8);
  EXPECT_EQ(columnLeftOfTheLayer(3), 2);
  EXPECT_EQ(columnLeftOfTheLayer(4), 0);
}

}  // namespace
}  // namespace vindrel
