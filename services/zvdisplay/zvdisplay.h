/* zvdisplay: painting and printing of bitmaps on a device, and the display settings kept in a handle.
 *
 * Usable from C and C++. A picture is painted as its view perspective shows it, in the device's own pixels: it is
 * resampled here, and only as much of it as is seen, so that GDI has nothing left to scale. Bitmaps are only read.
 * The device's state is as before when a call returns. The display mode is one for the process, and may be set from
 * any thread.
 */
#ifndef ZVDISPLAY_H
#define ZVDISPLAY_H

#include "services/zvcore/zvcore.h"

#ifdef ZVDISPLAY_BUILD
#define ZVDISPLAY_API __declspec(dllexport)
#else
#define ZVDISPLAY_API __declspec(dllimport)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* SetDisplayMode bits. At the start only the first is set. Other bits are kept, and change nothing. */
#define DISPLAY_MODE_SCALE_QUALITY 0x1u   /* reductions are area-averaged; clear: nearest */
#define DISPLAY_MODE_SMOOTH_ENLARGE 0x10u /* enlargements are bicubic; clear: pixels stay visible as squares */

/* A palette to select and realise before painting on a device of 256 colours or fewer; null when none is needed, or
 * when there is no image. The caller deletes it, after having selected the former one. */
ZVDISPLAY_API HPALETTE CreatePaintPalette(HDC device, const BITMAPHANDLE* bitmap);
/* Paints the source rectangle, in pixels of the picture as shown (null: all of it), scaled to the destination
 * rectangle in logical units. A destination with its sides exchanged shows the picture mirrored. The two clips, when
 * given, limit what is taken and what is touched, in the units of their rectangles. operation is a ternary raster
 * operation; 0 reads as SRCCOPY. Alpha is blended onto what the device holds, and onto white where that cannot be
 * read. Nothing visible is SUCCESS. ERROR_NO_IMAGE; ERROR_BITMAP_REFUSED for a compressed bitmap; ERROR_BAD_ARGUMENT
 * for a null device, bitmap or destination, a source rectangle outside the picture or more than BITMAP_MAX_SIDE
 * device pixels a side; ERROR_OUT_OF_MEMORY; ERROR_FEATURE_UNSUPPORTED when the device refuses. */
ZVDISPLAY_API int32_t PaintBitmap(HDC device, const BITMAPHANDLE* bitmap, const RECT* source, const RECT* sourceClip,
                                  const RECT* destination, const RECT* destinationClip, uint32_t operation);
/* Prints the whole picture on a printer device, scaled to the device rectangle in logical units; width and height 0
 * give the natural size, from the resolutions of the bitmap, and 96 dots per inch where there are none. What has
 * alpha is laid over white. It goes out in bands, reduced to the device's pixels where it has more; enlarging is left
 * to the device. flags is reserved, 0. The codes are those of PaintBitmap. */
ZVDISPLAY_API int32_t PrintBitmap(HDC device, const BITMAPHANDLE* bitmap, int32_t x, int32_t y, int32_t width,
                                  int32_t height, uint32_t flags);
/* Sets those bits of the library-wide mode that mask names; gives the former mode. */
ZVDISPLAY_API uint32_t SetDisplayMode(uint32_t mask, uint32_t flags);

/* Display settings kept in the handle; they change how it is painted and printed, not its pixels. The setters give
 * ERROR_BAD_ARGUMENT for null; the getters then give the neutral value.
 * A: brightness, added to every 8-bit channel; neutral 0.
 * B: contrast about the middle grey, in percent; neutral 100, and 0 reads as that.
 * C: hue, a turn about the grey axis in hundredths of a degree, from red towards green; neutral 0. */
ZVDISPLAY_API int32_t GetBitmapViewValueA(const BITMAPHANDLE* bitmap);
ZVDISPLAY_API int32_t GetBitmapViewValueB(const BITMAPHANDLE* bitmap);
ZVDISPLAY_API int32_t GetBitmapViewValueC(const BITMAPHANDLE* bitmap);
ZVDISPLAY_API int32_t SetBitmapViewValueA(BITMAPHANDLE* bitmap, int32_t value);
ZVDISPLAY_API int32_t SetBitmapViewValueB(BITMAPHANDLE* bitmap, int32_t value);
ZVDISPLAY_API int32_t SetBitmapViewValueC(BITMAPHANDLE* bitmap, int32_t value);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
