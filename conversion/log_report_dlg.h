// CZVFileConversionDlgLogReportDlg: what the last run did, a row a line of its log. It shows only. The record is the
// caller's and must outlive the dialog; the state of the check box is written to it at the end.
#pragma once

#include "conversion/records.h"
#include "platform/controls.h"
#include "services/zvdlgcommon/base_dialog.h"

class CZVFileConversionDlgLogReportDlg : public CZVBaseDialog {
 public:
  explicit CZVFileConversionDlgLogReportDlg(CWnd* parent);

  // 1, or ERROR_BAD_ARGUMENT when the record cannot be written to.
  int32_t SetData(LOGREPORTDLGDATA* data);

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override;
  void OnCancel() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnFullPath();

  DECLARE_MESSAGE_MAP()

 private:
  void MakeColumns();
  void MakePictures();
  void MakeRows();
  void StoreFullPath();
  void ShowPaths(int row, const LOGREPORTITEM& line);

  LOGREPORTDLGDATA* data_ = nullptr;
  CListCtrl list_;
  CImageList pictures_;
};
