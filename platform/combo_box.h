// CComboBox: a field with a list. Indices are 0-based; CB_ERR (-1) stands for none or failure.
#pragma once

#include "platform/control.h"

class CComboBox : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_COMBOBOXW, nullptr, style, rect, parent, id);
  }
  int GetCount() const { return Send<int>(CB_GETCOUNT); }
  int AddString(LPCTSTR text) { return Send<int>(CB_ADDSTRING, 0, text); }
  int InsertString(int index, LPCTSTR text) { return Send<int>(CB_INSERTSTRING, index, text); }
  int DeleteString(UINT index) { return Send<int>(CB_DELETESTRING, index); }
  void ResetContent() { Send(CB_RESETCONTENT); }
  int GetCurSel() const { return Send<int>(CB_GETCURSEL); }
  int SetCurSel(int index) { return Send<int>(CB_SETCURSEL, index); }
  DWORD_PTR GetItemData(int index) const { return Send<DWORD_PTR>(CB_GETITEMDATA, index); }
  int SetItemData(int index, DWORD_PTR data) { return Send<int>(CB_SETITEMDATA, index, data); }
  void* GetItemDataPtr(int index) const { return Send<void*>(CB_GETITEMDATA, index); }
  int SetItemDataPtr(int index, void* data) { return Send<int>(CB_SETITEMDATA, index, data); }
  int GetLBTextLen(int index) const { return Send<int>(CB_GETLBTEXTLEN, index); }
  int GetLBText(int index, LPTSTR buffer) const { return Send<int>(CB_GETLBTEXT, index, buffer); }
  void GetLBText(int index, CString& text) const;
  int FindString(int startAfter, LPCTSTR text) const { return Send<int>(CB_FINDSTRING, startAfter, text); }
  int FindStringExact(int startAfter, LPCTSTR text) const { return Send<int>(CB_FINDSTRINGEXACT, startAfter, text); }
  int SelectString(int startAfter, LPCTSTR text) { return Send<int>(CB_SELECTSTRING, startAfter, text); }
  BOOL LimitText(int characters) { return Send<BOOL>(CB_LIMITTEXT, characters); }
  DWORD GetEditSel() const { return Send<DWORD>(CB_GETEDITSEL); }
  BOOL SetEditSel(int start, int end) { return Send<BOOL>(CB_SETEDITSEL, 0, MAKELONG(start, end)); }
  void ShowDropDown(BOOL show = TRUE) { Send(CB_SHOWDROPDOWN, show); }
  BOOL GetDroppedState() const { return Send<BOOL>(CB_GETDROPPEDSTATE); }
  void GetDroppedControlRect(LPRECT rect) const { Send(CB_GETDROPPEDCONTROLRECT, 0, rect); }
  int GetDroppedWidth() const { return Send<int>(CB_GETDROPPEDWIDTH); }
  int SetDroppedWidth(UINT width) { return Send<int>(CB_SETDROPPEDWIDTH, width); }
  int SetItemHeight(int index, UINT height) { return Send<int>(CB_SETITEMHEIGHT, index, height); }
  int GetItemHeight(int index) const { return Send<int>(CB_GETITEMHEIGHT, index); }
  int SetExtendedUI(BOOL extended = TRUE) { return Send<int>(CB_SETEXTENDEDUI, extended); }
  void SetMinVisibleItems(int count) { Send(CB_SETMINVISIBLE, count); }
  BOOL GetComboBoxInfo(COMBOBOXINFO* info) const {
    info->cbSize = sizeof(*info);
    return ::GetComboBoxInfo(m_hWnd, info);
  }

  // Owner-drawn combo boxes.
  virtual void DrawItem(LPDRAWITEMSTRUCT /*item*/) {}
  virtual void MeasureItem(LPMEASUREITEMSTRUCT /*item*/) {}

 protected:
  BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
};
