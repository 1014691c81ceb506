#include "platform/dialog_bar.h"

#include "platform/module_context.h"

IMPLEMENT_DYNAMIC(CDialogBar, CControlBar)

BEGIN_MESSAGE_MAP(CDialogBar, CControlBar)
END_MESSAGE_MAP()

INT_PTR CALLBACK CDialogBar::DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_INITDIALOG || CWnd::FromHandlePermanent(window)) {
    return FALSE;
  }
  auto* const bar = reinterpret_cast<CDialogBar*>(lParam);
  if (bar->SubclassWindow(window)) {
    AfxWndProc(window, message, wParam, lParam);
  }
  // The focus stays where it is.
  return FALSE;
}

BOOL CDialogBar::Create(CWnd* parent, UINT templateId, UINT style, UINT id) {
  const HINSTANCE module = AfxGetResourceHandle();
  const HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(templateId), RT_DIALOG);
  const HGLOBAL loaded = found ? ::LoadResource(module, found) : nullptr;
  return loaded && Create(parent, static_cast<LPCDLGTEMPLATE>(::LockResource(loaded)), style, id);
}

BOOL CDialogBar::Create(CWnd* parent, LPCDLGTEMPLATE dialogTemplate, UINT style, UINT id) {
  m_dwStyle = style & 0xFFFF;
  if (!::CreateDialogIndirectParamW(AfxGetInstanceHandle(), dialogTemplate, parent->m_hWnd,
                                    &CDialogBar::DialogProcedure, reinterpret_cast<LPARAM>(this)) ||
      !m_hWnd) {
    return FALSE;
  }
  SetDlgCtrlID(static_cast<int>(id));
  CRect rect;
  GetWindowRect(rect);
  m_sizeDefault = rect.Size();
  ShowWindow(SW_SHOWNA);
  return TRUE;
}

CSize CDialogBar::CalcFixedLayout(BOOL /*stretch*/, BOOL /*horizontal*/) { return m_sizeDefault; }

BOOL CDialogBar::PreTranslateMessage(MSG* message) {
  if (CControlBar::PreTranslateMessage(message)) {
    return TRUE;
  }
  return message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST && PreTranslateInput(message);
}
