#include "conversion/resize_dlg.h"

#include "conversion/resize_rules.h"
#include "platform/afx.h"
#include "resources/conversion_tools_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {

constexpr UINT kHelpNumber = 119;

struct Choice {
  UINT textId;
  int value;
};
constexpr Choice kUnits[] = {{IDS_RESIZE_PIXELS, RESIZE_UNIT_PIXELS}, {IDS_RESIZE_PERCENT, RESIZE_UNIT_PERCENT}};
constexpr Choice kMethods[] = {{IDS_RESIZE_NORMAL, 0}, {IDS_RESIZE_BILINEAR, 2}, {IDS_RESIZE_BICUBIC, 4}};

constexpr int kControlsOfEnable[] = {
    IDT_RESIZE_WIDTH,          IDC_RESIZE_WIDTH,  IDT_RESIZE_WIDTH_PERCENT, IDT_RESIZE_HEIGHT, IDC_RESIZE_HEIGHT,
    IDT_RESIZE_HEIGHT_PERCENT, IDT_RESIZE_METHOD, IDC_RESIZE_METHOD,        IDT_RESIZE_UNIT,   IDC_RESIZE_UNIT};

// Fills the list and selects the item of the value, or the first one.
template <size_t kCount>
void FillChoices(CComboBox& list, const Choice (&choices)[kCount], int value) {
  for (const Choice& choice : choices) {
    const int index = list.AddString(CZVBaseDialog::GetDlgString(choice.textId));
    list.SetItemData(index, static_cast<DWORD_PTR>(choice.value));
    if (index == 0 || choice.value == value) list.SetCurSel(index);
  }
}

}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlgResizeDlg, CZVBaseDialog)
  ON_BN_CLICKED(IDX_RESIZE_ENABLE, OnEnable)
  ON_CBN_SELCHANGE(IDC_RESIZE_UNIT, OnUnitChanged)
END_MESSAGE_MAP()

CZVFileConversionDlgResizeDlg::CZVFileConversionDlgResizeDlg(CWnd* parent)
    : CZVBaseDialog(IDD_RESIZE, parent, kHelpNumber), width_(1, 1, 1), height_(1, 1, 1) {}

int32_t CZVFileConversionDlgResizeDlg::Initialize(CONVERSIONRESIZEOPTIONS* options) {
  if (!options || !AfxIsValidAddress(options, sizeof(*options), TRUE)) return 0;
  options_ = options;
  return SUCCESS;
}

BOOL CZVFileConversionDlgResizeDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  if (options_->contextHelp) AddContextHelpStyle();
  FillLists();
  ApplyUnit(SelectedUnit());
  width_.SetValue(options_->width);
  height_.SetValue(options_->height);
  CheckDlgButton(IDX_RESIZE_ENABLE, options_->enabled ? BST_CHECKED : BST_UNCHECKED);
  OnEnable();
  return TRUE;
}

void CZVFileConversionDlgResizeDlg::FillLists() {
  FillChoices(unit_, kUnits, options_->unit);
  FillChoices(method_, kMethods, options_->method);
}

void CZVFileConversionDlgResizeDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_RESIZE_TITLE));
  SetControlString(IDX_RESIZE_ENABLE, IDS_RESIZE_ENABLE);
  SetControlString(IDT_RESIZE_UNIT, IDS_RESIZE_UNIT);
  SetControlString(IDT_RESIZE_WIDTH, IDS_RESIZE_WIDTH);
  SetControlString(IDT_RESIZE_HEIGHT, IDS_RESIZE_HEIGHT);
  SetControlString(IDT_RESIZE_METHOD, IDS_RESIZE_METHOD);
}

void CZVFileConversionDlgResizeDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDC_RESIZE_WIDTH, width_);
  DDX_Control(exchange, IDC_RESIZE_HEIGHT, height_);
  DDX_Control(exchange, IDC_RESIZE_UNIT, unit_);
  DDX_Control(exchange, IDC_RESIZE_METHOD, method_);
}

int CZVFileConversionDlgResizeDlg::SelectedUnit() const {
  return static_cast<int>(unit_.GetItemData(unit_.GetCurSel()));
}

void CZVFileConversionDlgResizeDlg::OnEnable() {
  const bool enable = IsDlgButtonChecked(IDX_RESIZE_ENABLE) == BST_CHECKED;
  for (const int id : kControlsOfEnable) ::EnableWindow(::GetDlgItem(m_hWnd, id), enable);
}

void CZVFileConversionDlgResizeDlg::OnUnitChanged() { ApplyUnit(SelectedUnit()); }

// Setting a range brings a value outside it to the nearer end.
void CZVFileConversionDlgResizeDlg::ApplyUnit(int unit) {
  const int maximum = LargestSize(unit);
  width_.SetRange(kSmallestSize, maximum);
  height_.SetRange(kSmallestSize, maximum);
  const int show = unit == RESIZE_UNIT_PERCENT ? SW_SHOW : SW_HIDE;
  ::ShowWindow(::GetDlgItem(m_hWnd, IDT_RESIZE_WIDTH_PERCENT), show);
  ::ShowWindow(::GetDlgItem(m_hWnd, IDT_RESIZE_HEIGHT_PERCENT), show);
}

void CZVFileConversionDlgResizeDlg::OnOK() {
  CZVBaseDialog::OnOK();
  options_->enabled = IsDlgButtonChecked(IDX_RESIZE_ENABLE) == BST_CHECKED;
  if (!options_->enabled) return;
  options_->height = height_.GetValue();
  options_->width = width_.GetValue();
  options_->method = static_cast<int32_t>(method_.GetItemData(method_.GetCurSel()));
  options_->unit = SelectedUnit();
}
