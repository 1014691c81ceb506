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
