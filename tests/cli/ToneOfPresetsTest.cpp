// Dots cover what the tone asks for, measured in whole pictures.

#include <cmath>
#include <nlohmann/json.hpp>
#include <numbers>

#include "cli/Preset.h"
#include "tests/cli/LooksTest.h"

namespace {

using standin::Depth;
using standin::Image;

constexpr int32_t steps = 17;
constexpr int32_t stepWidth = 170;  // pixels
constexpr int32_t wedgeHeight = 170;

/// Grey steps from black to white, 16 levels apart.
Image wedge() {
  Image image(Depth::k8, steps * stepWidth, wedgeHeight);
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) {
      const auto grey = static_cast<A_u_char>(std::min(255, x / stepWidth * 16));
      image.at<PF_Pixel>(x, y) = {255, grey, grey, grey};
    }
  }
  return image;
}

double greyOf(int32_t step) {
  return std::min(255, step * 16) / 255.0;
}

/// The covered share of a step, by a window that fades to its rim and keeps clear of the neighbours' means.
double coveredShare(const Image& drawn, int32_t step) {
  constexpr int32_t margin = 16;
  const auto window = [](int32_t place, int32_t from, int32_t count) {
    return 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * (place - from + 0.5) / count);
  };
  double covered = 0.0;
  double whole = 0.0;
  const int32_t left = step * stepWidth + margin;
  for (int32_t y = 0; y < wedgeHeight; ++y) {
    for (int32_t x = left; x < left + stepWidth - 2 * margin; ++x) {
      const double weight = window(x, left, stepWidth - 2 * margin) * window(y, 0, wedgeHeight);
      covered += weight * drawn.at<PF_Pixel>(x, y).alpha / 255.0;
      whole += weight;
    }
  }
  return covered / whole;
}

class ToneOfPresetsTest : public LooksTest {
 protected:
  void SetUp() override { cli::writePicture(folder_ / "in.png", wedge()); }

  void expectTones(const std::vector<std::string>& words, bool dark, const std::string& name) {
    const Image drawn = rendered(words);
    for (int32_t step = 0; step < steps; ++step) {
      const double wanted = dark ? 1.0 - greyOf(step) : greyOf(step);
      EXPECT_NEAR(coveredShare(drawn, step), wanted, 0.02) << name << ", step " << step;
    }
  }
};

std::vector<std::string> sets(const std::vector<std::string>& values) {
  std::vector<std::string> words;
  for (const std::string& value : values) words.insert(words.end(), {"--set", value});
  return words;
}

/// Dots on a turned lattice that a map of the picture sizes between two sizes.
std::vector<std::string> screen(const std::string& shape, const std::string& inDark, const std::string& inLight) {
  std::vector<std::string> words = sets(
      {"Dot Shape=" + shape, "Distance Between=Centers", "Dot Distance X=9", "Dot Distance Y=9", "Global Rotation=30",
       "Clear Background=on", "Dot Size=" + inDark, "Enable Effector 1=on", "Effect Map 1=Use Custom Map",
       "Fit to Layer 1=on", "Tiling 1=Extend Edge", "Absolute 1=on", "ABS Size 1=" + inLight});
  words.insert(words.end(), {"--layer", "Custom Map Layer 1=source:blur=pitch,tone=area"});
  return words;
}

}  // namespace

TEST_F(ToneOfPresetsTest, everyShapeCoversWhatTheToneAsksFor) {
  // Sizes at which each shape surely closes, at a pitch of 9.
  expectTones(screen("Circle", "13", "0"), true, "dark circles");
  expectTones(screen("Circle", "0", "13"), false, "light circles");
  expectTones(screen("Square", "0", "9.2"), false, "squares");
  expectTones(screen("Round Square", "11", "0"), true, "round squares");
  expectTones(screen("Diamond", "19", "0"), true, "diamonds");
  expectTones(screen("Cross", "26", "0"), true, "crosses");
  expectTones(screen("Star", "48", "0"), true, "stars");
}

