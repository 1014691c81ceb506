#include "naming/naming_template_dlg.h"

#include "naming/depositories.h"
#include "naming/naming_template_processor.h"
#include "platform/afx.h"
#include "platform/menu.h"
#include "resources/naming_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {

using Settings = NAMINGTEMPLATESETTINGS;

constexpr UINT kHelpNumber = 116;
constexpr int kMostTemplateCharacters = 100;

constexpr TemplateDlgIds kIds = {
    .tagList = IDC_NAMING_TAG,
    .sampleList = IDL_NAMING_SAMPLES,
    .numeric =
        {
            .maskLabel = IDT_NAMING_NUM_MASK,
            .mask = IDE_NAMING_NUM_MASK,
            .incrementLabel = IDT_NAMING_NUM_INCREMENT,
            .increment = IDC_NAMING_NUM_INCREMENT,
            .startLabel = IDT_NAMING_NUM_START,
            .start = IDC_NAMING_NUM_START,
        },
    .alpha =
        {
            .maskLabel = IDT_NAMING_ALPHA_MASK,
            .mask = IDE_NAMING_ALPHA_MASK,
            .incrementLabel = IDT_NAMING_ALPHA_INCREMENT,
            .increment = IDC_NAMING_ALPHA_INCREMENT,
            .startLabel = IDT_NAMING_ALPHA_START,
            .start = IDC_NAMING_ALPHA_START,
            .upperCase = IDX_NAMING_ALPHA_UPPER,
            .lettersLabel = IDT_NAMING_ALPHA_LETTERS,
            .letterFrom = IDE_NAMING_ALPHA_FROM,
            .letterTo = IDE_NAMING_ALPHA_TO,
        },
    .alnum =
        {
            .maskLabel = IDT_NAMING_ALNUM_MASK,
            .mask = IDE_NAMING_ALNUM_MASK,
            .incrementLabel = IDT_NAMING_ALNUM_INCREMENT,
            .increment = IDC_NAMING_ALNUM_INCREMENT,
            .startLabel = IDT_NAMING_ALNUM_START,
            .start = IDC_NAMING_ALNUM_START,
            .upperCase = IDX_NAMING_ALNUM_UPPER,
            .lettersLabel = IDT_NAMING_ALNUM_LETTERS,
            .letterFrom = IDE_NAMING_ALNUM_LETTER_FROM,
            .letterTo = IDE_NAMING_ALNUM_LETTER_TO,
            .digitsLabel = IDT_NAMING_ALNUM_DIGITS,
            .digitFrom = IDE_NAMING_ALNUM_DIGIT_FROM,
            .digitTo = IDE_NAMING_ALNUM_DIGIT_TO,
        },
};

struct TagCommand {
  int32_t tag;
  UINT command;
};
constexpr TagCommand kTagCommands[] = {{TAG_NUM, ID_NAMING_TAG_NUM},           {TAG_ALPHA, ID_NAMING_TAG_ALPHA},
                                       {TAG_ALPHANUM, ID_NAMING_TAG_ALPHANUM}, {TAG_DATE, ID_NAMING_TAG_DATE},
                                       {TAG_TIME, ID_NAMING_TAG_TIME},         {TAG_SRC, ID_NAMING_TAG_SRC}};

void FillNames(CComboBox& list, const CStringDepository& names, int count) {
  for (int id = 0; id < count; ++id) list.AddString(names.GetString(id));
  list.SetCurSel(0);
}

}  // namespace

BEGIN_MESSAGE_MAP(CZVNamingTemplateDlg, CZVTemplateDlg)
  ON_BN_CLICKED(IDB_NAMING_TAGS, OnTagMenu)
  ON_COMMAND_RANGE(ID_NAMING_TAG_NUM, ID_NAMING_TAG_SRC, OnTagChosen)
END_MESSAGE_MAP()

CZVNamingTemplateDlg::CZVNamingTemplateDlg(CWnd* parent) : CZVTemplateDlg(IDD_NAMING, parent, kHelpNumber, kIds) {}

bool CZVNamingTemplateDlg::HasRecord() const {
  return AfxIsValidAddress(data_, sizeof(*data_), TRUE) && AfxIsValidAddress(data_->settings, sizeof(Settings), TRUE);
}

BOOL CZVNamingTemplateDlg::OnInitDialog() {
  CZVTemplateDlg::OnInitDialog();
  InitControls();
  template_.SetLimitText(kMostTemplateCharacters);
  tagButton_.LoadBitmap(IDB_NAMING_ART_TAGS);
  tagButton_.SetStyleEx(ZVBBS_DROPDOWN);
  tagButton_.SetDrawDropdownSeparator(false);
  FillNames(dateType_, DateTypeNames(), kDateTypeCount);
  FillNames(timeType_, TimeTypeNames(), kTimeTypeCount);
  FillNames(caseMode_, CaseNames(), kCaseCount);
  if (HasRecord()) {
    if (!data_->namingTemplate.IsEmpty()) template_.SetWindowText(data_->namingTemplate);
    LoadSettings(*data_->settings);
  }
  StartFollowing();
  return TRUE;
}

