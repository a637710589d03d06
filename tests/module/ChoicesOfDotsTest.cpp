// Each choice of the controls of the dots themselves, as a whole frame shows it.
#include "tests/module/WholeFrame.h"

namespace vindrel::test {
namespace {

using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerValue;

using DotChoices = WholeFrame;

TEST_F(DotChoices, andThoseOfTheEffectorsAreAllThatThereAre) {
  // The choices that the tests of this program try; a control that comes to the effect needs a test here too.
  const std::string expected =
      "Dot Shape 6, Rotation Type 6, Distance Between 6, Center Dot to Front, Global Rotation Center 4, Mask 3, "
      "Invert Mask, Clear Background, "
      "Enable Effector 1, Effect Map 1 6, Fit to Layer 1, Pick Source Color 1, Tiling 1 4, Center Dot to Front 1, "
      "Absolute 1, Color 1, Blend Mode 1 14, "
      "Enable Effector 2, Effect Map 2 6, Fit to Layer 2, Pick Source Color 2, Tiling 2 4, Center Dot to Front 2, "
      "Absolute 2, Color 2, Blend Mode 2 14, "
      "Enable Effector 3, Effect Map 3 6, Fit to Layer 3, Pick Source Color 3, Tiling 3 4, Center Dot to Front 3, "
      "Absolute 3, Color 3, Blend Mode 3 14, ";
  std::string found;
  for (const standin::Control& control : host.controls()) {
    if (control.type == PF_Param_POPUP) {
      found += control.name + ' ' + std::to_string(itemsOf(control.name)) + ", ";
    } else if (control.type == PF_Param_CHECKBOX) {
      found += control.name + ", ";
    }
  }
  EXPECT_EQ(found, expected);
}

/// A shape in a box of 40 x 40 around (32, 32): its area, and places that are wholly covered or wholly empty.
struct ShapeFacts {
  double leastArea = 0;
  double mostArea = 0;
  std::vector<std::pair<int32_t, int32_t>> covered;
  std::vector<std::pair<int32_t, int32_t>> empty;
  bool sameUpsideDown = true;
};

ShapeFacts factsOf(int32_t shape) {
  switch (shape) {
    case circle:
      // A polygon of 44 corners: 44 / 2 * 400 * sin(360 / 44 degrees) = 1252. A circle reaches 28.3 pixels along the
      // diagonal, so that (18, 18) is inside and (17, 17) mostly not.
      return {1246, 1258, {{32, 32}, {13, 32}, {50, 32}, {19, 19}, {44, 44}}, {{15, 15}, {48, 48}, {12, 20}}, true};
    case square:
      return {1600, 1600, {{12, 12}, {51, 12}, {12, 51}, {51, 51}, {32, 32}}, {{11, 32}, {52, 32}, {32, 52}}, true};
    case roundSquare:
      // Corners of radius 8: 1600 - (4 - pi) * 64 = 1545, and 1544 for arcs of ten pieces each.
      return {1540, 1548, {{12, 32}, {51, 32}, {32, 12}, {15, 15}, {48, 48}}, {{12, 12}, {51, 12}, {51, 51}}, true};
    case cross:
      // Two arms of 40 x 12 that share 12 x 12: 816; on the right each row is up to an eighth of a pixel longer, 5
      // more.
      return {816, 822, {{32, 12}, {32, 51}, {12, 32}, {51, 32}, {26, 26}}, {{24, 24}, {40, 24}, {24, 40}}, true};
    case star:
      // Five tips at a radius of 20: 5 * 400 * 0.381966 * sin(36 degrees) = 449, the middle filled; each of its rows is
      // up to an eighth of a pixel longer, and the rows between two tips twice, 7 more. Tips up: (32, 12), lower left
      // (20.2, 48.2).
      return {446,
              462,
              {{32, 32}, {32, 17}, {32, 38}, {22, 27}, {41, 27}},
              {{32, 47}, {20, 15}, {44, 15}, {16, 40}},
              false};
    case diamond:
      return {
          797, 803, {{32, 32}, {32, 14}, {14, 32}, {49, 32}, {24, 26}}, {{14, 14}, {49, 14}, {20, 20}, {44, 44}}, true};
    default:
      ADD_FAILURE() << "a shape that this test doesn't know: " << shape;
      return {};
  }
}

TEST_F(DotChoices, eachShapeHasItsArea) {
  values.setNumber("Dot Size", 40);
  for (int32_t shape = 1; shape <= itemsOf("Dot Shape"); ++shape) {
    values.setPopup("Dot Shape", shape);
    const ShapeFacts facts = factsOf(shape);
    for (const Depth depth : standin::kAllDepths) {
      SCOPED_TRACE("shape " + std::to_string(shape) + bitsOf(depth));
      const Image picture = render(depth, 64, 64);
      const Coverage dot = coverageOf(picture);
      EXPECT_GE(dot.area, facts.leastArea);
      EXPECT_LE(dot.area, facts.mostArea);
      for (const auto& [x, y] : facts.covered) EXPECT_EQ(alphaAt(picture, x, y), 1.0) << x << ", " << y;
      for (const auto& [x, y] : facts.empty) EXPECT_EQ(alphaAt(picture, x, y), 0.0) << x << ", " << y;
      EXPECT_NEAR(dot.x, 32, 0.1);
      // A star's middle lies off the middle of its box, as it has one tip up and two down.
      if (facts.sameUpsideDown) {
        EXPECT_NEAR(dot.y, 32, 0.1);
      }
    }
  }
}

TEST_F(DotChoices, eachShapeIsTheSameLeftAndRight) {
  values.setNumber("Dot Size", 40);
  for (int32_t shape = 1; shape <= itemsOf("Dot Shape"); ++shape) {
    values.setPopup("Dot Shape", shape);
    for (const Depth depth : standin::kAllDepths) {
      SCOPED_TRACE("shape " + std::to_string(shape) + bitsOf(depth));
      const Image picture = render(depth, 64, 64);
      for (int32_t y = 0; y < 64; ++y) {
        double left = 0;
        double right = 0;
        for (int32_t x = 0; x < 32; ++x) {
          left += alphaAt(picture, x, y);
          right += alphaAt(picture, 63 - x, y);
        }
        // Runs of a shape that isn't convex are a sub-column longer on the right, and a tip's sub-rows shift them a
        // bit.
        EXPECT_NEAR(left, right, 0.6) << "row " << y;
      }
    }
  }
}

// Fields of crosses and stars, turned or not, ask the host for no more memory than circles.
TEST_F(DotChoices, eachShapeTakesAsManyBlocksOfMemory) {
  for (const double turn : {0.0, 10.0}) {
    values.setAngle("Dot Rotation", turn);
    for (const double size : {3.0, 24.0, 400.0}) {
      values.setNumber("Dot Size", size);
      int32_t expected = 0;
      for (int32_t shape = 1; shape <= itemsOf("Dot Shape"); ++shape) {
        values.setPopup("Dot Shape", shape);
        host.log().clear();
        render(Depth::k8, 64, 64);
        const int32_t blocks = host.log().count("host_new_handle");
        if (shape == 1) expected = blocks;
        EXPECT_EQ(blocks, expected) << "shape " << shape << ", size " << size << ", turn " << turn;
      }
    }
  }
}

TEST_F(DotChoices, aStarHasOneTipUpAndTwoDown) {
  values.setNumber("Dot Size", 40);
  values.setPopup("Dot Shape", star);
  for (const Depth depth : standin::kAllDepths) {
    const Image picture = render(depth, 64, 64);
    // On row 14 only the top tip, 2.5 pixels below its point and 1.6 wide; on row 44 two legs with a gap between them.
    EXPECT_GT(alphaAt(picture, 31, 14) + alphaAt(picture, 32, 14), 1.2) << bitsOf(depth);
    EXPECT_EQ(alphaAt(picture, 22, 14) + alphaAt(picture, 41, 14), 0.0) << bitsOf(depth);
    EXPECT_EQ(alphaAt(picture, 31, 46) + alphaAt(picture, 32, 46), 0.0) << bitsOf(depth);
    EXPECT_GT(alphaAt(picture, 22, 46), 0.5) << bitsOf(depth);
    EXPECT_GT(alphaAt(picture, 41, 46), 0.5) << bitsOf(depth);
  }
}

/// Dots of 24 x 6.
class RotationTypes : public DotChoices {
 protected:
  void SetUp() override {
    DotChoices::SetUp();
    values.setNumber("Dot Size", 24);
    values.setNumber("Dot Aspect", 75);
  }

