#include "services/zvdisplay/draw_pixels.h"
#include "services/zvdisplay/picture_part.h"
#include "services/zvdisplay/zvdisplay.h"

using namespace zvdisplay;

namespace {

ZVRECT ToPixels(const RECT& rect) {
  return {static_cast<int32_t>(rect.left), static_cast<int32_t>(rect.top), static_cast<int32_t>(rect.right),
          static_cast<int32_t>(rect.bottom)};
}

// What is to be drawn, and where: all in device pixels but the source, which is in pixels of the picture.
struct PaintJob {
  ZVRECT source;
  Placement destination;
  ZVRECT visible;
};

// What of the source rectangle lies outside the picture is left out, together with the place that it would take.
int32_t Plan(HDC device, const BITMAPHANDLE& bitmap, const RECT* source, const RECT* sourceClip,
             const RECT& destination, const RECT* destinationClip, PaintJob& job) {
  const ZVRECT whole = ShownRect(bitmap);
  const ZVRECT asked = source ? ToPixels(*source) : whole;
  job.source = Intersection(asked, whole);
  if (IsEmpty(asked) || IsEmpty(job.source)) return ERROR_BAD_ARGUMENT;
  job.destination = Normalized(DevicePixels(device, destination));
  job.destination.rect = ScaledInto(job.source, asked, job.destination);
  const ZVRECT& place = job.destination.rect;
  if (IsEmpty(place)) {
    job.visible = {0, 0, 0, 0};
    return SUCCESS;
  }
  if (!IsPaintable(place)) return ERROR_BAD_ARGUMENT;
  job.visible = place;
  if (destinationClip) job.visible = Intersection(job.visible, Normalized(DevicePixels(device, *destinationClip)).rect);
  if (sourceClip) {
    const ZVRECT taken = Intersection(job.source, ToPixels(*sourceClip));
    job.visible = IsEmpty(taken) ? taken : Intersection(job.visible, ScaledInto(taken, job.source, job.destination));
  }
  return SUCCESS;
}

}  // namespace

int32_t PaintBitmap(HDC device, const BITMAPHANDLE* bitmap, const RECT* source, const RECT* sourceClip,
                    const RECT* destination, const RECT* destinationClip, uint32_t operation) {
  if (!device || !bitmap || !destination) return ERROR_BAD_ARGUMENT;
  if (!(bitmap->flags & BITMAP_FLAG_ALLOCATED)) return ERROR_NO_IMAGE;
  if (bitmap->flags & BITMAP_FLAG_COMPRESSED) return ERROR_BITMAP_REFUSED;
  PaintJob job;
  int32_t status = Plan(device, *bitmap, source, sourceClip, *destination, destinationClip, job);
  if (status != SUCCESS || IsEmpty(job.visible)) return status;
  const DeviceSpace space(device);
  job.visible = Intersection(job.visible, space.ClipBox());
  if (IsEmpty(job.visible)) return SUCCESS;
  const Placement& to = job.destination;
  OwnedBitmap pixels;
  status = MakePicturePart(*bitmap,
                           {job.source, WidthOf(to.rect), HeightOf(to.rect), VisiblePart(job.visible, to), to.mirrored,
                            to.flipped, CanBlendOnto(device)},
                           pixels);
  return status == SUCCESS ? DrawPixels(device, *pixels.Get(), job.visible, operation) : status;
}
