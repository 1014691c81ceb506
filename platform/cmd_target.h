// CCmdTarget: what can receive commands through a message map. A map is a static table of entries, chained to the map
// of the base class; the macros that write it are in message_map.h. Each entry carries a small typed function that
// unpacks the message and calls the handler, so a handler with the wrong signature does not compile.
#pragma once

#include "platform/object.h"
#include "platform/win32.h"

class CCmdTarget;
class CCmdUI;

// Codes of WM_COMMAND entries beside the controls' own.
inline constexpr int CN_COMMAND = 0;
inline constexpr int CN_UPDATE_COMMAND_UI = -1;

// One message or command on its way to a handler.
struct AFX_MESSAGE_CALL {
  CCmdTarget* target = nullptr;
  UINT message = 0;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
  UINT id = 0;                // commands and notifications: the control
  void* extra = nullptr;      // notifications: NMHDR*; updates: CCmdUI*
  LRESULT* result = nullptr;  // what the window procedure returns; never null
};

// Calls the handler, stores its result, and tells whether the message is dealt with.
using AFX_HANDLER = BOOL (*)(AFX_MESSAGE_CALL& call);

struct AFX_MSGMAP_ENTRY {
  UINT nMessage;  // 0 ends the table
  int nCode;      // notification code, or CN_...
  UINT nID;       // first control id; 0 for plain messages
  UINT nLastID;
  const UINT* registered;  // message number known only at run time; null otherwise
  AFX_HANDLER handler;
};

struct AFX_MSGMAP {
  const AFX_MSGMAP* (*pfnGetBaseMap)();
  const AFX_MSGMAP_ENTRY* lpEntries;
};

// Where a command would go, for a caller that only asks.
struct AFX_CMDHANDLERINFO {
  CCmdTarget* pTarget = nullptr;
  const AFX_MSGMAP_ENTRY* entry = nullptr;
};

class CCmdTarget : public CObject {
 public:
  // Offers a command to this object and, in derived classes, to where it goes from there. `code` is CN_COMMAND,
  // CN_UPDATE_COMMAND_UI (extra: CCmdUI*), a control's notification code, or for WM_NOTIFY MAKELONG(code, WM_NOTIFY)
  // with extra AFX_NOTIFY*. With `info` nothing is called.
  virtual BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info);

 protected:
  static const AFX_MSGMAP* GetThisMessageMap();
  virtual const AFX_MSGMAP* GetMessageMap() const { return GetThisMessageMap(); }

  const AFX_MSGMAP_ENTRY* FindMessageEntry(UINT message, int code, UINT id) const;
};

// A WM_NOTIFY on its way through OnCmdMsg.
struct AFX_NOTIFY {
  LRESULT* pResult;
  NMHDR* pNMHDR;
};

// The state of one command in a menu or tool bar, filled by ON_UPDATE_COMMAND_UI handlers. This base applies nothing;
// the frame and the bars derive the kinds that do.
class CCmdUI {
 public:
  virtual ~CCmdUI() = default;
  virtual void Enable(BOOL enable = TRUE);
  virtual void SetCheck(int check = 1);  // 0 off, 1 on, 2 indeterminate
  virtual void SetRadio(BOOL on = TRUE) { SetCheck(on ? 1 : 0); }
  virtual void SetText(LPCWSTR text);
  // Asks the target; when nobody handles the command and `disableIfNoHandler`, disables it.
  BOOL DoUpdate(CCmdTarget* target, BOOL disableIfNoHandler);

  UINT m_nID = 0;
  UINT m_nIndex = 0;
  UINT m_nIndexMax = 0;
  HMENU m_hMenu = nullptr;  // set while a menu is updated
  BOOL m_bEnableChanged = FALSE;
  BOOL m_bEnabled = TRUE;
};
