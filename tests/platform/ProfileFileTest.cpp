// One set of tests for both platforms: on Windows they hold what the system does, elsewhere that it is the same.
#include "platform/ProfileFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace {

class ProfileFile : public testing::Test {
 protected:
  void fileHolds(const std::string& text) const { folder_.write("settings.ini", text); }
  std::string fileText() const { return folder_.read("settings.ini"); }

  // Both number readers give the bits of a 32-bit integer; signed is how the effect takes them.
  int32_t number(const char* key, int32_t otherwise = -77, const char* section = "Version=1.5") const {
    return static_cast<int32_t>(platform::GetPrivateProfileIntA(section, key, otherwise, path()));
  }

  std::string text(const char* key, const char* otherwise = "missing", const char* section = "Version=1.5") const {
    char buffer[128];
    const uint32_t length = platform::GetPrivateProfileStringA(section, key, otherwise, buffer, sizeof buffer, path());
    EXPECT_EQ(length, std::string(buffer).size());
    return buffer;
  }

  std::string textCutTo(uint32_t size, const char* key, const char* otherwise = "missing") const {
    std::string buffer(size + 1, '#');
    const uint32_t length =
        platform::GetPrivateProfileStringA("Version=1.5", key, otherwise, buffer.data(), size, path());
    EXPECT_EQ(buffer[size], '#') << "wrote beyond the buffer";
    buffer.resize(buffer.find('\0'));
    EXPECT_EQ(length, buffer.size());
    return buffer;
  }

  bool write(const char* key, const char* value, const char* section = "Version=1.5") const {
    return platform::WritePrivateProfileStringA(section, key, value, path());
  }

  const char* path() const { return path_.c_str(); }

 private:
  vindrel::test::TemporaryFolder folder_;
  std::string path_ = folder_.path("settings.ini");
};

// Missing things.

TEST_F(ProfileFile, aMissingFileGivesTheDefault) {
  EXPECT_EQ(number("Dot Shape", 3), 3);
  EXPECT_EQ(text("Dot Size", "10.000000"), "10.000000");
}

TEST_F(ProfileFile, aMissingSectionGivesTheDefault) {
  fileHolds("[Version=1.4]\r\nDot Shape=2\r\n");
  EXPECT_EQ(number("Dot Shape", 3), 3);
  EXPECT_EQ(text("Dot Shape", "10.000000"), "10.000000");
}

TEST_F(ProfileFile, aMissingKeyGivesTheDefault) {
  fileHolds("[Version=1.5]\r\nDot Shape=2\r\n");
  EXPECT_EQ(number("Dot Size", -5), -5);
  EXPECT_EQ(text("Dot Size", "7"), "7");
}

TEST_F(ProfileFile, aKeyOfAnotherSectionIsNotSeen) {
  fileHolds("[Version=1.5]\r\nA=1\r\n[Version=1.6]\r\nB=2\r\n");
  EXPECT_EQ(number("B"), -77);
}

TEST_F(ProfileFile, aKeyBeforeAnySectionIsNotSeen) {
  fileHolds("A=1\r\n[Version=1.5]\r\nB=2\r\n");
  EXPECT_EQ(number("A"), -77);
  EXPECT_EQ(number("B"), 2);
}

TEST_F(ProfileFile, anEmptyFileGivesTheDefault) {
  fileHolds("");
  EXPECT_EQ(number("A", 9), 9);
}

// Names.

TEST_F(ProfileFile, namesAreFoundWithoutRegardToCase) {
  fileHolds("[VERSION=1.5]\r\nDOT shape=4\r\n");
  EXPECT_EQ(number("Dot Shape"), 4);
  EXPECT_EQ(text("dOT sHAPE"), "4");
}

TEST_F(ProfileFile, blanksAroundNamesAndValuesDoNotCount) {
  fileHolds("  [Version=1.5]  \r\n \t Dot Shape \t = \t 4 \t \r\n");
  EXPECT_EQ(text("Dot Shape"), "4");
}

