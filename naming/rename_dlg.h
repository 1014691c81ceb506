// CZVRenameDlg: the rule for a free name when a destination file is in the way: one numbering tag, before or behind the
// source name. It edits the caller's record, and only on OK.
#pragma once

#include "naming/template_dlg.h"

class CZVRenameDlg : public CZVTemplateDlg {
 public:
  explicit CZVRenameDlg(CWnd* parent);

  // Before DoModal. Record and settings must outlive the dialog; one that cannot be written to is left alone.
  void SetData(RENAMETEMPLATEDATA* data) { data_ = data; }

 protected:
  BOOL OnInitDialog() override;
  void SetDialogStrings() override;
  CString TemplateFromControls() const override;
  bool IsChange(UINT controlId, UINT code) const override;
  void Commit() override;
  uint32_t OfferedTags() const override;

 private:
  bool HasRecord() const;

  RENAMETEMPLATEDATA* data_ = nullptr;
};
