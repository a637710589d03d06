// The real dialog of the built module, on a screen, over the window of a host, used with a mouse.
//
// The language is that of the whole process, so the program is run once for each: VINDREL_EXPECTED_LANGUAGE says "en"
// or "ja". With VINDREL_PICTURE_FILE set, the first test leaves a picture of the dialog there.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1
#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "ae/Constants.h"
#include "host/LoadedModule.h"
#include "host/StandInHost.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/Screen.h"

namespace {

namespace fs = std::filesystem;

constexpr int saveButton = 1010;
constexpr int restoreButton = 1012;
constexpr int settingsGroup = 1015;
constexpr int banner = 1017;

struct Texts {
  std::wstring settings, save, restore;
};

Texts expectedTexts() {
  const char* const language = std::getenv("VINDREL_EXPECTED_LANGUAGE");
  if (language && std::string(language) == "ja") {
    // 設定 （次回起動から有効になります）; 現在のパラメータ設定をデフォルト値として記憶する;
    // パラメータのデフォルト値設定を初期状態に復帰する
    return {L"\u8A2D\u5B9A \uFF08\u6B21\u56DE\u8D77\u52D5\u304B\u3089\u6709\u52B9\u306B\u306A\u308A\u307E\u3059\uFF09",
            L"\u73FE\u5728\u306E\u30D1\u30E9\u30E1\u30FC\u30BF\u8A2D\u5B9A\u3092\u30C7\u30D5\u30A9\u30EB\u30C8\u5024"
            L"\u3068\u3057\u3066\u8A18\u61B6\u3059\u308B",
            L"\u30D1\u30E9\u30E1\u30FC\u30BF\u306E\u30C7\u30D5\u30A9\u30EB\u30C8\u5024\u8A2D\u5B9A\u3092\u521D\u671F"
            L"\u72B6\u614B\u306B\u5FA9\u5E30\u3059\u308B"};
  }
  return {L"Settings (Valid from next start-up)", L"Set current parameter values to default",
          L"Restore initial default parameter values"};
}

/// What was seen of the dialog while it was open.
struct Seen {
  RECT place{};
  RECT parentPlace{};
  std::map<int, std::wstring> texts;
  std::map<int, RECT> places;
  std::map<int, bool> enabled;
  std::map<int, bool> visible;
  POINT closeBox{-1, -1};
  bool stillOpenAtEnd = false;
  std::string trouble;
};

bool isThere(HWND window) {
  return IsWindow(window) && IsWindowVisible(window);
}

/// A host with a window of its own on the screen, and the module beside an empty place for its settings.
class OptionDialogOnScreen : public testing::Test {
 protected:
  OptionDialogOnScreen() {
    fs::copy_file(VINDREL_MODULE_FILE, folder_.path("Vindrel.aex"));

    WNDCLASSA hostClass{};
    hostClass.lpfnWndProc = DefWindowProcA;
    hostClass.lpszClassName = "VindrelTestHost";
    hostClass.hInstance = GetModuleHandleA(nullptr);
    hostClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    RegisterClassA(&hostClass);  // fails harmlessly from the second test on
    // Odd sizes, so that the middle doesn't fall on a whole pixel.
    window_ = CreateWindowA("VindrelTestHost", "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 103, 61, 901, 703, nullptr,
                            nullptr, hostClass.hInstance, nullptr);
    settings_.mainWindow = window_;
  }
  ~OptionDialogOnScreen() override { DestroyWindow(window_); }

