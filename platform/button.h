// CButton: push button, check box, radio button, group box. An owner-drawn one (BS_OWNERDRAW) draws in DrawItem.
#pragma once

#include "platform/control.h"

class CButton : public CControl {
 public:
  BOOL Create(LPCTSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_BUTTONW, caption, style, rect, parent, id);
  }
  // BST_UNCHECKED, BST_CHECKED or BST_INDETERMINATE.
  int GetCheck() const { return Send<int>(BM_GETCHECK); }
  void SetCheck(int check) { Send(BM_SETCHECK, check); }
  UINT GetState() const { return Send<UINT>(BM_GETSTATE); }
  void SetState(BOOL pressed) { Send(BM_SETSTATE, pressed); }
  UINT GetButtonStyle() const { return GetStyle() & 0xFF; }
  void SetButtonStyle(UINT style, BOOL redraw = TRUE) { Send(BM_SETSTYLE, style, redraw); }
  // The picture stays the caller's; the former one is returned.
  HBITMAP SetBitmap(HBITMAP bitmap) { return Send<HBITMAP>(BM_SETIMAGE, IMAGE_BITMAP, bitmap); }
  HICON SetIcon(HICON icon) { return Send<HICON>(BM_SETIMAGE, IMAGE_ICON, icon); }
  void Click() { Send(BM_CLICK); }

  virtual void DrawItem(LPDRAWITEMSTRUCT /*item*/) {}

 protected:
  BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
};
