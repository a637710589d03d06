#include "frei0r/Instance.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <utility>

#include "cli/HostControls.h"
#include "cli/UserError.h"
#include "cli/presets/PresetStack.h"

namespace video {
namespace {

using standin::FrameRequest;
using standin::Image;

/// A filter is told the time of a frame and not how many there are in a second, which moving jitter counts in.
cli::FrameRate frameRateOfProcess() {
  const char* const given = std::getenv("VINDREL_FPS");
  if (given == nullptr || *given == '\0') return {};
  try {
    return cli::frameRateFrom(given);
  } catch (const cli::UserError&) {
    complain("VINDREL_FPS takes a number from 1 to 999, or two as in 24000/1001, not '" + std::string(given) + "'");
    return {};
  }
}

void takePixels(const uint8_t* in, Image& image) {
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x, in += 4) image.at<PF_Pixel>(x, y) = {in[3], in[0], in[1], in[2]};
  }
}

/// The drawn part in its place, clear around it.
void givePixels(const Image& image, int32_t width, int32_t height, uint8_t* out) {
  std::memset(out, 0, static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  const int32_t firstX = std::max(0, -image.originX);
  const int32_t endX = std::min(image.width(), width - image.originX);
  for (int32_t y = std::max(0, -image.originY); y < std::min(image.height(), height - image.originY); ++y) {
    for (int32_t x = firstX; x < endX; ++x) {
      const PF_Pixel pixel = image.at<PF_Pixel>(x, y);
      uint8_t* const to =
          out + (static_cast<std::ptrdiff_t>(y + image.originY) * width + x + image.originX) * std::ptrdiff_t{4};
      to[0] = pixel.red;
      to[1] = pixel.green;
      to[2] = pixel.blue;
      to[3] = pixel.alpha;
    }
  }
}

}  // namespace

Instance::Instance(std::shared_ptr<Effect> effect, int32_t width, int32_t height)
    : effect_(std::move(effect)),
      width_(width),
      height_(height),
      frameRate_(frameRateOfProcess()),
      base_(effect_->session.host().defaults()),
      preparer_(effect_->session.host(), effect_->session.controls()) {}

void Instance::setPreset(const std::string& file) {
  // Some programs give every value anew with every frame.
  if (file == preset_) return;
  preset_ = file;
  const std::scoped_lock lock(effect_->mutex);
  base_ = effect_->session.host().defaults();
  preparations_.clear();
  if (file.empty()) return;
  try {
    const cli::PresetStack presets =
        cli::PresetStack({file}, cli::PathsOfPreset::besideIt).scaled({}, height_, effect_->session.controls());
    if (!presets.layers().front().preset.animation.empty()) {
      complain("preset '" + file + "': its keys over time are left out; the video program's own move values");
    }
    base_ = effect_->session.values(presets, {}, {});
    preparations_ = presets.preparations(effect_->session.controls());
  } catch (const std::exception& error) {
    complain(error.what());
  }
}

void Instance::set(const cli::ControlFacts& control, const cli::ControlValue& value) {
  const std::scoped_lock lock(effect_->mutex);
  if (value == defaultOf(control)) {
    given_.erase(control.index);
  } else {
    given_[control.index] = value;
  }
}

cli::ControlValue Instance::value(const cli::ControlFacts& control) const {
  const auto found = given_.find(control.index);
  return found == given_.end() ? defaultOf(control) : found->second;
}

int32_t Instance::frameAt(double seconds) const {
  constexpr double lastFrame = 1'000'000.0;
  // No film goes back that far: it is how a missing time looks, which ffmpeg gives where it had to copy the frame.
  constexpr double noTime = -1e9;
  if (!std::isfinite(seconds) || seconds < noTime) return lastFrame_ + 1;
  return static_cast<int32_t>(std::clamp(std::round(seconds * frameRate_.framesPerSecond()), 0.0, lastFrame));
}

FrameRequest Instance::requestFor(int32_t frame, const uint8_t* in) const {
  FrameRequest request;
  request.input = Image(standin::Depth::k8, width_, height_);
  takePixels(in, request.input);
  request.timeStep = frameRate_.step;
  request.timeScale = static_cast<A_u_long>(frameRate_.scale);
  request.currentTime = frame * request.timeStep;
  request.totalTime = std::max(request.currentTime + request.timeStep, 300 * request.timeStep);
  return request;
}

void Instance::draw(double seconds, const uint8_t* in, uint8_t* out) {
  const std::scoped_lock lock(effect_->mutex);
  try {
    standin::ParameterValues values = base_;
    for (const auto& [index, value] : given_) {
      cli::setValue(effect_->session.controls().at(static_cast<std::size_t>(index - 1)), value, values);
    }
    standin::StandInHost& host = effect_->session.host();
    lastFrame_ = frameAt(seconds);
    const FrameRequest request = requestFor(lastFrame_, in);
    preparer_.prepare(preparations_, request.input, request, values);
    const standin::RenderResult result =
        host.smartRoadOffered() ? host.renderSmart(request, values) : host.renderClassic(request, values);
    // Notes of single calls are for tests; over a film they would pile up.
    host.log().clear();
    host.books().clear();
    effect_->session.check(result.error, "while drawing");
    if (!result.rendered) throw cli::EffectError("the effect drew nothing");
    givePixels(result.output, width_, height_, out);
    return;
  } catch (const std::exception& error) {
    // The same trouble in every frame is told once.
    if (lastComplaint_ != error.what()) complain(lastComplaint_ = error.what());
  }
  if (in != out) std::memcpy(out, in, static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * 4);
}

}  // namespace video
