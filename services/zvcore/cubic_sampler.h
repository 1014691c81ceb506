/* Samples a picture between its pixels from the four by four around the position: cubic convolution with a = -0.5, or
 * linear, which is the same sum with other weights. Rows are those of the bitmap; the sampler owns its weight table
 * alone. */
#ifndef ZV_ZVCORE_CUBIC_SAMPLER_H
#define ZV_ZVCORE_CUBIC_SAMPLER_H

#include <emmintrin.h>

#include <cstdint>
#include <cstring>

#include "services/zvcore/memory.h"

namespace zvcore {

// Weights of four neighbouring pixels by a 32.32 position, whose fraction lies between the middle two.
class CubicWeights {
 public:
  // ERROR_OUT_OF_MEMORY.
  int32_t Prepare(bool linear);
  // Sum 16384; to the nearest of 1024 positions.
  const int16_t* Fixed(int64_t position) const {
    return fixed.data() + (static_cast<size_t>(position >> (32 - kPhaseBits)) & (kPhases - 1)) * 4;
  }
  // Sum 1; polynomials of the fraction.
  __m128 Real(int64_t position) const {
    const __m128 t = _mm_set1_ps(static_cast<float>(static_cast<uint32_t>(position)) * (1.0f / 4294967296.0f));
    __m128 sum = _mm_add_ps(_mm_mul_ps(cubed, t), squared);
    sum = _mm_add_ps(_mm_mul_ps(sum, t), plain);
    return _mm_add_ps(_mm_mul_ps(sum, t), constant);
  }

 private:
  static constexpr int kPhaseBits = 10;
  static constexpr size_t kPhases = size_t{1} << kPhaseBits;
  Buffer<int16_t> fixed;
  __m128 cubed, squared, plain, constant;
};

// at is the upper left of the four by four pixels; rows are step bytes apart, and 16 bytes of each are read. The
// channels are the low bytes of the result.
template <int channels>
inline uint32_t SampleBytes(const uint8_t* at, int64_t step, const int16_t* across, const int16_t* down) {
  const __m128i zero = _mm_setzero_si128();
  int32_t pair[2];
  std::memcpy(pair, down, sizeof pair);
  const __m128i upperWeights = _mm_set1_epi32(pair[0]), lowerWeights = _mm_set1_epi32(pair[1]);
  const auto load = [&](int row) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + row * step)); };
  const __m128i a = load(0), b = load(1), c = load(2), d = load(3);
  // Down the columns first: words of 64 times the level.
  const auto blend = [&](__m128i upper, __m128i lower) {
    const __m128i low = _mm_add_epi32(_mm_madd_epi16(_mm_unpacklo_epi8(upper, zero), upperWeights),
                                      _mm_madd_epi16(_mm_unpacklo_epi8(lower, zero), lowerWeights));
    const __m128i high = _mm_add_epi32(_mm_madd_epi16(_mm_unpackhi_epi8(upper, zero), upperWeights),
                                       _mm_madd_epi16(_mm_unpackhi_epi8(lower, zero), lowerWeights));
    const __m128i half = _mm_set1_epi32(128);
    return _mm_packs_epi32(_mm_srai_epi32(_mm_add_epi32(low, half), 8), _mm_srai_epi32(_mm_add_epi32(high, half), 8));
  };
  std::memcpy(pair, across, sizeof pair);
  const __m128i leftWeights = _mm_set1_epi32(pair[0]), rightWeights = _mm_set1_epi32(pair[1]);
  const __m128i first = blend(_mm_unpacklo_epi8(a, b), _mm_unpacklo_epi8(c, d));
  __m128i sum;
  if constexpr (channels == 1) {
    sum = _mm_madd_epi16(first, _mm_unpacklo_epi64(_mm_unpacklo_epi32(leftWeights, rightWeights), zero));
    sum = _mm_add_epi32(sum, _mm_srli_si128(sum, 4));
  } else {
    // Words of two neighbouring pixels, channel by channel.
    const __m128i second = blend(_mm_unpackhi_epi8(a, b), _mm_unpackhi_epi8(c, d));
    const __m128i right = channels == 4 ? second : _mm_or_si128(_mm_srli_si128(first, 12), _mm_slli_si128(second, 4));
    const __m128i leftPair = _mm_unpacklo_epi16(first, _mm_srli_si128(first, 2 * channels));
    const __m128i rightPair = _mm_unpacklo_epi16(right, _mm_srli_si128(right, 2 * channels));
    sum = _mm_add_epi32(_mm_madd_epi16(leftPair, leftWeights), _mm_madd_epi16(rightPair, rightWeights));
  }
  const __m128i levels = _mm_srai_epi32(_mm_add_epi32(sum, _mm_set1_epi32(1 << 19)), 20);
  const __m128i words = _mm_packs_epi32(levels, levels);
  return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
}

// One pixel of 1, 3 or 4 channels in the low lanes. Up to 8 bytes are read.
template <typename T, int channels>
inline __m128 LoadReal(const uint8_t* at) {
  if constexpr (channels == 1) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return _mm_set_ss(static_cast<float>(value));
  }
  const __m128i zero = _mm_setzero_si128();
  __m128i words = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(at));
  if constexpr (sizeof(T) == 1) words = _mm_unpacklo_epi8(words, zero);
  return _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, zero));
}

// As SampleBytes for any channels. With alpha, colours are multiplied by it on the way in when they are not yet; the
// result is always multiplied.
template <typename T, int channels>
inline __m128 SampleReal(const uint8_t* at, int64_t step, __m128 across, __m128 down, bool multiply) {
  const auto spread = [](__m128 weights, __m128(&out)[4]) {
    out[0] = _mm_shuffle_ps(weights, weights, 0x00);
    out[1] = _mm_shuffle_ps(weights, weights, 0x55);
    out[2] = _mm_shuffle_ps(weights, weights, 0xAA);
    out[3] = _mm_shuffle_ps(weights, weights, 0xFF);
  };
  __m128 columnWeights[4], rowWeights[4];
  spread(across, columnWeights);
  spread(down, rowWeights);
  constexpr float kShare = sizeof(T) == 1 ? 1 / 255.0f : 1 / 65535.0f;
  const __m128 colorShare = _mm_setr_ps(kShare, kShare, kShare, 0), alphaItself = _mm_setr_ps(0, 0, 0, 1);
  __m128 sum = _mm_setzero_ps();
  for (int row = 0; row < 4; ++row, at += step) {
    __m128 line = _mm_setzero_ps();
    for (int column = 0; column < 4; ++column) {
      __m128 pixel = LoadReal<T, channels>(at + column * channels * static_cast<int>(sizeof(T)));
      if (channels == 4 && multiply) {
        const __m128 alpha = _mm_shuffle_ps(pixel, pixel, 0xFF);
        pixel = _mm_mul_ps(pixel, _mm_add_ps(_mm_mul_ps(alpha, colorShare), alphaItself));
      }
      line = _mm_add_ps(line, _mm_mul_ps(pixel, columnWeights[column]));
    }
    sum = _mm_add_ps(sum, _mm_mul_ps(line, rowWeights[row]));
  }
  return sum;
}

}  // namespace zvcore

#endif
