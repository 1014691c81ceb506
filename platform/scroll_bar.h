// CScrollBar: a scroll bar that is a window of its own.
#pragma once

#include "platform/control.h"

class CScrollBar : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_SCROLLBARW, nullptr, style, rect, parent, id);
  }
  int GetScrollPos() const { return CWnd::GetScrollPos(SB_CTL); }
  int SetScrollPos(int position, BOOL redraw = TRUE) { return CWnd::SetScrollPos(SB_CTL, position, redraw); }
  void SetScrollRange(int minimum, int maximum, BOOL redraw = TRUE) {
    CWnd::SetScrollRange(SB_CTL, minimum, maximum, redraw);
  }
  BOOL GetScrollInfo(SCROLLINFO* info, UINT mask = SIF_ALL) { return CWnd::GetScrollInfo(SB_CTL, info, mask); }
  BOOL SetScrollInfo(SCROLLINFO* info, BOOL redraw = TRUE) { return CWnd::SetScrollInfo(SB_CTL, info, redraw); }
  BOOL EnableScrollBar(UINT arrows = ESB_ENABLE_BOTH) { return ::EnableScrollBar(m_hWnd, SB_CTL, arrows); }
};
