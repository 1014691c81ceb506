// Bitmap files of the kinds that our writer does not make: OS/2 headers, bit fields, top-down rows, skips in run-length code,
// and files with the usual faults.
#include <gtest/gtest.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

class Bytes {
 public:
  Bytes& Le(uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    return *this;
  }
  Bytes& Raw(std::initializer_list<int> values) {
    for (const int value : values) bytes.push_back(static_cast<uint8_t>(value));
    return *this;
  }
  std::vector<uint8_t> bytes;
};

Bytes FileHeader(uint32_t pixelOffset) { return Bytes().Raw({'B', 'M'}).Le(0, 4).Le(0, 4).Le(pixelOffset, 4); }

Bytes InfoHeader(uint32_t pixelOffset, int32_t width, int32_t height, uint32_t bits, uint32_t compression,
                 uint32_t size = 40) {
  return FileHeader(pixelOffset)
      .Le(size, 4)
      .Le(static_cast<uint32_t>(width), 4)
      .Le(static_cast<uint32_t>(height), 4)
      .Le(1, 2)
      .Le(bits, 2)
      .Le(compression, 4)
      .Le(0, 4)
      .Le(0, 4)
      .Le(0, 4)
      .Le(0, 4)
      .Le(0, 4);
}

class BmpVariants : public testing::Test {
 protected:
  int32_t LoadBytes(const std::vector<uint8_t>& bytes) {
    WriteBytes(path_, bytes);
    return Load(path_, loaded_);
  }
  Color At(int32_t x, int32_t y) { return ColorAt(loaded_.bitmap, x, y); }
  static Color Rgb(uint32_t red, uint32_t green, uint32_t blue, uint32_t alpha = 255) {
    const auto wide = [](uint32_t value) { return static_cast<uint16_t>(value * 257); };
    return {wide(red), wide(green), wide(blue), wide(alpha)};
  }

  TestFolder folder_;
  std::filesystem::path path_ = folder_.Path(u"a.bmp");
  Picture loaded_;
};

TEST_F(BmpVariants, Os2HeaderWithThreeByteColors) {
  Bytes file = FileHeader(14 + 12 + 6);
  file.Le(12, 4).Le(3, 2).Le(2, 2).Le(1, 2).Le(1, 2);
  file.Raw({10, 20, 30, 40, 50, 60});
  file.Raw({0x40, 0, 0, 0, 0xA0, 0, 0, 0});
  ASSERT_EQ(LoadBytes(file.bytes), SUCCESS);
  EXPECT_EQ(loaded_->bitsPerPixel, 1);
  EXPECT_EQ(At(0, 0), Rgb(60, 50, 40));
  EXPECT_EQ(At(1, 0), Rgb(30, 20, 10));
  EXPECT_EQ(At(1, 1), Rgb(60, 50, 40));
}

TEST_F(BmpVariants, TopDownRows) {
  Bytes file = InfoHeader(54, 1, -2, 24, 0);
  file.Raw({1, 2, 3, 0, 4, 5, 6, 0});
  ASSERT_EQ(LoadBytes(file.bytes), SUCCESS);
  EXPECT_EQ(At(0, 0), Rgb(3, 2, 1));
  EXPECT_EQ(At(0, 1), Rgb(6, 5, 4));
}

TEST_F(BmpVariants, SixteenBitsWithFiveSixFive) {
  Bytes file = InfoHeader(66, 2, 1, 16, 3);
  file.Le(0xF800, 4).Le(0x07E0, 4).Le(0x001F, 4).Le(0xF800, 2).Le(0x07E0, 2);
  ASSERT_EQ(LoadBytes(file.bytes), SUCCESS);
  EXPECT_EQ(loaded_->bitsPerPixel, 24);
  EXPECT_EQ(At(0, 0), Rgb(255, 0, 0));
  EXPECT_EQ(At(1, 0), Rgb(0, 255, 0));
}

TEST_F(BmpVariants, ThirtyTwoBitsWithUnusualMasksAndAlpha) {
  Bytes file = InfoHeader(14 + 56, 1, 1, 32, 3, 56);
  file.Le(0x000000FF, 4).Le(0x0000FF00, 4).Le(0x00FF0000, 4).Le(0xFF000000, 4).Raw({10, 20, 30, 128});
  ASSERT_EQ(LoadBytes(file.bytes), SUCCESS);
  EXPECT_TRUE(loaded_->flags & BITMAP_FLAG_ALPHA);
  EXPECT_EQ(At(0, 0), Rgb(10, 20, 30, 128));
}

TEST_F(BmpVariants, RunLengthCodeWithSkipsAndEarlyEnd) {
  Bytes file = InfoHeader(54 + 1024, 4, 3, 8, 1);
  for (int i = 0; i < 256; ++i) file.Raw({i, i, i, 0});
  // Two pixels of 9 in the bottom row, a skip of one column and one row, one pixel of 7, and the end.
  file.Raw({2, 9, 0, 2, 1, 1, 1, 7, 0, 1});
  ASSERT_EQ(LoadBytes(file.bytes), SUCCESS);
  EXPECT_EQ(At(0, 2), Rgb(9, 9, 9));
  EXPECT_EQ(At(2, 2), Rgb(0, 0, 0));
  EXPECT_EQ(At(3, 1), Rgb(7, 7, 7));
  EXPECT_EQ(At(0, 0), Rgb(0, 0, 0));
}

TEST_F(BmpVariants, RunsBeyondTheImageAreCutOff) {
  Bytes file = InfoHeader(54 + 1024, 2, 1, 8, 1);
  for (int i = 0; i < 256; ++i) file.Raw({i, i, i, 0});
  file.Raw({255, 5, 0, 2, 200, 200, 9, 9, 0, 1});
  ASSERT_EQ(LoadBytes(file.bytes), SUCCESS);
  EXPECT_EQ(At(1, 0), Rgb(5, 5, 5));
}

TEST_F(BmpVariants, WrongPixelOffsetIsWorkedOut) {
  Bytes file = InfoHeader(0, 1, 1, 24, 0);
  file.Raw({1, 2, 3, 0});
  ASSERT_EQ(LoadBytes(file.bytes), SUCCESS);
  EXPECT_EQ(At(0, 0), Rgb(3, 2, 1));
}

TEST_F(BmpVariants, NonsenseIsDamage) {
  EXPECT_EQ(LoadBytes(InfoHeader(54, 0, 5, 24, 0).Raw({1, 2, 3, 4}).bytes), ERROR_FILE_DAMAGED);
  EXPECT_EQ(LoadBytes(InfoHeader(54, 1, 1, 23, 0).Raw({1, 2, 3, 4}).bytes), ERROR_FILE_DAMAGED);
  EXPECT_EQ(LoadBytes(InfoHeader(54, 1, 1, 24, 1).Raw({1, 2, 3, 4}).bytes), ERROR_FILE_DAMAGED);
  EXPECT_EQ(LoadBytes(InfoHeader(54, -5, 1, 24, 0).Raw({1, 2, 3, 4}).bytes), ERROR_FILE_DAMAGED);
}

}  // namespace
