#include "services/zvcore/memory.h"

#include <atomic>
#include <cstdlib>

#include "services/zvcore/zvcore.h"

namespace zvcore {
namespace {

std::atomic<int64_t> liveBlocks{0};
std::atomic<int64_t> blocksUntilFailure{-1};

bool FailsNow() noexcept {
  if (blocksUntilFailure.load(std::memory_order_relaxed) < 0) return false;
  return blocksUntilFailure.fetch_sub(1) == 0;
}

}  // namespace

void* AllocateZeroed(size_t bytes) noexcept {
  if (FailsNow()) return nullptr;
  void* block = std::calloc(bytes ? bytes : 1, 1);
  if (block) liveBlocks.fetch_add(1, std::memory_order_relaxed);
  return block;
}

void Release(void* block) noexcept {
  if (!block) return;
  liveBlocks.fetch_sub(1, std::memory_order_relaxed);
  std::free(block);
}

int64_t LiveBlocks() noexcept { return liveBlocks.load(std::memory_order_relaxed); }

void FailAllocationAfter(int64_t count) noexcept { blocksUntilFailure.store(count); }

}  // namespace zvcore

void* CoreAlloc(size_t count, size_t elementSize, int32_t, const char*) {
  if (elementSize && count > SIZE_MAX / elementSize) return nullptr;
  return zvcore::AllocateZeroed(count * elementSize);
}

int32_t CoreFree(void* block, int32_t, const char*) {
  zvcore::Release(block);
  return SUCCESS;
}

int32_t CoreFreeBuffer(void* block, int32_t line, const char* file) { return CoreFree(block, line, file); }

int32_t TrackAllocation(int32_t, const void*, int32_t, const char*) { return SUCCESS; }

int32_t TrackFree(int32_t, const void*, int32_t, const char*) { return SUCCESS; }

int64_t CoreBlockCount(void) { return zvcore::LiveBlocks(); }
