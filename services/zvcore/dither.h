/* Error diffusion (Floyd and Steinberg 1976), every second row from right to left so that no direction shows. */
#ifndef ZV_ZVCORE_DITHER_H
#define ZV_ZVCORE_DITHER_H

#include <cstdint>

#include "services/zvcore/color_matcher.h"
#include "services/zvcore/memory.h"
#include "services/zvcore/pixel_convert.h"

namespace zvcore {

class ErrorDiffusion {
 public:
  // ERROR_OUT_OF_MEMORY.
  int32_t Prepare(int32_t rowWidth);
  // Replaces the pixels of the next row by palette colours that make up for each other's errors; indices gets theirs.
  void Next(ColorMatcher& matcher, const Pixel8* row, uint8_t* indices);

 private:
  template <int step>
  void Diffuse(ColorMatcher& matcher, const Pixel8* row, uint8_t* indices);

  // Sixteenths of a level: blue, green, red and one unused.
  struct Error {
    int16_t channels[4];
  };
  int32_t width = 0;
  bool leftwards = false;
  Buffer<Error> current, below;  // one more at each end
};

}  // namespace zvcore

#endif
