// CPropertyPage, used as a plain child dialog: the frame dialog creates its pages over a placeholder and shows one at a
// time, calling SetActivePage. A template with WS_CHILD, without WS_VISIBLE. No property sheet stands behind it.
#pragma once

#include "platform/dialog.h"

class CPropertyPage : public CDialog {
  DECLARE_DYNAMIC(CPropertyPage)

 public:
  CPropertyPage() = default;
  explicit CPropertyPage(UINT templateId, UINT captionId = 0) : CDialog(templateId), captionId_(captionId) {}

  // Made from the template of the constructor, hidden.
  BOOL CreatePage(CWnd* parent);
  // The caption's string resource; empty without one.
  CString GetCaption() const;

  // Shows or hides the page. False when it refuses to be left.
  BOOL SetActivePage(BOOL active);
  void SetModified(BOOL modified = TRUE) { modified_ = modified != FALSE; }
  BOOL IsModified() const { return modified_; }

  virtual BOOL OnSetActive() { return TRUE; }
  // Called before the page is left: moves its values into the members. False keeps it.
  virtual BOOL OnKillActive() { return UpdateData(TRUE); }
  virtual BOOL OnApply() { return TRUE; }

  // Enter and Esc belong to the frame around the page.
  void OnOK() override;
  void OnCancel() override;

 protected:
  DECLARE_MESSAGE_MAP()

 private:
  UINT captionId_ = 0;
  bool modified_ = false;
};
