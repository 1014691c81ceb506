#include "services/zvdisplay/display_mode.h"

#include <atomic>

namespace {

std::atomic<uint32_t> displayMode{DISPLAY_MODE_SCALE_QUALITY};

}  // namespace

uint32_t zvdisplay::CurrentDisplayMode() { return displayMode; }

uint32_t SetDisplayMode(uint32_t mask, uint32_t flags) {
  uint32_t former = displayMode;
  while (!displayMode.compare_exchange_weak(former, (former & ~mask) | (flags & mask))) {
  }
  return former;
}
