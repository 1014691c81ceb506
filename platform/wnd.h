// CWnd: a window with message handling. `this` travels with the creation (CREATESTRUCT, dialog lParam) and is kept as a
// property of the window; there is no table of handles. One static window procedure (AfxWndProc) serves all windows and
// is the one exception barrier: what a handler throws is recorded in the object that was handling the message and ends
// the nearest modal run with -1. Destroying the object destroys its window; use Detach to leave the window alone.
#pragma once

#include <exception>

#include "platform/cmd_target.h"
#include "platform/window_handle.h"

class CDC;
class CDataExchange;
class CFont;
class CMenu;
class CScrollBar;
class CWnd;

// The framework's messages. WM_KICKIDLE is sent while a modal loop has nothing to do: (MSGF_DIALOGBOX, idle count); a
// result other than 0 asks for another one. WM_IDLEUPDATECMDUI goes to bars at idle time.
inline constexpr UINT WM_IDLEUPDATECMDUI = 0x0363;
inline constexpr UINT WM_INITIALUPDATE = 0x0364;
inline constexpr UINT WM_COMMANDHELP = 0x0365;
inline constexpr UINT WM_KICKIDLE = 0x036A;

inline constexpr UINT ID_HELP = 0xE146;
inline constexpr UINT AFX_IDW_PANE_FIRST = 0xE900;

// Flags of RunModalLoop.
inline constexpr DWORD MLF_NOIDLEMSG = 0x0001;
inline constexpr DWORD MLF_NOKICKIDLE = 0x0002;
inline constexpr DWORD MLF_SHOWONIDLE = 0x0004;

struct CCreateContext;

// The scroll bar object behind the lParam of a scroll message; null for a window's own bars.
CScrollBar* AfxScrollBarFromHandle(HWND window);

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// A window class of this module with AfxWndProc, registered on first use; the name stays valid.
LPCTSTR AfxRegisterWndClass(UINT classStyle, HCURSOR cursor = nullptr, HBRUSH background = nullptr,
                            HICON icon = nullptr);

class CWnd : public CCmdTarget, public WindowHandle {
  DECLARE_DYNAMIC(CWnd)

 public:
  CWnd() = default;
  ~CWnd() override;

