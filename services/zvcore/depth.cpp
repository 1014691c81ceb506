#include <algorithm>

#include "services/zvcore/dither.h"
#include "services/zvcore/pixel_convert.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/progress.h"
#include "services/zvcore/quantize.h"

using namespace zvcore;

namespace {

int32_t ResolveOrder(const BITMAPHANDLE& bitmap, int bits, int32_t order) {
  if (order == ORDER_BGR_OR_GRAY) {
    const bool staysGray = IsGray(bitmap) && (bits == 8 || bits == 16);
    return staysGray ? ORDER_GRAY : ORDER_BGR;
  }
  return order;
}

bool IsSameFormat(const BITMAPHANDLE& bitmap, int bits, int32_t order, const ZVPALETTEENTRY* palette) {
  if (bitmap.bitsPerPixel != bits || palette) return false;
  const bool gray = order == ORDER_GRAY && (bits == 8 || bits == 16);
  if (IsGray(bitmap) != gray) return false;
  return bits <= 16 ? order != ORDER_GRAY || gray : (bitmap.colorOrder == ORDER_RGB) == (order == ORDER_RGB);
}

// What the indices of the result stand for: the caller's palette, a grey ramp when grey is asked for, else the
// image's best.
int32_t SetPalette(const BITMAPHANDLE& source, const ZVPALETTEENTRY* palette, int32_t order, BITMAPHANDLE& result) {
  const int entries = 1 << result.bitsPerPixel;
  if (palette) {
    std::copy_n(palette, entries, result.palette);
    return SUCCESS;
  }
  if (order == ORDER_GRAY) {
    FillGrayRamp(result.palette, result.bitsPerPixel);
    return SUCCESS;
  }
  ZVPALETTEENTRY chosen[256];
  int count = 0;
  const int32_t status = ChoosePalette(source, entries, chosen, &count);
  if (status != SUCCESS) return status;
  std::copy_n(chosen, count, result.palette);
  result.paletteCount = count;
  return SUCCESS;
}

template <int bits>
void PutIndices(const uint8_t* indices, int32_t width, uint8_t* row) {
  for (int32_t x = 0; x < width; ++x) PutIndexAt<bits>(row, x, indices[x]);
}

int32_t ConvertDithered(const BITMAPHANDLE& source, BITMAPHANDLE& result, Progress& progress) {
  ZVPALETTEENTRY palette[256];
  ColorMatcher matcher;
  int32_t status = matcher.Prepare(palette, CompletePalette(result, palette));
  ErrorDiffusion diffusion;
  Buffer<Pixel8> pixels;
  Buffer<uint8_t> indices;
  if (status == SUCCESS) status = diffusion.Prepare(source.width);
  if (status != SUCCESS) return status;
  const auto width = static_cast<size_t>(source.width);
  if (!pixels.Allocate(width) || !indices.Allocate(width)) return ERROR_OUT_OF_MEMORY;
  CompletePalette(source, palette);
  for (int32_t y = 0; status == SUCCESS && y < source.height; ++y) {
    DecodeRow(source, palette, RowAt(source, y), source.width, pixels.data());
    if (HasAlpha(source)) BlendOnWhite(pixels.data(), source.width);
    diffusion.Next(matcher, pixels.data(), indices.data());
    uint8_t* row = WritableRowAt(result, y);
    if (result.bitsPerPixel == 1) PutIndices<1>(indices.data(), source.width, row);
    if (result.bitsPerPixel == 4) PutIndices<4>(indices.data(), source.width, row);
    if (result.bitsPerPixel == 8) PutIndices<8>(indices.data(), source.width, row);
    status = progress.Reached(y + 1);
  }
  return status;
}

}  // namespace

int32_t ConvertBitmapDepth(BITMAPHANDLE* bitmap, int32_t bitsPerPixel, int32_t order, const ZVPALETTEENTRY* palette,
                           int32_t dither) {
  int32_t status = CheckPixels(bitmap);
  if (status != SUCCESS) return status;
  if (!IsKnownDepth(bitsPerPixel) || order < ORDER_RGB || order > ORDER_BGR_OR_GRAY || order == 3)
    return ERROR_BAD_ARGUMENT;
  if (palette && bitsPerPixel > 8) return ERROR_BAD_ARGUMENT;
  order = ResolveOrder(*bitmap, bitsPerPixel, order);
  if (IsSameFormat(*bitmap, bitsPerPixel, order, palette)) return SUCCESS;
  ScratchBitmap converted;
  status = converted.AllocateLike(*bitmap, bitmap->width, bitmap->height, bitsPerPixel);
  if (status != SUCCESS) return status;
  const bool gray = order == ORDER_GRAY && !palette && (bitsPerPixel == 8 || bitsPerPixel == 16);
  converted->colorOrder = gray ? ORDER_GRAY : order == ORDER_RGB ? ORDER_RGB : ORDER_BGR;
  if (!HasAlpha(*converted)) converted->flags &= ~(BITMAP_FLAG_ALPHA | BITMAP_FLAG_PREMULTIPLIED);
  if (!HasAlpha(*bitmap)) converted->flags &= ~(BITMAP_FLAG_ALPHA | BITMAP_FLAG_PREMULTIPLIED);
  if (bitsPerPixel <= 8) status = SetPalette(*bitmap, palette, order, *converted);
  if (status != SUCCESS) return status;
  Progress progress(bitmap->height);
  status = IsIndexed(*converted) && dither ? ConvertDithered(*bitmap, *converted, progress)
                                           : ConvertAllRows(*bitmap, *converted, &progress);
  if (status != SUCCESS) return status;
  converted.MoveInto(*bitmap);
  return SUCCESS;
}
