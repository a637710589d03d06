// Numbers of the module's resources and of the dialog's controls.
// Macros and nothing else, because the resource compiler reads this file as well as the C++ compiler. Where there are
// no resources, the stand-in for the dialog goes by the same numbers.
#pragma once

#define VINDREL_PROPERTY_LIST 16000
#define VINDREL_OPTION_DIALOG 101
#define VINDREL_BANNER 102

#define VINDREL_SAVE_DEFAULTS 1010
#define VINDREL_RESTORE_DEFAULTS 1012
#define VINDREL_SETTINGS_GROUP 1015
#define VINDREL_BANNER_CONTROL 1017
