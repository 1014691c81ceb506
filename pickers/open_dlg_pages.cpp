// The pages of the chosen file, and its file information.
#include "pickers/file_info_step.h"
#include "pickers/open_dlg.h"
#include "pickers/page_probe.h"
#include "platform/afx.h"
#include "resources/picker_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"

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
  TakeSelectedPath();
  const FileInfoReading reading = ReadFileInfo(
      {currentPath_, defaultExtension_, currentPage_, params_->flags, producer_.Info(), firstXDpi_, firstYDpi_});
  currentPath_ = reading.path;
  if (reading.status != SUCCESS) {
    status_ = reading.status;
  }
  if (reading.status != SUCCESS || reading.refused) {
    ShowReadFailure(reading.status);
    return;
  }
  if (reading.info.pageNumber != currentPage_) {
    pageEdit_.SetValue(reading.info.pageNumber);
  }
  if (CWnd* const pane = PreviewPane()) {
    pane->RedrawWindow();
  }
  ShowFileInfo(fileInfoDialogs_, reading, params_->flags);
}

void CZVOpenDlg::ShowReadFailure(int32_t status) {
  CString text;
  text.Format(LoadDialogString(IDS_OPEN_READ_FAILED_TEXT), status, currentPath_.c_str());
  ::MessageBoxW(m_hWnd, text, LoadDialogString(IDS_OPEN_READ_FAILED_CAPTION), MB_ICONEXCLAMATION);
}
