// Reading the dialog kernel's string table.
#pragma once

#include "platform/cstring.h"

// The text of a string id, or an empty one when the kernel does not know the id or cannot deliver it.
CString LoadDialogString(UINT id);
