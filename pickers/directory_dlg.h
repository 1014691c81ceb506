// CZVDirectoryDlg: the platform's file dialog bent into a folder picker. The file name box is hidden, a read-only edit of
// ours shows the folder that the list shows, and OK takes that folder. With a filter the files of the folder are listed, so
// that the user sees what it holds. A folder without a path in the file system cannot be chosen.
#pragma once

#include <cstdint>

#include "include/zvfiledlg_directory.h"
#include "platform/file_dialog.h"

class CZVDirectoryDlg : public CFileDialog {
 public:
  explicit CZVDirectoryDlg(CWnd* parent);

  // Runs the dialog on the record and writes folder and filter index back. SUCCESS, SUCCESS_DLG_CANCEL,
  // ERROR_BAD_ARGUMENT, ERROR_BUFFER_TOO_SMALL or ERROR_DIALOG_FAILED.
  int32_t PickDirectory(DIRECTORYDLGPARAMS& params);

 protected:
  void DoDataExchange(CDataExchange* exchange) override;
  BOOL OnInitDialog() override;
  BOOL OnFileNameOK() override;
  void OnInitDone() override;
  void OnFileNameChange() override;
  void OnFolderChange() override;

  afx_msg BOOL OnHelpInfo(HELPINFO* info);
  afx_msg void OnHelp();
  DECLARE_MESSAGE_MAP()

 private:
  int32_t Run(DIRECTORYDLGPARAMS& params);
  void SetTexts();
  void MoveFilterRow();
  void UseCompactLayout();
  void TrackFolder();

  CString currentFolder_;
  bool hasFilter_ = false;
  HELPCALLBACK helpCallback_ = nullptr;
  void* helpUserData_ = nullptr;
};
