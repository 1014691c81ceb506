// The system's folder picker, as the conversion dialog shows it.
#pragma once

#include "platform/cstring.h"
#include "platform/win32.h"

// Starts at `start`, or at the current folder when that is empty, and shows the chosen folder as its status text. False when
// the user cancelled or chose something that is no folder of the file system.
bool BrowseForFolder(HWND owner, const CString& title, const CString& start, CString& folder);
