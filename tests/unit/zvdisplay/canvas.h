// What the tests of painting share: a device whose pixels can be looked at, and bitmaps to paint on it.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "services/zvdisplay/zvdisplay.h"

namespace zvtest {

// A memory device of 32-bit pixels, white at first.
class Canvas {
 public:
  Canvas(int width, int height) : width_(width), height_(height), device_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    bitmap_ = CreateDIBSection(device_, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
    former_ = SelectObject(device_, bitmap_);
    std::memset(bits_, 0xFF, size_t(width) * height * 4);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    SelectObject(device_, former_);
    DeleteObject(bitmap_);
    DeleteDC(device_);
  }
  HDC device() const { return device_; }
  COLORREF At(int x, int y) const {
    GdiFlush();
    const auto* pixel = static_cast<const uint8_t*>(bits_) + (size_t(y) * width_ + x) * 4;
    return RGB(pixel[2], pixel[1], pixel[0]);
  }
  RECT All() const { return {0, 0, width_, height_}; }

 private:
  int width_, height_;
  HDC device_;
  HBITMAP bitmap_;
  HGDIOBJ former_;
  void* bits_ = nullptr;
};

// A bitmap that frees itself.
class Picture {
 public:
  Picture(int width, int height, int bits, int order = ORDER_BGR) {
    EXPECT_EQ(CreateBitmap(&handle, sizeof handle, MEMORY_CONVENTIONAL, width, height, bits, order, nullptr,
                           VIEW_TOP_LEFT, nullptr, 0),
              SUCCESS);
  }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() { FreeBitmap(&handle); }
  void SetRow(int row, const std::vector<uint8_t>& bytes) {
    EXPECT_EQ(PutBitmapRow(&handle, bytes.data(), row, int(bytes.size())), int(bytes.size()));
  }

  BITMAPHANDLE handle{};
};

inline constexpr COLORREF kRed = RGB(255, 0, 0), kGreen = RGB(0, 255, 0), kBlue = RGB(0, 0, 255),
                          kWhite = RGB(255, 255, 255);
inline const std::vector<uint8_t> kRedGreen = {0, 0, 255, 0, 255, 0};
inline const std::vector<uint8_t> kBlueWhite = {255, 0, 0, 255, 255, 255};

// Stored as red green / blue white.
class FourColors : public Picture {
 public:
  FourColors() : Picture(2, 2, 24) {
    SetRow(0, kRedGreen);
    SetRow(1, kBlueWhite);
  }
};

// Over the whole of the canvas.
inline int32_t Paint(const Canvas& canvas, const BITMAPHANDLE& bitmap, const RECT* source = nullptr,
                     const RECT* clip = nullptr) {
  const RECT all = canvas.All();
  return PaintBitmap(canvas.device(), &bitmap, source, nullptr, &all, clip, SRCCOPY);
}

}  // namespace zvtest
