// CControl: what the wrappers of the system's controls share. A wrapper adds no state: it turns methods into messages.
#pragma once

#include <type_traits>

#include "platform/wnd.h"

namespace control_message {

template <class Value>
WPARAM W(Value value) {
  if constexpr (std::is_pointer_v<Value>) {
    return reinterpret_cast<WPARAM>(value);
  } else {
    return static_cast<WPARAM>(value);
  }
}

template <class Value>
LPARAM L(Value value) {
  if constexpr (std::is_pointer_v<Value>) {
    return reinterpret_cast<LPARAM>(value);
  } else {
    return static_cast<LPARAM>(value);
  }
}

}  // namespace control_message

// A control class: a CWnd that answers messages by number. Send<Result>(message, w, l) converts both ways.
class CControl : public CWnd {
 protected:
  template <class Result = void, class First = int, class Second = int>
  Result Send(UINT message, First wParam = 0, Second lParam = 0) const {
    const LRESULT result = SendMessage(message, control_message::W(wParam), control_message::L(lParam));
    if constexpr (std::is_pointer_v<Result>) {
      return reinterpret_cast<Result>(result);
    } else if constexpr (!std::is_void_v<Result>) {
      return static_cast<Result>(result);
    }
  }
};