TEST_F(ToneOfPresetsTest, linesAndGapsBetweenDotsCountToo) {
  std::vector<std::string> lines = screen("Square", "10", "0");
  for (const char* set : {"Dot Distance X=2", "Dot Distance Y=10", "Global Rotation=70"}) {
    lines.insert(lines.end(), {"--set", set});
  }
  expectTones(lines, true, "lines");
}

TEST_F(ToneOfPresetsTest, opacityMakesToneAsSizeDoes) {
  std::vector<std::string> words =
      sets({"Dot Shape=Square", "Distance Between=Centers", "Dot Distance X=8", "Dot Distance Y=8", "Dot Size=8",
            "Clear Background=on", "Enable Effector 1=on", "Effect Map 1=Use Custom Map", "Fit to Layer 1=on",
            "Tiling 1=Extend Edge", "Ratio Opacity 1=0"});
  words.insert(words.end(), {"--layer", "Custom Map Layer 1=source:tone=area"});
  expectTones(words, true, "opacity");
}

TEST_F(ToneOfPresetsTest, shippedScreensKeepTheTone) {
  // At the height for which they were made, and a bit over twice as large.
  for (const char* scale : {"1", "2.2"}) {
    for (const char* name : {"newsprint", "comic-dots"}) {
      expectTones({"--preset", name, "--scale", scale}, true, std::string(name) + " at " + scale);
    }
  }
}

TEST_F(ToneOfPresetsTest, lightIsKeptByToneLight) {
  std::vector<std::string> words = screen("Circle", "0", "13");
  words.back() = "Custom Map Layer 1=source:blur=pitch,tone=light";
  const Image drawn = rendered(words);
  for (int32_t step = 0; step < steps; ++step) {
    const double coded = greyOf(step);
    const double light = coded <= 0.04045 ? coded / 12.92 : std::pow((coded + 0.055) / 1.055, 2.4);
    EXPECT_NEAR(coveredShare(drawn, step), light, 0.02) << step;
  }
}

TEST_F(ToneOfPresetsTest, clearPartsGetNoDots) {
  Image half = wedge();
  for (int32_t y = 0; y < half.height(); ++y) {
    for (int32_t x = 0; x < 4 * stepWidth; ++x) half.at<PF_Pixel>(x, y).alpha = 0;
  }
  cli::writePicture(folder_ / "half.png", half);
  std::vector<std::string> words = screen("Circle", "13", "0");
  words.insert(words.end(), {"--set", "Mask=None"});
  const Image drawn = rendered(words, "half.png");
  EXPECT_EQ(coveredShare(drawn, 1), 0.0);
  EXPECT_NEAR(coveredShare(drawn, 5), 1.0 - greyOf(5), 0.02);
}

TEST_F(ToneOfPresetsTest, aSmallerPreviewHasTheToneToo) {
  std::vector<std::string> words = screen("Circle", "26", "0");
  for (const char* set : {"Dot Distance X=18", "Dot Distance Y=18"}) words.insert(words.end(), {"--set", set});
  words.insert(words.end(), {"--downsample", "2"});
  const Image half = rendered(words);
  double covered = 0.0;
  // The middle of step 8, which is half as wide here.
  for (int32_t y = 6; y < 78; ++y) {
    for (int32_t x = 8 * 85 + 6; x < 8 * 85 + 78; ++x) covered += half.at<PF_Pixel>(x, y).alpha / 255.0;
  }
  EXPECT_NEAR(covered / (72 * 72), 1.0 - greyOf(8), 0.03);
}

