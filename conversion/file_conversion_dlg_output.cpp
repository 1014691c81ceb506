// Where the conversion dialog's results go, and what happens to files that are in the way.
#include "conversion/browse_folder.h"
#include "conversion/control_state.h"
#include "conversion/file_conversion_dlg.h"
#include "conversion/folder_walk.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"

void CZVFileConversionDlg::ApplyFolderChoice() {
  CheckRadioButton(IDX_CONV_ORIGINAL_FOLDER, IDX_CONV_GIVEN_FOLDER,
                   useOriginalFolder_ ? IDX_CONV_ORIGINAL_FOLDER : IDX_CONV_GIVEN_FOLDER);
  EnableKeepingFocus(folderEdit_, !useOriginalFolder_);
  EnableKeepingFocus(::GetDlgItem(m_hWnd, IDB_CONV_BROWSE), !useOriginalFolder_);
}

// The chosen radio reports a click also when it merely gets the focus.
void CZVFileConversionDlg::OnOriginalFolder() {
  if (!useOriginalFolder_) {
    useOriginalFolder_ = 1;
    ApplyFolderChoice();
  }
}

void CZVFileConversionDlg::OnGivenFolder() {
  useOriginalFolder_ = 0;
  ApplyFolderChoice();
}

void CZVFileConversionDlg::OnBrowse() {
  CString folder;
  if (BrowseForFolder(m_hWnd, GetDlgString(IDS_CONV_DESTINATION), GetControlText(IDE_CONV_FOLDER), folder)) {
    folderEdit_.SetWindowText(folder);
    destinationFolder_ = folder;
  }
}

void CZVFileConversionDlg::OnOverwriteChanged() {
  overwriteMode_ = static_cast<int32_t>(overwriteBox_.GetItemData(overwriteBox_.GetCurSel()));
  UpdateCustomizeButton();
}

void CZVFileConversionDlg::UpdateCustomizeButton() {
  EnableKeepingFocus(::GetDlgItem(m_hWnd, IDB_CONV_CUSTOMIZE), overwriteMode_ == OVERWRITE_RENAME);
}

void CZVFileConversionDlg::OnDeleteSource() {
  deleteSource_ = IsDlgButtonChecked(IDX_CONV_DELETE_SOURCE) == BST_CHECKED;
}

void CZVFileConversionDlg::OnLogReport() { logReport_ = IsDlgButtonChecked(IDX_CONV_LOG_REPORT) == BST_CHECKED; }

CString CZVFileConversionDlg::GetControlText(int id) const {
  CString text;
  GetDlgItemText(id, text);
  return text;
}

// The run goes on whatever comes out of this: without the folder each file fails on its own.
void CZVFileConversionDlg::CheckDestinationFolder() {
  const CString folder = GetControlText(IDE_CONV_FOLDER);
  if (IsExistingFolder(folder)) {
    destinationFolder_ = folder;
    return;
  }
  CString message;
  message.Format(GetDlgString(IDS_CONV_CREATE_FOLDER_TEXT), folder);
  if (MessageBox(message, GetDlgString(IDS_CONV_CREATE_FOLDER_CAPTION), MB_YESNO | MB_ICONQUESTION) != IDYES) {
    RejectFolder();
    return;
  }
  if (!CreateFolderTree(folder)) {
    message.Format(GetDlgString(IDS_CONV_CREATE_FAILED_TEXT), folder);
    MessageBox(message, GetDlgString(IDS_CONV_CREATE_FAILED_CAPTION), MB_OK | MB_ICONWARNING);
    RejectFolder();
    return;
  }
  destinationFolder_ = folder;
}

void CZVFileConversionDlg::RejectFolder() {
  folderEdit_.SetSel(0, -1);
  folderEdit_.SetFocus();
}
