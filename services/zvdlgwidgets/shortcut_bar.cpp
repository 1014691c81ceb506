#include "services/zvdlgwidgets/shortcut_bar.h"

#include <algorithm>

#include "platform/dc.h"
#include "services/zvdlgwidgets/button_drawing.h"

BEGIN_MESSAGE_MAP(CZVShortcutBar, CWnd)
  ON_WM_PAINT()
  ON_WM_ERASEBKGND()
  ON_WM_SIZE()
  ON_WM_MOUSEMOVE()
  ON_WM_MOUSELEAVE()
  ON_WM_LBUTTONDOWN()
  ON_WM_LBUTTONUP()
  ON_WM_MOUSEWHEEL()
  ON_WM_KEYDOWN()
  ON_WM_GETDLGCODE()
  ON_WM_SETFOCUS()
  ON_WM_KILLFOCUS()
END_MESSAGE_MAP()

namespace {

// Lengths at 96 dots per inch.
constexpr int kItemMargin = 6;
constexpr int kHeaderMargin = 4;
constexpr int kTextLines = 2;

int LineHeight(HDC device, HFONT font) {
  const dc_selection selected(device, font);
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(device, &metrics);
  return metrics.tmHeight;
}

HFONT FontOrDefault(HFONT font) { return font ? font : static_cast<HFONT>(::GetStockObject(DEFAULT_GUI_FONT)); }

CSize ImageSize(HIMAGELIST images) {
  int width = 0, height = 0;
  if (images) {
    ::ImageList_GetIconSize(images, &width, &height);
  }
  return CSize(width, height);
}

}  // namespace

BOOL CZVShortcutBar::Create(DWORD style, DWORD barStyle, const RECT& rectangle, CWnd* parent, UINT id) {
  const DWORD border = barStyle & ZVSBS_NOBORDER ? 0 : WS_BORDER;
  return CreateEx(0, AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorW(nullptr, IDC_ARROW)), nullptr,
                  style | WS_CHILD | border, rectangle, parent, id);
}

int CZVShortcutBar::AddGroup(LPCWSTR text) {
  groups_.push_back({text, {}});
  if (expandedGroup_ < 0) {
    ExpandGroup(0);
  }
  Invalidate(FALSE);
  return GetGroupCount() - 1;
}

int CZVShortcutBar::AddItem(int group, int image, LPCWSTR text) {
  if (group < 0 || group >= GetGroupCount()) {
    return -1;
  }
  std::vector<Item>& items = groups_[static_cast<size_t>(group)].items;
  items.push_back({image, text});
  Invalidate(FALSE);
  return static_cast<int>(items.size()) - 1;
}

int CZVShortcutBar::GetItemCount(int group) const {
  const bool exists = group >= 0 && group < GetGroupCount();
  return exists ? static_cast<int>(groups_[static_cast<size_t>(group)].items.size()) : 0;
}

void CZVShortcutBar::SetItemText(int group, int item, LPCWSTR text) {
  if (item >= 0 && item < GetItemCount(group)) {
    groups_[static_cast<size_t>(group)].items[static_cast<size_t>(item)].text = text;
    Invalidate(FALSE);
  }
}

void CZVShortcutBar::SetImageList(HIMAGELIST images) {
  images_ = images;
  Invalidate(FALSE);
}

void CZVShortcutBar::SetTextFont(HFONT items, HFONT headers) {
  itemFont_ = items;
  headerFont_ = headers;
  Invalidate(FALSE);
}

void CZVShortcutBar::SetColors(COLORREF background, COLORREF text) {
  background_ = background;
  textColor_ = text;
  Invalidate(FALSE);
}

void CZVShortcutBar::ExpandGroup(int group) {
  if (group < 0 || group >= GetGroupCount() || group == expandedGroup_) {
    return;
  }
  expandedGroup_ = group;
  currentItem_ = hotItem_ = pressedItem_ = -1;
  scroll_ = 0;
  Invalidate(FALSE);
}

const std::vector<CZVShortcutBar::Item>& CZVShortcutBar::ExpandedItems() const {
  static const std::vector<Item> none;
  return expandedGroup_ < 0 ? none : groups_[static_cast<size_t>(expandedGroup_)].items;
}

