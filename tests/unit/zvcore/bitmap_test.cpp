#include <cstring>
#include <vector>

#include "tests/unit/zvcore/test_bitmap.h"

namespace {

TEST(InitBitmapHandle, FillsTheRecordWithoutPixels) {
  BITMAPHANDLE bitmap;
  std::memset(&bitmap, 0xCC, sizeof bitmap);
  ASSERT_EQ(InitBitmapHandle(&bitmap, 272, 101, 57, 24), SUCCESS);
  EXPECT_EQ(bitmap.uStructSize, 272u);
  EXPECT_EQ(bitmap.width, 101);
  EXPECT_EQ(bitmap.height, 57);
  EXPECT_EQ(bitmap.bitsPerPixel, 24);
  EXPECT_EQ(bitmap.bytesPerLine, 304);
  EXPECT_EQ(bitmap.flags, BITMAP_FLAG_TOP_DOWN);
  EXPECT_EQ(bitmap.viewPerspective, VIEW_TOP_LEFT);
  EXPECT_EQ(bitmap.colorOrder, ORDER_BGR);
  EXPECT_EQ(bitmap.data, nullptr);
  EXPECT_EQ(bitmap.viewValueA, 0);
  EXPECT_EQ(bitmap.viewValueB, 100);
  EXPECT_EQ(bitmap.viewValueC, 0);
}

TEST(InitBitmapHandle, RefusesImpossibleRecordsSidesAndDepths) {
  BITMAPHANDLE bitmap;
  EXPECT_EQ(InitBitmapHandle(nullptr, 272, 1, 1, 24), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(InitBitmapHandle(&bitmap, 271, 1, 1, 24), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(InitBitmapHandle(&bitmap, 272, 0, 1, 24), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(InitBitmapHandle(&bitmap, 272, 1, -1, 24), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(InitBitmapHandle(&bitmap, 272, 1000001, 1, 24), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(InitBitmapHandle(&bitmap, 272, INT32_MAX, INT32_MAX, 64), ERROR_BAD_ARGUMENT);
  for (const int bits : {0, 2, 3, 12, 36, 96, -8})
    EXPECT_EQ(InitBitmapHandle(&bitmap, 272, 1, 1, bits), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(InitBitmapHandle(&bitmap, 272, 1000000, 1000000, 64), SUCCESS);
}

TEST(AllocateBitmap, GivesZeroedRowsThatStartAtMultiplesOfFour) {
  for (const int bits : {1, 4, 8, 16, 24, 32, 48, 64}) {
    TestBitmap bitmap(13, 3, {bits});
    EXPECT_EQ(bitmap->bytesPerLine % 4, 0);
    EXPECT_EQ(bitmap->bytesPerLine, (13 * bits + 31) / 32 * 4);
    EXPECT_TRUE(bitmap->flags & BITMAP_FLAG_ALLOCATED);
    EXPECT_EQ(bitmap->dataSize, static_cast<uint64_t>(bitmap->bytesPerLine) * 3);
    for (uint64_t i = 0; i < bitmap->dataSize; ++i) ASSERT_EQ(bitmap->data[i], 0);
  }
}

TEST(AllocateBitmap, GivesIndexedDepthsAGreyRamp) {
  TestBitmap one(1, 1, {1}), four(1, 1, {4}), eight(1, 1, {8}), color(1, 1, {24});
  ASSERT_EQ(one->paletteCount, 2);
  EXPECT_EQ(one->palette[0].red, 0);
  EXPECT_EQ(one->palette[1].red, 255);
  ASSERT_EQ(four->paletteCount, 16);
  EXPECT_EQ(four->palette[3].green, 51);
  ASSERT_EQ(eight->paletteCount, 256);
  EXPECT_EQ(eight->palette[200].blue, 200);
  EXPECT_EQ(color->palette, nullptr);
  EXPECT_EQ(color->paletteCount, 0);
}

TEST(AllocateBitmap, RefusesWhatIsTooLargeAndWhatIsAlreadyThere) {
  BITMAPHANDLE bitmap;
  ASSERT_EQ(InitBitmapHandle(&bitmap, 272, 1000000, 1000000, 64), SUCCESS);
  EXPECT_EQ(AllocateBitmap(&bitmap, MEMORY_CONVENTIONAL), ERROR_LIMIT_EXCEEDED);
  EXPECT_FALSE(bitmap.flags & BITMAP_FLAG_ALLOCATED);
  TestBitmap allocated(4, 4, {24});
  EXPECT_EQ(AllocateBitmap(&allocated, MEMORY_CONVENTIONAL), ERROR_BAD_ARGUMENT);
}

TEST(CreateBitmap, TakesPaletteOrderPerspectiveAndData) {
  const ZVPALETTEENTRY palette[2] = {{1, 2, 3, 255}, {4, 5, 6, 255}};
  const uint8_t data[8] = {0xA0, 0, 0, 0, 0x50, 0, 0, 0};
  BITMAPHANDLE bitmap;
  ASSERT_EQ(
      CreateBitmap(&bitmap, 272, MEMORY_CONVENTIONAL, 4, 2, 1, ORDER_RGB, palette, VIEW_LEFT_TOP, data, sizeof data),
      SUCCESS);
  EXPECT_EQ(bitmap.palette[1].green, 5);
  EXPECT_EQ(bitmap.viewPerspective, VIEW_LEFT_TOP);
  EXPECT_EQ(bitmap.colorOrder, ORDER_RGB);
  EXPECT_EQ(std::memcmp(bitmap.data, data, 8), 0);
  FreeBitmap(&bitmap);
}

TEST(CreateBitmap, ReadsGreyOnlyWhereADepthCanBeGrey) {
  for (const int bits : {1, 4, 8, 16, 24, 32, 48, 64}) {
    BITMAPHANDLE bitmap;
    ASSERT_EQ(CreateBitmap(&bitmap, 272, MEMORY_CONVENTIONAL, 4, 2, bits, ORDER_GRAY, nullptr, 0, nullptr, 0), SUCCESS);
    EXPECT_EQ(bitmap.colorOrder, bits == 8 || bits == 16 ? ORDER_GRAY : ORDER_BGR) << bits;
    EXPECT_EQ(bitmap.viewPerspective, VIEW_TOP_LEFT);
    FreeBitmap(&bitmap);
  }
}

TEST(CreateBitmap, RefusesUnknownOrdersAndPerspectives) {
  BITMAPHANDLE bitmap;
  EXPECT_EQ(CreateBitmap(&bitmap, 272, 1, 4, 2, 24, 5, nullptr, 1, nullptr, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(CreateBitmap(&bitmap, 272, 1, 4, 2, 24, ORDER_BGR, nullptr, 9, nullptr, 0), ERROR_BAD_ARGUMENT);
}

TEST(FreeBitmap, ClearsOwnershipOnceAndLeavesTheRest) {
  const int64_t before = CoreBlockCount();
  BITMAPHANDLE bitmap;
  ASSERT_EQ(CreateBitmap(&bitmap, 272, 1, 40, 20, 8, ORDER_BGR, nullptr, 1, nullptr, 0), SUCCESS);
  EXPECT_EQ(CoreBlockCount(), before + 2);
  EXPECT_EQ(FreeBitmap(&bitmap), SUCCESS);
  EXPECT_EQ(CoreBlockCount(), before);
  EXPECT_EQ(bitmap.flags & BITMAP_FLAG_ALLOCATED, 0u);
  EXPECT_EQ(bitmap.width, 40);
  EXPECT_EQ(FreeBitmap(&bitmap), SUCCESS);
  EXPECT_EQ(CoreBlockCount(), before);
  EXPECT_EQ(FreeBitmap(nullptr), ERROR_BAD_ARGUMENT);
}

TEST(CopyBitmapHandle, SharesPixelsAndMoveHandsThemOver) {
  TestBitmap bitmap(5, 5, {24});
  BITMAPHANDLE copy, moved;
  ASSERT_EQ(CopyBitmapHandle(&copy, &bitmap, 272), SUCCESS);
  EXPECT_EQ(copy.data, bitmap->data);
  EXPECT_EQ(CopyBitmapHandle(&copy, &bitmap, 100), ERROR_BAD_ARGUMENT);
  ASSERT_EQ(MoveBitmapHandle(&moved, &bitmap, 272), SUCCESS);
  EXPECT_EQ(moved.data, copy.data);
  EXPECT_EQ(bitmap->data, nullptr);
  EXPECT_FALSE(bitmap->flags & BITMAP_FLAG_ALLOCATED);
  FreeBitmap(&moved);
}

TEST(DuplicateBitmap, CopiesPixelsPaletteAndValues) {
  TestBitmap bitmap(33, 9, {8});
  bitmap.FillWithNoise();
  bitmap->palette[7] = {9, 8, 7, 255};
  bitmap->carriedValues[1] = 77;
  bitmap->lockCount = 2;
  TestBitmap copy;
  ASSERT_EQ(DuplicateBitmap(&copy, &bitmap), SUCCESS);
  EXPECT_NE(copy->data, bitmap->data);
  EXPECT_NE(copy->palette, bitmap->palette);
  EXPECT_TRUE(SamePixels(copy, bitmap));
  EXPECT_EQ(copy->palette[7].green, 8);
  EXPECT_EQ(copy->carriedValues[1], 77);
  EXPECT_EQ(copy->lockCount, 0);
  BITMAPHANDLE none = {};
  EXPECT_EQ(DuplicateBitmap(&copy, &none), ERROR_NO_IMAGE);
}

TEST(CopyBitmapPalette, CopiesWhatFitsAndNothingAboveEightBits) {
  TestBitmap wide(1, 1, {8}), narrow(1, 1, {4}), color(1, 1, {24});
  wide->palette[3] = {1, 2, 3, 255};
  ASSERT_EQ(CopyBitmapPalette(&narrow, &wide), SUCCESS);
  EXPECT_EQ(narrow->paletteCount, 16);
  EXPECT_EQ(narrow->palette[3].green, 2);
  ASSERT_EQ(CopyBitmapPalette(&color, &wide), SUCCESS);
  EXPECT_EQ(color->palette, nullptr);
  ASSERT_EQ(CopyBitmapPalette(&wide, &color), SUCCESS);
  EXPECT_EQ(wide->palette, nullptr);
}

TEST(FillBitmap, SetsEveryPixelOfEveryFormat) {
  for (const Format& format : AllFormats()) {
    SCOPED_TRACE(NameOf(format));
    TestBitmap bitmap(11, 5, format);
    bitmap.FillWithNoise();
    ASSERT_EQ(FillBitmap(&bitmap, 0x000000FF), SUCCESS);  // red
    uint64_t expected = 0;
    switch (format.bits) {
      case 1: expected = 0; break;
      case 4:
        expected = 5;  // the ramp's 85 is nearest to pure red
        break;
      case 8: expected = format.order == ORDER_GRAY ? 76 : 85; break;
      case 16: expected = format.order == ORDER_GRAY ? 76 * 257 : 31 << 10; break;
      case 24: expected = format.order == ORDER_RGB ? 0x0000FF : 0xFF0000; break;
      case 32: expected = 0xFFFF0000; break;
      case 48: expected = 0xFFFF00000000; break;
      case 64: expected = format.order == ORDER_RGB ? 0xFFFF00000000FFFF : 0xFFFFFFFF00000000; break;
    }
    for (int32_t y = 0; y < 5; ++y) {
      for (int32_t x = 0; x < 11; ++x) ASSERT_EQ(bitmap.Pixel(x, y), expected) << x << ", " << y;
    }
  }
}

TEST(BitmapRows, CountFromTheTopInBothMemoryOrders) {
  for (const bool topDown : {true, false}) {
    TestBitmap bitmap(5, 4, {24, ORDER_BGR, topDown});
    bitmap.FillWithNoise();
    std::vector<uint8_t> row(16), again(16);
    ASSERT_EQ(CopyBitmapRow(&bitmap, row.data(), 1, 16), 16);
    EXPECT_EQ(row[3], bitmap.Channel(1, 1, 0));
    ASSERT_EQ(PutBitmapRow(&bitmap, row.data(), 3, 16), 16);
    ASSERT_EQ(CopyBitmapRow(&bitmap, again.data(), 3, 100), 16);
    EXPECT_EQ(row, again);
    EXPECT_EQ(CopyBitmapRow(&bitmap, again.data(), 2, 5), 5);
  }
}

TEST(BitmapRows, OutsideAreRefused) {
  TestBitmap bitmap(5, 4, {24});
  uint8_t row[16];
  EXPECT_EQ(CopyBitmapRow(&bitmap, row, 4, 16), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(CopyBitmapRow(&bitmap, row, -1, 16), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(CopyBitmapRow(&bitmap, nullptr, 0, 16), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(PutBitmapRow(&bitmap, row, 0, 0), ERROR_BAD_ARGUMENT);
  BITMAPHANDLE none = {};
  EXPECT_EQ(CopyBitmapRow(&none, row, 0, 16), ERROR_NO_IMAGE);
  EXPECT_EQ(CopyBitmapRow(nullptr, row, 0, 16), ERROR_NO_IMAGE);
}

TEST(BitmapLocks, Nest) {
  TestBitmap bitmap(5, 4, {24});
  EXPECT_EQ(LockBitmapRows(&bitmap), SUCCESS);
  EXPECT_EQ(LockBitmapRows(&bitmap), SUCCESS);
  EXPECT_EQ(bitmap->lockCount, 2);
  EXPECT_EQ(UnlockBitmapRows(&bitmap), SUCCESS);
  EXPECT_EQ(UnlockBitmapRows(&bitmap), SUCCESS);
  EXPECT_EQ(UnlockBitmapRows(&bitmap), ERROR_BAD_ARGUMENT);
  BITMAPHANDLE none = {};
  EXPECT_EQ(LockBitmapRows(&none), ERROR_NO_IMAGE);
}

TEST(DamagedHandles, AreRefusedInsteadOfRead) {
  const auto refused = [](void (*damage)(BITMAPHANDLE&)) {
    TestBitmap bitmap(8, 8, {24});
    BITMAPHANDLE broken = *&bitmap;
    damage(broken);
    EXPECT_EQ(SizeBitmap(&broken, 4, 4, SIZE_BICUBIC), ERROR_BAD_ARGUMENT);
    EXPECT_EQ(RotateBitmap(&broken, 100, 0, 0), ERROR_BAD_ARGUMENT);
    EXPECT_EQ(FillBitmap(&broken, 0), ERROR_BAD_ARGUMENT);
    EXPECT_EQ(ConvertBitmapDepth(&broken, 8, ORDER_BGR, nullptr, 0), ERROR_BAD_ARGUMENT);
  };
  refused([](BITMAPHANDLE& b) { b.height = 9; });
  refused([](BITMAPHANDLE& b) { b.width = 100; });
  refused([](BITMAPHANDLE& b) { b.bytesPerLine = -24; });
  refused([](BITMAPHANDLE& b) { b.bitsPerPixel = 25; });
  refused([](BITMAPHANDLE& b) { b.flags |= BITMAP_FLAG_COMPRESSED; });
}

}  // namespace
