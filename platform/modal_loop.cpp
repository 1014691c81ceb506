// The modal loop of a window, and the road of a message from the queue to its window.

#include "platform/scope_exit.h"
#include "platform/win_app.h"
#include "platform/wnd.h"

namespace {

constexpr UINT kSystemTimer = 0x0118;  // the caret's blinking

bool WakesIdleWork(const MSG& message) {
  return message.message != WM_MOUSEMOVE && message.message != WM_NCMOUSEMOVE && message.message != WM_PAINT &&
         message.message != kSystemTimer;
}

}  // namespace

int CWnd::RunModalLoop(DWORD flags) {
  continueModal_ = true;
  const scope_exit leave([this] { continueModal_ = false; });
  if ((flags & MLF_SHOWONIDLE) && !(GetStyle() & WS_VISIBLE)) {
    // At once, not at the first idle moment: work that a dialog posts to itself is to happen before the user's eyes.
    ShowWindow(SW_SHOWNORMAL);
    UpdateWindow();
  }
  for (bool idle = true; ContinueModal();) {
    MSG message;
    if (idle && !::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
      IdlePhase(flags);
      idle = false;
      continue;
    }
    const BOOL got = ::GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      // The program is ending: the loop outside must see that too.
      ::PostQuitMessage(got == 0 ? static_cast<int>(message.wParam) : 0);
      return modalResult_ = -1;
    }
    Route(message);
    idle = idle || WakesIdleWork(message);
  }
  return modalResult_;
}

// Handlers run behind the window procedure's barrier, but PreTranslateMessage runs here.
void CWnd::Route(MSG& message) {
  try {
    if (message.message != WM_KICKIDLE && !AfxPreTranslateMessage(&message)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
  } catch (...) {
    RecordFailure(std::current_exception());
  }
}

void CWnd::IdlePhase(DWORD flags) {
  MSG message;
  const HWND parent = ::GetParent(m_hWnd);
  if (!(flags & MLF_NOIDLEMSG) && parent) {
    ::SendMessageW(parent, WM_ENTERIDLE, MSGF_DIALOGBOX, reinterpret_cast<LPARAM>(m_hWnd));
  }
  if (flags & MLF_NOKICKIDLE) {
    return;
  }
  for (LPARAM count = 0; ContinueModal() && SendMessage(WM_KICKIDLE, MSGF_DIALOGBOX, count); ++count) {
    if (::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
      return;
    }
  }
}

void CWnd::EndModalLoop(int result) {
  modalResult_ = result;
  if (continueModal_) {
    continueModal_ = false;
    // The loop may be waiting for a message.
    PostMessage(WM_NULL);
  }
}

BOOL CWnd::PreTranslateMessage(MSG* /*message*/) { return FALSE; }

BOOL CWnd::WalkPreTranslateTree(HWND stop, MSG* message) {
  for (HWND window = message->hwnd; window; window = ::GetParent(window)) {
    CWnd* const object = FromHandlePermanent(window);
    if (object && object->PreTranslateMessage(message)) {
      return TRUE;
    }
    if (window == stop) {
      break;
    }
  }
  return FALSE;
}

void CWnd::SendMessageToIdleWindows() {
  SendMessage(WM_IDLEUPDATECMDUI, TRUE);
  SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE);
}

void CWnd::SendMessageToDescendants(UINT message, WPARAM wParam, LPARAM lParam, BOOL deep) {
  for (HWND child = ::GetWindow(m_hWnd, GW_CHILD); child;) {
    const HWND next = ::GetWindow(child, GW_HWNDNEXT);
    ::SendMessageW(child, message, wParam, lParam);
    if (CWnd object; deep && ::GetWindow(child, GW_CHILD)) {
      object.m_hWnd = child;
      object.SendMessageToDescendants(message, wParam, lParam, TRUE);
      object.m_hWnd = nullptr;
    }
    child = next;
  }
}
