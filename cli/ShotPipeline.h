/// Renders the frames of a shot in this process: while one is drawn, others are read and written by threads. So many
/// frames as there are threads and two more are on their way at once, so memory doesn't grow with the shot.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "cli/FrameDrawer.h"
#include "cli/ImageFile.h"
#include "cli/Shot.h"

namespace cli {

/// @param take  gets each frame's result, on any thread, not two at once
/// @param pass  told of each step of a frame, on any thread
void runPipeline(const std::vector<ShotFrame>& frames, const Arguments& arguments, FrameDrawer& drawer,
                 const std::function<void(const FrameResult&)>& take, const std::function<void(FrameStep)>& pass);

/// The size of the first frame that can be read; nothing when none can.
std::optional<PictureSize> sizeOfShot(const std::vector<ShotFrame>& frames, const FramePictures& pictures);

/// The whole way of one frame on this thread. Never throws; a failure is in the result.
/// @param size  that the picture must have; none: any
FrameResult renderFrame(const std::vector<ShotFrame>& frames, std::size_t index, const Arguments& arguments,
                        FrameDrawer& drawer, const std::optional<PictureSize>& size);

}  // namespace cli
