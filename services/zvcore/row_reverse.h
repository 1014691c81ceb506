/* Reverses rows of pixels of any depth. */
#ifndef ZV_ZVCORE_ROW_REVERSE_H
#define ZV_ZVCORE_ROW_REVERSE_H

#include <cstdint>

namespace zvcore {

// out gets the pixels of in from last to first, and zeros in the bits past the last; they must not overlap.
void ReverseRow(const uint8_t* in, int32_t pixels, int bits, uint8_t* out);

}  // namespace zvcore

#endif
