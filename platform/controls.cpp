// What is longer than one message in the control classes: owner drawing, texts of unknown length, tips, pictures.

#include "platform/controls.h"

#include "platform/module_context.h"
#include "platform/thread_state.h"

CScrollBar* AfxScrollBarFromHandle(HWND window) {
  if (!window) {
    return nullptr;
  }
  if (auto* const permanent = dynamic_cast<CScrollBar*>(CWnd::FromHandlePermanent(window))) {
    return permanent;
  }
  return ThreadState::Get().Temporary<CScrollBar>(window, [](CScrollBar& bar, HWND handle) { bar.m_hWnd = handle; });
}

namespace {

// WM_DRAWITEM and WM_MEASUREITEM of an owner-drawn list.
template <class Control>
bool DrawsItself(Control& control, UINT message, LPARAM lParam) {
  if (message == WM_DRAWITEM) {
    control.DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lParam));
    return true;
  }
  if (message == WM_MEASUREITEM) {
    control.MeasureItem(reinterpret_cast<LPMEASUREITEMSTRUCT>(lParam));
    return true;
  }
  return false;
}

template <class Control>
void ReadText(const Control& control, UINT lengthMessage, UINT textMessage, int index, CString& text) {
  const auto length = static_cast<int>(control.SendMessage(lengthMessage, static_cast<WPARAM>(index)));
  if (length < 0) {
    text.Empty();
    return;
  }
  control.SendMessage(textMessage, static_cast<WPARAM>(index),
                      reinterpret_cast<LPARAM>(text.GetBufferSetLength(length + 1)));
  text.ReleaseBuffer();
}

}  // namespace

BOOL CButton::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (message == WM_DRAWITEM) {
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lParam));
    return TRUE;
  }
  return CControl::OnChildNotify(message, wParam, lParam, result);
}

BOOL CListBox::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  return DrawsItself(*this, message, lParam) || CControl::OnChildNotify(message, wParam, lParam, result);
}

BOOL CComboBox::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  return DrawsItself(*this, message, lParam) || CControl::OnChildNotify(message, wParam, lParam, result);
}

void CListBox::GetText(int index, CString& text) const { ReadText(*this, LB_GETTEXTLEN, LB_GETTEXT, index, text); }

void CComboBox::GetLBText(int index, CString& text) const {
  ReadText(*this, CB_GETLBTEXTLEN, CB_GETLBTEXT, index, text);
}

BOOL CToolTipCtrl::Create(CWnd* parent, DWORD style) {
  return CreateEx(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, style | WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                  CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, parent->GetSafeHwnd(), nullptr);
}

TOOLINFOW CToolTipCtrl::Describe(CWnd* window, UINT_PTR id) {
  TOOLINFOW tool = {};
  tool.cbSize = sizeof(tool);
  tool.uFlags = TTF_SUBCLASS;
  if (id == 0) {
    tool.uFlags |= TTF_IDISHWND;
    tool.hwnd = ::GetParent(window->m_hWnd);
    tool.uId = reinterpret_cast<UINT_PTR>(window->m_hWnd);
  } else {
    tool.hwnd = window->m_hWnd;
    tool.uId = id;
  }
  return tool;
}

BOOL CToolTipCtrl::AddTool(CWnd* window, LPCTSTR text, LPCRECT rect, UINT_PTR id) {
  TOOLINFOW tool = Describe(window, id);
  tool.lpszText = const_cast<LPTSTR>(text);
  if (rect) {
    tool.rect = *rect;
  }
  return Send<BOOL>(TTM_ADDTOOLW, 0, &tool);
}

void CToolTipCtrl::DelTool(CWnd* window, UINT_PTR id) {
  TOOLINFOW tool = Describe(window, id);
  Send(TTM_DELTOOLW, 0, &tool);
}

void CToolTipCtrl::UpdateTipText(LPCTSTR text, CWnd* window, UINT_PTR id) {
  TOOLINFOW tool = Describe(window, id);
  tool.lpszText = const_cast<LPTSTR>(text);
  Send(TTM_UPDATETIPTEXTW, 0, &tool);
}

CImageList* CImageList::FromHandle(HIMAGELIST list) {
  if (!list) {
    return nullptr;
  }
  return ThreadState::Get().Temporary<CImageList>(
      list, [](CImageList& wrapper, HIMAGELIST bound) { wrapper.m_hImageList = bound; });
}

HIMAGELIST CImageList::Detach() { return std::exchange(m_hImageList, nullptr); }

BOOL CImageList::Create(UINT bitmapId, int width, int grow, COLORREF mask) {
  return Attach(::ImageList_LoadImageW(AfxGetResourceHandle(), MAKEINTRESOURCEW(bitmapId), width, grow, mask,
                                       IMAGE_BITMAP, LR_CREATEDIBSECTION));
}

int CImageList::Add(CBitmap* image, CBitmap* mask) {
  return ::ImageList_Add(m_hImageList, *image, mask ? static_cast<HBITMAP>(*mask) : nullptr);
}

BOOL CImageList::Replace(int image, CBitmap* bitmap, CBitmap* mask) {
  return ::ImageList_Replace(m_hImageList, image, *bitmap, mask ? static_cast<HBITMAP>(*mask) : nullptr);
}

HTREEITEM CTreeCtrl::InsertItem(LPCTSTR text, HTREEITEM parent, HTREEITEM after) {
  TVINSERTSTRUCT insert = {};
  insert.hParent = parent;
  insert.hInsertAfter = after;
  insert.item.mask = TVIF_TEXT;
  insert.item.pszText = const_cast<LPTSTR>(text);
  return InsertItem(&insert);
}

CString CTreeCtrl::GetItemText(HTREEITEM item) const {
  wchar_t buffer[MAX_PATH] = L"";
  TVITEM query = {};
  query.mask = TVIF_TEXT;
  query.hItem = item;
  query.pszText = buffer;
  query.cchTextMax = MAX_PATH;
  GetItem(&query);
  return CString(buffer);
}

BOOL CTreeCtrl::SetItemText(HTREEITEM item, LPCTSTR text) {
  TVITEM change = {};
  change.mask = TVIF_TEXT;
  change.hItem = item;
  change.pszText = const_cast<LPTSTR>(text);
  return SetItem(&change);
}

DWORD_PTR CTreeCtrl::GetItemData(HTREEITEM item) const {
  TVITEM query = {};
  query.mask = TVIF_PARAM;
  query.hItem = item;
  GetItem(&query);
  return static_cast<DWORD_PTR>(query.lParam);
}

BOOL CTreeCtrl::SetItemData(HTREEITEM item, DWORD_PTR data) {
  TVITEM change = {};
  change.mask = TVIF_PARAM;
  change.hItem = item;
  change.lParam = static_cast<LPARAM>(data);
  return SetItem(&change);
}

BOOL CToolBarCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
  if (!CWnd::Create(TOOLBARCLASSNAMEW, nullptr, style, rect, parent, id)) {
    return FALSE;
  }
  Send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
  return TRUE;
}

int CToolBarCtrl::AddBitmap(int count, UINT bitmapId) {
  TBADDBITMAP bitmap = {AfxGetResourceHandle(), bitmapId};
  return Send<int>(TB_ADDBITMAP, count, &bitmap);
}
