/* Exchanges rows and columns of pixels of any depth, tile by tile, so that both sides stay in the cache. */
#ifndef ZV_ZVCORE_TRANSPOSE_H
#define ZV_ZVCORE_TRANSPOSE_H

#include <cstdint>

namespace zvcore {

// A picture by its first row and the way to the next one, which may be upwards.
struct SourceRows {
  const uint8_t* first;
  int64_t step;
};
struct DestinationRows {
  uint8_t* first;
  int64_t step;
};

// Columns [firstColumn, lastColumn) of the source, which has width x height pixels, become those rows of the
// destination. firstColumn is a multiple of kTransposeBand. Unused bits at the end of a destination row become 0.
constexpr int32_t kTransposeBand = 128;
void TransposeColumns(SourceRows source, int32_t firstColumn, int32_t lastColumn, int32_t width, int32_t height,
                      int bits, DestinationRows destination);

}  // namespace zvcore

#endif
