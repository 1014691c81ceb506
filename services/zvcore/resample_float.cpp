#include "services/zvcore/resample_float.h"

#include <xmmintrin.h>

namespace zvcore {
namespace {

// Four lanes are stored a pixel; the fourth of three channels is overwritten by the next pixel.
template <int channels>
void FilterColor(const float* row, const AxisWeights& weights, int32_t width, float* out) {
  for (int32_t x = 0; x < width; ++x, out += channels) {
    const AxisSpan span = weights.Span(x);
    const float* at = row + static_cast<int64_t>(span.first) * channels;
    const float* weight = weights.Real(x);
    __m128 sum = _mm_setzero_ps();
    for (int32_t k = 0; k < span.count; ++k, at += channels) {
      sum = _mm_add_ps(sum, _mm_mul_ps(_mm_loadu_ps(at), _mm_set1_ps(weight[k])));
    }
    _mm_storeu_ps(out, sum);
  }
}

void FilterGray(const float* row, const AxisWeights& weights, int32_t width, float* out) {
  for (int32_t x = 0; x < width; ++x) {
    const AxisSpan span = weights.Span(x);
    const float* at = row + span.first;
    const float* weight = weights.Real(x);
    float sum = 0;
    for (int32_t k = 0; k < span.count; ++k) sum += at[k] * weight[k];
    out[x] = sum;
  }
}

}  // namespace

void AddFloatRow(const float* row, float weight, int64_t samples, float* sum) {
  for (int64_t i = 0; i < samples; ++i) sum[i] += weight * row[i];
}

void SetFloatRow(const float* row, float weight, int64_t samples, float* sum) {
  for (int64_t i = 0; i < samples; ++i) sum[i] = weight * row[i];
}

void FilterFloatRow(const float* row, const AxisWeights& weights, int channels, int32_t width, float* out) {
  if (channels == 1) return FilterGray(row, weights, width, out);
  if (channels == 3) return FilterColor<3>(row, weights, width, out);
  return FilterColor<4>(row, weights, width, out);
}

}  // namespace zvcore
