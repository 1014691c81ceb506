#include "platform/frame_wnd.h"

#include "platform/menu.h"
#include "platform/module_context.h"
#include "platform/status_bar.h"
#include "platform/view.h"
#include "platform/win_app.h"

IMPLEMENT_DYNAMIC(CFrameWnd, CWnd)

BEGIN_MESSAGE_MAP(CFrameWnd, CWnd)
  ON_WM_CREATE()
  ON_WM_DESTROY()
  ON_WM_CLOSE()
  ON_WM_SIZE()
  ON_WM_SETFOCUS()
  ON_WM_ERASEBKGND()
  ON_WM_INITMENUPOPUP()
  ON_MESSAGE(WM_MENUSELECT, OnMenuSelect)
  ON_MESSAGE(WM_SETMESSAGESTRING, OnSetMessageString)
END_MESSAGE_MAP()

const CRect CFrameWnd::rectDefault(CW_USEDEFAULT, CW_USEDEFAULT, 0, 0);

BOOL CFrameWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                       LPCTSTR menuName, DWORD exStyle, CCreateContext* context) {
  const HMENU menu = menuName ? ::LoadMenuW(AfxGetResourceHandle(), menuName) : nullptr;
  if (menuName && !menu) {
    PostNcDestroy();
    return FALSE;
  }
  const bool systemPlaces = rect.left == CW_USEDEFAULT;
  return CreateEx(
      exStyle, className, windowName, style, rect.left, rect.top, systemPlaces ? CW_USEDEFAULT : rect.right - rect.left,
      systemPlaces ? CW_USEDEFAULT : rect.bottom - rect.top, parent ? parent->m_hWnd : nullptr, menu, context);
}

BOOL CFrameWnd::LoadFrame(UINT resourceId, DWORD style, CWnd* parent, CCreateContext* context) {
  CString texts;
  texts.LoadString(resourceId);
  CString title;
  AfxExtractSubString(title, texts, 0);
  const HICON icon = ::LoadIconW(AfxGetResourceHandle(), MAKEINTRESOURCEW(resourceId));
  const LPCTSTR className = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)),
                                                reinterpret_cast<HBRUSH>(COLOR_APPWORKSPACE + 1), icon);
  if (!Create(className, title, style, rectDefault, parent, MAKEINTRESOURCEW(resourceId), 0, context)) {
    return FALSE;
  }
  LoadAccelTable(resourceId);
  return TRUE;
}

BOOL CFrameWnd::LoadAccelTable(UINT resourceId) {
  m_hAccelTable = ::LoadAcceleratorsW(AfxGetResourceHandle(), MAKEINTRESOURCEW(resourceId));
  return m_hAccelTable != nullptr;
}

BOOL CFrameWnd::PreCreateWindow(CREATESTRUCT& create) {
  create.style |= WS_CLIPCHILDREN;
  return CWnd::PreCreateWindow(create);
}

int CFrameWnd::OnCreate(LPCREATESTRUCT create) {
  if (CWnd::OnCreate(create) == -1 || !OnCreateClient(create, static_cast<CCreateContext*>(create->lpCreateParams))) {
    return -1;
  }
  RecalcLayout();
  return 0;
}

BOOL CFrameWnd::OnCreateClient(LPCREATESTRUCT /*create*/, CCreateContext* context) {
  return !context || !context->m_pNewViewClass || CreateView(context) != nullptr;
}

CWnd* CFrameWnd::CreateView(CCreateContext* context, UINT id) {
  auto* const view = dynamic_cast<CWnd*>(context->m_pNewViewClass->CreateObject());
  if (!view) {
    return nullptr;
  }
  // A view that fails to get its window has deleted itself.
  if (!view->Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, 0, 0), this, id, context)) {
    return nullptr;
  }
  SetActiveView(dynamic_cast<CView*>(view));
  return view;
}

void CFrameWnd::SetActiveView(CView* view) {
  CView* const former = std::exchange(activeView_, view);
  if (former == view) {
    return;
  }
  if (former) {
    former->OnActivateView(FALSE, view, former);
  }
  if (view) {
    view->OnActivateView(TRUE, view, former);
  }
}

void CFrameWnd::InitialUpdateFrame(BOOL makeVisible) {
  SendMessageToDescendants(WM_INITIALUPDATE);
  if (makeVisible) {
    ShowWindow(SW_SHOW);
    UpdateWindow();
  }
}

