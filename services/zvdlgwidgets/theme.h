// The visual style of the system's controls, for controls that draw themselves. Ours are themed exactly when those
// around them are: a program without the manifest for version 6 of the common controls has classic ones, whatever the
// desktop does. So each function takes one of the system's controls as the witness: the button that is drawn, the edit
// inside a combo.
#pragma once

#include "platform/unique_handle.h"
#include "platform/win32.h"

// After the platform's own headers, on which these two build.
#include <uxtheme.h>
#include <vssym32.h>

namespace handle_closers {
inline void Theme(HTHEME theme) { ::CloseThemeData(theme); }
}  // namespace handle_closers

using unique_htheme = unique_handle<HTHEME, handle_closers::Theme>;

bool IsControlThemed(HWND standardControl);
// The theme of a class of controls such as L"BUTTON"; null when the control is classic.
unique_htheme OpenControlTheme(HWND standardControl, LPCWSTR className);
