// The host as a program: what it tells and draws, what it says to wrong words and files; and a frame of the real
// module, which every build has to draw with the same bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "host/program/HostProgram.h"
#include "host/program/RawFrame.h"
#include "tests/support/ReadFile.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using standin::Depth;
using standin::Image;

const std::string invert = std::string(MODULES_FOLDER) + "/invert" + MODULES_SUFFIX;
const std::string every = std::string(MODULES_FOLDER) + "/every_control" + MODULES_SUFFIX;
const std::string older = std::string(MODULES_FOLDER) + "/older_registration" + MODULES_SUFFIX;
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
        "VINDREL-RAW 2 1 1 8\nabcd", "VINDREL-RAW 1 -1 1 8\nabcd", "VINDREL-RAW 1 30000 30000 32\nabcd",
        "VINDREL-RAW 1 30001 1 8\nabcd", "VINDREL-RAW 1 1 30001 8\nabcd", "VINDREL-RAW 1 0 1 8\n",
        "VINDREL-RAW 2 1 1 8\nabcd", "VINDREL-RAW 1 1 1\nabcd",
        // Without the line's end, and as long as the pixels alone but for the end.
        "VINDREL-RAW 1 5 1 8", "VINDREL-RAW 1 1 1                                                   8\nabcd"}) {
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
                                             {"list"},
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
  EXPECT_NE(run({"load", every}).out.find("roads: classic\n"), std::string::npos);
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

class ValuesInWords : public HostProgram {
 protected:
  ValuesInWords() { standin::writeRawFrame(file("in"), ramp(9, 1)); }

  Ran rendered(const std::vector<std::string>& settings) {
    std::vector<std::string> words = {"render", every, file("in"), file("out")};
    for (const std::string& setting : settings) words.insert(words.end(), {"--set", setting});
    return run(words);
  }

  // The bytes of one pixel as a number, alpha the highest.
  uint32_t valueAt(int32_t x) {
    const PF_Pixel pixel = standin::readRawFrame(file("out")).at<PF_Pixel>(x, 0);
    return uint32_t{pixel.alpha} << 24 | uint32_t{pixel.red} << 16 | uint32_t{pixel.green} << 8 | pixel.blue;
  }
};

TEST_F(ValuesInWords, reachTheModuleForEveryKindOfControl) {
  const Ran ran = rendered(
      {"Whole=-2", "Fixed=1.5", "Float=2.25", "Angle=-90.5", "Check=1", "Color=#0aB0fF", "Point=3.5,-1", "Outcome=1"});
  EXPECT_EQ(ran.code, 0) << ran.err;
  EXPECT_EQ(valueAt(0), 0xFFFFFFFEU);
  EXPECT_EQ(valueAt(1), 0x00018000U);
  EXPECT_EQ(valueAt(2), 0x00024000U);
  EXPECT_EQ(valueAt(3), 0xFFA58000U);  // -91 * 65536 + 32768
  EXPECT_EQ(valueAt(4), 1U);
  EXPECT_EQ(valueAt(5), 0xFF0AB0FFU);
  EXPECT_EQ(valueAt(6), 0x00038000U);
  EXPECT_EQ(valueAt(7), 0xFFFF0000U);
  EXPECT_EQ(valueAt(8), 1U);
}

TEST_F(ValuesInWords, mayNameAControlByItsIndex) {
  EXPECT_EQ(rendered({"#1=7", "#5=0"}).code, 0);
  EXPECT_EQ(valueAt(0), 7U);
  EXPECT_EQ(valueAt(4), 0U);
}

TEST_F(ValuesInWords, thatAreNoneForTheirControlAreToldInOneLine) {
  const std::pair<const char*, const char*> wrong[] = {
      {"Whole=1.5", "\"1.5\" is no whole number"},
      {"Whole=2147483648", "\"2147483648\" is no whole number"},
      {"Whole=", "\"\" is no number"},
      {"Fixed=2x", "\"2x\" is no number"},
      {"Float=one", "\"one\" is no number"},
      {"Angle=nan", "\"nan\" is no number"},
      {"Check=on", "\"on\" is no number"},
      {"Color=#12345", "\"#12345\" is no colour of the form #rrggbb"},
      {"Color=#12345g", "\"#12345g\" is no colour of the form #rrggbb"},
      {"Color=1234567", "\"1234567\" is no colour of the form #rrggbb"},
      {"Point=5", "\"5\" is no place X,Y"},
      {"Point=5,", "\"\" is no number"},
      {"Layer=1", "the control \"Layer\" is of the kind layer, which takes no value here"},
      {"Button=1", "the control \"Button\" is of the kind button, which takes no value here"},
      {"#10=1", "the control index 10 is of the kind group start, which takes no value here"},
      {"Group=1", "the module has no control \"Group\""},
      {"#13=1", "the module has no control index 13"},
      {"#x=1", "\"x\" is no number"}};
  for (const auto& [setting, told] : wrong) {
    const Ran ran = rendered({setting});
    EXPECT_EQ(ran.code, 2) << setting;
    EXPECT_EQ(ran.err, std::string("vindrel-host: ") + told + '\n');
    EXPECT_FALSE(folder.has("out")) << setting;
  }
}

TEST_F(ValuesInWords, thatMakeTheModuleFailLeaveNoFrame) {
  const std::pair<const char*, const char*> failures[] = {{"Outcome=2", "the frame ended with 512"},
                                                          {"Outcome=3", "the module drew nothing"},
                                                          {"Outcome=4", "the set-down ended with 4"}};
  for (const auto& [setting, told] : failures) {
    const Ran ran = rendered({setting});
    EXPECT_EQ(ran.code, 1) << setting;
    EXPECT_EQ(ran.err, std::string("vindrel-host: ") + told + '\n');
    EXPECT_FALSE(folder.has("out")) << setting;
  }
}

TEST_F(HostProgram, aListTellsKindsNamesAndItems) {
  EXPECT_EQ(run({"list", every}).out,
            "1\tslider\tWhole\n2\tfixed slider\tFixed\n3\tfloat slider\tFloat\n4\tangle\tAngle\n"
            "5\tcheckbox\tCheck\n6\tcolor\tColor\n7\tpoint\tPoint\n"
            "8\tpopup\tOutcome\tDraws|Fails|Draws nothing|Can't be ended\n9\tlayer\tLayer\n"
            "10\tgroup start\tGroup\n11\tbutton\tButton\n12\tgroup end\t\n");
}

TEST_F(HostProgram, theHelpIsTheSameHoweverItIsAskedFor) {
  const std::string help = run({"help"}).out;
  EXPECT_EQ(help.substr(0, 24), "vindrel-host load MODULE");
  EXPECT_EQ(run({"--help"}).out, help);
  EXPECT_EQ(run({}).out, help);
}

TEST_F(HostProgram, aModuleThatCantBeSetUpIsToldInOneLine) {
  standin::writeRawFrame(file("in"), ramp(1, 1));
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"load", older}, {"list", older}, {"render", older, file("in"), file("out")}}) {
    const Ran ran = run(words);
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "vindrel-host: the set-up ended with 4\n");
  }
}

