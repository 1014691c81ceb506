#include "iccprofile/icc_profile_dlg.h"

#include <cwchar>

#include "iccprofile/icc_rules.h"
#include "platform/afx.h"
#include "resources/iccprofile_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvfile/zvfile.h"

namespace {

constexpr UINT kHelpNumber = 122;
constexpr int kPageCharacters = 8;

// Item data of the type lists.
constexpr DWORD_PTR kIccFile = 0;
constexpr DWORD_PTR kImage = 1;

constexpr DWORD kExistingFile = OFN_HIDEREADONLY | OFN_FILEMUSTEXIST;
constexpr DWORD kNewFile = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT;
constexpr wchar_t kLoadFilter[] =
    L"ICC files (*.icc)|*.icc| Image files (*.jpg;*.tif;*.eps;*.pct)|*.jpg;*.tif;*.eps;*.pct||";
constexpr wchar_t kSaveFilter[] = L"ICC files (*.icc)|*.icc||";
constexpr wchar_t kSaveImageFilter[] = L"Image files (*.jpg;*.tif;*.eps;*.pct)|*.jpg;*.tif;*.eps;*.pct||";

// The controls of the two groups, twins at the same index.
constexpr int kLoadControls[] = {IDG_ICC_LOAD, IDC_ICC_LOAD_TYPE, IDE_ICC_LOAD_PATH, IDB_ICC_LOAD_BROWSE,
                                 IDB_ICC_LOAD, IDT_ICC_LOAD_PAGE, IDE_ICC_LOAD_PAGE};
constexpr int kSaveControls[] = {IDG_ICC_SAVE, IDC_ICC_SAVE_TYPE, IDE_ICC_SAVE_PATH, IDB_ICC_SAVE_BROWSE,
                                 IDB_ICC_SAVE, IDT_ICC_SAVE_PAGE, IDE_ICC_SAVE_PAGE};
static_assert(std::size(kLoadControls) == std::size(kSaveControls));

CString TextOfField(const wchar_t (&field)[ZVDLG_PATH_LENGTH]) {
  return CString(field, static_cast<int>(::wcsnlen(field, ZVDLG_PATH_LENGTH)));
}

DWORD_PTR SelectedType(const CComboBox& list) { return list.GetItemData(list.GetCurSel()); }

}  // namespace

BEGIN_MESSAGE_MAP(CZVICCProfileDlg, CZVBaseDialog)
  ON_CBN_SELCHANGE(IDC_ICC_LOAD_TYPE, OnLoadType)
  ON_CBN_SELCHANGE(IDC_ICC_SAVE_TYPE, OnSaveType)
  ON_EN_CHANGE(IDE_ICC_LOAD_PAGE, OnLoadPage)
  ON_EN_CHANGE(IDE_ICC_SAVE_PAGE, OnSavePage)
  ON_BN_CLICKED(IDB_ICC_LOAD_BROWSE, OnLoadBrowse)
  ON_BN_CLICKED(IDB_ICC_SAVE_BROWSE, OnSaveBrowse)
  ON_BN_CLICKED(IDB_ICC_LOAD, OnLoad)
  ON_BN_CLICKED(IDB_ICC_SAVE, OnSave)
END_MESSAGE_MAP()

CZVICCProfileDlg::CZVICCProfileDlg(CWnd* parent) : CZVBaseDialog(IDD_ICC, parent, kHelpNumber) {}

CZVICCProfileDlg::~CZVICCProfileDlg() {
  if (!library_.IsBound()) {
    return;
  }
  ForgetBorrowedProfile();
  library_->freeProfile(&iccProfile_);
  library_.Release();
}

int32_t CZVICCProfileDlg::BindColorLibrary(ICCPROFILEDLGPARAMS* params) {
  const int32_t status = library_.Bind();
  if (status != SUCCESS) {
    return status;
  }
  if (!(params->flags & (DLG_ICC_SHOW_LOAD | DLG_ICC_SHOW_SAVE))) {
    return ERROR_BAD_ARGUMENT;
  }
  iccProfile_ = params->iccProfile;
  borrowsProfile_ = true;
  loadPath_ = TextOfField(params->loadPath);
  savePath_ = TextOfField(params->savePath);
  flags_ = params->flags;
  return SUCCESS;
}

