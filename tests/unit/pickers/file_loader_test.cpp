#include "pickers/file_loader.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/import_patch.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

// What the file library is asked to load.
struct LoadRequest {
  uint32_t recordSize;
  int32_t bitsPerPixel;
  int32_t order;
  uint32_t flags;
  bool hasCallback;
  void* userData;
  LOADFILEOPTION option;
  uint32_t infoFlags;
};
std::vector<LoadRequest> requests;

constexpr int32_t kCarried[] = {1234, -5678};

// Loads the image all the same, and gives it values to carry.
int32_t TakeLoad(const ZVCHAR* path, BITMAPHANDLE* bitmap, uint32_t recordSize, int32_t bitsPerPixel, int32_t order,
                 uint32_t flags, FILELOADCALLBACK callback, void* userData, const LOADFILEOPTION* option,
                 FILEINFO* info) {
  requests.push_back({recordSize, bitsPerPixel, order, flags, callback != nullptr, userData, *option, info->flags});
  const auto load = reinterpret_cast<decltype(&LoadImageFile)>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"zvfile.dll"), "LoadImageFile")));
  const int32_t result = load(path, bitmap, recordSize, bitsPerPixel, order, flags, callback, userData, option, info);
  bitmap->carriedValues[0] = kCarried[0];
  bitmap->carriedValues[1] = kCarried[1];
  return result;
}

int32_t ZV_CALL GoOn(OPENDLGFILEDATA*, int32_t, int32_t, void*) { return SUCCESS; }

class FileLoad : public ::testing::Test {
 protected:
  FileLoad() {
    EXPECT_TRUE(WritePicture(picture, {.width = 400, .height = 200, .format = FMT_PNG}));
    requests.clear();
    Take(picture);
    entry.fileInfo = &info;
    entry.pageNumber = 1;
  }
  ~FileLoad() override {
    FreeBitmap(&bitmap);
    FreeBitmap(&thumbnail);
  }
  void Take(const std::wstring& path) {
    ::lstrcpynW(entry.fileName, path.c_str(), ZVDLG_PATH_LENGTH);
    info = {};
    info.uStructSize = sizeof(info);
    EXPECT_EQ(SUCCESS, GetFileInfo(entry.fileName, &info, sizeof(info), 0, nullptr));
  }
  static BITMAPHANDLE NewHandle() {
    BITMAPHANDLE handle = {};
    handle.uStructSize = sizeof(handle);
    return handle;
  }
  // The one request that loading the entry makes.
  LoadRequest Load(OPENDLGSTATUSCALLBACK status = nullptr) {
    OpenProgress progress(status, nullptr, 0, 1);
    progress.BeginFile(&entry, 0);
    FreeBitmap(&bitmap);
    FreeBitmap(&thumbnail);
    bitmap = thumbnail = NewHandle();
    requests.clear();
    {
      const ImportPatch load(nullptr, "LoadImageFile", &TakeLoad);
      const LoadOutcome outcome = LoadOpenedFile(entry, progress);
      EXPECT_TRUE(outcome.loaded);
      EXPECT_EQ(SUCCESS, outcome.result);
    }
    EXPECT_EQ(1u, requests.size());
    return requests.empty() ? LoadRequest{} : requests.front();
  }

  TemporaryFolder folder;
  std::wstring picture = folder.File(L"picture.png");
  FILEINFO info = {};
  BITMAPHANDLE bitmap = NewHandle(), thumbnail = NewHandle();
  OPENDLGFILEDATA entry = {};
};

TEST_F(FileLoad, AsksForAllDepthsInTheirOwnOrderAllocatedAndStored) {
  entry.bitmap = &bitmap;
  const LoadRequest request = Load();
  EXPECT_EQ(272u, request.recordSize);
  EXPECT_EQ(0, request.bitsPerPixel);
  EXPECT_EQ(4, request.order);
  EXPECT_EQ(3u, request.flags);
}

TEST_F(FileLoad, KeepsTheImageCompressedOnRequest) {
  entry.bitmap = &bitmap;
  entry.loadCompressed = 1;
  EXPECT_EQ(67u, Load().flags);
}

TEST_F(FileLoad, AllowsASmallerScaleForTheThumbnailAlone) {
  entry.thumbnail = &thumbnail;
  EXPECT_EQ(3u | LOADFILE_MAY_REDUCE, Load().flags);
  entry.loadCompressed = 1;
  EXPECT_EQ(67u | LOADFILE_MAY_REDUCE, Load().flags);
}

TEST_F(FileLoad, AsksForTheEntrysPassesAndPage) {
  const std::wstring pages = folder.File(L"pages.tif");
  ASSERT_TRUE(WritePicture(pages, {.format = FMT_TIFF, .pages = 3}));
  Take(pages);
  entry.bitmap = &bitmap;
  entry.passes = 5;
  entry.pageNumber = 2;
  const LoadRequest request = Load();
  EXPECT_EQ(5, request.option.passes);
  EXPECT_EQ(2, request.option.pageNumber);
}

TEST_F(FileLoad, TurnsTheImageOnRequestAlone) {
  entry.bitmap = &bitmap;
  EXPECT_FALSE(Load().option.flags & LOADFILE_ROTATED);
  entry.loadRotated = 1;
  EXPECT_TRUE(Load().option.flags & LOADFILE_ROTATED);
}

TEST_F(FileLoad, CountsRowsForAStatusFunctionAlone) {
  entry.bitmap = &bitmap;
  EXPECT_FALSE(Load().hasCallback);
  EXPECT_EQ(nullptr, requests.front().userData);
  EXPECT_TRUE(Load(GoOn).hasCallback);
  EXPECT_NE(nullptr, requests.front().userData);
}

TEST_F(FileLoad, TakesTheLoadSizeOfAFileWithPagesAsGiven) {
  entry.bitmap = &bitmap;
  EXPECT_NE(4096u, Load().infoFlags) << "not of a file with one page";
  const std::wstring pages = folder.File(L"pages.tif");
  ASSERT_TRUE(WritePicture(pages, {.format = FMT_TIFF, .pages = 3}));
  Take(pages);
  EXPECT_EQ(4096u, Load().infoFlags);
}

TEST_F(FileLoad, GivesTheThumbnailTheValuesThatItsImageCarries) {
  entry.thumbnail = &thumbnail;
  for (BITMAPHANDLE* const image : {static_cast<BITMAPHANDLE*>(nullptr), &bitmap}) {
    entry.bitmap = image;
    Load();
    EXPECT_EQ(150, thumbnail.width);
    EXPECT_EQ(kCarried[0], thumbnail.carriedValues[0]);
    EXPECT_EQ(kCarried[1], thumbnail.carriedValues[1]);
  }
}

TEST(Thumbnail, KeepsTheShapeWithinItsSquare) {
  const auto size = [](int32_t width, int32_t height) {
    const ThumbnailSize result = ThumbnailSizeOf(width, height);
    return std::make_pair(result.width, result.height);
  };
  EXPECT_EQ(std::make_pair(150, 150), size(600, 600));
  EXPECT_EQ(std::make_pair(150, 75), size(4000, 2000));
  EXPECT_EQ(std::make_pair(100, 150), size(2000, 3000));
  EXPECT_EQ(std::make_pair(150, 1), size(100'000, 10)) << "never without a row";
  EXPECT_EQ(std::make_pair(1, 150), size(10, 100'000));
}

}  // namespace
