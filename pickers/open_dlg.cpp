#include "pickers/open_dlg.h"

#include <algorithm>

#include "include/zvfiledlg.h"
#include "pickers/common_dialog.h"
#include "pickers/load_settings_guard.h"
#include "pickers/open_rules.h"
#include "pickers/picker_position.h"
#include "platform/afx.h"
#include "platform/module_context.h"
#include "resources/picker_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {

constexpr uint32_t kHelpNumber = 1;

bool IsOldStyleShellHere() {
  const DWORD version = ::GetVersion();
  return IsOldStyleShell(LOBYTE(LOWORD(version)), HIBYTE(LOWORD(version)));
}

}  // namespace

BEGIN_MESSAGE_MAP(CZVOpenDlg, CFileDialog)
  ON_WM_HELPINFO()
  ON_COMMAND(ID_HELP, OnHelp)
END_MESSAGE_MAP()

CZVOpenDlg::CZVOpenDlg(CWnd* parent, UINT viewCommand)
    : CFileDialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_ENABLETEMPLATE, nullptr, parent),
      viewCommand_(viewCommand),
      status_(SUCCESS) {}

int32_t CZVOpenDlg::PickFiles(OPENFILENAMEW* openFileName, OPENFILEDLGPARAMS& params) {
  if (!openFileName) {
    return ERROR_BAD_ARGUMENT;
  }
  params_ = &params;
  PrepareCallerRecord(*openFileName);
  const LoadSettingsGuard settings;
  PrepareDialog(*openFileName);

  const INT_PTR answer = DoModal();
  openFileName->nFilterIndex = m_ofn.nFilterIndex;
  if (answer == IDOK) {
    return status_;
  }
  return answer == IDCANCEL && ::CommDlgExtendedError() == 0 ? SUCCESS_DLG_CANCEL : ERROR_DIALOG_FAILED;
}

void CZVOpenDlg::PrepareCallerRecord(OPENFILENAMEW& caller) const {
  caller.lpstrFilter = ChooseOpenFilter(caller.lpstrFilter, params_->flags);
  caller.lpTemplateName = MAKEINTRESOURCEW(IsOldStyleShellHere() ? IDD_OPEN_OLD_SHELL : IDD_OPEN);
  caller.Flags = OpenDialogFlags(caller.Flags, params_->flags, params_->helpCallback != nullptr);
  caller.nMaxFile = SelectionLengthFor(caller.nMaxFile);
}

void CZVOpenDlg::PrepareDialog(const OPENFILENAMEW& caller) {
  selection_.assign(caller.nMaxFile, L'\0');
  if (caller.lpstrFile) {
    ::lstrcpynW(selection_.data(), caller.lpstrFile, static_cast<int>(selection_.size()));
  }
  m_ofn.lpstrFile = selection_.data();
  m_ofn.nMaxFile = caller.nMaxFile;
  m_ofn.lpstrFilter = caller.lpstrFilter;
  m_ofn.lpstrCustomFilter = caller.lpstrCustomFilter;
  m_ofn.nMaxCustFilter = caller.nMaxCustFilter;
  m_ofn.lpstrTitle = caller.lpstrTitle;
  if (caller.lpstrFileTitle) {
    m_ofn.lpstrFileTitle = caller.lpstrFileTitle;
    m_ofn.nMaxFileTitle = caller.nMaxFileTitle;
  }
  m_ofn.hInstance = AfxGetResourceHandle();
  m_ofn.Flags = caller.Flags & ~static_cast<DWORD>(OFN_ENABLETEMPLATE);  // the plain dialog, without rows of ours
  m_ofn.lpstrDefExt = caller.lpstrDefExt;
  m_ofn.nFileExtension = caller.nFileExtension;
  m_ofn.nFilterIndex = caller.nFilterIndex;
  m_ofn.lpstrInitialDir = caller.lpstrInitialDir;
  m_ofn.FlagsEx = IsOldStyleShellHere() ? OFN_EX_NOPLACESBAR : 0;
}

// The shell makes its view some time after the dialog is up, and tells nobody: every message is an occasion to look.
BOOL CZVOpenDlg::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (!shellViewSeen_) {
    shellViewSeen_ = OnShellViewReady();
  }
  return CFileDialog::OnWndMsg(message, wParam, lParam, result);
}

bool CZVOpenDlg::OnShellViewReady() {
  const HWND outer = ::GetParent(m_hWnd);
  const HWND view = outer ? ::FindWindowExW(outer, nullptr, L"SHELLDLL_DefView", nullptr) : nullptr;
  if (!view) {
    return false;
  }
  if (viewCommand_ != 0) {
    ::PostMessageW(view, WM_COMMAND, viewCommand_, 0);
  }
  ApplyDialogFont(outer);
  return true;
}

