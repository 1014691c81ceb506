/* Where the pixels of a bitmap are: row addresses, packed indices, geometry checks and format questions. Reads
 * handles and owns nothing. All row numbers count from the top of the stored picture, whatever the memory order. */
#ifndef ZV_ZVCORE_PIXELS_H
#define ZV_ZVCORE_PIXELS_H

#include <cstdint>

#include "services/zvcore/zvcore.h"

namespace zvcore {

inline bool IsKnownDepth(int bits) {
  return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32 || bits == 48 || bits == 64;
}
inline bool IsValidSide(int64_t side) { return side >= 1 && side <= BITMAP_MAX_SIDE; }
inline int32_t LineBytes(int32_t width, int32_t bits) {
  return static_cast<int32_t>((static_cast<int64_t>(width) * bits + 31) / 32 * 4);
}
inline uint64_t PixelBytes(const BITMAPHANDLE& bitmap) {
  return static_cast<uint64_t>(bitmap.bytesPerLine) * static_cast<uint64_t>(bitmap.height);
}

inline bool IsSizeMethod(int32_t method) {
  return method == SIZE_NEAREST || method == SIZE_BILINEAR || method == SIZE_BICUBIC;
}

inline bool HasPixels(const BITMAPHANDLE* bitmap) {
  return bitmap && (bitmap->flags & BITMAP_FLAG_ALLOCATED) && bitmap->data;
}
// Whether an operation on pixels may start: SUCCESS, ERROR_BAD_ARGUMENT or ERROR_NO_IMAGE.
int32_t CheckPixels(const BITMAPHANDLE* bitmap);

inline bool IsGray(const BITMAPHANDLE& bitmap) {
  return bitmap.colorOrder == ORDER_GRAY && (bitmap.bitsPerPixel == 8 || bitmap.bitsPerPixel == 16);
}
inline bool IsIndexed(const BITMAPHANDLE& bitmap) { return bitmap.bitsPerPixel <= 8 && !IsGray(bitmap); }
inline bool HasAlpha(const BITMAPHANDLE& bitmap) {
  return (bitmap.flags & BITMAP_FLAG_ALPHA) && (bitmap.bitsPerPixel == 32 || bitmap.bitsPerPixel == 64);
}
// Whether there are channels of 16 bits.
inline bool HasWideChannels(const BITMAPHANDLE& bitmap) {
  return bitmap.bitsPerPixel >= 48 || (bitmap.bitsPerPixel == 16 && IsGray(bitmap));
}
inline bool IsTopDown(const BITMAPHANDLE& bitmap) { return bitmap.flags & BITMAP_FLAG_TOP_DOWN; }
inline int32_t Perspective(const BITMAPHANDLE& bitmap) {
  return bitmap.viewPerspective >= VIEW_TOP_LEFT && bitmap.viewPerspective <= VIEW_LEFT_BOTTOM ? bitmap.viewPerspective
                                                                                               : VIEW_TOP_LEFT;
}
inline bool ExchangesSides(int32_t perspective) { return perspective >= VIEW_LEFT_TOP; }

inline const uint8_t* RowAt(const BITMAPHANDLE& bitmap, int32_t row) {
  const int64_t line = IsTopDown(bitmap) ? row : bitmap.height - 1 - row;
  return bitmap.data + line * bitmap.bytesPerLine;
}
inline uint8_t* WritableRowAt(BITMAPHANDLE& bitmap, int32_t row) { return const_cast<uint8_t*>(RowAt(bitmap, row)); }
// From one row to the one below it.
inline int64_t RowStep(const BITMAPHANDLE& bitmap) {
  return IsTopDown(bitmap) ? bitmap.bytesPerLine : -static_cast<int64_t>(bitmap.bytesPerLine);
}

template <int bits>
inline unsigned IndexAt(const uint8_t* row, int64_t x) {
  if constexpr (bits == 1) return row[x >> 3] >> (7 - (x & 7)) & 1;
  if constexpr (bits == 4) return x & 1 ? row[x >> 1] & 15 : row[x >> 1] >> 4;
  return row[x];
}
template <int bits>
inline void PutIndexAt(uint8_t* row, int64_t x, unsigned index) {
  if constexpr (bits == 1) {
    const int shift = 7 - static_cast<int>(x & 7);
    row[x >> 3] = static_cast<uint8_t>((row[x >> 3] & ~(1u << shift)) | index << shift);
  } else if constexpr (bits == 4) {
    const int shift = x & 1 ? 0 : 4;
    row[x >> 1] = static_cast<uint8_t>((row[x >> 1] & ~(15u << shift)) | index << shift);
  } else {
    row[x] = static_cast<uint8_t>(index);
  }
}

// A bitmap that is freed unless it is taken: the result of an operation until that operation is complete.
class ScratchBitmap {
 public:
  ScratchBitmap() = default;
  ScratchBitmap(const ScratchBitmap&) = delete;
  ScratchBitmap& operator=(const ScratchBitmap&) = delete;
  ~ScratchBitmap() { FreeBitmap(&bitmap); }

  // New pixels of another size and depth; everything else, the palette too while the depth is the same, is model's.
  int32_t AllocateLike(const BITMAPHANDLE& model, int32_t width, int32_t height, int32_t bits);
  // Ends in target's place: target's old pixels are freed, what it said beside them stays.
  void MoveInto(BITMAPHANDLE& target);

  BITMAPHANDLE& operator*() { return bitmap; }
  BITMAPHANDLE* operator->() { return &bitmap; }

 private:
  BITMAPHANDLE bitmap = {};
};

// Makes an even ramp from black to white of 2^bits entries.
void FillGrayRamp(ZVPALETTEENTRY* palette, int bits);
inline bool IsSameColor(const ZVPALETTEENTRY& a, const ZVPALETTEENTRY& b) {
  return a.red == b.red && a.green == b.green && a.blue == b.blue;
}
// All colours that the indices of a bitmap can name: its palette, black past its end, or a grey ramp without one.
// Gives the number of entries that may be chosen from.
int CompletePalette(const BITMAPHANDLE& bitmap, ZVPALETTEENTRY (&palette)[256]);
bool IsGrayPalette(const ZVPALETTEENTRY* palette, int count);
// The entry next to a colour by the sum of squared channel differences; the first of equals. count is at least 1.
unsigned NearestEntry(const ZVPALETTEENTRY* palette, int count, int red, int green, int blue);

// Writes the pixel of a COLORREF as the bitmap stores it, and gives its bytes. Indices of less than 8 bits fill the
// byte with copies, so that a whole row can be set bytewise. pixel holds 8 bytes.
int EncodePixel(const BITMAPHANDLE& bitmap, uint32_t color, uint8_t* pixel);

}  // namespace zvcore

#endif
