#include "services/zvdlgwidgets/image_viewer.h"

#include <algorithm>

#include "platform/dc.h"

BEGIN_MESSAGE_MAP(CZVImageViewer, CWnd)
  ON_WM_PAINT()
  ON_WM_ERASEBKGND()
  ON_WM_SIZE()
  ON_WM_SYSCOLORCHANGE()
END_MESSAGE_MAP()

BOOL CZVImageViewer::Create(DWORD style, DWORD extendedStyle, const RECT& rectangle, CWnd* parent, UINT id) {
  return CreateEx(extendedStyle, AfxRegisterWndClass(0, ::LoadCursorW(nullptr, IDC_ARROW)), nullptr, style | WS_CHILD,
                  rectangle, parent, id);
}

BOOL CZVImageViewer::CreateInPlaceOf(CWnd* parent, UINT id, DWORD extendedStyle) {
  HWND replaced = nullptr;
  parent->GetDlgItem(static_cast<int>(id), &replaced);
  if (!replaced) {
    return FALSE;
  }
  CRect rectangle;
  ::GetWindowRect(replaced, &rectangle);
  parent->ScreenToClient(&rectangle);
  const DWORD shown = static_cast<DWORD>(::GetWindowLongW(replaced, GWL_STYLE)) & (WS_VISIBLE | WS_GROUP);
  const HWND before = ::GetWindow(replaced, GW_HWNDPREV);
  ::DestroyWindow(replaced);
  if (!Create(shown, extendedStyle, rectangle, parent, id)) {
    return FALSE;
  }
  ::SetWindowPos(m_hWnd, before ? before : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  return TRUE;
}

void CZVImageViewer::SetBackgroundSysColor(int colorIndex) {
  backgroundIndex_ = colorIndex;
  Invalidate(FALSE);
}

void CZVImageViewer::SetFit(Fit fit) {
  fit_ = fit;
  DropScaled();
}

void CZVImageViewer::SetBitmap(CZVBitmap&& bitmap) {
  bitmap_ = std::move(bitmap);
  DropScaled();
}

void CZVImageViewer::SetBitmap(const BITMAPHANDLE& bitmap) {
  bitmap_ = bitmap;
  DropScaled();
}

void CZVImageViewer::Clear() {
  bitmap_.Empty();
  DropScaled();
}

void CZVImageViewer::DropScaled() {
  scaled_.reset();
  scaledSize_ = CSize();
  Invalidate(FALSE);
}

CRect CZVImageViewer::FitRectangle(CSize picture, const CRect& pane, Fit fit) {
  const bool isSmaller = picture.cx <= pane.Width() && picture.cy <= pane.Height();
  CSize shown = picture;
  if (picture.cx > 0 && picture.cy > 0 && !(isSmaller && fit == Fit::kShrinkOnly)) {
    // Compared crosswise in 64 bits: which side meets the pane's edge first.
    const int64_t byWidth = int64_t{pane.Width()} * picture.cy;
    const int64_t byHeight = int64_t{pane.Height()} * picture.cx;
    shown = byWidth <= byHeight ? CSize(pane.Width(), static_cast<int>(byWidth / picture.cx))
                                : CSize(static_cast<int>(byHeight / picture.cy), pane.Height());
  }
  shown.cx = std::max<LONG>(shown.cx, 1);
  shown.cy = std::max<LONG>(shown.cy, 1);
  const CPoint corner(pane.left + (pane.Width() - shown.cx) / 2, pane.top + (pane.Height() - shown.cy) / 2);
  return CRect(corner, shown);
}

void CZVImageViewer::OnPaint() {
  CPaintDC paint(this);
  CRect pane;
  GetClientRect(&pane);
  const dc_palette_selection palette(paint, bitmap_.GetPalette(), true);
  PaintPane(paint, pane);
}

void CZVImageViewer::PaintPane(HDC device, const CRect& pane) {
  const int saved = ::SaveDC(device);
  if (HasBitmap() && pane.Width() > 0 && pane.Height() > 0) {
    const CRect target = FitRectangle(bitmap_.GetSize(), pane, fit_);
    if (PrepareScaled(device, target)) {
      const unique_hdc memory(::CreateCompatibleDC(device));
      const dc_selection selected(memory.get(), scaled_.get());
      ::BitBlt(device, target.left, target.top, target.Width(), target.Height(), memory.get(), 0, 0, SRCCOPY);
    } else {
      bitmap_.Paint(device, nullptr, nullptr, &target);
    }
    ::ExcludeClipRect(device, target.left, target.top, target.right, target.bottom);
  }
  ::FillRect(device, &pane, ::GetSysColorBrush(backgroundIndex_));
  ::RestoreDC(device, saved);
}

// Scales once for many paints. Transparent parts of the picture let the background through.
bool CZVImageViewer::PrepareScaled(HDC device, const CRect& target) {
  if (scaled_ && scaledSize_ == target.Size()) {
    return true;
  }
  scaledSize_ = target.Size();
  scaled_.reset(::CreateCompatibleBitmap(device, scaledSize_.cx, scaledSize_.cy));
  if (!scaled_) {
    return false;
  }
  const unique_hdc memory(::CreateCompatibleDC(device));
  const dc_selection selected(memory.get(), scaled_.get());
  const CRect all(CPoint(0, 0), scaledSize_);
  ::FillRect(memory.get(), &all, ::GetSysColorBrush(backgroundIndex_));
  return bitmap_.Paint(memory.get(), nullptr, nullptr, &all) == SUCCESS;
}

// The paint handler covers every pixel.
BOOL CZVImageViewer::OnEraseBkgnd(CDC*) { return TRUE; }

void CZVImageViewer::OnSize(UINT type, int width, int height) {
  CWnd::OnSize(type, width, height);
  Invalidate(FALSE);
}

void CZVImageViewer::OnSysColorChange() {
  CWnd::OnSysColorChange();
  DropScaled();
}
