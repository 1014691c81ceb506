#include "services/zvcore/float_rows.h"

#include <algorithm>

#include "services/zvcore/pixels.h"

namespace zvcore {
namespace {

int ChannelsOf(const BITMAPHANDLE& bitmap, int byteChannels) {
  if (!HasWideChannels(bitmap)) return byteChannels;
  return bitmap.bitsPerPixel / 16;
}

bool NeedsMultiplying(const BITMAPHANDLE& bitmap) {
  return HasAlpha(bitmap) && !(bitmap.flags & BITMAP_FLAG_PREMULTIPLIED);
}

void MultiplyByAlpha(float* row, int32_t width, float highest) {
  for (int32_t x = 0; x < width; ++x, row += 4) {
    const float alpha = row[3] / highest;
    for (int c = 0; c < 3; ++c) row[c] *= alpha;
  }
}

void DivideByAlpha(float* row, int32_t width, float highest) {
  for (int32_t x = 0; x < width; ++x, row += 4) {
    const float factor = row[3] >= 0.5f ? highest / row[3] : 0;
    for (int c = 0; c < 3; ++c) row[c] *= factor;
  }
}

// A premultiplied colour is never above its alpha; the cubic kernel may have put it there.
void LimitToAlpha(float* row, int32_t width) {
  for (int32_t x = 0; x < width; ++x, row += 4) {
    for (int c = 0; c < 3; ++c) row[c] = std::min(row[c], row[3]);
  }
}

template <typename T>
void Round(const float* in, int64_t samples, float highest, T* out) {
  for (int64_t i = 0; i < samples; ++i) out[i] = static_cast<T>(std::clamp(in[i] + 0.5f, 0.0f, highest));
}

}  // namespace

FloatRowReader::FloatRowReader(const BITMAPHANDLE& source)
    : bitmap(source),
      byteReader(source),
      channels(ChannelsOf(source, byteReader.Channels())),
      wide(HasWideChannels(source)) {}

void FloatRowReader::Read(int32_t row, uint8_t* scratch, float* out) const {
  const int64_t samples = static_cast<int64_t>(bitmap.width) * channels;
  if (wide) {
    const auto* words = reinterpret_cast<const uint16_t*>(RowAt(bitmap, row));
    std::copy_n(words, samples, out);
  } else {
    std::copy_n(byteReader.Row(row, scratch), samples, out);
  }
  if (NeedsMultiplying(bitmap)) MultiplyByAlpha(out, bitmap.width, wide ? 65535.0f : 255.0f);
}

int32_t FloatRowWriter::Prepare() {
  wide = HasWideChannels(bitmap);
  channels = FloatRowReader(bitmap).Channels();
  return wide ? SUCCESS : byteWriter.Prepare();
}

void FloatRowWriter::Write(int32_t row, float* in, uint8_t* scratch) {
  const int64_t samples = static_cast<int64_t>(bitmap.width) * channels;
  const float highest = wide ? 65535.0f : 255.0f;
  if (NeedsMultiplying(bitmap)) {
    DivideByAlpha(in, bitmap.width, highest);
  } else if (HasAlpha(bitmap)) {
    LimitToAlpha(in, bitmap.width);
  }
  if (wide) return Round(in, samples, highest, reinterpret_cast<uint16_t*>(WritableRowAt(bitmap, row)));
  if (byteWriter.IsDirect()) return Round(in, samples, highest, WritableRowAt(bitmap, row));
  Round(in, samples, highest, scratch);
  byteWriter.Put(row, scratch);
}

}  // namespace zvcore
