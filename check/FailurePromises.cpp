// Each host call of a frame and of the other commands failed in turn, memory that runs out, suites that aren't there.
#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <set>

#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::FrameRequest;
using standin::HostSettings;
using standin::Image;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;
using standin::StandInHost;

constexpr PF_Err kPlanned = PF_Err_OUT_OF_MEMORY;

/// How many calls of one service are failed at most; of more, the first and some that the seed chooses.
constexpr int32_t kMostOfOneService = 24;

// What the log calls with a handle's number and what can fail, by service, with how often each was called.
std::map<std::string, int32_t> callsNoted(const StandInHost& host, const standin::CallLog& log) {
  static const std::set<std::string> neverFail = {"host_unlock_handle", "host_dispose_handle", "host_get_handle_size"};
  std::map<std::string, int32_t> counts;
  for (const standin::Call& call : log.calls) {
    if (neverFail.count(call.service) == 0) ++counts[call.service];
  }
  if (log.progressCalls > 0) counts["progress"] = static_cast<int32_t>(std::min<int64_t>(log.progressCalls, 1000));
  static_cast<void>(host);
  return counts;
}

/// The calls of a service that are failed.
std::vector<int32_t> chosen(int32_t count, Chance& chance) {
  std::vector<int32_t> calls;
  for (int32_t nth = 1; nth <= std::min(count, kMostOfOneService); ++nth) {
    calls.push_back(count <= kMostOfOneService || nth <= kMostOfOneService / 2 ? nth : chance.whole(nth, count));
  }
  return calls;
}

/// Things open that no failure may add to.
using Owed = std::array<int32_t, 4>;

Owed owedNow(StandInHost& host) {
  const standin::Books& books = host.books();
  return {books.openCount(Matter::kHandle), books.openCount(Matter::kHandleLock), books.openCount(Matter::kWorld),
          books.openCount(Matter::kSuite)};
}

/// One failed call of a frame, and the frame after it.
struct Failed {
  std::string service;
  RenderResult result;
  RenderResult next;
  Owed left{};   ///< open after the failed frame beyond what was open before it
  Owed usual{};  ///< the same of a frame without a failure
  const Image* whole = nullptr;
};

// Fails every call of frames by each way, as far as a second after the other goes.
void failEachCall(Trial& trial, const std::function<void(const Failed&)>& look) {
  Life life(trial);
  StandInHost& host = life.host;
  Chance chance(trial.seed());
  int32_t count = 0;
  int32_t all = 0;
  for (const Way& way : waysOf(life, Roads::kAll)) {
    const FrameRequest frame = frameOf(way.depth, 20, 14);
    ParameterValues values = host.defaults();
    for (const standin::Control& control : host.controls()) {
      if (control.type != PF_Param_LAYER) continue;
      values.setLayer(standin::ByIndex{control.index}, standin::LayerValue::of(picture(way.depth, 20, 14, 3)));
    }
    trial.step("drawing by " + way.text());
    static_cast<void>(drawn(life, way, frame, values));
    Failed failed;
    const Owed before = owedNow(host);
    host.log().clear();
    host.log().handleCallsToo = true;
    const Image whole = drawn(life, way, frame, values);
    host.log().handleCallsToo = false;
    const std::map<std::string, int32_t> counts = callsNoted(host, host.log());
    const Owed after = owedNow(host);
    for (size_t i = 0; i < after.size(); ++i) failed.usual[i] = after[i] - before[i];
    failed.whole = &whole;
    for (const auto& [service, calls] : counts) {
      all += calls;
      failed.service = service;
      for (const int32_t nth : chosen(calls, chance)) {
        trial.step("drawing by " + way.text() + " where call " + std::to_string(nth) + " of " + service + " fails");
        const Owed owedBefore = owedNow(host);
        host.faults().fail(service, nth, kPlanned);
        failed.result = draw(host, way, frame, values);
        const bool happened = host.faults().waiting() == 0;
        host.faults().clear();
        if (!happened) continue;
        ++count;
        const Owed owedAfter = owedNow(host);
        for (size_t i = 0; i < owedAfter.size(); ++i) failed.left[i] = owedAfter[i] - owedBefore[i];
        failed.next = draw(host, way, frame, values);
        look(failed);
        host.log().clear();
      }
    }
  }
  trial.note(std::to_string(count) + " of " + std::to_string(all) + " host calls were failed one by one");
}

