#include "services/zvdlgwidgets/edit_ctrl.h"

#include "services/zvdlgwidgets/clipboard_text.h"

BEGIN_MESSAGE_MAP(CZVEditCtrl, CEdit)
  ON_WM_CHAR()
  ON_WM_SETFOCUS()
  ON_WM_KILLFOCUS()
  ON_MESSAGE(WM_PASTE, OnPaste)
END_MESSAGE_MAP()

double CZVEditCtrl::GetValue() const { return ParseNumber(Text()); }

void CZVEditCtrl::SetValue(int value) { SetValue(static_cast<double>(value)); }

void CZVEditCtrl::SetValue(double value) {
  committedText_ = FormatNumber(value, rules_.acceptFloat ? rules_.fractionalDigits : 0);
  SetWindowText(committedText_);
}

CString CZVEditCtrl::Text() const {
  CString text;
  GetWindowText(text);
  return text;
}

// What the text would be with the selection replaced.
bool CZVEditCtrl::AcceptsInsertion(const CString& inserted) const {
  int start = 0, end = 0;
  GetSel(start, end);
  const CString text = Text();
  return IsNumberInProgress(text.Left(start) + inserted + text.Mid(end), rules_);
}

void CZVEditCtrl::OnChar(UINT character, UINT, UINT) {
  const bool isControl = character < L' ';
  if (isControl || !rules_.numericsOnly) {
    Default();
    return;
  }
  const wchar_t typed = static_cast<wchar_t>(character == L',' ? L'.' : character);
  if (!AcceptsInsertion(CString(typed))) {
    ::MessageBeep(MB_OK);
  } else if (typed == character) {
    Default();
  } else {
    ReplaceSel(CString(typed), TRUE);
  }
}

LRESULT CZVEditCtrl::OnPaste(WPARAM, LPARAM) {
  if (rules_.numericsOnly && !AcceptsInsertion(ReadClipboardText(*this))) {
    ::MessageBeep(MB_OK);
    return 0;
  }
  return Default();
}

BOOL CZVEditCtrl::PreTranslateMessage(MSG* message) {
  if (message->hwnd == m_hWnd && message->message == WM_KEYDOWN && message->wParam == VK_RETURN) {
    CommitValue();
  }
  return CEdit::PreTranslateMessage(message);
}

void CZVEditCtrl::OnSetFocus(CWnd* previous) {
  committedText_ = Text();
  CEdit::OnSetFocus(previous);
}

void CZVEditCtrl::OnKillFocus(CWnd* next) {
  CEdit::OnKillFocus(next);
  CommitValue();
}

void CZVEditCtrl::CommitValue() {
  const CString text = Text();
  if (text != committedText_) {
    committedText_ = text;
    const WPARAM notification = MAKEWPARAM(GetDlgCtrlID(), ZVEN_VALUECOMMITTED);
    ::SendMessageW(::GetParent(m_hWnd), WM_COMMAND, notification, reinterpret_cast<LPARAM>(m_hWnd));
  }
}
