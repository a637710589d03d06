/// Hosts for one module on several threads: each draws frames of the instance that another host has set up.
#pragma once

#include <memory>

#include "host/StandInHost.h"

namespace standin {

/// A host that stands beside another one, for one other thread at a time: it has the other's controls, flags, settings,
/// global data and sequence data, shares its handles, and keeps books and a log of its own. It sends frames alone;
/// set-ups and set-downs are the other's, which must be set up, outlive it and send nothing while threads draw.
std::unique_ptr<StandInHost> hostBeside(StandInHost& other);

}  // namespace standin
