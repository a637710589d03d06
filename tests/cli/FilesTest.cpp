// Files put in their places: whole or not at all, and what stands there is respected.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <future>

#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/files/PutFile.h"
#include "tests/cli/CommandLine.h"
#include "tests/cli/Program.h"

namespace fs = std::filesystem;

namespace {

class FilesTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  static void put(const fs::path& file, const std::string& content) {
    cli::putFile(file, {reinterpret_cast<const uint8_t*>(content.data()), content.size()});
  }

  static mode_t modeOf(const fs::path& file) {
    struct stat facts {};
    EXPECT_EQ(lstat(file.c_str(), &facts), 0);
    return facts.st_mode & 07777U;
  }

  /// A picture whose file is far larger than the limits that the tests set.
  void largeInput() {
    standin::Image image(standin::Depth::k8, 400, 300);
    uint32_t noise = 1;
    for (int32_t y = 0; y < 300; ++y) {
      for (int32_t x = 0; x < 400; ++x) {
        noise = noise * 1664525U + 1013904223U;
        image.at<PF_Pixel>(x, y) = {255, static_cast<A_u_char>(noise >> 24), static_cast<A_u_char>(noise >> 16),
                                    static_cast<A_u_char>(noise >> 8)};
      }
    }
    cli::writePicture(folder_ / "in.png", image);
  }

  vindrel::test::TemporaryFolder folder_;
};

void limitFileSize() {
  const rlimit limit{20000, 20000};
  setrlimit(RLIMIT_FSIZE, &limit);
  keepCountsApart();
}

}  // namespace

TEST_F(FilesTest, aFileSizeLimitLeavesTheOldFileAndIsAnError) {
  largeInput();
  for (const char* name : {"out.png", "out.tif", "out.exr"}) {
    folder_.write(name, "precious");
    Program program({"render", path("in.png"), path(name)}, limitFileSize, "/dev/null");
    EXPECT_EQ(program.wait(), 2) << name;
    EXPECT_EQ(folder_.read(name), "precious");
  }
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"in.png", "out.exr", "out.png", "out.tif"}));
}

TEST_F(FilesTest, aFullDeviceIsAnError) {
  fs::create_symlink("/dev/full", folder_ / "full.png");
  cli::writePicture(folder_ / "in.png", smallPicture(standin::Depth::k8));
  const Outcome outcome = runCommandLine({"render", path("in.png"), path("full.png")});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "vindrel: can't write '" + path("full.png") + "': No space left on device\n");
  EXPECT_TRUE(fs::is_symlink(folder_ / "full.png"));
}

TEST_F(FilesTest, aLinkIsFollowedAndStays) {
  fs::create_directory(folder_ / "elsewhere");
  folder_.write("elsewhere/real.txt", "old");
  fs::create_symlink("elsewhere/real.txt", folder_ / "link.txt");
  fs::create_symlink("elsewhere/new.txt", folder_ / "dangling.txt");
  put(folder_ / "link.txt", "new");
  put(folder_ / "dangling.txt", "first");
  EXPECT_EQ(folder_.read("elsewhere/real.txt"), "new");
  EXPECT_EQ(folder_.read("elsewhere/new.txt"), "first");
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.txt"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "dangling.txt"));
}

TEST_F(FilesTest, linksInACircleAreRefused) {
  fs::create_symlink("b", folder_ / "a");
  fs::create_symlink("a", folder_ / "b");
  EXPECT_THROW(put(folder_ / "a", "x"), cli::UserError);
}

TEST_F(FilesTest, theModeOfAnExistingFileIsKept) {
  folder_.write("a.txt", "old");
  for (const mode_t mode : {0640U, 0600U, 0664U}) {
    ASSERT_EQ(chmod(path("a.txt").c_str(), mode), 0);
    put(folder_ / "a.txt", "new");
    EXPECT_EQ(modeOf(folder_ / "a.txt"), mode);
  }
}

TEST_F(FilesTest, aNewFileHasTheModeThatTheUmaskLeaves) {
  const mode_t before = umask(027);
  put(folder_ / "a.txt", "new");
  umask(before);
  EXPECT_EQ(modeOf(folder_ / "a.txt"), 0640U);
}

