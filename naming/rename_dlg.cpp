#include "naming/rename_dlg.h"

#include "naming/depositories.h"
#include "platform/afx.h"
#include "resources/naming_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {

using Settings = NAMINGTEMPLATESETTINGS;

constexpr UINT kHelpNumber = 117;

constexpr TemplateDlgIds kIds = {
    .tagList = IDC_RENAME_TAG,
    .sampleList = IDL_RENAME_SAMPLES,
    .numeric =
        {
            .maskLabel = IDT_RENAME_NUM_MASK,
            .mask = IDE_RENAME_NUM_MASK,
            .incrementLabel = IDT_RENAME_NUM_INCREMENT,
            .increment = IDC_RENAME_NUM_INCREMENT,
            .startLabel = IDT_RENAME_NUM_START,
            .start = IDC_RENAME_NUM_START,
        },
    .alpha =
        {
            .maskLabel = IDT_RENAME_ALPHA_MASK,
            .mask = IDE_RENAME_ALPHA_MASK,
            .incrementLabel = IDT_RENAME_ALPHA_INCREMENT,
            .increment = IDC_RENAME_ALPHA_INCREMENT,
            .startLabel = IDT_RENAME_ALPHA_START,
            .start = IDC_RENAME_ALPHA_START,
            .upperCase = IDX_RENAME_ALPHA_UPPER,
            .lettersLabel = IDT_RENAME_ALPHA_LETTERS,
            .letterFrom = IDE_RENAME_ALPHA_FROM,
            .letterTo = IDE_RENAME_ALPHA_TO,
        },
    .alnum =
        {
            .maskLabel = IDT_RENAME_ALNUM_MASK,
            .mask = IDE_RENAME_ALNUM_MASK,
            .incrementLabel = IDT_RENAME_ALNUM_INCREMENT,
            .increment = IDC_RENAME_ALNUM_INCREMENT,
            .startLabel = IDT_RENAME_ALNUM_START,
            .start = IDC_RENAME_ALNUM_START,
            .upperCase = IDX_RENAME_ALNUM_UPPER,
            .lettersLabel = IDT_RENAME_ALNUM_LETTERS,
            .letterFrom = IDE_RENAME_ALNUM_LETTER_FROM,
            .letterTo = IDE_RENAME_ALNUM_LETTER_TO,
            .digitsLabel = IDT_RENAME_ALNUM_DIGITS,
            .digitFrom = IDE_RENAME_ALNUM_DIGIT_FROM,
            .digitTo = IDE_RENAME_ALNUM_DIGIT_TO,
        },
};

constexpr int32_t kPrefix = 1;

}  // namespace

CZVRenameDlg::CZVRenameDlg(CWnd* parent) : CZVTemplateDlg(IDD_RENAME, parent, kHelpNumber, kIds) {}

uint32_t CZVRenameDlg::OfferedTags() const { return 1u << TAG_NUM | 1u << TAG_ALPHA | 1u << TAG_ALPHANUM; }

bool CZVRenameDlg::HasRecord() const {
  return AfxIsValidAddress(data_, sizeof(*data_), TRUE) && AfxIsValidAddress(data_->settings, sizeof(Settings), TRUE);
}

BOOL CZVRenameDlg::OnInitDialog() {
  CZVTemplateDlg::OnInitDialog();
  InitControls();
  int32_t position = 0;
  if (HasRecord()) {
    LoadSettings(*data_->settings);
    ChooseTag(data_->tagId);
    position = data_->position;
  }
  CheckRadioButton(IDX_RENAME_PREFIX, IDX_RENAME_SUFFIX, position == kPrefix ? IDX_RENAME_PREFIX : IDX_RENAME_SUFFIX);
  StartFollowing();
  return TRUE;
}

void CZVRenameDlg::SetDialogStrings() {
  CZVTemplateDlg::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_RENAME_TITLE));
  SetControlString(IDG_RENAME_ALIGNMENT, IDS_RENAME_ALIGNMENT_GROUP);
  SetControlString(IDX_RENAME_PREFIX, IDS_RENAME_PREFIX);
  SetControlString(IDX_RENAME_SUFFIX, IDS_RENAME_SUFFIX);
  SetControlString(IDG_RENAME_TAGS, IDS_RENAME_TAGS_GROUP);
  SetControlString(IDT_RENAME_TAG, IDS_RENAME_TAG);
  SetControlString(IDG_RENAME_SETTINGS, IDS_RENAME_SETTINGS_GROUP);
  SetControlString(IDT_RENAME_SAMPLE, IDS_RENAME_SAMPLE);
  SetControlString(IDT_RENAME_NOTE, IDS_RENAME_NOTE);
  SetNumberingTexts({IDS_RENAME_MASK, IDS_RENAME_INCREMENT, IDS_RENAME_START, IDS_RENAME_LETTER_RANGE,
                     IDS_RENAME_DIGIT_RANGE, IDS_RENAME_UPPER_CASE});
}

CString CZVRenameDlg::TemplateFromControls() const {
  const CString tag = TagTexts().GetString(ChosenTag());
  const CString source = TagTexts().GetString(TAG_SRC);
  return IsDlgButtonChecked(IDX_RENAME_PREFIX) == BST_CHECKED ? tag + source : source + tag;
}

bool CZVRenameDlg::IsChange(UINT controlId, UINT code) const {
  const bool isRadio = controlId == IDX_RENAME_PREFIX || controlId == IDX_RENAME_SUFFIX;
  return (isRadio && code == BN_CLICKED) || CZVTemplateDlg::IsChange(controlId, code);
}

// Tag and position are not written back: the dialog opens with those of the record the next time as well.
void CZVRenameDlg::Commit() {
  if (!HasRecord()) return;
  data_->namingTemplate = TemplateFromControls();
  StoreSettings(*data_->settings);
}
