// CTreeCtrl: a tree view.
#pragma once

#include "platform/control.h"
#include "platform/image_list.h"

class CTreeCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_TREEVIEWW, nullptr, style, rect, parent, id);
  }
  HTREEITEM InsertItem(TVINSERTSTRUCT* insert) { return Send<HTREEITEM>(TVM_INSERTITEMW, 0, insert); }
  HTREEITEM InsertItem(LPCTSTR text, HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST);
  BOOL DeleteItem(HTREEITEM item) { return Send<BOOL>(TVM_DELETEITEM, 0, item); }
  BOOL DeleteAllItems() { return DeleteItem(TVI_ROOT); }
  UINT GetCount() const { return Send<UINT>(TVM_GETCOUNT); }
  BOOL GetItem(TVITEM* item) const { return Send<BOOL>(TVM_GETITEMW, 0, item); }
  BOOL SetItem(TVITEM* item) { return Send<BOOL>(TVM_SETITEMW, 0, item); }
  CString GetItemText(HTREEITEM item) const;
  BOOL SetItemText(HTREEITEM item, LPCTSTR text);
  DWORD_PTR GetItemData(HTREEITEM item) const;
  BOOL SetItemData(HTREEITEM item, DWORD_PTR data);
  HTREEITEM GetNextItem(HTREEITEM item, UINT relation) const {
    return Send<HTREEITEM>(TVM_GETNEXTITEM, relation, item);
  }
  HTREEITEM GetRootItem() const { return GetNextItem(nullptr, TVGN_ROOT); }
  HTREEITEM GetChildItem(HTREEITEM item) const { return GetNextItem(item, TVGN_CHILD); }
  HTREEITEM GetNextSiblingItem(HTREEITEM item) const { return GetNextItem(item, TVGN_NEXT); }
  HTREEITEM GetParentItem(HTREEITEM item) const { return GetNextItem(item, TVGN_PARENT); }
  HTREEITEM GetSelectedItem() const { return GetNextItem(nullptr, TVGN_CARET); }
  BOOL SelectItem(HTREEITEM item) { return Send<BOOL>(TVM_SELECTITEM, TVGN_CARET, item); }
  BOOL Expand(HTREEITEM item, UINT code) { return Send<BOOL>(TVM_EXPAND, code, item); }
  BOOL EnsureVisible(HTREEITEM item) { return Send<BOOL>(TVM_ENSUREVISIBLE, 0, item); }
  CImageList* SetImageList(CImageList* list, int kind) {
    return CImageList::FromHandle(Send<HIMAGELIST>(TVM_SETIMAGELIST, kind, list ? list->m_hImageList : nullptr));
  }
};