TEST_F(ToneOfPresetsTest, fineTextureLosesItsMoire) {
  // Stripes of one dot's pitch, turned a little: read pixel by pixel they beat against the lattice in broad bands.
  Image stripes(Depth::k8, 360, 360);
  for (int32_t y = 0; y < 360; ++y) {
    for (int32_t x = 0; x < 360; ++x) {
      const double wave = std::cos(2.0 * std::numbers::pi * (x * std::cos(0.6) + y * std::sin(0.6)) / 9.2);
      const auto grey = static_cast<A_u_char>(std::lround(127.5 + 120.0 * wave));
      stripes.at<PF_Pixel>(x, y) = {255, grey, grey, grey};
    }
  }
  cli::writePicture(folder_ / "stripes.png", stripes);
  // The spread of means over patches of four by four dots.
  const auto spread = [&](const std::string& layer) {
    std::vector<std::string> words = screen("Circle", "13", "0");
    words.back() = "Custom Map Layer 1=" + layer;
    const Image drawn = rendered(words, "stripes.png");
    double least = 1.0;
    double most = 0.0;
    for (int32_t top = 36; top + 36 <= 324; top += 18) {
      for (int32_t left = 36; left + 36 <= 324; left += 18) {
        double sum = 0.0;
        for (int32_t y = top; y < top + 36; ++y) {
          for (int32_t x = left; x < left + 36; ++x) sum += drawn.at<PF_Pixel>(x, y).alpha / 255.0;
        }
        least = std::min(least, sum / (36 * 36));
        most = std::max(most, sum / (36 * 36));
      }
    }
    return most - least;
  };
  EXPECT_GT(spread("source:tone=area"), 0.3) << "the stripes no longer show what goes wrong";
  EXPECT_LT(spread("source:blur=pitch,tone=area"), 0.1);
}

TEST_F(ToneOfPresetsTest, onAMapThatIsNotFittedThePatchTurnsWithTheLatticeAndAgainstTheMap) {
  // Map and lattice are turned alike, so that the patch lies straight on the map: 10 pixels hold one stripe of each
  // kind.
  const auto map = [](const std::string& layer) {
    std::vector<std::string> words =
        sets({"Distance Between=Centers", "Dot Distance X=10", "Dot Distance Y=10", "Global Rotation=30", "Dot Size=2",
              "Clear Background=on", "Enable Effector 1=on", "Effect Map 1=Use Custom Map", "Fit to Layer 1=off",
              "Tiling 1=Extend Edge", "Absolute 1=on", "ABS Size 1=9", "Angle 1=30"});
    words.insert(words.end(), {"--layer", "Custom Map Layer 1=" + layer});
    return words;
  };
  Image stripes(Depth::k32, 200, 200);
  Image even(Depth::k32, 200, 200);
  for (int32_t y = 0; y < 200; ++y) {
    for (int32_t x = 0; x < 200; ++x) {
      const float grey = x / 5 % 2 == 0 ? 0.0F : 1.0F;
      stripes.at<PF_PixelFloat>(x, y) = {1.0F, grey, grey, grey};
      even.at<PF_PixelFloat>(x, y) = {1.0F, 0.5F, 0.5F, 0.5F};
    }
  }
  cli::writePicture(folder_ / "stripes.exr", stripes);
  cli::writePicture(folder_ / "even.exr", even);
  picture("small.png", 200, 200);
  const Image flat = rendered(map(path("even.exr")), "small.png");
  // Away from the rim of the map, which the patch fetches the edge from.
  const auto differing = [&](const Image& drawn) {
    int32_t count = 0;
    for (int32_t y = 70; y < 130; ++y) {
      for (int32_t x = 70; x < 130; ++x) {
        count += std::abs(drawn.at<PF_Pixel>(x, y).alpha - flat.at<PF_Pixel>(x, y).alpha) > 2 ? 1 : 0;
      }
    }
    return count;
  };
  EXPECT_EQ(differing(rendered(map(path("stripes.exr") + ":blur=pitch"), "small.png")), 0);
  EXPECT_GT(differing(rendered(map(path("stripes.exr")), "small.png")), 100) << "the stripes no longer show";
}

TEST_F(ToneOfPresetsTest, aToneThatNothingFollowsIsRefused) {
  const std::vector<std::string> start = {"render", path("in.png"), path("out.png")};
  std::vector<std::string> words = start;
  words.insert(words.end(), {"--layer", "Mask Target Layer=source:tone=area"});
  expectRefused(words, "'Mask Target Layer' sizes no dots; 'tone' is for the map layers of effectors");
  words = start;
  words.insert(words.end(), {"--layer", "Custom Map Layer 2=source:tone=area", "--set", "Enable Effector 2=on", "--set",
                             "Effect Map 2=Use Custom Map"});
  expectRefused(words, "'Custom Map Layer 2' is to give tone, but no dot changes its size or opacity by effector 2");
}

