#include "tests/module/RandomFrame.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

namespace vindrel::test {

using standin::Control;
using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerValue;
using standin::ParameterValues;
using standin::PointValue;

namespace {

std::string textOf(const Image& picture) {
  std::ostringstream text;
  text << picture.width() << " x " << picture.height() << " at " << static_cast<int32_t>(picture.depth()) << " bits, "
       << picture.rowBytes() << " bytes a row, origin " << picture.originX << ", " << picture.originY;
  return text.str();
}

struct ValueText {
  std::string operator()(std::monostate) const { return "none"; }
  std::string operator()(int32_t value) const { return std::to_string(value); }
  std::string operator()(double value) const {
    std::ostringstream text;
    text.precision(17);
    text << value;
    return text.str();
  }
  std::string operator()(const PF_Pixel& value) const {
    std::ostringstream text;
    text << "alpha " << +value.alpha << " red " << +value.red << " green " << +value.green << " blue " << +value.blue;
    return text.str();
  }
  std::string operator()(const PointValue& value) const {
    return (*this)(value.x) + ", " + (*this)(value.y) + (value.percent ? " percent" : "");
  }
  std::string operator()(const LayerValue& value) const {
    if (value.source == LayerValue::Source::kPicture) return textOf(*value.picture);
    return value.source == LayerValue::Source::kItself ? "itself" : "no layer";
  }
};

std::string scaleText(const PF_RationalScale& scale) {
  return std::to_string(scale.num) + "/" + std::to_string(scale.den);
}

double ratio(const PF_RationalScale& scale) {
  return static_cast<double>(scale.num) / static_cast<double>(scale.den);
}

// How much work a frame may be at most: dots in the lattice, each with its outline and the rows that it reaches over.
// Sizes are those that the effectors can bring a dot to at a weight of 3, which a bright float layer may have.
double costOf(const RandomFrame& frame) {
  const ParameterValues& values = frame.values;
  const double scaleX = ratio(frame.request.downsampleX);
  const double scaleY = ratio(frame.request.downsampleY);
  const double scale = std::min(scaleX, scaleY);
  const double dotSize = values.number("Dot Size") * scale;
  double pitchX = 1;
  double pitchY = 1;
  const int32_t between = values.popup("Distance Between");
  if (between == 1 || between == 2) {
    const double added = between == 1 ? dotSize : 0;
    pitchX = std::max(1.0, added + values.number("Dot Distance X") * scaleX);
    pitchY = std::max(1.0, added + values.number("Dot Distance Y") * scaleY);
  }
  const auto cells = [](double length, double pitch, double jitter) {
    return length / pitch + 2 * (1 + std::abs(jitter)) + 1;
  };
  const double dots = cells(48, pitchX, values.number("Distance X")) * cells(48, pitchY, values.number("Distance Y"));
  double size = std::abs(dotSize) * (1 + std::abs(values.number("Size")));
  for (const char* const number : {"1", "2", "3"}) {
    const auto named = [number](const char* name) { return std::string(name) + ' ' + number; };
    if (!values.checkbox(named("Enable Effector"))) continue;
    size = std::max(size, 3 * (std::abs(values.number(named("ABS Size"))) * scale + size));
    size = size * (1 + 3 * std::abs(values.number(named("Ratio Size")) - 1)) +
           3 * std::abs(values.number(named("Offset Size"))) * scale;
  }
  return dots * (60 + size);
}

}  // namespace

std::string RandomFrame::text() const {
  std::ostringstream text;
  text << (smartRoad ? "smart" : "classic") << " road\ninput " << textOf(request.input) << "\nlayer "
       << request.layerWidth << " x " << request.layerHeight << " at " << scaleText(request.downsampleX) << " and "
       << scaleText(request.downsampleY) << "\ntime " << request.currentTime << " step " << request.timeStep
       << " quality " << static_cast<int32_t>(request.quality) << "\noutput " << request.outputWidth << " x "
       << request.outputHeight << " at " << request.outputOriginX << ", " << request.outputOriginY << " padding "
       << request.outputPadding << '\n';
  if (request.requestRect) {
    const PF_LRect& rect = *request.requestRect;
    text << "wanted " << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom << '\n';
  }
  for (const Control& control : values.controls()) {
    if (!control.hasValue()) continue;
    text << control.name << ": " << std::visit(ValueText{}, values.value(control.index)) << '\n';
  }
  return text.str();
}

Image RandomFrames::picture(Depth depth, int32_t width, int32_t height) {
  const double opaque = unit();
  Image made(depth, width, height, happens(0.5) ? whole(0, 6) * 16 : 0);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const double alpha = happens(opaque) ? 1.0 : happens(0.3) ? 0.0 : unit();
      const double brightest = depth == Depth::k32 && happens(0.2) ? 3.0 : 1.0;
      const auto color = [&] { return happens(0.2) ? std::round(unit()) : unit() * brightest; };
      standin::withPixelOf(depth, [&](auto pixel) {
        using Facts = standin::PixelFacts<decltype(pixel)>;
        const auto channel = [](double value) {
          return static_cast<typename Facts::Channel>(value * static_cast<double>(Facts::full));
        };
        pixel.alpha = channel(alpha);
        pixel.red = channel(color());
        pixel.green = channel(color());
        pixel.blue = channel(color());
        made.at<decltype(pixel)>(x, y) = pixel;
      });
    }
  }
  return made;
}

