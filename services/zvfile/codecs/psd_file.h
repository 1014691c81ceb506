// A PSD or PSB file up to its merged picture: what the header and the sections ahead of it say, and where the rows of each channel
// stand.
#ifndef ZV_FILE_PSD_FILE_H
#define ZV_FILE_PSD_FILE_H

#include <cstdint>
#include <span>
#include <vector>

#include "services/zvfile/codec.h"

namespace zvfile::psd {

enum Mode : uint16_t { kBitmap = 0, kGray = 1, kIndexed = 2, kRgb = 3, kCmyk = 4, kDuotone = 8, kLab = 9 };

struct File {
  std::vector<uint8_t> storage;
  std::span<const uint8_t> bytes;
  bool big = false;  // PSB: wider lengths
  uint16_t channels = 0, depth = 0, mode = 0;
  bool mergedAlpha = false;    // the channel behind the colours is the transparency of the merged picture
  bool packed = false;         // run-length encoded
  bool deflated = false;       // one zlib stream; Inflate makes plain rows of it
  bool predicted = false;      // of deflated rows: differences from sample to sample
  std::vector<uint64_t> rows;  // of packed pictures: where each row begins, channel after channel
  uint64_t pixelsAt = 0;
  std::vector<uint8_t> inflated;
  std::span<const uint8_t> thumbnail;  // JPEG stream
  ImageHeader header;

  int Colors() const { return mode == kRgb || mode == kLab ? 3 : mode == kCmyk ? 4 : 1; }
  int UsedChannels() const { return Colors() + (mergedAlpha ? 1 : 0); }
  size_t RowBytes() const { return (static_cast<size_t>(header.width) * depth + 7) / 8; }
};

// Reads everything but the pixels. ERROR_FILE_DAMAGED, ERROR_FEATURE_UNSUPPORTED, ERROR_LIMIT_EXCEEDED, ERROR_PAGE_MISSING.
int32_t Open(ByteSource& source, const LoadRequest& request, File& file);
// Unfolds a deflated picture, once, before its rows are read. ERROR_FILE_DAMAGED, ERROR_OUT_OF_MEMORY.
int32_t Inflate(File& file);
// Reads one row of one channel, RowBytes long; false when the data is cut short.
bool ReadRow(const File& file, int channel, int32_t y, std::span<uint8_t> row);

}  // namespace zvfile::psd

#endif
