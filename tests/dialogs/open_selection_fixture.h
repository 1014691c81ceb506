// What the tests of the open dialog's selection share: a folder of small pictures, the dialog on it, and clicks in its list.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/open_driver.h"
#include "tests/support/pictures.h"

namespace zvtest {

// With the left button on the item of that name. keys are MK_CONTROL and MK_SHIFT.
inline void ClickFile(HWND dialog, const std::wstring& name, WPARAM keys = 0, bool twice = false) {
  const HWND list = OpenFileList(dialog);
  const std::vector<std::wstring> names = ListedFiles(dialog);
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) {
    throw DriverTimeout("the list has no such file to click on");
  }
  const auto row = static_cast<WPARAM>(found - names.begin());
  ::SendMessageW(list, LVM_ENSUREVISIBLE, row, FALSE);
  RECT label = {.left = LVIR_LABEL};
  ::SendMessageW(list, LVM_GETITEMRECT, row, reinterpret_cast<LPARAM>(&label));
  const LPARAM point = MAKELPARAM(label.left + 4, (label.top + label.bottom) / 2);
  ::PostMessageW(list, WM_LBUTTONDOWN, keys | MK_LBUTTON, point);
  ::PostMessageW(list, WM_LBUTTONUP, keys, point);
  if (twice) {
    ::PostMessageW(list, WM_LBUTTONDBLCLK, keys | MK_LBUTTON, point);
    ::PostMessageW(list, WM_LBUTTONUP, keys, point);
  }
}

inline void SelectAllFiles(HWND dialog) {
  LVITEMW all = {};
  all.state = all.stateMask = LVIS_SELECTED;
  ::SendMessageW(OpenFileList(dialog), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&all));
}

inline int SelectedFiles(HWND dialog) {
  return static_cast<int>(::SendMessageW(OpenFileList(dialog), LVM_GETSELECTEDCOUNT, 0, 0));
}

inline void WaitForSelection(HWND dialog, int count) {
  WaitUntil([=] { return SelectedFiles(dialog) == count; }, std::to_string(count) + " files are selected");
}

// As SelectFile, and the dialog has taken notice of it.
inline void ChooseFile(HWND dialog, const std::wstring& name) {
  SelectFile(dialog, name);
  WaitUntil([=] { return TextOf(OpenNameBox(dialog)) == name; }, "the name box shows the file");
}

class OpenSelectionTest : public ::testing::Test {
 protected:
  OpenSelectionTest() { call.parent = parent.hwnd(); }

  std::wstring AddPicture(const std::wstring& name, const PictureKind& kind = {}) {
    EXPECT_TRUE(WritePicture(folder.File(name), kind));
    ++pictures;
    return folder.File(name);
  }
  // Opens the dialog on the folder.
  int32_t Open(const std::function<void(HWND dialog)>& script) { return call.Drive(script, pictures); }
  int32_t OpenByName(const std::wstring& name) {
    return Open([&](HWND dialog) {
      TypeName(dialog, name);
      Click(dialog, IDOK);
    });
  }
  // The names of the files handed over, in alphabetical order.
  std::vector<std::wstring> NamesOpened() const {
    std::vector<std::wstring> names;
    for (int32_t i = 0; i < call.params.fileCount; ++i) {
      const std::wstring path = call.params.files[i].fileName;
      EXPECT_EQ(folder.path(), path.substr(0, path.rfind(L'\\')));
      names.push_back(path.substr(path.rfind(L'\\') + 1));
    }
    std::ranges::sort(names);
    return names;
  }
  const OPENDLGFILEDATA& Opened(int32_t index = 0) const { return call.params.files[index]; }

  TemporaryFolder folder;
  ParentWindow parent;
  OpenCall call{folder.path()};
  int pictures = 0;  // items that the list is to show before a script starts
};

}  // namespace zvtest
