/* Puts ready pixels on a device, and takes a device context to its own pixels for the time of that. */
#ifndef ZV_DISPLAY_DRAW_PIXELS_H
#define ZV_DISPLAY_DRAW_PIXELS_H

#include "services/zvdisplay/paint_geometry.h"

namespace zvdisplay {

// A rectangle of the caller's logical units in device pixels, whatever mapping is set.
RECT DevicePixels(HDC device, const RECT& logical);

// From here to the end of the scope the logical units of the device are its pixels. Then all is as it was.
class DeviceSpace {
 public:
  explicit DeviceSpace(HDC dc);
  DeviceSpace(const DeviceSpace&) = delete;
  DeviceSpace& operator=(const DeviceSpace&) = delete;
  ~DeviceSpace();

  // What of the device can be painted on; empty when that is nothing.
  ZVRECT ClipBox() const;

 private:
  HDC device;
  int saved;
};

// Whether what the device holds can be read, so that alpha can be blended onto it.
bool CanBlendOnto(HDC device);

// Draws all of a 32-bit bitmap, BGRA and top-down, into a rectangle of device pixels: blended by its alpha when it
// has any, which multiplies its colours; else by the raster operation. ERROR_FEATURE_UNSUPPORTED,
// ERROR_OUT_OF_MEMORY.
int32_t DrawPixels(HDC device, BITMAPHANDLE& pixels, const ZVRECT& target, uint32_t operation);

}  // namespace zvdisplay

#endif
