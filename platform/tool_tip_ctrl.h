// CToolTipCtrl: the small explaining windows. AddTool makes the tip see its tool's mouse messages by itself
// (TTF_SUBCLASS), so RelayEvent is not needed; texts are copied by the control.
#pragma once

#include "platform/control.h"

class CToolTipCtrl : public CControl {
 public:
  BOOL Create(CWnd* parent, DWORD style = 0);
  // The whole window, or with `rect` and `id` a part of it.
  BOOL AddTool(CWnd* window, LPCTSTR text, LPCRECT rect = nullptr, UINT_PTR id = 0);
  void DelTool(CWnd* window, UINT_PTR id = 0);
  void UpdateTipText(LPCTSTR text, CWnd* window, UINT_PTR id = 0);
  void Activate(BOOL activate) { Send(TTM_ACTIVATE, activate); }
  void SetDelayTime(DWORD which, int milliseconds) { Send(TTM_SETDELAYTIME, which, milliseconds); }
  int SetMaxTipWidth(int pixels) { return Send<int>(TTM_SETMAXTIPWIDTH, 0, pixels); }
  int GetToolCount() const { return Send<int>(TTM_GETTOOLCOUNT); }
  void RelayEvent(MSG* message) { Send(TTM_RELAYEVENT, 0, message); }
  void Pop() { Send(TTM_POP); }

 private:
  static TOOLINFOW Describe(CWnd* window, UINT_PTR id);
};
