#include "preview/preview_producer.h"

#include <gtest/gtest.h>

#include "tests/support/dialog_driver.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

constexpr SIZE kPane = {200, 150};

bool WriteWithStamp(const std::wstring& path) {
  uint32_t memory = 0;
  GetDefaultBitmapMemoryFlags(&memory);
  BITMAPHANDLE bitmap = {};
  if (InitBitmapHandle(&bitmap, sizeof bitmap, 640, 480, 24) != SUCCESS || AllocateBitmap(&bitmap, memory) != SUCCESS) {
    return false;
  }
  SAVEFILEOPTION option = {};
  GetDefaultSaveFileOption(&option, sizeof option);
  option.flags |= SAVEFILE_STAMP;
  option.stampWidth = 64;
  option.stampHeight = 48;
  option.stampBitsPerPixel = 24;
  const int32_t saved = SaveBitmapToFile(path.c_str(), &bitmap, FMT_CMP, 24, 20, &option);
  FreeBitmap(&bitmap);
  return saved == SUCCESS;
}

class Preview : public ::testing::Test, public PreviewSink {
 protected:
  Preview() {
    EXPECT_TRUE(WritePicture(plain, {.width = 300, .height = 100}));
    EXPECT_TRUE(WritePicture(pages, {.width = 50, .format = FMT_TIFF, .pages = 3}));
    EXPECT_TRUE(WriteWithStamp(stamped));
    broken = folder.AddFile(L"broken.bmp", {'n', 'o'});
    producer.rules.useStamp = true;
    producer.rules.useFullImage = true;
  }

  void ShowPreviewBitmap(BITMAPHANDLE* bitmap) override {
    const bool holdsImage = bitmap && (bitmap->flags & BITMAP_FLAG_ALLOCATED);
    shown.push_back(holdsImage ? bitmap->width : 0);
    FreeBitmap(bitmap);
  }
  int ShownWidth() const { return shown.empty() ? 0 : shown.back(); }
  void OnPreviewFailed() override { ++failures; }
  int32_t Produce(std::wstring path, int32_t page = 1) { return producer.Produce(path, L"", page, kPane); }

  TemporaryFolder folder;
  std::wstring plain = folder.File(L"plain.bmp");
  std::wstring pages = folder.File(L"pages.tif");
  std::wstring stamped = folder.File(L"stamped.cmp");
  std::wstring broken;
  std::vector<int> shown;  // widths, 0 for none
  int failures = 0;
  PreviewProducer producer{*this};
};

TEST_F(Preview, ShowsTheFullImageOfAFileWithoutStamp) {
  EXPECT_EQ(SUCCESS, Produce(plain));
  EXPECT_EQ(300, ShownWidth());
  EXPECT_EQ(plain, producer.LastPath());
  EXPECT_FALSE(producer.IsStamp());
}

TEST_F(Preview, ShowsTheStampAndNeverLoadsTheImage) {
  ASSERT_EQ(SUCCESS, Produce(plain));
  EXPECT_EQ(SUCCESS, Produce(stamped));
  EXPECT_EQ(64, ShownWidth());
  EXPECT_TRUE(producer.IsStamp());
  EXPECT_EQ(plain, producer.LastPath()) << "so that the same file is looked at again";
}

TEST_F(Preview, ShowsTheChosenPage) {
  EXPECT_EQ(SUCCESS, Produce(pages, 3));
  EXPECT_EQ(52, ShownWidth());
}

TEST_F(Preview, ReadsTheFileInformationWithoutAnyPictureWhenStampsAreOff) {
  producer.rules.useStamp = false;
  EXPECT_EQ(SUCCESS, Produce(plain));
  EXPECT_TRUE(shown.empty());
  EXPECT_EQ(FMT_BMP, producer.Info().format);
}

TEST_F(Preview, TakesThePictureAwayWhenAFileCannotBeRead) {
  ASSERT_EQ(SUCCESS, Produce(plain));
  EXPECT_NE(SUCCESS, Produce(broken));
  EXPECT_EQ(0, ShownWidth());
  EXPECT_EQ(1, failures);
  EXPECT_EQ(L"", producer.LastPath());
  ASSERT_EQ(SUCCESS, Produce(plain));
  EXPECT_EQ(ERROR_FILE_MISSING, Produce(folder.path())) << "a folder is no picture";
  EXPECT_EQ(0, ShownWidth());
  ::DeleteFileW(plain.c_str());
  EXPECT_EQ(ERROR_FILE_MISSING, Produce(plain)) << "nor is a file that has vanished";
}

TEST_F(Preview, AddsTheDefaultExtensionToAMissingName) {
  std::wstring path = folder.File(L"plain");
  EXPECT_EQ(SUCCESS, producer.Produce(path, L"bmp", 1, kPane));
  EXPECT_EQ(plain, path);
  EXPECT_EQ(300, ShownWidth());
}

TEST_F(Preview, KeepsThePictureBeforeAFileThatIsNoDrawing) {
  ASSERT_EQ(SUCCESS, Produce(plain));
  producer.rules.vectorOnly = true;
  EXPECT_EQ(0, Produce(pages));
  EXPECT_EQ(300, ShownWidth());
}

TEST_F(Preview, TakesTheSizeThatSuitsThePaneFromAnIcon) {
  const IMAGESIZE sizes[] = {{16, 16}, {48, 48}, {208, 208}, {256, 256}};
  ASSERT_EQ(SUCCESS, SetSaveSizeList(4, sizes));
  const std::wstring icon = folder.File(L"icon.ico");
  ASSERT_TRUE(WritePicture(icon, {.width = 256, .height = 256, .format = FMT_ICO, .bits = 32}));
  ASSERT_EQ(SUCCESS, SetSaveSizeList(0, nullptr));
  EXPECT_EQ(SUCCESS, Produce(icon));
  EXPECT_EQ(208, ShownWidth()) << "the smallest that fills the pane's width";
  std::wstring path = icon;
  EXPECT_EQ(SUCCESS, producer.Produce(path, L"", 1, {40, 150}));
  EXPECT_EQ(48, ShownWidth());
  int32_t width = 1, height = 1;
  GetLoadSize(FMT_ICO, &width, &height, nullptr);
  EXPECT_EQ(0, width) << "the size is for the preview alone";
}

