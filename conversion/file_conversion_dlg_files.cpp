// The file list of the conversion dialog: adding, removing, choosing.
#include <algorithm>

#include "conversion/add_progress_dlg.h"
#include "conversion/browse_folder.h"
#include "conversion/control_state.h"
#include "conversion/file_conversion_dlg.h"
#include "conversion/folder_walk.h"
#include "conversion/page_list.h"
#include "include/zvfiledlg.h"
#include "platform/afx.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/file_name_utility.h"

namespace {

// Controls that make sense only while there are files.
constexpr int kFileControls[] = {IDB_CONV_FILE_INFO,    IDB_CONV_CONVERT,   IDB_CONV_SELECT_ALL,   IDB_CONV_REMOVE,
                                 IDB_CONV_PAGE_OPTIONS, IDX_CONV_FULL_PATH, IDX_CONV_DELETE_SOURCE};

// The confirming button of the open dialog says "Add" for the length of a call.
class AddButtonText {
 public:
  AddButtonText() : former_(CZVBaseDialog::GetDlgString(IDS_OPEN_OK)) {
    ::SetDialogStringText(IDS_OPEN_OK, CZVBaseDialog::GetDlgString(IDS_CONV_OPEN_BUTTON));
  }
  AddButtonText(const AddButtonText&) = delete;
  AddButtonText& operator=(const AddButtonText&) = delete;
  ~AddButtonText() { ::SetDialogStringText(IDS_OPEN_OK, former_); }

 private:
  CString former_;
};

// A drive alone would mean its current folder.
CString FolderOf(const wchar_t* path) {
  const CString folder = CZVFileNameUtility::ExtractFilePath(path);
  return folder.Right(1) == L":" ? folder + L"\\" : folder;
}

void FreeOpenedFiles(OPENFILEDLGPARAMS& opened) {
  for (int32_t i = 0; opened.files && i < opened.fileCount; ++i) {
    ::GlobalFree(opened.files[i].fileInfo);
    ::GlobalFree(opened.files[i].formatOptions);
  }
  ::GlobalFree(opened.files);
}

}  // namespace

void CZVFileConversionDlg::OnAddFiles() {
  constexpr DWORD kOpenFlags =
      OFN_EXPLORER | OFN_ENABLESIZING | OFN_ALLOWMULTISELECT | OFN_ENABLEHOOK | OFN_ENABLETEMPLATE | OFN_HIDEREADONLY;
  const CString title = GetDlgString(IDS_CONV_ADD_FILES_TITLE);
  OPENFILENAMEW openFileName = {};
  openFileName.lStructSize = sizeof openFileName;
  openFileName.hwndOwner = m_hWnd;
  openFileName.hInstance = AfxGetInstanceHandle();
  openFileName.lpstrTitle = title;
  openFileName.lpstrInitialDir = sourceFolder_;
  openFileName.Flags = kOpenFlags;
  OPENFILEDLGPARAMS opened = {};
  opened.uStructSize = sizeof opened;
  opened.showPreview = 1;
  opened.flags = DLG_OPEN_FULL_FILE_INFO | DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_SHOW_FILE_INFO;
  opened.helpCallback = GetHelpCallback();
  opened.helpUserData = GetHelpCallBackUserData();
  int32_t result = 0;
  {
    const AddButtonText addButtonText;
    result = ::Z_DlgOpen(m_hWnd, &openFileName, &opened);
  }
  if (result == ERROR_DIALOG_FAILED || result == SUCCESS_DLG_CANCEL) {
    return;
  }
  const CWaitCursor wait;
  AddOpenedFiles(opened);
  FreeOpenedFiles(opened);
  changingList_ = true;
  fileList_.ClearSelection();
  changingList_ = false;
  OnFilesAdded();
}

void CZVFileConversionDlg::AddOpenedFiles(const OPENFILEDLGPARAMS& opened) {
  if (!opened.files || opened.fileCount < 1) {
    return;
  }
  sourceFolder_ = FolderOf(opened.files[0].fileName);
  files_.SetRedraw(FALSE);
  for (int32_t i = 0; i < opened.fileCount; ++i) {
    const OPENDLGFILEDATA& file = opened.files[i];
    if (AfxIsValidAddress(file.fileInfo, sizeof *file.fileInfo, FALSE)) {
      AddFileRow(file.fileName, file.fileInfo->totalPages);
    }
  }
  files_.SetRedraw(TRUE);
}

