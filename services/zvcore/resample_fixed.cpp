#include "services/zvcore/resample_fixed.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "services/zvcore/result_codes.h"

namespace zvcore {
namespace {

__m128i Load(const void* at) { return _mm_loadu_si128(static_cast<const __m128i*>(at)); }
__m128i LoadHalf(const void* at) { return _mm_loadl_epi64(static_cast<const __m128i*>(at)); }
void Store(void* at, __m128i value) { _mm_storeu_si128(static_cast<__m128i*>(at), value); }

// Two neighbouring weights in every 32-bit lane, as _mm_madd_epi16 wants them.
__m128i PairOfWeights(const int16_t* weights) {
  int32_t both;
  std::memcpy(&both, weights, 4);
  return _mm_set1_epi32(both);
}

__m128i ScaleRounded(__m128i sum, __m128 scale) { return _mm_cvtps_epi32(_mm_mul_ps(_mm_cvtepi32_ps(sum), scale)); }

uint8_t ClampToByte(float value) { return static_cast<uint8_t>(std::clamp(std::lrint(value), 0L, 255L)); }

// The weighted sum of one pixel in 32-bit lanes; the fourth lane of three channels is noise.
template <int channels>
__m128i FilterPixel(const int16_t* row, const AxisWeights& weights, int32_t x) {
  static_assert(channels == 3 || channels == 4);
  const AxisSpan span = weights.Span(x);
  const int16_t* at = row + static_cast<int64_t>(span.first) * channels;
  const int16_t* weight = weights.Fixed(x);
  __m128i sum = _mm_setzero_si128();
  for (int32_t k = 0; k < span.count; k += 2, at += 2 * channels) {
    const __m128i both = _mm_unpacklo_epi16(LoadHalf(at), LoadHalf(at + channels));
    sum = _mm_add_epi32(sum, _mm_madd_epi16(both, PairOfWeights(weight + k)));
  }
  return sum;
}

// Two partial sums of one grey pixel in the low lanes.
__m128i FilterGray(const int16_t* row, const AxisWeights& weights, int32_t x) {
  const AxisSpan span = weights.Span(x);
  const int16_t* at = row + span.first;
  const int16_t* weight = weights.Fixed(x);
  __m128i sum = _mm_setzero_si128();
  for (int32_t k = 0; k < span.count; k += 4) {
    sum = _mm_add_epi32(sum, _mm_madd_epi16(LoadHalf(at + k), LoadHalf(weight + k)));
  }
  return sum;
}

// Four neighbouring result pixels, scaled and rounded: one pixel a vector, or all four in vector 0 for grey. Pixels
// past the last are copies of it.
template <int channels>
void FilterFour(const int16_t* row, const AxisWeights& weights, int32_t x, int32_t width, float factor,
                __m128i (&out)[4]) {
  int32_t at[4];
  float scale[4];
  for (int i = 0; i < 4; ++i) {
    at[i] = std::min(x + i, width - 1);
    scale[i] = weights.fixedScale[static_cast<size_t>(at[i])] * factor;
  }
  if constexpr (channels == 1) {
    const __m128i ab = _mm_unpacklo_epi64(FilterGray(row, weights, at[0]), FilterGray(row, weights, at[1]));
    const __m128i cd = _mm_unpacklo_epi64(FilterGray(row, weights, at[2]), FilterGray(row, weights, at[3]));
    const __m128i even = _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(ab), _mm_castsi128_ps(cd), 0x88));
    const __m128i odd = _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(ab), _mm_castsi128_ps(cd), 0xDD));
    out[0] = ScaleRounded(_mm_add_epi32(even, odd), _mm_loadu_ps(scale));
  } else {
    for (int i = 0; i < 4; ++i)
      out[i] = ScaleRounded(FilterPixel<channels>(row, weights, at[i]), _mm_set1_ps(scale[i]));
  }
}

// The four pixels as bytes: 4 of them for grey, else a pixel in every 4 bytes.
template <int channels>
__m128i PackFourToBytes(const __m128i (&pixels)[4]) {
  if constexpr (channels == 1) {
    const __m128i words = _mm_packs_epi32(pixels[0], pixels[0]);
    return _mm_packus_epi16(words, words);
  } else {
    return _mm_packus_epi16(_mm_packs_epi32(pixels[0], pixels[1]), _mm_packs_epi32(pixels[2], pixels[3]));
  }
}

