#include "file_test_support.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <fstream>

namespace zvtest {
namespace {

uint32_t Noise(uint32_t seed) {
  seed ^= seed >> 16;
  seed *= 0x7FEB352Du;
  seed ^= seed >> 15;
  seed *= 0x846CA68Bu;
  return seed ^ (seed >> 16);
}

// 16-bit samples of a picture whose parts are smooth, edged and noisy.
Color Scene(int32_t x, int32_t y, int32_t width, int32_t height) {
  const double u = (x + 0.5) / width, v = (y + 0.5) / height;
  const auto level = [](double value) {
    return static_cast<uint16_t>(std::fmin(std::fmax(value, 0.0), 1.0) * 65535 + 0.5);
  };
  const uint32_t noise = Noise(static_cast<uint32_t>(y * 7919 + x));
  const bool disc = (u - 0.5) * (u - 0.5) + (v - 0.5) * (v - 0.5) < 0.06;
  const double grain = ((noise & 255) / 255.0 - 0.5) * 0.04;
  return {level(disc ? 0.9 - v * 0.3 : u + grain), level(v + grain), level(disc ? 0.2 + u * 0.3 : 1 - u * v),
          level(disc ? 0.9 : v)};
}

uint8_t* RowOf(const BITMAPHANDLE& bitmap, int32_t y) {
  const int32_t line = (bitmap.flags & BITMAP_FLAG_TOP_DOWN) ? y : bitmap.height - 1 - y;
  return bitmap.data + static_cast<ptrdiff_t>(bitmap.bytesPerLine) * line;
}

uint8_t Narrow(uint16_t value) { return static_cast<uint8_t>(value >> 8); }

void SetIndex(uint8_t* row, int32_t x, int32_t bits, uint32_t index) {
  if (bits == 8) {
    row[x] = static_cast<uint8_t>(index);
    return;
  }
  const int32_t shift = 8 - bits - (x * bits) % 8;
  uint8_t& byte = row[x * bits / 8];
  byte = static_cast<uint8_t>((byte & ~(((1 << bits) - 1) << shift)) | (index << shift));
}

uint32_t GetIndex(const uint8_t* row, int32_t x, int32_t bits) {
  if (bits == 8) return row[x];
  return (row[x * bits / 8] >> (8 - bits - (x * bits) % 8)) & ((1u << bits) - 1);
}

void PutColor(BITMAPHANDLE& bitmap, int32_t x, int32_t y, const Color& color) {
  uint8_t* row = RowOf(bitmap, y);
  const int32_t bits = bitmap.bitsPerPixel;
  const bool gray = bitmap.colorOrder == ORDER_GRAY;
  const bool rgb = bitmap.colorOrder == ORDER_RGB;
  if (bits <= 8) {
    const uint32_t levels = (1u << bits) - 1;
    SetIndex(row, x, bits, gray ? Narrow(color.green) : (color.red * levels + 32767u) / 65535u);
  } else if (bits == 16) {
    const uint16_t word =
        gray ? color.green
             : static_cast<uint16_t>(((color.red >> 11) << 10) | ((color.green >> 11) << 5) | (color.blue >> 11));
    std::memcpy(row + x * 2, &word, 2);
  } else if (bits <= 32) {
    uint8_t* pixel = row + static_cast<ptrdiff_t>(x) * (bits / 8);
    pixel[rgb ? 0 : 2] = Narrow(color.red);
    pixel[1] = Narrow(color.green);
    pixel[rgb ? 2 : 0] = Narrow(color.blue);
    if (bits == 32) pixel[3] = (bitmap.flags & BITMAP_FLAG_ALPHA) ? Narrow(color.alpha) : 255;
  } else {
    uint16_t samples[4] = {rgb ? color.red : color.blue, color.green, rgb ? color.blue : color.red, color.alpha};
    if (!(bitmap.flags & BITMAP_FLAG_ALPHA)) samples[3] = 65535;
    std::memcpy(row + static_cast<ptrdiff_t>(x) * (bits / 8), samples, static_cast<size_t>(bits) / 8);
  }
}

}  // namespace

TestFolder::TestFolder() {
  static std::atomic<int> counter{0};
  const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
  folder_ = std::filesystem::current_path() / "zvfile_test" / (std::to_string(ticks) + "_" + std::to_string(++counter));
  std::filesystem::create_directories(folder_);
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

size_t TestFolder::FileCount() const {
  size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder_)) ++count;
  return count;
}

ZvText Text(const std::filesystem::path& path) {
  const std::u16string text = path.u16string();
  return ZvText(text.begin(), text.end());
}