TEST_F(FilesTest, aPipeIsWrittenIntoAndStays) {
  ASSERT_EQ(mkfifo(path("pipe.png").c_str(), 0600), 0);
  cli::writePicture(folder_ / "in.png", smallPicture(standin::Depth::k8));
  auto received = std::async(std::launch::async, [&] { return folder_.read("pipe.png"); });
  EXPECT_EQ(runCommandLine({"render", path("in.png"), path("pipe.png")}).exitCode, 0);
  const std::string content = received.get();
  ASSERT_EQ(runCommandLine({"render", path("in.png"), path("plain.png")}).exitCode, 0);
  EXPECT_EQ(content, folder_.read("plain.png"));
  EXPECT_TRUE(fs::is_fifo(folder_ / "pipe.png"));
}

TEST_F(FilesTest, aPipeWhereAFileShouldBeReadIsRefusedAtOnce) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  cli::writePicture(folder_ / "in.png", smallPicture(standin::Depth::k8));
  Outcome outcome = runCommandLine({"render", path("pipe"), path("out.png")});
  EXPECT_EQ(outcome.err, "vindrel: '" + path("pipe") + "' is no plain file; a picture must be one\n");
  outcome = runCommandLine({"render", path("in.png"), path("out.png"), "--preset", path("pipe")});
  EXPECT_EQ(outcome.err, "vindrel: '" + path("pipe") + "' is no plain file; a preset must be one\n");
  outcome = runCommandLine({"render", path("in.png"), path("out.png"), "--layer", "Mask Target Layer=" + path("pipe")});
  EXPECT_EQ(outcome.err, "vindrel: '" + path("pipe") + "' is no plain file; a picture must be one\n");
  EXPECT_EQ(outcome.exitCode, 2);
}

TEST_F(FilesTest, aSettingsFileThatIsAPipeIsRefusedAtOnce) {
  fs::copy_file(VINDREL_MODULE, folder_ / "Copy.so");
  ASSERT_EQ(mkfifo(path("Copy.ini").c_str(), 0600), 0);
  const Outcome outcome = runCommandLine({"controls", "--module", path("Copy.so")});
  EXPECT_EQ(outcome.err, "vindrel: '" + path("Copy.ini") + "' is no plain file; the module's settings must be one\n");
  EXPECT_EQ(outcome.exitCode, 2);
}

TEST_F(FilesTest, aLongNameLeavesRoomForTheNameInTheMaking) {
  const std::string name(250, 'x');
  put(folder_ / name, "content");
  EXPECT_EQ(folder_.read(name), "content");
}

// ---- what can't be read or written, and why

namespace {

/// As somebody who may do little, where the tests are run by the one who may do all.
class AsNobody {
 public:
  AsNobody() : was_(geteuid()) {
    constexpr uid_t nobody = 65534;
    // The first user asks for permission, the second has it, and the third is the way back.
    if (was_ == 0) {
      EXPECT_EQ(setresuid(nobody, nobody, 0), 0);
    }
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() {
    if (was_ == 0) {
      EXPECT_EQ(setresuid(0, 0, 0), 0);
    }
  }

 private:
  uid_t was_;
};

class InTheWayTest : public FilesTest {
 protected:
  void SetUp() override { cli::writePicture(folder_ / "in.png", smallPicture(standin::Depth::k8)); }

  std::string quoted(const std::string& name) const { return "'" + path(name) + "'"; }

  void expectRefused(const std::string& in, const std::string& out, const std::string& message) const {
    const Outcome outcome = runCommandLine({"render", path(in), path(out)});
    EXPECT_EQ(outcome.err, "vindrel: " + message + "\n");
    EXPECT_EQ(outcome.exitCode, 2);
  }

