#include "services/zvcore/dither.h"

#include <algorithm>
#include <cstring>

namespace zvcore {
namespace {

int Corrected(int level, int sixteenths) { return std::clamp(level + ((sixteenths + 8) >> 4), 0, 255); }

}  // namespace

int32_t ErrorDiffusion::Prepare(int32_t rowWidth) {
  width = rowWidth;
  const auto count = static_cast<size_t>(rowWidth) + 2;
  return current.Allocate(count) && below.Allocate(count) ? SUCCESS : ERROR_OUT_OF_MEMORY;
}

void ErrorDiffusion::Next(ColorMatcher& matcher, const Pixel8* row, uint8_t* indices) {
  std::memset(below.data(), 0, below.size() * sizeof(Error));
  const int32_t step = leftwards ? -1 : 1;
  int32_t x = leftwards ? width - 1 : 0;
  for (int32_t done = 0; done < width; ++done, x += step) {
    Error* here = current.data() + x + 1;
    Error* under = below.data() + x + 1;
    const int red = Corrected(row[x].red, here->red);
    const int green = Corrected(row[x].green, here->green);
    const int blue = Corrected(row[x].blue, here->blue);
    const unsigned index = matcher.Match(red, green, blue);
    indices[x] = static_cast<uint8_t>(index);
    const ZVPALETTEENTRY& entry = matcher.Entry(index);
    const int missing[3] = {red - entry.red, green - entry.green, blue - entry.blue};
    const auto spread = [&](Error& to, int share) {
      to.red = static_cast<int16_t>(to.red + missing[0] * share);
      to.green = static_cast<int16_t>(to.green + missing[1] * share);
      to.blue = static_cast<int16_t>(to.blue + missing[2] * share);
    };
    spread(here[step], 7);
    spread(under[-step], 3);
    spread(under[0], 5);
    spread(under[step], 1);
  }
  std::swap(current, below);
  leftwards = !leftwards;
}

}  // namespace zvcore
