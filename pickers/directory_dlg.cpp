#include "pickers/directory_dlg.h"

#include <algorithm>
#include <cwchar>

#include "include/zvfiledlg.h"
#include "pickers/common_dialog.h"
#include "pickers/directory_rules.h"
#include "pickers/picker_position.h"
#include "platform/module_context.h"
#include "resources/picker_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {

constexpr uint32_t kHelpNumber = 13;
constexpr int kFrameworkHelpButton = 9;
// The platform does not end the dialog with an empty name box. Told not to validate, it takes any name without looking for
// such a file.
constexpr wchar_t kNameFiller[] = L"xx";

}  // namespace

BEGIN_MESSAGE_MAP(CZVDirectoryDlg, CFileDialog)
  ON_WM_HELPINFO()
  ON_COMMAND(ID_HELP, OnHelp)
END_MESSAGE_MAP()

CZVDirectoryDlg::CZVDirectoryDlg(CWnd* parent)
    : CFileDialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_ENABLEHOOK | OFN_ENABLETEMPLATE | OFN_EXPLORER,
                  nullptr, parent, 0, TRUE) {}

int32_t CZVDirectoryDlg::PickDirectory(DIRECTORYDLGPARAMS& params) {
  const int32_t usable = CheckDirectoryParams(params);
  if (usable != SUCCESS) {
    return usable;
  }
  const int32_t status = Run(params);
  return DeliverFolder(currentFolder_, status, params.directoryBuffer, params.bufferLength);
}

int32_t CZVDirectoryDlg::Run(DIRECTORYDLGPARAMS& params) {
  const size_t length = wcsnlen(params.directoryBuffer, static_cast<size_t>(params.bufferLength));
  currentFolder_ = CString(params.directoryBuffer, static_cast<int>(length));
  const CString startFolder = currentFolder_;
  wchar_t fileName[MAX_PATH] = L"";

  m_ofn.hInstance = AfxGetResourceHandle();
  m_ofn.lpstrFile = fileName;
  m_ofn.nMaxFile = MAX_PATH;
  m_ofn.lpstrInitialDir = startFolder;
  m_ofn.lpstrTitle = params.title;
  m_ofn.lpTemplateName = MAKEINTRESOURCEW(IDD_DIRECTORY);
  m_ofn.lpstrFilter = params.filter;
  m_ofn.nFilterIndex = static_cast<DWORD>(params.filterIndex);
  m_ofn.Flags =
      OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_ENABLEHOOK | OFN_ENABLETEMPLATE | OFN_NOVALIDATE | OFN_EXPLORER;
  m_ofn.FlagsEx = OFN_EX_NOPLACESBAR;
  hasFilter_ = params.filter != nullptr;
  helpCallback_ = params.helpCallback;
  helpUserData_ = params.helpUserData;
  if (helpCallback_) {
    m_ofn.Flags |= OFN_SHOWHELP;
  }

  const INT_PTR answer = DoModal();
  if (answer == IDOK) {
    params.filterIndex = static_cast<int32_t>(m_ofn.nFilterIndex);
    return SUCCESS;
  }
  return answer == -1 || ::CommDlgExtendedError() != 0 ? ERROR_DIALOG_FAILED : SUCCESS_DLG_CANCEL;
}

void CZVDirectoryDlg::DoDataExchange(CDataExchange* /*exchange*/) {}

BOOL CZVDirectoryDlg::OnInitDialog() { return CFileDialog::OnInitDialog(); }

void CZVDirectoryDlg::OnInitDone() {
  CFileDialog::OnInitDone();
  const HWND outer = ::GetParent(m_hWnd);
  ApplyDialogFont(outer);
  SetTexts();
  ::ShowWindow(FileNameBox(outer), SW_HIDE);
  HideControl(kShellNameLabel);
  if (hasFilter_) {
    MoveFilterRow();
  } else {
    HideControl(kShellTypeCombo);
    HideControl(kShellTypeLabel);
    UseCompactLayout();
  }
  PositionDialogWindow(outer, StoredPickerPosition(PickerFamily::kDirectory));
}

