/// Work that a module of another maker may crash, hang or end, done in a process of its own.
#pragma once

#include <functional>

#include "cli/Run.h"

namespace cli {

/// Forks, does the work there and passes on what it writes to its surroundings. To be called while this process has no
/// other threads.
/// @param seconds  without a word, a sign of life or the end after which the process is taken for hung
/// @return what the work returned
/// @throws UserError, EffectError  that the work threw; EffectError when its process crashed, hung or ended before it
int runApart(const Surroundings& surroundings, double seconds, const std::function<int(const Surroundings&)>& work);

/// For work that may be done so, to be called now and then: it goes on. Does nothing in any other process. For one
/// thread at a time.
void giveSignOfLife();

}  // namespace cli
