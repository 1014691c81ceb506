// CZVEditCtrl: an edit box that can be limited to numbers. Keys and pasted text that could not become a number are
// refused with a beep; the range of a value is the dialog's business. Unlimited at first. Sends ZVEN_VALUECOMMITTED
// when the focus leaves the box or Enter is pressed after a change, besides the edit's own notifications; Enter goes on
// to the dialog.
#pragma once

#include "platform/controls.h"
#include "platform/message_map.h"
#include "services/zvdlgwidgets/notifications.h"
#include "services/zvdlgwidgets/number_text.h"

class CZVEditCtrl : public CEdit {
 public:
  // Digits only; with the two below also a sign in front and one decimal point.
  void SetNumericsOnly(bool on) { rules_.numericsOnly = on; }
  void SetAcceptNegative(bool on) { rules_.acceptNegative = on; }
  void SetAcceptFloat(bool on) { rules_.acceptFloat = on; }
  // Most digits behind the point, which are also those that SetValue(double) shows; -1 sets no limit and shows up to 6.
  void SetFractionalDigitCount(int digits) { rules_.fractionalDigits = digits; }

  // The text as a number; 0 for a text that is none. The decimal point is "." in every locale; "," is read as it.
  double GetValue() const;
  void SetValue(int value);
  // Shortest form: no zeros at the end, no point without digits.
  void SetValue(double value);

 protected:
  BOOL PreTranslateMessage(MSG* message) override;
  afx_msg void OnChar(UINT character, UINT repeat, UINT flags);
  afx_msg LRESULT OnPaste(WPARAM, LPARAM);
  afx_msg void OnSetFocus(CWnd* previous);
  afx_msg void OnKillFocus(CWnd* next);

  DECLARE_MESSAGE_MAP()

 private:
  CString Text() const;
  bool AcceptsInsertion(const CString& inserted) const;
  void CommitValue();

  NumberTextRules rules_;
  CString committedText_;
};
