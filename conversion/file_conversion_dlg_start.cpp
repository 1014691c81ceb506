// How the conversion dialog starts: what the caller's record sets up, and what is offered.
#include "conversion/control_state.h"
#include "conversion/file_conversion_dlg.h"
#include "platform/afx.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {

// The modal result of a dialog that cannot start with the record it was given.
constexpr int kRefused = 8;

}  // namespace

void CZVFileConversionDlg::AttachFileList() {
  files_.SetExtendedStyle(files_.GetExtendedStyle() | LVS_EX_INFOTIP | LVS_EX_LABELTIP | LVS_EX_FULLROWSELECT);
  fileList_.Attach(&files_);
  fileList_.SetDisplayFlags(kShowFileName);
  fileList_.SetRemoveCallback(&OnRowRemoved, reinterpret_cast<uint64_t>(this));
}

void CZVFileConversionDlg::FillOverwriteCombo() {
  struct Choice {
    uint32_t flag;
    int32_t mode;
    UINT text;
  };
  constexpr Choice kChoices[] = {
      {CONVDLG_OVERWRITE_ASK, OVERWRITE_ASK, IDS_CONV_OVERWRITE_ASK},
      {CONVDLG_OVERWRITE_SKIP, OVERWRITE_SKIP, IDS_CONV_OVERWRITE_SKIP},
      {CONVDLG_OVERWRITE_REPLACE, OVERWRITE_REPLACE, IDS_CONV_OVERWRITE_REPLACE},
      {CONVDLG_OVERWRITE_RENAME, OVERWRITE_RENAME, IDS_CONV_OVERWRITE_RENAME},
  };
  if (uiFlags_ & CONVDLG_SHOW_OVERWRITE) {
    for (const Choice& choice : kChoices) {
      if (uiFlags_ & choice.flag) {
        const int item = overwriteBox_.AddString(GetDlgString(choice.text));
        overwriteBox_.SetItemData(item, static_cast<DWORD_PTR>(choice.mode));
        if (choice.mode == overwriteMode_) {
          overwriteBox_.SetCurSel(item);
        }
      }
    }
  }
  UpdateCustomizeButton();
}

void CZVFileConversionDlg::CreatePreview() {
  viewer_.CreateInPlaceOf(this, IDV_CONV_PREVIEW);
  viewer_.SetBackgroundSysColor(COLOR_BTNFACE);
  viewer_.SetFit(CZVImageViewer::Fit::kWindow);
}

void CZVFileConversionDlg::LoadPictureButtons() {
  struct Picture {
    CZVBitmapButton& button;
    UINT bitmap;
    UINT disabledBitmap;
    UINT toolTip;
  };
  const Picture pictures[] = {
      {addFolderButton_, IDB_CONV_ART_ADD_FOLDER, IDB_CONV_ART_ADD_FOLDER_OFF, IDS_CONV_TIP_ADD_FOLDER},
      {addFilesButton_, IDB_CONV_ART_ADD_FILES, IDB_CONV_ART_ADD_FILES_OFF, IDS_CONV_TIP_ADD_FILES},
      {removeButton_, IDB_CONV_ART_REMOVE, IDB_CONV_ART_REMOVE_OFF, IDS_CONV_TIP_REMOVE},
      {selectAllButton_, IDB_CONV_ART_SELECT_ALL, IDB_CONV_ART_SELECT_ALL_OFF, IDS_CONV_TIP_SELECT_ALL},
  };
  for (const Picture& picture : pictures) {
    const CString text = GetDlgString(picture.toolTip);
    picture.button.LoadBitmap(picture.bitmap, picture.disabledBitmap);
    picture.button.SetWindowText(text);  // for screen readers
    picture.button.SetToolTipText(text);
    picture.button.SetToolTip(true);
  }
}

void CZVFileConversionDlg::SetStartState() {
  EnableFileControls(false);
  pageEdit_.SetNumericsOnly(true);
  pageEdit_.SetAcceptNegative(false);
  ShowPage(1);
  DisablePageControls();
  folderEdit_.SetLimitText(ZVDLG_PATH_LENGTH - 1);
  fileList_.SetDisplayFlags(fullPath_ ? kShowFullPath : kShowFileName);
}

// False when a list was given that names no file at all.
bool CZVFileConversionDlg::AddGivenFiles() {
  if (!givenFiles_) {
    return true;
  }
  if (!*givenFiles_) {
    return false;
  }
  const CWaitCursor wait;
  for (const wchar_t* path = givenFiles_; *path; path += wcslen(path) + 1) {
    AddReadableFile(path);
  }
  OnFilesAdded();
  return true;
}