  /// How many degrees the long side of the one dot is turned: 0, 45, 90, 135, or -1 when it lies otherwise.
  static int32_t turnOf(const Image& picture) {
    EXPECT_NEAR(coverageOf(picture).area, 24 * 6, 4);
    int32_t found = -1;
    for (const auto& [degrees, dx, dy] : {std::tuple{0, 9, 0}, {45, 6, 6}, {90, 0, 9}, {135, -6, 6}}) {
      // Both ends of the long side: pixels whose middle lies dx, dy off the middle of the frame.
      if (alphaAt(picture, 32 + dx, 32 + dy) > 0.9 && alphaAt(picture, 31 - dx, 31 - dy) > 0.9) {
        EXPECT_EQ(found, -1);
        found = degrees;
      }
    }
    return found;
  }

  int32_t turn(Depth depth, int32_t item) {
    values.setPopup("Rotation Type", item);
    return turnOf(render(depth, 64, 64));
  }
};

TEST_F(RotationTypes, onlyNormalTurnsTheDotWithTheLattice) {
  values.setAngle("Global Rotation", 90);
  for (const Depth depth : standin::kAllDepths) {
    EXPECT_EQ(turn(depth, rotationNormal), 90);
    // A dot on the centre has nothing to look at and keeps its own turn.
    EXPECT_EQ(turn(depth, rotationLookAtCenter), 0);
    // The control counts six items and names three: all behind the third are like it.
    for (int32_t item = rotationFixDotAngle; item <= itemsOf("Rotation Type"); ++item)
      EXPECT_EQ(turn(depth, item), 0) << item;
  }
}

TEST_F(RotationTypes, lookAtCenterLaysTheDotAcrossTheLineToTheRotationCenter) {
  values.setPopup("Global Rotation Center", centerFx1);
  struct Case {
    double x, y;
    int32_t turn;
  };
  for (const Depth depth : standin::kAllDepths) {
    for (const Case& look : {Case{32, 8, 0}, {8, 32, 90}, {16, 16, 135}, {48, 16, 45}}) {
      values.setPoint("Position 1", look.x, look.y);
      EXPECT_EQ(turn(depth, rotationLookAtCenter), look.turn) << look.x << ", " << look.y << bitsOf(depth);
      EXPECT_EQ(turn(depth, rotationNormal), 0);
      for (int32_t item = rotationFixDotAngle; item <= itemsOf("Rotation Type"); ++item)
        EXPECT_EQ(turn(depth, item), 0) << item;
    }
  }
}

TEST_F(RotationTypes, theDotsOwnTurnIsAddedUnderEachOfThem) {
  values.setAngle("Dot Rotation", 45);
  values.setAngle("Global Rotation", 45);
  for (const Depth depth : standin::kAllDepths) {
    EXPECT_EQ(turn(depth, rotationNormal), 90);
    EXPECT_EQ(turn(depth, rotationLookAtCenter), 45);
    for (int32_t item = rotationFixDotAngle; item <= itemsOf("Rotation Type"); ++item)
      EXPECT_EQ(turn(depth, item), 45) << item;
  }
}

TEST_F(DotChoices, eachDistanceBetweenGivesItsPitch) {
  for (int32_t item = 1; item <= itemsOf("Distance Between"); ++item) {
    setPitch(14, 20);
    values.setPopup("Distance Between", item);
    // Beyond the two items that have names the pitch is 1.
    const int32_t pitchX = item == betweenDots ? 8 + 14 : item == betweenCenters ? 14 : 1;
    const int32_t pitchY = item == betweenDots ? 8 + 20 : item == betweenCenters ? 20 : 1;
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      SCOPED_TRACE("item " + std::to_string(item));
      const Image picture = render(standin::PixelFacts<Pixel>::depth, 64, 48);
      std::vector<SquareDot<Pixel>> dots;
      for (int32_t row = -40 / pitchY; row <= 40 / pitchY; ++row) {
        for (int32_t column = -40 / pitchX; column <= 40 / pitchX; ++column) {
          dots.push_back({32 + 1.0 * column * pitchX, 24 + 1.0 * row * pitchY, 8, dotColorOf<Pixel>(ownColor)});
        }
      }
      expectSquares(picture, dots);
    });
  }
}

