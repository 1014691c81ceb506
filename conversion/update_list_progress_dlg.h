// CZVFileConversionDlgUpdateListProgressDlg: shows how the rows of the file list are read anew after a run. The work is done
// inside this dialog's modal loop, one step a row; it is short, and the user cannot close the dialog.
#pragma once

#include <functional>

#include "platform/controls.h"
#include "services/zvdlgcommon/base_dialog.h"

class CZVFileConversionDlgUpdateListProgressDlg : public CZVBaseDialog {
 public:
  explicit CZVFileConversionDlgUpdateListProgressDlg(CWnd* parent);

  // False when the count cannot be read: the dialog is not to be shown then.
  bool Initialize(std::function<void(int row)> refreshRow, const int32_t* rowCount);

 protected:
  BOOL OnInitDialog() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnOK() override {}
  void OnCancel() override {}

  DECLARE_MESSAGE_MAP()

 private:
  LRESULT OnStart(WPARAM, LPARAM);

  const int32_t* rowCount_ = nullptr;
  std::function<void(int row)> refreshRow_;
  CProgressCtrl bar_;
};
