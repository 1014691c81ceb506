#include <algorithm>
#include <cstring>

#include "services/zvcore/memory.h"
#include "services/zvcore/metadata.h"
#include "services/zvcore/pixels.h"

namespace zvcore {
namespace {

// The record is consistent: what RowAt computes from it lies inside its pixels.
bool HasSoundGeometry(const BITMAPHANDLE& bitmap) {
  return IsKnownDepth(bitmap.bitsPerPixel) && IsValidSide(bitmap.width) && IsValidSide(bitmap.height) &&
         bitmap.bytesPerLine >= LineBytes(bitmap.width, bitmap.bitsPerPixel) && PixelBytes(bitmap) <= bitmap.dataSize;
}

ZVPALETTEENTRY* NewPalette(int entries) {
  return static_cast<ZVPALETTEENTRY*>(AllocateZeroed(static_cast<size_t>(entries) * sizeof(ZVPALETTEENTRY)));
}

}  // namespace

int32_t CheckPixels(const BITMAPHANDLE* bitmap) {
  if (!HasPixels(bitmap)) return ERROR_NO_IMAGE;
  if (bitmap->flags & BITMAP_FLAG_COMPRESSED) return ERROR_BAD_ARGUMENT;
  return HasSoundGeometry(*bitmap) ? SUCCESS : ERROR_BAD_ARGUMENT;
}

int32_t ScratchBitmap::AllocateLike(const BITMAPHANDLE& model, int32_t width, int32_t height, int32_t bits) {
  FreeBitmap(&bitmap);
  if (!IsValidSide(width) || !IsValidSide(height)) return ERROR_BAD_ARGUMENT;
  bitmap = model;
  bitmap.data = nullptr;
  bitmap.palette = nullptr;
  bitmap.metadata = nullptr;
  bitmap.paletteCount = 0;
  bitmap.lockCount = 0;
  bitmap.flags &= ~(BITMAP_FLAG_ALLOCATED | BITMAP_FLAG_COMPRESSED);
  bitmap.width = width;
  bitmap.height = height;
  bitmap.bitsPerPixel = bits;
  bitmap.bytesPerLine = LineBytes(width, bits);
  const int32_t result = AllocateBitmap(&bitmap, MEMORY_CONVENTIONAL);
  if (result != SUCCESS || bits != model.bitsPerPixel) return result;
  return CopyBitmapPalette(&bitmap, &model);
}

void ScratchBitmap::MoveInto(BITMAPHANDLE& target) {
  Release(target.data);
  Release(target.palette);
  bitmap.metadata = target.metadata;
  bitmap.lockCount = target.lockCount;
  target = bitmap;
  bitmap = {};
}

}  // namespace zvcore

using namespace zvcore;

int32_t GetDefaultBitmapMemoryFlags(uint32_t* flags) {
  if (!flags) return ERROR_BAD_ARGUMENT;
  *flags = MEMORY_CONVENTIONAL;
  return SUCCESS;
}

int32_t InitBitmapHandle(BITMAPHANDLE* bitmap, uint32_t recordSize, int32_t width, int32_t height,
                         int32_t bitsPerPixel) {
  if (!bitmap || recordSize != sizeof(BITMAPHANDLE)) return ERROR_BAD_ARGUMENT;
  if (!IsValidSide(width) || !IsValidSide(height) || !IsKnownDepth(bitsPerPixel)) return ERROR_BAD_ARGUMENT;
  *bitmap = {};
  bitmap->uStructSize = sizeof(BITMAPHANDLE);
  bitmap->width = width;
  bitmap->height = height;
  bitmap->bitsPerPixel = bitsPerPixel;
  bitmap->bytesPerLine = LineBytes(width, bitsPerPixel);
  bitmap->flags = BITMAP_FLAG_TOP_DOWN;
  bitmap->viewPerspective = VIEW_TOP_LEFT;
  bitmap->colorOrder = ORDER_BGR;
  bitmap->viewValueB = 100;
  return SUCCESS;
}

