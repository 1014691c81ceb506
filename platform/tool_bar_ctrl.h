// CToolBarCtrl: the system's tool bar control.
#pragma once

#include "platform/control.h"
#include "platform/image_list.h"

class CToolBarCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
  BOOL EnableButton(int id, BOOL enable = TRUE) { return Send<BOOL>(TB_ENABLEBUTTON, id, enable); }
  BOOL CheckButton(int id, BOOL check = TRUE) { return Send<BOOL>(TB_CHECKBUTTON, id, check); }
  BOOL HideButton(int id, BOOL hide = TRUE) { return Send<BOOL>(TB_HIDEBUTTON, id, hide); }
  BOOL IsButtonEnabled(int id) const { return Send<BOOL>(TB_ISBUTTONENABLED, id); }
  BOOL IsButtonChecked(int id) const { return Send<BOOL>(TB_ISBUTTONCHECKED, id); }
  BOOL IsButtonHidden(int id) const { return Send<BOOL>(TB_ISBUTTONHIDDEN, id); }
  int GetState(int id) const { return Send<int>(TB_GETSTATE, id); }
  BOOL SetState(int id, UINT state) { return Send<BOOL>(TB_SETSTATE, id, MAKELPARAM(state, 0)); }
  BOOL AddButtons(int count, TBBUTTON* buttons) { return Send<BOOL>(TB_ADDBUTTONSW, count, buttons); }
  BOOL InsertButton(int index, TBBUTTON* button) { return Send<BOOL>(TB_INSERTBUTTONW, index, button); }
  BOOL DeleteButton(int index) { return Send<BOOL>(TB_DELETEBUTTON, index); }
  BOOL GetButton(int index, TBBUTTON* button) const { return Send<BOOL>(TB_GETBUTTON, index, button); }
  int GetButtonCount() const { return Send<int>(TB_BUTTONCOUNT); }
  UINT CommandToIndex(UINT id) const { return Send<UINT>(TB_COMMANDTOINDEX, id); }
  // `count` pictures of the module's bitmap resource; returns the index of the first.
  int AddBitmap(int count, UINT bitmapId);
  BOOL SetButtonSize(CSize size) { return Send<BOOL>(TB_SETBUTTONSIZE, 0, MAKELONG(size.cx, size.cy)); }
  BOOL SetBitmapSize(CSize size) { return Send<BOOL>(TB_SETBITMAPSIZE, 0, MAKELONG(size.cx, size.cy)); }
  void AutoSize() { Send(TB_AUTOSIZE); }
  BOOL GetItemRect(int index, LPRECT rect) const { return Send<BOOL>(TB_GETITEMRECT, index, rect); }
  BOOL GetRect(int id, LPRECT rect) const { return Send<BOOL>(TB_GETRECT, id, rect); }
  BOOL GetMaxSize(LPSIZE size) const { return Send<BOOL>(TB_GETMAXSIZE, 0, size); }
  DWORD SetExtendedStyle(DWORD style) { return Send<DWORD>(TB_SETEXTENDEDSTYLE, 0, style); }
  CImageList* SetImageList(CImageList* list) {
    return CImageList::FromHandle(Send<HIMAGELIST>(TB_SETIMAGELIST, 0, list ? list->m_hImageList : nullptr));
  }
  CImageList* SetDisabledImageList(CImageList* list) {
    return CImageList::FromHandle(Send<HIMAGELIST>(TB_SETDISABLEDIMAGELIST, 0, list ? list->m_hImageList : nullptr));
  }
};