void CZVFileConversionDlg::OnAddFolder() {
  CString folder;
  if (!BrowseForFolder(m_hWnd, GetDlgString(IDS_CONV_ADD_FOLDER_TITLE), sourceFolder_, folder)) {
    return;
  }
  sourceFolder_ = folder;
  AddFilesOf(folder);
  OnFilesAdded();
}

void CZVFileConversionDlg::AddFilesOf(const CString& folder) {
  CStringArray paths;
  CollectFiles(folder, false, paths);
  if (paths.IsEmpty()) {
    return;
  }
  CZVFileConversionDlgAddProgressDlg progress(this);
  progress.InheritHelp(*this);
  if (progress.Initialize([this](const CString& path) { AddReadableFile(path); }, &paths)) {
    changingList_ = true;
    files_.SetRedraw(FALSE);
    progress.DoModal();
    files_.SetRedraw(TRUE);
    changingList_ = false;
  }
}

// A file that cannot be read, or that is there already, is dropped without a word.
bool CZVFileConversionDlg::AddReadableFile(const CString& path) {
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  return ::GetFileInfo(path, &info, sizeof info, 1, nullptr) == SUCCESS && AddFileRow(path, info.totalPages);
}

bool CZVFileConversionDlg::AddFileRow(const CString& path, int32_t pageTotal) {
  if (!fileList_.AddFile(path)) {
    return false;
  }
  const int last = fileList_.GetItemCount() - 1;
  CONVERSIONFILEOPTIONS options;
  options.pageTotal = pageTotal;
  fileList_.SetItemOptions(options, last);
  fileList_.SetSubItemText(last, 1, PagesColumnText(options.pages, options.pageCount));
  return true;
}

void CZVFileConversionDlg::OnFilesAdded() {
  if (fileList_.GetItemCount() == 0) {
    return;
  }
  FitFileColumn();
  changingList_ = true;
  fileList_.SelectItem(0);
  changingList_ = false;
  FollowSelection();
  EnableFileControls(true);
  files_.SetFocus();
}

std::vector<int> CZVFileConversionDlg::GetSelectedFileRows() {
  std::vector<int> rows;
  for (int row = files_.GetNextItem(-1, LVNI_SELECTED); row >= 0; row = files_.GetNextItem(row, LVNI_SELECTED)) {
    rows.push_back(row);
  }
  return rows;
}

void CZVFileConversionDlg::OnRemove() {
  const std::vector<int> rows = GetSelectedFileRows();
  if (!rows.empty()) {
    RemoveRows(rows);
  }
}

void CZVFileConversionDlg::RemoveRows(const std::vector<int>& rows) {
  changingList_ = true;
  files_.SetRedraw(FALSE);
  for (size_t i = rows.size(); i > 0; --i) {
    fileList_.RemoveFile(rows[i - 1]);
  }
  files_.SetRedraw(TRUE);
  const int remaining = fileList_.GetItemCount();
  if (remaining > 0) {
    const int next = std::min(rows.front(), remaining - 1);
    fileList_.SelectItem(next);
    files_.EnsureVisible(next, FALSE);
  }
  changingList_ = false;
  if (remaining == 0) {
    OnListEmptied();
    return;
  }
  UpdatePageControls();
  UpdatePreview();
  EnableFileControl(IDB_CONV_FILE_INFO, true);
}

void CZVFileConversionDlg::OnListEmptied() {
  EnableFileControls(false);
  DisablePageControls();
  ClearPreview();
}

void CZVFileConversionDlg::OnSelectAll() {
  const UINT formerCount = files_.GetSelectedCount();
  changingList_ = true;
  files_.SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
  changingList_ = false;
  if (files_.GetSelectedCount() != formerCount) {
    FollowSelection();
  }
  ClearPreview();
  EnableFileControl(IDB_CONV_FILE_INFO, false);
  EnableFileControl(IDB_CONV_CONVERT, true);
  EnableFileControl(IDB_CONV_PAGE_OPTIONS, true);
  EnableFileControl(IDB_CONV_REMOVE, true);
  files_.SetFocus();
}

