// CListBox: a list of texts. Indices are 0-based; LB_ERR (-1) stands for none or failure.
#pragma once

#include "platform/control.h"

class CListBox : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_LISTBOXW, nullptr, style, rect, parent, id);
  }
  int GetCount() const { return Send<int>(LB_GETCOUNT); }
  int AddString(LPCTSTR text) { return Send<int>(LB_ADDSTRING, 0, text); }
  int InsertString(int index, LPCTSTR text) { return Send<int>(LB_INSERTSTRING, index, text); }
  int DeleteString(UINT index) { return Send<int>(LB_DELETESTRING, index); }
  void ResetContent() { Send(LB_RESETCONTENT); }
  int GetCurSel() const { return Send<int>(LB_GETCURSEL); }
  int SetCurSel(int index) { return Send<int>(LB_SETCURSEL, index); }
  int GetSel(int index) const { return Send<int>(LB_GETSEL, index); }
  int SetSel(int index, BOOL select = TRUE) { return Send<int>(LB_SETSEL, select, index); }
  int GetSelCount() const { return Send<int>(LB_GETSELCOUNT); }
  int GetSelItems(int maximum, int* indices) const { return Send<int>(LB_GETSELITEMS, maximum, indices); }
  int GetTopIndex() const { return Send<int>(LB_GETTOPINDEX); }
  int SetTopIndex(int index) { return Send<int>(LB_SETTOPINDEX, index); }
  DWORD_PTR GetItemData(int index) const { return Send<DWORD_PTR>(LB_GETITEMDATA, index); }
  int SetItemData(int index, DWORD_PTR data) { return Send<int>(LB_SETITEMDATA, index, data); }
  int GetTextLen(int index) const { return Send<int>(LB_GETTEXTLEN, index); }
  int GetText(int index, LPTSTR buffer) const { return Send<int>(LB_GETTEXT, index, buffer); }
  void GetText(int index, CString& text) const;
  int FindString(int startAfter, LPCTSTR text) const { return Send<int>(LB_FINDSTRING, startAfter, text); }
  int FindStringExact(int startAfter, LPCTSTR text) const { return Send<int>(LB_FINDSTRINGEXACT, startAfter, text); }
  int SelectString(int startAfter, LPCTSTR text) { return Send<int>(LB_SELECTSTRING, startAfter, text); }
  int GetItemRect(int index, LPRECT rect) const { return Send<int>(LB_GETITEMRECT, index, rect); }
  int SetItemHeight(int index, UINT height) { return Send<int>(LB_SETITEMHEIGHT, index, height); }
  void SetHorizontalExtent(int pixels) { Send(LB_SETHORIZONTALEXTENT, pixels); }
  BOOL SetTabStops(int count, const int* stops) { return Send<BOOL>(LB_SETTABSTOPS, count, stops); }

  // Owner-drawn list boxes.
  virtual void DrawItem(LPDRAWITEMSTRUCT /*item*/) {}
  virtual void MeasureItem(LPMEASUREITEMSTRUCT /*item*/) {}

 protected:
  BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
};
