// The preview of the conversion dialog and its page controls.
#include <algorithm>
#include <limits>

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

// A number as long as the edit lets it be, brought within what an int and its neighbours can hold.
int CZVFileConversionDlg::EnteredPage() const {
  constexpr double kHighest = std::numeric_limits<int>::max() - 1;
  return static_cast<int>(std::clamp(pageEdit_.GetValue(), 0.0, kHighest));
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
  ShowPage(pages_.Clamp(EnteredPage() - 1));
  ApplyPageNavigation();
  UpdatePreview();
}

void CZVFileConversionDlg::OnPageForward() {
  ShowPage(pages_.Clamp(EnteredPage() + 1));
  ApplyPageNavigation();
  UpdatePreview();
}

void CZVFileConversionDlg::OnPageChanged() {
  if (settingPage_ || !pages_.EditEnabled()) {
    return;
  }
  pages_.Entered(EnteredPage());
  ApplyPageNavigation();
  UpdatePreview();
}

// The user left the edit: a number outside the file becomes its nearest page.
void CZVFileConversionDlg::OnPageCommitted() {
  if (!pages_.EditEnabled()) {
    return;
  }
  const int entered = EnteredPage();
  const int page = pages_.Clamp(entered);
  if (page == entered) {
    return;
  }
  ShowPage(page);
  ApplyPageNavigation();
  UpdatePreview();
}

// The picture is loaded even when its pane is hidden: a file that cannot be shown is to leave the list either way.
void CZVFileConversionDlg::UpdatePreview() {
  const std::vector<int> rows = GetSelectedFileRows();
  if (rows.size() != 1) {
    return;
  }
  const int page = EnteredPage();
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
    shownPath_ = path;
    return;
  }
  ClearPreview();
  NotePreviewFailure(path);
}

void CZVFileConversionDlg::ClearPreview() {
  viewer_.Clear();
  shownPath_.Empty();
}

// The list is in the middle of a notification about this very row: it is removed when that is over.
void CZVFileConversionDlg::NotePreviewFailure(const CString& path) {
  for (int i = 0; i < failedPreviews_.GetSize(); ++i) {
    if (failedPreviews_[i] == path) {
      return;
    }
  }
  failedPreviews_.Add(path);
  if (failedPreviews_.GetSize() == 1) {
    PostMessage(kPreviewFailedMessage);
  }
}

// A path stays in the array while its message stands, so that another failure waits for its turn.
LRESULT CZVFileConversionDlg::OnPreviewFailed(WPARAM, LPARAM) {
  while (m_hWnd && !failedPreviews_.IsEmpty()) {
    const CString path = failedPreviews_[0];
    RemoveUnshowable(path);
    failedPreviews_.RemoveAt(0);
  }
  return 0;
}

void CZVFileConversionDlg::RemoveUnshowable(const CString& path) {
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
}
