// CDC and its kinds: a device context and the platform's calls on it. CDC deletes its context when it goes; CPaintDC,
// CClientDC and CWindowDC give theirs back instead. What is selected into a context is not owned by it: select the
// former object back (or use dc_selection) before the selected one is deleted.
#pragma once

#include "platform/gdi.h"
#include "platform/unique_handle.h"

class CWnd;

class CDC : public CObject {
 public:
  CDC() = default;
  ~CDC() override;

  static CDC* FromHandle(HDC dc);
  BOOL Attach(HDC dc);
  HDC Detach();
  HDC GetSafeHdc() const { return m_hDC; }
  operator HDC() const { return m_hDC; }
  void ReleaseTemporary() { m_hDC = nullptr; }

  BOOL CreateDC(LPCTSTR driver, LPCTSTR device, LPCTSTR output, const DEVMODE* mode) {
    return Attach(::CreateDCW(driver, device, output, mode));
  }
  BOOL CreateCompatibleDC(const CDC* dc);
  BOOL DeleteDC();
  int SaveDC() const { return ::SaveDC(m_hDC); }
  BOOL RestoreDC(int saved) const { return ::RestoreDC(m_hDC, saved); }
  int GetDeviceCaps(int index) const { return ::GetDeviceCaps(m_hDC, index); }

  // Each returns what was selected before, as a temporary.
  CPen* SelectObject(CPen* pen) const;
  CBrush* SelectObject(CBrush* brush) const;
  CFont* SelectObject(CFont* font) const;
  CBitmap* SelectObject(CBitmap* bitmap) const;
  HGDIOBJ SelectObject(HGDIOBJ object) const { return ::SelectObject(m_hDC, object); }
  CPalette* SelectPalette(CPalette* palette, BOOL background) const;
  CGdiObject* SelectStockObject(int index) const;
  UINT RealizePalette() const { return ::RealizePalette(m_hDC); }

  COLORREF SetTextColor(COLORREF color) const { return ::SetTextColor(m_hDC, color); }
  COLORREF SetBkColor(COLORREF color) const { return ::SetBkColor(m_hDC, color); }
  int SetBkMode(int mode) const { return ::SetBkMode(m_hDC, mode); }
  int SetROP2(int mode) const { return ::SetROP2(m_hDC, mode); }
  int SetStretchBltMode(int mode) const { return ::SetStretchBltMode(m_hDC, mode); }
  CPoint SetBrushOrg(int x, int y) const {
    CPoint previous;
    ::SetBrushOrgEx(m_hDC, x, y, &previous);
    return previous;
  }

  int SetMapMode(int mode) const { return ::SetMapMode(m_hDC, mode); }
  CPoint SetViewportOrg(int x, int y) const {
    CPoint previous;
    ::SetViewportOrgEx(m_hDC, x, y, &previous);
    return previous;
  }
  CPoint SetWindowOrg(int x, int y) const {
    CPoint previous;
    ::SetWindowOrgEx(m_hDC, x, y, &previous);
    return previous;
  }
  CSize SetViewportExt(int width, int height) const {
    CSize previous;
    ::SetViewportExtEx(m_hDC, width, height, &previous);
    return previous;
  }
  CSize SetWindowExt(int width, int height) const {
    CSize previous;
    ::SetWindowExtEx(m_hDC, width, height, &previous);
    return previous;
  }
  BOOL DPtoLP(LPPOINT points, int count = 1) const { return ::DPtoLP(m_hDC, points, count); }
  BOOL LPtoDP(LPPOINT points, int count = 1) const { return ::LPtoDP(m_hDC, points, count); }

  int GetClipBox(LPRECT rect) const { return ::GetClipBox(m_hDC, rect); }
  int IntersectClipRect(LPCRECT r) const { return ::IntersectClipRect(m_hDC, r->left, r->top, r->right, r->bottom); }
  int ExcludeClipRect(LPCRECT r) const { return ::ExcludeClipRect(m_hDC, r->left, r->top, r->right, r->bottom); }
  int SelectClipRgn(CRgn* region) const {
    return ::SelectClipRgn(m_hDC, region ? static_cast<HRGN>(*region) : nullptr);
  }
  BOOL RectVisible(LPCRECT rect) const { return ::RectVisible(m_hDC, rect); }