double RandomFrames::number(double validLeast, double validMost, double usualLeast, double usualMost, double usual) {
  const double kind = unit();
  if (kind < 0.3) return usual;
  if (kind < 0.75) return between(usualLeast, usualMost);
  const double share = unit();
  const double reach = (validMost - validLeast) * share * share * share;
  if (kind < 0.86) return validLeast + reach;
  if (kind < 0.90) return validMost;
  if (kind < 0.94) return validLeast;
  return kind < 0.97 ? validLeast - reach : validMost + reach;
}

int32_t RandomFrames::choice(int32_t count) {
  if (!happens(0.05)) return whole(1, count);
  constexpr int32_t odd[] = {0, -1, 7, 100, std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()};
  return odd[whole(0, 5)];
}

double RandomFrames::angle() {
  const double kind = unit();
  if (kind < 0.3) return 0;
  if (kind < 0.5) return 90.0 * whole(-5, 5);
  return kind < 0.95 ? between(-180, 180) : between(-32000, 32000);
}

PointValue RandomFrames::point(const FrameRequest& request) {
  const double width = request.fullWidth();
  const double height = request.fullHeight();
  const double kind = unit();
  if (kind < 0.2) return {50, 50, true};
  if (kind < 0.4) return {static_cast<double>(whole(0, 48)), static_cast<double>(whole(0, 48)), false};
  if (kind < 0.8) return {between(0, width), between(0, height), false};
  if (kind < 0.97) return {between(-width, 2 * width), between(-height, 2 * height), false};
  return {between(-3000, 3000), between(-3000, 3000), false};
}

LayerValue RandomFrames::layer(const FrameRequest& request) {
  const double kind = unit();
  if (kind < 0.15) return LayerValue::none();
  if (kind < 0.35) return LayerValue::itself();
  const Depth depth = happens(0.7) ? request.depth() : standin::kAllDepths[whole(0, 2)];
  int32_t width = whole(1, 60);
  int32_t height = whole(1, 60);
  const double size = unit();
  if (size < 0.1) width = 0;
  if (size > 0.05 && size < 0.15) height = 0;
  if (size > 0.15 && size < 0.25) width = height = 1;
  if (size > 0.25 && size < 0.5) {
    width = request.fullWidth();
    height = request.fullHeight();
  }
  Image made = picture(depth, width, height);
  if (happens(0.2)) {
    made.originX = whole(-20, 20);
    made.originY = whole(-20, 20);
  }
  return LayerValue::of(std::move(made));
}

