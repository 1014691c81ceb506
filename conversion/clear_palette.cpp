#include "conversion/clear_palette.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "platform/scope_exit.h"

namespace {

void ExpandRow(const BITMAPHANDLE& bitmap, const uint8_t* indices, ZVPALETTEENTRY* colors) {
  const int bits = bitmap.bitsPerPixel;
  const int mask = (1 << bits) - 1;
  for (int x = 0; x < bitmap.width; ++x) {
    const int bit = x * bits;
    const int index = indices[bit >> 3] >> (8 - bits - (bit & 7)) & mask;
    colors[x] = index < bitmap.paletteCount ? bitmap.palette[index] : ZVPALETTEENTRY{0, 0, 0, 255};
  }
}

}  // namespace

bool HasClearPalette(const BITMAPHANDLE& bitmap) {
  if (bitmap.bitsPerPixel > 8 || bitmap.colorOrder == ORDER_GRAY || !bitmap.palette) {
    return false;
  }
  const std::span<const ZVPALETTEENTRY> entries(bitmap.palette, static_cast<size_t>(std::max(bitmap.paletteCount, 0)));
  const auto clear = std::count_if(entries.begin(), entries.end(), [](const auto& entry) { return entry.alpha == 0; });
  return clear > 0 && static_cast<size_t>(clear) < entries.size();
}

int32_t UnfoldClearPalette(BITMAPHANDLE& bitmap) {
  BITMAPHANDLE colors = {};
  const scope_exit release([&] { ::FreeBitmap(&colors); });
  int32_t result = ::InitBitmapHandle(&colors, sizeof colors, bitmap.width, bitmap.height, 32);
  if (result == SUCCESS) {
    result = ::AllocateBitmap(&colors, bitmap.memoryFlags);
  }
  if (result == SUCCESS) {
    result = ::CopyBitmapMetadata(&colors, &bitmap);
  }
  if (result != SUCCESS) {
    return result;
  }
  colors.flags |= BITMAP_FLAG_ALPHA;
  colors.viewPerspective = bitmap.viewPerspective;
  colors.xResolution = bitmap.xResolution;
  colors.yResolution = bitmap.yResolution;
  std::memcpy(colors.carriedValues, bitmap.carriedValues, sizeof colors.carriedValues);
  std::vector<uint8_t> indices(static_cast<size_t>(bitmap.bytesPerLine));
  std::vector<ZVPALETTEENTRY> row(static_cast<size_t>(bitmap.width));
  for (int y = 0; y < bitmap.height; ++y) {
    ::CopyBitmapRow(&bitmap, indices.data(), y, bitmap.bytesPerLine);
    ExpandRow(bitmap, indices.data(), row.data());
    ::PutBitmapRow(&colors, row.data(), y, colors.bytesPerLine);
  }
  ::FreeBitmap(&bitmap);
  return ::MoveBitmapHandle(&bitmap, &colors, sizeof bitmap);
}
