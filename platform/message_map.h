// The macros of a message map. In the class: DECLARE_MESSAGE_MAP(). In its source file:
//   BEGIN_MESSAGE_MAP(CMyDlg, CDialog)
//     ON_BN_CLICKED(IDC_BROWSE, OnBrowse)
//     ON_WM_SIZE()
//   END_MESSAGE_MAP()
// Entries are looked up in this order, then in the base class. A handler that leaves a message to the base class calls
// the base's handler of the same name, or Default().
#pragma once

#include "platform/message_map_windows.h"
#include "platform/message_thunks.h"

#define afx_msg

#define DECLARE_MESSAGE_MAP()                   \
 protected:                                     \
  static const AFX_MSGMAP* GetThisMessageMap(); \
  const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                      \
  const AFX_MSGMAP* theClass::GetMessageMap() const { return GetThisMessageMap(); } \
  const AFX_MSGMAP* theClass::GetThisMessageMap() {                                 \
    using ThisClass [[maybe_unused]] = theClass;                                    \
    using TheBaseClass = baseClass;                                                 \
    static const AFX_MSGMAP_ENTRY messageEntries[] = {
#define END_MESSAGE_MAP()                                                                  \
  { 0, 0, 0, 0, nullptr, nullptr }                                                         \
  }                                                                                        \
  ;                                                                                        \
  static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, messageEntries}; \
  return &messageMap;                                                                      \
  }

// Sent by the framework, not by the platform.
inline constexpr UINT WM_REFLECT_BASE = 0xBC00;

#define ZV_MAP_COMMAND(code, id, lastId, handler) \
  {WM_COMMAND, static_cast<int>(code), static_cast<UINT>(id), static_cast<UINT>(lastId), nullptr, handler},
#define ZV_MAP_NOTIFY(code, id, lastId, handler) \
  {WM_NOTIFY, static_cast<int>(code), static_cast<UINT>(id), static_cast<UINT>(lastId), nullptr, handler},

// Commands: void OnFoo(); _EX: BOOL OnFoo(UINT id), false passes it on; _RANGE: void OnFoo(UINT id).
#define ON_COMMAND(id, method) ZV_MAP_COMMAND(CN_COMMAND, id, id, (&message_map::InvokeAndTake<&ThisClass::method>))
#define ON_COMMAND_EX(id, method) \
  ZV_MAP_COMMAND(CN_COMMAND, id, id, (&message_map::InvokeIfTaken<&ThisClass::method, message_map::Id>))
#define ON_COMMAND_RANGE(id, lastId, method) \
  ZV_MAP_COMMAND(CN_COMMAND, id, lastId, (&message_map::InvokeAndTake<&ThisClass::method, message_map::Id>))
#define ON_COMMAND_EX_RANGE(id, lastId, method) \
  ZV_MAP_COMMAND(CN_COMMAND, id, lastId, (&message_map::InvokeIfTaken<&ThisClass::method, message_map::Id>))
#define ON_UPDATE_COMMAND_UI(id, method) \
  ZV_MAP_COMMAND(CN_UPDATE_COMMAND_UI, id, id, (&message_map::InvokeAndTake<&ThisClass::method, message_map::Update>))
#define ON_UPDATE_COMMAND_UI_RANGE(id, lastId, method) \
  ZV_MAP_COMMAND(CN_UPDATE_COMMAND_UI, id, lastId,     \
                 (&message_map::InvokeAndTake<&ThisClass::method, message_map::Update>))

// Control notifications of WM_COMMAND: void OnFoo(); range: void OnFoo(UINT id).
#define ON_CONTROL(code, id, method) ZV_MAP_COMMAND(code, id, id, (&message_map::InvokeAndTake<&ThisClass::method>))
#define ON_CONTROL_RANGE(code, id, lastId, method) \
  ZV_MAP_COMMAND(code, id, lastId, (&message_map::InvokeAndTake<&ThisClass::method, message_map::Id>))

// WM_NOTIFY: void OnFoo(NMHDR*, LRESULT*); _EX: BOOL OnFoo(UINT, NMHDR*, LRESULT*); range: void OnFoo(UINT, ...).
#define ON_NOTIFY(code, id, method) \
  ZV_MAP_NOTIFY(code, id, id,       \
                (&message_map::InvokeAndTake<&ThisClass::method, message_map::Header, message_map::Result>))
#define ON_NOTIFY_EX(code, id, method) \
  ZV_MAP_NOTIFY(                       \
      code, id, id,                    \
      (&message_map::InvokeIfTaken<&ThisClass::method, message_map::Id, message_map::Header, message_map::Result>))
#define ON_NOTIFY_RANGE(code, id, lastId, method) \
  ZV_MAP_NOTIFY(                                  \
      code, id, lastId,                           \
      (&message_map::InvokeAndTake<&ThisClass::method, message_map::Id, message_map::Header, message_map::Result>))
#define ON_NOTIFY_EX_RANGE(code, id, lastId, method) \
  ZV_MAP_NOTIFY(                                     \
      code, id, lastId,                              \
      (&message_map::InvokeIfTaken<&ThisClass::method, message_map::Id, message_map::Header, message_map::Result>))

