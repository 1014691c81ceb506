// A part of a picture made ready for a device: cropped, scaled, turned to how it is to be looked at, with the display
// settings applied, as 32-bit pixels. What a device call then gets is small and upright, however large the picture is.
#ifndef ZV_DISPLAY_PICTURE_PART_H
#define ZV_DISPLAY_PICTURE_PART_H

#include "services/zvcore/zvcore.h"

namespace zvdisplay {

// Frees the pixels of the handle at the end of a scope.
class OwnedBitmap {
 public:
  OwnedBitmap() { handle_.uStructSize = sizeof handle_; }
  OwnedBitmap(const OwnedBitmap&) = delete;
  OwnedBitmap& operator=(const OwnedBitmap&) = delete;
  ~OwnedBitmap() { FreeBitmap(&handle_); }
  BITMAPHANDLE* get() { return &handle_; }
  BITMAPHANDLE* operator->() { return &handle_; }

 private:
  BITMAPHANDLE handle_{};
};

// Size of the picture as shown.
SIZE ShownSize(const BITMAPHANDLE& bitmap);

// The rectangle `part`, in pixels of the picture as shown and not empty, scaled to `size` pixels when that makes it smaller
// and the display mode asks for quality; else in its own size, for the device to stretch. The result is top-down, BGRA, and
// has BITMAP_FLAG_ALPHA when the picture has. SUCCESS or a code of zvcore.
int32_t MakePicturePart(const BITMAPHANDLE& bitmap, const RECT& part, SIZE size, OwnedBitmap& result);

}  // namespace zvdisplay

#endif
