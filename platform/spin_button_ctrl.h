// CSpinButtonCtrl: a pair of arrows, mostly beside an edit field (its buddy).
#pragma once

#include "platform/control.h"

class CSpinButtonCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(UPDOWN_CLASSW, nullptr, style, rect, parent, id);
  }
  CWnd* SetBuddy(CWnd* buddy) { return FromHandle(Send<HWND>(UDM_SETBUDDY, buddy ? buddy->m_hWnd : nullptr)); }
  CWnd* GetBuddy() const { return FromHandle(Send<HWND>(UDM_GETBUDDY)); }
  int SetPos(int position) { return Send<int>(UDM_SETPOS32, 0, position); }
  int GetPos() const { return Send<int>(UDM_GETPOS32); }
  int SetPos32(int position) { return SetPos(position); }
  int GetPos32(BOOL* failed = nullptr) const { return Send<int>(UDM_GETPOS32, 0, failed); }
  void SetRange(short lower, short upper) { SetRange32(lower, upper); }
  void SetRange32(int lower, int upper) { Send(UDM_SETRANGE32, lower, upper); }
  void GetRange32(int& lower, int& upper) const { Send(UDM_GETRANGE32, &lower, &upper); }
  BOOL SetAccel(int count, UDACCEL* steps) { return Send<BOOL>(UDM_SETACCEL, count, steps); }
  int SetBase(int base) { return Send<int>(UDM_SETBASE, base); }
};
