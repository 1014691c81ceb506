// The barrier of an exported function: an exception becomes a result code. What the kernel allocates is small, so that
// the only one to be expected is a lack of memory.
#pragma once

#include <cstdint>

#include "services/zvcore/result_codes.h"

template <class Work>
int32_t Guarded(Work work) noexcept {
  try {
    return work();
  } catch (...) {
    return ERROR_OUT_OF_MEMORY;
  }
}
