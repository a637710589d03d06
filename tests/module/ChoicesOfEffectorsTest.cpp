// Each choice of the controls of the three effectors, as a whole frame shows it; and which dots lie on top.
#include <set>

#include "tests/module/WholeFrame.h"

namespace vindrel::test {
namespace {

using standin::Depth;
using standin::Image;

/// The number of an effector, 1 to 3.
class EffectorChoices : public WholeFrame, public ::testing::WithParamInterface<int32_t> {
 protected:
  static int32_t number() { return GetParam(); }
  static std::string own(const char* name) { return numbered(name, GetParam()); }

  /// An opaque layer in which no two pixels are alike, nor like a dot of its own colour.
  static Image colors(int32_t width, int32_t height) {
    Image layer(Depth::k8, width, height);
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        layer.at<PF_Pixel>(x, y) = {255, static_cast<A_u_char>(40 + 3 * x), static_cast<A_u_char>(250 - 3 * y),
                                    static_cast<A_u_char>(200 + (5 * x + 3 * y) % 50)};
      }
    }
    return layer;
  }
};

INSTANTIATE_TEST_SUITE_P(OfEffector, EffectorChoices, ::testing::Values(1, 2, 3), ::testing::PrintToStringParamName());

TEST_P(EffectorChoices, onlyAnEnabledEffectorChangesDots) {
  setPitch(20, 20);
  setFullWeight(number());
  values.setNumber(own("Offset Size"), 6);
  for (const bool enabled : {false, true}) {
    values.setCheckbox(own("Enable Effector"), enabled);
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      std::vector<SquareDot<Pixel>> dots;
      for (int32_t row = -2; row <= 2; ++row) {
        for (int32_t column = -2; column <= 2; ++column) {
          dots.push_back({32 + 20.0 * column, 24 + 20.0 * row, enabled ? 14.0 : 8.0, dotColorOf<Pixel>(ownColor)});
        }
      }
      expectSquares(render(standin::PixelFacts<Pixel>::depth, 64, 48), dots);
    });
  }
}

TEST_P(EffectorChoices, onlyAnAbsoluteEffectorBringsTheDotToItsSize) {
  setFullWeight(number());
  values.setNumber(own("ABS Size"), 14);
  for (const bool absolute : {false, true}) {
    values.setCheckbox(own("Absolute"), absolute);
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      expectSquares<Pixel>(render(standin::PixelFacts<Pixel>::depth, 32, 32),
                           {{16, 16, absolute ? 14.0 : 8.0, dotColorOf<Pixel>(ownColor)}});
    });
  }
}

TEST_P(EffectorChoices, onlyAnEffectorWithColorOnTintsTheDot) {
  setFullWeight(number());
  const PF_Pixel blue{255, 10, 20, 250};
  values.setColor(own("Blend Color"), blue);
  for (const bool on : {false, true}) {
    values.setCheckbox(own("Color"), on);
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      expectSquares<Pixel>(render(standin::PixelFacts<Pixel>::depth, 32, 32),
                           {{16, 16, 8, dotColorOf<Pixel>(on ? blue : ownColor)}});
    });
  }
}

