#include <set>

#include "cli/ApartProcess.h"
#include "cli/Commands.h"
#include "cli/FrameDrawer.h"
#include "cli/Shot.h"
#include "cli/ShotPipeline.h"
#include "cli/ShotReport.h"
#include "cli/ShotWorkers.h"
#include "cli/color/FileEncoding.h"
#include "cli/files/PutFile.h"

namespace cli {
namespace {

void tidyUp(const std::vector<ShotFrame>& frames) {
  std::set<std::filesystem::path> folders;
  for (const ShotFrame& frame : frames) folders.insert(frame.output.parent_path());
  for (const std::filesystem::path& folder : folders) removeLeftovers(folder);
}

}  // namespace

void removeLeftoversOfShot(const Arguments& arguments) {
  tidyUp(framesOfShot(arguments));
}

int renderShot(const Arguments& arguments, const Surroundings& surroundings) {
  const std::vector<ShotFrame> frames = framesOfShot(arguments);
  const FramePictures pictures(arguments);
  FrameDrawer drawer(arguments, pictures);
  for (const std::string& line : drawer.warnings()) surroundings.err << "vindrel: warning: " << line << '\n';
  const auto kind = frames.empty() ? std::nullopt : storedKind(frames.front().input);
  if (kind && arguments.colorSpace.empty()) {
    tellCrossing(frames.front().input, *kind, frames.front().output, surroundings);
  }
  if (arguments.skipExisting && !arguments.checkOnly) tidyUp(frames);

  ShotReport report(frames, arguments, surroundings);
  const auto take = [&](const FrameResult& result) {
    report.take(result);
    giveSignOfLife();
  };
  giveSignOfLife();
  if (arguments.jobs > 1 && !arguments.checkOnly) {
    runWorkers(frames, arguments, drawer, take);
    // A worker that crashed may have been writing.
    tidyUp(frames);
  } else {
    runPipeline(frames, arguments, drawer, take, [&](FrameStep step) { report.pass(step); });
  }
  return report.finish();
}

}  // namespace cli
