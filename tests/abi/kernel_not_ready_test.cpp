// Every wide export asks the kernel first. This program runs in a folder with a kernel that is not ready.
#include <gtest/gtest.h>

#include "include/zvfiledlg.h"
#include "services/zvdlgwidgets/window_classes.h"
#include "tests/support/dialog_driver.h"

namespace {

int Touches() {
  const HMODULE kernel = ::GetModuleHandleW(L"zvdlgbase.dll");
  const auto count = reinterpret_cast<int (*)()>(::GetProcAddress(kernel, "CountTouches"));
  return count ? count() : -1;
}

template <class Record>
void ExpectNotReady(int32_t(ZV_CALL* entry)(HWND, Record*), const char* name) {
  const zvtest::ParentWindow parent;
  Record record = {};
  EXPECT_EQ(ERROR_KERNEL_NOT_READY, entry(parent.hwnd(), nullptr)) << name << ", null record";
  EXPECT_EQ(ERROR_KERNEL_NOT_READY, entry(nullptr, &record)) << name << ", no size tag, no parent";
  record.uStructSize = sizeof(record);
  EXPECT_EQ(ERROR_KERNEL_NOT_READY, entry(parent.hwnd(), &record)) << name;
}

TEST(KernelNotReady, IsAnsweredBeforeTheRecordIsLookedAt) {
  ASSERT_NE(-1, Touches()) << "the stand-in is not the kernel that was loaded";
  ExpectNotReady(Z_DlgGetDirectory, "directory");
  ExpectNotReady(Z_DlgICCProfile, "profile");
  ExpectNotReady(Z_DlgFileConversion, "conversion");
  ExpectNotReady(Z_DlgFilesAssociation, "association");
  ExpectNotReady(Z_DlgPrintStitchedImages, "stitched print");
  ExpectNotReady(Z_DlgPrintPreview, "print preview");
  OPENFILENAMEW name = {};
  EXPECT_EQ(ERROR_KERNEL_NOT_READY, Z_DlgOpen(nullptr, &name, nullptr));
  EXPECT_EQ(ERROR_KERNEL_NOT_READY, Z_DlgSave(nullptr, &name, nullptr));
  EXPECT_EQ(0, Touches()) << "nothing else of the kernel may be used";
}

TEST(KernelNotReady, LeavesNoWindowClassesBehind) {
  const zvtest::ParentWindow parent;
  FILECONVERSIONDLGPARAMS record = {};
  record.uStructSize = sizeof(record);
  ASSERT_EQ(ERROR_KERNEL_NOT_READY, Z_DlgFileConversion(parent.hwnd(), &record));
  const HMODULE library = ::GetModuleHandleW(L"zvfiledlg.dll");
  ASSERT_NE(nullptr, library);
  for (const LPCWSTR name :
       {ZV_VALUE_COMBO_CLASS, ZV_PREVIEW_COMBO_CLASS, ZV_ROLLUP_WND_CLASS, ZV_IMAGE_LIST_VIEW_CLASS}) {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof(windowClass);
    EXPECT_FALSE(::GetClassInfoExW(library, name, &windowClass));
  }
}

TEST(KernelNotReady, IsPassedOnByTheEightBitEntries) {
  const zvtest::ParentWindow parent;
  char folder[MAX_PATH] = "C:\\";
  DIRECTORYDLGPARAMSA directory = {};
  directory.directoryBuffer = folder;
  directory.bufferLength = MAX_PATH;
  EXPECT_EQ(ERROR_KERNEL_NOT_READY, Z_DlgGetDirectoryA(parent.hwnd(), &directory));
  FILECONVERSIONDLGPARAMSA conversion = {};
  EXPECT_EQ(ERROR_KERNEL_NOT_READY, Z_DlgFileConversionA(parent.hwnd(), &conversion));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgFileConversionA(parent.hwnd(), nullptr)) << "a null record is answered first";
}

}  // namespace
