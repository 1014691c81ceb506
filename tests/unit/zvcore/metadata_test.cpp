#include <string>
#include <string_view>

#include "tests/unit/zvcore/test_bitmap.h"

namespace {

std::string_view Metadata(const TestBitmap& bitmap, int32_t kind) {
  const void* bytes = nullptr;
  uint64_t size = 0;
  EXPECT_EQ(GetBitmapMetadata(&bitmap, kind, &bytes, &size), SUCCESS);
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}

int32_t Attach(TestBitmap& bitmap, int32_t kind, std::string_view text) {
  return SetBitmapMetadata(&bitmap, kind, text.data(), text.size());
}

TEST(Metadata, IsKeptByKind) {
  TestBitmap bitmap(2, 2, {24});
  EXPECT_EQ(Metadata(bitmap, METADATA_EXIF), "");
  EXPECT_EQ(Attach(bitmap, METADATA_EXIF, "exif"), SUCCESS);
  EXPECT_EQ(Attach(bitmap, METADATA_COMMENT + 7, "comment"), SUCCESS);
  EXPECT_EQ(Metadata(bitmap, METADATA_EXIF), "exif");
  EXPECT_EQ(Metadata(bitmap, METADATA_COMMENT + 7), "comment");
  EXPECT_EQ(Metadata(bitmap, METADATA_XMP), "");
}

TEST(Metadata, IsReplacedAndTakenOff) {
  TestBitmap bitmap(2, 2, {24});
  Attach(bitmap, METADATA_XMP, "first");
  EXPECT_EQ(Attach(bitmap, METADATA_XMP, "second"), SUCCESS);
  EXPECT_EQ(Metadata(bitmap, METADATA_XMP), "second");
  EXPECT_EQ(SetBitmapMetadata(&bitmap, METADATA_XMP, nullptr, 0), SUCCESS);
  EXPECT_EQ(Metadata(bitmap, METADATA_XMP), "");
}

TEST(Metadata, UnknownKindsAreRefused) {
  TestBitmap bitmap(2, 2, {24});
  EXPECT_EQ(Attach(bitmap, -1, "x"), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(Attach(bitmap, METADATA_KIND_COUNT, "x"), ERROR_BAD_ARGUMENT);
  const void* bytes;
  uint64_t size;
  EXPECT_EQ(GetBitmapMetadata(&bitmap, METADATA_KIND_COUNT, &bytes, &size), ERROR_BAD_ARGUMENT);
}

TEST(Metadata, IsFreedWithTheBitmap) {
  const int64_t before = CoreBlockCount();
  {
    TestBitmap bitmap(2, 2, {24});
    Attach(bitmap, METADATA_ICC_PROFILE, "profile");
  }
  EXPECT_EQ(CoreBlockCount(), before);
}

TEST(Metadata, OfAHandleWithoutPixelsIsFreedToo) {
  const int64_t before = CoreBlockCount();
  BITMAPHANDLE bitmap;
  ASSERT_EQ(InitBitmapHandle(&bitmap, 272, 2, 2, 24), SUCCESS);
  EXPECT_EQ(SetBitmapMetadata(&bitmap, METADATA_EXIF, "x", 1), SUCCESS);
  EXPECT_EQ(FreeBitmap(&bitmap), SUCCESS);
  EXPECT_EQ(CoreBlockCount(), before);
}

TEST(Metadata, OfADuplicateIsACopyOfItsOwn) {
  TestBitmap bitmap(2, 2, {24}), copy;
  Attach(bitmap, METADATA_ICC_PROFILE, "profile");
  ASSERT_EQ(DuplicateBitmap(&copy, &bitmap), SUCCESS);
  Attach(bitmap, METADATA_ICC_PROFILE, "other");
  EXPECT_EQ(Metadata(copy, METADATA_ICC_PROFILE), "profile");
}

TEST(Metadata, SurvivesEveryOperationInPlace) {
  TestBitmap bitmap(20, 10, {24});
  Attach(bitmap, METADATA_EXIF, "exif");
  ASSERT_EQ(SizeBitmap(&bitmap, 30, 15, SIZE_BICUBIC), SUCCESS);
  ASSERT_EQ(RotateBitmap(&bitmap, 9000, 0, 0), SUCCESS);
  ASSERT_EQ(RotateBitmap(&bitmap, 1234, ROTATE_RESIZE | ROTATE_BICUBIC, 0), SUCCESS);
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 8, ORDER_BGR, nullptr, 1), SUCCESS);
  ASSERT_EQ(MirrorBitmap(&bitmap), SUCCESS);
  EXPECT_EQ(Metadata(bitmap, METADATA_EXIF), "exif");
}

TEST(Metadata, CopiedFromABareBitmapIsTakenOff) {
  TestBitmap bitmap(2, 2, {24}), bare(2, 2, {24});
  Attach(bitmap, METADATA_EXIF, "exif");
  EXPECT_EQ(CopyBitmapMetadata(&bitmap, &bare), SUCCESS);
  EXPECT_EQ(Metadata(bitmap, METADATA_EXIF), "");
}

}  // namespace
