// Whether a text can stand as a file name. No window, no file system.
#pragma once

#include "platform/cstring.h"

// False for an empty text and for one that holds a character that separates paths or that the system refuses:
// " / \ : ? < > * |
inline bool IsLegalFileName(const CString& name) { return !name.IsEmpty() && name.FindOneOf(L"\"/\\:?<>*|") < 0; }