TEST_F(Preview, TakesTheResolutionLevelThatSuitsThePaneFromJpeg2000) {
  const std::wstring picture = folder.File(L"picture.jp2");
  ASSERT_TRUE(WritePicture(picture, {.width = 1600, .height = 1200, .format = FMT_JP2}));
  EXPECT_EQ(SUCCESS, Produce(picture));
  EXPECT_EQ(200, ShownWidth());
  int32_t width = 1, height = 1;
  GetLoadSize(FMT_JP2, &width, &height, nullptr);
  EXPECT_EQ(0, width);
}

// A drawing of one by half an inch.
std::vector<uint8_t> MakeDrawing() {
  const RECT frame = {0, 0, 2540, 1270};
  const HDC device = ::CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  ::Rectangle(device, 0, 0, 10, 10);
  const HENHMETAFILE drawing = ::CloseEnhMetaFile(device);
  std::vector<uint8_t> bytes(::GetEnhMetaFileBits(drawing, 0, nullptr));
  ::GetEnhMetaFileBits(drawing, static_cast<UINT>(bytes.size()), bytes.data());
  ::DeleteEnhMetaFile(drawing);
  return bytes;
}

TEST_F(Preview, ShowsADrawingInItsOwnSizeWhateverTheLoadResolution) {
  const std::wstring drawing = folder.AddFile(L"drawing.emf", MakeDrawing());
  int32_t formerX = 0, formerY = 0, x = 0, y = 0;
  GetLoadDpi(&formerX, &formerY);
  ASSERT_EQ(SUCCESS, SetLoadDpi(600, 500));
  producer.rules.vectorOnly = true;
  EXPECT_EQ(SUCCESS, Produce(drawing));
  EXPECT_NEAR(96, ShownWidth(), 2);
  GetLoadDpi(&x, &y);
  EXPECT_EQ(600, x) << "the resolution is put back";
  EXPECT_EQ(500, y);
  SetLoadDpi(formerX, formerY);
}

TEST_F(Preview, ShowsTheFullImageWhenTheStampIsDamaged) {
  const std::wstring path = folder.File(L"damaged stamp.cmp");
  ASSERT_TRUE(WriteWithStamp(path));
  // The stamp stands first in the container; its stream loses its beginning.
  HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, file);
  constexpr DWORD kContainerHeader = 32;
  ::SetFilePointer(file, kContainerHeader, nullptr, FILE_BEGIN);
  DWORD written = 0;
  ::WriteFile(file, "no picture", 10, &written, nullptr);
  ::CloseHandle(file);
  EXPECT_EQ(SUCCESS, Produce(path));
  EXPECT_EQ(640, ShownWidth());
  EXPECT_FALSE(producer.IsStamp());
}

TEST_F(Preview, ShowsNoPictureButKeepsTheInformationOfAFileThatEndsInItsPixels) {
  ASSERT_EQ(SUCCESS, Produce(stamped));
  const std::wstring cut = folder.File(L"cut.bmp");
  ASSERT_TRUE(WritePicture(cut, {.width = 300, .height = 100}));
  HANDLE file = ::CreateFileW(cut.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ::SetFilePointer(file, 5000, nullptr, FILE_BEGIN);
  ::SetEndOfFile(file);
  ::CloseHandle(file);
  Produce(cut);
  EXPECT_EQ(0, ShownWidth()) << "not the picture before";
}

struct Answer {
  BITMAPHANDLE bitmap = {};
  std::wstring askedFor;
  int32_t page = 0;
};

int32_t ZV_CALL GivePicture(OPENDLGPREVIEWREQUEST* request, void* userData) {
  auto& answer = *static_cast<Answer*>(userData);
  answer.askedFor = request->fileName;
  answer.page = request->pageNumber;
  request->bitmap = &answer.bitmap;
  return SUCCESS;
}

TEST_F(Preview, FreesThePictureOfTheCallerAndShowsNone) {
  const int64_t blocks = CoreBlockCount();
  Answer answer;
  uint32_t memory = 0;
  GetDefaultBitmapMemoryFlags(&memory);
  ASSERT_EQ(SUCCESS, InitBitmapHandle(&answer.bitmap, sizeof answer.bitmap, 11, 7, 24));
  ASSERT_EQ(SUCCESS, AllocateBitmap(&answer.bitmap, memory));
  producer.rules.callback = GivePicture;
  producer.rules.callbackUserData = &answer;
  EXPECT_NE(SUCCESS, Produce(broken, 2));
  EXPECT_EQ(broken, answer.askedFor);
  EXPECT_EQ(2, answer.page);
  EXPECT_EQ((std::vector{11, 0}), shown) << "shown and taken away at once";
  EXPECT_EQ(0, ShownWidth());
  EXPECT_EQ(blocks, CoreBlockCount());
}

TEST_F(Preview, BrowsingLeaksNothing) {
  ASSERT_EQ(SUCCESS, Produce(plain));
  const int64_t blocks = CoreBlockCount();
  for (int round = 0; round < 50; ++round) {
    Produce(stamped);
    Produce(broken);
    Produce(pages, 2);
    Produce(plain);
  }
  EXPECT_EQ(blocks, CoreBlockCount());
}

}  // namespace
