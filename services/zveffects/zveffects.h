/* zveffects: putting one bitmap into another.
 *
 * Usable from C and C++. The destination's pixels change in place; nothing else of either bitmap does, and neither is
 * kept. Applications and the dialogs load this module on the first call that reaches it.
 */
#ifndef ZVEFFECTS_H
#define ZVEFFECTS_H

#include "services/zvcore/zvcore.h"

#ifdef _WIN32
#ifdef ZVEFFECTS_BUILD
#define ZVEFFECTS_API __declspec(dllexport)
#else
#define ZVEFFECTS_API __declspec(dllimport)
#endif
#else
#define ZVEFFECTS_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* CombineBitmap flags: what becomes of the pixels that are already there. */
#define COMBINE_COPY 48u  /* they are replaced; what has alpha is laid over white where the destination has none */
#define COMBINE_BLEND 64u /* the source is laid over them by its alpha; without alpha it replaces them */

/* Puts the rectangle of width x height pixels at (sourceX, sourceY) of the source at (x, y) of the destination, both
 * as shown, that is with their view perspectives applied. What lies outside either picture is left out; nothing to do
 * is SUCCESS. Depth, colour order and palette are converted to the destination's; indices become the nearest palette
 * entry. flags is one of COMBINE_...; reserved is 0. ERROR_NO_IMAGE when either has no pixels; ERROR_BAD_ARGUMENT for
 * other flags, a width or height below 0, or when both are the same pixels; ERROR_OUT_OF_MEMORY, with the destination
 * unchanged. */
ZVEFFECTS_API int32_t CombineBitmap(BITMAPHANDLE* destination, int32_t x, int32_t y, int32_t width, int32_t height,
                                    const BITMAPHANDLE* source, int32_t sourceX, int32_t sourceY, uint32_t flags,
                                    uint32_t reserved);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
