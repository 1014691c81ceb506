#include "conversion/update_list_progress_dlg.h"

#include "conversion/run_rules.h"
#include "platform/afx.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/general.h"

namespace {

constexpr UINT kHelpNumber = 104;
constexpr int kLeft = 2;  // the modal result when all is done

const UINT kStartMessage = ::RegisterWindowMessageW(L"ZV_DLG_FILECONVERSIONDLGUPDATELISTPROGRESSDLG_STARTCONVERT");

}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlgUpdateListProgressDlg, CZVBaseDialog)
  ON_REGISTERED_MESSAGE(kStartMessage, OnStart)
END_MESSAGE_MAP()

CZVFileConversionDlgUpdateListProgressDlg::CZVFileConversionDlgUpdateListProgressDlg(CWnd* parent)
    : CZVBaseDialog(IDD_CONV_UPDATE_LIST, parent, kHelpNumber) {}

bool CZVFileConversionDlgUpdateListProgressDlg::Initialize(std::function<void(int row)> refreshRow,
                                                           const int32_t* rowCount) {
  if (!refreshRow || !AfxIsValidAddress(rowCount, sizeof *rowCount, FALSE)) {
    return false;
  }
  refreshRow_ = std::move(refreshRow);
  rowCount_ = rowCount;
  return true;
}

void CZVFileConversionDlgUpdateListProgressDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDP_CONV_UPDATE, bar_);
}

void CZVFileConversionDlgUpdateListProgressDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_UPDATE_TITLE));
  SetControlString(IDT_CONV_UPDATE, IDS_UPDATE_MESSAGE);
}

BOOL CZVFileConversionDlgUpdateListProgressDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  bar_.SetRange32(0, 100);
  PostMessage(kStartMessage);
  return TRUE;
}

LRESULT CZVFileConversionDlgUpdateListProgressDlg::OnStart(WPARAM, LPARAM) {
  const CWaitCursor wait;
  ShowWindow(SW_SHOW);
  RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  for (int row = 0; row < *rowCount_; ++row) {
    refreshRow_(row);
    CZVGeneral::WaitForAppIdle();
    bar_.SetPos(Percent(row, *rowCount_));
  }
  EndDialog(kLeft);
  return 0;
}
