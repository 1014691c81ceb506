/* Arithmetic between channel depths. All functions round to nearest and map the end points onto each other. */
#ifndef ZV_ZVCORE_CHANNEL_MATH_H
#define ZV_ZVCORE_CHANNEL_MATH_H

#include <cstdint>

namespace zvcore {

inline uint8_t Widen5(unsigned value) { return static_cast<uint8_t>((value * 255 + 15) / 31); }
inline unsigned Narrow5(unsigned value) { return (value * 31 + 127) / 255; }
// value * 255 / 65535; exact over the whole range.
inline uint8_t Narrow16(unsigned value) { return static_cast<uint8_t>((value * 255 + 32895) >> 16); }
inline uint16_t Widen8(unsigned value) { return static_cast<uint16_t>(value * 257); }

// Luma by ITU-R BT.601, for channels of any depth up to 16 bits: 0.299 R + 0.587 G + 0.114 B in 16-bit fractions.
inline int Luma(int64_t red, int64_t green, int64_t blue) {
  return static_cast<int>((red * 19595 + green * 38470 + blue * 7471 + 32768) >> 16);
}

// value * alpha / 255.
inline uint8_t Multiply255(unsigned value, unsigned alpha) {
  const unsigned product = value * alpha + 128;
  return static_cast<uint8_t>((product + (product >> 8)) >> 8);
}

}  // namespace zvcore

#endif
