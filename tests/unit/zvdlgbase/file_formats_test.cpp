#include "services/zvdlgbase/zvdlgbase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>

namespace {

TEST(FileFormats, DefaultQualityIsOfTheFormatsOwnKind) {
  int32_t quality = 0;
  ASSERT_EQ(SUCCESS, GetFormatDefaultQFactor(FMT_JPEG, &quality));
  EXPECT_EQ(28, quality);
  ASSERT_EQ(SUCCESS, GetFormatDefaultQFactor(FMT_PNG, &quality));
  EXPECT_EQ(6, quality);
}

TEST(FileFormats, FormatWithoutQualityLeavesTheCallersAlone) {
  int32_t quality = 50;
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, GetFormatDefaultQFactor(FMT_TIFF, &quality));
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, GetFormatDefaultQFactor(9999, &quality));
  EXPECT_EQ(50, quality);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatDefaultQFactor(FMT_JPEG, nullptr));
}

TEST(FileFormats, TiffTakesAllPageOperationsAndJpegNone) {
  uint32_t mask = 0;
  ASSERT_EQ(SUCCESS, GetFormatMultipageOps(FMT_TIFF_G4, &mask));
  EXPECT_EQ(15u, mask);
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, GetFormatMultipageOps(FMT_JPEG, &mask));
  EXPECT_EQ(0u, mask);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatMultipageOps(FMT_TIFF, nullptr));
}

TEST(FileFormats, StampLimitsHoldTheSizeThatDialogsFallBackTo) {
  constexpr int32_t kFallback = 120;
  for (const int32_t format : {FMT_JPEG, FMT_EXIF_JPEG_420, FMT_CMP, FMT_TIFF}) {
    FORMATSTAMPLIMITS limits{};
    EXPECT_EQ(ERROR_BAD_RECORD_SIZE, GetFormatStampLimits(format, &limits));
    limits.uStructSize = sizeof limits;
    ASSERT_EQ(SUCCESS, GetFormatStampLimits(format, &limits));
    EXPECT_LE(limits.minimumWidth, kFallback);
    EXPECT_GE(limits.maximumWidth, kFallback);
    EXPECT_LE(limits.minimumHeight, kFallback);
    EXPECT_GE(limits.maximumHeight, kFallback);
    EXPECT_EQ(sizeof limits, limits.uStructSize);
  }
  FORMATSTAMPLIMITS limits{};
  limits.uStructSize = sizeof limits;
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, GetFormatStampLimits(FMT_PNG, &limits));
}

TEST(FileFormats, FormatsThatCannotBeWrittenAreExcludedFromLists) {
  for (const int32_t format : std::initializer_list<int32_t>{FMT_PSD, FMT_TIFF_CMYK, FMT_CMP_OLD, 0, -1, 9999}) {
    EXPECT_NE(0, IsFormatExcludedFromList(format)) << format;
  }
  EXPECT_EQ(0, IsFormatExcludedFromList(FMT_JPEG));
}

TEST(FileFormats, FormatsThatAreOnlyReadHaveNamesToo) {
  for (const int32_t format : std::initializer_list<int32_t>{FMT_JPEG, FMT_PSD, FMT_CMP_OLD, FMT_SVG, 83, FMT_JBIG}) {
    uint32_t id = 0;
    ASSERT_EQ(SUCCESS, GetFormatStringId(format, &id)) << format;
    uint32_t length = 0;
    EXPECT_EQ(SUCCESS, GetDialogStringLength(id, &length));
    EXPECT_GT(length, 0u);
  }
  uint32_t id = 7;
  for (const int32_t format : {0, -5, 599, 600, 2000, INT32_MAX}) {
    EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatStringId(format, &id)) << format;
  }
  EXPECT_EQ(7u, id);
}

struct ClassCase {
  const char* name;
  int32_t (*isMember)(int32_t);
  std::initializer_list<int32_t> members;
};

TEST(FileFormats, ClassesHaveExactlyTheirMembers) {
  const ClassCase cases[] = {
      {"vector view", IsVectorViewFormat, {56, 62, 123, 136, 144, 145, 169, 247, 251, 255, 260, 261}},
      {"vector background", IsVectorBackgroundFormat, {58, 124, 290}},
      {"vector pen", IsVectorPenFormat, {137}},
      {"dpi pair", IsDpiPairFormat, {15, 116, 307}},
      {"dpi single", IsDpiSingleFormat, {}},
      {"load size", IsLoadSizeFormat, {80, 81, 82, 83, 115, 163, 164, 165, 323}},
      {"pdf", IsPDFFormat, {}},
      {"xps", IsXPSFormat, {}},
      {"xls", IsXLSFormat, {}},
  };
  for (const ClassCase& one : cases) {
    for (int32_t format = -1; format < 600; ++format) {
      const bool expected = std::find(one.members.begin(), one.members.end(), format) != one.members.end();
      EXPECT_EQ(expected, one.isMember(format) != 0) << one.name << ' ' << format;
    }
  }
}

TEST(ImageLists, WideFormHasItsOwnItemsWithTheSameBitmaps) {
  BITMAPHANDLE first{}, second{};
  DLGBITMAPLISTITEM items[2] = {};
  items[0].bitmap = &first;
  items[1].bitmap = &second;
  const DLGBITMAPLIST ansi = {sizeof ansi, items, 2};
  DLGBITMAPLIST wide{};
  ASSERT_EQ(SUCCESS, ConvertImageListToWide(&ansi, &wide));
  EXPECT_EQ(2, wide.count);
  EXPECT_NE(items, wide.items);
  EXPECT_EQ(&first, wide.items[0].bitmap);
  EXPECT_EQ(&second, wide.items[1].bitmap);
  EXPECT_EQ(SUCCESS, FreeWideImageList(&wide));
  EXPECT_EQ(nullptr, wide.items);
  EXPECT_EQ(0, wide.count);
  EXPECT_EQ(SUCCESS, FreeWideImageList(&wide)) << "an empty list may be freed again";
}

TEST(ImageLists, BadListsAreRefused) {
  DLGBITMAPLISTITEM item{};
  DLGBITMAPLIST wide{};
  DLGBITMAPLIST ansi = {sizeof ansi, nullptr, 1};
  EXPECT_EQ(ERROR_BAD_ARGUMENT, ConvertImageListToWide(&ansi, &wide));
  ansi = {sizeof ansi, &item, -1};
  EXPECT_EQ(ERROR_BAD_ARGUMENT, ConvertImageListToWide(&ansi, &wide));
  ansi = {15, &item, 1};
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, ConvertImageListToWide(&ansi, &wide));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, ConvertImageListToWide(nullptr, &wide));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, ConvertImageListToWide(&ansi, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, FreeWideImageList(nullptr));
}

}  // namespace
