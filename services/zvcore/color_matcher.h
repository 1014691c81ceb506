/* Finds the entry of a palette that is next to a colour, exactly and fast: colour space is cut into small cubes, and each cube
 * remembers the few entries that can be nearest to anything in it (Heckbert, "Color Image Quantization for Frame Buffer
 * Display", 1982). Cubes are worked out when first asked. Copies the palette; one thread at a time. */
#ifndef ZV_ZVCORE_COLOR_MATCHER_H
#define ZV_ZVCORE_COLOR_MATCHER_H

#include <cstdint>

#include "services/zvcore/memory.h"
#include "services/zvcore/zvcore.h"

namespace zvcore {

class ColorMatcher {
 public:
  // ERROR_OUT_OF_MEMORY; ERROR_BAD_ARGUMENT for fewer than 1 or more than 256 entries.
  int32_t Prepare(const ZVPALETTEENTRY* entries, int entryCount);

  // The same answer as NearestEntry. Channels are 0 to 255.
  unsigned Match(int red, int green, int blue) {
    const unsigned cell = static_cast<unsigned>(red >> 3) << 10 | static_cast<unsigned>(green >> 3) << 5 |
                          static_cast<unsigned>(blue >> 3);
    if (cells[cell].count == 0) FillCell(cell);
    return Search(cells[cell], red, green, blue);
  }
  const ZVPALETTEENTRY& Entry(unsigned index) const { return palette[index]; }

 private:
  struct Cell {
    uint32_t first;
    uint32_t count;  // 0: not worked out yet
  };
  void FillCell(unsigned cell);
  unsigned Search(Cell cell, int red, int green, int blue) const;

  ZVPALETTEENTRY palette[256];
  int count = 0;
  Buffer<Cell> cells;
  Buffer<uint8_t> candidates;  // begins with all entries in order, for cubes that found no room
  uint32_t candidatesUsed = 0;
};

}  // namespace zvcore

#endif
