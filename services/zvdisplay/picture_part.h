/* A part of a picture made ready for a device: cropped, scaled, turned to how it is to be looked at, with the display
 * settings applied, as 32-bit pixels. What a device call then gets is small and upright, however large the picture
 * is. */
#ifndef ZV_DISPLAY_PICTURE_PART_H
#define ZV_DISPLAY_PICTURE_PART_H

#include "services/zvdisplay/paint_geometry.h"

namespace zvdisplay {

// Frees the pixels of the handle at the end of a scope.
class OwnedBitmap {
 public:
  OwnedBitmap() = default;
  OwnedBitmap(const OwnedBitmap&) = delete;
  OwnedBitmap& operator=(const OwnedBitmap&) = delete;
  ~OwnedBitmap() { FreeBitmap(&handle); }
  BITMAPHANDLE* Get() { return &handle; }
  BITMAPHANDLE* operator->() { return &handle; }

 private:
  BITMAPHANDLE handle = {};
};

// All of a picture as shown, in its own pixels.
ZVRECT ShownRect(const BITMAPHANDLE& bitmap);

struct PartRequest {
  ZVRECT source;  // of the picture as shown, inside it
  int32_t width;  // pixels that the source is scaled to
  int32_t height;
  ZVRECT part;    // of those, what is wanted
  bool mirrored;  // what is wanted comes out mirrored, and flipped
  bool flipped;
  bool keepsAlpha;  // else what has alpha is laid over white
};

// The result is a new bitmap, top-down, BGRA; it has BITMAP_FLAG_ALPHA when the picture has and that is kept. SUCCESS
// or a code of zvcore.
int32_t MakePicturePart(const BITMAPHANDLE& bitmap, const PartRequest& request, OwnedBitmap& result);

}  // namespace zvdisplay

#endif
