#include <algorithm>

#include "services/zvdisplay/picture_part.h"
#include "services/zvdisplay/zvdisplay.h"

namespace {

constexpr int64_t kBandPixels = 1 << 22;
constexpr int32_t kDefaultResolution = 96;

// The picture's size on the device when the caller names none: by its own resolution.
SIZE NaturalSize(HDC device, const BITMAPHANDLE& bitmap, SIZE shown) {
  const int32_t x = bitmap.xResolution > 0 ? bitmap.xResolution : kDefaultResolution;
  const int32_t y = bitmap.yResolution > 0 ? bitmap.yResolution : kDefaultResolution;
  return {MulDiv(shown.cx, GetDeviceCaps(device, LOGPIXELSX), x),
          MulDiv(shown.cy, GetDeviceCaps(device, LOGPIXELSY), y)};
}

}  // namespace

// Band by band: a page at printer resolution would take hundreds of megabytes at once.
int32_t PrintBitmap(HDC device, const BITMAPHANDLE* bitmap, int32_t x, int32_t y, int32_t width, int32_t height,
                    uint32_t) {
  if (!device || !bitmap) return ERROR_BAD_ARGUMENT;
  if (!(bitmap->flags & BITMAP_FLAG_ALLOCATED)) return ERROR_NO_IMAGE;
  const SIZE shown = zvdisplay::ShownSize(*bitmap);
  if (width == 0 || height == 0) {
    const SIZE natural = NaturalSize(device, *bitmap, shown);
    width = natural.cx;
    height = natural.cy;
  }
  if (width < 1 || height < 1) return ERROR_BAD_ARGUMENT;
  const int32_t bandRows = static_cast<int32_t>(std::clamp<int64_t>(kBandPixels / shown.cx, 1, shown.cy));
  for (int32_t row = 0; row < shown.cy; row += bandRows) {
    const RECT source{0, row, shown.cx, std::min<LONG>(shown.cy, row + bandRows)};
    const RECT target{x, y + MulDiv(source.top, height, shown.cy), x + width,
                      y + MulDiv(source.bottom, height, shown.cy)};
    const int32_t result = PaintBitmap(device, bitmap, &source, nullptr, &target, nullptr, SRCCOPY);
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}
