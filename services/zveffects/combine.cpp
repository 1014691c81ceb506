#include <algorithm>

#include "services/zveffects/zveffects.h"

namespace {

// A bitmap of our own for the time of a call.
class OwnedBitmap {
 public:
  OwnedBitmap() = default;
  OwnedBitmap(const OwnedBitmap&) = delete;
  OwnedBitmap& operator=(const OwnedBitmap&) = delete;
  ~OwnedBitmap() { FreeBitmap(&handle); }
  BITMAPHANDLE* operator->() { return &handle; }
  BITMAPHANDLE* Get() { return &handle; }

 private:
  BITMAPHANDLE handle = {};
};

bool HasPixels(const BITMAPHANDLE* bitmap) { return bitmap && (bitmap->flags & BITMAP_FLAG_ALLOCATED) && bitmap->data; }

bool HasAlpha(const BITMAPHANDLE& bitmap) {
  return (bitmap.flags & BITMAP_FLAG_ALPHA) && (bitmap.bitsPerPixel == 32 || bitmap.bitsPerPixel == 64);
}

struct ShownSize {
  int64_t width, height;
};
ShownSize SizeAsShown(const BITMAPHANDLE& bitmap) {
  if (bitmap.viewPerspective >= VIEW_LEFT_TOP) return {bitmap.height, bitmap.width};
  return {bitmap.width, bitmap.height};
}

// One direction of the placement: count pixels from `from` in the source go to `to` in the destination.
struct Stretch {
  int64_t to, from, count;

  void ClipTo(int64_t destinationSize, int64_t sourceSize) {
    const int64_t before = std::max<int64_t>({0, -to, -from});
    to += before;
    from += before;
    count -= before;
    count = std::min({count, destinationSize - to, sourceSize - from});
  }
};

ZVRECT RectOf(int64_t left, int64_t top, int64_t width, int64_t height) {
  return {static_cast<int32_t>(left), static_cast<int32_t>(top), static_cast<int32_t>(left + width),
          static_cast<int32_t>(top + height)};
}

// The perspective that undoes another: all do so themselves but the two quarter turns.
int32_t InverseOf(int32_t perspective) {
  if (perspective == VIEW_RIGHT_TOP) return VIEW_LEFT_BOTTOM;
  return perspective == VIEW_LEFT_BOTTOM ? VIEW_RIGHT_TOP : perspective;
}

// A copy of the shown rectangle of the source, its rows in the order in which the destination stores them.
int32_t CutForDestination(const BITMAPHANDLE& source, const ZVRECT& shown, int32_t perspective, OwnedBitmap& patch) {
  ZVRECT stored;
  int32_t status = MapShownRect(source.viewPerspective, source.width, source.height, &shown, &stored);
  if (status == SUCCESS) status = CopyBitmapPart(patch.Get(), &source, &stored);
  if (status == SUCCESS) status = ApplyViewPerspective(patch.Get());
  if (status != SUCCESS) return status;
  patch->viewPerspective = InverseOf(perspective);
  return ApplyViewPerspective(patch.Get());
}

// Lays a row of straight-alpha pixels in BGR order over another; both hold 16-bit channels.
void BlendRow(const uint16_t* over, uint16_t* under, int32_t pixels) {
  for (int32_t x = 0; x < pixels; ++x, over += 4, under += 4) {
    const uint64_t alpha = over[3], rest = (65535 - alpha) * under[3] / 65535;
    const uint64_t whole = alpha + rest;
    for (int c = 0; c < 3 && whole > 0; ++c) {
      under[c] = static_cast<uint16_t>((over[c] * alpha + under[c] * rest + whole / 2) / whole);
    }
    under[3] = static_cast<uint16_t>(whole);
  }
}

int32_t CreateLike(const BITMAPHANDLE& patch, int32_t bits, OwnedBitmap& created) {
  const int32_t status = InitBitmapHandle(created.Get(), sizeof(BITMAPHANDLE), patch.width, patch.height, bits);
  return status == SUCCESS ? AllocateBitmap(created.Get(), MEMORY_CONVENTIONAL) : status;
}

// A patch in another bitmap's format.
int32_t ConvertLike(const BITMAPHANDLE& patch, const BITMAPHANDLE& model, OwnedBitmap& converted) {
  constexpr uint32_t kAlphaFlags = BITMAP_FLAG_ALPHA | BITMAP_FLAG_PREMULTIPLIED;
  int32_t status = CreateLike(patch, model.bitsPerPixel, converted);
  if (status == SUCCESS) status = CopyBitmapPalette(converted.Get(), &model);
  if (status != SUCCESS) return status;
  converted->colorOrder = model.colorOrder;
  converted->flags |= model.flags & kAlphaFlags;
  return ConvertBitmapInto(&patch, converted.Get());
}

// A patch in 16-bit channels with alpha.
int32_t ConvertDeep(const BITMAPHANDLE& patch, OwnedBitmap& converted) {
  int32_t status = CreateLike(patch, 64, converted);
  if (status != SUCCESS) return status;
  converted->flags |= BITMAP_FLAG_ALPHA;
  return ConvertBitmapInto(&patch, converted.Get());
}

// Replaces the patch by what is seen when it is laid over the place in the destination.
int32_t BlendPatch(const BITMAPHANDLE& destination, const ZVRECT& place, OwnedBitmap& patch) {
  OwnedBitmap covered, under, over;
  int32_t status = CopyBitmapPart(covered.Get(), &destination, &place);
  if (status == SUCCESS) status = ConvertDeep(*covered.Get(), under);
  if (status == SUCCESS) status = ConvertDeep(*patch.Get(), over);
  if (status != SUCCESS) return status;
  for (int32_t row = 0; row < under->height; ++row) {
    const int64_t at = static_cast<int64_t>(row) * under->bytesPerLine;
    BlendRow(reinterpret_cast<const uint16_t*>(over->data + at), reinterpret_cast<uint16_t*>(under->data + at),
             under->width);
  }
  FreeBitmap(patch.Get());
  return MoveBitmapHandle(patch.Get(), under.Get(), sizeof(BITMAPHANDLE));
}

}  // namespace

