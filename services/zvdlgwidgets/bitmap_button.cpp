#include "services/zvdlgwidgets/bitmap_button.h"

#include "platform/dc.h"
#include "platform/module_context.h"
#include "services/zvdlgwidgets/button_drawing.h"

namespace {

constexpr int kDropdownWidth = 14;
constexpr int kTextGap = 4;

ArgbImage LoadPicture(UINT id) {
  const unique_hbitmap bitmap(static_cast<HBITMAP>(
      ::LoadImageW(AfxGetResourceHandle(), MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
  return ReadArgbImage(bitmap.get());
}

TTTOOLINFOW ToolOf(HWND button) {
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = ::GetParent(button);
  tool.uId = reinterpret_cast<UINT_PTR>(button);
  return tool;
}

}  // namespace

bool CZVBitmapButton::LoadBitmap(UINT bitmapId, UINT disabledBitmapId) {
  picture_ = LoadPicture(bitmapId);
  disabledPicture_ = {};
  if (disabledBitmapId) {
    LoadDisabledBitmap(disabledBitmapId);
  }
  Invalidate(FALSE);
  return !picture_.IsEmpty();
}

bool CZVBitmapButton::LoadDisabledBitmap(UINT bitmapId) {
  disabledPicture_ = LoadPicture(bitmapId);
  Invalidate(FALSE);
  return !disabledPicture_.IsEmpty();
}

void CZVBitmapButton::SetPicture(HBITMAP picture) {
  picture_ = ReadArgbImage(picture);
  disabledPicture_ = {};
  Invalidate(FALSE);
}

void CZVBitmapButton::SetImageOffset(CPoint offset) {
  imageOffset_ = offset;
  Invalidate(FALSE);
}

void CZVBitmapButton::SetStyleEx(UINT style) {
  styleEx_ = style;
  state_.opensDownward = style & ZVBBS_DROPDOWN;
  Invalidate(FALSE);
}

void CZVBitmapButton::SetDrawDropdownSeparator(bool on) {
  drawSeparator_ = on;
  Invalidate(FALSE);
}

void CZVBitmapButton::SetToolTip(bool on) {
  toolTipOn_ = on;
  UpdateToolTip();
}

void CZVBitmapButton::SetToolTipText(LPCWSTR text) {
  toolTipText_ = text;
  toolTipOn_ = !toolTipText_.IsEmpty();
  UpdateToolTip();
}

void CZVBitmapButton::PreSubclassWindow() {
  state_.isDefault = GetButtonStyle() == BS_DEFPUSHBUTTON;
  ModifyStyle(BS_TYPEMASK, BS_OWNERDRAW);
  UpdateToolTip();
}

void CZVBitmapButton::UpdateToolTip() {
  if (!m_hWnd) {
    return;
  }
  TTTOOLINFOW tool = ToolOf(*this);
  if (!toolTip_ && toolTipOn_) {
    toolTip_.reset(::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                                     CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, tool.hwnd, nullptr,
                                     AfxGetInstanceHandle(), nullptr));
    ::SendMessageW(toolTip_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
  if (toolTip_) {
    tool.lpszText = const_cast<LPWSTR>(toolTipText_.GetString());
    ::SendMessageW(toolTip_.get(), TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    ::SendMessageW(toolTip_.get(), TTM_ACTIVATE, toolTipOn_, 0);
  }
}

void CZVBitmapButton::DrawItem(LPDRAWITEMSTRUCT item) {
  const CRect client = item->rcItem;
  CDC* const target = CDC::FromHandle(item->hDC);
  CMemDC memory(*target, client);
  ::SelectObject(memory, reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
  ButtonLook look;
  look.isEnabled = !(item->itemState & ODS_DISABLED);
  look.isPressed = item->itemState & ODS_SELECTED;
  look.isHot = isHot_;
  look.isDefault = state_.isDefault;
  look.isFocused = (item->itemState & ODS_FOCUS) && !(item->itemState & ODS_NOFOCUSRECT);
  look.isFlat = styleEx_ & ZVBBS_FLAT;
  DrawButtonFrame(*this, memory, client, look);
  DrawContent(memory, ButtonContent(*this, memory, client, look), look.isEnabled);
  DrawButtonFocus(memory, client, look);
}

ArgbImage CZVBitmapButton::PictureFor(HDC device, bool isEnabled) const {
  const bool hasDisabled = !disabledPicture_.IsEmpty();
  const ArgbImage& source = isEnabled || !hasDisabled ? picture_ : disabledPicture_;
  const ArgbImage scaled =
      ScaleArgbImage(source, ScaleForDevice(device, source.width), ScaleForDevice(device, source.height));
  return isEnabled || hasDisabled ? scaled : GreyArgbImage(scaled);
}

void CZVBitmapButton::DrawContent(HDC device, CRect area, bool isEnabled) const {
  if (styleEx_ & ZVBBS_DROPDOWN) {
    CRect arrow = area;
    arrow.left = area.right - ScaleForDevice(device, kDropdownWidth);
    DrawDropArrow(device, arrow, isEnabled);
    area.right = arrow.left;
    if (drawSeparator_) {
      DrawSeparator(device, CRect(arrow.left, area.top, arrow.left, area.bottom));
    }
  }
  const ArgbImage picture = PictureFor(device, isEnabled);
  CString text;
  CSize textSize;
  if (styleEx_ & ZVBBS_SHOWTEXT) {
    GetWindowText(text);
    ::GetTextExtentPoint32W(device, text, text.GetLength(), &textSize);
  }
  const int gap = text.IsEmpty() || picture.IsEmpty() ? 0 : ScaleForDevice(device, kTextGap);
  const int left = area.left + (area.Width() - picture.width - gap - textSize.cx) / 2;
  const CPoint offset(ScaleForDevice(device, imageOffset_.x), ScaleForDevice(device, imageOffset_.y));
  DrawArgbImage(device, picture, left + offset.x, area.top + (area.Height() - picture.height) / 2 + offset.y);
  if (!text.IsEmpty()) {
    CRect textArea(left + picture.width + gap, area.top, area.right, area.bottom);
    ::SetBkMode(device, TRANSPARENT);
    ::SetTextColor(device, ::GetSysColor(isEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    ::DrawTextW(device, text, -1, &textArea, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
  }
}

void CZVBitmapButton::FollowMouse(UINT message) {
  const bool isOver = message == WM_MOUSEMOVE;
  if (isOver == isHot_) {
    return;
  }
  isHot_ = isOver;
  Invalidate(FALSE);
  if (isOver) {
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, m_hWnd, 0};
    ::TrackMouseEvent(&track);
  }
}

LRESULT CZVBitmapButton::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = OwnerDrawnButtonMessage(*this, message, wParam, lParam, state_)) {
    return *answer;
  }
  if (message == WM_MOUSEMOVE || message == WM_MOUSELEAVE) {
    FollowMouse(message);
  }
  return CButton::WindowProc(message, wParam, lParam);
}
