// CStatic: a text, picture or frame.
#pragma once

#include "platform/control.h"

class CStatic : public CControl {
 public:
  BOOL Create(LPCTSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id = 0xFFFF) {
    return CWnd::Create(WC_STATICW, text, style, rect, parent, id);
  }
  // The picture stays the caller's; the former one is returned.
  HBITMAP SetBitmap(HBITMAP bitmap) { return Send<HBITMAP>(STM_SETIMAGE, IMAGE_BITMAP, bitmap); }
  HBITMAP GetBitmap() const { return Send<HBITMAP>(STM_GETIMAGE, IMAGE_BITMAP); }
  HICON SetIcon(HICON icon) { return Send<HICON>(STM_SETICON, icon); }
  HICON GetIcon() const { return Send<HICON>(STM_GETICON); }
};
