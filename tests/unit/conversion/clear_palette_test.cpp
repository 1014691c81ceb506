#include "conversion/clear_palette.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace {

class ClearPalette : public ::testing::Test {
 protected:
  ~ClearPalette() override { ::FreeBitmap(&bitmap); }

  // Pixel x of each row is index x modulo the number of entries.
  void Make(int bits, uint8_t firstAlpha, uint8_t otherAlpha) {
    ASSERT_EQ(SUCCESS, ::InitBitmapHandle(&bitmap, sizeof bitmap, 5, 2, bits));
    ASSERT_EQ(SUCCESS, ::AllocateBitmap(&bitmap, 0));
    for (int i = 0; i < bitmap.paletteCount; ++i) {
      const auto level = static_cast<uint8_t>(i);
      bitmap.palette[i] = {level, static_cast<uint8_t>(level + 1), static_cast<uint8_t>(level + 2),
                           i == 0 ? firstAlpha : otherAlpha};
    }
    std::array<uint8_t, 8> row = {};
    for (int x = 0; x < 5; ++x) {
      const int index = x % bitmap.paletteCount;
      row[static_cast<size_t>(x * bits / 8)] |= static_cast<uint8_t>(index << (8 - bits - x * bits % 8));
    }
    ::PutBitmapRow(&bitmap, row.data(), 0, bitmap.bytesPerLine);
    ::PutBitmapRow(&bitmap, row.data(), 1, bitmap.bytesPerLine);
  }

  BITMAPHANDLE bitmap = {};
};

TEST_F(ClearPalette, IsOneWithSomeEntriesClear) {
  Make(8, 0, 255);
  EXPECT_TRUE(HasClearPalette(bitmap));
}

TEST_F(ClearPalette, IsNoneWhenTheFieldIsUnsetOrEverythingIsOpaque) {
  Make(8, 0, 0);
  EXPECT_FALSE(HasClearPalette(bitmap));
  ::FreeBitmap(&bitmap);
  Make(8, 255, 255);
  EXPECT_FALSE(HasClearPalette(bitmap));
  bitmap.colorOrder = ORDER_GRAY;
  bitmap.palette[0].alpha = 0;
  EXPECT_FALSE(HasClearPalette(bitmap));
}

TEST_F(ClearPalette, UnfoldsToColoursWithAlphaAtEveryDepth) {
  for (const int bits : {1, 4, 8}) {
    ::FreeBitmap(&bitmap);
    Make(bits, 0, 255);
    const int entries = bitmap.paletteCount;
    ASSERT_EQ(SUCCESS, UnfoldClearPalette(bitmap));
    EXPECT_EQ(32, bitmap.bitsPerPixel);
    EXPECT_EQ(nullptr, bitmap.palette);
    EXPECT_TRUE(bitmap.flags & BITMAP_FLAG_ALPHA);
    std::array<uint8_t, 20> row = {};
    ASSERT_EQ(20, ::CopyBitmapRow(&bitmap, row.data(), 1, 20));
    for (int x = 0; x < 5; ++x) {
      const int index = x % entries;
      const std::array<uint8_t, 4> wanted = {static_cast<uint8_t>(index), static_cast<uint8_t>(index + 1),
                                             static_cast<uint8_t>(index + 2),
                                             static_cast<uint8_t>(index == 0 ? 0 : 255)};
      EXPECT_EQ(0, std::memcmp(wanted.data(), &row[static_cast<size_t>(4 * x)], 4)) << bits << " bits, pixel " << x;
    }
  }
}

TEST_F(ClearPalette, KeepsWhatBelongsToThePicture) {
  Make(4, 0, 255);
  bitmap.viewPerspective = VIEW_RIGHT_TOP;
  bitmap.xResolution = 300;
  bitmap.yResolution = 200;
  ASSERT_EQ(SUCCESS, ::SetBitmapMetadata(&bitmap, METADATA_XMP, "xmp", 3));
  ASSERT_EQ(SUCCESS, UnfoldClearPalette(bitmap));
  EXPECT_EQ(VIEW_RIGHT_TOP, bitmap.viewPerspective);
  EXPECT_EQ(300, bitmap.xResolution);
  EXPECT_EQ(200, bitmap.yResolution);
  const void* bytes = nullptr;
  uint64_t size = 0;
  ASSERT_EQ(SUCCESS, ::GetBitmapMetadata(&bitmap, METADATA_XMP, &bytes, &size));
  EXPECT_EQ(3u, size);
}

}  // namespace
