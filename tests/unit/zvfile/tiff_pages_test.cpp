// Pages of a TIFF file: appended, replaced, inserted and deleted, with the other pages left as they were.
#include <gtest/gtest.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

// Pages are told apart by their width: page content n is kBaseWidth + n pixels wide.
constexpr int32_t kBaseWidth = 40;

Picture PageContent(int32_t n, int32_t bits = 24) { return MakePicture(kBaseWidth + n, 30, bits); }

SAVEFILEOPTION PageOption(int32_t page, uint32_t flags = 0) {
  SAVEFILEOPTION option = SaveOption();
  option.pageNumber = page;
  option.flags |= flags;
  return option;
}

int32_t SavePage(const std::filesystem::path& path, int32_t content, int32_t page, uint32_t flags = 0,
                 int32_t format = FMT_TIFF_LZW, int32_t bits = 24) {
  Picture picture = PageContent(content, bits);
  const SAVEFILEOPTION option = PageOption(page, flags);
  return Save(path, picture, format, 0, 0, &option);
}

std::vector<int32_t> Contents(const std::filesystem::path& path) {
  std::vector<int32_t> contents;
  FILEINFO info;
  if (Info(path, info, 1) != SUCCESS) return contents;
  const int32_t pages = info.totalPages;
  for (int32_t page = 1; page <= pages; ++page) {
    if (Info(path, info, 0, page) != SUCCESS) break;
    contents.push_back(info.width - kBaseWidth);
  }
  return contents;
}

int64_t DifferenceToContent(const std::filesystem::path& path, int32_t page, int32_t content, int32_t bits = 24) {
  Picture loaded, wanted = PageContent(content, bits);
  const LOADFILEOPTION option = LoadOption(page);
  if (Load(path, loaded, 0, ORDER_BGR_OR_GRAY, &option) != SUCCESS) return -1;
  return DifferentPixels(loaded.bitmap, wanted.bitmap);
}

class TiffPages : public testing::TestWithParam<int32_t> {
 protected:
  // A file of pages 1 to count in the test's format.
  std::filesystem::path MakeFile(int32_t count) {
    const auto path = folder.Path(u"pages.tif");
    for (int32_t page = 1; page <= count; ++page) EXPECT_EQ(SavePage(path, page, page, 0, GetParam()), SUCCESS);
    return path;
  }
  TestFolder folder;
};

using Numbers = std::vector<int32_t>;

TEST_P(TiffPages, AppendsBehindTheLastPage) {
  const auto path = MakeFile(4);
  EXPECT_EQ(Contents(path), (Numbers{1, 2, 3, 4}));
  for (int32_t page = 1; page <= 4; ++page) EXPECT_EQ(DifferenceToContent(path, page, page), 0);
  EXPECT_EQ(folder.FileCount(), 1u);
}

TEST_P(TiffPages, OverwritesWithPageOne) {
  const auto path = MakeFile(3);
  ASSERT_EQ(SavePage(path, 9, 1, 0, GetParam()), SUCCESS);
  EXPECT_EQ(Contents(path), (Numbers{9}));
}

TEST_P(TiffPages, ReplacesAnyPage) {
  for (int32_t page = 1; page <= 3; ++page) {
    const auto path = MakeFile(3);
    ASSERT_EQ(SavePage(path, 7, page, SAVEFILE_REPLACE_PAGE, GetParam()), SUCCESS);
    Numbers wanted = {1, 2, 3};
    wanted[static_cast<size_t>(page) - 1] = 7;
    EXPECT_EQ(Contents(path), wanted);
    for (int32_t n = 1; n <= 3; ++n) EXPECT_EQ(DifferenceToContent(path, n, wanted[static_cast<size_t>(n) - 1]), 0);
    std::filesystem::remove(path);
  }
}

TEST_P(TiffPages, InsertsBeforeAnyPageAndAtTheEnd) {
  for (int32_t page = 1; page <= 4; ++page) {
    const auto path = MakeFile(3);
    ASSERT_EQ(SavePage(path, 8, page, SAVEFILE_INSERT_PAGE, GetParam()), SUCCESS);
    Numbers wanted = {1, 2, 3};
    wanted.insert(wanted.begin() + page - 1, 8);
    EXPECT_EQ(Contents(path), wanted);
    for (int32_t n = 1; n <= 4; ++n) EXPECT_EQ(DifferenceToContent(path, n, wanted[static_cast<size_t>(n) - 1]), 0);
    std::filesystem::remove(path);
  }
}

