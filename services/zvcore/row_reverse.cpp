#include "services/zvcore/row_reverse.h"

#include <tmmintrin.h>

#include <array>
#include <cstring>

namespace zvcore {
namespace {

constexpr std::array<uint8_t, 256> MakeReversedBytes(bool nibbles) {
  std::array<uint8_t, 256> table = {};
  for (unsigned value = 0; value < 256; ++value) {
    unsigned reversed = value << 4 | value >> 4;
    if (!nibbles) {
      reversed = (reversed & 0x33) << 2 | (reversed >> 2 & 0x33);
      reversed = (reversed & 0x55) << 1 | (reversed >> 1 & 0x55);
    }
    table[value] = static_cast<uint8_t>(reversed);
  }
  return table;
}

constexpr auto kReversedBits = MakeReversedBytes(false);
constexpr auto kReversedNibbles = MakeReversedBytes(true);

// Reverses packed indices. The unused bits of the last byte come out first and are shifted away.
void ReversePacked(const uint8_t* in, int32_t pixels, int bits, uint8_t* out) {
  const auto& reversed = bits == 1 ? kReversedBits : kReversedNibbles;
  const int64_t usedBits = static_cast<int64_t>(pixels) * bits;
  const int64_t bytes = (usedBits + 7) / 8;
  const int unused = static_cast<int>(bytes * 8 - usedBits);
  unsigned here = reversed[in[bytes - 1]];
  for (int64_t i = 0; i < bytes; ++i) {
    const unsigned next = i + 1 < bytes ? reversed[in[bytes - 2 - i]] : 0;
    out[i] = static_cast<uint8_t>((here << 8 | next) << unused >> 8);
    here = next;
  }
}

template <int bytes>
void ReversePixels(const uint8_t* in, int64_t pixels, uint8_t* out) {
  const uint8_t* from = in + (pixels - 1) * bytes;
  for (int64_t x = 0; x < pixels; ++x, from -= bytes, out += bytes) std::memcpy(out, from, bytes);
}

template <int pixelBytes>
__m128i ReverseVector(__m128i value) {
  value = _mm_shuffle_epi32(value, pixelBytes == 8 ? 0x4E : 0x1B);
  if (pixelBytes <= 2) value = _mm_shufflehi_epi16(_mm_shufflelo_epi16(value, 0xB1), 0xB1);
  if (pixelBytes == 1) value = _mm_or_si128(_mm_slli_epi16(value, 8), _mm_srli_epi16(value, 8));
  return value;
}

template <int pixelBytes>
void ReverseVectors(const uint8_t* in, int64_t pixels, uint8_t* out) {
  constexpr int kAtOnce = 16 / pixelBytes;
  int64_t left = pixels;
  for (; left >= kAtOnce; left -= kAtOnce, out += 16) {
    const __m128i value = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + (left - kAtOnce) * pixelBytes));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), ReverseVector<pixelBytes>(value));
  }
  ReversePixels<pixelBytes>(in, left, out);
}

// Five pixels of 3 bytes at a time. The shuffle of bytes came with SSSE3, so that it has to be asked for. 16 bytes are read,
// the first of which is not wanted, and 16 written, the last of which the next pixel overwrites.
__attribute__((target("ssse3"))) void ReverseTriples(const uint8_t* in, int64_t pixels, uint8_t* out) {
  const __m128i reversal = _mm_setr_epi8(13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3, -1);
  int64_t left = pixels;
  for (; left >= 6; left -= 5, out += 15) {
    const __m128i value = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + (left - 5) * 3 - 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(value, reversal));
  }
  ReversePixels<3>(in, left, out);
}

__attribute__((target("ssse3"))) void ReverseBytes(const uint8_t* in, int64_t pixels, uint8_t* out) {
  const __m128i reversal = _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  int64_t left = pixels;
  for (; left >= 16; left -= 16, out += 16) {
    const __m128i value = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + left - 16));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(value, reversal));
  }
  ReversePixels<1>(in, left, out);
}

void Reverse8(const uint8_t* in, int64_t pixels, uint8_t* out) {
  __builtin_cpu_supports("ssse3") ? ReverseBytes(in, pixels, out) : ReverseVectors<1>(in, pixels, out);
}

void Reverse24(const uint8_t* in, int64_t pixels, uint8_t* out) {
  __builtin_cpu_supports("ssse3") ? ReverseTriples(in, pixels, out) : ReversePixels<3>(in, pixels, out);
}

}  // namespace

void ReverseRow(const uint8_t* in, int32_t pixels, int bits, uint8_t* out) {
  switch (bits) {
    case 1:
    case 4: return ReversePacked(in, pixels, bits, out);
    case 8: return Reverse8(in, pixels, out);
    case 16: return ReverseVectors<2>(in, pixels, out);
    case 24: return Reverse24(in, pixels, out);
    case 32: return ReverseVectors<4>(in, pixels, out);
    case 48: return ReversePixels<6>(in, pixels, out);
    default: return ReverseVectors<8>(in, pixels, out);
  }
}

}  // namespace zvcore
