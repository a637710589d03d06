// What a module says of itself, and whether it says the same each time.
#include <algorithm>

#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::StandInHost;

constexpr PF_Cmd kNobodysCommand = 1000;

void loads(Trial& trial) {
  trial.step("loading the module");
  try {
    const standin::LoadedModule module(trial.module());
    trial.note("its entry is " + module.entryName());
  } catch (const std::runtime_error& error) {
    trial.finding(error.what());
  }
}

void setUpSucceeds(Trial& trial) {
  Loaded loaded(trial);
  StandInHost& host = loaded.host;
  const auto command = [&](const char* what, PF_Err (StandInHost::*send)()) {
    trial.step(std::string("it gets the ") + what);
    const PF_Err error = (host.*send)();
    if (error != PF_Err_NONE) trial.finding("it answers " + errorText(host, error));
    return error == PF_Err_NONE;
  };
  if (!command("global set-up", &StandInHost::globalSetup)) return;
  if (command("parameters' set-up", &StandInHost::paramsSetup) &&
      command("sequence set-up", &StandInHost::sequenceSetup)) {
    command("sequence set-down", &StandInHost::sequenceSetdown);
  }
  command("global set-down", &StandInHost::globalSetdown);
}

void tellsItsVersion(Trial& trial) {
  const Life life(trial);
  if (life.host.effectVersion() == 0) trial.finding("my_version is 0: projects can't tell which version made them");
}

void flagsAgree(Trial& trial) {
  const Life life(trial);
  const StandInHost& host = life.host;
  const bool smart = host.smartRoadOffered();
  const bool deep = (host.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) != 0;
  const bool floating = (host.outFlags2() & PF_OutFlag2_FLOAT_COLOR_AWARE) != 0;
  if (floating && !smart) trial.finding("FLOAT_COLOR_AWARE without SUPPORTS_SMART_RENDER: it never gets a float frame");
  if (floating && !deep) trial.finding("FLOAT_COLOR_AWARE without DEEP_COLOR_AWARE");
  const bool custom = std::any_of(host.controls().begin(), host.controls().end(), [](const standin::Control& control) {
    return (control.definition.ui_flags & (PF_PUI_TOPIC | PF_PUI_CONTROL)) != 0;
  });
  if (custom && (host.outFlags() & PF_OutFlag_CUSTOM_UI) == 0) {
    trial.finding("a control is drawn by the module and CUSTOM_UI is not set");
  }
}

void agreesWithItsPropertyList(Trial& trial) {
  const Life life(trial);
  if (!life.module.pipl()) throw Skipped("there is no property list in this file");
  const standin::PiplFacts& pipl = *life.module.pipl();
  const auto compare = [&trial](const char* what, const auto& listed, uint32_t told) {
    if (!listed) return;
    const auto number = static_cast<uint32_t>(*listed);
    if (number == told) return;
    trial.finding("the list's " + std::string(what) + " are " + std::to_string(number) + ", the global set-up's " +
                  std::to_string(told));
  };
  compare("version bits", pipl.version, life.host.effectVersion());
  compare("out flags", pipl.outFlags, static_cast<uint32_t>(life.host.outFlags()));
  compare("out flags 2", pipl.outFlags2, static_cast<uint32_t>(life.host.outFlags2()));
}

void saysTheSameEachTime(Trial& trial) {
  struct Told {
    PF_OutFlags flags;
    PF_OutFlags2 flags2;
    A_u_long version;
    bool operator==(const Told&) const = default;
  };
  const auto ask = [&trial] {
    const Life life(trial);
    return Told{life.host.outFlags(), life.host.outFlags2(), life.host.effectVersion()};
  };
  const Told first = ask();
  if (ask() != first) trial.finding("another load tells other flags or another version");
}

void aboutFits(Trial& trial) {
  Life life(trial);
  trial.step("it is asked about itself");
  const PF_Err error = life.host.call(PF_Cmd_ABOUT);
  if (error != PF_Err_NONE) trial.finding("it answers error " + std::to_string(error));
  const PF_OutData& out = life.host.outData();
  const A_char* end = out.return_msg + sizeof out.return_msg;
  if (std::find(out.return_msg, end, '\0') == end) trial.finding("its text has no end within return_msg");
}

void unknownCommandsDoNoHarm(Trial& trial) {
  Life life(trial);
  const Way way = mainWay(life.host);
  const standin::FrameRequest frame = frameOf(way.depth, 20, 14);
  const standin::Image before = drawn(life, way, frame, life.host.defaults());
  trial.step("it gets a command of a later host");
  const PF_Err error = life.host.call(kNobodysCommand);
  if (error != PF_Err_NONE) trial.warning("it answers error " + std::to_string(error) + " and not 0");
  trial.step("drawing after a command of a later host");
  const std::string differs = difference(before, drawn(life, way, frame, life.host.defaults()));
  if (!differs.empty()) trial.finding(differs);
}

constexpr Promise kPromises[] = {
    {"loads-and-has-an-entry", "The module can be loaded, and its entry point is found.", Weight::kMust, kUsualSeconds,
     loads},
    {"set-up-succeeds", "The three set-ups and the two set-downs of a plain life answer 0.", Weight::kMust,
     kUsualSeconds, setUpSucceeds},
    {"tells-its-version", "The global set-up tells a version that isn't 0.", Weight::kShould, kUsualSeconds,
     tellsItsVersion},
    {"flags-agree-with-each-other",
     "No flag is told that means nothing without another one: float needs the smart road and deep colour, controls of "
     "one's own drawing need the flag for them.",
     Weight::kMust, kUsualSeconds, flagsAgree},
    {"agrees-with-its-property-list", "Version and flags are those of the property list (Windows modules).",
     Weight::kMust, kUsualSeconds, agreesWithItsPropertyList},
    {"says-the-same-each-time", "Version and flags are the same at each load.", Weight::kMust, kUsualSeconds,
     saysTheSameEachTime},
    {"about-fits-its-field", "The text about the module is answered without an error and ends inside its field.",
     Weight::kMust, kUsualSeconds, aboutFits},
    {"unknown-commands-do-no-harm", "A command of a later host changes nothing.", Weight::kMust, kUsualSeconds,
     unknownCommandsDoNoHarm},
};

}  // namespace

Subject setUpPromises() {
  return {"set-up and flags", kPromises};
}

}  // namespace check