ShortcutBarMetrics CZVShortcutBar::Metrics() const {
  const unique_window_dc device(m_hWnd);
  CRect client;
  GetClientRect(&client);
  ShortcutBarMetrics metrics;
  metrics.client = client.Size();
  metrics.headerHeight =
      LineHeight(device.get(), FontOrDefault(headerFont_)) + 2 * ScaleForDevice(device.get(), kHeaderMargin);
  metrics.itemHeight = ImageSize(images_).cy + kTextLines * LineHeight(device.get(), FontOrDefault(itemFont_)) +
                       2 * ScaleForDevice(device.get(), kItemMargin);
  return metrics;
}

ShortcutBarLayout CZVShortcutBar::Layout() const {
  return LayOutShortcutBar(Metrics(), GetGroupCount(), expandedGroup_, GetItemCount(expandedGroup_), scroll_);
}

int CZVShortcutBar::ItemAt(CPoint point) const {
  const ShortcutBarLayout layout = Layout();
  if (!layout.itemArea.PtInRect(point)) {
    return -1;
  }
  const auto found =
      std::ranges::find_if(layout.items, [&](const CRect& item) { return item.PtInRect(point) != FALSE; });
  return found == layout.items.end() ? -1 : static_cast<int>(found - layout.items.begin());
}

void CZVShortcutBar::MoveTo(int item) {
  const int count = GetItemCount(expandedGroup_);
  if (count == 0) {
    return;
  }
  currentItem_ = std::clamp(item, 0, count - 1);
  scroll_ = ScrollToShortcutItem(Metrics(), GetGroupCount(), currentItem_, count, scroll_);
  Invalidate(FALSE);
}

void CZVShortcutBar::Report(int item) {
  NMSHORTCUTBAR notification{{m_hWnd, static_cast<UINT_PTR>(GetDlgCtrlID()), ZVSBN_ITEMCLICKED}, expandedGroup_, item};
  ::SendMessageW(::GetParent(m_hWnd), WM_NOTIFY, notification.hdr.idFrom, reinterpret_cast<LPARAM>(&notification));
}

void CZVShortcutBar::OnPaint() {
  CPaintDC paint(this);
  CRect client;
  GetClientRect(&client);
  CMemDC memory(paint, client);
  PaintBar(memory);
}

void CZVShortcutBar::PaintBar(HDC device) {
  CRect client;
  GetClientRect(&client);
  const unique_hbrush background(::CreateSolidBrush(background_));
  ::FillRect(device, &client, background.get());
  const ShortcutBarLayout layout = Layout();
  const int saved = ::SaveDC(device);
  ::IntersectClipRect(device, layout.itemArea.left, layout.itemArea.top, layout.itemArea.right, layout.itemArea.bottom);
  for (size_t i = 0; i < layout.items.size(); ++i) {
    PaintItem(device, layout.items[i], static_cast<int>(i));
  }
  ::RestoreDC(device, saved);
  for (size_t i = 0; i < layout.headers.size(); ++i) {
    PaintHeader(device, layout.headers[i], groups_[i]);
  }
}

