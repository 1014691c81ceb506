// CView: the window in a frame's client area that shows something. Derive, implement OnDraw, and let the frame make it
// from its run-time class. It is allocated by the frame and deletes itself with its window.
#pragma once

#include "platform/gdi.h"
#include "platform/message_map.h"
#include "platform/wnd.h"

class CFrameWnd;
struct CPrintInfo;

class CView : public CWnd {
  DECLARE_DYNAMIC(CView)

 public:
  // Called once, when the frame is complete.
  virtual void OnInitialUpdate() {}
  virtual void OnDraw(CDC* dc) = 0;
  // Before OnDraw; a print run gives its page.
  virtual void OnPrepareDC(CDC* /*dc*/, CPrintInfo* /*info*/ = nullptr) {}
  virtual void OnActivateView(BOOL activate, CView* activated, CView* deactivated);
  CFrameWnd* GetParentFrame() const;

 protected:
  void PostNcDestroy() override { delete this; }
  BOOL PreCreateWindow(CREATESTRUCT& create) override;
  afx_msg void OnPaint();
  LRESULT HandleInitialUpdate(WPARAM, LPARAM);
  DECLARE_MESSAGE_MAP()
};