void areTold(Trial& trial) {
  failEachCall(trial, [&trial](const Failed& failed) {
    if (failed.result.error != PF_Err_NONE) return;
    const std::string differs = difference(*failed.whole, failed.result.output);
    if (!differs.empty()) trial.finding("it answers 0, and the frame isn't whole: " + differs);
  });
}

void loseNothing(Trial& trial) {
  failEachCall(trial, [&trial](const Failed& failed) {
    constexpr const char* names[] = {"handles", "locks", "worlds", "suites"};
    for (size_t i = 0; i < failed.left.size(); ++i) {
      if (failed.left[i] > std::max(failed.usual[i], 0)) {
        trial.finding("it leaves " + std::to_string(failed.left[i]) + " " + names[i]);
      }
    }
  });
}

void dontReachTheNextFrame(Trial& trial) {
  failEachCall(trial, [&trial](const Failed& failed) {
    if (failed.next.error != PF_Err_NONE) {
      return trial.finding("the frame after it answers error " + std::to_string(failed.next.error));
    }
    const std::string differs = difference(*failed.whole, failed.next.output);
    if (!differs.empty()) trial.finding("the frame after it differs: " + differs);
  });
}

// What is thrown out of a set-up must not end the sweep.
void tellThrown(Trial& trial, const std::string& what, const std::function<void()>& work) {
  try {
    work();
  } catch (const Skipped&) {
    throw;
  } catch (...) {
    trial.finding("in the " + what + " " + whatWasThrown());
  }
}

// A command outside of frames: what comes before it, and itself.
struct Command {
  const char* name;
  std::function<bool(StandInHost&)> prepare;  ///< false: it can't be tried
  std::function<PF_Err(StandInHost&)> run;
};

bool isFine(PF_Err error) {
  return error == PF_Err_NONE;
}

// Each call of the command failed in a load of its own, and then what look does.
void failEachCallOf(Trial& trial, const Command& command, const std::function<void(Loaded&, PF_Err)>& look,
                    int32_t& count) {
  std::map<std::string, int32_t> counts;
  {
    Loaded loaded(trial);
    trial.step(std::string("it gets the ") + command.name);
    if (!command.prepare(loaded.host)) return;
    loaded.host.log().clear();
    loaded.host.log().handleCallsToo = true;
    command.run(loaded.host);
    counts = callsNoted(loaded.host, loaded.host.log());
    loaded.host.finish();
  }
  Chance chance(trial.seed());
  for (const auto& [service, calls] : counts) {
    for (const int32_t nth : chosen(calls, chance)) {
      Loaded loaded(trial);
      trial.step("it gets the " + std::string(command.name) + " and call " + std::to_string(nth) + " of " + service +
                 " fails");
      if (!command.prepare(loaded.host)) return;
      loaded.host.faults().fail(service, nth, kPlanned);
      PF_Err error = PF_Err_INTERNAL_STRUCT_DAMAGED;
      tellThrown(trial, command.name, [&] { error = command.run(loaded.host); });
      const bool happened = loaded.host.faults().waiting() == 0;
      loaded.host.faults().clear();
      if (!happened) continue;
      ++count;
      tellThrown(trial, std::string("life after the ") + command.name, [&] { look(loaded, error); });
    }
  }
}

void failuresOfSetUps(Trial& trial) {
  const auto nothing = [](StandInHost&) { return true; };
  const Command commands[] = {
      {"global set-up", nothing, [](StandInHost& host) { return host.globalSetup(); }},
      {"parameters' set-up", [](StandInHost& host) { return isFine(host.globalSetup()); },
       [](StandInHost& host) { return host.paramsSetup(); }},
      {"sequence set-up", [](StandInHost& host) { return isFine(host.globalSetup()) && isFine(host.paramsSetup()); },
       [](StandInHost& host) { return host.sequenceSetup(); }}};
  int32_t count = 0;
  for (const Command& command : commands) {
    failEachCallOf(
        trial, command,
        [&](Loaded& loaded, PF_Err error) {
          // A host that got an error ends what it began; one that got none goes on.
          if (error == PF_Err_NONE) {
            const Way way = mainWay(loaded.host);
            static_cast<void>(draw(loaded.host, way, frameOf(way.depth, 12, 9), loaded.host.defaults()));
          }
          loaded.host.finish();
        },
        count);
  }
  if (count == 0) throw Skipped("no set-up makes a host call that could fail");
  trial.note(std::to_string(count) + " host calls were failed one by one");
}

