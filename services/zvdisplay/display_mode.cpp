#include "services/zvdisplay/display_mode.h"

namespace {
uint32_t displayMode = DISPLAY_MODE_SCALE_QUALITY;
}

uint32_t zvdisplay::CurrentDisplayMode() { return displayMode; }

uint32_t SetDisplayMode(uint32_t mask, uint32_t flags) {
  const uint32_t former = displayMode;
  displayMode = (displayMode & ~mask) | (flags & mask);
  return former;
}
