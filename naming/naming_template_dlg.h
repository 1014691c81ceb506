// CZVNamingTemplateDlg: where the user writes the output template of a conversion and sets the parameters of each tag. It
// edits the caller's record, and only on OK.
#pragma once

#include "naming/template_dlg.h"
#include "services/zvdlgwidgets/bitmap_button.h"

class CZVNamingTemplateDlg : public CZVTemplateDlg {
 public:
  explicit CZVNamingTemplateDlg(CWnd* parent);

  // Before DoModal. Record and settings must outlive the dialog; one that cannot be written to is left alone.
  void SetData(NAMINGTEMPLATEDATA* data) { data_ = data; }

 protected:
  BOOL OnInitDialog() override;
  void SetDialogStrings() override;
  void DoDataExchange(CDataExchange* exchange) override;
  CString TemplateFromControls() const override;
  void LoadSettings(const NAMINGTEMPLATESETTINGS& settings) override;
  void StoreSettings(NAMINGTEMPLATESETTINGS& settings) const override;
  void ShowTag(int32_t tag) override;
  bool IsChange(UINT controlId, UINT code) const override;
  void OnRefused() override;
  void Commit() override;
  uint32_t OfferedTags() const override { return EnabledTags(); }
  void OnTagMenu();
  void OnTagChosen(UINT command);

  DECLARE_MESSAGE_MAP()

 private:
  bool HasRecord() const;

  NAMINGTEMPLATEDATA* data_ = nullptr;
  CEdit template_;
  CZVBitmapButton tagButton_;
  CComboBox dateType_;
  CComboBox timeType_;
  CComboBox caseMode_;
};
