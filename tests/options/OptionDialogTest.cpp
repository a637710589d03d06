#include "effect/options/OptionDialog.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "ae/Constants.h"
#include "ae/Suites.h"
#include "effect/options/Messages.h"
#include "effect/params/StoredDefaults.h"
#include "tests/options/FakeSystem.h"
#include "tests/support/TemporaryFolder.h"

namespace {

char hostWindow;
std::string modulePath;
PF_Err pathError = PF_Err_NONE;

PF_Err platformData(PF_ProgPtr, PF_PlatDataID which, void* data) {
  if (which == PF_PlatData_MAIN_WND) {
    void* const window = &hostWindow;
    std::memcpy(data, &window, sizeof window);
    return PF_Err_NONE;
  }
  if (which != PF_PlatData_RES_FILE_PATH_DEPRECATED) return PF_Err_BAD_CALLBACK_PARAM;
  if (pathError != PF_Err_NONE) return pathError;
  std::memcpy(data, modulePath.c_str(), modulePath.size() + 1);
  return PF_Err_NONE;
}

class OptionDialog : public testing::Test {
 protected:
  OptionDialog() {
    fakeSystem = {};
    fakeDialog = {};
    vindrel::languageState = {};
    modulePath = folder_.path("effect.aex");
    pathError = PF_Err_NONE;
    utils_.get_platform_data = platformData;
    inData_.utils = &utils_;
    inData_.pica_basicP = &basic_;
    inData_.appl_id = kAppIdAfterEffects;
    inData_.version = {13, 0};
    std::strcpy(vindrel::versionLine, "Version=1.5");
  }
  ~OptionDialog() override { vindrel::versionLine[0] = '\0'; }

  void run() { vindrel::DoOptionDialog(&inData_, params_); }

  void settingsHold(const std::string& text) const { folder_.write("effect.ini", text); }
  std::string settings() const { return folder_.read("effect.ini"); }
  bool settingsExist() const { return folder_.has("effect.ini"); }

  PF_InData inData_{};

