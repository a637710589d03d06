// What the program shows on a terminal, a real one as far as the program can tell.

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "tests/cli/CommandLine.h"

namespace {

class TerminalTest : public testing::Test {
 protected:
  TerminalTest() {
    for (int32_t i = 1; i <= 6; ++i) {
      cli::writePicture(folder_ / ("in." + std::to_string(i) + ".png"), smallPicture(standin::Depth::k8, 200, 150));
    }
  }

  /// Renders the six frames on a terminal of so many columns.
  /// @return all that came to the terminal
  std::string shown(unsigned short columns, const char* term, const char* noColor,
                    const std::vector<std::string>& more = {}) {
    std::vector<std::string> words = {VINDREL_PROGRAM, "render", (folder_ / "in.#.png").string(),
                                      (folder_ / "out.#.png").string()};
    words.insert(words.end(), more.begin(), more.end());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    winsize size{};
    size.ws_col = columns;
    size.ws_row = 24;
    int ours = -1;
    const pid_t process = forkpty(&ours, nullptr, nullptr, &size);
    if (process == 0) {
      setenv("TERM", term, 1);
      setenv("NO_COLOR", noColor, 1);
      execv(VINDREL_PROGRAM, arguments.data());
      _exit(127);
    }
    std::string text;
    std::array<char, 4096> buffer{};
    // The end of the program shows as an error of the terminal.
    for (ssize_t got = 0; (got = read(ours, buffer.data(), buffer.size())) > 0;) {
      text.append(buffer.data(), static_cast<std::size_t>(got));
    }
    int status = -1;
    waitpid(process, &status, 0);
    close(ours);
    EXPECT_EQ(status, 0) << text;
    return text;
  }

  const vindrel::test::TemporaryFolder folder_;
};

/// What stands on the screen one after the other: the text between returns, without escapes.
std::vector<std::string> drawings(const std::string& text) {
  std::vector<std::string> lines(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' || text[i] == '\n') {
      lines.emplace_back();
    } else if (text[i] == '\x1b') {
      while (i < text.size() && text[i] != 'm' && text[i] != 'K') ++i;
    } else {
      lines.back() += text[i];
    }
  }
  return lines;
}

TEST_F(TerminalTest, framesAreCountedInColorAndWipedAtTheEnd) {
  const std::string text = shown(80, "xterm", "");
  EXPECT_NE(text.find("of 6 frames ["), std::string::npos) << text;
  EXPECT_NE(text.find("\x1b[32m"), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("\r\x1b[K")) << text;
}

TEST_F(TerminalTest, noLineIsWiderThanTheTerminal) {
  for (const unsigned short columns : std::to_array<unsigned short>({10, 20, 30, 50})) {
    std::size_t widest = 0;
    for (const std::string& line : drawings(shown(columns, "xterm", ""))) widest = std::max(widest, line.size());
    EXPECT_LT(widest, columns);
    EXPECT_GT(widest, 0U);
  }
}

TEST_F(TerminalTest, noColorMeansNone) {
  const std::string text = shown(80, "xterm", "1");
  EXPECT_NE(text.find("of 6 frames ["), std::string::npos) << text;
  for (std::size_t i = text.find('\x1b'); i != std::string::npos; i = text.find('\x1b', i + 1)) {
    EXPECT_EQ(text.substr(i, 3), "\x1b[K");
  }
}

TEST_F(TerminalTest, quietMeansNothing) {
  EXPECT_EQ(shown(80, "xterm", "", {"--quiet"}), "");
}

TEST_F(TerminalTest, aPlainTerminalGetsNoEscapes) {
  EXPECT_EQ(shown(80, "dumb", "").find_first_of("\x1b#"), std::string::npos);
}

TEST_F(TerminalTest, linesOfTheLogStandAloneOnTheirLines) {
  int32_t logged = 0;
  for (const std::string& line : drawings(shown(120, "xterm", "", {"--log", "text"}))) {
    if (line.find(" s  ") == std::string::npos) continue;
    EXPECT_TRUE(line.starts_with("frame ") && line.ends_with("done")) << line;
    ++logged;
  }
  EXPECT_EQ(logged, 6);
}

}  // namespace
