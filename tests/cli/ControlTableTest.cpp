#include "cli/ControlTable.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "ae/Constants.h"

using cli::ControlFacts;
using cli::ControlKind;

namespace {

std::vector<ControlFacts> someControls() {
  ControlFacts shape;
  shape.index = 1;
  shape.id = 1;
  shape.name = "Shape";
  shape.kind = ControlKind::choice;
  shape.items = {"Circle", "(-", "Star"};
  shape.declaredItems = 6;
  shape.defaultNumber = 3;
  shape.flags = PF_ParamFlag_SUPERVISE;

  ControlFacts opacity;
  opacity.index = 2;
  opacity.id = 125;
  opacity.name = "Opacity";
  opacity.validMax = 100;
  opacity.sliderMax = 50;
  opacity.defaultNumber = 12.5;
  opacity.precision = 1;
  opacity.percent = true;
  return {shape, opacity};
}

}  // namespace

TEST(ControlTableTest, eachControlIsOneAlignedLineWithItsChoicesBelow) {
  std::ostringstream out;
  writeControlTable(out, someControls(), nullptr);
  EXPECT_EQ(out.str(),
            "Index   Id  Name     Kind    Valid     Slider   Default\n"
            "    1    1  Shape    choice                     Star\n"
            "              Circle | Star\n"
            "    2  125  Opacity  number  0 to 100  0 to 50  12.5%\n");
}

TEST(ControlTableTest, aDescriptionHoldsTheFactsOfAControlWithoutHelp) {
  std::ostringstream out;
  describeControl(out, someControls()[0]);
  EXPECT_EQ(out.str(),
            "Shape (choice, index 1, id 1)\n"
            "  Default: Star\n"
            "  Choices: Circle | Star\n"
            "  Flags: supervised\n");
}

TEST(ControlTableTest, theJsonHoldsTheSameFacts) {
  std::ostringstream out;
  writeControlJson(out, someControls(), nullptr);
  const nlohmann::json all = nlohmann::json::parse(out.str());
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0], nlohmann::json::parse(R"({"index": 1, "id": 1, "name": "Shape", "kind": "choice", "default": 3,
    "choices": ["Circle", "(-", "Star"], "choiceCount": 6, "flags": 64, "flagNames": ["supervised"], "uiFlags": 0})"));
  EXPECT_EQ(all[1], nlohmann::json::parse(R"({"index": 2, "id": 125, "name": "Opacity", "kind": "number",
    "valid": [0.0, 100.0], "slider": [0.0, 50.0], "default": 12.5, "precision": 1, "percent": true, "flags": 0,
    "flagNames": [], "uiFlags": 0})"));
}
