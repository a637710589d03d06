// What is made from the table of commands: completion, tried in the shells themselves, and the manual page, read by
// groff and man.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "cli/CommandTable.h"
#include "tests/cli/CommandLine.h"

namespace {

class CompletionTest : public testing::Test {
 protected:
  /// Runs a script of a shell in the folder; its output, errors among it, is given.
  std::string run(const std::string& shell, const std::string& script) const {
    folder_.write("script", script);
    const std::string command =
        "cd '" + folder_.path().string() + "' && HOME=$PWD " + shell + " script >log 2>&1 </dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << script << "\n" << folder_.read("log");
    return folder_.read("log");
  }

  std::string made(const std::vector<std::string>& words, const std::string& file) const {
    const Outcome outcome = runCommandLine(words);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    folder_.write(file, outcome.out);
    return outcome.out;
  }

  /// What bash offers after these words, the last of which is begun only. They are words as bash splits them: outside
  /// of quotes an '=' is a word of its own.
  std::vector<std::string> offered(const std::string& words) const {
    made({"completion", "bash"}, "vindrel.bash");
    const std::string lines =
        run("bash --norc",
            "set -eu\nsource vindrel.bash\ncompopt() { :; }\n[[ $(complete -p vindrel) == *_vindrel* ]]\n"
            "COMP_WORDS=(" +
                words +
                ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_vindrel || :\n"
                "for word in ${COMPREPLY[@]+\"${COMPREPLY[@]}\"}; do printf '%s\\n' \"$word\"; done\n");
    std::vector<std::string> list;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) list.push_back(line);
    return list;
  }

  const vindrel::test::TemporaryFolder folder_;
};

using Words = std::vector<std::string>;

TEST_F(CompletionTest, bashCompletesCommandsAndTheirOptions) {
  EXPECT_EQ(offered("vindrel re"), Words{"render"});
  EXPECT_EQ(offered("vindrel render --sk"), Words{"--skip-existing"});
  EXPECT_EQ(offered("vindrel controls --js"), Words{"--json"});
  EXPECT_EQ(offered("vindrel controls --skip"), Words{});
  EXPECT_EQ(offered("vindrel completion ''"), (Words{"--help", "--module", "bash", "zsh"}));
}

TEST_F(CompletionTest, bashOffersEveryOptionOfEveryCommand) {
  for (const cli::CommandFacts& command : cli::commandTable()) {
    Words wanted;
    for (const cli::OptionFacts& option : command.options) wanted.push_back(option.name);
    EXPECT_FALSE(wanted.empty()) << command.name;
    EXPECT_EQ(offered("vindrel " + command.name + " --"), wanted) << command.name;
  }
}

TEST_F(CompletionTest, bashCompletesWhatStandsAfterAnOption) {
  EXPECT_EQ(offered("vindrel render --road s"), Words{"smart"});
  EXPECT_EQ(offered("vindrel render --road = cl"), Words{"classic"});
  EXPECT_EQ(offered("vindrel render --depth ''"), (Words{"8", "16", "32"}));
  EXPECT_EQ(offered("vindrel render --jobs ''"), Words{});
}

TEST_F(CompletionTest, bashCompletesControlsAndTheirItemsInQuotes) {
  EXPECT_EQ(offered("vindrel render --set '\"Dot Sh'"), Words{"Dot Shape="});
  EXPECT_EQ(offered("vindrel render --set '\"dot shape=S'"), Words{});
  EXPECT_EQ(offered("vindrel render --set '\"Dot Shape=S'"), (Words{"Dot Shape=Square", "Dot Shape=Star"}));
  EXPECT_EQ(offered("vindrel render --set '\"Invert Mask='"), (Words{"Invert Mask=on", "Invert Mask=off"}));
  EXPECT_EQ(offered("vindrel render --layer '\"Mask T'"), Words{"Mask Target Layer="});
  EXPECT_EQ(offered("vindrel controls --describe '\"Dot Si'"), Words{"Dot Size"});
}

TEST_F(CompletionTest, bashCompletesControlsAndTheirItemsWithoutQuotes) {
  EXPECT_EQ(offered("vindrel render --set 'Dot\\ Sh'"), Words{"Dot\\ Shape="});
  EXPECT_EQ(offered("vindrel render --set 'Dot\\ Shape' = St"), Words{"Star"});
  EXPECT_EQ(offered("vindrel render --set 'Dot\\ Shape' ="),
            (Words{"Circle", "Square", "Round\\ Square", "Cross", "Star", "Diamond"}));
  EXPECT_EQ(offered("vindrel render --set 'Dot\\ Shape' = 'Round\\ S'"), Words{"Round\\ Square"});
}

TEST_F(CompletionTest, zshTakesTheScriptFromAFolderAndFromItsSettings) {
  made({"completion", "zsh"}, "_vindrel");
  const std::string begin = "setopt err_exit\nautoload -Uz compinit\n";
  EXPECT_EQ(
      run("zsh -f", "zsh -n _vindrel\n" + begin + "fpath=($PWD $fpath)\ncompinit -u -d dump\nprint $_comps[vindrel]\n"),
      "_vindrel\n");
  EXPECT_EQ(run("zsh -f", begin + "compinit -u -d dump\nsource ./_vindrel\nprint $_comps[vindrel]\nprint -r -- "
                                  "${(f)_vindrel_items[Dot Shape]}\n"),
            "_vindrel\nCircle Square Round Square Cross Star Diamond\n");
}

TEST_F(CompletionTest, anotherShellIsRefused) {
  EXPECT_EQ(runCommandLine({"completion", "fish"}).err, "vindrel: completion takes bash or zsh, not 'fish'\n");
  EXPECT_EQ(runCommandLine({"completion"}).err, "vindrel: completion takes a shell: bash or zsh\n");
}

TEST_F(CompletionTest, theManualPageIsReadWithoutAWarning) {
  made({"man"}, "vindrel.1");
  EXPECT_EQ(run("bash", "groff -man -Tutf8 -ww -z vindrel.1"), "");
  EXPECT_EQ(run("bash", "LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l -Tutf8 -Z vindrel.1 2>&1 >/dev/null"), "");
}

TEST_F(CompletionTest, theManualPageTellsEveryOptionAndEveryControl) {
  made({"man"}, "vindrel.1");
  const std::string text = run("bash", "LC_ALL=C.UTF-8 MANWIDTH=400 man -P cat -l vindrel.1 | col -bx");
  for (const cli::CommandFacts& command : cli::commandTable()) {
    EXPECT_NE(text.find("vindrel " + command.name), std::string::npos) << command.name;
    for (const cli::OptionFacts& option : command.options)
      EXPECT_NE(text.find(option.name), std::string::npos) << option.name;
  }
  for (const char* words :
       {"Dot Shape", "one of Circle, Square, Round Square, Cross, Star or Diamond", "ABS Rotation 3",
        "How solid the dots are: 100 % hides what lies behind them.", "0° at first"}) {
    EXPECT_NE(text.find(words), std::string::npos) << words;
  }
}

}  // namespace
