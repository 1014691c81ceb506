#include "services/zvfile/pixel_layout.h"

#include <algorithm>
#include <cstring>

namespace zvfile {
namespace {

struct Traits {
  uint8_t bits;
  bool gray, alpha, deep, rgb;
};

constexpr Traits kTraits[] = {
    {1, false, false, false, false},   // kIndex1
    {2, false, false, false, false},   // kIndex2
    {4, false, false, false, false},   // kIndex4
    {8, false, false, false, false},   // kIndex8
    {8, true, false, false, false},    // kGray8
    {16, true, false, true, false},    // kGray16
    {16, true, true, false, false},    // kGrayAlpha16
    {32, true, true, true, false},     // kGrayAlpha32
    {16, false, false, false, false},  // kBgr555
    {24, false, false, false, true},   // kRgb24
    {24, false, false, false, false},  // kBgr24
    {32, false, false, false, true},   // kRgbx32
    {32, false, false, false, false},  // kBgrx32
    {32, false, true, false, true},    // kRgba32
    {32, false, true, false, false},   // kBgra32
    {48, false, false, true, true},    // kRgb48
    {48, false, false, true, false},   // kBgr48
    {64, false, false, true, true},    // kRgbx64
    {64, false, false, true, false},   // kBgrx64
    {64, false, true, true, true},     // kRgba64
    {64, false, true, true, false},    // kBgra64
};

const Traits& Of(Layout layout) { return kTraits[static_cast<size_t>(layout)]; }

// Value of a channel over white: straight alpha, rounded.
uint8_t OverWhite8(uint32_t value, uint32_t alpha) {
  const uint32_t sum = value * alpha + 255 * (255 - alpha);
  return static_cast<uint8_t>((sum + 127) / 255);
}

uint16_t OverWhite16(uint32_t value, uint32_t alpha) {
  const uint64_t sum = uint64_t{value} * alpha + uint64_t{65535} * (65535 - alpha);
  return static_cast<uint16_t>((sum + 32767) / 65535);
}

uint16_t Luma16(uint32_t red, uint32_t green, uint32_t blue) {
  return static_cast<uint16_t>((299 * uint64_t{red} + 587 * uint64_t{green} + 114 * uint64_t{blue} + 500) / 1000);
}

void UnpackIndices(const uint8_t* source, int32_t bits, int32_t width, uint8_t* indices) {
  if (bits == 8) {
    std::memcpy(indices, source, static_cast<size_t>(width));
    return;
  }
  const int32_t perByte = 8 / bits;
  const uint8_t mask = static_cast<uint8_t>((1 << bits) - 1);
  for (int32_t x = 0; x < width; ++x) {
    indices[x] = (source[x / perByte] >> (8 - bits - (x % perByte) * bits)) & mask;
  }
}

void PackIndices(const uint8_t* indices, int32_t bits, int32_t width, uint8_t* destination) {
  if (bits == 8) {
    std::memcpy(destination, indices, static_cast<size_t>(width));
    return;
  }
  std::memset(destination, 0, (static_cast<size_t>(width) * static_cast<size_t>(bits) + 7) / 8);
  const int32_t perByte = 8 / bits;
  for (int32_t x = 0; x < width; ++x) {
    destination[x / perByte] |= static_cast<uint8_t>(indices[x] << (8 - bits - (x % perByte) * bits));
  }
}

template <typename Sample>
void SwapRedBlue(const Sample* source, Sample* destination, int32_t width, int channels) {
  for (int32_t x = 0; x < width; ++x, source += channels, destination += channels) {
    const Sample first = source[0];
    destination[1] = source[1];
    destination[0] = source[2];
    destination[2] = first;
    if (channels == 4) destination[3] = source[3];
  }
}

// A row as BGRA of 8 bits. The layouts that Unpack8 does not know come through Unpack16 or the palette.
void Unpack8(const uint8_t* source, Layout from, int32_t width, uint8_t* bgra) {
  const Traits& traits = Of(from);
  const int red = traits.rgb ? 0 : 2;
  const int step = traits.bits / 8;
  for (int32_t x = 0; x < width; ++x, source += step, bgra += 4) {
    bgra[3] = 255;
    if (traits.gray) {
      bgra[0] = bgra[1] = bgra[2] = source[0];
      if (traits.alpha) bgra[3] = source[1];
    } else if (from == Layout::kBgr555) {
      uint16_t word;
      std::memcpy(&word, source, 2);
      for (int c = 0; c < 3; ++c) {
        const uint32_t value = (word >> (5 * c)) & 31;
        bgra[c] = static_cast<uint8_t>((value << 3) | (value >> 2));
      }
    } else {
      bgra[0] = source[2 - red];
      bgra[1] = source[1];
      bgra[2] = source[red];
      if (traits.alpha) bgra[3] = source[3];
    }
  }
}

void Pack8(const uint8_t* bgra, Layout to, int32_t width, uint8_t* destination) {
  const Traits& traits = Of(to);
  const int red = traits.rgb ? 0 : 2;
  const int step = traits.bits / 8;
  for (int32_t x = 0; x < width; ++x, bgra += 4, destination += step) {
    uint8_t b = bgra[0], g = bgra[1], r = bgra[2];
    const uint8_t a = bgra[3];
    if (!traits.alpha && a != 255) {
      b = OverWhite8(b, a);
      g = OverWhite8(g, a);
      r = OverWhite8(r, a);
    }
    if (traits.gray) {
      destination[0] = b == g && g == r ? b : Luma8(r, g, b);
      if (traits.alpha) destination[1] = a;
    } else if (to == Layout::kBgr555) {
      const auto narrow = [](uint32_t value) { return static_cast<uint16_t>((value * 31 + 127) / 255); };
      const uint16_t word = static_cast<uint16_t>(narrow(b) | (narrow(g) << 5) | (narrow(r) << 10));
      std::memcpy(destination, &word, 2);
    } else {
      destination[2 - red] = b;
      destination[1] = g;
      destination[red] = r;
      if (step == 4) destination[3] = traits.alpha ? a : 255;
    }
  }
}

void Unpack16(const uint8_t* row, Layout from, int32_t width, uint16_t* bgra) {
  const Traits& traits = Of(from);
  const int red = traits.rgb ? 0 : 2;
  const int step = traits.bits / 16;
  const uint16_t* source = reinterpret_cast<const uint16_t*>(row);
  for (int32_t x = 0; x < width; ++x, source += step, bgra += 4) {
    bgra[3] = 65535;
    if (traits.gray) {
      bgra[0] = bgra[1] = bgra[2] = source[0];
      if (traits.alpha) bgra[3] = source[1];
    } else {
      bgra[0] = source[2 - red];
      bgra[1] = source[1];
      bgra[2] = source[red];
      if (traits.alpha) bgra[3] = source[3];
    }
  }
}

void Pack16(const uint16_t* bgra, Layout to, int32_t width, uint8_t* row) {
  const Traits& traits = Of(to);
  const int red = traits.rgb ? 0 : 2;
  const int step = traits.bits / 16;
  uint16_t* destination = reinterpret_cast<uint16_t*>(row);
  for (int32_t x = 0; x < width; ++x, bgra += 4, destination += step) {
    uint16_t b = bgra[0], g = bgra[1], r = bgra[2];
    const uint16_t a = bgra[3];
    if (!traits.alpha && a != 65535) {
      b = OverWhite16(b, a);
      g = OverWhite16(g, a);
      r = OverWhite16(r, a);
    }
    if (traits.gray) {
      destination[0] = b == g && g == r ? b : Luma16(r, g, b);
      if (traits.alpha) destination[1] = a;
    } else {
      destination[2 - red] = b;
      destination[1] = g;
      destination[red] = r;
      if (step == 4) destination[3] = traits.alpha ? a : 65535;
    }
  }
}

}  // namespace

int32_t BitsPerPixel(Layout layout) { return Of(layout).bits; }
bool IsIndexed(Layout layout) { return layout <= Layout::kIndex8; }
bool IsGray(Layout layout) { return Of(layout).gray; }
bool HasAlpha(Layout layout) { return Of(layout).alpha; }
bool IsDeep(Layout layout) { return Of(layout).deep; }
bool IsRgbOrder(Layout layout) { return Of(layout).rgb; }

size_t PackedRowBytes(Layout layout, int32_t width) { return (static_cast<size_t>(width) * Of(layout).bits + 7) / 8; }

uint8_t Luma8(uint32_t red, uint32_t green, uint32_t blue) {
  return static_cast<uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

Layout LayoutForDepth(int32_t bitsPerPixel, bool gray, bool alpha, bool rgbOrder) {
  switch (bitsPerPixel) {
    case 1: return Layout::kIndex1;
    case 4: return Layout::kIndex4;
    case 8: return gray ? Layout::kGray8 : Layout::kIndex8;
    case 16: return gray ? Layout::kGray16 : Layout::kBgr555;
    case 32:
      return alpha ? (rgbOrder ? Layout::kRgba32 : Layout::kBgra32) : (rgbOrder ? Layout::kRgbx32 : Layout::kBgrx32);
    case 48: return rgbOrder ? Layout::kRgb48 : Layout::kBgr48;
    case 64:
      return alpha ? (rgbOrder ? Layout::kRgba64 : Layout::kBgra64) : (rgbOrder ? Layout::kRgbx64 : Layout::kBgrx64);
    default: return rgbOrder ? Layout::kRgb24 : Layout::kBgr24;
  }
}

Layout LayoutOf(const BITMAPHANDLE& bitmap) {
  return LayoutForDepth(bitmap.bitsPerPixel, bitmap.colorOrder == ORDER_GRAY, (bitmap.flags & BITMAP_FLAG_ALPHA) != 0,
                        bitmap.colorOrder == ORDER_RGB);
}

Layout BitmapLayout(Layout layout, bool rgbOrder) {
  const Traits& traits = Of(layout);
  if (layout == Layout::kIndex2) return Layout::kIndex4;
  if (IsIndexed(layout) || layout == Layout::kBgr555) return layout;
  if (traits.gray && !traits.alpha) return layout;
  const int32_t bits = traits.gray ? traits.bits * 2 : traits.bits;
  return LayoutForDepth(bits, false, traits.alpha, rgbOrder);
}

bool RowConverter::Possible(Layout from, Layout to) {
  if (!IsIndexed(to)) return true;
  return IsIndexed(from) && BitsPerPixel(from) <= BitsPerPixel(to);
}

bool TellsAlpha(const Palette& palette) {
  const auto isClear = [](const ZVPALETTEENTRY& entry) { return entry.alpha == 0; };
  const auto isOpaque = [](const ZVPALETTEENTRY& entry) { return entry.alpha == 255; };
  return !std::all_of(palette.begin(), palette.end(), isClear) &&
         !std::all_of(palette.begin(), palette.end(), isOpaque);
}

Palette OpaquePalette(Palette palette) {
  const bool tellsAlpha = TellsAlpha(palette);
  for (ZVPALETTEENTRY& entry : palette) {
    if (tellsAlpha) {
      entry.blue = OverWhite8(entry.blue, entry.alpha);
      entry.green = OverWhite8(entry.green, entry.alpha);
      entry.red = OverWhite8(entry.red, entry.alpha);
    }
    entry.alpha = 255;
  }
  return palette;
}

RowConverter::RowConverter(Layout from, Layout to, int32_t width, const Palette& palette)
    : from_(from), to_(to), width_(width), palette_(palette) {
  if (IsIdentity()) return;
  const size_t pixels = static_cast<size_t>(width);
  if (IsIndexed(from)) {
    if (!HasAlpha(to) || !TellsAlpha(palette)) palette_ = OpaquePalette(std::move(palette_));
    palette_.resize(256, ZVPALETTEENTRY{0, 0, 0, 255});
    indices_.resize(pixels);
  }
  colors8_.resize(pixels * 4);
  if (IsDeep(from) || IsDeep(to)) colors16_.resize(pixels * 4);
}

void RowConverter::Convert(const uint8_t* source, uint8_t* destination) {
  if (IsIdentity()) {
    std::memcpy(destination, source, PackedRowBytes(from_, width_));
  } else if (IsIndexed(from_)) {
    ConvertIndexed(source, destination);
  } else if (IsDeep(from_)) {
    Convert16(source, destination);
  } else {
    Convert8(source, destination);
  }
}

void RowConverter::ConvertIndexed(const uint8_t* source, uint8_t* destination) {
  UnpackIndices(source, BitsPerPixel(from_), width_, indices_.data());
  if (IsIndexed(to_)) {
    PackIndices(indices_.data(), BitsPerPixel(to_), width_, destination);
    return;
  }
  for (int32_t x = 0; x < width_; ++x) {
    const ZVPALETTEENTRY& entry = palette_[indices_[static_cast<size_t>(x)]];
    uint8_t* color = &colors8_[static_cast<size_t>(x) * 4];
    color[0] = entry.blue;
    color[1] = entry.green;
    color[2] = entry.red;
    color[3] = entry.alpha;
  }
  if (IsDeep(to_)) {
    for (size_t i = 0; i < colors16_.size(); ++i) colors16_[i] = static_cast<uint16_t>(colors8_[i] * 257);
    Pack16(colors16_.data(), to_, width_, destination);
  } else {
    Pack8(colors8_.data(), to_, width_, destination);
  }
}

void RowConverter::Convert8(const uint8_t* source, uint8_t* destination) {
  const Traits& from = Of(from_);
  const Traits& to = Of(to_);
  const bool sameButOrder = !from.gray && !to.gray && from.bits == to.bits && from.alpha == to.alpha && from.bits >= 24;
  if (sameButOrder) {
    SwapRedBlue(source, destination, width_, from.bits / 8);
    return;
  }
  Unpack8(source, from_, width_, colors8_.data());
  if (to.deep) {
    for (size_t i = 0; i < colors16_.size(); ++i) colors16_[i] = static_cast<uint16_t>(colors8_[i] * 257);
    Pack16(colors16_.data(), to_, width_, destination);
  } else {
    Pack8(colors8_.data(), to_, width_, destination);
  }
}

void RowConverter::Convert16(const uint8_t* source, uint8_t* destination) {
  const Traits& from = Of(from_);
  const Traits& to = Of(to_);
  if (!from.gray && !to.gray && from.bits == to.bits && from.alpha == to.alpha) {
    SwapRedBlue(reinterpret_cast<const uint16_t*>(source), reinterpret_cast<uint16_t*>(destination), width_,
                from.bits / 16);
    return;
  }
  Unpack16(source, from_, width_, colors16_.data());
  if (to.deep) {
    Pack16(colors16_.data(), to_, width_, destination);
  } else {
    for (size_t i = 0; i < colors16_.size(); ++i) colors8_[i] = Narrow16(colors16_[i]);
    Pack8(colors8_.data(), to_, width_, destination);
  }
}

}  // namespace zvfile
