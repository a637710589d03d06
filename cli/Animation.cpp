#include "cli/Animation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "ae/Constants.h"
#include "cli/HostControls.h"
#include "cli/ImageFile.h"
#include "cli/UserError.h"

namespace cli {
namespace {

bool goesInSteps(const ControlFacts& control) {
  return control.kind == ControlKind::checkBox || control.kind == ControlKind::choice ||
         (control.flags & PF_ParamFlag_CANNOT_INTERP) != 0;
}

double between(double from, double to, double part) {
  return from + (to - from) * part;
}

uint8_t channelBetween(uint8_t from, uint8_t to, double part) {
  return static_cast<uint8_t>(std::clamp(std::floor(between(from, to, part) + 0.5), 0.0, 255.0));
}

/// How far the second value is from the first: with its sign for numbers, along the straight way for others.
double distanceOf(const ControlValue& from, const ControlValue& to) {
  if (const auto* a = std::get_if<double>(&from)) return std::get<double>(to) - *a;
  if (const auto* a = std::get_if<int32_t>(&from)) return static_cast<double>(std::get<int32_t>(to)) - *a;
  if (const auto* a = std::get_if<Place>(&from)) {
    const auto& b = std::get<Place>(to);
    return std::hypot(b.x - a->x, b.y - a->y);
  }
  const auto& a = std::get<Color>(from);
  const auto& b = std::get<Color>(to);
  return std::hypot(double{1} * b.red - a.red, double{1} * b.green - a.green, double{1} * b.blue - a.blue);
}

/// A Bezier may swing beyond its keys, but no control beyond its range.
ControlValue valueBetween(const ControlFacts& control, const ControlValue& from, const ControlValue& to, double part) {
  const auto held = [&](double value) {
    const bool hasRange = control.kind == ControlKind::number || control.kind == ControlKind::wholeNumber;
    return hasRange ? std::clamp(value, control.validMin, control.validMax) : value;
  };
  if (const auto* a = std::get_if<double>(&from)) return held(between(*a, std::get<double>(to), part));
  if (const auto* a = std::get_if<int32_t>(&from)) {
    return static_cast<int32_t>(std::floor(held(between(*a, std::get<int32_t>(to), part)) + 0.5));
  }
  if (const auto* a = std::get_if<Place>(&from)) {
    const auto& b = std::get<Place>(to);
    return Place{between(a->x, b.x, part), between(a->y, b.y, part), a->percent};
  }
  const auto& a = std::get<Color>(from);
  const auto& b = std::get<Color>(to);
  return Color{channelBetween(a.red, b.red, part), channelBetween(a.green, b.green, part),
               channelBetween(a.blue, b.blue, part)};
}

bool sameUnits(const ControlValue& a, const ControlValue& b) {
  const auto* first = std::get_if<Place>(&a);
  const auto* second = std::get_if<Place>(&b);
  return first == nullptr || second == nullptr || first->percent == second->percent;
}

}  // namespace

ControlValue parseKeyValue(const ControlFacts& control, const std::string& text) {
  const std::size_t times = text.find('x');
  if (control.kind != ControlKind::angle || times == std::string::npos) return parseControlValue(control, text);
  int32_t turns = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + times, turns);
  const bool isNumber = error == std::errc() && end == text.data() + times && std::abs(turns) < 91;
  if (!isNumber) throw UserError("'" + control.name + "' takes turns as in 2x+45, not '" + text + "'");
  const std::string rest = text.substr(times + 1);
  const double degrees = rest.empty() ? 0.0 : std::get<double>(parseControlValue(control, rest));
  return parseControlValue(control, shownNumber(360.0 * turns + degrees));
}

Animation::Animation(std::vector<ControlFacts> controls, standin::ParameterValues base, FrameRate rate, int32_t start)
    : controls_(std::move(controls)), base_(std::move(base)), rate_(rate), start_(start) {}

