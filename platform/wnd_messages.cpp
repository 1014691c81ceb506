// How a message reaches its handler: the window procedure and barrier, the message map, commands, reflection.

#include "platform/afx.h"
#include "platform/gdi.h"
#include "platform/menu.h"
#include "platform/message_map.h"
#include "platform/scope_exit.h"
#include "platform/wnd.h"

namespace {

// The one map entry for all WM_CTLCOLOR... messages.
constexpr UINT kAnyCtlColor = 0x0019;

UINT MapMessage(UINT message) {
  return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC ? kAnyCtlColor : message;
}

// The control that a message to its parent is about; null when there is none.
HWND NotifyingChild(HWND parent, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_DRAWITEM:
      return reinterpret_cast<DRAWITEMSTRUCT*>(lParam)->CtlType == ODT_MENU
                 ? nullptr
                 : reinterpret_cast<DRAWITEMSTRUCT*>(lParam)->hwndItem;
    case WM_MEASUREITEM:
      return reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)->CtlType == ODT_MENU
                 ? nullptr
                 : ::GetDlgItem(parent, static_cast<int>(wParam));
    case WM_COMPAREITEM: return reinterpret_cast<COMPAREITEMSTRUCT*>(lParam)->hwndItem;
    case WM_DELETEITEM: return reinterpret_cast<DELETEITEMSTRUCT*>(lParam)->hwndItem;
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM: return reinterpret_cast<HWND>(lParam);
    default: return MapMessage(message) == kAnyCtlColor ? reinterpret_cast<HWND>(lParam) : nullptr;
  }
}

// The result that does least harm for a message whose handler failed.
LRESULT ResultAfterFailure(HWND window, UINT message) {
  switch (message) {
    case WM_CREATE: return -1;
    case WM_PAINT:
      // An area left invalid would bring the same message, and the same failure, again and again.
      ::ValidateRect(window, nullptr);
      return 0;
    default: return 0;
  }
}

void TraceFailure(const std::exception_ptr& failure) {
  CString text(L"unknown exception");
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& e) {
    text = CString(e.what());
  } catch (CException* e) {
    e->GetErrorMessage(text);
  } catch (...) {
  }
  ::OutputDebugStringW(L"A window's message handler failed: " + text + L"\n");
}

}  // namespace

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  CWnd* const object = CWnd::FromHandlePermanent(window);
  if (!object || object->m_hWnd != window) {
    return ::DefWindowProcW(window, message, wParam, lParam);
  }
  try {
    return object->Dispatch(message, wParam, lParam);
  } catch (...) {
    // The handler may have deleted its object before it threw.
    if (CWnd::FromHandlePermanent(window) == object) {
      object->RecordFailure(std::current_exception());
    }
    return ResultAfterFailure(window, message);
  }
}

LRESULT CWnd::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = m_hWnd;
  const MSG outer = std::exchange(currentMessage_, MSG{window, message, wParam, lParam, 0, {}});
  const scope_exit restore([&] {
    if (FromHandlePermanent(window) == this) {
      currentMessage_ = outer;
    }
  });
  return WindowProc(message, wParam, lParam);
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  if (message == WM_NCDESTROY) {
    if (!OnWndMsg(message, wParam, lParam, &result)) {
      OnNcDestroy();
    }
    return result;
  }
  return OnWndMsg(message, wParam, lParam, &result) ? result : DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (message == WM_COMMAND && OnCommand(wParam, lParam)) {
    *result = 0;
    return TRUE;
  }
  if (message == WM_NOTIFY && lParam && OnNotify(wParam, lParam, result)) {
    return TRUE;
  }
  if (const AFX_MSGMAP_ENTRY* const entry = FindMessageEntry(MapMessage(message), 0, 0)) {
    AFX_MESSAGE_CALL call{this, message, wParam, lParam, 0, nullptr, result};
    return entry->handler(call);
  }
  const HWND child = NotifyingChild(m_hWnd, message, wParam, lParam);
  return child && ReflectLastMessage(child, result);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  return superProcedure_ ? ::CallWindowProcW(superProcedure_, m_hWnd, message, wParam, lParam)
                         : ::DefWindowProcW(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
  return DefWindowProc(currentMessage_.message, currentMessage_.wParam, currentMessage_.lParam);
}

void CWnd::OnNcDestroy() {
  const HWND window = m_hWnd;
  const WNDPROC super = superProcedure_;
  const auto ours = reinterpret_cast<LONG_PTR>(&AfxWndProc);
  if (super && ::GetWindowLongPtrW(window, GWLP_WNDPROC) == ours) {
    ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(super));
  }
  Default();
  Detach();
  PostNcDestroy();
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
  const UINT id = LOWORD(wParam);
  const HWND control = reinterpret_cast<HWND>(lParam);
  if (control) {
    LRESULT result = 0;
    return ReflectLastMessage(control, &result) || (id != 0 && OnCmdMsg(id, HIWORD(wParam), nullptr, nullptr));
  }
  if (id == 0) {
    return FALSE;
  }
  // A command from a menu or an accelerator: one that is disabled at this moment does nothing.
  CCmdUI state;
  state.m_nID = id;
  OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &state, nullptr);
  return !state.m_bEnabled || OnCmdMsg(id, CN_COMMAND, nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM /*wParam*/, LPARAM lParam, LRESULT* result) {
  auto* const header = reinterpret_cast<NMHDR*>(lParam);
  if (ReflectLastMessage(header->hwndFrom, result)) {
    return TRUE;
  }
  AFX_NOTIFY notify{result, header};
  return OnCmdMsg(static_cast<UINT>(header->idFrom), static_cast<int>(MAKELONG(LOWORD(header->code), WM_NOTIFY)),
                  &notify, nullptr);
}

BOOL CWnd::ReflectLastMessage(HWND child, LRESULT* result) {
  CWnd* const object = FromHandlePermanent(child);
  return object && object != this &&
         object->OnChildNotify(currentMessage_.message, currentMessage_.wParam, currentMessage_.lParam, result);
}

LRESULT CWnd::ReflectOrDefault() {
  const MSG& now = currentMessage_;
  const HWND child = NotifyingChild(m_hWnd, now.message, now.wParam, now.lParam);
  LRESULT result = 0;
  return child && ReflectLastMessage(child, &result) ? result : Default();
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  int code = 0;
  NMHDR* header = nullptr;
  if (message == WM_COMMAND) {
    code = HIWORD(wParam);
  } else if (message == WM_NOTIFY) {
    header = reinterpret_cast<NMHDR*>(lParam);
    code = static_cast<int>(header->code);
  }
  const AFX_MSGMAP_ENTRY* const entry = FindMessageEntry(WM_REFLECT_BASE + MapMessage(message), code, 0);
  if (!entry) {
    return FALSE;
  }
  AFX_MESSAGE_CALL call{this, message, wParam, lParam, 0, header, result};
  const BOOL handled = entry->handler(call);
  // A null brush means that the control leaves its colours to the parent.
  return handled && (MapMessage(message) != kAnyCtlColor || *result != 0);
}

void CWnd::RecordFailure(std::exception_ptr failure) {
  TraceFailure(failure);
  failure_ = failure;
  for (HWND window = m_hWnd; window; window = ::GetParent(window)) {
    CWnd* const object = FromHandlePermanent(window);
    if (object) {
      object->failure_ = failure;
      if (object->EndRunAfterFailure()) {
        return;
      }
    }
  }
}

bool CWnd::EndRunAfterFailure() {
  if (!continueModal_) {
    return false;
  }
  EndModalLoop(-1);
  return true;
}
