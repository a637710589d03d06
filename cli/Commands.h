/// What each command does. All of them throw UserError or EffectError.
#pragma once

#include "cli/Arguments.h"
#include "cli/Run.h"

namespace cli {

/// `vindrel render`: reads a picture, has the module draw a frame over it, writes the result.
void renderPicture(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel controls`: the controls as the host received them, and with values given what the module greys for them.
void listControls(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel about`: the module's own text.
void showAbout(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel options`: opens the module's dialog and answers it.
void answerOptions(const Arguments& arguments, const Surroundings& surroundings);

}  // namespace cli
