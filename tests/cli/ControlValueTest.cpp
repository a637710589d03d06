#include "cli/ControlValue.h"

#include <gtest/gtest.h>

#include "cli/UserError.h"

using cli::Color;
using cli::ControlFacts;
using cli::ControlKind;
using cli::ControlValue;
using cli::parseControlValue;
using cli::Place;

namespace {

ControlFacts control(ControlKind kind, double least = 0.0, double most = 0.0) {
  ControlFacts facts;
  facts.name = "Thing";
  facts.kind = kind;
  facts.validMin = least;
  facts.validMax = most;
  return facts;
}

ControlFacts percentControl() {
  ControlFacts facts = control(ControlKind::number, -100, 100);
  facts.percent = true;
  return facts;
}

ControlFacts mapControl() {
  ControlFacts facts = control(ControlKind::choice);
  facts.items = {"Use Custom Map", "(-", "Radial", "Linear Mirror"};
  return facts;
}

std::string refusal(const ControlFacts& facts, const std::string& text) {
  try {
    parseControlValue(facts, text);
  } catch (const cli::UserError& error) {
    return error.what();
  }
  return "accepted";
}

}  // namespace

TEST(ControlValueTest, numbersAreReadUpToBothEndsOfTheirRange) {
  const ControlFacts size = control(ControlKind::number, 0, 1000);
  EXPECT_EQ(parseControlValue(size, "0"), ControlValue(0.0));
  EXPECT_EQ(parseControlValue(size, "1000"), ControlValue(1000.0));
  EXPECT_EQ(parseControlValue(size, " +12.5 "), ControlValue(12.5));
  EXPECT_EQ(parseControlValue(size, "1e2"), ControlValue(100.0));
}

TEST(ControlValueTest, whatIsNoNumberInRangeIsRefusedWithTheRange) {
  const ControlFacts size = control(ControlKind::number, 0, 1000);
  for (const char* text : {"-0.1", "1000.5", "big", "", "nan", "inf", "12 px", "0x10", "1,5", "12%", "+-1"}) {
    EXPECT_EQ(refusal(size, text), "'Thing' takes a number from 0 to 1000, not '" + std::string(text) + "'");
  }
}

TEST(ControlValueTest, wholeNumbersTakeNoFractions) {
  const ControlFacts seed = control(ControlKind::wholeNumber, 0, 10000);
  EXPECT_EQ(parseControlValue(seed, "10000"), ControlValue(10000));
  EXPECT_EQ(parseControlValue(seed, "3.0"), ControlValue(3));
  EXPECT_EQ(refusal(seed, "3.5"), "'Thing' takes a whole number from 0 to 10000, not '3.5'");
}

TEST(ControlValueTest, percentSignsMayBeLeftOut) {
  EXPECT_EQ(parseControlValue(percentControl(), "-40%"), ControlValue(-40.0));
  EXPECT_EQ(parseControlValue(percentControl(), "40 %"), ControlValue(40.0));
  EXPECT_EQ(parseControlValue(percentControl(), "40"), ControlValue(40.0));
  EXPECT_EQ(refusal(percentControl(), "101%"), "'Thing' takes percent from -100 to 100, not '101%'");
}

TEST(ControlValueTest, anglesAreDegreesOfAnyNumberOfTurns) {
  const ControlFacts turn = control(ControlKind::angle);
  EXPECT_EQ(parseControlValue(turn, "-720.25"), ControlValue(-720.25));
  EXPECT_EQ(parseControlValue(turn, "45°"), ControlValue(45.0));
  EXPECT_EQ(parseControlValue(turn, "45 deg"), ControlValue(45.0));
  EXPECT_EQ(refusal(turn, "32768"), "'Thing' takes an angle in degrees, between -32768 and 32768, not '32768'");
}

TEST(ControlValueTest, checkBoxesTakeTheUsualWords) {
  const ControlFacts box = control(ControlKind::checkBox);
  for (const char* text : {"on", "ON", "true", "1", "yes"}) EXPECT_EQ(parseControlValue(box, text), ControlValue(1));
  for (const char* text : {"off", "False", "0", "no"}) EXPECT_EQ(parseControlValue(box, text), ControlValue(0));
  EXPECT_EQ(refusal(box, "maybe"), "'Thing' takes on or off, not 'maybe'");
}

