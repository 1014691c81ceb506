#include "conversion/rotate_rules.h"

#include <algorithm>
#include <cmath>

int32_t AngleFromDegrees(double degrees) {
  return static_cast<int32_t>(std::clamp(std::trunc(degrees * 100), -kLargestAngle - 1.0, kLargestAngle + 1.0));
}