BOOL CZVICCProfileDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  ApplyLayout();
  loadBrowse_.LoadBitmap(IDB_ICC_ART_LOAD, IDB_ICC_ART_LOAD_OFF);
  loadBrowse_.SetToolTipText(GetDlgString(IDS_ICC_TIP_LOAD));
  loadBrowse_.SetToolTip(true);
  saveBrowse_.LoadBitmap(IDB_ICC_ART_SAVE, IDB_ICC_ART_SAVE_OFF);
  saveBrowse_.SetToolTipText(GetDlgString(IDS_ICC_TIP_SAVE));
  saveBrowse_.SetToolTip(true);
  SetDlgItemText(IDE_ICC_LOAD_PATH, loadPath_);
  SetDlgItemText(IDE_ICC_SAVE_PATH, savePath_);
  PrepareGroup(loadType_, IDS_ICC_LOAD_ICC_FILE, IDS_ICC_LOAD_IMAGE, loadPage_);
  PrepareGroup(saveType_, IDS_ICC_SAVE_ICC_FILE, IDS_ICC_SAVE_IMAGE, savePage_);
  OnLoadType();
  OnSaveType();
  if (!HoldsProfile(iccProfile_)) {
    EnableSave(false);
  }
  return TRUE;
}

void CZVICCProfileDlg::PrepareGroup(CComboBox& type, UINT iccFileText, UINT imageText, CZVEditCtrl& page) {
  type.SetItemData(type.AddString(GetDlgString(iccFileText)), kIccFile);
  type.SetItemData(type.AddString(GetDlgString(imageText)), kImage);
  type.SetCurSel(0);
  page.SetNumericsOnly(true);
  page.SetAcceptNegative(false);
  page.SetAcceptFloat(false);
  page.SetLimitText(kPageCharacters);
  page.SetValue(1);
}

void CZVICCProfileDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(TitleFor(ShowsLoad(), ShowsSave())));
  SetControlString(IDB_ICC_CLOSE, IDS_ICC_CLOSE);
  SetControlString(IDG_ICC_LOAD, IDS_ICC_LOAD_GROUP);
  SetControlString(IDG_ICC_SAVE, IDS_ICC_SAVE_GROUP);
  SetControlString(IDB_ICC_LOAD_BROWSE, IDS_ICC_TIP_LOAD);
  SetControlString(IDB_ICC_SAVE_BROWSE, IDS_ICC_TIP_SAVE);
  SetControlString(IDT_ICC_LOAD_PAGE, IDS_ICC_LOAD_PAGE);
  SetControlString(IDT_ICC_SAVE_PAGE, IDS_ICC_SAVE_PAGE);
  SetControlString(IDB_ICC_LOAD, IDS_ICC_LOAD);
  SetControlString(IDB_ICC_SAVE, IDS_ICC_SAVE);
}

void CZVICCProfileDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDC_ICC_LOAD_TYPE, loadType_);
  DDX_Control(exchange, IDC_ICC_SAVE_TYPE, saveType_);
  DDX_Control(exchange, IDE_ICC_LOAD_PAGE, loadPage_);
  DDX_Control(exchange, IDE_ICC_SAVE_PAGE, savePage_);
  DDX_Control(exchange, IDB_ICC_LOAD_BROWSE, loadBrowse_);
  DDX_Control(exchange, IDB_ICC_SAVE_BROWSE, saveBrowse_);
}

// --- Layout ---

void CZVICCProfileDlg::ApplyLayout() {
  if (flags_ & DLG_ICC_CONTEXTHELP) {
    AddContextHelpStyle();
  }
  if (ShowsLoad() && ShowsSave()) {
    return;
  }
  for (const int id : ShowsLoad() ? kSaveControls : kLoadControls) {
    GetDlgItem(id)->ShowWindow(SW_HIDE);
  }
  ShrinkToOneGroup();
}

CRect CZVICCProfileDlg::RectOf(int controlId) const {
  CRect rect;
  GetDlgItem(controlId)->GetWindowRect(&rect);
  ScreenToClient(&rect);
  return rect;
}

void CZVICCProfileDlg::ShrinkToOneGroup() {
  const int shift = RectOf(IDG_ICC_SAVE).bottom - RectOf(IDG_ICC_LOAD).bottom;
  // Twins have one size. Giving a list the size of its closed twin would leave no room for its items when it drops down.
  for (size_t i = 0; !ShowsLoad() && i < std::size(kSaveControls); ++i) {
    const CRect place = RectOf(kLoadControls[i]);
    ::SetWindowPos(GetDlgItem(kSaveControls[i])->m_hWnd, nullptr, place.left, place.top, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER);
  }
  for (const int id : {IDB_ICC_CLOSE, IDB_ICC_HELP, IDT_ICC_LINE}) {
    CRect rect = RectOf(id);
    rect.OffsetRect(0, -shift);
    GetDlgItem(id)->MoveWindow(rect);
  }
  CRect window;
  GetWindowRect(&window);
  window.bottom -= shift;
  MoveWindow(window);
}

// --- Events ---

void CZVICCProfileDlg::OnLoadType() { EnablePage(loadType_, IDT_ICC_LOAD_PAGE, loadPage_); }

void CZVICCProfileDlg::OnSaveType() { EnablePage(saveType_, IDT_ICC_SAVE_PAGE, savePage_); }

