#include "services/zvdlgutil/bitmap.h"

#include <algorithm>
#include <utility>

#include "services/zvdisplay/zvdisplay.h"

namespace {

BITMAPHANDLE EmptyHandle() {
  BITMAPHANDLE bitmap{};
  bitmap.uStructSize = sizeof bitmap;
  return bitmap;
}

bool ExchangesSides(int32_t viewPerspective) {
  return viewPerspective >= VIEW_LEFT_TOP && viewPerspective <= VIEW_LEFT_BOTTOM;
}

}  // namespace

CZVBitmap::CZVBitmap() : bitmap_(EmptyHandle()) {}

CZVBitmap::CZVBitmap(CZVBitmap&& other) noexcept : CZVBitmap() { *this = std::move(other); }

CZVBitmap& CZVBitmap::operator=(CZVBitmap&& other) noexcept {
  if (this != &other) {
    Empty();
    bitmap_ = std::exchange(other.bitmap_, EmptyHandle());
    region_ = std::move(other.region_);
    other.Empty();
  }
  return *this;
}

CZVBitmap::~CZVBitmap() { Empty(); }

CZVBitmap& CZVBitmap::operator=(const BITMAPHANDLE& bitmap) {
  BITMAPHANDLE copy = EmptyHandle();
  const bool copied = (bitmap.flags & BITMAP_FLAG_ALLOCATED) && DuplicateBitmap(&copy, &bitmap) == SUCCESS;
  Empty();
  if (copied) {
    bitmap_ = copy;
  }
  return *this;
}

void CZVBitmap::Attach(BITMAPHANDLE& bitmap) {
  if (&bitmap == &bitmap_) {
    return;
  }
  Empty();
  if (bitmap.flags & BITMAP_FLAG_ALLOCATED) {
    bitmap_ = std::exchange(bitmap, EmptyHandle());
  }
}

BITMAPHANDLE CZVBitmap::Detach() {
  const BITMAPHANDLE detached = std::exchange(bitmap_, EmptyHandle());
  Empty();
  return detached;
}

int32_t CZVBitmap::Read(LPCWSTR path, int32_t page, uint32_t flags, const LOADFILEOPTION* option) {
  Empty();
  LOADFILEOPTION pageOption;
  int32_t code = GetDefaultLoadFileOption(&pageOption, sizeof pageOption);
  if (code != SUCCESS) {
    return code;
  }
  if (option) {
    pageOption = *option;
  }
  if (page >= 1) {
    pageOption.pageNumber = page;
  }
  BITMAPHANDLE loaded = EmptyHandle();
  code = LoadImageFile(path, &loaded, sizeof loaded, 0, ORDER_BGR_OR_GRAY, flags | LOADFILE_ALLOCATE | LOADFILE_STORE,
                       nullptr, nullptr, &pageOption, nullptr);
  if (code == SUCCESS) {
    Attach(loaded);
  }
  return code;
}

bool CZVBitmap::IsEmpty() const { return !(bitmap_.flags & BITMAP_FLAG_ALLOCATED); }

void CZVBitmap::Empty() {
  FreeBitmap(&bitmap_);
  bitmap_ = EmptyHandle();
  palette_.reset();
  paletteKnown_ = false;
  region_.reset();
}

CSize CZVBitmap::GetSize() const {
  const CSize stored(bitmap_.width, bitmap_.height);
  return ExchangesSides(bitmap_.viewPerspective) ? CSize(stored.cy, stored.cx) : stored;
}

HPALETTE CZVBitmap::GetPalette() {
  if (!paletteKnown_ && !IsEmpty()) {
    const unique_window_dc screen(nullptr);
    palette_.reset(CreatePaintPalette(screen.get(), &bitmap_));
    paletteKnown_ = true;
  }
  return palette_.get();
}

int32_t CZVBitmap::Paint(HDC device, const RECT* source, const RECT* sourceClip, const RECT* destination,
                         const RECT* destinationClip, uint32_t rasterOperation) const {
  if (IsEmpty()) {
    return ERROR_NO_IMAGE;
  }
  const int saved = region_ ? ::SaveDC(device) : 0;
  if (region_) {
    ::ExtSelectClipRgn(device, region_.get(), RGN_AND);
  }
  const int32_t code = PaintBitmap(device, &bitmap_, source, sourceClip, destination, destinationClip,
                                   rasterOperation ? rasterOperation : SRCCOPY);
  if (region_) {
    ::RestoreDC(device, saved);
  }
  return code;
}

int32_t CZVBitmap::Rotate(int32_t angle, uint32_t flags, COLORREF fillColor) {
  return IsEmpty() ? ERROR_NO_IMAGE : RotateBitmap(&bitmap_, angle, flags, fillColor);
}

int32_t CZVBitmap::FlipHorz() { return IsEmpty() ? ERROR_NO_IMAGE : MirrorBitmap(&bitmap_); }

int32_t CZVBitmap::FlipVert() { return IsEmpty() ? ERROR_NO_IMAGE : FlipBitmap(&bitmap_); }
