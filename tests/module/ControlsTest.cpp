// Every control as the host receives it, against a table that is written out here and shares nothing with the effect's
// own rows.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/module/HostedModule.h"

namespace vindrel::test {
namespace {

using standin::Control;
using standin::Matter;

// Host index, id, kind, flags (hexadecimal), name; then what the kind has: "valid range track default decimals" of
// sliders, "default of count: choices" of popups.
constexpr const char* expectedControls = R"table(
1 id 1 popup 0x20 "Dot Shape" 1 of 6: Circle|Square|Round Square|Cross|Star|Diamond
2 id 2 color 0x20 "Dot Color" red 255 green 125 blue 20
3 id 3 number 0x20 "Dot Size" 0..1000 track 0..100 default 10 decimals 1
4 id 4 number 0x20 "Dot Aspect" -100..100 track -100..100 default 0 decimals 1 percent
5 id 5 angle 0x20 "Dot Rotation" 0 degrees
6 id 6 popup 0x20 "Rotation Type" 1 of 6: Normal|Look At Center|Fix Dot Angle
7 id 7 number 0x20 "Dot Opacity" 0..100 track 0..100 default 100 decimals 1 percent
8 id 8 popup 0x60 "Distance Between" 1 of 6: Dots|Centers
9 id 9 number 0x20 "Dot Distance X" 0..10000 track 0..100 default 20 decimals 1
10 id 10 number 0x20 "Dot Distance Y" 0..10000 track 0..100 default 20 decimals 1
11 id 11 point 0x20 "Center Position" 50 % 50 %
12 id 125 box 0x20 "Center Dot to Front" off
13 id 12 angle 0x20 "Global Rotation" 0 degrees
14 id 13 popup 0x20 "Global Rotation Center" 1 of 4: Center|FX1|FX2|FX3
15 id 14 popup 0x20 "Mask" 1 of 3: Normal|None|Layer
16 id 15 layer 0x20 "Mask Target Layer" none
17 id 16 box 0x20 "Invert Mask" off
18 id 17 box 0x20 "Clear Background" off
19 id 18 group 0x20 "Randomize"
20 id 20 whole 0x24 "Random Interval" 0..1000 track 0..60 default 0
21 id 132 whole 0x24 "Random Array" 0..10 track 0..10 default 0
22 id 21 whole 0x24 "Random Seed" 0..10000 track 0..100 default 0
23 id 22 number 0x20 "Size" 0..50 track 0..1 default 0 decimals 2
24 id 23 number 0x20 "Aspect" 0..50 track 0..1 default 0 decimals 2
25 id 24 number 0x20 "Rotation" 0..50 track 0..1 default 0 decimals 2
26 id 25 number 0x20 "Opacity" 0..50 track 0..1 default 0 decimals 2
27 id 26 number 0x20 "Distance X" 0..50 track 0..1 default 0 decimals 2
28 id 27 number 0x20 "Distance Y" 0..50 track 0..1 default 0 decimals 2
29 id 32 angle 0x20 "H" 0 degrees
30 id 33 number 0x20 "S" 0..100 track 0..100 default 0 decimals 1 percent
31 id 34 number 0x20 "V" 0..100 track 0..100 default 0 decimals 1 percent
32 id 19 end 0x00 ""
33 id 35 group 0x20 "Effector1"
34 id 37 box 0x20 "Enable Effector 1" off
35 id 41 point 0x20 "Position 1" 50 % 50 %
36 id 42 number 0x20 "Size 1" 0..5000 track 0..1000 default 200 decimals 1
37 id 40 angle 0x20 "Angle 1" 0 degrees
38 id 43 number 0x20 "Falloff 1" 0..100 track 0..100 default 100 decimals 1 percent
39 id 136 popup 0x20 "Effect Map 1" 3 of 6: Use Custom Map|(-|Radial|Radial Mirror|Linear|Linear Mirror
40 id 45 layer 0x20 "Custom Map Layer 1" itself
41 id 139 box 0x20 "Fit to Layer 1" off
42 id 129 box 0x20 "Pick Source Color 1" off
43 id 133 popup 0x20 "Tiling 1" 1 of 4: None|Repeat|Mirror|Extend Edge
44 id 126 box 0x20 "Center Dot to Front 1" off
45 id 46 box 0x20 "Absolute 1" off
46 id 47 number 0x20 "ABS Size 1" 0..1000 track 0..100 default 20 decimals 1
47 id 48 number 0x20 "ABS Aspect 1" -100..100 track -100..100 default 0 decimals 0 percent
48 id 49 angle 0x20 "ABS Rotation 1" 0 degrees
49 id 50 number 0x20 "ABS Opacity 1" 0..100 track 0..100 default 100 decimals 0 percent
50 id 52 number 0x20 "Ratio Size 1" 0..100 track 0..10 default 1 decimals 1
51 id 53 number 0x20 "Ratio Aspect 1" 0..100 track 0..10 default 1 decimals 1
52 id 54 number 0x20 "Ratio Rotation 1" 0..100 track 0..10 default 1 decimals 1
53 id 55 number 0x20 "Ratio Opacity 1" 0..100 track 0..10 default 1 decimals 1
54 id 57 number 0x20 "Offset Size 1" -100..100 track -100..100 default 0 decimals 1
55 id 58 number 0x20 "Offset Aspect 1" -100..100 track -100..100 default 0 decimals 0 percent
56 id 59 angle 0x20 "Offset Rotation 1" 0 degrees
57 id 60 number 0x20 "Offset Opacity 1" -100..100 track -100..100 default 0 decimals 0 percent
58 id 61 box 0x20 "Color 1" off
59 id 62 popup 0x20 "Blend Mode 1" 1 of 14: Normal|(-|Add|Substract|Multiply|Screen|Overlay|Hard Light|Soft Light|(-|Darken|Lighten|Difference|Exclusion
60 id 63 color 0x20 "Blend Color 1" red 255 green 255 blue 255
61 id 64 angle 0x20 "Shift Hue 1" 0 degrees
62 id 36 end 0x00 ""
63 id 65 group 0x20 "Effector2"
64 id 67 box 0x20 "Enable Effector 2" off
65 id 71 point 0x20 "Position 2" 50 % 50 %
66 id 72 number 0x20 "Size 2" 0..5000 track 0..1000 default 200 decimals 1
67 id 70 angle 0x20 "Angle 2" 0 degrees
68 id 73 number 0x20 "Falloff 2" 0..100 track 0..100 default 100 decimals 1 percent
69 id 137 popup 0x20 "Effect Map 2" 3 of 6: Use Custom Map|(-|Radial|Radial Mirror|Linear|Linear Mirror
70 id 75 layer 0x20 "Custom Map Layer 2" itself
71 id 140 box 0x20 "Fit to Layer 2" off
72 id 130 box 0x20 "Pick Source Color 2" off
73 id 134 popup 0x20 "Tiling 2" 1 of 4: None|Repeat|Mirror|Extend Edge
74 id 127 box 0x20 "Center Dot to Front 2" off
75 id 76 box 0x20 "Absolute 2" off
76 id 77 number 0x20 "ABS Size 2" 0..1000 track 0..100 default 20 decimals 1
77 id 78 number 0x20 "ABS Aspect 2" -100..100 track -100..100 default 0 decimals 0 percent
78 id 79 angle 0x20 "ABS Rotation 2" 0 degrees
79 id 80 number 0x20 "ABS Opacity 2" 0..100 track 0..100 default 100 decimals 0 percent
80 id 82 number 0x20 "Ratio Size 2" 0..100 track 0..10 default 1 decimals 1
81 id 83 number 0x20 "Ratio Aspect 2" 0..100 track 0..10 default 1 decimals 1
82 id 84 number 0x20 "Ratio Rotation 2" 0..100 track 0..10 default 1 decimals 1
83 id 85 number 0x20 "Ratio Opacity 2" 0..100 track 0..10 default 1 decimals 1
84 id 87 number 0x20 "Offset Size 2" -100..100 track -100..100 default 0 decimals 1
85 id 88 number 0x20 "Offset Aspect 2" -100..100 track -100..100 default 0 decimals 0 percent
86 id 89 angle 0x20 "Offset Rotation 2" 0 degrees
87 id 90 number 0x20 "Offset Opacity 2" -100..100 track -100..100 default 0 decimals 0 percent
88 id 91 box 0x20 "Color 2" off
89 id 92 popup 0x20 "Blend Mode 2" 1 of 14: Normal|(-|Add|Substract|Multiply|Screen|Overlay|Hard Light|Soft Light|(-|Darken|Lighten|Difference|Exclusion
90 id 93 color 0x20 "Blend Color 2" red 255 green 255 blue 255
91 id 94 angle 0x20 "Shift Hue 2" 0 degrees
92 id 66 end 0x00 ""
93 id 95 group 0x20 "Effector3"
94 id 97 box 0x20 "Enable Effector 3" off
95 id 101 point 0x20 "Position 3" 50 % 50 %
96 id 102 number 0x20 "Size 3" 0..5000 track 0..1000 default 200 decimals 1
97 id 100 angle 0x20 "Angle 3" 0 degrees
98 id 103 number 0x20 "Falloff 3" 0..100 track 0..100 default 100 decimals 1 percent
99 id 138 popup 0x20 "Effect Map 3" 3 of 6: Use Custom Map|(-|Radial|Radial Mirror|Linear|Linear Mirror
100 id 105 layer 0x20 "Custom Map Layer 3" itself
101 id 141 box 0x20 "Fit to Layer 3" off
102 id 131 box 0x20 "Pick Source Color 3" off
103 id 135 popup 0x20 "Tiling 3" 1 of 4: None|Repeat|Mirror|Extend Edge
104 id 128 box 0x20 "Center Dot to Front 3" off
105 id 106 box 0x20 "Absolute 3" off
106 id 107 number 0x20 "ABS Size 3" 0..1000 track 0..100 default 20 decimals 1
107 id 108 number 0x20 "ABS Aspect 3" -100..100 track -100..100 default 0 decimals 0 percent
108 id 109 angle 0x20 "ABS Rotation 3" 0 degrees
109 id 110 number 0x20 "ABS Opacity 3" 0..100 track 0..100 default 100 decimals 0 percent
110 id 112 number 0x20 "Ratio Size 3" 0..100 track 0..10 default 1 decimals 1
111 id 113 number 0x20 "Ratio Aspect 3" 0..100 track 0..10 default 1 decimals 1
112 id 114 number 0x20 "Ratio Rotation 3" 0..100 track 0..10 default 1 decimals 1
113 id 115 number 0x20 "Ratio Opacity 3" 0..100 track 0..10 default 1 decimals 1
114 id 117 number 0x20 "Offset Size 3" -100..100 track -100..100 default 0 decimals 1
115 id 118 number 0x20 "Offset Aspect 3" -100..100 track -100..100 default 0 decimals 0 percent
116 id 119 angle 0x20 "Offset Rotation 3" 0 degrees
117 id 120 number 0x20 "Offset Opacity 3" -100..100 track -100..100 default 0 decimals 0 percent
118 id 121 box 0x20 "Color 3" off
119 id 122 popup 0x20 "Blend Mode 3" 1 of 14: Normal|(-|Add|Substract|Multiply|Screen|Overlay|Hard Light|Soft Light|(-|Darken|Lighten|Difference|Exclusion
120 id 123 color 0x20 "Blend Color 3" red 255 green 255 blue 255
121 id 124 angle 0x20 "Shift Hue 3" 0 degrees
122 id 96 end 0x00 ""
)table";

std::string whole(double value) {
  EXPECT_EQ(value, static_cast<double>(static_cast<int64_t>(value)));
  return std::to_string(static_cast<int64_t>(value));
}

std::string textOf(const PF_SliderDef& def) {
  EXPECT_EQ(def.value, def.dephault);
  EXPECT_EQ(def.value_str[0], '\0');
  EXPECT_EQ(def.value_desc[0], '\0');
  return std::to_string(def.valid_min) + ".." + std::to_string(def.valid_max) + " track " +
         std::to_string(def.slider_min) + ".." + std::to_string(def.slider_max) + " default " +
         std::to_string(def.value);
}

std::string textOf(const PF_FloatSliderDef& def) {
  EXPECT_EQ(def.value, static_cast<double>(def.dephault));
  uint32_t tolerance = 0;
  std::memcpy(&tolerance, &def.curve_tolerance, sizeof tolerance);
  EXPECT_EQ(tolerance, 0x3D4CCCCDU);
  EXPECT_EQ(def.fs_flags, 0U);
  EXPECT_EQ(def.phase, 0.0);
  EXPECT_TRUE(def.display_flags == 0 || def.display_flags == PF_ValueDisplayFlag_PERCENT) << def.display_flags;
  return whole(static_cast<double>(def.valid_min)) + ".." + whole(static_cast<double>(def.valid_max)) + " track " +
         whole(static_cast<double>(def.slider_min)) + ".." + whole(static_cast<double>(def.slider_max)) + " default " +
         whole(def.value) + " decimals " + std::to_string(def.precision) + (def.display_flags != 0 ? " percent" : "");
}

std::string textOf(const PF_ColorDef& def) {
  EXPECT_EQ(def.value.alpha, 255);
  EXPECT_EQ(std::memcmp(&def.value, &def.dephault, sizeof def.value), 0);
  return "red " + std::to_string(def.value.red) + " green " + std::to_string(def.value.green) + " blue " +
         std::to_string(def.value.blue);
}

std::string textOf(const PF_PopupDef& def) {
  EXPECT_EQ(def.value, def.dephault);
  return std::to_string(def.value) + " of " + std::to_string(def.num_choices) + ": " + def.u.namesptr;
}

std::string textOf(const PF_CheckBoxDef& def) {
  EXPECT_EQ(def.value, def.dephault);
  EXPECT_STREQ(def.u.nameptr, "");
  return def.value == 0 ? "off" : "on";
}

std::string textOf(const PF_AngleDef& def) {
  EXPECT_EQ(def.value, def.dephault);
  return whole(def.value / 65536.0) + " degrees";
}

std::string textOf(const PF_PointDef& def) {
  EXPECT_EQ(def.x_value, def.x_dephault);
  EXPECT_EQ(def.y_value, def.y_dephault);
  EXPECT_EQ(def.restrict_bounds, 0);
  return whole(def.x_dephault / 65536.0) + " % " + whole(def.y_dephault / 65536.0) + " %";
}

std::string textOf(const PF_LayerDef& def) {
  return def.dephault == PF_LayerDefault_MYSELF ? "itself" : def.dephault == PF_LayerDefault_NONE ? "none" : "?";
}

/// A control in the words of the table.
std::string textOf(const Control& control) {
  const PF_ParamDefUnion& u = control.definition.u;
  std::string kind, rest;
  switch (control.type) {
    case PF_Param_LAYER:
      kind = "layer", rest = textOf(u.ld);
      break;
    case PF_Param_SLIDER:
      kind = "whole", rest = textOf(u.sd);
      break;
    case PF_Param_ANGLE:
      kind = "angle", rest = textOf(u.ad);
      break;
    case PF_Param_CHECKBOX:
      kind = "box", rest = textOf(u.bd);
      break;
    case PF_Param_COLOR:
      kind = "color", rest = textOf(u.cd);
      break;
    case PF_Param_POINT:
      kind = "point", rest = textOf(u.td);
      break;
    case PF_Param_POPUP:
      kind = "popup", rest = textOf(u.pd);
      break;
    case PF_Param_FLOAT_SLIDER:
      kind = "number", rest = textOf(u.fs_d);
      break;
    case PF_Param_GROUP_START:
      kind = "group";
      break;
    case PF_Param_GROUP_END:
      kind = "end";
      break;
    default:
      kind = "kind " + std::to_string(control.type);
  }
  char flags[16];
  std::snprintf(flags, sizeof flags, "0x%02x", static_cast<unsigned>(control.definition.flags));
  const std::string text = std::to_string(control.index) + " id " + std::to_string(control.id) + " " + kind + " " +
                           flags + " \"" + control.name + "\"";
  return rest.empty() ? text : text + " " + rest;
}

std::vector<std::string> expectedLines() {
  std::vector<std::string> lines;
  std::istringstream text(expectedControls);
  for (std::string line; std::getline(text, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

class Controls : public HostedModule {};

TEST_F(Controls, arriveAtTheHostAsTheTableTells) {
  const std::vector<std::string> expected = expectedLines();
  ASSERT_EQ(expected.size(), 122U);
  ASSERT_EQ(host.controls().size(), 122U);
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(textOf(host.controls()[i]), expected[i]);
  }
}

TEST_F(Controls, areCountedWithTheLayerItself) {
  EXPECT_EQ(host.numParams(), 123);
}

TEST_F(Controls, surpriseTheHostByTheChoiceCountsOfTwoPopupsOnly) {
  const std::vector<standin::Entry>& complaints = host.books().complaints();
  ASSERT_EQ(complaints.size(), 2U);
  EXPECT_EQ(complaints[0].matter, Matter::kDeclaration);
  EXPECT_NE(complaints[0].text.find("\"Rotation Type\" says that it has 6 items and names 3"), std::string::npos);
  EXPECT_EQ(complaints[1].matter, Matter::kDeclaration);
  EXPECT_NE(complaints[1].text.find("\"Distance Between\" says that it has 6 items and names 2"), std::string::npos);
}

TEST_F(Controls, startFreeOutsideARenderEngine) {
  for (const Control& control : host.controls()) {
    EXPECT_EQ(control.definition.ui_flags, 0) << control.name;
  }
}

TEST_F(Controls, ofANewInstanceShowOrangeDotsAndWhiteBlendColors) {
  const standin::ParameterValues values = host.defaults();
  const PF_Pixel dots = values.color("Dot Color");
  EXPECT_EQ(dots.alpha, 255);
  EXPECT_EQ(dots.red, 255);
  EXPECT_EQ(dots.green, 125);
  EXPECT_EQ(dots.blue, 20);
  for (const char* name : {"Blend Color 1", "Blend Color 2", "Blend Color 3"}) {
    const PF_Pixel white = values.color(name);
    EXPECT_EQ(white.red, 255) << name;
    EXPECT_EQ(white.green, 255) << name;
    EXPECT_EQ(white.blue, 255) << name;
  }
}

TEST_F(Controls, ofANewInstanceHaveAllEffectorsOffAndRadial) {
  const standin::ParameterValues values = host.defaults();
  for (const char* n : {" 1", " 2", " 3"}) {
    EXPECT_FALSE(values.checkbox(std::string("Enable Effector") + n));
    const std::string map = std::string("Effect Map") + n;
    EXPECT_EQ(values.popup(map), 3);
    EXPECT_EQ(host.control(map)->choices.at(2), "Radial");
  }
}

TEST_F(Controls, ofLayersStartWithTheEffectsOwnLayerButForTheMask) {
  const standin::ParameterValues values = host.defaults();
  EXPECT_EQ(values.layer("Mask Target Layer").source, standin::LayerValue::Source::kNone);
  for (const char* name : {"Custom Map Layer 1", "Custom Map Layer 2", "Custom Map Layer 3"}) {
    EXPECT_EQ(values.layer(name).source, standin::LayerValue::Source::kItself) << name;
  }
}

// A host draws an item "(-" as a line that cannot be chosen, and counts it.
TEST_F(Controls, haveSeparatorsForTheBlendModesTwoAndTenAndTheSecondEffectMap) {
  std::map<std::string, std::vector<size_t>> separators;
  for (const Control& control : host.controls()) {
    for (size_t i = 0; i < control.choices.size(); ++i) {
      if (control.choices[i] == "(-") separators[control.name].push_back(i + 1);
    }
  }
  const std::map<std::string, std::vector<size_t>> expected = {{"Blend Mode 1", {2, 10}}, {"Blend Mode 2", {2, 10}},
                                                               {"Blend Mode 3", {2, 10}}, {"Effect Map 1", {2}},
                                                               {"Effect Map 2", {2}},     {"Effect Map 3", {2}}};
  EXPECT_EQ(separators, expected);
}

TEST_F(Controls, lateAdditionsStandInTheMiddleWithHighIds) {
  ASSERT_NE(host.control(standin::ById{125}), nullptr);
  EXPECT_EQ(host.control(standin::ById{125})->index, 12);
  EXPECT_EQ(host.control(standin::ByIndex{12})->name, "Center Dot to Front");
}

class FailingSetUp : public LoadedOnly {};

TEST_F(FailingSetUp, endsAtTheFirstHostErrorAndTellsTheCountAllTheSame) {
  ASSERT_EQ(host.globalSetup(), 0);
  ASSERT_NE(host.outData().num_params, 123) << "the count is not known to the host before the set-up";
  host.faults().fail("add_param", 7, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.paramsSetup(), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.controls().size(), 6U);
  EXPECT_EQ(host.outData().num_params, 123);
  EXPECT_EQ(host.globalSetdown(), 0);
  EXPECT_EQ(owed({Matter::kDeclaration}), "");
}

class RenderEngineControls : public LoadedOnly {
 protected:
  RenderEngineControls() : LoadedOnly(renderEngine()) {}
  static standin::HostSettings renderEngine() {
    standin::HostSettings settings = plainHost();
    settings.renderEngine = true;
    return settings;
  }
};

TEST_F(RenderEngineControls, startGreyedButForTheEndsOfGroups) {
  ASSERT_EQ(host.start(), 0);
  ASSERT_EQ(host.controls().size(), 122U);
  for (const Control& control : host.controls()) {
    const bool end = control.type == PF_Param_GROUP_END;
    EXPECT_EQ(control.definition.ui_flags, end ? 0 : PF_PUI_DISABLED) << control.index << " " << control.name;
  }
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(owed(), "");
}

class SecondLife : public LoadedOnly {};

TEST_F(SecondLife, addsTheSame122ControlsAndGoesOnCounting) {
  ASSERT_EQ(host.start(), 0);
  ASSERT_EQ(host.finish(), 0);
  standin::StandInHost second(module, plainHost());
  ASSERT_EQ(second.globalSetup(), 0);
  EXPECT_EQ(second.paramsSetup(), 0);
  const std::vector<std::string> expected = expectedLines();
  ASSERT_EQ(second.controls().size(), 122U);
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(textOf(second.controls()[i]), expected[i]);
  }
  EXPECT_EQ(second.numParams(), 245);
  EXPECT_EQ(second.globalSetdown(), 0);
  // A host can only wonder about a count that does not fit the list.
  EXPECT_TRUE(second.books().clean({Matter::kDeclaration}));
}

}  // namespace
}  // namespace vindrel::test
