#include "cli/screens/Separation.h"

#include <algorithm>
#include <cmath>

#include "cli/tone/PrepareLayers.h"

namespace cli {

double inkAmount(Channel channel, double red, double green, double blue, const BlackGeneration& black) {
  const double taken[] = {1.0 - red, 1.0 - green, 1.0 - blue};
  const double grey = std::min({taken[0], taken[1], taken[2]});
  const double key = black.strength * std::max(0.0, (grey - black.start) / (1.0 - black.start));
  const auto colored = [&](int ink) { return key < 1.0 ? (taken[ink] - key) / (1.0 - key) : 0.0; };
  const auto light = [&] {
    return static_cast<double>(
        toneOf(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue), Preparation::Tone::area));
  };
  switch (channel) {
    case Channel::cyan:
      return colored(0);
    case Channel::magenta:
      return colored(1);
    case Channel::yellow:
      return colored(2);
    case Channel::black:
      return key;
    case Channel::dark:
      return 1.0 - light();
    case Channel::light:
      break;
  }
  return light();
}

double leveled(double amount, const InkLevels& levels) {
  const double share = std::clamp((amount - levels.from) / (levels.to - levels.from), 0.0, 1.0);
  return levels.gamma == 1.0 ? share : std::pow(share, levels.gamma);
}

standin::Image separated(const Plane& picture, const Pass& pass, const BlackGeneration& black) {
  standin::Image screen(standin::Depth::k32, picture.width, picture.height);
  const float* value = picture.values.data();
  for (int32_t y = 0; y < picture.height; ++y) {
    for (int32_t x = 0; x < picture.width; ++x, value += 4) {
      const double alpha = std::clamp(static_cast<double>(value[3]), 0.0, 1.0);
      const auto color = [&](int i) {
        return alpha > 0.0 ? std::clamp(static_cast<double>(value[i]) / alpha, 0.0, 1.0) : 0.0;
      };
      const double amount = inkAmount(pass.channel, color(0), color(1), color(2), black);
      const auto grey = static_cast<float>(1.0 - leveled(amount, pass.levels) * alpha);
      screen.at<PF_PixelFloat>(x, y) = {1.0F, grey, grey, grey};
    }
  }
  return screen;
}

void layInk(const standin::Image& dots, Pass::Lay lay, int32_t right, int32_t down, standin::Image& print) {
  const standin::Image ink = dots.converted(standin::Depth::k32);
  const auto laid = [&](float below, float color, float alpha) {
    return lay == Pass::Lay::multiply ? below * (1.0F - alpha + alpha * color) : below * (1.0F - alpha) + alpha * color;
  };
  for (int32_t y = 0; y < print.height(); ++y) {
    for (int32_t x = 0; x < print.width(); ++x) {
      const int32_t fromX = x - right;
      const int32_t fromY = y - down;
      if (fromX < 0 || fromY < 0 || fromX >= ink.width() || fromY >= ink.height()) continue;
      const PF_PixelFloat& dot = ink.at<PF_PixelFloat>(fromX, fromY);
      PF_PixelFloat& pixel = print.at<PF_PixelFloat>(x, y);
      pixel.red = laid(pixel.red, dot.red, dot.alpha);
      pixel.green = laid(pixel.green, dot.green, dot.alpha);
      pixel.blue = laid(pixel.blue, dot.blue, dot.alpha);
    }
  }
}

}  // namespace cli
