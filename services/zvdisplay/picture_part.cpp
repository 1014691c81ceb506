#include "services/zvdisplay/picture_part.h"

#include <algorithm>
#include <utility>

#include "services/zvdisplay/display_mode.h"
#include "services/zvdisplay/view_values.h"

namespace zvdisplay {

namespace {

// Indexed pictures are turned into colours before they are scaled, some of their rows at a time: a fax page would take 24
// times its memory at once.
constexpr int64_t kBandPixels = 1 << 22;

bool ExchangesSides(const BITMAPHANDLE& bitmap) { return bitmap.viewPerspective >= VIEW_LEFT_TOP; }

// From the picture as shown to its stored rows.
RECT StoredRectangle(const BITMAPHANDLE& bitmap, const RECT& shown) {
  RECT r = shown;
  if (ExchangesSides(bitmap)) r = {shown.top, shown.left, shown.bottom, shown.right};
  const bool mirrored = bitmap.viewPerspective == VIEW_TOP_RIGHT || bitmap.viewPerspective == VIEW_BOTTOM_RIGHT ||
                        bitmap.viewPerspective == VIEW_RIGHT_BOTTOM || bitmap.viewPerspective == VIEW_LEFT_BOTTOM;
  const bool flipped = bitmap.viewPerspective == VIEW_BOTTOM_RIGHT || bitmap.viewPerspective == VIEW_BOTTOM_LEFT ||
                       bitmap.viewPerspective == VIEW_RIGHT_TOP || bitmap.viewPerspective == VIEW_RIGHT_BOTTOM;
  if (mirrored) r = {bitmap.width - r.right, r.top, bitmap.width - r.left, r.bottom};
  if (flipped) r = {r.left, bitmap.height - r.bottom, r.right, bitmap.height - r.top};
  return r;
}

// A handle on some whole rows of the picture, sharing its pixels.
BITMAPHANDLE SharedRows(const BITMAPHANDLE& bitmap, int32_t first, int32_t count) {
  BITMAPHANDLE rows = bitmap;
  const bool topDown = bitmap.flags & BITMAP_FLAG_TOP_DOWN;
  const int64_t line = topDown ? first : bitmap.height - first - count;
  rows.data = bitmap.data + line * bitmap.bytesPerLine;
  rows.height = count;
  rows.viewPerspective = VIEW_TOP_LEFT;
  rows.metadata = nullptr;
  return rows;
}

// The stored rectangle in 24 bits, or 32 with alpha: a copy, cropped, colours resolved.
int32_t CopyColors(const BITMAPHANDLE& bitmap, const RECT& stored, OwnedBitmap& colors) {
  const BITMAPHANDLE rows = SharedRows(bitmap, stored.top, stored.bottom - stored.top);
  const int64_t bitOffset = int64_t{stored.left} * bitmap.bitsPerPixel;
  // Whole bytes can be cropped while copying; pixels that share bytes keep the row's start up to 7 pixels further left.
  const int32_t firstByte = static_cast<int32_t>(bitOffset / 8);
  const int32_t lead = static_cast<int32_t>(bitOffset % 8) / std::max(bitmap.bitsPerPixel, 1);
  const int32_t width = stored.right - stored.left + lead;
  int32_t result = InitBitmapHandle(colors.get(), sizeof(BITMAPHANDLE), width, rows.height, bitmap.bitsPerPixel);
  if (result == SUCCESS) {
    colors->colorOrder = bitmap.colorOrder;
    colors->flags |= bitmap.flags & (BITMAP_FLAG_ALPHA | BITMAP_FLAG_PREMULTIPLIED);
    result = AllocateBitmap(colors.get(), MEMORY_CONVENTIONAL);
  }
  if (result == SUCCESS && bitmap.palette) result = CopyBitmapPalette(colors.get(), &bitmap);
  if (result != SUCCESS) return result;
  const int32_t bytes = (width * bitmap.bitsPerPixel + 7) / 8;
  const bool topDown = rows.flags & BITMAP_FLAG_TOP_DOWN;
  for (int32_t row = 0; row < rows.height; ++row) {
    const int64_t line = topDown ? row : rows.height - 1 - row;
    PutBitmapRow(colors.get(), rows.data + line * rows.bytesPerLine + firstByte, row, bytes);
  }
  const bool alpha = bitmap.flags & BITMAP_FLAG_ALPHA;
  result = ConvertBitmapDepth(colors.get(), alpha ? 32 : 24, ORDER_BGR, nullptr, 0);
  if (result != SUCCESS || lead == 0) return result;
  OwnedBitmap cropped;
  const RECT rest = {lead, 0, width, rows.height};
  result = CopyColors(*colors.get(), rest, cropped);
  std::swap(*colors.get(), *cropped.get());
  return result;
}

int32_t AllocateLike(const BITMAPHANDLE& model, SIZE size, OwnedBitmap& bitmap) {
  int32_t result = InitBitmapHandle(bitmap.get(), sizeof(BITMAPHANDLE), size.cx, size.cy, model.bitsPerPixel);
  if (result != SUCCESS) return result;
  bitmap->colorOrder = model.colorOrder;
  bitmap->flags |= model.flags & BITMAP_FLAG_ALPHA;
  return AllocateBitmap(bitmap.get(), MEMORY_CONVENTIONAL);
}

// Scales down band by band. A band's rows begin and end at whole source rows, so that a row of the result at a band's edge
// may miss a fraction of one source row: not to be seen.
int32_t ScaleDown(const BITMAPHANDLE& bitmap, const RECT& stored, SIZE size, OwnedBitmap& scaled) {
  const int64_t sourceWidth = stored.right - stored.left, sourceHeight = stored.bottom - stored.top;
  const int64_t bandRows = std::max<int64_t>(1, kBandPixels / sourceWidth * size.cy / sourceHeight);
  for (int64_t top = 0; top < size.cy; top += bandRows) {
    const int64_t bottom = std::min<int64_t>(size.cy, top + bandRows);
    const RECT source = {stored.left, static_cast<LONG>(stored.top + top * sourceHeight / size.cy), stored.right,
                         static_cast<LONG>(stored.top + (bottom * sourceHeight + size.cy - 1) / size.cy)};
    OwnedBitmap colors;
    int32_t result = CopyColors(bitmap, source, colors);
    if (result == SUCCESS && top == 0) result = AllocateLike(*colors.get(), size, scaled);
    if (result != SUCCESS) return result;
    BITMAPHANDLE band = SharedRows(*scaled.get(), static_cast<int32_t>(top), static_cast<int32_t>(bottom - top));
    result = ResizeBitmapInto(colors.get(), &band, RESIZE_FAVOR_QUALITY);
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

}  // namespace

SIZE ShownSize(const BITMAPHANDLE& bitmap) {
  return ExchangesSides(bitmap) ? SIZE{bitmap.height, bitmap.width} : SIZE{bitmap.width, bitmap.height};
}

int32_t MakePicturePart(const BITMAPHANDLE& bitmap, const RECT& part, SIZE size, OwnedBitmap& result) {
  const RECT stored = StoredRectangle(bitmap, part);
  if (ExchangesSides(bitmap)) std::swap(size.cx, size.cy);
  const bool smaller = size.cx <= stored.right - stored.left && size.cy <= stored.bottom - stored.top &&
                       (size.cx < stored.right - stored.left || size.cy < stored.bottom - stored.top);
  const bool scale = smaller && (CurrentDisplayMode() & DISPLAY_MODE_SCALE_QUALITY);
  int32_t code = scale ? ScaleDown(bitmap, stored, size, result) : CopyColors(bitmap, stored, result);
  if (code != SUCCESS) return code;
  result->viewPerspective = bitmap.viewPerspective;
  code = ApplyViewPerspective(result.get());
  if (code != SUCCESS) return code;
  ApplyViewValues(*result.get(), bitmap);
  return ConvertBitmapDepth(result.get(), 32, ORDER_BGR, nullptr, 0);
}

}  // namespace zvdisplay
