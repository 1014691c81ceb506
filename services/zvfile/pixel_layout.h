// How the pixels of one row lie in memory, and the conversions between such rows. Decoders name the layout they produce and
// encoders the one they want; the row sink and the row source convert. Nothing here owns memory or looks at a whole image:
// choosing a palette for an image is the bitmap library's work.
#ifndef ZV_FILE_PIXEL_LAYOUT_H
#define ZV_FILE_PIXEL_LAYOUT_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "services/zvcore/zvcore.h"

namespace zvfile {

using Palette = std::vector<ZVPALETTEENTRY>;

// Indices are packed with the leftmost pixel in the most significant bits. 16-bit samples are in native byte order. Alpha is
// straight, never premultiplied. The x in a name is a byte (or 16-bit sample) of padding.
enum class Layout : uint8_t {
  kIndex1,
  kIndex2,
  kIndex4,
  kIndex8,
  kGray8,
  kGray16,
  kGrayAlpha16,  // two 8-bit samples
  kGrayAlpha32,  // two 16-bit samples
  kBgr555,       // 16-bit word, red in bits 10 to 14
  kRgb24,
  kBgr24,
  kRgbx32,
  kBgrx32,
  kRgba32,
  kBgra32,
  kRgb48,
  kBgr48,
  kRgbx64,
  kBgrx64,
  kRgba64,
  kBgra64
};

int32_t BitsPerPixel(Layout layout);
bool IsIndexed(Layout layout);
bool IsGray(Layout layout);  // grey samples, with or without alpha
bool HasAlpha(Layout layout);
bool IsDeep(Layout layout);      // 16 bits a sample
bool IsRgbOrder(Layout layout);  // red first
// Bytes of a row without padding.
size_t PackedRowBytes(Layout layout, int32_t width);

// The layout of a bitmap's rows, from its depth, order and alpha flag.
Layout LayoutOf(const BITMAPHANDLE& bitmap);
// The layout among those that a bitmap can have that keeps everything: 2-bit indices widen to 4, grey with alpha becomes
// colour with alpha.
Layout BitmapLayout(Layout layout, bool rgbOrder);
// The layout of a bitmap of the given depth; gray matters for 8 and 16 bits, alpha for 32 and 64.
Layout LayoutForDepth(int32_t bitsPerPixel, bool gray, bool alpha, bool rgbOrder);

// Rec. 601 luma, rounded: (299 R + 587 G + 114 B) / 1000.
uint8_t Luma8(uint32_t red, uint32_t green, uint32_t blue);
// 16 bits to 8 with rounding: v * 255 / 65535.
inline uint8_t Narrow16(uint32_t value) { return static_cast<uint8_t>((value * 255u + 32895u) >> 16); }

// Whether the alpha of a palette's entries is meant: bitmaps from elsewhere leave the field unset in all of them.
bool TellsAlpha(const Palette& palette);
// The palette for whoever cannot hold alpha: colours laid over white where their alpha is meant, all of them opaque.
Palette OpaquePalette(Palette palette);

// Converts rows of one layout into another. Possible from every layout to every layout that is not indexed, and between
// indexed ones that do not get narrower. What has alpha, a palette included, is laid over white when the target has none.
class RowConverter {
 public:
  RowConverter() = default;
  // palette is copied; it is read for indexed sources alone.
  RowConverter(Layout from, Layout to, int32_t width, const Palette& palette);

  static bool Possible(Layout from, Layout to);
  bool IsIdentity() const { return from_ == to_; }
  void Convert(const uint8_t* source, uint8_t* destination);

 private:
  void ConvertIndexed(const uint8_t* source, uint8_t* destination);
  void Convert8(const uint8_t* source, uint8_t* destination);
  void Convert16(const uint8_t* source, uint8_t* destination);

  Layout from_ = Layout::kBgr24;
  Layout to_ = Layout::kBgr24;
  int32_t width_ = 0;
  Palette palette_;
  std::vector<uint8_t> indices_;    // one row, a byte an index
  std::vector<uint8_t> colors8_;    // one row of BGRA
  std::vector<uint16_t> colors16_;  // one row of BGRA, 16 bits a sample
};

}  // namespace zvfile

#endif
