#include "conversion/ask_box_dlg.h"

#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"

BEGIN_MESSAGE_MAP(CZVFileConversionDlgAskBoxDlg, CZVBaseDialog)
  ON_BN_CLICKED(IDB_CONV_ASK_REPLACE, OnReplace)
  ON_BN_CLICKED(IDB_CONV_ASK_RENAME, OnRename)
  ON_BN_CLICKED(IDB_CONV_ASK_SKIP, OnSkip)
  ON_BN_CLICKED(IDB_CONV_ASK_ABORT, OnAbort)
END_MESSAGE_MAP()

CZVFileConversionDlgAskBoxDlg::CZVFileConversionDlgAskBoxDlg(CWnd* parent, const CString& message)
    : CZVBaseDialog(IDD_CONV_ASK, parent, 0), message_(message) {}

void CZVFileConversionDlgAskBoxDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_ASK_TITLE));
  SetControlString(IDB_CONV_ASK_REPLACE, IDS_ASK_REPLACE);
  SetControlString(IDB_CONV_ASK_RENAME, IDS_ASK_RENAME);
  SetControlString(IDB_CONV_ASK_SKIP, IDS_ASK_SKIP);
  SetControlString(IDB_CONV_ASK_ABORT, IDS_ASK_ABORT);
}

// The focus starts on the answer that loses nothing.
BOOL CZVFileConversionDlgAskBoxDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  SetDlgItemText(IDE_CONV_ASK_MESSAGE, message_);
  ::SetFocus(::GetDlgItem(m_hWnd, IDB_CONV_ASK_SKIP));
  return FALSE;
}

void CZVFileConversionDlgAskBoxDlg::Answer(int32_t answer) {
  answer_ = answer;
  OnOK();
}

void CZVFileConversionDlgAskBoxDlg::OnAbort() {
  answer_ = ANSWER_ABORT;
  OnCancel();
}
