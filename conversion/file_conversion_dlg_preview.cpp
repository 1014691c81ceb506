// The preview of the conversion dialog and its page controls.
#include "conversion/control_state.h"
#include "conversion/file_conversion_dlg.h"
#include "platform/afx.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"

void CZVFileConversionDlg::UpdatePageControls() {
  const std::vector<int> rows = GetSelectedFileRows();
  if (rows.size() != 1) {
    return;
  }
  CONVERSIONFILEOPTIONS options;
  fileList_.GetItemOptions(rows.front(), options);
  pages_.Start(options.pageTotal);
  ShowPage(pages_.Current());
  ApplyPageNavigation();
}

void CZVFileConversionDlg::ShowPage(int page) {
  settingPage_ = true;
  pageEdit_.SetValue(page);
  settingPage_ = false;
}

void CZVFileConversionDlg::ApplyPageNavigation() {
  EnableKeepingFocus(pageEdit_, pages_.EditEnabled());
  EnableKeepingFocus(::GetDlgItem(m_hWnd, IDB_CONV_PAGE_BACK), pages_.BackEnabled());
  EnableKeepingFocus(::GetDlgItem(m_hWnd, IDB_CONV_PAGE_FORWARD), pages_.ForwardEnabled());
  SetDlgItemText(IDT_CONV_PAGE_OF, pages_.PageOfText());
}

void CZVFileConversionDlg::DisablePageControls() {
  pages_.Disable();
  ApplyPageNavigation();
}

void CZVFileConversionDlg::OnPageBack() {
  ShowPage(pages_.Clamp(static_cast<int>(pageEdit_.GetValue()) - 1));
  ApplyPageNavigation();
  UpdatePreview();
}

void CZVFileConversionDlg::OnPageForward() {
  ShowPage(pages_.Clamp(static_cast<int>(pageEdit_.GetValue()) + 1));
  ApplyPageNavigation();
  UpdatePreview();
}

void CZVFileConversionDlg::OnPageChanged() {
  if (settingPage_ || !pages_.EditEnabled()) {
    return;
  }
  pages_.Entered(static_cast<int>(pageEdit_.GetValue()));
  ApplyPageNavigation();
  UpdatePreview();
}

// The user left the edit: a number outside the file becomes its nearest page.
void CZVFileConversionDlg::OnPageCommitted() {
  if (!pages_.EditEnabled()) {
    return;
  }
  const int entered = static_cast<int>(pageEdit_.GetValue());
  const int page = pages_.Clamp(entered);
  if (page == entered) {
    return;
  }
  ShowPage(page);
  ApplyPageNavigation();
  UpdatePreview();
}

// Without a preview pane nothing is loaded.
void CZVFileConversionDlg::UpdatePreview() {
  const std::vector<int> rows = GetSelectedFileRows();
  if (rows.size() != 1 || !(uiFlags_ & CONVDLG_SHOW_PREVIEW)) {
    return;
  }
  const int page = static_cast<int>(pageEdit_.GetValue());
  if (!pages_.IsShowable(page)) {
    ClearPreview();
    return;
  }
  const CWaitCursor wait;
  LOADFILEOPTION option = {};
  ::GetDefaultLoadFileOption(&option, sizeof option);
  option.pageNumber = page;
  const CString path = fileList_.GetPath(rows.front());
  CZVBitmap picture;
  if (picture.Read(path, page, 0, &option) == SUCCESS) {
    viewer_.SetBitmap(std::move(picture));
    return;
  }
  ClearPreview();
  // The list is in the middle of a notification about this very row: it is removed when that is over.
  failedPreviewPath_ = path;
  PostMessage(kPreviewFailedMessage);
}

void CZVFileConversionDlg::ClearPreview() { viewer_.Clear(); }

LRESULT CZVFileConversionDlg::OnPreviewFailed(WPARAM, LPARAM) {
  if (failedPreviewPath_.IsEmpty()) {
    return 0;
  }
  const CString path = failedPreviewPath_;
  failedPreviewPath_.Empty();
  CString message;
  message.Format(GetDlgString(IDS_CONV_PREVIEW_FAILED_TEXT), path);
  MessageBox(message, GetDlgString(IDS_CONV_PREVIEW_FAILED_CAPTION), MB_OK | MB_ICONWARNING);
  for (int row = 0; row < fileList_.GetItemCount(); ++row) {
    if (fileList_.GetPath(row) == path) {
      changingList_ = true;
      fileList_.RemoveFile(row);
      changingList_ = false;
      break;
    }
  }
  if (fileList_.GetItemCount() == 0) {
    OnListEmptied();
  } else if (files_.GetSelectedCount() == 0) {
    OnNothingSelected();
  }
  return 0;
}
