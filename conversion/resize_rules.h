// The sizes that a picture can be brought to.
#pragma once

#include "conversion/records.h"

inline constexpr int kSmallestSize = 1;

// Pixels, or percent of the picture.
constexpr int LargestSize(int unit) { return unit == RESIZE_UNIT_PERCENT ? 100 : 30000; }
