#include "effect/params/ParamTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ae/Constants.h"
#include "effect/params/RenderParams.h"

namespace vindrel {
namespace {

std::string nameOf(const ControlRow& row) {
  return row.name.data();
}

std::string nameOfId(int32_t id) {
  for (const ControlRow& row : controlRows()) {
    if (row.kind != ControlKind::endGroup && row.id == id) return nameOf(row);
  }
  return "none";
}

TEST(ParamTable, thereAreOneHundredAndTwentyTwo) {
  EXPECT_EQ(controlRows().size(), 122U);
}

TEST(ParamTable, noIdIsGivenTwice) {
  std::map<int32_t, std::string> ids;
  int32_t group = 0;
  for (const ControlRow& row : controlRows()) {
    if (row.kind == ControlKind::group) group = row.id;
    const int32_t id = row.kind == ControlKind::endGroup ? group + 1 : row.id;
    EXPECT_TRUE(ids.emplace(id, nameOf(row)).second) << id << " is " << ids[id] << " and " << nameOf(row);
    EXPECT_GE(id, 1);
    EXPECT_LE(id, 255);
  }
}

TEST(ParamTable, idsThatFellOutOfUseStayEmpty) {
  std::set<int32_t> expectedEmpty = {0, 28, 29, 30, 31, 38, 39, 44, 51, 56, 68, 69, 74, 81, 86, 98, 99, 104, 111, 116};
  for (int32_t id = 142; id < 256; ++id) expectedEmpty.insert(id);
  std::set<int32_t> empty;
  for (int32_t id = 0; id < 256; ++id) empty.insert(id);
  for (const ControlRow& row : controlRows()) {
    if (row.kind == ControlKind::endGroup) continue;
    empty.erase(row.id);
    if (row.kind == ControlKind::group) empty.erase(row.id + 1);
  }
  EXPECT_EQ(empty, expectedEmpty);
}

TEST(ParamTable, namesAreKeysAndSoAreUniqueAndFitTheHostsField) {
  std::set<std::string> names;
  for (const ControlRow& row : controlRows()) {
    if (row.kind == ControlKind::endGroup) {
      EXPECT_EQ(nameOf(row), "");
      continue;
    }
    EXPECT_TRUE(names.insert(nameOf(row)).second) << nameOf(row);
    EXPECT_FALSE(nameOf(row).empty());
    EXPECT_EQ(row.name.back(), '\0') << nameOf(row);
  }
}

TEST(ParamTable, everyGroupIsClosedAndNoneStandsInAnother) {
  int open = 0, groups = 0;
  for (const ControlRow& row : controlRows()) {
    if (row.kind == ControlKind::group) {
      ++open;
      ++groups;
    }
    if (row.kind == ControlKind::endGroup) --open;
    EXPECT_TRUE(open == 0 || open == 1) << nameOf(row);
  }
  EXPECT_EQ(open, 0);
  EXPECT_EQ(groups, 4);
}

TEST(ParamTable, everyDefaultLiesInItsRangeAndTheTrackLiesInsideIt) {
  for (const ControlRow& row : controlRows()) {
    if (row.kind != ControlKind::slider && row.kind != ControlKind::floatSlider) continue;
    EXPECT_LT(row.valid.least, row.valid.greatest) << nameOf(row);
    EXPECT_LT(row.slider.least, row.slider.greatest) << nameOf(row);
    EXPECT_LE(row.valid.least, row.slider.least) << nameOf(row);
    EXPECT_GE(row.valid.greatest, row.slider.greatest) << nameOf(row);
    EXPECT_GE(row.defaultValue, row.valid.least) << nameOf(row);
    EXPECT_LE(row.defaultValue, row.valid.greatest) << nameOf(row);
  }
}

TEST(ParamTable, theDefaultOfAPopupIsAnItemAndNoSeparator) {
  for (const ControlRow& row : controlRows()) {
    if (row.kind != ControlKind::popup) continue;
    std::vector<std::string> items(1);
    for (const char* at = row.choices; *at != '\0'; ++at) {
      if (*at == '|') {
        items.emplace_back();
      } else {
        items.back() += *at;
      }
    }
    ASSERT_GE(row.defaultValue, 1.0) << nameOf(row);
    ASSERT_LE(row.defaultValue, static_cast<double>(items.size())) << nameOf(row);
    EXPECT_NE(items[static_cast<size_t>(row.defaultValue) - 1], "(-") << nameOf(row);
    EXPECT_GE(static_cast<size_t>(row.choiceCount), items.size()) << nameOf(row);
  }
}

TEST(ParamTable, theChoiceCountsOfTwoPopupsAreLargerThanTheirLists) {
  std::map<std::string, std::pair<int, int>> unlike;
  for (const ControlRow& row : controlRows()) {
    if (row.kind != ControlKind::popup) continue;
    const std::string choices = row.choices;
    const auto items = static_cast<int>(std::count(choices.begin(), choices.end(), '|')) + 1;
    if (items != row.choiceCount) unlike[nameOf(row)] = {row.choiceCount, items};
  }
  const std::map<std::string, std::pair<int, int>> expected = {{"Rotation Type", {6, 3}}, {"Distance Between", {6, 2}}};
  EXPECT_EQ(unlike, expected);
}

uint32_t sizeOfValue(ControlKind kind) {
  switch (kind) {
    case ControlKind::checkbox:
      return 1;
    case ControlKind::floatSlider:
    case ControlKind::point:
    case ControlKind::layer:
      return 8;
    case ControlKind::group:
    case ControlKind::endGroup:
      return 0;
    default:
      return 4;
  }
}

TEST(ParamTable, targetSizesFollowTheKind) {
  for (const ControlRow& row : controlRows()) {
    EXPECT_EQ(row.target.size, sizeOfValue(row.kind)) << nameOf(row);
  }
}

TEST(ParamTable, everyFieldOfTheRecordIsFilledOnce) {
  std::vector<std::string> owner(sizeof(RenderParams));
  for (const ControlRow& row : controlRows()) {
    ASSERT_LE(row.target.offset + row.target.size, sizeof(RenderParams)) << nameOf(row);
    for (uint32_t byte = row.target.offset; byte < row.target.offset + row.target.size; ++byte) {
      EXPECT_EQ(owner[byte], "") << "byte " << byte << " belongs to " << nameOf(row) << " too";
      owner[byte] = nameOf(row);
    }
  }
  const auto filled = static_cast<size_t>(
      std::count_if(owner.begin(), owner.end(), [](const std::string& name) { return !name.empty(); }));
  // Counted over the lists of fields in RenderParams.h.
  const size_t mainPart = 4 * (/*popups*/ 5 + /*colour*/ 1 + /*angles*/ 3 + /*whole*/ 3) +
                          8 * (/*sliders*/ 5 + /*random*/ 8 + /*point*/ 1 + /*layer*/ 1) + /*boxes*/ 3;
  const size_t group = 4 * (/*popups*/ 3 + /*angles*/ 4 + /*colour*/ 1) +
                       8 * (/*sliders*/ 2 + /*ABS*/ 3 + /*ratio*/ 4 + /*offset*/ 3 + /*point*/ 1 + /*layer*/ 1) +
                       /*boxes*/ 6;
  EXPECT_EQ(filled, mainPart + 3 * group);
}

/// A field of a record, and the control whose value it is.
struct FieldOfControl {
  const char* control;
  size_t offset;  ///< bytes from the start of its record
};

// In the order of the fields.
constexpr FieldOfControl mainFields[] = {
    {"Dot Shape", offsetof(RenderParams, dotShape)},
    {"Dot Color", offsetof(RenderParams, dotColor)},
    {"Dot Size", offsetof(RenderParams, dotSize)},
    {"Dot Aspect", offsetof(RenderParams, dotAspect)},
    {"Dot Rotation", offsetof(RenderParams, dotRotation)},
    {"Rotation Type", offsetof(RenderParams, rotationType)},
    {"Dot Opacity", offsetof(RenderParams, dotOpacity)},
    {"Distance Between", offsetof(RenderParams, distanceBetween)},
    {"Dot Distance X", offsetof(RenderParams, dotDistanceX)},
    {"Dot Distance Y", offsetof(RenderParams, dotDistanceY)},
    {"Center Position", offsetof(RenderParams, centerPosition)},
    {"Center Dot to Front", offsetof(RenderParams, centerDotToFront)},
    {"Global Rotation", offsetof(RenderParams, globalRotation)},
    {"Global Rotation Center", offsetof(RenderParams, globalRotationCenter)},
    {"Mask", offsetof(RenderParams, mask)},
    {"Mask Target Layer", offsetof(RenderParams, maskTargetLayer)},
    {"Invert Mask", offsetof(RenderParams, invertMask)},
    {"Clear Background", offsetof(RenderParams, clearBackground)},
    {"Random Interval", offsetof(RenderParams, randomInterval)},
    {"Random Array", offsetof(RenderParams, randomArray)},
    {"Random Seed", offsetof(RenderParams, randomSeed)},
    {"Size", offsetof(RenderParams, randomSize)},
    {"Aspect", offsetof(RenderParams, randomAspect)},
    {"Rotation", offsetof(RenderParams, randomRotation)},
    {"Opacity", offsetof(RenderParams, randomOpacity)},
    {"Distance X", offsetof(RenderParams, randomDistanceX)},
    {"Distance Y", offsetof(RenderParams, randomDistanceY)},
    {"H", offsetof(RenderParams, randomHue)},
    {"S", offsetof(RenderParams, randomSaturation)},
    {"V", offsetof(RenderParams, randomValue)},
};

// In the order of the fields; the number of the effector follows the name.
constexpr FieldOfControl effectorFields[] = {
    {"Enable Effector", offsetof(EffectorParams, enabled)},
    {"Effect Map", offsetof(EffectorParams, effectMap)},
    {"Angle", offsetof(EffectorParams, angle)},
    {"Position", offsetof(EffectorParams, position)},
    {"Center Dot to Front", offsetof(EffectorParams, centerDotToFront)},
    {"Size", offsetof(EffectorParams, size)},
    {"Falloff", offsetof(EffectorParams, falloff)},
    {"Custom Map Layer", offsetof(EffectorParams, customMapLayer)},
    {"Fit to Layer", offsetof(EffectorParams, fitToLayer)},
    {"Pick Source Color", offsetof(EffectorParams, pickSourceColor)},
    {"Tiling", offsetof(EffectorParams, tiling)},
    {"Absolute", offsetof(EffectorParams, absolute)},
    {"ABS Size", offsetof(EffectorParams, absSize)},
    {"ABS Aspect", offsetof(EffectorParams, absAspect)},
    {"ABS Rotation", offsetof(EffectorParams, absRotation)},
    {"ABS Opacity", offsetof(EffectorParams, absOpacity)},
    {"Ratio Size", offsetof(EffectorParams, ratioSize)},
    {"Ratio Aspect", offsetof(EffectorParams, ratioAspect)},
    {"Ratio Rotation", offsetof(EffectorParams, ratioRotation)},
    {"Ratio Opacity", offsetof(EffectorParams, ratioOpacity)},
    {"Offset Size", offsetof(EffectorParams, offsetSize)},
    {"Offset Aspect", offsetof(EffectorParams, offsetAspect)},
    {"Offset Rotation", offsetof(EffectorParams, offsetRotation)},
    {"Offset Opacity", offsetof(EffectorParams, offsetOpacity)},
    {"Color", offsetof(EffectorParams, color)},
    {"Blend Mode", offsetof(EffectorParams, blendMode)},
    {"Blend Color", offsetof(EffectorParams, blendColor)},
    {"Shift Hue", offsetof(EffectorParams, shiftHue)},
};

TEST(ParamTable, eachControlFillsTheFieldOfItsOwnName) {
  std::map<std::string, size_t> expected, targets;
  for (const FieldOfControl& field : mainFields) expected[field.control] = field.offset;
  for (size_t n = 1; n <= 3; ++n) {
    const size_t group = offsetof(RenderParams, effector) + (n - 1) * sizeof(EffectorParams);
    for (const FieldOfControl& field : effectorFields) {
      expected[std::string(field.control) + " " + std::to_string(n)] = group + field.offset;
    }
  }
  for (const ControlRow& row : controlRows()) {
    if (row.target.size != 0) targets[nameOf(row)] = row.target.offset;
  }
  EXPECT_EQ(targets, expected);
}

TEST(ParamTable, fieldsKeepTheirOrderInTheRecord) {
  const auto comesBefore = [](const FieldOfControl& left, const FieldOfControl& right) {
    return left.offset < right.offset;
  };
  EXPECT_TRUE(std::is_sorted(std::begin(mainFields), std::end(mainFields), comesBefore));
  EXPECT_TRUE(std::is_sorted(std::begin(effectorFields), std::end(effectorFields), comesBefore));
  EXPECT_LT(std::prev(std::end(mainFields))->offset, offsetof(RenderParams, effector));
}

TEST(ParamTable, fieldsOfAnEffectorLieInItsOwnElement) {
  for (const ControlRow& row : controlRows()) {
    const std::string name = nameOf(row);
    const bool numbered = name.size() > 2 && name[name.size() - 2] == ' ' && name.back() >= '1' && name.back() <= '3';
    if (row.target.size == 0) continue;
    const size_t first = offsetof(RenderParams, effector);
    if (!numbered) {
      EXPECT_LT(row.target.offset, first) << name;
      continue;
    }
    ASSERT_GE(row.target.offset, first) << name;
    EXPECT_EQ((row.target.offset - first) / sizeof(EffectorParams), static_cast<size_t>(name.back() - '1')) << name;
  }
}

TEST(ParamTable, idsThatCodeAsksForBearTheNamesThatItMeans) {
  EXPECT_EQ(nameOfId(controlId::dotSize), "Dot Size");
  EXPECT_EQ(nameOfId(controlId::distanceBetween), "Distance Between");
  EXPECT_EQ(nameOfId(controlId::dotDistanceX), "Dot Distance X");
  EXPECT_EQ(nameOfId(controlId::dotDistanceY), "Dot Distance Y");
  EXPECT_EQ(nameOfId(controlId::mask), "Mask");
  EXPECT_EQ(nameOfId(controlId::maskTargetLayer), "Mask Target Layer");
  EXPECT_EQ(nameOfId(controlId::invertMask), "Invert Mask");
  EXPECT_EQ(nameOfId(controlId::randomInterval), "Random Interval");
  for (int n = 1; n <= 3; ++n) {
    const std::string digit = std::to_string(n);
    EXPECT_EQ(nameOfId(controlId::enableEffector(n)), "Enable Effector " + digit);
    EXPECT_EQ(nameOfId(controlId::angle(n)), "Angle " + digit);
    EXPECT_EQ(nameOfId(controlId::position(n)), "Position " + digit);
    EXPECT_EQ(nameOfId(controlId::size(n)), "Size " + digit);
    EXPECT_EQ(nameOfId(controlId::falloff(n)), "Falloff " + digit);
    EXPECT_EQ(nameOfId(controlId::customMapLayer(n)), "Custom Map Layer " + digit);
    EXPECT_EQ(nameOfId(controlId::absolute(n)), "Absolute " + digit);
    EXPECT_EQ(nameOfId(controlId::absSize(n)), "ABS Size " + digit);
    EXPECT_EQ(nameOfId(controlId::absAspect(n)), "ABS Aspect " + digit);
    EXPECT_EQ(nameOfId(controlId::absRotation(n)), "ABS Rotation " + digit);
    EXPECT_EQ(nameOfId(controlId::absOpacity(n)), "ABS Opacity " + digit);
    EXPECT_EQ(nameOfId(controlId::color(n)), "Color " + digit);
    EXPECT_EQ(nameOfId(controlId::blendMode(n)), "Blend Mode " + digit);
    EXPECT_EQ(nameOfId(controlId::blendColor(n)), "Blend Color " + digit);
    EXPECT_EQ(nameOfId(controlId::shiftHue(n)), "Shift Hue " + digit);
    EXPECT_EQ(nameOfId(controlId::centerDotToFront(n)), "Center Dot to Front " + digit);
    EXPECT_EQ(nameOfId(controlId::pickSourceColor(n)), "Pick Source Color " + digit);
    EXPECT_EQ(nameOfId(controlId::tiling(n)), "Tiling " + digit);
    EXPECT_EQ(nameOfId(controlId::effectMap(n)), "Effect Map " + digit);
    EXPECT_EQ(nameOfId(controlId::fitToLayer(n)), "Fit to Layer " + digit);
  }
}

}  // namespace
}  // namespace vindrel
