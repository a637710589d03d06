#include "effect/params/ParamTable.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ae/Constants.h"
#include "effect/params/Choices.h"
#include "effect/params/RenderParams.h"

namespace vindrel {
namespace {

/// A row whose name, id and place in the record depend on the number of the effector: 1, 2 or 3.
struct Numbered {
  int number;

  /// "Size " for effector 2 is "Size 2".
  [[nodiscard]] constexpr std::array<char, 32> name(std::string_view text) const {
    std::array<char, 32> result{};
    std::copy(text.begin(), text.end(), result.begin());
    result[text.size()] = static_cast<char>('0' + number);
    return result;
  }
  /// Moves a target inside EffectorParams to the group's place in the record.
  [[nodiscard]] constexpr ParamTarget target(ParamTarget inGroup) const {
    const auto group = offsetof(RenderParams, effector) + sizeof(EffectorParams) * static_cast<size_t>(number - 1);
    return {inGroup.offset + static_cast<uint32_t>(group), inGroup.size};
  }
  [[nodiscard]] constexpr ControlRow operator()(std::string_view text, controlId::OfEffector id, ControlRow row) const {
    row.name = name(text);
    row.id = id(number);
    if (row.target.size != 0) row.target = target(row.target);
    return row;
  }
};

constexpr ControlRow row(std::string_view name, int32_t id, ControlRow rest) {
  std::copy(name.begin(), name.end(), rest.name.begin());
  rest.id = id;
  return rest;
}

template <class Record, class Field>
constexpr uint32_t sizeOf(Field Record::* /*field*/) {
  return static_cast<uint32_t>(sizeof(Field));  // NOLINT(bugprone-sizeof-expression): a layer's field is a pointer
}

// A field of a record, as the place that a value goes to.
#define FIELD_OF(record, field)                                            \
  ParamTarget {                                                            \
    static_cast<uint32_t>(offsetof(record, field)), sizeOf(&record::field) \
  }
#define FIELD(field) FIELD_OF(RenderParams, field)
#define EFFECTOR_FIELD(field) FIELD_OF(EffectorParams, field)

constexpr ControlRow color(ParamTarget target, uint8_t red, uint8_t green, uint8_t blue) {
  return {
      .kind = ControlKind::color, .target = target, .color = {.alpha = 255, .red = red, .green = green, .blue = blue}};
}

/// A slider of whole numbers. None of the effect's can be interpolated.
constexpr ControlRow steps(ParamTarget target, ControlRange valid, ControlRange slider, int32_t defaultValue) {
  return {.kind = ControlKind::slider,
          .target = target,
          .definition = ControlTemplate::stepped,
          .valid = valid,
          .slider = slider,
          .defaultValue = static_cast<double>(defaultValue)};
}

struct ShownAs {
  int16_t precision;
  int16_t displayFlags;
};
constexpr ShownAs decimals(int16_t count) {
  return {count, PF_ValueDisplayFlag_NONE};
}
constexpr ShownAs percent(int16_t count) {
  return {count, PF_ValueDisplayFlag_PERCENT};
}

constexpr ControlRow number(ParamTarget target, ControlRange valid, ControlRange slider, double defaultValue,
                            ShownAs shown) {
  return {.kind = ControlKind::floatSlider,
          .target = target,
          .valid = valid,
          .slider = slider,
          .defaultValue = defaultValue,
          .precision = shown.precision,
          .displayFlags = shown.displayFlags};
}

/// A check box that starts off.
constexpr ControlRow check(ParamTarget target) {
  return {.kind = ControlKind::checkbox, .target = target};
}

/// An angle that starts at 0 degrees.
constexpr ControlRow angle(ParamTarget target) {
  return {.kind = ControlKind::angle, .target = target};
}

/// @param choiceCount  the last item, where the list is counted right
constexpr ControlRow popup(ParamTarget target, int32_t choiceCount, const char* choices, int32_t defaultItem,
                           ControlTemplate definition = ControlTemplate::plain) {
  return {.kind = ControlKind::popup,
          .target = target,
          .definition = definition,
          .defaultValue = static_cast<double>(defaultItem),
          .choiceCount = static_cast<int16_t>(choiceCount),
          .choices = choices};
}

constexpr ControlRow layer(ParamTarget target, int32_t defaultLayer) {
  return {.kind = ControlKind::layer, .target = target, .defaultValue = static_cast<double>(defaultLayer)};
}

/// A place that starts in the middle of the layer.
constexpr ControlRow middle(ParamTarget target) {
  return {.kind = ControlKind::point, .target = target, .pointDefault = {50 * 65536, 50 * 65536}};
}

constexpr ControlRow group() {
  return {.kind = ControlKind::group};
}
constexpr ControlRow endGroup() {
  return {.kind = ControlKind::endGroup};
}

// Ids without a control stay empty: 0, 28 to 31, 38, 39, 44, 51, 56, 68, 69, 74, 81, 86, 98, 99, 104, 111, 116 and 142
// to 255. Ids from 125 up came later and stand where the user looks for them.
//
// "Rotation Type" and "Distance Between" say 6 choices although they list three and two. Kept as is: the count is part
// of the definition that saved projects were made with (see theChoiceCountsOfTwoPopupsAreLargerThanTheirLists).
constexpr ControlRow mainRows[] = {
    // clang-format off
    row("Dot Shape", 1,
        popup(FIELD(dotShape), dotShapeItems, dotShapeChoices, firstDotShapeItem)),
    row("Dot Color", 2, color(FIELD(dotColor), 255, 125, 20)),
    row("Dot Size", controlId::dotSize, number(FIELD(dotSize), {0, 1000}, {0, 100}, 10, decimals(1))),
    row("Dot Aspect", 4, number(FIELD(dotAspect), {-100, 100}, {-100, 100}, 0, percent(1))),
    row("Dot Rotation", 5, angle(FIELD(dotRotation))),
    row("Rotation Type", 6, popup(FIELD(rotationType), 6, rotationTypeChoices, rotationNormalItem)),
    row("Dot Opacity", 7, number(FIELD(dotOpacity), {0, 100}, {0, 100}, 100, percent(1))),
    row("Distance Between", controlId::distanceBetween,
        popup(FIELD(distanceBetween), 6, distanceBetweenChoices, distanceBetweenDotsItem, ControlTemplate::supervised)),
    row("Dot Distance X", controlId::dotDistanceX, number(FIELD(dotDistanceX), {0, 10000}, {0, 100}, 20, decimals(1))),
    row("Dot Distance Y", controlId::dotDistanceY, number(FIELD(dotDistanceY), {0, 10000}, {0, 100}, 20, decimals(1))),
    row("Center Position", 11, middle(FIELD(centerPosition))),
    row("Center Dot to Front", 125, check(FIELD(centerDotToFront))),
    row("Global Rotation", 12, angle(FIELD(globalRotation))),
    row("Global Rotation Center", 13,
        popup(FIELD(globalRotationCenter), rotationCenterFx3Item, rotationCenterChoices, rotationCenterCenterItem)),
    row("Mask", controlId::mask, popup(FIELD(mask), maskLayer, maskChoices, maskNormal)),
    row("Mask Target Layer", controlId::maskTargetLayer, layer(FIELD(maskTargetLayer), PF_LayerDefault_NONE)),
    row("Invert Mask", controlId::invertMask, check(FIELD(invertMask))),
    row("Clear Background", 17, check(FIELD(clearBackground))),

    row("Randomize", 18, group()),
    row("Random Interval", controlId::randomInterval, steps(FIELD(randomInterval), {0, 1000}, {0, 60}, 0)),
    row("Random Array", 132, steps(FIELD(randomArray), {0, 10}, {0, 10}, 0)),
    row("Random Seed", 21, steps(FIELD(randomSeed), {0, 10000}, {0, 100}, 0)),
    row("Size", 22, number(FIELD(randomSize), {0, 50}, {0, 1}, 0, decimals(2))),
    row("Aspect", 23, number(FIELD(randomAspect), {0, 50}, {0, 1}, 0, decimals(2))),
    row("Rotation", 24, number(FIELD(randomRotation), {0, 50}, {0, 1}, 0, decimals(2))),
    row("Opacity", 25, number(FIELD(randomOpacity), {0, 50}, {0, 1}, 0, decimals(2))),
    row("Distance X", 26, number(FIELD(randomDistanceX), {0, 50}, {0, 1}, 0, decimals(2))),
    row("Distance Y", 27, number(FIELD(randomDistanceY), {0, 50}, {0, 1}, 0, decimals(2))),
    row("H", 32, angle(FIELD(randomHue))),
    row("S", 33, number(FIELD(randomSaturation), {0, 100}, {0, 100}, 0, percent(1))),
    row("V", 34, number(FIELD(randomValue), {0, 100}, {0, 100}, 0, percent(1))),
    endGroup(),
    // clang-format on
};

/// The rows of one effector group; the three groups differ in their number and their ids only.
constexpr std::array<ControlRow, 30> effectorRows(Numbered n) {
  return {
      // clang-format off
      n("Effector", {35, 30}, group()),
      n("Enable Effector ", controlId::enableEffector, check(EFFECTOR_FIELD(enabled))),
      n("Position ", controlId::position, middle(EFFECTOR_FIELD(position))),
      n("Size ", controlId::size, number(EFFECTOR_FIELD(size), {0, 5000}, {0, 1000}, 200, decimals(1))),
      n("Angle ", controlId::angle, angle(EFFECTOR_FIELD(angle))),
      n("Falloff ", controlId::falloff, number(EFFECTOR_FIELD(falloff), {0, 100}, {0, 100}, 100, percent(1))),
      n("Effect Map ", controlId::effectMap,
        popup(EFFECTOR_FIELD(effectMap), linearMirrorMapItem, effectMapChoices, radialMapItem)),
      n("Custom Map Layer ", controlId::customMapLayer, layer(EFFECTOR_FIELD(customMapLayer), PF_LayerDefault_MYSELF)),
      n("Fit to Layer ", controlId::fitToLayer, check(EFFECTOR_FIELD(fitToLayer))),
      n("Pick Source Color ", controlId::pickSourceColor, check(EFFECTOR_FIELD(pickSourceColor))),
      n("Tiling ", controlId::tiling,
        popup(EFFECTOR_FIELD(tiling), tilingExtendEdgeItem, tilingChoices, tilingNoneItem)),
      n("Center Dot to Front ", controlId::centerDotToFront, check(EFFECTOR_FIELD(centerDotToFront))),
      n("Absolute ", controlId::absolute, check(EFFECTOR_FIELD(absolute))),
      n("ABS Size ", controlId::absSize, number(EFFECTOR_FIELD(absSize), {0, 1000}, {0, 100}, 20, decimals(1))),
      n("ABS Aspect ", controlId::absAspect,
        number(EFFECTOR_FIELD(absAspect), {-100, 100}, {-100, 100}, 0, percent(0))),
      n("ABS Rotation ", controlId::absRotation, angle(EFFECTOR_FIELD(absRotation))),
      n("ABS Opacity ", controlId::absOpacity, number(EFFECTOR_FIELD(absOpacity), {0, 100}, {0, 100}, 100, percent(0))),
      n("Ratio Size ", {52, 30}, number(EFFECTOR_FIELD(ratioSize), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Ratio Aspect ", {53, 30}, number(EFFECTOR_FIELD(ratioAspect), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Ratio Rotation ", {54, 30}, number(EFFECTOR_FIELD(ratioRotation), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Ratio Opacity ", {55, 30}, number(EFFECTOR_FIELD(ratioOpacity), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Offset Size ", {57, 30}, number(EFFECTOR_FIELD(offsetSize), {-100, 100}, {-100, 100}, 0, decimals(1))),
      n("Offset Aspect ", {58, 30}, number(EFFECTOR_FIELD(offsetAspect), {-100, 100}, {-100, 100}, 0, percent(0))),
      n("Offset Rotation ", {59, 30}, angle(EFFECTOR_FIELD(offsetRotation))),
      n("Offset Opacity ", {60, 30},
        number(EFFECTOR_FIELD(offsetOpacity), {-100, 100}, {-100, 100}, 0, percent(0))),
      n("Color ", controlId::color, check(EFFECTOR_FIELD(color))),
      n("Blend Mode ", controlId::blendMode,
        popup(EFFECTOR_FIELD(blendMode), blendExclusionItem, blendModeChoices, blendNormalItem)),
      n("Blend Color ", controlId::blendColor, color(EFFECTOR_FIELD(blendColor), 255, 255, 255)),
      n("Shift Hue ", controlId::shiftHue, angle(EFFECTOR_FIELD(shiftHue))),
      endGroup(),
      // clang-format on
  };
}

#undef EFFECTOR_FIELD
#undef FIELD
#undef FIELD_OF

constexpr size_t rowsOfEffector = effectorRows({1}).size();
constexpr size_t rowCount = std::size(mainRows) + effectorCount * rowsOfEffector;

constexpr std::array<ControlRow, rowCount> allRows = [] {
  std::array<ControlRow, rowCount> rows{};
  ControlRow* end = std::copy(std::begin(mainRows), std::end(mainRows), rows.data());
  for (int effector = 1; effector <= effectorCount; ++effector) {
    const auto group = effectorRows({effector});
    end = std::copy(group.begin(), group.end(), end);
  }
  return rows;
}();

}  // namespace

std::span<const ControlRow> controlRows() {
  return allRows;
}

}  // namespace vindrel
