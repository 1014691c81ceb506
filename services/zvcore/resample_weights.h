/* Which source samples make up each destination sample along one axis, and with what weights.
 *
 * Reduction: area average (exact coverage of the box that a destination sample stands for) or, for the bilinear
 * method, a triangle as wide as two destination samples, so that nothing is skipped. Enlargement: cubic convolution
 * with a = -0.5 (Keys 1981, the Catmull-Rom spline) or linear. Sample centres lie at half integers; past the edge the
 * edge sample goes on.
 */
#ifndef ZV_ZVCORE_RESAMPLE_WEIGHTS_H
#define ZV_ZVCORE_RESAMPLE_WEIGHTS_H

#include <cstdint>

#include "services/zvcore/memory.h"

namespace zvcore {

enum class AxisFilter { kArea, kTriangle, kCubic };

// One axis of a resampling: the two sizes, and the part of the destination that is wanted.
struct Axis {
  AxisFilter filter;
  int32_t sourceSize;
  int32_t destinationSize;
  int32_t first;
  int32_t count;
};

// What SIZE_BILINEAR or SIZE_BICUBIC mean for an axis of that reduction or enlargement.
AxisFilter FilterFor(int32_t method, int32_t sourceSize, int32_t destinationSize);

struct AxisSpan {
  int32_t first;  // first source sample
  int32_t count;  // samples, at least 1, all inside the source
};

// Weights of one axis, for the destination samples that are wanted. Row i of a table begins at i * stride; its
// entries past the span's count are 0.
struct AxisWeights {
  Buffer<AxisSpan> spans;
  Buffer<int16_t> fixed;     // weights times 2^fractionBits for the largest
  Buffer<float> fixedScale;  // 1 / sum of the fixed weights of a row
  Buffer<float> real;        // weights with sum 1
  int32_t stride = 0;        // a multiple of 4

  AxisSpan Span(int32_t i) const { return spans[static_cast<size_t>(i)]; }
  const int16_t* Fixed(int32_t i) const { return fixed.data() + static_cast<size_t>(i) * static_cast<size_t>(stride); }
  const float* Real(int32_t i) const { return real.data() + static_cast<size_t>(i) * static_cast<size_t>(stride); }
};

// Whether fixed-point weights keep the result within a fraction of a level for that axis. Beyond, real ones are to be
// used.
bool FixedPointSuits(const Axis& axis);

// Fills either the fixed or the real table. largestSample bounds the magnitude of the samples that will be summed in
// 32 bits. ERROR_OUT_OF_MEMORY.
int32_t BuildFixedWeights(const Axis& axis, int32_t largestSample, AxisWeights& weights);
int32_t BuildRealWeights(const Axis& axis, AxisWeights& weights);

// The cubic kernel at a distance from its centre, in samples.
double CubicWeight(double distance);

}  // namespace zvcore

#endif
