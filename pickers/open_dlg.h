// CZVOpenDlg: the platform's open dialog, from which the caller gets a record for each chosen file instead of a mere name.
// It reads the files itself when the user presses OK, and puts back every process-wide setting that it touched.
#pragma once

#include <string>
#include <vector>

#include "include/zvfiledlg_open.h"
#include "pickers/opened_files.h"
#include "platform/file_dialog.h"

class CZVOpenDlg : public CFileDialog {
 public:
  // viewCommand shows the file list as the caller wants it; 0 leaves the shell's choice.
  CZVOpenDlg(CWnd* parent, UINT viewCommand);

  // Runs the dialog. Of openFileName the filter when it is missing, template, flags, nMaxFile and filter index are changed;
  // params gets the files. SUCCESS, SUCCESS_DLG_CANCEL, or the code of what failed.
  int32_t PickFiles(OPENFILENAMEW* openFileName, OPENFILEDLGPARAMS& params);

 protected:
  BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
  BOOL OnFileNameOK() override;
  void OnInitDone() override;
  void OnTypeChange() override;

  afx_msg BOOL OnHelpInfo(HELPINFO* info);
  afx_msg void OnHelp();
  DECLARE_MESSAGE_MAP()

 private:
  void PrepareCallerRecord(OPENFILENAMEW& caller) const;
  void PrepareDialog(const OPENFILENAMEW& caller);
  bool OnShellViewReady();
  void CentreWithoutOwner();
  void ApplyHelpStyle();
  void SetTexts();
  void DeriveDefaultExtension();
  std::vector<std::wstring> ChosenPaths() const;

  OPENFILEDLGPARAMS* params_ = nullptr;
  UINT viewCommand_;
  bool shellViewSeen_ = false;
  std::wstring selection_;  // the buffer behind m_ofn.lpstrFile
  std::wstring defaultExtension_;
  int32_t status_;
  OpenedFiles files_;
};
