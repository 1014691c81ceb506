#include "services/zvfile/codecs/tiff_samples.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zvfile::tiff {
namespace {

template <typename T>
T Load(const uint8_t* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

// IEEE 754 half precision.
double HalfToDouble(uint16_t half) {
  const int exponent = half >> 10 & 31;
  const double mantissa = (half & 1023) / 1024.0;
  const double sign = half & 0x8000 ? -1 : 1;
  if (exponent == 31) return mantissa != 0 ? std::nan("") : sign * HUGE_VAL;
  return sign * (exponent == 0 ? std::ldexp(mantissa, -14) : std::ldexp(1 + mantissa, exponent - 15));
}

// 24 bits of Adobe's technical note 3 to TIFF: one sign, seven exponent and sixteen mantissa bits.
double Float24ToDouble(uint32_t bits) {
  const int exponent = bits >> 16 & 127;
  const double mantissa = (bits & 0xFFFF) / 65536.0;
  const double sign = bits & 0x800000 ? -1 : 1;
  if (exponent == 127) return mantissa != 0 ? std::nan("") : sign * HUGE_VAL;
  return sign * (exponent == 0 ? std::ldexp(mantissa, -62) : std::ldexp(1 + mantissa, exponent - 63));
}

double LoadFloat(const uint8_t* bytes, uint16_t bits) {
  switch (bits) {
    case 16: return HalfToDouble(Load<uint16_t>(bytes));
    case 24: return Float24ToDouble(bytes[0] | bytes[1] << 8 | bytes[2] << 16);
    case 32: return Load<float>(bytes);
    case 64: return Load<double>(bytes);
    default: return 0;
  }
}

// 0 to 1 is black to white; what lies outside is cut.
uint16_t ClampUnit(double value) {
  if (!(value > 0)) return 0;
  return value >= 1 ? 65535 : static_cast<uint16_t>(value * 65535 + 0.5);
}

uint64_t LoadBits(const uint8_t* row, uint64_t firstBit, uint16_t bits) {
  uint64_t value = 0;
  for (uint64_t bit = firstBit; bit < firstBit + bits; ++bit)
    value = value << 1 | (row[bit >> 3] >> (7 - (bit & 7)) & 1);
  return value;
}

uint64_t LoadInteger(const uint8_t* row, uint64_t index, uint16_t bits) {
  switch (bits) {
    case 8: return row[index];
    case 16: return Load<uint16_t>(row + index * 2);
    case 32: return Load<uint32_t>(row + index * 4);
    case 64: return Load<uint64_t>(row + index * 8);
    default: return LoadBits(row, index * bits, bits);
  }
}

// Scales to the full range of the target depth.
uint16_t Scale(uint64_t value, uint16_t bits, bool deep) {
  if (bits > 16) return static_cast<uint16_t>(value >> (bits - 16));
  const uint64_t last = (uint64_t{1} << bits) - 1;
  return static_cast<uint16_t>((value * (deep ? 65535 : 255) + last / 2) / last);
}

template <typename Sample>
void Store(uint8_t*& row, uint16_t value) {
  const Sample sample = static_cast<Sample>(value);
  std::memcpy(row, &sample, sizeof sample);
  row += sizeof sample;
}

uint16_t Unmultiply(uint32_t value, uint32_t alpha, uint32_t white) {
  if (alpha == 0) return 0;
  return static_cast<uint16_t>(std::min(white, (value * white + alpha / 2) / alpha));
}

template <typename Sample>
void Assemble(const Picture& picture, const uint16_t* samples, bool invert, uint8_t* row) {
  constexpr uint32_t white = static_cast<Sample>(-1);
  const bool alpha = picture.alpha != Alpha::kNone;
  for (uint32_t x = 0; x < picture.width; ++x, samples += picture.samples) {
    const uint32_t opacity = alpha ? samples[picture.colors] : white;
    for (uint16_t channel = 0; channel < picture.colors; ++channel) {
      uint16_t value = samples[channel];
      if (invert) value = static_cast<uint16_t>(white - value);
      if (picture.alpha == Alpha::kAssociated) value = Unmultiply(value, opacity, white);
      Store<Sample>(row, value);
    }
    if (alpha) Store<Sample>(row, static_cast<uint16_t>(opacity));
  }
}

}  // namespace

RowTransform::RowTransform(const Picture& picture, std::span<const uint8_t> profile) : picture_(picture) {
  using Input = ColorTransform::Input;
  using Output = ColorTransform::Output;
  const bool deep = IsDeep(picture.layout);
  const Output output = deep ? Output::kRgb48 : Output::kRgb24;
  switch (picture.decoding) {
    case Decoding::kIndices: identity_ = true; break;
    case Decoding::kSamples: {
      const uint16_t channels = picture.colors + (picture.alpha != Alpha::kNone ? 1 : 0);
      identity_ = picture.sampleFormat == SAMPLEFORMAT_UINT && (picture.bits == 8 || picture.bits == 16) &&
                  picture.samples == channels && picture.photometric != PHOTOMETRIC_MINISWHITE &&
                  picture.alpha != Alpha::kAssociated;
      break;
    }
    case Decoding::kInks:
      transform_ = std::make_unique<ColorTransform>(deep ? Input::kCmyk16 : Input::kCmyk8, output, profile);
      inks_.resize(size_t{picture.width} * 4);
      colors_.resize(size_t{picture.width} * 3);
      break;
    case Decoding::kLab:
      transform_ = std::make_unique<ColorTransform>(Input::kLab, output, std::span<const uint8_t>());
      lab_.resize(size_t{picture.width} * 3);
      break;
    default: break;
  }
  if (!identity_ && picture.decoding != Decoding::kLibrary) samples_.resize(size_t{picture.width} * picture.samples);
}

void RowTransform::Convert(const uint8_t* stored, uint8_t* row) {
  if (picture_.decoding == Decoding::kLibrary) {
    ConvertLibrary(stored, row);
    return;
  }
  ReadSamples(stored);
  switch (picture_.decoding) {
    case Decoding::kPaletteColors: ConvertPalette(row); break;
    case Decoding::kInks: ConvertInks(row); break;
    case Decoding::kLab: ConvertLab(row); break;
    default: ConvertSamples(row); break;
  }
}

void RowTransform::ReadSamples(const uint8_t* stored) {
  const uint16_t bits = picture_.bits;
  const bool deep = IsDeep(picture_.layout);
  const bool raw = picture_.decoding == Decoding::kPaletteColors || picture_.decoding == Decoding::kLab;
  if (picture_.sampleFormat == SAMPLEFORMAT_IEEEFP && !raw) {
    for (size_t i = 0; i < samples_.size(); ++i) {
      const uint16_t value = ClampUnit(LoadFloat(stored + i * (bits / 8), bits));
      samples_[i] = deep ? value : Narrow16(value);
    }
    return;
  }
  const uint64_t flip = picture_.sampleFormat == SAMPLEFORMAT_INT && !raw ? uint64_t{1} << (bits - 1) : 0;
  for (size_t i = 0; i < samples_.size(); ++i) {
    const uint64_t value = LoadInteger(stored, i, bits) ^ flip;
    samples_[i] = raw ? static_cast<uint16_t>(value) : Scale(value, bits, deep);
  }
}

void RowTransform::ConvertSamples(uint8_t* row) const {
  const bool invert = picture_.photometric == PHOTOMETRIC_MINISWHITE;
  if (IsDeep(picture_.layout)) {
    Assemble<uint16_t>(picture_, samples_.data(), invert, row);
  } else {
    Assemble<uint8_t>(picture_, samples_.data(), invert, row);
  }
}

void RowTransform::ConvertPalette(uint8_t* row) const {
  const bool alpha = HasAlpha(picture_.layout);
  const uint16_t* samples = samples_.data();
  for (uint32_t x = 0; x < picture_.width; ++x, samples += picture_.samples) {
    const ZVPALETTEENTRY color = samples[0] < picture_.palette.size() ? picture_.palette[samples[0]] : ZVPALETTEENTRY{};
    *row++ = color.red;
    *row++ = color.green;
    *row++ = color.blue;
    if (alpha) *row++ = static_cast<uint8_t>(Scale(samples[1], picture_.bits, false));
  }
}

void RowTransform::ConvertInks(uint8_t* row) {
  const bool deep = IsDeep(picture_.layout);
  auto* bytes = reinterpret_cast<uint8_t*>(inks_.data());
  for (size_t x = 0; x < picture_.width; ++x) {
    const uint16_t* pixel = &samples_[x * picture_.samples];
    for (size_t ink = 0; ink < 4; ++ink) {
      if (deep) {
        inks_[x * 4 + ink] = pixel[ink];
      } else {
        bytes[x * 4 + ink] = static_cast<uint8_t>(pixel[ink]);
      }
    }
  }
  if (picture_.alpha == Alpha::kNone) {
    transform_->Convert(inks_.data(), row, picture_.width);
    return;
  }
  transform_->Convert(inks_.data(), colors_.data(), picture_.width);
  const size_t size = deep ? 2 : 1;
  const auto* colors = reinterpret_cast<const uint8_t*>(colors_.data());
  for (size_t x = 0; x < picture_.width; ++x, colors += 3 * size, row += 4 * size) {
    std::memcpy(row, colors, 3 * size);
    uint8_t* opacity = row + 3 * size;
    const uint16_t alpha = samples_[x * picture_.samples + 4];
    deep ? Store<uint16_t>(opacity, alpha) : Store<uint8_t>(opacity, alpha);
  }
}

// L is unsigned over its whole range; a and b are signed in CIELab and offset by half their range in the ICC's form.
void RowTransform::ConvertLab(uint8_t* row) {
  const bool icc = picture_.photometric == PHOTOMETRIC_ICCLAB;
  const bool wide = picture_.bits == 16;
  // The ICC's 16-bit encoding has 100 at 0xFF00, CIELab's at 0xFFFF.
  const double lightness = 100.0 / (wide ? (icc ? 65280 : 65535) : 255);
  for (size_t x = 0; x < picture_.width; ++x) {
    const uint16_t* pixel = &samples_[x * picture_.samples];
    lab_[x * 3] = pixel[0] * lightness;
    for (size_t axis = 1; axis < 3; ++axis) {
      const uint16_t value = pixel[axis];
      const double chroma = icc    ? value - (wide ? 32768.0 : 128.0)
                            : wide ? static_cast<int16_t>(value)
                                   : static_cast<int8_t>(static_cast<uint8_t>(value));
      lab_[x * 3 + axis] = wide ? chroma / 256 : chroma;
    }
  }
  transform_->Convert(lab_.data(), row, picture_.width);
}

void RowTransform::ConvertLibrary(const uint8_t* stored, uint8_t* row) const {
  const bool gray = picture_.layout == Layout::kGray8;
  for (uint32_t x = 0; x < picture_.width; ++x, stored += 4) {
    const uint32_t pixel = Load<uint32_t>(stored);
    *row++ = static_cast<uint8_t>(TIFFGetR(pixel));
    if (gray) continue;
    *row++ = static_cast<uint8_t>(TIFFGetG(pixel));
    *row++ = static_cast<uint8_t>(TIFFGetB(pixel));
  }
}

}  // namespace zvfile::tiff
