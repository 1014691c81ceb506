#include "services/zvcore/pixel_convert.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "services/zvcore/channel_math.h"
#include "services/zvcore/pixels.h"

namespace zvcore {
namespace {

// Channel depths: 8-bit pixels read 16-bit samples narrowed, 16-bit ones read 8-bit samples widened.
template <typename T>
constexpr T kHighest = static_cast<T>(~T{0});
template <typename To, typename From>
To ToDepth(From value) {
  if constexpr (std::is_same_v<To, From>) return value;
  if constexpr (sizeof(To) > sizeof(From)) return Widen8(value);
  return Narrow16(value);
}

template <typename T>
Pixel<T> FromEntry(const ZVPALETTEENTRY& entry) {
  return {ToDepth<T>(entry.blue), ToDepth<T>(entry.green), ToDepth<T>(entry.red), kHighest<T>};
}

template <int bits, typename T>
void DecodeIndices(const ZVPALETTEENTRY* palette, const uint8_t* row, int32_t pixels, Pixel<T>* out) {
  for (int32_t x = 0; x < pixels; ++x) out[x] = FromEntry<T>(palette[IndexAt<bits>(row, x)]);
}

template <typename Sample, typename T>
void DecodeGray(const uint8_t* row, int32_t pixels, Pixel<T>* out) {
  const auto* samples = reinterpret_cast<const Sample*>(row);
  for (int32_t x = 0; x < pixels; ++x) {
    const T gray = ToDepth<T>(samples[x]);
    out[x] = {gray, gray, gray, kHighest<T>};
  }
}

template <typename T>
void Decode555(const uint8_t* row, int32_t pixels, Pixel<T>* out) {
  const auto* words = reinterpret_cast<const uint16_t*>(row);
  for (int32_t x = 0; x < pixels; ++x) {
    const unsigned word = words[x];
    out[x] = {ToDepth<T>(Widen5(word & 31)), ToDepth<T>(Widen5(word >> 5 & 31)), ToDepth<T>(Widen5(word >> 10 & 31)),
              kHighest<T>};
  }
}

template <typename Sample, int channels, typename T>
void DecodeColor(bool rgb, bool alpha, const uint8_t* row, int32_t pixels, Pixel<T>* out) {
  const auto* at = reinterpret_cast<const Sample*>(row);
  const int blue = rgb ? 2 : 0, red = 2 - blue;
  for (int32_t x = 0; x < pixels; ++x, at += channels) {
    out[x] = {ToDepth<T>(at[blue]), ToDepth<T>(at[1]), ToDepth<T>(at[red]), kHighest<T>};
    if constexpr (channels == 4) {
      if (alpha) out[x].alpha = ToDepth<T>(at[3]);
    }
  }
}

template <typename T>
T Unmultiply(T value, T alpha) {
  if (alpha == 0) return 0;
  const uint64_t whole = (static_cast<uint64_t>(value) * kHighest<T> + alpha / 2) / alpha;
  return static_cast<T>(std::min<uint64_t>(whole, kHighest<T>));
}

template <typename T>
T Multiply(T value, T alpha) {
  return static_cast<T>((static_cast<uint64_t>(value) * alpha + kHighest<T> / 2) / kHighest<T>);
}

template <typename T>
void Decode(const BITMAPHANDLE& format, const ZVPALETTEENTRY* palette, const uint8_t* row, int32_t pixels,
            Pixel<T>* out) {
  const bool rgb = format.colorOrder == ORDER_RGB, alpha = HasAlpha(format), gray = IsGray(format);
  switch (format.bitsPerPixel) {
    case 1: return DecodeIndices<1>(palette, row, pixels, out);
    case 4: return DecodeIndices<4>(palette, row, pixels, out);
    case 8: return gray ? DecodeGray<uint8_t>(row, pixels, out) : DecodeIndices<8>(palette, row, pixels, out);
    case 16: return gray ? DecodeGray<uint16_t>(row, pixels, out) : Decode555(row, pixels, out);
    case 24: return DecodeColor<uint8_t, 3>(rgb, false, row, pixels, out);
    case 32: DecodeColor<uint8_t, 4>(rgb, alpha, row, pixels, out); break;
    case 48: return DecodeColor<uint16_t, 3>(rgb, false, row, pixels, out);
    default: DecodeColor<uint16_t, 4>(rgb, alpha, row, pixels, out);
  }
  if (!alpha || !(format.flags & BITMAP_FLAG_PREMULTIPLIED)) return;
  for (int32_t x = 0; x < pixels; ++x) {
    out[x].blue = Unmultiply(out[x].blue, out[x].alpha);
    out[x].green = Unmultiply(out[x].green, out[x].alpha);
    out[x].red = Unmultiply(out[x].red, out[x].alpha);
  }
}

template <typename T>
void Blend(Pixel<T>* row, int32_t pixels) {
  for (int32_t x = 0; x < pixels; ++x) {
    Pixel<T>& pixel = row[x];
    if (pixel.alpha == kHighest<T>) continue;
    const T white = static_cast<T>(kHighest<T> - pixel.alpha);
    pixel.blue = static_cast<T>(Multiply(pixel.blue, pixel.alpha) + white);
    pixel.green = static_cast<T>(Multiply(pixel.green, pixel.alpha) + white);
    pixel.red = static_cast<T>(Multiply(pixel.red, pixel.alpha) + white);
    pixel.alpha = kHighest<T>;
  }
}

template <typename Sample, typename T>
void EncodeGray(const Pixel<T>* in, int32_t pixels, uint8_t* row) {
  auto* out = reinterpret_cast<Sample*>(row);
  for (int32_t x = 0; x < pixels; ++x)
    out[x] = ToDepth<Sample>(static_cast<T>(Luma(in[x].red, in[x].green, in[x].blue)));
}

template <typename T>
void Encode555(const Pixel<T>* in, int32_t pixels, uint8_t* row) {
  auto* out = reinterpret_cast<uint16_t*>(row);
  for (int32_t x = 0; x < pixels; ++x) {
    out[x] = static_cast<uint16_t>(Narrow5(ToDepth<uint8_t>(in[x].red)) << 10 |
                                   Narrow5(ToDepth<uint8_t>(in[x].green)) << 5 | Narrow5(ToDepth<uint8_t>(in[x].blue)));
  }
}

template <typename Sample, int channels, typename T>
void EncodeColor(bool rgb, bool multiply, const Pixel<T>* in, int32_t pixels, uint8_t* row) {
  auto* at = reinterpret_cast<Sample*>(row);
  const int blue = rgb ? 2 : 0, red = 2 - blue;
  for (int32_t x = 0; x < pixels; ++x, at += channels) {
    Pixel<T> pixel = in[x];
    if (multiply) {
      pixel = {Multiply(pixel.blue, pixel.alpha), Multiply(pixel.green, pixel.alpha), Multiply(pixel.red, pixel.alpha),
               pixel.alpha};
    }
    at[blue] = ToDepth<Sample>(pixel.blue);
    at[1] = ToDepth<Sample>(pixel.green);
    at[red] = ToDepth<Sample>(pixel.red);
    if constexpr (channels == 4) at[3] = ToDepth<Sample>(pixel.alpha);
  }
}

template <typename T>
void Encode(const BITMAPHANDLE& format, const Pixel<T>* in, int32_t pixels, uint8_t* row) {
  const bool rgb = format.colorOrder == ORDER_RGB;
  const bool multiply = HasAlpha(format) && (format.flags & BITMAP_FLAG_PREMULTIPLIED);
  switch (format.bitsPerPixel) {
    case 8: return EncodeGray<uint8_t>(in, pixels, row);
    case 16: return IsGray(format) ? EncodeGray<uint16_t>(in, pixels, row) : Encode555(in, pixels, row);
    case 24: return EncodeColor<uint8_t, 3>(rgb, false, in, pixels, row);
    case 32: return EncodeColor<uint8_t, 4>(rgb, multiply, in, pixels, row);
    case 48: return EncodeColor<uint16_t, 3>(rgb, false, in, pixels, row);
    default: return EncodeColor<uint16_t, 4>(rgb, multiply, in, pixels, row);
  }
}

// Plain 8-bit channels: a pixel moves as a doubleword. The last pixel of three bytes is not read and not written past
// its end.
template <int from, int to>
void MoveBytes(bool exchange, const uint8_t* in, int32_t pixels, uint8_t* out) {
  const auto move = [exchange](uint32_t value) {
    if (exchange) value = (value & 0xFF00) | (value & 255) << 16 | (value >> 16 & 255) | (value & 0xFF000000);
    return from == 3 ? value | 0xFF000000 : value;
  };
  uint32_t value = 0;
  for (int32_t x = 0; x + 1 < pixels; ++x, in += from, out += to) {
    std::memcpy(&value, in, 4);
    value = move(value);
    std::memcpy(out, &value, 4);
  }
  std::memcpy(&value, in, from);
  value = move(value);
  std::memcpy(out, &value, to);
}

void MoveBytesOf(int fromBits, int toBits, bool exchange, const uint8_t* in, int32_t pixels, uint8_t* out) {
  if (fromBits == 24 && toBits == 24) return MoveBytes<3, 3>(exchange, in, pixels, out);
  if (fromBits == 24) return MoveBytes<3, 4>(exchange, in, pixels, out);
  if (toBits == 24) return MoveBytes<4, 3>(exchange, in, pixels, out);
  return MoveBytes<4, 4>(exchange, in, pixels, out);
}

template <int bits>
void MatchIndices(ColorMatcher& matcher, const Pixel8* in, int32_t pixels, uint8_t* row) {
  for (int32_t x = 0; x < pixels; ++x) PutIndexAt<bits>(row, x, matcher.Match(in[x].red, in[x].green, in[x].blue));
}

}  // namespace

void DecodeRow(const BITMAPHANDLE& format, const ZVPALETTEENTRY* palette, const uint8_t* row, int32_t pixels,
               Pixel8* out) {
  Decode(format, palette, row, pixels, out);
}
void DecodeRow(const BITMAPHANDLE& format, const ZVPALETTEENTRY* palette, const uint8_t* row, int32_t pixels,
               Pixel16* out) {
  Decode(format, palette, row, pixels, out);
}
void BlendOnWhite(Pixel8* row, int32_t pixels) { Blend(row, pixels); }
void BlendOnWhite(Pixel16* row, int32_t pixels) { Blend(row, pixels); }
void EncodeRow(const BITMAPHANDLE& format, const Pixel8* in, int32_t pixels, uint8_t* row) {
  Encode(format, in, pixels, row);
}
void EncodeRow(const BITMAPHANDLE& format, const Pixel16* in, int32_t pixels, uint8_t* row) {
  Encode(format, in, pixels, row);
}

void EncodeIndices(const BITMAPHANDLE& format, ColorMatcher& matcher, const Pixel8* in, int32_t pixels, uint8_t* row) {
  if (format.bitsPerPixel == 1) return MatchIndices<1>(matcher, in, pixels, row);
  if (format.bitsPerPixel == 4) return MatchIndices<4>(matcher, in, pixels, row);
  return MatchIndices<8>(matcher, in, pixels, row);
}

int32_t RowConverter::Prepare(const BITMAPHANDLE& sourceFormat, const BITMAPHANDLE& destinationFormat, int32_t pixels) {
  if (!IsKnownDepth(sourceFormat.bitsPerPixel) || !IsKnownDepth(destinationFormat.bitsPerPixel))
    return ERROR_BAD_ARGUMENT;
  source = sourceFormat;
  destination = destinationFormat;
  blends = HasAlpha(source) && !HasAlpha(destination);
  if (IsIndexed(destination)) {
    const int count = CompletePalette(destination, palette);
    const int32_t result = matcher.Prepare(palette, count);
    if (result != SUCCESS) return result;
  }
  CompletePalette(source, palette);
  const auto count = static_cast<size_t>(pixels);
  const bool both = HasWideChannels(source) && HasWideChannels(destination);
  return (both ? wide.Allocate(count) : narrow.Allocate(count)) ? SUCCESS : ERROR_OUT_OF_MEMORY;
}

template <typename T>
void RowConverter::ConvertBy(Buffer<Pixel<T>>& row, const uint8_t* in, uint8_t* out, int32_t pixels) {
  DecodeRow(source, palette, in, pixels, row.data());
  if (blends) BlendOnWhite(row.data(), pixels);
  if constexpr (sizeof(T) == 1) {
    if (IsIndexed(destination)) return EncodeIndices(destination, matcher, row.data(), pixels, out);
  }
  EncodeRow(destination, row.data(), pixels, out);
}

bool RowConverter::OnlyMovesBytes() const {
  const auto isPlain = [](const BITMAPHANDLE& format) {
    return format.bitsPerPixel == 24 || format.bitsPerPixel == 32;
  };
  if (!isPlain(source) || !isPlain(destination) || blends) return false;
  if (source.bitsPerPixel == 32 && destination.bitsPerPixel == 32) {
    return HasAlpha(source) && ((source.flags ^ destination.flags) & BITMAP_FLAG_PREMULTIPLIED) == 0;
  }
  return !HasAlpha(source);
}

void RowConverter::Convert(const uint8_t* in, uint8_t* out, int32_t pixels) {
  if (OnlyMovesBytes()) {
    const bool exchange = (source.colorOrder == ORDER_RGB) != (destination.colorOrder == ORDER_RGB);
    return MoveBytesOf(source.bitsPerPixel, destination.bitsPerPixel, exchange, in, pixels, out);
  }
  wide.size() ? ConvertBy(wide, in, out, pixels) : ConvertBy(narrow, in, out, pixels);
}

int32_t ConvertAllRows(const BITMAPHANDLE& source, BITMAPHANDLE& destination, Progress* progress) {
  RowConverter converter;
  int32_t status = converter.Prepare(source, destination, source.width);
  for (int32_t row = 0; status == SUCCESS && row < source.height; ++row) {
    converter.Convert(RowAt(source, row), WritableRowAt(destination, row), source.width);
    if (progress) status = progress->Reached(row + 1);
  }
  return status;
}

}  // namespace zvcore

int32_t ConvertBitmapInto(const BITMAPHANDLE* source, BITMAPHANDLE* destination) {
  int32_t status = zvcore::CheckPixels(source);
  if (status == SUCCESS) status = zvcore::CheckPixels(destination);
  if (status != SUCCESS) return status;
  const bool sameSize = source->width == destination->width && source->height == destination->height;
  if (!sameSize || source->data == destination->data) return ERROR_BAD_ARGUMENT;
  return zvcore::ConvertAllRows(*source, *destination);
}

int32_t ConvertPixelRow(const BITMAPHANDLE* sourceFormat, const void* source, const BITMAPHANDLE* destinationFormat,
                        void* destination, int32_t pixels) {
  if (!sourceFormat || !source || !destinationFormat || !destination || pixels < 1) return ERROR_BAD_ARGUMENT;
  zvcore::RowConverter converter;
  const int32_t result = converter.Prepare(*sourceFormat, *destinationFormat, pixels);
  if (result != SUCCESS) return result;
  converter.Convert(static_cast<const uint8_t*>(source), static_cast<uint8_t*>(destination), pixels);
  return SUCCESS;
}
