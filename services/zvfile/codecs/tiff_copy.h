// Copies TIFF directories from one file into another with everything that hangs on them: pixel data as it was compressed, tables
// of old JPEG files, sub-directories, Exif. Values change byte order and offset width where the two files differ; nothing is
// decoded, so nothing is lost. Also the surgery on page chains that saving and deleting pages needs.
#ifndef ZV_FILE_TIFF_COPY_H
#define ZV_FILE_TIFF_COPY_H

#include <cstdint>
#include <span>
#include <vector>

#include "services/zvfile/byte_sink.h"
#include "services/zvfile/codecs/tiff_directory.h"

namespace zvfile::tiff {

// A file that is being written, read back as a source. The sink must outlive it.
class SinkSource final : public ByteSource {
 public:
  explicit SinkSource(ByteSink& sink) : sink_(sink) {}
  uint64_t Size() const override { return sink_.Size(); }
  size_t ReadAt(uint64_t offset, void* buffer, size_t bytes) override;

 private:
  ByteSink& sink_;
};

class Copier {
 public:
  // tags: the top directory keeps these alone; empty keeps all. Sub-directories are always whole.
  Copier(Stream& from, ByteSink& to, Variant variant, std::span<const uint16_t> tags = {});
  // Appends the directory and what hangs on it to the sink. offset and nextAt tell where it went and where its pointer to
  // a next directory is, which is 0 for now. ERROR_FILE_DAMAGED, ERROR_FILE_WRITE, ERROR_LIMIT_EXCEEDED.
  int32_t Copy(const Directory& directory, uint64_t& offset, uint64_t& nextAt);

 private:
  struct Value {
    uint16_t tag, type;
    uint64_t count;
    std::vector<uint8_t> bytes;  // in the byte order of the destination
  };

  int32_t CopyValue(const Directory& directory, const Entry& entry, int depth, std::vector<Value>& values);
  int32_t CopyPlain(const Entry& entry, std::vector<Value>& values);
  int32_t CopyBlocks(const Entry& offsets, const Entry* sizes, uint64_t fixedSize, std::vector<Value>& values);
  int32_t CopySubDirectories(const Entry& entry, int depth, std::vector<Value>& values);
  int32_t CopyDirectory(const Directory& directory, int depth, uint64_t& offset, uint64_t& nextAt);
  int32_t WriteDirectory(std::vector<Value>& values, uint64_t& offset, uint64_t& nextAt);
  void AppendNumber(std::vector<uint8_t>& bytes, uint64_t value, uint32_t size) const;
  uint64_t HuffmanTableSize(uint64_t offset);
  int32_t Align();

  Stream& from_;
  ByteSink& to_;
  Variant variant_;
  std::span<const uint16_t> tags_;
  uint64_t budget_;  // bytes of pixel data that may still be copied, so that forged counts cannot fill the disk
};

// A header without directories.
bool WriteHeader(ByteSink& sink, Variant variant);
// Writes an offset at a position of the sink.
bool PutOffset(ByteSink& sink, Variant variant, uint64_t at, uint64_t offset);
// Copies all pages but one (index from 0; pages.size() copies all) into an empty sink.
int32_t CopyPagesExcept(Stream& from, const std::vector<Page>& pages, size_t leftOut, ByteSink& sink);
// Makes the last page of the file in the sink its page `index` (from 0), the ones behind it moving back.
int32_t MoveLastPageTo(ByteSink& sink, size_t index);
// Puts the page numbers right in every page that carries one.
int32_t RenumberPages(ByteSink& sink);

}  // namespace zvfile::tiff

#endif
