// How the rotate dialog's angle, flags and texts belong together. Angles are hundredths of a degree, clockwise. No window.
#pragma once

#include <cstdint>

#include "services/zvcore/zvcore.h"

inline constexpr int32_t kLargestAngle = 36000;

constexpr bool IsAngleInRange(int32_t angle) { return angle >= -kLargestAngle && angle <= kLargestAngle; }
// An angle from a record; one out of range counts as none.
constexpr int32_t UsableAngle(int32_t angle) { return IsAngleInRange(angle) ? angle : 0; }

// Degrees as typed to hundredths, cut towards zero. A value too large for any angle gives one that is out of range. Typed
// decimals are not exact in binary, so 0.29 gives 28.
int32_t AngleFromDegrees(double degrees);
constexpr double DegreesFromAngle(int32_t angle) { return angle / 100.0; }

// Position in the list of interpolations: 0 none, 1 bilinear, 2 bicubic.
constexpr int InterpolationIndex(uint32_t flags) {
  return flags & ROTATE_RESAMPLE ? 1 : flags & ROTATE_BICUBIC ? 2 : 0;
}
constexpr uint32_t WithInterpolation(uint32_t flags, int index) {
  flags &= ~(ROTATE_RESAMPLE | ROTATE_BICUBIC);
  return index == 1 ? flags | ROTATE_RESAMPLE : index == 2 ? flags | ROTATE_BICUBIC : flags;
}
constexpr uint32_t WithCanvasGrowth(uint32_t flags, bool grow) {
  return grow ? flags | ROTATE_RESIZE : flags & ~ROTATE_RESIZE;
}
// The flags that OK leaves behind. Without an interpolation nothing but the canvas flag remains; one that is chosen comes on
// top of what is there.
constexpr uint32_t FlagsAtOK(uint32_t flags, int interpolationIndex, bool grow) {
  return WithCanvasGrowth(interpolationIndex == 0 ? 0 : flags | WithInterpolation(0, interpolationIndex), grow);
}
