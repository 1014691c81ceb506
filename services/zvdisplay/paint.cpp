#include <algorithm>
#include <cstring>
#include <new>

#include "services/zvdisplay/picture_part.h"
#include "services/zvdisplay/zvdisplay.h"

namespace zvdisplay {

namespace {

bool IsEmpty(const RECT& r) { return r.right <= r.left || r.bottom <= r.top; }

// The device's clip region, narrowed for a scope.
class ClipScope {
 public:
  ClipScope(HDC device, const RECT* clip) : device_(device), saved_(SaveDC(device)) {
    if (clip) IntersectClipRect(device, clip->left, clip->top, clip->right, clip->bottom);
  }
  ClipScope(const ClipScope&) = delete;
  ClipScope& operator=(const ClipScope&) = delete;
  ~ClipScope() { RestoreDC(device_, saved_); }

 private:
  HDC device_;
  int saved_;
};

BITMAPINFO InfoOf(const BITMAPHANDLE& part) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = part.width;
  info.bmiHeader.biHeight = -part.height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

void Premultiply(BITMAPHANDLE& part) {
  for (int32_t row = 0; row < part.height; ++row) {
    uint8_t* pixel = part.data + int64_t{row} * part.bytesPerLine;
    for (int32_t x = 0; x < part.width; ++x, pixel += 4) {
      for (int channel = 0; channel < 3; ++channel)
        pixel[channel] = static_cast<uint8_t>((pixel[channel] * pixel[3] + 127) / 255);
    }
  }
}

int32_t Blend(HDC device, BITMAPHANDLE& part, const RECT& target) {
  if (!(part.flags & BITMAP_FLAG_PREMULTIPLIED)) Premultiply(part);
  const BITMAPINFO info = InfoOf(part);
  HDC memory = CreateCompatibleDC(device);
  void* bits = nullptr;
  HBITMAP picture = CreateDIBSection(device, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  int32_t result = ERROR_OUT_OF_MEMORY;
  if (memory && picture) {
    std::memcpy(bits, part.data, static_cast<size_t>(part.bytesPerLine) * part.height);
    HGDIOBJ former = SelectObject(memory, picture);
    const BLENDFUNCTION function{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    const bool drawn = AlphaBlend(device, target.left, target.top, target.right - target.left,
                                  target.bottom - target.top, memory, 0, 0, part.width, part.height, function);
    result = drawn ? SUCCESS : ERROR_FEATURE_UNSUPPORTED;
    SelectObject(memory, former);
  }
  if (picture) DeleteObject(picture);
  if (memory) DeleteDC(memory);
  return result;
}

int32_t Copy(HDC device, const BITMAPHANDLE& part, const RECT& target, uint32_t operation) {
  const BITMAPINFO info = InfoOf(part);
  const int formerMode = SetStretchBltMode(device, COLORONCOLOR);
  const int rows =
      StretchDIBits(device, target.left, target.top, target.right - target.left, target.bottom - target.top, 0, 0,
                    part.width, part.height, part.data, &info, DIB_RGB_COLORS, operation);
  SetStretchBltMode(device, formerMode);
  return rows == static_cast<int>(GDI_ERROR) ? ERROR_FEATURE_UNSUPPORTED : SUCCESS;
}

// The part of `whole` that is needed to draw `visible` of `target`, grown to whole source pixels; `target` becomes the place
// of that part. Keeps the memory for a close look at a huge picture at what the window shows.
void LimitToVisible(RECT& whole, RECT& target, const RECT& visible) {
  const double scaleX = double(target.right - target.left) / (whole.right - whole.left);
  const double scaleY = double(target.bottom - target.top) / (whole.bottom - whole.top);
  const auto sourceAt = [](LONG device, LONG targetStart, LONG start, double scale) {
    return start + static_cast<LONG>((device - targetStart) / scale);
  };
  RECT part;
  part.left = std::max(whole.left, sourceAt(visible.left, target.left, whole.left, scaleX));
  part.top = std::max(whole.top, sourceAt(visible.top, target.top, whole.top, scaleY));
  part.right = std::min(whole.right, sourceAt(visible.right, target.left, whole.left, scaleX) + 2);
  part.bottom = std::min(whole.bottom, sourceAt(visible.bottom, target.top, whole.top, scaleY) + 2);
  const auto targetAt = [](LONG source, LONG start, LONG targetStart, double scale) {
    return targetStart + static_cast<LONG>((source - start) * scale + 0.5);
  };
  target = {targetAt(part.left, whole.left, target.left, scaleX), targetAt(part.top, whole.top, target.top, scaleY),
            targetAt(part.right, whole.left, target.left, scaleX),
            targetAt(part.bottom, whole.top, target.top, scaleY)};
  whole = part;
}

bool IsEnlargement(const RECT& source, const RECT& target) {
  return target.right - target.left > source.right - source.left ||
         target.bottom - target.top > source.bottom - source.top;
}

int32_t Paint(HDC device, const BITMAPHANDLE& bitmap, RECT source, RECT target, uint32_t operation) {
  RECT clip;
  if (GetClipBox(device, &clip) != NULLREGION && IsEnlargement(source, target)) {
    RECT visible;
    if (!IntersectRect(&visible, &clip, &target)) return SUCCESS;
    LimitToVisible(source, target, visible);
  }
  OwnedBitmap part;
  const SIZE size{target.right - target.left, target.bottom - target.top};
  const int32_t result = MakePicturePart(bitmap, source, size, part);
  if (result != SUCCESS) return result;
  return bitmap.flags & BITMAP_FLAG_ALPHA ? Blend(device, *part.get(), target)
                                          : Copy(device, *part.get(), target, operation);
}

}  // namespace

}  // namespace zvdisplay

int32_t PaintBitmap(HDC device, const BITMAPHANDLE* bitmap, const RECT* source, const RECT* sourceClip,
                    const RECT* destination, const RECT* destinationClip, uint32_t operation) {
  using namespace zvdisplay;
  if (!device || !bitmap || !destination) return ERROR_BAD_ARGUMENT;
  if (!(bitmap->flags & BITMAP_FLAG_ALLOCATED)) return ERROR_NO_IMAGE;
  if (bitmap->flags & BITMAP_FLAG_COMPRESSED) return ERROR_BITMAP_REFUSED;
  if (IsEmpty(*destination)) return SUCCESS;

  const SIZE shown = ShownSize(*bitmap);
  const RECT all{0, 0, shown.cx, shown.cy};
  const RECT asked = source ? *source : all;
  RECT part;
  if (IsEmpty(asked) || !IntersectRect(&part, &asked, &all)) return ERROR_BAD_ARGUMENT;
  if (sourceClip && !IntersectRect(&part, &part, sourceClip)) return SUCCESS;

  // What the clips took away of the source is taken away of the destination in proportion.
  const LONG width = destination->right - destination->left, height = destination->bottom - destination->top;
  const auto across = [&](LONG x) {
    return destination->left + MulDiv(x - asked.left, width, asked.right - asked.left);
  };
  const auto down = [&](LONG y) { return destination->top + MulDiv(y - asked.top, height, asked.bottom - asked.top); };
  const RECT target{across(part.left), down(part.top), across(part.right), down(part.bottom)};
  if (IsEmpty(target)) return SUCCESS;
  try {
    const ClipScope clip(device, destinationClip);
    return Paint(device, *bitmap, part, target, operation);
  } catch (const std::bad_alloc&) {
    return ERROR_OUT_OF_MEMORY;
  }
}
