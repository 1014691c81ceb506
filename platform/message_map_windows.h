// The ON_WM_ macros: each fixes the handler's name and, in the pickers it lists, its signature. The signatures are
// those of the CWnd handlers of the same names in wnd.h.
#pragma once

#include "platform/message_thunks.h"

#define ZV_MAP_MESSAGE(message, method, ...) \
  {message, 0, 0, 0, nullptr, &message_map::Invoke<&ThisClass::method __VA_OPT__(, ) __VA_ARGS__>},

#define ON_WM_CREATE() ZV_MAP_MESSAGE(WM_CREATE, OnCreate, message_map::LPointer<LPCREATESTRUCT>)
#define ON_WM_DESTROY() ZV_MAP_MESSAGE(WM_DESTROY, OnDestroy)
#define ON_WM_CLOSE() ZV_MAP_MESSAGE(WM_CLOSE, OnClose)
#define ON_WM_NCDESTROY() ZV_MAP_MESSAGE(WM_NCDESTROY, OnNcDestroy)
#define ON_WM_SIZE() ZV_MAP_MESSAGE(WM_SIZE, OnSize, message_map::WUint, message_map::LLowUint, message_map::LHighUint)
#define ON_WM_SIZING() ZV_MAP_MESSAGE(WM_SIZING, OnSizing, message_map::WUint, message_map::LPointer<LPRECT>)
#define ON_WM_MOVE() ZV_MAP_MESSAGE(WM_MOVE, OnMove, message_map::LLow, message_map::LHigh)
#define ON_WM_GETMINMAXINFO() ZV_MAP_MESSAGE(WM_GETMINMAXINFO, OnGetMinMaxInfo, message_map::LPointer<MINMAXINFO*>)
#define ON_WM_WINDOWPOSCHANGING() \
  ZV_MAP_MESSAGE(WM_WINDOWPOSCHANGING, OnWindowPosChanging, message_map::LPointer<WINDOWPOS*>)
#define ON_WM_WINDOWPOSCHANGED() \
  ZV_MAP_MESSAGE(WM_WINDOWPOSCHANGED, OnWindowPosChanged, message_map::LPointer<WINDOWPOS*>)
#define ON_WM_SHOWWINDOW() ZV_MAP_MESSAGE(WM_SHOWWINDOW, OnShowWindow, message_map::WBool, message_map::LUint)
#define ON_WM_ENABLE() ZV_MAP_MESSAGE(WM_ENABLE, OnEnable, message_map::WBool)
#define ON_WM_ACTIVATE() \
  ZV_MAP_MESSAGE(WM_ACTIVATE, OnActivate, message_map::WLow, message_map::LWnd, message_map::WHighBool)
#define ON_WM_SETFOCUS() ZV_MAP_MESSAGE(WM_SETFOCUS, OnSetFocus, message_map::WWnd)
#define ON_WM_KILLFOCUS() ZV_MAP_MESSAGE(WM_KILLFOCUS, OnKillFocus, message_map::WWnd)
#define ON_WM_PAINT() ZV_MAP_MESSAGE(WM_PAINT, OnPaint)
#define ON_WM_NCPAINT() ZV_MAP_MESSAGE(WM_NCPAINT, OnNcPaint)
#define ON_WM_ERASEBKGND() ZV_MAP_MESSAGE(WM_ERASEBKGND, OnEraseBkgnd, message_map::WDc)
#define ON_WM_CTLCOLOR() \
  ZV_MAP_MESSAGE(0x0019, OnCtlColor, message_map::WDc, message_map::LWnd, message_map::CtlColorKind)
#define ON_WM_NCHITTEST() ZV_MAP_MESSAGE(WM_NCHITTEST, OnNcHitTest, message_map::LPoint)
#define ON_WM_NCCALCSIZE() \
  ZV_MAP_MESSAGE(WM_NCCALCSIZE, OnNcCalcSize, message_map::WBool, message_map::LPointer<NCCALCSIZE_PARAMS*>)
#define ON_WM_SETCURSOR() \
  ZV_MAP_MESSAGE(WM_SETCURSOR, OnSetCursor, message_map::WWnd, message_map::LLowUint, message_map::LHighUint)
#define ON_WM_TIMER() ZV_MAP_MESSAGE(WM_TIMER, OnTimer, message_map::WParam)
#define ON_WM_HSCROLL() \
  ZV_MAP_MESSAGE(WM_HSCROLL, OnHScroll, message_map::WLow, message_map::WHigh, message_map::LScrollBar)
#define ON_WM_VSCROLL() \
  ZV_MAP_MESSAGE(WM_VSCROLL, OnVScroll, message_map::WLow, message_map::WHigh, message_map::LScrollBar)
#define ON_WM_MOUSEMOVE() ZV_MAP_MESSAGE(WM_MOUSEMOVE, OnMouseMove, message_map::WUint, message_map::LPoint)
#define ON_WM_MOUSELEAVE() ZV_MAP_MESSAGE(WM_MOUSELEAVE, OnMouseLeave)
#define ON_WM_MOUSEWHEEL() \
  ZV_MAP_MESSAGE(WM_MOUSEWHEEL, OnMouseWheel, message_map::WLow, message_map::WHighShort, message_map::LPoint)
