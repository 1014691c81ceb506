// Profiles in TIFF files, where each page has its own.
#include <string_view>

#include "tests/unit/zvcolor/byte_search.h"
#include "tests/unit/zvcolor/color_test.h"

namespace {

using namespace zvtest;

class TiffProfile : public ColorTest {};
class TiffPages : public ColorTest, public testing::WithParamInterface<int> {};

TEST_P(TiffPages, HaveProfilesOfTheirOwn) {
  const std::wstring path = Picture(L"a.tif", {40, 20, GetParam(), 3});
  const FileBytes pixels[] = {PixelsOf(path, 1), PixelsOf(path, 2), PixelsOf(path, 3)};
  ASSERT_FALSE(pixels[2].empty());
  const FileBytes second = RgbProfile({4.3, 64, false, 2}), third = RgbProfile({2.1, 96, false, 3});
  ASSERT_EQ(SUCCESS, SaveImage(path, second, 2));
  ASSERT_EQ(SUCCESS, SaveImage(path, third, 3));
  EXPECT_EQ(ERROR_PROFILE_MISSING, LoadFrom(path, 1));
  ASSERT_EQ(SUCCESS, LoadFrom(path, 2));
  EXPECT_EQ(second, Loaded());
  ASSERT_EQ(SUCCESS, LoadFrom(path, 3));
  EXPECT_EQ(third, Loaded());
  EXPECT_EQ(ERROR_PAGE_MISSING, LoadFrom(path, 4));
  for (int page = 1; page <= 3; ++page) EXPECT_EQ(pixels[page - 1], PixelsOf(path, page));
  FILEINFO info = {};
  EXPECT_EQ(SUCCESS, GetFileInfo(path.c_str(), &info, sizeof(info), 1, nullptr));
  EXPECT_EQ(3, info.totalPages);
}

TEST_P(TiffPages, KeepAllTheirBytesWhereTheyAre) {
  const std::wstring path = Picture(L"a.tif", {40, 20, GetParam(), 2});
  const FileBytes before = ReadWholeFile(path);
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile(), 2));
  const FileBytes after = ReadWholeFile(path);
  ASSERT_GT(after.size(), before.size());
  int changed = 0;
  for (size_t i = 0; i < before.size(); ++i) changed += before[i] != after[i];
  EXPECT_LE(changed, 8) << "no more than the pointer to the page's directory";
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({2.1}), 2));
  const FileBytes again = ReadWholeFile(path);
  changed = 0;
  for (size_t i = 0; i < after.size(); ++i) changed += after[i] != again[i];
  EXPECT_LE(changed, 16) << "no more than the tag's size and place";
}

INSTANTIATE_TEST_SUITE_P(Tiff, TiffPages, testing::Values(FMT_TIFF, FMT_TIFF_LZW, FMT_BIGTIFF));

TEST_F(TiffProfile, OfABigEndianFileIsWrittenInItsOrder) {
  using namespace std::string_view_literals;
  FileBytes tiff;
  Append(tiff, "MM\0\x2A\0\0\0\x08"sv);
  struct {
    uint16_t tag, type;
    uint32_t count, value;
  } const entries[] = {{256, 4, 1, 1},        {257, 4, 1, 1},        {258, 3, 1, 8u << 16},
                       {259, 3, 1, 1u << 16}, {262, 3, 1, 1u << 16}, {273, 4, 1, 8 + 2 + 9 * 12 + 4},
                       {277, 3, 1, 1u << 16}, {278, 4, 1, 1},        {279, 4, 1, 1}};
  AppendNumber(tiff, 9, 2);
  for (const auto& entry : entries) {
    AppendNumber(tiff, entry.tag, 2);
    AppendNumber(tiff, entry.type, 2);
    AppendNumber(tiff, entry.count, 4);
    AppendNumber(tiff, entry.value, 4);
  }
  AppendNumber(tiff, 0, 4);
  tiff.push_back(0x5A);  // the one pixel; the file's size is odd
  const std::wstring path = folder.AddFile(L"big.tif", tiff);
  const FileBytes pixels = PixelsOf(path);
  ASSERT_FALSE(pixels.empty());
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, SaveImage(path, RgbProfile())) << "the picture is grey";
  ASSERT_EQ(SUCCESS, SaveImage(path, GrayProfile()));
  ASSERT_EQ(SUCCESS, LoadFrom(path));
  EXPECT_EQ(GrayProfile(), Loaded());
  EXPECT_EQ(pixels, PixelsOf(path));
}

}  // namespace
