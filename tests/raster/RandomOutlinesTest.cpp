// Thousands of random outlines and dots, compared byte by byte with the plain rasteriser at all three depths.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

#include "effect/raster/DrawDot.h"
#include "tests/raster/PlainRasterizer.h"
#include "tests/support/Dice.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::AllPixels;
using test::Dice;
using test::Points;
using test::TestCanvas;

/// One thing to draw, the same at every depth: a bare outline when it has points, a dot otherwise. Channels are in
/// 0 to 1.
struct Stroke {
  Points points;
  DotRecord<Pixel32> dot;
};

struct Scene {
  int32_t width, height;
  bool emptyCanvas;
  std::vector<Stroke> strokes;
};

Pixel32 randomColor(Dice& dice) {
  const auto channel = [&dice] { return static_cast<float>(dice.number(0.0, 1.0)); };
  const int kind = dice.pick(0, 5);
  const float alpha = kind <= 1 ? 1.0F : kind == 2 ? 1.0F / 255.0F : channel();
  return {alpha, channel(), channel(), channel()};
}

Points randomOutline(Dice& dice, double width, double height) {
  Points points;
  const double cx = dice.number(-width, 2.0 * width), cy = dice.number(-height, 2.0 * height);
  const double r = dice.oneIn(3) ? dice.number(0.0, 2.0) : dice.number(0.0, width + height);
  const int kind = dice.pick(0, 4);
  if (kind == 0) {  // convex, either winding
    std::vector<double> angles;
    for (int n = dice.pick(3, 12); n > 0; --n) angles.push_back(dice.number(0.0, 6.28));
    std::sort(angles.begin(), angles.end());
    for (const double a : angles) points.emplace_back(cx + r * std::cos(a), cy + r * std::sin(a));
    if (dice.oneIn(2)) std::reverse(points.begin(), points.end());
  } else if (kind == 1) {  // anything at all
    for (int n = dice.pick(3, 9); n > 0; --n) {
      points.emplace_back(dice.number(cx - r, cx + r), dice.number(cy - r, cy + r));
    }
  } else if (kind == 2) {  // on the sub-pixel grid, with level and upright sides and repeated points
    for (int n = dice.pick(3, 9); n > 0; --n) {
      points.emplace_back(dice.pick(-16, 8 * static_cast<int>(width) + 16) / 8.0,
                          dice.pick(-16, 8 * static_cast<int>(height) + 16) / 8.0);
      if (dice.oneIn(3)) points.emplace_back(points.back().first, dice.pick(0, static_cast<int>(height)));
      if (dice.oneIn(3)) points.emplace_back(dice.pick(0, static_cast<int>(width)), points.back().second);
      if (dice.oneIn(6)) points.push_back(points.back());
    }
  } else if (kind == 3) {  // a comb: many runs in few pixels
    const double tooth = dice.number(0.05, 1.5);
    const double left = dice.number(-2.0, width);
    const int teeth = dice.pick(1, 8);
    for (int n = 0; n < teeth; ++n) {
      points.emplace_back(left + n * tooth, dice.number(-1.0, height));
      points.emplace_back(left + (n + dice.number(0.1, 0.9)) * tooth, dice.number(-1.0, height));
    }
    points.emplace_back(left + teeth * tooth, height - 0.3);
    points.emplace_back(left, height - 0.3);
  } else {  // a sliver
    const double dx = dice.number(-width, width), dy = dice.number(-height, height), thin = dice.number(0.0, 0.3);
    points = {{cx, cy}, {cx + dx, cy + dy}, {cx + dx + thin, cy + dy}, {cx + thin, cy}};
  }
  return points;
}

