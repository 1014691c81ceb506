// CSliderCtrl: a track bar. Its parent hears of moves by WM_HSCROLL and WM_VSCROLL.
#pragma once

#include "platform/control.h"

class CSliderCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(TRACKBAR_CLASSW, nullptr, style, rect, parent, id);
  }
  int GetPos() const { return Send<int>(TBM_GETPOS); }
  void SetPos(int position) { Send(TBM_SETPOS, TRUE, position); }
  void SetRange(int minimum, int maximum, BOOL redraw = FALSE) {
    Send(TBM_SETRANGEMIN, FALSE, minimum);
    Send(TBM_SETRANGEMAX, redraw, maximum);
  }
  void GetRange(int& minimum, int& maximum) const {
    minimum = GetRangeMin();
    maximum = GetRangeMax();
  }
  int GetRangeMin() const { return Send<int>(TBM_GETRANGEMIN); }
  int GetRangeMax() const { return Send<int>(TBM_GETRANGEMAX); }
  int SetLineSize(int size) { return Send<int>(TBM_SETLINESIZE, 0, size); }
  int SetPageSize(int size) { return Send<int>(TBM_SETPAGESIZE, 0, size); }
  void SetTicFreq(int frequency) { Send(TBM_SETTICFREQ, frequency); }
  BOOL SetTic(int position) { return Send<BOOL>(TBM_SETTIC, 0, position); }
  void ClearTics(BOOL redraw = FALSE) { Send(TBM_CLEARTICS, redraw); }
};