TEST_F(HostProgram, theFramesTimeIsAWholeNumber) {
  standin::writeRawFrame(file("in"), ramp(2, 1));
  EXPECT_EQ(run({"render", invert, file("in"), file("out"), "--time", "-3"}).code, 0);
  EXPECT_TRUE(folder.has("out"));
  EXPECT_EQ(run({"render", invert, file("in"), file("out"), "--time", "0.5"}).err,
            "vindrel-host: \"0.5\" is no whole number\n");
}

TEST_F(HostProgram, aFrameIsNeverWrittenOverAFolder) {
  standin::writeRawFrame(file("in"), ramp(2, 1));
  std::filesystem::create_directories(folder / "taken" / "inside");
  const Ran ran = run({"render", invert, file("in"), file("taken")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.err, "vindrel-host: the frame " + file("taken") + " can't be written\n");
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"in", "taken"}));
}

TEST_F(HostProgram, theCheckListsItsPromisesAndRefusesWhatItDoesNotKnow) {
  const Ran listed = run({"check", "--list"});
  EXPECT_EQ(listed.code, 0) << listed.err;
  EXPECT_GT(std::count(listed.out.begin(), listed.out.end(), '\n'), 10);
  const Ran wrong = run({"check", "--nonsense"});
  EXPECT_EQ(wrong.code, 2);
  EXPECT_EQ(wrong.err, "vindrel-host: check does not know '--nonsense'\n");
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
