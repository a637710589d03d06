// The declared parameters: complete, unambiguous, the same each time.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::Control;
using standin::ParameterValues;

std::string nameOf(const Control& control) {
  return "parameter " + std::to_string(control.index) + " \"" + control.name + "\"";
}

std::string numberText(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

void countIsTold(Trial& trial) {
  const Life life(trial);
  const auto added = static_cast<A_long>(life.host.controls().size()) + 1;
  if (life.host.numParams() != added) {
    trial.finding("num_params is " + std::to_string(life.host.numParams()) + ", and with the layer itself there are " +
                  std::to_string(added));
  }
}

void idsAreUnique(Trial& trial) {
  const Life life(trial);
  std::map<int32_t, const Control*> known;
  for (const Control& control : life.host.controls()) {
    // Without an id the host counts; whether that is wise is another promise's matter.
    if (control.id == 0) continue;
    const auto [other, isNew] = known.emplace(control.id, &control);
    if (!isNew) {
      trial.finding("id " + std::to_string(control.id) + " is that of " + nameOf(*other->second) + " and of " +
                    nameOf(control));
    }
  }
}

void idsAreGiven(Trial& trial) {
  const Life life(trial);
  for (const Control& control : life.host.controls()) {
    if (control.id < 1 || control.id > 9999) {
      trial.finding(nameOf(control) + " has the id " + std::to_string(control.id) + ", and 1 to 9999 are possible");
    }
  }
}

void namesAreGiven(Trial& trial) {
  const Life life(trial);
  for (const Control& control : life.host.controls()) {
    const A_char* name = control.definition.name;
    if (std::find(name, name + sizeof control.definition.name, '\0') == name + sizeof control.definition.name) {
      trial.finding(nameOf(control) + " has a name without an end");
    }
    if (control.name.empty() && control.hasValue()) trial.finding(nameOf(control) + " has no name");
  }
}

// Least and most that can be typed, the ends of the track, and the default.
struct Range {
  double least, most, trackLeast, trackMost, usual;
};

void checkRange(Trial& trial, const Control& control, const Range& range) {
  const auto tell = [&](const std::string& text) { trial.finding(nameOf(control) + " " + text); };
  const auto rangeText = [](double least, double most) { return numberText(least) + " to " + numberText(most); };
  for (const double end : {range.least, range.most, range.trackLeast, range.trackMost, range.usual}) {
    if (!std::isfinite(end)) return tell("has a limit or a default that is no number");
  }
  if (range.least > range.most) return tell("has the range " + rangeText(range.least, range.most));
  if (range.usual < range.least || range.usual > range.most) {
    tell("has the default " + numberText(range.usual) + " outside of " + rangeText(range.least, range.most));
  }
  if (range.trackLeast > range.trackMost || range.trackLeast < range.least || range.trackMost > range.most) {
    tell("has a track of " + rangeText(range.trackLeast, range.trackMost) + " and a range of " +
         rangeText(range.least, range.most));
  }
}

void defaultsAreInRange(Trial& trial) {
  const Life life(trial);
  for (const Control& control : life.host.controls()) {
    const PF_ParamDefUnion& u = control.definition.u;
    if (control.type == PF_Param_SLIDER) {
      const auto number = [](A_long value) { return static_cast<double>(value); };
      checkRange(trial, control,
                 {number(u.sd.valid_min), number(u.sd.valid_max), number(u.sd.slider_min), number(u.sd.slider_max),
                  number(u.sd.dephault)});
    } else if (control.type == PF_Param_FIX_SLIDER) {
      const auto number = [](PF_Fixed value) { return static_cast<double>(value) / 65536; };
      checkRange(trial, control,
                 {number(u.fd.valid_min), number(u.fd.valid_max), number(u.fd.slider_min), number(u.fd.slider_max),
                  number(u.fd.dephault)});
    } else if (control.type == PF_Param_FLOAT_SLIDER) {
      const auto number = [](PF_FpShort value) { return static_cast<double>(value); };
      checkRange(trial, control,
                 {number(u.fs_d.valid_min), number(u.fs_d.valid_max), number(u.fs_d.slider_min),
                  number(u.fs_d.slider_max), number(u.fs_d.dephault)});
    } else if (control.type == PF_Param_POPUP) {
      if (u.pd.dephault < 1 || u.pd.dephault > u.pd.num_choices) {
        trial.finding(nameOf(control) + " has item " + std::to_string(u.pd.dephault) + " of " +
                      std::to_string(u.pd.num_choices) + " as its default");
      }
    } else if (control.type == PF_Param_CHECKBOX && u.bd.dephault != 0 && u.bd.dephault != 1) {
      trial.finding(nameOf(control) + " has the default " + std::to_string(u.bd.dephault) + ", neither 0 nor 1");
    }
  }
}

void popupsNameTheirItems(Trial& trial) {
  const Life life(trial);
  for (const Control& control : life.host.controls()) {
    if (control.type != PF_Param_POPUP) continue;
    const A_short told = control.definition.u.pd.num_choices;
    if (static_cast<int64_t>(control.choices.size()) == told) continue;
    trial.finding(nameOf(control) + " says that it has " + std::to_string(told) + " items and names " +
                  std::to_string(control.choices.size()));
  }
}

void groupsAreClosed(Trial& trial) {
  const Life life(trial);
  std::vector<const Control*> open;
  for (const Control& control : life.host.controls()) {
    if (control.type == PF_Param_GROUP_START) open.push_back(&control);
    if (control.type != PF_Param_GROUP_END) continue;
    if (open.empty()) {
      trial.finding(nameOf(control) + " ends a group that was never begun");
    } else {
      open.pop_back();
    }
  }
  for (const Control* control : open) trial.finding(nameOf(*control) + " begins a group that never ends");
}

void parametersStayTheSame(Trial& trial) {
  const auto ask = [&trial] {
    const Life life(trial);
    std::vector<std::string> lines;
    for (const Control& control : life.host.controls()) {
      const PF_ParamDefUnion& u = control.definition.u;
      std::string line =
          nameOf(control) + ", id " + std::to_string(control.id) + ", a " + standin::kindName(control.type);
      if (control.type == PF_Param_SLIDER) {
        line += ", " + std::to_string(u.sd.valid_min) + " to " + std::to_string(u.sd.valid_max);
      }
      if (control.type == PF_Param_FLOAT_SLIDER) {
        line += ", " + numberText(static_cast<double>(u.fs_d.valid_min)) + " to " +
                numberText(static_cast<double>(u.fs_d.valid_max));
      }
      for (const std::string& choice : control.choices) line += ", " + choice;
      lines.push_back(line);
    }
    return lines;
  };
  const std::vector<std::string> first = ask();
  const std::vector<std::string> second = ask();
  if (first.size() != second.size()) {
    trial.finding("there are " + std::to_string(first.size()) + " at one load and " + std::to_string(second.size()) +
                  " at the next");
  }
  for (size_t i = 0; i < std::min(first.size(), second.size()); ++i) {
    if (first[i] != second[i]) trial.finding("first " + first[i] + "; at the next load " + second[i]);
  }
}

void updatesOfTheControlsSucceed(Trial& trial) {
  Life life(trial);
  if ((life.host.outFlags() & PF_OutFlag_SEND_UPDATE_PARAMS_UI) == 0) {
    throw Skipped("the module doesn't ask to update its controls");
  }
  trial.step("its controls are updated");
  const size_t before = life.host.books().complaints().size();
  const PF_Err error = life.host.updateParamsUi(life.host.defaults(), frameOf(standin::Depth::k8, 20, 14));
  if (error != PF_Err_NONE) trial.finding("it answers " + errorText(life.host, error));
  tellComplaints(trial, life.host,
                 {standin::Matter::kWrongArgument, standin::Matter::kWrongMoment, standin::Matter::kLayerParamUi},
                 before);
}

void changesByTheUserAreAnswered(Trial& trial) {
  Life life(trial);
  int32_t count = 0;
  for (const Control& control : life.host.controls()) {
    if ((control.definition.flags & PF_ParamFlag_SUPERVISE) == 0) continue;
    ++count;
    trial.step("the user changes " + nameOf(control));
    ParameterValues values = life.host.defaults();
    const standin::ChangedParams changed =
        life.host.userChangedParam(standin::ByIndex{control.index}, values, frameOf(standin::Depth::k8, 20, 14));
    if (changed.error != PF_Err_NONE) trial.finding("it answers " + errorText(life.host, changed.error));
    if (control.type != PF_Param_POPUP) continue;
    for (int32_t item = 1; item <= control.definition.u.pd.num_choices; ++item) {
      values.setPopup(standin::ByIndex{control.index}, item);
      const PF_Err error = life.host.userChangedParam(standin::ByIndex{control.index}, values).error;
      if (error != PF_Err_NONE) {
        trial.finding("at item " + std::to_string(item) + " it answers " + errorText(life.host, error));
      }
    }
  }
  if (count == 0) throw Skipped("no parameter is supervised");
}

void flagsOfAFrameAreAnswered(Trial& trial) {
  Life life(trial);
  if ((life.host.outFlags2() & PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS) == 0) {
    throw Skipped("the module doesn't ask to tell its flags by the frame");
  }
  trial.step("it is asked for the flags of a frame");
  const PF_Err error = life.host.queryDynamicFlags(life.host.defaults(), frameOf(standin::Depth::k8, 20, 14));
  if (error != PF_Err_NONE) trial.finding("it answers " + errorText(life.host, error));
}

void arbitraryDataSurvives(Trial& trial) {
  Life life(trial);
  int32_t count = 0;
  for (const Control& control : life.host.controls()) {
    if (control.type != PF_Param_ARBITRARY_DATA) continue;
    ++count;
    trial.step("keeping the value of " + nameOf(control));
    const standin::ControlKey key = standin::ByIndex{control.index};
    const std::vector<uint8_t> bytes = life.host.arbitraryBytes(key);
    if (bytes.empty()) {
      trial.finding("it can't be flattened");
      continue;
    }
    if (!life.host.setArbitraryBytes(key, bytes)) trial.finding("what was flattened isn't taken back");
    if (life.host.arbitraryBytes(key) != bytes) trial.finding("flattened again, it is another value");
  }
  if (count == 0) throw Skipped("no parameter is of arbitrary data");
}

constexpr Promise kPromises[] = {
    {"parameter-count-is-told", "num_params is the number of the parameters that were added, and one for the layer.",
     Weight::kMust, kUsualSeconds, countIsTold},
    {"ids-are-unique", "No two parameters have one id.", Weight::kMust, kUsualSeconds, idsAreUnique},
    {"ids-are-given", "Ids are from 1 to 9999, so that projects keep their values when parameters are added.",
     Weight::kShould, kUsualSeconds, idsAreGiven},
    {"names-are-given", "Every parameter with a value has a name, and every name ends inside its field.", Weight::kMust,
     kUsualSeconds, namesAreGiven},
    {"defaults-are-in-range", "Defaults and tracks lie inside the ranges, and the ranges are not empty.", Weight::kMust,
     kUsualSeconds, defaultsAreInRange},
    {"popups-name-their-items", "A popup has as many items as it says.", Weight::kMust, kUsualSeconds,
     popupsNameTheirItems},
    {"groups-are-closed", "Every group of parameters that begins ends.", Weight::kMust, kUsualSeconds, groupsAreClosed},
    {"parameters-stay-the-same", "Names, ids, kinds, ranges and items are the same at each load.", Weight::kMust,
     kUsualSeconds, parametersStayTheSame},
    {"updates-of-the-controls-succeed",
     "A module that asks to update its controls does so without an error, and only to them.", Weight::kMust,
     kUsualSeconds, updatesOfTheControlsSucceed},
    {"changes-by-the-user-are-answered", "A change of each supervised parameter is answered without an error.",
     Weight::kMust, kUsualSeconds, changesByTheUserAreAnswered},
    {"flags-of-a-frame-are-answered", "A module that tells its flags by the frame does so without an error.",
     Weight::kMust, kUsualSeconds, flagsOfAFrameAreAnswered},
    {"arbitrary-data-survives-a-project", "A value of arbitrary data is the same after it was stored and read.",
     Weight::kMust, kUsualSeconds, arbitraryDataSurvives},
};

}  // namespace

Subject parameterPromises() {
  return {"parameters", kPromises};
}

}  // namespace check
