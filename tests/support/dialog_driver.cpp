#include "tests/support/dialog_driver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zvtest {

namespace {

constexpr DWORD kPollInterval = 10;

void CloseDialogsOfThread(DWORD thread) {
  ::EnumThreadWindows(
      thread,
      [](HWND window, LPARAM) -> BOOL {
        wchar_t windowClass[16];
        ::GetClassNameW(window, windowClass, 16);
        if (::IsWindowVisible(window) && ::IsWindowEnabled(window) && std::wstring(windowClass) == L"#32770") {
          ::PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        }
        return TRUE;
      },
      0);
}

struct DialogSearch {
  std::function<bool(HWND)> wanted;
  HWND found = nullptr;
};

HWND FindDialog(const std::function<bool(HWND)>& wanted) {
  DialogSearch search{wanted};
  ::EnumWindows(
      [](HWND window, LPARAM parameter) -> BOOL {
        auto& state = *reinterpret_cast<DialogSearch*>(parameter);
        DWORD process = 0;
        ::GetWindowThreadProcessId(window, &process);
        if (process != ::GetCurrentProcessId() || !::IsWindowVisible(window) || !state.wanted(window)) {
          return TRUE;
        }
        state.found = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool IsDialog(HWND window) {
  wchar_t windowClass[16] = {};
  ::GetClassNameW(window, windowClass, 16);
  return std::wstring(windowClass) == L"#32770";
}

}  // namespace

int32_t DriveDialog(const std::function<int32_t()>& call, const std::function<void()>& script) {
  const DWORD caller = ::GetCurrentThreadId();
  std::atomic<bool> ended = false;
  std::thread driver([&] {
    try {
      script();
    } catch (const std::exception& failure) {
      ADD_FAILURE() << "the script stopped: " << failure.what();
    }
    if (::testing::Test::HasFailure()) {
      // Nobody is left to end the dialog.
      CloseDialogsOfThread(caller);
    }
    // What the script left open would keep the caller for ever.
    const DWORD start = ::GetTickCount();
    while (!ended) {
      if (::GetTickCount() - start > kPatience) {
        ADD_FAILURE() << "the dialog was still open after its script";
        break;
      }
      ::Sleep(kPollInterval);
    }
    while (!ended) {
      CloseDialogsOfThread(caller);
      ::Sleep(kPollInterval);
    }
  });
  const int32_t result = call();
  ended = true;
  driver.join();
  return result;
}

bool HoldsWithin(DWORD milliseconds, const std::function<bool()>& condition) {
  const DWORD start = ::GetTickCount();
  while (!condition()) {
    if (::GetTickCount() - start > milliseconds) {
      return false;
    }
    ::Sleep(kPollInterval);
  }
  return true;
}

void WaitUntil(const std::function<bool()>& condition, const std::string& what) {
  if (!HoldsWithin(kPatience, condition)) {
    throw DriverTimeout("waited in vain: " + what);
  }
}

HWND WaitForDialogWith(int controlId) {
  HWND dialog = nullptr;
  WaitUntil(
      [&] {
        dialog = FindDialog([&](HWND window) { return IsDialog(window) && FindControl(window, controlId); });
        return dialog != nullptr;
      },
      "a dialog with control " + std::to_string(controlId));
  return dialog;
}

// Without a message to the window, which may be on its way out.
HWND FindDialogTitled(const std::wstring& title) {
  return FindDialog([&](HWND window) {
    wchar_t text[256] = {};
    ::InternalGetWindowText(window, text, 256);
    return IsDialog(window) && text == title;
  });
}

HWND WaitForDialogTitled(const std::wstring& title) {
  HWND dialog = nullptr;
  WaitUntil([&] { return (dialog = FindDialogTitled(title)) != nullptr; },
            "a dialog titled " + std::string(title.begin(), title.end()));
  return dialog;
}

HWND FindMessageBox() {
  constexpr int kMessageText = 0xffff;
  return FindDialog([](HWND window) { return IsDialog(window) && ::GetDlgItem(window, kMessageText); });
}

HWND WaitForMessageBox() {
  HWND box = nullptr;
  WaitUntil([&] { return (box = FindMessageBox()) != nullptr; }, "a message box");
  return box;
}

void WaitUntilClosed(HWND window) {
  WaitUntil([=] { return !::IsWindow(window) || !::IsWindowVisible(window); }, "the window closes");
}

HWND FindControl(HWND dialog, int controlId) {
  // The dialog's own controls go before those of the windows in it: the shell's views number theirs as they like.
  if (const HWND own = ::GetDlgItem(dialog, controlId)) {
    return own;
  }
  struct Search {
    int id;
    HWND found;
  } search{controlId, nullptr};
  ::EnumChildWindows(
      dialog,
      [](HWND child, LPARAM parameter) -> BOOL {
        auto& state = *reinterpret_cast<Search*>(parameter);
        if (::GetDlgCtrlID(child) != state.id) {
          return TRUE;
        }
        state.found = child;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND Control(HWND dialog, int controlId) {
  HWND control = nullptr;
  WaitUntil([&] { return (control = FindControl(dialog, controlId)) != nullptr; },
            "control " + std::to_string(controlId));
  return control;
}

ParentWindow::ParentWindow()
    : window_(::CreateWindowExW(0, L"STATIC", L"Parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200, nullptr,
                                nullptr, ::GetModuleHandleW(nullptr), nullptr)) {}

ParentWindow::~ParentWindow() { ::DestroyWindow(window_); }

}  // namespace zvtest
