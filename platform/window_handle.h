// The lowest layer: an HWND and the platform's calls on it, one line each. It owns nothing and has no virtual function.
// m_hWnd may be null; then every call fails the way the platform fails on a null window. Where the platform would take null to
// mean something else (every window of the desktop, the calling thread, another window's lock), the call does nothing.
#pragma once

#include "platform/cstring.h"
#include "platform/geometry.h"
#include "platform/win32.h"

class WindowHandle {
 public:
  HWND GetSafeHwnd() const { return m_hWnd; }
  operator HWND() const { return m_hWnd; }

  LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageW(m_hWnd, message, wParam, lParam);
  }
  BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return m_hWnd && ::PostMessageW(m_hWnd, message, wParam, lParam);
  }

  // Text, of the window or of a control in it.
  void SetWindowText(LPCTSTR text) const { ::SetWindowTextW(m_hWnd, text); }
  int GetWindowTextLength() const { return ::GetWindowTextLengthW(m_hWnd); }
  int GetWindowText(LPTSTR buffer, int size) const { return ::GetWindowTextW(m_hWnd, buffer, size); }
  void GetWindowText(CString& text) const;
  void SetDlgItemText(int id, LPCTSTR text) const { ::SetDlgItemTextW(m_hWnd, id, text); }
  int GetDlgItemText(int id, LPTSTR buffer, int size) const {
    return static_cast<int>(::GetDlgItemTextW(m_hWnd, id, buffer, size));
  }
  int GetDlgItemText(int id, CString& text) const;
  void SetDlgItemInt(int id, UINT value, BOOL isSigned = TRUE) const { ::SetDlgItemInt(m_hWnd, id, value, isSigned); }
  UINT GetDlgItemInt(int id, BOOL* translated = nullptr, BOOL isSigned = TRUE) const {
    return ::GetDlgItemInt(m_hWnd, id, translated, isSigned);
  }
  void CheckDlgButton(int id, UINT check) const { ::CheckDlgButton(m_hWnd, id, check); }
  UINT IsDlgButtonChecked(int id) const { return ::IsDlgButtonChecked(m_hWnd, id); }
  void CheckRadioButton(int first, int last, int checked) const { ::CheckRadioButton(m_hWnd, first, last, checked); }
  int GetCheckedRadioButton(int first, int last) const;
  LRESULT SendDlgItemMessage(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendDlgItemMessageW(m_hWnd, id, message, wParam, lParam);
  }
  // Of a control in this window, without a wrapper object.
  void GetDlgItem(int id, HWND* control) const { *control = ::GetDlgItem(m_hWnd, id); }

  // State.
  BOOL EnableWindow(BOOL enable = TRUE) const { return ::EnableWindow(m_hWnd, enable); }
  BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
  BOOL ShowWindow(int command) const { return ::ShowWindow(m_hWnd, command); }
  BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
  BOOL IsIconic() const { return ::IsIconic(m_hWnd); }
  BOOL IsZoomed() const { return ::IsZoomed(m_hWnd); }
  BOOL IsChild(const WindowHandle* window) const { return ::IsChild(m_hWnd, window->m_hWnd); }
  void DragAcceptFiles(BOOL accept = TRUE) const { ::DragAcceptFiles(m_hWnd, accept); }
  int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
  int SetDlgCtrlID(int id) const { return static_cast<int>(::SetWindowLongPtrW(m_hWnd, GWLP_ID, id)); }
  DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_STYLE)); }
  DWORD GetExStyle() const { return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_EXSTYLE)); }
  // With position flags, the frame is recomputed too. False when nothing changes.
  BOOL ModifyStyle(DWORD remove, DWORD add, UINT positionFlags = 0) const {
    return ChangeStyle(GWL_STYLE, remove, add, positionFlags);
  }
  BOOL ModifyStyleEx(DWORD remove, DWORD add, UINT positionFlags = 0) const {
    return ChangeStyle(GWL_EXSTYLE, remove, add, positionFlags);
  }

  // Place and size. Window rectangles are in screen coordinates, client rectangles start at 0, 0.
  void GetWindowRect(LPRECT rect) const { ::GetWindowRect(m_hWnd, rect); }
  void GetClientRect(LPRECT rect) const { ::GetClientRect(m_hWnd, rect); }
  void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE) const {
    ::MoveWindow(m_hWnd, x, y, width, height, repaint);
  }
  void MoveWindow(LPCRECT rect, BOOL repaint = TRUE) const {
    MoveWindow(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, repaint);
  }
  BOOL SetWindowPos(const WindowHandle* after, int x, int y, int width, int height, UINT flags) const {
    return ::SetWindowPos(m_hWnd, after ? after->m_hWnd : nullptr, x, y, width, height, flags);
  }
  BOOL BringWindowToTop() const { return ::BringWindowToTop(m_hWnd); }
  BOOL GetWindowPlacement(WINDOWPLACEMENT* placement) const { return ::GetWindowPlacement(m_hWnd, placement); }
  BOOL SetWindowPlacement(const WINDOWPLACEMENT* placement) const { return ::SetWindowPlacement(m_hWnd, placement); }
  void ClientToScreen(LPPOINT point) const { ::ClientToScreen(m_hWnd, point); }
  void ScreenToClient(LPPOINT point) const { ::ScreenToClient(m_hWnd, point); }
  void ClientToScreen(LPRECT rect) const { ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<LPPOINT>(rect), 2); }
  void ScreenToClient(LPRECT rect) const { ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<LPPOINT>(rect), 2); }
  void MapWindowPoints(const WindowHandle* to, LPPOINT points, UINT count) const {
    ::MapWindowPoints(m_hWnd, to ? to->m_hWnd : nullptr, points, count);
  }
  void MapWindowPoints(const WindowHandle* to, LPRECT rect) const {
    MapWindowPoints(to, reinterpret_cast<LPPOINT>(rect), 2);
  }
  // From dialog units to pixels; the window must be a dialog.
  BOOL MapDialogRect(LPRECT rect) const { return ::MapDialogRect(m_hWnd, rect); }

  // Painting.
  void Invalidate(BOOL erase = TRUE) const { InvalidateRect(nullptr, erase); }
  void InvalidateRect(LPCRECT rect, BOOL erase = TRUE) const {
    if (m_hWnd) {
      ::InvalidateRect(m_hWnd, rect, erase);
    }
  }
  void ValidateRect(LPCRECT rect) const {
    if (m_hWnd) {
      ::ValidateRect(m_hWnd, rect);
    }
  }
  BOOL GetUpdateRect(LPRECT rect, BOOL erase = FALSE) const { return ::GetUpdateRect(m_hWnd, rect, erase); }
  void UpdateWindow() const { ::UpdateWindow(m_hWnd); }
  BOOL RedrawWindow(LPCRECT rect = nullptr, HRGN region = nullptr,
                    UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE) const {
    return m_hWnd && ::RedrawWindow(m_hWnd, rect, region, flags);
  }
  void SetRedraw(BOOL redraw = TRUE) const { SendMessage(WM_SETREDRAW, redraw != FALSE); }
  BOOL LockWindowUpdate() const { return m_hWnd && ::LockWindowUpdate(m_hWnd); }

  UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds, TIMERPROC procedure = nullptr) const {
    return m_hWnd ? ::SetTimer(m_hWnd, id, milliseconds, procedure) : 0;
  }
  BOOL KillTimer(UINT_PTR id) const { return m_hWnd && ::KillTimer(m_hWnd, id); }

  int SetScrollPos(int bar, int position, BOOL redraw = TRUE) const {
    return ::SetScrollPos(m_hWnd, bar, position, redraw);
  }
  int GetScrollPos(int bar) const { return ::GetScrollPos(m_hWnd, bar); }
  void SetScrollRange(int bar, int minimum, int maximum, BOOL redraw = TRUE) const {
    ::SetScrollRange(m_hWnd, bar, minimum, maximum, redraw);
  }
  BOOL SetScrollInfo(int bar, SCROLLINFO* info, BOOL redraw = TRUE) const {
    info->cbSize = sizeof(*info);
    ::SetScrollInfo(m_hWnd, bar, info, redraw);
    return TRUE;
  }
  BOOL GetScrollInfo(int bar, SCROLLINFO* info, UINT mask = SIF_ALL) const {
    info->cbSize = sizeof(*info);
    info->fMask = mask;
    return ::GetScrollInfo(m_hWnd, bar, info);
  }
  void ShowScrollBar(UINT bar, BOOL show = TRUE) const { ::ShowScrollBar(m_hWnd, static_cast<int>(bar), show); }
  int ScrollWindowEx(int dx, int dy, LPCRECT scroll, LPCRECT clip, HRGN region, LPRECT update, UINT flags) const {
    return ::ScrollWindowEx(m_hWnd, dx, dy, scroll, clip, region, update, flags);
  }

  HICON SetIcon(HICON icon, BOOL big) const {
    return reinterpret_cast<HICON>(SendMessage(WM_SETICON, big != FALSE, reinterpret_cast<LPARAM>(icon)));
  }
  int MessageBox(LPCTSTR text, LPCTSTR caption = nullptr, UINT type = MB_OK) const {
    return ::MessageBoxW(m_hWnd, text, caption, type);
  }

  HWND m_hWnd = nullptr;

 private:
  BOOL ChangeStyle(int which, DWORD remove, DWORD add, UINT positionFlags) const;
};
