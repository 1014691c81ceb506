#include "platform/cmd_target.h"

#include "platform/message_map.h"

namespace {

constexpr UINT kFirstRegisteredMessage = 0xC000;

bool Matches(const AFX_MSGMAP_ENTRY& entry, UINT message, int code, UINT id) {
  if (entry.registered) {
    return message >= kFirstRegisteredMessage && *entry.registered == message;
  }
  return entry.nMessage == message && entry.nCode == code && id >= entry.nID && id <= entry.nLastID;
}

}  // namespace

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
  static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, nullptr, nullptr}};
  static const AFX_MSGMAP map = {nullptr, entries};
  return &map;
}

const AFX_MSGMAP_ENTRY* CCmdTarget::FindMessageEntry(UINT message, int code, UINT id) const {
  for (const AFX_MSGMAP* map = GetMessageMap(); map; map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr) {
    for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->handler; ++entry) {
      if (Matches(*entry, message, code, id)) {
        return entry;
      }
    }
  }
  return nullptr;
}

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) {
  const bool notify = HIWORD(code) == WM_NOTIFY && code != CN_UPDATE_COMMAND_UI;
  const auto* const header = notify ? static_cast<AFX_NOTIFY*>(extra) : nullptr;
  const UINT message = notify ? WM_NOTIFY : WM_COMMAND;
  const AFX_MSGMAP_ENTRY* const entry =
      FindMessageEntry(message, header ? static_cast<int>(header->pNMHDR->code) : code, id);
  if (!entry) {
    return FALSE;
  }
  if (info) {
    *info = {this, entry};
    return TRUE;
  }
  LRESULT ignored = 0;
  AFX_MESSAGE_CALL call{this, message, id, 0, id, extra, &ignored};
  if (header) {
    call.extra = header->pNMHDR;
    call.result = header->pResult;
  }
  return entry->handler(call);
}

void CCmdUI::Enable(BOOL enable) {
  if (m_hMenu) {
    ::EnableMenuItem(m_hMenu, m_nIndex, MF_BYPOSITION | (enable ? MF_ENABLED : MF_GRAYED));
  }
  m_bEnableChanged = TRUE;
  m_bEnabled = enable;
}

void CCmdUI::SetCheck(int check) {
  if (m_hMenu) {
    ::CheckMenuItem(m_hMenu, m_nIndex, MF_BYPOSITION | (check ? MF_CHECKED : MF_UNCHECKED));
  }
}

void CCmdUI::SetText(LPCWSTR text) {
  if (m_hMenu) {
    MENUITEMINFOW item = {};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_STRING;
    item.dwTypeData = const_cast<LPWSTR>(text);
    ::SetMenuItemInfoW(m_hMenu, m_nIndex, TRUE, &item);
  }
}

BOOL CCmdUI::DoUpdate(CCmdTarget* target, BOOL disableIfNoHandler) {
  if (m_nID == 0 || LOWORD(m_nID) == 0xFFFF) {
    return TRUE;
  }
  m_bEnableChanged = FALSE;
  const BOOL handled = target->OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr);
  if (disableIfNoHandler && !m_bEnableChanged) {
    AFX_CMDHANDLERINFO info;
    Enable(target->OnCmdMsg(m_nID, CN_COMMAND, this, &info));
  }
  return handled;
}
