// CZVFileConversionDlgRotateDlg: the rotation that every picture of a run gets. Edit and track bar show one angle and are
// kept in step. The record is copied in before the run of the dialog and out after a result of 1, by the caller.
#pragma once

#include "conversion/records.h"
#include "services/zvdlgcommon/base_dialog.h"
#include "services/zvdlgwidgets/color_picker_ctrl.h"
#include "services/zvdlgwidgets/edit_ctrl.h"

class CZVFileConversionDlgRotateDlg : public CZVBaseDialog {
 public:
  explicit CZVFileConversionDlgRotateDlg(CWnd* parent);

  void SetOptions(const CONVERSIONROTATEOPTIONS& options) { options_ = options; }
  const CONVERSIONROTATEOPTIONS& GetOptions() const { return options_; }

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  void OnHScroll(UINT code, UINT position, CScrollBar* bar);
  void OnAngleEdited();
  void OnAngleCommitted();
  void OnInterpolationChanged();
  void OnResize();
  void OnColorChanged();

  DECLARE_MESSAGE_MAP()

 private:
  void ShowAngleInEdit();

  CONVERSIONROTATEOPTIONS options_;
  bool settingEdit_ = false;  // the edit changes under program control: its notification says nothing new
  CZVEditCtrl angleEdit_;
  CSliderCtrl angleBar_;
  CComboBox interpolation_;
  CZVColorPickerCtrl color_;
};
