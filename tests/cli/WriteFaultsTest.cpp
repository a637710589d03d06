// Each write of each command failed once: by a full device, a limit of the file's size, a pipe that nobody reads, and,
// call by call, by what strace makes of the calls to the system. The command tells it by its exit code and its message;
// files are the old ones or whole new ones, and nothing else lies about.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <sstream>

#include "tests/cli/CommandLine.h"
#include "tests/cli/Program.h"

namespace {

namespace fs = std::filesystem;

/// A command that writes something. "@" in its words is the test's folder.
struct WritingCommand {
  const char* name;
  std::vector<std::string> words;
  std::vector<std::string> files;  ///< that it writes; each stands there before
  bool sameOutEachTime = true;     ///< false for times and sizes of memory among its results
  bool writesTwice = false;        ///< a step that fails the one time may be made good by the other
};

void PrintTo(const WritingCommand& command, std::ostream* out) {
  *out << command.name;
}

const std::vector<WritingCommand>& commands() {
  static const std::vector<WritingCommand> all = {
      {"renderPng", {"render", "@/in.png", "@/out.png"}, {"out.png"}},
      {"renderTiff", {"render", "@/in.png", "@/out.tif"}, {"out.tif"}},
      {"renderExr", {"render", "@/in.png", "@/out.exr"}, {"out.exr"}},
      {"renderJpeg", {"render", "@/in.png", "@/out.jpg"}, {"out.jpg"}},
      {"renderShot",
       {"render", "@/shot.####.png", "@/out.####.png", "--jobs", "1", "--log", "json"},
       {"out.0001.png", "out.0002.png"},
       false},
      {"renderShotByWorkers",
       {"render", "@/shot.####.png", "@/out.####.png", "--jobs", "2"},
       {"out.0001.png", "out.0002.png"}},
      {"sheet", {"sheet", "@/in.png", "@/out.png", "--vary", "Dot Size=4;7"}, {"out.png"}},
      {"screens", {"screens", "@/in.png", "@/out.png", "--recipe", "@/inks.json"}, {"out.png"}},
      {"presetsSave", {"presets", "--save", "@/look.json", "--replace", "--set", "Dot Size=7"}, {"look.json"}},
      {"optionsSave", {"options", "--save", "--module", "@/Copy.so", "--set", "Dot Size=7"}, {"Copy.ini"}, true, true},
      {"presets", {"presets"}, {}},
      {"controls", {"controls"}, {}},
      {"controlsJson", {"controls", "--json"}, {}},
      {"describe", {"controls", "--describe", "Dot Size"}, {}},
      {"about", {"about"}, {}},
      {"check", {"check", "--only", "ids-are-unique", "--jobs", "1"}, {}, false},
      {"checkJson", {"check", "--only", "ids-are-unique", "--jobs", "1", "--json"}, {}, false},
      {"checkList", {"check", "--list"}, {}},
      {"completionBash", {"completion", "bash"}, {}},
      {"completionZsh", {"completion", "zsh"}, {}},
      {"man", {"man"}, {}},
      {"help", {"render", "--help"}, {}},
      {"version", {"--version"}, {}},
  };
  return all;
}

/// What the program did: its end, its words, and what its files hold then.
struct Ended {
  int exitCode = -1;
  std::string out;
  std::string err;
  std::map<std::string, std::string> files;
};

/// A call to the system on the way of something that is written.
struct Step {
  std::string call;
  int32_t nth = 0;       ///< of the calls of this name, from 1
  bool onFile = true;    ///< false: on what the program says
  bool isNeeded = true;  ///< false: it may fail without harm
};

class FailedWrites : public testing::Environment {
 public:
  void TearDown() override {
    std::cout << "writes failed one by one: " << failed << ", signals in their midst: " << signals << std::endl;
  }
  static inline int32_t failed = 0;
  static inline int32_t signals = 0;
};
const testing::Environment* const failedWrites = testing::AddGlobalTestEnvironment(new FailedWrites);

bool has(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

constexpr const char* old = "[Version=0.1]\r\nold=1\r\n";  // as good a settings file as it is any other old file

class WriteFaults : public testing::TestWithParam<WritingCommand> {
 protected:
  void SetUp() override {
    cli::writePicture(folder_ / "in.png", smallPicture(standin::Depth::k8));
    cli::writePicture(folder_ / "shot.0001.png", smallPicture(standin::Depth::k8));
    cli::writePicture(folder_ / "shot.0002.png", smallPicture(standin::Depth::k8));
    folder_.write("screen.json", R"({"controls": {"Dot Size": 6}})");
    folder_.write("inks.json", R"({"passes": [{"channel": "dark", "preset": "screen", "ink": "#102030"}]})");
    fs::copy_file(VINDREL_MODULE, folder_ / "Copy.so");
    fs::create_directory(folder_ / "passing");
    for (const std::string& file : GetParam().files) folder_.write(file, old);
    before_ = folder_.names();
  }

  std::vector<std::string> words() const {
    std::vector<std::string> all = GetParam().words;
    for (std::string& word : all) {
      if (const std::size_t at = word.find('@'); at != std::string::npos) word.replace(at, 1, folder_.path().string());
    }
    return all;
  }

  /// @param tracing  words of strace in front of the program's; empty for the program alone
  Ended run(const std::function<void()>& before = {}, const std::vector<std::string>& tracing = {}) {
    for (const std::string& file : GetParam().files) folder_.write(file, old);
    std::vector<std::string> all = words();
    if (!tracing.empty()) {
      all.insert(all.begin(), VINDREL_PROGRAM);
      all.insert(all.begin(), tracing.begin(), tracing.end());
    }
    const std::string out = talk_ / "out";
    const std::string err = talk_ / "err";
    Ended done;
    {
      const auto prepare = [&] {
        setenv("TMPDIR", (folder_ / "passing").c_str(), 1);
        // Nobody can look for leaks in a program that is traced.
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
        keepCountsApart();
        dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        if (before) before();
      };
      Program program(all, prepare, "/dev/null", tracing.empty() ? VINDREL_PROGRAM : "strace");
      done.exitCode = program.wait();
    }
    done.out = talk_.read("out");
    done.err = talk_.read("err");
    for (const std::string& file : GetParam().files) done.files[file] = folder_.read(file);
    EXPECT_EQ(folder_.names(), before_) << "something lies about";
    return done;
  }

  Ended undisturbed() {
    Ended whole = run();
    EXPECT_EQ(whole.exitCode, 0) << whole.err;
    for (const auto& [name, content] : whole.files) EXPECT_NE(content, old) << name;
    return whole;
  }

  /// Nothing of a file's two forms in between.
  static void expectOldOrNew(const Ended& run, const Ended& whole) {
    for (const auto& [name, content] : run.files) {
      EXPECT_TRUE(content == old || content == whole.files.at(name)) << name << " has " << content.size() << " bytes";
    }
  }

  static void expectTold(const Ended& run) {
    EXPECT_TRUE(run.exitCode == 1 || run.exitCode == 2) << run.exitCode;
    // A shot names each frame that failed, and then tells their number; a notice may stand before.
    std::istringstream lines(run.err);
    int32_t errors = 0;
    for (std::string line; std::getline(lines, line);) {
      EXPECT_TRUE(line.starts_with("vindrel: ")) << run.err;
      errors += has(line, "vindrel: notice: ") ? 0 : 1;
    }
    EXPECT_GE(errors, 1);
    EXPECT_LE(errors, GetParam().files.size() > 1 ? 3 : 1) << run.err;
  }

  static void expectWhole(const Ended& run, const Ended& whole) {
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.files, whole.files);
    if (GetParam().sameOutEachTime) {
      EXPECT_EQ(run.out, whole.out);
    }
  }

  vindrel::test::TemporaryFolder folder_;
  vindrel::test::TemporaryFolder talk_;
  std::vector<std::string> before_;
};

// ---- what a user meets

TEST_P(WriteFaults, aFullDeviceIsToldAndStays) {
  const bool writesFiles = !GetParam().files.empty();
  const Ended whole = undisturbed();
  if (!whole.out.empty()) {
    const Ended full = run([] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    expectTold(full);
    EXPECT_NE(full.err.find("vindrel: can't write the results\n"), std::string::npos) << full.err;
    expectOldOrNew(full, whole);
    ++FailedWrites::failed;
  }
  if (!writesFiles) return;
  for (const std::string& file : GetParam().files) {
    fs::remove(folder_ / file);
    fs::create_symlink("/dev/full", folder_ / file);
  }
  Program program(words());
  EXPECT_TRUE(program.wait() != 0);
  for (const std::string& file : GetParam().files) EXPECT_TRUE(fs::is_symlink(folder_ / file)) << file;
  EXPECT_EQ(folder_.names(), before_);
  ++FailedWrites::failed;
}

TEST_P(WriteFaults, aLimitOfTheFilesSizeIsTold) {
  const Ended whole = undisturbed();
  if (whole.out.empty() && whole.files.empty()) return;
  const Ended limited = run([] {
    const rlimit limit{4, 4};
    setrlimit(RLIMIT_FSIZE, &limit);
  });
  // Its messages go to a file as well, and are cut.
  EXPECT_TRUE(limited.exitCode == 1 || limited.exitCode == 2) << limited.exitCode;
  EXPECT_EQ(limited.err, "vind");
  for (const auto& [name, content] : limited.files) EXPECT_EQ(content, old) << name;
  ++FailedWrites::failed;
}

TEST_P(WriteFaults, aPipeThatNobodyReadsEndsTheProgramAsAnyOther) {
  const Ended whole = undisturbed();
  if (whole.out.empty()) return;
  const auto broken = [] {
    int ends[2];
    if (pipe(ends) != 0) _exit(126);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
  };
  const Ended ended = run(broken);
  EXPECT_EQ(ended.exitCode, 128 + SIGPIPE);
  EXPECT_EQ(ended.err, "");
  expectOldOrNew(ended, whole);
  const Ended told = run([&] {
    broken();
    std::signal(SIGPIPE, SIG_IGN);
  });
  expectTold(told);
  expectOldOrNew(told, whole);
  FailedWrites::failed += 2;
}

std::string nameOf(const testing::TestParamInfo<WritingCommand>& item) {
  return item.param.name;
}

INSTANTIATE_TEST_SUITE_P(Commands, WriteFaults, testing::ValuesIn(commands()), nameOf);

// ---- call by call; sanitizers make calls of their own, which would be failed along

#ifndef VINDREL_SANITIZED

/// The steps in a log of strace. What comes before anything is made belongs to the loading of the program.
std::vector<Step> stepsIn(std::istream& log) {
  std::vector<Step> steps;
  std::map<std::string, int32_t> counts;  // by call
  std::string duplicate;                  // the number of the file that a dup gave
  bool making = false;
  const std::regex form(R"((?:\d+ +)?(\w+)\((.*))");
  for (std::string line; std::getline(log, line);) {
    std::smatch parts;
    if (!std::regex_match(line, parts, form)) continue;  // how it ended
    Step step;
    step.call = parts[1];
    step.nth = ++counts[step.call];
    const std::string rest = parts[2];
    if (has(rest, ".gcda")) break;  // a build that counts its lines writes the counts when all else is done
    if (step.call == "openat" && !has(rest, "O_WRONLY") && !has(rest, "O_RDWR")) continue;
    making = making || step.call == "openat" || step.call == "mkdir";
    if (step.call == "write") {
      step.onFile = !rest.starts_with("1,") && !rest.starts_with("2,");
      step.isNeeded = !rest.starts_with("2,");
    } else if (!making) {
      continue;
    } else if (step.call == "dup") {
      duplicate = rest.substr(rest.rfind(' ') + 1);
    } else if (step.call == "close") {
      // A close tells of what was written only where a copy of the file's number is closed to ask for it.
      step.isNeeded = !duplicate.empty() && rest.starts_with(duplicate + ")");
      if (step.isNeeded) duplicate.clear();
    } else if (step.call == "flock" || step.call == "fchown") {
      step.isNeeded = false;
    }
    steps.push_back(std::move(step));
  }
  return steps;
}

/// A module that writes its settings takes the same steps for each value: of very many, those at both ends and some
/// between.
std::vector<Step> someOf(const std::vector<Step>& all) {
  if (all.size() <= 60) return all;
  std::vector<Step> some;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i < 3 || i + 12 >= all.size() || i % 401 == 0) some.push_back(all[i]);
  }
  return some;
}

class WriteFaultsCallByCall : public WriteFaults {
 protected:
  /// Other processes are not looked into: those in which the check tries its promises write nothing that lasts.
  std::vector<std::string> tracing() const {
    return {"-o", talk_ / "trace",
            "-e", "signal=none",
            "-e", "trace=openat,write,pread64,fchmod,fchown,flock,dup,close,rename,mkdir"};
  }

