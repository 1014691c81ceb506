#include "services/zvfile/limits.h"

#include "services/zvcore/result_codes.h"

namespace zvfile {
namespace {

uint64_t DecodedBytes(int64_t width, int64_t height, int32_t bitsPerPixel) {
  return (static_cast<uint64_t>(width) * static_cast<uint64_t>(bitsPerPixel) + 7) / 8 * static_cast<uint64_t>(height);
}

}  // namespace

int32_t Limits::CheckImage(int64_t width, int64_t height, int32_t bitsPerPixel) const {
  if (width < 1 || height < 1) return ERROR_FILE_DAMAGED;
  if (width > maxSide || height > maxSide) return ERROR_LIMIT_EXCEEDED;
  if (static_cast<uint64_t>(width) * static_cast<uint64_t>(height) > maxPixels) return ERROR_LIMIT_EXCEEDED;
  return DecodedBytes(width, height, bitsPerPixel) > maxDecodedBytes ? ERROR_LIMIT_EXCEEDED : SUCCESS;
}

int32_t Limits::CheckPlausible(int64_t width, int64_t height, int32_t bitsPerPixel, uint64_t compressedBytes,
                               uint32_t ratio) const {
  const int32_t result = CheckImage(width, height, bitsPerPixel);
  if (result != SUCCESS) return result;
  return DecodedBytes(width, height, bitsPerPixel) / ratio > compressedBytes ? ERROR_FILE_DAMAGED : SUCCESS;
}

}  // namespace zvfile
