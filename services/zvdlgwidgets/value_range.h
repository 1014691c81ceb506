// The arithmetic of a value within a range and of the slider that shows it. No window in it.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/cstring.h"

struct ValueRange {
  int minimum = 0;
  int maximum = 0;

  // Exchanges the two when they stand the wrong way round.
  static ValueRange Of(int first, int second);

  int Clamp(int64_t value) const;
  bool Holds(int value) const { return value >= minimum && value <= maximum; }
  // How far Page Up and Page Down go: a tenth of the range, at least 1.
  int PageStep() const;
  // The value at a place of a track of `length` pixels, and the place of a value; both are rounded to the nearest.
  int ValueAt(int position, int length) const;
  int PositionOf(int value, int length) const;
};

// A whole number with nothing beside it but blanks; nothing for other texts and for numbers beyond 32 bits.
std::optional<int> ParseWholeNumber(const CString& text);
