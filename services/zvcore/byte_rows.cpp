#include "services/zvcore/byte_rows.h"

#include <cstring>

#include "services/zvcore/channel_math.h"
#include "services/zvcore/pixels.h"

namespace zvcore {
namespace {

template <int bits>
void ExpandGrayIndices(const uint8_t* row, int32_t width, const ZVPALETTEENTRY* palette, uint8_t* out) {
  for (int32_t x = 0; x < width; ++x) out[x] = palette[IndexAt<bits>(row, x)].green;
}

// Into blue, green, red, whatever the colour order: indices have none.
template <int bits>
void ExpandColorIndices(const uint8_t* row, int32_t width, const ZVPALETTEENTRY* palette, uint8_t* out) {
  for (int32_t x = 0; x < width; ++x, out += 3) {
    const ZVPALETTEENTRY& entry = palette[IndexAt<bits>(row, x)];
    out[0] = entry.blue;
    out[1] = entry.green;
    out[2] = entry.red;
  }
}

void Expand555(const uint8_t* row, int32_t width, uint8_t* out) {
  for (int32_t x = 0; x < width; ++x, out += 3) {
    uint16_t value;
    std::memcpy(&value, row + 2 * static_cast<int64_t>(x), 2);
    out[0] = Widen5(value & 31);
    out[1] = Widen5(value >> 5 & 31);
    out[2] = Widen5(value >> 10 & 31);
  }
}

void Pack555(const uint8_t* in, int32_t width, uint8_t* row) {
  for (int32_t x = 0; x < width; ++x, in += 3) {
    const auto value = static_cast<uint16_t>(Narrow5(in[2]) << 10 | Narrow5(in[1]) << 5 | Narrow5(in[0]));
    std::memcpy(row + 2 * static_cast<int64_t>(x), &value, 2);
  }
}

template <int bits>
void PackIndices(const uint8_t* in, int channels, int32_t width, ColorMatcher& matcher, uint8_t* row) {
  for (int32_t x = 0; x < width; ++x, in += channels) {
    PutIndexAt<bits>(row, x, channels == 1 ? matcher.Match(in[0], in[0], in[0]) : matcher.Match(in[2], in[1], in[0]));
  }
}

bool IsDirectFormat(const BITMAPHANDLE& bitmap) { return !IsIndexed(bitmap) && bitmap.bitsPerPixel != 16; }

int ChannelsOf(const BITMAPHANDLE& bitmap, const ZVPALETTEENTRY* palette, int paletteCount) {
  if (IsGray(bitmap) || (IsIndexed(bitmap) && IsGrayPalette(palette, paletteCount))) return 1;
  return bitmap.bitsPerPixel == 32 ? 4 : 3;
}

template <int bits>
void ExpandIndices(const uint8_t* row, int channels, int32_t width, const ZVPALETTEENTRY* palette, uint8_t* out) {
  if (channels == 1) return ExpandGrayIndices<bits>(row, width, palette, out);
  return ExpandColorIndices<bits>(row, width, palette, out);
}

}  // namespace

ByteRowReader::ByteRowReader(const BITMAPHANDLE& source) : bitmap(source), direct(IsDirectFormat(source)) {
  const int count = CompletePalette(source, palette);
  channels = ChannelsOf(source, palette, count);
}

const uint8_t* ByteRowReader::Row(int32_t row, uint8_t* scratch) const {
  const uint8_t* stored = RowAt(bitmap, row);
  if (direct) return stored;
  switch (bitmap.bitsPerPixel) {
    case 1: ExpandIndices<1>(stored, channels, bitmap.width, palette, scratch); break;
    case 4: ExpandIndices<4>(stored, channels, bitmap.width, palette, scratch); break;
    case 8: ExpandIndices<8>(stored, channels, bitmap.width, palette, scratch); break;
    default: Expand555(stored, bitmap.width, scratch);
  }
  return scratch;
}

int32_t ByteRowWriter::Prepare() {
  ZVPALETTEENTRY palette[256];
  const int count = CompletePalette(bitmap, palette);
  channels = ChannelsOf(bitmap, palette, count);
  direct = IsDirectFormat(bitmap);
  return IsIndexed(bitmap) ? matcher.Prepare(palette, count) : SUCCESS;
}

void ByteRowWriter::Put(int32_t row, const uint8_t* channelsRow) {
  uint8_t* stored = WritableRowAt(bitmap, row);
  switch (bitmap.bitsPerPixel) {
    case 1: return PackIndices<1>(channelsRow, channels, bitmap.width, matcher, stored);
    case 4: return PackIndices<4>(channelsRow, channels, bitmap.width, matcher, stored);
    case 8: return PackIndices<8>(channelsRow, channels, bitmap.width, matcher, stored);
    default: return Pack555(channelsRow, bitmap.width, stored);
  }
}

}  // namespace zvcore
