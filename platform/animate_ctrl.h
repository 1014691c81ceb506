// CAnimateCtrl: plays a silent AVI clip from the module's resources (type "AVI") or a file.
#pragma once

#include "platform/control.h"
#include "platform/module_context.h"

class CAnimateCtrl : public CControl {
 public:
  BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    return CWnd::Create(ANIMATE_CLASSW, nullptr, style, rect, parent, id);
  }
  BOOL Open(UINT id) { return Send<BOOL>(ACM_OPENW, AfxGetResourceHandle(), MAKEINTRESOURCEW(id)); }
  BOOL Open(LPCTSTR fileName) { return Send<BOOL>(ACM_OPENW, 0, fileName); }
  // Frames from `from` to `to` (-1: the last), `repeat` times (-1: for ever).
  BOOL Play(UINT from, UINT to, UINT repeat) { return Send<BOOL>(ACM_PLAY, repeat, MAKELONG(from, to)); }
  BOOL Stop() { return Send<BOOL>(ACM_STOP); }
  BOOL Seek(UINT frame) { return Play(frame, frame, 1); }
  BOOL Close() { return Send<BOOL>(ACM_OPENW); }
};