TEST_P(TiffPages, DeletesAnyPageAndTheFileShrinks) {
  for (int32_t page = 1; page <= 3; ++page) {
    const auto path = MakeFile(3);
    const size_t before = ReadBytes(path).size();
    ASSERT_EQ(DeleteFilePage(Text(path).c_str(), page, 0, nullptr), SUCCESS);
    Numbers wanted = {1, 2, 3};
    wanted.erase(wanted.begin() + page - 1);
    EXPECT_EQ(Contents(path), wanted);
    for (int32_t n = 1; n <= 2; ++n) EXPECT_EQ(DifferenceToContent(path, n, wanted[static_cast<size_t>(n) - 1]), 0);
    EXPECT_LT(ReadBytes(path).size(), before * 3 / 4);
    std::filesystem::remove(path);
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, TiffPages, testing::Values(FMT_TIFF, FMT_TIFF_DEFLATE, FMT_BIGTIFF));

TEST(TiffPageOperations, RefuseMissingPagesAndLeaveTheFileAlone) {
  TestFolder folder;
  const auto path = folder.Path(u"pages.tif");
  ASSERT_EQ(SavePage(path, 1, 1), SUCCESS);
  ASSERT_EQ(SavePage(path, 2, 2), SUCCESS);
  const auto before = ReadBytes(path);
  EXPECT_EQ(SavePage(path, 3, 3, SAVEFILE_REPLACE_PAGE), ERROR_PAGE_MISSING);
  EXPECT_EQ(SavePage(path, 3, 4, SAVEFILE_INSERT_PAGE), ERROR_PAGE_MISSING);
  EXPECT_EQ(DeleteFilePage(Text(path).c_str(), 3, 0, nullptr), ERROR_PAGE_MISSING);
  EXPECT_EQ(DeleteFilePage(Text(path).c_str(), 0, 0, nullptr), ERROR_PAGE_MISSING);
  FILEINFO info;
  EXPECT_EQ(Info(path, info, 0, 3), ERROR_PAGE_MISSING);
  EXPECT_EQ(ReadBytes(path), before);
  ASSERT_EQ(DeleteFilePage(Text(path).c_str(), 1, 0, nullptr), SUCCESS);
  EXPECT_EQ(DeleteFilePage(Text(path).c_str(), 1, 0, nullptr), ERROR_FEATURE_UNSUPPORTED);
  EXPECT_EQ(Contents(path), (std::vector<int32_t>{2}));
}

TEST(TiffPageOperations, PagesOfDifferentCompressionAndDepthStandSideBySide) {
  TestFolder folder;
  const auto path = folder.Path(u"mixed.tif");
  ASSERT_EQ(SavePage(path, 1, 1, 0, FMT_TIFF_G4, 1), SUCCESS);
  ASSERT_EQ(SavePage(path, 2, 2, 0, FMT_TIFF_DEFLATE, 48), SUCCESS);
  ASSERT_EQ(SavePage(path, 3, 3, 0, FMT_TIFF_LZW, 8), SUCCESS);
  ASSERT_EQ(SavePage(path, 4, 2, SAVEFILE_REPLACE_PAGE, FMT_TIFF_PACKBITS, 4), SUCCESS);
  EXPECT_EQ(DifferenceToContent(path, 1, 1, 1), 0);
  EXPECT_EQ(DifferenceToContent(path, 2, 4, 4), 0);
  EXPECT_EQ(DifferenceToContent(path, 3, 3, 8), 0);
  FILEINFO info;
  ASSERT_EQ(Info(path, info, 0, 1), SUCCESS);
  EXPECT_EQ(info.format, FMT_TIFF_G4);
}

TEST(TiffPageOperations, CountsPagesOnlyWhenAskedTo) {
  TestFolder folder;
  const auto path = folder.Path(u"pages.tif");
  for (int32_t page = 1; page <= 5; ++page) ASSERT_EQ(SavePage(path, page, page), SUCCESS);
  FILEINFO info;
  ASSERT_EQ(Info(path, info, 0), SUCCESS);
  EXPECT_EQ(info.totalPages, 1);
  ASSERT_EQ(Info(path, info, 1, 2), SUCCESS);
  EXPECT_EQ(info.totalPages, 5);
  EXPECT_EQ(info.pageNumber, 2);
}

TEST(TiffPageOperations, FilePositionContinuesAtTheNextPage) {
  TestFolder folder;
  const auto path = folder.Path(u"pages.tif");
  for (int32_t page = 1; page <= 4; ++page) ASSERT_EQ(SavePage(path, page, page), SUCCESS);
  LOADFILEOPTION option = LoadOption(1);
  int32_t page = 1;
  for (;; ++page) {
    FILEINFO info = {};
    info.uStructSize = sizeof info;
    option.pageNumber = page;
    ASSERT_EQ(GetFileInfo(Text(path).c_str(), &info, sizeof info, 0, &option), SUCCESS);
    EXPECT_EQ(info.width, kBaseWidth + page);
    Picture loaded, wanted = PageContent(page);
    ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, &option), SUCCESS);
    EXPECT_EQ(DifferentPixels(loaded.bitmap, wanted.bitmap), 0);
    if (info.filePosition == 0) break;
    option.filePosition = info.filePosition;
    option.flags |= LOADFILE_USE_POSITION;
  }
  EXPECT_EQ(page, 4);
}

TEST(TiffPageOperations, AWrongFilePositionFailsCleanly) {
  TestFolder folder;
  const auto path = folder.Path(u"pages.tif");
  ASSERT_EQ(SavePage(path, 1, 1), SUCCESS);
  for (const uint64_t position : {uint64_t{3}, uint64_t{1} << 20, uint64_t{1} << 60}) {
    LOADFILEOPTION option = LoadOption(2);
    option.flags |= LOADFILE_USE_POSITION;
    option.filePosition = position;
    Picture loaded;
    EXPECT_NE(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, &option), SUCCESS);
    EXPECT_EQ(loaded->data, nullptr);
  }
}

TEST(TiffPageOperations, AnAbortedAppendLeavesTheFileAsItWas) {
  TestFolder folder;
  const auto path = folder.Path(u"pages.tif");
  ASSERT_EQ(SavePage(path, 1, 1), SUCCESS);
  const auto before = ReadBytes(path);
  Picture picture = PageContent(2);
  const SAVEFILEOPTION option = PageOption(2);
  const auto stop = [](BITMAPHANDLE*, uint8_t*, int32_t, int32_t, void*) -> int32_t { return ERROR_USER_ABORT; };
  const FILESAVECALLBACK callback = stop;
  EXPECT_EQ(SaveFile(Text(path).c_str(), &picture, FMT_TIFF_LZW, 24, 0, SAVEFILE_ROWS_FROM_CALLBACK, callback, nullptr,
                     &option),
            ERROR_USER_ABORT);
  EXPECT_EQ(ReadBytes(path), before);
  EXPECT_EQ(folder.FileCount(), 1u);
}

}  // namespace
