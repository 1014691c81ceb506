#include "services/zvfile/byte_sink.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace zvfile {
namespace {

constexpr size_t kBufferBytes = 256 * 1024;
constexpr int kNameAttempts = 100;

ZvString TemporaryName(const ZvString& destination) {
  static constexpr char kDigits[] = "0123456789abcdef";
#ifdef _WIN32
  const size_t slash = destination.find_last_of(L"\\/:");
#else
  const size_t slash = destination.find_last_of(u'/');
#endif
  ZvString name = slash == ZvString::npos ? ZvString() : destination.substr(0, slash + 1);
  for (const char* prefix = "~zv"; *prefix; ++prefix) name += static_cast<ZVCHAR>(*prefix);
  uint64_t number = UniqueNumber();
  for (int digit = 0; digit < 16; ++digit, number >>= 4) name += static_cast<ZVCHAR>(kDigits[number & 15]);
  for (const char* suffix = ".tmp"; *suffix; ++suffix) name += static_cast<ZVCHAR>(*suffix);
  return name;
}

}  // namespace

bool ByteSink::WriteLe(uint64_t value, int bytes) {
  uint8_t text[8];
  for (int i = 0; i < bytes; ++i) text[i] = static_cast<uint8_t>(value >> (8 * i));
  return Write(text, static_cast<size_t>(bytes));
}

bool ByteSink::WriteBe(uint64_t value, int bytes) {
  uint8_t text[8];
  for (int i = 0; i < bytes; ++i) text[i] = static_cast<uint8_t>(value >> (8 * (bytes - 1 - i)));
  return Write(text, static_cast<size_t>(bytes));
}

bool ByteSink::CopyFrom(ByteSource& source, uint64_t offset, uint64_t count) {
  std::vector<uint8_t> block(static_cast<size_t>(std::min<uint64_t>(count, kBufferBytes)));
  while (count > 0) {
    const size_t part = static_cast<size_t>(std::min<uint64_t>(count, block.size()));
    if (source.ReadAt(offset, block.data(), part) != part || !Write(block.data(), part)) return false;
    offset += part;
    count -= part;
  }
  return true;
}

bool MemorySink::Write(const void* data, size_t bytes) {
  const size_t end = static_cast<size_t>(position_) + bytes;
  if (end > bytes_.size()) bytes_.resize(end);
  if (bytes > 0) std::memcpy(bytes_.data() + position_, data, bytes);
  position_ = end;
  return true;
}

size_t MemorySink::Read(void* buffer, size_t bytes) {
  if (position_ >= bytes_.size() || bytes == 0) return 0;
  const size_t count = std::min(bytes, bytes_.size() - static_cast<size_t>(position_));
  std::memcpy(buffer, bytes_.data() + position_, count);
  position_ += count;
  return count;
}

int32_t AtomicFile::Create(const ZVCHAR* destination, std::unique_ptr<AtomicFile>& file) {
  if (IsProtected(destination)) return ERROR_FILE_WRITE;
  file = std::make_unique<AtomicFile>();
  file->destination_ = destination;
  file->buffer_.resize(kBufferBytes);
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    file->temporary_ = TemporaryName(file->destination_);
    bool taken = false;
    if (file->file_.CreateNew(file->temporary_.c_str(), taken)) return SUCCESS;
    if (!taken) break;
  }
  file.reset();
  return ERROR_FILE_WRITE;
}

AtomicFile::~AtomicFile() {
  if (!file_.IsOpen()) return;
  file_.Close();
  RemoveFile(temporary_.c_str());
}

bool AtomicFile::FlushBuffer() {
  if (bufferFill_ > 0) {
    if (!file_.WriteAt(bufferStart_, buffer_.data(), bufferFill_)) failed_ = true;
    fileSize_ = std::max(fileSize_, bufferStart_ + bufferFill_);
    bufferFill_ = 0;
  }
  return !failed_;
}

bool AtomicFile::Write(const void* data, size_t bytes) {
  if (failed_) return false;
  if (position_ != bufferStart_ + bufferFill_ || bufferFill_ + bytes > buffer_.size()) {
    if (!FlushBuffer()) return false;
    bufferStart_ = position_;
  }
  if (bytes >= buffer_.size()) {
    if (!file_.WriteAt(position_, data, bytes)) failed_ = true;
    fileSize_ = std::max(fileSize_, position_ + bytes);
    bufferStart_ = position_ + bytes;
  } else if (bytes > 0) {
    std::memcpy(buffer_.data() + bufferFill_, data, bytes);
    bufferFill_ += bytes;
  }
  position_ += bytes;
  return !failed_;
}

size_t AtomicFile::Read(void* buffer, size_t bytes) {
  if (!FlushBuffer()) return 0;
  const size_t count = file_.ReadAt(position_, buffer, bytes, failed_);
  position_ += count;
  bufferStart_ = position_;
  return count;
}

void AtomicFile::Seek(uint64_t offset) { position_ = offset; }

uint64_t AtomicFile::Size() const {
  return bufferFill_ == 0 ? fileSize_ : std::max(fileSize_, bufferStart_ + bufferFill_);
}

int32_t AtomicFile::Commit() {
  const bool written = FlushBuffer() && file_.FlushToDevice();
  file_.Close();
  if (written && ReplaceByRename(temporary_.c_str(), destination_.c_str())) return SUCCESS;
  RemoveFile(temporary_.c_str());
  return ERROR_FILE_WRITE;
}

}  // namespace zvfile
