#include "services/zvcore/cubic_sampler.h"

#include <cmath>

#include "services/zvcore/resample_weights.h"
#include "services/zvcore/result_codes.h"

namespace zvcore {

int32_t CubicWeights::Prepare(bool linear) {
  constexpr size_t kPhases = size_t{1} << kPhaseBits;
  if (!fixed.Allocate(kPhases * 4) || !real.Allocate(kPhases * 4)) return ERROR_OUT_OF_MEMORY;
  for (size_t phase = 0; phase < kPhases; ++phase) {
    const double at = static_cast<double>(phase) / kPhases;
    const double weights[4] = {linear ? 0 : CubicWeight(1 + at), linear ? 1 - at : CubicWeight(at),
                               linear ? at : CubicWeight(1 - at), linear ? 0 : CubicWeight(2 - at)};
    int rest = 1 << 14;
    for (size_t k = 0; k < 4; ++k) {
      real[phase * 4 + k] = static_cast<float>(weights[k]);
      fixed[phase * 4 + k] = static_cast<int16_t>(std::lround(weights[k] * (1 << 14)));
      rest -= fixed[phase * 4 + k];
    }
    fixed[phase * 4 + (at < 0.5 ? 1 : 2)] = static_cast<int16_t>(fixed[phase * 4 + (at < 0.5 ? 1 : 2)] + rest);
  }
  return SUCCESS;
}

}  // namespace zvcore
