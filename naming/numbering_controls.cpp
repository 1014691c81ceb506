#include "naming/numbering_controls.h"

#include <algorithm>
#include <cwctype>

#include "naming/depositories.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {

constexpr int kLargestNumber = 1000;
constexpr UINT kMostMaskCharacters = 260;

bool IsLatinLetter(wchar_t character) {
  return (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z');
}
bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }

void SetText(CWnd& dialog, int controlId, UINT textId) {
  if (controlId != 0) dialog.SetDlgItemText(controlId, LoadDialogString(textId));
}

}  // namespace

using Settings = NAMINGTEMPLATESETTINGS;

const NumberingFields kNumericFields = {
    .tag = TAG_NUM,
    .digitsOnlyMask = true,
    .mask = &Settings::numericMask,
    .increment = &Settings::numericIncrement,
    .start = &Settings::numericStart,
};
const NumberingFields kAlphaFields = {
    .tag = TAG_ALPHA,
    .digitsOnlyMask = false,
    .mask = &Settings::alphaMask,
    .increment = &Settings::alphaIncrement,
    .start = &Settings::alphaStart,
    .upperCase = &Settings::alphaUpperCase,
    .letterFrom = &Settings::alphaFrom,
    .letterTo = &Settings::alphaTo,
};
const NumberingFields kAlnumFields = {
    .tag = TAG_ALPHANUM,
    .digitsOnlyMask = false,
    .mask = &Settings::alnumMask,
    .increment = &Settings::alnumIncrement,
    .start = &Settings::alnumStart,
    .upperCase = &Settings::alnumUpperCase,
    .letterFrom = &Settings::alnumAlphaFrom,
    .letterTo = &Settings::alnumAlphaTo,
    .digitFrom = &Settings::alnumNumericFrom,
    .digitTo = &Settings::alnumNumericTo,
};

CZVNumberingControls::CZVNumberingControls(const NumberingFields& fields, const NumberingIds& ids)
    : fields_(fields),
      ids_(ids),
      increment_(0, kLargestNumber, 1, FLAGS_NOTRACKNOTIFY),
      start_(0, kLargestNumber, 0, FLAGS_NOTRACKNOTIFY),
      ends_{{{ids.letterFrom, fields.letterFrom, true, L'a', CZVMaskEdit(L"<", L'a')},
             {ids.letterTo, fields.letterTo, true, L'z', CZVMaskEdit(L"<", L'z')},
             {ids.digitFrom, fields.digitFrom, false, L'0', CZVMaskEdit(L"0", L'0')},
             {ids.digitTo, fields.digitTo, false, L'9', CZVMaskEdit(L"0", L'9')}}} {}

void CZVNumberingControls::DoDataExchange(CDataExchange* exchange) {
  DDX_Control(exchange, ids_.mask, mask_);
  DDX_Control(exchange, ids_.increment, increment_);
  DDX_Control(exchange, ids_.start, start_);
  for (RangeEnd& end : ends_) {
    if (end.id != 0) DDX_Control(exchange, end.id, end.edit);
  }
}

void CZVNumberingControls::SetUp() {
  mask_.SetLimitText(kMostMaskCharacters);
  mask_.SetNumericsOnly(fields_.digitsOnlyMask);
}

void CZVNumberingControls::SetTexts(CWnd& dialog, const NumberingTexts& texts) const {
  SetText(dialog, ids_.maskLabel, texts.mask);
  SetText(dialog, ids_.incrementLabel, texts.increment);
  SetText(dialog, ids_.startLabel, texts.start);
  SetText(dialog, ids_.lettersLabel, texts.letterRange);
  SetText(dialog, ids_.digitsLabel, texts.digitRange);
  SetText(dialog, ids_.upperCase, texts.upperCase);
}

void CZVNumberingControls::Load(CWnd& dialog, const NAMINGTEMPLATESETTINGS& settings) {
  mask_.SetWindowText(settings.*fields_.mask);
  increment_.SetValue(settings.*fields_.increment);
  start_.SetValue(settings.*fields_.start);
  if (ids_.upperCase != 0)
    dialog.CheckDlgButton(ids_.upperCase, settings.*fields_.upperCase ? BST_CHECKED : BST_UNCHECKED);
  for (RangeEnd& end : ends_) {
    if (end.id == 0) continue;
    const wchar_t character = static_cast<wchar_t>(settings.*end.field);
    if (end.isLetter ? IsLatinLetter(character) : IsDigit(character)) end.edit.SetWindowText(CString(character));
  }
}

void CZVNumberingControls::Store(const CWnd& dialog, NAMINGTEMPLATESETTINGS& settings) const {
  mask_.GetWindowText(settings.*fields_.mask);
  settings.*fields_.increment = increment_.GetValue();
  settings.*fields_.start = start_.GetValue();
  if (ids_.upperCase != 0) settings.*fields_.upperCase = dialog.IsDlgButtonChecked(ids_.upperCase) == BST_CHECKED;
  for (const RangeEnd& end : ends_) {
    if (end.id == 0) continue;
    CString text;
    end.edit.GetWindowText(text);
    const wchar_t first = text.IsEmpty() ? end.fallback : text[0];
    settings.*end.field = end.isLetter && !IsLatinLetter(first) ? end.fallback : first;
  }
}

std::array<int, 13> CZVNumberingControls::AllIds() const {
  return {ids_.maskLabel,   ids_.mask,      ids_.incrementLabel, ids_.increment,  ids_.startLabel,
          ids_.start,       ids_.upperCase, ids_.lettersLabel,   ids_.letterFrom, ids_.letterTo,
          ids_.digitsLabel, ids_.digitFrom, ids_.digitTo};
}

void CZVNumberingControls::Show(CWnd& dialog, bool show) const {
  for (const int id : AllIds()) {
    if (id != 0) ::ShowWindow(::GetDlgItem(dialog, id), show ? SW_SHOW : SW_HIDE);
  }
}

bool CZVNumberingControls::IsChange(UINT controlId, UINT code) const {
  const int id = static_cast<int>(controlId);
  if (id == ids_.increment || id == ids_.start) return code == ZVN_VALUECHANGED;
  if (id == ids_.upperCase) return code == BN_CLICKED;
  const bool isEdit = id == ids_.mask || std::any_of(ends_.begin(), ends_.end(),
                                                     [id](const RangeEnd& end) { return end.id != 0 && end.id == id; });
  return isEdit && code == EN_CHANGE;
}
