#include "services/zvcore/resampler.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "services/zvcore/byte_rows.h"
#include "services/zvcore/float_rows.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/progress.h"
#include "services/zvcore/resample_fixed.h"
#include "services/zvcore/resample_float.h"

namespace zvcore {
namespace {

// Each destination pixel takes the source pixel that its centre falls into.
class NearestResampler : public Resampler {
 public:
  NearestResampler(const BITMAPHANDLE& from, BITMAPHANDLE& to, const ResampleFrame& whole)
      : source(from), destination(to), frame(whole) {}

  int32_t Prepare() override {
    if (!columns.Allocate(static_cast<size_t>(destination.width))) return ERROR_OUT_OF_MEMORY;
    for (int32_t x = 0; x < destination.width; ++x) {
      columns[static_cast<size_t>(x)] = SourceOf(frame.left + x, source.width, frame.width);
    }
    return SUCCESS;
  }

  void MakeRow(int32_t row) override {
    const int32_t sourceRow = SourceOf(frame.top + row, source.height, frame.height);
    uint8_t* out = WritableRowAt(destination, row);
    if (sourceRow == lastSourceRow) {
      std::memcpy(out, RowAt(destination, row - 1),
                  static_cast<size_t>(LineBytes(destination.width, destination.bitsPerPixel)));
      return;
    }
    lastSourceRow = sourceRow;
    const uint8_t* in = RowAt(source, sourceRow);
    switch (source.bitsPerPixel) {
      case 1: return PickIndices<1>(in, out);
      case 4: return PickIndices<4>(in, out);
      case 8: return PickPixels<1>(in, out);
      case 16: return PickPixels<2>(in, out);
      case 24: return PickPixels<3>(in, out);
      case 32: return PickPixels<4>(in, out);
      case 48: return PickPixels<6>(in, out);
      default: return PickPixels<8>(in, out);
    }
  }

 private:
  static int32_t SourceOf(int32_t at, int32_t sourceSize, int32_t destinationSize) {
    return static_cast<int32_t>((2 * static_cast<int64_t>(at) + 1) * sourceSize /
                                (2 * static_cast<int64_t>(destinationSize)));
  }
  template <int bits>
  void PickIndices(const uint8_t* in, uint8_t* out) const {
    for (int32_t x = 0; x < destination.width; ++x)
      PutIndexAt<bits>(out, x, IndexAt<bits>(in, columns[static_cast<size_t>(x)]));
  }
  template <int bytes>
  void PickPixels(const uint8_t* in, uint8_t* out) const {
    for (int32_t x = 0; x < destination.width; ++x, out += bytes) {
      std::memcpy(out, in + static_cast<int64_t>(columns[static_cast<size_t>(x)]) * bytes, bytes);
    }
  }

  const BITMAPHANDLE& source;
  BITMAPHANDLE& destination;
  ResampleFrame frame;
  Buffer<int32_t> columns;
  int32_t lastSourceRow = -1;
};

constexpr int32_t kRing = 4;  // filtered rows that an enlargement needs at a time

// The filtered rows made last, each made once while an enlargement moves down.
template <typename Sample>
class RowRing {
 public:
  bool Allocate(size_t samples) {
    return std::all_of(std::begin(rows_), std::end(rows_), [=](auto& row) { return row.Allocate(samples); });
  }
  // That row; `make` fills it when it is not here any more.
  template <typename Make>
  const Sample* Row(int32_t row, Make make) {
    const int32_t slot = row % kRing;
    if (holds_[slot] != row) {
      holds_[slot] = row;
      make(rows_[slot].data());
    }
    return rows_[slot].data();
  }

 private:
  Buffer<Sample> rows_[kRing];
  int32_t holds_[kRing] = {-1, -1, -1, -1};
};

// 8-bit channels. The pass that leaves fewer samples to the other comes first: down the columns for a reduction,
// along the rows for an enlargement.
class FixedResampler : public Resampler {
 public:
  FixedResampler(const BITMAPHANDLE& from, BITMAPHANDLE& to, const Axis& axisAcross, const Axis& axisDown)
      : source(from), destination(to), reader(from), writer(to), across(axisAcross), down(axisDown) {}

