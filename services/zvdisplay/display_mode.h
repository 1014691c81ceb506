// The library-wide display mode.
#ifndef ZV_DISPLAY_MODE_H
#define ZV_DISPLAY_MODE_H

#include "services/zvdisplay/zvdisplay.h"

namespace zvdisplay {
uint32_t CurrentDisplayMode();
}

#endif
