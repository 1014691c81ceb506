#include "platform/menu.h"

#include "platform/module_context.h"
#include "platform/thread_state.h"
#include "platform/wnd.h"

CMenu* CMenu::FromHandle(HMENU menu) {
  if (!menu) {
    return nullptr;
  }
  return ThreadState::Get().Temporary<CMenu>(menu, [](CMenu& wrapper, HMENU bound) { wrapper.m_hMenu = bound; });
}

HMENU CMenu::Detach() { return std::exchange(m_hMenu, nullptr); }

BOOL CMenu::LoadMenu(UINT id) { return Attach(::LoadMenuW(AfxGetResourceHandle(), MAKEINTRESOURCEW(id))); }

int CMenu::GetMenuString(UINT item, CString& text, UINT flags) const {
  const int length = ::GetMenuStringW(m_hMenu, item, nullptr, 0, flags);
  ::GetMenuStringW(m_hMenu, item, text.GetBufferSetLength(length + 1), length + 1, flags);
  text.ReleaseBuffer();
  return text.GetLength();
}

BOOL CMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* window, LPCRECT exclude) {
  TPMPARAMS parameters = {};
  parameters.cbSize = sizeof(parameters);
  if (exclude) {
    parameters.rcExclude = *exclude;
  }
  return ::TrackPopupMenuEx(m_hMenu, flags, x, y, window->GetSafeHwnd(), exclude ? &parameters : nullptr);
}
