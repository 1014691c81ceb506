#include "conversion/add_progress_dlg.h"

#include "conversion/run_rules.h"
#include "platform/afx.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/general.h"

namespace {

constexpr UINT kHelpNumber = 115;
constexpr int kLeft = 2;  // the modal result when all is done

const UINT kStartMessage = ::RegisterWindowMessageW(L"ZV_DLG_FILECONVERSIONDLGADDPROGRESSDLG_STARTCONVERT");

}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlgAddProgressDlg, CZVBaseDialog)
  ON_BN_CLICKED(IDB_CONV_ADD_ABORT, OnAbort)
  ON_REGISTERED_MESSAGE(kStartMessage, OnStart)
END_MESSAGE_MAP()

CZVFileConversionDlgAddProgressDlg::CZVFileConversionDlgAddProgressDlg(CWnd* parent)
    : CZVBaseDialog(IDD_CONV_ADD_PROGRESS, parent, kHelpNumber) {}

bool CZVFileConversionDlgAddProgressDlg::Initialize(std::function<void(const CString& path)> addFile,
                                                    const CStringArray* paths) {
  if (!addFile || !AfxIsValidAddress(paths, sizeof *paths, FALSE)) {
    return false;
  }
  addFile_ = std::move(addFile);
  paths_ = paths;
  return true;
}

void CZVFileConversionDlgAddProgressDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDA_CONV_ADD, animation_);
  DDX_Control(exchange, IDP_CONV_ADD, bar_);
}

void CZVFileConversionDlgAddProgressDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_ADD_TITLE));
  SetControlString(IDB_CONV_ADD_ABORT, IDS_ADD_ABORT);
}

BOOL CZVFileConversionDlgAddProgressDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  bar_.SetRange32(0, 100);
  animation_.Open(IDA_CONV_ADD_CLIP);
  PostMessage(kStartMessage);
  return TRUE;
}

LRESULT CZVFileConversionDlgAddProgressDlg::OnStart(WPARAM, LPARAM) {
  ShowWindow(SW_SHOW);
  RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  AddAll();
  animation_.Stop();
  animation_.Close();
  EndDialog(kLeft);
  return 0;
}

void CZVFileConversionDlgAddProgressDlg::AddAll() {
  const CWaitCursor wait;
  const CString lineFormat = GetDlgString(IDS_ADD_LINE);
  const int count = static_cast<int>(paths_->GetSize());
  for (int i = 0; i < count; ++i) {
    const CString& path = (*paths_)[i];
    addFile_(path);
    if (cancelled_) {
      bar_.SetPos(100);
      return;
    }
    CString line;
    line.Format(lineFormat, path);
    SetDlgItemText(IDT_CONV_ADD_PATH, line);
    CZVGeneral::WaitForAppIdle();
    bar_.SetPos(Percent(i, count));
  }
}
