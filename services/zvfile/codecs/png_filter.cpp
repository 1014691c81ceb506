#include "services/zvfile/codecs/png_filter.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>

namespace zvfile {
namespace {

enum Filter : uint8_t { kNone, kSub, kUp, kAverage, kPaeth, kFilterCount };

__m128i Load(const uint8_t* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }

// Sum of absolute values of 16 signed bytes, as two 64-bit lanes.
__m128i AbsoluteSum(__m128i bytes) {
  const __m128i zero = _mm_setzero_si128();
  return _mm_sad_epu8(_mm_min_epu8(bytes, _mm_sub_epi8(zero, bytes)), zero);
}

// floor((a + b) / 2): the processor's average rounds up.
__m128i FloorAverage(__m128i a, __m128i b) {
  const __m128i odd = _mm_and_si128(_mm_xor_si128(a, b), _mm_set1_epi8(1));
  return _mm_sub_epi8(_mm_avg_epu8(a, b), odd);
}

__m128i Absolute16(__m128i value) { return _mm_max_epi16(value, _mm_sub_epi16(_mm_setzero_si128(), value)); }

// Where mask is set a, else b.
__m128i Select(__m128i mask, __m128i a, __m128i b) {
  return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
}

// The Paeth predictor of eight pixels in 16-bit lanes: left a, above b, above left c; ties in that order.
__m128i PaethLanes(__m128i a, __m128i b, __m128i c) {
  const __m128i fromA = _mm_sub_epi16(b, c);
  const __m128i fromB = _mm_sub_epi16(a, c);
  const __m128i pa = Absolute16(fromA);
  const __m128i pb = Absolute16(fromB);
  const __m128i pc = Absolute16(_mm_add_epi16(fromA, fromB));
  const __m128i least = _mm_min_epi16(pa, _mm_min_epi16(pb, pc));
  return Select(_mm_cmpeq_epi16(least, pa), a, Select(_mm_cmpeq_epi16(least, pb), b, c));
}

__m128i Paeth(__m128i a, __m128i b, __m128i c) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i low = PaethLanes(_mm_unpacklo_epi8(a, zero), _mm_unpacklo_epi8(b, zero), _mm_unpacklo_epi8(c, zero));
  const __m128i high = PaethLanes(_mm_unpackhi_epi8(a, zero), _mm_unpackhi_epi8(b, zero), _mm_unpackhi_epi8(c, zero));
  return _mm_packus_epi16(low, high);
}

__m128i Predict(Filter filter, __m128i a, __m128i b, __m128i c) {
  switch (filter) {
    case kSub: return a;
    case kUp: return b;
    case kAverage: return FloorAverage(a, b);
    case kPaeth: return Paeth(a, b, c);
    default: return _mm_setzero_si128();
  }
}

uint64_t Total(__m128i lanes) {
  uint64_t parts[2];
  std::memcpy(parts, &lanes, sizeof parts);
  return parts[0] + parts[1];
}

// Weighs all five filters over a row. The rows have a margin behind them, so that the last block may be read beyond their end;
// the mask leaves those bytes out.
Filter Choose(const uint8_t* row, const uint8_t* above, size_t rowBytes, size_t pixelBytes) {
  __m128i sums[kFilterCount];
  for (__m128i& sum : sums) sum = _mm_setzero_si128();
  alignas(16) uint8_t tailMask[32];
  std::memset(tailMask, 0xFF, 16);
  std::memset(tailMask + 16, 0, 16);
  for (size_t i = 0; i < rowBytes; i += 16) {
    const size_t left = std::min<size_t>(rowBytes - i, 16);
    const __m128i mask = Load(tailMask + 16 - left);
    const __m128i x = Load(row + i), a = Load(row + i - pixelBytes), b = Load(above + i),
                  c = Load(above + i - pixelBytes);
    sums[kNone] = _mm_add_epi64(sums[kNone], AbsoluteSum(_mm_and_si128(mask, x)));
    sums[kSub] = _mm_add_epi64(sums[kSub], AbsoluteSum(_mm_and_si128(mask, _mm_sub_epi8(x, a))));
    sums[kUp] = _mm_add_epi64(sums[kUp], AbsoluteSum(_mm_and_si128(mask, _mm_sub_epi8(x, b))));
    sums[kAverage] =
        _mm_add_epi64(sums[kAverage], AbsoluteSum(_mm_and_si128(mask, _mm_sub_epi8(x, FloorAverage(a, b)))));
    sums[kPaeth] = _mm_add_epi64(sums[kPaeth], AbsoluteSum(_mm_and_si128(mask, _mm_sub_epi8(x, Paeth(a, b, c)))));
  }
  uint8_t best = kNone;
  for (uint8_t filter = kSub; filter < kFilterCount; ++filter) {
    if (Total(sums[filter]) < Total(sums[best])) best = filter;
  }
  return static_cast<Filter>(best);
}

void Write(Filter filter, const uint8_t* row, const uint8_t* above, size_t rowBytes, size_t pixelBytes,
           uint8_t* output) {
  size_t i = 0;
  for (; i + 16 <= rowBytes; i += 16) {
    const __m128i prediction =
        Predict(filter, Load(row + i - pixelBytes), Load(above + i), Load(above + i - pixelBytes));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(output + i), _mm_sub_epi8(Load(row + i), prediction));
  }
  if (i == rowBytes) return;
  uint8_t last[16];
  const __m128i prediction = Predict(filter, Load(row + i - pixelBytes), Load(above + i), Load(above + i - pixelBytes));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(last), _mm_sub_epi8(Load(row + i), prediction));
  std::memcpy(output + i, last, rowBytes - i);
}

}  // namespace

PngFilter::PngFilter(size_t rowBytes, size_t pixelBytes, bool adaptive)
    : rowBytes_(rowBytes),
      pixelBytes_(pixelBytes),
      adaptive_(adaptive),
      current_(rowBytes + 2 * kMargin),
      above_(rowBytes + 2 * kMargin) {}

void PngFilter::Apply(uint8_t* output) {
  const uint8_t* row = current_.data() + kMargin;
  const uint8_t* above = above_.data() + kMargin;
  const Filter filter = adaptive_ ? Choose(row, above, rowBytes_, pixelBytes_) : kNone;
  output[0] = filter;
  if (filter == kNone) {
    std::memcpy(output + 1, row, rowBytes_);
  } else {
    Write(filter, row, above, rowBytes_, pixelBytes_, output + 1);
  }
  current_.swap(above_);
}

}  // namespace zvfile