void failuresOfOtherCommands(Trial& trial) {
  const auto started = [](StandInHost& host) { return isFine(host.start()); };
  const Command commands[] = {
      {"flattening of its data",
       [](StandInHost& host) { return isFine(host.start()) && host.sequenceData() != nullptr; },
       [](StandInHost& host) {
         const PF_Err error = host.sequenceFlatten();
         if (error == PF_Err_NONE) host.sequenceResetup();
         return error;
       }},
      {"set-up of its stored data",
       [](StandInHost& host) { return isFine(host.start()) && host.sequenceData() != nullptr; },
       [](StandInHost& host) { return host.sequenceResetup(); }},
      {"update of its controls",
       [](StandInHost& host) {
         return isFine(host.start()) && (host.outFlags() & PF_OutFlag_SEND_UPDATE_PARAMS_UI) != 0;
       },
       [](StandInHost& host) { return host.updateParamsUi(host.defaults()); }},
      {"question for the flags of a frame",
       [](StandInHost& host) {
         return isFine(host.start()) && (host.outFlags2() & PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS) != 0;
       },
       [](StandInHost& host) { return host.queryDynamicFlags(host.defaults()); }},
      {"question about itself", started, [](StandInHost& host) { return host.call(PF_Cmd_ABOUT); }}};
  Image whole;
  Way way;
  {
    Life life(trial);
    way = mainWay(life.host);
    whole = drawn(life, way, frameOf(way.depth, 20, 14), life.host.defaults());
  }
  int32_t count = 0;
  for (const Command& command : commands) {
    failEachCallOf(
        trial, command,
        [&](Loaded& loaded, PF_Err) {
          const RenderResult next = draw(loaded.host, way, frameOf(way.depth, 20, 14), loaded.host.defaults());
          if (next.error != PF_Err_NONE) {
            trial.finding("the frame after it answers error " + std::to_string(next.error));
          } else if (const std::string differs = difference(whole, next.output); !differs.empty()) {
            trial.finding("the frame after it differs: " + differs);
          }
          loaded.host.finish();
        },
        count);
  }
  if (count == 0) throw Skipped("no such command makes a host call that could fail");
  trial.note(std::to_string(count) + " host calls were failed one by one");
}

void memoryRunsOut(Trial& trial) {
  Life life(trial);
  StandInHost& host = life.host;
  int32_t count = 0;
  Chance chance(trial.seed());
  for (const Way& way : waysOf(life, Roads::kAll)) {
    const FrameRequest frame = frameOf(way.depth, 20, 14);
    trial.step("drawing by " + way.text());
    static_cast<void>(drawn(life, way, frame, host.defaults()));
    host.log().clear();
    host.log().handleCallsToo = true;
    const Image whole = drawn(life, way, frame, host.defaults());
    host.log().handleCallsToo = false;
    const std::map<std::string, int32_t> counts = callsNoted(host, host.log());
    for (const char* service : {"host_new_handle", "PF_NewWorld", "new_world", "AEGP_NewMemHandle"}) {
      const auto calls = counts.find(service);
      if (calls == counts.end()) continue;
      for (const int32_t nth : chosen(calls->second, chance)) {
        ++count;
        trial.step("drawing by " + way.text() + " where " + service + " fails for good from call " +
                   std::to_string(nth) + " on");
        host.faults().failFrom(service, nth, kPlanned);
        const RenderResult result = draw(host, way, frame, host.defaults());
        host.faults().clear();
        if (result.error == PF_Err_NONE && !difference(whole, result.output).empty()) {
          trial.finding("it answers 0, and the frame isn't whole");
        }
        trial.step("drawing by " + way.text() + " when there is memory again");
        const RenderResult next = draw(host, way, frame, host.defaults());
        if (next.error != PF_Err_NONE || !difference(whole, next.output).empty()) {
          trial.finding("the frame isn't as before");
        }
      }
    }
  }
  if (count == 0) throw Skipped("a frame takes no memory of the host");
  trial.note(std::to_string(count) + " times memory ran out");
}

