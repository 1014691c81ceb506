#include "services/zvdlgcommon/base_dialog.h"

#include <optional>
#include <vector>

#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "services/zvdlgcommon/button_row.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {

// Kept as a copy, since the caller's point need not live until the dialog starts; the pointer is for giving back.
struct PositionPoint {
  POINT* given = nullptr;
  std::optional<POINT> value;
};

PositionPoint nextPosition;

bool IsPushButton(HWND control) {
  wchar_t className[16];
  if (!::GetClassNameW(control, className, static_cast<int>(std::size(className))) ||
      ::lstrcmpiW(className, WC_BUTTONW) != 0) {
    return false;
  }
  const LONG type = ::GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK;
  return type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON;
}

}  // namespace

BEGIN_MESSAGE_MAP(CZVBaseDialog, CDialog)
  ON_COMMAND(IDHELP, OnHelp)
  ON_COMMAND(ID_HELP, OnHelp)
  ON_WM_HELPINFO()
END_MESSAGE_MAP()

CZVBaseDialog::CZVBaseDialog() = default;

CZVBaseDialog::CZVBaseDialog(UINT templateId, CWnd* parent, UINT helpNumber)
    : CDialog(templateId, parent), helpNumber_(helpNumber) {}

CString CZVBaseDialog::GetDlgString(UINT id) { return LoadDialogString(id); }

POINT* CZVBaseDialog::SetPositionPoint(POINT* point) {
  POINT* const former = nextPosition.given;
  nextPosition = {point, point ? std::optional(*point) : std::nullopt};
  return former;
}

void CZVBaseDialog::InheritHelp(const CZVBaseDialog& opener) {
  helpCallback_ = opener.helpCallback_;
  helpUserData_ = opener.helpUserData_;
  hasQuestionMark_ = opener.hasQuestionMark_;
}

BOOL CZVBaseDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  PlaceWindow();
  SetDialogStrings();
  ApplyHelpRule();
  return TRUE;
}

void CZVBaseDialog::PlaceWindow() {
  if (GetStyle() & WS_CHILD) {
    return;
  }
  const std::optional<POINT> position = std::exchange(nextPosition, {}).value;
  if (!position || PositionDialogWindow(m_hWnd, *position) != SUCCESS) {
    CenterWindow();
  }
}

void CZVBaseDialog::SetDialogStrings() {
  SetControlString(IDOK, IDS_OK);
  SetControlString(IDCANCEL, IDS_CANCEL);
  SetControlString(IDHELP, IDS_HELP);
}

bool CZVBaseDialog::SetControlString(int controlId, UINT stringId) {
  HWND control = nullptr;
  GetDlgItem(controlId, &control);
  return control && ::SetWindowTextW(control, GetDlgString(stringId));
}

void CZVBaseDialog::ApplyHelpRule() {
  HWND help = nullptr;
  GetDlgItem(IDHELP, &help);
  if (helpCallback_ || hasQuestionMark_) {
    AddContextHelpStyle();
  }
  if (help && helpCallback_) {
    ::ShowWindow(help, SW_SHOW);
  } else if (help) {
    ::ShowWindow(help, SW_HIDE);
    CloseUpButtonRow();
  }
}

void CZVBaseDialog::AddContextHelpStyle() {
  hasQuestionMark_ = true;
  ModifyStyleEx(0, WS_EX_CONTEXTHELP, SWP_FRAMECHANGED);
}

void CZVBaseDialog::CloseUpButtonRow() {
  HWND help = nullptr;
  GetDlgItem(IDHELP, &help);
  if (!help) {
    return;
  }
  const auto rectangleOf = [this](HWND control) {
    CRect rectangle;
    ::GetWindowRect(control, &rectangle);
    ScreenToClient(&rectangle);
    return rectangle;
  };
  const CRect helpRectangle = rectangleOf(help);
  std::vector<HWND> controls;
  std::vector<RECT> rectangles;
  for (HWND control = ::GetWindow(m_hWnd, GW_CHILD); control; control = ::GetWindow(control, GW_HWNDNEXT)) {
    const CRect rectangle = rectangleOf(control);
    // The dialog itself is not on show yet, so the control's own style decides.
    const bool shown = ::GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE;
    if (control != help && shown && IsPushButton(control) && IsSameRow(rectangle, helpRectangle)) {
      controls.push_back(control);
      rectangles.push_back(rectangle);
    }
  }
  CRect client;
  GetClientRect(&client);
  CentreButtonRow(rectangles, client.Width());
  for (size_t i = 0; i < controls.size(); ++i) {
    ::SetWindowPos(controls[i], nullptr, rectangles[i].left, rectangles[i].top, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

void CZVBaseDialog::OnOK() { CDialog::OnOK(); }

void CZVBaseDialog::OnCancel() { CDialog::OnCancel(); }

void CZVBaseDialog::OnHelp() {
  if (helpCallback_) {
    helpCallback_(helpNumber_, HELP_BUTTON_PRESSED, helpUserData_);
  }
}

BOOL CZVBaseDialog::OnHelpInfo(HELPINFO* info) {
  if (helpCallback_) {
    helpCallback_(helpNumber_, info->iCtrlId, helpUserData_);
  }
  return TRUE;
}
