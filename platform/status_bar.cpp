#include "platform/status_bar.h"

#include <algorithm>

#include "platform/gdi.h"

IMPLEMENT_DYNAMIC(CStatusBar, CControlBar)

BEGIN_MESSAGE_MAP(CStatusBar, CControlBar)
  ON_WM_SIZE()
END_MESSAGE_MAP()

namespace {

constexpr int kPaneBorders = 6;

}  // namespace

BOOL CStatusBar::Create(CWnd* parent, DWORD style, UINT id) {
  m_dwStyle = style & 0xFFFF;
  return CWnd::Create(STATUSCLASSNAMEW, nullptr,
                      (style & 0xFFFF0000) | CCS_NOPARENTALIGN | CCS_NOMOVEY | SBARS_SIZEGRIP, CRect(0, 0, 0, 0),
                      parent, id);
}

BOOL CStatusBar::SetIndicators(const UINT* ids, int count) {
  panes_.assign(static_cast<size_t>(count), Pane{});
  const CClientDC dc(this);
  const dc_selection font(dc, reinterpret_cast<HGDIOBJ>(SendMessage(WM_GETFONT)));
  for (int i = 0; i < count; ++i) {
    Pane& pane = panes_[static_cast<size_t>(i)];
    pane.id = ids ? ids[i] : 0;
    if (pane.id) {
      pane.text.LoadString(pane.id);
      pane.width = dc.GetTextExtent(pane.text).cx;
    } else if (i == 0) {
      pane.style = SBPS_STRETCH | SBPS_NOBORDERS;
    }
  }
  LayOutPanes();
  return TRUE;
}

void CStatusBar::SetPaneInfo(int index, UINT id, UINT style, int width) {
  Pane& pane = panes_.at(static_cast<size_t>(index));
  pane.id = id;
  pane.style = style;
  pane.width = width;
  LayOutPanes();
}

void CStatusBar::SetPaneStyle(int index, UINT style) {
  panes_.at(static_cast<size_t>(index)).style = style;
  LayOutPanes();
}

BOOL CStatusBar::SetPaneText(int index, LPCTSTR text, BOOL update) {
  if (index < 0 || index >= GetPaneCount()) {
    return FALSE;
  }
  panes_[static_cast<size_t>(index)].text = text;
  ShowPane(index);
  if (update) {
    UpdateWindow();
  }
  return TRUE;
}

CString CStatusBar::GetPaneText(int index) const { return panes_.at(static_cast<size_t>(index)).text; }

void CStatusBar::GetItemRect(int index, LPRECT rect) const {
  SendMessage(SB_GETRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(rect));
}

void CStatusBar::ShowPane(int index) {
  const Pane& pane = panes_[static_cast<size_t>(index)];
  const UINT border = pane.style & (SBPS_NOBORDERS | SBPS_POPOUT);
  const LPCTSTR shown = pane.style & SBPS_DISABLED ? L"" : pane.text.GetString();
  SendMessage(SB_SETTEXTW, static_cast<WPARAM>(index) | border, reinterpret_cast<LPARAM>(shown));
}

// The stretching panes share what the others leave.
void CStatusBar::LayOutPanes() {
  if (panes_.empty()) {
    return;
  }
  CRect client;
  GetClientRect(client);
  int fixed = 0;
  int stretching = 0;
  for (const Pane& pane : panes_) {
    pane.style& SBPS_STRETCH ? ++stretching : fixed += pane.width + kPaneBorders;
  }
  const int share = stretching ? std::max(0, client.Width() - fixed) / stretching : 0;
  std::vector<int> edges;
  int edge = 0;
  for (const Pane& pane : panes_) {
    edges.push_back(edge += pane.style & SBPS_STRETCH ? share : pane.width + kPaneBorders);
  }
  SendMessage(SB_SETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data()));
  for (int i = 0; i < GetPaneCount(); ++i) {
    ShowPane(i);
  }
}

CSize CStatusBar::CalcFixedLayout(BOOL /*stretch*/, BOOL /*horizontal*/) {
  // The control itself chooses its height for its font, when it is told that something changed.
  SendMessage(WM_SIZE);
  CRect rect;
  GetWindowRect(rect);
  return rect.Size();
}

void CStatusBar::OnSize(UINT type, int cx, int cy) {
  CControlBar::OnSize(type, cx, cy);
  LayOutPanes();
}