// A life in a host that lacks something: every answer will do, as long as a frame that is said to be fine is.
void liveWithout(Trial& trial, const HostSettings& settings, const std::string& what, const Image& whole) {
  Loaded loaded(trial, settings);
  trial.step("it is set up " + what);
  PF_Err error = PF_Err_INTERNAL_STRUCT_DAMAGED;
  tellThrown(trial, "set-up " + what, [&] { error = loaded.host.start(); });
  if (!isFine(error)) {
    trial.step("it is set down " + what);
    tellThrown(trial, "set-down " + what, [&] { loaded.host.finish(); });
    return;
  }
  const Way way = mainWay(loaded.host);
  trial.step("drawing " + what);
  const RenderResult result = draw(loaded.host, way, frameOf(way.depth, 20, 14), loaded.host.defaults());
  if (result.error == PF_Err_NONE) {
    const std::string differs = difference(whole, result.output);
    if (!differs.empty()) trial.finding("it answers 0, and the frame isn't whole: " + differs);
  }
  trial.step("it is set down " + what);
  loaded.host.finish();
}

void suitesWithheld(Trial& trial) {
  std::set<std::pair<std::string, int32_t>> suites;
  Image whole;
  {
    Life life(trial);
    const Way way = mainWay(life.host);
    whole = drawn(life, way, frameOf(way.depth, 20, 14), life.host.defaults());
    life.finish();
    for (const standin::SuiteCall& call : life.host.log().suites) suites.emplace(call.name, call.version);
  }
  for (const auto& [name, version] : suites) {
    HostSettings settings;
    settings.withheld = {{name, version}};
    liveWithout(trial, settings, "without " + name + " " + std::to_string(version), whole);
  }
  if (suites.empty()) throw Skipped("the module asks for no suite");
  HostSettings without;
  for (const auto& [name, version] : suites) without.withheld.push_back({name, version});
  liveWithout(trial, without, "without any of its suites", whole);
  trial.note(std::to_string(suites.size()) + " suites were withheld");
}

void noSuitesAtAll(Trial& trial) {
  Image whole;
  {
    Life life(trial);
    const Way way = mainWay(life.host);
    whole = drawn(life, way, frameOf(way.depth, 20, 14), life.host.defaults());
  }
  HostSettings settings;
  settings.withoutBasicSuite = true;
  liveWithout(trial, settings, "in a host without the suite of suites", whole);
}

constexpr Promise kPromises[] = {
    {"failed-calls-are-told",
     "A frame in which a host call fails answers with a code, or is whole all the same; each call is failed in turn.",
     Weight::kMust, 3 * kUsualSeconds, areTold},
    {"failed-calls-lose-nothing", "A frame in which a host call fails gives back what it took.", Weight::kMust,
     3 * kUsualSeconds, loseNothing},
    {"failed-calls-dont-reach-the-next-frame", "The frame after one in which a host call failed is as ever.",
     Weight::kMust, 3 * kUsualSeconds, dontReachTheNextFrame},
    {"failed-calls-of-a-set-up-do-no-harm", "A set-up in which a host call fails ends, and so does its life.",
     Weight::kMust, 3 * kUsualSeconds, failuresOfSetUps},
    {"failed-calls-of-other-commands-do-no-harm",
     "The frame after another command in which a host call failed is as ever.", Weight::kMust, 3 * kUsualSeconds,
     failuresOfOtherCommands},
    {"memory-that-runs-out-is-told",
     "A frame for which the host's memory runs out answers with a code, and the next "
     "one is whole.",
     Weight::kMust, 3 * kUsualSeconds, memoryRunsOut},
    {"suites-withheld-one-by-one", "A host without one of the module's suites gets a code, or a frame that is whole.",
     Weight::kMust, 2 * kUsualSeconds, suitesWithheld},
    {"a-host-without-suites-does-no-harm", "In a host without the suite of suites the module answers with a code.",
     Weight::kShould, kUsualSeconds, noSuitesAtAll},
};

}  // namespace

Subject failurePromises() {
  return {"host calls that fail", kPromises};
}

}  // namespace check
