/// The effect as all instances of the filter in a process share it: one module, set up once, one call at a time.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "cli/EffectSession.h"
#include "frei0r/Parameters.h"

namespace video {

class Effect {
 public:
  /// Loads the module that $VINDREL_MODULE names, else the Vindrel.so beside this library, its links followed or not.
  /// @throws cli::UserError, cli::EffectError
  Effect();

  /// To be held during every call into the session.
  std::mutex mutex;
  cli::EffectSession session;
  const std::vector<Parameter> parameters;
};

/// The process's effect, loaded now if it isn't yet. Null, with a line on the error stream, when it can't be loaded.
std::shared_ptr<Effect> sharedEffect();

/// Lets go of the process's effect; it ends when the last instance that holds it does.
void dropSharedEffect();

/// One line on the error stream, which is all that a filter can say.
void complain(const std::string& text);

}  // namespace video
