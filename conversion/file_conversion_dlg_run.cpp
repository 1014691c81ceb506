// Starting a run from the conversion dialog, serving it from the lists, and bringing the lists up to date after it.
#include "conversion/ask_box_dlg.h"
#include "conversion/file_conversion_dlg.h"
#include "conversion/progress_dlg.h"
#include "conversion/run_rules.h"
#include "conversion/update_list_progress_dlg.h"
#include "naming/unique_name.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"

void CZVFileConversionDlg::OnConvert() {
  if (files_.GetSelectedCount() == 0) {
    EnableFileControl(IDB_CONV_CONVERT, false);
    return;
  }
  CheckDestinationFolder();
  processor_.Configure(namingSettings_);
  const std::vector<int> formatRows = formatList_.GetSelectedRows();
  if (formatRows.empty()) {
    return;
  }
  CONVERSIONRUNDATA data;
  BuildConversionQueue(formatRows, GetSelectedFileRows(), data.queue);
  log_.RemoveAll();
  RunQueue(data);
  fileList_.RemoveFlagged();
  if (fileList_.GetItemCount() == 0) {
    OnListEmptied();
  } else if (files_.GetSelectedCount() == 0) {
    OnNothingSelected();
  }
  log_.Copy(data.log);
  ShowLogReport();
  RefreshRows();
  UpdatePageControls();
  UpdatePreview();
}

void CZVFileConversionDlg::RunQueue(CONVERSIONRUNDATA& data) {
  ConversionSettings settings;
  settings.overwriteMode = overwriteMode_;
  settings.deleteSource = deleteSource_ != 0;
  settings.useOriginalFolder = useOriginalFolder_ != 0;
  settings.rotate = rotateOptions_;
  settings.resize = resizeOptions_;
  CZVConversionRun run(*this, settings);
  CZVFileConversionDlgProgressDlg progress(this);
  progress.InheritHelp(*this);
  if (progress.Initialize(&run, &data)) {
    progressDlg_ = &progress;
    progress.DoModal();
    progressDlg_ = nullptr;
  }
}

void CZVFileConversionDlg::RefreshRows() {
  int32_t count = fileList_.GetItemCount();
  CZVFileConversionDlgUpdateListProgressDlg progress(this);
  progress.InheritHelp(*this);
  if (progress.Initialize([this](int row) { RefreshRow(row); }, &count)) {
    progress.DoModal();
  }
}

// A run forgets all page selections.
void CZVFileConversionDlg::RefreshRow(int row) {
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  if (::GetFileInfo(fileList_.GetPath(row), &info, sizeof info, 1, nullptr) != SUCCESS) {
    return;
  }
  FreePageArray(row);
  CONVERSIONFILEOPTIONS options;
  options.pageTotal = info.totalPages;
  fileList_.SetItemOptions(options, row);
  fileList_.SetSubItemText(row, 1, CString());
}

CString CZVFileConversionDlg::GetSourcePath(int fileRow) { return fileList_.GetPath(fileRow); }

bool CZVFileConversionDlg::GetSourceOptions(int fileRow, CONVERSIONFILEOPTIONS& options) {
  return fileList_.GetItemOptions(fileRow, options);
}

const CONVERSIONFORMATITEM* CZVFileConversionDlg::GetFormatItem(int formatRow) {
  return formatList_.GetItem(formatRow);
}

CString CZVFileConversionDlg::GetDestinationFolder() {
  const CString folder = GetControlText(IDE_CONV_FOLDER);
  if (!folder.IsEmpty()) {
    return folder;
  }
  folderEdit_.SetWindowText(L"C:\\");
  return L"C:\\";
}

CString CZVFileConversionDlg::ExpandName(const CString& sourceName) {
  return processor_.ProcessTemplate(namingData_.namingTemplate, sourceName);
}

CString CZVFileConversionDlg::FindFreeName(const CString& destination) {
  return MakeUniqueName(destination, collisionData_, &CZVConversionRun::FileExists);
}

int32_t CZVFileConversionDlg::AskOverwrite(const CString& destination) {
  CString message;
  message.Format(GetDlgString(IDS_ASK_MESSAGE), destination);
  CZVFileConversionDlgAskBoxDlg ask(progressDlg_, message);
  ask.InheritHelp(*this);
  ask.DoModal();
  return ask.GetAnswer();
}

void CZVFileConversionDlg::ReportDeletionFailure(const CString& source) {
  CString message;
  message.Format(GetDlgString(IDS_CONV_DELETE_FAILED_TEXT), source);
  progressDlg_->MessageBox(message, GetDlgString(IDS_CONV_DELETE_FAILED_CAPTION), MB_OK | MB_ICONWARNING);
}

void CZVFileConversionDlg::MarkSourceDeleted(int fileRow) { fileList_.SetRemoveFlag(1, fileRow); }
