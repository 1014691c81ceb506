#include "services/zvcore/transpose.h"

#include <tmmintrin.h>

#include <algorithm>
#include <cstring>

namespace zvcore {
namespace {

// Rows of the source that are done at a time. Together with the width of a band it decides how often each page of memory is
// come back to; found by trial with pictures of 24 megapixels.
template <int pixelBytes>
constexpr int32_t kTileHeight = pixelBytes == 3 ? 512 : 256;

__m128i Load(const uint8_t* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }
void Store(uint8_t* at, __m128i value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(at), value); }

// One square block of pixels of so many bytes. Each knows its side.
template <int pixelBytes>
struct Block {
  static constexpr int kSide = 1;
  static void Transpose(SourceRows source, DestinationRows destination) {
    std::memcpy(destination.first, source.first, pixelBytes);
  }
};

template <>
struct Block<1> {
  static constexpr int kSide = 16;
  static void Transpose(SourceRows source, DestinationRows destination) {
    __m128i rows[16], mixed[16];
    for (int i = 0; i < 16; ++i) rows[i] = Load(source.first + i * source.step);
    // Dealing the upper eight rows into the lower eight four times over, like cards, exchanges rows and columns.
    for (int round = 0; round < 4; ++round) {
      for (int i = 0; i < 8; ++i) {
        mixed[2 * i] = _mm_unpacklo_epi8(rows[i], rows[i + 8]);
        mixed[2 * i + 1] = _mm_unpackhi_epi8(rows[i], rows[i + 8]);
      }
      std::copy(mixed, mixed + 16, rows);
    }
    for (int i = 0; i < 16; ++i) Store(destination.first + i * destination.step, rows[i]);
  }
};

template <>
struct Block<2> {
  static constexpr int kSide = 8;
  static void Transpose(SourceRows source, DestinationRows destination) {
    __m128i a[8], b[8];
    for (int i = 0; i < 8; ++i) a[i] = Load(source.first + i * source.step);
    for (int i = 0; i < 4; ++i) {
      b[2 * i] = _mm_unpacklo_epi16(a[2 * i], a[2 * i + 1]);
      b[2 * i + 1] = _mm_unpackhi_epi16(a[2 * i], a[2 * i + 1]);
    }
    // Halves of four rows each: columns 0 1, 2 3, 4 5, 6 7 of rows 0 to 3 in a[0..3], of rows 4 to 7 in a[4..7].
    for (int half = 0; half < 8; half += 4) {
      a[half] = _mm_unpacklo_epi32(b[half], b[half + 2]);
      a[half + 1] = _mm_unpackhi_epi32(b[half], b[half + 2]);
      a[half + 2] = _mm_unpacklo_epi32(b[half + 1], b[half + 3]);
      a[half + 3] = _mm_unpackhi_epi32(b[half + 1], b[half + 3]);
    }
    for (int i = 0; i < 4; ++i) {
      Store(destination.first + 2 * i * destination.step, _mm_unpacklo_epi64(a[i], a[i + 4]));
      Store(destination.first + (2 * i + 1) * destination.step, _mm_unpackhi_epi64(a[i], a[i + 4]));
    }
  }
};

template <>
struct Block<4> {
  static constexpr int kSide = 4;
  static void Transpose(SourceRows source, DestinationRows destination) {
    __m128i rows[4];
    for (int i = 0; i < 4; ++i) rows[i] = Load(source.first + i * source.step);
    const __m128i low01 = _mm_unpacklo_epi32(rows[0], rows[1]), high01 = _mm_unpackhi_epi32(rows[0], rows[1]);
    const __m128i low23 = _mm_unpacklo_epi32(rows[2], rows[3]), high23 = _mm_unpackhi_epi32(rows[2], rows[3]);
    Store(destination.first, _mm_unpacklo_epi64(low01, low23));
    Store(destination.first + destination.step, _mm_unpackhi_epi64(low01, low23));
    Store(destination.first + 2 * destination.step, _mm_unpacklo_epi64(high01, high23));
    Store(destination.first + 3 * destination.step, _mm_unpackhi_epi64(high01, high23));
  }
};

template <>
struct Block<8> {
  static constexpr int kSide = 2;
  static void Transpose(SourceRows source, DestinationRows destination) {
    const __m128i a = Load(source.first), b = Load(source.first + source.step);
    Store(destination.first, _mm_unpacklo_epi64(a, b));
    Store(destination.first + destination.step, _mm_unpackhi_epi64(a, b));
  }
};

// Four by four pixels of 3 bytes, as doublewords with a byte to spare. The shuffle of bytes came with SSSE3, so that
// it has to be asked for. 16 bytes of every row are read and, when the row goes on, 16 written, of which the pixels to the
// right overwrite the last four; else 12.
template <bool rowGoesOn>
__attribute__((target("ssse3"))) void TransposeTriples(SourceRows source, DestinationRows destination) {
  const __m128i spread = _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  const __m128i gather = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  __m128i rows[4];
  for (int i = 0; i < 4; ++i) {
    rows[i] =
        _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(source.first + i * source.step)), spread);
  }
  const __m128i low01 = _mm_unpacklo_epi32(rows[0], rows[1]), high01 = _mm_unpackhi_epi32(rows[0], rows[1]);
  const __m128i low23 = _mm_unpacklo_epi32(rows[2], rows[3]), high23 = _mm_unpackhi_epi32(rows[2], rows[3]);
  const __m128i columns[4] = {_mm_unpacklo_epi64(low01, low23), _mm_unpackhi_epi64(low01, low23),
                              _mm_unpacklo_epi64(high01, high23), _mm_unpackhi_epi64(high01, high23)};
  for (int i = 0; i < 4; ++i) {
    const __m128i packed = _mm_shuffle_epi8(columns[i], gather);
    uint8_t* out = destination.first + i * destination.step;
    if (rowGoesOn) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out), packed);
      continue;
    }
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), packed);
    const int32_t rest = _mm_cvtsi128_si32(_mm_srli_si128(packed, 8));
    std::memcpy(out + 8, &rest, 4);
  }
}

