#include <algorithm>
#include <utility>

#include "services/zvdisplay/draw_pixels.h"
#include "services/zvdisplay/picture_part.h"
#include "services/zvdisplay/zvdisplay.h"

using namespace zvdisplay;

namespace {

constexpr int64_t kBandPixels = 1 << 20;
constexpr int32_t kDefaultResolution = 96;

// In device pixels, by the picture's own resolutions, which belong to its stored sides.
SIZE NaturalSize(HDC device, const BITMAPHANDLE& bitmap) {
  int32_t across = bitmap.xResolution > 0 ? bitmap.xResolution : kDefaultResolution;
  int32_t down = bitmap.yResolution > 0 ? bitmap.yResolution : kDefaultResolution;
  if (bitmap.viewPerspective >= VIEW_LEFT_TOP) std::swap(across, down);
  const ZVRECT shown = ShownRect(bitmap);
  return {MulDiv(WidthOf(shown), GetDeviceCaps(device, LOGPIXELSX), across),
          MulDiv(HeightOf(shown), GetDeviceCaps(device, LOGPIXELSY), down)};
}

// Bands keep a page at the printer's resolution from taking hundreds of megabytes at once.
int32_t PrintBands(HDC device, const BITMAPHANDLE& bitmap, const Placement& to) {
  const ZVRECT source = ShownRect(bitmap);
  const int32_t deviceWidth = WidthOf(to.rect), deviceHeight = HeightOf(to.rect);
  const int32_t width = std::min(WidthOf(source), deviceWidth), height = std::min(HeightOf(source), deviceHeight);
  const auto bandRows = static_cast<int32_t>(std::clamp<int64_t>(kBandPixels / width, 1, height));
  for (int32_t row = 0; row < height; row += bandRows) {
    // Rows of the page; the picture's are counted from the other end when it is flipped.
    const int32_t last = std::min(row + bandRows, height);
    const ZVRECT part = to.flipped ? ZVRECT{0, height - last, width, height - row} : ZVRECT{0, row, width, last};
    const ZVRECT place = {to.rect.left, to.rect.top + BandEdge(row, height, deviceHeight), to.rect.right,
                          to.rect.top + BandEdge(last, height, deviceHeight)};
    OwnedBitmap pixels;
    int32_t status = MakePicturePart(bitmap, {source, width, height, part, to.mirrored, to.flipped, false}, pixels);
    if (status == SUCCESS) status = DrawPixels(device, *pixels.Get(), place, SRCCOPY);
    if (status != SUCCESS) return status;
  }
  return SUCCESS;
}

}  // namespace

int32_t PrintBitmap(HDC device, const BITMAPHANDLE* bitmap, int32_t x, int32_t y, int32_t width, int32_t height,
                    uint32_t) {
  if (!device || !bitmap) return ERROR_BAD_ARGUMENT;
  if (!(bitmap->flags & BITMAP_FLAG_ALLOCATED)) return ERROR_NO_IMAGE;
  if (bitmap->flags & BITMAP_FLAG_COMPRESSED) return ERROR_BITMAP_REFUSED;
  Placement to = Normalized(DevicePixels(device, {x, y, x + width, y + height}));
  if (width == 0 && height == 0) {
    const SIZE natural = NaturalSize(device, *bitmap);
    to.rect.right = to.rect.left + static_cast<int32_t>(natural.cx);
    to.rect.bottom = to.rect.top + static_cast<int32_t>(natural.cy);
  }
  if (IsEmpty(to.rect) || !IsPaintable(to.rect)) return ERROR_BAD_ARGUMENT;
  const DeviceSpace space(device);
  return PrintBands(device, *bitmap, to);
}
