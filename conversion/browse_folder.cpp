#include "conversion/browse_folder.h"

#include <shlobj.h>

#include "platform/scope_exit.h"

namespace {

void SelectStart(HWND picker, LPARAM startText) {
  const auto* start = reinterpret_cast<const wchar_t*>(startText);
  wchar_t current[MAX_PATH] = L"";
  if (!*start) {
    ::GetCurrentDirectoryW(MAX_PATH, current);
    start = current;
  }
  ::SendMessageW(picker, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(start));
}

int CALLBACK OnPickerEvent(HWND picker, UINT event, LPARAM item, LPARAM startText) {
  if (event == BFFM_INITIALIZED) {
    SelectStart(picker, startText);
  } else if (event == BFFM_SELCHANGED) {
    wchar_t path[MAX_PATH] = L"";
    if (::SHGetPathFromIDListW(reinterpret_cast<PCIDLIST_ABSOLUTE>(item), path)) {
      ::SendMessageW(picker, BFFM_SETSTATUSTEXTW, 0, reinterpret_cast<LPARAM>(path));
    }
  }
  return 0;
}

}  // namespace

bool BrowseForFolder(HWND owner, const CString& title, const CString& start, CString& folder) {
  const HRESULT initialized = ::OleInitialize(nullptr);
  const scope_exit uninitialize([initialized] {
    if (SUCCEEDED(initialized)) {
      ::OleUninitialize();
    }
  });
  BROWSEINFOW browse = {};
  browse.hwndOwner = owner;
  browse.lpszTitle = title;
  browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT;
  browse.lpfn = &OnPickerEvent;
  browse.lParam = reinterpret_cast<LPARAM>(start.GetString());
  const PIDLIST_ABSOLUTE chosen = ::SHBrowseForFolderW(&browse);
  if (!chosen) {
    return false;
  }
  const scope_exit release([chosen] { ::CoTaskMemFree(chosen); });
  wchar_t path[MAX_PATH] = L"";
  if (!::SHGetPathFromIDListW(chosen, path)) {
    return false;
  }
  folder = path;
  return true;
}
