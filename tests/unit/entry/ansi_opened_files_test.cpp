// The opened files on their way to an 8-bit caller, whose array may have to be made.
#include <gtest/gtest.h>

#include "common/ansi_file_data.h"
#include "services/zvfile/file_formats.h"
#include "tests/support/import_patch.h"

namespace {

using zvtest::ImportPatch;

// Counts the blocks of global memory that this module holds.
int blocksHeld = 0;
HGLOBAL WINAPI CountAllocated(UINT flags, SIZE_T bytes) {
  ++blocksHeld;
  return ::LocalAlloc(flags, bytes);
}
HGLOBAL WINAPI CountFreed(HGLOBAL block) {
  blocksHeld -= block ? 1 : 0;
  return ::LocalFree(block);
}
void* ZV_CALL RefuseBlock(size_t, size_t, int32_t, const char*) { return nullptr; }

class AnsiOpenedFiles : public ::testing::Test {
 protected:
  static constexpr int32_t kFiles = 3;

  AnsiOpenedFiles() {
    blocksHeld = 0;
    wide.fileCount = kFiles;
    wide.files = static_cast<OPENDLGFILEDATA*>(CountAllocated(GPTR, kFiles * sizeof(OPENDLGFILEDATA)));
    for (int32_t i = 0; i < kFiles; ++i) {
      OPENDLGFILEDATA& file = wide.files[i];
      ::lstrcpyW(file.fileName, i == 0 ? L"C:\\first.ico" : L"C:\\other.ico");
      file.format = FMT_ICO;
      file.fileInfo = static_cast<FILEINFO*>(CountAllocated(GPTR, sizeof(FILEINFO)));
      file.formatOptions = CountAllocated(GPTR, 12);
    }
    wide.files[1].bitmap = NewBitmap();
    wide.files[2].thumbnail = NewBitmap();
  }

  static BITMAPHANDLE* NewBitmap() {
    auto* const bitmap = static_cast<BITMAPHANDLE*>(CountAllocated(GPTR, sizeof(BITMAPHANDLE)));
    EXPECT_EQ(SUCCESS, CreateBitmap(bitmap, sizeof(*bitmap), MEMORY_CONVENTIONAL, 8, 8, 24, ORDER_BGR, nullptr,
                                    VIEW_TOP_LEFT, nullptr, 0));
    return bitmap;
  }
  static void FreeHandle(BITMAPHANDLE* bitmap) {
    FreeBitmap(bitmap);
    CountFreed(bitmap);
  }

  const int64_t coreBlocks = CoreBlockCount();
  const ImportPatch allocate{nullptr, "GlobalAlloc", &CountAllocated};
  const ImportPatch release{nullptr, "GlobalFree", &CountFreed};
  OPENFILEDLGPARAMS wide = {};
  OPENFILEDLGPARAMSA ansi = {};
};

TEST_F(AnsiOpenedFiles, AreNoneAndLeaveNothingWithoutMemoryForTheirArray) {
  {
    const ImportPatch core(nullptr, "CoreAlloc", &RefuseBlock);
    EXPECT_EQ(ERROR_OUT_OF_MEMORY, ConvertOpenedFiles(wide, ansi));
  }
  EXPECT_EQ(nullptr, ansi.files);
  EXPECT_EQ(nullptr, wide.files);
  EXPECT_EQ(0, wide.fileCount);
  EXPECT_EQ(0, blocksHeld);
  EXPECT_EQ(coreBlocks, CoreBlockCount()) << "the pixels are freed as well";
}

TEST_F(AnsiOpenedFiles, PassOverIntoAnArrayOfTheirOwn) {
  const void* const pixels = wide.files[1].bitmap->data;
  ASSERT_EQ(SUCCESS, ConvertOpenedFiles(wide, ansi));
  EXPECT_EQ(nullptr, wide.files);
  EXPECT_EQ(kFiles, wide.fileCount) << "the count is still to be passed on";
  ASSERT_NE(nullptr, ansi.files);
  EXPECT_STREQ("C:\\first.ico", ansi.files[0].fileName);
  EXPECT_EQ(pixels, ansi.files[1].bitmap->data);
  ASSERT_NE(nullptr, ansi.files[2].thumbnail);
  EXPECT_EQ(kFiles + 2, blocksHeld) << "load settings and bitmap handles are the caller's now, nothing else is left";
  FreeHandle(ansi.files[1].bitmap);
  FreeHandle(ansi.files[2].thumbnail);
  for (int32_t i = 0; i < kFiles; ++i) {
    CountFreed(ansi.files[i].formatOptions);
    CoreFree(ansi.files[i].fileInfo, 0, nullptr);
  }
  CoreFree(ansi.files, 0, nullptr);
  EXPECT_EQ(0, blocksHeld);
  EXPECT_EQ(coreBlocks, CoreBlockCount());
}

}  // namespace