// As SourceRows and DestinationRows, advanced to a pixel.
template <int pixelBytes>
SourceRows At(SourceRows rows, int64_t x, int64_t y) {
  return {rows.first + y * rows.step + x * pixelBytes, rows.step};
}
template <int pixelBytes>
DestinationRows At(DestinationRows rows, int64_t x, int64_t y) {
  return {rows.first + y * rows.step + x * pixelBytes, rows.step};
}

template <int pixelBytes>
void TransposeOneByOne(SourceRows source, int32_t width, int32_t height, DestinationRows destination) {
  for (int32_t x = 0; x < width; ++x) {
    const uint8_t* from = source.first + static_cast<int64_t>(x) * pixelBytes;
    uint8_t* to = destination.first + x * destination.step;
    for (int32_t y = 0; y < height; ++y, from += source.step, to += pixelBytes) std::memcpy(to, from, pixelBytes);
  }
}

template <int pixelBytes>
void TransposeTile(SourceRows source, int32_t width, int32_t height, DestinationRows destination) {
  constexpr int kSide = Block<pixelBytes>::kSide;
  const int32_t wholeWidth = kSide == 1 ? 0 : width / kSide * kSide;
  const int32_t wholeHeight = height / kSide * kSide;
  for (int32_t x = 0; x < wholeWidth; x += kSide) {
    for (int32_t y = 0; y < wholeHeight; y += kSide) {
      Block<pixelBytes>::Transpose(At<pixelBytes>(source, x, y), At<pixelBytes>(destination, y, x));
    }
  }
  TransposeOneByOne<pixelBytes>(At<pixelBytes>(source, wholeWidth, 0), width - wholeWidth, height,
                                At<pixelBytes>(destination, 0, wholeWidth));
  TransposeOneByOne<pixelBytes>(At<pixelBytes>(source, 0, wholeHeight), wholeWidth, height - wholeHeight,
                                At<pixelBytes>(destination, wholeHeight, 0));
}

template <int pixelBytes>
void TransposeBand(SourceRows source, int32_t first, int32_t last, int32_t height, DestinationRows destination) {
  for (int32_t y = 0; y < height; y += kTileHeight<pixelBytes>) {
    TransposeTile<pixelBytes>(At<pixelBytes>(source, first, y), last - first,
                              std::min(kTileHeight<pixelBytes>, height - y), At<pixelBytes>(destination, y, first));
  }
}

