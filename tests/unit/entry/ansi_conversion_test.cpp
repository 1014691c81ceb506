#include <gtest/gtest.h>

#include <numeric>

#include "common/ansi_file_data.h"
#include "common/ansi_open_file_name.h"
#include "common/ansi_text.h"
#include "tests/support/import_patch.h"

namespace {

std::wstring WithZeros(const wchar_t* text, size_t length) { return std::wstring(text, length); }

TEST(AnsiList, IsConvertedAsOneBlockWithItsTerminators) {
  const char list[] = "A (*.a)\0*.a\0B\0*.b\0";
  EXPECT_EQ(18u, ListLength(list)) << "without the empty string at its end";
  const CoreBlock<wchar_t> wide = ConvertBlock(list, ListLength(list));
  ASSERT_TRUE(wide);
  EXPECT_EQ(std::wstring(L"A (*.a)\0*.a\0B\0*.b\0\0", 19), WithZeros(wide.get(), 19));
}

TEST(AnsiList, MayBeEmpty) {
  EXPECT_EQ(0u, ListLength(""));
  const CoreBlock<wchar_t> wide = ConvertBlock("", 0);
  ASSERT_TRUE(wide);
  EXPECT_EQ(L'\0', wide[0]);
}

TEST(AnsiList, LeavesTheCallersPointerAtItsLastString) {
  const char list[] = "A\0*.a\0B\0*.b\0";
  const char* pointer = list;
  MoveToLastString(&pointer);
  EXPECT_STREQ("*.b", pointer);
  EXPECT_EQ(list + 8, pointer);
}

TEST(AnsiOpenFileName, BecomesWideInEveryField) {
  char file[300] = "start.jpg";
  char title[100] = "t";
  char custom[50] = "c";
  const char filter[] = "A\0*.a\0";
  OPENFILENAMEA ansi = {};
  ansi.lStructSize = sizeof(ansi);
  ansi.lpstrFilter = filter;
  ansi.lpstrCustomFilter = custom;
  ansi.nMaxCustFilter = 50;
  ansi.nFilterIndex = 3;
  ansi.lpstrFile = file;
  ansi.nMaxFile = 300;
  ansi.lpstrFileTitle = title;
  ansi.nMaxFileTitle = 100;
  ansi.lpstrInitialDir = "C:\\x";
  ansi.lpstrTitle = "Title";
  ansi.Flags = OFN_ALLOWMULTISELECT;
  ansi.lpstrDefExt = "jpg";
  ansi.nFileExtension = 7;
  ansi.FlagsEx = 1;
  WideOpenFileName converted(ansi);
  const OPENFILENAMEW& wide = *converted.get();
  EXPECT_EQ(sizeof(OPENFILENAMEW), wide.lStructSize);
  EXPECT_EQ(std::wstring(L"A\0*.a\0\0", 7), WithZeros(wide.lpstrFilter, 7));
  EXPECT_STREQ(L"c", wide.lpstrCustomFilter);
  EXPECT_EQ(50u, wide.nMaxCustFilter);
  EXPECT_EQ(3u, wide.nFilterIndex);
  EXPECT_STREQ(L"start.jpg", wide.lpstrFile);
  EXPECT_EQ(300u, wide.nMaxFile);
  EXPECT_STREQ(L"t", wide.lpstrFileTitle);
  EXPECT_STREQ(L"C:\\x", wide.lpstrInitialDir);
  EXPECT_STREQ(L"Title", wide.lpstrTitle);
  EXPECT_EQ(static_cast<DWORD>(OFN_ALLOWMULTISELECT), wide.Flags);
  EXPECT_STREQ(L"jpg", wide.lpstrDefExt);
  EXPECT_EQ(7, wide.nFileExtension);
  EXPECT_EQ(1u, wide.FlagsEx);
  EXPECT_STREQ("*.a", ansi.lpstrFilter) << "left at the last string of the list";
}

TEST(AnsiOpenFileName, KeepsNullFieldsNull) {
  OPENFILENAMEA ansi = {};
  ansi.lpstrFilter = "";
  WideOpenFileName converted(ansi);
  const OPENFILENAMEW& wide = *converted.get();
  EXPECT_EQ(nullptr, wide.lpstrFilter) << "an empty filter is none";
  EXPECT_EQ(nullptr, wide.lpstrFile);
  EXPECT_EQ(nullptr, wide.lpstrFileTitle);
  EXPECT_EQ(nullptr, wide.lpstrTitle);
  EXPECT_EQ(nullptr, wide.lpstrInitialDir);
  EXPECT_EQ(nullptr, wide.lpstrDefExt);
  EXPECT_EQ(nullptr, wide.lpTemplateName);
}

FILEINFO DistinctFileInfo() {
  FILEINFO wide = {};
  auto* const bytes = reinterpret_cast<uint8_t*>(&wide);
  for (size_t i = 0; i < sizeof(wide); ++i) {
    bytes[i] = static_cast<uint8_t>(i * 31 + i / 256);
  }
  wcscpy(wide.name, L"photo.jpg");
  wcscpy(wide.compression, L"JPEG");
  return wide;
}

TEST(AnsiFileInfo, FollowsTheFieldMap) {
  const FILEINFO wide = DistinctFileInfo();
  FILEINFOA ansi;
  ConvertFileInfo(wide, ansi);
  EXPECT_EQ(2212u, ansi.uStructSize) << "the size word is that of the wide record";
  EXPECT_EQ(wide.format, ansi.format);
  EXPECT_STREQ("photo.jpg", ansi.name);
  EXPECT_STREQ("JPEG", ansi.compression);
  const auto* const from = reinterpret_cast<const uint8_t*>(&wide);
  const auto* const to = reinterpret_cast<const uint8_t*>(&ansi);
  const struct {
    size_t ansi, wide, size;
  } map[] = {{520, 1032, 4},  {524, 1036, 4},    {528, 1040, 4},  {532, 1044, 8},  {540, 1052, 8},
             {568, 1100, 44}, {612, 1144, 1024}, {1636, 2168, 8}, {1644, 2176, 4}, {1648, 2180, 4}};
  for (const auto& field : map) {
    EXPECT_EQ(0, memcmp(to + field.ansi, from + field.wide, field.size)) << "at " << field.ansi;
  }
}

int conversions = 0;
int32_t ZV_CALL FailToConvert(const wchar_t*, char*, int32_t) {
  ++conversions;
  return ERROR_BUFFER_TOO_SMALL;
}

TEST(AnsiFileInfo, HasNoCompressionBehindANameThatCannotBeConverted) {
  const FILEINFO wide = DistinctFileInfo();
  FILEINFOA ansi;
  conversions = 0;
  {
    const zvtest::ImportPatch conversion(nullptr, "ConvertWideToAnsi", &FailToConvert);
    ConvertFileInfo(wide, ansi);
  }
  EXPECT_EQ(1, conversions) << "the second name is not tried";
  EXPECT_STREQ("", ansi.compression);
  EXPECT_EQ(wide.width, ansi.width) << "the numbers are there all the same";
  EXPECT_EQ(wide.filePosition, ansi.filePosition);
}

OPENDLGFILEDATA WideEntry(int32_t format, size_t optionSize) {
  OPENDLGFILEDATA wide = {};
  wide.uStructSize = sizeof(wide);
  wcscpy(wide.fileName, L"C:\\pictures\\photo.jpg");
  wide.bitmap = reinterpret_cast<BITMAPHANDLE*>(0x1000);
  wide.thumbnail = reinterpret_cast<BITMAPHANDLE*>(0x2000);
  wide.fileInfo = static_cast<FILEINFO*>(::GlobalAlloc(GPTR, sizeof(FILEINFO)));
  *wide.fileInfo = DistinctFileInfo();
  wide.pageNumber = 4;
  wide.passes = 5;
  wide.loadCompressed = 6;
  wide.loadRotated = 7;
  wide.format = format;
  void* const options = ::GlobalAlloc(GPTR, optionSize);
  auto* const bytes = static_cast<uint8_t*>(options);
  std::iota(bytes, bytes + optionSize, static_cast<uint8_t>(1));
  if (optionSize >= sizeof(VECTORFORMATOPTION)) {
    wcscpy(static_cast<VECTORFORMATOPTION*>(options)->faceName, L"Arial");
  }
  wide.formatOptions = options;
  return wide;
}

TEST(AnsiFileData, TakesTheEntryOver) {
  OPENDLGFILEDATA wide = WideEntry(75, 12);
  void* const options = wide.formatOptions;
  OPENDLGFILEDATAA ansi;
  ConvertFileData(wide, ansi);
  EXPECT_EQ(396u, ansi.uStructSize);
  EXPECT_STREQ("C:\\pictures\\photo.jpg", ansi.fileName);
  EXPECT_EQ(wide.bitmap, ansi.bitmap);
  EXPECT_EQ(wide.thumbnail, ansi.thumbnail);
  ASSERT_NE(nullptr, ansi.fileInfo);
  EXPECT_STREQ("photo.jpg", ansi.fileInfo->name);
  EXPECT_EQ(4, ansi.pageNumber);
  EXPECT_EQ(5, ansi.passes);
  EXPECT_EQ(6, ansi.loadCompressed);
  EXPECT_EQ(7, ansi.loadRotated);
  EXPECT_EQ(16u, ansi.optionFlags);
  EXPECT_EQ(75, ansi.format);
  EXPECT_EQ(options, ansi.formatOptions) << "options without text pass over as they are";
  CoreFree(ansi.fileInfo, 0, nullptr);
  ::GlobalFree(options);
}

class AnsiFormatOptions : public ::testing::TestWithParam<std::pair<int32_t, size_t>> {};

TEST_P(AnsiFormatOptions, GetAnEightBitFaceName) {
  OPENDLGFILEDATA wide = WideEntry(GetParam().first, 152);
  const auto* const source = static_cast<const uint8_t*>(wide.formatOptions);
  const std::vector<uint8_t> before(source, source + 152);
  OPENDLGFILEDATAA ansi;
  ConvertFileData(wide, ansi);
  ASSERT_NE(nullptr, ansi.formatOptions);
  EXPECT_EQ(nullptr, wide.formatOptions);
  const auto* const vector = static_cast<const VECTORFORMATOPTIONA*>(ansi.formatOptions);
  EXPECT_EQ(0, memcmp(&vector->viewWidth, before.data() + 4, 12));
  EXPECT_STREQ("Arial", vector->faceName);
  const size_t tail = GetParam().second;
  EXPECT_EQ(0, memcmp(static_cast<const uint8_t*>(ansi.formatOptions) + 48, before.data() + 80, tail));
  CoreFree(ansi.formatOptions, 0, nullptr);
  CoreFree(ansi.fileInfo, 0, nullptr);
}

// Format number, bytes behind the face name.
INSTANTIATE_TEST_SUITE_P(ByClass, AnsiFormatOptions,
                         ::testing::Values(std::pair(56, size_t{0}), std::pair(261, size_t{0}),
                                           std::pair(58, size_t{4}), std::pair(290, size_t{4}),
                                           std::pair(137, size_t{72})));

}  // namespace
