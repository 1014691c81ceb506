// CFrameWnd: a top-level window with a menu, accelerators, control bars and one view. Commands go to the active view
// first, then to the frame, then to the application. Tool bars dock in the system's rebar control under the menu. The
// frame is allocated with new and deletes itself with its window; its bars are its members, its view deletes itself.
// Destroying the application's main window ends the message loop.
#pragma once

#include "platform/control_bar.h"
#include "platform/tool_bar.h"
#include "platform/unique_handle.h"

class CStatusBar;
class CView;

// What OnCreateClient makes the view from.
struct CCreateContext {
  const CRuntimeClass* m_pNewViewClass = nullptr;
  CFrameWnd* m_pCurrentFrame = nullptr;
};

inline constexpr UINT WM_SETMESSAGESTRING = 0x0362;
inline constexpr UINT AFX_IDS_IDLEMESSAGE = 0xE001;

class CFrameWnd : public CWnd {
  DECLARE_DYNAMIC(CFrameWnd)

 public:
  static const CRect rectDefault;

  BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style = WS_OVERLAPPEDWINDOW, const RECT& rect = rectDefault,
              CWnd* parent = nullptr, LPCTSTR menuName = nullptr, DWORD exStyle = 0, CCreateContext* context = nullptr);
  // Title (string resource, up to the first new-line), menu, accelerators and icon of one resource id.
  BOOL LoadFrame(UINT resourceId, DWORD style = WS_OVERLAPPEDWINDOW, CWnd* parent = nullptr,
                 CCreateContext* context = nullptr);
  BOOL LoadAccelTable(UINT resourceId);

  // Makes the view and its window; null on failure.
  CWnd* CreateView(CCreateContext* context, UINT id = AFX_IDW_PANE_FIRST);
  CView* GetActiveView() const { return activeView_; }
  void SetActiveView(CView* view);
  // Tells all descendants that the frame is complete (CView::OnInitialUpdate).
  void InitialUpdateFrame(BOOL makeVisible);

  // Lays out the bars and gives the rest of the client area to the view.
  virtual void RecalcLayout(BOOL notify = TRUE);
  void EnableDocking(DWORD sides) { dockingSides_ = sides; }
  // Puts a bar into the rebar at the top, which is made on first use.
  void DockControlBar(CControlBar* bar, UINT dockBarId = AFX_IDW_DOCKBAR_TOP, LPCRECT rect = nullptr);
  void ShowControlBar(CControlBar* bar, BOOL show, BOOL delay = FALSE);

  // The status bar, or null.
  virtual CWnd* GetMessageBar();
  void SetMessageText(LPCTSTR text);
  void SetMessageText(UINT id);
  // The prompt of a command: the first line of its string resource.
  virtual void GetMessageString(UINT id, CString& message) const;

  BOOL PreTranslateMessage(MSG* message) override;
  BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override;

 protected:
  virtual BOOL OnCreateClient(LPCREATESTRUCT create, CCreateContext* context);
  BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;
  BOOL PreCreateWindow(CREATESTRUCT& create) override;
  void PostNcDestroy() override { delete this; }

  afx_msg int OnCreate(LPCREATESTRUCT create);
  afx_msg void OnDestroy();
  afx_msg void OnClose();
  afx_msg void OnSize(UINT type, int cx, int cy);
  afx_msg void OnSetFocus(CWnd* old);
  afx_msg BOOL OnEraseBkgnd(CDC* dc);
  afx_msg void OnInitMenuPopup(CMenu* menu, UINT index, BOOL systemMenu);
  LRESULT OnMenuSelect(WPARAM wParam, LPARAM lParam);
  LRESULT OnSetMessageString(WPARAM wParam, LPARAM lParam);
  DECLARE_MESSAGE_MAP()

  HACCEL m_hAccelTable = nullptr;

 private:
  BOOL GiveToolTip(NMTTDISPINFOW* tip) const;

  CView* activeView_ = nullptr;
  CReBar rebar_;
  DWORD dockingSides_ = 0;
};

// The frame around a window; null when there is none.
CFrameWnd* AfxGetParentFrame(HWND window);
