#include "effect/options/Messages.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/options/FakeSystem.h"

namespace {

using vindrel::LookupMessage;

// The Japanese texts in Shift-JIS, four hexadecimal digits a character (two for the blank).
// 設定 （次回起動から有効になります）
const std::string settingsBytes =
    "90dd92e82081698e9f89f18b4e93ae82a982e7974c8cf882c982c882e882dc82"
    "b7816a";
// カラーキー関連のパラメータを階層化する
const std::string groupBytes =
    "834a8389815b834c815b8ad6984182cc837083898381815b835e82f08a4b9177"
    "89bb82b782e9";
// 現在のパラメータ設定をデフォルト値として記憶する
const std::string saveBytes =
    "8cbb8ddd82cc837083898381815b835e90dd92e882f0836683748348838b8367"
    "926c82c682b582c48b4c89af82b782e9";
// パラメータのデフォルト値設定を初期状態に復帰する
const std::string restoreBytes =
    "837083898381815b835e82cc836683748348838b8367926c90dd92e882f08f89"
    "8afa8ff391d482c9959c8b4182b782e9";

class Messages : public testing::Test {
 protected:
  Messages() {
    fakeSystem = {};
    vindrel::languageState = {};
  }
  ~Messages() override { vindrel::languageState = {}; }

  static std::string hexOf(const std::string& text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (const char c : text) {
      const auto byte = static_cast<unsigned char>(c);
      hex += digits[byte >> 4];
      hex += digits[byte & 15];
    }
    return hex;
  }
};

TEST_F(Messages, aJapaneseSystemWithNoOptionShowsJapanese) {
  fakeSystem.codePage = 932;
  EXPECT_EQ(hexOf(LookupMessage(3)), settingsBytes);
}

TEST_F(Messages, aJapaneseSystemWithTheEnglishOptionShowsEnglish) {
  fakeSystem.codePage = 932;
  fakeSystem.commandLine = "host -L EN";
  EXPECT_STREQ(LookupMessage(3), "Settings (Valid from next start-up)");
}

TEST_F(Messages, anyOtherSystemWithTheJapaneseOptionShowsJapanese) {
  fakeSystem.codePage = 1252;
  fakeSystem.commandLine = "host -L JP";
  EXPECT_EQ(hexOf(LookupMessage(3)), settingsBytes);
}

TEST_F(Messages, aWesternSystemWithNoOptionShowsEnglish) {
  fakeSystem.codePage = 1252;
  EXPECT_STREQ(LookupMessage(5), "Set current parameter values to default");
}

TEST_F(Messages, anUnknownLanguageIsEnglish) {
  fakeSystem.codePage = 932;
  fakeSystem.commandLine = "host -L FR";
  EXPECT_STREQ(LookupMessage(6), "Restore initial default parameter values");
}

TEST_F(Messages, anOptionWithoutACodeLeavesItToTheCodePage) {
  fakeSystem.codePage = 932;
  fakeSystem.commandLine = "host -L";
  EXPECT_EQ(hexOf(LookupMessage(3)), settingsBytes);
}

TEST_F(Messages, anOptionNotBehindABlankIsNotSeen) {
  fakeSystem.commandLine = "xyz-L JP";
  EXPECT_STREQ(LookupMessage(3), "Settings (Valid from next start-up)");
}

TEST_F(Messages, theCopyrightLineAsksForNeitherLanguageNorCodePage) {
  fakeSystem.commandLine = "host -L JP";
  const std::string line = LookupMessage(1);
  EXPECT_EQ(fakeSystem.commandLineAsked, 0);
  EXPECT_EQ(fakeSystem.codePageAsked, 0);
  EXPECT_FALSE(vindrel::languageState.commandLineRead);
  EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << "one line";
  EXPECT_NE(line.find("https://"), std::string::npos) << "tells where the makers are";
}

TEST_F(Messages, aSetLanguageDoesNotAskForTheCodePage) {
  fakeSystem.commandLine = "host -L EN";
  LookupMessage(3);
  EXPECT_EQ(fakeSystem.codePageAsked, 0);
}

TEST_F(Messages, theCommandLineIsReadOnce) {
  fakeSystem.commandLine = "host -L JP";
  LookupMessage(3);
  fakeSystem.commandLine = "host -L EN";
  LookupMessage(5);
  vindrel::ReadCommandLine();
  EXPECT_EQ(fakeSystem.commandLineAsked, 1);
  EXPECT_EQ(vindrel::languageState.languageCode, vindrel::languageJapanese);
}

TEST_F(Messages, anEmptyCommandLineIsReadOnceToo) {
  fakeSystem.commandLine = "";
  vindrel::ReadCommandLine();
  vindrel::ReadCommandLine();
  EXPECT_EQ(fakeSystem.commandLineAsked, 1);
  EXPECT_EQ(vindrel::languageState.languageCode, 0u);
}

TEST_F(Messages, anIdThatIsNotThereIsADash) {
  EXPECT_STREQ(LookupMessage(99), "-");
  EXPECT_STREQ(LookupMessage(-1), "-");
  EXPECT_STREQ(LookupMessage(7), "-");
  EXPECT_EQ(fakeSystem.commandLineAsked, 0);
}

TEST_F(Messages, rowsThatNothingShowsAreThere) {
  EXPECT_STREQ(LookupMessage(0), "Vindrel");
  EXPECT_STREQ(LookupMessage(2), "path");
  EXPECT_STREQ(LookupMessage(4), "Group color key parameters");
}

TEST_F(Messages, everyJapaneseTextStandsInShiftJis) {
  fakeSystem.commandLine = "host -L JP";
  EXPECT_EQ(hexOf(LookupMessage(3)), settingsBytes);
  EXPECT_EQ(hexOf(LookupMessage(4)), groupBytes);
  EXPECT_EQ(hexOf(LookupMessage(5)), saveBytes);
  EXPECT_EQ(hexOf(LookupMessage(6)), restoreBytes);
}

}  // namespace
