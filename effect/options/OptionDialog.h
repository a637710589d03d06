// The option dialog: two buttons that store the current values as the defaults of new instances, or drop them.
#pragma once

#include <cstdint>

#include "ae/InOutData.h"
#include "platform/Dialog.h"

namespace vindrel {

/// What the user chose, filled by the dialog procedure and read when the dialog has closed.
struct DialogResult {
  int32_t action;   ///< 0 nothing, 1 save the defaults, 2 restore the built-in ones
  int32_t oldHost;  ///< 1: the host is too old for stored defaults, both buttons are grey
};

/// Shows the dialog over the host's main window, then carries out what was chosen. Says nothing to the user about
/// success or failure.
/// @param params  the parameters of the command, with their values at the instance's time.
/// Throws the bare long 516 when the host gave no basic suite.
void DoOptionDialog(PF_InData* in_data, PF_ParamDef* params[]);

/// The dialog's procedure. At its opening `lParam` is the address of a DialogResult that outlives the dialog.
intptr_t OptionDialogProc(platform::Window dialog, uint32_t message, uintptr_t wParam, intptr_t lParam);

}  // namespace vindrel
