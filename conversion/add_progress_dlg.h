// CZVFileConversionDlgAddProgressDlg: shows how the files of a folder come into the list, and lets the user stop that. The
// work is done inside this dialog's modal loop, one step a file; the step and the paths are the caller's.
#pragma once

#include <functional>

#include "platform/array.h"
#include "platform/controls.h"
#include "services/zvdlgcommon/base_dialog.h"

class CZVFileConversionDlgAddProgressDlg : public CZVBaseDialog {
 public:
  explicit CZVFileConversionDlgAddProgressDlg(CWnd* parent);

  // False when the paths cannot be read: the dialog is not to be shown then.
  bool Initialize(std::function<void(const CString& path)> addFile, const CStringArray* paths);

 protected:
  BOOL OnInitDialog() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnCancel() override { cancelled_ = true; }

  DECLARE_MESSAGE_MAP()

 private:
  LRESULT OnStart(WPARAM, LPARAM);
  void AddAll();
  void OnAbort() { cancelled_ = true; }

  bool cancelled_ = false;
  const CStringArray* paths_ = nullptr;
  std::function<void(const CString& path)> addFile_;
  CAnimateCtrl animation_;
  CProgressCtrl bar_;
};
