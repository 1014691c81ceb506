// The display settings that a handle carries, as a table over the 256 levels of a channel and a turn of the colour
// circle.
#ifndef ZV_DISPLAY_VIEW_VALUES_H
#define ZV_DISPLAY_VIEW_VALUES_H

#include "services/zvdisplay/zvdisplay.h"

namespace zvdisplay {
// Applies the settings of `source` to 24- or 32-bit pixels in BGR order; nothing happens for the neutral ones.
void ApplyViewValues(BITMAPHANDLE& pixels, const BITMAPHANDLE& source);
}  // namespace zvdisplay

#endif
