// CZVFileConversionDlgResizeDlg: the size to which every picture of a run is brought. It edits the caller's record in place,
// and only on OK; the record must outlive the dialog.
#pragma once

#include "conversion/records.h"
#include "platform/controls.h"
#include "services/zvdlgcommon/base_dialog.h"
#include "services/zvdlgwidgets/value_combo.h"

class CZVFileConversionDlgResizeDlg : public CZVBaseDialog {
 public:
  explicit CZVFileConversionDlgResizeDlg(CWnd* parent);

  // 1, or 0 when the record cannot be written to.
  int32_t Initialize(CONVERSIONRESIZEOPTIONS* options);

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnEnable();
  void OnUnitChanged();

  DECLARE_MESSAGE_MAP()

 private:
  void FillLists();
  void ApplyUnit(int unit);
  int SelectedUnit() const;

  CONVERSIONRESIZEOPTIONS* options_ = nullptr;
  CZVValueCombo width_;
  CZVValueCombo height_;
  CComboBox unit_;
  CComboBox method_;
};