  // Makes a window. Any class name will do: a window of one of the system's classes is subclassed before its first
  // message. A null class name means a plain class of the framework.
  BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent, UINT id,
              CCreateContext* context = nullptr);
  BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                UINT id, LPVOID parameter = nullptr);
  BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y, int width, int height,
                HWND parent, HMENU idOrMenu, LPVOID parameter = nullptr);
  virtual BOOL PreCreateWindow(CREATESTRUCT& /*create*/) { return TRUE; }
  virtual BOOL DestroyWindow();

  // Binds this object to a window: Attach only knows it, Subclass also handles its messages from now on.
  BOOL Attach(HWND window);
  HWND Detach();
  BOOL SubclassWindow(HWND window);
  BOOL SubclassDlgItem(UINT id, CWnd* parent);
  HWND UnsubclassWindow();
  virtual void PreSubclassWindow() {}

  // The object of a window; FromHandle makes a temporary one when there is none (see thread_state.h).
  static CWnd* FromHandle(HWND window);
  static CWnd* FromHandlePermanent(HWND window);
  static const CWnd wndTop, wndBottom, wndTopMost, wndNoTopMost;

  CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
  CWnd* GetOwner() const { return FromHandle(::GetWindow(m_hWnd, GW_OWNER)); }
  CWnd* GetTopLevelParent() const { return FromHandle(::GetAncestor(m_hWnd, GA_ROOT)); }
  CWnd* SetParent(CWnd* parent) { return FromHandle(::SetParent(m_hWnd, parent ? parent->m_hWnd : nullptr)); }
  CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
  using WindowHandle::GetDlgItem;
  CWnd* GetWindow(UINT relation) const { return FromHandle(::GetWindow(m_hWnd, relation)); }
  CWnd* GetNextDlgTabItem(CWnd* control, BOOL previous = FALSE) const {
    return FromHandle(::GetNextDlgTabItem(m_hWnd, control->GetSafeHwnd(), previous));
  }
  CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
  CWnd* SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
  BOOL SetForegroundWindow() { return ::SetForegroundWindow(m_hWnd); }
  CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
  static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
  static CWnd* GetActiveWindow() { return FromHandle(::GetActiveWindow()); }
  static CWnd* GetForegroundWindow() { return FromHandle(::GetForegroundWindow()); }
  static CWnd* GetCapture() { return FromHandle(::GetCapture()); }
  static CWnd* GetDesktopWindow() { return FromHandle(::GetDesktopWindow()); }
  static CWnd* WindowFromPoint(POINT point) { return FromHandle(::WindowFromPoint(point)); }

  CFont* GetFont() const;
  void SetFont(CFont* font, BOOL redraw = TRUE);
  CMenu* GetMenu() const;
  BOOL SetMenu(CMenu* menu);
  CMenu* GetSystemMenu(BOOL revert) const;
  // A device context from GetDC goes back with ReleaseDC; CClientDC does both.
  CDC* GetDC();
  int ReleaseDC(CDC* dc);
  void CenterWindow(CWnd* alternateOwner = nullptr);

  // Moves values between controls and members through DoDataExchange; false when a value could not be read.
  BOOL UpdateData(BOOL saveAndValidate = TRUE);

  // A modal loop of this window's own: until EndModalLoop, or until the window is gone. It disables nothing.
  int RunModalLoop(DWORD flags = 0);
  virtual void EndModalLoop(int result);
  BOOL ContinueModal() const { return continueModal_ && m_hWnd; }

  virtual BOOL PreTranslateMessage(MSG* message);
  BOOL PreTranslateInput(MSG* message) { return ::IsDialogMessageW(m_hWnd, message); }
  // Offers the message to every window object from its target up to `stop`.
  static BOOL WalkPreTranslateTree(HWND stop, MSG* message);
  // Sends WM_IDLEUPDATECMDUI to this window and all below it.
  void SendMessageToIdleWindows();
  void SendMessageToDescendants(UINT message, WPARAM wParam = 0, LPARAM lParam = 0, BOOL deep = TRUE);

  // What the barrier caught in a handler of this window; null when nothing.
  const std::exception_ptr& GetFailure() const { return failure_; }

  // One message, behind the barrier: looks in the message maps, then asks the former window procedure.
  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
  virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  // Takes note of a failure and ends the nearest modal run of this window or its owners.
  void RecordFailure(std::exception_ptr failure);
  // Lets go of the window of a temporary object.
  void ReleaseTemporary() { m_hWnd = nullptr; }

 protected:
  static const AFX_MSGMAP* GetThisMessageMap();
  const AFX_MSGMAP* GetMessageMap() const override;

  virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
  virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result);
  // A message that the parent got about this control and gives it first. True when it is dealt with.
  virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
  virtual void DoDataExchange(CDataExchange* /*exchange*/) {}
  virtual void PostNcDestroy() {}
  // Ends this window's modal run because of a failure; false when there is none.
  virtual bool EndRunAfterFailure();

  // Hands the message being handled to the former window procedure, with its original parameters.
  LRESULT Default();
  const MSG& GetCurrentMessage() const { return currentMessage_; }

  // Defaults of the handlers behind the ON_WM_ macros.
  int OnCreate(LPCREATESTRUCT) { return static_cast<int>(Default()); }
  void OnDestroy() { Default(); }
  void OnClose() { Default(); }
  void OnNcDestroy();
  void OnSize(UINT, int, int) { Default(); }
  void OnSizing(UINT, LPRECT) { Default(); }
  void OnMove(int, int) { Default(); }
  void OnGetMinMaxInfo(MINMAXINFO*) { Default(); }
  void OnWindowPosChanging(WINDOWPOS*) { Default(); }
  void OnWindowPosChanged(WINDOWPOS*) { Default(); }
  void OnShowWindow(BOOL, UINT) { Default(); }
  void OnEnable(BOOL) { Default(); }
  void OnActivate(UINT, CWnd*, BOOL) { Default(); }
  void OnSetFocus(CWnd*) { Default(); }
  void OnKillFocus(CWnd*) { Default(); }
  void OnPaint() { Default(); }
  void OnNcPaint() { Default(); }
  BOOL OnEraseBkgnd(CDC*) { return static_cast<BOOL>(Default()); }
  HBRUSH OnCtlColor(CDC*, CWnd*, UINT) { return reinterpret_cast<HBRUSH>(ReflectOrDefault()); }
  LRESULT OnNcHitTest(CPoint) { return Default(); }
  void OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS*) { Default(); }
  BOOL OnSetCursor(CWnd*, UINT, UINT) { return static_cast<BOOL>(Default()); }
  void OnTimer(UINT_PTR) { Default(); }
  void OnHScroll(UINT, UINT, CScrollBar*) { ReflectOrDefault(); }
  void OnVScroll(UINT, UINT, CScrollBar*) { ReflectOrDefault(); }
  void OnMouseMove(UINT, CPoint) { Default(); }
  void OnMouseLeave() { Default(); }
  BOOL OnMouseWheel(UINT, short, CPoint) { return static_cast<BOOL>(Default()); }
  void OnLButtonDown(UINT, CPoint) { Default(); }
  void OnLButtonUp(UINT, CPoint) { Default(); }
  void OnLButtonDblClk(UINT, CPoint) { Default(); }
  void OnRButtonDown(UINT, CPoint) { Default(); }
  void OnRButtonUp(UINT, CPoint) { Default(); }
  void OnMButtonDown(UINT, CPoint) { Default(); }
  void OnMButtonUp(UINT, CPoint) { Default(); }
  void OnCaptureChanged(CWnd*) { Default(); }
  void OnCancelMode() { Default(); }
  void OnKeyDown(UINT, UINT, UINT) { Default(); }
  void OnKeyUp(UINT, UINT, UINT) { Default(); }
  void OnSysKeyDown(UINT, UINT, UINT) { Default(); }
  void OnChar(UINT, UINT, UINT) { Default(); }
  void OnSysCommand(UINT, LPARAM) { Default(); }
  UINT OnGetDlgCode() { return static_cast<UINT>(Default()); }
  void OnContextMenu(CWnd*, CPoint) { Default(); }
  void OnInitMenuPopup(CMenu*, UINT, BOOL) { Default(); }
  void OnDrawItem(int, LPDRAWITEMSTRUCT) { ReflectOrDefault(); }
  void OnMeasureItem(int, LPMEASUREITEMSTRUCT) { ReflectOrDefault(); }
  BOOL OnHelpInfo(HELPINFO*) { return static_cast<BOOL>(Default()); }
  void OnDropFiles(HDROP) { Default(); }
  void OnPaletteChanged(CWnd*) { Default(); }
  BOOL OnQueryNewPalette() { return static_cast<BOOL>(Default()); }
  void OnSysColorChange() { Default(); }
  void OnSettingChange(UINT, LPCTSTR) { Default(); }
  LRESULT OnThemeChanged() { return Default(); }

  int modalResult_ = -1;
  bool continueModal_ = false;
  std::exception_ptr failure_;

 private:
  friend LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  explicit CWnd(HWND special) { m_hWnd = special; }
  LRESULT Dispatch(UINT message, WPARAM wParam, LPARAM lParam);
  BOOL ReflectLastMessage(HWND child, LRESULT* result);
  LRESULT ReflectOrDefault();
  void Route(MSG& message);
  void IdlePhase(DWORD flags);

  WNDPROC superProcedure_ = nullptr;
  MSG currentMessage_ = {};
};
