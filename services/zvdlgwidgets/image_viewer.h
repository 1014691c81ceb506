// CZVImageViewer: a pane that shows one picture, centred on a plain background and always fitted to the pane: it never
// scrolls. It owns the picture it is given. The scaled picture is kept, so that repainting costs a copy; it is made
// anew when the pane's size changes. The pane is no tab stop and takes no input.
#pragma once

#include "platform/message_map.h"
#include "platform/unique_handle.h"
#include "platform/wnd.h"
#include "services/zvdlgutil/bitmap.h"

class CZVImageViewer : public CWnd {
 public:
  // How a picture smaller than the pane is shown.
  enum class Fit { kWindow, kShrinkOnly };

  BOOL Create(DWORD style, DWORD extendedStyle, const RECT& rectangle, CWnd* parent, UINT id);
  // Takes the place, the id and the z-order of a control of the parent (a static, as a rule), which is destroyed.
  BOOL CreateInPlaceOf(CWnd* parent, UINT id, DWORD extendedStyle = WS_EX_STATICEDGE);

  // A system colour index; COLOR_BTNFACE at first.
  void SetBackgroundSysColor(int colorIndex);
  void SetFit(Fit fit);

  void SetBitmap(CZVBitmap&& bitmap);
  // A copy of the pixels is made.
  void SetBitmap(const BITMAPHANDLE& bitmap);
  void Clear();
  bool HasBitmap() const { return !bitmap_.IsEmpty(); }
  const CZVBitmap& GetBitmap() const { return bitmap_; }

  // The rectangle that a picture of this size takes in the pane: aspect kept, centred, at least 1 pixel each way.
  static CRect FitRectangle(CSize picture, const CRect& pane, Fit fit);

 protected:
  afx_msg void OnPaint();
  afx_msg BOOL OnEraseBkgnd(CDC* dc);
  afx_msg void OnSize(UINT type, int width, int height);
  afx_msg void OnSysColorChange();

  DECLARE_MESSAGE_MAP()

 private:
  void PaintPane(HDC device, const CRect& pane);
  bool PrepareScaled(HDC device, const CRect& target);
  void DropScaled();

  CZVBitmap bitmap_;
  unique_hbitmap scaled_;
  CSize scaledSize_;
  Fit fit_ = Fit::kWindow;
  int backgroundIndex_ = COLOR_BTNFACE;
};
