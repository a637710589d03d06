// Whole frames through the module's entry, and what their pixels are held against: squares whose corners lie on pixel
// corners, so that every pixel is either a dot's colour or nothing.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/module/HostedModule.h"
#include "tests/module/PlainColor.h"
#include "tests/support/PixelText.h"
#include "tests/support/PopupItems.h"

namespace vindrel::test {

inline std::string bitsOf(standin::Depth depth) {
  return " at " + std::to_string(static_cast<int32_t>(depth)) + " bits";
}

/// "Effect Map 2" of "Effect Map" and 2.
inline std::string numbered(const char* name, int32_t number) {
  return std::string(name) + ' ' + std::to_string(number);
}

/// Equal at the whole-number depths; in float within a few units of single precision.
template <class Pixel>
bool sameColor(const Pixel& a, const Pixel& b) {
  const auto same = [](auto one, auto other) {
    if constexpr (PlainDepth<Pixel>::isFloat) {
      return std::abs(static_cast<double>(one) - static_cast<double>(other)) <= 1e-6;
    } else {
      return one == other;
    }
  };
  return same(a.alpha, b.alpha) && same(a.red, b.red) && same(a.green, b.green) && same(a.blue, b.blue);
}

/// 0 to 1: the alpha of a pixel.
inline double alphaAt(const standin::Image& picture, int32_t x, int32_t y) {
  return standin::withPixelOf(picture.depth(), [&](auto pixel) {
    using Pixel = decltype(pixel);
    return static_cast<double>(picture.at<Pixel>(x, y).alpha) / PlainDepth<Pixel>::full;
  });
}

/// Covered pixels, each counted by its alpha, and where their middle lies.
struct Coverage {
  double area = 0;
  double x = 0;
  double y = 0;
};

inline Coverage coverageOf(const standin::Image& picture) {
  Coverage sum;
  for (int32_t y = 0; y < picture.height(); ++y) {
    for (int32_t x = 0; x < picture.width(); ++x) {
      const double alpha = alphaAt(picture, x, y);
      sum.area += alpha;
      sum.x += alpha * (x + 0.5);
      sum.y += alpha * (y + 0.5);
    }
  }
  if (sum.area > 0) {
    sum.x /= sum.area;
    sum.y /= sum.area;
  }
  return sum;
}

/// One square dot of full opacity, centre and side in pixels, its sides on pixel edges.
template <class Pixel>
struct SquareDot {
  double x = 0;
  double y = 0;
  double side = 0;
  Pixel color{};

  bool covers(int32_t px, int32_t py) const {
    return std::abs(px + 0.5 - x) < side / 2 && std::abs(py + 0.5 - y) < side / 2;
  }
};

/// Every pixel is that of the last square that covers it, and transparent black where none does. No square may end at
/// the left edge: it would leave a trace there.
template <class Pixel>
void expectSquares(const standin::Image& picture, const std::vector<SquareDot<Pixel>>& squares) {
  standin::Image expected(picture.depth(), picture.width(), picture.height());
  for (const SquareDot<Pixel>& dot : squares) {
    const auto left = std::max(0, static_cast<int32_t>(dot.x - dot.side / 2));
    const auto top = std::max(0, static_cast<int32_t>(dot.y - dot.side / 2));
    for (int32_t y = top; y < picture.height() && y < dot.y + dot.side / 2; ++y) {
      for (int32_t x = left; x < picture.width() && x < dot.x + dot.side / 2; ++x) {
        expected.at<Pixel>(x, y) = dot.color;
      }
    }
  }
  for (int32_t y = 0; y < picture.height(); ++y) {
    for (int32_t x = 0; x < picture.width(); ++x) {
      const Pixel& found = picture.at<Pixel>(x, y);
      ASSERT_TRUE(sameColor(found, expected.at<Pixel>(x, y))) << "pixel " << x << ", " << y << " is " << textOf(found)
                                                              << " and should be " << textOf(expected.at<Pixel>(x, y));
    }
  }
}

/// Frames of plain square dots over nothing: opaque orange dots 8 pixels wide, one at the middle of the frame and the
/// next ones 1000 pixels away, no mask, no background.
class WholeFrame : public HostedModule {
 protected:
  void SetUp() override {
    HostedModule::SetUp();
    values = host.defaults();
    values.setPopup("Dot Shape", square);
    values.setNumber("Dot Size", 8);
    values.setColor("Dot Color", ownColor);
    values.setPopup("Mask", maskNone);
    values.setCheckbox("Clear Background", true);
    setPitch(1000, 1000);
  }

  void setPitch(double x, double y) {
    values.setPopup("Distance Between", betweenCenters);
    values.setNumber("Dot Distance X", x);
    values.setNumber("Dot Distance Y", y);
  }

  /// Switches effector number on with weight 1 at every place: a linear map without a fade.
  void setFullWeight(int32_t number) {
    values.setCheckbox(numbered("Enable Effector", number), true);
    values.setPopup(numbered("Effect Map", number), linearMap);
    values.setNumber(numbered("Falloff", number), 0);
  }

  /// Switches effector number on with a map of its own.
  void setCustomMap(int32_t number, const standin::Image& layer) {
    values.setCheckbox(numbered("Enable Effector", number), true);
    values.setPopup(numbered("Effect Map", number), customMap);
    values.setLayer(numbered("Custom Map Layer", number), standin::LayerValue::of(layer));
  }

  /// A frame of the depth over an opaque input, by the classic road.
  standin::Image render(standin::Depth depth, int32_t width, int32_t height) {
    standin::FrameRequest request;
    request.input = opaquePicture(depth, width, height);
    return render(request);
  }

  standin::Image render(const standin::FrameRequest& request) {
    standin::RenderResult result = host.renderClassic(request, values);
    EXPECT_EQ(result.error, 0);
    EXPECT_TRUE(result.rendered);
    EXPECT_EQ(result.output.width(), request.input.width());
    return std::move(result.output);
  }

  /// The items of a popup: what the control says of itself, or more where it names fewer than it counts.
  int32_t itemsOf(const std::string& popup) { return host.control(popup)->definition.u.pd.num_choices; }

  static constexpr PF_Pixel ownColor{255, 255, 125, 20};
  standin::ParameterValues values;
};

/// Calls work with a pixel of each depth in turn.
template <class Work>
void atEveryDepth(Work&& work) {
  for (const standin::Depth depth : standin::kAllDepths) {
    SCOPED_TRACE(std::to_string(static_cast<int32_t>(depth)) + " bits");
    standin::withPixelOf(depth, work);
  }
}

}  // namespace vindrel::test
