// The order in which an export looks at its record, and the code of each check. Nothing of this shows a dialog.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "include/zvfiledlg.h"
#include "tests/support/dialog_driver.h"

namespace {

OPENFILENAMEW openFileName = {};

struct Family {
  const char* name;
  size_t size;
  std::vector<uint32_t> tags;
  bool needsParent;
  std::function<int32_t(HWND, void*)> call;
};

template <class Record>
std::function<int32_t(HWND, void*)> Plain(int32_t(ZV_CALL* entry)(HWND, Record*)) {
  return [=](HWND parent, void* record) { return entry(parent, static_cast<Record*>(record)); };
}

template <class Record>
std::function<int32_t(HWND, void*)> WithName(int32_t(ZV_CALL* entry)(HWND, OPENFILENAMEW*, Record*)) {
  return [=](HWND parent, void* record) { return entry(parent, &openFileName, static_cast<Record*>(record)); };
}

std::vector<Family> Families() {
  return {
      {"directory", 60, {60}, false, Plain(Z_DlgGetDirectory)},
      {"open", 104, {104, 100}, false, WithName(Z_DlgOpen)},
      {"save", 874, {874, 870, 813, 796}, false, WithName(Z_DlgSave)},
      {"profile", 1144, {1144}, true, Plain(Z_DlgICCProfile)},
      {"conversion", 1128, {1128}, true, Plain(Z_DlgFileConversion)},
      {"association", 56, {56}, true, Plain(Z_DlgFilesAssociation)},
      {"stitched print", 96, {96}, true, Plain(Z_DlgPrintStitchedImages)},
      {"print preview", 96, {96}, true, Plain(Z_DlgPrintPreview)},
  };
}

class EveryEntry : public ::testing::TestWithParam<Family> {
 protected:
  // A cleared record with a size tag.
  std::vector<uint8_t> Record(uint32_t tag) const {
    std::vector<uint8_t> record(GetParam().size);
    memcpy(record.data(), &tag, sizeof(tag));
    return record;
  }
  int32_t Call(HWND parent, void* record) const { return GetParam().call(parent, record); }
  int32_t CallWithTag(HWND parent, uint32_t tag) const { return Call(parent, Record(tag).data()); }

  zvtest::ParentWindow parent;
};

TEST_P(EveryEntry, RefusesANullRecord) {
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Call(parent.hwnd(), nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Call(nullptr, nullptr));
}

TEST_P(EveryEntry, RefusesARecordThatEndsInMemoryItCannotWrite) {
  SYSTEM_INFO system;
  ::GetSystemInfo(&system);
  const size_t page = system.dwPageSize;
  auto* const pages = static_cast<uint8_t*>(::VirtualAlloc(nullptr, 2 * page, MEM_RESERVE, PAGE_NOACCESS));
  ASSERT_NE(nullptr, ::VirtualAlloc(pages, page, MEM_COMMIT, PAGE_READWRITE));
  uint8_t* const record = pages + page - (GetParam().size - 1);  // one byte short
  const uint32_t tag = 0;
  memcpy(record, &tag, sizeof(tag));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Call(parent.hwnd(), record)) << "the address is tested before the tag";
  DWORD before;
  ::VirtualProtect(pages, page, PAGE_READONLY, &before);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Call(parent.hwnd(), pages));
  ::VirtualFree(pages, 0, MEM_RELEASE);
}

TEST_P(EveryEntry, TestsTheLargestSizeWhateverTheTagSays) {
  SYSTEM_INFO system;
  ::GetSystemInfo(&system);
  const size_t page = system.dwPageSize;
  auto* const pages = static_cast<uint8_t*>(::VirtualAlloc(nullptr, 2 * page, MEM_RESERVE, PAGE_NOACCESS));
  ASSERT_NE(nullptr, ::VirtualAlloc(pages, page, MEM_COMMIT, PAGE_READWRITE));
  const uint32_t oldest = GetParam().tags.back();
  if (oldest < GetParam().size) {
    uint8_t* const record = pages + page - oldest;  // room for the older record only
    memcpy(record, &oldest, sizeof(oldest));
    EXPECT_EQ(ERROR_BAD_ARGUMENT, Call(parent.hwnd(), record));
  } else {
    uint8_t* const record = pages + page - GetParam().size;  // exactly enough
    const uint32_t wrong = 1;
    memcpy(record, &wrong, sizeof(wrong));
    EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Call(parent.hwnd(), record));
  }
  ::VirtualFree(pages, 0, MEM_RELEASE);
}