TEST_P(EffectorChoices, eachBlendModeMixesByItsOwnFormula) {
  setFullWeight(number());
  values.setCheckbox(own("Color"), true);
  ASSERT_EQ(itemsOf(own("Blend Mode")), 14);
  struct Pair {
    PF_Pixel under, source;
  };
  // In the first no two modes agree; the others stand at the thresholds and at the ends.
  const std::vector<Pair> pairs = {{{255, 200, 100, 40}, {255, 90, 180, 250}},
                                   {{255, 127, 128, 129}, {255, 128, 127, 126}},
                                   {{255, 255, 0, 30}, {255, 255, 255, 0}},
                                   {{255, 0, 31, 32}, {255, 0, 129, 127}}};
  for (const Pair& pair : pairs) {
    values.setColor("Dot Color", pair.under);
    values.setColor(own("Blend Color"), pair.source);
    atEveryDepth([&](auto pixel) {
      using Pixel = decltype(pixel);
      const auto under = PlainDepth<Pixel>::fromBytes(pair.under);
      const auto source = PlainDepth<Pixel>::fromBytes(pair.source);
      std::set<std::string> looks;
      for (int32_t item = 1; item <= 14; ++item) {
        values.setPopup(own("Blend Mode"), item);
        const Image picture = render(standin::PixelFacts<Pixel>::depth, 16, 16);
        const Pixel expected = throughHsv(blendedColor(item, under, source));
        const Pixel& found = picture.at<Pixel>(8, 8);
        EXPECT_TRUE(sameColor(found, expected))
            << "item " << item << ": " << textOf(found) << " instead of " << textOf(expected);
        looks.insert(textOf(found));
      }
      // The two separators are "Normal".
      if (&pair == &pairs.front()) {
        EXPECT_EQ(looks.size(), 12U);
      }
    });
  }
}

/// A lattice of small dots over a frame of 120 x 80, each of which tells its weight by its opacity: at weight 1 it is
/// gone.
class EffectMapChoices : public EffectorChoices {
 protected:
  static constexpr int32_t width = 120;
  static constexpr int32_t height = 80;
  static constexpr double placeX = 63;
  static constexpr double placeY = 37;
  static constexpr double reach = 40;
  static constexpr double falloff = 0.75;
  static constexpr double degrees = 30;

  void SetUp() override {
    EffectorChoices::SetUp();
    values.setNumber("Dot Size", 4);
    setPitch(10, 10);
    values.setCheckbox(own("Enable Effector"), true);
    values.setPoint(own("Position"), placeX, placeY);
    values.setNumber(own("Size"), reach);
    values.setNumber(own("Falloff"), 100 * falloff);
    values.setAngle(own("Angle"), degrees);
    values.setCheckbox(own("Absolute"), true);
    values.setNumber(own("ABS Size"), 4);
    values.setNumber(own("ABS Opacity"), 0);
  }

  /// The dots' weights against those that weightAt(x, y) tells, within two levels of the depth's whole numbers.
  template <class WeightAt>
  void expectWeights(const Image& picture, WeightAt&& weightAt) {
    const double level = picture.depth() == Depth::k8 ? 1.0 / 255 : picture.depth() == Depth::k16 ? 1.0 / 32768 : 1e-6;
    int32_t between = 0;
    for (int32_t y = 10; y < height; y += 10) {
      for (int32_t x = 10; x < width; x += 10) {
        const double expected = weightAt(x, y);
        ASSERT_NEAR(1 - alphaAt(picture, x, y), expected, 2 * level) << "at " << x << ", " << y;
        if (expected > 0.02 && expected < 0.98) ++between;
      }
    }
    EXPECT_GT(between, 5) << "the fade must show";
  }
};

INSTANTIATE_TEST_SUITE_P(OfEffector, EffectMapChoices, ::testing::Values(1, 2, 3), ::testing::PrintToStringParamName());

/// A ramp from 1 at a distance of 10 to 0 at 40.
double ramp(double distance) {
  return std::clamp((40 - distance) / 30, 0.0, 1.0);
}

/// Half a wave of a cosine from 1 at a distance of 10 to 0 at 40.
double wave(double distance) {
  return 0.5 + 0.5 * std::cos((1 - ramp(distance)) * 3.14159265358979);
}