// Kept as is: run ends are cut off toward zero, so that a run that ends at the frame's left edge takes in its first
// sub-column. The frame's other edges show nothing of the kind.
TEST_F(DotChoices, aDotThatEndsAtTheLeftEdgeLeavesAnEighthOfAPixelThere) {
  struct Case {
    double x, y;
    bool left;
  };
  for (const Case& place : {Case{-4, 16, true}, {16, -4, false}, {36, 16, false}, {16, 36, false}}) {
    SCOPED_TRACE(std::to_string(place.x) + ", " + std::to_string(place.y));
    values.setPoint("Center Position", place.x, place.y);
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      const Image picture = render(standin::PixelFacts<Pixel>::depth, 32, 32);
      Pixel faint = dotColorOf<Pixel>(ownColor);
      faint.alpha = PlainDepth<Pixel>::channel(0.125);
      for (int32_t y = 0; y < 32; ++y) {
        for (int32_t x = 0; x < 32; ++x) {
          const bool touched = place.left && x == 0 && y >= 12 && y < 20;
          ASSERT_TRUE(sameColor(picture.at<Pixel>(x, y), touched ? faint : Pixel{}))
              << x << ", " << y << ": " << textOf(picture.at<Pixel>(x, y));
        }
      }
    });
  }
}