// What the control itself sees of its own notifications, before its parent. Not _EX: the parent no longer sees them.
#define ON_CONTROL_REFLECT(code, method) \
  {WM_REFLECT_BASE + WM_COMMAND,         \
   static_cast<int>(code),               \
   0,                                    \
   0,                                    \
   nullptr,                              \
   &message_map::InvokeAndTake<&ThisClass::method>},
#define ON_CONTROL_REFLECT_EX(code, method) \
  {WM_REFLECT_BASE + WM_COMMAND,            \
   static_cast<int>(code),                  \
   0,                                       \
   0,                                       \
   nullptr,                                 \
   &message_map::InvokeIfTaken<&ThisClass::method>},
#define ON_NOTIFY_REFLECT(code, method) \
  {WM_REFLECT_BASE + WM_NOTIFY,         \
   static_cast<int>(code),              \
   0,                                   \
   0,                                   \
   nullptr,                             \
   &message_map::InvokeAndTake<&ThisClass::method, message_map::Header, message_map::Result>},
#define ON_NOTIFY_REFLECT_EX(code, method) \
  {WM_REFLECT_BASE + WM_NOTIFY,            \
   static_cast<int>(code),                 \
   0,                                      \
   0,                                      \
   nullptr,                                \
   &message_map::InvokeIfTaken<&ThisClass::method, message_map::Header, message_map::Result>},

// Any message: LRESULT OnFoo(WPARAM, LPARAM); _VOID: void OnFoo().
#define ON_MESSAGE(message, method) \
  {message, 0, 0, 0, nullptr, &message_map::Invoke<&ThisClass::method, message_map::WParam, message_map::LParam>},
#define ON_MESSAGE_VOID(message, method) {message, 0, 0, 0, nullptr, &message_map::Invoke<&ThisClass::method>},
// `variable` holds what RegisterWindowMessage gave.
#define ON_REGISTERED_MESSAGE(variable, method) \
  {0xC000, 0, 0, 0, &variable, &message_map::Invoke<&ThisClass::method, message_map::WParam, message_map::LParam>},

#define ON_BN_CLICKED(id, method) ON_CONTROL(BN_CLICKED, id, method)
#define ON_BN_DOUBLECLICKED(id, method) ON_CONTROL(BN_DOUBLECLICKED, id, method)
#define ON_BN_SETFOCUS(id, method) ON_CONTROL(BN_SETFOCUS, id, method)
#define ON_BN_KILLFOCUS(id, method) ON_CONTROL(BN_KILLFOCUS, id, method)
#define ON_STN_CLICKED(id, method) ON_CONTROL(STN_CLICKED, id, method)
#define ON_STN_DBLCLK(id, method) ON_CONTROL(STN_DBLCLK, id, method)
#define ON_EN_SETFOCUS(id, method) ON_CONTROL(EN_SETFOCUS, id, method)
#define ON_EN_KILLFOCUS(id, method) ON_CONTROL(EN_KILLFOCUS, id, method)
#define ON_EN_CHANGE(id, method) ON_CONTROL(EN_CHANGE, id, method)
#define ON_EN_UPDATE(id, method) ON_CONTROL(EN_UPDATE, id, method)
#define ON_EN_MAXTEXT(id, method) ON_CONTROL(EN_MAXTEXT, id, method)
#define ON_LBN_SELCHANGE(id, method) ON_CONTROL(LBN_SELCHANGE, id, method)
#define ON_LBN_DBLCLK(id, method) ON_CONTROL(LBN_DBLCLK, id, method)
#define ON_LBN_SETFOCUS(id, method) ON_CONTROL(LBN_SETFOCUS, id, method)
#define ON_LBN_KILLFOCUS(id, method) ON_CONTROL(LBN_KILLFOCUS, id, method)
#define ON_CBN_SELCHANGE(id, method) ON_CONTROL(CBN_SELCHANGE, id, method)
#define ON_CBN_DBLCLK(id, method) ON_CONTROL(CBN_DBLCLK, id, method)
#define ON_CBN_SETFOCUS(id, method) ON_CONTROL(CBN_SETFOCUS, id, method)
#define ON_CBN_KILLFOCUS(id, method) ON_CONTROL(CBN_KILLFOCUS, id, method)
#define ON_CBN_EDITCHANGE(id, method) ON_CONTROL(CBN_EDITCHANGE, id, method)
#define ON_CBN_EDITUPDATE(id, method) ON_CONTROL(CBN_EDITUPDATE, id, method)
#define ON_CBN_DROPDOWN(id, method) ON_CONTROL(CBN_DROPDOWN, id, method)
#define ON_CBN_CLOSEUP(id, method) ON_CONTROL(CBN_CLOSEUP, id, method)
#define ON_CBN_SELENDOK(id, method) ON_CONTROL(CBN_SELENDOK, id, method)
#define ON_CBN_SELENDCANCEL(id, method) ON_CONTROL(CBN_SELENDCANCEL, id, method)
