#include "cli/tone/PrepareLayers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>

#include "cli/EffectErrors.h"
#include "cli/HostControls.h"
#include "cli/UserError.h"

namespace cli {
namespace {

using standin::ByIndex;
using standin::FrameRequest;
using standin::Image;
using standin::ParameterValues;
using Controls = std::vector<ControlFacts>;

constexpr double degreesPerTurn = 360.0;

/// The number of the effector whose map a layer control is, as text; empty for a layer of another kind.
std::string effectorOf(const std::string& layerName) {
  constexpr std::string_view start = "Custom Map Layer ";
  return layerName.starts_with(start) ? layerName.substr(start.size()) : std::string();
}

std::string shown(const Controls& controls, const std::string& name, const ParameterValues& values) {
  return shownSetting(findControl(controls, name), values);
}

bool mapIsUsed(const Controls& controls, const std::string& effector, const ParameterValues& values) {
  return shown(controls, "Enable Effector " + effector, values) == "on" &&
         shown(controls, "Effect Map " + effector, values) == "Use Custom Map";
}

struct Pitch {
  double x, y;
};

/// As the effect has it, less than a pixel being as a pixel.
Pitch pitchOf(const Controls& controls, const ParameterValues& values) {
  const double gap = shown(controls, "Distance Between", values) == "Dots" ? values.number("Dot Size") : 0.0;
  return {std::max(1.0, values.number("Dot Distance X") + gap), std::max(1.0, values.number("Dot Distance Y") + gap)};
}

Edge turned(double x, double y, double degrees) {
  const double angle = degrees * 2.0 * std::numbers::pi / degreesPerTurn;
  return {x * std::cos(angle) - y * std::sin(angle), x * std::sin(angle) + y * std::cos(angle)};
}

/// The patch to average over, in pixels of the layer.
Patch patchFor(const Controls& controls, const Preparation& preparation, const std::string& effector,
               const Image& layer, const Image& picture, const ParameterValues& values) {
  Pitch sides{preparation.blurPixels, preparation.blurPixels};
  double degrees = 0.0;
  if (preparation.blur == Preparation::Blur::pitch) {
    sides = pitchOf(controls, values);
    degrees = values.angle("Global Rotation");
  }
  double scaleX = 1.0;
  double scaleY = 1.0;
  if (!effector.empty()) {
    if (values.checkbox("Fit to Layer " + effector)) {
      scaleX = static_cast<double>(layer.width()) / picture.width();
      scaleY = static_cast<double>(layer.height()) / picture.height();
    } else {
      degrees -= values.angle("Angle " + effector);
    }
  }
  const Edge first = turned(sides.x, 0.0, degrees);
  const Edge second = turned(0.0, sides.y, degrees);
  return {{first.x * scaleX, first.y * scaleY}, {second.x * scaleX, second.y * scaleY}};
}

Plane fitted(const Plane& plane, Preparation::Fit fit, const Image& picture) {
  if (plane.width == picture.width() && plane.height == picture.height()) return plane;
  double left = 0.0;
  double top = 0.0;
  if (fit == Preparation::Fit::cover) {
    const double scale = std::min(static_cast<double>(plane.width) / picture.width(),
                                  static_cast<double>(plane.height) / picture.height());
    left = (plane.width - picture.width() * scale) / 2.0;
    top = (plane.height - picture.height() * scale) / 2.0;
  }
  return resampled(plane, left, top, plane.width - left, plane.height - top, picture.width(), picture.height());
}

/// Tone times alpha, and alpha.
Plane tonesOf(const Plane& plane, Preparation::Tone tone) {
  Plane tones{plane.width, plane.height, 2, {}};
  tones.values.reserve(plane.values.size() / 2);
  for (std::size_t i = 0; i < plane.values.size(); i += 4) {
    const float* const pixel = plane.values.data() + i;
    const float alpha = pixel[3];
    const float factor = alpha > 0.0F ? 1.0F / alpha : 0.0F;
    tones.values.push_back(toneOf(pixel[0] * factor, pixel[1] * factor, pixel[2] * factor, tone) * alpha);
    tones.values.push_back(alpha);
  }
  return tones;
}

/// A map that has the dots cover what the tones ask for. Where the layer is clear they cover the least.
Image mapOf(const Plane& tones, const ToneCurve& curve) {
  constexpr int32_t finest = 4096;
  std::array<float, finest + 1> weights{};
  for (int32_t i = 0; i <= finest; ++i) {
    weights[static_cast<std::size_t>(i)] = static_cast<float>(curve.weightFor(static_cast<double>(i) / finest));
  }
  Image map(standin::Depth::k32, tones.width, tones.height);
  const float* value = tones.values.data();
  for (int32_t y = 0; y < tones.height; ++y) {
    for (int32_t x = 0; x < tones.width; ++x, value += 2) {
      float covered = 0.0F;
      if (value[1] > 0.0F) {
        const float tone = std::clamp(value[0] / value[1], 0.0F, 1.0F);
        covered = curve.printsDark() ? 1.0F - tone : tone;
      }
      const float weight = weights[static_cast<std::size_t>(std::lround(covered * finest))];
      map.at<PF_PixelFloat>(x, y) = {1.0F, weight, weight, weight};
    }
  }
  return map;
}

/// A small frame that holds some sixteen dots a side, at the frame's own resolution. Always the first in time, so that
/// dots that jitter are measured alike for every frame, whichever of a shot is drawn first.
FrameRequest trialFrame(const FrameRequest& frame, double pitch) {
  const auto factor = static_cast<int32_t>(frame.downsampleX.den);
  const double drawn = pitch / factor;
  const auto side = static_cast<int32_t>(std::ceil(std::max(std::clamp(16.0 * drawn, 96.0, 384.0), 5.0 * drawn)));
  FrameRequest trial = frame;
  trial.currentTime = 0;
  trial.input = Image(frame.depth(), side, side);  // at the frame's own depth, since each rounds in its way
  trial.layerWidth = side * factor;
  trial.layerHeight = side * factor;
  return trial;
}

/// The share that is covered, by a window that fades to the rim: where the lattice is cut off there doesn't count.
double coveredShare(const Image& result) {
  const Image drawn = result.converted(standin::Depth::k32);
  const auto window = [](int32_t place, int32_t count) {
    return 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * (place + 0.5) / count);
  };
  double covered = 0.0;
  double whole = 0.0;
  for (int32_t y = 0; y < drawn.height(); ++y) {
    for (int32_t x = 0; x < drawn.width(); ++x) {
      const double weight = window(x, drawn.width()) * window(y, drawn.height());
      covered += weight * static_cast<double>(drawn.at<PF_PixelFloat>(x, y).alpha);
      whole += weight;
    }
  }
  return covered / whole;
}

/// The frame's settings as far as they say how large the dots of one effector are, on bare ground.
ParameterValues trialValues(const Controls& controls, const std::string& effector, const ParameterValues& values) {
  ParameterValues trial = values;
  const auto set = [&](const std::string& name, const char* text) {
    const ControlFacts& control = findControl(controls, name);
    setValue(control, parseControlValue(control, text), trial);
  };
  for (const char* other : {"1", "2", "3"}) {
    if (other != effector) set(std::string("Enable Effector ") + other, "off");
  }
  set("Fit to Layer " + effector, "on");
  set("Tiling " + effector, "Extend Edge");
  set("Pick Source Color " + effector, "off");
  set("Clear Background", "on");
  set("Mask", "None");
  set("Center Position", "50%,50%");
  set("Global Rotation Center", "Center");
  return trial;
}

/// All that a curve hangs on.
std::string fingerprint(const Controls& controls, const ParameterValues& trial, const FrameRequest& request) {
  std::string text = std::to_string(request.downsampleX.den) + ";" + std::to_string(request.input.width()) + ";" +
                     std::to_string(static_cast<int>(request.depth()));
  for (const ControlFacts& control : controls) text += ";" + shownSetting(control, trial);
  return text;
}

}  // namespace

