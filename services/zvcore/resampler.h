/* Resamples one bitmap into another of the same format, row by row from the top: the working memory is a few rows. A
 * Resampler looks at both bitmaps until it ends and owns neither. */
#ifndef ZV_ZVCORE_RESAMPLER_H
#define ZV_ZVCORE_RESAMPLER_H

#include <cstdint>
#include <memory>

#include "services/zvcore/zvcore.h"

namespace zvcore {

class Resampler {
 public:
  virtual ~Resampler() = default;
  // Allocates everything. ERROR_OUT_OF_MEMORY.
  virtual int32_t Prepare() = 0;
  // Makes row `row` of the destination; rows are asked for from the top, each once.
  virtual void MakeRow(int32_t row) = 0;
};

// The whole of what a source is resampled to, of which the destination is the part at (left, top).
struct ResampleFrame {
  int32_t width, height;
  int32_t left, top;
};

// The resampler that suits the format and the method (SIZE_...); null when memory runs out. The destination has the
// source's depth, order, alpha flags and palette; or, for methods above nearest, the channels that ByteRowReader
// gives.
std::unique_ptr<Resampler> NewResampler(const BITMAPHANDLE& source, BITMAPHANDLE& destination,
                                        const ResampleFrame& frame, int32_t method);

// Prepares and makes all rows of a destination that is the whole, with progress.
int32_t Resample(const BITMAPHANDLE& source, BITMAPHANDLE& destination, int32_t method);

}  // namespace zvcore

#endif