  /// Opens the dialog and does `action` to it from another thread, as a person outside. A dialog that is still open
  /// afterwards is closed from here, and `stillOpenAtEnd` set.
  Seen withTheDialog(const std::function<void(HWND, const Seen&)>& action) {
    const standin::LoadedModule module(folder_.path("Vindrel.aex"));
    standin::StandInHost host(module, settings_);
    EXPECT_EQ(host.start(), 0);
    Seen seen;
    std::thread person([&] {
      HWND dialog = nullptr;
      for (int tenths = 0; tenths < 300 && !dialog; ++tenths) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        dialog = FindWindowA("#32770", "option");
      }
      if (!dialog) {
        seen.trouble = "no dialog came";
        return;
      }
      if (!screen::waitForWindow("option")) seen.trouble = "the dialog was not shown";
      lookAt(dialog, seen);
      action(dialog, seen);
      for (int tenths = 0; tenths < 30 && isThere(dialog); ++tenths)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
      seen.stillOpenAtEnd = isThere(dialog);
      if (seen.stillOpenAtEnd) PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    EXPECT_EQ(host.doDialog(host.defaults()), 0);
    person.join();
    EXPECT_EQ(host.finish(), 0);
    EXPECT_EQ(seen.trouble, "");
    return seen;
  }

  static void clickMiddle(const RECT& place) {
    EXPECT_TRUE(screen::click((place.left + place.right) / 2, (place.top + place.bottom) / 2));
  }
  static void clickCloseBox(const Seen& seen) {
    ASSERT_GE(seen.closeBox.x, 0) << "no close box in the caption";
    EXPECT_TRUE(screen::click(seen.closeBox.x, seen.closeBox.y));
  }

  void settingsHold(const std::string& text) const { folder_.write("Vindrel.ini", text); }
  std::string settingsText() const { return folder_.read("Vindrel.ini"); }
  bool settingsExist() const { return folder_.has("Vindrel.ini"); }
  fs::path settingsFile() const { return folder_ / "Vindrel.ini"; }

  standin::HostSettings settings_;

 private:
  void lookAt(HWND dialog, Seen& seen) const {
    GetWindowRect(dialog, &seen.place);
    GetWindowRect(window_, &seen.parentPlace);
    for (const int id : {saveButton, restoreButton, settingsGroup, banner}) {
      auto* const control = GetDlgItem(dialog, id);
      wchar_t text[200] = L"";
      GetWindowTextW(control, text, 200);
      seen.texts[id] = text;
      GetWindowRect(control, &seen.places[id]);
      seen.enabled[id] = IsWindowEnabled(control) != FALSE;
      seen.visible[id] = IsWindowVisible(control) != FALSE;
    }
    const LONG y = seen.place.top + GetSystemMetrics(SM_CYFIXEDFRAME) + GetSystemMetrics(SM_CYCAPTION) / 2;
    for (LONG x = seen.place.right - 1; x > seen.place.left && seen.closeBox.x < 0; --x)
      if (SendMessageA(dialog, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == HTCLOSE) seen.closeBox = {x - 4, y};
  }

  vindrel::test::TemporaryFolder folder_;
  HWND window_ = nullptr;
};

TEST_F(OptionDialogOnScreen, opensCentredOnTheHostsMainWindow) {
  const Seen seen = withTheDialog([](HWND, const Seen& open) {
    if (const char* const file = std::getenv("VINDREL_PICTURE_FILE")) {
      EXPECT_TRUE(screen::takePicture(file, open.place.left, open.place.top, open.place.right - open.place.left,
                                      open.place.bottom - open.place.top));
    }
    clickCloseBox(open);
  });
  const LONG width = seen.place.right - seen.place.left;
  const LONG height = seen.place.bottom - seen.place.top;
  // The host's window reaches from 103 to 1004 and from 61 to 764.
  EXPECT_EQ(seen.place.left, (103 + 1004 - width) / 2);
  EXPECT_EQ(seen.place.top, (61 + 764 - height) / 2);
  EXPECT_EQ(seen.parentPlace.left, 103);
  EXPECT_EQ(seen.parentPlace.bottom, 764);
}

TEST_F(OptionDialogOnScreen, showsItsTextsAndItsBannerInTheExpectedLanguage) {
  Seen seen = withTheDialog([](HWND, const Seen& open) { clickCloseBox(open); });
  const Texts expected = expectedTexts();
  EXPECT_EQ(seen.texts[settingsGroup], expected.settings);
  EXPECT_EQ(seen.texts[saveButton], expected.save);
  EXPECT_EQ(seen.texts[restoreButton], expected.restore);
  for (const int id : {saveButton, restoreButton, settingsGroup, banner}) EXPECT_TRUE(seen.visible[id]) << id;
  EXPECT_TRUE(seen.enabled[saveButton]);
  EXPECT_TRUE(seen.enabled[restoreButton]);
  // A static control of this style takes the size of its bitmap.
  EXPECT_EQ(seen.places[banner].right - seen.places[banner].left, 365);
  EXPECT_EQ(seen.places[banner].bottom - seen.places[banner].top, 65);
}

TEST_F(OptionDialogOnScreen, aClickOnTheFirstButtonWritesTheSettingsFile) {
  const Seen seen = withTheDialog([](HWND, const Seen& open) { clickMiddle(open.places.at(saveButton)); });
  EXPECT_FALSE(seen.stillOpenAtEnd);
  EXPECT_EQ(settingsText().substr(0, 31), "[Version=1.5]\r\nDot Shape=1\r\nDot");
}

TEST_F(OptionDialogOnScreen, aClickOnTheSecondButtonDeletesTheSettingsFile) {
  settingsHold("[Version=1.5]\r\nDot Shape=4\r\n");
  const Seen seen = withTheDialog([](HWND, const Seen& open) { clickMiddle(open.places.at(restoreButton)); });
  EXPECT_FALSE(seen.stillOpenAtEnd);
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialogOnScreen, theCloseBoxChangesNothing) {
  settingsHold("[Version=1.5]\r\nDot Shape=4\r\n");
  const Seen seen = withTheDialog([](HWND, const Seen& open) { clickCloseBox(open); });
  EXPECT_FALSE(seen.stillOpenAtEnd);
  EXPECT_EQ(settingsText(), "[Version=1.5]\r\nDot Shape=4\r\n");
}

TEST_F(OptionDialogOnScreen, theCloseBoxMakesNoFile) {
  const Seen seen = withTheDialog([](HWND, const Seen& open) { clickCloseBox(open); });
  EXPECT_FALSE(seen.stillOpenAtEnd);
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialogOnScreen, theEscapeKeyIsTheCloseBox) {
  const Seen seen = withTheDialog([](HWND, const Seen&) { EXPECT_TRUE(screen::pressKey("Escape")); });
  EXPECT_FALSE(seen.stillOpenAtEnd);
  EXPECT_FALSE(settingsExist());
}

TEST_F(OptionDialogOnScreen, onAnOldHostBothButtonsAreGreyAndOnlyTheCloseBoxIsLeft) {
  settings_.version = {12, 11};
  settingsHold("[Version=1.5]\r\nDot Shape=4\r\n");
  bool openAfterBothClicks = false;
  Seen seen = withTheDialog([&](HWND dialog, const Seen& open) {
    clickMiddle(open.places.at(saveButton));
    clickMiddle(open.places.at(restoreButton));
    std::this_thread::sleep_for(std::chrono::seconds(1));
    openAfterBothClicks = isThere(dialog);
    clickCloseBox(open);
  });
  EXPECT_FALSE(seen.enabled[saveButton]);
  EXPECT_FALSE(seen.enabled[restoreButton]);
  EXPECT_TRUE(seen.visible[saveButton]);
  EXPECT_TRUE(seen.visible[restoreButton]);
  EXPECT_TRUE(openAfterBothClicks);
  EXPECT_FALSE(seen.stillOpenAtEnd);
  EXPECT_EQ(settingsText(), "[Version=1.5]\r\nDot Shape=4\r\n");
}

}  // namespace
