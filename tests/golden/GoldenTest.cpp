// Every scene, at every depth, by both roads, against the pictures that were accepted by eye.
#include <gtest/gtest.h>
#include <stb_image_write.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <set>

#include "tests/golden/GoldenPicture.h"
#include "tests/golden/Scene.h"
#include "tests/golden/SceneRunner.h"

namespace {

using golden::Scene;
using standin::Depth;
using standin::Image;

const std::filesystem::path scenesFolder = VINDREL_GOLDEN_DIR "/scenes";
const std::filesystem::path inputsFolder = VINDREL_GOLDEN_DIR "/inputs";

/// Adds up over the whole run and is printed once, at its end.
class PixelCount : public testing::Environment {
 public:
  void TearDown() override {
    std::cout << "golden pixels: " VINDREL_BUILD_NAME " module: " << differing << " of " << all
              << " differ from the accepted pictures" << std::endl;
  }
  static inline int64_t all = 0;
  static inline int64_t differing = 0;
};

const testing::Environment* const pixelCount = testing::AddGlobalTestEnvironment(new PixelCount);

/// As 8 bits, for the eye: files have red first.
void writeForTheEye(const Image& image, const std::filesystem::path& file) {
  const Image small = image.converted(Depth::k8);
  std::vector<unsigned char> bytes;
  for (int32_t y = 0; y < small.height(); ++y) {
    for (int32_t x = 0; x < small.width(); ++x) {
      const PF_Pixel& pixel = small.at<PF_Pixel>(x, y);
      bytes.insert(bytes.end(), {pixel.red, pixel.green, pixel.blue, pixel.alpha});
    }
  }
  stbi_write_png(file.string().c_str(), small.width(), small.height(), 4, bytes.data(), small.width() * 4);
}

/// White where the pictures differ.
Image differencePicture(const Image& expected, const Image& actual) {
  const Image a = expected.converted(Depth::k16);
  const Image b = actual.converted(Depth::k16);
  Image result(Depth::k8, actual.width(), actual.height());
  for (int32_t y = 0; y < actual.height(); ++y) {
    for (int32_t x = 0; x < actual.width(); ++x) {
      const bool inside = x < a.width() && y < a.height();
      const PF_Pixel16 none{};
      const PF_Pixel16& p = inside ? a.at<PF_Pixel16>(x, y) : none;
      const PF_Pixel16& q = b.at<PF_Pixel16>(x, y);
      const bool same = inside && p.alpha == q.alpha && p.red == q.red && p.green == q.green && p.blue == q.blue;
      const A_u_char level = same ? 0 : 255;
      result.at<PF_Pixel>(x, y) = PF_Pixel{255, level, level, level};
    }
  }
  return result;
}

std::string leaveBehind(const Scene& scene, Depth depth, const Image& expected, const Image& actual) {
  const std::filesystem::path folder = VINDREL_GOLDEN_OUT;
  std::filesystem::create_directories(folder);
  const std::string stem = scene.name + "-" + std::to_string(static_cast<int>(depth));
  writeForTheEye(actual, folder / (stem + "-actual.png"));
  writeForTheEye(differencePicture(expected, actual), folder / (stem + "-difference.png"));
  return "the result and where it differs lie in " + folder.string() + " as " + stem + "-*.png";
}

struct Case {
  Scene scene;
  Depth depth;
};

void PrintTo(const Case& item, std::ostream* out) {
  *out << item.scene.name << " at " << static_cast<int>(item.depth) << " bits";
}

std::vector<Case> allCases() {
  std::vector<Case> cases;
  for (const Scene& scene : golden::readScenes(scenesFolder)) {
    for (const Depth depth : standin::kAllDepths) {
      cases.push_back({scene, depth});
    }
  }
  return cases;
}

class Golden : public testing::TestWithParam<Case> {
 protected:
  static const golden::SceneRunner& runner() {
    static const golden::SceneRunner instance(VINDREL_MODULE_PATH, inputsFolder);
    return instance;
  }
};

TEST_P(Golden, looksAsAccepted) {
  const auto& [scene, depth] = GetParam();
  const Image expected = golden::readGolden(scenesFolder / scene.name / golden::fileName(depth), depth);
  const Image actual = runner().render(scene, depth, golden::Road::classic);
  const golden::Difference difference = golden::compare(expected, actual, scene.floatTolerance);
  PixelCount::all += int64_t{actual.width()} * actual.height();
  PixelCount::differing += difference.pixels;
  EXPECT_EQ(difference.pixels, 0) << golden::panelAt(scene, actual, difference.firstX, difference.firstY) << ": "
                                  << difference.text << "\n"
                                  << leaveBehind(scene, depth, expected, actual);
}

TEST_P(Golden, looksTheSameByTheSmartRoad) {
  const auto& [scene, depth] = GetParam();
  const Image classic = runner().render(scene, depth, golden::Road::classic);
  const Image smart = runner().render(scene, depth, golden::Road::smart);
  const golden::Difference difference = golden::compare(classic, smart, 0.0);
  EXPECT_EQ(difference.pixels, 0) << golden::panelAt(scene, smart, difference.firstX, difference.firstY) << ": "
                                  << difference.text;
}

std::string caseName(const testing::TestParamInfo<Case>& item) {
  std::string name = item.param.scene.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name + "_at_" + std::to_string(static_cast<int>(item.param.depth)) + "_bits";
}

INSTANTIATE_TEST_SUITE_P(Scenes, Golden, testing::ValuesIn(allCases()), caseName);

TEST(GoldenPictures, compareFindsEveryDifference) {
  Image a(Depth::k16, 3, 2);
  Image b(Depth::k16, 3, 2);
  EXPECT_EQ(golden::compare(a, b, 0.0).pixels, 0);
  b.at<PF_Pixel16>(2, 1).blue = 1;
  b.at<PF_Pixel16>(0, 1).alpha = 7;
  const golden::Difference difference = golden::compare(a, b, 0.0);
  EXPECT_EQ(difference.pixels, 2);
  EXPECT_EQ(difference.firstX, 0);
  EXPECT_EQ(difference.firstY, 1);
  EXPECT_EQ(difference.largest, 7.0);
  EXPECT_GT(golden::compare(a, Image(Depth::k16, 2, 2), 0.0).pixels, 0);
}

TEST(GoldenPictures, aPixelBelongsToThePanelThatItLiesIn) {
  // Five panels of 20 x 10, two in a row: the sixth place is empty.
  Scene scene;
  scene.columns = 2;
  for (const char* const text : {"a = 1", "b = 2", "c = 3", "d = 4", "e = 5"}) {
    golden::Panel panel;
    panel.text = text;
    scene.panels.push_back(panel);
  }
  const Image sheet(Depth::k8, 40, 30);
  EXPECT_EQ(golden::panelAt(scene, sheet, 0, 0), "panel 1 (a = 1)");
  EXPECT_EQ(golden::panelAt(scene, sheet, 19, 9), "panel 1 (a = 1)");
  EXPECT_EQ(golden::panelAt(scene, sheet, 20, 9), "panel 2 (b = 2)");
  EXPECT_EQ(golden::panelAt(scene, sheet, 19, 10), "panel 3 (c = 3)");
  EXPECT_EQ(golden::panelAt(scene, sheet, 39, 19), "panel 4 (d = 4)");
  EXPECT_EQ(golden::panelAt(scene, sheet, 0, 29), "panel 5 (e = 5)");
  EXPECT_EQ(golden::panelAt(scene, sheet, 20, 20), "no panel");
  EXPECT_EQ(golden::panelAt(scene, sheet, -1, -1), "no panel");
}

TEST(GoldenPictures, notANumberIsADifference) {
  Image a(Depth::k32, 1, 1);
  Image b(Depth::k32, 1, 1);
  b.at<PF_PixelFloat>(0, 0).red = std::nanf("");
  EXPECT_EQ(golden::compare(a, b, 1.0).pixels, 1);
}

TEST(GoldenPictures, everyChannelOf16BitsSurvivesTheFile) {
  for (uint32_t channel = 0; channel <= 32768; ++channel) {
    ASSERT_EQ(golden::gather16(golden::spread16(static_cast<uint16_t>(channel))), channel);
  }
}

TEST(GoldenPictures, aMissingPictureIsAnErrorAndIsNotMade) {
  const auto file = scenesFolder / "shape-circle" / "no-such-picture.png";
  EXPECT_THROW(golden::readGolden(file, Depth::k8), std::runtime_error);
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(GoldenPictures, noTwoScenesShareAPicture) {
  // A scene that looks like another shows nothing of its own; a control that is not heeded would come to light here.
  std::set<std::vector<uint8_t>> seen;
  for (const Scene& scene : golden::readScenes(scenesFolder)) {
    const Image image = golden::readGolden(scenesFolder / scene.name / "8.png", Depth::k8);
    std::vector<uint8_t> bytes;
    for (int32_t y = 0; y < image.height(); ++y) {
      bytes.insert(bytes.end(), image.rowStart(y), image.rowStart(y) + image.width() * 4);
    }
    EXPECT_TRUE(seen.insert(bytes).second) << scene.name;
  }
}

}  // namespace
