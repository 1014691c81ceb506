#include "services/zvcore/pixel_convert.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/resampler.h"

using namespace zvcore;

namespace {

// Indices mean the same in both, and channels stand in the same places.
bool HasSamePixelFormat(const BITMAPHANDLE& a, const BITMAPHANDLE& b) {
  if (a.bitsPerPixel != b.bitsPerPixel || IsGray(a) != IsGray(b)) return false;
  if (!IsIndexed(a)) return a.bitsPerPixel <= 16 || (a.colorOrder == ORDER_RGB) == (b.colorOrder == ORDER_RGB);
  ZVPALETTEENTRY first[256], second[256];
  const int count = CompletePalette(a, first);
  if (CompletePalette(b, second) != count) return false;
  for (int i = 0; i < count; ++i) {
    if (!IsSameColor(first[i], second[i])) return false;
  }
  return true;
}

}  // namespace

int32_t ResizeBitmapInto(const BITMAPHANDLE* source, BITMAPHANDLE* destination, uint32_t flags) {
  int32_t result = CheckPixels(source);
  if (result == SUCCESS) result = CheckPixels(destination);
  if (result != SUCCESS) return result;
  if (source->bitsPerPixel != destination->bitsPerPixel || source->data == destination->data) return ERROR_BAD_ARGUMENT;
  const int32_t method = flags & RESIZE_FAVOR_QUALITY ? SIZE_BICUBIC : SIZE_NEAREST;
  constexpr uint32_t kAlphaFlags = BITMAP_FLAG_ALPHA | BITMAP_FLAG_PREMULTIPLIED;
  destination->flags = (destination->flags & ~kAlphaFlags) | (source->flags & kAlphaFlags);
  if (HasSamePixelFormat(*source, *destination)) return Resample(*source, *destination, method);
  ScratchBitmap scratch;
  result = scratch.AllocateLike(*source, destination->width, destination->height, source->bitsPerPixel);
  if (result == SUCCESS) result = Resample(*source, *scratch, method);
  return result == SUCCESS ? ConvertAllRows(*scratch, *destination) : result;
}

int32_t SizeBitmap(BITMAPHANDLE* bitmap, int32_t width, int32_t height, int32_t method) {
  int32_t result = CheckPixels(bitmap);
  if (result != SUCCESS) return result;
  if (!IsValidSide(width) || !IsValidSide(height) || !IsSizeMethod(method)) return ERROR_BAD_ARGUMENT;
  const bool exchanged = ExchangesSides(Perspective(*bitmap));
  const int32_t storedWidth = exchanged ? height : width;
  const int32_t storedHeight = exchanged ? width : height;
  if (storedWidth == bitmap->width && storedHeight == bitmap->height) return SUCCESS;
  ScratchBitmap sized;
  result = sized.AllocateLike(*bitmap, storedWidth, storedHeight, bitmap->bitsPerPixel);
  if (result == SUCCESS) result = Resample(*bitmap, *sized, method);
  if (result != SUCCESS) return result;
  sized.MoveInto(*bitmap);
  return SUCCESS;
}
