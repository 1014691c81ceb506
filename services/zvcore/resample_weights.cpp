#include "services/zvcore/resample_weights.h"

#include <algorithm>
#include <cmath>

#include "services/zvcore/zvcore.h"

namespace zvcore {
namespace {

constexpr int kMaxFractionBits = 14;

double Ratio(const Axis& axis) { return static_cast<double>(axis.sourceSize) / axis.destinationSize; }

// Produces spans and weights of one axis, the largest weight of a span being 1 at most.
class AxisGeometry {
 public:
  explicit AxisGeometry(const Axis& axis)
      : filter(axis.filter), sourceSize(axis.sourceSize), destinationSize(axis.destinationSize), ratio(Ratio(axis)) {}

  int32_t MaxCount() const {
    const double width = filter == AxisFilter::kArea ? ratio + 2 : filter == AxisFilter::kCubic ? 4 : 2 * Reach() + 2;
    return static_cast<int32_t>(std::min(std::ceil(width), static_cast<double>(sourceSize)));
  }

  // weights has room for MaxCount() values.
  AxisSpan Compute(int32_t i, double* weights) const {
    switch (filter) {
      case AxisFilter::kArea: return ComputeArea(i, weights);
      case AxisFilter::kTriangle: return ComputeTriangle(i, weights);
      case AxisFilter::kCubic: return ComputeCubic(i, weights);
    }
    return {0, 1};
  }

 private:
  double Reach() const { return std::max(1.0, ratio); }
  double Center(int32_t i) const { return (i + 0.5) * ratio - 0.5; }

  // In units of 1 / destinationSize of a source sample, where all edges are whole numbers.
  AxisSpan ComputeArea(int32_t i, double* weights) const {
    const int64_t begin = static_cast<int64_t>(i) * sourceSize;
    const int64_t end = begin + sourceSize;
    const auto first = static_cast<int32_t>(begin / destinationSize);
    const auto last = static_cast<int32_t>((end + destinationSize - 1) / destinationSize);
    for (int32_t j = first; j < last; ++j) {
      const int64_t left = std::max(begin, static_cast<int64_t>(j) * destinationSize);
      const int64_t right = std::min(end, static_cast<int64_t>(j + 1) * destinationSize);
      weights[j - first] = static_cast<double>(right - left) / destinationSize;
    }
    return {first, last - first};
  }

  AxisSpan ComputeTriangle(int32_t i, double* weights) const {
    const double center = Center(i), reach = Reach();
    int32_t first = std::max(0, static_cast<int32_t>(std::floor(center - reach)) + 1);
    const int32_t last = std::min(sourceSize - 1, static_cast<int32_t>(std::ceil(center + reach)) - 1);
    first = std::min(first, last);
    for (int32_t j = first; j <= last; ++j) weights[j - first] = std::max(0.0, 1 - std::abs(j - center) / reach);
    return {first, last - first + 1};
  }

  // The weights of samples that lie outside go to the edge sample.
  AxisSpan ComputeCubic(int32_t i, double* weights) const {
    const double center = Center(i);
    const auto from = static_cast<int32_t>(std::floor(center)) - 1;
    const int32_t first = std::clamp(from, 0, sourceSize - 1);
    const int32_t last = std::clamp(from + 3, 0, sourceSize - 1);
    std::fill_n(weights, last - first + 1, 0.0);
    for (int32_t j = from; j < from + 4; ++j) weights[std::clamp(j, first, last) - first] += CubicWeight(j - center);
    return {first, last - first + 1};
  }

  AxisFilter filter;
  int32_t sourceSize;
  int32_t destinationSize;
  double ratio;
};

int32_t AllocateSpans(const AxisGeometry& geometry, int32_t count, AxisWeights& weights, Buffer<double>& row) {
  weights.stride = (geometry.MaxCount() + 3) & ~3;
  const bool enough =
      weights.spans.Allocate(static_cast<size_t>(count)) && row.Allocate(static_cast<size_t>(weights.stride) + 4);
  return enough ? SUCCESS : ERROR_OUT_OF_MEMORY;
}

size_t TableSize(const AxisWeights& weights, int32_t count) {
  return static_cast<size_t>(weights.stride) * static_cast<size_t>(count);
}

}  // namespace

double CubicWeight(double distance) {
  const double d = std::abs(distance);
  if (d < 1) return (1.5 * d - 2.5) * d * d + 1;
  if (d < 2) return ((-0.5 * d + 2.5) * d - 4) * d + 2;
  return 0;
}

AxisFilter FilterFor(int32_t method, int32_t sourceSize, int32_t destinationSize) {
  if (method == SIZE_BILINEAR && sourceSize != destinationSize) return AxisFilter::kTriangle;
  return destinationSize > sourceSize ? AxisFilter::kCubic : AxisFilter::kArea;
}

bool FixedPointSuits(const Axis& axis) { return Ratio(axis) <= (axis.filter == AxisFilter::kTriangle ? 8 : 1024); }

int32_t BuildFixedWeights(const Axis& axis, int32_t largestSample, AxisWeights& weights) {
  const AxisGeometry geometry(axis);
  Buffer<double> row;
  if (AllocateSpans(geometry, axis.count, weights, row) != SUCCESS) return ERROR_OUT_OF_MEMORY;
  if (!weights.fixed.Allocate(TableSize(weights, axis.count))) return ERROR_OUT_OF_MEMORY;
  if (!weights.fixedScale.Allocate(static_cast<size_t>(axis.count))) return ERROR_OUT_OF_MEMORY;
  // The sum of the weights is about the reduction; a quarter more for the negative lobes of the cubic kernel.
  const double room = 2147483647.0 / largestSample / (1.25 * (Ratio(axis) + 1));
  const int fractionBits = std::clamp(static_cast<int>(std::floor(std::log2(room))), 0, kMaxFractionBits);
  const double one = 1 << fractionBits;
  for (int32_t i = 0; i < axis.count; ++i) {
    const AxisSpan span = geometry.Compute(axis.first + i, row.data());
    int16_t* out = weights.fixed.data() + static_cast<size_t>(i) * static_cast<size_t>(weights.stride);
    int64_t sum = 0;
    for (int32_t k = 0; k < span.count; ++k) {
      out[k] = static_cast<int16_t>(std::lround(row[static_cast<size_t>(k)] * one));
      sum += out[k];
    }
    if (sum == 0) sum = out[0] = 1;
    weights.spans[static_cast<size_t>(i)] = span;
    weights.fixedScale[static_cast<size_t>(i)] = static_cast<float>(1.0 / static_cast<double>(sum));
  }
  return SUCCESS;
}

int32_t BuildRealWeights(const Axis& axis, AxisWeights& weights) {
  const AxisGeometry geometry(axis);
  Buffer<double> row;
  if (AllocateSpans(geometry, axis.count, weights, row) != SUCCESS) return ERROR_OUT_OF_MEMORY;
  if (!weights.real.Allocate(TableSize(weights, axis.count))) return ERROR_OUT_OF_MEMORY;
  for (int32_t i = 0; i < axis.count; ++i) {
    const AxisSpan span = geometry.Compute(axis.first + i, row.data());
    double sum = 0;
    for (int32_t k = 0; k < span.count; ++k) sum += row[static_cast<size_t>(k)];
    float* out = weights.real.data() + static_cast<size_t>(i) * static_cast<size_t>(weights.stride);
    for (int32_t k = 0; k < span.count; ++k) out[k] = static_cast<float>(row[static_cast<size_t>(k)] / sum);
    weights.spans[static_cast<size_t>(i)] = span;
  }
  return SUCCESS;
}

}  // namespace zvcore
