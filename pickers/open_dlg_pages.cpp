// The pages of the chosen file, and its file information.
#include "pickers/open_dlg.h"
#include "pickers/page_probe.h"
#include "platform/afx.h"
#include "preview/format_sets.h"
#include "resources/picker_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {

constexpr uint32_t kCountPages = 1;

bool Exists(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

}  // namespace

void CZVOpenDlg::ShowPage(int32_t page) {
  currentPage_ = page;
  pageReactionHeld_ = true;
  pageEdit_.SetValue(page);
  pageReactionHeld_ = false;
}

void CZVOpenDlg::EnablePageControls(bool enable) {
  pageEdit_.EnableWindow(enable);
  deleteButton_.EnableWindow(enable);
}

void CZVOpenDlg::OnPageChange() {
  if (!pageReactionHeld_ && params_) {
    TakeTypedPage(false);
  }
}

// A value that has been finished was taken while it was typed.
void CZVOpenDlg::OnPageCommitted() { TakeTypedPage(true); }

void CZVOpenDlg::TakeTypedPage(bool keepsPageThatExists) {
  const CWaitCursor wait;
  const auto typed = static_cast<int32_t>(pageEdit_.GetValue());
  int32_t reported = 0;
  if (!ProbePage(currentPath_.c_str(), typed, &reported)) {
    ShowPage(reported == 0 ? 1 : reported);
  } else if (!keepsPageThatExists) {
    currentPage_ = typed;
  }
  if (previewShown_) {
    LoadPreview();
  }
}

void CZVOpenDlg::OnDeletePage() {
  const CString caption = LoadDialogString(IDS_OPEN_DELETE_PAGE_CAPTION);
  CString question;
  question.Format(LoadDialogString(IDS_OPEN_DELETE_PAGE_TEXT), currentPage_);
  if (::MessageBoxW(m_hWnd, question, caption, MB_YESNO) != IDYES) {
    return;
  }
  if (DeleteFilePage(currentPath_.c_str(), currentPage_, 0, nullptr) != SUCCESS) {
    ::MessageBoxW(m_hWnd, LoadDialogString(IDS_OPEN_DELETE_PAGE_FAILED), caption, MB_OK);
    return;
  }
  int32_t page = currentPage_;
  if (!IsMultiPage(currentPath_.c_str())) {
    page = 1;
    EnablePageControls(false);
  } else {
    int32_t reported = 0;
    if (!ProbePage(currentPath_.c_str(), currentPage_, &reported)) {
      if (reported == 0) {
        EnablePageControls(false);
      } else {
        page = reported;
      }
    }
  }
  ShowPage(page);
  LoadPreview();
}

void CZVOpenDlg::OnFileInfo() {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = currentPage_;
  FILEINFO info = {};
  info.uStructSize = sizeof(info);
  const FILEINFO& held = producer_.Info();
  const int32_t status = ReadSelectedInfo(info, option);
  if (status != SUCCESS) {
    status_ = status;
    ShowReadFailure(status);
    return;
  }
  if (Wants(DLG_OPEN_VECTOR_ONLY) && !IsVectorFormat(held.format)) {
    ShowReadFailure(status);
    return;
  }
  if (IsLoadedAtResolution(held.format) && held.xResolution > 0 && held.yResolution > 0) {
    SetLoadDpi(held.xResolution, held.yResolution);
    GetFileInfo(currentPath_.c_str(), &info, sizeof(info), 0, &option);
  }
  if (held.format == FMT_JP2) {
    const int32_t width = info.width, height = info.height;
    SetLoadSize(FMT_JP2, 0, 0);
    GetFileInfo(currentPath_.c_str(), &info, sizeof(info), 0, &option);
    SetLoadSize(FMT_JP2, width, height);
  }
  if (info.pageNumber != currentPage_) {
    pageEdit_.SetValue(info.pageNumber);
  }
  if (CWnd* const pane = PreviewPane()) {
    pane->RedrawWindow();
  }
}

int32_t CZVOpenDlg::ReadSelectedInfo(FILEINFO& info, LOADFILEOPTION& option) {
  const bool full = Wants(DLG_OPEN_FULL_FILE_INFO) && !IsCostlyToCountPages(producer_.Info().format);
  TakeSelectedPath();
  const DWORD attributes = ::GetFileAttributesW(currentPath_.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
    return ERROR_FILE_MISSING;
  }
  SetLoadDpi(firstXDpi_, firstYDpi_);
  if (!Exists(currentPath_)) {
    if (defaultExtension_.empty()) {
      return ERROR_FILE_MISSING;
    }
    currentPath_ += L"." + defaultExtension_;
    if (!Exists(currentPath_)) {
      return ERROR_FILE_MISSING;
    }
  }
  return GetFileInfo(currentPath_.c_str(), &info, sizeof(info), full ? kCountPages : 0, &option);
}

void CZVOpenDlg::ShowReadFailure(int32_t status) {
  CString text;
  text.Format(LoadDialogString(IDS_OPEN_READ_FAILED_TEXT), status, currentPath_.c_str());
  ::MessageBoxW(m_hWnd, text, LoadDialogString(IDS_OPEN_READ_FAILED_CAPTION), MB_ICONEXCLAMATION);
}