void CZVNamingTemplateDlg::SetDialogStrings() {
  CZVTemplateDlg::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_NAMING_TITLE));
  SetControlString(IDT_NAMING_TEMPLATE, IDS_NAMING_TEMPLATE);
  SetControlString(IDT_NAMING_SAMPLE, IDS_NAMING_SAMPLE);
  SetControlString(IDG_NAMING_TAGS, IDS_NAMING_TAGS_GROUP);
  SetControlString(IDT_NAMING_TAG, IDS_NAMING_TAG);
  SetControlString(IDG_NAMING_SETTINGS, IDS_NAMING_SETTINGS_GROUP);
  SetControlString(IDT_NAMING_NOTE, IDS_NAMING_NOTE);
  SetControlString(IDT_NAMING_DATE, IDS_NAMING_FORMAT);
  SetControlString(IDT_NAMING_TIME, IDS_NAMING_FORMAT);
  SetControlString(IDT_NAMING_CASE, IDS_NAMING_CASE);
  SetNumberingTexts({IDS_NAMING_MASK, IDS_NAMING_INCREMENT, IDS_NAMING_START, IDS_NAMING_LETTER_RANGE,
                     IDS_NAMING_DIGIT_RANGE, IDS_NAMING_UPPER_CASE});
}

void CZVNamingTemplateDlg::DoDataExchange(CDataExchange* exchange) {
  CZVTemplateDlg::DoDataExchange(exchange);
  DDX_Control(exchange, IDE_NAMING_TEMPLATE, template_);
  DDX_Control(exchange, IDB_NAMING_TAGS, tagButton_);
  DDX_Control(exchange, IDC_NAMING_DATE, dateType_);
  DDX_Control(exchange, IDC_NAMING_TIME, timeType_);
  DDX_Control(exchange, IDC_NAMING_CASE, caseMode_);
}

CString CZVNamingTemplateDlg::TemplateFromControls() const {
  CString text;
  template_.GetWindowText(text);
  return text;
}

void CZVNamingTemplateDlg::LoadSettings(const Settings& settings) {
  CZVTemplateDlg::LoadSettings(settings);
  dateType_.SetCurSel(settings.dateType);
  timeType_.SetCurSel(settings.timeType);
  caseMode_.SetCurSel(settings.caseMode);
}

void CZVNamingTemplateDlg::StoreSettings(Settings& settings) const {
  CZVTemplateDlg::StoreSettings(settings);
  settings.dateType = dateType_.GetCurSel();
  settings.timeType = timeType_.GetCurSel();
  settings.caseMode = caseMode_.GetCurSel();
}

void CZVNamingTemplateDlg::ShowTag(int32_t tag) {
  CZVTemplateDlg::ShowTag(tag);
  struct ListOfTag {
    int32_t tag;
    int labelId, listId;
  };
  constexpr ListOfTag kLists[] = {{TAG_DATE, IDT_NAMING_DATE, IDC_NAMING_DATE},
                                  {TAG_TIME, IDT_NAMING_TIME, IDC_NAMING_TIME},
                                  {TAG_SRC, IDT_NAMING_CASE, IDC_NAMING_CASE}};
  for (const ListOfTag& list : kLists) {
    const int show = list.tag == tag ? SW_SHOW : SW_HIDE;
    ::ShowWindow(::GetDlgItem(m_hWnd, list.labelId), show);
    ::ShowWindow(::GetDlgItem(m_hWnd, list.listId), show);
  }
}

bool CZVNamingTemplateDlg::IsChange(UINT controlId, UINT code) const {
  switch (controlId) {
    case IDE_NAMING_TEMPLATE: return code == EN_CHANGE;
    case IDC_NAMING_DATE:
    case IDC_NAMING_TIME:
    case IDC_NAMING_CASE: return code == CBN_SELCHANGE;
    default: return CZVTemplateDlg::IsChange(controlId, code);
  }
}

void CZVNamingTemplateDlg::OnTagMenu() {
  CMenu menu;
  if (!menu.LoadMenu(IDR_NAMING_TAGS)) return;
  CMenu* popup = menu.GetSubMenu(0);
  for (const TagCommand& item : kTagCommands) {
    if (!IsTagEnabled(EnabledTags(), item.tag)) popup->DeleteMenu(item.command, MF_BYCOMMAND);
  }
  CRect button;
  tagButton_.GetWindowRect(&button);
  popup->TrackPopupMenu(TPM_LEFTALIGN | TPM_LEFTBUTTON, button.left, button.bottom, this);
}

void CZVNamingTemplateDlg::OnTagChosen(UINT command) {
  CString text = TemplateFromControls();
  if (!text.IsEmpty()) text += L' ';
  for (const TagCommand& item : kTagCommands) {
    if (item.command == command) text += TagTexts().GetString(item.tag);
  }
  if (text.GetLength() > kMostTemplateCharacters) {
    ::MessageBeep(static_cast<UINT>(-1));
  } else if (!text.IsEmpty()) {
    template_.SetWindowText(text);
    template_.SetFocus();
    template_.SetSel(text.GetLength(), text.GetLength());
  }
  RebuildSamples();
}

void CZVNamingTemplateDlg::OnRefused() { template_.SetFocus(); }

void CZVNamingTemplateDlg::Commit() {
  if (!HasRecord()) return;
  data_->namingTemplate = TemplateFromControls();
  StoreSettings(*data_->settings);
}
