#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <map>
#include <string>

#include "platform/CodePage.h"

namespace {

class CodePage : public testing::Test {
 protected:
  CodePage() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
      if (const char* const value = std::getenv(name)) before_[name] = value;
      unsetenv(name);
    }
  }
  ~CodePage() override {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) unsetenv(name);
    for (const auto& [name, value] : before_) setenv(name.c_str(), value.c_str(), 1);
  }

 private:
  std::map<std::string, std::string> before_;
};

TEST_F(CodePage, aJapaneseLocaleIsShiftJis) {
  setenv("LANG", "ja_JP.UTF-8", 1);
  EXPECT_EQ(platform::GetACP(), 932u);
}

TEST_F(CodePage, anyOtherLocaleIsUtf8) {
  setenv("LANG", "de_DE.UTF-8", 1);
  EXPECT_EQ(platform::GetACP(), 65001u);
}

TEST_F(CodePage, noLocaleIsUtf8) {
  EXPECT_EQ(platform::GetACP(), 65001u);
}

TEST_F(CodePage, theVariableForAllCategoriesCountsBeforeTheOthers) {
  setenv("LC_ALL", "en_US.UTF-8", 1);
  setenv("LC_CTYPE", "ja_JP.UTF-8", 1);
  setenv("LANG", "ja_JP.UTF-8", 1);
  EXPECT_EQ(platform::GetACP(), 65001u);
}

TEST_F(CodePage, anEmptyVariableCountsAsNotSet) {
  setenv("LC_ALL", "", 1);
  setenv("LC_CTYPE", "ja_JP", 1);
  EXPECT_EQ(platform::GetACP(), 932u);
}

}  // namespace