float toneOf(float red, float green, float blue, Preparation::Tone tone) {
  const auto held = [](float channel) { return std::clamp(channel, 0.0F, 1.0F); };
  if (tone != Preparation::Tone::light) {
    return held(0.298912F * held(red) + 0.586611F * held(green) + 0.114478F * held(blue));
  }
  const auto lightOf = [&](float channel) {
    const float coded = held(channel);
    return coded <= 0.04045F ? coded / 12.92F : std::pow((coded + 0.055F) / 1.055F, 2.4F);
  };
  return held(0.2126F * lightOf(red) + 0.7152F * lightOf(green) + 0.0722F * lightOf(blue));
}

const ToneCurve& LayerPreparer::curveFor(const std::string& effector, int32_t layer, const FrameRequest& request,
                                         const ParameterValues& values) {
  ParameterValues trial = trialValues(controls_, effector, values);
  const Pitch pitch = pitchOf(controls_, values);
  const FrameRequest frame = trialFrame(request, std::max(pitch.x, pitch.y));
  std::string settings = effector + ";" + fingerprint(controls_, trial, frame);
  if (curve_ && settings == measured_) return *curve_;
  curve_.emplace([&](double weight) {
    Image map(standin::Depth::k32, 1, 1);
    const auto grey = static_cast<float>(weight);
    map.at<PF_PixelFloat>(0, 0) = {1.0F, grey, grey, grey};
    trial.setLayer(ByIndex{layer}, standin::LayerValue::of(std::move(map)));
    const standin::RenderResult result = host_.renderClassic(frame, trial);
    host_.log().clear();
    host_.books().clear();
    checkEffect(host_, result.error, "while its dots were measured");
    return coveredShare(result.output);
  });
  measured_ = std::move(settings);
  return *curve_;
}

