// Where an encoder writes to: a new file or memory, seekable and readable back. A failed write stays on record in Failed(), so
// an encoder may test it once at the end. Sinks write a file from nothing: pages of an existing file are copied in by the
// codec. The file sink becomes the destination at Commit alone; destroyed before that it leaves nothing behind.
#ifndef ZV_FILE_BYTE_SINK_H
#define ZV_FILE_BYTE_SINK_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "services/zvfile/byte_source.h"
#include "services/zvfile/platform_file.h"

namespace zvfile {

class ByteSink {
 public:
  virtual ~ByteSink() = default;
  ByteSink(const ByteSink&) = delete;
  ByteSink& operator=(const ByteSink&) = delete;

  // Writes at the cursor; false once any write has failed.
  virtual bool Write(const void* data, size_t bytes) = 0;
  // Reads back at the cursor what was written; gives the bytes read.
  virtual size_t Read(void* buffer, size_t bytes) = 0;
  // Past the end is allowed; the gap reads as zeros once something is written behind it.
  virtual void Seek(uint64_t offset) = 0;
  virtual uint64_t Tell() const = 0;
  virtual uint64_t Size() const = 0;
  bool Failed() const { return failed_; }

  // Little-endian and big-endian numbers of headers.
  bool WriteLe(uint64_t value, int bytes);
  bool WriteBe(uint64_t value, int bytes);
  // Copies bytes [offset, offset + count) of a source here. False when either side fails or the source is too short.
  bool CopyFrom(ByteSource& source, uint64_t offset, uint64_t count);

 protected:
  ByteSink() = default;
  bool failed_ = false;
};

class MemorySink final : public ByteSink {
 public:
  bool Write(const void* data, size_t bytes) override;
  size_t Read(void* buffer, size_t bytes) override;
  void Seek(uint64_t offset) override { position_ = offset; }
  uint64_t Tell() const override { return position_; }
  uint64_t Size() const override { return bytes_.size(); }
  const std::vector<uint8_t>& Bytes() const { return bytes_; }

 private:
  std::vector<uint8_t> bytes_;
  uint64_t position_ = 0;
};

// Writes to a file of a fresh name in the destination's folder and renames it over the destination.
class AtomicFile final : public ByteSink {
 public:
  // ERROR_FILE_WRITE when the folder is gone or not writable, or the destination is a folder or read-only.
  static int32_t Create(const ZVCHAR* destination, std::unique_ptr<AtomicFile>& file);
  ~AtomicFile() override;
  bool Write(const void* data, size_t bytes) override;
  size_t Read(void* buffer, size_t bytes) override;
  void Seek(uint64_t offset) override;
  uint64_t Tell() const override { return position_; }
  uint64_t Size() const override;
  // Everything written goes to the device, the file is closed and takes the destination's place. ERROR_FILE_WRITE.
  int32_t Commit();

 private:
  bool FlushBuffer();

  PlatformFile file_;
  ZvString destination_;
  ZvString temporary_;
  std::vector<uint8_t> buffer_;  // bytes that belong at bufferStart_
  uint64_t bufferStart_ = 0;
  size_t bufferFill_ = 0;
  uint64_t position_ = 0;
  uint64_t fileSize_ = 0;  // bytes already on the file
};

}  // namespace zvfile

#endif
