#include "effect/params/ControlRows.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ae/Constants.h"
#include "effect/params/RenderParams.h"

namespace vindrel {
namespace {

constexpr int effectorCount = 3;

/// The id of a control of an effector group, for each of the three groups.
struct EffectorIds {
  int32_t first, second, third;
};

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
  [[nodiscard]] constexpr int32_t id(EffectorIds ids) const {
    return number == 1 ? ids.first : number == 2 ? ids.second : ids.third;
  }
  /// Moves a target inside EffectorParams to the group's place in the record.
  [[nodiscard]] constexpr ParamTarget target(ParamTarget inGroup) const {
    const auto group = offsetof(RenderParams, effector) + sizeof(EffectorParams) * static_cast<size_t>(number - 1);
    return {inGroup.offset + static_cast<uint32_t>(group), inGroup.size};
  }
  [[nodiscard]] constexpr ControlRow operator()(std::string_view text, EffectorIds ids, ControlRow row) const {
    row.name = name(text);
    row.id = id(ids);
    if (row.target.size != 0) {
      row.target = target(row.target);
    }
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

constexpr ControlRow popup(ParamTarget target, int16_t choiceCount, const char* choices, int16_t defaultItem,
                           ControlTemplate definition = ControlTemplate::plain) {
  return {.kind = ControlKind::popup,
          .target = target,
          .definition = definition,
          .defaultValue = static_cast<double>(defaultItem),
          .choiceCount = choiceCount,
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
    row("Dot Shape", 1, popup(FIELD(dotShape), 6, "Circle|Square|Round Square|Cross|Star|Diamond", 1)),
    row("Dot Color", 2, color(FIELD(dotColor), 255, 125, 20)),
    row("Dot Size", 3, number(FIELD(dotSize), {0, 1000}, {0, 100}, 10, decimals(1))),
    row("Dot Aspect", 4, number(FIELD(dotAspect), {-100, 100}, {-100, 100}, 0, percent(1))),
    row("Dot Rotation", 5, angle(FIELD(dotRotation))),
    row("Rotation Type", 6, popup(FIELD(rotationType), 6, "Normal|Look At Center|Fix Dot Angle", 1)),
    row("Dot Opacity", 7, number(FIELD(dotOpacity), {0, 100}, {0, 100}, 100, percent(1))),
    row("Distance Between", 8, popup(FIELD(distanceBetween), 6, "Dots|Centers", 1, ControlTemplate::supervised)),
    row("Dot Distance X", 9, number(FIELD(dotDistanceX), {0, 10000}, {0, 100}, 20, decimals(1))),
    row("Dot Distance Y", 10, number(FIELD(dotDistanceY), {0, 10000}, {0, 100}, 20, decimals(1))),
    row("Center Position", 11, middle(FIELD(centerPosition))),
    row("Center Dot to Front", 125, check(FIELD(centerDotToFront))),
    row("Global Rotation", 12, angle(FIELD(globalRotation))),
    row("Global Rotation Center", 13, popup(FIELD(globalRotationCenter), 4, "Center|FX1|FX2|FX3", 1)),
    row("Mask", 14, popup(FIELD(mask), 3, "Normal|None|Layer", 1)),
    row("Mask Target Layer", 15, layer(FIELD(maskTargetLayer), PF_LayerDefault_NONE)),
    row("Invert Mask", 16, check(FIELD(invertMask))),
    row("Clear Background", 17, check(FIELD(clearBackground))),

    row("Randomize", 18, group()),
    row("Random Interval", 20, steps(FIELD(randomInterval), {0, 1000}, {0, 60}, 0)),
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
      n("Effector", {35, 65, 95}, group()),
      n("Enable Effector ", {37, 67, 97}, check(EFFECTOR_FIELD(enabled))),
      n("Position ", {41, 71, 101}, middle(EFFECTOR_FIELD(position))),
      n("Size ", {42, 72, 102}, number(EFFECTOR_FIELD(size), {0, 5000}, {0, 1000}, 200, decimals(1))),
      n("Angle ", {40, 70, 100}, angle(EFFECTOR_FIELD(angle))),
      n("Falloff ", {43, 73, 103}, number(EFFECTOR_FIELD(falloff), {0, 100}, {0, 100}, 100, percent(1))),
      n("Effect Map ", {136, 137, 138},
        popup(EFFECTOR_FIELD(effectMap), 6, "Use Custom Map|(-|Radial|Radial Mirror|Linear|Linear Mirror", 3)),
      n("Custom Map Layer ", {45, 75, 105}, layer(EFFECTOR_FIELD(customMapLayer), PF_LayerDefault_MYSELF)),
      n("Fit to Layer ", {139, 140, 141}, check(EFFECTOR_FIELD(fitToLayer))),
      n("Pick Source Color ", {129, 130, 131}, check(EFFECTOR_FIELD(pickSourceColor))),
      n("Tiling ", {133, 134, 135}, popup(EFFECTOR_FIELD(tiling), 4, "None|Repeat|Mirror|Extend Edge", 1)),
      n("Center Dot to Front ", {126, 127, 128}, check(EFFECTOR_FIELD(centerDotToFront))),
      n("Absolute ", {46, 76, 106}, check(EFFECTOR_FIELD(absolute))),
      n("ABS Size ", {47, 77, 107}, number(EFFECTOR_FIELD(absSize), {0, 1000}, {0, 100}, 20, decimals(1))),
      n("ABS Aspect ", {48, 78, 108}, number(EFFECTOR_FIELD(absAspect), {-100, 100}, {-100, 100}, 0, percent(0))),
      n("ABS Rotation ", {49, 79, 109}, angle(EFFECTOR_FIELD(absRotation))),
      n("ABS Opacity ", {50, 80, 110}, number(EFFECTOR_FIELD(absOpacity), {0, 100}, {0, 100}, 100, percent(0))),
      n("Ratio Size ", {52, 82, 112}, number(EFFECTOR_FIELD(ratioSize), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Ratio Aspect ", {53, 83, 113}, number(EFFECTOR_FIELD(ratioAspect), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Ratio Rotation ", {54, 84, 114}, number(EFFECTOR_FIELD(ratioRotation), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Ratio Opacity ", {55, 85, 115}, number(EFFECTOR_FIELD(ratioOpacity), {0, 100}, {0, 10}, 1, decimals(1))),
      n("Offset Size ", {57, 87, 117}, number(EFFECTOR_FIELD(offsetSize), {-100, 100}, {-100, 100}, 0, decimals(1))),
      n("Offset Aspect ", {58, 88, 118}, number(EFFECTOR_FIELD(offsetAspect), {-100, 100}, {-100, 100}, 0, percent(0))),
      n("Offset Rotation ", {59, 89, 119}, angle(EFFECTOR_FIELD(offsetRotation))),
      n("Offset Opacity ", {60, 90, 120},
        number(EFFECTOR_FIELD(offsetOpacity), {-100, 100}, {-100, 100}, 0, percent(0))),
      n("Color ", {61, 91, 121}, check(EFFECTOR_FIELD(color))),
      // "Substract" is spelt so on purpose: it is the text that users of the effect know.
      n("Blend Mode ", {62, 92, 122},
        popup(EFFECTOR_FIELD(blendMode), 14,
              "Normal|(-|Add|Substract|Multiply|Screen|Overlay|Hard Light|Soft Light|(-|Darken|Lighten|Difference|"
              "Exclusion", 1)),
      n("Blend Color ", {63, 93, 123}, color(EFFECTOR_FIELD(blendColor), 255, 255, 255)),
      n("Shift Hue ", {64, 94, 124}, angle(EFFECTOR_FIELD(shiftHue))),
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
