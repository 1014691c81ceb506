#include "naming/template_dlg.h"

#include <algorithm>

#include "naming/depositories.h"
#include "naming/file_name_rules.h"
#include "naming/naming_template_processor.h"
#include "services/zvdlgbase/string_ids.h"

namespace {
constexpr int kSampleCount = 25;
constexpr wchar_t kSampleName[] = L"FileName";
constexpr int kColumnMargin = 12;  // pixels that the list keeps free beside a text
}  // namespace

CZVTemplateDlg::CZVTemplateDlg(UINT templateId, CWnd* parent, UINT helpNumber, const TemplateDlgIds& ids)
    : CZVBaseDialog(templateId, parent, helpNumber),
      ids_(ids),
      sets_{CZVNumberingControls(kNumericFields, ids.numeric), CZVNumberingControls(kAlphaFields, ids.alpha),
            CZVNumberingControls(kAlnumFields, ids.alnum)} {}

void CZVTemplateDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, ids_.tagList, tags_);
  DDX_Control(exchange, ids_.sampleList, samples_);
  for (CZVNumberingControls& set : sets_) set.DoDataExchange(exchange);
}

void CZVTemplateDlg::InitControls() {
  following_ = false;
  FillTagList();
  for (CZVNumberingControls& set : sets_) set.SetUp();
  CRect client;
  samples_.GetClientRect(&client);
  samples_.InsertColumn(0, L"", LVCFMT_LEFT, client.Width());
}

void CZVTemplateDlg::FillTagList() {
  for (int32_t tag = 0; tag < kNamingTagCount; ++tag) {
    if (!IsTagEnabled(OfferedTags(), tag)) continue;
    const int index = tags_.AddString(TagTexts().GetString(tag));
    tags_.SetItemData(index, static_cast<DWORD_PTR>(tag));
  }
  tags_.SetCurSel(0);
}

int32_t CZVTemplateDlg::ChosenTag() const { return static_cast<int32_t>(tags_.GetItemData(tags_.GetCurSel())); }

void CZVTemplateDlg::ChooseTag(int32_t tag) {
  for (int index = 0; index < tags_.GetCount(); ++index) {
    if (static_cast<int32_t>(tags_.GetItemData(index)) == tag) tags_.SetCurSel(index);
  }
}

void CZVTemplateDlg::SetNumberingTexts(const NumberingTexts& texts) {
  for (const CZVNumberingControls& set : sets_) set.SetTexts(*this, texts);
}

void CZVTemplateDlg::LoadSettings(const NAMINGTEMPLATESETTINGS& settings) {
  for (CZVNumberingControls& set : sets_) set.Load(*this, settings);
}

void CZVTemplateDlg::StoreSettings(NAMINGTEMPLATESETTINGS& settings) const {
  for (const CZVNumberingControls& set : sets_) set.Store(*this, settings);
}

void CZVTemplateDlg::ShowTag(int32_t tag) {
  for (const CZVNumberingControls& set : sets_) set.Show(*this, set.Tag() == tag);
}

bool CZVTemplateDlg::IsChange(UINT controlId, UINT code) const {
  return std::any_of(sets_.begin(), sets_.end(),
                     [=](const CZVNumberingControls& set) { return set.IsChange(controlId, code); });
}

void CZVTemplateDlg::StartFollowing() {
  following_ = true;
  ShowTag(ChosenTag());
  RebuildSamples();
}

BOOL CZVTemplateDlg::OnCommand(WPARAM wParam, LPARAM lParam) {
  const UINT id = LOWORD(wParam), code = HIWORD(wParam);
  if (following_ && lParam != 0) {
    if (static_cast<int>(id) == ids_.tagList && code == CBN_SELCHANGE) {
      ShowTag(ChosenTag());
      RebuildSamples();
    } else if (IsChange(id, code)) {
      RebuildSamples();
    }
  }
  return CZVBaseDialog::OnCommand(wParam, lParam);
}

void CZVTemplateDlg::RebuildSamples() {
  if (!following_) return;
  samples_.SetRedraw(FALSE);
  samples_.DeleteAllItems();
  FillSamples();
  samples_.SetRedraw(TRUE);
  samples_.Invalidate();
}

void CZVTemplateDlg::ConfigureFromControls(CZVNamingTemplateProcessor& processor) const {
  NAMINGTEMPLATESETTINGS settings;
  StoreSettings(settings);
  processor.SetEnabledTags(EnabledTags());
  processor.Configure(settings);
}

void CZVTemplateDlg::FillSamples() {
  const CString namingTemplate = TemplateFromControls();
  if (namingTemplate.IsEmpty()) return;
  CZVNamingTemplateProcessor processor;
  ConfigureFromControls(processor);
  for (int row = 0; row < kSampleCount; ++row) {
    samples_.InsertItem(row, processor.ProcessTemplate(namingTemplate, kSampleName));
  }
  FitSampleColumn();
}

void CZVTemplateDlg::FitSampleColumn() {
  samples_.SetColumnWidth(0, LVSCW_AUTOSIZE);
  const int firstRow = samples_.GetStringWidth(samples_.GetItemText(0, 0)) + kColumnMargin;
  const int width = std::max(samples_.GetColumnWidth(0), firstRow);
  samples_.SetColumnWidth(0, std::min(width, ::GetSystemMetrics(SM_CXFULLSCREEN)));
}

void CZVTemplateDlg::OnOK() {
  CZVNamingTemplateProcessor processor;
  ConfigureFromControls(processor);
  if (!IsLegalFileName(processor.ProcessTemplate(TemplateFromControls(), kSampleName))) {
    MessageBox(GetDlgString(IDS_NAMING_BAD_NAME_TEXT), GetDlgString(IDS_NAMING_BAD_NAME_CAPTION), MB_OK | MB_ICONSTOP);
    OnRefused();
    return;
  }
  Commit();
  CZVBaseDialog::OnOK();
}