TEST_F(ProfileFile, blanksAroundTheAskedNamesDoNotCount) {
  fileHolds("[Version=1.5]\r\nDot Shape=4\r\n");
  EXPECT_EQ(text(" Dot Shape ", "missing", " Version=1.5 "), "4");
}

TEST_F(ProfileFile, blanksInsideANameCount) {
  fileHolds("[Version=1.5]\r\nDotShape=1\r\nDot  Shape=2\r\n");
  EXPECT_EQ(number("Dot Shape"), -77);
}

TEST_F(ProfileFile, theFirstOfTwoEqualKeysCounts) {
  fileHolds("[Version=1.5]\r\nA=1\r\nA=2\r\n");
  EXPECT_EQ(number("A"), 1);
}

TEST_F(ProfileFile, theFirstOfTwoEqualSectionsCounts) {
  fileHolds("[Version=1.5]\r\nA=1\r\n[Version=1.5]\r\nA=2\r\nB=3\r\n");
  EXPECT_EQ(number("A"), 1);
  EXPECT_EQ(number("B"), -77);
}

TEST_F(ProfileFile, aSectionWithoutItsClosingBracketIsNoSection) {
  fileHolds("[Version=1.5\r\nA=1\r\n[Version=1.5]\r\nA=2\r\n");
  EXPECT_EQ(number("A"), 2);
}

TEST_F(ProfileFile, theNameOfAKeyEndsAtTheFirstEqualsSign) {
  fileHolds("[Version=1.5]\r\nA=b=c\r\n");
  EXPECT_EQ(text("A"), "b=c");
}

TEST_F(ProfileFile, linesEndWithEitherCharacterWhenRead) {
  fileHolds("[Version=1.5]\nA=1\nB=2");
  EXPECT_EQ(number("A"), 1);
  EXPECT_EQ(number("B"), 2);
}

// Texts.

TEST_F(ProfileFile, doubleQuotesAroundAValueAreTakenOff) {
  fileHolds("[Version=1.5]\r\nA=\"12.5\"\r\n");
  EXPECT_EQ(text("A"), "12.5");
}

TEST_F(ProfileFile, singleQuotesAroundAValueAreTakenOff) {
  fileHolds("[Version=1.5]\r\nA=' 12.5 '\r\n");
  EXPECT_EQ(text("A"), " 12.5 ");
}

TEST_F(ProfileFile, onlyOnePairOfQuotesIsTakenOff) {
  fileHolds("[Version=1.5]\r\nA=\"'x'\"\r\n");
  EXPECT_EQ(text("A"), "'x'");
}

TEST_F(ProfileFile, quotesThatDoNotMatchStay) {
  fileHolds("[Version=1.5]\r\nA=\"x'\r\nB=x\"\r\nC=\"\r\n");
  EXPECT_EQ(text("A"), "\"x'");
  EXPECT_EQ(text("B"), "x\"");
  EXPECT_EQ(text("C"), "\"");
}

TEST_F(ProfileFile, anEmptyValueIsTheEmptyText) {
  fileHolds("[Version=1.5]\r\nA=\r\n");
  EXPECT_EQ(text("A", "10.0"), "");
}

TEST_F(ProfileFile, aValueIsCutToTheBuffer) {
  fileHolds("[Version=1.5]\r\nA=123456789\r\n");
  EXPECT_EQ(textCutTo(5, "A"), "1234");
  EXPECT_EQ(textCutTo(1, "A"), "");
}

TEST_F(ProfileFile, aValueThatJustFitsIsWhole) {
  fileHolds("[Version=1.5]\r\nA=1234\r\n");
  EXPECT_EQ(textCutTo(5, "A"), "1234");
}

TEST_F(ProfileFile, theDefaultIsCutToTheBufferToo) {
  EXPECT_EQ(textCutTo(4, "A", "10.000000"), "10.");
}

