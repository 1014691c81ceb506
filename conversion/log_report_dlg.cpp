#include "conversion/log_report_dlg.h"

#include <algorithm>

#include "platform/afx.h"
#include "resources/conversion_tools_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {

constexpr UINT kHelpNumber = 107;
constexpr int kPictureSize = 12;  // pixels at 96 dpi
constexpr COLORREF kTransparent = RGB(255, 0, 255);
enum Picture { kSucceededPicture = 0, kFailedPicture = 1 };
enum Column { kStatusColumn = 0, kSourceColumn = 1, kDestinationColumn = 2 };

CString NameOf(const CString& path) { return path.Mid(path.ReverseFind(L'\\') + 1); }

bool HasRow(const LOGREPORTITEM& line) { return !line.source.IsEmpty() && !line.destination.IsEmpty(); }

}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlgLogReportDlg, CZVBaseDialog)
  ON_BN_CLICKED(IDX_LOG_FULL_PATH, OnFullPath)
END_MESSAGE_MAP()

CZVFileConversionDlgLogReportDlg::CZVFileConversionDlgLogReportDlg(CWnd* parent)
    : CZVBaseDialog(IDD_LOG, parent, kHelpNumber) {}

int32_t CZVFileConversionDlgLogReportDlg::SetData(LOGREPORTDLGDATA* data) {
  if (!AfxIsValidAddress(data, sizeof(*data), TRUE)) return ERROR_BAD_ARGUMENT;
  data_ = data;
  return SUCCESS;
}

BOOL CZVFileConversionDlgLogReportDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  if (!data_ || data_->log.GetSize() == 0) {
    EndDialog(ERROR_BAD_ARGUMENT);
    return TRUE;
  }
  CheckDlgButton(IDX_LOG_FULL_PATH, data_->showFullPath ? BST_CHECKED : BST_UNCHECKED);
  list_.SetExtendedStyle(list_.GetExtendedStyle() | LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
  list_.SetBkColor(CLR_NONE);
  list_.SetTextBkColor(CLR_NONE);
  MakeColumns();
  MakePictures();
  MakeRows();
  return TRUE;
}

void CZVFileConversionDlgLogReportDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_LOG_TITLE));
  SetControlString(IDX_LOG_FULL_PATH, IDS_LOG_FULL_PATH);
}

void CZVFileConversionDlgLogReportDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDL_LOG, list_);
}

void CZVFileConversionDlgLogReportDlg::MakeColumns() {
  CRect client;
  list_.GetClientRect(&client);
  const int unit = (client.Width() - 1) / 5;
  list_.InsertColumn(kStatusColumn, GetDlgString(IDS_LOG_COLUMN_STATUS), LVCFMT_LEFT, unit);
  list_.InsertColumn(kSourceColumn, GetDlgString(IDS_LOG_COLUMN_SOURCE), LVCFMT_LEFT, 2 * unit);
  list_.InsertColumn(kDestinationColumn, GetDlgString(IDS_LOG_COLUMN_DESTINATION), LVCFMT_LEFT, 2 * unit);
}

// The list shares the pictures: they are freed with this object, after the window is gone.
void CZVFileConversionDlgLogReportDlg::MakePictures() {
  pictures_.Create(kPictureSize, kPictureSize, ILC_COLOR24 | ILC_MASK, 2, 1);
  for (const UINT id : {IDB_LOG_ART_SUCCEEDED, IDB_LOG_ART_FAILED}) {
    CBitmap picture;
    if (picture.LoadBitmap(id)) pictures_.Add(&picture, kTransparent);
  }
  list_.SetImageList(&pictures_, LVSIL_SMALL);
  list_.SetImageList(&pictures_, LVSIL_NORMAL);
}

// The list sorts by its first column, so where a row ends up is the list's to say.
void CZVFileConversionDlgLogReportDlg::MakeRows() {
  for (int index = 0; index < data_->log.GetSize(); ++index) {
    const LOGREPORTITEM& line = data_->log[index];
    if (!HasRow(line)) continue;
    const bool succeeded = line.status == CONVERSION_OK;
    const CString text = GetDlgString(succeeded ? IDS_LOG_SUCCEEDED : IDS_LOG_FAILED);
    const int row = list_.InsertItem(succeeded ? 0 : 1, text, succeeded ? kSucceededPicture : kFailedPicture);
    ShowPaths(row, line);
  }
}

void CZVFileConversionDlgLogReportDlg::ShowPaths(int row, const LOGREPORTITEM& line) {
  const bool full = IsDlgButtonChecked(IDX_LOG_FULL_PATH) == BST_CHECKED;
  list_.SetItemText(row, kSourceColumn, full ? line.source : NameOf(line.source));
  list_.SetItemText(row, kDestinationColumn, full ? line.destination : NameOf(line.destination));
}

// Rows are rewritten from the lines of the same index. They are not matched up again: in a log of successes and failures,
// which the list has sorted, a row's status may afterwards stand beside another line's paths.
void CZVFileConversionDlgLogReportDlg::OnFullPath() {
  const int rows = static_cast<int>(std::min<INT_PTR>(list_.GetItemCount(), data_->log.GetSize()));
  for (int row = 0; row < rows; ++row) ShowPaths(row, data_->log[row]);
}

void CZVFileConversionDlgLogReportDlg::StoreFullPath() {
  if (data_) data_->showFullPath = IsDlgButtonChecked(IDX_LOG_FULL_PATH) == BST_CHECKED;
}

void CZVFileConversionDlgLogReportDlg::OnOK() {
  StoreFullPath();
  CZVBaseDialog::OnOK();
}

void CZVFileConversionDlgLogReportDlg::OnCancel() {
  StoreFullPath();
  CZVBaseDialog::OnCancel();
}
