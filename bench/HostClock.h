// Tells the host's share of a frame's time from the effect's, for any module.
//
// A module is driven through timedEntry(), which lends it copies of the host's tables whose functions run a clock. What
// passes inside an entry and outside of these functions is the effect's own time. One module at a time, one thread.
#pragma once

#include "ae/InOutData.h"

namespace vindrel::bench {

/// Seconds since the last resetClocks().
struct FrameClocks {
  double effect;  ///< inside the entry, the host's services left out
  double host;    ///< inside the host's services, as far as the entry called them
};

/// The entry to give to a StandInHost: calls `entry`, and keeps the two clocks.
PF_EffectEntryPoint timedEntry(PF_EffectEntryPoint entry);

void resetClocks();
FrameClocks readClocks();

}  // namespace vindrel::bench
