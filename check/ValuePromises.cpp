// Values of all kinds: random ones, each control at its ends, and beyond.
#include <cmath>
#include <limits>

#include "check/RandomValues.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::Control;
using standin::FrameRequest;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;

/// Seconds that a frame gets before the host ends it.
constexpr double kPatience = 1;

struct Tally {
  int32_t frames = 0;
  int32_t ended = 0;
  std::string text() const {
    return std::to_string(frames) + " frames were drawn" +
           (ended == 0 ? "" : ", " + std::to_string(ended) + " of them ended by the host after a second");
  }
};

// Draws one frame; an error is told when errorsToo.
RenderResult one(Life& life, const Way& way, const FrameRequest& frame, const ParameterValues& values, bool errorsToo,
                 Patience& patience, Tally& tally) {
  life.trial.step("drawing " + sizeText(frame.input.width(), frame.input.height()) + " pixels by " + way.text() +
                  " with " + valuesText(values));
  const size_t before = life.host.books().complaints().size();
  patience.startAgain();
  RenderResult result = draw(life.host, way, frame, values);
  ++tally.frames;
  if (patience.ranOut()) {
    ++tally.ended;
  } else if (errorsToo && result.error != PF_Err_NONE) {
    life.trial.finding("it answers " + errorText(life.host, result.error));
  }
  tellComplaints(life.trial, life.host, {Matter::kOutside, Matter::kBadHandle}, before);
  // Notes of single calls would pile up.
  life.host.log().clear();
  life.host.books().clear();
  return result;
}

void randomFrames(Trial& trial, Reach reach, int32_t count, bool errorsToo) {
  Life life(trial);
  Chance chance(trial.seed());
  Patience patience(life.host, kPatience);
  Tally tally;
  const std::vector<Way> ways = waysOf(life, Roads::kAll);
  for (int32_t i = 0; i < count; ++i) {
    const Way& way = ways[static_cast<size_t>(i) % ways.size()];
    const FrameRequest frame = randomFrame(chance, way.depth);
    one(life, way, frame, randomValues(life.host, chance, reach), errorsToo, patience, tally);
  }
  trial.note(tally.text());
}

void randomUsual(Trial& trial) {
  randomFrames(trial, Reach::kUsual, 150, true);
}
void randomLegal(Trial& trial) {
  randomFrames(trial, Reach::kLegal, 100, true);
}
void randomBeyond(Trial& trial) {
  randomFrames(trial, Reach::kBeyond, 100, false);
}

// Each value of the list at one control, all others at their defaults.
void tryEach(Trial& trial, bool errorsToo,
             const std::function<std::vector<ParameterValues::Value>(const Control&)>& ends) {
  Life life(trial);
  Patience patience(life.host, kPatience);
  Tally tally;
  const Way way = mainWay(life.host);
  const FrameRequest frame = frameOf(way.depth, 24, 18, trial.seed());
  for (const Control& control : life.host.controls()) {
    for (const ParameterValues::Value& value : ends(control)) {
      ParameterValues values = life.host.defaults();
      values.setValue(control.index, value);
      one(life, way, frame, values, errorsToo, patience, tally);
    }
  }
  trial.note(tally.text());
}

using Values = std::vector<ParameterValues::Value>;

Values endsOf(const Control& control) {
  const PF_ParamDefUnion& u = control.definition.u;
  const auto real = [](PF_FpShort value) { return static_cast<double>(value); };
  switch (control.type) {
    case PF_Param_SLIDER:
      return {int32_t{u.sd.valid_min}, int32_t{u.sd.valid_max}};
    case PF_Param_FIX_SLIDER:
      return {static_cast<double>(u.fd.valid_min) / 65536, static_cast<double>(u.fd.valid_max) / 65536};
    case PF_Param_FLOAT_SLIDER:
      return {real(u.fs_d.valid_min), real(u.fs_d.valid_max)};
    case PF_Param_ANGLE:
      return {-32000.0, -0.5, 359.99, 32000.0};
    case PF_Param_CHECKBOX:
      return {0, 1};
    case PF_Param_COLOR:
      return {PF_Pixel{255, 0, 0, 0}, PF_Pixel{255, 255, 255, 255}, PF_Pixel{0, 1, 2, 3}};
    case PF_Param_POINT:
      return {standin::PointValue{-3000, -3000, false}, standin::PointValue{3000, 3000, false},
              standin::PointValue{0, 0, false}};
    case PF_Param_POPUP: {
      Values items;
      for (int32_t item = 1; item <= u.pd.num_choices; ++item) items.emplace_back(item);
      return items;
    }
    default:
      return {};
  }
}

