#include "pickers/opened_files.h"

#include <gtest/gtest.h>

#include "tests/support/dialog_driver.h"
#include "tests/support/import_patch.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

struct StatusCalls {
  int32_t answer = SUCCESS;
  std::vector<int32_t> file;
  int32_t lastOverall = 0;
};

int32_t ZV_CALL RecordStatus(OPENDLGFILEDATA*, int32_t overall, int32_t file, void* userData) {
  auto& calls = *static_cast<StatusCalls*>(userData);
  calls.file.push_back(file);
  calls.lastOverall = overall;
  return calls.answer;
}

class FilesOpened : public ::testing::Test {
 protected:
  FilesOpened() {
    EXPECT_TRUE(WritePicture(wide, {.width = 400, .height = 200, .format = FMT_PNG}));
    EXPECT_TRUE(WritePicture(pages, {.width = 50, .height = 100, .format = FMT_TIFF, .pages = 3}));
    broken = folder.AddFile(L"broken.jpg", {0xFF, 0xD8, 'n', 'o'});
  }
  ~FilesOpened() override { FreeTaken(); }

  int32_t Read(const std::vector<std::wstring>& paths, uint32_t flags, int32_t page = 0) {
    OpenRequest request = {flags, page, nullptr, nullptr};
    if (reports) {
      request.statusCallback = RecordStatus;
      request.statusUserData = &calls;
    }
    OpenedFiles files;
    const int32_t status = files.Read(MakeFileList(paths, flags), request);
    files.HandOver(taken);
    return status;
  }
  void FreeTaken() {
    for (int32_t i = 0; i < taken.fileCount; ++i) {
      const OPENDLGFILEDATA& file = taken.files[i];
      for (BITMAPHANDLE* bitmap : {file.bitmap, file.thumbnail}) {
        if (bitmap) {
          FreeBitmap(bitmap);
          ::GlobalFree(bitmap);
        }
      }
      ::GlobalFree(file.fileInfo);
      ::GlobalFree(file.formatOptions);
    }
    ::GlobalFree(taken.files);
    taken = {};
  }

  TemporaryFolder folder;
  std::wstring wide = folder.File(L"wide.png");
  std::wstring pages = folder.File(L"pages.tif");
  std::wstring broken;
  OPENFILEDLGPARAMS taken = {};
  StatusCalls calls;
  bool reports = false;
};

TEST_F(FilesOpened, HoldNoPixelsUnlessAsked) {
  ASSERT_EQ(SUCCESS, Read({wide}, 0));
  ASSERT_EQ(1, taken.fileCount);
  EXPECT_EQ(nullptr, taken.files[0].bitmap);
  EXPECT_EQ(nullptr, taken.files[0].thumbnail);
  EXPECT_EQ(FMT_PNG, taken.files[0].format);
}