double plainWeight(int32_t item, double x, double y) {
  const double turn = 30 * 3.14159265358979 / 180;
  const double dx = x - 63;
  const double dy = y - 37;
  const double radius = std::hypot(dx, dy);
  // Ahead of the line through the position: up on the screen at angle 0, clockwise from there.
  const double ahead = dx * std::sin(turn) - dy * std::cos(turn);
  switch (item) {
    case radialMap:
      return wave(radius);
    case radialMirrorMap:
      // Strongest on the ring at half the reach; there the distance counts double.
      return radius > 40 ? 0 : wave(std::abs(2 * radius - 40));
    case mapLine:  // the separator is a linear map too
    case linearMap:
      return ahead < 0 ? 1 : ramp(ahead);
    case linearMirrorMap:
      return ramp(std::abs(ahead));
    default:
      ADD_FAILURE() << "a map that this test doesn't know: " << item;
      return -1;
  }
}

TEST_P(EffectMapChoices, eachMapWeighsTheDotsInItsOwnWay) {
  ASSERT_EQ(itemsOf(own("Effect Map")), 6);
  for (int32_t item = mapLine; item <= 6; ++item) {
    values.setPopup(own("Effect Map"), item);
    for (const Depth depth : standin::kAllDepths) {
      SCOPED_TRACE("map " + std::to_string(item) + bitsOf(depth));
      expectWeights(render(depth, width, height), [item](double x, double y) { return plainWeight(item, x, y); });
    }
  }
}

TEST_P(EffectMapChoices, aCustomMapWeighsByLuminanceTimesAlphaAboutItsPosition) {
  // A quarter turn clockwise: the layer's columns run down the frame, its rows to the left.
  values.setAngle(own("Angle"), 90);
  Image layer(Depth::k8, 60, 70);
  for (int32_t y = 0; y < 70; ++y) {
    for (int32_t x = 0; x < 60; ++x) {
      layer.at<PF_Pixel>(x, y) = {static_cast<A_u_char>(255 - 3 * y), static_cast<A_u_char>(4 * x),
                                  static_cast<A_u_char>(255 - 2 * x), static_cast<A_u_char>(x + 2 * y)};
    }
  }
  setCustomMap(number(), layer);
  for (const Depth depth : standin::kAllDepths) {
    SCOPED_TRACE(bitsOf(depth));
    const Image delivered = layer.converted(depth);
    expectWeights(render(depth, width, height), [&](double x, double y) {
      // The layer's middle (30, 35) lies on the position.
      const auto column = static_cast<int32_t>(30 + (y - placeY));
      const auto row = static_cast<int32_t>(35 - (x - placeX));
      if (column < 0 || column >= 60 || row < 0 || row >= 70) return 0.0;
      return standin::withPixelOf(depth, [&](auto pixel) {
        using Pixel = decltype(pixel);
        const Pixel& at = delivered.at<Pixel>(column, row);
        const double full = PlainDepth<Pixel>::full;
        return (0.298912 * static_cast<double>(at.red) + 0.586611 * static_cast<double>(at.green) +
                0.114478 * static_cast<double>(at.blue)) /
               full * static_cast<double>(at.alpha) / full;
      });
    });
  }
}

/// Dots of 4 x 4 side by side, each of one colour.
class PickedColors : public EffectorChoices {
 protected:
  static constexpr int32_t width = 64;
  static constexpr int32_t height = 48;

  void SetUp() override {
    EffectorChoices::SetUp();
    values.setNumber("Dot Size", 4);
    setPitch(4, 4);
  }

  /// Every dot has the colour of the layer's pixel that placeOf(x, y) tells, or its own colour where that is outside.
  template <class Pixel, class PlaceOf>
  void expectColors(const Image& layer, PlaceOf&& placeOf) {
    const Image picture = render(standin::PixelFacts<Pixel>::depth, width, height);
    const Image delivered = layer.converted(standin::PixelFacts<Pixel>::depth);
    std::vector<SquareDot<Pixel>> dots;
    for (int32_t y = 0; y <= height; y += 4) {
      for (int32_t x = 0; x <= width; x += 4) {
        const auto [column, row] = placeOf(x, y);
        const bool inside = column >= 0 && column < layer.width() && row >= 0 && row < layer.height();
        dots.push_back({static_cast<double>(x), static_cast<double>(y), 4,
                        inside ? throughHsv(delivered.at<Pixel>(column, row)) : dotColorOf<Pixel>(ownColor)});
      }
    }
    expectSquares(picture, dots);
  }
};

