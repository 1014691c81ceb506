#include "services/zvdlgwidgets/value_combo_window.h"

#include <algorithm>

#include "platform/module_context.h"
#include "platform/scope_exit.h"
#include "services/zvdlgwidgets/button_drawing.h"
#include "services/zvdlgwidgets/notifications.h"
#include "services/zvdlgwidgets/theme.h"
#include "services/zvdlgwidgets/value_combo.h"

namespace {

constexpr int kEditId = 1;
constexpr int kBorder = 2;
constexpr UINT_PTR kEditSubclass = 1;

ValueComboWindow* ObjectOf(HWND window) { return reinterpret_cast<ValueComboWindow*>(::GetWindowLongPtrW(window, 0)); }

CString TextOf(HWND window) {
  std::wstring text(static_cast<size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<size_t>(::GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return CString(std::move(text));
}

bool IsEditMessage(UINT message) { return message >= EM_GETSEL && message <= EM_GETIMESTATUS; }

}  // namespace

LRESULT CALLBACK ValueComboWindow::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    // The border is drawn inside.
    ::SetWindowLongW(window, GWL_STYLE, ::GetWindowLongW(window, GWL_STYLE) & ~WS_BORDER);
    ::SetWindowLongW(window, GWL_EXSTYLE, ::GetWindowLongW(window, GWL_EXSTYLE) & ~WS_EX_CLIENTEDGE);
    auto* const object = new (std::nothrow) ValueComboWindow(window);
    ::SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(object));
    return object != nullptr && ::DefWindowProcW(window, message, wParam, lParam);
  }
  ValueComboWindow* const object = ObjectOf(window);
  if (!object) {
    return ::DefWindowProcW(window, message, wParam, lParam);
  }
  if (message == WM_NCDESTROY) {
    ::SetWindowLongPtrW(window, 0, 0);
    delete object;
    return ::DefWindowProcW(window, message, wParam, lParam);
  }
  try {
    return object->HandleMessage(message, wParam, lParam);
  } catch (...) {
    // Out of memory: the message has no effect, and nothing unwinds through the system.
    return 0;
  }
}

LRESULT ValueComboWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message > WM_USER) {
    return HandleOwnMessage(message, wParam, lParam);
  }
  if (IsEditMessage(message)) {
    return ::SendMessageW(edit_, message, wParam, lParam);
  }
  switch (message) {
    case WM_CREATE: CreateEdit(); return edit_ ? 0 : -1;
    case WM_DESTROY: slider_.reset(); return 0;
    case WM_SIZE: Layout(); return 0;
    case WM_SETFONT:
      ::SendMessageW(edit_, message, wParam, lParam);
      Layout();
      return 0;
    case WM_GETFONT:
    case WM_SETTEXT:
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH: return ::SendMessageW(edit_, message, wParam, lParam);
    case WM_SETFOCUS: ::SetFocus(edit_); return 0;
    case WM_ENABLE:
      CloseSlider(true);
      ::EnableWindow(edit_, wParam != 0);
      ::InvalidateRect(window_, nullptr, TRUE);
      return 0;
    case WM_COMMAND:
      if (LOWORD(wParam) == kEditId && HIWORD(wParam) == EN_CHANGE && !isShowingValue_) {
        OnTextChanged();
      }
      return 0;
    case WM_LBUTTONDOWN:
      ::SetFocus(edit_);
      slider_ ? CloseSlider(true) : OpenSlider();
      return 0;
    case WM_ERASEBKGND: return TRUE;
    case WM_PAINT: Paint(); return 0;
    case WM_THEMECHANGED:
    case WM_SYSCOLORCHANGE: ::InvalidateRect(window_, nullptr, TRUE); return 0;
    default: return ::DefWindowProcW(window_, message, wParam, lParam);
  }
}

LRESULT ValueComboWindow::HandleOwnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case ZVVCM_SETRANGE:
      range_ = ValueRange::Of(static_cast<int>(wParam), static_cast<int>(lParam));
      CloseSlider(true);
      ShowValue(value_);
      return 0;
    case ZVVCM_GETMINIMUM: return range_.minimum;
    case ZVVCM_GETMAXIMUM: return range_.maximum;
    case ZVVCM_SETVALUE: ShowValue(static_cast<int>(wParam)); return 0;
    case ZVVCM_GETVALUE: return CurrentValue();
    case ZVVCM_SETFLAGS: flags_ = static_cast<UINT>(wParam); return 0;
    case ZVVCM_SHOWDROPDOWN: wParam ? OpenSlider() : CloseSlider(true); return 0;
    case ZVVCM_GETDROPPEDSTATE: return slider_ != nullptr;
    default: return ::DefWindowProcW(window_, message, wParam, lParam);
  }
}

