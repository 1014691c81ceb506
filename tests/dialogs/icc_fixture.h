// What the tests of the ICC profile dialog share: a record, a folder, and one call that opens the dialog through the export.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

#include "include/zvfiledlg.h"
#include "resources/iccprofile_ids.h"
#include "services/zvcolor/zvcolor.h"
#include "tests/support/dialog_driver.h"

namespace zvtest {

constexpr uint32_t kBothGroups = DLG_ICC_SHOW_LOAD | DLG_ICC_SHOW_SAVE;
constexpr int kIccFile = 0, kImage = 1;  // rows of the type lists
constexpr int kMessageText = 65535;

class IccDialog : public testing::Test {
 protected:
  IccDialog() {
    params.uStructSize = sizeof(params);
    params.flags = kBothGroups;
    params.iccProfile.uStructSize = sizeof(params.iccProfile);
  }

  void SetLoadPath(const std::wstring& path) { ::lstrcpynW(params.loadPath, path.c_str(), ZVDLG_PATH_LENGTH); }
  void SetSavePath(const std::wstring& path) { ::lstrcpynW(params.savePath, path.c_str(), ZVDLG_PATH_LENGTH); }

  int32_t Run(const std::function<void(HWND)>& script) {
    return DriveDialog([&] { return Z_DlgICCProfile(parent.hwnd(), &params); },
                       [&] { script(WaitForDialogWith(IDB_ICC_HELP)); });
  }
  // Ends with Close after the script.
  int32_t RunAndClose(const std::function<void(HWND)>& script) {
    return Run([&](HWND dialog) {
      script(dialog);
      Close(dialog);
    });
  }
  static void Close(HWND dialog) {
    WaitUntil([dialog] { return ::IsWindowEnabled(dialog); }, "no box over the dialog");
    Click(dialog, IDB_ICC_CLOSE);
    WaitUntilClosed(dialog);
  }
  static void Escape(HWND dialog) {
    WaitUntil([dialog] { return ::IsWindowEnabled(dialog); }, "no box over the dialog");
    PressKey(dialog, VK_ESCAPE);
    WaitUntilClosed(dialog);
  }
  struct Message {
    std::wstring text, caption;
  };
  // Presses a button and gives the message that comes of it, after closing it.
  static Message PressForMessage(HWND dialog, int button) {
    Click(dialog, button);
    const HWND box = WaitForMessageBox();
    const Message message = {TextOf(box, kMessageText), TextOf(box)};
    Click(box, FindControl(box, IDOK) ? IDOK : IDCANCEL);
    WaitUntilClosed(box);
    WaitUntil([dialog] { return ::IsWindowEnabled(dialog); }, "the dialog can be used again");
    WaitUntilAnswering(dialog);
    return message;
  }

  ParentWindow parent;
  TemporaryFolder folder;
  ICCPROFILEDLGPARAMS params = {};
};

}  // namespace zvtest
