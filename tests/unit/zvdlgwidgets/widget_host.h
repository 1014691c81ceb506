// A window for controls under test. It is the dialog around them: it records the notifications that they send, and
// hands on keys as a dialog does.
#pragma once

#include <gmock/gmock.h>

#include <utility>
#include <vector>

#include "platform/dialog.h"
#include "platform/win_app.h"
#include "services/zvdlgwidgets/window_classes.h"

inline constexpr UINT kHostTemplate = 100;

class WidgetHost : public CDialog {
 public:
  using Notification = std::pair<int, int>;  // control id and code

  WidgetHost() {
    EXPECT_TRUE(RegisterWidgetClasses(AfxGetInstanceHandle()));
    EXPECT_TRUE(Create(kHostTemplate));
    ShowWindow(SW_SHOW);
    Pump();
  }

  std::vector<int> CodesFrom(int id) const {
    std::vector<int> codes;
    for (const Notification& notification : notifications) {
      if (notification.first == id) {
        codes.push_back(notification.second);
      }
    }
    return codes;
  }
  int CountOf(int id, int code) const {
    const std::vector<int> codes = CodesFrom(id);
    return static_cast<int>(std::count(codes.begin(), codes.end(), code));
  }

  static void Pump() {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
      AfxPumpMessage();
    }
  }
  // As the keyboard does it: through the queue and the dialog.
  static void Press(UINT key) {
    ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
    ::PostMessageW(::GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
    Pump();
  }
  static void Type(LPCWSTR text) {
    for (; *text; ++text) {
      ::SendMessageW(::GetFocus(), WM_CHAR, *text, 1);
    }
  }

  void PutOnClipboard(LPCWSTR text) {
    ASSERT_TRUE(::OpenClipboard(m_hWnd));
    ::EmptyClipboard();
    const size_t bytes = (wcslen(text) + 1) * sizeof(wchar_t);
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
    memcpy(::GlobalLock(memory), text, bytes);
    ::GlobalUnlock(memory);
    ::SetClipboardData(CF_UNICODETEXT, memory);
    ::CloseClipboard();
  }

  std::vector<Notification> notifications;

 protected:
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override {
    notifications.emplace_back(LOWORD(wParam), HIWORD(wParam));
    return CDialog::OnCommand(wParam, lParam);
  }
  // OK and Cancel are only recorded.
  void OnOK() override {}
  void OnCancel() override {}
};

inline CString TextOf(const CWnd& window) {
  CString text;
  window.GetWindowText(text);
  return text;
}
