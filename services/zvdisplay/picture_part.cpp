#include "services/zvdisplay/picture_part.h"

#include <utility>

#include "services/zvdisplay/display_mode.h"
#include "services/zvdisplay/view_values.h"

namespace zvdisplay {
namespace {

bool ExchangesSides(const BITMAPHANDLE& bitmap) { return bitmap.viewPerspective >= VIEW_LEFT_TOP; }

bool IsSameRect(const ZVRECT& a, const ZVRECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

int32_t MethodFor(const PartRequest& request) {
  const uint32_t mode = CurrentDisplayMode();
  const bool enlarges = request.width > WidthOf(request.source) || request.height > HeightOf(request.source);
  return mode & (enlarges ? DISPLAY_MODE_SMOOTH_ENLARGE : DISPLAY_MODE_SCALE_QUALITY) ? SIZE_BICUBIC : SIZE_NEAREST;
}

// The part, scaled, in the stored order of the picture.
int32_t Scale(const BITMAPHANDLE& bitmap, const PartRequest& request, OwnedBitmap& scaled) {
  OwnedBitmap cropped;
  const BITMAPHANDLE* picture = &bitmap;
  int32_t status = SUCCESS;
  if (!IsSameRect(request.source, ShownRect(bitmap))) {
    ZVRECT stored;
    status = MapShownRect(bitmap.viewPerspective, bitmap.width, bitmap.height, &request.source, &stored);
    if (status == SUCCESS) status = CopyBitmapPart(cropped.Get(), &bitmap, &stored);
    picture = cropped.Get();
  }
  int32_t width = request.width, height = request.height;
  if (ExchangesSides(bitmap)) std::swap(width, height);
  ZVRECT part;
  if (status == SUCCESS) status = MapShownRect(bitmap.viewPerspective, width, height, &request.part, &part);
  return status == SUCCESS ? ResampleBitmapPart(scaled.Get(), picture, width, height, &part, MethodFor(request))
                           : status;
}

int32_t Upright(BITMAPHANDLE* bitmap, const PartRequest& request) {
  int32_t status = ApplyViewPerspective(bitmap);
  if (status == SUCCESS && request.mirrored) status = MirrorBitmap(bitmap);
  if (status == SUCCESS && request.flipped) status = FlipBitmap(bitmap);
  return status;
}

}  // namespace

ZVRECT ShownRect(const BITMAPHANDLE& bitmap) {
  if (ExchangesSides(bitmap)) return {0, 0, bitmap.height, bitmap.width};
  return {0, 0, bitmap.width, bitmap.height};
}

int32_t MakePicturePart(const BITMAPHANDLE& bitmap, const PartRequest& request, OwnedBitmap& result) {
  OwnedBitmap scaled;
  int32_t status = Scale(bitmap, request, scaled);
  if (status == SUCCESS) status = Upright(scaled.Get(), request);
  if (status != SUCCESS) return status;
  status = InitBitmapHandle(result.Get(), sizeof(BITMAPHANDLE), scaled->width, scaled->height, 32);
  if (status == SUCCESS) status = AllocateBitmap(result.Get(), MEMORY_CONVENTIONAL);
  if (status != SUCCESS) return status;
  if (request.keepsAlpha) result->flags |= bitmap.flags & BITMAP_FLAG_ALPHA;
  status = ConvertBitmapInto(scaled.Get(), result.Get());
  if (status == SUCCESS) ApplyViewValues(*result.Get(), bitmap);
  return status;
}

}  // namespace zvdisplay
