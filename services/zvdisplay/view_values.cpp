#include "services/zvdisplay/view_values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr int32_t kNeutralBrightness = 0;
constexpr int32_t kNeutralContrast = 100;
constexpr int32_t kNeutralHue = 0;

int32_t GetValue(const BITMAPHANDLE* bitmap, int32_t BITMAPHANDLE::*member, int32_t neutral) {
  return bitmap ? bitmap->*member : neutral;
}

int32_t SetValue(BITMAPHANDLE* bitmap, int32_t BITMAPHANDLE::*member, int32_t value) {
  if (!bitmap) return ERROR_BAD_ARGUMENT;
  bitmap->*member = value;
  return SUCCESS;
}

uint8_t ToLevel(double value) { return static_cast<uint8_t>(std::clamp(std::lround(value), 0l, 255l)); }

// Brightness is an offset in levels, contrast a percentage of the distance from the middle grey.
std::array<uint8_t, 256> LevelTable(int32_t brightness, int32_t contrast) {
  std::array<uint8_t, 256> table;
  for (int level = 0; level < 256; ++level) {
    table[static_cast<size_t>(level)] = ToLevel((level - 127.5) * contrast / 100.0 + 127.5 + brightness);
  }
  return table;
}

// Rotates colours around the grey axis by hundredths of a degree: the hue changes, a grey stays the grey it is.
class HueRotation {
 public:
  explicit HueRotation(int32_t angle) {
    const double radians = angle / 100.0 * std::numbers::pi / 180;
    const double third = (1 - std::cos(radians)) / 3, side = std::sin(radians) / std::numbers::sqrt3;
    same_ = std::cos(radians) + third;
    next_ = third - side;
    last_ = third + side;
  }
  void Apply(uint8_t* bgr) const {
    const double blue = bgr[0], green = bgr[1], red = bgr[2];
    bgr[2] = ToLevel(same_ * red + next_ * green + last_ * blue);
    bgr[1] = ToLevel(last_ * red + same_ * green + next_ * blue);
    bgr[0] = ToLevel(next_ * red + last_ * green + same_ * blue);
  }

 private:
  double same_, next_, last_;
};

}  // namespace

// A handle made by InitBitmapHandle or cleared to zero has never been given settings: zero contrast is then the
// neutral one.
int32_t GetBitmapViewValueA(const BITMAPHANDLE* bitmap) {
  return GetValue(bitmap, &BITMAPHANDLE::viewValueA, kNeutralBrightness);
}
int32_t GetBitmapViewValueB(const BITMAPHANDLE* bitmap) {
  const int32_t value = GetValue(bitmap, &BITMAPHANDLE::viewValueB, kNeutralContrast);
  return value == 0 ? kNeutralContrast : value;
}
int32_t GetBitmapViewValueC(const BITMAPHANDLE* bitmap) {
  return GetValue(bitmap, &BITMAPHANDLE::viewValueC, kNeutralHue);
}
int32_t SetBitmapViewValueA(BITMAPHANDLE* bitmap, int32_t value) {
  return SetValue(bitmap, &BITMAPHANDLE::viewValueA, value);
}
int32_t SetBitmapViewValueB(BITMAPHANDLE* bitmap, int32_t value) {
  return SetValue(bitmap, &BITMAPHANDLE::viewValueB, value);
}
int32_t SetBitmapViewValueC(BITMAPHANDLE* bitmap, int32_t value) {
  return SetValue(bitmap, &BITMAPHANDLE::viewValueC, value);
}

void zvdisplay::ApplyViewValues(BITMAPHANDLE& pixels, const BITMAPHANDLE& source) {
  const int32_t brightness = GetBitmapViewValueA(&source), contrast = GetBitmapViewValueB(&source),
                hue = GetBitmapViewValueC(&source);
  if (brightness == kNeutralBrightness && contrast == kNeutralContrast && hue == kNeutralHue) return;
  const std::array<uint8_t, 256> levels = LevelTable(brightness, contrast);
  const HueRotation rotation(hue);
  const int32_t step = pixels.bitsPerPixel / 8;
  for (int32_t row = 0; row < pixels.height; ++row) {
    uint8_t* pixel = pixels.data + int64_t{row} * pixels.bytesPerLine;
    for (int32_t x = 0; x < pixels.width; ++x, pixel += step) {
      if (hue != kNeutralHue) rotation.Apply(pixel);
      for (int channel = 0; channel < 3; ++channel) pixel[channel] = levels[pixel[channel]];
    }
  }
}
