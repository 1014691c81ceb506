// What the tests of the open dialog's frame share: a folder with pictures, a call, and the shell generation of choice.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include <optional>

#include "include/zvfiledlg.h"
#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/import_patch.h"
#include "tests/support/open_driver.h"
#include "tests/support/pictures.h"

namespace zvtest {

inline constexpr int kShellHelp = 1038;
inline constexpr int kShellTypeLabel = 1089;
inline constexpr int kShellNameLabel = 1090;
inline constexpr int kShellLookInLabel = 1091;
inline constexpr int kShellTypeCombo = 1136;
inline constexpr int kShellFolderCombo = 1137;
inline constexpr int kPlacesBar = 9155;

// While it lives, the library believes to run on a system whose shell has no places of its own.
class OldStyleShell {
 private:
  static DWORD WINAPI Version52() { return 0x0ECE0205; }
  ImportPatch version_{L"zvfiledlg.dll", "GetVersion", &Version52};
};
// One that has them, whatever the system under the test says.
class NewStyleShell {
 private:
  static DWORD WINAPI Version61() { return 0x1DB10106; }
  ImportPatch version_{L"zvfiledlg.dll", "GetVersion", &Version61};
};

class OpenCore : public ::testing::Test {
 protected:
  OpenCore() {
    EXPECT_TRUE(WritePicture(picture, {.width = 300, .height = 200}));
    EXPECT_TRUE(WritePicture(pages, {.width = 240, .height = 160, .format = FMT_TIFF, .pages = 3}));
    call.parent = parent.hwnd();
    call.params.flags =
        DLG_OPEN_SHOW_PAGE_CONTROLS | DLG_OPEN_SHOW_DELETE_PAGE | DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_SHOW_FILE_INFO;
  }
  int32_t Open(const std::function<void(HWND)>& script) { return call.Drive(script, 2); }

  NewStyleShell shell;
  TemporaryFolder folder;
  ParentWindow parent;
  std::wstring picture = folder.File(L"picture.bmp");
  std::wstring pages = folder.File(L"pages.tif");
  OpenCall call{folder.path()};
};

inline void Cancel(HWND dialog) { Click(dialog, IDCANCEL); }

// The tool bar of the top row, not the one of the shell's places.
inline HWND OpenToolBar(HWND dialog) {
  constexpr int kShellPlaces = 1184;
  HWND bar = nullptr;
  do {
    bar = ::FindWindowExW(dialog, bar, TOOLBARCLASSNAMEW, nullptr);
  } while (bar && ::GetDlgCtrlID(bar) == kShellPlaces);
  return bar;
}

inline RECT RectOfWindow(HWND dialog, HWND window) {
  RECT rect;
  ::GetWindowRect(window, &rect);
  ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}
inline RECT OpenViewRect(HWND dialog) { return RectOfWindow(dialog, OpenShellView(dialog)); }
inline int OpenClientRight(HWND dialog) {
  RECT client;
  ::GetClientRect(dialog, &client);
  return client.right;
}

// Drags the lower right corner, as far as the dialog lets itself be dragged.
inline void DragCorner(HWND dialog, int dx, int dy) {
  RECT frame;
  ::GetWindowRect(dialog, &frame);
  MINMAXINFO limits = {};
  limits.ptMinTrackSize = {::GetSystemMetrics(SM_CXMINTRACK), ::GetSystemMetrics(SM_CYMINTRACK)};
  ::SendMessageW(dialog, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
  const LONG width = std::max(frame.right - frame.left + dx, limits.ptMinTrackSize.x);
  const LONG height = std::max(frame.bottom - frame.top + dy, limits.ptMinTrackSize.y);
  ::SetWindowPos(dialog, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace zvtest
