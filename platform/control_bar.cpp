#include "platform/control_bar.h"

#include "platform/frame_wnd.h"

IMPLEMENT_DYNAMIC(CControlBar, CWnd)

BEGIN_MESSAGE_MAP(CControlBar, CWnd)
  ON_MESSAGE(WM_IDLEUPDATECMDUI, OnIdleUpdateCmdUI)
END_MESSAGE_MAP()

CFrameWnd* CControlBar::GetFrame() const { return AfxGetParentFrame(m_hWnd); }

CSize CControlBar::CalcFixedLayout(BOOL /*stretch*/, BOOL /*horizontal*/) {
  CRect rect;
  GetWindowRect(rect);
  return rect.Size();
}

void CControlBar::Dock(CRect& remaining) {
  if (!IsVisible()) {
    return;
  }
  const bool horizontal = (m_dwStyle & (CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM)) != 0;
  const CSize size = CalcFixedLayout(TRUE, horizontal);
  CRect place = remaining;
  if (m_dwStyle & CBRS_ALIGN_TOP) {
    place.bottom = remaining.top += size.cy;
  } else if (m_dwStyle & CBRS_ALIGN_BOTTOM) {
    place.top = remaining.bottom -= size.cy;
  } else if (m_dwStyle & CBRS_ALIGN_LEFT) {
    place.right = remaining.left += size.cx;
  } else {
    place.left = remaining.right -= size.cx;
  }
  SetWindowPos(nullptr, place.left, place.top, place.Width(), place.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
}

BOOL CControlBar::OnCommand(WPARAM wParam, LPARAM lParam) {
  if (CWnd::OnCommand(wParam, lParam)) {
    return TRUE;
  }
  const CFrameWnd* const frame = GetFrame();
  return frame && frame->SendMessage(WM_COMMAND, wParam, lParam) == 0;
}

BOOL CControlBar::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (CWnd::OnNotify(wParam, lParam, result)) {
    return TRUE;
  }
  const CFrameWnd* const frame = GetFrame();
  if (!frame) {
    return FALSE;
  }
  *result = frame->SendMessage(WM_NOTIFY, wParam, lParam);
  return TRUE;
}

LRESULT CControlBar::OnIdleUpdateCmdUI(WPARAM disableIfNoHandler, LPARAM) {
  CFrameWnd* const frame = GetFrame();
  if (frame && IsVisible()) {
    OnUpdateCmdUI(frame, disableIfNoHandler != 0);
  }
  return 0;
}
