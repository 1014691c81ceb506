/* Bitmaps for tests: created with a format, filled with reproducible noise or a smooth picture, and read back pixel
 * by pixel without any code of the module that is tested. */
#ifndef ZV_TESTS_ZVCORE_TEST_BITMAP_H
#define ZV_TESTS_ZVCORE_TEST_BITMAP_H

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "services/zvcore/zvcore.h"

struct Format {
  int bits;
  int order = ORDER_BGR;
  bool topDown = true;
  bool alpha = false;
};

inline std::vector<Format> AllFormats() {
  std::vector<Format> formats;
  for (const bool topDown : {true, false}) {
    for (const int bits : {1, 4, 8, 16, 24, 32, 48, 64}) formats.push_back({bits, ORDER_BGR, topDown});
    formats.push_back({8, ORDER_GRAY, topDown});
    formats.push_back({16, ORDER_GRAY, topDown});
    formats.push_back({24, ORDER_RGB, topDown});
    formats.push_back({32, ORDER_BGR, topDown, true});
    formats.push_back({64, ORDER_RGB, topDown, true});
  }
  return formats;
}

inline std::string NameOf(const Format& format) {
  std::string name = std::to_string(format.bits) + (format.order == ORDER_GRAY  ? " grey"
                                                    : format.order == ORDER_RGB ? " RGB"
                                                                                : "");
  return name + (format.alpha ? " alpha" : "") + (format.topDown ? " top-down" : " bottom-up");
}

class TestBitmap {
 public:
  TestBitmap() = default;
  TestBitmap(int32_t width, int32_t height, Format format) { Create(width, height, format); }
  TestBitmap(const TestBitmap&) = delete;
  TestBitmap& operator=(const TestBitmap&) = delete;
  ~TestBitmap() { FreeBitmap(&handle); }

  void Create(int32_t width, int32_t height, Format format) {
    FreeBitmap(&handle);
    ASSERT_EQ(InitBitmapHandle(&handle, sizeof handle, width, height, format.bits), SUCCESS);
    handle.colorOrder = format.order;
    if (!format.topDown) handle.flags &= ~BITMAP_FLAG_TOP_DOWN;
    if (format.alpha) handle.flags |= BITMAP_FLAG_ALPHA;
    ASSERT_EQ(AllocateBitmap(&handle, MEMORY_CONVENTIONAL), SUCCESS);
  }

  // Every bit of every pixel is noise; the bits past the end of a row stay 0.
  void FillWithNoise(unsigned seed = 1) {
    std::mt19937_64 random(seed);
    for (int32_t y = 0; y < handle.height; ++y) {
      for (int32_t x = 0; x < handle.width; ++x) SetPixel(x, y, random());
    }
  }

  // The raw bits of a stored pixel, row 0 being the top.
  uint64_t Pixel(int32_t x, int32_t y) const {
    const uint8_t* row = Row(y);
    const int bits = handle.bitsPerPixel;
    if (bits == 1) return row[x / 8] >> (7 - x % 8) & 1;
    if (bits == 4) return x % 2 ? row[x / 2] & 15 : row[x / 2] >> 4;
    uint64_t value = 0;
    std::memcpy(&value, row + static_cast<int64_t>(x) * (bits / 8), static_cast<size_t>(bits / 8));
    return value;
  }
  void SetPixel(int32_t x, int32_t y, uint64_t value) {
    auto* row = const_cast<uint8_t*>(Row(y));
    const int bits = handle.bitsPerPixel;
    if (bits == 1) {
      row[x / 8] = static_cast<uint8_t>((row[x / 8] & ~(0x80 >> x % 8)) | (value & 1 ? 0x80 >> x % 8 : 0));
    } else if (bits == 4) {
      const int shift = x % 2 ? 0 : 4;
      row[x / 2] = static_cast<uint8_t>((row[x / 2] & ~(15 << shift)) | static_cast<int>(value & 15) << shift);
    } else {
      std::memcpy(row + static_cast<int64_t>(x) * (bits / 8), &value, static_cast<size_t>(bits / 8));
    }
  }

  // Channel c of a pixel of whole channels: 8-bit grey, 16-bit grey, 24, 32, 48, 64.
  int Channel(int32_t x, int32_t y, int c) const {
    const int width = ChannelBits();
    return static_cast<int>(Pixel(x, y) >> (c * width) & ((1u << width) - 1));
  }
  void SetChannel(int32_t x, int32_t y, int c, int value) {
    const int width = ChannelBits();
    const uint64_t mask = ((uint64_t{1} << width) - 1) << (c * width);
    SetPixel(x, y, (Pixel(x, y) & ~mask) | static_cast<uint64_t>(value) << (c * width));
  }
  int Channels() const { return handle.bitsPerPixel / ChannelBits(); }
  int Highest() const { return (1 << ChannelBits()) - 1; }

  BITMAPHANDLE* operator->() { return &handle; }
  const BITMAPHANDLE* operator->() const { return &handle; }
  BITMAPHANDLE* operator&() { return &handle; }
  const BITMAPHANDLE* operator&() const { return &handle; }

 private:
  int ChannelBits() const { return handle.bitsPerPixel >= 48 || handle.bitsPerPixel == 16 ? 16 : 8; }
  const uint8_t* Row(int32_t y) const {
    const bool topDown = handle.flags & BITMAP_FLAG_TOP_DOWN;
    return handle.data + static_cast<int64_t>(topDown ? y : handle.height - 1 - y) * handle.bytesPerLine;
  }

  BITMAPHANDLE handle = {};
};

// The stored pixels of two bitmaps are the same.
inline testing::AssertionResult SamePixels(const TestBitmap& a, const TestBitmap& b) {
  if (a->width != b->width || a->height != b->height || a->bitsPerPixel != b->bitsPerPixel) {
    return testing::AssertionFailure() << a->width << "x" << a->height << " and " << b->width << "x" << b->height;
  }
  for (int32_t y = 0; y < a->height; ++y) {
    for (int32_t x = 0; x < a->width; ++x) {
      if (a.Pixel(x, y) != b.Pixel(x, y)) {
        return testing::AssertionFailure()
               << "pixel " << x << ", " << y << ": " << a.Pixel(x, y) << " and " << b.Pixel(x, y);
      }
    }
  }
  return testing::AssertionSuccess();
}

// Installs a status function for a scope: it counts calls, checks that percentages rise, and stops at one if asked to.
class StatusProbe {
 public:
  explicit StatusProbe(int32_t stopAtPercent = INT32_MAX) : stopAt(stopAtPercent) {
    SetStatusCallback(&StatusProbe::Called, this, &formerFunction, &formerData);
  }
  StatusProbe(const StatusProbe&) = delete;
  ~StatusProbe() { SetStatusCallback(formerFunction, formerData, nullptr, nullptr); }

  int calls = 0;
  int32_t last = -1;
  bool rising = true;

 private:
  static int32_t ZV_CALL Called(int32_t percent, void* userData) {
    auto* self = static_cast<StatusProbe*>(userData);
    ++self->calls;
    self->rising = self->rising && percent > self->last && percent <= 100;
    self->last = percent;
    return percent >= self->stopAt ? 0 : SUCCESS;
  }

  int32_t stopAt;
  STATUSCALLBACK formerFunction = nullptr;
  void* formerData = nullptr;
};

#endif