Picture MakePicture(int32_t width, int32_t height, int32_t bits, int32_t order, bool alpha) {
  Picture picture;
  std::vector<ZVPALETTEENTRY> palette;
  if (bits <= 8 && order != ORDER_GRAY) {
    const int32_t last = (1 << bits) - 1;
    for (int32_t i = 0; i <= last; ++i) {
      const uint8_t level = static_cast<uint8_t>(i * 255 / last);
      palette.push_back({static_cast<uint8_t>(bits == 1 ? level : 255 - level), level,
                         static_cast<uint8_t>(bits == 1 ? level : level / 2 + 40), 255});
    }
  }
  CreateBitmap(&picture, sizeof(BITMAPHANDLE), MEMORY_CONVENTIONAL, width, height, bits, order,
               palette.empty() ? nullptr : palette.data(), VIEW_TOP_LEFT, nullptr, 0);
  if (alpha) picture->flags |= BITMAP_FLAG_ALPHA;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) PutColor(picture.bitmap, x, y, Scene(x, y, width, height));
  }
  return picture;
}

Color ColorAt(const BITMAPHANDLE& bitmap, int32_t x, int32_t y) {
  const uint8_t* row = RowOf(bitmap, y);
  const int32_t bits = bitmap.bitsPerPixel;
  const bool rgb = bitmap.colorOrder == ORDER_RGB;
  const auto wide = [](uint32_t value) { return static_cast<uint16_t>(value * 257); };
  if (bits <= 8) {
    const uint32_t index = GetIndex(row, x, bits);
    if (bitmap.colorOrder == ORDER_GRAY && bits == 8) return {wide(index), wide(index), wide(index), 65535};
    const ZVPALETTEENTRY& entry = bitmap.palette[index];
    return {wide(entry.red), wide(entry.green), wide(entry.blue), 65535};
  }
  if (bits == 16) {
    uint16_t word;
    std::memcpy(&word, row + x * 2, 2);
    if (bitmap.colorOrder == ORDER_GRAY) return {word, word, word, 65535};
    const auto five = [&](int shift) {
      const uint32_t value = (word >> shift) & 31;
      return wide((value << 3) | (value >> 2));
    };
    return {five(10), five(5), five(0), 65535};
  }
  const bool alpha = (bitmap.flags & BITMAP_FLAG_ALPHA) != 0;
  if (bits <= 32) {
    const uint8_t* pixel = row + static_cast<ptrdiff_t>(x) * (bits / 8);
    return {wide(pixel[rgb ? 0 : 2]), wide(pixel[1]), wide(pixel[rgb ? 2 : 0]),
            bits == 32 && alpha ? wide(pixel[3]) : uint16_t{65535}};
  }
  uint16_t samples[4] = {0, 0, 0, 65535};
  std::memcpy(samples, row + static_cast<ptrdiff_t>(x) * (bits / 8), static_cast<size_t>(bits) / 8);
  return {samples[rgb ? 0 : 2], samples[1], samples[rgb ? 2 : 0], alpha ? samples[3] : uint16_t{65535}};
}

int64_t DifferentPixels(const BITMAPHANDLE& a, const BITMAPHANDLE& b) {
  if (a.width != b.width || a.height != b.height) return INT64_MAX;
  int64_t count = 0;
  for (int32_t y = 0; y < a.height; ++y) {
    for (int32_t x = 0; x < a.width; ++x) count += ColorAt(a, x, y) == ColorAt(b, x, y) ? 0 : 1;
  }
  return count;
}

double Psnr(const BITMAPHANDLE& a, const BITMAPHANDLE& b) {
  if (a.width != b.width || a.height != b.height) return 0;
  double sum = 0;
  for (int32_t y = 0; y < a.height; ++y) {
    for (int32_t x = 0; x < a.width; ++x) {
      const Color p = ColorAt(a, x, y), q = ColorAt(b, x, y);
      for (const double difference : {p.red - q.red, p.green - q.green, p.blue - q.blue})
        sum += difference * difference;
    }
  }
  const double mean = sum / (3.0 * a.width * a.height);
  return mean == 0 ? 100.0 : 10 * std::log10(65535.0 * 65535.0 / mean);
}

int32_t Save(const std::filesystem::path& path, Picture& picture, int32_t format, int32_t bits, int32_t quality,
             const SAVEFILEOPTION* option) {
  return SaveBitmapToFile(Text(path).c_str(), &picture, format, bits, quality, option);
}

int32_t Load(const std::filesystem::path& path, Picture& picture, int32_t bits, int32_t order,
             const LOADFILEOPTION* option, FILEINFO* info) {
  return LoadBitmapFile(Text(path).c_str(), &picture, sizeof(BITMAPHANDLE), bits, order, option, info);
}

int32_t Info(const std::filesystem::path& path, FILEINFO& info, uint32_t flags, int32_t page) {
  const LOADFILEOPTION option = LoadOption(page);
  info = {};
  info.uStructSize = sizeof info;
  return GetFileInfo(Text(path).c_str(), &info, sizeof info, flags, &option);
}

LOADFILEOPTION LoadOption(int32_t page) {
  LOADFILEOPTION option;
  GetDefaultLoadFileOption(&option, sizeof option);
  option.pageNumber = page;
  return option;
}

SAVEFILEOPTION SaveOption() {
  SAVEFILEOPTION option;
  GetDefaultSaveFileOption(&option, sizeof option);
  return option;
}

std::vector<uint8_t> ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteBytes(const std::filesystem::path& path, const std::vector<uint8_t>& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace zvtest
