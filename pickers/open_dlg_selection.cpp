// What is chosen: the file that the list shows as selected, and at OK the files that the caller gets.
#include "pickers/common_dialog.h"
#include "pickers/load_options_step.h"
#include "pickers/open_dlg.h"
#include "pickers/open_rules.h"
#include "pickers/page_probe.h"
#include "pickers/selection_choice.h"
#include "platform/afx.h"
#include "preview/path_kind.h"

namespace {

constexpr int kPathLength = 260;
constexpr LRESULT kLongestAnswer = 520;
constexpr int kRoomBeside = 2 * MAX_PATH;  // characters for terminators and an added extension

void SelectFileName(HWND outer) {
  if (const HWND combo = ::GetDlgItem(outer, kShellNameCombo)) {
    ::SendMessageW(combo, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
  } else {
    ::SendMessageW(FileNameBox(outer), EM_SETSEL, 0, -1);
  }
}

}  // namespace

// --- While the user chooses ---

// The platform fills the buffer that its record names at that moment. Names that do not fit would end the dialog, or on some
// systems be written past the buffer's end.
void CZVOpenDlg::MakeRoomForNames() {
  const int names = ::GetWindowTextLengthW(FileNameBox(Outer()));
  const auto needed = static_cast<size_t>(GetFolderPath().GetLength() + names + kRoomBeside);
  if (needed > selection_.size()) {
    std::wstring larger(needed, L'\0');
    selection_.copy(larger.data(), selection_.size());
    selection_.swap(larger);
    m_ofn.lpstrFile = selection_.data();
    m_ofn.nMaxFile = static_cast<DWORD>(selection_.size());
  }
}

LRESULT CZVOpenDlg::OnMakeRoom(WPARAM, LPARAM) {
  MakeRoomForNames();
  return 0;
}

bool CZVOpenDlg::TakeSelectedPath() {
  wchar_t path[kPathLength] = L"";
  const LRESULT length = ::SendMessageW(Outer(), CDM_GETFILEPATH, kPathLength, reinterpret_cast<LPARAM>(path));
  if (length < 0 || length > kLongestAnswer) {
    return false;
  }
  path[kPathLength - 1] = L'\0';
  currentPath_ = path;
  return true;
}

void CZVOpenDlg::OnFileNameChange() {
  MakeRoomForNames();
  if (!TakeSelectedPath()) {
    return;
  }
  const bool exists = IsFile(currentPath_);
  const CWaitCursor wait;
  if (currentPath_ != producer_.LastPath() || producer_.IsStamp()) {
    if (exists || !previewShown_) {
      // Another file starts at its first page, before its picture is made.
      currentPage_ = 1;
    }
    if (previewShown_) {
      LoadPreview();
    }
    if (exists && (previewShown_ || pageEdit_.IsWindowVisible())) {
      ShowPage(1);
      EnablePageControls(IsMultiPage(currentPath_.c_str()));
    }
  }
  const CString path = GetPathName();
  currentPreviewFile_ = IsFile(std::wstring(path)) ? path : CString();
  UpdatePreview();
  SelectFileName(Outer());
}

// --- At OK; TRUE keeps the dialog open ---

BOOL CZVOpenDlg::OnFileNameOK() {
  std::vector<OPENDLGFILEDATA> list = MakeFileList(ChosenPaths(), params_->flags);
  if (list.empty()) {
    return TRUE;
  }
  params_->showPreview = previewShown_;
  params_->showLoadOptions = loadOptionsSwitch_.GetCheck() == BST_CHECKED;
  status_ = SUCCESS;
  if (params_->showLoadOptions) {
    const LoadOptionsOutcome outcome = AskLoadOptions(list);
    if (outcome.next != AfterLoadOptions::kReadFiles) {
      status_ = outcome.status;
      return outcome.next == AfterLoadOptions::kStayOpen;
    }
  }
  ReadFiles(list);
  return FALSE;
}

std::vector<std::wstring> CZVOpenDlg::ChosenPaths() const {
  std::wstring answer(kSelectionLength + 2, L'\0');
  const LRESULT length =
      ::SendMessageW(Outer(), CDM_GETFILEPATH, kSelectionLength, reinterpret_cast<LPARAM>(answer.data()));
  const bool fits = length > 0 && static_cast<uint32_t>(length) <= kSelectionLength;
  const SelectionText choice =
      ChooseSelectionText(system_, m_ofn.lpstrFile != nullptr, (m_ofn.Flags & OFN_ALLOWMULTISELECT) != 0);
  // Some systems put the folder in front of a typed full path too, and none adds the extension by which the shell has found
  // the file; the dialog's own buffer has the name that the shell hands over.
  if (!fits || (choice == SelectionText::kAnswerAsList && !IsFile(answer))) {
    answer.assign(m_ofn.lpstrFile);
    answer.append(2, L'\0');
  }
  return ParseSelection(choice, answer.c_str(), m_ofn.lpstrFile);
}

LoadOptionsOutcome CZVOpenDlg::AskLoadOptions(std::vector<OPENDLGFILEDATA>& list) {
  const LoadOptionsRequest request = {params_->flags, static_cast<int32_t>(pageEdit_.GetValue()), firstXDpi_,
                                      firstYDpi_};
  return RunLoadOptions([] { return std::make_unique<EmptyLoadOptionsFrame>(); }, request, list);
}

void CZVOpenDlg::ReadFiles(const std::vector<OPENDLGFILEDATA>& list) {
  const CWaitCursor wait;
  OpenRequest request = {params_->flags, 0, params_->statusCallback, params_->statusCallbackUserData};
  if (!params_->showLoadOptions && list.size() == 1) {
    request.singlePage = static_cast<int32_t>(pageEdit_.GetValue());
  }
  status_ = files_.Read(list, request);
  files_.HandOver(*params_);
}