DotRecord<Pixel32> randomDot(Dice& dice, double width, double height, int shapes) {
  const double largest = dice.oneIn(3) ? 3.0 : width + height;
  const double sign = dice.oneIn(6) ? -1.0 : 1.0;
  const double w = sign * dice.number(0.01, largest);
  const double h = dice.oneIn(2) ? w : dice.number(0.01, largest);
  const double quarter = 1.5707963267948966 * dice.pick(-4, 4);
  const bool whole = dice.oneIn(4);
  const double x = dice.number(-width, 2.0 * width), y = dice.number(-height, 2.0 * height);
  return {-1.0,
          whole ? std::floor(x) : x,
          whole ? std::floor(y) : y,
          randomColor(dice),
          whole ? std::ceil(w) : w,
          whole ? std::ceil(h) : h,
          dice.oneIn(3) ? quarter : dice.number(-7.0, 7.0),
          dice.pick(1, shapes)};
}

Scene randomScene(uint64_t seed) {
  Dice dice(seed);
  Scene scene{dice.pick(1, 40), dice.pick(1, 24), dice.oneIn(2), {}};
  for (int n = dice.pick(1, 4); n > 0; --n) {
    Stroke stroke{{}, randomDot(dice, scene.width, scene.height, 6)};
    if (dice.oneIn(2)) stroke.points = randomOutline(dice, scene.width, scene.height);
    scene.strokes.push_back(stroke);
  }
  return scene;
}

/// All that is needed to draw the scene again, numbers to the last bit.
std::string text(const Scene& scene, uint64_t seed) {
  std::ostringstream out;
  out << "seed " << seed << ", canvas " << scene.width << " x " << scene.height
      << (scene.emptyCanvas ? ", empty" : ", random pixels") << std::hexfloat;
  for (const Stroke& s : scene.strokes) {
    out << "\n  colour " << s.dot.color.alpha << ' ' << s.dot.color.red << ' ' << s.dot.color.green << ' '
        << s.dot.color.blue;
    if (s.points.empty()) {
      out << " shape " << s.dot.shape << " at " << s.dot.x << ' ' << s.dot.y << " size " << s.dot.width << ' '
          << s.dot.height << " angle " << s.dot.angle;
    } else {
      out << " outline";
      for (const auto& [x, y] : s.points) out << " (" << x << ' ' << y << ')';
    }
  }
  return out.str();
}

template <class Pixel>
Pixel atDepth(const Pixel32& c) {
  using Channel = typename PixelTraits<Pixel>::Channel;
  const auto channel = [](float v) {
    return static_cast<Channel>(static_cast<double>(v) * static_cast<double>(PixelTraits<Pixel>::fullScale));
  };
  return {channel(c.alpha), channel(c.red), channel(c.green), channel(c.blue)};
}

template <class Pixel>
void scatterPixels(TestCanvas<Pixel>& canvas, uint64_t seed) {
  Dice dice(seed + 1);
  for (int32_t y = 0; y < canvas.height; ++y) {
    for (int32_t x = 0; x < canvas.width; ++x) {
      if (!dice.oneIn(3)) canvas.at(x, y) = atDepth<Pixel>(randomColor(dice));
    }
  }
}

template <class Pixel>
using Plain = plain::Rasterizer<Pixel, true>;

template <class Pixel>
Plain<Pixel> plainOn(TestCanvas<Pixel>& canvas) {
  return {canvas.context.canvas.pixels, canvas.width, canvas.height, canvas.context.canvas.rowBytes};
}

template <class Pixel>
DotRecord<Pixel> dotAtDepth(const DotRecord<Pixel32>& d) {
  return {d.frontKey, d.x, d.y, atDepth<Pixel>(d.color), d.width, d.height, d.angle, d.shape};
}

template <class Pixel>
class RandomOutlines : public ::testing::Test {};
TYPED_TEST_SUITE(RandomOutlines, AllPixels);

