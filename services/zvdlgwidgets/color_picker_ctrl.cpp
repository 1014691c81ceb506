#include "services/zvdlgwidgets/color_picker_ctrl.h"

#include <algorithm>
#include <array>

#include "platform/dc.h"
#include "services/zvdlgwidgets/button_drawing.h"

BEGIN_MESSAGE_MAP(CZVColorPickerCtrl, CButton)
  ON_CONTROL_REFLECT_EX(BN_CLICKED, OnClicked)
END_MESSAGE_MAP()

namespace {

constexpr int kArrowWidth = 14;
constexpr int kHelpButtonId = 0x040E;  // pshHelp, the Help button of the system's dialogs
constexpr wchar_t kPickerProperty[] = L"ZVColorPicker";

// The user's own colours, kept for the next time.
std::array<COLORREF, 16>& CustomColors() {
  static std::array<COLORREF, 16> colors = [] {
    std::array<COLORREF, 16> white;
    white.fill(RGB(255, 255, 255));
    return white;
  }();
  return colors;
}

}  // namespace

void CZVColorPickerCtrl::SetRGB(COLORREF color) {
  color_ = color & RGB(255, 255, 255);
  if (m_hWnd) {
    Invalidate(FALSE);
  }
}

void CZVColorPickerCtrl::SetHelp(HELPCALLBACK callback, void* userData, UINT dialogNumber) {
  helpCallback_ = callback;
  helpUserData_ = userData;
  helpDialogNumber_ = dialogNumber;
}

void CZVColorPickerCtrl::PreSubclassWindow() {
  state_.isDefault = GetButtonStyle() == BS_DEFPUSHBUTTON;
  ModifyStyle(BS_TYPEMASK, BS_OWNERDRAW);
}

void CZVColorPickerCtrl::DrawItem(LPDRAWITEMSTRUCT item) {
  const CRect client = item->rcItem;
  CMemDC memory(*CDC::FromHandle(item->hDC), client);
  ButtonLook look;
  look.isEnabled = !(item->itemState & ODS_DISABLED);
  look.isPressed = item->itemState & ODS_SELECTED;
  look.isDefault = state_.isDefault;
  look.isFocused = (item->itemState & ODS_FOCUS) && !(item->itemState & ODS_NOFOCUSRECT);
  DrawButtonFrame(*this, memory, client, look);
  CRect well = ButtonContent(*this, memory, client, look);
  CRect arrow = well;
  arrow.left = well.right - ScaleForDevice(memory, kArrowWidth);
  DrawDropArrow(memory, arrow, look.isEnabled);
  well.right = arrow.left;
  const int margin = ScaleForDevice(memory, 2);
  well.DeflateRect(margin, margin);
  if (look.isEnabled) {
    const unique_hbrush brush(::CreateSolidBrush(color_));
    ::FillRect(memory, &well, brush.get());
  }
  ::FrameRect(memory, &well, ::GetSysColorBrush(look.isEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  DrawButtonFocus(memory, client, look);
}

LRESULT CZVColorPickerCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = OwnerDrawnButtonMessage(*this, message, wParam, lParam, state_)) {
    return *answer;
  }
  return CButton::WindowProc(message, wParam, lParam);
}

// The parent hears of the click as well.
BOOL CZVColorPickerCtrl::OnClicked() {
  PickColor();
  return FALSE;
}

void CZVColorPickerCtrl::PickColor() {
  CHOOSECOLORW choice{};
  choice.lStructSize = sizeof choice;
  choice.hwndOwner = ::GetAncestor(m_hWnd, GA_ROOT);
  choice.rgbResult = color_;
  choice.lpCustColors = CustomColors().data();
  choice.Flags = CC_RGBINIT | CC_ANYCOLOR | CC_FULLOPEN | CC_ENABLEHOOK | (helpCallback_ ? CC_SHOWHELP : 0);
  choice.lCustData = reinterpret_cast<LPARAM>(this);
  choice.lpfnHook = &DialogHook;
  if (!::ChooseColorW(&choice) || choice.rgbResult == color_) {
    return;
  }
  SetRGB(choice.rgbResult);
  const WPARAM notification = MAKEWPARAM(GetDlgCtrlID(), ZVN_VALUECHANGED);
  ::SendMessageW(::GetParent(m_hWnd), WM_COMMAND, notification, reinterpret_cast<LPARAM>(m_hWnd));
}

// Called through the system's dialog: nothing may be thrown here, and nothing is.
UINT_PTR CALLBACK CZVColorPickerCtrl::DialogHook(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    const auto* const choice = reinterpret_cast<const CHOOSECOLORW*>(lParam);
    ::SetPropW(dialog, kPickerProperty, reinterpret_cast<HANDLE>(choice->lCustData));
    reinterpret_cast<const CZVColorPickerCtrl*>(choice->lCustData)->PlaceDialog(dialog);
    return TRUE;
  }
  if (message == WM_DESTROY) {
    ::RemovePropW(dialog, kPickerProperty);
    return FALSE;
  }
  const auto* const picker = static_cast<const CZVColorPickerCtrl*>(::GetPropW(dialog, kPickerProperty));
  if (picker && message == WM_COMMAND && LOWORD(wParam) == kHelpButtonId) {
    picker->ShowHelp();
    return TRUE;
  }
  return FALSE;
}

void CZVColorPickerCtrl::ShowHelp() const {
  if (helpCallback_) {
    helpCallback_(helpDialogNumber_, GetDlgCtrlID(), helpUserData_);
  }
}

// Below the well, and inside the monitor's work area.
void CZVColorPickerCtrl::PlaceDialog(HWND dialog) const {
  CRect well, frame;
  GetWindowRect(&well);
  ::GetWindowRect(dialog, &frame);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  ::GetMonitorInfoW(::MonitorFromWindow(m_hWnd, MONITOR_DEFAULTTONEAREST), &monitor);
  const CRect work = monitor.rcWork;
  const LONG left = std::max(work.left, std::min(well.left, work.right - frame.Width()));
  const LONG top = std::max(work.top, std::min(well.bottom, work.bottom - frame.Height()));
  ::SetWindowPos(dialog, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