  std::vector<Step> steps() {
    const Ended traced = run({}, tracing());
    EXPECT_EQ(traced.exitCode, 0) << traced.err;
    std::ifstream log(talk_ / "trace");
    return someOf(stepsIn(log));
  }

  /// The program with that step changed, in strace's words: "error=EIO".
  Ended changed(const Step& step, const std::string& how) {
    std::vector<std::string> words = tracing();
    words.insert(words.end(), {"-e", "inject=" + step.call + ":" + how + ":when=" + std::to_string(step.nth)});
    return run({}, words);
  }
};

TEST_P(WriteFaultsCallByCall, aCallThatFailsIsToldAndLeavesTheOldFile) {
  const Ended whole = undisturbed();
  const std::vector<Step> all = steps();
  ASSERT_FALSE(all.empty()) << "strace saw no step of it";
  for (const Step& step : all) {
    SCOPED_TRACE(step.call + ", call " + std::to_string(step.nth));
    const Ended failed = changed(step, has(step.call, "close") ? "error=EIO" : "error=ENOSPC");
    ++FailedWrites::failed;
    expectOldOrNew(failed, whole);
    if (step.isNeeded && !(GetParam().writesTwice && step.onFile && failed.exitCode == 0)) {
      expectTold(failed);
      if (step.onFile && failed.files.size() == 1) {
        EXPECT_EQ(failed.files.begin()->second, old);
      }
    } else if (failed.exitCode == 0) {
      expectWhole(failed, whole);
    }
  }
}

/// Of files that the command line writes itself. The module writes its settings through the C library, without reading
/// them again, while no signal comes.
class WriteFaultsOfOurOwn : public WriteFaultsCallByCall {};

TEST_P(WriteFaultsOfOurOwn, aWriteThatIsInterruptedIsTakenUpAgain) {
  const Ended whole = undisturbed();
  for (const Step& step : steps()) {
    // What the program says is not taken up again: no signal that it lives on after interrupts it.
    if ((step.call != "write" && step.call != "pread64") || !step.onFile) continue;
    SCOPED_TRACE(step.call + ", call " + std::to_string(step.nth));
    expectWhole(changed(step, "error=EINTR"), whole);
    ++FailedWrites::failed;
  }
}

TEST_P(WriteFaultsOfOurOwn, aDeviceThatSaysItWroteIsFoundOut) {
  const Ended whole = undisturbed();
  for (const Step& step : steps()) {
    if (step.call != "write" || !step.onFile) continue;
    SCOPED_TRACE(step.call + ", call " + std::to_string(step.nth));
    const Ended lied = changed(step, "retval=1");
    expectTold(lied);
    expectOldOrNew(lied, whole);
    ++FailedWrites::failed;
  }
}

TEST_P(WriteFaultsCallByCall, aSignalAtAnyStepLeavesTheOldFileOrTheNewAndNothingElse) {
  const Ended whole = undisturbed();
  constexpr int signals[] = {SIGTERM, SIGINT, SIGHUP};
  std::size_t next = 0;
  for (const Step& step : steps()) {
    const int signal = signals[next++ % 3];
    SCOPED_TRACE(step.call + ", call " + std::to_string(step.nth) + ", signal " + std::to_string(signal));
    const Ended ended = changed(step, "signal=" + std::to_string(signal));
    EXPECT_EQ(ended.exitCode, 128 + signal) << ended.err;
    expectOldOrNew(ended, whole);
    ++FailedWrites::signals;
  }
}

/// The threads and processes of a shot take its frames as they come, so that their calls have no order that can be
/// told.
std::vector<WritingCommand> commandsOfOneThread() {
  std::vector<WritingCommand> some = commands();
  std::erase_if(some, [](const WritingCommand& command) { return has(command.name, "Shot"); });
  return some;
}
INSTANTIATE_TEST_SUITE_P(Commands, WriteFaultsCallByCall, testing::ValuesIn(commandsOfOneThread()), nameOf);

/// Those that write files, but for the one whose files the module writes.
std::vector<WritingCommand> commandsOfOurOwn() {
  std::vector<WritingCommand> some = commandsOfOneThread();
  std::erase_if(some, [](const WritingCommand& command) { return command.files.empty() || command.writesTwice; });
  return some;
}
INSTANTIATE_TEST_SUITE_P(Commands, WriteFaultsOfOurOwn, testing::ValuesIn(commandsOfOurOwn()), nameOf);

#endif

}  // namespace
