// What the tests of the batch conversion dialog share: a record, folders with pictures, and one call that opens the dialog
// through the real export and runs a script against it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "resources/conversion_ids.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/pictures.h"

namespace zvtest {

inline constexpr uint32_t kOfferEverything = 0x0007fffe;  // all but context help

class ConversionDialog : public ::testing::Test {
 protected:
  ConversionDialog() {
    params.uStructSize = sizeof params;
    params.uiFlags = kOfferEverything;
    SetDestination(out.path());
    SetSourceFolder(in.path());
  }

  void SetDestination(const std::wstring& folder) {
    ::lstrcpynW(params.destinationFolder, folder.c_str(), ZVDLG_PATH_LENGTH);
  }
  void SetSourceFolder(const std::wstring& folder) {
    ::lstrcpynW(params.sourceFolder, folder.c_str(), ZVDLG_PATH_LENGTH);
  }

  std::wstring AddPicture(const std::wstring& name, const PictureKind& kind = {}) {
    const std::wstring path = in.File(name);
    EXPECT_TRUE(WritePicture(path, kind)) << "a picture for the test";
    AddToList(path);
    return path;
  }
  void AddToList(const std::wstring& path) { files.insert(files.end(), path.c_str(), path.c_str() + path.size() + 1); }

  // Offers these catalogue formats alone, all depths and sub types of each.
  void Offer(const std::vector<int32_t>& formats) {
    offered.clear();
    for (const int32_t format : formats) {
      offered.push_back({0, format, 0, nullptr});
    }
    params.formats = offered.data();
    params.formatCount = static_cast<int32_t>(offered.size());
  }

  int32_t Run(const std::function<void(HWND)>& script) {
    if (!files.empty()) {
      files.push_back(L'\0');
      params.fileList = files.data();
    }
    const int32_t result = DriveDialog([&] { return Z_DlgFileConversion(parent.hwnd(), &params); },
                                       [&] {
                                         const HWND dialog = WaitForDialogWith(IDL_CONV_FORMATS);
                                         WaitUntil([dialog] { return ::IsWindowVisible(dialog); }, "the dialog shows");
                                         script(dialog);
                                       });
    if (!files.empty()) {
      files.pop_back();
    }
    return result;
  }
  // Closes the dialog with its Close button after the script.
  int32_t RunAndClose(const std::function<void(HWND)>& script) {
    return Run([&](HWND dialog) {
      script(dialog);
      WaitUntilIdle(dialog);
      Click(dialog, IDB_CONV_CLOSE);
      WaitUntilClosed(dialog);
    });
  }

  static void WaitUntilIdle(HWND dialog) {
    WaitUntil([dialog] { return ::IsWindowEnabled(dialog) && !FindDialogTitled(L"Converting..."); },
              "no box over the dialog");
  }
  // Ends a dialog that stands over the conversion dialog, and waits until that can be used again: a press that comes earlier
  // may be lost with the focus.
  static void CloseWith(HWND dialog, int button) {
    const HWND owner = ::GetWindow(dialog, GW_OWNER);
    Click(dialog, button);
    WaitUntilClosed(dialog);
    WaitUntil([owner] { return ::IsWindowEnabled(owner); }, "the dialog below can be used again");
  }
  // Presses Convert and waits for the end of the run.
  static void ConvertAndWait(HWND dialog) { ClickAndWait(dialog, IDB_CONV_CONVERT); }

  // The one button of a message box has either number, by the system's version.
  static void Dismiss(HWND messageBox) {
    Click(messageBox, FindControl(messageBox, IDOK) ? IDOK : IDCANCEL);
    WaitUntilClosed(messageBox);
  }

  static bool Exists(const std::wstring& path) { return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }
  std::vector<std::wstring> Outputs() const { return NamesIn(out.path()); }
  static std::vector<std::wstring> NamesIn(const std::wstring& folder) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW entry;
    const HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
      return names;
    }
    do {
      if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
        names.push_back(entry.cFileName);
      }
    } while (::FindNextFileW(search, &entry));
    ::FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
  }

  ParentWindow parent;
  TemporaryFolder in;
  TemporaryFolder out;
  FILECONVERSIONDLGPARAMS params = {};
  std::vector<wchar_t> files;  // strings one after the other; the empty one that ends them is added for each call
  std::vector<FILECONVERSIONFORMAT> offered;
};

}  // namespace zvtest
