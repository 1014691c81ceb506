#include "services/zvdlgwidgets/argb_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "platform/unique_handle.h"

namespace {

constexpr uint32_t kMagenta = 0xFF00FF;
constexpr uint32_t kColorMask = 0xFFFFFF;

uint32_t Channel(uint32_t pixel, int shift) { return (pixel >> shift) & 0xFF; }

uint32_t MultiplyByAlpha(uint32_t pixel) {
  const uint32_t alpha = Channel(pixel, 24);
  const auto scaled = [&](int shift) { return (Channel(pixel, shift) * alpha + 127) / 255 << shift; };
  return alpha << 24 | scaled(16) | scaled(8) | scaled(0);
}

// How much of each source pixel a destination pixel takes, along one axis.
struct Tap {
  int source;
  double weight;
};

std::vector<Tap> TapsAt(int position, int from, int to) {
  const double ratio = static_cast<double>(from) / to;
  // A filter as wide as a destination pixel, at least as wide as a source pixel: box and triangle meet at 1 to 1.
  const double radius = std::max(ratio, 1.0);
  const double centre = (position + 0.5) * ratio - 0.5;
  std::vector<Tap> taps;
  double sum = 0;
  const int first = static_cast<int>(std::ceil(centre - radius));
  const int last = static_cast<int>(std::floor(centre + radius));
  for (int source = first; source <= last; ++source) {
    const double weight = 1 - std::fabs(source - centre) / radius;
    if (weight > 0) {
      taps.push_back({std::clamp(source, 0, from - 1), weight});
      sum += weight;
    }
  }
  for (Tap& tap : taps) {
    tap.weight /= sum;
  }
  return taps;
}

uint32_t Blend(const ArgbImage& image, const std::vector<Tap>& columns, const std::vector<Tap>& rows) {
  std::array<double, 4> sum{};
  for (const Tap& row : rows) {
    for (const Tap& column : columns) {
      const uint32_t pixel = image.pixels[static_cast<size_t>(row.source) * image.width + column.source];
      for (int channel = 0; channel < 4; ++channel) {
        sum[channel] += Channel(pixel, channel * 8) * row.weight * column.weight;
      }
    }
  }
  uint32_t pixel = 0;
  for (int channel = 0; channel < 4; ++channel) {
    pixel |= static_cast<uint32_t>(std::lround(sum[channel])) << (channel * 8);
  }
  return pixel;
}

BITMAPINFO DibFormat(int width, int height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // rows from the top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

}  // namespace

ArgbImage MakeArgbImage(int width, int height, std::vector<uint32_t> pixels) {
  if (pixels.empty()) {
    return {};
  }
  const bool hasAlpha = std::ranges::any_of(pixels, [](uint32_t pixel) { return Channel(pixel, 24) != 0; });
  const auto isMagenta = [](uint32_t pixel) { return (pixel & kColorMask) == kMagenta; };
  const uint32_t key = std::ranges::any_of(pixels, isMagenta) ? kMagenta : pixels.front() & kColorMask;
  for (uint32_t& pixel : pixels) {
    if (hasAlpha) {
      pixel = MultiplyByAlpha(pixel);
    } else {
      pixel = (pixel & kColorMask) == key ? 0 : pixel | 0xFF000000;
    }
  }
  return {width, height, std::move(pixels)};
}

ArgbImage ScaleArgbImage(const ArgbImage& image, int width, int height) {
  if (image.IsEmpty() || width < 1 || height < 1) {
    return {};
  }
  if (width == image.width && height == image.height) {
    return image;
  }
  std::vector<std::vector<Tap>> columns;
  for (int x = 0; x < width; ++x) {
    columns.push_back(TapsAt(x, image.width, width));
  }
  ArgbImage scaled{width, height, {}};
  scaled.pixels.reserve(static_cast<size_t>(width) * height);
  for (int y = 0; y < height; ++y) {
    const std::vector<Tap> rows = TapsAt(y, image.height, height);
    for (int x = 0; x < width; ++x) {
      scaled.pixels.push_back(Blend(image, columns[x], rows));
    }
  }
  return scaled;
}

ArgbImage GreyArgbImage(const ArgbImage& image) {
  ArgbImage grey = image;
  for (uint32_t& pixel : grey.pixels) {
    const uint32_t luminance = (Channel(pixel, 16) * 299 + Channel(pixel, 8) * 587 + Channel(pixel, 0) * 114) / 1000;
    const uint32_t half = luminance / 2;
    pixel = Channel(pixel, 24) / 2 << 24 | half << 16 | half << 8 | half;
  }
  return grey;
}

ArgbImage ReadArgbImage(HBITMAP bitmap) {
  BITMAP description{};
  if (!bitmap || !::GetObjectW(bitmap, sizeof description, &description)) {
    return {};
  }
  const int width = description.bmWidth;
  const int height = std::abs(description.bmHeight);
  std::vector<uint32_t> pixels(static_cast<size_t>(width) * height);
  BITMAPINFO info = DibFormat(width, height);
  const unique_window_dc screen(nullptr);
  if (!::GetDIBits(screen.get(), bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS)) {
    return {};
  }
  if (description.bmBitsPixel != 32) {
    // What the device puts into the fourth byte means nothing then.
    for (uint32_t& pixel : pixels) {
      pixel &= kColorMask;
    }
  }
  return MakeArgbImage(width, height, std::move(pixels));
}

void DrawArgbImage(HDC device, const ArgbImage& image, int x, int y) {
  if (image.IsEmpty()) {
    return;
  }
  const BITMAPINFO info = DibFormat(image.width, image.height);
  void* bits = nullptr;
  const unique_hbitmap section(::CreateDIBSection(device, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  const unique_hdc memory(::CreateCompatibleDC(device));
  if (!section || !memory) {
    return;
  }
  std::memcpy(bits, image.pixels.data(), image.pixels.size() * sizeof(uint32_t));
  const dc_selection selected(memory.get(), section.get());
  const BLENDFUNCTION blend = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  ::AlphaBlend(device, x, y, image.width, image.height, memory.get(), 0, 0, image.width, image.height, blend);
}
