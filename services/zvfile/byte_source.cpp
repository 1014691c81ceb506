#include "services/zvfile/byte_source.h"

#include <algorithm>
#include <cstring>

namespace zvfile {
namespace {

constexpr size_t kBufferBytes = 64 * 1024;

}  // namespace

size_t ByteSource::Read(void* buffer, size_t bytes) {
  if (bytes >= kBufferBytes || !Contiguous().empty()) {
    const size_t count = ReadAt(position_, buffer, bytes);
    position_ += count;
    return count;
  }
  size_t total = 0;
  while (total < bytes) {
    if (position_ < bufferStart_ || position_ >= bufferStart_ + bufferFill_) {
      buffer_.resize(kBufferBytes);
      bufferStart_ = position_;
      bufferFill_ = ReadAt(position_, buffer_.data(), buffer_.size());
      if (bufferFill_ == 0) break;
    }
    const size_t inside = static_cast<size_t>(position_ - bufferStart_);
    const size_t count = std::min(bytes - total, bufferFill_ - inside);
    std::memcpy(static_cast<uint8_t*>(buffer) + total, buffer_.data() + inside, count);
    total += count;
    position_ += count;
  }
  return total;
}

bool ByteSource::ReadAll(std::vector<uint8_t>& storage, std::span<const uint8_t>& bytes, uint64_t maxBytes) {
  bytes = Contiguous();
  if (!bytes.empty()) return bytes.size() <= maxBytes;
  if (Size() > maxBytes || Size() > SIZE_MAX) return false;
  storage.resize(static_cast<size_t>(Size()));
  storage.resize(ReadAt(0, storage.data(), storage.size()));
  bytes = storage;
  return !Failed();
}

size_t MemorySource::ReadAt(uint64_t offset, void* buffer, size_t bytes) {
  if (offset >= bytes_.size() || bytes == 0) return 0;
  const size_t count = std::min(bytes, bytes_.size() - static_cast<size_t>(offset));
  std::memcpy(buffer, bytes_.data() + offset, count);
  return count;
}

int32_t FileSource::Open(const ZVCHAR* path, std::unique_ptr<FileSource>& source) {
  source = std::make_unique<FileSource>();
  const int32_t result = source->file_.OpenForReading(path);
  if (result != SUCCESS) return result;
  source->size_ = source->file_.Size();
  return source->size_ == 0 ? ERROR_FILE_EMPTY : SUCCESS;
}

size_t FileSource::ReadAt(uint64_t offset, void* buffer, size_t bytes) {
  return file_.ReadAt(offset, buffer, bytes, failed_);
}

SubSource::SubSource(ByteSource& whole, uint64_t offset, uint64_t size)
    : whole_(whole), offset_(std::min(offset, whole.Size())), size_(std::min(size, whole.Size() - offset_)) {}

size_t SubSource::ReadAt(uint64_t offset, void* buffer, size_t bytes) {
  if (offset >= size_) return 0;
  const size_t count = static_cast<size_t>(std::min<uint64_t>(bytes, size_ - offset));
  const size_t read = whole_.ReadAt(offset_ + offset, buffer, count);
  failed_ = whole_.Failed();
  return read;
}

std::span<const uint8_t> SubSource::Contiguous() const {
  const std::span<const uint8_t> all = whole_.Contiguous();
  if (all.empty()) return {};
  return all.subspan(static_cast<size_t>(offset_), static_cast<size_t>(size_));
}

}  // namespace zvfile
