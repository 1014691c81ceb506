// CMenu: a menu handle and the platform's calls on it. It destroys its menu unless the menu is attached to a window or
// came from FromHandle or GetSubMenu.
#pragma once

#include "platform/cstring.h"
#include "platform/object.h"
#include "platform/win32.h"

class CWnd;

class CMenu : public CObject {
 public:
  CMenu() = default;
  ~CMenu() override { DestroyMenu(); }

  static CMenu* FromHandle(HMENU menu);
  BOOL Attach(HMENU menu) { return (m_hMenu = menu) != nullptr; }
  HMENU Detach();
  HMENU GetSafeHmenu() const { return m_hMenu; }
  operator HMENU() const { return m_hMenu; }
  void ReleaseTemporary() { m_hMenu = nullptr; }

  BOOL CreateMenu() { return Attach(::CreateMenu()); }
  BOOL CreatePopupMenu() { return Attach(::CreatePopupMenu()); }
  // From the resources of the module in force.
  BOOL LoadMenu(UINT id);
  BOOL DestroyMenu() { return m_hMenu && ::DestroyMenu(Detach()); }

  UINT GetMenuItemCount() const { return static_cast<UINT>(::GetMenuItemCount(m_hMenu)); }
  UINT GetMenuItemID(int position) const { return ::GetMenuItemID(m_hMenu, position); }
  UINT GetMenuState(UINT item, UINT flags) const { return ::GetMenuState(m_hMenu, item, flags); }
  CMenu* GetSubMenu(int position) const { return FromHandle(::GetSubMenu(m_hMenu, position)); }
  int GetMenuString(UINT item, CString& text, UINT flags) const;
  BOOL AppendMenu(UINT flags, UINT_PTR idOrMenu = 0, LPCTSTR text = nullptr) {
    return ::AppendMenuW(m_hMenu, flags, idOrMenu, text);
  }
  BOOL InsertMenu(UINT item, UINT flags, UINT_PTR idOrMenu = 0, LPCTSTR text = nullptr) {
    return ::InsertMenuW(m_hMenu, item, flags, idOrMenu, text);
  }
  BOOL ModifyMenu(UINT item, UINT flags, UINT_PTR idOrMenu = 0, LPCTSTR text = nullptr) {
    return ::ModifyMenuW(m_hMenu, item, flags, idOrMenu, text);
  }
  BOOL RemoveMenu(UINT item, UINT flags) { return ::RemoveMenu(m_hMenu, item, flags); }
  BOOL DeleteMenu(UINT item, UINT flags) { return ::DeleteMenu(m_hMenu, item, flags); }
  UINT EnableMenuItem(UINT item, UINT flags) { return static_cast<UINT>(::EnableMenuItem(m_hMenu, item, flags)); }
  UINT CheckMenuItem(UINT item, UINT flags) { return ::CheckMenuItem(m_hMenu, item, flags); }
  BOOL CheckMenuRadioItem(UINT first, UINT last, UINT item, UINT flags) {
    return ::CheckMenuRadioItem(m_hMenu, first, last, item, flags);
  }
  BOOL SetDefaultItem(UINT item, BOOL byPosition = FALSE) {
    return ::SetMenuDefaultItem(m_hMenu, item, static_cast<UINT>(byPosition));
  }
  // Screen coordinates. With TPM_RETURNCMD the result is the chosen id, 0 for none.
  BOOL TrackPopupMenu(UINT flags, int x, int y, CWnd* window, LPCRECT exclude = nullptr);

  HMENU m_hMenu = nullptr;
};