INSTANTIATE_TEST_SUITE_P(OfEffector, PickedColors, ::testing::Values(1, 2, 3), ::testing::PrintToStringParamName());

/// Place c of a row of n pixels without an end, by the item of "Tiling"; -1 where there is nothing.
int32_t tiled(int32_t item, int32_t c, int32_t n) {
  switch (item) {
    case tilingNone:
      return c >= 0 && c < n ? c : -1;
    case tilingRepeat:
      return (c % n + n) % n;
    case tilingMirror: {
      // On the left the row turns round about its first pixel, on the right about its last edge.
      const int32_t place = std::abs(c) % (2 * n);
      return place < n ? place : 2 * n - 1 - place;
    }
    case tilingExtend:
      return std::clamp(c, 0, n - 1);
    default:
      ADD_FAILURE() << "a tiling that this test doesn't know: " << item;
      return -1;
  }
}

TEST_P(PickedColors, eachTilingContinuesTheLayerInItsOwnWay) {
  const Image layer = colors(10, 7);
  setCustomMap(number(), layer);
  values.setCheckbox(own("Pick Source Color"), true);
  ASSERT_EQ(itemsOf(own("Tiling")), 4);
  // The layer's middle, (5, 3.5), lies on the position: the dot at (x, y) sees column x - 31 + 5. The second position
  // shows the columns and rows between, -1 among them.
  for (const auto& place : {std::pair{31, 22}, {32, 25}, {33, 24}, {34, 23}}) {
    const int32_t placeX = place.first;
    const int32_t placeY = place.second;
    values.setPoint(own("Position"), placeX, placeY + 0.5);
    for (int32_t item = 1; item <= 4; ++item) {
      values.setPopup(own("Tiling"), item);
      SCOPED_TRACE("tiling " + std::to_string(item));
      atEveryDepth([&](auto pixel) {
        expectColors<decltype(pixel)>(layer, [&](int32_t x, int32_t y) {
          return std::pair{tiled(item, x - placeX + 5, 10), tiled(item, y - placeY + 3, 7)};
        });
      });
    }
  }
}

TEST_P(PickedColors, areTakenOnlyWhenAskedForAndOnlyFromACustomMap) {
  const Image layer = colors(width + 1, height + 1);
  setCustomMap(number(), layer);
  values.setPoint(own("Position"), (width + 1) / 2.0, (height + 1) / 2.0);
  for (int32_t item = 1; item <= 6; ++item) {
    values.setPopup(own("Effect Map"), item);
    for (const bool picks : {false, true}) {
      values.setCheckbox(own("Pick Source Color"), picks);
      SCOPED_TRACE("map " + std::to_string(item) + (picks ? " picks" : ""));
      atEveryDepth([&](auto pixel) {
        expectColors<decltype(pixel)>(layer, [&](int32_t x, int32_t y) {
          return picks && item == customMap ? std::pair{x, y} : std::pair{-1, -1};
        });
      });
    }
  }
}

TEST_P(PickedColors, comeFromTheWholeFrameWhenTheLayerIsFitted) {
  const Image layer = colors(16, 12);  // a quarter of the frame each way
  setCustomMap(number(), layer);
  values.setCheckbox(own("Pick Source Color"), true);
  values.setPoint(own("Position"), 16, 14);
  values.setAngle(own("Angle"), 90);
  for (const bool fitted : {false, true}) {
    values.setCheckbox(own("Fit to Layer"), fitted);
    SCOPED_TRACE(fitted ? "fitted" : "in its place");
    atEveryDepth([&](auto pixel) {
      expectColors<decltype(pixel)>(layer, [&](int32_t x, int32_t y) {
        // Else the layer's middle (8, 6) lies on the position, turned by a quarter clockwise.
        return fitted ? std::pair{x / 4, y / 4} : std::pair{8 + (y - 14), 6 - (x - 16)};
      });
    });
  }
}

