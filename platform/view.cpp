#include "platform/view.h"

#include "platform/frame_wnd.h"

IMPLEMENT_DYNAMIC(CView, CWnd)

BEGIN_MESSAGE_MAP(CView, CWnd)
  ON_WM_PAINT()
  ON_MESSAGE(WM_INITIALUPDATE, HandleInitialUpdate)
END_MESSAGE_MAP()

BOOL CView::PreCreateWindow(CREATESTRUCT& create) {
  create.style |= WS_CLIPSIBLINGS;
  return CWnd::PreCreateWindow(create);
}

void CView::OnPaint() {
  CPaintDC dc(this);
  OnPrepareDC(&dc);
  OnDraw(&dc);
}

LRESULT CView::HandleInitialUpdate(WPARAM, LPARAM) {
  OnInitialUpdate();
  return 0;
}

void CView::OnActivateView(BOOL activate, CView* activated, CView* /*deactivated*/) {
  const CWnd* const frame = GetTopLevelParent();
  if (activate && activated == this && frame && frame->m_hWnd == ::GetActiveWindow()) {
    SetFocus();
  }
}

CFrameWnd* CView::GetParentFrame() const { return AfxGetParentFrame(m_hWnd); }
