// Placing of dialog windows, and their font.
#include <algorithm>

#include "services/zvdlgbase/zvdlgbase.h"

namespace {

// Where a span of `length` starting at `wanted` goes so that it lies in [low, high); a span too long starts at low.
LONG Inside(LONG wanted, LONG length, LONG low, LONG high) { return std::max(low, std::min(wanted, high - length)); }

// The user's font for message boxes, made on first use and kept for the life of the process.
struct MessageFont {
  MessageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
      handle = ::CreateFontIndirectW(&metrics.lfMessageFont);
    }
  }
  ~MessageFont() {
    if (handle) {
      ::DeleteObject(handle);
    }
  }
  MessageFont(const MessageFont&) = delete;
  MessageFont& operator=(const MessageFont&) = delete;

  HFONT handle = nullptr;
};

}  // namespace

HFONT GetDialogFont(void) {
  static const MessageFont font;
  return font.handle;
}

int32_t PositionDialogWindow(HWND window, POINT position) {
  RECT frame;
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  if (!::GetWindowRect(window, &frame) ||
      !::GetMonitorInfoW(::MonitorFromPoint(position, MONITOR_DEFAULTTONEAREST), &monitor)) {
    return ERROR_BAD_ARGUMENT;
  }
  const RECT& work = monitor.rcWork;
  const LONG left = Inside(position.x, frame.right - frame.left, work.left, work.right);
  const LONG top = Inside(position.y, frame.bottom - frame.top, work.top, work.bottom);
  const UINT flags = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
  return ::SetWindowPos(window, nullptr, left, top, 0, 0, flags) ? SUCCESS : ERROR_DIALOG_FAILED;
}