TEST_F(ProfileFile, theDefaultLosesItsTrailingBlanks) {
  EXPECT_EQ(text("A", "1.5  "), "1.5");
}

TEST_F(ProfileFile, aValueKeepsBytesBeyondAscii) {
  // The Shift-JIS bytes of two characters; none of them may be taken for a blank or a line end.
  fileHolds("[Version=1.5]\r\nA=\x90\xDD\x92\xE8\r\n");
  const std::string value = text("A");
  EXPECT_FALSE(value.empty());
  EXPECT_NE(value, "missing");
}

// Numbers.

TEST_F(ProfileFile, aNumberEndsAtTheFirstCharacterThatIsNoDigit) {
  fileHolds("[Version=1.5]\r\nA=12abc\r\nB=7.9\r\nC=3 4\r\n");
  EXPECT_EQ(number("A"), 12);
  EXPECT_EQ(number("B"), 7);
  EXPECT_EQ(number("C"), 3);
}

TEST_F(ProfileFile, aNumberMayHaveASign) {
  fileHolds("[Version=1.5]\r\nA=-12\r\nB=+12\r\nC=- 12\r\nD=--12\r\n");
  EXPECT_EQ(number("A"), -12);
  EXPECT_EQ(number("B"), 12);
  EXPECT_EQ(number("C"), 0);
  EXPECT_EQ(number("D"), 0);
}

TEST_F(ProfileFile, aTextThatIsNoNumberReadsAsZero) {
  fileHolds("[Version=1.5]\r\nA=round\r\n");
  EXPECT_EQ(number("A"), 0);
}

TEST_F(ProfileFile, anEmptyNumberGivesTheDefault) {
  fileHolds("[Version=1.5]\r\nA=\r\nB=\"\"\r\n");
  EXPECT_EQ(number("A", 5), 5);
}

TEST_F(ProfileFile, aNumberMayStandInQuotes) {
  fileHolds("[Version=1.5]\r\nA=\"34\"\r\n");
  EXPECT_EQ(number("A"), 34);
}

TEST_F(ProfileFile, aNumberMayBeginWithABaseMark) {
  fileHolds("[Version=1.5]\r\nA=0x1F\r\nB=0o17\r\nC=0b101\r\nD=017\r\nE=-0x10\r\nF=0X10\r\n");
  EXPECT_EQ(number("A"), 31);
  EXPECT_EQ(number("B"), 15);
  EXPECT_EQ(number("C"), 5);
  EXPECT_EQ(number("D"), 17);
  EXPECT_EQ(number("E"), -16);
  EXPECT_EQ(number("F"), 0);
}

TEST_F(ProfileFile, aNumberBeyondThirtyTwoBitsWraps) {
  fileHolds("[Version=1.5]\r\nA=4294967301\r\nB=2147483648\r\nC=-2147483649\r\n");
  EXPECT_EQ(number("A"), 5);  // 2 to the 32, and 5
  EXPECT_EQ(number("B"), INT32_MIN);
  EXPECT_EQ(number("C"), INT32_MAX);
}

TEST_F(ProfileFile, onlyTheFirstTwentyNineCharactersOfANumberCount) {
  fileHolds("[Version=1.5]\r\nA=00000000000000000000000000012\r\nB=000000000000000000000000000012\r\n");
  EXPECT_EQ(number("A"), 12);
  EXPECT_EQ(number("B"), 1);
}

// Writing.

TEST_F(ProfileFile, writingMakesFileAndSection) {
  EXPECT_TRUE(write("Dot Shape", "1"));
  EXPECT_EQ(fileText(), "[Version=1.5]\r\nDot Shape=1\r\n");
}

TEST_F(ProfileFile, keysAreAppendedInTheOrderOfWriting) {
  write("Dot Shape", "1");
  write("Dot Color.r", "255");
  write("Dot Size", "10.000000");
  EXPECT_EQ(fileText(), "[Version=1.5]\r\nDot Shape=1\r\nDot Color.r=255\r\nDot Size=10.000000\r\n");
}

