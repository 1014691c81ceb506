// The library-wide settings: a read sees the last write, and what callers save they can put back.
#include <gtest/gtest.h>

#include <cstring>

#include "file_test_support.h"

namespace {

template <typename Record>
void ExpectSaveSetRestore(int32_t (*get)(Record*, uint32_t), int32_t (*set)(const Record*)) {
  Record before, changed, seen;
  ASSERT_EQ(get(&before, sizeof before), SUCCESS);
  EXPECT_EQ(before.uStructSize, sizeof before);
  changed = before;
  std::memset(reinterpret_cast<uint8_t*>(&changed) + 4, 3, sizeof changed - 4);
  ASSERT_EQ(set(&changed), SUCCESS);
  ASSERT_EQ(get(&seen, sizeof seen), SUCCESS);
  EXPECT_EQ(std::memcmp(&seen, &changed, sizeof seen), 0);
  ASSERT_EQ(set(&before), SUCCESS);
  ASSERT_EQ(get(&seen, sizeof seen), SUCCESS);
  EXPECT_EQ(std::memcmp(&seen, &before, sizeof seen), 0);
  EXPECT_EQ(get(&seen, sizeof seen - 1), ERROR_BAD_RECORD_SIZE);
  EXPECT_EQ(get(nullptr, sizeof seen), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(set(nullptr), ERROR_BAD_ARGUMENT);
  changed.uStructSize = 1;
  EXPECT_EQ(set(&changed), ERROR_BAD_RECORD_SIZE);
}

TEST(OptionRecords, AreSavedSetAndRestored) {
  ExpectSaveSetRestore(GetJ2KOptions, SetJ2KOptions);
  ExpectSaveSetRestore(GetJBIG2Options, SetJBIG2Options);
  ExpectSaveSetRestore(GetPDFLoadOptions, SetPDFLoadOptions);
  ExpectSaveSetRestore(GetXPSLoadOptions, SetXPSLoadOptions);
  ExpectSaveSetRestore(GetXLSLoadOptions, SetXLSLoadOptions);
  ExpectSaveSetRestore(GetVectorPenOptions, SetVectorPenOptions);
  ExpectSaveSetRestore(GetRasterizeDocOptions, SetRasterizeDocOptions);
}

TEST(OptionRecords, HaveDefaults) {
  LOADFILEOPTION load;
  SAVEFILEOPTION save;
  J2KSAVEOPTION j2k, current;
  ASSERT_EQ(GetDefaultLoadFileOption(&load, sizeof load), SUCCESS);
  ASSERT_EQ(GetDefaultSaveFileOption(&save, sizeof save), SUCCESS);
  ASSERT_EQ(GetDefaultJ2KOptions(&j2k, sizeof j2k), SUCCESS);
  EXPECT_EQ(load.uStructSize, 48u);
  EXPECT_EQ(load.pageNumber, 1);
  EXPECT_EQ(save.uStructSize, 1909u);
  EXPECT_EQ(save.pageNumber, 1);
  EXPECT_EQ(save.flags, 0u);
  ASSERT_EQ(GetJ2KOptions(&current, sizeof current), SUCCESS);
  EXPECT_EQ(std::memcmp(&j2k, &current, sizeof j2k), 0);
  EXPECT_EQ(GetDefaultLoadFileOption(&load, 47), ERROR_BAD_RECORD_SIZE);
  EXPECT_EQ(GetDefaultSaveFileOption(nullptr, sizeof save), ERROR_BAD_ARGUMENT);
}

TEST(LoadDpi, IsKeptAndChecked) {
  int32_t x = 0, y = 0, newX = 0, newY = 0;
  ASSERT_EQ(GetLoadDpi(&x, &y), SUCCESS);
  EXPECT_EQ(SetLoadDpi(72, 96), SUCCESS);
  EXPECT_EQ(SetLoadDpi(0, 96), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(GetLoadDpi(&newX, &newY), SUCCESS);
  EXPECT_EQ(newX, 72);
  EXPECT_EQ(newY, 96);
  EXPECT_EQ(SetLoadDpi(x, y), SUCCESS);
}

TEST(LoadSize, IsKeptForEachFormat) {
  int32_t width = 1, height = 1;
  ASSERT_EQ(GetLoadSize(FMT_PCD, &width, &height, nullptr), SUCCESS);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
  EXPECT_EQ(SetLoadSize(FMT_PCD, 768, 512), SUCCESS);
  EXPECT_EQ(GetLoadSize(FMT_PCD, &width, &height, nullptr), SUCCESS);
  EXPECT_EQ(width, 768);
  EXPECT_EQ(GetLoadSize(FMT_J2K, &width, &height, nullptr), SUCCESS);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(SetLoadSize(FMT_PCD, 0, 0), SUCCESS);
  EXPECT_EQ(SetLoadSize(FMT_PCD, -1, 0), ERROR_BAD_ARGUMENT);
}

TEST(VectorSettings, AreKept) {
  int32_t width = 0, height = 0, mode = 0;
  uint32_t color = 0;
  EXPECT_EQ(SetVectorViewSize(640, 480), SUCCESS);
  EXPECT_EQ(GetVectorViewSize(&width, &height), SUCCESS);
  EXPECT_EQ(width, 640);
  EXPECT_EQ(height, 480);
  EXPECT_EQ(SetVectorViewSize(0, 0), SUCCESS);
  EXPECT_EQ(SetVectorViewMode(2), SUCCESS);
  EXPECT_EQ(GetVectorViewMode(&mode), SUCCESS);
  EXPECT_EQ(mode, 2);
  EXPECT_EQ(SetVectorViewMode(0), SUCCESS);
  EXPECT_EQ(GetVectorBackground(&color), SUCCESS);
  EXPECT_EQ(color, 0xFFFFFFu);
  EXPECT_EQ(SetVectorBackground(0x123456), SUCCESS);
  EXPECT_EQ(GetVectorBackground(&color), SUCCESS);
  EXPECT_EQ(color, 0x123456u);
  EXPECT_EQ(SetVectorBackground(0xFFFFFF), SUCCESS);
}

TEST(SaveSizeList, HoldsSixteenSizesAtMost) {
  const std::vector<IMAGESIZE> many(17, IMAGESIZE{16, 16});
  EXPECT_EQ(SetSaveSizeList(17, many.data()), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SetSaveSizeList(1, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SetSaveSizeList(16, many.data()), SUCCESS);
  int32_t count = 0;
  IMAGESIZE sizes[16];
  EXPECT_EQ(GetSaveSizeList(&count, sizes), SUCCESS);
  EXPECT_EQ(count, 16);
  EXPECT_EQ(sizes[15].width, 16);
  EXPECT_EQ(SetSaveSizeList(0, nullptr), SUCCESS);
  EXPECT_EQ(GetSaveSizeList(&count, nullptr), SUCCESS);
  EXPECT_EQ(count, 0);
}

TEST(LoadRedirect, IsClearedAndPutBack) {
  int a = 0, b = 0;
  void *first = nullptr, *second = nullptr;
  EXPECT_EQ(SetLoadRedirect(&a, &b), SUCCESS);
  EXPECT_EQ(GetLoadRedirect(&first, &second), SUCCESS);
  EXPECT_EQ(first, &a);
  EXPECT_EQ(second, &b);
  EXPECT_EQ(SetLoadRedirect(nullptr, nullptr), SUCCESS);
}

}  // namespace
