// The reader of the host's command line. Each row is a line and what it says; expected codes are the letters, the last
// one in the low byte, worked out by hand.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "effect/options/Messages.h"

namespace {

constexpr uint32_t untouched = 0x12345678;

uint32_t codeAfter(const std::string& line, uint32_t before = untouched) {
  uint32_t code = before;
  vindrel::readLanguageOption(line.c_str(), code);
  return code;
}

struct CodeRow {
  const char* line;
  uint32_t code;
};

void PrintTo(const CodeRow& row, std::ostream* out) {
  *out << '"' << row.line << '"';
}

class LanguageOptions : public testing::TestWithParam<CodeRow> {};

TEST_P(LanguageOptions, aLineGivesTheCodeInItsRow) {
  EXPECT_EQ(codeAfter(GetParam().line), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(taken, LanguageOptions,
                         testing::Values(CodeRow{"host -L JP", 0x4A50},            //
                                         CodeRow{"host -lJP", 0x4A50},             //
                                         CodeRow{"host -L jp", 0x4A50},            //
                                         CodeRow{"host -Ljp", 0x4A50},             //
                                         CodeRow{"host -l jP", 0x4A50},            //
                                         CodeRow{"host -L EN", 0x454E},            //
                                         CodeRow{"host -L \t  JP", 0x4A50},        //
                                         CodeRow{"host -L\tJP", 0x4A50},           //
                                         CodeRow{"host\t-L JP", 0x4A50},           //
                                         CodeRow{"host -L JP file.aep", 0x4A50},   //
                                         CodeRow{"host -L JP\tfile.aep", 0x4A50},  //
                                         CodeRow{" -L JP", 0x4A50},                //
                                         CodeRow{"host -L J", 0x4A},               //
                                         CodeRow{"host -L 1", 0x31},               //
                                         CodeRow{"host -L JAP", 0x4A4150},         //
                                         CodeRow{"host -L ABCD", 0x41424344},      //
                                         CodeRow{"host -L ABCDE", 0x42434445},     // the last four
                                         CodeRow{"host -Language", 0x55414745},    // "anguage": UAGE
                                         CodeRow{"host -x -L JP", 0x4A50},         //
                                         CodeRow{"host - -L JP", 0x4A50},          // the lone - ends at the blank
                                         CodeRow{"host --  -L JP", 0x4A50},        //
                                         CodeRow{"host -RE -L JP", 0x4A50},        //
                                         CodeRow{"host -L\"JP\"", 0x224A5022},     // quotes are letters
                                         CodeRow{"\"C:\\my -L JP\\host.exe\"", 0x45584522}));

INSTANTIATE_TEST_SUITE_P(emptyOrLast, LanguageOptions,
                         testing::Values(CodeRow{"host -L", 0},                //
                                         CodeRow{"host -L ", 0},               //
                                         CodeRow{"host -L \t ", 0},            //
                                         CodeRow{"host -L EN -L JP", 0x4A50},  //
                                         CodeRow{"host -L JP -L EN", 0x454E},  //
                                         CodeRow{"host -LJP -LEN", 0x454E},    // the blank behind a code counts
                                         CodeRow{"host -L JP -L", 0},          //
                                         CodeRow{"host -L -L JP", 0x2D4C}));   // "-L" itself is the code

INSTANTIATE_TEST_SUITE_P(notSeen, LanguageOptions,
                         testing::Values(CodeRow{"", untouched},                //
                                         CodeRow{"host", untouched},            //
                                         CodeRow{"host L JP", untouched},       //
                                         CodeRow{"host /L JP", untouched},      //
                                         CodeRow{"-L JP", untouched},           // at the very start
                                         CodeRow{"xyz-L JP", untouched},        //
                                         CodeRow{"host x-L JP", untouched},     //
                                         CodeRow{"host --L JP", untouched},     //
                                         CodeRow{"host - L JP", untouched},     //
                                         CodeRow{"host \"-L JP\"", untouched},  // a quote stands before the -
                                         CodeRow{"host\n-L JP", untouched},     // a line end is no blank
                                         CodeRow{"host -", untouched},          //
                                         CodeRow{"-", untouched},               //
                                         CodeRow{"host -x", untouched},         //
                                         CodeRow{"host -RE", untouched}));

TEST(LanguageOptionsReader, anOptionInsideQuotesIsTaken) {
  EXPECT_EQ(codeAfter("\"C:\\Program -L JP Files\\host.exe\""), 0x4A50u);
}

TEST(LanguageOptionsReader, anOptionAtTheVeryStartIsNotSeen) {
  EXPECT_EQ(codeAfter("-L JP"), untouched);
}

TEST(LanguageOptionsReader, aLineEndBelongsToTheCode) {
  EXPECT_EQ(codeAfter("host -L JP\n"), 0x4A500Au);
}

TEST(LanguageOptionsReader, aCharacterBeyondAsciiFillsTheUpperBytes) {
  // 0x83 as a signed byte is -125, 0xFFFFFF83; shifted left by 8 it is 0xFFFF8300, and J is 0x4A.
  EXPECT_EQ(codeAfter("host -L \x83J"), 0xFFFF834Au);
  // 0x4A00 or 0xFFFFFF83: all the bits of 0x4A00 are set already.
  EXPECT_EQ(codeAfter("host -L J\x83"), 0xFFFFFF83u);
}

TEST(LanguageOptionsReader, lettersBeyondAsciiAreNotMadeUppercase) {
  EXPECT_EQ(codeAfter("host -L \xE4"), 0xFFFFFFE4u);
}

}  // namespace