// Moves four pixels out of a vector that holds one in every 4 bytes. For three channels the last store writes one
// byte too many.
template <int channels>
void StoreFourBytes(uint8_t* out, __m128i packed) {
  if constexpr (channels == 4) {
    Store(out, packed);
  } else {
    uint32_t lanes[4];
    Store(lanes, packed);
    for (int i = 0; i < (channels == 1 ? 1 : 4); ++i) std::memcpy(out + i * channels, &lanes[i], 4);
  }
}

template <int channels>
void FilterToBytes(const int16_t* row, const AxisWeights& weights, int32_t width, uint8_t* out) {
  constexpr float kFactor = 1.0f / kWordScale;
  __m128i four[4];
  int32_t x = 0;
  for (; x + 4 < width; x += 4, out += 4 * channels) {
    FilterFour<channels>(row, weights, x, width, kFactor, four);
    StoreFourBytes<channels>(out, PackFourToBytes<channels>(four));
  }
  uint8_t rest[20];
  FilterFour<channels>(row, weights, x, width, kFactor, four);
  StoreFourBytes<channels>(rest, PackFourToBytes<channels>(four));
  std::memcpy(out, rest, static_cast<size_t>(width - x) * channels);
}

template <int channels>
void FilterToWords(const int16_t* row, const AxisWeights& weights, int32_t width, int16_t* out) {
  __m128i four[4];
  for (int32_t x = 0; x < width; x += 4, out += 4 * channels) {
    FilterFour<channels>(row, weights, x, width, 1, four);
    for (int i = 0; i < (channels == 1 ? 1 : 4); ++i) {
      _mm_storel_epi64(reinterpret_cast<__m128i*>(out + i * channels), _mm_packs_epi32(four[i], four[i]));
    }
  }
}

}  // namespace

int32_t ByteRowSum::Prepare(int64_t samplesPerRow) {
  samples = samplesPerRow;
  return sums.Allocate(static_cast<size_t>(samplesPerRow)) ? SUCCESS : ERROR_OUT_OF_MEMORY;
}

void ByteRowSum::Begin(int32_t count) {
  toCome = count;
  grouped = 0;
  hasSums = false;
}

void ByteRowSum::Add(const uint8_t* row, int16_t weight) {
  group.rows[grouped] = row;
  group.weights[grouped] = weight;
  ++grouped;
  --toCome;
  if (grouped < kRowsAtOnce || toCome == 0) return;
  hasSums ? Flush<false, false>(1, nullptr) : Flush<true, false>(1, nullptr);
  hasSums = true;
}

void ByteRowSum::End(float scale, int16_t* out) {
  hasSums ? Flush<false, true>(scale * kWordScale, out) : Flush<true, true>(scale * kWordScale, out);
}

template <bool first, bool last>
void ByteRowSum::Flush(float scale, int16_t* out) {
  if (last && grouped % 2) {
    group.rows[grouped] = group.rows[grouped - 1];
    group.weights[grouped] = 0;
  }
  switch ((grouped + 1) / 2) {
    case 1: SumGroup<1, first, last>(scale, out); break;
    case 2: SumGroup<2, first, last>(scale, out); break;
    case 3: SumGroup<3, first, last>(scale, out); break;
    default: SumGroup<4, first, last>(scale, out);
  }
  grouped = 0;
}