TYPED_TEST(RandomOutlines, areDrawnAsThePlainRasteriserDrawsThem) {
  int32_t convexFills = 0, generalFills = 0;
  for (uint64_t seed = 1; seed <= 6000; ++seed) {
    const Scene scene = randomScene(seed);
    TestCanvas<TypeParam> shipped(scene.width, scene.height), expected(scene.width, scene.height);
    if (!scene.emptyCanvas) {
      scatterPixels(shipped, seed);
      scatterPixels(expected, seed);
    }
    Plain<TypeParam> plain = plainOn(expected);
    for (const Stroke& stroke : scene.strokes) {
      const DotRecord<TypeParam> dot = dotAtDepth<TypeParam>(stroke.dot);
      if (stroke.points.empty()) {
        drawDot(shipped.context, dot);
        plain.drawDot(dot);
      } else {
        shipped.fill(stroke.points, dot.color);
        plain.color = dot.color;
        plain.vertices.clear();
        for (const auto& [x, y] : stroke.points) plain.add(x, y);
        plain.finishPath();
      }
    }
    ASSERT_EQ(shipped.differenceFrom(expected), "") << text(scene, seed);
    ASSERT_TRUE(shipped.guardsAreWhole()) << text(scene, seed);
    ASSERT_LE(plain.largestCount, 64) << text(scene, seed);
    ASSERT_GE(plain.smallestCount, 0) << text(scene, seed);
    convexFills += plain.convexFills;
    generalFills += plain.generalFills;
  }
  // The comparison is of little use if one of the fillers hardly runs.
  EXPECT_GT(convexFills, 3000);
  EXPECT_GT(generalFills, 3000);
}

/// Outlines with more runs on a sub-row than the table has places, on some pixel rows or on all, and outlines whose
/// columns lie beyond the 32-bit range or aren't numbers.
Points outlineBeyondTheTable(Dice& dice, double width, double height) {
  Points points;
  if (dice.oneIn(2)) {  // a comb whose teeth begin and end where they like
    const int teeth = dice.pick(6, 20);
    const double left = dice.number(-4.0, 1.0);
    const double pitch = dice.number(0.3, 1.3) * (width + 6.0) / teeth;
    const double back = dice.number(0.0, height + 2.0);
    const bool ragged = dice.oneIn(2);
    const double top = dice.number(-30.0, back);
    for (int n = 0; n < teeth; ++n) {
      const double lean = dice.number(-1.0, 1.0) * pitch;
      const double tip = ragged ? dice.number(-30.0, back) : top;
      points.emplace_back(left + n * pitch, back);
      points.emplace_back(left + n * pitch + lean, tip);
      points.emplace_back(left + (n + dice.number(0.1, 0.9)) * pitch + lean, tip);
      points.emplace_back(left + (n + 0.95) * pitch, back);
    }
    points.emplace_back(left + teeth * pitch, back + dice.number(0.0, 2.0));
    points.emplace_back(left, back + 0.3);
  } else {
    const double far = std::pow(10.0, dice.number(7.0, 10.0));
    for (int n = dice.pick(3, 12); n > 0; --n) {
      double x = dice.number(-width, 2.0 * width);
      if (dice.oneIn(3)) x = dice.number(-far, far);
      if (dice.oneIn(20)) x = dice.oneIn(2) ? HUGE_VAL : -HUGE_VAL;
      if (dice.oneIn(40)) x = std::nan("");
      double y = dice.number(-2.0 * height, 2.0 * height);
      if (dice.oneIn(8)) y = dice.number(-2000.0, 2000.0);
      if (dice.oneIn(6) && !points.empty()) x = points.back().first;
      points.emplace_back(x, y);
    }
  }
  return points;
}

