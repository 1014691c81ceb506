#include "platform/property_page.h"

IMPLEMENT_DYNAMIC(CPropertyPage, CDialog)

BEGIN_MESSAGE_MAP(CPropertyPage, CDialog)
END_MESSAGE_MAP()

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
