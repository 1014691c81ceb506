#include "services/zvcore/memory.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "services/zvcore/zvcore.h"

namespace zvcore {
namespace {

std::atomic<int64_t> liveBlocks{0};
std::atomic<int64_t> blocksUntilFailure{-1};

bool FailsNow() noexcept {
  if (blocksUntilFailure.load(std::memory_order_relaxed) < 0) return false;
  return blocksUntilFailure.fetch_sub(1) == 0;
}

// The pixels of a large bitmap that was freed; of two, the larger one. The system takes pages away and hands them out again zeroed
// one by one, which for a photograph costs a third of its decoding.
struct SparePixels {
  std::mutex mutex;
  int keepers = 0;
  void* block = nullptr;  // not among the live blocks
  uint64_t bytes = 0;
};

constexpr uint64_t kWorthKeeping = 1 << 20;

SparePixels& Spare() {
  static SparePixels spare;
  return spare;
}

// The spare block when it fits. One that does not fit goes back to the system before a large block is taken from there, so that
// no memory is held besides.
void* TakeSpare(uint64_t bytes) noexcept {
  SparePixels& spare = Spare();
  const std::lock_guard lock(spare.mutex);
  // A block much larger than asked for would be held by a small bitmap.
  const bool fits = spare.block && bytes <= spare.bytes && bytes >= spare.bytes / 2;
  if (fits) return std::exchange(spare.block, nullptr);
  if (bytes >= kWorthKeeping) std::free(std::exchange(spare.block, nullptr));
  return nullptr;
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

void* AllocatePixels(uint64_t bytes) noexcept {
  void* const spare = TakeSpare(bytes);
  if (!spare) return AllocateZeroed(bytes);
  if (FailsNow()) {
    std::free(spare);
    return nullptr;
  }
  liveBlocks.fetch_add(1, std::memory_order_relaxed);
  return std::memset(spare, 0, bytes);
}

void ReleasePixels(void* block, uint64_t bytes) noexcept {
  SparePixels& spare = Spare();
  {
    const std::lock_guard lock(spare.mutex);
    if (block && spare.keepers > 0 && bytes >= kWorthKeeping && (!spare.block || bytes >= spare.bytes)) {
      liveBlocks.fetch_sub(1, std::memory_order_relaxed);
      spare.bytes = bytes;
      block = std::exchange(spare.block, block);
      if (!block) return;
      liveBlocks.fetch_add(1, std::memory_order_relaxed);  // the one that waited before goes the usual way
    }
  }
  Release(block);
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

void KeepPixelMemory(int32_t keep) {
  zvcore::SparePixels& spare = zvcore::Spare();
  const std::lock_guard lock(spare.mutex);
  spare.keepers += keep ? 1 : -1;
  if (spare.keepers <= 0) {
    spare.keepers = 0;
    std::free(std::exchange(spare.block, nullptr));
  }
}

int64_t CoreBlockCount(void) { return zvcore::LiveBlocks(); }
