// CProgressCtrl: a bar that fills.
#pragma once

#include "platform/control.h"

class CProgressCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(PROGRESS_CLASSW, nullptr, style, rect, parent, id);
  }
  void SetRange(short lower, short upper) { Send(PBM_SETRANGE, 0, MAKELPARAM(lower, upper)); }
  void SetRange32(int lower, int upper) { Send(PBM_SETRANGE32, lower, upper); }
  void GetRange(int& lower, int& upper) const {
    PBRANGE range = {};
    Send(PBM_GETRANGE, TRUE, &range);
    lower = range.iLow;
    upper = range.iHigh;
  }
  // Both return the former value.
  int SetPos(int position) { return Send<int>(PBM_SETPOS, position); }
  int SetStep(int step) { return Send<int>(PBM_SETSTEP, step); }
  int GetPos() const { return Send<int>(PBM_GETPOS); }
  int OffsetPos(int delta) { return Send<int>(PBM_DELTAPOS, delta); }
  int StepIt() { return Send<int>(PBM_STEPIT); }
  BOOL SetMarquee(BOOL on, int milliseconds) { return Send<BOOL>(PBM_SETMARQUEE, on, milliseconds); }
};
