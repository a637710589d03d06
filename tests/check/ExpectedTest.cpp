#include "check/Expected.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/check/CheckedModule.h"

namespace {

using check::Result;
using check::Verdict;

TEST(Pattern, holdsForTheWholeText) {
  EXPECT_TRUE(check::matches("frame 3 differs", "frame 3 differs"));
  EXPECT_FALSE(check::matches("frame 3 differs", "frame 3"));
  EXPECT_FALSE(check::matches("frame 3", "frame 3 differs"));
}

TEST(Pattern, takesAStarForAnyTextAndForNone) {
  EXPECT_TRUE(check::matches("frame 31 differs", "frame * differs"));
  EXPECT_TRUE(check::matches("frame 31 differs", "*"));
  EXPECT_TRUE(check::matches("", "*"));
  EXPECT_TRUE(check::matches("aabaab", "*aab"));
  EXPECT_TRUE(check::matches("abc", "*a**c*"));
  EXPECT_FALSE(check::matches("frame 31 differs", "frame * is the same"));
}

TEST(Expectations, makeAWarningOfAFindingThatTheyMatch) {
  const Result result = checkOne("SharedId", "ids-are-unique", {{"ids-are-unique", "*id 1 is that of*", "so it is"}});
  EXPECT_EQ(result.verdict, Verdict::kWarn);
  ASSERT_EQ(result.expected.size(), 1U);
  EXPECT_EQ(result.expected[0], "so it is");
}

TEST(Expectations, leaveAFailureWhereAnythingElseIsSeen) {
  const Result other = checkOne("SharedId", "ids-are-unique", {{"ids-are-unique", "*id 2 is that of*", "so it is"}});
  EXPECT_EQ(other.verdict, Verdict::kFail);
  EXPECT_TRUE(other.expected.empty());
  const Result elsewhere = checkOne("SharedId", "ids-are-unique", {{"ids-are-given", "*", "so it is"}});
  EXPECT_EQ(elsewhere.verdict, Verdict::kFail);
}

class ExpectationFile : public testing::Test {
 protected:
  ~ExpectationFile() override { std::filesystem::remove(path_); }
  std::string complaintAbout(const std::string& text) {
    std::ofstream(path_, std::ios::binary) << text;
    try {
      expectations_ = check::readExpectations(path_);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  }
  std::filesystem::path path_ = "ExpectationFile.expected";
  check::Expectations expectations_;
};

TEST_F(ExpectationFile, holdsPromisePatternAndReason) {
  EXPECT_EQ(complaintAbout("# known\r\n\r\nids-are-unique | * 3 | * | kept | as is\n"), "");
  ASSERT_EQ(expectations_.size(), 1U);
  EXPECT_EQ(expectations_[0].promise, "ids-are-unique");
  EXPECT_EQ(expectations_[0].pattern, "* 3");
  EXPECT_EQ(expectations_[0].reason, "* | kept | as is");
}

TEST_F(ExpectationFile, isRefusedWithTheLineThatIsWrong) {
  EXPECT_EQ(complaintAbout("# known\nids-are-unique | *\n"),
            "ExpectationFile.expected, line 2 is not of the form PROMISE | PATTERN | REASON");
  EXPECT_EQ(complaintAbout("ids-are-nice | * | so it is\n"),
            "ExpectationFile.expected, line 1 names no promise: \"ids-are-nice\"");
}

TEST_F(ExpectationFile, isRefusedWhenItIsMissing) {
  EXPECT_THROW(check::readExpectations("there/is/none"), std::runtime_error);
  EXPECT_THROW(check::readExpectations("."), std::runtime_error);
}

}  // namespace
