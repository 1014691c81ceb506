// The dialogs behind the buttons of the conversion dialog: each edits one of its records.
#include "conversion/file_conversion_dlg.h"
#include "conversion/load_options_dlg.h"
#include "conversion/log_report_dlg.h"
#include "conversion/page_list.h"
#include "conversion/resize_dlg.h"
#include "conversion/rotate_dlg.h"
#include "naming/naming_template_dlg.h"
#include "naming/rename_dlg.h"
#include "resources/conversion_ids.h"

void CZVFileConversionDlg::OnPageOptions() {
  CZVFileConversionDlgLoadOptionsDlg dialog(this);
  CONVERSIONFILEOPTIONS chosen;
  chosen.helpCallback = GetHelpCallback();
  chosen.helpUserData = GetHelpCallBackUserData();
  dialog.SetContextHelp(uiFlags_ & CONVDLG_CONTEXT_HELP);
  dialog.SetOptions(chosen);
  if (dialog.DoModal() != IDOK || dialog.GetOptions(&chosen) != SUCCESS) {
    return;
  }
  const std::vector<int32_t> pages(chosen.pages, chosen.pages + (chosen.pages ? chosen.pageCount : 0));
  for (const int row : GetSelectedFileRows()) {
    ChoosePages(row, pages);
  }
  FreePages(chosen);
}

// Each row keeps those of the pages that its file has.
void CZVFileConversionDlg::ChoosePages(int row, const std::vector<int32_t>& pages) {
  CONVERSIONFILEOPTIONS options;
  if (!fileList_.GetItemOptions(row, options)) {
    return;
  }
  FreePages(options);
  AssignPages(options, ClipPages(pages, options.pageTotal));
  fileList_.SetItemOptions(options, row);
  fileList_.SetSubItemText(row, 1, PagesColumnText(options.pages, options.pageCount));
}

void CZVFileConversionDlg::OnNamingTemplate() {
  CZVNamingTemplateDlg dialog(this);
  dialog.InheritHelp(*this);
  dialog.SetData(&namingData_);
  dialog.DoModal();
}

void CZVFileConversionDlg::OnCustomize() {
  CZVRenameDlg dialog(this);
  dialog.InheritHelp(*this);
  dialog.SetData(&collisionData_);
  dialog.DoModal();
}

void CZVFileConversionDlg::OnResize() {
  CZVFileConversionDlgResizeDlg dialog(this);
  dialog.InheritHelp(*this);
  resizeOptions_.contextHelp = (uiFlags_ & CONVDLG_CONTEXT_HELP) != 0;
  if (dialog.Initialize(&resizeOptions_) == SUCCESS) {
    dialog.DoModal();
  }
}

void CZVFileConversionDlg::OnRotate() {
  CZVFileConversionDlgRotateDlg dialog(this);
  dialog.InheritHelp(*this);
  rotateOptions_.contextHelp = (uiFlags_ & CONVDLG_CONTEXT_HELP) != 0;
  dialog.SetOptions(rotateOptions_);
  if (dialog.DoModal() == IDOK) {
    rotateOptions_ = dialog.GetOptions();
  }
}

void CZVFileConversionDlg::ShowLogReport() {
  if (!logReport_ || log_.IsEmpty()) {
    return;
  }
  LOGREPORTDLGDATA data;
  data.log.Copy(log_);
  CZVFileConversionDlgLogReportDlg dialog(this);
  dialog.InheritHelp(*this);
  if (dialog.SetData(&data) == SUCCESS) {
    dialog.DoModal();
  }
}
