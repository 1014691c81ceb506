// Opens the open dialog through its export on a folder, and does in it what a user does. OpenCall owns both records and frees
// what a call hands over.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"

namespace zvtest {

inline constexpr int kOpenPageEdit = 9402;
inline constexpr int kOpenPageLabel = 9404;
inline constexpr int kOpenDeletePage = 9403;
inline constexpr int kOpenLoadOptions = 9401;
inline constexpr int kOpenPane = 59648;
inline constexpr int kOpenPreviewCommand = 41216;
inline constexpr int kOpenFileInfoCommand = 41217;

class OpenCall {
 public:
  explicit OpenCall(const std::wstring& folder);
  OpenCall(const OpenCall&) = delete;
  OpenCall& operator=(const OpenCall&) = delete;
  ~OpenCall() { FreeFiles(); }

  // Runs Z_DlgOpen with both records as they stand; the script starts once the folder's `listed` items are shown.
  int32_t Drive(const std::function<void(HWND dialog)>& script, int listed = 1);
  void FreeFiles();

  OPENFILENAMEW openFileName = {};
  OPENFILEDLGPARAMS params = {};
  HWND parent = nullptr;

 private:
  std::wstring folder_;
};

HWND OpenNameBox(HWND dialog);
// The window of the dialog that holds our own controls and gets our commands.
HWND OpenHook(HWND dialog);
HWND OpenShellView(HWND dialog);
HWND OpenFileList(HWND dialog);
void TypeName(HWND dialog, const std::wstring& name);
// The items of the shell's list, in its order.
std::vector<std::wstring> ListedFiles(HWND dialog);
// Selects the item of that name as a click does; when the call returns, the dialog has taken notice of it.
void SelectFile(HWND dialog, const std::wstring& name);
// In pixels of the dialog's client area.
RECT OpenPaneRect(HWND dialog);

}  // namespace zvtest