FrameRequest RandomFrames::request() {
  FrameRequest made;
  constexpr PF_RationalScale scales[] = {{1, 1}, {1, 1}, {1, 1}, {1, 2}, {1, 4}, {2, 3}};
  made.downsampleX = scales[whole(0, 5)];
  made.downsampleY = happens(0.8) ? made.downsampleX : scales[whole(0, 5)];
  const auto full = [this](const PF_RationalScale& scale) {
    return static_cast<int32_t>(whole(happens(0.1) ? 1 : 8, 48) * static_cast<double>(scale.den) /
                                static_cast<double>(scale.num));
  };
  made.layerWidth = full(made.downsampleX);
  made.layerHeight = full(made.downsampleY);
  const PF_LRect rect = made.layerRect();
  made.input = picture(standin::kAllDepths[whole(0, 2)], rect.right, rect.bottom);
  if (happens(0.3)) {
    const int32_t left = whole(0, rect.right / 2);
    const int32_t top = whole(0, rect.bottom / 2);
    made.input = made.input.part({left, top, whole(left, rect.right), whole(top, rect.bottom)});
  }
  if (happens(0.1)) {
    made.input.originX += whole(-30, 30);
    made.input.originY += whole(-30, 30);
  }
  made.currentTime = happens(0.7) ? whole(0, 300) : whole(-100000, 100000);
  made.timeStep = happens(0.9) ? whole(1, 10) : whole(-3, 3);
  made.quality = happens(0.7) ? PF_Quality_HI : PF_Quality_LO;
  if (happens(0.5)) made.outputPadding = 16 * whole(0, 3);
  if (happens(0.3)) {
    made.outputWidth = whole(1, 60);
    made.outputHeight = whole(1, 60);
    made.outputOriginX = whole(-20, 20);
    made.outputOriginY = whole(-20, 20);
  }
  if (happens(0.3)) {
    const int32_t left = whole(-5, 30);
    const int32_t top = whole(-5, 30);
    made.requestRect = PF_LRect{left, top, left + whole(0, 40), top + whole(0, 40)};
  }
  return made;
}

ParameterValues::Value RandomFrames::valueOf(const Control& control, const FrameRequest& frame) {
  const PF_ParamDefUnion& u = control.definition.u;
  switch (control.type) {
    case PF_Param_LAYER:
      return layer(frame);
    case PF_Param_SLIDER:
      return static_cast<int32_t>(number(u.sd.valid_min, u.sd.valid_max, u.sd.slider_min, u.sd.slider_max, 0));
    case PF_Param_ANGLE:
      return angle();
    case PF_Param_CHECKBOX:
      return happens(0.97) ? whole(0, 1) : happens(0.5) ? 256 : -1;
    case PF_Param_COLOR: {
      const auto byte = [this] { return static_cast<A_u_char>(happens(0.3) ? 255 * whole(0, 1) : whole(0, 255)); };
      return PF_Pixel{happens(0.8) ? A_u_char{255} : byte(), byte(), byte(), byte()};
    }
    case PF_Param_POINT:
      return point(frame);
    case PF_Param_POPUP:
      return choice(u.pd.num_choices);
    case PF_Param_FLOAT_SLIDER:
      return number(static_cast<double>(u.fs_d.valid_min), static_cast<double>(u.fs_d.valid_max),
                    static_cast<double>(u.fs_d.slider_min), static_cast<double>(u.fs_d.slider_max),
                    static_cast<double>(u.fs_d.dephault));
    default:
      return std::monostate{};
  }
}

RandomFrame RandomFrames::next() {
  RandomFrame frame;
  do {
    frame.request = request();
    frame.values = ParameterValues(*controls_);
    frame.smartRoad = happens(0.5);
    for (const Control& control : *controls_) frame.values.setValue(control.index, valueOf(control, frame.request));
  } while (costOf(frame) > 2e5);
  return frame;
}

}  // namespace vindrel::test