void CZVDirectoryDlg::SetTexts() {
  const HWND outer = ::GetParent(m_hWnd);
  if (!m_ofn.lpstrTitle) {
    ::SetWindowTextW(outer, LoadDialogString(IDS_FOLDER_TITLE));
  }
  SetControlString(outer, kShellLookInLabel, IDS_FOLDER_LOOK_IN);
  SetControlString(outer, kShellTypeLabel, IDS_FOLDER_FILE_TYPE);
  SetControlString(m_hWnd, IDT_DIRECTORY_FOLDER, IDS_FOLDER_SELECTED);
  SetControlString(outer, IDOK, IDS_FOLDER_OK);
  SetControlString(outer, IDCANCEL, IDS_CANCEL);
  // The Help button of this dialog is the platform's and keeps the platform's label.
  SetControlString(outer, kFrameworkHelpButton, IDS_HELP);
}

// Into the place of the hidden name row: each control by its own distance, so that all tops are that of OK.
void CZVDirectoryDlg::MoveFilterRow() {
  const HWND outer = ::GetParent(m_hWnd);
  const LONG top = RectInside(outer, ::GetDlgItem(outer, IDOK)).top;
  for (const int id : {kShellTypeCombo, kShellTypeLabel}) {
    const HWND control = ::GetDlgItem(outer, id);
    RECT rect = RectInside(outer, control);
    ::OffsetRect(&rect, 0, top - rect.top);
    MoveInside(control, rect);
  }
}

void CZVDirectoryDlg::UseCompactLayout() {
  const HWND outer = ::GetParent(m_hWnd);
  const HWND list = ::GetDlgItem(outer, kShellList);
  const HWND label = ::GetDlgItem(m_hWnd, IDT_DIRECTORY_FOLDER);
  const HWND ok = ::GetDlgItem(outer, IDOK);
  const HWND cancel = ::GetDlgItem(outer, IDCANCEL);
  RECT hook;
  GetClientRect(&hook);

  const CompactLayout layout =
      LayOutCompactPicker({RectInside(outer, list), RectInside(m_hWnd, label), RectInside(outer, ok),
                           RectInside(outer, cancel), hook.right, helpCallback_ != nullptr});
  MoveInside(list, layout.list);
  MoveInside(label, layout.label);
  MoveInside(::GetDlgItem(m_hWnd, IDE_DIRECTORY_FOLDER), layout.edit);
  MoveInside(ok, layout.ok);
  MoveInside(cancel, layout.cancel);
  if (helpCallback_) {
    MoveInside(::GetDlgItem(outer, kShellHelp), layout.help);
  }
}

void CZVDirectoryDlg::OnFolderChange() { TrackFolder(); }

void CZVDirectoryDlg::OnFileNameChange() { TrackFolder(); }

BOOL CZVDirectoryDlg::OnFileNameOK() {
  TrackFolder();
  return currentFolder_.IsEmpty();
}

void CZVDirectoryDlg::TrackFolder() {
  currentFolder_ = FolderInFileSystem(GetFolderPath());
  if (currentFolder_.IsEmpty()) {
    return;
  }
  SetDlgItemText(IDE_DIRECTORY_FOLDER, currentFolder_);
  ::SetWindowTextW(FileNameBox(::GetParent(m_hWnd)), kNameFiller);
}

BOOL CZVDirectoryDlg::OnHelpInfo(HELPINFO* info) {
  if (helpCallback_) {
    helpCallback_(kHelpNumber, info->iCtrlId, helpUserData_);
  }
  return TRUE;
}

void CZVDirectoryDlg::OnHelp() {
  if (helpCallback_) {
    helpCallback_(kHelpNumber, HELP_BUTTON_PRESSED, helpUserData_);
  }
}