void CFrameWnd::RecalcLayout(BOOL /*notify*/) {
  if (!m_hWnd || IsIconic()) {
    return;
  }
  CRect remaining;
  GetClientRect(remaining);
  CWnd* pane = nullptr;
  // Children are listed in the order of their creation, in which bars take their places.
  for (HWND child = ::GetWindow(m_hWnd, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
    CWnd* const object = FromHandlePermanent(child);
    if (auto* const bar = dynamic_cast<CControlBar*>(object)) {
      bar->Dock(remaining);
    } else if (object && static_cast<UINT>(object->GetDlgCtrlID()) == AFX_IDW_PANE_FIRST) {
      pane = object;
    }
  }
  if (pane) {
    pane->SetWindowPos(nullptr, remaining.left, remaining.top, remaining.Width(), remaining.Height(),
                       SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

void CFrameWnd::DockControlBar(CControlBar* bar, UINT /*dockBarId*/, LPCRECT /*rect*/) {
  if (!rebar_.m_hWnd && !rebar_.Create(this)) {
    return;
  }
  rebar_.AddBar(bar);
  RecalcLayout();
}

void CFrameWnd::ShowControlBar(CControlBar* bar, BOOL show, BOOL /*delay*/) {
  if (!rebar_.m_hWnd || !rebar_.ShowBar(bar, show != FALSE)) {
    bar->ShowWindow(show ? SW_SHOWNA : SW_HIDE);
  }
  RecalcLayout();
}

CWnd* CFrameWnd::GetMessageBar() {
  return dynamic_cast<CStatusBar*>(FromHandlePermanent(::GetDlgItem(m_hWnd, static_cast<int>(AFX_IDW_STATUS_BAR))));
}

void CFrameWnd::GetMessageString(UINT id, CString& message) const {
  CString texts;
  texts.LoadString(id);
  AfxExtractSubString(message, texts, 0);
}

void CFrameWnd::SetMessageText(LPCTSTR text) { SendMessage(WM_SETMESSAGESTRING, 0, reinterpret_cast<LPARAM>(text)); }

void CFrameWnd::SetMessageText(UINT id) { SendMessage(WM_SETMESSAGESTRING, id); }

LRESULT CFrameWnd::OnSetMessageString(WPARAM wParam, LPARAM lParam) {
  CString message(reinterpret_cast<LPCWSTR>(lParam));
  if (!lParam && wParam) {
    GetMessageString(static_cast<UINT>(wParam), message);
  }
  if (auto* const bar = dynamic_cast<CStatusBar*>(GetMessageBar())) {
    bar->SetPaneText(0, message);
  }
  return 0;
}

LRESULT CFrameWnd::OnMenuSelect(WPARAM wParam, LPARAM lParam) {
  const UINT flags = HIWORD(wParam);
  const bool closed = flags == 0xFFFF && lParam == 0;
  const bool isCommand = !(flags & (MF_POPUP | MF_SEPARATOR));
  SendMessage(WM_SETMESSAGESTRING, closed ? AFX_IDS_IDLEMESSAGE : isCommand ? LOWORD(wParam) : 0);
  return 0;
}

void CFrameWnd::OnInitMenuPopup(CMenu* menu, UINT /*index*/, BOOL systemMenu) {
  if (systemMenu) {
    return;
  }
  CCmdUI update;
  update.m_hMenu = menu->GetSafeHmenu();
  update.m_nIndexMax = menu->GetMenuItemCount();
  for (update.m_nIndex = 0; update.m_nIndex < update.m_nIndexMax; ++update.m_nIndex) {
    const UINT id = menu->GetMenuItemID(static_cast<int>(update.m_nIndex));
    const bool isSeparatorOrPopup = id == 0 || id == static_cast<UINT>(-1);
    if (!isSeparatorOrPopup) {
      update.m_nID = id;
      update.DoUpdate(this, TRUE);
    }
  }
}

BOOL CFrameWnd::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (CWnd::OnNotify(wParam, lParam, result)) {
    return TRUE;
  }
  auto* const header = reinterpret_cast<NMHDR*>(lParam);
  return header->code == static_cast<UINT>(TTN_GETDISPINFOW) && GiveToolTip(reinterpret_cast<NMTTDISPINFOW*>(lParam));
}

BOOL CFrameWnd::GiveToolTip(NMTTDISPINFOW* tip) const {
  UINT_PTR id = tip->hdr.idFrom;
  if (tip->uFlags & TTF_IDISHWND) {
    id = static_cast<UINT_PTR>(::GetDlgCtrlID(reinterpret_cast<HWND>(id)));
  }
  CString texts;
  CString line;
  if (id == 0 || !texts.LoadString(static_cast<UINT>(id)) || !AfxExtractSubString(line, texts, 1)) {
    return FALSE;
  }
  ::lstrcpynW(tip->szText, line, ARRAYSIZE(tip->szText));
  tip->lpszText = tip->szText;
  return TRUE;
}

BOOL CFrameWnd::PreTranslateMessage(MSG* message) {
  if (CWnd::PreTranslateMessage(message)) {
    return TRUE;
  }
  const bool isKey = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
  return isKey && m_hAccelTable && ::TranslateAcceleratorW(m_hWnd, m_hAccelTable, message);
}

BOOL CFrameWnd::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) {
  if (activeView_ && activeView_->OnCmdMsg(id, code, extra, info)) {
    return TRUE;
  }
  if (CWnd::OnCmdMsg(id, code, extra, info)) {
    return TRUE;
  }
  CWinApp* const app = AfxGetApp();
  return app && app->OnCmdMsg(id, code, extra, info);
}

void CFrameWnd::OnSize(UINT type, int cx, int cy) {
  CWnd::OnSize(type, cx, cy);
  if (type != SIZE_MINIMIZED) {
    RecalcLayout();
  }
}

void CFrameWnd::OnSetFocus(CWnd* old) {
  if (activeView_) {
    activeView_->SetFocus();
  } else {
    CWnd::OnSetFocus(old);
  }
}

// The view covers the client area.
BOOL CFrameWnd::OnEraseBkgnd(CDC* dc) { return activeView_ ? TRUE : CWnd::OnEraseBkgnd(dc); }

void CFrameWnd::OnClose() { DestroyWindow(); }

void CFrameWnd::OnDestroy() {
  activeView_ = nullptr;
  CWnd::OnDestroy();
  CWinThread* const thread = AfxGetThread();
  if (thread && thread->m_pMainWnd == this) {
    thread->m_pMainWnd = nullptr;
    ::PostQuitMessage(0);
  }
}

CFrameWnd* AfxGetParentFrame(HWND window) {
  for (HWND parent = window ? ::GetParent(window) : nullptr; parent; parent = ::GetParent(parent)) {
    if (auto* const frame = dynamic_cast<CFrameWnd*>(CWnd::FromHandlePermanent(parent))) {
      return frame;
    }
  }
  return nullptr;
}