int32_t AllocateBitmap(BITMAPHANDLE* bitmap, uint32_t memoryFlags) {
  if (!bitmap || bitmap->uStructSize != sizeof(BITMAPHANDLE) || HasPixels(bitmap)) return ERROR_BAD_ARGUMENT;
  const int bits = bitmap->bitsPerPixel;
  if (!IsKnownDepth(bits) || !IsValidSide(bitmap->width) || !IsValidSide(bitmap->height)) return ERROR_BAD_ARGUMENT;
  if (bitmap->bytesPerLine < LineBytes(bitmap->width, bits) || bitmap->bytesPerLine % 4 != 0) return ERROR_BAD_ARGUMENT;
  const uint64_t size = PixelBytes(*bitmap);
  if (size > BITMAP_MAX_BYTES) return ERROR_LIMIT_EXCEEDED;
  ZVPALETTEENTRY* palette = nullptr;
  if (bits <= 8) {
    palette = NewPalette(1 << bits);
    if (!palette) return ERROR_OUT_OF_MEMORY;
    FillGrayRamp(palette, bits);
  }
  auto* data = static_cast<uint8_t*>(AllocatePixels(size));
  if (!data) {
    Release(palette);
    return ERROR_OUT_OF_MEMORY;
  }
  bitmap->data = data;
  bitmap->dataSize = size;
  bitmap->palette = palette;
  bitmap->paletteCount = palette ? 1 << bits : 0;
  bitmap->memoryFlags = memoryFlags;
  bitmap->flags |= BITMAP_FLAG_ALLOCATED;
  return SUCCESS;
}

int32_t Z_CreateBitmap(BITMAPHANDLE* bitmap, uint32_t recordSize, uint32_t memoryFlags, int32_t width, int32_t height,
                       int32_t bitsPerPixel, int32_t order, const ZVPALETTEENTRY* palette, int32_t viewPerspective,
                       const uint8_t* data, uint64_t dataSize) {
  if (order < ORDER_RGB || order > ORDER_BGR_OR_GRAY || viewPerspective < 0 || viewPerspective > VIEW_LEFT_BOTTOM) {
    return ERROR_BAD_ARGUMENT;
  }
  int32_t result = InitBitmapHandle(bitmap, recordSize, width, height, bitsPerPixel);
  if (result != SUCCESS) return result;
  const bool canBeGray = bitsPerPixel == 8 || bitsPerPixel == 16;
  bitmap->colorOrder = order == ORDER_RGB || (order == ORDER_GRAY && canBeGray) ? order : ORDER_BGR;
  bitmap->viewPerspective = viewPerspective ? viewPerspective : VIEW_TOP_LEFT;
  result = AllocateBitmap(bitmap, memoryFlags);
  if (result != SUCCESS) return result;
  if (palette && bitmap->palette) std::copy_n(palette, bitmap->paletteCount, bitmap->palette);
  if (data) std::memcpy(bitmap->data, data, std::min(dataSize, bitmap->dataSize));
  return SUCCESS;
}

int32_t FreeBitmap(BITMAPHANDLE* bitmap) {
  if (!bitmap) return ERROR_BAD_ARGUMENT;
  if (bitmap->metadata) FreeMetadata(*bitmap);
  if (!(bitmap->flags & BITMAP_FLAG_ALLOCATED)) return SUCCESS;
  ReleasePixels(bitmap->data, bitmap->dataSize);
  Release(bitmap->palette);
  bitmap->data = nullptr;
  bitmap->dataSize = 0;
  bitmap->palette = nullptr;
  bitmap->paletteCount = 0;
  bitmap->lockCount = 0;
  bitmap->flags &= ~BITMAP_FLAG_ALLOCATED;
  return SUCCESS;
}

int32_t CopyBitmapHandle(BITMAPHANDLE* destination, const BITMAPHANDLE* source, uint32_t recordSize) {
  if (!destination || !source || recordSize != sizeof(BITMAPHANDLE)) return ERROR_BAD_ARGUMENT;
  *destination = *source;
  return SUCCESS;
}

