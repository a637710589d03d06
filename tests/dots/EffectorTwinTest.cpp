// Effectors with their maps against the plain twin, to the last bit of every value: which product comes first, and what
// is added to what, decides on levels of a colour and on the columns of a layer.
#include <gtest/gtest.h>

#include <cmath>

#include "effect/dots/Effector.h"
#include "effect/dots/LayerEffectMap.h"
#include "tests/dots/ExpectDraft.h"
#include "tests/dots/Frames.h"
#include "tests/dots/LayerWorld.h"
#include "tests/dots/PlainEffector.h"
#include "tests/support/AllPixels.h"
#include "tests/support/Dice.h"

namespace vindrel {
namespace {

using test::expectSame;
using test::LayerWorld;
using test::MappedEffector;

/// Values as the controls of an effector hold them.
class RandomControls : public test::Dice {
 public:
  using Dice::Dice;
  Bool8 flag() { return static_cast<Bool8>(below(2)); }
  uint8_t byte() { return static_cast<uint8_t>(below(3) == 0 ? below(2) * 255 : below(256)); }
  PF_Fixed fixed(double low, double high) { return static_cast<PF_Fixed>(number(low, high) * 65536.0); }
  /// Degrees, often a right angle.
  PF_Fixed angle() {
    return below(3) == 0 ? (static_cast<PF_Fixed>(below(17)) - 8) * 90 * 65536 : fixed(-3000.0, 3000.0);
  }
};

EffectorParams randomEffector(RandomControls& random) {
  EffectorParams e{};
  e.enabled = 1;
  e.effectMap = 1 + static_cast<int32_t>(random.below(6));
  e.angle = random.angle();
  e.position = {random.fixed(-50.0, 150.0), random.fixed(-50.0, 150.0)};
  e.centerDotToFront = random.flag();
  e.size = random.below(8) == 0 ? 0.0 : random.number(0.0, 150.0);
  e.falloff = random.below(4) == 0 ? random.below(2) * 100.0 : random.number(0.0, 100.0);
  e.fitToLayer = random.flag();
  e.pickSourceColor = random.flag();
  e.tiling = 1 + static_cast<int32_t>(random.below(4));
  e.absolute = random.flag();
  e.absSize = random.number(0.0, 100.0);
  e.absAspect = random.number(-130.0, 130.0);
  e.absRotation = random.angle();
  e.absOpacity = random.number(0.0, 100.0);
  e.ratioSize = random.number(0.0, 4.0);
  e.ratioAspect = random.number(0.0, 4.0);
  e.ratioRotation = random.number(0.0, 4.0);
  e.ratioOpacity = random.number(0.0, 4.0);
  e.offsetSize = random.number(-100.0, 100.0);
  e.offsetAspect = random.number(-130.0, 130.0);
  e.offsetRotation = random.angle();
  e.offsetOpacity = random.number(-100.0, 100.0);
  e.color = random.flag();
  e.blendMode = static_cast<int32_t>(random.below(16));
  e.blendColor = {.alpha = random.byte(), .red = random.byte(), .green = random.byte(), .blue = random.byte()};
  e.shiftHue = random.below(2) == 0 ? 0 : random.angle();
  return e;
}

template <class Pixel>
Pixel randomPixel(RandomControls& random) {
  const auto channel = [&] {
    if constexpr (std::is_same_v<Pixel, Pixel32>) {
      return static_cast<float>(random.number(-0.25, 1.75));
    } else {
      return static_cast<Channel<Pixel>>(random.below(PixelTraits<Pixel>::fullScale + 1U));
    }
  };
  const auto alpha = channel();
  const auto red = channel();
  const auto green = channel();
  return {alpha, red, green, channel()};
}

template <class Pixel>
class EffectorTwin : public ::testing::Test {};
TYPED_TEST_SUITE(EffectorTwin, test::AllPixels);

TYPED_TEST(EffectorTwin, everyValueIsThatOfThePlainStepsBitForBit) {
  constexpr uint32_t seed = 31337;
  constexpr int32_t canvasWidth = 97;
  constexpr int32_t canvasHeight = 61;
  RandomControls random(seed);
  LayerWorld<TypeParam> layer(13, 9, 5);
  for (int32_t row = 0; row < 9; ++row) {
    for (int32_t column = 0; column < 13; ++column) layer.set(column, row, randomPixel<TypeParam>(random));
  }
  int changed = 0;
  for (int round = 0; round < 40000; ++round) {
    EffectorParams params = randomEffector(random);
    if (random.below(8) != 0) params.customMapLayer = layer.world();
    const MappedEffector<TypeParam> mapped(params, canvasWidth, canvasHeight);
    for (int place = 0; place < 3; ++place) {
      const bool frontOrdering = random.below(4) != 0;
      DotDraft<TypeParam> before{};
      before.frontKey = random.below(2) == 0 ? -1.0 : random.number(0.0, 9000.0);
      before.x = random.number(-40.0, 140.0);
      before.y = random.number(-40.0, 140.0);
      before.size = random.number(-20.0, 60.0);
      before.aspect = random.number(-2.0, 2.0);
      before.rotation = random.number(-7.0, 7.0);
      before.opacity = random.number(-1.0, 2.0);
      before.color = randomPixel<TypeParam>(random);
      DotDraft<TypeParam> dot = before;
      applyEffector(mapped.state, *mapped.map, frontOrdering, dot);
      DotDraft<TypeParam> expected = before;
      plain::applyEffector(params, canvasWidth, canvasHeight, frontOrdering, expected);
      expectSame(dot, expected);
      if (this->HasFailure()) {
        FAIL() << "seed " << seed << ", round " << round << ", effect map " << params.effectMap << ", place "
               << before.x << ", " << before.y;
      }
      changed += dot.size == before.size ? 0 : 1;
    }
  }
  EXPECT_GT(changed, 60000);
}

TEST(LayerTwin, besideEachEdgeOfAColumnLastBitsDecideAsInThePlainSteps) {
  constexpr uint32_t seed = 8086;
  RandomControls random(seed);
  LayerWorld<Pixel16> layer(13, 9);
  layer.number();
  for (int round = 0; round < 20000; ++round) {
    EffectorParams params = randomEffector(random);
    params.effectMap = 1;
    params.customMapLayer = layer.world();
    params.tiling = 2;
    const auto canvasWidth = static_cast<int32_t>(1 + random.below(300));
    const auto canvasHeight = static_cast<int32_t>(1 + random.below(300));
    const MappedEffector<Pixel16> mapped(params, canvasWidth, canvasHeight);
    const auto& layerMap = mapped.layerMap();
    const auto positionOf = [&](double x, double y) {
      return plain::layerPosition(params, canvasWidth, canvasHeight, x, y);
    };
    const double y = random.number(-40.0, 140.0);
    double x = random.number(-40.0, 140.0);
    // Go to where the column changes, and then look at the numbers next to that place on both sides.
    const double columnsPerPixel = positionOf(x + 1.0, y).u - positionOf(x, y).u;
    if (std::abs(columnsPerPixel) < 0.01) continue;
    for (int step = 0; step < 3; ++step) {
      const double u = positionOf(x, y).u;
      x += (std::floor(u) + 0.5 - u) / columnsPerPixel;
    }
    for (int step = 0; step < 8; ++step) x = std::nextafter(x, -1e9);
    for (int step = 0; step < 16; ++step) {
      const Pixel16 expected = plain::layerPixel(params, plain::layerPlace(positionOf(x, y)), Pixel16{});
      ASSERT_EQ(layerMap.SamplePixel(x, y), expected)
          << "seed " << seed << ", round " << round << ", place " << x << ", " << y;
      x = std::nextafter(x, 1e9);
    }
  }
}

}  // namespace
}  // namespace vindrel
