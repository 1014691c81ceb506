#include "platform/gdi.h"

#include "platform/module_context.h"
#include "platform/thread_state.h"
#include "platform/wnd.h"

namespace {

template <class Wrapper, class Handle>
Wrapper* TemporaryObject(Handle handle) {
  if (!handle) {
    return nullptr;
  }
  return ThreadState::Get().Temporary<Wrapper>(handle,
                                               [](Wrapper& wrapper, Handle bound) { wrapper.m_hObject = bound; });
}

}  // namespace

BOOL CGdiObject::Attach(HGDIOBJ object) {
  if (object != m_hObject) {
    DeleteObject();
    m_hObject = object;
  }
  return object != nullptr;
}

HGDIOBJ CGdiObject::Detach() { return std::exchange(m_hObject, nullptr); }

BOOL CGdiObject::DeleteObject() { return m_hObject && ::DeleteObject(Detach()); }

CPen* CPen::FromHandle(HPEN pen) { return TemporaryObject<CPen>(pen); }

CBrush* CBrush::FromHandle(HBRUSH brush) { return TemporaryObject<CBrush>(brush); }

CFont* CFont::FromHandle(HFONT font) { return TemporaryObject<CFont>(font); }

CBitmap* CBitmap::FromHandle(HBITMAP bitmap) { return TemporaryObject<CBitmap>(bitmap); }

CPalette* CPalette::FromHandle(HPALETTE palette) { return TemporaryObject<CPalette>(palette); }

CRgn* CRgn::FromHandle(HRGN region) { return TemporaryObject<CRgn>(region); }

BOOL CFont::CreatePointFont(int pointSize, LPCTSTR face, CDC* dc) {
  const CClientDC screen(nullptr);
  const int pixelsPerInch = (dc ? dc : &screen)->GetDeviceCaps(LOGPIXELSY);
  LOGFONT font = {};
  font.lfHeight = -::MulDiv(pointSize, pixelsPerInch, 720);
  font.lfCharSet = DEFAULT_CHARSET;
  ::lstrcpynW(font.lfFaceName, face, LF_FACESIZE);
  return CreateFontIndirect(&font);
}

BOOL CBitmap::LoadBitmap(UINT id) { return Attach(::LoadBitmapW(AfxGetResourceHandle(), MAKEINTRESOURCEW(id))); }

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height) {
  return Attach(::CreateCompatibleBitmap(dc->GetSafeHdc(), width, height));
}

int CPalette::GetEntryCount() const {
  WORD count = 0;
  GetObject(sizeof(count), &count);
  return count;
}

CDC::~CDC() { DeleteDC(); }

CDC* CDC::FromHandle(HDC dc) {
  if (!dc) {
    return nullptr;
  }
  return ThreadState::Get().Temporary<CDC>(dc, [](CDC& wrapper, HDC bound) { wrapper.m_hDC = bound; });
}

BOOL CDC::Attach(HDC dc) {
  m_hDC = dc;
  return dc != nullptr;
}

HDC CDC::Detach() { return std::exchange(m_hDC, nullptr); }

BOOL CDC::DeleteDC() { return m_hDC && ::DeleteDC(Detach()); }

BOOL CDC::CreateCompatibleDC(const CDC* dc) { return Attach(::CreateCompatibleDC(dc ? dc->m_hDC : nullptr)); }

CPen* CDC::SelectObject(CPen* pen) const { return CPen::FromHandle(static_cast<HPEN>(::SelectObject(m_hDC, *pen))); }

CBrush* CDC::SelectObject(CBrush* brush) const {
  return CBrush::FromHandle(static_cast<HBRUSH>(::SelectObject(m_hDC, *brush)));
}

CFont* CDC::SelectObject(CFont* font) const {
  return CFont::FromHandle(static_cast<HFONT>(::SelectObject(m_hDC, *font)));
}

CBitmap* CDC::SelectObject(CBitmap* bitmap) const {
  return CBitmap::FromHandle(static_cast<HBITMAP>(::SelectObject(m_hDC, *bitmap)));
}

CPalette* CDC::SelectPalette(CPalette* palette, BOOL background) const {
  return CPalette::FromHandle(::SelectPalette(m_hDC, *palette, background));
}

CGdiObject* CDC::SelectStockObject(int index) const {
  return TemporaryObject<CGdiObject>(::SelectObject(m_hDC, ::GetStockObject(index)));
}

CSize CDC::GetTextExtent(LPCTSTR text, int length) const {
  CSize size;
  ::GetTextExtentPoint32W(m_hDC, text, length, &size);
  return size;
}

void CDC::FillSolidRect(LPCRECT rect, COLORREF color) const {
  const COLORREF previous = ::SetBkColor(m_hDC, color);
  ::ExtTextOutW(m_hDC, 0, 0, ETO_OPAQUE, rect, nullptr, 0, nullptr);
  ::SetBkColor(m_hDC, previous);
}

void CDC::Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight) const {
  const CRect r(*rect);
  FillSolidRect(CRect(r.left, r.top, r.right - 1, r.top + 1), topLeft);
  FillSolidRect(CRect(r.left, r.top, r.left + 1, r.bottom - 1), topLeft);
  FillSolidRect(CRect(r.right - 1, r.top, r.right, r.bottom), bottomRight);
  FillSolidRect(CRect(r.left, r.bottom - 1, r.right, r.bottom), bottomRight);
}

CPaintDC::CPaintDC(CWnd* window) : window_(window->m_hWnd) { Attach(::BeginPaint(window_, &m_ps)); }

CPaintDC::~CPaintDC() {
  ::EndPaint(window_, &m_ps);
  Detach();
}

CClientDC::CClientDC(CWnd* window) : window_(window ? window->m_hWnd : nullptr) { Attach(::GetDC(window_)); }

CClientDC::~CClientDC() { ::ReleaseDC(window_, Detach()); }

CWindowDC::CWindowDC(CWnd* window) : window_(window ? window->m_hWnd : nullptr) { Attach(::GetWindowDC(window_)); }

CWindowDC::~CWindowDC() { ::ReleaseDC(window_, Detach()); }

CMemDC::CMemDC(CDC& target, const CRect& rect)
    : target_(target), rect_(rect), bitmap_(::CreateCompatibleBitmap(target.m_hDC, rect.Width(), rect.Height())) {
  CreateCompatibleDC(&target);
  previous_ = ::SelectObject(m_hDC, bitmap_.get());
  ::SetViewportOrgEx(m_hDC, -rect.left, -rect.top, nullptr);
}

CMemDC::~CMemDC() {
  ::BitBlt(target_.m_hDC, rect_.left, rect_.top, rect_.Width(), rect_.Height(), m_hDC, rect_.left, rect_.top, SRCCOPY);
  ::SelectObject(m_hDC, previous_);
}