void CZVFileConversionDlg::OnFileListChanged(NMHDR* header, LRESULT*) {
  const auto& change = *reinterpret_cast<const NMLISTVIEW*>(header);
  if (changingList_ || !(change.uChanged & LVIF_STATE)) {
    return;
  }
  const bool wasSelected = change.uOldState & LVIS_SELECTED;
  const bool isSelected = change.uNewState & LVIS_SELECTED;
  if (isSelected) {
    EnableFileControl(IDB_CONV_REMOVE, true);
    EnableFileControl(IDB_CONV_SELECT_ALL, true);
    if (!ShowsSelection()) {
      FollowSelection();
    }
    EnableFileControl(IDB_CONV_CONVERT, true);
    EnableFileControl(IDB_CONV_PAGE_OPTIONS, true);
  } else if (wasSelected && files_.GetSelectedCount() == 0) {
    OnNothingSelected();
  } else if (wasSelected && files_.GetSelectedCount() == 1) {
    PostMessage(kSelectionReducedMessage);
  }
}

// The row that stayed selected reports nothing when it has the focus already.
LRESULT CZVFileConversionDlg::OnSelectionReduced(WPARAM, LPARAM) {
  if (files_.GetSelectedCount() == 1 && !ShowsSelection()) {
    FollowSelection();
  }
  return 0;
}

// One chosen file shows its pages; several show nothing.
void CZVFileConversionDlg::FollowSelection() {
  const bool single = files_.GetSelectedCount() < 2;
  EnableFileControl(IDB_CONV_FILE_INFO, single);
  if (single) {
    UpdatePageControls();
    UpdatePreview();
  } else {
    DisablePageControls();
    ClearPreview();
  }
}

// A list reports one step of the user in several notifications: the picture is loaded for the first of them.
bool CZVFileConversionDlg::ShowsSelection() {
  return files_.GetSelectedCount() == 1 && !shownPath_.IsEmpty() &&
         shownPath_ == fileList_.GetPath(fileList_.GetFirstSelected());
}

void CZVFileConversionDlg::OnNothingSelected() {
  ClearPreview();
  DisablePageControls();
  EnableFileControl(IDB_CONV_FILE_INFO, false);
  EnableFileControl(IDB_CONV_REMOVE, false);
  EnableFileControl(IDB_CONV_PAGE_OPTIONS, false);
  EnableFileControl(IDB_CONV_CONVERT, false);
}

// The picture buttons have no mnemonics: Delete and Ctrl+A do what users of a list expect.
void CZVFileConversionDlg::OnFileListKey(NMHDR* header, LRESULT*) {
  const WORD key = reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey;
  const bool control = ::GetKeyState(VK_CONTROL) < 0;
  if (key == VK_DELETE && removeButton_.IsWindowVisible()) {
    OnRemove();
  } else if (key == 'A' && control && selectAllButton_.IsWindowVisible() && fileList_.GetItemCount() > 0) {
    OnSelectAll();
  }
}

void CZVFileConversionDlg::OnFullPath() {
  fullPath_ = IsDlgButtonChecked(IDX_CONV_FULL_PATH) == BST_CHECKED;
  fileList_.SetDisplayFlags(fullPath_ ? kShowFullPath : kShowFileName);
  fileList_.SelectItem(fileList_.GetFirstSelected());
}

void CZVFileConversionDlg::EnableFileControl(int id, bool enable) {
  const HWND control = ::GetDlgItem(m_hWnd, id);
  if ((::IsWindowEnabled(control) != FALSE) != enable) {
    EnableKeepingFocus(control, enable);
  }
}

void CZVFileConversionDlg::EnableFileControls(bool enable) {
  for (const int id : kFileControls) {
    EnableFileControl(id, enable);
  }
}

void CZVFileConversionDlg::OnRowRemoved(int32_t, int32_t* row, uint64_t userData) {
  reinterpret_cast<CZVFileConversionDlg*>(userData)->FreePageArray(*row);
}

void CZVFileConversionDlg::FreePageArray(int row) {
  CONVERSIONFILEOPTIONS options;
  if (fileList_.GetItemOptions(row, options) && options.pages) {
    FreePages(options);
    fileList_.SetItemOptions(options, row);
  }
}

void CZVFileConversionDlg::EmptyLists() {
  changingList_ = true;
  for (int row = 0; row < fileList_.GetItemCount(); ++row) {
    FreePageArray(row);
  }
  fileList_.RemoveAll();
  formatList_.RemoveAll();
}
