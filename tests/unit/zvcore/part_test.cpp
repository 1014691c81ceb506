#include "tests/unit/zvcore/test_bitmap.h"

namespace {

TEST(ResamplePart, IsExactlyThatPartOfTheWhole) {
  for (const Format& format : AllFormats()) {
    if (format.bits <= 8 && format.order != ORDER_GRAY) continue;
    if (format.bits == 16 && format.order != ORDER_GRAY) continue;
    for (const int32_t method : {SIZE_NEAREST, SIZE_BILINEAR, SIZE_BICUBIC}) {
      for (const ZVRECT full : {ZVRECT{0, 0, 23, 17}, ZVRECT{0, 0, 90, 77}, ZVRECT{0, 0, 31, 60}}) {
        SCOPED_TRACE(NameOf(format));
        TestBitmap source(50, 40, format), whole(50, 40, format);
        source.FillWithNoise();
        whole.FillWithNoise();
        ASSERT_EQ(SizeBitmap(&whole, full.right, full.bottom, method), SUCCESS);
        const ZVRECT part = {5, 3, full.right - 2, full.bottom - 6};
        TestBitmap made;
        ASSERT_EQ(ResampleBitmapPart(&made, &source, full.right, full.bottom, &part, method), SUCCESS);
        TestBitmap cut;
        ASSERT_EQ(CopyBitmapPart(&cut, &whole, &part), SUCCESS);
        EXPECT_TRUE(SamePixels(made, cut));
      }
    }
  }
}

TEST(ResamplePart, OfIndicesIsInChannels) {
  TestBitmap gray(10, 10, {1}), color(10, 10, {4}), words(10, 10, {16});
  color->palette[0] = {0, 0, 255, 255};
  const ZVRECT part = {0, 0, 5, 5};
  TestBitmap made;
  ASSERT_EQ(ResampleBitmapPart(&made, &gray, 5, 5, &part, SIZE_BICUBIC), SUCCESS);
  EXPECT_EQ(made->bitsPerPixel, 8);
  EXPECT_EQ(made->colorOrder, ORDER_GRAY);
  for (const int32_t method : {SIZE_NEAREST, SIZE_BICUBIC}) {
    FreeBitmap(&made);
    ASSERT_EQ(ResampleBitmapPart(&made, &color, 5, 5, &part, method), SUCCESS);
    EXPECT_EQ(made->bitsPerPixel, 24);
    EXPECT_EQ(made.Pixel(4, 4), 0xFF0000u);
  }
  FreeBitmap(&made);
  ASSERT_EQ(ResampleBitmapPart(&made, &words, 5, 5, &part, SIZE_BICUBIC), SUCCESS);
  EXPECT_EQ(made->bitsPerPixel, 24);
}

TEST(ResamplePart, KeepsTheGreysBetweenBlackAndWhite) {
  TestBitmap bitmap(8, 8, {1});
  for (int32_t y = 0; y < 8; ++y) {
    for (int32_t x = 0; x < 8; ++x) bitmap.SetPixel(x, y, static_cast<uint64_t>((x + y) % 2));
  }
  const ZVRECT part = {0, 0, 4, 4};
  TestBitmap made;
  ASSERT_EQ(ResampleBitmapPart(&made, &bitmap, 4, 4, &part, SIZE_BICUBIC), SUCCESS);
  EXPECT_NEAR(static_cast<double>(made.Pixel(2, 2)), 127.5, 0.6);
}

TEST(ResamplePart, ReportsNoProgress) {
  TestBitmap bitmap(50, 50, {24}), made;
  const ZVRECT part = {0, 0, 20, 20};
  const StatusProbe probe;
  ASSERT_EQ(ResampleBitmapPart(&made, &bitmap, 20, 20, &part, SIZE_BICUBIC), SUCCESS);
  EXPECT_EQ(probe.calls, 0);
}

TEST(ResamplePart, OutsideTheFullSizeIsRefused) {
  TestBitmap bitmap(50, 50, {24}), made;
  for (const ZVRECT part : {ZVRECT{-1, 0, 5, 5}, ZVRECT{0, 0, 21, 5}, ZVRECT{4, 0, 4, 5}, ZVRECT{0, 5, 5, 4}}) {
    EXPECT_EQ(ResampleBitmapPart(&made, &bitmap, 20, 20, &part, SIZE_BICUBIC), ERROR_BAD_ARGUMENT);
    EXPECT_EQ(made->data, nullptr);
  }
}

TEST(CopyPart, TakesTheRectangleInEveryFormat) {
  for (const Format& format : AllFormats()) {
    SCOPED_TRACE(NameOf(format));
    TestBitmap bitmap(37, 11, format), part;
    bitmap.FillWithNoise();
    const ZVRECT rect = {3, 2, 30, 9};
    ASSERT_EQ(CopyBitmapPart(&part, &bitmap, &rect), SUCCESS);
    ASSERT_EQ(part->width, 27);
    ASSERT_EQ(part->height, 7);
    for (int32_t y = 0; y < 7; ++y) {
      for (int32_t x = 0; x < 27; ++x) ASSERT_EQ(part.Pixel(x, y), bitmap.Pixel(x + 3, y + 2));
    }
  }
}

TEST(PutPart, WritesOnlyItsRectangleInEveryFormat) {
  for (const Format& format : AllFormats()) {
    SCOPED_TRACE(NameOf(format));
    TestBitmap target(29, 9, format), before(29, 9, format), part(7, 4, format);
    target.FillWithNoise();
    before.FillWithNoise();
    part.FillWithNoise(2);
    ASSERT_EQ(PutBitmapPart(&target, &part, 5, 3), SUCCESS);
    for (int32_t y = 0; y < 9; ++y) {
      for (int32_t x = 0; x < 29; ++x) {
        const bool covered = x >= 5 && x < 12 && y >= 3 && y < 7;
        ASSERT_EQ(target.Pixel(x, y), covered ? part.Pixel(x - 5, y - 3) : before.Pixel(x, y)) << x << ", " << y;
      }
    }
    EXPECT_EQ(PutBitmapPart(&target, &part, 23, 3), ERROR_BAD_ARGUMENT);
    EXPECT_EQ(PutBitmapPart(&target, &part, -1, 3), ERROR_BAD_ARGUMENT);
  }
}

TEST(MapShown, PartOfThePictureIsTheSameBeforeAndAfterTurningItUpright) {
  for (int perspective = 1; perspective <= 8; ++perspective) {
    SCOPED_TRACE(perspective);
    TestBitmap bitmap(30, 20, {24});
    bitmap.FillWithNoise();
    bitmap->viewPerspective = perspective;
    const ZVRECT shown = {2, 3, 11, 15};
    ZVRECT stored;
    ASSERT_EQ(MapShownRect(perspective, 30, 20, &shown, &stored), SUCCESS);
    TestBitmap part, expected;
    ASSERT_EQ(CopyBitmapPart(&part, &bitmap, &stored), SUCCESS);
    ASSERT_EQ(ApplyViewPerspective(&part), SUCCESS);
    ASSERT_EQ(ApplyViewPerspective(&bitmap), SUCCESS);
    ASSERT_EQ(CopyBitmapPart(&expected, &bitmap, &shown), SUCCESS);
    EXPECT_TRUE(SamePixels(part, expected));
  }
  const ZVRECT any = {0, 0, 1, 1};
  ZVRECT out;
  EXPECT_EQ(MapShownRect(9, 30, 20, &any, &out), ERROR_BAD_ARGUMENT);
}

}  // namespace