void CZVICCProfileDlg::EnablePage(const CComboBox& type, int labelId, CZVEditCtrl& page) {
  const bool hasPages = SelectedType(type) == kImage;
  GetDlgItem(labelId)->EnableWindow(hasPages);
  page.EnableWindow(hasPages);
}

void CZVICCProfileDlg::OnLoadPage() { CheckPage(loadPage_); }

void CZVICCProfileDlg::OnSavePage() { CheckPage(savePage_); }

void CZVICCProfileDlg::CheckPage(CZVEditCtrl& page) {
  if (page.GetValue() > 0) {
    return;
  }
  ::MessageBeep(MB_OK);
  page.SetFocus();
  page.SetValue(1);
  page.SetSel(0, 1);
}

void CZVICCProfileDlg::OnLoadBrowse() {
  CFileDialog dialog(TRUE, L"*.icc", nullptr, kExistingFile, kLoadFilter, this);
  dialog.m_ofn.nFilterIndex = SelectedType(loadType_) == kIccFile ? 1 : 2;
  Browse(dialog, loadPath_, IDE_ICC_LOAD_PATH);
}

void CZVICCProfileDlg::OnSaveBrowse() {
  if (SelectedType(saveType_) == kIccFile) {
    CFileDialog dialog(FALSE, L"*.icc", nullptr, kNewFile, kSaveFilter, this);
    Browse(dialog, savePath_, IDE_ICC_SAVE_PATH);
  } else {
    CFileDialog dialog(TRUE, L"*.jpg", nullptr, kExistingFile, kSaveImageFilter, this);
    Browse(dialog, savePath_, IDE_ICC_SAVE_PATH);
  }
}

void CZVICCProfileDlg::Browse(CFileDialog& dialog, CString& path, int pathControlId) {
  if (dialog.DoModal() == IDOK) {
    path = dialog.GetPathName();
    SetDlgItemText(pathControlId, path);
  }
}

void CZVICCProfileDlg::OnLoad() {
  const int32_t status = LoadProfile();
  if (status == SUCCESS) {
    ShowDone(IDS_ICC_LOADED_TEXT, IDS_ICC_LOADED_CAPTION, loadPath_);
  } else {
    ShowFailure(status);
  }
  EnableSave(status == SUCCESS);
}

void CZVICCProfileDlg::ForgetBorrowedProfile() {
  if (borrowsProfile_) {
    iccProfile_ = {};
    borrowsProfile_ = false;
  }
}

int32_t CZVICCProfileDlg::LoadProfile() {
  const CWaitCursor hourGlass;
  ForgetBorrowedProfile();
  library_->freeProfile(&iccProfile_);
  library_->initProfile(&iccProfile_, sizeof(iccProfile_));
  if (SelectedType(loadType_) == kIccFile) {
    return library_->fillProfileFromIccFile(loadPath_, &iccProfile_);
  }
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = static_cast<int32_t>(loadPage_.GetValue());
  return library_->loadProfile(loadPath_, &iccProfile_, &option);
}

void CZVICCProfileDlg::OnSave() {
  if (!HoldsProfile(iccProfile_)) {
    EnableSave(false);
    return;
  }
  const int32_t status = SaveProfile();
  if (status == SUCCESS) {
    ShowDone(IDS_ICC_SAVED_TEXT, IDS_ICC_SAVED_CAPTION, savePath_);
  } else {
    ShowFailure(status);
  }
}

int32_t CZVICCProfileDlg::SaveProfile() {
  const CWaitCursor hourGlass;
  if (SelectedType(saveType_) == kIccFile) {
    return library_->generateIccFile(&iccProfile_, savePath_);
  }
  SAVEFILEOPTION option = {};
  GetDefaultSaveFileOption(&option, sizeof(option));
  option.pageNumber = static_cast<int32_t>(savePage_.GetValue());
  return library_->saveProfile(savePath_, &iccProfile_, &option);
}

void CZVICCProfileDlg::EnableSave(bool enable) { GetDlgItem(IDB_ICC_SAVE)->EnableWindow(enable); }

void CZVICCProfileDlg::ShowDone(UINT textId, UINT captionId, const CString& path) {
  CString text;
  text.Format(GetDlgString(textId), path);
  MessageBox(text, GetDlgString(captionId), MB_OK);
}

void CZVICCProfileDlg::ShowFailure(int32_t code) {
  const FailureMessage message = MessageFor(code);
  CString text = GetDlgString(message.textId);
  if (message.takesCode) {
    text.Format(CString(text), code);
  }
  MessageBox(text, GetDlgString(IDS_ICC_ERROR_CAPTION), MB_OK);
}

// --- Commit ---

int32_t CZVICCProfileDlg::Commit(ICCPROFILEDLGPARAMS& params) {
  if (!borrowsProfile_) {
    params.iccProfile = iccProfile_;
    borrowsProfile_ = true;
  }
  params.flags = flags_;
  return SUCCESS;
}
