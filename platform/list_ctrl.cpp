#include "platform/list_ctrl.h"

#include "platform/thread_state.h"

int CListCtrl::InsertColumn(int column, LPCTSTR heading, int format, int width, int subItem) {
  LVCOLUMN definition = {};
  definition.mask = LVCF_TEXT | LVCF_FMT;
  definition.pszText = const_cast<LPTSTR>(heading);
  definition.fmt = format;
  if (width != -1) {
    definition.mask |= LVCF_WIDTH;
    definition.cx = width;
  }
  if (subItem != -1) {
    definition.mask |= LVCF_SUBITEM;
    definition.iSubItem = subItem;
  }
  return InsertColumn(column, &definition);
}

CHeaderCtrl* CListCtrl::GetHeaderCtrl() const {
  const HWND header = Send<HWND>(LVM_GETHEADER);
  if (!header) {
    return nullptr;
  }
  if (auto* const permanent = dynamic_cast<CHeaderCtrl*>(FromHandlePermanent(header))) {
    return permanent;
  }
  return ThreadState::Get().Temporary<CHeaderCtrl>(header,
                                                   [](CHeaderCtrl& wrapper, HWND handle) { wrapper.m_hWnd = handle; });
}

int CListCtrl::InsertItem(UINT mask, int row, LPCTSTR text, UINT state, UINT stateMask, int image, LPARAM data) {
  LVITEM item = {};
  item.mask = mask;
  item.iItem = row;
  item.pszText = const_cast<LPTSTR>(text);
  item.state = state;
  item.stateMask = stateMask;
  item.iImage = image;
  item.lParam = data;
  return InsertItem(&item);
}

BOOL CListCtrl::SetItem(int row, int subItem, UINT mask, LPCTSTR text, int image, UINT state, UINT stateMask,
                        LPARAM data) {
  LVITEM item = {};
  item.mask = mask;
  item.iItem = row;
  item.iSubItem = subItem;
  item.pszText = const_cast<LPTSTR>(text);
  item.iImage = image;
  item.state = state;
  item.stateMask = stateMask;
  item.lParam = data;
  return SetItem(&item);
}

BOOL CListCtrl::SetItemText(int row, int subItem, LPCTSTR text) {
  LVITEM item = {};
  item.iSubItem = subItem;
  item.pszText = const_cast<LPTSTR>(text);
  return Send<BOOL>(LVM_SETITEMTEXTW, row, &item);
}

int CListCtrl::GetItemText(int row, int subItem, LPTSTR buffer, int size) const {
  LVITEM item = {};
  item.iSubItem = subItem;
  item.pszText = buffer;
  item.cchTextMax = size;
  return Send<int>(LVM_GETITEMTEXTW, row, &item);
}

CString CListCtrl::GetItemText(int row, int subItem) const {
  // The control does not tell the length beforehand: a buffer that came back full may have been too short.
  CString text;
  for (int size = 128;; size *= 2) {
    const int length = GetItemText(row, subItem, text.GetBufferSetLength(size), size);
    if (length < size - 1) {
      text.ReleaseBuffer(length < 0 ? 0 : length);
      return text;
    }
  }
}

BOOL CListCtrl::SetItemData(int row, DWORD_PTR data) {
  return SetItem(row, 0, LVIF_PARAM, nullptr, 0, 0, 0, static_cast<LPARAM>(data));
}

DWORD_PTR CListCtrl::GetItemData(int row) const {
  LVITEM item = {};
  item.mask = LVIF_PARAM;
  item.iItem = row;
  GetItem(&item);
  return static_cast<DWORD_PTR>(item.lParam);
}

BOOL CListCtrl::SetItemState(int row, UINT state, UINT mask) {
  LVITEM item = {};
  item.state = state;
  item.stateMask = mask;
  return Send<BOOL>(LVM_SETITEMSTATE, row, &item);
}

// A position is the row number plus 1, so that the first row differs from null.
POSITION CListCtrl::GetFirstSelectedItemPosition() const {
  return reinterpret_cast<POSITION>(static_cast<INT_PTR>(1 + GetNextItem(-1, LVNI_SELECTED)));
}

int CListCtrl::GetNextSelectedItem(POSITION& position) const {
  const int row = static_cast<int>(reinterpret_cast<INT_PTR>(position)) - 1;
  position = reinterpret_cast<POSITION>(static_cast<INT_PTR>(1 + GetNextItem(row, LVNI_SELECTED)));
  return row;
}
