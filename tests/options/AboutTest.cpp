
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <string>

#include "effect/options/Messages.h"
#include "tests/options/FakeSystem.h"

namespace {

int hostSprintfCalls = 0;

// As the host's: knows no size, the caller does.
int hostSprintf(A_char* buffer, const A_char* format, ...) {
  ++hostSprintfCalls;
  va_list arguments;
  va_start(arguments, format);
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#endif
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the line above the pragmas initialises it
  const int written = std::vsnprintf(buffer, sizeof(PF_OutData::return_msg), format, arguments);
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
  va_end(arguments);
  return written;
}

class AboutText : public testing::Test {
 protected:
  AboutText() {
    fakeSystem = {};
    vindrel::languageState = {};
    hostSprintfCalls = 0;
    utils_.ansi.sprintf = hostSprintf;
    inData_.utils = &utils_;
  }

  std::string text() {
    EXPECT_EQ(vindrel::About(&inData_, &outData_, nullptr, nullptr), 0);
    return outData_.return_msg;
  }

 private:
  PF_UtilCallbacks utils_{};
  PF_InData inData_{};
  PF_OutData outData_{};
};

TEST_F(AboutText, tellsNameVersionAndCopyrightLine) {
  EXPECT_EQ(text(), std::string("Vindrel 1.5.1 \r\r") + vindrel::LookupMessage(1));
  EXPECT_EQ(hostSprintfCalls, 1);
}

TEST_F(AboutText, tellsStageAndBuildTooWhileShiftIsHeld) {
  fakeSystem.shiftDown = true;
  EXPECT_EQ(text(), std::string("Vindrel 1.5.1 Release build:7 \r\r") + vindrel::LookupMessage(1));
}

TEST_F(AboutText, isTheSameInBothLanguages) {
  fakeSystem.commandLine = "host -L JP";
  const std::string japanese = text();
  vindrel::languageState = {};
  fakeSystem.commandLine = "host -L EN";
  EXPECT_EQ(japanese, text());
}

}  // namespace
