// The host as a program: what it tells and draws, what it says to wrong words and files; and a frame of the real
// module, which every build has to draw with the same bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/program/HostProgram.h"
#include "host/program/RawFrame.h"
#include "tests/support/ReadFile.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using standin::Depth;
using standin::Image;

const std::string invert = std::string(MODULES_FOLDER) + "/invert" + MODULES_SUFFIX;
const std::string shift = std::string(MODULES_FOLDER) + "/arbitrary_shift" + MODULES_SUFFIX;

struct Ran {
  int code;
  std::string out;
  std::string err;
};

Ran run(const std::vector<std::string>& words) {
  std::ostringstream out;
  std::ostringstream err;
  const int code = standin::runHostProgram(words, out, err);
  return {code, out.str(), err.str()};
}

class HostProgram : public testing::Test {
 protected:
  std::string file(const std::string& name) const { return folder.path(name); }
  vindrel::test::TemporaryFolder folder;
};

// A ramp in every channel, with some transparency.
Image ramp(int32_t width, int32_t height) {
  Image image(Depth::k8, width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      image.at<PF_Pixel>(x, y) = {static_cast<A_u_char>(x < 4 ? 64 * x : 255), static_cast<A_u_char>(7 * x),
                                  static_cast<A_u_char>(13 * y), static_cast<A_u_char>(x + y)};
    }
  }
  return image;
}

TEST_F(HostProgram, aRawFrameIsALineAndItsPixelsAtEveryDepth) {
  Image small(Depth::k8, 2, 1);
  small.at<PF_Pixel>(0, 0) = {1, 2, 3, 4};
  small.at<PF_Pixel>(1, 0) = {5, 6, 7, 8};
  standin::writeRawFrame(file("small"), small);
  EXPECT_EQ(folder.read("small"), "VINDREL-RAW 1 2 1 8\n\1\2\3\4\5\6\7\10");
  Image deep(Depth::k16, 1, 1, 6);
  deep.at<PF_Pixel16>(0, 0) = {0x102, 0x304, 0x506, 0x708};
  standin::writeRawFrame(file("deep"), deep);
  EXPECT_EQ(folder.read("deep"), "VINDREL-RAW 1 1 1 16\n\2\1\4\3\6\5\10\7");
  for (const Depth depth : standin::kAllDepths) {
    const Image image = ramp(5, 3).converted(depth);
    standin::writeRawFrame(file("any"), image);
    EXPECT_TRUE(standin::samePixels(standin::readRawFrame(file("any")), image));
  }
}

TEST_F(HostProgram, wrongFramesAreToldInOneLine) {
  const auto written = [&](const std::string& bytes) {
    folder.write("bad", bytes);
    return run({"render", invert, file("bad"), file("out")});
  };
  for (const char* bytes :
       {"", "P6 1 1 255\nabc", "VINDREL-RAW 1 1 1 8\nabc", "VINDREL-RAW 1 1 1 8\nabcde", "VINDREL-RAW 1 1 1 9\nabcd",
        "VINDREL-RAW 2 1 1 8\nabcd", "VINDREL-RAW 1 -1 1 8\nabcd", "VINDREL-RAW 1 30000 30000 32\nabcd"}) {
    const Ran ran = written(bytes);
    EXPECT_EQ(ran.code, 1) << bytes;
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    EXPECT_FALSE(folder.has("out"));
  }
  EXPECT_EQ(run({"render", invert, file("none"), file("out")}).code, 1);
  standin::writeRawFrame(file("in"), ramp(2, 2));
  EXPECT_EQ(run({"render", invert, file("in"), file("no folder/out")}).code, 1);
}

TEST_F(HostProgram, wrongWordsAreToldInOneLine) {
  standin::writeRawFrame(file("in"), ramp(2, 2));
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"dance"},
                                             {"load"},
                                             {"render", invert, file("in")},
                                             {"render", invert, file("in"), file("out"), "--road"},
                                             {"render", invert, file("in"), file("out"), "--road", "scenic"},
                                             {"render", invert, file("in"), file("out"), "--time", "noon"},
                                             {"render", invert, file("in"), file("out"), "--set", "Size"},
                                             {"render", invert, file("in"), file("out"), "--set", "Size=1"},
                                             {"render", shift, file("in"), file("out"), "--set", "Shift=none"},
                                             {"render", shift, file("in"), file("out"), "--road", "smart"}}) {
    const Ran ran = run(words);
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
  }
  EXPECT_FALSE(folder.has("out"));
  EXPECT_EQ(run({"load", file("no module")}).code, 1);
  EXPECT_EQ(run({}).code, 0);
}

TEST_F(HostProgram, aModuleIsLoadedListedAndDrawnWithItsValues) {
  EXPECT_NE(run({"load", invert}).out.find("roads: classic, smart\n"), std::string::npos);
  EXPECT_EQ(run({"list", shift}).out, "1\tarbitrary data\tShift\n");
  standin::writeRawFrame(file("in"), ramp(2, 1));
  for (const char* road : {"classic", "smart"}) {
    const Ran ran = run({"render", invert, file("in"), file("out"), "--road", road});
    EXPECT_EQ(ran.code, 0) << ran.err;
    const Image drawn = standin::readRawFrame(file("out"));
    EXPECT_EQ(int{drawn.at<PF_Pixel>(1, 0).red}, 255 - 7);
    EXPECT_EQ(int{drawn.at<PF_Pixel>(1, 0).alpha}, 64);
  }
  EXPECT_EQ(run({"render", shift, file("in"), file("out"), "--set", "Shift=5 0 0"}).code, 0);
  EXPECT_EQ(int{standin::readRawFrame(file("out")).at<PF_Pixel>(1, 0).red}, 12);
}

// The picture beside this test is what the native build drew when it was accepted: orange circles of size 6, else as
// the module comes. Circles are made of sums and products alone, so that they don't depend on a C library's last bits.
TEST_F(HostProgram, theRealModuleDrawsTheSameBytesInEveryBuild) {
  standin::writeRawFrame(file("in"), ramp(48, 27));
  for (const char* road : {"classic", "smart"}) {
    const Ran ran = run({"render", VINDREL_MODULE_FILE, file("in"), file("out"), "--road", road, "--set", "Dot Size=6",
                         "--set", "Dot Color=#ff7d14"});
    ASSERT_EQ(ran.code, 0) << ran.err;
    EXPECT_TRUE(folder.read("out") ==
                vindrel::test::readFile(std::string(HOST_PROGRAM_PICTURES) + "/vindrel-48x27.raw"))
        << road;
  }
}

}  // namespace
