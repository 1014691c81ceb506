// Enabling and showing controls without losing the keyboard: a window that is disabled or hidden while it has the focus
// would keep it and leave the user at a dead control.
#pragma once

#include "platform/win32.h"

// The focus moves on to the next control of the dialog first.
void EnableKeepingFocus(HWND control, bool enable);
