#include <functional>

#include "services/zvcore/memory.h"
#include "tests/unit/zvcore/test_bitmap.h"

// Every operation is run again and again while each of its allocations fails in turn.
namespace {

using Operation = std::function<int32_t(TestBitmap&)>;

void CheckEveryFailure(const Format& format, const Operation& operation) {
  SCOPED_TRACE(NameOf(format));
  const int64_t before = CoreBlockCount();
  {
    TestBitmap original(40, 30, format);
    original.FillWithNoise();
    int failures = 0;
    for (;; ++failures) {
      ASSERT_LT(failures, 200);
      TestBitmap bitmap(40, 30, format);
      bitmap.FillWithNoise();
      zvcore::FailAllocationAfter(failures);
      const int32_t result = operation(bitmap);
      zvcore::FailAllocationAfter(-1);
      if (result == SUCCESS) break;
      ASSERT_EQ(result, ERROR_OUT_OF_MEMORY);
      ASSERT_TRUE(SamePixels(bitmap, original));
    }
    EXPECT_GT(failures, 0);
  }
  EXPECT_EQ(CoreBlockCount(), before);
}

void CheckAllFormats(const Operation& operation) {
  for (const Format& format : AllFormats()) CheckEveryFailure(format, operation);
}

TEST(AllocationFailure, WhileResizingIsReportedAndLeaksNothing) {
  for (const int32_t method : {SIZE_NEAREST, SIZE_BILINEAR, SIZE_BICUBIC}) {
    CheckAllFormats([=](TestBitmap& bitmap) { return SizeBitmap(&bitmap, 17, 60, method); });
    CheckAllFormats([=](TestBitmap& bitmap) { return SizeBitmap(&bitmap, 60, 17, method); });
  }
}

TEST(AllocationFailure, WhileRotatingIsReportedAndLeaksNothing) {
  for (const uint32_t flags : {0u, ROTATE_RESAMPLE, ROTATE_BICUBIC}) {
    CheckAllFormats([=](TestBitmap& bitmap) { return RotateBitmap(&bitmap, 777, flags, 0); });
  }
  CheckAllFormats([=](TestBitmap& bitmap) { return RotateBitmap(&bitmap, 9000, 0, 0); });
  CheckAllFormats([=](TestBitmap& bitmap) { return RotateBitmap(&bitmap, 18000, 0, 0); });
}

TEST(AllocationFailure, WhileConvertingIsReportedAndLeaksNothing) {
  for (const Format& format : AllFormats()) {
    for (const int bits : {1, 4, 8, 16, 24, 32, 48, 64}) {
      if (bits == format.bits) continue;
      for (const int dither : {0, 1}) {
        CheckEveryFailure(
            format, [=](TestBitmap& bitmap) { return ConvertBitmapDepth(&bitmap, bits, ORDER_BGR, nullptr, dither); });
      }
    }
  }
}

TEST(AllocationFailure, WhileDuplicatingIsReportedAndLeaksNothing) {
  CheckAllFormats([](TestBitmap& bitmap) {
    SetBitmapMetadata(&bitmap, METADATA_EXIF, "exif", 4);
    TestBitmap copy;
    const int32_t result = DuplicateBitmap(&copy, &bitmap);
    return bitmap->metadata ? result : ERROR_OUT_OF_MEMORY;
  });
}

TEST(AllocationFailure, InTextCopiesGivesNull) {
  zvcore::FailAllocationAfter(0);
  EXPECT_EQ(AnsiToWideDup("abc"), nullptr);
  zvcore::FailAllocationAfter(0);
  EXPECT_EQ(WideToAnsiDup(u"abc"), nullptr);
  zvcore::FailAllocationAfter(0);
  ZVCHAR wide[4];
  EXPECT_EQ(ConvertAnsiToWide("abc", wide, 4), ERROR_OUT_OF_MEMORY);
  zvcore::FailAllocationAfter(-1);
}

}  // namespace