Values beyond(const Control& control) {
  constexpr int32_t most = std::numeric_limits<int32_t>::max();
  constexpr int32_t least = std::numeric_limits<int32_t>::min();
  switch (control.type) {
    case PF_Param_SLIDER:
      return {most, least, 0, -1};
    case PF_Param_FIX_SLIDER:
      return {32767.0, -32768.0};
    case PF_Param_FLOAT_SLIDER:
      return {1e9, -1e9, 1e300, -1e300, 1e-300, -1.0};
    case PF_Param_ANGLE:
      return {32767.9, -32768.0};
    case PF_Param_CHECKBOX:
      return {2, -1, 256};
    case PF_Param_POINT:
      return {standin::PointValue{32767, -32768, false}, standin::PointValue{-32768, 32767, false}};
    case PF_Param_POPUP:
      return {0, -1, control.definition.u.pd.num_choices + 1, most, least};
    default:
      return {};
  }
}

Values noNumbers(const Control& control) {
  if (control.type != PF_Param_FLOAT_SLIDER) return {};
  constexpr double infinite = std::numeric_limits<double>::infinity();
  return {std::numeric_limits<double>::quiet_NaN(), infinite, -infinite};
}

void atTheirEnds(Trial& trial) {
  tryEach(trial, true, endsOf);
}
void beyondTheirEnds(Trial& trial) {
  tryEach(trial, false, beyond);
}
void noNumbersDoNoHarm(Trial& trial) {
  tryEach(trial, false, noNumbers);
}

void randomTwice(Trial& trial) {
  Life life(trial);
  Chance chance(trial.seed());
  Patience patience(life.host, kPatience);
  Tally tally;
  const std::vector<Way> ways = waysOf(life, Roads::kAll);
  for (int32_t i = 0; i < 90; ++i) {
    const Way& way = ways[static_cast<size_t>(i) % ways.size()];
    const FrameRequest frame = randomFrame(chance, way.depth);
    const ParameterValues values = randomValues(life.host, chance, Reach::kUsual);
    const RenderResult first = one(life, way, frame, values, false, patience, tally);
    const bool whole = !patience.ranOut() && first.error == PF_Err_NONE;
    const RenderResult second = one(life, way, frame, values, false, patience, tally);
    if (!whole || patience.ranOut()) continue;
    if (second.error != PF_Err_NONE) {
      trial.finding("the second time it answers " + errorText(life.host, second.error));
    } else if (const std::string differs = difference(first.output, second.output); !differs.empty()) {
      trial.finding(differs);
    }
  }
  trial.note(tally.text());
}

void randomOnBothRoads(Trial& trial) {
  Life life(trial);
  Chance chance(trial.seed());
  Patience patience(life.host, kPatience);
  Tally tally;
  const std::vector<Way> ways = waysOf(life, Roads::kAll);
  if (!ways[0].smart || ways.back().smart) throw Skipped("the module draws by one road");
  for (const Way& way : ways) {
    if (way.smart) continue;
    for (int32_t i = 0; i < 40; ++i) {
      const FrameRequest frame = randomFrame(chance, way.depth);
      const ParameterValues values = randomValues(life.host, chance, Reach::kUsual);
      const RenderResult classic = one(life, way, frame, values, false, patience, tally);
      const bool whole = !patience.ranOut() && classic.error == PF_Err_NONE;
      const RenderResult smart = one(life, {true, way.depth}, frame, values, false, patience, tally);
      if (!whole || patience.ranOut() || smart.error != PF_Err_NONE) continue;
      if (const std::string differs = difference(classic.output, smart.output); !differs.empty()) {
        trial.finding("the classic road draws otherwise: " + differs);
      }
    }
  }
  trial.note(tally.text());
}

constexpr Promise kPromises[] = {
    {"random-values-draw", "Frames with random values within the sliders' tracks are drawn.", Weight::kMust,
     kUsualSeconds, randomUsual},
    {"random-values-twice", "A frame with random values that is drawn again is the same.", Weight::kMust, kUsualSeconds,
     randomTwice},
    {"random-values-on-both-roads", "A frame with random values is the same by both roads.", Weight::kMust,
     kUsualSeconds, randomOnBothRoads},
    {"values-at-their-ends-draw", "Each control may stand at either end of its range, and at each of its items.",
     Weight::kMust, 2 * kUsualSeconds, atTheirEnds},
    {"random-legal-values-draw", "Frames with random values of all that can be typed are drawn.", Weight::kMust,
     3 * kUsualSeconds, randomLegal},
    {"values-beyond-their-ends-do-no-harm", "A value beyond its range does no harm, as old projects may have it.",
     Weight::kMust, 3 * kUsualSeconds, beyondTheirEnds},
    {"random-values-beyond-do-no-harm", "Random values, some of them beyond their ranges, do no harm.", Weight::kMust,
     3 * kUsualSeconds, randomBeyond},
    {"values-that-are-no-numbers-do-no-harm", "A value that is infinite or no number at all does no harm.",
     Weight::kShould, 2 * kUsualSeconds, noNumbersDoNoHarm},
};

}  // namespace

Subject valuePromises() {
  return {"values", kPromises};
}

}  // namespace check