int32_t MoveBitmapHandle(BITMAPHANDLE* destination, BITMAPHANDLE* source, uint32_t recordSize) {
  const int32_t result = CopyBitmapHandle(destination, source, recordSize);
  if (result != SUCCESS || destination == source) return result;
  source->data = nullptr;
  source->dataSize = 0;
  source->palette = nullptr;
  source->paletteCount = 0;
  source->metadata = nullptr;
  source->lockCount = 0;
  source->flags &= ~BITMAP_FLAG_ALLOCATED;
  return SUCCESS;
}

int32_t DuplicateBitmap(BITMAPHANDLE* destination, const BITMAPHANDLE* source) {
  if (!destination) return ERROR_BAD_ARGUMENT;
  if (!HasPixels(source)) return ERROR_NO_IMAGE;
  BITMAPHANDLE copy = *source;
  copy.data = static_cast<uint8_t*>(AllocatePixels(source->dataSize));
  copy.palette = source->palette ? NewPalette(source->paletteCount) : nullptr;
  copy.metadata = nullptr;
  copy.lockCount = 0;
  if (!copy.data || (source->palette && !copy.palette) || CopyBitmapMetadata(&copy, source) != SUCCESS) {
    FreeBitmap(&copy);
    return ERROR_OUT_OF_MEMORY;
  }
  std::memcpy(copy.data, source->data, source->dataSize);
  if (copy.palette) std::copy_n(source->palette, source->paletteCount, copy.palette);
  *destination = copy;
  return SUCCESS;
}

int32_t CopyBitmapPalette(BITMAPHANDLE* destination, const BITMAPHANDLE* source) {
  if (!destination || !source) return ERROR_BAD_ARGUMENT;
  if (destination->bitsPerPixel > 8 || destination->palette == source->palette) return SUCCESS;
  ZVPALETTEENTRY* copy = nullptr;
  int32_t count = 0;
  if (source->palette && source->paletteCount > 0) {
    count = std::min(source->paletteCount, 1 << destination->bitsPerPixel);
    copy = NewPalette(count);
    if (!copy) return ERROR_OUT_OF_MEMORY;
    std::copy_n(source->palette, count, copy);
  }
  Release(destination->palette);
  destination->palette = copy;
  destination->paletteCount = count;
  return SUCCESS;
}

int32_t LockBitmapRows(BITMAPHANDLE* bitmap) {
  if (!HasPixels(bitmap)) return ERROR_NO_IMAGE;
  ++bitmap->lockCount;
  return SUCCESS;
}

int32_t UnlockBitmapRows(BITMAPHANDLE* bitmap) {
  if (!HasPixels(bitmap)) return ERROR_NO_IMAGE;
  if (bitmap->lockCount < 1) return ERROR_BAD_ARGUMENT;
  --bitmap->lockCount;
  return SUCCESS;
}

int32_t CopyBitmapRow(const BITMAPHANDLE* bitmap, void* buffer, int32_t row, int32_t bytes) {
  const int32_t check = CheckPixels(bitmap);
  if (check != SUCCESS) return check;
  if (!buffer || row < 0 || row >= bitmap->height || bytes < 1) return ERROR_BAD_ARGUMENT;
  const int32_t copied = std::min(bytes, bitmap->bytesPerLine);
  std::memcpy(buffer, RowAt(*bitmap, row), static_cast<size_t>(copied));
  return copied;
}

int32_t PutBitmapRow(BITMAPHANDLE* bitmap, const void* buffer, int32_t row, int32_t bytes) {
  const int32_t check = CheckPixels(bitmap);
  if (check != SUCCESS) return check;
  if (!buffer || row < 0 || row >= bitmap->height || bytes < 1) return ERROR_BAD_ARGUMENT;
  const int32_t copied = std::min(bytes, bitmap->bytesPerLine);
  std::memcpy(WritableRowAt(*bitmap, row), buffer, static_cast<size_t>(copied));
  return copied;
}