void ValueComboWindow::CreateEdit() {
  const bool isEnabled = !(::GetWindowLongW(window_, GWL_STYLE) & WS_DISABLED);
  edit_ =
      ::CreateWindowExW(0, WC_EDITW, nullptr, WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL | (isEnabled ? 0 : WS_DISABLED), 0,
                        0, 0, 0, window_, reinterpret_cast<HMENU>(UINT_PTR{kEditId}), AfxGetInstanceHandle(), nullptr);
  ::SetWindowSubclass(edit_, &EditProcedure, kEditSubclass, reinterpret_cast<DWORD_PTR>(this));
  ShowValue(value_);
}

CRect ValueComboWindow::ButtonArea() const {
  CRect area;
  ::GetClientRect(window_, &area);
  area.DeflateRect(kBorder, kBorder);
  area.left = std::max(area.left, area.right - ::GetSystemMetrics(SM_CXVSCROLL));
  return area;
}

// The edit stands in the middle of the height, as high as its font.
void ValueComboWindow::Layout() {
  CRect client;
  ::GetClientRect(window_, &client);
  const unique_window_dc device(edit_);
  const auto font = reinterpret_cast<HFONT>(::SendMessageW(edit_, WM_GETFONT, 0, 0));
  const dc_selection selected(device.get(), font ? font : ::GetStockObject(SYSTEM_FONT));
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(device.get(), &metrics);
  const int room = client.Height() - 2 * kBorder;
  const int height = std::min<int>(room, metrics.tmHeight);
  const int left = kBorder + 1;
  ::MoveWindow(edit_, left, kBorder + (room - height) / 2, ButtonArea().left - left, height, TRUE);
  ::InvalidateRect(window_, nullptr, TRUE);
}

void ValueComboWindow::Paint() {
  PAINTSTRUCT paint;
  const HDC device = ::BeginPaint(window_, &paint);
  const scope_exit endPaint([&] { ::EndPaint(window_, &paint); });
  CRect client;
  ::GetClientRect(window_, &client);
  const bool isEnabled = ::IsWindowEnabled(window_);
  CRect button = ButtonArea();
  const unique_htheme theme = OpenControlTheme(edit_, L"COMBOBOX");
  if (theme) {
    const int border = !isEnabled ? CBB_DISABLED : hasFocus_ ? CBB_FOCUSED : CBB_NORMAL;
    ::DrawThemeBackground(theme.get(), device, CP_BORDER, border, &client, nullptr);
    const int arrow = !isEnabled ? CBXS_DISABLED : slider_ ? CBXS_PRESSED : CBXS_NORMAL;
    ::DrawThemeBackground(theme.get(), device, CP_DROPDOWNBUTTON, arrow, &button, nullptr);
    return;
  }
  ::DrawEdge(device, &client, EDGE_SUNKEN, BF_RECT);
  CRect field = client;
  field.DeflateRect(kBorder, kBorder);
  field.right = button.left;
  ::FillRect(device, &field, ::GetSysColorBrush(isEnabled ? COLOR_WINDOW : COLOR_BTNFACE));
  UINT state = DFCS_SCROLLCOMBOBOX;
  state |= isEnabled ? 0 : DFCS_INACTIVE;
  state |= slider_ ? DFCS_PUSHED | DFCS_FLAT : 0;
  ::DrawFrameControl(device, &button, DFC_SCROLL, state);
}

int ValueComboWindow::CurrentValue() const {
  const std::optional<int> typed = ParseWholeNumber(TextOf(edit_));
  return typed ? range_.Clamp(*typed) : value_;
}

void ValueComboWindow::ShowValue(int value) {
  value_ = range_.Clamp(value);
  CString text;
  text.Format(L"%d", value_);
  if (text != TextOf(edit_)) {
    isShowingValue_ = true;
    ::SetWindowTextW(edit_, text);
    isShowingValue_ = false;
  }
  if (slider_) {
    slider_->SetValue(value_);
  }
}

// While the user types, a text that is no value of the range changes nothing yet.
void ValueComboWindow::OnTextChanged() {
  const std::optional<int> typed = ParseWholeNumber(TextOf(edit_));
  if (!typed || !range_.Holds(*typed) || *typed == value_) {
    return;
  }
  value_ = *typed;
  if (slider_) {
    slider_->SetValue(value_);
  }
  Notify();
}

void ValueComboWindow::ChangeBy(int64_t difference) { ChangeTo(range_.Clamp(CurrentValue() + difference)); }

void ValueComboWindow::ChangeTo(int value) {
  const int former = value_;
  ShowValue(value);
  ::SendMessageW(edit_, EM_SETSEL, 0, -1);
  if (value_ != former) {
    Notify();
  }
}

void ValueComboWindow::CommitText() {
  const int former = value_;
  ShowValue(CurrentValue());
  if (value_ != former) {
    Notify();
  }
}

void ValueComboWindow::Notify() const {
  const WPARAM notification = MAKEWPARAM(::GetDlgCtrlID(window_), ZVN_VALUECHANGED);
  ::SendMessageW(::GetParent(window_), WM_COMMAND, notification, reinterpret_cast<LPARAM>(window_));
}

