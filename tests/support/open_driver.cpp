#include "tests/support/open_driver.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"

namespace zvtest {

namespace {

constexpr wchar_t kTitle[] = L"Open pictures";
constexpr int kLookInCombo = 1137;

void FreeBitmapHandle(BITMAPHANDLE* bitmap) {
  if (bitmap) {
    FreeBitmap(bitmap);
    ::GlobalFree(bitmap);
  }
}

}  // namespace

OpenCall::OpenCall(const std::wstring& folder) : folder_(folder) {
  openFileName.lStructSize = sizeof(openFileName);
  openFileName.lpstrInitialDir = folder_.c_str();
  openFileName.lpstrTitle = kTitle;
  params.uStructSize = sizeof(params);
  params.viewMode = DLG_VIEW_LIST;
}

int32_t OpenCall::Drive(const std::function<void(HWND)>& script, int listed) {
  return DriveDialog([this] { return Z_DlgOpen(parent, &openFileName, &params); },
                     [&] {
                       const HWND dialog = WaitForDialogTitled(kTitle);
                       WaitUntil([=] { return ComboCount(dialog, kLookInCombo) > 0; }, "the dialog shows its folder");
                       WaitUntil([=] { return OpenFileList(dialog) != nullptr; }, "the dialog shows its files");
                       WaitUntil([=] { return static_cast<int>(ListedFiles(dialog).size()) >= listed; },
                                 "the files are listed");
                       script(dialog);
                     });
}

void OpenCall::FreeFiles() {
  for (int32_t i = 0; params.files && i < params.fileCount; ++i) {
    ::GlobalFree(params.files[i].fileInfo);
    ::GlobalFree(params.files[i].formatOptions);
    FreeBitmapHandle(params.files[i].bitmap);
    FreeBitmapHandle(params.files[i].thumbnail);
  }
  ::GlobalFree(params.files);
  params.files = nullptr;
  params.fileCount = 0;
}

HWND OpenNameBox(HWND dialog) {
  const HWND combo = FindControl(dialog, 1148);
  return combo ? combo : Control(dialog, 1152);
}

HWND OpenHook(HWND dialog) { return ::GetParent(Control(dialog, kOpenPageEdit)); }

HWND OpenShellView(HWND dialog) { return ::FindWindowExW(dialog, nullptr, L"SHELLDLL_DefView", nullptr); }

HWND OpenFileList(HWND dialog) {
  const HWND view = OpenShellView(dialog);
  return view ? ::FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr) : nullptr;
}

void TypeName(HWND dialog, const std::wstring& name) {
  ::SendMessageW(OpenNameBox(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

std::vector<std::wstring> ListedFiles(HWND dialog) {
  const HWND list = OpenFileList(dialog);
  const auto count = static_cast<WPARAM>(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
  std::vector<std::wstring> names;
  for (WPARAM row = 0; row < count; ++row) {
    wchar_t text[MAX_PATH] = L"";
    LVITEMW item = {};
    item.pszText = text;
    item.cchTextMax = MAX_PATH;
    ::SendMessageW(list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    names.emplace_back(text);
  }
  return names;
}

void SelectFile(HWND dialog, const std::wstring& name) {
  const std::vector<std::wstring> names = ListedFiles(dialog);
  for (size_t row = 0; row < names.size(); ++row) {
    if (names[row] == name) {
      LVITEMW item = {};
      item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
      ::SendMessageW(OpenFileList(dialog), LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
      return;
    }
  }
  throw DriverTimeout("the list has no such file");
}

RECT OpenPaneRect(HWND dialog) { return RectIn(dialog, kOpenPane); }

}  // namespace zvtest
