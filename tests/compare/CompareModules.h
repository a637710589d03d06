// Drives two modules of the effect through their entries with the same random frames and tells where a host would see
// them differ: in the bytes of an output, in an answer, in stored data or in the calls that they make to the host.
//
// Each module has a stand-in host of its own, and the two may live in one process: a module binds to nothing outside
// itself, and a host's services act on the host whose module is running.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ae/InOutData.h"

namespace compare {

/// How much of the calls to the host has to be the same.
enum class Calls {
  kAll,           ///< every call: its order, its arguments, its answer; of blocks of memory all but their sizes
  kAllButMemory,  ///< the same without the handle services, and without what is left open of them
  kNone,          ///< outputs, answers and stored data only
};

struct Options {
  uint64_t seed = 1;      ///< of the first frame; the frame after it has the next number
  int32_t frames = 3000;  ///< at least 1
  Calls calls = Calls::kAll;
};

/// What was done, for the reader who wants to know what "no difference" is worth.
struct Tally {
  int32_t frames = 0;
  std::array<int32_t, 3> framesOfDepth{};  ///< 8, 16 and 32 bits
  int32_t smartFrames = 0;                 ///< by the smart road; the others by the classic one
  int32_t drawn = 0;                       ///< frames that came with an output
  int32_t interrupted = 0;                 ///< drawn again with an end ordered by the host in the midst of it
  int32_t faults = 0;                      ///< drawn again with one call to the host failing
  int32_t changes = 0;                     ///< changes of one control by the user, with greying and dynamic flags
  int32_t flattened = 0;                   ///< sequence data flattened, compared and taken up again
  int32_t lives = 0;                       ///< set-ups and set-downs of the whole module
  int64_t outputBytes = 0;                 ///< compared pixel by pixel
  int64_t hostCalls = 0;                   ///< compared, those for progress included
  int64_t blocksOfOtherSize = 0;           ///< handles made or resized alike but for their number of bytes
};

struct Outcome {
  Tally tally;
  std::optional<std::string> difference;  ///< several lines: seed, frame, and what differs first
};

/// Gives the entry of a module that has not been called yet. Called again for each life, since the second life of a
/// loaded module goes on counting controls where the first one ended, and no host lives it; nothing of the life before
/// is in use then.
using Loader = std::function<PF_EffectEntryPoint()>;

/// Runs until the first difference or to the last frame.
/// @param progress  is told the tally now and then
Outcome compareModules(const Loader& one, const Loader& other, const Options& options,
                       const std::function<void(const Tally&)>& progress = {});

}  // namespace compare
