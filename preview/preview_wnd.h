// CZVPreviewWnd: the pane to the right of the open dialog's file list. It paints what the dialog's viewers give, in a sunken
// frame. The mouse is the dialog's, which drags the splitter along the pane's left edge.
#pragma once

#include "platform/message_map.h"
#include "platform/wnd.h"
#include "preview/file_viewer.h"

class CZVPreviewWnd : public CWnd {
 public:
  bool CreatePane(CWnd* parent, const CRect& rectangle);

  PreviewHost* dialog = nullptr;

 protected:
  afx_msg void OnPaint();
  afx_msg BOOL OnEraseBkgnd(CDC* device);
  afx_msg LRESULT OnNcHitTest(CPoint point);
  DECLARE_MESSAGE_MAP()
};
