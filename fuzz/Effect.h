// The effect in the stand-in host for the fuzz targets: started once, its instance fed over and over.
#pragma once

#include "effect/filter/EntryPoint.h"
#include "fuzz/Require.h"
#include "host/StandInHost.h"

namespace fuzz {

/// The host with the effect set up, without a settings file.
inline standin::StandInHost& startedHost() {
  static standin::StandInHost* host = [] {
    standin::HostSettings settings;
    settings.modulePath = "";
    // Lives as long as the process: the effect inside is torn down by nobody.
    auto* const made = new standin::StandInHost(EntryPointFunc, settings);
    require(made->start() == 0, "the effect starts");
    return made;
  }();
  return *host;
}

/// Forgets what one input left in the host's books and logs.
inline void forget(standin::StandInHost& host) {
  host.books().clear();
  host.log().clear();
}

/// What no effect may do, whatever it is given.
inline void requireNoBreach(standin::StandInHost& host) {
  using standin::Matter;
  for (const Matter matter : {Matter::kOutside, Matter::kBadHandle, Matter::kBadWorld, Matter::kBadSuite}) {
    require(host.books().complaintCount(matter) == 0,
            host.books().complaints().empty() ? "a breach" : host.books().complaints().front().text);
  }
}

}  // namespace fuzz
