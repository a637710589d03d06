/// What each command does. All of them throw UserError or EffectError.
#pragma once

#include "cli/Arguments.h"
#include "cli/Run.h"

namespace cli {

/// `vindrel render`: reads a picture, has the module draw a frame over it, writes the result; or a whole shot of them.
/// A module other than that of the surroundings' folder is run in a process of its own.
/// @return an exit code: of a shot, whether all frames stand
int render(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel render` of numbered files. Frames that fail are named on the error stream, and the others are rendered.
int renderShot(const Arguments& arguments, const Surroundings& surroundings);

/// Removes what a process that ended in the midst of a shot has left of the files it was writing.
void removeLeftoversOfShot(const Arguments& arguments);

/// `vindrel sheet`: draws all combinations of some values, and puts them side by side into one labelled picture.
void drawSheet(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel controls`: the controls as the host received them, and with values given what the module greys for them.
void listControls(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel about`: the module's own text.
void showAbout(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel options`: opens the module's dialog and answers it.
void answerOptions(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel check`: tries what every effect module promises. The processes run this program, which therefore lies in
/// the surroundings' folder.
/// @return an exit code: whether anything failed
int checkPromises(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel screens`: prints a picture in several inks, or lists the recipes that can be named.
void printScreens(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel presets`: lists the presets that can be named, or saves one.
void usePresets(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel completion`: a script for a shell.
void printCompletion(const Arguments& arguments, const Surroundings& surroundings);

/// `vindrel man`: the manual page.
void printManPage(const Arguments& arguments, const Surroundings& surroundings);

}  // namespace cli