void CZVOpenDlg::OnInitDone() {
  PositionDialogWindow(::GetParent(m_hWnd), StoredPickerPosition(PickerFamily::kOpen));
  CentreWithoutOwner();
  ApplyHelpStyle();
  SetTexts();
  DeriveDefaultExtension();
  CFileDialog::OnInitDone();
}

// Over an owner the dialog stays where it has been put.
void CZVOpenDlg::CentreWithoutOwner() {
  if (::IsWindow(m_ofn.hwndOwner)) {
    return;
  }
  const HWND outer = ::GetParent(m_hWnd);
  RECT desktop, frame;
  ::GetWindowRect(::GetDesktopWindow(), &desktop);
  ::GetWindowRect(outer, &frame);
  const LONG left = (desktop.left + desktop.right - (frame.right - frame.left)) / 2;
  const LONG top = (desktop.top + desktop.bottom - (frame.bottom - frame.top)) / 2;
  ::SetWindowPos(outer, nullptr, std::max(left, 0L), std::max(top, 0L), 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CZVOpenDlg::ApplyHelpStyle() {
  const HWND outer = ::GetParent(m_hWnd);
  const LONG style = ::GetWindowLongW(outer, GWL_EXSTYLE);
  const bool hasHelp = (m_ofn.Flags & OFN_SHOWHELP) != 0;
  ::SetWindowLongW(outer, GWL_EXSTYLE, hasHelp ? style | WS_EX_CONTEXTHELP : style & ~WS_EX_CONTEXTHELP);
}

void CZVOpenDlg::SetTexts() {
  SetControlText(kShellTypeLabel, LoadDialogString(IDS_OPEN_FILE_TYPE));
  SetControlText(kShellNameLabel, LoadDialogString(IDS_OPEN_FILE_NAME));
  SetControlText(kShellLookInLabel, LoadDialogString(IDS_OPEN_LOOK_IN));
  SetControlText(IDOK, LoadDialogString(IDS_OPEN_OK));
  SetControlText(IDCANCEL, LoadDialogString(IDS_CANCEL));
  SetControlText(kShellHelp, LoadDialogString(IDS_HELP));
}

void CZVOpenDlg::DeriveDefaultExtension() {
  const LRESULT row = ::SendDlgItemMessageW(::GetParent(m_hWnd), kShellTypeCombo, CB_GETCURSEL, 0, 0);
  defaultExtension_ = DefaultExtension(m_ofn.lpstrFilter, static_cast<uint32_t>(row + 1), defaultExtension_);
  const std::string narrow(defaultExtension_.begin(), defaultExtension_.end());
  SetDefExt(narrow.c_str());
}

void CZVOpenDlg::OnTypeChange() {
  DeriveDefaultExtension();
  // The shell looks at the extension again when the name changes.
  const HWND box = FileNameBox(::GetParent(m_hWnd));
  CString name;
  ::GetWindowTextW(box, name.GetBuffer(MAX_PATH), MAX_PATH);
  name.ReleaseBuffer();
  ::SetWindowTextW(box, name);
}

BOOL CZVOpenDlg::OnFileNameOK() {
  const std::vector<std::wstring> paths = ChosenPaths();
  if (paths.empty()) {
    return TRUE;
  }
  const CWaitCursor wait;
  status_ = files_.Read(paths, params_->flags);
  if (status_ == SUCCESS) {
    files_.HandOver(*params_);
  } else {
    params_->files = nullptr;
  }
  return FALSE;
}

std::vector<std::wstring> CZVOpenDlg::ChosenPaths() const {
  if (m_ofn.Flags & OFN_ALLOWMULTISELECT) {
    return ParseSelectionList(m_ofn.lpstrFile);
  }
  std::wstring path(kSelectionLength + 1, L'\0');
  const LRESULT length = ::SendMessageW(::GetParent(m_hWnd), CDM_GETFILEPATH, kSelectionLength,
                                        reinterpret_cast<LPARAM>(path.data()));
  const bool fits = length > 0 && static_cast<uint32_t>(length) <= kSelectionLength;
  return ParseSelectionList(fits ? path.c_str() : m_ofn.lpstrFile);
}

BOOL CZVOpenDlg::OnHelpInfo(HELPINFO* info) {
  if (params_->helpCallback) {
    params_->helpCallback(kHelpNumber, info->iCtrlId, params_->helpUserData);
  }
  return TRUE;
}

void CZVOpenDlg::OnHelp() {
  if (params_->helpCallback) {
    params_->helpCallback(kHelpNumber, HELP_BUTTON_PRESSED, params_->helpUserData);
  }
}
