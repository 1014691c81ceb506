#include "platform/dialog.h"

#include "platform/module_context.h"
#include "platform/scope_exit.h"
#include "platform/win_app.h"

IMPLEMENT_DYNAMIC(CDialog, CWnd)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
  ON_COMMAND(IDOK, OnOK)
  ON_COMMAND(IDCANCEL, OnCancel)
  ON_MESSAGE(WM_INITDIALOG, HandleInitDialog)
END_MESSAGE_MAP()

namespace {

// Ids from here on are commands of an application, below they belong to the dialog's own controls.
constexpr UINT kFirstCommandId = 0x8000;

LPCDLGTEMPLATE FindTemplate(LPCTSTR name) {
  const HINSTANCE module = AfxFindResourceHandle(name, RT_DIALOG);
  const HRSRC resource = ::FindResourceW(module, name, RT_DIALOG);
  const HGLOBAL loaded = resource ? ::LoadResource(module, resource) : nullptr;
  return loaded ? static_cast<LPCDLGTEMPLATE>(::LockResource(loaded)) : nullptr;
}

}  // namespace

CDialog::~CDialog() {
  if (m_hWnd) {
    DestroyWindow();
  }
}

// Only the first message of consequence comes here: it binds the object, whose window procedure sees everything after
// it.
INT_PTR CALLBACK CDialog::DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_INITDIALOG || CWnd::FromHandlePermanent(window)) {
    return FALSE;
  }
  auto* const dialog = reinterpret_cast<CDialog*>(lParam);
  return dialog->SubclassWindow(window) && AfxWndProc(window, message, wParam, lParam);
}

LRESULT CDialog::HandleInitDialog(WPARAM /*wParam*/, LPARAM /*lParam*/) { return OnInitDialog(); }

BOOL CDialog::CreateFrom(LPCDLGTEMPLATE dialogTemplate, HWND parent) {
  if (!dialogTemplate) {
    return FALSE;
  }
  return ::CreateDialogIndirectParamW(AfxGetInstanceHandle(), dialogTemplate, parent, &CDialog::DialogProcedure,
                                      reinterpret_cast<LPARAM>(this)) != nullptr &&
         m_hWnd;
}

BOOL CDialog::Create(LPCTSTR templateName, CWnd* parent) {
  m_lpszTemplateName = templateName;
  return CreateIndirect(FindTemplate(templateName), parent);
}

BOOL CDialog::CreateIndirect(LPCDLGTEMPLATE dialogTemplate, CWnd* parent) {
  m_pParentWnd = parent;
  return CreateFrom(dialogTemplate, parent ? parent->m_hWnd : nullptr);
}

BOOL CDialog::InitModalIndirect(LPCDLGTEMPLATE dialogTemplate, CWnd* parent) {
  modalTemplate_ = dialogTemplate;
  m_pParentWnd = parent;
  return dialogTemplate != nullptr;
}

// The top-level window that the dialog is to stand before: the last popup of its parent, of the main window or of
// whatever window of this thread is active.
HWND CDialog::FindOwner() const {
  HWND owner = m_pParentWnd ? m_pParentWnd->m_hWnd : nullptr;
  if (!owner) {
    const CWnd* const mainWindow = AfxGetMainWnd();
    owner = mainWindow && mainWindow->m_hWnd ? mainWindow->m_hWnd : ::GetActiveWindow();
  }
  if (!owner) {
    return nullptr;
  }
  owner = ::GetAncestor(owner, GA_ROOT);
  return m_pParentWnd ? owner : ::GetLastActivePopup(owner);
}

INT_PTR CDialog::DoModal() {
  const LPCDLGTEMPLATE dialogTemplate = modalTemplate_ ? modalTemplate_ : FindTemplate(m_lpszTemplateName);
  if (!dialogTemplate || m_hWnd) {
    return -1;
  }
  failure_ = nullptr;
  modalResult_ = -1;
  const HWND owner = FindOwner();
  const HWND formerFocus = ::GetFocus();
  if (owner && ::IsWindowEnabled(owner)) {
    ::EnableWindow(owner, FALSE);
    disabledOwner_ = owner;
  }
  const scope_exit cleanUp([&] {
    ReleaseOwner();
    DestroyWindow();
    if (formerFocus && ::IsWindow(formerFocus) && ::GetActiveWindow() == ::GetAncestor(formerFocus, GA_ROOT)) {
      ::SetFocus(formerFocus);
    }
  });
  // EndDialog may already be called in OnInitDialog, before the loop.
  continueModal_ = true;
  if (CreateFrom(dialogTemplate, owner) && continueModal_) {
    RunModalLoop(GetStyle() & DS_NOIDLEMSG ? MLF_SHOWONIDLE | MLF_NOIDLEMSG : MLF_SHOWONIDLE);
  }
  continueModal_ = false;
  return modalResult_;
}

// The owner must take input again before the dialog disappears, else the system activates some other program's window.
void CDialog::ReleaseOwner() {
  const HWND owner = std::exchange(disabledOwner_, nullptr);
  if (owner) {
    ::EnableWindow(owner, TRUE);
  }
  if (m_hWnd) {
    const bool wasActive = ::GetActiveWindow() == m_hWnd;
    SetWindowPos(nullptr, 0, 0, 0, 0, SWP_HIDEWINDOW | SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_NOZORDER);
    if (owner && wasActive) {
      ::SetActiveWindow(owner);
    }
  }
}

void CDialog::EndDialog(int result) {
  if (continueModal_) {
    EndModalLoop(result);
    ReleaseOwner();
  } else if (m_hWnd) {
    ::EndDialog(m_hWnd, result);
  }
}

bool CDialog::EndRunAfterFailure() {
  if (!continueModal_) {
    return false;
  }
  EndDialog(-1);
  return true;
}

BOOL CDialog::OnInitDialog() {
  // A template whose control is missing from the exchange is a bug; a value out of range is not possible here.
  if (!UpdateData(FALSE)) {
    EndDialog(-1);
    return FALSE;
  }
  return TRUE;
}

void CDialog::OnOK() {
  if (UpdateData(TRUE)) {
    EndDialog(IDOK);
  }
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

BOOL CDialog::PreTranslateMessage(MSG* message) {
  if (CWnd::PreTranslateMessage(message)) {
    return TRUE;
  }
  // A dialog inside a dialog leaves keys to the one around it, so that Tab, Enter and Esc work across both.
  if ((GetStyle() & WS_CHILD) && dynamic_cast<CDialog*>(FromHandlePermanent(::GetParent(m_hWnd)))) {
    return FALSE;
  }
  const bool isKey = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
  const bool isMouse = message->message >= WM_MOUSEFIRST && message->message <= WM_MOUSELAST;
  return (isKey || isMouse) && PreTranslateInput(message);
}

BOOL CDialog::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) {
  if (CWnd::OnCmdMsg(id, code, extra, info)) {
    return TRUE;
  }
  const bool isCommand = code == CN_COMMAND || code == CN_UPDATE_COMMAND_UI;
  if (!isCommand || id < kFirstCommandId) {
    return FALSE;
  }
  CWnd* const parent = CWnd::FromHandlePermanent(::GetParent(m_hWnd));
  if (parent && parent->OnCmdMsg(id, code, extra, info)) {
    return TRUE;
  }
  CWinThread* const thread = AfxGetThread();
  return thread && thread->OnCmdMsg(id, code, extra, info);
}
