// From the controls of a frame to the settings of its field: units, down-sampling, and the items of the popups. The
// last bits are held by the plain twins of the field too, which start from the controls.
#include "effect/filter/MakeFieldSettings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "effect/params/Choices.h"
#include "tests/support/Fixed.h"

namespace vindrel {
namespace {

using test::fixed;

constexpr double degree = 0.017453292519943295;
constexpr int32_t least = std::numeric_limits<int32_t>::min();
constexpr int32_t greatest = std::numeric_limits<int32_t>::max();

PF_InData fullResolution() {
  PF_InData in_data{};
  in_data.downsample_x = in_data.downsample_y = {1, 1};
  return in_data;
}

template <class Pixel = Pixel8>
FieldSettings<Pixel> settingsOf(const RenderParams& params, const PF_InData& in_data = fullResolution()) {
  return makeFieldSettings<Pixel>(params, in_data);
}

template <class Pixel = Pixel8>
EffectorState<Pixel> effectorOf(const EffectorParams& effector) {
  RenderParams params{};
  params.effector[1] = effector;
  return settingsOf<Pixel>(params).effectors[1];
}

TEST(MakeFieldSettings, theLatticeIsInPixelsAndRadians) {
  RenderParams params{};
  params.centerPosition = {fixed(12.5), fixed(-3.25)};
  params.globalRotationCenter = rotationCenterCenterItem;
  params.globalRotation = fixed(-450.5);
  params.distanceBetween = distanceBetweenCentersItem;
  params.dotDistanceX = 7.5;
  params.dotDistanceY = 0.5;
  params.randomDistanceX = 1.5;
  params.randomDistanceY = 2.5;
  const LatticeSettings lattice = settingsOf(params).lattice;
  EXPECT_EQ(lattice.centerX, 12.5);
  EXPECT_EQ(lattice.centerY, -3.25);
  EXPECT_EQ(lattice.rotationCenterX, 12.5);
  EXPECT_EQ(lattice.rotationCenterY, -3.25);
  EXPECT_EQ(lattice.rotation, -450.5 * degree);
  EXPECT_EQ(lattice.pitchX, 7.5);
  EXPECT_EQ(lattice.pitchY, 0.5);
  EXPECT_EQ(lattice.jitterX, 1.5);
  EXPECT_EQ(lattice.jitterY, 2.5);
}

TEST(MakeFieldSettings, dotsAddTheSizeToTheDistanceAndCentersDoNot) {
  RenderParams params{};
  params.dotSize = 10.0;
  params.dotDistanceX = 3.0;
  params.dotDistanceY = 4.0;
  const std::pair<int32_t, std::pair<double, double>> expected[] = {{distanceBetweenDotsItem, {13.0, 14.0}},
                                                                    {distanceBetweenCentersItem, {3.0, 4.0}},
                                                                    {0, {1.0, 1.0}},
                                                                    {3, {1.0, 1.0}},
                                                                    {least, {1.0, 1.0}},
                                                                    {greatest, {1.0, 1.0}}};
  for (const auto& [item, pitches] : expected) {
    params.distanceBetween = item;
    EXPECT_EQ(settingsOf(params).lattice.pitchX, pitches.first) << item;
    EXPECT_EQ(settingsOf(params).lattice.pitchY, pitches.second) << item;
  }
}

TEST(MakeFieldSettings, eachItemNamesItsOwnRotationCenterAndAnyOtherNumberTheOrigin) {
  RenderParams params{};
  params.centerPosition = {fixed(1.5), fixed(2.5)};
  for (int effector = 0; effector < 3; ++effector) {
    params.effector[effector].enabled = 0;
    params.effector[effector].position = {fixed(10.0 + effector), fixed(20.0 + effector)};
  }
  const std::pair<int32_t, std::pair<double, double>> expected[] = {
      {1, {1.5, 2.5}}, {2, {10.0, 20.0}}, {3, {11.0, 21.0}},   {4, {12.0, 22.0}},
      {0, {0.0, 0.0}}, {5, {0.0, 0.0}},   {least, {0.0, 0.0}}, {greatest, {0.0, 0.0}}};
  for (const auto& [item, center] : expected) {
    params.globalRotationCenter = item;
    EXPECT_EQ(settingsOf(params).lattice.rotationCenterX, center.first) << item;
    EXPECT_EQ(settingsOf(params).lattice.rotationCenterY, center.second) << item;
  }
}

TEST(MakeFieldSettings, theTimeAndTheScheduleAreHandedOn) {
  RenderParams params{};
  params.randomSeed = -5;
  params.randomInterval = 6;
  params.randomArray = 7;
  PF_InData in_data = fullResolution();
  in_data.current_time = -1234;
  in_data.time_step = 56;
  const RandomSchedule random = settingsOf(params, in_data).random;
  EXPECT_EQ(random.seed, -5);
  EXPECT_EQ(random.interval, 6);
  EXPECT_EQ(random.array, 7);
  EXPECT_EQ(random.currentTime, -1234);
  EXPECT_EQ(random.timeStep, 56);
}

TEST(MakeFieldSettings, theBaseDotIsInSharesAndRadians) {
  RenderParams params{};
  params.dotSize = 12.25;
  params.dotAspect = -40.0;
  params.dotRotation = fixed(30.5);
  params.dotOpacity = 150.0;
  params.dotShape = starShape;
  params.dotColor = {.alpha = 255, .red = 255, .green = 125, .blue = 20};
  params.centerDotToFront = 1;
  const FieldSettings<Pixel8> settings = settingsOf(params);
  EXPECT_EQ(settings.base.baseSize, 12.25);
  EXPECT_EQ(settings.base.baseAspect, -40.0 / 100.0);
  EXPECT_EQ(settings.base.baseRotation, 30.5 * degree);
  EXPECT_EQ(settings.base.baseOpacity, 1.5);  // limited only where it is drawn from
  EXPECT_EQ(settings.base.baseColor, (Pixel8{255, 255, 125, 20}));
  EXPECT_EQ(settings.base.shape, 5);
  EXPECT_TRUE(settings.centerDotToFront);
}

TEST(MakeFieldSettings, anAspectBeyondAHundredPercentIsClamped) {
  RenderParams params{};
  params.dotAspect = 250.0;
  EXPECT_EQ(settingsOf(params).base.baseAspect, 1.0);
  params.dotAspect = -100.5;
  EXPECT_EQ(settingsOf(params).base.baseAspect, -1.0);
}

TEST(MakeFieldSettings, colorsHaveTheScaleOfTheirDepth) {
  RenderParams params{};
  params.dotColor = {.alpha = 255, .red = 255, .green = 125, .blue = 20};
  params.effector[2].blendColor = params.dotColor;
  const Pixel16 color16{32768, 32768, 16062, 2570};  // 125 / 255 * 32768 = 16062.7, 20 / 255 * 32768 = 2570.04
  EXPECT_EQ(settingsOf<Pixel16>(params).base.baseColor, color16);
  EXPECT_EQ(settingsOf<Pixel16>(params).effectors[2].blendColor, color16);
  EXPECT_EQ(settingsOf<Pixel32>(params).base.baseColor.green, static_cast<float>(125.0 / 255.0));
  EXPECT_EQ(settingsOf<Pixel32>(params).effectors[2].blendColor.green, static_cast<float>(125.0 / 255.0));
}

TEST(MakeFieldSettings, eachRotationTypeHasItsItemAndAnyOtherNumberFixesTheAngle) {
  RenderParams params{};
  const std::pair<int32_t, RotationType> expected[] = {{1, RotationType::normal},      {2, RotationType::lookAtCenter},
                                                       {3, RotationType::fixDotAngle}, {0, RotationType::fixDotAngle},
                                                       {4, RotationType::fixDotAngle}, {-1, RotationType::fixDotAngle}};
  for (const auto& [item, type] : expected) {
    params.rotationType = item;
    EXPECT_EQ(settingsOf(params).base.rotationType, type) << item;
  }
}

TEST(MakeFieldSettings, jitterIsTakenInItsOwnUnits) {
  RenderParams params{};
  params.randomSize = 3.0;
  params.randomAspect = 4.0;
  params.randomRotation = 5.0;
  params.randomOpacity = 6.0;
  params.randomHue = fixed(90.0);
  params.randomSaturation = 50.0;
  params.randomValue = 25.0;
  const JitterAmounts jitter = settingsOf(params).jitter;
  EXPECT_EQ(jitter.size, 3.0);
  EXPECT_EQ(jitter.aspect, 4.0);
  EXPECT_EQ(jitter.rotation, 5.0);
  EXPECT_EQ(jitter.opacity, 6.0);
  EXPECT_EQ(jitter.hueAmount, 0.25);
  EXPECT_EQ(jitter.saturationAmount, 0.5);
  EXPECT_EQ(jitter.valueAmount, 0.25);
}

TEST(MakeFieldSettings, anEffectorIsInPixelsSharesRadiansAndTurns) {
  EffectorParams params{};
  params.enabled = 1;
  params.angle = fixed(33.5);
  params.position = {fixed(12.5), fixed(-3.25)};
  params.centerDotToFront = 1;
  params.size = 40.0;
  params.falloff = 25.0;
  params.fitToLayer = 1;
  params.pickSourceColor = 1;
  params.absolute = 1;
  params.absSize = 17.0;
  params.absAspect = 50.0;
  params.absRotation = fixed(90.0);
  params.absOpacity = 40.0;
  params.ratioSize = 2.0;
  params.ratioAspect = 3.0;
  params.ratioRotation = 4.0;
  params.ratioOpacity = 5.0;
  params.offsetSize = -9.0;
  params.offsetAspect = -30.0;
  params.offsetRotation = fixed(-720.0);
  params.offsetOpacity = 10.0;
  params.color = 1;
  params.shiftHue = fixed(180.0);
  const EffectorState<Pixel8> state = effectorOf(params);
  EXPECT_TRUE(state.enabled);
  EXPECT_EQ(state.angleDegrees, 33.5);
  EXPECT_EQ(state.positionX, 12.5);
  EXPECT_EQ(state.positionY, -3.25);
  EXPECT_TRUE(state.centerDotToFront);
  EXPECT_EQ(state.size, 40.0);
  EXPECT_EQ(state.falloffRatio, 0.25);
  EXPECT_TRUE(state.fitToLayer);
  EXPECT_TRUE(state.pickSourceColor);
  EXPECT_TRUE(state.absolute);
  EXPECT_EQ(state.absSize, 17.0);
  EXPECT_EQ(state.targetAspect, 0.5);
  EXPECT_EQ(state.targetRotation, 90.0 * degree);
  EXPECT_EQ(state.targetOpacity, 0.4);
  EXPECT_EQ(state.ratioSize, 2.0);
  EXPECT_EQ(state.ratioAspect, 3.0);
  EXPECT_EQ(state.ratioRotation, 4.0);
  EXPECT_EQ(state.ratioOpacity, 5.0);
  EXPECT_EQ(state.offsetSize, -9.0);
  EXPECT_EQ(state.addAspect, -0.3);
  EXPECT_EQ(state.addRotation, -720.0 * degree);
  EXPECT_EQ(state.addOpacity, 0.1);
  EXPECT_TRUE(state.color);
  EXPECT_EQ(state.hueShiftTurns, 0.5);
}

TEST(MakeFieldSettings, ofAnEffectorOnlyTheAspectsAreClamped) {
  EffectorParams params{};
  params.falloff = 250.0;
  params.absAspect = 300.0;
  params.offsetAspect = -300.0;
  params.absOpacity = 300.0;
  params.offsetOpacity = -300.0;
  const EffectorState<Pixel8> state = effectorOf(params);
  EXPECT_EQ(state.falloffRatio, 2.5);
  EXPECT_EQ(state.targetAspect, 1.0);
  EXPECT_EQ(state.addAspect, -1.0);
  EXPECT_EQ(state.targetOpacity, 3.0);
  EXPECT_EQ(state.addOpacity, -3.0);
}

TEST(MakeFieldSettings, theHueShiftIsScaledDownBeforeItIsDivided) {
  int unlike = 0;
  for (PF_Fixed shift = 1; shift < 40000000; shift += 65537) {
    EffectorParams params{};
    params.shiftHue = shift;
    const double turns = effectorOf(params).hueShiftTurns;
    const double degrees = shift / 65536.0;
    ASSERT_EQ(turns, degrees / 360.0) << shift;
    unlike += turns == shift * (1.0 / 65536.0 / 360.0) ? 0 : 1;
  }
  EXPECT_GT(unlike, 50);  // the numbers tell a division from a factor
}

TEST(MakeFieldSettings, eachMapHasItsItemAndAnyOtherNumberIsLinear) {
  EffectorParams params{};
  const std::pair<int32_t, EffectMapKind> expected[] = {
      {1, EffectMapKind::customLayer},  {2, EffectMapKind::linear}, {3, EffectMapKind::radial},
      {4, EffectMapKind::radialMirror}, {5, EffectMapKind::linear}, {6, EffectMapKind::linearMirror},
      {0, EffectMapKind::linear},       {7, EffectMapKind::linear}, {-1, EffectMapKind::linear}};
  for (const auto& [item, kind] : expected) {
    params.effectMap = item;
    EXPECT_EQ(effectorOf(params).effectMap, kind) << item;
  }
}

TEST(MakeFieldSettings, eachTilingHasItsItem) {
  EffectorParams params{};
  const std::pair<int32_t, Tiling> expected[] = {{1, Tiling::none},       {2, Tiling::repeat},  {3, Tiling::mirror},
                                                 {4, Tiling::extendEdge}, {0, Tiling::unknown}, {5, Tiling::unknown},
                                                 {-1, Tiling::unknown}};
  for (const auto& [item, tiling] : expected) {
    params.tiling = item;
    EXPECT_EQ(effectorOf(params).tiling, tiling) << item;
  }
}

TEST(MakeFieldSettings, eachBlendModeHasItsItemAndSeparatorsAreNormal) {
  EffectorParams params{};
  const std::pair<int32_t, BlendMode> expected[] = {
      {1, normalBlend},  {2, normalBlend},   {3, addBlend},         {4, subtractBlend},   {5, multiplyBlend},
      {6, screenBlend},  {7, overlayBlend},  {8, hardLightBlend},   {9, softLightBlend},  {10, normalBlend},
      {11, darkenBlend}, {12, lightenBlend}, {13, differenceBlend}, {14, exclusionBlend}, {0, normalBlend},
      {15, normalBlend}, {-3, normalBlend},  {999, normalBlend}};
  for (const auto& [item, mode] : expected) {
    params.blendMode = item;
    EXPECT_EQ(effectorOf(params).blendMode, mode) << item;
  }
}

TEST(MakeFieldSettings, aLayerIsSeenAsTheWorldHoldsIt) {
  PF_Pixel pixels[6];
  PF_EffectWorld world{};
  world.data = pixels;
  world.width = 70000;  // all 32 bits count
  world.height = 2;
  world.rowbytes = -24;
  EffectorParams params{};
  params.customMapLayer = &world;
  const LayerView<Pixel8> view = effectorOf(params).customMapLayer;
  EXPECT_EQ(static_cast<const void*>(view.pixels), static_cast<const void*>(pixels));
  EXPECT_EQ(view.width, 70000);
  EXPECT_EQ(view.height, 2);
  EXPECT_EQ(view.rowBytes, -24);
  params.customMapLayer = nullptr;
  EXPECT_EQ(effectorOf(params).customMapLayer.pixels, nullptr);
}

TEST(MakeFieldSettings, lengthsFollowTheDownSamplingAndNothingElseDoes) {
  RenderParams params{};
  params.dotSize = 12.0;
  params.distanceBetween = distanceBetweenDotsItem;
  params.dotDistanceX = 20.0;
  params.dotDistanceY = 40.0;
  params.centerPosition = {fixed(30.0), fixed(50.0)};
  params.randomDistanceX = 2.0;
  params.randomSize = 3.0;
  EffectorParams& effector = params.effector[2];
  effector.size = 100.0;
  effector.absSize = 60.0;
  effector.offsetSize = -20.0;
  effector.ratioSize = 5.0;
  effector.falloff = 50.0;
  effector.position = {fixed(7.0), fixed(9.0)};
  PF_InData in_data{};
  for (const bool xIsSmaller : {true, false}) {
    in_data.downsample_x = xIsSmaller ? PF_RationalScale{1, 4} : PF_RationalScale{1, 2};
    in_data.downsample_y = xIsSmaller ? PF_RationalScale{1, 2} : PF_RationalScale{1, 4};
    const FieldSettings<Pixel8> settings = settingsOf(params, in_data);
    EXPECT_EQ(settings.base.baseSize, 3.0);  // by the smaller of the two
    EXPECT_EQ(settings.lattice.pitchX, xIsSmaller ? 3.0 + 5.0 : 3.0 + 10.0);
    EXPECT_EQ(settings.lattice.pitchY, xIsSmaller ? 3.0 + 20.0 : 3.0 + 10.0);
    EXPECT_EQ(settings.effectors[2].size, 25.0);
    EXPECT_EQ(settings.effectors[2].absSize, 15.0);
    EXPECT_EQ(settings.effectors[2].offsetSize, -5.0);
    EXPECT_EQ(settings.lattice.centerX, 30.0);
    EXPECT_EQ(settings.lattice.centerY, 50.0);
    EXPECT_EQ(settings.lattice.jitterX, 2.0);
    EXPECT_EQ(settings.jitter.size, 3.0);
    EXPECT_EQ(settings.effectors[2].ratioSize, 5.0);
    EXPECT_EQ(settings.effectors[2].falloffRatio, 0.5);
    EXPECT_EQ(settings.effectors[2].positionX, 7.0);
    EXPECT_EQ(settings.effectors[2].positionY, 9.0);
  }
}

TEST(MakeFieldSettings, theControlsStayAsTheyAre) {
  RenderParams params{};
  params.dotSize = 12.0;
  params.effector[0].size = 100.0;
  PF_InData in_data{};
  in_data.downsample_x = in_data.downsample_y = {1, 2};
  settingsOf(params, in_data);
  EXPECT_EQ(settingsOf(params, in_data).base.baseSize, 6.0);
  EXPECT_EQ(settingsOf(params, in_data).effectors[0].size, 50.0);
}

}  // namespace
}  // namespace vindrel
