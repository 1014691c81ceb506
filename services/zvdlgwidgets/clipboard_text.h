// Reading text from the clipboard.
#pragma once

#include "platform/cstring.h"
#include "platform/win32.h"

// The clipboard's text on behalf of a window; empty when there is none or it cannot be had.
CString ReadClipboardText(HWND window);
