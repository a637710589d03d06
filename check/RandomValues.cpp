#include "check/RandomValues.h"

#include <cstdio>
#include <limits>

namespace check {

using standin::Control;
using standin::Depth;
using standin::LayerValue;
using standin::ParameterValues;
using standin::PointValue;

namespace {

constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();

struct Range {
  double least, most, trackLeast, trackMost, usual;
};

double numberIn(const Range& range, Chance& chance, Reach reach) {
  const double kind = chance.unit();
  if (kind < 0.3) return range.usual;
  if (reach == Reach::kUsual || kind < 0.7) return chance.between(range.trackLeast, range.trackMost);
  if (reach == Reach::kBeyond && kind > 0.93) {
    const double far = (range.most - range.least + 1) * chance.unit() * 2;
    return chance.happens(0.5) ? range.most + far : range.least - far;
  }
  if (kind < 0.78) return range.least;
  if (kind < 0.86) return range.most;
  return chance.between(range.least, range.most);
}

int32_t wholeOf(double value) {
  return value >= kMost ? kMost : value <= kLeast ? kLeast : static_cast<int32_t>(value);
}

LayerValue layer(Chance& chance) {
  const double kind = chance.unit();
  if (kind < 0.2) return LayerValue::none();
  if (kind < 0.4) return LayerValue::itself();
  const Depth depth = chance.happens(0.7) ? Depth::k8 : standin::kAllDepths[chance.whole(0, 2)];
  if (kind < 0.45) return LayerValue::of(standin::Image(depth, 0, 0));
  if (kind < 0.5) return LayerValue::of(picture(depth, 1, 1, chance.next()));
  return LayerValue::of(picture(depth, chance.whole(1, 50), chance.whole(1, 50), chance.next()));
}

int32_t item(Chance& chance, int32_t count, Reach reach) {
  if (reach == Reach::kBeyond && chance.happens(0.07)) {
    constexpr int32_t odd[] = {0, -1, kMost, kLeast};
    const int32_t which = chance.whole(0, 4);
    return which == 4 ? count + 1 : odd[which];
  }
  return chance.whole(1, std::max(count, 1));
}

PointValue point(Chance& chance, Reach reach) {
  if (chance.happens(0.4)) return {50, 50, true};
  if (reach == Reach::kUsual || chance.happens(0.6)) return {chance.between(0, 40), chance.between(0, 30), false};
  return {chance.between(-3000, 3000), chance.between(-3000, 3000), false};
}

double angle(Chance& chance, Reach reach) {
  if (chance.happens(0.3)) return 0;
  return reach == Reach::kUsual || chance.happens(0.8) ? chance.between(-180, 180) : chance.between(-32000, 32000);
}

ParameterValues::Value valueOf(const Control& control, const ParameterValues::Value& usual, Chance& chance,
                               Reach reach) {
  const PF_ParamDefUnion& u = control.definition.u;
  const auto real = [](auto number) { return static_cast<double>(number); };
  switch (control.type) {
    case PF_Param_LAYER:
      return layer(chance);
    case PF_Param_SLIDER:
      return wholeOf(numberIn({real(u.sd.valid_min), real(u.sd.valid_max), real(u.sd.slider_min), real(u.sd.slider_max),
                               real(u.sd.dephault)},
                              chance, reach));
    case PF_Param_FIX_SLIDER: {
      constexpr double one = 65536;
      return numberIn({real(u.fd.valid_min) / one, real(u.fd.valid_max) / one, real(u.fd.slider_min) / one,
                       real(u.fd.slider_max) / one, real(u.fd.dephault) / one},
                      chance, reach);
    }
    case PF_Param_FLOAT_SLIDER:
      return numberIn({real(u.fs_d.valid_min), real(u.fs_d.valid_max), real(u.fs_d.slider_min), real(u.fs_d.slider_max),
                       real(u.fs_d.dephault)},
                      chance, reach);
    case PF_Param_ANGLE:
      return angle(chance, reach);
    case PF_Param_CHECKBOX:
      return reach == Reach::kBeyond && chance.happens(0.05) ? 256 : chance.whole(0, 1);
    case PF_Param_COLOR: {
      const auto byte = [&chance] { return static_cast<A_u_char>(chance.whole(0, 255)); };
      return PF_Pixel{255, byte(), byte(), byte()};
    }
    case PF_Param_POINT:
      return point(chance, reach);
    case PF_Param_POPUP:
      return item(chance, std::min(static_cast<int32_t>(control.choices.size()), int32_t{u.pd.num_choices}), reach);
    default:
      return usual;
  }
}

struct ValueText {
  std::string operator()(std::monostate) const { return "none"; }
  std::string operator()(int32_t value) const { return std::to_string(value); }
  std::string operator()(double value) const {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
  }
  std::string operator()(const PF_Pixel& value) const {
    char text[16];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", value.red, value.green, value.blue);
    return text;
  }
  std::string operator()(const PointValue& value) const {
    return (*this)(value.x) + "," + (*this)(value.y) + (value.percent ? "%" : "");
  }
  std::string operator()(const LayerValue& value) const {
    if (value.source == LayerValue::Source::kNone) return "no layer";
    if (value.source == LayerValue::Source::kItself) return "itself";
    return sizeText(value.picture->width(), value.picture->height()) + " at " +
           std::to_string(static_cast<int32_t>(value.picture->depth()));
  }
};

}  // namespace

ParameterValues randomValues(const standin::StandInHost& host, Chance& chance, Reach reach) {
  ParameterValues values = host.defaults();
  for (const Control& control : host.controls()) {
    // Half of the controls stay as they are, so that frames differ in kind and not in everything.
    if (chance.happens(0.5)) continue;
    values.setValue(control.index, valueOf(control, values.value(control.index), chance, reach));
  }
  return values;
}

standin::FrameRequest randomFrame(Chance& chance, Depth depth) {
  standin::FrameRequest frame = frameOf(depth, chance.whole(1, 40), chance.whole(1, 30), chance.next());
  frame.currentTime = chance.whole(0, 300);
  return frame;
}

std::string valuesText(const ParameterValues& values) {
  const ParameterValues usual(values.controls());
  std::string text;
  for (const Control& control : values.controls()) {
    const std::string own = std::visit(ValueText{}, values.value(control.index));
    if (own == std::visit(ValueText{}, usual.value(control.index))) continue;
    text += (text.empty() ? "" : ", ") + control.name + " = " + own;
  }
  return text.empty() ? "all defaults" : text;
}

Patience::Patience(standin::StandInHost& host, double seconds) : host_(host), length_(seconds) {
  host_.onProgress = [this](A_long, A_long) { return answer(); };
  host_.onAbort = [this] { return answer(); };
  startAgain();
}

Patience::~Patience() {
  host_.onProgress = nullptr;
  host_.onAbort = nullptr;
}

void Patience::startAgain() {
  start_ = std::chrono::steady_clock::now();
  ranOut_ = false;
}

PF_Err Patience::answer() {
  if (!ranOut_ && std::chrono::steady_clock::now() - start_ > length_) ranOut_ = true;
  return ranOut_ ? PF_Interrupt_CANCEL : PF_Err_NONE;
}

}  // namespace check
