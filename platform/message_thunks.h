// The typed functions behind message map entries. An entry names a method and, in order, one "picker" for each of its
// arguments: a small struct that takes that argument out of the message. Wrappers for borrowed handles (CDC*, CMenu*)
// are made on the stack and live exactly as long as the handler's call.
#pragma once

#include <type_traits>

#include "platform/cmd_target.h"
#include "platform/gdi.h"
#include "platform/geometry.h"
#include "platform/menu.h"
#include "platform/wnd.h"

namespace message_map {

template <class Method>
struct MethodTraits;
template <class Class, class Result, class... Arguments>
struct MethodTraits<Result (Class::*)(Arguments...)> {
  using Target = Class;
};
template <class Class, class Result, class... Arguments>
struct MethodTraits<Result (Class::*)(Arguments...) const> {
  using Target = Class;
};

// Calls Method with the picked arguments; its result becomes the message's.
template <auto Method, class... Pickers>
BOOL Invoke(AFX_MESSAGE_CALL& call) {
  using Target = typename MethodTraits<decltype(Method)>::Target;
  Target& target = static_cast<Target&>(*call.target);
  using Result = decltype((target.*Method)(Pickers::Get(call)...));
  if constexpr (std::is_void_v<Result>) {
    *call.result = 0;
    (target.*Method)(Pickers::Get(call)...);
  } else if constexpr (std::is_pointer_v<Result>) {
    *call.result = reinterpret_cast<LRESULT>((target.*Method)(Pickers::Get(call)...));
  } else {
    *call.result = static_cast<LRESULT>((target.*Method)(Pickers::Get(call)...));
  }
  return TRUE;
}

// As Invoke, for handlers that themselves tell whether they dealt with the command.
template <auto Method, class... Pickers>
BOOL InvokeIfTaken(AFX_MESSAGE_CALL& call) {
  using Target = typename MethodTraits<decltype(Method)>::Target;
  return (static_cast<Target&>(*call.target).*Method)(Pickers::Get(call)...) ? TRUE : FALSE;
}

// As Invoke, for command and notification handlers, which store a result of their own if at all.
template <auto Method, class... Pickers>
BOOL InvokeAndTake(AFX_MESSAGE_CALL& call) {
  using Target = typename MethodTraits<decltype(Method)>::Target;
  (static_cast<Target&>(*call.target).*Method)(Pickers::Get(call)...);
  return TRUE;
}

template <class Wrapper>
struct Borrowed {
  template <class Handle>
  explicit Borrowed(Handle handle) {
    object.Attach(handle);
  }
  ~Borrowed() { object.Detach(); }
  operator Wrapper*() { return &object; }
  Wrapper object;
};

struct WParam {
  static WPARAM Get(const AFX_MESSAGE_CALL& call) { return call.wParam; }
};
struct LParam {
  static LPARAM Get(const AFX_MESSAGE_CALL& call) { return call.lParam; }
};
struct WUint {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return static_cast<UINT>(call.wParam); }
};
struct WInt {
  static int Get(const AFX_MESSAGE_CALL& call) { return static_cast<int>(call.wParam); }
};
struct WBool {
  static BOOL Get(const AFX_MESSAGE_CALL& call) { return call.wParam != 0; }
};
struct WLow {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return LOWORD(call.wParam); }
};
struct WHigh {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return HIWORD(call.wParam); }
};
struct WHighShort {
  static short Get(const AFX_MESSAGE_CALL& call) { return static_cast<short>(HIWORD(call.wParam)); }
};
struct WHighBool {
  static BOOL Get(const AFX_MESSAGE_CALL& call) { return HIWORD(call.wParam) != 0; }
};
struct LLow {
  static int Get(const AFX_MESSAGE_CALL& call) { return static_cast<short>(LOWORD(call.lParam)); }
};
struct LHigh {
  static int Get(const AFX_MESSAGE_CALL& call) { return static_cast<short>(HIWORD(call.lParam)); }
};
struct LLowUint {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return LOWORD(call.lParam); }
};
struct LHighUint {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return HIWORD(call.lParam); }
};
struct LHighBool {
  static BOOL Get(const AFX_MESSAGE_CALL& call) { return HIWORD(call.lParam) != 0; }
};
struct LPoint {
  static CPoint Get(const AFX_MESSAGE_CALL& call) { return CPoint(call.lParam); }
};
struct LUint {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return static_cast<UINT>(call.lParam); }
};
template <class Pointer>
struct LPointer {
  static Pointer Get(const AFX_MESSAGE_CALL& call) { return reinterpret_cast<Pointer>(call.lParam); }
};
template <class Pointer>
struct WPointer {
  static Pointer Get(const AFX_MESSAGE_CALL& call) { return reinterpret_cast<Pointer>(call.wParam); }
};
struct WWnd {
  static CWnd* Get(const AFX_MESSAGE_CALL& call) { return CWnd::FromHandle(reinterpret_cast<HWND>(call.wParam)); }
};
struct LWnd {
  static CWnd* Get(const AFX_MESSAGE_CALL& call) { return CWnd::FromHandle(reinterpret_cast<HWND>(call.lParam)); }
};
struct LScrollBar {
  static CScrollBar* Get(const AFX_MESSAGE_CALL& call) {
    return AfxScrollBarFromHandle(reinterpret_cast<HWND>(call.lParam));
  }
};
struct WDc {
  static Borrowed<CDC> Get(const AFX_MESSAGE_CALL& call) { return Borrowed<CDC>(reinterpret_cast<HDC>(call.wParam)); }
};
struct WMenu {
  static Borrowed<CMenu> Get(const AFX_MESSAGE_CALL& call) {
    return Borrowed<CMenu>(reinterpret_cast<HMENU>(call.wParam));
  }
};
struct CtlColorKind {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return call.message - WM_CTLCOLORMSGBOX; }
};
struct Id {
  static UINT Get(const AFX_MESSAGE_CALL& call) { return call.id; }
};
struct Header {
  static NMHDR* Get(const AFX_MESSAGE_CALL& call) { return static_cast<NMHDR*>(call.extra); }
};
struct Result {
  static LRESULT* Get(const AFX_MESSAGE_CALL& call) { return call.result; }
};
struct Update {
  static CCmdUI* Get(const AFX_MESSAGE_CALL& call) { return static_cast<CCmdUI*>(call.extra); }
};

}  // namespace message_map