void ValueComboWindow::OpenSlider() {
  if (slider_ || !::IsWindowEnabled(window_)) {
    return;
  }
  CommitText();
  valueBeforeSlider_ = value_;
  hasUnreportedDrag_ = false;
  CRect anchor;
  ::GetWindowRect(window_, &anchor);
  const auto dragged = [this](int value) {
    ShowValue(value);
    hasUnreportedDrag_ = true;
    if (!(flags_ & FLAGS_NOTRACKNOTIFY)) {
      hasUnreportedDrag_ = false;
      Notify();
    }
  };
  const auto released = [this] {
    if (std::exchange(hasUnreportedDrag_, false)) {
      Notify();
    }
  };
  slider_ = std::make_unique<SliderPopup>(edit_, anchor, range_, value_,
                                          SliderPopup::Owner{dragged, released, [this] { CloseSlider(true); }});
  ::InvalidateRect(window_, nullptr, TRUE);
}

void ValueComboWindow::CloseSlider(bool keepValue) {
  if (!slider_) {
    return;
  }
  // The popup's own handler may be running: the object goes with its window, but nothing touches it afterwards.
  std::exchange(slider_, nullptr).reset();
  ::InvalidateRect(window_, nullptr, TRUE);
  const bool wasDragged = std::exchange(hasUnreportedDrag_, false);
  if (!keepValue) {
    ChangeTo(valueBeforeSlider_);
  } else if (wasDragged) {
    Notify();
  }
}

LRESULT CALLBACK ValueComboWindow::EditProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                                 DWORD_PTR combo) {
  if (message == WM_NCDESTROY) {
    ::RemoveWindowSubclass(edit, &EditProcedure, id);
    return ::DefSubclassProc(edit, message, wParam, lParam);
  }
  try {
    return reinterpret_cast<ValueComboWindow*>(combo)->HandleEditMessage(message, wParam, lParam);
  } catch (...) {
    return 0;
  }
}

LRESULT ValueComboWindow::HandleEditMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  constexpr LPARAM kAltBit = 1 << 29;
  switch (message) {
    case WM_GETDLGCODE:
      // With the slider open, Enter and Esc are for it and not for the dialog.
      return ::DefSubclassProc(edit_, message, wParam, lParam) | (slider_ ? DLGC_WANTALLKEYS : 0);
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      if (HandleKey(wParam, (lParam & kAltBit) != 0)) {
        return 0;
      }
      break;
    case WM_CHAR:
      if (HandleCharacter(static_cast<wchar_t>(wParam))) {
        return 0;
      }
      break;
    case WM_MOUSEWHEEL: {
      // Fine wheels report parts of a notch.
      wheelRest_ += GET_WHEEL_DELTA_WPARAM(wParam);
      const int notches = wheelRest_ / WHEEL_DELTA;
      wheelRest_ -= notches * WHEEL_DELTA;
      ChangeBy(notches);
      return 0;
    }
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      hasFocus_ = message == WM_SETFOCUS;
      ::InvalidateRect(window_, nullptr, FALSE);
      if (hasFocus_) {
        ::PostMessageW(edit_, EM_SETSEL, 0, -1);
      } else {
        CloseSlider(true);
        CommitText();
      }
      break;
    default: break;
  }
  return ::DefSubclassProc(edit_, message, wParam, lParam);
}

bool ValueComboWindow::HandleKey(WPARAM key, bool isAltDown) {
  if (key == VK_F4 || (isAltDown && (key == VK_DOWN || key == VK_UP))) {
    slider_ ? CloseSlider(true) : OpenSlider();
    return true;
  }
  if (slider_) {
    switch (key) {
      case VK_RETURN: CloseSlider(true); return true;
      case VK_ESCAPE: CloseSlider(false); return true;
      case VK_LEFT: ChangeBy(-1); return true;
      case VK_RIGHT: ChangeBy(1); return true;
      case VK_HOME: ChangeTo(range_.minimum); return true;
      case VK_END: ChangeTo(range_.maximum); return true;
      default: break;
    }
  }
  switch (key) {
    case VK_UP: ChangeBy(1); return true;
    case VK_DOWN: ChangeBy(-1); return true;
    case VK_PRIOR: ChangeBy(range_.PageStep()); return true;
    case VK_NEXT: ChangeBy(-range_.PageStep()); return true;
    case VK_RETURN: CommitText(); return false;
    default: return false;
  }
}

// True when the character is dealt with: Enter and Esc would beep in the edit, and letters have no place in it.
bool ValueComboWindow::HandleCharacter(wchar_t character) const {
  if (character == VK_RETURN || character == VK_ESCAPE) {
    return true;
  }
  const bool isDigit = character >= L'0' && character <= L'9';
  const bool isSign = character == L'-' && range_.minimum < 0;
  if (character < L' ' || isDigit || isSign) {
    return false;
  }
  ::MessageBeep(MB_OK);
  return true;
}
