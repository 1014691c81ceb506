// CControlBar: a strip at a side of a frame's client area: status bar, tool bar, rebar, dialog bar. The frame asks its
// bars, in the order of their creation, to take their place (Dock); what is left is the view's. Notifications of a
// bar's controls go to the frame. Bars belong to the frame's object as members.
#pragma once

#include "platform/message_map.h"
#include "platform/wnd.h"

inline constexpr DWORD CBRS_ALIGN_LEFT = 0x1000;
inline constexpr DWORD CBRS_ALIGN_TOP = 0x2000;
inline constexpr DWORD CBRS_ALIGN_RIGHT = 0x4000;
inline constexpr DWORD CBRS_ALIGN_BOTTOM = 0x8000;
inline constexpr DWORD CBRS_ALIGN_ANY = 0xF000;
inline constexpr DWORD CBRS_BORDER_LEFT = 0x0100;
inline constexpr DWORD CBRS_BORDER_TOP = 0x0200;
inline constexpr DWORD CBRS_BORDER_RIGHT = 0x0400;
inline constexpr DWORD CBRS_BORDER_BOTTOM = 0x0800;
inline constexpr DWORD CBRS_TOOLTIPS = 0x0010;
inline constexpr DWORD CBRS_FLYBY = 0x0020;
inline constexpr DWORD CBRS_LEFT = CBRS_ALIGN_LEFT | CBRS_BORDER_RIGHT;
inline constexpr DWORD CBRS_TOP = CBRS_ALIGN_TOP | CBRS_BORDER_BOTTOM;
inline constexpr DWORD CBRS_RIGHT = CBRS_ALIGN_RIGHT | CBRS_BORDER_LEFT;
inline constexpr DWORD CBRS_BOTTOM = CBRS_ALIGN_BOTTOM | CBRS_BORDER_TOP;

inline constexpr UINT AFX_IDW_TOOLBAR = 0xE800;
inline constexpr UINT AFX_IDW_STATUS_BAR = 0xE801;
inline constexpr UINT AFX_IDW_REBAR = 0xE804;
inline constexpr UINT AFX_IDW_DIALOGBAR = 0xE805;
inline constexpr UINT AFX_IDW_DOCKBAR_TOP = 0xE81B;

class CFrameWnd;

class CControlBar : public CWnd {
  DECLARE_DYNAMIC(CControlBar)

 public:
  DWORD GetBarStyle() const { return m_dwStyle; }
  void SetBarStyle(DWORD style) { m_dwStyle = style; }
  void EnableDocking(DWORD sides) { m_dwStyle |= sides & CBRS_ALIGN_ANY; }
  BOOL IsVisible() const { return (GetStyle() & WS_VISIBLE) != 0; }
  CFrameWnd* GetFrame() const;

  // The size that the bar wants, in pixels; the frame stretches it along its side.
  virtual CSize CalcFixedLayout(BOOL stretch, BOOL horizontal);
  // Puts a visible bar at its side of `remaining` and takes its place off it.
  void Dock(CRect& remaining);
  // Brings the state of the bar's commands up to date, at idle time.
  virtual void OnUpdateCmdUI(CFrameWnd* /*target*/, BOOL /*disableIfNoHandler*/) {}

 protected:
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
  BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;
  LRESULT OnIdleUpdateCmdUI(WPARAM disableIfNoHandler, LPARAM);
  DECLARE_MESSAGE_MAP()

  DWORD m_dwStyle = CBRS_ALIGN_TOP;
};