/// Dots of 16 x 16 at a pitch of 8, each of a colour of its own, so that a pixel tells which one lies on top.
class FrontOrders : public WholeFrame {
 protected:
  struct Place {
    double x, y;
  };

  void SetUp() override {
    WholeFrame::SetUp();
    values.setNumber("Dot Size", 16);
    setPitch(8, 8);
    values.setPoint("Center Position", 24, 40);
    layer = opaquePicture(Depth::k8, 64, 64);
    plain = values;
  }

  /// The colours come from this effector.
  void pickBy(int32_t number) {
    setCustomMap(number, layer);
    values.setCheckbox(numbered("Fit to Layer", number), true);
    values.setCheckbox(numbered("Pick Source Color", number), true);
    values.setPopup(numbered("Tiling", number), tilingExtend);
  }

  /// The top row first, from left to right, the last one on top; or, with places, those farthest from all of them
  /// first.
  template <class Pixel>
  void expectOrder(const std::vector<Place>& places) {
    constexpr Depth depth = standin::PixelFacts<Pixel>::depth;
    const Image delivered = layer.converted(depth);
    std::vector<SquareDot<Pixel>> dots;
    for (int32_t y = -8; y < 72; y += 8) {
      for (int32_t x = -8; x < 72; x += 8) {
        const Pixel& color = delivered.at<Pixel>(std::clamp(x, 0, 63), std::clamp(y, 0, 63));
        dots.push_back({static_cast<double>(x), static_cast<double>(y), 16, throughHsv(color)});
      }
    }
    if (!places.empty()) {
      const auto key = [&](const SquareDot<Pixel>& dot) {
        double nearest = 1e9;
        for (const Place& place : places) {
          nearest = std::min(nearest, std::hypot(dot.x - place.x, dot.y - place.y));
        }
        return nearest;
      };
      std::sort(dots.begin(), dots.end(), [&](const auto& a, const auto& b) { return key(a) > key(b); });
    }
    expectSquares(render(depth, 64, 64), dots);
  }

  void expectOrderAtEveryDepth(const std::vector<Place>& places) {
    atEveryDepth([&](auto pixel) { expectOrder<decltype(pixel)>(places); });
  }

  Image layer;
  standin::ParameterValues plain;
};

TEST_F(FrontOrders, theCenterDotLiesOnTopOnlyWhenItIsAskedFor) {
  pickBy(1);
  expectOrderAtEveryDepth({});
  values.setCheckbox("Center Dot to Front", true);
  // Of four dots over one pixel one is the nearest to a lattice point: no ties.
  expectOrderAtEveryDepth({{24, 40}});
}

TEST_F(FrontOrders, eachEffectorBringsTheDotsAtItsPositionToTheFront) {
  const Place places[] = {{19.3, 30.9}, {44.6, 21.1}, {30.2, 51.7}};
  for (int32_t number = 1; number <= 3; ++number) {
    SCOPED_TRACE("effector " + std::to_string(number));
    values = plain;
    pickBy(number % 3 + 1);
    // Without an effect of its own: the position alone counts.
    values.setCheckbox(numbered("Enable Effector", number), true);
    values.setPopup(numbered("Effect Map", number), radialMap);
    const Place& place = places[number - 1];
    values.setPoint(numbered("Position", number), place.x, place.y);
    for (const bool front : {false, true}) {
      values.setCheckbox(numbered("Center Dot to Front", number), front);
      expectOrderAtEveryDepth(front ? std::vector<Place>{place} : std::vector<Place>{});
    }
    // Two centres: the nearer one counts.
    values.setCheckbox("Center Dot to Front", true);
    expectOrderAtEveryDepth({place, {24, 40}});
  }
}

}  // namespace
}  // namespace vindrel::test
