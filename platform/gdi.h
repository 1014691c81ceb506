// GDI objects: pens, brushes, fonts, bitmaps, palettes, regions. A wrapper owns its object and deletes it, except a
// temporary from FromHandle. Device contexts are in dc.h, which this header includes.
#pragma once

#include "platform/cstring.h"
#include "platform/geometry.h"
#include "platform/object.h"
#include "platform/win32.h"

class CDC;

class CGdiObject : public CObject {
 public:
  CGdiObject() = default;
  ~CGdiObject() override { DeleteObject(); }

  HGDIOBJ GetSafeHandle() const { return m_hObject; }
  // Deletes what was owned and takes over `object`.
  BOOL Attach(HGDIOBJ object);
  HGDIOBJ Detach();
  BOOL DeleteObject();
  int GetObject(int size, LPVOID record) const { return ::GetObjectW(m_hObject, size, record); }
  BOOL CreateStockObject(int index) { return Attach(::GetStockObject(index)); }
  void ReleaseTemporary() { m_hObject = nullptr; }

  HGDIOBJ m_hObject = nullptr;
};

class CPen : public CGdiObject {
 public:
  CPen() = default;
  CPen(int style, int width, COLORREF color) { CreatePen(style, width, color); }
  BOOL CreatePen(int style, int width, COLORREF color) { return Attach(::CreatePen(style, width, color)); }
  operator HPEN() const { return static_cast<HPEN>(m_hObject); }
  static CPen* FromHandle(HPEN pen);
};

class CBrush : public CGdiObject {
 public:
  CBrush() = default;
  explicit CBrush(COLORREF color) { CreateSolidBrush(color); }
  BOOL CreateSolidBrush(COLORREF color) { return Attach(::CreateSolidBrush(color)); }
  BOOL CreateHatchBrush(int index, COLORREF color) { return Attach(::CreateHatchBrush(index, color)); }
  BOOL CreateSysColorBrush(int index) { return Attach(::GetSysColorBrush(index)); }
  operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
  static CBrush* FromHandle(HBRUSH brush);
};

class CFont : public CGdiObject {
 public:
  BOOL CreateFontIndirect(const LOGFONT* font) { return Attach(::CreateFontIndirectW(font)); }
  // `pointSize` in tenths of a point, for the screen or for `dc`.
  BOOL CreatePointFont(int pointSize, LPCTSTR face, CDC* dc = nullptr);
  int GetLogFont(LOGFONT* font) const { return GetObject(sizeof(*font), font); }
  operator HFONT() const { return static_cast<HFONT>(m_hObject); }
  static CFont* FromHandle(HFONT font);
};

class CBitmap : public CGdiObject {
 public:
  BOOL LoadBitmap(UINT id);
  BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
  BOOL CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits) {
    return Attach(::CreateBitmap(width, height, planes, bitsPerPixel, bits));
  }
  int GetBitmap(BITMAP* bitmap) const { return GetObject(sizeof(*bitmap), bitmap); }
  operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
  static CBitmap* FromHandle(HBITMAP bitmap);
};

class CPalette : public CGdiObject {
 public:
  BOOL CreatePalette(LOGPALETTE* palette) { return Attach(::CreatePalette(palette)); }
  int GetEntryCount() const;
  UINT GetPaletteEntries(UINT first, UINT count, PALETTEENTRY* entries) const {
    return ::GetPaletteEntries(*this, first, count, entries);
  }
  operator HPALETTE() const { return static_cast<HPALETTE>(m_hObject); }
  static CPalette* FromHandle(HPALETTE palette);
};

class CRgn : public CGdiObject {
 public:
  BOOL CreateRectRgn(int left, int top, int right, int bottom) {
    return Attach(::CreateRectRgn(left, top, right, bottom));
  }
  BOOL CreateRectRgnIndirect(LPCRECT rect) { return Attach(::CreateRectRgnIndirect(rect)); }
  int CombineRgn(const CRgn* first, const CRgn* second, int mode) { return ::CombineRgn(*this, *first, *second, mode); }
  operator HRGN() const { return static_cast<HRGN>(m_hObject); }
  static CRgn* FromHandle(HRGN region);
};

#include "platform/dc.h"