#define ON_WM_LBUTTONDOWN() ZV_MAP_MESSAGE(WM_LBUTTONDOWN, OnLButtonDown, message_map::WUint, message_map::LPoint)
#define ON_WM_LBUTTONUP() ZV_MAP_MESSAGE(WM_LBUTTONUP, OnLButtonUp, message_map::WUint, message_map::LPoint)
#define ON_WM_LBUTTONDBLCLK() ZV_MAP_MESSAGE(WM_LBUTTONDBLCLK, OnLButtonDblClk, message_map::WUint, message_map::LPoint)
#define ON_WM_RBUTTONDOWN() ZV_MAP_MESSAGE(WM_RBUTTONDOWN, OnRButtonDown, message_map::WUint, message_map::LPoint)
#define ON_WM_RBUTTONUP() ZV_MAP_MESSAGE(WM_RBUTTONUP, OnRButtonUp, message_map::WUint, message_map::LPoint)
#define ON_WM_MBUTTONDOWN() ZV_MAP_MESSAGE(WM_MBUTTONDOWN, OnMButtonDown, message_map::WUint, message_map::LPoint)
#define ON_WM_MBUTTONUP() ZV_MAP_MESSAGE(WM_MBUTTONUP, OnMButtonUp, message_map::WUint, message_map::LPoint)
#define ON_WM_CAPTURECHANGED() ZV_MAP_MESSAGE(WM_CAPTURECHANGED, OnCaptureChanged, message_map::LWnd)
#define ON_WM_CANCELMODE() ZV_MAP_MESSAGE(WM_CANCELMODE, OnCancelMode)
#define ON_WM_KEYDOWN() \
  ZV_MAP_MESSAGE(WM_KEYDOWN, OnKeyDown, message_map::WUint, message_map::LLowUint, message_map::LHighUint)
#define ON_WM_KEYUP() \
  ZV_MAP_MESSAGE(WM_KEYUP, OnKeyUp, message_map::WUint, message_map::LLowUint, message_map::LHighUint)
#define ON_WM_SYSKEYDOWN() \
  ZV_MAP_MESSAGE(WM_SYSKEYDOWN, OnSysKeyDown, message_map::WUint, message_map::LLowUint, message_map::LHighUint)
#define ON_WM_CHAR() ZV_MAP_MESSAGE(WM_CHAR, OnChar, message_map::WUint, message_map::LLowUint, message_map::LHighUint)
#define ON_WM_SYSCOMMAND() ZV_MAP_MESSAGE(WM_SYSCOMMAND, OnSysCommand, message_map::WUint, message_map::LParam)
#define ON_WM_GETDLGCODE() ZV_MAP_MESSAGE(WM_GETDLGCODE, OnGetDlgCode)
#define ON_WM_CONTEXTMENU() ZV_MAP_MESSAGE(WM_CONTEXTMENU, OnContextMenu, message_map::WWnd, message_map::LPoint)
#define ON_WM_INITMENUPOPUP() \
  ZV_MAP_MESSAGE(WM_INITMENUPOPUP, OnInitMenuPopup, message_map::WMenu, message_map::LLowUint, message_map::LHighBool)
#define ON_WM_DRAWITEM() \
  ZV_MAP_MESSAGE(WM_DRAWITEM, OnDrawItem, message_map::WInt, message_map::LPointer<LPDRAWITEMSTRUCT>)
#define ON_WM_MEASUREITEM() \
  ZV_MAP_MESSAGE(WM_MEASUREITEM, OnMeasureItem, message_map::WInt, message_map::LPointer<LPMEASUREITEMSTRUCT>)
#define ON_WM_HELPINFO() ZV_MAP_MESSAGE(WM_HELP, OnHelpInfo, message_map::LPointer<HELPINFO*>)
#define ON_WM_DROPFILES() ZV_MAP_MESSAGE(WM_DROPFILES, OnDropFiles, message_map::WPointer<HDROP>)
#define ON_WM_PALETTECHANGED() ZV_MAP_MESSAGE(WM_PALETTECHANGED, OnPaletteChanged, message_map::WWnd)
#define ON_WM_QUERYNEWPALETTE() ZV_MAP_MESSAGE(WM_QUERYNEWPALETTE, OnQueryNewPalette)
#define ON_WM_SYSCOLORCHANGE() ZV_MAP_MESSAGE(WM_SYSCOLORCHANGE, OnSysColorChange)
#define ON_WM_SETTINGCHANGE() \
  ZV_MAP_MESSAGE(WM_SETTINGCHANGE, OnSettingChange, message_map::WUint, message_map::LPointer<LPCTSTR>)
#define ON_WM_THEMECHANGED() ZV_MAP_MESSAGE(WM_THEMECHANGED, OnThemeChanged)

// What a control gets back from its parent. HBRUSH CtlColor(CDC*, UINT), null leaves the colours to the parent;
// void HScroll(UINT code, UINT position) and VScroll.
#define ON_WM_CTLCOLOR_REFLECT() \
  ZV_MAP_MESSAGE(WM_REFLECT_BASE + 0x0019, CtlColor, message_map::WDc, message_map::CtlColorKind)
#define ON_WM_HSCROLL_REFLECT() \
  ZV_MAP_MESSAGE(WM_REFLECT_BASE + WM_HSCROLL, HScroll, message_map::WLow, message_map::WHigh)
#define ON_WM_VSCROLL_REFLECT() \
  ZV_MAP_MESSAGE(WM_REFLECT_BASE + WM_VSCROLL, VScroll, message_map::WLow, message_map::WHigh)
