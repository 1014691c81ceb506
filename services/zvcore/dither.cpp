#include "services/zvcore/dither.h"

#include <emmintrin.h>

#include <cstring>
#include <utility>

namespace zvcore {
namespace {

__m128i LoadFour(const void* at) { return _mm_loadl_epi64(static_cast<const __m128i*>(at)); }
void StoreFour(void* at, __m128i value) { _mm_storel_epi64(static_cast<__m128i*>(at), value); }

// Four bytes as words.
__m128i LoadBytes(const void* at) {
  int32_t bytes;
  std::memcpy(&bytes, at, sizeof bytes);
  return _mm_unpacklo_epi8(_mm_cvtsi32_si128(bytes), _mm_setzero_si128());
}

}  // namespace

int32_t ErrorDiffusion::Prepare(int32_t rowWidth) {
  width = rowWidth;
  const auto count = static_cast<size_t>(rowWidth) + 2;
  return current.Allocate(count) && below.Allocate(count) ? SUCCESS : ERROR_OUT_OF_MEMORY;
}

// Shares of a pixel's error: 7 to the next one, 3, 5 and 1 to those below, behind, under and ahead. A pixel below is
// complete, and stored, when the row has moved past it.
template <int step>
void ErrorDiffusion::Diffuse(ColorMatcher& matcher, const Pixel8* row, uint8_t* indices) {
  const __m128i half = _mm_set1_epi16(8), none = _mm_setzero_si128();
  const __m128i colorOnly = _mm_setr_epi16(-1, -1, -1, 0, 0, 0, 0, 0);
  __m128i next = none, behind = none, under = none;
  int32_t x = step > 0 ? 0 : width - 1;
  for (int32_t done = 0; done < width; ++done, x += step) {
    const __m128i error = _mm_add_epi16(LoadFour(&current[static_cast<size_t>(x + 1)]), next);
    const __m128i wanted = _mm_add_epi16(LoadBytes(row + x), _mm_srai_epi16(_mm_add_epi16(error, half), 4));
    const __m128i color = _mm_and_si128(_mm_unpacklo_epi8(_mm_packus_epi16(wanted, wanted), none), colorOnly);
    const unsigned index =
        matcher.Match(_mm_extract_epi16(color, 2), _mm_extract_epi16(color, 1), _mm_extract_epi16(color, 0), color);
    indices[x] = static_cast<uint8_t>(index);
    const __m128i missing = _mm_and_si128(_mm_sub_epi16(color, LoadBytes(&matcher.Entry(index))), colorOnly);
    const __m128i three = _mm_add_epi16(missing, _mm_slli_epi16(missing, 1));
    next = _mm_add_epi16(three, _mm_slli_epi16(missing, 2));
    StoreFour(&below[static_cast<size_t>(x + 1 - step)], _mm_add_epi16(behind, three));
    behind = _mm_add_epi16(under, _mm_add_epi16(_mm_slli_epi16(missing, 2), missing));
    under = missing;
  }
  StoreFour(&below[static_cast<size_t>(x + 1 - step)], behind);
}

void ErrorDiffusion::Next(ColorMatcher& matcher, const Pixel8* row, uint8_t* indices) {
  leftwards ? Diffuse<-1>(matcher, row, indices) : Diffuse<1>(matcher, row, indices);
  std::swap(current, below);
  leftwards = !leftwards;
}

}  // namespace zvcore
