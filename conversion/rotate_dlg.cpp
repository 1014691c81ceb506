#include "conversion/rotate_dlg.h"

#include <algorithm>

#include "conversion/rotate_rules.h"
#include "resources/conversion_tools_ids.h"
#include "services/zvdlgbase/string_ids.h"

namespace {
constexpr UINT kHelpNumber = 118;
constexpr UINT kMostCharacters = 8;
constexpr int kOneDegree = 100;
constexpr int kPageOfDegrees = 1500;
}  // namespace

BEGIN_MESSAGE_MAP(CZVFileConversionDlgRotateDlg, CZVBaseDialog)
  ON_WM_HSCROLL()
  ON_EN_CHANGE(IDE_ROTATE_ANGLE, OnAngleEdited)
  ON_CONTROL(ZVEN_VALUECOMMITTED, IDE_ROTATE_ANGLE, OnAngleCommitted)
  ON_CBN_SELCHANGE(IDC_ROTATE_INTERPOLATION, OnInterpolationChanged)
  ON_BN_CLICKED(IDX_ROTATE_RESIZE, OnResize)
  ON_CONTROL(ZVN_VALUECHANGED, IDB_ROTATE_COLOR, OnColorChanged)
END_MESSAGE_MAP()

CZVFileConversionDlgRotateDlg::CZVFileConversionDlgRotateDlg(CWnd* parent)
    : CZVBaseDialog(IDD_ROTATE, parent, kHelpNumber) {}

BOOL CZVFileConversionDlgRotateDlg::OnInitDialog() {
  CZVBaseDialog::OnInitDialog();
  CenterWindow();
  options_.angle = UsableAngle(options_.angle);

  angleEdit_.SetNumericsOnly(true);
  angleEdit_.SetAcceptNegative(true);
  angleEdit_.SetAcceptFloat(true);
  angleEdit_.SetLimitText(kMostCharacters);
  angleBar_.SetRange(-kLargestAngle, kLargestAngle);
  angleBar_.SetLineSize(kOneDegree);
  angleBar_.SetPageSize(kPageOfDegrees);
  angleBar_.SetPos(options_.angle);
  ShowAngleInEdit();

  for (const UINT id : {IDS_ROTATE_NORMAL, IDS_ROTATE_BILINEAR, IDS_ROTATE_BICUBIC})
    interpolation_.AddString(GetDlgString(id));
  interpolation_.SetCurSel(InterpolationIndex(options_.flags));

  color_.SetRGB(options_.fillColor);
  if (options_.contextHelp) {
    AddContextHelpStyle();
    color_.SetHelp(GetHelpCallback(), GetHelpCallBackUserData(), GetHelpNumber());
  }
  CheckDlgButton(IDX_ROTATE_RESIZE, options_.resizeToFit ? BST_CHECKED : BST_UNCHECKED);
  if (options_.resizeToFit) options_.flags = WithCanvasGrowth(options_.flags, true);
  return TRUE;
}

void CZVFileConversionDlgRotateDlg::SetDialogStrings() {
  CZVBaseDialog::SetDialogStrings();
  SetWindowText(GetDlgString(IDS_ROTATE_TITLE));
  SetControlString(IDG_ROTATE_ANGLE, IDS_ROTATE_ANGLE_GROUP);
  SetControlString(IDT_ROTATE_INTERPOLATION, IDS_ROTATE_INTERPOLATION);
  SetControlString(IDT_ROTATE_COLOR, IDS_ROTATE_BACK_COLOR);
  SetControlString(IDX_ROTATE_RESIZE, IDS_ROTATE_RESIZE);
}

void CZVFileConversionDlgRotateDlg::DoDataExchange(CDataExchange* exchange) {
  CZVBaseDialog::DoDataExchange(exchange);
  DDX_Control(exchange, IDE_ROTATE_ANGLE, angleEdit_);
  DDX_Control(exchange, IDS_ROTATE_ANGLE_BAR, angleBar_);
  DDX_Control(exchange, IDC_ROTATE_INTERPOLATION, interpolation_);
  DDX_Control(exchange, IDB_ROTATE_COLOR, color_);
}

void CZVFileConversionDlgRotateDlg::ShowAngleInEdit() {
  settingEdit_ = true;
  angleEdit_.SetValue(DegreesFromAngle(options_.angle));
  settingEdit_ = false;
}

void CZVFileConversionDlgRotateDlg::OnHScroll(UINT, UINT, CScrollBar*) {
  options_.angle = angleBar_.GetPos();
  ShowAngleInEdit();
}

void CZVFileConversionDlgRotateDlg::OnAngleEdited() {
  if (settingEdit_) return;
  const int32_t angle = AngleFromDegrees(angleEdit_.GetValue());
  if (!IsAngleInRange(angle)) return;
  options_.angle = angle;
  angleBar_.SetPos(angle);
}

void CZVFileConversionDlgRotateDlg::OnAngleCommitted() {
  constexpr double kFullTurn = DegreesFromAngle(kLargestAngle);
  const double typed = angleEdit_.GetValue();
  const double usable = std::clamp(typed, -kFullTurn, kFullTurn);
  if (usable != typed) angleEdit_.SetValue(usable);
}

void CZVFileConversionDlgRotateDlg::OnInterpolationChanged() {
  options_.flags = WithInterpolation(options_.flags, interpolation_.GetCurSel());
}

void CZVFileConversionDlgRotateDlg::OnResize() {
  options_.resizeToFit = IsDlgButtonChecked(IDX_ROTATE_RESIZE) == BST_CHECKED;
  options_.flags = WithCanvasGrowth(options_.flags, options_.resizeToFit != 0);
}

void CZVFileConversionDlgRotateDlg::OnColorChanged() { options_.fillColor = color_.GetRGBColorRef(); }

void CZVFileConversionDlgRotateDlg::OnOK() {
  options_.resizeToFit = IsDlgButtonChecked(IDX_ROTATE_RESIZE) == BST_CHECKED;
  options_.flags = FlagsAtOK(options_.flags, interpolation_.GetCurSel(), options_.resizeToFit != 0);
  CZVBaseDialog::OnOK();
}