Plane LayerPreparer::smoothed(const Smoothing& smoothing, const standin::LayerValue& given, const Image& picture) {
  const Preparation& preparation = smoothing.preparation;
  Plane plane = premultiplied(given.source == standin::LayerValue::Source::kItself ? picture : *given.picture);
  if (preparation.fit != Preparation::Fit::none) plane = fitted(plane, preparation.fit, picture);
  if (smoothing.tones) plane = tonesOf(plane, preparation.tone);
  if (preparation.blur != Preparation::Blur::none) plane = averaged(plane, smoothing.patch);
  return plane;
}

const Plane& LayerPreparer::planeFor(int32_t index, const Preparation& preparation, const standin::LayerValue& given,
                                     const Image& picture, const ParameterValues& values) {
  const std::string effector = effectorOf(controls_[static_cast<std::size_t>(index - 1)].name);
  const bool isItself = given.source == standin::LayerValue::Source::kItself;
  Smoothing wanted{preparation, picture.width(), picture.height(), false, {}, isItself ? nullptr : given.picture};
  wanted.tones = preparation.tone != Preparation::Tone::none && mapIsUsed(controls_, effector, values);
  if (preparation.blur != Preparation::Blur::none) {
    const Image& size = isItself || preparation.fit != Preparation::Fit::none ? picture : *given.picture;
    wanted.patch = patchFor(controls_, preparation, effector, size, picture, values);
  }
  auto& [smoothing, plane] = smoothed_[index];
  // The picture that is rendered may be another one every time, in the same place of memory.
  if (isItself || smoothing != wanted) {
    plane = {};
    plane = smoothed(wanted, given, picture);
    smoothing = std::move(wanted);
  }
  return plane;
}

void LayerPreparer::prepare(const std::map<int32_t, Preparation>& preparations, const Image& picture,
                            const FrameRequest& request, ParameterValues& values) {
  for (const auto& [index, preparation] : preparations) {
    const auto* const given = std::get_if<standin::LayerValue>(&values.value(index));
    if (given == nullptr || given->source == standin::LayerValue::Source::kNone || !preparation.any()) continue;
    const ControlFacts& control = controls_[static_cast<std::size_t>(index - 1)];
    const std::string effector = effectorOf(control.name);
    if (preparation.tone != Preparation::Tone::none && effector.empty()) {
      throw UserError("'" + control.name + "' sizes no dots; 'tone' is for the map layers of effectors");
    }
    const Plane& plane = planeFor(index, preparation, *given, picture, values);
    if (plane.channels == 2) {
      const ToneCurve& curve = curveFor(effector, index, request, values);
      if (curve.most() - curve.least() < 0.001) {
        throw UserError("'" + control.name + "' is to give tone, but no dot changes its size or opacity by effector " +
                        effector);
      }
      values.setLayer(ByIndex{index}, standin::LayerValue::of(mapOf(plane, curve)));
    } else {
      values.setLayer(ByIndex{index}, standin::LayerValue::of(pictureOf(plane)));
    }
  }
}

}  // namespace cli
