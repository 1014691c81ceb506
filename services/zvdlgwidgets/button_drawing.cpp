#include "services/zvdlgwidgets/button_drawing.h"

#include <iterator>

#include "services/zvdlgwidgets/theme.h"

namespace {

constexpr int kReferenceDpi = 96;
constexpr int kFrameWidth = 3;
constexpr int kArrowHalfWidth = 4;

int ThemeState(const ButtonLook& look) {
  if (!look.isEnabled) {
    return PBS_DISABLED;
  }
  if (look.isPressed) {
    return PBS_PRESSED;
  }
  return look.isHot ? PBS_HOT : look.isDefault ? PBS_DEFAULTED : PBS_NORMAL;
}

void DrawClassicFrame(HDC device, const CRect& rectangle, const ButtonLook& look) {
  CRect inner = rectangle;
  if (look.isDefault) {
    ::FrameRect(device, &inner, ::GetSysColorBrush(COLOR_WINDOWFRAME));
    inner.DeflateRect(1, 1);
  }
  UINT state = DFCS_BUTTONPUSH;
  state |= look.isPressed ? DFCS_PUSHED : 0;
  state |= look.isEnabled ? 0 : DFCS_INACTIVE;
  state |= look.isFlat && !look.isHot ? DFCS_FLAT : 0;
  ::DrawFrameControl(device, &inner, DFC_BUTTON, state);
}

}  // namespace

int ScaleForDevice(HDC device, int pixelsAt96) {
  return ::MulDiv(pixelsAt96, ::GetDeviceCaps(device, LOGPIXELSX), kReferenceDpi);
}

void DrawButtonFrame(HWND button, HDC device, const CRect& rectangle, const ButtonLook& look) {
  ::FillRect(device, &rectangle, ::GetSysColorBrush(COLOR_BTNFACE));
  const bool isBare = look.isFlat && !look.isHot && !look.isPressed && !look.isFocused;
  if (isBare) {
    return;
  }
  const unique_htheme theme = OpenControlTheme(button, L"BUTTON");
  if (theme) {
    CRect area = rectangle;
    ::DrawThemeParentBackground(button, device, &area);
    ::DrawThemeBackground(theme.get(), device, BP_PUSHBUTTON, ThemeState(look), &rectangle, nullptr);
  } else {
    DrawClassicFrame(device, rectangle, look);
  }
}

CRect ButtonContent(HWND button, HDC device, const CRect& rectangle, const ButtonLook& look) {
  CRect content = rectangle;
  const int frame = ScaleForDevice(device, kFrameWidth);
  content.DeflateRect(frame, frame);
  if (look.isPressed && !IsControlThemed(button)) {
    content.OffsetRect(1, 1);
  }
  return content;
}

void DrawButtonFocus(HDC device, const CRect& rectangle, const ButtonLook& look) {
  if (!look.isFocused) {
    return;
  }
  CRect inner = rectangle;
  const int frame = ScaleForDevice(device, kFrameWidth);
  inner.DeflateRect(frame, frame);
  // The dotted rectangle is drawn in these two colours.
  ::SetTextColor(device, ::GetSysColor(COLOR_BTNTEXT));
  ::SetBkColor(device, ::GetSysColor(COLOR_BTNFACE));
  ::DrawFocusRect(device, &inner);
}

void DrawDropArrow(HDC device, const CRect& rectangle, bool isEnabled) {
  const int half = ScaleForDevice(device, kArrowHalfWidth);
  const int height = half;
  const CPoint middle = rectangle.CenterPoint();
  const int top = middle.y - height / 2;
  const POINT corners[] = {{middle.x - half, top}, {middle.x + half, top}, {middle.x, top + height}};
  const COLORREF color = ::GetSysColor(isEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
  const unique_hbrush brush(::CreateSolidBrush(color));
  const unique_hpen pen(::CreatePen(PS_SOLID, 1, color));
  const dc_selection selectedBrush(device, brush.get());
  const dc_selection selectedPen(device, pen.get());
  ::Polygon(device, corners, static_cast<int>(std::size(corners)));
}

void DrawSeparator(HDC device, const CRect& rectangle) {
  CRect line = rectangle;
  line.left = rectangle.CenterPoint().x;
  ::DrawEdge(device, &line, EDGE_ETCHED, BF_LEFT);
}
