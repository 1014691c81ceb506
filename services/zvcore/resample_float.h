/* Passes over rows of real channels, for what needs more than 8 bits. Rows come from Buffer: the passes read up to a
 * vector past their end. */
#ifndef ZV_ZVCORE_RESAMPLE_FLOAT_H
#define ZV_ZVCORE_RESAMPLE_FLOAT_H

#include <cstdint>

#include "services/zvcore/resample_weights.h"

namespace zvcore {

// sum += weight * row, or sum = weight * row.
void AddFloatRow(const float* row, float weight, int64_t samples, float* sum);
void SetFloatRow(const float* row, float weight, int64_t samples, float* sum);

// Filters along a row of pixels of 1, 3 or 4 channels; width is that of the result. Writes up to a vector past the
// end of out.
void FilterFloatRow(const float* row, const AxisWeights& weights, int channels, int32_t width, float* out);

}  // namespace zvcore

#endif
