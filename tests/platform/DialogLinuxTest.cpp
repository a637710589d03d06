// The stand-in for the screen must behave as the screen does: grey buttons take no clicks, and every answer ends.
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "platform/Dialog.h"

namespace {

struct Seen {
  std::vector<int32_t> commands;
  bool greyButtons = false;
  bool closesOnButtons = true;
};
Seen* seen = nullptr;

intptr_t recordingProcedure(platform::Window dialog, uint32_t message, uintptr_t wParam, intptr_t lParam) {
  if (message == platform::messageInitDialog) {
    seen = reinterpret_cast<Seen*>(lParam);  // NOLINT(performance-no-int-to-ptr)
    if (seen->greyButtons) {
      platform::EnableWindow(platform::GetDlgItem(dialog, 1010), false);
      platform::EnableWindow(platform::GetDlgItem(dialog, 1012), false);
    }
    return 1;
  }
  seen->commands.push_back(static_cast<int32_t>(wParam));
  if (seen->closesOnButtons || static_cast<int32_t>(wParam) == platform::commandCancel) platform::EndDialog(dialog, 7);
  return 1;
}

class Dialog : public testing::Test {
 protected:
  ~Dialog() override { unsetenv("VINDREL_DIALOG_ANSWER"); }

  static std::vector<int32_t> commandsAfter(const char* answer, bool greyButtons, bool closesOnButtons = true) {
    setenv("VINDREL_DIALOG_ANSWER", answer, 1);
    Seen record;
    record.greyButtons = greyButtons;
    record.closesOnButtons = closesOnButtons;
    EXPECT_EQ(platform::DialogBoxParamA(platform::GetModuleHandleA("/any/module"), 101, nullptr, recordingProcedure,
                                        reinterpret_cast<intptr_t>(&record)),
              7);
    return record.commands;
  }
};

TEST_F(Dialog, saveIsAClickOnTheFirstButton) {
  EXPECT_EQ(commandsAfter("save", false), std::vector<int32_t>{1010});
}

TEST_F(Dialog, restoreIsAClickOnTheSecondButton) {
  EXPECT_EQ(commandsAfter("restore", false), std::vector<int32_t>{1012});
}

TEST_F(Dialog, anyOtherAnswerIsTheCloseBox) {
  EXPECT_EQ(commandsAfter("close", false), std::vector<int32_t>{2});
  EXPECT_EQ(commandsAfter("something", false), std::vector<int32_t>{2});
}

TEST_F(Dialog, aClickOnAGreyButtonDoesNothingAndTheCloseBoxIsLeft) {
  EXPECT_EQ(commandsAfter("save", true), std::vector<int32_t>{2});
  EXPECT_EQ(commandsAfter("restore", true), std::vector<int32_t>{2});
}

TEST_F(Dialog, aButtonThatDoesNotCloseLeavesTheCloseBox) {
  EXPECT_EQ(commandsAfter("save", false, false), (std::vector<int32_t>{1010, 2}));
}

TEST_F(Dialog, aModuleOrADialogThatIsNotThereFailsAtOnce) {
  Seen record;
  const auto parameter = reinterpret_cast<intptr_t>(&record);
  EXPECT_EQ(platform::DialogBoxParamA(nullptr, 101, nullptr, recordingProcedure, parameter), -1);
  EXPECT_EQ(
      platform::DialogBoxParamA(platform::GetModuleHandleA("/any/module"), 100, nullptr, recordingProcedure, parameter),
      -1);
  EXPECT_EQ(platform::GetModuleHandleA(""), nullptr);
  EXPECT_TRUE(record.commands.empty());
}

TEST_F(Dialog, nothingCanBeDoneToADialogThatIsNotOpen) {
  platform::ScreenRect rect{1, 2, 3, 4};
  EXPECT_FALSE(platform::GetWindowRect(nullptr, &rect));
  EXPECT_EQ(rect.left, 1);
  EXPECT_EQ(rect.bottom, 4);
  EXPECT_FALSE(platform::EndDialog(nullptr, 0));
  EXPECT_EQ(platform::GetDlgItem(nullptr, 1010), nullptr);
}

}  // namespace
