#include "platform/window_handle.h"

void WindowHandle::GetWindowText(CString& text) const {
  const int length = GetWindowTextLength();
  ::GetWindowTextW(m_hWnd, text.GetBufferSetLength(length + 1), length + 1);
  text.ReleaseBuffer();
}

int WindowHandle::GetDlgItemText(int id, CString& text) const {
  WindowHandle control;
  control.m_hWnd = ::GetDlgItem(m_hWnd, id);
  if (!control.m_hWnd) {
    text.Empty();
    return 0;
  }
  control.GetWindowText(text);
  return text.GetLength();
}

int WindowHandle::GetCheckedRadioButton(int first, int last) const {
  for (int id = first; id <= last; ++id) {
    if (IsDlgButtonChecked(id)) {
      return id;
    }
  }
  return 0;
}

BOOL WindowHandle::ChangeStyle(int which, DWORD remove, DWORD add, UINT positionFlags) const {
  const auto before = static_cast<DWORD>(::GetWindowLongW(m_hWnd, which));
  const DWORD after = (before & ~remove) | add;
  if (before == after) {
    return FALSE;
  }
  ::SetWindowLongW(m_hWnd, which, static_cast<LONG>(after));
  if (positionFlags) {
    ::SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0,
                   SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | positionFlags);
  }
  return TRUE;
}