// All of a tile but its edges in blocks; the last columns are left to single pixels, since blocks read past their
// pixels.
__attribute__((target("ssse3"))) void TransposeTripleTile(SourceRows source, int32_t width, int32_t height,
                                                          int32_t columnsToTheRight, DestinationRows destination) {
  constexpr int32_t kReadAhead = 2;
  const int32_t wholeWidth = std::max(0, std::min(width, width + columnsToTheRight - kReadAhead)) / 4 * 4;
  const int32_t wholeHeight = height / 4 * 4;
  for (int32_t x = 0; x < wholeWidth; x += 4) {
    int32_t y = 0;
    for (; y + 4 < wholeHeight; y += 4) TransposeTriples<true>(At<3>(source, x, y), At<3>(destination, y, x));
    if (y < wholeHeight) TransposeTriples<false>(At<3>(source, x, y), At<3>(destination, y, x));
  }
  TransposeOneByOne<3>(At<3>(source, wholeWidth, 0), width - wholeWidth, height, At<3>(destination, 0, wholeWidth));
  TransposeOneByOne<3>(At<3>(source, 0, wholeHeight), wholeWidth, height - wholeHeight,
                       At<3>(destination, wholeHeight, 0));
}

void TransposeTripleBand(SourceRows source, int32_t first, int32_t last, int32_t width, int32_t height,
                         DestinationRows destination) {
  if (!__builtin_cpu_supports("ssse3")) return TransposeBand<3>(source, first, last, height, destination);
  for (int32_t y = 0; y < height; y += kTileHeight<3>) {
    TransposeTripleTile(At<3>(source, first, y), last - first, std::min(kTileHeight<3>, height - y), width - last,
                        At<3>(destination, y, first));
  }
}

// Eight rows of eight bits, the first row in the highest byte (the exchange of ever larger blocks, Warren 2012,
// chapter 7).
uint64_t TransposeBits(uint64_t x) {
  x = (x & 0xAA55AA55AA55AA55u) | (x & 0x00AA00AA00AA00AAu) << 7 | (x >> 7 & 0x00AA00AA00AA00AAu);
  x = (x & 0xCCCC3333CCCC3333u) | (x & 0x0000CCCC0000CCCCu) << 14 | (x >> 14 & 0x0000CCCC0000CCCCu);
  return (x & 0xF0F0F0F00F0F0F0Fu) | (x & 0x00000000F0F0F0F0u) << 28 | (x >> 28 & 0x00000000F0F0F0F0u);
}

void TransposeBitBand(SourceRows source, int32_t first, int32_t last, int32_t height, DestinationRows destination) {
  for (int32_t y = 0; y < height; y += 8) {
    const int32_t rows = std::min(8, height - y);
    for (int32_t x = first; x < last; x += 8) {
      uint64_t block = 0;
      for (int32_t i = 0; i < rows; ++i)
        block |= static_cast<uint64_t>(source.first[(y + i) * source.step + x / 8]) << (56 - 8 * i);
      block = TransposeBits(block);
      const int32_t columns = std::min(8, last - x);
      for (int32_t i = 0; i < columns; ++i)
        destination.first[(x + i) * destination.step + y / 8] = static_cast<uint8_t>(block >> (56 - 8 * i));
    }
  }
}

void TransposeNibbleBand(SourceRows source, int32_t first, int32_t last, int32_t height, DestinationRows destination) {
  for (int32_t y = 0; y < height; y += 2) {
    const uint8_t* upper = source.first + y * source.step;
    const uint8_t* lower = y + 1 < height ? upper + source.step : nullptr;
    for (int32_t x = first; x < last; x += 2) {
      const unsigned a = upper[x / 2], b = lower ? lower[x / 2] : 0;
      uint8_t* out = destination.first + x * destination.step + y / 2;
      *out = static_cast<uint8_t>((a & 0xF0) | b >> 4);
      if (x + 1 < last) out[destination.step] = static_cast<uint8_t>((a & 15) << 4 | (b & 15));
    }
  }
}

}  // namespace

void TransposeColumns(SourceRows source, int32_t firstColumn, int32_t lastColumn, int32_t width, int32_t height,
                      int bits, DestinationRows destination) {
  switch (bits) {
    case 1: return TransposeBitBand(source, firstColumn, lastColumn, height, destination);
    case 4: return TransposeNibbleBand(source, firstColumn, lastColumn, height, destination);
    case 8: return TransposeBand<1>(source, firstColumn, lastColumn, height, destination);
    case 16: return TransposeBand<2>(source, firstColumn, lastColumn, height, destination);
    case 24: return TransposeTripleBand(source, firstColumn, lastColumn, width, height, destination);
    case 32: return TransposeBand<4>(source, firstColumn, lastColumn, height, destination);
    case 48: return TransposeBand<6>(source, firstColumn, lastColumn, height, destination);
    default: return TransposeBand<8>(source, firstColumn, lastColumn, height, destination);
  }
}

}  // namespace zvcore
