// CEdit: a text field. Positions count characters.
#pragma once

#include "platform/control.h"

class CEdit : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_EDITW, nullptr, style, rect, parent, id);
  }
  // (0, -1) selects everything, (-1, 0) nothing.
  void SetSel(int start, int end, BOOL /*noScroll*/ = FALSE) { Send(EM_SETSEL, start, end); }
  void GetSel(int& start, int& end) const {
    DWORD first = 0, last = 0;
    Send(EM_GETSEL, &first, &last);
    start = static_cast<int>(first);
    end = static_cast<int>(last);
  }
  void ReplaceSel(LPCTSTR text, BOOL canUndo = FALSE) { Send(EM_REPLACESEL, canUndo, text); }
  void SetLimitText(UINT characters) { Send(EM_SETLIMITTEXT, characters); }
  void LimitText(int characters = 0) { Send(EM_SETLIMITTEXT, characters); }
  UINT GetLimitText() const { return Send<UINT>(EM_GETLIMITTEXT); }
  BOOL SetReadOnly(BOOL readOnly = TRUE) { return Send<BOOL>(EM_SETREADONLY, readOnly); }
  BOOL GetModify() const { return Send<BOOL>(EM_GETMODIFY); }
  void SetModify(BOOL modified = TRUE) { Send(EM_SETMODIFY, modified); }
  void SetPasswordChar(TCHAR character) { Send(EM_SETPASSWORDCHAR, character); }
  int GetLineCount() const { return Send<int>(EM_GETLINECOUNT); }
  int LineLength(int position = -1) const { return Send<int>(EM_LINELENGTH, position); }
  int LineIndex(int line = -1) const { return Send<int>(EM_LINEINDEX, line); }
  void LineScroll(int lines, int characters = 0) { Send(EM_LINESCROLL, characters, lines); }
  BOOL SetTabStops(int count, const int* stops) { return Send<BOOL>(EM_SETTABSTOPS, count, stops); }
  void SetMargins(UINT left, UINT right) { Send(EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELONG(left, right)); }
  BOOL SetCueBanner(LPCWSTR text, BOOL drawFocused = FALSE) { return Send<BOOL>(EM_SETCUEBANNER, drawFocused, text); }
  BOOL CanUndo() const { return Send<BOOL>(EM_CANUNDO); }
  BOOL Undo() { return Send<BOOL>(EM_UNDO); }
  void EmptyUndoBuffer() { Send(EM_EMPTYUNDOBUFFER); }
  void Clear() { Send(WM_CLEAR); }
  void Copy() { Send(WM_COPY); }
  void Cut() { Send(WM_CUT); }
  void Paste() { Send(WM_PASTE); }
};
