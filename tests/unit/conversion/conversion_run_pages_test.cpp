// The pages of one file in a run.
#include "tests/unit/conversion/conversion_run_fixture.h"

namespace {

using namespace zvtest;

CONVERSIONFILEOPTIONS Pages(std::vector<int32_t>& pages, int32_t total) {
  CONVERSIONFILEOPTIONS options;
  options.pageTotal = total;
  options.pageCount = static_cast<int32_t>(pages.size());
  options.pages = pages.data();
  return options;
}

TEST_F(ConversionRun, ConvertsThePagesInTheOrderOfTheSelection) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {3, 1};
  host.options[0] = Pages(pages, 3);
  host.nameTemplate = L"<SRC>-<NUM>";
  Convert();
  ASSERT_EQ(2, log.GetSize());
  EXPECT_EQ(42, Info(Out(L"a-0.bmp")).width);
  EXPECT_EQ(40, Info(Out(L"a-1.bmp")).width);
}

TEST_F(ConversionRun, APageBeyondTheFileFailsAndTheOthersGoOn) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {1, 9, 2};
  host.options[0] = Pages(pages, 3);
  host.nameTemplate = L"<SRC>-<NUM>";
  Convert();
  ASSERT_EQ(3, log.GetSize());
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_EQ(CONVERSION_FAILED, log[1].status);
  EXPECT_STREQ(Out(L"a-1.bmp").c_str(), log[1].destination);
  EXPECT_EQ(CONVERSION_OK, log[2].status);
  EXPECT_EQ(41, Info(Out(L"a-2.bmp")).width);
}

TEST_F(ConversionRun, TheLastPageAloneDecidesAboutTheSource) {
  const std::wstring source = AddPicture(L"a.tif", 40, 20, FMT_TIFF, 2);
  settings.deleteSource = true;
  host.nameTemplate = L"<SRC>-<NUM>";
  std::vector<int32_t> pages = {1, 9};
  host.options[0] = Pages(pages, 2);
  Convert();
  EXPECT_TRUE(Exists(source));
  pages = {9, 1};
  Convert();
  EXPECT_FALSE(Exists(source));
}

TEST_F(ConversionRun, AbortOnASecondPageKeepsTheSource) {
  const std::wstring source = AddPicture(L"a.tif", 40, 20, FMT_TIFF, 2);
  settings.deleteSource = true;
  std::vector<int32_t> pages = {1, 2};
  host.options[0] = Pages(pages, 2);
  Convert();
  ASSERT_EQ(2, log.GetSize());
  EXPECT_EQ(CONVERSION_OK, log[0].status);
  EXPECT_EQ(CONVERSION_ABORTED, log[1].status);
  EXPECT_TRUE(Exists(source));
}

TEST_F(ConversionRun, WithoutASelectionTheFirstPageAloneIsConverted) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  Convert();
  ASSERT_EQ(1, log.GetSize());
  EXPECT_EQ(40, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, ASelectionOfOnePageConvertsThatPage) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {2};
  host.options[0] = Pages(pages, 3);
  Convert();
  ASSERT_EQ(1, log.GetSize());
  EXPECT_EQ(41, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, ASelectionWithoutPagesConvertsTheFirst) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  int32_t none = 99;
  host.options[0].pageCount = 0;
  host.options[0].pages = &none;
  Convert();
  EXPECT_EQ(40, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, PagesWithoutANumberInTheirNameMeetTheOverwriteRule) {
  AddPicture(L"a.tif", 40, 20, FMT_TIFF, 3);
  std::vector<int32_t> pages = {1, 2, 3};
  host.options[0] = Pages(pages, 3);
  settings.overwriteMode = OVERWRITE_REPLACE;
  Convert();
  EXPECT_EQ(1u, FileCount(out.path()));
  EXPECT_EQ(42, Info(Out(L"a.bmp")).width);
}

TEST_F(ConversionRun, NumbersRunOnOverFilesAndPages) {
  AddPicture(L"a.bmp");
  AddPicture(L"b.bmp");
  host.nameTemplate = L"img<NUM>";
  Convert(0);
  Convert(1);
  EXPECT_TRUE(Exists(Out(L"img0.bmp")));
  EXPECT_TRUE(Exists(Out(L"img1.bmp")));
}

}  // namespace