  /// What putFile says.
  static std::string complaintOfPut(const fs::path& file) {
    try {
      put(file, "content");
    } catch (const cli::UserError& error) {
      return error.what();
    }
    return "written";
  }
};

}  // namespace

TEST_F(InTheWayTest, whoMayNotReadAPictureIsToldSo) {
  ASSERT_EQ(chmod(path("in.png").c_str(), 0), 0);
  const AsNobody nobody;
  expectRefused("in.png", "out.png", "no permission to read " + quoted("in.png"));
}

TEST_F(InTheWayTest, whoMayNotWriteIsToldSoBeforeAnythingIsDrawn) {
  fs::create_directory(folder_ / "locked");
  folder_.write("locked/there.png", "precious");
  ASSERT_EQ(chmod(path("locked/there.png").c_str(), 0444), 0);
  ASSERT_EQ(chmod(path("locked").c_str(), 0555), 0);
  ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
  const AsNobody nobody;
  expectRefused("in.png", "locked/out.png",
                "can't write " + quoted("locked/out.png") + ": no permission to write in " + quoted("locked"));
  expectRefused("in.png", "locked/there.png", "can't write " + quoted("locked/there.png") + ": it is write-protected");
  EXPECT_EQ(complaintOfPut(folder_ / "locked/out.png"),
            "can't write " + quoted("locked/out.png") + ": Permission denied");
  EXPECT_EQ(folder_.read("locked/there.png"), "precious");
}

TEST_F(InTheWayTest, namesThatLeadNowhereAreNoFiles) {
  expectRefused("in.png/x.png", "out.png", "no file " + quoted("in.png/x.png"));
  fs::create_symlink("b", folder_ / "a");
  fs::create_symlink("a", folder_ / "b");
  expectRefused("a", "out.png", "can't read " + quoted("a") + ": Too many levels of symbolic links");
  const std::string endless(300, 'x');
  expectRefused(endless, "out.png", "can't read " + quoted(endless) + ": File name too long");
}

TEST_F(InTheWayTest, aFileOfMoreBytesThanAreReadIsRefusedBeforeItIsRead) {
  folder_.write("large.png", "");
  fs::resize_file(folder_ / "large.png", 1'000'001);
  const Outcome picture = runCommandLine({"render", path("large.png"), path("out.png"), "--limit-memory", "1M"});
  EXPECT_EQ(picture.err,
            "vindrel: " + quoted("large.png") + " has 1000001 bytes; a picture may have at most 1000000\n");
  folder_.write("large.json", "");
  fs::resize_file(folder_ / "large.json", 16'000'001);
  const Outcome preset = runCommandLine({"render", path("in.png"), path("out.png"), "--preset", path("large.json")});
  EXPECT_EQ(preset.err,
            "vindrel: " + quoted("large.json") + " has 16000001 bytes; a preset may have at most 16000000\n");
  fs::copy_file(VINDREL_MODULE, folder_ / "Copy.so");
  folder_.write("Copy.ini", "");
  fs::resize_file(folder_ / "Copy.ini", 1'000'001);
  const Outcome settings = runCommandLine({"controls", "--module", path("Copy.so")});
  EXPECT_EQ(settings.err,
            "vindrel: " + quoted("Copy.ini") + " has 1000001 bytes; a module's settings may have at most 1000000\n");
}

TEST_F(InTheWayTest, aFolderCannotBecomeAFile) {
  fs::create_directory(folder_ / "folder");
  EXPECT_EQ(complaintOfPut(folder_ / "folder"), "can't write " + quoted("folder") + ": Is a directory");
}

TEST_F(InTheWayTest, anythingElseThatCannotBeOpenedIsNamed) {
  const int open = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_GE(open, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path("door.png").size(), sizeof address.sun_path);
  path("door.png").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(open, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  expectRefused("in.png", "door.png", "can't write " + quoted("door.png") + ": No such device or address");
  close(open);
}

TEST_F(InTheWayTest, aFileMayBeNamedWithoutItsFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.path());
  put("plain.txt", "content");
  fs::create_symlink("plain.txt", "link.txt");
  put("link.txt", "more");
  EXPECT_EQ(complaintOfPut("none/plain.txt"), "can't write 'none/plain.txt': No such file or directory");
  const Outcome misspelt = runCommandLine({"render", "inn.png", "out.png"});
  const Outcome drawn = runCommandLine({"render", "in.png", "out.png"});
  fs::current_path(before);
  EXPECT_EQ(folder_.read("plain.txt"), "more");
  EXPECT_EQ(misspelt.err, "vindrel: no file 'inn.png'; did you mean 'in.png'?\n");
  EXPECT_EQ(drawn.exitCode, 0) << drawn.err;
  EXPECT_EQ(cli::readPicture(folder_ / "out.png").width(), 24);
}

TEST_F(InTheWayTest, aLinkToAWholePathIsFollowed) {
  fs::create_symlink(folder_ / "real.txt", folder_ / "link.txt");
  put(folder_ / "link.txt", "content");
  EXPECT_EQ(folder_.read("real.txt"), "content");
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.txt"));
}

TEST_F(InTheWayTest, onlyLeftoversThatNobodyHoldsAreRemoved) {
  const std::string held = ".vindrel-0123456789abc.part";
  const std::string link = ".vindrel-abcdefghijklm.part";
  const std::vector<std::string> others = {".vindrel-0123.part", ".vindrel-0123456789abc.tmp0",
                                           "xvindrel-0123456789abc.part", "in.png"};
  for (const std::string& name : others) folder_.write(name, "");
  folder_.write(held, "");
  folder_.write(".vindrel-0000000000000.part", "");
  fs::create_symlink("in.png", folder_ / link);
  const int open = ::open(path(held).c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(open, LOCK_EX), 0);
  cli::removeLeftovers(folder_.path());
  std::vector<std::string> left = others;
  left.insert(left.end(), {held, link});
  std::sort(left.begin(), left.end());
  EXPECT_EQ(folder_.names(), left);
  close(open);
  const fs::path before = fs::current_path();
  fs::current_path(folder_.path());
  cli::removeLeftovers("");
  fs::current_path(before);
  EXPECT_FALSE(folder_.has(held)) << "nobody holds it any more";
  cli::removeLeftovers(folder_ / "none");  // nothing there, nothing to do
}

// ---- signals

TEST_F(FilesTest, whoStartsItDeafToHangUpsIsNotEndedByOne) {
  largeInput();
  auto* const before = std::signal(SIGHUP, SIG_IGN);
  Program program({"render", path("in.png"), path("out.exr")});
  std::signal(SIGHUP, before);
  while (!program.ended()) {
    program.send(SIGHUP);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_EQ(program.wait(), 0);
  EXPECT_EQ(cli::readPicture(folder_ / "out.exr").width(), 400);
}

namespace {

/// Stops the program, by a signal, while its file in the making exists.
class InterruptTest : public FilesTest, public testing::WithParamInterface<int> {};

}  // namespace

TEST_P(InterruptTest, aSignalLeavesNoPartAndTheOldFileAndIsToldByTheExitCode) {
  largeInput();
  folder_.write("out.exr", "precious");
  const std::vector<std::string> before = folder_.names();
  bool seen = false;
  for (int attempt = 0; attempt < 400 && !seen; ++attempt) {
    Program program({"render", path("in.png"), path("out.exr")}, keepCountsApart);
    while (!program.ended()) {
      const std::vector<std::string> names = folder_.names();
      if (names == before) continue;
      // The first name is the part's, since it begins with a point.
      EXPECT_TRUE(names[0].starts_with(".vindrel-") && names[0].ends_with(".part")) << names[0];
      EXPECT_EQ(names[0].size(), 27U);
      program.send(GetParam());
      const int code = program.wait();
      // It may have put the whole file in its place between the look and the signal.
      seen = code == 128 + GetParam() && folder_.read("out.exr") == "precious";
      break;
    }
    EXPECT_EQ(folder_.names(), before);
    if (seen) break;
    EXPECT_EQ(cli::readPicture(folder_ / "out.exr").width(), 400) << "neither the old file nor the new one";
    folder_.write("out.exr", "precious");
  }
  EXPECT_TRUE(seen) << "no signal ever met the program while it wrote";
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptTest, testing::Values(SIGINT, SIGTERM, SIGHUP));