TEST(ControlValueTest, colorsHaveThreeOrSixHexDigits) {
  const ControlFacts color = control(ControlKind::color);
  EXPECT_EQ(parseControlValue(color, "#ff7d14"), ControlValue(Color{255, 125, 20}));
  EXPECT_EQ(parseControlValue(color, "#FF7D14"), ControlValue(Color{255, 125, 20}));
  EXPECT_EQ(parseControlValue(color, "#f80"), ControlValue(Color{255, 136, 0}));
  EXPECT_EQ(parseControlValue(color, "#09AFaf"), ControlValue(Color{0x09, 0xAF, 0xAF}));
  for (const char* text : {"orange", "#ff7d1", "ff7d14", "#ff7d1g", "#ff7d14ff", "#", "#g08", "#/00000", "#0:0000",
                           "#@00000", "#0`0000"}) {
    EXPECT_EQ(refusal(color, text), "'Thing' takes a colour such as #ff7d14, not '" + std::string(text) + "'");
  }
}

TEST(ControlValueTest, placesAreInPixelsOrInPercent) {
  const ControlFacts place = control(ControlKind::place);
  EXPECT_EQ(parseControlValue(place, "300,200"), ControlValue(Place{300, 200, false}));
  EXPECT_EQ(parseControlValue(place, " 12.5% , -30% "), ControlValue(Place{12.5, -30, true}));
  for (const char* text :
       {"50%,20", "50", "50%", "a,b", "1,2,3", "40000,0", "0,40000", ",", "1,", "200%,200", "1e9%,0%", "0%,1e9%"}) {
    EXPECT_EQ(refusal(place, text),
              "'Thing' takes a place such as 50%,50% or 300,200, not '" + std::string(text) + "'");
  }
}

TEST(ControlValueTest, itemsAreNamedInAnyCaseOrNumberedWithTheSeparators) {
  EXPECT_EQ(parseControlValue(mapControl(), "radial"), ControlValue(3));
  EXPECT_EQ(parseControlValue(mapControl(), "3"), ControlValue(3));
  EXPECT_EQ(parseControlValue(mapControl(), "Linear Mirror"), ControlValue(4));
}

TEST(ControlValueTest, aMisspeltItemIsAnsweredWithTheNearest) {
  EXPECT_EQ(refusal(mapControl(), "Radiall"), "'Thing' has no item 'Radiall'; did you mean 'Radial'?");
  EXPECT_EQ(refusal(mapControl(), "something else"),
            "'Thing' has no item 'something else'; it has Use Custom Map, Radial or Linear Mirror");
}

TEST(ControlValueTest, anItemNumberOutsideTheListIsRefused) {
  for (const char* text : {"0", "5", "1.5", "-1"}) {
    EXPECT_EQ(refusal(mapControl(), text),
              "'Thing' has no item number " + std::string(text) + "; it has Use Custom Map, Radial or Linear Mirror");
  }
}

TEST(ControlValueTest, aSeparatorCantBeChosen) {
  EXPECT_EQ(refusal(mapControl(), "2"),
            "item 2 of 'Thing' is a separator line; it has Use Custom Map, Radial or Linear Mirror");
}

TEST(ControlValueTest, layersAndGroupsTakeNoValue) {
  EXPECT_EQ(refusal(control(ControlKind::layer), "m.png"),
            "'Thing' is a layer; give it a picture by --layer \"Thing=FILE\"");
  EXPECT_EQ(refusal(control(ControlKind::groupStart), "1"), "'Thing' is a group that takes no value");
}

TEST(ControlValueTest, valuesAreShownAsTheyAreGiven) {
  EXPECT_EQ(shownValue(control(ControlKind::number), ControlValue(0.1)), "0.1");
  EXPECT_EQ(shownValue(control(ControlKind::number), ControlValue(-0.0)), "0");
  EXPECT_EQ(shownValue(percentControl(), ControlValue(100.0)), "100%");
  EXPECT_EQ(shownValue(control(ControlKind::angle), ControlValue(-45.0)), "-45°");
  EXPECT_EQ(shownValue(control(ControlKind::checkBox), ControlValue(1)), "on");
  EXPECT_EQ(shownValue(control(ControlKind::color), ControlValue(Color{255, 125, 20})), "#ff7d14");
  EXPECT_EQ(shownValue(control(ControlKind::place), ControlValue(Place{50, 25, true})), "50%, 25%");
  EXPECT_EQ(shownValue(mapControl(), ControlValue(4)), "Linear Mirror");
}

TEST(ControlFactsTest, theVeryLettersGoBeforeTheSameLettersInAnotherCase) {
  std::vector<ControlFacts> controls(2, control(ControlKind::number));
  controls[0].name = "size";
  controls[0].index = 1;
  controls[1].name = "Size";
  controls[1].index = 2;
  EXPECT_EQ(findControl(controls, "Size").index, 2);
  EXPECT_EQ(findControl(controls, "SIZE").index, 1);
}
