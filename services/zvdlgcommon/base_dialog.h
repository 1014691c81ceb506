// CZVBaseDialog: what every dialog of the library does the same way. It puts the window where the caller wants it, sets
// its texts from the string table of the dialog kernel, shows or hides the Help button, and forwards help requests to
// the caller's callback. Derive from it, override SetDialogStrings and OnInitDialog, and call the base version first in
// both. The callback and its user data are the caller's; the dialog only keeps the pointers.
#pragma once

#include "platform/dialog.h"
#include "services/zvdlgcommon/help_callback.h"

class CZVBaseDialog : public CDialog {
 public:
  // For a later Create. Help number 0.
  CZVBaseDialog();
  // A modal dialog on a template of this module. helpNumber is the dialog's number in calls of the help callback.
  CZVBaseDialog(UINT templateId, CWnd* parent, UINT helpNumber);

  // The text of a string id; empty when the kernel does not know it.
  static CString GetDlgString(UINT id);

  // The screen point for the upper left corner of the next dialog that starts, and of that one alone: later ones, such
  // as the dialogs that it opens, are centred on their parents. Null takes the point back. Gives the former one. The
  // point is read at once, and not kept.
  static POINT* SetPositionPoint(POINT* point);

  void SetHelpCallback(HELPCALLBACK callback) { helpCallback_ = callback; }
  HELPCALLBACK GetHelpCallback() const { return helpCallback_; }
  void SetHelpCallBackUserData(void* userData) { helpUserData_ = userData; }
  void* GetHelpCallBackUserData() const { return helpUserData_; }
  // Before DoModal or Create: takes callback, user data and the question mark over from the dialog that opens this one.
  void InheritHelp(const CZVBaseDialog& opener);
  UINT GetHelpNumber() const { return helpNumber_; }

 protected:
  // The common texts: OK (1), Cancel (2) and Help (9), those of them that the dialog has as push buttons.
  virtual void SetDialogStrings();
  // Sets the text of a control from a string id; false when the dialog has no such control.
  bool SetControlString(int controlId, UINT stringId);

  // Places the window, sets the texts and applies the help rule: with a callback the Help button is shown and the
  // window gets the context-help style; without one the button is hidden and its row closes up (CloseUpButtonRow).
  BOOL OnInitDialog() override;
  void OnOK() override;
  void OnCancel() override;
  // Reports the Help button to the callback.
  virtual void OnHelp();
  // Centres what is left of the Help button's row. The row is found by place: the visible push buttons that stand
  // beside the Help button. Override it for a dialog with another idea.
  virtual void CloseUpButtonRow();
  // The question mark in the title bar; dialogs that inherit this one's help get it as well.
  void AddContextHelpStyle();

  afx_msg BOOL OnHelpInfo(HELPINFO* info);

  DECLARE_MESSAGE_MAP()

 private:
  void PlaceWindow();
  void ApplyHelpRule();

  HELPCALLBACK helpCallback_ = nullptr;
  void* helpUserData_ = nullptr;
  UINT helpNumber_ = 0;
  bool hasQuestionMark_ = false;
};
