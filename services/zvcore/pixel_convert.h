/* Conversion of single rows between pixel formats, by way of blue, green, red, alpha of 8 or 16 bits. Formats are
 * handles of which depth, order, flags and palette are read. Knows nothing of whole images: choosing colours and
 * dithering is next door, in quantize.h and dither.h. */
#ifndef ZV_ZVCORE_PIXEL_CONVERT_H
#define ZV_ZVCORE_PIXEL_CONVERT_H

#include <cstdint>

#include "services/zvcore/color_matcher.h"
#include "services/zvcore/memory.h"
#include "services/zvcore/progress.h"
#include "services/zvcore/zvcore.h"

namespace zvcore {

// Blue, green, red, alpha; alpha is the highest value where the format has none, and colours are not multiplied by it.
template <typename T>
struct Pixel {
  T blue, green, red, alpha;
};
using Pixel8 = Pixel<uint8_t>;
using Pixel16 = Pixel<uint16_t>;

// Decodes `pixels` pixels. palette is that of CompletePalette.
void DecodeRow(const BITMAPHANDLE& format, const ZVPALETTEENTRY* palette, const uint8_t* row, int32_t pixels,
               Pixel8* out);
void DecodeRow(const BITMAPHANDLE& format, const ZVPALETTEENTRY* palette, const uint8_t* row, int32_t pixels,
               Pixel16* out);

// Lays what has alpha over white, which is what paper does.
void BlendOnWhite(Pixel8* row, int32_t pixels);
void BlendOnWhite(Pixel16* row, int32_t pixels);

// The inverse, for formats that are not indexed.
void EncodeRow(const BITMAPHANDLE& format, const Pixel8* in, int32_t pixels, uint8_t* row);
void EncodeRow(const BITMAPHANDLE& format, const Pixel16* in, int32_t pixels, uint8_t* row);
void EncodeIndices(const BITMAPHANDLE& format, ColorMatcher& matcher, const Pixel8* in, int32_t pixels, uint8_t* row);

// Everything that is needed to convert rows of one format into another, prepared once.
class RowConverter {
 public:
  // The formats are copied; pixels is the longest row. ERROR_OUT_OF_MEMORY, ERROR_BAD_ARGUMENT.
  int32_t Prepare(const BITMAPHANDLE& sourceFormat, const BITMAPHANDLE& destinationFormat, int32_t pixels);
  void Convert(const uint8_t* in, uint8_t* out, int32_t pixels);

 private:
  template <typename T>
  void ConvertBy(Buffer<Pixel<T>>& row, const uint8_t* in, uint8_t* out, int32_t pixels);

  // Whether both formats have plain 8-bit colour channels, which then only change places.
  bool OnlyMovesBytes() const;

  BITMAPHANDLE source, destination;
  ZVPALETTEENTRY palette[256];
  bool blends = false;
  ColorMatcher matcher;
  Buffer<Pixel8> narrow;
  Buffer<Pixel16> wide;
};

// Converts all rows between bitmaps of one size, with progress when it is wanted. ERROR_OUT_OF_MEMORY,
// ERROR_USER_ABORT.
int32_t ConvertAllRows(const BITMAPHANDLE& source, BITMAPHANDLE& destination, Progress* progress = nullptr);

}  // namespace zvcore

#endif
