// The platform headers that this framework and its users need, in the one order that compiles. Nothing else includes
// windows.h. windowsx.h stays out: its function-like macros (SubclassWindow, SelectFont, ...) rename member functions.
#pragma once

// clang-format off
#include <windows.h>
#include <objbase.h>
#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>
// clang-format on
