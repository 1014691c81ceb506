#include "pickers/common_dialog.h"

#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {
constexpr int kShellNameEdit = 1152;
}

HWND ShellView(HWND outer) { return ::FindWindowExW(outer, nullptr, L"SHELLDLL_DefView", nullptr); }

HWND FileNameBox(HWND outer) {
  const HWND combo = ::GetDlgItem(outer, kShellNameCombo);
  return combo ? combo : ::GetDlgItem(outer, kShellNameEdit);
}

CString WindowText(HWND window) {
  CString text;
  const int length = ::GetWindowTextLengthW(window);
  ::GetWindowTextW(window, text.GetBuffer(length), length + 1);
  text.ReleaseBuffer();
  return text;
}

RECT RectInside(HWND outer, HWND control) {
  RECT rect = {};
  if (::GetWindowRect(control, &rect)) {
    ::MapWindowPoints(nullptr, outer, reinterpret_cast<POINT*>(&rect), 2);
  }
  return rect;
}

void MoveInside(HWND control, const RECT& rect) {
  ::MoveWindow(control, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
}

void SetControlString(HWND outer, int id, UINT stringId) { ::SetDlgItemTextW(outer, id, LoadDialogString(stringId)); }

void ApplyDialogFont(HWND outer) {
  const HFONT font = GetDialogFont();
  if (!font) {
    return;
  }
  ::EnumChildWindows(
      outer,
      [](HWND child, LPARAM parameter) -> BOOL {
        ::SendMessageW(child, WM_SETFONT, static_cast<WPARAM>(parameter), TRUE);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(font));
}
