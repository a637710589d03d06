// The option dialog behind the command, where a stand-in plays the screen: it answers by an environment variable and
// writes down what was shown.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "tests/module/HostedModule.h"
#include "tests/support/TemporaryFolder.h"

namespace vindrel::test {
namespace {

// Two texts of the dialog in the bytes of Shift-JIS.
const std::string japaneseSettings =
    "\x90\xDD\x92\xE8\x20\x81\x69\x8E\x9F\x89\xF1\x8B\x4E\x93\xAE\x82\xA9\x82\xE7\x97\x4C\x8C\xF8\x82\xC9\x82\xC8\x82"
    "\xE8\x82\xDC\x82\xB7\x81\x6A";

class OptionDialog : public ::testing::Test {
 protected:
  OptionDialog() {
    if (const char* const locale = std::getenv("LC_ALL")) {
      localeBefore_ = locale;
    }
    setenv("LC_ALL", "C", 1);
    std::filesystem::copy_file(VINDREL_MODULE_PATH, folder.path("effect.aex"));
    setenv("VINDREL_DIALOG_LOG", folder.path("dialog.log").c_str(), 1);
  }
  ~OptionDialog() override {
    unsetenv("VINDREL_DIALOG_LOG");
    unsetenv("VINDREL_DIALOG_ANSWER");
    if (localeBefore_) {
      setenv("LC_ALL", localeBefore_->c_str(), 1);
    } else {
      unsetenv("LC_ALL");
    }
  }

  /// What the dialog showed: its place, then a line for each control.
  std::string shownAfter(const char* answer, standin::HostSettings settings = {}) {
    setenv("VINDREL_DIALOG_ANSWER", answer, 1);
    const standin::LoadedModule module(folder.path("effect.aex"));
    standin::StandInHost host(module, std::move(settings));
    EXPECT_EQ(host.start(), 0);
    EXPECT_EQ(host.doDialog(host.defaults()), 0);
    EXPECT_EQ(host.finish(), 0);
    return folder.readLines("dialog.log");
  }

  static standin::HostSettings oldHost() {
    standin::HostSettings settings;
    settings.version = {12, 11};
    return settings;
  }

  TemporaryFolder folder;

 private:
  std::optional<std::string> localeBefore_;
};

TEST_F(OptionDialog, opensCentredAndInEnglish) {
  // The stand-in's host window reaches from 100, 60 to 1380, 1084; the dialog is 472 by 396 pixels.
  EXPECT_EQ(shownAfter("close"),
            "dialog 504 374 976 770\n"
            "1015 on Settings (Valid from next start-up)\n"
            "1010 on Set current parameter values to default\n"
            "1012 on Restore initial default parameter values\n"
            "1017 on -\n");
}

TEST_F(OptionDialog, isJapaneseOnAJapaneseSystem) {
  setenv("LC_ALL", "ja_JP.UTF-8", 1);
  EXPECT_NE(shownAfter("close").find("1015 on " + japaneseSettings + "\n"), std::string::npos);
}

TEST_F(OptionDialog, changesNoFileWhenItIsClosed) {
  folder.write("effect.ini", "[Version=1.5]\r\nDot Shape=4\r\n");
  const std::string before = folder.readLines("effect.ini");
  shownAfter("close");
  EXPECT_EQ(folder.readLines("effect.ini"), before);
}

TEST_F(OptionDialog, makesNoFileWhenItIsClosed) {
  shownAfter("close");
  EXPECT_FALSE(folder.has("effect.ini"));
}

TEST_F(OptionDialog, writesTheFileByItsFirstButton) {
  shownAfter("save");
  EXPECT_TRUE(folder.has("effect.ini"));
}

TEST_F(OptionDialog, deletesTheFileByItsSecondButton) {
  folder.write("effect.ini", "[Version=1.5]\r\nDot Shape=4\r\n");
  shownAfter("restore");
  EXPECT_FALSE(folder.has("effect.ini"));
}

TEST_F(OptionDialog, isGreyOnAnOldHostAndItsButtonsDoNothing) {
  folder.write("effect.ini", "[Version=1.5]\r\nDot Shape=4\r\n");
  const std::string before = folder.readLines("effect.ini");
  for (const char* const answer : {"save", "restore"}) {
    const std::string shown = shownAfter(answer, oldHost());
    EXPECT_NE(shown.find("\n1010 grey "), std::string::npos) << shown;
    EXPECT_NE(shown.find("\n1012 grey "), std::string::npos) << shown;
    EXPECT_EQ(folder.readLines("effect.ini"), before) << answer;
  }
}

}  // namespace
}  // namespace vindrel::test
