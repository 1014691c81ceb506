/* Renders a turned picture, tile by tile, so that the part of the source that a tile looks at stays in the cache. */
#ifndef ZV_ZVCORE_ROTATOR_H
#define ZV_ZVCORE_ROTATOR_H

#include <cstdint>

#include "services/zvcore/zvcore.h"

namespace zvcore {

enum class RotationFilter { kNearest, kLinear, kCubic };

// Fills every pixel of the canvas, which has the source's format, with the source turned clockwise by hundredths of a
// degree. Where the source does not reach stands fillPixel, as EncodePixel made it; the edge blends into it. Filters
// other than nearest need channels: no indices and no 5-5-5 words. Reports progress. ERROR_OUT_OF_MEMORY,
// ERROR_USER_ABORT.
int32_t RenderTurned(const BITMAPHANDLE& source, BITMAPHANDLE& canvas, int32_t angle, RotationFilter filter,
                     const uint8_t* fillPixel);

}  // namespace zvcore

#endif
