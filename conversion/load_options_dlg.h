// CZVFileConversionDlgLoadOptionsDlg: which pages of the selected files are to be converted. The dialog always opens with
// the list "1": a selection made before is not shown again. It owns the page array that OK makes until GetOptions has handed
// it out; the caller frees that one with FreePages.
#pragma once

#include "conversion/records.h"
#include "services/zvdlgcommon/base_dialog.h"
#include "services/zvdlgwidgets/edit_ctrl.h"

class CZVFileConversionDlgLoadOptionsDlg : public CZVBaseDialog {
 public:
  explicit CZVFileConversionDlgLoadOptionsDlg(CWnd* parent);
  ~CZVFileConversionDlgLoadOptionsDlg() override;

  // Copies the record in, help callback and user data included; allPages 0 opens with "All Pages". Always 1.
  int32_t SetOptions(const CONVERSIONFILEOPTIONS& options);
  // Copies the result out, its page array included; allPages stays as it is there. ERROR_BAD_ARGUMENT for null.
  int32_t GetOptions(CONVERSIONFILEOPTIONS* options);
  void SetContextHelp(bool on) { contextHelp_ = on; }

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnAllPages();
  void OnPageList();

  DECLARE_MESSAGE_MAP()

 private:
  void ApplyChoice(bool usePageList);

  CONVERSIONFILEOPTIONS options_;
  bool usePageList_ = false;
  bool contextHelp_ = false;
  CZVEditCtrl pageEdit_;
};
