#include "preview/preview_wnd.h"

namespace {
constexpr UINT kPaneId = 59648;
}

BEGIN_MESSAGE_MAP(CZVPreviewWnd, CWnd)
  ON_WM_PAINT()
  ON_WM_ERASEBKGND()
  ON_WM_NCHITTEST()
END_MESSAGE_MAP()

bool CZVPreviewWnd::CreatePane(CWnd* parent, const CRect& rectangle) {
  const LPCTSTR windowClass =
      AfxRegisterWndClass(0, ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)), ::GetSysColorBrush(COLOR_BTNFACE));
  return CreateEx(0, windowClass, nullptr, WS_CHILD | WS_VISIBLE, rectangle, parent, kPaneId) != FALSE;
}

void CZVPreviewWnd::OnPaint() {
  CPaintDC device(this);
  CRect client;
  GetClientRect(client);
  const int saved = device.SaveDC();
  dialog->DrawPreview(device, client);
  device.RestoreDC(saved);
  device.Draw3dRect(client, RGB(0, 0, 0), RGB(255, 255, 255));
}

// Viewers paint every pixel.
BOOL CZVPreviewWnd::OnEraseBkgnd(CDC*) { return TRUE; }

// Without this the right half of the splitter, which lies over the pane, would never hear of a click.
LRESULT CZVPreviewWnd::OnNcHitTest(CPoint) { return HTTRANSPARENT; }
