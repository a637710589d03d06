// The screen as a person meets it: looks for a window, clicks with a mouse, takes pictures.
//
// Clicks go through the display server to whatever lies under the mouse; no message is sent to any window.
#pragma once

#include <string>

namespace screen {

/// Waits up to half a minute for a shown window. False when none came.
bool waitForWindow(const std::string& caption);

/// Screen pixels. False when the click could not be made.
bool click(int x, int y);

/// Presses and lets go a key by its X name, "Escape".
bool pressKey(const std::string& name);

/// Writes a part of the screen into a file of the building machine.
bool takePicture(const std::string& file, int left, int top, int width, int height);

}  // namespace screen
