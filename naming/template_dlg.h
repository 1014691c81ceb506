// CZVTemplateDlg: what the two dialogs that make a naming template have in common: the choice of a tag, the controls of the
// chosen tag's parameters, the list of sample names, which is made anew with every change, and the test of the template at
// OK. A derived dialog says how the template reads and what else it shows. The record and its settings stay the caller's;
// they are written on OK alone.
#pragma once

#include <array>

#include "naming/numbering_controls.h"
#include "services/zvdlgcommon/base_dialog.h"

class CZVNamingTemplateProcessor;

struct TemplateDlgIds {
  int tagList;
  int sampleList;
  NumberingIds numeric, alpha, alnum;
};

class CZVTemplateDlg : public CZVBaseDialog {
 protected:
  // The ids must outlive the dialog.
  CZVTemplateDlg(UINT templateId, CWnd* parent, UINT helpNumber, const TemplateDlgIds& ids);

  // The template as the controls make it.
  virtual CString TemplateFromControls() const = 0;
  // Copies between the controls and the settings; the derived class calls the base version and adds its own.
  virtual void LoadSettings(const NAMINGTEMPLATESETTINGS& settings);
  virtual void StoreSettings(NAMINGTEMPLATESETTINGS& settings) const;
  // Shows what belongs to the chosen tag.
  virtual void ShowTag(int32_t tag);
  // Further notifications that tell of a change.
  virtual bool IsChange(UINT controlId, UINT code) const;
  // A template that gives no file name was refused.
  virtual void OnRefused() {}
  // The template passed: the record is to be written.
  virtual void Commit() = 0;

  // Ids of the tags offered, one bit each.
  virtual uint32_t OfferedTags() const = 0;
  uint32_t EnabledTags() const { return kAllTags; }
  int32_t ChosenTag() const;
  void ChooseTag(int32_t tag);
  void SetNumberingTexts(const NumberingTexts& texts);
  void InitControls();
  // Ends the start: from here on changes are followed.
  void StartFollowing();
  void RebuildSamples();

  void OnOK() override;
  void DoDataExchange(CDataExchange* exchange) override;
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  static constexpr uint32_t kAllTags = 63;

 private:
  void FillTagList();
  void ConfigureFromControls(CZVNamingTemplateProcessor& processor) const;
  void FillSamples();
  void FitSampleColumn();

  const TemplateDlgIds& ids_;
  bool following_ = false;
  std::array<CZVNumberingControls, 3> sets_;
  CComboBox tags_;
  CListCtrl samples_;
};