void Animation::add(const std::vector<TrackText>& tracks, const std::string& where) {
  for (const TrackText& track : tracks) {
    try {
      const ControlFacts& control = findControl(controls_, track.control);
      if ((control.flags & PF_ParamFlag_CANNOT_TIME_VARY) != 0) {
        throw UserError("'" + control.name + "' can't change over time");
      }
      std::vector<Key> keys;
      for (const KeyText& text : track.keys) {
        const double frame = text.inSeconds ? text.at * rate_.framesPerSecond() + start_ : text.at;
        Key key{frame, parseKeyValue(control, text.value), text.in, text.out};
        if (goesInSteps(control)) key.out.kind = Ease::Kind::hold;
        if (!keys.empty() && frame <= keys.back().frame) {
          throw UserError("'" + control.name + "' has a key at " + shownNumber(text.at) +
                          " that doesn't come after the one before it");
        }
        if (!keys.empty() && !sameUnits(keys.back().value, key.value)) {
          throw UserError("'" + control.name + "' goes from percent to pixels or back, which has no way between");
        }
        keys.push_back(key);
      }
      files_.erase(control.index);
      tracks_[control.index] = std::move(keys);
    } catch (const UserError& error) {
      throw UserError(where + error.what());
    }
  }
}

void Animation::hold(int32_t index, standin::ParameterValues::Value value) {
  tracks_.erase(index);
  files_.erase(index);
  base_.setValue(index, std::move(value));
}

void Animation::follow(int32_t index, FramePattern files, LayerReader read) {
  tracks_.erase(index);
  base_.setValue(index, standin::LayerValue::itself());  // so that it counts as given
  files_.insert_or_assign(index, Files{std::move(files), std::move(read), -1, {}});
}

ControlValue Animation::valueOf(const ControlFacts& control, const std::vector<Key>& keys, double frame) const {
  const auto next =
      std::upper_bound(keys.begin(), keys.end(), frame, [](double at, const Key& key) { return at < key.frame; });
  if (next == keys.begin()) return keys.front().value;
  const Key& from = *std::prev(next);
  if (next == keys.end()) return from.value;
  if (from.out.kind == Ease::Kind::hold) return from.value;
  const double frames = next->frame - from.frame;
  const double part = easedPart(from.out, next->in, (frame - from.frame) / frames, frames / rate_.framesPerSecond(),
                                distanceOf(from.value, next->value));
  return valueBetween(control, from.value, next->value, part);
}

standin::LayerValue Animation::pictureOf(const Files& files, double frame) const {
  const auto number = static_cast<int32_t>(std::clamp(std::floor(frame), 0.0, double{lastFrameNumber}));
  if (number != files.lastNumber) {
    files.last = standin::LayerValue::of(files.read(files.pattern.fileOf(number)));
    files.lastNumber = number;
  }
  return files.last;
}

standin::ParameterValues Animation::at(double frame) const {
  standin::ParameterValues values = base_;
  for (const auto& [index, keys] : tracks_) {
    const ControlFacts& control = controls_[static_cast<std::size_t>(index - 1)];
    setValue(control, valueOf(control, keys, frame), values);
  }
  for (const auto& [index, files] : files_) values.setValue(index, pictureOf(files, frame));
  return values;
}

standin::ParameterValues::Value Animation::at(int32_t index, int64_t time, uint32_t timeScale) const {
  // One division, so that a time that is a frame's gives that very frame.
  const double frame =
      static_cast<double>(time * rate_.scale) / static_cast<double>(int64_t{timeScale} * rate_.step) + start_;
  if (const auto files = files_.find(index); files != files_.end()) return pictureOf(files->second, frame);
  const auto track = tracks_.find(index);
  if (track == tracks_.end()) return base_.value(index);
  const ControlFacts& control = controls_[static_cast<std::size_t>(index - 1)];
  standin::ParameterValues values = base_;
  setValue(control, valueOf(control, track->second, frame), values);
  return values.value(index);
}

}  // namespace cli
