/* Chooses the colours of a palette for an image. An image of few colours keeps them all; else colour space is split
 * where that lowers the sum of squared errors most (Wu, "Color quantization by dynamic programming and principal
 * analysis", 1992, greedy form), over a histogram of 5 bits a channel that keeps the true averages. Reads the image
 * row by row. */
#ifndef ZV_ZVCORE_QUANTIZE_H
#define ZV_ZVCORE_QUANTIZE_H

#include <cstdint>

#include "services/zvcore/zvcore.h"

namespace zvcore {

// Fills at most maxEntries entries and gives their number in *count. ERROR_OUT_OF_MEMORY.
int32_t ChoosePalette(const BITMAPHANDLE& bitmap, int maxEntries, ZVPALETTEENTRY (&palette)[256], int* count);

}  // namespace zvcore

#endif
