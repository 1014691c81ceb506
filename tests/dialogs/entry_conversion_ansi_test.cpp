// The 8-bit entry of the conversion dialog: what of its record reaches the dialog, and that nothing comes back.
#include <gtest/gtest.h>

#include "include/zvfiledlg.h"
#include "resources/conversion_ids.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

std::string Narrow(const std::wstring& text) {
  std::string narrow(text.size() * 2 + 1, '\0');
  narrow.resize(
      static_cast<size_t>(::WideCharToMultiByte(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()), narrow.data(),
                                                static_cast<int>(narrow.size()), nullptr, nullptr)));
  return narrow;
}

class ConversionDialogA : public ::testing::Test {
 protected:
  ConversionDialogA() {
    params.uStructSize = sizeof(params);
    params.uiFlags = CONVDLG_SHOW_OVERWRITE | CONVDLG_OVERWRITE_REPLACE;
    params.overwriteMode = OVERWRITE_REPLACE;
    strcpy(params.destinationFolder, Narrow(folder.path()).c_str());
  }

  int32_t Convert(const std::function<void(HWND)>& script) {
    return DriveDialog([this] { return Z_DlgFileConversionA(parent.hwnd(), &params); },
                       [&] { script(WaitForDialogWith(IDL_CONV_FILES)); });
  }

  TemporaryFolder folder;
  ParentWindow parent;
  FILECONVERSIONDLGPARAMSA params = {};
};

TEST_F(ConversionDialogA, StartsWithEveryFileOfTheList) {
  std::string list;
  for (const wchar_t* name : {L"one.bmp", L"two with blanks.bmp", L"three.bmp"}) {
    ASSERT_TRUE(WritePicture(folder.File(name)));
    list += Narrow(folder.File(name)) + '\0';
  }
  params.fileList = list.c_str();
  params.fullPath = 1;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, Convert([this](HWND dialog) {
              WaitUntil([=] { return ListViewCount(dialog, IDL_CONV_FILES) == 3; }, "three rows");
              EXPECT_EQ(folder.File(L"two with blanks.bmp"), ListViewText(dialog, IDL_CONV_FILES, 1, 0));
              EXPECT_EQ(folder.path(), TextOf(dialog, IDE_CONV_FOLDER));
              Click(dialog, IDB_CONV_CLOSE);
            }));
}

TEST_F(ConversionDialogA, StartsEmptyWithoutAList) {
  EXPECT_EQ(SUCCESS_DLG_CLOSE, Convert([](HWND dialog) {
              EXPECT_EQ(0, ListViewCount(dialog, IDL_CONV_FILES));
              Click(dialog, IDB_CONV_CLOSE);
            }));
}

TEST_F(ConversionDialogA, FailsToStartWithAnEmptyList) {
  params.fileList = "";
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversionA(parent.hwnd(), &params));
}

TEST_F(ConversionDialogA, WritesNothingBack) {
  const FILECONVERSIONDLGPARAMSA before = params;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, Convert([](HWND dialog) {
              Check(dialog, IDX_CONV_LOG_REPORT, true);
              Click(dialog, IDB_CONV_CLOSE);
            }));
  EXPECT_EQ(0, memcmp(&before, &params, sizeof(params)));
}

}  // namespace
