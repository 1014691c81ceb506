/* zvdisplay: painting and printing of bitmaps on a device, and the display settings kept in a handle.
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

/* SetDisplayMode bits. */
#define DISPLAY_MODE_SCALE_QUALITY 0x1u /* reductions are area-averaged; clear: nearest */

/* A palette to realise before painting on a device of 256 colours or fewer; null when none is needed. The caller deletes
 * it. */
ZVDISPLAY_API HPALETTE CreatePaintPalette(HDC device, const BITMAPHANDLE* bitmap);
/* Paints the source rectangle, in pixels of the picture as shown (null: all of it), scaled to the destination rectangle in
 * device units. The two clips, when given, limit what is taken and what is touched. operation is a ternary raster
 * operation such as SRCCOPY. Alpha is blended onto what the device holds. ERROR_NO_IMAGE, ERROR_BAD_ARGUMENT. */
ZVDISPLAY_API int32_t PaintBitmap(HDC device, const BITMAPHANDLE* bitmap, const RECT* source, const RECT* sourceClip,
                                  const RECT* destination, const RECT* destinationClip, uint32_t operation);
/* Prints the whole picture on a printer device, scaled to the device rectangle; (0, 0) size takes the natural one. */
ZVDISPLAY_API int32_t PrintBitmap(HDC device, const BITMAPHANDLE* bitmap, int32_t x, int32_t y, int32_t width,
                                  int32_t height, uint32_t flags);
/* Sets those bits of the library-wide mode that mask names; gives the former mode. */
ZVDISPLAY_API uint32_t SetDisplayMode(uint32_t mask, uint32_t flags);
/* Display settings kept in the handle: brightness offset (0), contrast in percent (100), hue offset (0). */
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
