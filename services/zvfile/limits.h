// What the file library accepts of a file. One struct, checked right after the header has been read and before anything is
// allocated for the pixels.
#ifndef ZV_FILE_LIMITS_H
#define ZV_FILE_LIMITS_H

#include <cstdint>

namespace zvfile {

struct Limits {
  int32_t maxSide = 1000000;                      // pixels; what a bitmap handle accepts
  uint64_t maxPixels = uint64_t{1} << 32;         // 65536 x 65536
  uint64_t maxDecodedBytes = uint64_t{16} << 30;  // of the bitmap in memory
  int32_t maxPages = 1000000;
  uint64_t maxMetadataBytes = uint64_t{64} << 20;  // one profile, Exif segment or text

  // SUCCESS, ERROR_LIMIT_EXCEEDED, or ERROR_FILE_DAMAGED for a side below 1. bitsPerPixel is that of the decoded rows.
  int32_t CheckImage(int64_t width, int64_t height, int32_t bitsPerPixel) const;
  // ERROR_FILE_DAMAGED when `compressedBytes` cannot unfold to an image of this size: `ratio` is the most bytes of decoded
  // rows that one compressed byte can stand for. Keeps a few forged bytes from claiming gigabytes.
  int32_t CheckPlausible(int64_t width, int64_t height, int32_t bitsPerPixel, uint64_t compressedBytes,
                         uint32_t ratio) const;
};

}  // namespace zvfile

#endif
