#include "effect/options/OptionDialog.h"

#include "ae/Constants.h"
#include "effect/options/Messages.h"
#include "effect/params/StoredDefaults.h"
#include "effect/share/util/SuiteCache.h"
#include "platform/ResourceIds.h"

namespace vindrel {

namespace {

constexpr int32_t actionSave = 1;
constexpr int32_t actionRestore = 2;

/// The middle of the dialog comes on the middle of its parent, the odd pixel cut off; the size stays.
void centreOnParent(platform::Window dialog) {
  platform::ScreenRect own{};
  platform::ScreenRect parent{};
  platform::GetWindowRect(dialog, &own);
  // A parent that isn't there counts as one of no size at the screen's corner.
  platform::GetWindowRect(platform::GetParent(dialog), &parent);
  const int32_t left = (parent.left + parent.right - own.right + own.left) / 2;
  const int32_t top = (parent.top + parent.bottom - own.bottom + own.top) / 2;
  platform::MoveWindow(dialog, left, top, own.right - own.left, own.bottom - own.top, true);
}

// A dialog hands its owner's pointer about as a number.
DialogResult* resultIn(intptr_t word) {
  return reinterpret_cast<DialogResult*>(word);  // NOLINT(performance-no-int-to-ptr)
}

void openDialog(platform::Window dialog, DialogResult* result) {
  platform::SetWindowLongPtrA(dialog, platform::userDataIndex, reinterpret_cast<intptr_t>(result));
  centreOnParent(dialog);
  platform::SetDlgItemTextA(dialog, VINDREL_SETTINGS_GROUP, LookupMessage(messageSettings));
  platform::SetDlgItemTextA(dialog, VINDREL_SAVE_DEFAULTS, LookupMessage(messageSaveDefaults));
  platform::SetDlgItemTextA(dialog, VINDREL_RESTORE_DEFAULTS, LookupMessage(messageRestoreDefaults));
  if (result->oldHost) {
    platform::EnableWindow(platform::GetDlgItem(dialog, VINDREL_SAVE_DEFAULTS), false);
    platform::EnableWindow(platform::GetDlgItem(dialog, VINDREL_RESTORE_DEFAULTS), false);
  }
}

void closeDialog(platform::Window dialog, int32_t action) {
  DialogResult* const result = resultIn(platform::GetWindowLongPtrA(dialog, platform::userDataIndex));
  if (action != 0) result->action = action;
  platform::EndDialog(dialog, 0);
}

}  // namespace

intptr_t OptionDialogProc(platform::Window dialog, uint32_t message, uintptr_t wParam, intptr_t lParam) {
  if (message == platform::messageInitDialog) {
    openDialog(dialog, resultIn(lParam));
    return 1;
  }
  if (message != platform::messageCommand) return 0;
  switch (static_cast<int32_t>(wParam & 0xFFFF)) {
    case platform::commandCancel:
      closeDialog(dialog, 0);
      break;
    case VINDREL_SAVE_DEFAULTS:
      closeDialog(dialog, actionSave);
      break;
    case VINDREL_RESTORE_DEFAULTS:
      closeDialog(dialog, actionRestore);
      break;
    default:
      break;
  }
  return 1;
}

void DoOptionDialog(PF_InData* in_data, PF_ParamDef* params[]) {
  // The dialog itself asks for no suite: the scope only makes sure that there is a way to them before anything shows.
  const AEUtil::SuiteScope suites(in_data->pica_basicP);
  platform::Window mainWindow = nullptr;
  in_data->utils->get_platform_data(in_data->effect_ref, PF_PlatData_MAIN_WND, &mainWindow);
  char modulePath[settingsPathSize] = "";
  in_data->utils->get_platform_data(in_data->effect_ref, PF_PlatData_RES_FILE_PATH_DEPRECATED, modulePath);

  DialogResult result{0, isOldHost(in_data) ? 1 : 0};
  platform::DialogBoxParamA(platform::GetModuleHandleA(modulePath), VINDREL_OPTION_DIALOG, mainWindow, OptionDialogProc,
                            reinterpret_cast<intptr_t>(&result));
  if (result.action == 0) return;

  char path[settingsPathSize];
  if (!settingsPath(in_data, path)) return;
  if (result.action == actionSave) SaveDefaults(params, path);
  if (result.action == actionRestore) RestoreDefaults(path);
}

}  // namespace vindrel
