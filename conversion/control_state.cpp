#include "conversion/control_state.h"

void EnableKeepingFocus(HWND control, bool enable) {
  if (!enable && ::GetFocus() == control) {
    ::SendMessageW(::GetParent(control), WM_NEXTDLGCTL, 0, FALSE);
  }
  ::EnableWindow(control, enable);
}