TEST_F(FilesOpened, HoldTheBitmap) {
  ASSERT_EQ(SUCCESS, Read({wide}, DLG_OPEN_LOAD_BITMAP));
  const BITMAPHANDLE* const bitmap = taken.files[0].bitmap;
  ASSERT_NE(nullptr, bitmap);
  EXPECT_TRUE(bitmap->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_EQ(400, bitmap->width);
  EXPECT_EQ(nullptr, taken.files[0].thumbnail);
}

void ExpectRedThenBlue(const BITMAPHANDLE& bitmap) {
  std::vector<uint8_t> row(static_cast<size_t>(bitmap.bytesPerLine));
  ASSERT_GT(CopyBitmapRow(&bitmap, row.data(), bitmap.height / 2, bitmap.bytesPerLine), 0);
  EXPECT_GT(row[2], 250) << "red on the left";
  EXPECT_LT(row[0], 5);
  EXPECT_GT(row[static_cast<size_t>(3 * (bitmap.width - 1))], 250) << "blue on the right";
}

TEST_F(FilesOpened, HoldAThumbnailWithOrWithoutTheBitmap) {
  for (const uint32_t flags : {DLG_OPEN_MAKE_THUMBNAIL, DLG_OPEN_MAKE_THUMBNAIL | DLG_OPEN_LOAD_BITMAP}) {
    ASSERT_EQ(SUCCESS, Read({wide, pages}, flags));
    const BITMAPHANDLE* const first = taken.files[0].thumbnail;
    const BITMAPHANDLE* const second = taken.files[1].thumbnail;
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(150, first->width);
    EXPECT_EQ(75, first->height);
    ExpectRedThenBlue(*first);
    EXPECT_EQ(75, second->width) << "small pictures are enlarged";
    EXPECT_EQ(150, second->height);
    FreeTaken();
  }
}

TEST_F(FilesOpened, TakeTheGivenPageWhenThereIsOneFile) {
  ASSERT_EQ(SUCCESS, Read({pages}, DLG_OPEN_LOAD_BITMAP, 3));
  EXPECT_EQ(3, taken.files[0].pageNumber);
  EXPECT_EQ(52, taken.files[0].bitmap->width);
}

TEST_F(FilesOpened, StartAtPageOneWhenThereAreSeveral) {
  ASSERT_EQ(SUCCESS, Read({pages, wide}, DLG_OPEN_LOAD_BITMAP, 3));
  EXPECT_EQ(1, taken.files[0].pageNumber);
  EXPECT_EQ(1, taken.files[1].pageNumber);
  EXPECT_EQ(50, taken.files[0].bitmap->width);
}

TEST_F(FilesOpened, CountPagesOnRequest) {
  ASSERT_EQ(SUCCESS, Read({pages}, DLG_OPEN_FULL_FILE_INFO));
  EXPECT_EQ(3, taken.files[0].fileInfo->totalPages);
}

TEST_F(FilesOpened, AreNoneWhenOneCannotBeRead) {
  const int64_t blocks = CoreBlockCount();
  EXPECT_NE(SUCCESS, Read({wide, broken, pages}, DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL));
  EXPECT_EQ(nullptr, taken.files);
  EXPECT_EQ(0, taken.fileCount);
  EXPECT_EQ(blocks, CoreBlockCount()) << "the pixels of the files before it are freed";
}

TEST_F(FilesOpened, KeepAnUnreadableOneWhenTolerated) {
  ASSERT_EQ(SUCCESS, Read({broken, wide}, DLG_OPEN_TOLERATE_FAILED_FILES | DLG_OPEN_LOAD_BITMAP));
  ASSERT_EQ(2, taken.fileCount);
  const OPENDLGFILEDATA& failed = taken.files[0];
  EXPECT_EQ(0, failed.format);
  EXPECT_EQ(0u, failed.optionFlags);
  EXPECT_EQ(nullptr, failed.formatOptions);
  ASSERT_NE(nullptr, failed.bitmap);
  EXPECT_FALSE(failed.bitmap->flags & BITMAP_FLAG_ALLOCATED);
  EXPECT_TRUE(taken.files[1].bitmap->flags & BITMAP_FLAG_ALLOCATED);
}

void OverwriteSecondHalf(const std::wstring& path) {
  const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const DWORD half = ::GetFileSize(file, nullptr) / 2;
  ::SetFilePointer(file, static_cast<LONG>(half), nullptr, FILE_BEGIN);
  const std::vector<uint8_t> noise(half, 0xA5);
  DWORD written = 0;
  EXPECT_TRUE(::WriteFile(file, noise.data(), half, &written, nullptr));
  ::CloseHandle(file);
}

TEST_F(FilesOpened, SucceedWhenAtLeastOneImageCouldBeLoaded) {
  // A header that can be read in front of pixels that cannot.
  const std::wstring cut = folder.File(L"cut.png");
  ASSERT_TRUE(::CopyFileW(wide.c_str(), cut.c_str(), TRUE));
  OverwriteSecondHalf(cut);
  EXPECT_EQ(SUCCESS, Read({cut, wide}, DLG_OPEN_LOAD_BITMAP));
  ASSERT_EQ(2, taken.fileCount);
  EXPECT_FALSE(taken.files[0].bitmap->flags & BITMAP_FLAG_ALLOCATED);
  FreeTaken();
  EXPECT_EQ(ERROR_FILE_DAMAGED, Read({cut}, DLG_OPEN_LOAD_BITMAP)) << "none could be loaded";
  EXPECT_EQ(nullptr, taken.files);
}

TEST_F(FilesOpened, TakeOverWhatAListEntryHolds) {
  std::vector<OPENDLGFILEDATA> list = MakeFileList({wide}, 0);
  auto* const info = static_cast<FILEINFO*>(::GlobalAlloc(GPTR, sizeof(FILEINFO)));
  info->uStructSize = sizeof(*info);
  info->format = FMT_ICO;
  void* const options = ::GlobalAlloc(GPTR, sizeof(PAIRFORMATOPTION));
  list[0].fileInfo = info;
  list[0].formatOptions = options;
  list[0].pageNumber = 2;
  list[0].passes = 5;
  OpenedFiles files;
  ASSERT_EQ(SUCCESS, files.Read(list, {}));
  files.HandOver(taken);
  EXPECT_EQ(info, taken.files[0].fileInfo);
  EXPECT_EQ(options, taken.files[0].formatOptions);
  EXPECT_EQ(FMT_ICO, taken.files[0].format);
  EXPECT_EQ(2, taken.files[0].pageNumber);
  EXPECT_EQ(5, taken.files[0].passes);
}

TEST_F(FilesOpened, KeepTheCountOfPagesThroughALoad) {
  ASSERT_EQ(SUCCESS, Read({pages}, DLG_OPEN_FULL_FILE_INFO | DLG_OPEN_LOAD_BITMAP));
  EXPECT_EQ(3, taken.files[0].fileInfo->totalPages);
}

TEST_F(FilesOpened, KeepWhatTheHeaderSaidOfAnImageThatCannotBeLoaded) {
  const std::wstring cut = folder.File(L"cut.png");
  ASSERT_TRUE(::CopyFileW(wide.c_str(), cut.c_str(), TRUE));
  OverwriteSecondHalf(cut);
  ASSERT_EQ(SUCCESS, Read({cut}, DLG_OPEN_LOAD_BITMAP | DLG_OPEN_TOLERATE_FAILED_FILES));
  EXPECT_EQ(400, taken.files[0].fileInfo->width);
  EXPECT_EQ(FMT_PNG, taken.files[0].format);
}

// Puts an Exif segment with an orientation behind the start marker of a JPEG file.
std::wstring AddTurned(const TemporaryFolder& folder, const std::wstring& path, uint8_t orientation) {
  std::vector<uint8_t> bytes = {0xFF, 0xD8, 0xFF, 0xE1, 0, 34,          'E', 'x', 'i', 'f', 0,    0, 'M',
                                'M',  0,    42,   0,    0, 0,           8,   0,   1,   1,   0x12, 0, 3,
                                0,    0,    0,    1,    0, orientation, 0,   0,   0,   0,   0,    0};
  const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  std::vector<uint8_t> original(::GetFileSize(file, nullptr));
  DWORD read = 0;
  EXPECT_TRUE(::ReadFile(file, original.data(), static_cast<DWORD>(original.size()), &read, nullptr));
  ::CloseHandle(file);
  bytes.insert(bytes.end(), original.begin() + 2, original.end());
  return folder.AddFile(L"turned.jpg", bytes);
}

TEST_F(FilesOpened, DescribeAFileTheSameForAThumbnailAsForItsBitmap) {
  const std::wstring upright = folder.File(L"upright.jpg");
  ASSERT_TRUE(WritePicture(upright, {.width = 1600, .height = 900, .format = FMT_JPEG_420}));
  const std::wstring large = AddTurned(folder, upright, VIEW_RIGHT_TOP);
  for (const uint32_t turned : {0u, DLG_OPEN_LOAD_ROTATED}) {
    ASSERT_EQ(SUCCESS, Read({large}, DLG_OPEN_LOAD_BITMAP | turned));
    const FILEINFO whole = *taken.files[0].fileInfo;
    FreeTaken();
    ASSERT_EQ(SUCCESS, Read({large}, DLG_OPEN_MAKE_THUMBNAIL | turned));
    EXPECT_EQ(0, memcmp(&whole, taken.files[0].fileInfo, sizeof(whole)));
    EXPECT_EQ(turned ? 900 : 1600, whole.width);
    const BITMAPHANDLE& thumbnail = *taken.files[0].thumbnail;
    EXPECT_EQ(turned ? 84 : 150, thumbnail.width);
    EXPECT_EQ(turned ? 150 : 84, thumbnail.height);
    EXPECT_EQ(turned ? VIEW_TOP_LEFT : VIEW_RIGHT_TOP, thumbnail.viewPerspective);
    FreeTaken();
  }
}

TEST_F(FilesOpened, ReportEveryPercentOfABitmapAloneUpToAll) {
  reports = true;
  ASSERT_EQ(SUCCESS, Read({wide, pages}, DLG_OPEN_LOAD_BITMAP));
  EXPECT_EQ(100, calls.file.back());
  EXPECT_EQ(100, calls.lastOverall);
}

TEST_F(FilesOpened, ReportOnlyEvenStepsOfAThumbnail) {
  reports = true;
  ASSERT_EQ(SUCCESS, Read({wide}, DLG_OPEN_MAKE_THUMBNAIL));
  EXPECT_EQ(100, calls.file.back());
  EXPECT_TRUE(std::is_sorted(calls.file.begin(), calls.file.end()));
}

// Counts the blocks that this module takes from the system and gives back, and refuses one of them.
int refusedBlock = 0, blocksAsked = 0, blocksHeld = 0;
HGLOBAL WINAPI AllocateUnlessRefused(UINT flags, SIZE_T bytes) {
  if (blocksAsked++ == refusedBlock) {
    return nullptr;
  }
  ++blocksHeld;
  return ::LocalAlloc(flags, bytes);
}
HGLOBAL WINAPI CountFreed(HGLOBAL block) {
  blocksHeld -= block ? 1 : 0;
  return ::LocalFree(block);
}

TEST_F(FilesOpened, AreNoneWhenAnyOfTheirBlocksCannotBeHad) {
  const std::wstring icon = folder.File(L"icon.ico");
  ASSERT_TRUE(WritePicture(icon, {.width = 32, .height = 32, .format = FMT_ICO, .bits = 32}));
  const int64_t pixels = CoreBlockCount();
  const ImportPatch allocate(nullptr, "GlobalAlloc", &AllocateUnlessRefused);
  const ImportPatch release(nullptr, "GlobalFree", &CountFreed);
  // The array; for each file its information, the icon's settings, two handles.
  constexpr int kBlocks = 1 + 4 + 3;
  blocksHeld = 0;
  for (refusedBlock = 0; refusedBlock < kBlocks; ++refusedBlock) {
    blocksAsked = 0;
    EXPECT_EQ(ERROR_OUT_OF_MEMORY, Read({icon, wide}, DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL)) << refusedBlock;
    EXPECT_EQ(nullptr, taken.files);
    EXPECT_EQ(0, taken.fileCount);
    EXPECT_EQ(0, blocksHeld) << refusedBlock;
    EXPECT_EQ(pixels, CoreBlockCount()) << refusedBlock;
  }
  blocksAsked = 0;
  EXPECT_EQ(SUCCESS, Read({icon, wide}, DLG_OPEN_LOAD_BITMAP | DLG_OPEN_MAKE_THUMBNAIL));
  EXPECT_EQ(kBlocks, blocksHeld);
  FreeTaken();
  EXPECT_EQ(0, blocksHeld);
}

TEST_F(FilesOpened, FreeWhatTheListHeldWhenTheirArrayCannotBeHad) {
  std::vector<OPENDLGFILEDATA> list = MakeFileList({wide}, 0);
  const ImportPatch allocate(nullptr, "GlobalAlloc", &AllocateUnlessRefused);
  const ImportPatch release(nullptr, "GlobalFree", &CountFreed);
  blocksHeld = blocksAsked = 0;
  refusedBlock = 2;
  list[0].fileInfo = static_cast<FILEINFO*>(AllocateUnlessRefused(GPTR, sizeof(FILEINFO)));
  list[0].formatOptions = AllocateUnlessRefused(GPTR, 12);
  OpenedFiles files;
  EXPECT_EQ(ERROR_OUT_OF_MEMORY, files.Read(list, {}));
  EXPECT_EQ(0, blocksHeld);
}

class FilesStopped : public FilesOpened, public ::testing::WithParamInterface<int32_t> {};

TEST_P(FilesStopped, AreNone) {
  reports = true;
  calls.answer = GetParam();
  for (const uint32_t flags : {DLG_OPEN_LOAD_BITMAP, DLG_OPEN_MAKE_THUMBNAIL}) {
    const int64_t blocks = CoreBlockCount();
    EXPECT_EQ(ERROR_USER_ABORT, Read({wide}, flags));
    EXPECT_EQ(nullptr, taken.files);
    EXPECT_EQ(blocks, CoreBlockCount());
  }
}

INSTANTIATE_TEST_SUITE_P(StatusFunction, FilesStopped, ::testing::Values(100, ERROR_USER_ABORT));

}  // namespace
