// What an ordinary life leaves in the host's books: everything given back, nothing used otherwise than the interface
// allows.
#include <map>
#include <string>
#include <utility>

#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::Matter;

// Frames by each way, updates of the controls, a project stored and read, and the end of it all.
void liveOrdinarily(Life& life) {
  standin::StandInHost& host = life.host;
  Trial& trial = life.trial;
  standin::ParameterValues values = host.defaults();
  for (const standin::Control& control : host.controls()) {
    if (control.type != PF_Param_LAYER) continue;
    values.setLayer(standin::ByIndex{control.index}, standin::LayerValue::of(picture(standin::Depth::k8, 20, 14, 3)));
  }
  if ((host.outFlags() & PF_OutFlag_SEND_UPDATE_PARAMS_UI) != 0) {
    trial.step("its controls are updated");
    host.updateParamsUi(values, frameOf(standin::Depth::k8, 24, 18));
  }
  for (const Way& way : waysOf(life)) {
    for (int32_t i = 0; i < 3; ++i) {
      trial.step("drawing by " + way.text());
      static_cast<void>(draw(host, way, frameOf(way.depth, 24, 18), i == 0 ? host.defaults() : values));
    }
  }
  if (host.sequenceData() != nullptr) {
    trial.step("its sequence data is flattened and set up again");
    host.sequenceFlatten();
    host.sequenceResetup();
  }
  const PF_Err error = life.finish();
  if (error != PF_Err_NONE) trial.warning("it answers " + errorText(host, error));
  trial.step("");
}

// A finding for each command that something was lent in.
void tellDebts(Trial& trial, Matter matter) {
  Life life(trial);
  liveOrdinarily(life);
  std::map<PF_Cmd, std::pair<int32_t, std::string>> byCommand;
  for (const standin::Entry& debt : life.host.books().debts()) {
    if (debt.matter != matter) continue;
    auto& [count, first] = byCommand[debt.command];
    if (++count == 1) first = debt.text;
  }
  for (const auto& [command, debts] : byCommand) {
    trial.finding(std::to_string(debts.first) + " of " + standin::commandName(command) +
                  " are left, the first: " + debts.second);
  }
}

template <Matter matter>
void givesBack(Trial& trial) {
  tellDebts(trial, matter);
}

template <Matter... matters>
void keepsTheRules(Trial& trial) {
  Life life(trial);
  liveOrdinarily(life);
  tellComplaints(trial, life.host, {matters...});
}

constexpr Promise kPromises[] = {
    {"handles-are-given-back", "After an ordinary life no handle of host memory is left.", Weight::kMust, kUsualSeconds,
     givesBack<Matter::kHandle>},
    {"locks-are-undone", "The sequence data is locked after a command as often as before it.", Weight::kMust,
     kUsualSeconds, givesBack<Matter::kHandleLock>},
    {"worlds-are-given-back", "After an ordinary life no world is left.", Weight::kMust, kUsualSeconds,
     givesBack<Matter::kWorld>},
    {"suites-are-released", "Every suite that was acquired is released.", Weight::kMust, kUsualSeconds,
     givesBack<Matter::kSuite>},
    {"parameters-are-checked-in", "Every parameter that was checked out is checked in.", Weight::kMust, kUsualSeconds,
     givesBack<Matter::kParameter>},
    {"layer-pixels-are-checked-in", "The pixels of every layer that were checked out are checked in.", Weight::kMust,
     kUsualSeconds, givesBack<Matter::kLayerPixels>},
    {"handles-are-used-rightly", "No handle is used that isn't open, or unlocked more often than locked.",
     Weight::kMust, kUsualSeconds, keepsTheRules<Matter::kBadHandle>},
    {"worlds-are-used-rightly", "No world is used that isn't one, or written where it may only be read.", Weight::kMust,
     kUsualSeconds, keepsTheRules<Matter::kBadWorld>},
    {"suites-are-used-rightly", "No suite is released that isn't acquired.", Weight::kMust, kUsualSeconds,
     keepsTheRules<Matter::kBadSuite>},
    {"check-ins-match-check-outs", "Nothing is checked in that isn't out, nor pixels checked out twice.", Weight::kMust,
     kUsualSeconds, keepsTheRules<Matter::kStrayCheckin, Matter::kStrayPixels>},
    {"nothing-is-written-outside", "No byte beside a world or a block of memory is changed.", Weight::kMust,
     kUsualSeconds, keepsTheRules<Matter::kOutside>},
    {"calls-come-at-their-moment", "No host call is made in a command in which it may not be.", Weight::kMust,
     kUsualSeconds, keepsTheRules<Matter::kWrongMoment>},
    {"arguments-are-legal", "No host call gets an argument that the interface forbids.", Weight::kMust, kUsualSeconds,
     keepsTheRules<Matter::kWrongArgument, Matter::kLayerParamUi>},
    {"result-rectangles-keep-the-rules",
     "The rectangles of a pre-render lie in each other as the interface wants them, and its data can be dropped.",
     Weight::kMust, kUsualSeconds, keepsTheRules<Matter::kPreRender>},
    {"asks-for-known-services", "The stand-in host has every service that is called.", Weight::kShould, kUsualSeconds,
     keepsTheRules<Matter::kUnknownService>},
};

}  // namespace

Subject bookPromises() {
  return {"the host's books", kPromises};
}

}  // namespace check
