/* The heap of this module. Every block comes through here, so that the number of live blocks is known, and so that
 * the tests can make any one allocation fail. Nothing here throws: a block that cannot be had is null, and a Buffer
 * stays empty. */
#ifndef ZV_ZVCORE_MEMORY_H
#define ZV_ZVCORE_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <utility>

namespace zvcore {

// Zeroed; aligned to 16 bytes. bytes 0 gives a block as well.
void* AllocateZeroed(size_t bytes) noexcept;
void Release(void* block) noexcept;
// The same for the pixels of bitmaps, which wait for each other while KeepPixelMemory says so.
void* AllocatePixels(uint64_t bytes) noexcept;
void ReleasePixels(void* block, uint64_t bytes) noexcept;
int64_t LiveBlocks() noexcept;

// The allocation after `count` further ones fails, once; a negative count fails none.
void FailAllocationAfter(int64_t count) noexcept;

// Working memory of one operation: an array of plain values, aligned for vector loads, with room to read a vector
// past its end.
template <typename T>
class Buffer {
 public:
  Buffer() = default;
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  Buffer(Buffer&& other) noexcept
      : values(std::exchange(other.values, nullptr)), length(std::exchange(other.length, 0)) {}
  Buffer& operator=(Buffer&& other) noexcept {
    std::swap(values, other.values);
    std::swap(length, other.length);
    return *this;
  }
  ~Buffer() { Release(values); }

  // Replaces the content by count zeros; false when memory runs out.
  [[nodiscard]] bool Allocate(size_t count) noexcept {
    Release(values);
    values = nullptr;
    length = 0;
    if (count > (SIZE_MAX - kSlackBytes) / sizeof(T)) return false;
    values = static_cast<T*>(AllocateZeroed(count * sizeof(T) + kSlackBytes));
    if (values) length = count;
    return values != nullptr;
  }

  T* data() noexcept { return values; }
  const T* data() const noexcept { return values; }
  size_t size() const noexcept { return length; }
  T& operator[](size_t index) noexcept { return values[index]; }
  const T& operator[](size_t index) const noexcept { return values[index]; }
  T* begin() noexcept { return values; }
  T* end() noexcept { return values + length; }

 private:
  static constexpr size_t kSlackBytes = 64;
  T* values = nullptr;
  size_t length = 0;
};

}  // namespace zvcore

#endif