void CZVShortcutBar::PaintHeader(HDC device, const CRect& rectangle, const Group& group) const {
  CRect area = rectangle;
  ::DrawFrameControl(device, &area, DFC_BUTTON, DFCS_BUTTONPUSH);
  const dc_selection selected(device, FontOrDefault(headerFont_));
  ::SetBkMode(device, TRANSPARENT);
  ::SetTextColor(device, ::GetSysColor(COLOR_BTNTEXT));
  ::DrawTextW(device, group.text, -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

void CZVShortcutBar::PaintItem(HDC device, const CRect& rectangle, int index) const {
  const Item& item = ExpandedItems()[static_cast<size_t>(index)];
  const int margin = ScaleForDevice(device, kItemMargin);
  const CSize image = ImageSize(images_);
  CRect picture(CPoint(rectangle.CenterPoint().x - image.cx / 2, rectangle.top + margin), image);
  if (images_) {
    ::ImageList_Draw(images_, item.image, device, picture.left, picture.top, ILD_TRANSPARENT);
    if (index == hotItem_ || index == pressedItem_) {
      CRect frame = picture;
      frame.InflateRect(2, 2);
      ::DrawEdge(device, &frame, index == pressedItem_ ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
    }
  }
  CRect text(rectangle.left + 1, picture.bottom + margin / 2, rectangle.right - 1, rectangle.bottom);
  const dc_selection selected(device, FontOrDefault(itemFont_));
  ::SetBkMode(device, TRANSPARENT);
  ::SetTextColor(device, textColor_);
  ::DrawTextW(device, item.text, -1, &text, DT_CENTER | DT_WORDBREAK | DT_END_ELLIPSIS | DT_NOPREFIX);
  if (index == currentItem_ && ::GetFocus() == m_hWnd) {
    CRect focus = rectangle;
    focus.DeflateRect(2, 2);
    ::SetBkColor(device, background_);
    ::DrawFocusRect(device, &focus);
  }
}

BOOL CZVShortcutBar::OnEraseBkgnd(CDC*) { return TRUE; }

void CZVShortcutBar::OnSize(UINT type, int width, int height) {
  CWnd::OnSize(type, width, height);
  if (currentItem_ >= 0) {
    MoveTo(currentItem_);
  }
  Invalidate(FALSE);
}

void CZVShortcutBar::OnMouseMove(UINT, CPoint point) {
  const int hot = ItemAt(point);
  if (hot == hotItem_) {
    return;
  }
  hotItem_ = hot;
  Invalidate(FALSE);
  TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, m_hWnd, 0};
  ::TrackMouseEvent(&track);
}

void CZVShortcutBar::OnMouseLeave() {
  hotItem_ = -1;
  Invalidate(FALSE);
}

void CZVShortcutBar::OnLButtonDown(UINT, CPoint point) {
  SetFocus();
  const std::vector<CRect> headers = Layout().headers;
  const auto header = std::ranges::find_if(headers, [&](const CRect& area) { return area.PtInRect(point) != FALSE; });
  if (header != headers.end()) {
    ExpandGroup(static_cast<int>(header - headers.begin()));
    return;
  }
  pressedItem_ = ItemAt(point);
  if (pressedItem_ >= 0) {
    SetCapture();
    MoveTo(pressedItem_);
  }
}

// As with a button, releasing the mouse elsewhere takes the click back.
void CZVShortcutBar::OnLButtonUp(UINT, CPoint point) {
  const int pressed = std::exchange(pressedItem_, -1);
  if (pressed < 0) {
    return;
  }
  ::ReleaseCapture();
  Invalidate(FALSE);
  if (ItemAt(point) == pressed) {
    Report(pressed);
  }
}

BOOL CZVShortcutBar::OnMouseWheel(UINT, short delta, CPoint) {
  const int first = currentItem_ < 0 ? 0 : currentItem_;
  MoveTo(delta > 0 ? first - 1 : first + 1);
  return TRUE;
}

void CZVShortcutBar::OnKeyDown(UINT key, UINT repeat, UINT flags) {
  switch (key) {
    case VK_UP: MoveTo(currentItem_ - 1); break;
    case VK_DOWN: MoveTo(currentItem_ + 1); break;
    case VK_HOME: MoveTo(0); break;
    case VK_END: MoveTo(GetItemCount(expandedGroup_) - 1); break;
    case VK_PRIOR: ExpandGroup(expandedGroup_ - 1); break;
    case VK_NEXT: ExpandGroup(expandedGroup_ + 1); break;
    case VK_RETURN:
    case VK_SPACE:
      if (currentItem_ >= 0) {
        Report(currentItem_);
      }
      break;
    default: CWnd::OnKeyDown(key, repeat, flags); break;
  }
}

// Enter is the bar's own only while there is something to choose.
UINT CZVShortcutBar::OnGetDlgCode() {
  const auto* const message = reinterpret_cast<const MSG*>(GetCurrentMessage().lParam);
  const bool isEnter = message && message->message == WM_KEYDOWN && message->wParam == VK_RETURN;
  return DLGC_WANTARROWS | (isEnter && currentItem_ >= 0 ? DLGC_WANTMESSAGE : 0);
}

void CZVShortcutBar::OnSetFocus(CWnd* previous) {
  CWnd::OnSetFocus(previous);
  if (currentItem_ < 0) {
    MoveTo(0);
  }
  Invalidate(FALSE);
}

void CZVShortcutBar::OnKillFocus(CWnd* next) {
  CWnd::OnKillFocus(next);
  Invalidate(FALSE);
}
