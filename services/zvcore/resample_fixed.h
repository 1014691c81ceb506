/* Fixed-point passes over rows of 8-bit channels (SSE2, which every x86-64 processor has). Between the two passes
 * samples are 16-bit words of kWordScale times the level, which leaves room for what the cubic kernel overshoots.
 * Rows of words come from Buffer: the passes read and write up to a vector past their end. Rows of bytes are never
 * touched past their end. */
#ifndef ZV_ZVCORE_RESAMPLE_FIXED_H
#define ZV_ZVCORE_RESAMPLE_FIXED_H

#include <cstdint>

#include "services/zvcore/resample_weights.h"

namespace zvcore {

constexpr int kWordScale = 64;
// The largest magnitude of a word, overshoot included.
constexpr int kLargestWord = 255 * kWordScale * 5 / 4;

// out = sum of weight * row over rows of bytes, a few rows at a time.
class ByteRowSum {
 public:
  static constexpr int kRowsAtOnce = 8;

  // ERROR_OUT_OF_MEMORY.
  int32_t Prepare(int64_t samplesPerRow);
  // Starts a sum of `count` rows.
  void Begin(int32_t count);
  // The row must stay as it is until kRowsAtOnce further rows have been added, or until the end.
  void Add(const uint8_t* row, int16_t weight);
  // After the last row: multiplies by scale, and by kWordScale. out is a row of words.
  void End(float scale, int16_t* out);

 private:
  struct Group {
    const uint8_t* rows[kRowsAtOnce];
    int16_t weights[kRowsAtOnce];
  };
  template <bool first, bool last>
  void Flush(float scale, int16_t* out);
  template <int pairs, bool first, bool last>
  void SumGroup(float scale, int16_t* out);

  int64_t samples = 0;
  Buffer<int32_t> sums;  // of the rows before the group
  Group group = {};
  int32_t grouped = 0;
  int32_t toCome = 0;
  bool hasSums = false;
};

// out = scale * sum of weights[k] * rows[k] over rows of words, for up to 4 rows, back to levels.
void SumWordRows(const int16_t* const* rows, const int16_t* weights, int32_t count, float scale, int64_t samples,
                 uint8_t* out);

void WidenRow(const uint8_t* row, int64_t samples, int16_t* out);

// Filters along a row of pixels of 1, 3 or 4 channels; width is that of the result.
void FilterWordsToBytes(const int16_t* row, const AxisWeights& weights, int channels, int32_t width, uint8_t* out);
void FilterWordsToWords(const int16_t* row, const AxisWeights& weights, int channels, int32_t width, int16_t* out);

}  // namespace zvcore

#endif
