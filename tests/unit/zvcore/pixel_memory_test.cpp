#include "services/zvcore/zvcore.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr int32_t kSide = 1000;  // pixels; three million bytes

BITMAPHANDLE Make(int32_t width, int32_t height = kSide) {
  BITMAPHANDLE bitmap;
  EXPECT_EQ(InitBitmapHandle(&bitmap, sizeof bitmap, width, height, 24), SUCCESS);
  EXPECT_EQ(AllocateBitmap(&bitmap, MEMORY_CONVENTIONAL), SUCCESS);
  return bitmap;
}

bool IsBlank(const BITMAPHANDLE& bitmap) {
  return std::all_of(bitmap.data, bitmap.data + bitmap.dataSize, [](uint8_t value) { return value == 0; });
}

class KeptPixels : public testing::Test {
 protected:
  KeptPixels() { KeepPixelMemory(1); }
  ~KeptPixels() override { KeepPixelMemory(0); }
  int64_t blocks = CoreBlockCount();
};

TEST_F(KeptPixels, ServeTheNextBitmapOfTheirSizeAndAreBlank) {
  BITMAPHANDLE first = Make(kSide);
  const uint8_t* const pixels = first.data;
  std::fill_n(first.data, first.dataSize, uint8_t{77});
  FreeBitmap(&first);
  EXPECT_EQ(CoreBlockCount(), blocks) << "what waits is no leak";
  BITMAPHANDLE second = Make(kSide - 10);
  EXPECT_EQ(second.data, pixels);
  EXPECT_TRUE(IsBlank(second));
  EXPECT_EQ(CoreBlockCount(), blocks + 1);
  FreeBitmap(&second);
  EXPECT_EQ(CoreBlockCount(), blocks);
}

TEST_F(KeptPixels, ServeOneBitmapOnly) {
  BITMAPHANDLE first = Make(kSide);
  FreeBitmap(&first);
  BITMAPHANDLE second = Make(kSide), third = Make(kSide);
  EXPECT_NE(second.data, third.data);
  EXPECT_TRUE(IsBlank(third));
  FreeBitmap(&second);
  FreeBitmap(&third);
  EXPECT_EQ(CoreBlockCount(), blocks);
}

TEST_F(KeptPixels, DoNotServeLargerBitmaps) {
  BITMAPHANDLE first = Make(kSide);
  FreeBitmap(&first);
  BITMAPHANDLE larger = Make(2 * kSide);
  std::fill_n(larger.data, larger.dataSize, uint8_t{1});
  FreeBitmap(&larger);
  EXPECT_EQ(CoreBlockCount(), blocks);
}

TEST_F(KeptPixels, AreNotHeldBySmallBitmaps) {
  BITMAPHANDLE first = Make(kSide);
  const uint8_t* const pixels = first.data;
  FreeBitmap(&first);
  BITMAPHANDLE small = Make(10, 10);
  EXPECT_NE(small.data, pixels);
  BITMAPHANDLE second = Make(kSide);
  EXPECT_EQ(second.data, pixels) << "they still wait";
  FreeBitmap(&small);
  FreeBitmap(&second);
}

TEST_F(KeptPixels, OfALargeAndASmallerBitmapAreThoseOfTheLarge) {
  BITMAPHANDLE large = Make(2 * kSide), smaller = Make(kSide);
  const uint8_t* const pixels = large.data;
  FreeBitmap(&large);
  FreeBitmap(&smaller);
  BITMAPHANDLE next = Make(2 * kSide);
  EXPECT_EQ(next.data, pixels);
  FreeBitmap(&next);
  EXPECT_EQ(CoreBlockCount(), blocks);
}

TEST_F(KeptPixels, WaitUntilTheLastOfNestedTimesEnds) {
  KeepPixelMemory(1);
  KeepPixelMemory(0);
  BITMAPHANDLE first = Make(kSide);
  const uint8_t* const pixels = first.data;
  FreeBitmap(&first);
  BITMAPHANDLE second = Make(kSide);
  EXPECT_EQ(second.data, pixels);
  FreeBitmap(&second);
}

TEST(PixelMemory, MayBeEndedOnceTooOften) {
  KeepPixelMemory(0);
  BITMAPHANDLE bitmap = Make(kSide);
  const int64_t blocks = CoreBlockCount();
  FreeBitmap(&bitmap);
  EXPECT_EQ(CoreBlockCount(), blocks - 1);
}

}  // namespace
