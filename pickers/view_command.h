// The command that shows the file list of a common dialog as a record's viewMode asks.
#pragma once

#include <cstdint>

#include "platform/win32.h"

// The shell view command of a DLG_VIEW_ value; 0, no command, for any other value.
UINT ViewCommandOf(int32_t viewMode);
