/// Renders the frames of a shot in several processes, each of which has the module for itself: a frame that ends or
/// hangs its process is tried once more in a new one and then fails by name, and the others go on.
#pragma once

#include <functional>
#include <vector>

#include "cli/FrameDrawer.h"
#include "cli/Shot.h"

namespace cli {

/// To be called while this process has no other threads.
/// @param take  gets each frame's result
/// @throws UserError when not one process can be started
void runWorkers(const std::vector<ShotFrame>& frames, const Arguments& arguments, FrameDrawer& drawer,
                const std::function<void(const FrameResult&)>& take);

}  // namespace cli