TEST_F(ToneOfPresetsTest, presetsPrepareLayersByAnObject) {
  folder_.write("p.json",
                R"({"layers": {"Custom Map Layer 1": {"picture": "source", "blur": "pitch", "tone": "area"}}})");
  std::vector<std::string> words = screen("Circle", "13", "0");
  const Image byHand = rendered(words);
  words.resize(words.size() - 2);
  words.insert(words.end(), {"--preset", path("p.json")});
  EXPECT_TRUE(samePixels(rendered(words), byHand));

  ASSERT_EQ(runCommandLine({"presets", "--save", path("saved.json"), "--preset", path("p.json")}).exitCode, 0);
  const auto layers = nlohmann::json::parse(folder_.read("saved.json")).at("layers");
  EXPECT_EQ(layers, nlohmann::json::parse(folder_.read("p.json")).at("layers"));

  const auto refuse = [&](const std::string& layer, const std::string& message) {
    folder_.write("q.json", R"({"layers": {"Custom Map Layer 1": )" + layer + "}}");
    expectRefused({"render", path("in.png"), path("out.png"), "--preset", path("q.json")},
                  "preset '" + path("q.json") + "': 'Custom Map Layer 1'" + message);
  };
  refuse(R"({"picture": "source", "blurr": "pitch"})", ": a layer can't be prepared by 'blurr'; did you mean 'blur'?");
  refuse(R"({"blur": "pitch"})", " has no 'picture'");
  refuse(R"({"picture": 3})", " takes a picture, 'source' or 'none'");
}

TEST_F(ToneOfPresetsTest, blurInPixelsGoesAlongWithTheHeight) {
  folder_.write("p.json", R"({"height": 85, "controls": {"Dot Size": 0, "Enable Effector 1": true,
    "Effect Map 1": "Use Custom Map", "Fit to Layer 1": true, "Absolute 1": true, "ABS Size 1": 5},
    "layers": {"Custom Map Layer 1": {"picture": "source", "blur": 20}}})");
  folder_.write("q.json", R"({"controls": {"Dot Size": 0, "Dot Distance X": 40, "Dot Distance Y": 40,
    "Enable Effector 1": true, "Effect Map 1": "Use Custom Map", "Fit to Layer 1": true, "Absolute 1": true,
    "ABS Size 1": 10}, "layers": {"Custom Map Layer 1": {"picture": "source", "blur": 40}}})");
  EXPECT_TRUE(samePixels(rendered({"--preset", path("p.json")}), rendered({"--preset", path("q.json")})));
}

TEST_F(ToneOfPresetsTest, aMaskOfAnotherSizeCanBeFitted) {
  Image mask(Depth::k8, 20, 10);
  for (int32_t y = 0; y < 10; ++y) {
    for (int32_t x = 0; x < 10; ++x) mask.at<PF_Pixel>(x, y) = {255, 255, 255, 255};
  }
  cli::writePicture(folder_ / "mask.png", mask);
  const auto coveredLeftAndRight = [&](const std::string& how) {
    const Image drawn = rendered({"--set", "Mask=Layer", "--set", "Clear Background=on", "--layer",
                                  "Mask Target Layer=" + path("mask.png") + how});
    const auto any = [&](int32_t from, int32_t to) {
      for (int32_t y = 0; y < drawn.height(); ++y) {
        for (int32_t x = from; x < to; ++x) {
          if (drawn.at<PF_Pixel>(x, y).alpha > 0) return true;
        }
      }
      return false;
    };
    const int32_t half = drawn.width() / 2;
    return std::pair(any(0, half - 200), any(half + 200, drawn.width()));
  };
  EXPECT_EQ(coveredLeftAndRight(""), std::pair(false, false)) << "20 pixels in the middle";
  EXPECT_EQ(coveredLeftAndRight(":fit=stretch"), std::pair(true, false));
  EXPECT_EQ(coveredLeftAndRight(":fit=cover"), std::pair(true, false));
}
