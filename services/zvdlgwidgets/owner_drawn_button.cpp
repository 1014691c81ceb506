#include "services/zvdlgwidgets/owner_drawn_button.h"

namespace {

// The dialog asks before it takes a key for itself, to move to the next control.
bool AsksForDownKey(LPARAM lParam) {
  const auto* const key = reinterpret_cast<const MSG*>(lParam);
  return key && key->message == WM_KEYDOWN && key->wParam == VK_DOWN;
}

}  // namespace

std::optional<LRESULT> OwnerDrawnButtonMessage(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                               OwnerDrawnButtonState& state) {
  switch (message) {
    case WM_GETDLGCODE: {
      const LRESULT wanted = state.opensDownward && AsksForDownKey(lParam) ? DLGC_WANTMESSAGE : 0;
      return wanted | DLGC_BUTTON | (state.isDefault ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
    }
    case BM_SETSTYLE: {
      // The dialog moves the default look with the focus. Let through, it would make a plain button of this one.
      const WPARAM type = wParam & BS_TYPEMASK;
      if (type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON) {
        state.isDefault = type == BS_DEFPUSHBUTTON;
        ::InvalidateRect(button, nullptr, FALSE);
        return 0;
      }
      return std::nullopt;
    }
    case WM_LBUTTONDBLCLK: return ::SendMessageW(button, WM_LBUTTONDOWN, wParam, lParam);
    case WM_KEYDOWN:
      if (state.opensDownward && wParam == VK_DOWN) {
        ::SendMessageW(button, BM_CLICK, 0, 0);
        return 0;
      }
      return std::nullopt;
    case WM_ERASEBKGND: return TRUE;  // every pixel is drawn
    default: return std::nullopt;
  }
}