  int32_t Prepare() override {
    channels = reader.Channels();
    sourceSamples = static_cast<int64_t>(source.width) * channels;
    resultSamples = static_cast<int64_t>(destination.width) * channels;
    downFirst = down.destinationSize <= down.sourceSize;
    int32_t result = writer.Prepare();
    if (result == SUCCESS) result = BuildFixedWeights(across, kLargestWord, columns);
    if (result == SUCCESS) result = BuildFixedWeights(down, downFirst ? 255 : kLargestWord, rows);
    if (result == SUCCESS && downFirst) result = sum.Prepare(sourceSamples);
    if (result != SUCCESS) return result;
    bool enough = words.Allocate(static_cast<size_t>(sourceSamples)) &&
                  packed.Allocate(static_cast<size_t>(resultSamples)) &&
                  expanded.Allocate(static_cast<size_t>(sourceSamples) * ByteRowSum::kRowsAtOnce);
    if (enough && !downFirst) enough = ring.Allocate(static_cast<size_t>(resultSamples));
    return enough ? SUCCESS : ERROR_OUT_OF_MEMORY;
  }

  void MakeRow(int32_t row) override {
    uint8_t* out = writer.IsDirect() ? WritableRowAt(destination, row) : packed.data();
    downFirst ? MakeDownFirst(row, out) : MakeAcrossFirst(row, out);
    if (!writer.IsDirect()) writer.Put(row, out);
  }

 private:
  void MakeDownFirst(int32_t row, uint8_t* out) {
    const AxisSpan span = rows.Span(row);
    sum.Begin(span.count);
    for (int32_t k = 0; k < span.count; ++k) {
      uint8_t* scratch = expanded.data() + k % ByteRowSum::kRowsAtOnce * sourceSamples;
      sum.Add(reader.Row(span.first + k, scratch), rows.Fixed(row)[k]);
    }
    sum.End(rows.fixedScale[static_cast<size_t>(row)], words.data());
    FilterWordsToBytes(words.data(), columns, channels, destination.width, out);
  }

  void MakeAcrossFirst(int32_t row, uint8_t* out) {
    const AxisSpan span = rows.Span(row);
    const int16_t* filtered[kRing];
    for (int32_t k = 0; k < span.count; ++k) filtered[k] = FilteredRow(span.first + k);
    SumWordRows(filtered, rows.Fixed(row), span.count, rows.fixedScale[static_cast<size_t>(row)], resultSamples, out);
  }

  const int16_t* FilteredRow(int32_t sourceRow) {
    return ring.Row(sourceRow, [&](int16_t* out) {
      WidenRow(reader.Row(sourceRow, expanded.data()), sourceSamples, words.data());
      FilterWordsToWords(words.data(), columns, channels, destination.width, out);
    });
  }

  const BITMAPHANDLE& source;
  BITMAPHANDLE& destination;
  ByteRowReader reader;
  ByteRowWriter writer;
  Axis across, down;
  AxisWeights columns, rows;
  int channels = 0;
  int64_t sourceSamples = 0, resultSamples = 0;
  bool downFirst = false;
  ByteRowSum sum;
  Buffer<uint8_t> expanded;  // rows of a bitmap that is not in channels
  Buffer<uint8_t> packed;    // a result row that has yet to be packed
  Buffer<int16_t> words;
  RowRing<int16_t> ring;
};

// 16-bit channels, alpha, and reductions beyond fixed point.
class FloatResampler : public Resampler {
 public:
  FloatResampler(const BITMAPHANDLE& from, BITMAPHANDLE& to, const Axis& axisAcross, const Axis& axisDown)
      : source(from), destination(to), reader(from), writer(to), across(axisAcross), down(axisDown) {}

