// What an owner-drawn button needs so that it behaves like a push button in a dialog: it can be the default button, and a
// double click counts as two clicks. Call OwnerDrawnButtonMessage first in the window procedure.
#pragma once

#include <optional>

#include "platform/win32.h"

// The answer to a message that must not reach the button; nothing for all others. isDefault is kept up to date.
std::optional<LRESULT> OwnerDrawnButtonMessage(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                               bool& isDefault);
