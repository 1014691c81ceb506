#include <algorithm>
#include <cstring>
#include <iterator>

#include "services/zvcore/channel_math.h"
#include "services/zvcore/pixels.h"

namespace zvcore {

void FillGrayRamp(ZVPALETTEENTRY* palette, int bits) {
  const int last = (1 << bits) - 1;
  for (int i = 0; i <= last; ++i) {
    const auto gray = static_cast<uint8_t>(i * 255 / last);
    palette[i] = {gray, gray, gray, 255};
  }
}

int CompletePalette(const BITMAPHANDLE& bitmap, ZVPALETTEENTRY (&palette)[256]) {
  const int possible = bitmap.bitsPerPixel <= 8 ? 1 << bitmap.bitsPerPixel : 0;
  std::fill(std::begin(palette), std::end(palette), ZVPALETTEENTRY{0, 0, 0, 255});
  if (possible == 0) return 0;
  if (!bitmap.palette || bitmap.paletteCount < 1) {
    FillGrayRamp(palette, bitmap.bitsPerPixel);
    return possible;
  }
  const int count = std::min(bitmap.paletteCount, possible);
  std::copy_n(bitmap.palette, count, palette);
  return count;
}

bool IsGrayPalette(const ZVPALETTEENTRY* palette, int count) {
  return std::all_of(palette, palette + count,
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

int EncodePixel(const BITMAPHANDLE& bitmap, uint32_t color, uint8_t* pixel) {
  const int red = color & 255, green = color >> 8 & 255, blue = color >> 16 & 255;
  const bool rgb = bitmap.colorOrder == ORDER_RGB;
  const auto first = static_cast<uint8_t>(rgb ? red : blue);
  const auto third = static_cast<uint8_t>(rgb ? blue : red);
  const uint8_t channels[4] = {first, static_cast<uint8_t>(green), third, 255};
  const int gray = Luma(red, green, blue);
  if (IsIndexed(bitmap)) {
    ZVPALETTEENTRY palette[256];
    const int count = CompletePalette(bitmap, palette);
    const unsigned copies = bitmap.bitsPerPixel == 1 ? 0xFF : bitmap.bitsPerPixel == 4 ? 0x11 : 1;
    pixel[0] = static_cast<uint8_t>(NearestEntry(palette, count, red, green, blue) * copies);
    return 1;
  }
  if (bitmap.bitsPerPixel == 8) {
    pixel[0] = static_cast<uint8_t>(gray);
    return 1;
  }
  if (bitmap.bitsPerPixel == 16) {
    const unsigned word = Narrow5(red) << 10 | Narrow5(green) << 5 | Narrow5(blue);
    const auto value = static_cast<uint16_t>(IsGray(bitmap) ? static_cast<unsigned>(gray) * 257 : word);
    std::memcpy(pixel, &value, 2);
    return 2;
  }
  const int count = bitmap.bitsPerPixel == 24 || bitmap.bitsPerPixel == 48 ? 3 : 4;
  if (bitmap.bitsPerPixel <= 32) {
    std::memcpy(pixel, channels, static_cast<size_t>(count));
    return count;
  }
  for (int c = 0; c < count; ++c) {
    const auto value = static_cast<uint16_t>(channels[c] * 257);
    std::memcpy(pixel + 2 * c, &value, 2);
  }
  return count * 2;
}

}  // namespace zvcore

using namespace zvcore;

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
