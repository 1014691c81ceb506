#include "conversion/file_conversion_dlg.h"

#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {

constexpr UINT kHelpNumber = 104;

// The bound of the caller's fields keeps a text that is too long from running over the record.
void CopyPath(wchar_t (&field)[ZVDLG_PATH_LENGTH], const CString& path) { ::lstrcpynW(field, path, ZVDLG_PATH_LENGTH); }

CString PathOrRoot(const wchar_t* path) { return *path ? CString(path) : CString(L"C:\\"); }

}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlg, CZVBaseDialog)
  ON_BN_CLICKED(IDB_CONV_ADD_FILES, OnAddFiles)
  ON_BN_CLICKED(IDB_CONV_ADD_FOLDER, OnAddFolder)
  ON_BN_CLICKED(IDB_CONV_REMOVE, OnRemove)
  ON_BN_CLICKED(IDB_CONV_SELECT_ALL, OnSelectAll)
  ON_NOTIFY(LVN_ITEMCHANGED, IDL_CONV_FILES, OnFileListChanged)
  ON_NOTIFY(LVN_KEYDOWN, IDL_CONV_FILES, OnFileListKey)
  ON_BN_CLICKED(IDX_CONV_FULL_PATH, OnFullPath)
  ON_BN_CLICKED(IDX_CONV_DELETE_SOURCE, OnDeleteSource)
  ON_BN_CLICKED(IDB_CONV_PAGE_BACK, OnPageBack)
  ON_BN_CLICKED(IDB_CONV_PAGE_FORWARD, OnPageForward)
  ON_EN_CHANGE(IDE_CONV_PAGE, OnPageChanged)
  ON_CONTROL(ZVEN_VALUECOMMITTED, IDE_CONV_PAGE, OnPageCommitted)
  ON_MESSAGE(kPreviewFailedMessage, OnPreviewFailed)
  ON_MESSAGE(kSelectionReducedMessage, OnSelectionReduced)
  ON_LBN_SELCHANGE(IDL_CONV_FORMATS, OnFormatRowsChanged)
  ON_CBN_SELCHANGE(IDC_CONV_BPP, OnDepthChanged)
  ON_CBN_SELCHANGE(IDC_CONV_SUBTYPE, OnSubtypeChanged)
  ON_BN_CLICKED(IDX_CONV_ORIGINAL_FOLDER, OnOriginalFolder)
  ON_BN_CLICKED(IDX_CONV_GIVEN_FOLDER, OnGivenFolder)
  ON_BN_CLICKED(IDB_CONV_BROWSE, OnBrowse)
  ON_CBN_SELCHANGE(IDC_CONV_OVERWRITE, OnOverwriteChanged)
  ON_BN_CLICKED(IDX_CONV_LOG_REPORT, OnLogReport)
  ON_BN_CLICKED(IDB_CONV_PAGE_OPTIONS, OnPageOptions)
  ON_BN_CLICKED(IDB_CONV_NAMING, OnNamingTemplate)
  ON_BN_CLICKED(IDB_CONV_CUSTOMIZE, OnCustomize)
  ON_BN_CLICKED(IDB_CONV_RESIZE, OnResize)
  ON_BN_CLICKED(IDB_CONV_ROTATE, OnRotate)
  ON_BN_CLICKED(IDB_CONV_CONVERT, OnConvert)
  ON_BN_CLICKED(IDB_CONV_CLOSE, OnClose)
  ON_WM_DESTROY()
END_MESSAGE_MAP()

CZVFileConversionDlg::CZVFileConversionDlg(CWnd* parent)
    : CZVBaseDialog(IDD_CONVERSION, parent, kHelpNumber),
      fileList_(2, GetDlgString(IDS_CONV_COLUMN_FILE), GetDlgString(IDS_CONV_COLUMN_PAGES)) {
  const CString sourceTag = GetDlgString(IDS_TAG_TEXT_SRC);
  collisionData_.namingTemplate = sourceTag + GetDlgString(IDS_TAG_TEXT_NUM);
  collisionData_.settings = &collisionSettings_;
  namingData_.namingTemplate = sourceTag;
  namingData_.settings = &namingSettings_;
}

int32_t CZVFileConversionDlg::Initialize(const FILECONVERSIONDLGPARAMS& params) {
  const bool restricted = params.formats && params.formatCount > 0;
  formats_ = restricted ? params.formats : nullptr;
  formatCount_ = restricted ? params.formatCount : 0;
  givenFiles_ = params.fileList;
  destinationFolder_ = PathOrRoot(params.destinationFolder);
  sourceFolder_ = PathOrRoot(params.sourceFolder);
  overwriteMode_ = params.overwriteMode;
  deleteSource_ = params.deleteSource;
  fullPath_ = params.fullPath;
  logReport_ = params.logReport;
  useOriginalFolder_ = params.useOriginalFolder;
  uiFlags_ = params.uiFlags;
  return SUCCESS;
}

void CZVFileConversionDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDL_CONV_FILES, files_);
  DDX_Control(exchange, IDB_CONV_ADD_FILES, addFilesButton_);
  DDX_Control(exchange, IDB_CONV_ADD_FOLDER, addFolderButton_);
  DDX_Control(exchange, IDB_CONV_REMOVE, removeButton_);
  DDX_Control(exchange, IDB_CONV_SELECT_ALL, selectAllButton_);
  DDX_Control(exchange, IDE_CONV_PAGE, pageEdit_);
  DDX_Control(exchange, IDL_CONV_FORMATS, formatBox_);
  DDX_Control(exchange, IDC_CONV_BPP, depthBox_);
  DDX_Control(exchange, IDC_CONV_SUBTYPE, subtypeBox_);
  DDX_Control(exchange, IDB_CONV_SETTINGS, settingsButton_);
  DDX_Control(exchange, IDC_CONV_OVERWRITE, overwriteBox_);
  DDX_Control(exchange, IDE_CONV_FOLDER, folderEdit_);
}

void CZVFileConversionDlg::SetDialogStrings() {
  struct Label {
    int control;
    UINT text;
  };
  constexpr Label kLabels[] = {
      {IDG_CONV_SOURCE, IDS_CONV_SOURCE_GROUP},
      {IDT_CONV_FILES, IDS_CONV_FILES},
      {IDT_CONV_PREVIEW, IDS_CONV_PREVIEW},
      {IDX_CONV_FULL_PATH, IDS_CONV_FULL_PATH},
      {IDX_CONV_DELETE_SOURCE, IDS_CONV_DELETE_SOURCE},
      {IDB_CONV_PAGE_OPTIONS, IDS_CONV_OPTIONS},
      {IDB_CONV_FILE_INFO, IDS_CONV_FILE_INFO},
      {IDT_CONV_PAGE, IDS_CONV_PAGE},
      {IDG_CONV_FORMATS, IDS_CONV_FILE_TYPE_GROUP},
      {IDT_CONV_BPP, IDS_CONV_BPP},
      {IDT_CONV_SUBTYPE, IDS_CONV_SUB_TYPE},
      {IDB_CONV_SETTINGS, IDS_CONV_SETTINGS},
      {IDG_CONV_DESTINATION, IDS_CONV_DESTINATION},
      {IDX_CONV_ORIGINAL_FOLDER, IDS_CONV_ORIGINAL_FOLDER},
      {IDX_CONV_GIVEN_FOLDER, IDS_CONV_FOLDER},
      {IDT_CONV_OVERWRITE, IDS_CONV_OVERWRITE},
      {IDB_CONV_CUSTOMIZE, IDS_CONV_CUSTOMIZE},
      {IDB_CONV_NAMING, IDS_CONV_NAMING_TEMPLATE},
      {IDB_CONV_RESIZE, IDS_CONV_RESIZE},
      {IDB_CONV_ROTATE, IDS_CONV_ROTATE},
      {IDG_CONV_RESULT, IDS_CONV_RESULT_GROUP},
      {IDX_CONV_LOG_REPORT, IDS_CONV_LOG_REPORT},
      {IDB_CONV_CONVERT, IDS_CONV_CONVERT},
      {IDB_CONV_CLOSE, IDS_CONV_CLOSE},
      {IDB_CONVERSION_HELP, IDS_HELP},
  };
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_CONV_TITLE));
  for (const Label& label : kLabels) {
    SetControlString(label.control, label.text);
  }
}

BOOL CZVFileConversionDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  AttachFileList();
  FillOverwriteCombo();
  CreatePreview();
  ApplyFolderChoice();
  LoadPictureButtons();
  SetStartState();
  if (!AddGivenFiles() || !FillFormatList()) {
    return RefuseToStart();
  }
  CheckDlgButton(IDX_CONV_DELETE_SOURCE, deleteSource_ != 0);
  CheckDlgButton(IDX_CONV_FULL_PATH, fullPath_ != 0);
  CheckDlgButton(IDX_CONV_LOG_REPORT, logReport_ != 0);
  folderEdit_.SetWindowText(destinationFolder_);
  ApplyUiFlags();
  files_.SetFocus();
  return FALSE;
}

// Close: the caller's record gets the outcome.
void CZVFileConversionDlg::OnClose() {
  EmptyLists();
  EndDialog(IDOK);
}

void CZVFileConversionDlg::OnCancel() {
  EmptyLists();
  CZVBaseDialog::OnCancel();
}

// Also the way out of a dialog that was refused, or whose parent went away.
void CZVFileConversionDlg::OnDestroy() {
  EmptyLists();
  CZVBaseDialog::OnDestroy();
}

int32_t CZVFileConversionDlg::Commit(FILECONVERSIONDLGPARAMS& params) const {
  CopyPath(params.destinationFolder, destinationFolder_);
  CopyPath(params.sourceFolder, sourceFolder_);
  params.overwriteMode = overwriteMode_;
  params.deleteSource = deleteSource_;
  params.fullPath = fullPath_;
  params.logReport = logReport_;
  params.useOriginalFolder = useOriginalFolder_;
  return result_;
}
