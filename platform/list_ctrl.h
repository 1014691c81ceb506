// CListCtrl: a list view. Rows and columns are 0-based; -1 stands for none or failure.
#pragma once

#include "platform/control.h"
#include "platform/header_ctrl.h"
#include "platform/image_list.h"

class CEdit;

class CListCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(WC_LISTVIEWW, nullptr, style, rect, parent, id);
  }

  // Columns. The format is LVCFMT_...; a width of -1 or -2 fits contents or contents and head (SetColumnWidth).
  int InsertColumn(int column, const LVCOLUMN* definition) { return Send<int>(LVM_INSERTCOLUMNW, column, definition); }
  int InsertColumn(int column, LPCTSTR heading, int format = LVCFMT_LEFT, int width = -1, int subItem = -1);
  BOOL DeleteColumn(int column) { return Send<BOOL>(LVM_DELETECOLUMN, column); }
  BOOL GetColumn(int column, LVCOLUMN* definition) const { return Send<BOOL>(LVM_GETCOLUMNW, column, definition); }
  BOOL SetColumn(int column, const LVCOLUMN* definition) { return Send<BOOL>(LVM_SETCOLUMNW, column, definition); }
  int GetColumnWidth(int column) const { return Send<int>(LVM_GETCOLUMNWIDTH, column); }
  BOOL SetColumnWidth(int column, int width) { return Send<BOOL>(LVM_SETCOLUMNWIDTH, column, MAKELPARAM(width, 0)); }
  // The header's object, a temporary unless it was subclassed.
  CHeaderCtrl* GetHeaderCtrl() const;
  int GetStringWidth(LPCTSTR text) const { return Send<int>(LVM_GETSTRINGWIDTHW, 0, text); }

  // Rows.
  int GetItemCount() const { return Send<int>(LVM_GETITEMCOUNT); }
  void SetItemCount(int count) { Send(LVM_SETITEMCOUNT, count); }
  BOOL SetItemCountEx(int count, DWORD flags = LVSICF_NOINVALIDATEALL) {
    return Send<BOOL>(LVM_SETITEMCOUNT, count, flags);
  }
  int InsertItem(const LVITEM* item) { return Send<int>(LVM_INSERTITEMW, 0, item); }
  int InsertItem(int row, LPCTSTR text) { return InsertItem(LVIF_TEXT, row, text, 0, 0, 0, 0); }
  int InsertItem(int row, LPCTSTR text, int image) {
    return InsertItem(LVIF_TEXT | LVIF_IMAGE, row, text, 0, 0, image, 0);
  }
  int InsertItem(UINT mask, int row, LPCTSTR text, UINT state, UINT stateMask, int image, LPARAM data);
  BOOL DeleteItem(int row) { return Send<BOOL>(LVM_DELETEITEM, row); }
  BOOL DeleteAllItems() { return Send<BOOL>(LVM_DELETEALLITEMS); }
  BOOL GetItem(LVITEM* item) const { return Send<BOOL>(LVM_GETITEMW, 0, item); }
  BOOL SetItem(const LVITEM* item) { return Send<BOOL>(LVM_SETITEMW, 0, item); }
  BOOL SetItem(int row, int subItem, UINT mask, LPCTSTR text, int image, UINT state, UINT stateMask, LPARAM data);
  BOOL SetItemText(int row, int subItem, LPCTSTR text);
  CString GetItemText(int row, int subItem) const;
  int GetItemText(int row, int subItem, LPTSTR buffer, int size) const;
  BOOL SetItemData(int row, DWORD_PTR data);
  DWORD_PTR GetItemData(int row) const;
  UINT GetItemState(int row, UINT mask) const { return Send<UINT>(LVM_GETITEMSTATE, row, mask); }
  BOOL SetItemState(int row, UINT state, UINT mask);
  // Tick boxes (LVS_EX_CHECKBOXES).
  BOOL GetCheck(int row) const { return (GetItemState(row, LVIS_STATEIMAGEMASK) >> 12) == 2; }
  BOOL SetCheck(int row, BOOL check = TRUE) {
    return SetItemState(row, static_cast<UINT>(INDEXTOSTATEIMAGEMASK(check ? 2 : 1)), LVIS_STATEIMAGEMASK);
  }
  int FindItem(LVFINDINFO* info, int startAfter = -1) const { return Send<int>(LVM_FINDITEMW, startAfter, info); }
  // The order function gets two item data and the context, and returns below, equal or above 0.
  BOOL SortItems(PFNLVCOMPARE compare, DWORD_PTR context) { return Send<BOOL>(LVM_SORTITEMS, context, compare); }

  // Selection. GetNextSelectedItem moves `position` on; null after the last.
  int GetNextItem(int startAfter, int flags) const {
    return Send<int>(LVM_GETNEXTITEM, startAfter, MAKELPARAM(flags, 0));
  }
  POSITION GetFirstSelectedItemPosition() const;
  int GetNextSelectedItem(POSITION& position) const;
  UINT GetSelectedCount() const { return Send<UINT>(LVM_GETSELECTEDCOUNT); }
  int GetSelectionMark() const { return Send<int>(LVM_GETSELECTIONMARK); }
  int SetSelectionMark(int row) { return Send<int>(LVM_SETSELECTIONMARK, 0, row); }

  // View.
  DWORD GetExtendedStyle() const { return Send<DWORD>(LVM_GETEXTENDEDLISTVIEWSTYLE); }
  DWORD SetExtendedStyle(DWORD style) { return Send<DWORD>(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, style); }
  BOOL EnsureVisible(int row, BOOL partlyIsEnough) { return Send<BOOL>(LVM_ENSUREVISIBLE, row, partlyIsEnough); }
  BOOL RedrawItems(int first, int last) { return Send<BOOL>(LVM_REDRAWITEMS, first, last); }
  BOOL Update(int row) { return Send<BOOL>(LVM_UPDATE, row); }
  BOOL GetItemRect(int row, LPRECT rect, UINT part) const {
    rect->left = static_cast<LONG>(part);
    return Send<BOOL>(LVM_GETITEMRECT, row, rect);
  }
  BOOL GetSubItemRect(int row, int subItem, int part, CRect& rect) const {
    rect.top = subItem;
    rect.left = part;
    return Send<BOOL>(LVM_GETSUBITEMRECT, row, static_cast<LPRECT>(rect));
  }
  BOOL GetItemPosition(int row, LPPOINT point) const { return Send<BOOL>(LVM_GETITEMPOSITION, row, point); }
  int HitTest(LVHITTESTINFO* info) const { return Send<int>(LVM_HITTEST, 0, info); }
  int SubItemHitTest(LVHITTESTINFO* info) const { return Send<int>(LVM_SUBITEMHITTEST, 0, info); }
  int GetTopIndex() const { return Send<int>(LVM_GETTOPINDEX); }
  int GetCountPerPage() const { return Send<int>(LVM_GETCOUNTPERPAGE); }
  BOOL Scroll(CSize size) { return Send<BOOL>(LVM_SCROLL, size.cx, size.cy); }
  BOOL Arrange(UINT code) { return Send<BOOL>(LVM_ARRANGE, code); }
  // The list stays the caller's unless the control has no LVS_SHAREIMAGELISTS. Returns the former one.
  CImageList* SetImageList(CImageList* list, int kind) {
    return CImageList::FromHandle(Send<HIMAGELIST>(LVM_SETIMAGELIST, kind, list ? list->m_hImageList : nullptr));
  }
  CImageList* GetImageList(int kind) const { return CImageList::FromHandle(Send<HIMAGELIST>(LVM_GETIMAGELIST, kind)); }
  CSize SetIconSpacing(int x, int y) {
    const auto former = Send<DWORD>(LVM_SETICONSPACING, 0, MAKELONG(x, y));
    return CSize(LOWORD(former), HIWORD(former));
  }
  BOOL SetBkColor(COLORREF color) { return Send<BOOL>(LVM_SETBKCOLOR, 0, color); }
  BOOL SetTextColor(COLORREF color) { return Send<BOOL>(LVM_SETTEXTCOLOR, 0, color); }
  BOOL SetTextBkColor(COLORREF color) { return Send<BOOL>(LVM_SETTEXTBKCOLOR, 0, color); }
  CWnd* EditLabel(int row) { return FromHandle(Send<HWND>(LVM_EDITLABELW, row)); }
};
