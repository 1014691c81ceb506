// Where a decoder reads from: a file or memory, seekable, never changed. Reading past the end gives fewer bytes and is no
// failure; a failing device is one and stays on record in Failed(). A source is owned by the operation that opened it and
// lives as long as the codec works on it.
#ifndef ZV_FILE_BYTE_SOURCE_H
#define ZV_FILE_BYTE_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "services/zvfile/platform_file.h"

namespace zvfile {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  virtual uint64_t Size() const = 0;
  // Reads at an offset without moving the cursor; gives the bytes read.
  virtual size_t ReadAt(uint64_t offset, void* buffer, size_t bytes) = 0;
  // All bytes when they are in memory anyhow, else empty.
  virtual std::span<const uint8_t> Contiguous() const { return {}; }
  bool Failed() const { return failed_; }

  // The cursor. Small reads are served from a buffer. Seeking past the end is allowed; reads there give nothing.
  size_t Read(void* buffer, size_t bytes);
  bool ReadExactly(void* buffer, size_t bytes) { return Read(buffer, bytes) == bytes; }
  void Seek(uint64_t offset) { position_ = offset; }
  uint64_t Tell() const { return position_; }
  // The whole content, without a copy when it is in memory: the span lives as long as `storage` and this source. Empty and
  // false when reading failed or the content is longer than maxBytes.
  bool ReadAll(std::vector<uint8_t>& storage, std::span<const uint8_t>& bytes, uint64_t maxBytes = UINT64_MAX);

 protected:
  ByteSource() = default;
  bool failed_ = false;

 private:
  uint64_t position_ = 0;
  std::vector<uint8_t> buffer_;
  uint64_t bufferStart_ = 0;
  size_t bufferFill_ = 0;
};

class MemorySource final : public ByteSource {
 public:
  // bytes must outlive the source.
  explicit MemorySource(std::span<const uint8_t> bytes) : bytes_(bytes) {}
  uint64_t Size() const override { return bytes_.size(); }
  size_t ReadAt(uint64_t offset, void* buffer, size_t bytes) override;
  std::span<const uint8_t> Contiguous() const override { return bytes_; }

 private:
  std::span<const uint8_t> bytes_;
};

class FileSource final : public ByteSource {
 public:
  // ERROR_FILE_MISSING, ERROR_FILE_EMPTY, ERROR_FILE_READ.
  static int32_t Open(const ZVCHAR* path, std::unique_ptr<FileSource>& source);
  uint64_t Size() const override { return size_; }
  size_t ReadAt(uint64_t offset, void* buffer, size_t bytes) override;

 private:
  PlatformFile file_;
  uint64_t size_ = 0;
};

// A part of another source, as a source of its own: an embedded stream. The other one must outlive it.
class SubSource final : public ByteSource {
 public:
  SubSource(ByteSource& whole, uint64_t offset, uint64_t size);
  uint64_t Size() const override { return size_; }
  size_t ReadAt(uint64_t offset, void* buffer, size_t bytes) override;
  std::span<const uint8_t> Contiguous() const override;

 private:
  ByteSource& whole_;
  uint64_t offset_;
  uint64_t size_;
};

}  // namespace zvfile

#endif