  CPoint MoveTo(int x, int y) const {
    CPoint previous;
    ::MoveToEx(m_hDC, x, y, &previous);
    return previous;
  }
  CPoint MoveTo(POINT point) const { return MoveTo(point.x, point.y); }
  BOOL LineTo(int x, int y) const { return ::LineTo(m_hDC, x, y); }
  BOOL LineTo(POINT point) const { return LineTo(point.x, point.y); }
  BOOL Rectangle(LPCRECT r) const { return ::Rectangle(m_hDC, r->left, r->top, r->right, r->bottom); }
  BOOL Ellipse(LPCRECT r) const { return ::Ellipse(m_hDC, r->left, r->top, r->right, r->bottom); }
  BOOL Polygon(const POINT* points, int count) const { return ::Polygon(m_hDC, points, count); }
  BOOL Polyline(const POINT* points, int count) const { return ::Polyline(m_hDC, points, count); }
  COLORREF SetPixel(int x, int y, COLORREF color) const { return ::SetPixel(m_hDC, x, y, color); }
  COLORREF GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }
  void FillRect(LPCRECT rect, CBrush* brush) const { ::FillRect(m_hDC, rect, *brush); }
  void FrameRect(LPCRECT rect, CBrush* brush) const { ::FrameRect(m_hDC, rect, *brush); }
  void InvertRect(LPCRECT rect) const { ::InvertRect(m_hDC, rect); }
  void FillSolidRect(LPCRECT rect, COLORREF color) const;
  void Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight) const;
  BOOL DrawEdge(LPRECT rect, UINT edge, UINT flags) const { return ::DrawEdge(m_hDC, rect, edge, flags); }
  BOOL DrawFrameControl(LPRECT rect, UINT type, UINT state) const {
    return ::DrawFrameControl(m_hDC, rect, type, state);
  }
  void DrawFocusRect(LPCRECT rect) const { ::DrawFocusRect(m_hDC, rect); }
  BOOL DrawIcon(int x, int y, HICON icon) const { return ::DrawIcon(m_hDC, x, y, icon); }
  BOOL PatBlt(int x, int y, int width, int height, DWORD rop) const {
    return ::PatBlt(m_hDC, x, y, width, height, rop);
  }
  BOOL BitBlt(int x, int y, int width, int height, const CDC* from, int fromX, int fromY, DWORD rop) const {
    return ::BitBlt(m_hDC, x, y, width, height, from->m_hDC, fromX, fromY, rop);
  }
  BOOL StretchBlt(int x, int y, int width, int height, const CDC* from, int fromX, int fromY, int fromWidth,
                  int fromHeight, DWORD rop) const {
    return ::StretchBlt(m_hDC, x, y, width, height, from->m_hDC, fromX, fromY, fromWidth, fromHeight, rop);
  }

  BOOL TextOut(int x, int y, LPCTSTR text, int length) const { return ::TextOutW(m_hDC, x, y, text, length); }
  BOOL TextOut(int x, int y, const CString& text) const { return TextOut(x, y, text, text.GetLength()); }
  int DrawText(LPCTSTR text, int length, LPRECT rect, UINT format) const {
    return ::DrawTextW(m_hDC, text, length, rect, format);
  }
  int DrawText(const CString& text, LPRECT rect, UINT format) const {
    return DrawText(text, text.GetLength(), rect, format);
  }
  CSize GetTextExtent(LPCTSTR text, int length) const;
  CSize GetTextExtent(const CString& text) const { return GetTextExtent(text, text.GetLength()); }
  BOOL GetTextMetrics(TEXTMETRIC* metrics) const { return ::GetTextMetricsW(m_hDC, metrics); }
  UINT SetTextAlign(UINT flags) const { return ::SetTextAlign(m_hDC, flags); }

  int StartDoc(DOCINFO* document) const { return ::StartDocW(m_hDC, document); }
  int StartPage() const { return ::StartPage(m_hDC); }
  int EndPage() const { return ::EndPage(m_hDC); }
  int EndDoc() const { return ::EndDoc(m_hDC); }
  int AbortDoc() const { return ::AbortDoc(m_hDC); }
  int SetAbortProc(ABORTPROC procedure) const { return ::SetAbortProc(m_hDC, procedure); }

  HDC m_hDC = nullptr;
};

// Inside a WM_PAINT handler only.
class CPaintDC : public CDC {
 public:
  explicit CPaintDC(CWnd* window);
  ~CPaintDC() override;

  PAINTSTRUCT m_ps = {};

 private:
  HWND window_;
};

// The client area of a window; null is the screen.
class CClientDC : public CDC {
 public:
  explicit CClientDC(CWnd* window);
  ~CClientDC() override;

 private:
  HWND window_;
};

class CWindowDC : public CDC {
 public:
  explicit CWindowDC(CWnd* window);
  ~CWindowDC() override;

 private:
  HWND window_;
};

// Paints off screen, in the target's coordinates; the picture goes to the target when this object goes.
class CMemDC : public CDC {
 public:
  CMemDC(CDC& target, const CRect& rect);
  ~CMemDC() override;

 private:
  CDC& target_;
  CRect rect_;
  unique_hbitmap bitmap_;
  HGDIOBJ previous_ = nullptr;
};
