#include "check/CheckCommand.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "check/Report.h"
#include "tests/check/CheckedModule.h"

namespace {

using check::CheckWords;

struct Outcome {
  int exitCode;
  std::string out;
};

Outcome checkWith(const CheckWords& words) {
  std::ostringstream out;
  const int exitCode = check::runCheck(words, HOST_PROGRAM, "check", out);
  return {exitCode, out.str()};
}

std::string complaintAbout(const std::vector<std::string>& words) {
  try {
    std::ostringstream out;
    check::runCheck(check::readCheckWords(words), HOST_PROGRAM, "check", out);
  } catch (const check::BadInput& error) {
    return error.what();
  }
  return "";
}

TEST(ListOfPromises, hasAtLeastForty) {
  size_t count = 0;
  for (const check::Subject& subject : check::subjects()) count += subject.promises.size();
  EXPECT_GE(count, 40U);
}

TEST(ListOfPromises, hasKebabCaseNamesAndOneSentenceEach) {
  std::set<std::string_view> names;
  for (const check::Subject& subject : check::subjects()) {
    for (const check::Promise& promise : subject.promises) {
      EXPECT_TRUE(names.insert(promise.name).second) << promise.name << " stands there twice";
      EXPECT_EQ(promise.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string_view::npos)
          << promise.name;
      EXPECT_EQ(promise.sentence.back(), '.') << promise.name;
      EXPECT_EQ(promise.sentence.find(". "), std::string_view::npos) << promise.name << " has two sentences";
      EXPECT_GT(promise.seconds, 0) << promise.name << " has no time limit";
    }
  }
}

TEST(PageOfPromises, isUpToDate) {
  std::ifstream file(std::string(DOCS_FOLDER) + "/check.md", std::ios::binary);
  ASSERT_TRUE(file);
  std::ostringstream there;
  there << file.rdbuf();
  std::ostringstream made;
  check::writeMarkdown(made);
  EXPECT_EQ(there.str(), made.str()) << "make it anew: ./dev vindrel check --list --markdown > docs/check.md";
}

TEST(CheckCommand, isZeroWhenNothingFails) {
  CheckWords words;
  words.module = faultyModule("HonestEffect");
  words.only = {"ids-are-unique", "set-up-succeeds"};
  const Outcome outcome = checkWith(words);
  EXPECT_EQ(outcome.exitCode, check::kNothingFailed);
  EXPECT_NE(outcome.out.find("  pass  set-up-succeeds\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("2 promises: 2 kept, 0 broken, 0 with a warning, 0 skipped;"), std::string::npos);
}

TEST(CheckCommand, isOneWhenSomethingFailsAndTellsHowToRepeatIt) {
  CheckWords words;
  words.module = faultyModule("SharedId");
  words.only = {"ids-are-unique"};
  words.seed = 7;
  const Outcome outcome = checkWith(words);
  EXPECT_EQ(outcome.exitCode, check::kSomethingFailed);
  EXPECT_NE(outcome.out.find("  FAIL  ids-are-unique\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("SharedId" FAULTY_SUFFIX " --only ids-are-unique --seed 7\n"), std::string::npos);
}

TEST(CheckCommand, writesItsResultsAsJson) {
  CheckWords words;
  words.module = faultyModule("SharedId");
  words.only = {"ids-are-unique"};
  words.json = true;
  const std::string text = checkWith(words).out;
  EXPECT_NE(text.find("\"fail\": 1,"), std::string::npos) << text;
  EXPECT_NE(text.find("\"result\": \"fail\""), std::string::npos);
  EXPECT_NE(text.find("id 1 is that of parameter 1 \\\"Amount\\\""), std::string::npos);
}

TEST(CheckCommand, refusesWhatItCantUse) {
  EXPECT_EQ(complaintAbout({}), "check wants a module");
  EXPECT_EQ(complaintAbout({"there/is/none.so"}), "no module 'there/is/none.so'");
  EXPECT_EQ(complaintAbout({"a.so", "b.so"}), "check does not know 'b.so'");
  EXPECT_EQ(complaintAbout({"a.so", "--only"}), "--only wants a word behind it");
  EXPECT_EQ(complaintAbout({"a.so", "--seed", "-1"}), "--seed doesn't take '-1'");
  EXPECT_EQ(complaintAbout({"a.so", "--jobs", "0"}), "--jobs doesn't take '0'");
  EXPECT_EQ(complaintAbout({"a.so", "--time-factor", "nan"}), "--time-factor doesn't take 'nan'");
  EXPECT_EQ(complaintAbout({"--markdown"}), "--markdown goes with --list");
  const std::string module = faultyModule("HonestEffect").string();
  EXPECT_EQ(complaintAbout({module, "--only", "ids-are-nice"}),
            "there is no promise 'ids-are-nice'; --list names them all");
  EXPECT_EQ(complaintAbout({module, "--expected", "there-is-none"}), "can't read the expectations in there-is-none");
}

TEST(CheckCommand, letsAFileThatIsNoModuleFailAtItsLoadAlone) {
  const std::string file = "NoModule" FAULTY_SUFFIX;
  std::ofstream(file) << "nothing\n";
  CheckWords words;
  words.module = file;
  words.only = {"loads-and-has-an-entry", "ids-are-unique"};
  const Outcome outcome = checkWith(words);
  std::filesystem::remove(file);
  EXPECT_EQ(outcome.exitCode, check::kSomethingFailed);
  EXPECT_NE(outcome.out.find("  FAIL  loads-and-has-an-entry\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("  skip  ids-are-unique\n"), std::string::npos) << outcome.out;
}

}  // namespace
