// CHeaderCtrl: the row of column heads.
#pragma once

#include "platform/control.h"

class CHeaderCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_HEADERW, nullptr, style, rect, parent, id);
  }
  int GetItemCount() const { return Send<int>(HDM_GETITEMCOUNT); }
  BOOL GetItem(int index, HDITEM* item) const { return Send<BOOL>(HDM_GETITEMW, index, item); }
  BOOL SetItem(int index, HDITEM* item) { return Send<BOOL>(HDM_SETITEMW, index, item); }
  int InsertItem(int index, HDITEM* item) { return Send<int>(HDM_INSERTITEMW, index, item); }
  BOOL DeleteItem(int index) { return Send<BOOL>(HDM_DELETEITEM, index); }
  BOOL GetItemRect(int index, LPRECT rect) const { return Send<BOOL>(HDM_GETITEMRECT, index, rect); }
  int OrderToIndex(int order) const { return Send<int>(HDM_ORDERTOINDEX, order); }
};
