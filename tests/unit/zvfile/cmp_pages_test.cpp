// Pages of the CMP container.
#include <gtest/gtest.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

class CmpPages : public testing::Test {
 protected:
  // Pages are told apart by their widths.
  int32_t Put(int32_t width, uint32_t flags, int32_t page) {
    Picture source = MakePicture(width, 24, 24);
    SAVEFILEOPTION option = SaveOption();
    option.flags |= flags;
    option.pageNumber = page;
    return Save(path_, source, FMT_CMP, 24, 10, &option);
  }

  std::vector<int32_t> Widths() {
    std::vector<int32_t> widths;
    FILEINFO info;
    for (int32_t page = 1; Info(path_, info, 0, page) == SUCCESS; ++page) {
      Picture loaded;
      const LOADFILEOPTION option = LoadOption(page);
      EXPECT_EQ(Load(path_, loaded, 0, ORDER_BGR_OR_GRAY, &option), SUCCESS);
      EXPECT_EQ(loaded->width, info.width);
      EXPECT_EQ(info.pageNumber, page);
      widths.push_back(info.width);
      total_ = info.totalPages;
    }
    EXPECT_EQ(total_, static_cast<int32_t>(widths.size()));
    EXPECT_EQ(folder_.FileCount(), 1u);
    return widths;
  }

  TestFolder folder_;
  std::filesystem::path path_ = folder_.Path(u"pages.cmp");
  int32_t total_ = 0;
};

using Expected = std::vector<int32_t>;

TEST_F(CmpPages, AreAppendedReplacedInsertedAndDeleted) {
  ASSERT_EQ(Put(10, 0, 2), SUCCESS);  // appending to no file begins one
  ASSERT_EQ(Put(20, 0, 2), SUCCESS);
  ASSERT_EQ(Put(30, 0, 2), SUCCESS);
  EXPECT_EQ(Widths(), (Expected{10, 20, 30}));
  ASSERT_EQ(Put(25, SAVEFILE_INSERT_PAGE, 3), SUCCESS);
  EXPECT_EQ(Widths(), (Expected{10, 20, 25, 30}));
  ASSERT_EQ(Put(11, SAVEFILE_REPLACE_PAGE, 1), SUCCESS);
  EXPECT_EQ(Widths(), (Expected{11, 20, 25, 30}));
  ASSERT_EQ(Put(99, SAVEFILE_INSERT_PAGE, 50), SUCCESS);  // beyond the end: at the end
  EXPECT_EQ(Widths(), (Expected{11, 20, 25, 30, 99}));
  ASSERT_EQ(DeleteFilePage(Text(path_).c_str(), 2, 0, nullptr), SUCCESS);
  EXPECT_EQ(Widths(), (Expected{11, 25, 30, 99}));
  ASSERT_EQ(Put(5, 0, 1), SUCCESS);
  EXPECT_EQ(Widths(), (Expected{5}));
}

TEST_F(CmpPages, ThatAreMissingGiveTheirCode) {
  ASSERT_EQ(Put(10, 0, 1), SUCCESS);
  EXPECT_EQ(Put(20, SAVEFILE_REPLACE_PAGE, 2), ERROR_PAGE_MISSING);
  EXPECT_EQ(DeleteFilePage(Text(path_).c_str(), 2, 0, nullptr), ERROR_PAGE_MISSING);
  EXPECT_EQ(DeleteFilePage(Text(path_).c_str(), 1, 0, nullptr), ERROR_FEATURE_UNSUPPORTED);
  EXPECT_EQ(Widths(), (Expected{10}));
}

TEST_F(CmpPages, OfAFileOfAnotherFormatAreRefused) {
  Picture source = MakePicture(10, 10, 24);
  ASSERT_EQ(Save(path_, source, FMT_PNG, 24, 6), SUCCESS);
  const std::vector<uint8_t> before = ReadBytes(path_);
  EXPECT_EQ(Put(20, 0, 2), ERROR_FILE_FORMAT);
  EXPECT_EQ(ReadBytes(path_), before);
  EXPECT_EQ(DeleteFilePage(Text(path_).c_str(), 1, 0, nullptr), ERROR_FEATURE_UNSUPPORTED);
}

TEST_F(CmpPages, KeepTheirStampsWhenOthersChange) {
  Picture source = MakePicture(300, 200, 24);
  SAVEFILEOPTION option = SaveOption();
  option.flags |= SAVEFILE_STAMP;
  ASSERT_EQ(Save(path_, source, FMT_CMP, 24, 10, &option), SUCCESS);
  ASSERT_EQ(Put(20, SAVEFILE_INSERT_PAGE, 1), SUCCESS);
  Picture stamp, none;
  const LOADFILEOPTION first = LoadOption(1), second = LoadOption(2);
  EXPECT_EQ(ReadFileStamp(Text(path_).c_str(), &none, sizeof(BITMAPHANDLE), &first), ERROR_NO_STAMP);
  ASSERT_EQ(ReadFileStamp(Text(path_).c_str(), &stamp, sizeof(BITMAPHANDLE), &second), SUCCESS);
  EXPECT_EQ(stamp->width, 120);
}

}  // namespace
