/* Finds the entry of a palette that is next to a colour, exactly and fast: colour space is cut into small cubes, and
 * each cube remembers the few entries that can be nearest to anything in it (Heckbert, "Color Image Quantization for
 * Frame Buffer Display", 1982). Cubes are worked out when first asked. Copies the palette; one thread at a time. */
#ifndef ZV_ZVCORE_COLOR_MATCHER_H
#define ZV_ZVCORE_COLOR_MATCHER_H

#include <emmintrin.h>

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
    return Match(
        red, green, blue,
        _mm_setr_epi16(static_cast<short>(blue), static_cast<short>(green), static_cast<short>(red), 0, 0, 0, 0, 0));
  }
  // As above, with the colour once more in the low words: blue, green, red, 0.
  unsigned Match(int red, int green, int blue, __m128i color) {
    const unsigned cell = static_cast<unsigned>(red >> 3) << 10 | static_cast<unsigned>(green >> 3) << 5 |
                          static_cast<unsigned>(blue >> 3);
    if (cells[cell].count == 0) FillCell(cell);
    return Search(cells[cell], _mm_unpacklo_epi64(color, color));
  }
  const ZVPALETTEENTRY& Entry(unsigned index) const { return palette[index]; }

 private:
  struct Cell {
    uint32_t first;
    uint32_t count;  // groups; 0: not worked out yet
  };
  // Four entries that may be the nearest: blue, green, red, 0 as words, and their indices.
  struct Group {
    int16_t colors[16];
    int32_t indices[4];
  };
  void FillCell(unsigned cell);
  void AppendGroups(const uint8_t* entries, int entryCount);
  unsigned Search(Cell cell, __m128i colorTwice) const {
    __m128i best = _mm_set1_epi32(INT32_MAX);
    const Group* group = groups.data() + cell.first;
    for (uint32_t i = 0; i < cell.count; ++i, ++group) best = Smaller(best, Keys(*group, colorTwice));
    best = Smaller(best, _mm_shuffle_epi32(best, 0x4E));
    best = Smaller(best, _mm_shuffle_epi32(best, 0xB1));
    return static_cast<unsigned>(_mm_cvtsi128_si32(best)) & 255;
  }
  // Squared distance and index in one number, so that the smallest is the nearest entry, and the first of equals.
  static __m128i Keys(const Group& group, __m128i colorTwice) {
    const auto* colors = reinterpret_cast<const __m128i*>(group.colors);
    const __m128i a = _mm_sub_epi16(_mm_loadu_si128(colors), colorTwice);
    const __m128i b = _mm_sub_epi16(_mm_loadu_si128(colors + 1), colorTwice);
    const __m128 squaresA = _mm_castsi128_ps(_mm_madd_epi16(a, a)), squaresB = _mm_castsi128_ps(_mm_madd_epi16(b, b));
    const __m128i blueAndGreen = _mm_castps_si128(_mm_shuffle_ps(squaresA, squaresB, 0x88));
    const __m128i red = _mm_castps_si128(_mm_shuffle_ps(squaresA, squaresB, 0xDD));
    const __m128i indices = _mm_loadu_si128(reinterpret_cast<const __m128i*>(group.indices));
    return _mm_or_si128(_mm_slli_epi32(_mm_add_epi32(blueAndGreen, red), 8), indices);
  }
  static __m128i Smaller(__m128i a, __m128i b) {
    const __m128i keepB = _mm_cmpgt_epi32(a, b);
    return _mm_or_si128(_mm_and_si128(keepB, b), _mm_andnot_si128(keepB, a));
  }

  ZVPALETTEENTRY palette[256];
  int count = 0;
  Buffer<Cell> cells;
  Buffer<Group> groups;  // begins with all entries, for cubes that found no room
  uint32_t groupsUsed = 0;
  Cell whole = {};
};

}  // namespace zvcore

#endif