// Both sides of the switch between the table and the lists, and the switch itself in the middle of an outline.
TYPED_TEST(RandomOutlines, beyondTheTableAreDrawnAsThePlainRasteriserDrawsThem) {
  for (uint64_t seed = 60001; seed <= 63000; ++seed) {
    Dice dice(seed);
    Scene scene{dice.pick(1, 40), dice.pick(1, 24), dice.oneIn(2), {}};
    for (int n = dice.pick(1, 3); n > 0; --n) {
      Stroke stroke{{}, randomDot(dice, scene.width, scene.height, 6)};
      stroke.points = outlineBeyondTheTable(dice, scene.width, scene.height);
      scene.strokes.push_back(stroke);
    }
    TestCanvas<TypeParam> shipped(scene.width, scene.height), expected(scene.width, scene.height);
    if (!scene.emptyCanvas) {
      scatterPixels(shipped, seed);
      scatterPixels(expected, seed);
    }
    Plain<TypeParam> plain = plainOn(expected);
    for (const Stroke& stroke : scene.strokes) {
      const DotRecord<TypeParam> dot = dotAtDepth<TypeParam>(stroke.dot);
      shipped.fill(stroke.points, dot.color);
      plain.color = dot.color;
      plain.vertices.clear();
      for (const auto& [x, y] : stroke.points) plain.add(x, y);
      plain.finishPath();
    }
    ASSERT_EQ(shipped.differenceFrom(expected), "") << text(scene, seed);
    ASSERT_TRUE(shipped.guardsAreWhole()) << text(scene, seed);
  }
}

// A count above 64 would give a full-scale colour an alpha above full scale.
TYPED_TEST(RandomOutlines, neverLeaveAnAlphaAboveFullScale) {
  for (uint64_t seed = 30001; seed <= 32000; ++seed) {
    Scene scene = randomScene(seed);
    TestCanvas<TypeParam> canvas(scene.width, scene.height);
    for (Stroke& stroke : scene.strokes) {
      if (seed % 2 == 0) stroke.dot.color.alpha = 1.0F;
      const DotRecord<TypeParam> dot = dotAtDepth<TypeParam>(stroke.dot);
      if (stroke.points.empty()) {
        drawDot(canvas.context, dot);
      } else {
        canvas.fill(stroke.points, dot.color);
      }
    }
    for (int32_t y = 0; y < canvas.height; ++y) {
      for (int32_t x = 0; x < canvas.width; ++x) {
        ASSERT_LE(canvas.at(x, y).alpha, PixelTraits<TypeParam>::fullScale)
            << x << ' ' << y << ' ' << text(scene, seed);
        ASSERT_GE(canvas.at(x, y).alpha, 0) << x << ' ' << y << ' ' << text(scene, seed);
      }
    }
  }
}

// What one dot leaves behind in the rasteriser must not show in the next.
TYPED_TEST(RandomOutlines, doNotDependOnWhatWasDrawnBefore) {
  for (uint64_t seed = 40001; seed <= 40500; ++seed) {
    const Scene before = randomScene(seed);
    const Scene scene = randomScene(seed + 100000);
    TestCanvas<TypeParam> fresh(scene.width, scene.height), used(scene.width, scene.height);
    for (const Stroke& s : before.strokes) {
      DotRecord<TypeParam> dot = dotAtDepth<TypeParam>(s.dot);
      dot.color.alpha = 0;  // leaves no pixel
      drawDot(used.context, dot);
    }
    for (const Stroke& s : scene.strokes) {
      drawDot(fresh.context, dotAtDepth<TypeParam>(s.dot));
      drawDot(used.context, dotAtDepth<TypeParam>(s.dot));
    }
    ASSERT_EQ(used.differenceFrom(fresh), "") << text(before, seed) << '\n' << text(scene, seed + 100000);
  }
}

