#include "pickers/open_dlg_edit.h"

#include "pickers/navigating_mark.h"

BEGIN_MESSAGE_MAP(CZVOpenDlgEdit, CEdit)
  ON_WM_KEYUP()
END_MESSAGE_MAP()

void CZVOpenDlgEdit::OnKeyUp(UINT key, UINT repeat, UINT flags) {
  if (navigatingThroughNameBox) {
    SetWindowText(L"");
    navigatingThroughNameBox = false;
    SetSel(0, -1);
  }
  CEdit::OnKeyUp(key, repeat, flags);
}
