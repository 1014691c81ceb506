#include "services/zvfile/codecs/magick_photo_cd.h"

#include <utility>

namespace zvfile::magick {
namespace {

constexpr int32_t kSmallestWidth = 192, kSmallestHeight = 128;
constexpr int kPlainSizes = 3;  // stored as they are; the larger ones as differences, where the file goes on that far
constexpr uint64_t kSector = 2048;
constexpr uint64_t kDifferencesAt[] = {389 * kSector, 1600 * kSector};  // of 1536 x 1024 and 3072 x 2048
constexpr uint64_t kRotationAt = 0x0E02;

bool StandsOnItsSide(ByteSource& source) {
  uint8_t rotation = 0;
  return source.ReadAt(kRotationAt, &rotation, 1) == 1 && (rotation & 1) != 0;
}

}  // namespace

std::vector<IMAGESIZE> PhotoCdSizes(ByteSource& source) {
  int count = kPlainSizes;
  for (const uint64_t start : kDifferencesAt) count += source.Size() > start + kSector ? 1 : 0;
  const bool side = StandsOnItsSide(source);
  std::vector<IMAGESIZE> sizes;
  for (int level = count - 1; level >= 0; --level) {
    const int32_t width = kSmallestWidth << level, height = kSmallestHeight << level;
    sizes.push_back(side ? IMAGESIZE{height, width} : IMAGESIZE{width, height});
  }
  return sizes;
}

IMAGESIZE PhotoCdReaderSize(ByteSource& source, IMAGESIZE wanted) {
  const std::vector<IMAGESIZE> sizes = PhotoCdSizes(source);
  IMAGESIZE size = sizes.front();
  for (const IMAGESIZE& stored : sizes) {
    if (wanted.width > 0 && stored.width >= wanted.width && stored.height >= wanted.height) size = stored;
  }
  if (StandsOnItsSide(source)) std::swap(size.width, size.height);
  return size;
}

}  // namespace zvfile::magick