// Dots of one size and turn, as most fields have them: the vertices and the turn of the dot before are used again.
TYPED_TEST(RandomOutlines, ofOneSizeAndTurnAreDrawnAsThePlainRasteriserDrawsThem) {
  for (uint64_t seed = 70001; seed <= 70600; ++seed) {
    Dice dice(seed);
    TestCanvas<TypeParam> shipped(40, 24), expected(40, 24);
    Plain<TypeParam> plain = plainOn(expected);
    DotRecord<TypeParam> dot = dotAtDepth<TypeParam>(randomDot(dice, 40.0, 24.0, 6));
    for (int n = 0; n < 12; ++n) {
      dot.x = dice.number(-20.0, 60.0);
      dot.y = dice.number(-20.0, 44.0);
      if (dice.oneIn(4)) dot.angle = dice.oneIn(2) ? 0.0 : -0.0;
      if (dice.oneIn(4)) dot.shape = dice.pick(0, 7);
      if (dice.oneIn(6)) dot.width = -dot.width;
      if (dice.oneIn(8)) dot.height += 1.0;
      drawDot(shipped.context, dot);
      plain.drawDot(dot);
    }
    ASSERT_EQ(shipped.differenceFrom(expected), "") << "seed " << seed;
  }
}

// Above 1,440 vertices the shipped one leaves out equal neighbours; around that number, and far above the canvas, where
// it leaps over sub-rows.
TYPED_TEST(RandomOutlines, ofHugeCirclesAreDrawnAsThePlainRasteriserDrawsThem) {
  Dice dice(71001);
  for (int round = 0; round < 120; ++round) {
    TestCanvas<TypeParam> shipped(50, 20), expected(50, 20);
    Plain<TypeParam> plain = plainOn(expected);
    const double diagonal = round < 40 ? dice.number(1800.0, 1900.0) : std::pow(10.0, dice.number(3.0, 5.3));
    const double share = dice.oneIn(3) ? dice.number(1e-6, 1.0) : dice.number(0.5, 0.9);
    const double w = diagonal * share, h = diagonal * std::sqrt(1.0 - share * share);
    const double turn = dice.number(0.0, 6.28), side = dice.number(0.0, 6.28);
    // So that the rim or the inside lies on the canvas.
    const double x = 0.5 * w * std::cos(side), y = 0.5 * h * std::sin(side);
    const DotRecord<Pixel32> d{-1.0,
                               25.0 - (x * std::cos(turn) - y * std::sin(turn)) + dice.number(-30.0, 30.0),
                               10.0 - (x * std::sin(turn) + y * std::cos(turn)) + dice.number(-30.0, 30.0),
                               randomColor(dice),
                               w,
                               h,
                               turn,
                               circleShape};
    drawDot(shipped.context, dotAtDepth<TypeParam>(d));
    plain.drawDot(dotAtDepth<TypeParam>(d));
    ASSERT_EQ(shipped.differenceFrom(expected), "") << text(Scene{50, 20, true, {{{}, d}}}, 71001);
  }
}

// Off each side and large, where the scans run long and columns reach the ends of the canvas.
TYPED_TEST(RandomOutlines, ofLargeDotsFarOutAreDrawnAsThePlainRasteriserDrawsThem) {
  Dice dice(50001);
  for (int round = 0; round < 60; ++round) {
    TestCanvas<TypeParam> shipped(50, 20), expected(50, 20);
    Plain<TypeParam> plain = plainOn(expected);
    const double far = std::pow(10.0, dice.number(1.0, 4.0));
    const DotRecord<Pixel32> d{-1.0,
                               dice.number(-far, far),
                               dice.number(-far, far),
                               randomColor(dice),
                               dice.number(-2.0 * far, 2.0 * far),
                               dice.number(-2.0 * far, 2.0 * far),
                               dice.number(-4.0, 4.0),
                               dice.pick(1, 6)};
    drawDot(shipped.context, dotAtDepth<TypeParam>(d));
    plain.drawDot(dotAtDepth<TypeParam>(d));
    ASSERT_EQ(shipped.differenceFrom(expected), "") << text(Scene{50, 20, true, {{{}, d}}}, 50001);
    ASSERT_TRUE(shipped.guardsAreWhole()) << text(Scene{50, 20, true, {{{}, d}}}, 50001);
  }
}

}  // namespace
}  // namespace vindrel