// Rows are taken in pairs. Sums of the rows before come in unless these are the first, and go out unless they are the
// last.
template <int pairs, bool first, bool last>
void ByteRowSum::SumGroup(float scale, int16_t* out) {
  const __m128i zero = _mm_setzero_si128();
  const __m128 scales = _mm_set1_ps(scale);
  __m128i weights[pairs];
  for (int p = 0; p < pairs; ++p) weights[p] = PairOfWeights(group.weights + 2 * p);
  int64_t x = 0;
  for (; x + 16 <= samples; x += 16) {
    __m128i sum[4];
    for (int q = 0; q < 4; ++q) sum[q] = first ? zero : Load(&sums[0] + x + 4 * q);
    for (int p = 0; p < pairs; ++p) {
      const __m128i a = Load(group.rows[2 * p] + x);
      const __m128i b = Load(group.rows[2 * p + 1] + x);
      const __m128i low = _mm_unpacklo_epi8(a, b);
      const __m128i high = _mm_unpackhi_epi8(a, b);
      sum[0] = _mm_add_epi32(sum[0], _mm_madd_epi16(_mm_unpacklo_epi8(low, zero), weights[p]));
      sum[1] = _mm_add_epi32(sum[1], _mm_madd_epi16(_mm_unpackhi_epi8(low, zero), weights[p]));
      sum[2] = _mm_add_epi32(sum[2], _mm_madd_epi16(_mm_unpacklo_epi8(high, zero), weights[p]));
      sum[3] = _mm_add_epi32(sum[3], _mm_madd_epi16(_mm_unpackhi_epi8(high, zero), weights[p]));
    }
    if constexpr (last) {
      Store(out + x, _mm_packs_epi32(ScaleRounded(sum[0], scales), ScaleRounded(sum[1], scales)));
      Store(out + x + 8, _mm_packs_epi32(ScaleRounded(sum[2], scales), ScaleRounded(sum[3], scales)));
    } else {
      for (int q = 0; q < 4; ++q) Store(&sums[0] + x + 4 * q, sum[q]);
    }
  }
  for (; x < samples; ++x) {
    int32_t sum = first ? 0 : sums[static_cast<size_t>(x)];
    for (int k = 0; k < 2 * pairs; ++k) sum += group.weights[k] * group.rows[k][x];
    if constexpr (last) {
      out[x] = static_cast<int16_t>(std::lrint(static_cast<float>(sum) * scale));
    } else {
      sums[static_cast<size_t>(x)] = sum;
    }
  }
}

void SumWordRows(const int16_t* const* rows, const int16_t* weights, int32_t count, float scale, int64_t samples,
                 uint8_t* out) {
  const int16_t* all[4];
  int16_t fourWeights[4] = {};
  for (int k = 0; k < 4; ++k) all[k] = rows[std::min(k, count - 1)];
  std::copy_n(weights, count, fourWeights);
  const __m128i firstPair = PairOfWeights(fourWeights), secondPair = PairOfWeights(fourWeights + 2);
  const float byteScale = scale / kWordScale;
  const __m128 scales = _mm_set1_ps(byteScale);
  int64_t x = 0;
  for (; x + 8 <= samples; x += 8) {
    const __m128i a = Load(all[0] + x), b = Load(all[1] + x), c = Load(all[2] + x), d = Load(all[3] + x);
    const __m128i low = _mm_add_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(a, b), firstPair),
                                      _mm_madd_epi16(_mm_unpacklo_epi16(c, d), secondPair));
    const __m128i high = _mm_add_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(a, b), firstPair),
                                       _mm_madd_epi16(_mm_unpackhi_epi16(c, d), secondPair));
    const __m128i words = _mm_packs_epi32(ScaleRounded(low, scales), ScaleRounded(high, scales));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + x), _mm_packus_epi16(words, words));
  }
  for (; x < samples; ++x) {
    int32_t sum = 0;
    for (int k = 0; k < 4; ++k) sum += fourWeights[k] * all[k][x];
    out[x] = ClampToByte(static_cast<float>(sum) * byteScale);
  }
}

void WidenRow(const uint8_t* row, int64_t samples, int16_t* out) {
  for (int64_t x = 0; x < samples; ++x) out[x] = static_cast<int16_t>(row[x] * kWordScale);
}

void FilterWordsToBytes(const int16_t* row, const AxisWeights& weights, int channels, int32_t width, uint8_t* out) {
  if (channels == 1) return FilterToBytes<1>(row, weights, width, out);
  if (channels == 3) return FilterToBytes<3>(row, weights, width, out);
  return FilterToBytes<4>(row, weights, width, out);
}

void FilterWordsToWords(const int16_t* row, const AxisWeights& weights, int channels, int32_t width, int16_t* out) {
  if (channels == 1) return FilterToWords<1>(row, weights, width, out);
  if (channels == 3) return FilterToWords<3>(row, weights, width, out);
  return FilterToWords<4>(row, weights, width, out);
}

}  // namespace zvcore
