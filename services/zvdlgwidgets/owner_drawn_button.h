// What an owner-drawn button needs so that it behaves like a push button in a dialog: it can be the default button, a
// double click counts as two clicks, and one that opens something below itself does so on the Down key. Call
// OwnerDrawnButtonMessage first in the window procedure.
#pragma once

#include <optional>

#include "platform/win32.h"

struct OwnerDrawnButtonState {
  bool isDefault = false;      // kept up to date
  bool opensDownward = false;  // set by the button
};

// The answer to a message that must not reach the button; nothing for all others.
std::optional<LRESULT> OwnerDrawnButtonMessage(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                               OwnerDrawnButtonState& state);
