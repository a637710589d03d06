// What a video program's numbers mean, without any module; expected values by hand.

#include "frei0r/Parameters.h"

#include <frei0r.h>
#include <gtest/gtest.h>

#include <limits>

#include "frei0r/Caller.h"

using cli::ControlFacts;
using cli::ControlKind;
using cli::ControlValue;

namespace {

ControlFacts number(double sliderMin, double sliderMax, double validMin, double validMax) {
  ControlFacts control;
  control.kind = ControlKind::number;
  control.name = "Dot Size";
  control.sliderMin = sliderMin;
  control.sliderMax = sliderMax;
  control.validMin = validMin;
  control.validMax = validMax;
  control.defaultNumber = 10.0;
  return control;
}

ControlFacts kindOf(ControlKind kind) {
  ControlFacts control;
  control.kind = kind;
  return control;
}

ControlFacts list() {
  ControlFacts control = kindOf(ControlKind::choice);
  control.items = {"Circle", "(-", "Square", "Star"};
  control.defaultNumber = 3;
  return control;
}

}  // namespace

TEST(ParametersTest, zeroAndOneAreTheEndsOfTheSlider) {
  const ControlFacts control = number(-100, 100, -100, 100);
  EXPECT_EQ(video::valueFrom(control, 0.0), ControlValue(-100.0));
  EXPECT_EQ(video::valueFrom(control, 0.5), ControlValue(0.0));
  EXPECT_EQ(video::valueFrom(control, 1.0), ControlValue(100.0));
}

TEST(ParametersTest, aDecimalIsMetToTheLastBit) {
  // 0.072 * 100 is 7.199999999999999 in doubles.
  EXPECT_EQ(video::valueFrom(number(0, 100, 0, 1000), 0.072), ControlValue(7.2));
}

TEST(ParametersTest, beyondTheSliderLiesTheValidRange) {
  const ControlFacts control = number(0, 100, 0, 1000);
  EXPECT_EQ(video::valueFrom(control, 2.5), ControlValue(250.0));
  EXPECT_EQ(video::valueFrom(control, 99.0), ControlValue(1000.0));
  EXPECT_EQ(video::valueFrom(control, -1.0), ControlValue(0.0));
  EXPECT_EQ(video::valueFrom(control, std::numeric_limits<double>::infinity()), ControlValue(1000.0));
}

TEST(ParametersTest, whatIsNoNumberIsTheDefault) {
  EXPECT_EQ(video::valueFrom(number(0, 100, 0, 1000), std::numeric_limits<double>::quiet_NaN()), ControlValue(10.0));
  EXPECT_EQ(video::valueFrom(list(), std::numeric_limits<double>::quiet_NaN()), ControlValue(3));
}

TEST(ParametersTest, aWholeNumberIsTheNearestOne) {
  ControlFacts control = number(0, 60, 0, 1000);
  control.kind = ControlKind::wholeNumber;
  EXPECT_EQ(video::valueFrom(control, 0.033), ControlValue(2));  // 1.98
  EXPECT_EQ(video::valueFrom(control, 1.0), ControlValue(60));
}

TEST(ParametersTest, anAngleGoesHalfATurnToEitherSideAndFurtherBeyond) {
  const ControlFacts control = kindOf(ControlKind::angle);
  EXPECT_EQ(video::valueFrom(control, 0.0), ControlValue(-180.0));
  EXPECT_EQ(video::valueFrom(control, 0.625), ControlValue(45.0));
  EXPECT_EQ(video::valueFrom(control, 2.5), ControlValue(720.0));
  EXPECT_EQ(video::valueFrom(control, 1e9), ControlValue(32767.0));
}

TEST(ParametersTest, aCheckBoxIsOnFromTheMiddle) {
  const ControlFacts control = kindOf(ControlKind::checkBox);
  EXPECT_EQ(video::valueFrom(control, 0.49), ControlValue(0));
  EXPECT_EQ(video::valueFrom(control, 0.5), ControlValue(1));
}

TEST(ParametersTest, itemsAreSpreadEvenlyAndSeparatorsAreNone) {
  EXPECT_EQ(video::valueFrom(list(), 0.0), ControlValue(1));
  EXPECT_EQ(video::valueFrom(list(), 0.3), ControlValue(3));
  EXPECT_EQ(video::valueFrom(list(), 0.74), ControlValue(3));
  EXPECT_EQ(video::valueFrom(list(), 0.76), ControlValue(4));
  EXPECT_EQ(video::valueFrom(list(), 7.0), ControlValue(4));
  EXPECT_EQ(video::numberFor(list(), 1), 0.0);
  EXPECT_EQ(video::numberFor(list(), 3), 0.5);
  EXPECT_EQ(video::numberFor(list(), 4), 1.0);
}

TEST(ParametersTest, aPlaceIsAShareOfThePicture) {
  EXPECT_EQ(video::placeFrom(0.25, 0.75), (cli::Place{25.0, 75.0, true}));
  EXPECT_EQ(video::placeFrom(-50.0, std::numeric_limits<double>::quiet_NaN()), (cli::Place{-109.0, 50.0, true}));
}

TEST(ParametersTest, thePresetComesFirstAndGroupsAndLayersHaveNone) {
  std::vector<ControlFacts> controls = {kindOf(ControlKind::groupStart), number(0, 100, 0, 1000),
                                        kindOf(ControlKind::layer),      list(),
                                        kindOf(ControlKind::color),      kindOf(ControlKind::place),
                                        kindOf(ControlKind::checkBox),   kindOf(ControlKind::groupEnd)};
  const std::vector<video::Parameter> parameters = video::parametersOf(controls);
  std::vector<int32_t> kinds;
  for (const video::Parameter& parameter : parameters) kinds.push_back(parameter.kind);
  EXPECT_EQ(kinds, (std::vector<int32_t>{F0R_PARAM_STRING, F0R_PARAM_DOUBLE, F0R_PARAM_DOUBLE, F0R_PARAM_COLOR,
                                         F0R_PARAM_POSITION, F0R_PARAM_BOOL}));
  EXPECT_EQ(parameters[1].name, "Dot Size");
  EXPECT_EQ(parameters[1].explanation, "0 to 1 is 0 to 100");
  EXPECT_EQ(parameters[2].explanation, "0 Circle, 0.5 Square, 1 Star");
}

TEST(CallerTest, ffmpegAndItsLibraryTellMilliseconds) {
  EXPECT_TRUE(video::tellsMilliseconds(std::string_view("/usr/lib/x86_64-linux-gnu/libavfilter.so.8")));
  EXPECT_TRUE(video::tellsMilliseconds(std::string_view("ffmpeg")));
  EXPECT_TRUE(video::tellsMilliseconds(std::string_view("/opt/ffplay")));
  EXPECT_FALSE(video::tellsMilliseconds(std::string_view("/usr/lib/x86_64-linux-gnu/mlt-7/libmltfrei0r.so")));
  EXPECT_FALSE(video::tellsMilliseconds(std::string_view("/home/ffmpeg/lib/other.so")));
}
