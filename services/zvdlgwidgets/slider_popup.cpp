#include "services/zvdlgwidgets/slider_popup.h"

#include <algorithm>

#include "platform/module_context.h"
#include "platform/scope_exit.h"
#include "services/zvdlgwidgets/button_drawing.h"
#include "services/zvdlgwidgets/theme.h"

namespace {

// Lengths at 96 dots per inch.
constexpr int kHeight = 30;
constexpr int kSmallestWidth = 140;
constexpr int kMargin = 10;
constexpr int kChannelHeight = 4;
constexpr int kThumbWidth = 9;
constexpr int kThumbHeight = 19;

constexpr wchar_t kClassName[] = L"ZVValueComboSlider";

void RegisterPopupClass(WNDPROC procedure) {
  WNDCLASSW windowClass{};
  windowClass.style = CS_DROPSHADOW | CS_SAVEBITS;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = AfxGetInstanceHandle();
  windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kClassName;
  ::RegisterClassW(&windowClass);  // fails harmlessly from the second time on
}

CRect PlaceFor(const CRect& anchor, int width, int height) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  ::GetMonitorInfoW(::MonitorFromRect(&anchor, MONITOR_DEFAULTTONEAREST), &monitor);
  const CRect work = monitor.rcWork;
  const int left = std::max<int>(work.left, std::min<int>(anchor.left, work.right - width));
  const int top = anchor.bottom + height <= work.bottom ? anchor.bottom : anchor.top - height;
  return CRect(CPoint(left, top), CSize(width, height));
}

// The owner may destroy the popup, and its functions with it, while one of them runs.
template <class Function, class... Arguments>
void Report(Function function, Arguments... arguments) {
  function(arguments...);
}

int Scale(int pixelsAt96) {
  const unique_window_dc screen(nullptr);
  return ScaleForDevice(screen.get(), pixelsAt96);
}

}  // namespace

SliderPopup::SliderPopup(HWND edit, const CRect& anchor, ValueRange range, int value, Owner owner)
    : edit_(edit), range_(range), value_(range.Clamp(value)), owner_(std::move(owner)) {
  RegisterPopupClass(&WindowProcedure);
  const CRect place = PlaceFor(anchor, std::max(anchor.Width(), Scale(kSmallestWidth)), Scale(kHeight));
  window_ = ::CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW | WS_EX_TOPMOST, kClassName, nullptr,
                              WS_POPUP | WS_BORDER, place.left, place.top, place.Width(), place.Height(), edit, nullptr,
                              AfxGetInstanceHandle(), this);
  if (window_) {
    ::ShowWindow(window_, SW_SHOWNOACTIVATE);
    ::SetCapture(window_);
  }
}

SliderPopup::~SliderPopup() {
  isClosing_ = true;
  if (window_) {
    ::SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    if (::GetCapture() == window_) {
      ::ReleaseCapture();
    }
    ::DestroyWindow(window_);
  }
}

void SliderPopup::SetValue(int value) {
  value_ = range_.Clamp(value);
  ::InvalidateRect(window_, nullptr, FALSE);
}

LRESULT CALLBACK SliderPopup::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* const create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto* const popup = static_cast<SliderPopup*>(create->lpCreateParams);
    popup->window_ = window;
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(popup));
  }
  auto* const popup = reinterpret_cast<SliderPopup*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  return popup ? popup->HandleMessage(message, wParam, lParam) : ::DefWindowProcW(window, message, wParam, lParam);
}

LRESULT SliderPopup::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const CPoint point(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
  switch (message) {
    case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
    case WM_LBUTTONDOWN: {
      CRect client;
      ::GetClientRect(window_, &client);
      if (client.PtInRect(point)) {
        isDragging_ = true;
        Drag(point.x);
      } else {
        Report(owner_.closed);
      }
      return 0;
    }
    case WM_RBUTTONDOWN: Report(owner_.closed); return 0;
    case WM_MOUSEMOVE:
      if (isDragging_) {
        Drag(point.x);
      }
      return 0;
    case WM_LBUTTONUP:
      if (isDragging_) {
        isDragging_ = false;
        Report(owner_.released);
      }
      return 0;
    case WM_CAPTURECHANGED:
      if (!isClosing_) {
        Report(owner_.closed);
      }
      return 0;
    case WM_ERASEBKGND: return TRUE;
    case WM_PAINT: Paint(); return 0;
    default: return ::DefWindowProcW(window_, message, wParam, lParam);
  }
}

// Where the middle of the thumb can stand.
CRect SliderPopup::Track() const {
  CRect track;
  ::GetClientRect(window_, &track);
  const int margin = Scale(kMargin);
  track.DeflateRect(margin, 0);
  return track;
}

void SliderPopup::Drag(int x) {
  const CRect track = Track();
  const int value = range_.ValueAt(x - track.left, track.Width());
  if (value != value_) {
    SetValue(value);
    Report(owner_.dragged, value);
  }
}

void SliderPopup::Paint() {
  PAINTSTRUCT paint;
  const HDC device = ::BeginPaint(window_, &paint);
  const scope_exit endPaint([&] { ::EndPaint(window_, &paint); });
  CRect client;
  ::GetClientRect(window_, &client);
  const unique_hdc memory(::CreateCompatibleDC(device));
  const unique_hbitmap bitmap(::CreateCompatibleBitmap(device, client.Width(), client.Height()));
  const dc_selection selected(memory.get(), bitmap.get());
  DrawSlider(memory.get(), client);
  ::BitBlt(device, 0, 0, client.Width(), client.Height(), memory.get(), 0, 0, SRCCOPY);
}

void SliderPopup::DrawSlider(HDC device, const CRect& client) const {
  ::FillRect(device, &client, ::GetSysColorBrush(COLOR_BTNFACE));
  const CRect track = Track();
  CRect channel = track;
  channel.top = client.CenterPoint().y - ScaleForDevice(device, kChannelHeight) / 2;
  channel.bottom = channel.top + ScaleForDevice(device, kChannelHeight);
  const int middle = track.left + range_.PositionOf(value_, track.Width());
  const CSize size(ScaleForDevice(device, kThumbWidth), ScaleForDevice(device, kThumbHeight));
  CRect thumb(CPoint(middle - size.cx / 2, client.CenterPoint().y - size.cy / 2), size);
  if (const unique_htheme theme = OpenControlTheme(edit_, L"TRACKBAR")) {
    ::DrawThemeBackground(theme.get(), device, TKP_TRACK, TRS_NORMAL, &channel, nullptr);
    ::DrawThemeBackground(theme.get(), device, TKP_THUMB, isDragging_ ? TUS_PRESSED : TUS_NORMAL, &thumb, nullptr);
  } else {
    ::DrawEdge(device, &channel, EDGE_SUNKEN, BF_RECT);
    ::DrawFrameControl(device, &thumb, DFC_BUTTON, DFCS_BUTTONPUSH | (isDragging_ ? DFCS_PUSHED : 0));
  }
}