int32_t CombineBitmap(BITMAPHANDLE* destination, int32_t x, int32_t y, int32_t width, int32_t height,
                      const BITMAPHANDLE* source, int32_t sourceX, int32_t sourceY, uint32_t flags, uint32_t reserved) {
  if (!HasPixels(destination) || !HasPixels(source)) return ERROR_NO_IMAGE;
  if ((flags != COMBINE_COPY && flags != COMBINE_BLEND) || reserved != 0) return ERROR_BAD_ARGUMENT;
  if (width < 0 || height < 0 || destination->data == source->data) return ERROR_BAD_ARGUMENT;
  Stretch across = {x, sourceX, width}, down = {y, sourceY, height};
  const ShownSize to = SizeAsShown(*destination), from = SizeAsShown(*source);
  across.ClipTo(to.width, from.width);
  down.ClipTo(to.height, from.height);
  if (across.count <= 0 || down.count <= 0) return SUCCESS;
  OwnedBitmap patch;
  const ZVRECT cut = RectOf(across.from, down.from, across.count, down.count);
  int32_t status = CutForDestination(*source, cut, destination->viewPerspective, patch);
  if (status != SUCCESS) return status;
  const ZVRECT shown = RectOf(across.to, down.to, across.count, down.count);
  ZVRECT place;
  status = MapShownRect(destination->viewPerspective, destination->width, destination->height, &shown, &place);
  const bool blends = flags == COMBINE_BLEND && HasAlpha(*patch.Get());
  if (status == SUCCESS && blends) status = BlendPatch(*destination, place, patch);
  OwnedBitmap converted;
  if (status == SUCCESS) status = ConvertLike(*patch.Get(), *destination, converted);
  return status == SUCCESS ? PutBitmapPart(destination, converted.Get(), place.left, place.top) : status;
}
