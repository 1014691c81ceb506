// CDialogBar: a control bar whose controls come from a dialog template (WS_CHILD). Its width is the template's until
// m_sizeDefault is changed; call the frame's RecalcLayout after that.
#pragma once

#include "platform/control_bar.h"

class CDialogBar : public CControlBar {
  DECLARE_DYNAMIC(CDialogBar)

 public:
  BOOL Create(CWnd* parent, UINT templateId, UINT style, UINT id);
  BOOL Create(CWnd* parent, LPCDLGTEMPLATE dialogTemplate, UINT style, UINT id);
  CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;
  BOOL PreTranslateMessage(MSG* message) override;

  CSize m_sizeDefault;

 protected:
  DECLARE_MESSAGE_MAP()

 private:
  static INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};
