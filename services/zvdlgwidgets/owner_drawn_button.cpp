#include "services/zvdlgwidgets/owner_drawn_button.h"

std::optional<LRESULT> OwnerDrawnButtonMessage(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                               bool& isDefault) {
  switch (message) {
    case WM_GETDLGCODE: return DLGC_BUTTON | (isDefault ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
    case BM_SETSTYLE: {
      // The dialog moves the default look with the focus. Let through, it would make a plain button of this one.
      const WPARAM type = wParam & BS_TYPEMASK;
      if (type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON) {
        isDefault = type == BS_DEFPUSHBUTTON;
        ::InvalidateRect(button, nullptr, FALSE);
        return 0;
      }
      return std::nullopt;
    }
    case WM_LBUTTONDBLCLK: return ::SendMessageW(button, WM_LBUTTONDOWN, wParam, lParam);
    default: return std::nullopt;
  }
}