  int32_t Prepare() override {
    channels = reader.Channels();
    sourceSamples = static_cast<int64_t>(source.width) * channels;
    resultSamples = static_cast<int64_t>(destination.width) * channels;
    downFirst = down.destinationSize <= down.sourceSize;
    int32_t result = writer.Prepare();
    if (result == SUCCESS) result = BuildRealWeights(across, columns);
    if (result == SUCCESS) result = BuildRealWeights(down, rows);
    if (result != SUCCESS) return result;
    bool enough = loaded.Allocate(static_cast<size_t>(sourceSamples)) &&
                  out.Allocate(static_cast<size_t>(resultSamples)) &&
                  bytes.Allocate(static_cast<size_t>(std::max(sourceSamples, resultSamples)));
    if (downFirst) return enough && sum.Allocate(static_cast<size_t>(sourceSamples)) ? SUCCESS : ERROR_OUT_OF_MEMORY;
    return enough && ring.Allocate(static_cast<size_t>(resultSamples)) ? SUCCESS : ERROR_OUT_OF_MEMORY;
  }

  void MakeRow(int32_t row) override {
    const AxisSpan span = rows.Span(row);
    const float* weights = rows.Real(row);
    float* target = downFirst ? sum.data() : out.data();
    for (int32_t k = 0; k < span.count; ++k) {
      const float* in = downFirst ? LoadedRow(span.first + k) : FilteredRow(span.first + k);
      (k == 0 ? SetFloatRow : AddFloatRow)(in, weights[k], downFirst ? sourceSamples : resultSamples, target);
    }
    if (downFirst) FilterFloatRow(sum.data(), columns, channels, destination.width, out.data());
    writer.Write(row, out.data(), bytes.data());
  }

 private:
  const float* LoadedRow(int32_t sourceRow) {
    reader.Read(sourceRow, bytes.data(), loaded.data());
    return loaded.data();
  }

  const float* FilteredRow(int32_t sourceRow) {
    return ring.Row(sourceRow, [&](float* filtered) {
      FilterFloatRow(LoadedRow(sourceRow), columns, channels, destination.width, filtered);
    });
  }

  const BITMAPHANDLE& source;
  BITMAPHANDLE& destination;
  FloatRowReader reader;
  FloatRowWriter writer;
  Axis across, down;
  AxisWeights columns, rows;
  int channels = 0;
  int64_t sourceSamples = 0, resultSamples = 0;
  bool downFirst = false;
  Buffer<uint8_t> bytes;
  Buffer<float> loaded, sum, out;
  RowRing<float> ring;
};

}  // namespace

std::unique_ptr<Resampler> NewResampler(const BITMAPHANDLE& source, BITMAPHANDLE& destination,
                                        const ResampleFrame& frame, int32_t method) {
  if (method == SIZE_NEAREST) {
    return std::unique_ptr<Resampler>(new (std::nothrow) NearestResampler(source, destination, frame));
  }
  const Axis across = {FilterFor(method, source.width, frame.width), source.width, frame.width, frame.left,
                       destination.width};
  const Axis down = {FilterFor(method, source.height, frame.height), source.height, frame.height, frame.top,
                     destination.height};
  const bool fixed = !HasWideChannels(source) && !HasAlpha(source) && FixedPointSuits(across) && FixedPointSuits(down);
  if (fixed) return std::unique_ptr<Resampler>(new (std::nothrow) FixedResampler(source, destination, across, down));
  return std::unique_ptr<Resampler>(new (std::nothrow) FloatResampler(source, destination, across, down));
}

int32_t Resample(const BITMAPHANDLE& source, BITMAPHANDLE& destination, int32_t method) {
  const auto resampler = NewResampler(source, destination, {destination.width, destination.height, 0, 0}, method);
  if (!resampler) return ERROR_OUT_OF_MEMORY;
  int32_t result = resampler->Prepare();
  Progress progress(destination.height);
  for (int32_t row = 0; result == SUCCESS && row < destination.height; ++row) {
    resampler->MakeRow(row);
    result = progress.Reached(row + 1);
  }
  return result;
}

}  // namespace zvcore
