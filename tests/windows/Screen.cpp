#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1
#include <windows.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/windows/Screen.h"

namespace screen {

namespace {

// Wine starts a program of the system below it like any other, but gives no handle to wait on: the script leaves its
// result in a file.
bool onScreen(const std::string& action) {
  static std::atomic<int> count{0};
  const std::string result = std::string(VINDREL_SCREEN_FOLDER) + "/result." + std::to_string(GetCurrentProcessId()) +
                             "." + std::to_string(++count);
  std::string line = "sh " VINDREL_ON_SCREEN " " + result + " " + action;
  std::error_code ignored;
  std::filesystem::remove(result, ignored);  // of an earlier run with the same number
  STARTUPINFOA start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  if (!CreateProcessA("Z:\\bin\\sh", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
    return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  for (int tenths = 0; tenths < 400; ++tenths) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    if (!std::filesystem::exists(result)) continue;
    int status = -1;
    {
      std::ifstream file(result);
      file >> status;
    }
    std::filesystem::remove(result);
    return status == 0;
  }
  return false;
}

}  // namespace

bool waitForWindow(const std::string& caption) {
  return onScreen("appears " + caption);
}

bool click(int x, int y) {
  return onScreen("click " + std::to_string(x) + " " + std::to_string(y));
}

bool pressKey(const std::string& name) {
  return onScreen("key " + name);
}

bool takePicture(const std::string& file, int left, int top, int width, int height) {
  return onScreen("picture " + file + " " + std::to_string(width) + "x" + std::to_string(height) + "+" +
                  std::to_string(left) + "+" + std::to_string(top));
}

}  // namespace screen
