// The settings file where the module writes it itself: whole or not at all, however many write and whatever lies there.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/ProfileFile.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* section = "Version=1.5";

class SettingsOnDisk : public testing::Test {
 protected:
  bool write(const std::string& key, const char* value) const {
    return platform::WritePrivateProfileStringA(section, key.c_str(), value, path_.c_str());
  }
  int32_t number(const std::string& key) const {
    return static_cast<int32_t>(platform::GetPrivateProfileIntA(section, key.c_str(), -77, path_.c_str()));
  }
  /// Everything in the folder.
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& entry : fs::directory_iterator(fs::path(path_).parent_path())) {
      all.push_back(entry.path().filename().string());
    }
    return all;
  }

  vindrel::test::TemporaryFolder folder_;
  std::string path_ = folder_.path("settings.ini");
};

TEST_F(SettingsOnDisk, eightWritersAtOnceLoseNoKey) {
  constexpr int32_t writers = 8;
  constexpr int32_t keys = 40;
  std::vector<pid_t> processes;
  for (int32_t writer = 0; writer < writers; ++writer) {
    const pid_t process = fork();
    if (process == 0) {
      bool written = true;
      for (int32_t key = 0; key < keys; ++key) {
        written = write(std::to_string(writer) + "." + std::to_string(key), std::to_string(key).c_str()) && written;
      }
      _exit(written ? 0 : 1);
    }
    processes.push_back(process);
  }
  for (const pid_t process : processes) {
    int status = -1;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0) << "a writer could not write";
  }
  for (int32_t writer = 0; writer < writers; ++writer) {
    for (int32_t key = 0; key < keys; ++key) {
      EXPECT_EQ(number(std::to_string(writer) + "." + std::to_string(key)), key);
    }
  }
  EXPECT_EQ(names(), std::vector<std::string>{"settings.ini"});
}

TEST_F(SettingsOnDisk, aReaderBesideAWriterReadsAWholeFile) {
  ASSERT_TRUE(write("A", "5"));
  // Behind the key that is read comes so much that a file under the pen would be seen cut before it.
  for (int32_t key = 0; key < 200; ++key) ASSERT_TRUE(write("filler" + std::to_string(key), "a rather long value"));
  const pid_t process = fork();
  if (process == 0) {
    for (int32_t round = 0; round < 300; ++round) write("Z", std::to_string(round).c_str());
    _exit(0);
  }
  int status = -1;
  int32_t reads = 0;
  while (waitpid(process, &status, WNOHANG) == 0) {
    ASSERT_EQ(number("A"), 5) << "after " << reads << " reads";
    ++reads;
  }
  EXPECT_EQ(status, 0);
  EXPECT_GT(reads, 0);
  EXPECT_EQ(number("Z"), 299);
}

TEST_F(SettingsOnDisk, aFileThatMayNotGrowIsToldAndTheOldOneStays) {
  ASSERT_TRUE(write("A", "1"));
  const std::string before = folder_.read("settings.ini");
  const pid_t process = fork();
  if (process == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{5, 5};
    setrlimit(RLIMIT_FSIZE, &limit);
    _exit(write("B", "2") ? 1 : 0);
  }
  int status = -1;
  waitpid(process, &status, 0);
  EXPECT_EQ(status, 0) << "it said that it was written";
  EXPECT_EQ(folder_.read("settings.ini"), before);
  EXPECT_EQ(names(), std::vector<std::string>{"settings.ini"});
}

TEST_F(SettingsOnDisk, aLinkStaysAndLeadsToTheNewFile) {
  fs::create_directory(folder_.path("elsewhere"));
  folder_.write("elsewhere/real.ini", "[Version=1.5]\r\nA=1\r\n");
  fs::create_symlink("elsewhere/real.ini", path_);
  EXPECT_TRUE(write("A", "2"));
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(folder_.read("elsewhere/real.ini"), "[Version=1.5]\r\nA=2\r\n");
}

TEST_F(SettingsOnDisk, aLinkToNothingIsNotFollowed) {
  fs::create_symlink("nowhere.ini", path_);
  EXPECT_FALSE(write("A", "2"));
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(names(), std::vector<std::string>{"settings.ini"});
}

TEST_F(SettingsOnDisk, theModeOfTheFileIsKept) {
  ASSERT_TRUE(write("A", "1"));
  ASSERT_EQ(chmod(path_.c_str(), 0640), 0);
  ASSERT_TRUE(write("A", "2"));
  struct stat facts {};
  ASSERT_EQ(stat(path_.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0640U);
}

TEST_F(SettingsOnDisk, aNameInTheMakingThatIsTakenIsLeftAlone) {
  const std::string taken = "settings.ini." + std::to_string(getpid()) + "-0.part";
  folder_.write("precious", "precious");
  fs::create_symlink("precious", folder_.path(taken));
  EXPECT_TRUE(write("A", "1"));
  EXPECT_EQ(number("A"), 1);
  EXPECT_EQ(folder_.read("precious"), "precious");
  EXPECT_TRUE(fs::is_symlink(folder_.path(taken)));
}

TEST_F(SettingsOnDisk, aPipeIsNoSettingsFileAndHoldsNothingUp) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(number("A"), -77);
  EXPECT_FALSE(write("A", "1"));
  EXPECT_TRUE(fs::is_fifo(path_));
}

TEST_F(SettingsOnDisk, aFileOfMoreThanAMegabyteIsNoSettingsFile) {
  const std::string head = "[Version=1.5]\r\nA=1\r\n;";
  folder_.write("settings.ini", head + std::string(1'000'000 - head.size(), 'x'));
  EXPECT_EQ(number("A"), 1);
  folder_.write("settings.ini", head + std::string(1'000'001 - head.size(), 'x'));
  EXPECT_EQ(number("A"), -77);
  EXPECT_FALSE(write("A", "2"));
  EXPECT_EQ(fs::file_size(path_), 1'000'001U);
}

}  // namespace
