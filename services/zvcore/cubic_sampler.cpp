#include "services/zvcore/cubic_sampler.h"

#include <cmath>

#include "services/zvcore/resample_weights.h"
#include "services/zvcore/result_codes.h"

namespace zvcore {

int32_t CubicWeights::Prepare(bool linear) {
  if (!fixed.Allocate(kPhases * 4)) return ERROR_OUT_OF_MEMORY;
  for (size_t phase = 0; phase < kPhases; ++phase) {
    const double at = (static_cast<double>(phase) + 0.5) / kPhases;
    const double weights[4] = {linear ? 0 : CubicWeight(1 + at), linear ? 1 - at : CubicWeight(at),
                               linear ? at : CubicWeight(1 - at), linear ? 0 : CubicWeight(2 - at)};
    int rest = 1 << 14;
    for (size_t k = 0; k < 4; ++k) {
      fixed[phase * 4 + k] = static_cast<int16_t>(std::lround(weights[k] * (1 << 14)));
      rest -= fixed[phase * 4 + k];
    }
    fixed[phase * 4 + (at < 0.5 ? 1 : 2)] = static_cast<int16_t>(fixed[phase * 4 + (at < 0.5 ? 1 : 2)] + rest);
  }
  if (linear) {
    cubed = squared = _mm_setzero_ps();
    plain = _mm_setr_ps(0, -1, 1, 0);
  } else {
    cubed = _mm_setr_ps(-0.5f, 1.5f, -1.5f, 0.5f);
    squared = _mm_setr_ps(1, -2.5f, 2, -0.5f);
    plain = _mm_setr_ps(-0.5f, 0, 0.5f, 0);
  }
  constant = _mm_setr_ps(0, 1, 0, 0);
  return SUCCESS;
}

}  // namespace zvcore
