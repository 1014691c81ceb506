#include <algorithm>
#include <cstring>

#include "services/zvcore/pixels.h"

namespace zvcore {

void FillGrayRamp(ZVPALETTEENTRY* palette, int bits) {
  const int last = (1 << bits) - 1;
  for (int i = 0; i <= last; ++i) {
    const auto gray = static_cast<uint8_t>(i * 255 / last);
    palette[i] = {gray, gray, gray, 255};
  }
}

bool IsGrayPalette(const BITMAPHANDLE& bitmap) {
  return std::all_of(bitmap.palette, bitmap.palette + bitmap.paletteCount,
                     [](const ZVPALETTEENTRY& entry) { return entry.red == entry.green && entry.green == entry.blue; });
}

unsigned NearestEntry(const ZVPALETTEENTRY* palette, int count, int red, int green, int blue) {
  unsigned best = 0;
  int bestDistance = INT32_MAX;
  for (int i = 0; i < count; ++i) {
    const int r = palette[i].red - red;
    const int g = palette[i].green - green;
    const int b = palette[i].blue - blue;
    const int distance = r * r + g * g + b * b;
    if (distance < bestDistance) {
      bestDistance = distance;
      best = static_cast<unsigned>(i);
      if (distance == 0) break;
    }
  }
  return best;
}

}  // namespace zvcore

using namespace zvcore;

namespace {

void FillRow(uint8_t* row, int64_t bytes, const uint8_t* pixel, int pixelBytes) {
  if (pixelBytes == 1) {
    std::memset(row, pixel[0], static_cast<size_t>(bytes));
    return;
  }
  const int64_t whole = bytes / pixelBytes * pixelBytes;
  for (int64_t at = 0; at < whole; at += pixelBytes) std::memcpy(row + at, pixel, static_cast<size_t>(pixelBytes));
}

}  // namespace

namespace zvcore {

int EncodePixel(const BITMAPHANDLE& bitmap, uint32_t color, uint8_t* pixel) {
  const int red = color & 255, green = color >> 8 & 255, blue = color >> 16 & 255;
  const ZVPALETTEENTRY entry = {static_cast<uint8_t>(blue), static_cast<uint8_t>(green), static_cast<uint8_t>(red), 255};
  const bool rgb = bitmap.colorOrder == ORDER_RGB;
  const uint8_t channels[4] = {rgb ? entry.red : entry.blue, entry.green, rgb ? entry.blue : entry.red, 255};
  const int gray = (red * 299 + green * 587 + blue * 114 + 500) / 1000;
  switch (bitmap.bitsPerPixel) {
    case 1:
    case 4:
    case 8: {
      unsigned index = IsGray(bitmap) || !bitmap.palette ? static_cast<unsigned>(gray) >> (8 - bitmap.bitsPerPixel)
                                                         : NearestEntry(bitmap.palette, bitmap.paletteCount, red, green, blue);
      if (bitmap.bitsPerPixel == 1) index *= 0xFF;
      if (bitmap.bitsPerPixel == 4) index *= 0x11;
      pixel[0] = static_cast<uint8_t>(index);
      return 1;
    }
    case 16: {
      const auto value = static_cast<uint16_t>(IsGray(bitmap) ? gray * 257
                                                              : (red * 31 + 127) / 255 << 10 | (green * 31 + 127) / 255 << 5 |
                                                                    (blue * 31 + 127) / 255);
      std::memcpy(pixel, &value, 2);
      return 2;
    }
    case 24:
    case 32:
      std::memcpy(pixel, channels, 4);
      return bitmap.bitsPerPixel / 8;
    default:
      for (int c = 0; c < 4; ++c) {
        const auto value = static_cast<uint16_t>(channels[c] * 257);
        std::memcpy(pixel + 2 * c, &value, 2);
      }
      return bitmap.bitsPerPixel / 8;
  }
}

}  // namespace zvcore

int32_t FillBitmap(BITMAPHANDLE* bitmap, uint32_t color) {
  const int32_t check = CheckPixels(bitmap);
  if (check != SUCCESS) return check;
  uint8_t pixel[8] = {};
  const int pixelBytes = EncodePixel(*bitmap, color, pixel);
  const int64_t used = LineBytes(bitmap->width, bitmap->bitsPerPixel);
  uint8_t* first = WritableRowAt(*bitmap, 0);
  FillRow(first, used, pixel, pixelBytes);
  for (int32_t row = 1; row < bitmap->height; ++row) {
    std::memcpy(WritableRowAt(*bitmap, row), first, static_cast<size_t>(used));
  }
  return SUCCESS;
}