 private:
  PF_UtilCallbacks utils_{};
  SPBasicSuite basic_{};
  PF_ParamDef* params_[1] = {nullptr};
  vindrel::test::TemporaryFolder folder_;
};

// What is shown.

TEST_F(OptionDialog, isShownOnceFromTheModuleOverTheMainWindow) {
  run();
  EXPECT_EQ(fakeDialog.shown, 1);
  EXPECT_EQ(fakeDialog.modulePath, modulePath);
  EXPECT_EQ(fakeDialog.resource, 101);
  EXPECT_EQ(fakeDialog.parent, &hostWindow);
  EXPECT_EQ(fakeDialog.result, 0);
}

TEST_F(OptionDialog, hasItsTextsInTheLanguageOfTheProcess) {
  fakeSystem.commandLine = "host -L EN";
  run();
  EXPECT_EQ(fakeDialog.texts.size(), 3u);
  EXPECT_EQ(fakeDialog.texts[1015], "Settings (Valid from next start-up)");
  EXPECT_EQ(fakeDialog.texts[1010], "Set current parameter values to default");
  EXPECT_EQ(fakeDialog.texts[1012], "Restore initial default parameter values");
}

TEST_F(OptionDialog, isJapaneseWhenTheLanguageIs) {
  fakeSystem.commandLine = "host -L JP";
  run();
  EXPECT_EQ(fakeDialog.texts[1015], vindrel::LookupMessage(3));
  EXPECT_NE(fakeDialog.texts[1015], "Settings (Valid from next start-up)");
}

TEST_F(OptionDialog, opensCentredOnItsParent) {
  fakeDialog.parentPlace = {100, 50, 1100, 850};
  fakeDialog.ownPlace = {10, 20, 410, 320};
  run();
  // Middle of the parent: 600 and 450; half of 400 by 300 away from it.
  EXPECT_EQ(fakeDialog.movedTo.left, 400);
  EXPECT_EQ(fakeDialog.movedTo.top, 300);
  EXPECT_EQ(fakeDialog.movedTo.right, 800);
  EXPECT_EQ(fakeDialog.movedTo.bottom, 600);
  EXPECT_TRUE(fakeDialog.repaint);
}

TEST_F(OptionDialog, losesTheOddPixelTowardsZero) {
  fakeDialog.parentPlace = {-101, -50, 0, 0};
  fakeDialog.ownPlace = {0, 0, 400, 300};
  run();
  EXPECT_EQ(fakeDialog.movedTo.left, -250);  // (-101 - 400) / 2 = -250.5
  EXPECT_EQ(fakeDialog.movedTo.top, -175);
}

TEST_F(OptionDialog, withoutAParentIsCentredOnTheCornerOfTheScreen) {
  fakeDialog.parentIsThere = false;
  fakeDialog.ownPlace = {10, 10, 410, 310};
  run();
  EXPECT_EQ(fakeDialog.movedTo.left, -200);
  EXPECT_EQ(fakeDialog.movedTo.top, -150);
}

TEST_F(OptionDialog, leavesItsButtonsAloneOnAHostThatKeepsDefaults) {
  run();
  EXPECT_TRUE(fakeDialog.enabled.empty());
}

TEST_F(OptionDialog, greysBothButtonsOnAnOldHost) {
  inData_.version = {12, 11};
  run();
  EXPECT_EQ(fakeDialog.enabled, (std::map<int32_t, bool>{{1010, false}, {1012, false}}));
}

TEST_F(OptionDialog, takesNoOtherHostForAnOldOne) {
  inData_.appl_id = kAppIdPremiere;
  inData_.version = {11, 0};
  run();
  EXPECT_TRUE(fakeDialog.enabled.empty());
}

// What its procedure answers.

TEST_F(OptionDialog, handlesItsOpeningAndEveryCommand) {
  fakeDialog.clicks = {1, 1015, 4711, platform::commandCancel};
  run();
  EXPECT_EQ(fakeDialog.answers, (std::vector<intptr_t>{1, 1, 1, 1, 1}));
}

TEST_F(OptionDialog, staysOpenAtCommandsOfNoMeaning) {
  fakeDialog.clicks = {1, 1015, 1017, 0};
  run();
  EXPECT_FALSE(fakeDialog.ended);
}

TEST_F(OptionDialog, handlesNoOtherMessage) {
  for (const uint32_t message : {0u, 16u, 48u, 271u, 274u, 307u})
    EXPECT_EQ(vindrel::OptionDialogProc(&hostWindow, message, 1010, 0), 0) << message;
  EXPECT_FALSE(fakeDialog.ended);
}

// What becomes of the settings file.

TEST_F(OptionDialog, theCloseBoxChangesNoFile) {
  settingsHold("[Version=1.5]\r\nDot Shape=4\r\n");
  run();
  EXPECT_EQ(settings(), "[Version=1.5]\r\nDot Shape=4\r\n");
}

TEST_F(OptionDialog, theCloseBoxMakesNoFile) {
  run();
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialog, theSecondButtonDeletesTheFileWithAllItsSections) {
  settingsHold("[Version=1.4]\r\nDot Shape=2\r\n[Version=1.5]\r\nDot Shape=4\r\n");
  fakeDialog.clicks = {1012};
  run();
  EXPECT_TRUE(fakeDialog.ended);
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialog, theSecondButtonIsSilentWhenThereIsNoFile) {
  fakeDialog.clicks = {1012};
  run();
  EXPECT_TRUE(fakeDialog.ended);
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialog, aCloseBoxBehindAButtonDoesNotTakeItBack) {
  settingsHold("[Version=1.5]\r\nDot Shape=4\r\n");
  fakeDialog.clicks = {1012, platform::commandCancel};
  fakeDialog.takesClicksBehindTheEnd = true;
  run();
  EXPECT_EQ(fakeDialog.answers.size(), 3U);
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialog, nothingIsDeletedWhileItIsOpen) {
  settingsHold("[Version=1.5]\r\n");
  fakeDialog.clicks = {1012};
  bool thereWhileOpen = false;
  fakeDialog.whileOpen = [&] { thereWhileOpen = settingsExist(); };
  run();
  EXPECT_TRUE(thereWhileOpen);
}

TEST_F(OptionDialog, theFirstButtonClosesAtOnce) {
  fakeDialog.clicks = {1010, platform::commandCancel};
  run();
  EXPECT_EQ(fakeDialog.answers.size(), 2u);  // the opening and the one click
}

TEST_F(OptionDialog, aDialogThatCannotBeMadeDoesNothing) {
  settingsHold("[Version=1.5]\r\n");
  fakeDialog.clicks = {1012};
  fakeDialog.canBeMade = false;
  run();
  EXPECT_EQ(fakeDialog.shown, 0);
  EXPECT_TRUE(settingsExist());
}

TEST_F(OptionDialog, aHostThatDoesNotTellTheModuleDoesNothing) {
  pathError = PF_Err_BAD_CALLBACK_PARAM;
  fakeDialog.clicks = {1010};
  run();
  EXPECT_EQ(fakeDialog.shown, 0);
}

TEST_F(OptionDialog, aModulePathWithoutADotShowsTheDialogAndChangesNothing) {
  modulePath = "a-module-without-a-dot";
  fakeDialog.clicks = {1010};
  run();
  EXPECT_EQ(fakeDialog.shown, 1);
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialog, withoutABasicSuiteTheBareErrorIsThrownBeforeAnythingShows) {
  inData_.pica_basicP = nullptr;
  try {
    run();
    ADD_FAILURE() << "nothing was thrown";
  } catch (long error) {
    EXPECT_EQ(error, 516);
  }
  EXPECT_EQ(fakeDialog.shown, 0);
}

}  // namespace