bool CZVFileConversionDlg::FillFormatList() {
  formatList_.Attach({&formatBox_, &depthBox_, &subtypeBox_, &settingsButton_}, uiFlags_, formats_, formatCount_);
  return formatList_.Fill();
}

BOOL CZVFileConversionDlg::RefuseToStart() {
  result_ = ERROR_BAD_ARGUMENT;
  EndDialog(kRefused);
  return TRUE;
}

void CZVFileConversionDlg::ApplyUiFlags() {
  struct Visibility {
    uint32_t flag;
    int control;
  };
  constexpr Visibility kControls[] = {
      {CONVDLG_SHOW_PAGE_OPTIONS, IDB_CONV_PAGE_OPTIONS},
      {CONVDLG_SHOW_FILE_INFO, IDB_CONV_FILE_INFO},
      {CONVDLG_SHOW_PAGE_NAVIGATION, IDE_CONV_PAGE},
      {CONVDLG_SHOW_PAGE_NAVIGATION, IDB_CONV_PAGE_BACK},
      {CONVDLG_SHOW_PAGE_NAVIGATION, IDB_CONV_PAGE_FORWARD},
      {CONVDLG_SHOW_PAGE_NAVIGATION, IDT_CONV_PAGE_OF},
      {CONVDLG_SHOW_PAGE_NAVIGATION, IDT_CONV_PAGE},
      {CONVDLG_SHOW_RESIZE, IDB_CONV_RESIZE},
      {CONVDLG_SHOW_ROTATE, IDB_CONV_ROTATE},
      {CONVDLG_SHOW_NAMING, IDB_CONV_NAMING},
      {CONVDLG_SHOW_OVERWRITE, IDC_CONV_OVERWRITE},
      {CONVDLG_SHOW_OVERWRITE, IDT_CONV_OVERWRITE},
      {CONVDLG_SHOW_ADD_FILE, IDB_CONV_ADD_FILES},
      {CONVDLG_SHOW_ADD_FOLDER, IDB_CONV_ADD_FOLDER},
      {CONVDLG_SHOW_REMOVE, IDB_CONV_REMOVE},
      {CONVDLG_SHOW_SELECT_ALL, IDB_CONV_SELECT_ALL},
      {CONVDLG_SHOW_DELETE_SOURCE, IDX_CONV_DELETE_SOURCE},
  };
  for (const Visibility& visibility : kControls) {
    ::ShowWindow(::GetDlgItem(m_hWnd, visibility.control), uiFlags_ & visibility.flag ? SW_SHOW : SW_HIDE);
  }
  if (uiFlags_ & CONVDLG_CONTEXT_HELP) {
    AddContextHelpStyle();
  }
  if (!(uiFlags_ & CONVDLG_SHOW_PREVIEW)) {
    HidePreview();
  }
  if (!(uiFlags_ & CONVDLG_SHOW_PAGE_OPTIONS)) {
    HidePagesColumn();
  }
  FitFileColumn();
}

void CZVFileConversionDlg::HidePreview() {
  constexpr int kPreviewControls[] = {IDV_CONV_PREVIEW,      IDT_CONV_PREVIEW, IDE_CONV_PAGE, IDB_CONV_PAGE_BACK,
                                      IDB_CONV_PAGE_FORWARD, IDT_CONV_PAGE_OF, IDT_CONV_PAGE};
  CRect list;
  CRect preview;
  files_.GetWindowRect(&list);
  viewer_.GetWindowRect(&preview);
  list.right = preview.right;
  ScreenToClient(&list);
  files_.MoveWindow(&list);
  files_.SetColumnWidth(0, (list.Width() - 2) / 5 * 4);
  files_.SetColumnWidth(1, (list.Width() - 2) / 5);
  for (const int control : kPreviewControls) {
    ::ShowWindow(::GetDlgItem(m_hWnd, control), SW_HIDE);
  }
}

void CZVFileConversionDlg::HidePagesColumn() {
  CRect client;
  files_.GetClientRect(&client);
  fileList_.DeleteColumn(1);
  files_.SetColumnWidth(0, client.Width());
}

// Frame or scroll bar may leave the columns a little less room than they were given; a bar below the list for that alone
// would be in the way. Columns that the user has widened stay.
void CZVFileConversionDlg::FitFileColumn() {
  CRect client;
  files_.GetClientRect(&client);
  const int first = files_.GetColumnWidth(0);
  const int second = uiFlags_ & CONVDLG_SHOW_PAGE_OPTIONS ? files_.GetColumnWidth(1) : 0;
  const int excess = first + second - client.Width();
  if (excess > 0 && excess <= ::GetSystemMetrics(SM_CXVSCROLL) + 2 * ::GetSystemMetrics(SM_CXEDGE)) {
    files_.SetColumnWidth(0, first - excess);
  }
}
