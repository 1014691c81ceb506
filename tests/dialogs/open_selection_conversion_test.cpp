// The conversion dialog chooses its files through the open dialog, in which the OK button says what it is for there.
#include <windows.h>

#include <commctrl.h>

#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/dialogs/conversion_fixture.h"
#include "tests/support/open_driver.h"

namespace {

using namespace zvtest;

class AddFilesButton : public ConversionDialog {
 protected:
  AddFilesButton() {
    EXPECT_TRUE(WritePicture(in.File(L"first.bmp")));
    EXPECT_TRUE(WritePicture(in.File(L"second.png"), {.format = FMT_PNG}));
    EXPECT_TRUE(WritePicture(in.File(L"pages.tif"), {.format = FMT_TIFF, .pages = 3}));
  }
  static HWND OpenFromConversion(HWND dialog) {
    Click(dialog, IDB_CONV_ADD_FILES);
    const HWND open = WaitForDialogTitled(L"Add Files");
    WaitUntil([=] { return OpenFileList(open) && ListedFiles(open).size() == 3; }, "the files are listed");
    return open;
  }
  static std::wstring OkText() {
    wchar_t text[100] = L"";
    EXPECT_EQ(SUCCESS, GetDialogStringText(IDS_OPEN_OK, text, 100));
    return text;
  }
  const std::wstring usualText = OkText();
};

TEST_F(AddFilesButton, NamesTheOpenDialogsOkForItsPurposeAndPutsTheTextBack) {
  RunAndClose([this](HWND dialog) {
    const HWND open = OpenFromConversion(dialog);
    EXPECT_NE(usualText, TextOf(open, IDOK));
    EXPECT_EQ(OkText(), TextOf(open, IDOK));
    EXPECT_TRUE(SaveScreenshot(open, L"open_add_files"));
    Click(open, IDCANCEL);
    WaitUntilClosed(open);
    WaitUntil([this] { return OkText() == usualText; }, "the usual text is back");
  });
}

TEST_F(AddFilesButton, PutsTheTextBackAfterOkToo) {
  RunAndClose([this](HWND dialog) {
    const HWND open = OpenFromConversion(dialog);
    TypeName(open, L"first.bmp");
    Click(open, IDOK);
    WaitUntilClosed(open);
    WaitUntil([=] { return ListViewCount(dialog, IDL_CONV_FILES) == 1; }, "the file is added");
    EXPECT_EQ(usualText, OkText());
  });
}

TEST_F(AddFilesButton, AddsAllFilesSelectedInTheList) {
  RunAndClose([](HWND dialog) {
    const HWND open = OpenFromConversion(dialog);
    LVITEMW all = {};
    all.state = all.stateMask = LVIS_SELECTED;
    ::SendMessageW(OpenFileList(open), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&all));
    Click(open, IDOK);
    WaitUntilClosed(open);
    WaitUntil([=] { return ListViewCount(dialog, IDL_CONV_FILES) == 3; }, "the files are added");
  });
}

TEST_F(AddFilesButton, AddsNothingWhenAFileCannotBeRead) {
  in.AddFile(L"zz broken.png", {'n', 'o'});
  RunAndClose([this](HWND dialog) {
    Click(dialog, IDB_CONV_ADD_FILES);
    const HWND open = WaitForDialogTitled(L"Add Files");
    WaitUntil([=] { return OpenFileList(open) && ListedFiles(open).size() == 4; }, "the files are listed");
    TypeName(open, L"\"first.bmp\" \"zz broken.png\"");
    Click(open, IDOK);
    WaitUntilClosed(open);
    WaitUntil([=] { return ::IsWindowEnabled(dialog); }, "the conversion dialog is back");
    EXPECT_EQ(0, ListViewCount(dialog, IDL_CONV_FILES));
    EXPECT_EQ(usualText, OkText());
  });
}

}  // namespace
