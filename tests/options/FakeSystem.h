// A system that the test decides on: code page, command line, Shift key, and a dialog that is answered by a script.
//
// The test program brings these functions itself, so that the linker takes them in place of the platform's; what the
// effect says to the system is thereby tested alike on every system.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Dialog.h"

struct FakeSystem {
  uint32_t codePage = 1252;
  std::string commandLine = "host.exe";
  bool shiftDown = false;

  int codePageAsked = 0;
  int commandLineAsked = 0;
};

extern FakeSystem fakeSystem;

/// One dialog that was shown, as it stood when it was answered.
struct FakeDialog {
  platform::ScreenRect parentPlace{0, 0, 1000, 800};
  platform::ScreenRect ownPlace{0, 0, 400, 300};
  bool parentIsThere = true;
  bool canBeMade = true;
  std::vector<int32_t> clicks{platform::commandCancel};  ///< commands sent in turn, until the dialog ends
  bool takesClicksBehindTheEnd = false;                  ///< as those that were already on their way
  std::function<void()> whileOpen = [] {};               ///< called before the first command

  int shown = 0;
  std::string modulePath;  ///< what GetModuleHandleA was asked for
  int32_t resource = 0;
  platform::Window parent = nullptr;
  std::map<int32_t, std::string> texts;
  std::map<int32_t, bool> enabled;
  platform::ScreenRect movedTo{};
  bool repaint = false;
  bool ended = false;
  intptr_t result = -2;
  intptr_t userData = 0;
  platform::DialogProcedure procedure = nullptr;
  std::vector<intptr_t> answers;  ///< what the procedure returned, the opening first
};

extern FakeDialog fakeDialog;