TEST_F(DotChoices, eachGlobalRotationCenterCarriesTheDotAboutItsOwnPoint) {
  values.setAngle("Global Rotation", 90);
  values.setPopup("Rotation Type", rotationFixDotAngle);
  values.setPoint("Position 1", 24, 32);
  values.setPoint("Position 2", 32, 40);
  values.setPoint("Position 3", 40, 36);
  // A quarter turn takes the middle (32, 32) about (px, py) to (px - (32 - py), py + (32 - px)).
  const std::vector<std::pair<double, double>> places = {{32, 32}, {24, 40}, {40, 40}, {44, 28}};
  ASSERT_EQ(static_cast<size_t>(itemsOf("Global Rotation Center")), places.size());
  for (size_t item = 1; item <= places.size(); ++item) {
    values.setPopup("Global Rotation Center", static_cast<int32_t>(item));
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      SCOPED_TRACE("item " + std::to_string(item));
      const auto [x, y] = places[item - 1];
      expectSquares<Pixel>(render(standin::PixelFacts<Pixel>::depth, 64, 64), {{x, y, 8, dotColorOf<Pixel>(ownColor)}});
    });
  }
}

/// One dot that covers the whole frame of 24 x 16, over an input of which no two pixels have the same alpha.
class Masks : public DotChoices {
 protected:
  void SetUp() override {
    DotChoices::SetUp();
    values.setNumber("Dot Size", 100);
  }

  /// Alpha of a picture of n pixels a row at whatever depth: never empty, never full.
  static Image shaded(Depth depth, int32_t width, int32_t height) {
    Image picture = opaquePicture(Depth::k8, width, height);
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        picture.at<PF_Pixel>(x, y).alpha = static_cast<A_u_char>(2 + (9 * x + 16 * y * width) % 251);
      }
    }
    return depth == Depth::k8 ? picture : picture.converted(depth);
  }
};

TEST_F(Masks, eachMaskHoldsTheDotsBackByItsOwnPictureAndInvertedByTheRest) {
  constexpr int32_t width = 24;
  constexpr int32_t height = 16;
  ASSERT_EQ(itemsOf("Mask"), 3);
  const Image layer = shaded(Depth::k8, 10, 8);
  for (const bool chosen : {true, false}) {
    values.setLayer("Mask Target Layer", chosen ? LayerValue::of(layer) : LayerValue::none());
    for (int32_t item = 1; item <= 3; ++item) {
      for (const bool inverted : {false, true}) {
        values.setPopup("Mask", item);
        values.setCheckbox("Invert Mask", inverted);
        atEveryDepth([&](auto pixel) {
          using Pixel = decltype(pixel);
          constexpr Depth depth = standin::PixelFacts<Pixel>::depth;
          SCOPED_TRACE("mask " + std::to_string(item) + (inverted ? " inverted" : "") + (chosen ? "" : ", no layer"));
          FrameRequest request;
          request.input = shaded(depth, width, height);
          const Image picture = render(request);
          const Image mask = layer.converted(depth);
          for (int32_t y = 0; y < height; ++y) {
            for (int32_t x = 0; x < width; ++x) {
              double strength = PlainDepth<Pixel>::full;
              if (item == maskNormal) strength = static_cast<double>(request.input.at<Pixel>(x, y).alpha);
              if (item == maskLayer) {
                // The layer lies in the middle: 7 columns left of it, 4 rows above.
                const bool inside = chosen && x >= 7 && x < 17 && y >= 4 && y < 12;
                strength = inside ? static_cast<double>(mask.at<Pixel>(x - 7, y - 4).alpha) : 0;
              }
              if (inverted && item != maskNone) strength = PlainDepth<Pixel>::full - strength;
              Pixel expected{};
              if (strength > 0) {
                expected = dotColorOf<Pixel>(ownColor);
                expected.alpha = static_cast<typename PlainDepth<Pixel>::Channel>(strength);
              }
              const Pixel& found = picture.at<Pixel>(x, y);
              ASSERT_TRUE(sameColor(found, expected))
                  << x << ", " << y << ": " << textOf(found) << " instead of " << textOf(expected);
            }
          }
        });
      }
    }
  }
}

TEST_F(DotChoices, aBackgroundIsTheSourceUntilItIsCleared) {
  for (const bool cleared : {false, true}) {
    values.setCheckbox("Clear Background", cleared);
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      constexpr Depth depth = standin::PixelFacts<Pixel>::depth;
      const Image picture = render(depth, 32, 24);
      const Image source = opaquePicture(depth, 32, 24);
      const SquareDot<Pixel> dot{16, 12, 8, dotColorOf<Pixel>(ownColor)};
      for (int32_t y = 0; y < 24; ++y) {
        for (int32_t x = 0; x < 32; ++x) {
          const Pixel expected = dot.covers(x, y) ? dot.color : cleared ? Pixel{} : source.at<Pixel>(x, y);
          ASSERT_TRUE(sameColor(picture.at<Pixel>(x, y), expected)) << x << ", " << y << (cleared ? " cleared" : "");
        }
      }
    });
  }
}

}  // namespace
}  // namespace vindrel::test
