#include "platform/property_page.h"

IMPLEMENT_DYNAMIC(CPropertyPage, CDialog)

BEGIN_MESSAGE_MAP(CPropertyPage, CDialog)
END_MESSAGE_MAP()

BOOL CPropertyPage::CreatePage(CWnd* parent) {
  if (!CDialog::Create(m_lpszTemplateName, parent)) {
    return FALSE;
  }
  // Lets the frame's Tab key walk through the page's controls.
  ModifyStyleEx(0, WS_EX_CONTROLPARENT);
  return TRUE;
}

CString CPropertyPage::GetCaption() const {
  CString caption;
  if (captionId_) {
    caption.LoadString(captionId_);
  }
  return caption;
}

BOOL CPropertyPage::SetActivePage(BOOL active) {
  if (active ? !OnSetActive() : !OnKillActive()) {
    return FALSE;
  }
  ShowWindow(active ? SW_SHOW : SW_HIDE);
  return TRUE;
}

void CPropertyPage::OnOK() { ::SendMessageW(::GetParent(m_hWnd), WM_COMMAND, IDOK, 0); }

void CPropertyPage::OnCancel() { ::SendMessageW(::GetParent(m_hWnd), WM_COMMAND, IDCANCEL, 0); }
