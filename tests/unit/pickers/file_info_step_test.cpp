#include "pickers/file_info_step.h"

#include <gtest/gtest.h>

#include "tests/support/dialog_driver.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

class FileInfoStep : public ::testing::Test {
 protected:
  FileInfoStep() {
    EXPECT_TRUE(WritePicture(pages, {.width = 30, .height = 20, .format = FMT_TIFF, .pages = 3}));
    request.path = pages;
    request.xDpi = 150;
    request.yDpi = 151;
    GetLoadDpi(&formerX, &formerY);
  }
  ~FileInfoStep() override {
    SetLoadDpi(formerX, formerY);
    SetLoadSize(FMT_JP2, 0, 0);
  }
  TemporaryFolder folder;
  std::wstring pages = folder.File(L"pages.tif");
  FileInfoRequest request;
  int32_t formerX = 0, formerY = 0;
};

TEST_F(FileInfoStep, ReadsThePage) {
  request.page = 2;
  const FileInfoReading reading = ReadFileInfo(request);
  ASSERT_EQ(SUCCESS, reading.status);
  EXPECT_EQ(2212u, reading.info.uStructSize);
  EXPECT_EQ(31, reading.info.width) << "each page is a pixel wider";
  EXPECT_EQ(2, reading.info.pageNumber);
}

TEST_F(FileInfoStep, CountsPagesOnRequestUnlessThePreviewHasShownThatTheyCost) {
  EXPECT_EQ(1, ReadFileInfo(request).info.totalPages);
  request.dialogFlags = DLG_OPEN_FULL_FILE_INFO;
  EXPECT_EQ(3, ReadFileInfo(request).info.totalPages);
  request.held.format = FMT_TIFF;
  EXPECT_EQ(1, ReadFileInfo(request).info.totalPages);
}

TEST_F(FileInfoStep, PutsTheFirstLoadResolutionBackInForce) {
  SetLoadDpi(75, 75);
  ReadFileInfo(request);
  int32_t x = 0, y = 0;
  GetLoadDpi(&x, &y);
  EXPECT_EQ(150, x);
  EXPECT_EQ(151, y);
}

TEST_F(FileInfoStep, FindsAFileByTheDefaultExtension) {
  request.path = folder.File(L"pages");
  EXPECT_EQ(ERROR_FILE_MISSING, ReadFileInfo(request).status) << "without one";
  request.defaultExtension = L"tif";
  const FileInfoReading reading = ReadFileInfo(request);
  EXPECT_EQ(SUCCESS, reading.status);
  EXPECT_EQ(pages, reading.path);
  request.defaultExtension = L"png";
  const FileInfoReading missing = ReadFileInfo(request);
  EXPECT_EQ(ERROR_FILE_MISSING, missing.status);
  EXPECT_EQ(folder.File(L"pages.png"), missing.path) << "the name that was tried";
}

TEST_F(FileInfoStep, TakesAFolderForNoFile) {
  request.path = folder.AddFolder(L"named like a.bmp");
  request.defaultExtension = L"bmp";
  EXPECT_EQ(ERROR_FILE_MISSING, ReadFileInfo(request).status);
}

TEST_F(FileInfoStep, RefusesByTheFormatOfThePreviewWhenOnlyDrawingsAreWanted) {
  request.dialogFlags = DLG_OPEN_VECTOR_ONLY;
  const FileInfoReading refused = ReadFileInfo(request);
  EXPECT_EQ(SUCCESS, refused.status);
  EXPECT_TRUE(refused.refused);
  request.held.format = FMT_WMF;
  EXPECT_FALSE(ReadFileInfo(request).refused);
}

TEST_F(FileInfoStep, SetsTheResolutionThatThePreviewFoundForAMetafile) {
  request.held.format = FMT_EMF;
  request.held.xResolution = 72;
  request.held.yResolution = 73;
  ReadFileInfo(request);
  int32_t x = 0, y = 0;
  GetLoadDpi(&x, &y);
  EXPECT_EQ(72, x);
  EXPECT_EQ(73, y);
  request.held.yResolution = 0;
  ReadFileInfo(request);
  GetLoadDpi(&x, &y);
  EXPECT_EQ(150, x) << "both must be known";
}

TEST_F(FileInfoStep, KeepsTheLoadSizeFoundFirstForJpeg2000) {
  const std::wstring wavelets = folder.File(L"wavelets.jp2");
  ASSERT_TRUE(WritePicture(wavelets, {.width = 64, .height = 48, .format = FMT_JP2}));
  request.path = wavelets;
  request.held.format = FMT_JP2;
  const FileInfoReading reading = ReadFileInfo(request);
  ASSERT_EQ(SUCCESS, reading.status);
  EXPECT_EQ(64, reading.info.width);
  int32_t width = 0, height = 0;
  GetLoadSize(FMT_JP2, &width, &height, nullptr);
  EXPECT_EQ(64, width);
  EXPECT_EQ(48, height);
}

class FileInfoDialogsOf : public ::testing::Test {
 protected:
  FileInfoDialogsOf() {
    reading.path = L"C:\\scan.dcm";
    dialogs.image = [this](FILEINFODLGDATA& data) { return Take(data, images); };
    dialogs.dicom = [this](FILEINFODLGDATA& data) { return Take(data, dicoms); };
  }
  INT_PTR Take(const FILEINFODLGDATA& data, int& count) {
    ++count;
    taken = data;
    return answer;
  }
  FileInfoReading reading;
  FileInfoDialogs dialogs;
  FILEINFODLGDATA taken = {};
  INT_PTR answer = IDOK;
  int images = 0, dicoms = 0;
};

TEST_F(FileInfoDialogsOf, DicomFilesAreTheirOwn) {
  for (const int32_t format : {89, 90, 10}) {
    reading.info.format = format;
    EXPECT_EQ(SUCCESS, ShowFileInfo(dialogs, reading, 0));
  }
  EXPECT_EQ(2, dicoms);
  EXPECT_EQ(1, images);
}

TEST_F(FileInfoDialogsOf, AnyFileGetTheRecord) {
  reading.info.format = FMT_JPEG;
  reading.info.width = 123;
  EXPECT_EQ(SUCCESS, ShowFileInfo(dialogs, reading, DLG_OPEN_FULL_FILE_INFO | DLG_OPEN_CONTEXT_HELP));
  EXPECT_EQ(2240u, taken.uStructSize);
  EXPECT_STREQ(L"C:\\scan.dcm", taken.strFileName);
  EXPECT_EQ(0x10000u, taken.bMultiPage);
  EXPECT_EQ(1u, taken.bContextHelp);
  EXPECT_EQ(123, taken.fileInfo.width);
  EXPECT_EQ(SUCCESS, ShowFileInfo(dialogs, reading, 0));
  EXPECT_EQ(0u, taken.bMultiPage);
  EXPECT_EQ(0u, taken.bContextHelp);
}

TEST_F(FileInfoDialogsOf, AFailedRunCountAsAMissingFile) {
  answer = -1;
  EXPECT_EQ(ERROR_FILE_MISSING, ShowFileInfo(dialogs, reading, 0));
}

TEST_F(FileInfoDialogsOf, AKindWithoutOneShowNothing) {
  dialogs.dicom = nullptr;
  reading.info.format = 89;
  EXPECT_EQ(SUCCESS, ShowFileInfo(dialogs, reading, 0));
  EXPECT_EQ(0, images);
}

}  // namespace