TEST_P(EveryEntry, RefusesUnknownSizeTags) {
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, CallWithTag(parent.hwnd(), 0));
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, CallWithTag(nullptr, 0)) << "the tag goes before the parent";
  for (const uint32_t tag : GetParam().tags) {
    EXPECT_EQ(ERROR_BAD_RECORD_SIZE, CallWithTag(parent.hwnd(), tag + 1)) << tag;
  }
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, CallWithTag(parent.hwnd(), 0xffffffff));
}

TEST_P(EveryEntry, LeavesARefusedRecordAlone) {
  std::vector<uint8_t> record = Record(0);
  std::fill(record.begin() + 4, record.end(), uint8_t{0x5a});
  const std::vector<uint8_t> before = record;
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Call(parent.hwnd(), record.data()));
  EXPECT_EQ(before, record);
}

INSTANTIATE_TEST_SUITE_P(ByFamily, EveryEntry, ::testing::ValuesIn(Families()), [](const auto& family) {
  std::string name = family.param.name;
  std::erase(name, ' ');
  return name;
});

TEST(ParentWindow, IsRequiredByTheFamiliesThatAreNoCommonDialogs) {
  int families = 0;
  for (const Family& family : Families()) {
    if (!family.needsParent) {
      continue;
    }
    ++families;
    std::vector<uint8_t> record(family.size);
    memcpy(record.data(), &family.tags.front(), sizeof(uint32_t));
    EXPECT_EQ(ERROR_DIALOG_FAILED, family.call(nullptr, record.data())) << family.name;
    EXPECT_EQ(ERROR_DIALOG_FAILED, family.call(reinterpret_cast<HWND>(0x7ffe), record.data())) << family.name;
  }
  EXPECT_EQ(5, families);
}

TEST(NameRecord, IsRequiredByOpenAndSaveAfterTheOtherChecks) {
  OPENFILEDLGPARAMS open = {};
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_DlgOpen(nullptr, nullptr, &open));
  open.uStructSize = 104;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgOpen(nullptr, nullptr, &open));
  SAVEFILEDLGPARAMS save = {};
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_DlgSave(nullptr, nullptr, &save));
  for (const uint32_t tag : {874u, 870u, 813u, 796u}) {
    save.uStructSize = tag;
    EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgSave(nullptr, nullptr, &save)) << tag;
  }
}

TEST(Save, NeedsABitmapWithPixelsToWriteAFile) {
  OPENFILENAMEW name = {};
  SAVEFILEDLGPARAMS save = {};
  save.uStructSize = 874;
  save.flags = DLG_SAVE_WRITE_FILE;
  EXPECT_EQ(ERROR_NO_IMAGE, Z_DlgSave(nullptr, &name, &save));
  BITMAPHANDLE bitmap = {};
  bitmap.uStructSize = sizeof(bitmap);
  save.bitmap = &bitmap;
  EXPECT_EQ(ERROR_NO_IMAGE, Z_DlgSave(nullptr, &name, &save));
}

class PrintEntries : public ::testing::Test {
 protected:
  PrintEntries() {
    bitmap.uStructSize = sizeof(bitmap);
    bitmap.flags = BITMAP_FLAG_ALLOCATED;
    item.bitmap = &bitmap;
    list = {sizeof(list), &item, 1};
    stitched.uStructSize = sizeof(stitched);
    stitched.pBitmapList = &list;
    preview.uStructSize = sizeof(preview);
    preview.pBitmap = &bitmap;
  }
  int32_t Stitched() { return Z_DlgPrintStitchedImages(parent.hwnd(), &stitched); }
  int32_t Preview() { return Z_DlgPrintPreview(parent.hwnd(), &preview); }

