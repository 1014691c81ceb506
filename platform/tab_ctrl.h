// CTabCtrl: a row of tabs.
#pragma once

#include "platform/control.h"
#include "platform/image_list.h"

class CTabCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_TABCONTROLW, nullptr, style, rect, parent, id);
  }
  int GetItemCount() const { return Send<int>(TCM_GETITEMCOUNT); }
  int InsertItem(int index, const TCITEM* item) { return Send<int>(TCM_INSERTITEMW, index, item); }
  int InsertItem(int index, LPCTSTR text) {
    TCITEM item = {};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<LPTSTR>(text);
    return InsertItem(index, &item);
  }
  BOOL GetItem(int index, TCITEM* item) const { return Send<BOOL>(TCM_GETITEMW, index, item); }
  BOOL SetItem(int index, TCITEM* item) { return Send<BOOL>(TCM_SETITEMW, index, item); }
  BOOL DeleteItem(int index) { return Send<BOOL>(TCM_DELETEITEM, index); }
  BOOL DeleteAllItems() { return Send<BOOL>(TCM_DELETEALLITEMS); }
  int GetCurSel() const { return Send<int>(TCM_GETCURSEL); }
  int SetCurSel(int index) { return Send<int>(TCM_SETCURSEL, index); }
  BOOL GetItemRect(int index, LPRECT rect) const { return Send<BOOL>(TCM_GETITEMRECT, index, rect); }
  // Between the control's rectangle and that of the pages inside: larger means from the page's to the control's.
  void AdjustRect(BOOL larger, LPRECT rect) { Send(TCM_ADJUSTRECT, larger, rect); }
};