TEST_F(ProfileFile, aValueIsReplacedInPlace) {
  fileHolds("[Version=1.5]\r\nA=1\r\nB=2\r\nC=3\r\n");
  EXPECT_TRUE(write("B", "22222"));
  EXPECT_EQ(fileText(), "[Version=1.5]\r\nA=1\r\nB=22222\r\nC=3\r\n");
}

TEST_F(ProfileFile, aReplacedKeyKeepsItsSpelling) {
  fileHolds("[version=1.5]\r\nDOT SHAPE=1\r\n");
  EXPECT_TRUE(write("Dot Shape", "2"));
  EXPECT_EQ(fileText(), "[version=1.5]\r\nDOT SHAPE=2\r\n");
}

TEST_F(ProfileFile, aNewSectionComesBesideTheOldOnes) {
  fileHolds("[Version=1.4]\r\nA=1\r\n");
  EXPECT_TRUE(write("A", "2"));
  EXPECT_EQ(number("A", -1, "Version=1.4"), 1);
  EXPECT_EQ(number("A", -1, "Version=1.5"), 2);
}

TEST_F(ProfileFile, aNewKeyGoesIntoItsOwnSectionWhenAnotherOneFollows) {
  fileHolds("[Version=1.5]\r\nA=1\r\n[Version=1.6]\r\nA=9\r\n");
  EXPECT_TRUE(write("B", "2"));
  EXPECT_EQ(fileText(), "[Version=1.5]\r\nA=1\r\nB=2\r\n[Version=1.6]\r\nA=9\r\n");
}

TEST_F(ProfileFile, aFileWithoutAnEndToItsLastLineIsContinued) {
  fileHolds("[Version=1.5]\r\nA=1");
  EXPECT_TRUE(write("B", "2"));
  EXPECT_EQ(number("A"), 1);
  EXPECT_EQ(number("B"), 2);
  EXPECT_EQ(fileText(), "[Version=1.5]\r\nA=1\r\nB=2\r\n");
}

TEST_F(ProfileFile, aWrittenValueIsReadBack) {
  write("Dot Size", "12.500000");
  write("Angle", "-45.000000");
  EXPECT_EQ(text("Dot Size"), "12.500000");
  EXPECT_EQ(text("Angle"), "-45.000000");
}

TEST_F(ProfileFile, whatIsWrittenCanBeReplacedByAShorterValue) {
  write("A", "1000000.000000");
  write("A", "1");
  EXPECT_EQ(fileText(), "[Version=1.5]\r\nA=1\r\n");
}

TEST_F(ProfileFile, writingIntoAFolderThatIsNotThereFails) {
  const std::string nowhere = std::string(path()) + ".folder/settings.ini";
  EXPECT_FALSE(platform::WritePrivateProfileStringA("Version=1.5", "A", "1", nowhere.c_str()));
}

TEST_F(ProfileFile, writingKeepsTheKeysOfOtherSections) {
  fileHolds("[Version=1.4]\r\nA=1\r\nB=2\r\n[Version=1.5]\r\nA=3\r\n");
  EXPECT_TRUE(write("A", "4"));
  EXPECT_EQ(fileText(), "[Version=1.4]\r\nA=1\r\nB=2\r\n[Version=1.5]\r\nA=4\r\n");
}

// Deleting.

TEST_F(ProfileFile, deletingTakesTheFileAway) {
  write("A", "1");
  EXPECT_TRUE(platform::DeleteFileA(path()));
  EXPECT_FALSE(std::filesystem::exists(path()));
  EXPECT_EQ(number("A"), -77);
}

TEST_F(ProfileFile, deletingAFileThatIsNotThereFails) {
  EXPECT_FALSE(platform::DeleteFileA(path()));
}

}  // namespace
