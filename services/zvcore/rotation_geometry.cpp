#include "services/zvcore/rotation_geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zvcore {
namespace {

double Radians(int32_t angle) { return angle * (std::numbers::pi / 18000); }

int64_t Fixed(double value) {
  return static_cast<int64_t>(std::floor(value * static_cast<double>(kPositionOne) + 0.5));
}

int64_t FloorDivide(int64_t value, int64_t divisor) {
  const int64_t quotient = value / divisor;
  return value % divisor != 0 && (value < 0) != (divisor < 0) ? quotient - 1 : quotient;
}

// Narrows columns, counted from where the position is `start`, to those with low <= start + step * column <= high.
void Narrow(int64_t start, int64_t step, int64_t low, int64_t high, int64_t& first, int64_t& last) {
  if (step == 0) {
    if (start < low || start > high) last = first;
    return;
  }
  if (step < 0) {
    start = -start, step = -step;
    std::swap(low, high);
    low = -low, high = -high;
  }
  first = std::max(first, -FloorDivide(start - low, step));
  last = std::min(last, FloorDivide(high - start, step) + 1);
}

}  // namespace

Size TurnedSize(Size size, int32_t angle) {
  const double sine = std::abs(std::sin(Radians(angle))), cosine = std::abs(std::cos(Radians(angle)));
  const auto width = static_cast<double>(size.width), height = static_cast<double>(size.height);
  // A hair's breadth over a whole number is rounding, not picture.
  const auto whole = [](double extent) { return std::max<int64_t>(1, static_cast<int64_t>(std::ceil(extent - 1e-6))); };
  return {whole(width * cosine + height * sine), whole(width * sine + height * cosine)};
}

RotationGeometry::RotationGeometry(Size sourceSize, Size canvas, int32_t angle)
    : source(sourceSize),
      sine(std::sin(Radians(angle))),
      cosine(std::cos(Radians(angle))),
      canvasX(static_cast<double>(canvas.width - 1) / 2),
      canvasY(static_cast<double>(canvas.height - 1) / 2),
      sourceX(static_cast<double>(sourceSize.width - 1) / 2),
      sourceY(static_cast<double>(sourceSize.height - 1) / 2),
      step{Fixed(cosine), Fixed(-sine)} {}

Position RotationGeometry::SourceOf(int32_t x, int32_t y) const {
  const double down = y - canvasY;
  const int64_t rowX = Fixed(sourceX - canvasX * cosine + down * sine);
  const int64_t rowY = Fixed(sourceY + canvasX * sine + down * cosine);
  return {rowX + x * step.x, rowY + x * step.y};
}

ColumnRange RotationGeometry::ColumnsInside(int32_t y, ColumnRange columns, Margins margins) const {
  const Position start = SourceOf(0, y);
  int64_t first = columns.first, last = columns.last;
  Narrow(start.x, step.x, margins.low, (source.width - 1) * kPositionOne + margins.high, first, last);
  Narrow(start.y, step.y, margins.low, (source.height - 1) * kPositionOne + margins.high, first, last);
  first = std::clamp<int64_t>(first, columns.first, columns.last);
  last = std::clamp<int64_t>(last, first, columns.last);
  return {static_cast<int32_t>(first), static_cast<int32_t>(last)};
}

}  // namespace zvcore