  zvtest::ParentWindow parent;
  BITMAPHANDLE bitmap = {};
  DLGBITMAPLISTITEM item = {};
  DLGBITMAPLIST list = {};
  STITCHEDPRINTDLGPARAMS stitched = {};
  PRINTPREVIEWDLGPARAMS preview = {};
};

TEST_F(PrintEntries, NeedAReadableListWithAnImage) {
  stitched.pBitmapList = nullptr;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Stitched());
  stitched.pBitmapList = reinterpret_cast<DLGBITMAPLIST*>(0x10);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Stitched());
  stitched.pBitmapList = &list;
  list.count = 0;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Stitched());
  list.count = -1;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Stitched());
}

TEST_F(PrintEntries, NeedABitmapThatCanBeShown) {
  preview.pBitmap = nullptr;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Preview());
  preview.pBitmap = &bitmap;
  bitmap.flags = 0;
  EXPECT_EQ(ERROR_NO_IMAGE, Preview());
  bitmap.flags = BITMAP_FLAG_COMPRESSED;
  EXPECT_EQ(ERROR_NO_IMAGE, Preview()) << "pixels are asked for first";
  bitmap.flags = BITMAP_FLAG_ALLOCATED | BITMAP_FLAG_COMPRESSED;
  preview.rcMinMargin.left = 1;
  EXPECT_EQ(ERROR_BITMAP_REFUSED, Preview()) << "the bitmap is looked at before the margins";
}

TEST_F(PrintEntries, RefuseLeastMarginsAboveTheWantedOnesInEachField) {
  for (LONG RECT::*const side : {&RECT::left, &RECT::top, &RECT::right, &RECT::bottom}) {
    stitched.rcMargin = preview.rcMargin = {500, 500, 500, 500};
    stitched.rcMinMargin = preview.rcMinMargin = {500, 500, 500, 500};
    stitched.rcMinMargin.*side = preview.rcMinMargin.*side = 501;
    EXPECT_EQ(ERROR_BAD_ARGUMENT, Stitched());
    EXPECT_EQ(ERROR_BAD_ARGUMENT, Preview());
  }
}

TEST(EightBitEntries, RefuseANullRecord) {
  OPENFILENAMEA name = {};
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgGetDirectoryA(nullptr, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgOpenA(nullptr, &name, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgSaveA(nullptr, &name, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgICCProfileA(nullptr, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgFileConversionA(nullptr, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgFilesAssociationA(nullptr, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgPrintStitchedImagesA(nullptr, nullptr));
}

TEST(EightBitEntries, RefuseANullNameRecord) {
  OPENFILEDLGPARAMSA open = {};
  SAVEFILEDLGPARAMSA save = {};
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgOpenA(nullptr, nullptr, &open));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgSaveA(nullptr, nullptr, &save));
}

TEST(EightBitEntries, SetTheSizeTagOfTheWideRecordThemselves) {
  // Each is refused for its parent, the check behind the size tag.
  ICCPROFILEDLGPARAMSA profile = {};
  FILECONVERSIONDLGPARAMSA conversion = {};
  FILEASSOCIATIONDLGPARAMSA association = {};
  STITCHEDPRINTDLGPARAMSA stitched = {};
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgICCProfileA(nullptr, &profile));
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversionA(nullptr, &conversion));
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFilesAssociationA(nullptr, &association));
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgPrintStitchedImagesA(nullptr, &stitched));
}

TEST(EightBitEntries, LeaveTheProfileRecordAsItWas) {
  ICCPROFILEDLGPARAMSA profile = {};
  memset(&profile, 0x41, sizeof(profile));
  profile.loadPath[263] = profile.savePath[263] = '\0';
  const ICCPROFILEDLGPARAMSA before = profile;
  Z_DlgICCProfileA(nullptr, &profile);
  EXPECT_EQ(0, memcmp(&before, &profile, sizeof(profile)));
}

TEST(EightBitEntries, RefuseABadFolderBuffer) {
  DIRECTORYDLGPARAMSA directory = {};
  directory.bufferLength = MAX_PATH;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgGetDirectoryA(nullptr, &directory)) << "null";
  char buffer[10] = "";
  directory.directoryBuffer = buffer;
  directory.bufferLength = 0;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgGetDirectoryA(nullptr, &directory)) << "no room";
}

}  // namespace
