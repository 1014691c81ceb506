// CZVFileConversionDlgAskBoxDlg: asks what to do about one destination file that exists. Closing it in any way but by a
// button means Abort.
#pragma once

#include "conversion/run_rules.h"
#include "services/zvdlgcommon/base_dialog.h"

class CZVFileConversionDlgAskBoxDlg : public CZVBaseDialog {
 public:
  CZVFileConversionDlgAskBoxDlg(CWnd* parent, const CString& message);

  // One of OverwriteAnswer; to be read after DoModal.
  int32_t GetAnswer() const { return answer_; }

 protected:
  BOOL OnInitDialog() override;
  void SetDialogStrings() override;

  void OnReplace() { Answer(ANSWER_REPLACE); }
  void OnRename() { Answer(ANSWER_RENAME); }
  void OnSkip() { Answer(ANSWER_SKIP); }
  void OnAbort();

  DECLARE_MESSAGE_MAP()

 private:
  void Answer(int32_t answer);

  CString message_;
  int32_t answer_ = ANSWER_ABORT;
};
