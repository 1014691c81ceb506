// The preview of the batch conversion dialog and its page controls: what they follow, and files that cannot be shown.
#include <windows.h>

#include <commctrl.h>

#include <atomic>

#include "tests/dialogs/conversion_files_fixture.h"
#include "tests/support/import_patch.h"

namespace {

using namespace zvtest;

class ConversionPreview : public ConversionFiles {
 protected:
  // Cuts a PNG off in the middle of its pixels: it still tells its size.
  static void Damage(const std::wstring& path) {
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, file);
    ::SetFilePointer(file, 60, nullptr, FILE_BEGIN);
    ::SetEndOfFile(file);
    ::CloseHandle(file);
  }
  // The message that a file could not be shown; closes it.
  static void ExpectRefusal(const std::wstring& path) {
    const HWND box = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(box, 65535).find(path));
    Dismiss(box);
  }
  static void ClickRow(HWND dialog, int row) {
    const HWND list = Control(dialog, IDL_CONV_FILES);
    RECT place = {LVIR_LABEL, 0, 0, 0};
    ::SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    const LPARAM point = MAKELPARAM(place.left + 5, (place.top + place.bottom) / 2);
    ::PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, point);
    ::PostMessageW(list, WM_LBUTTONUP, 0, point);
  }
  static void FocusRow(HWND dialog, int row) {
    LVITEMW item = {};
    item.state = item.stateMask = LVIS_FOCUSED;
    ::SendMessageW(Control(dialog, IDL_CONV_FILES), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                   reinterpret_cast<LPARAM>(&item));
  }
  // Types into the page edit as a user does, and leaves it.
  static void EnterPage(HWND dialog, const std::wstring& page) {
    const HWND edit = Control(dialog, IDE_CONV_PAGE);
    ::SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
    ::SendMessageW(edit, EM_SETSEL, 0, -1);
    for (const wchar_t digit : page) {
      ::SendMessageW(edit, WM_CHAR, digit, 0);
    }
    EXPECT_EQ(page, TextOf(dialog, IDE_CONV_PAGE));
    ::SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(dialog, IDL_CONV_FILES)), TRUE);
  }
};

// --- The chosen rows ---

TEST_F(ConversionPreview, TwoChosenFilesClearThePreview) {
  AddThree();
  RunAndClose([](HWND dialog) {
    WaitForPicture(dialog, true);
    Choose(dialog, {0, 2});
    WaitForPicture(dialog, false);
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_FILE_INFO));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CONVERT));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_PAGE_OPTIONS));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_REMOVE));
    Choose(dialog, {1});
    WaitForPicture(dialog, true);
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_FILE_INFO));
  });
}

TEST_F(ConversionPreview, AClickOnOneOfTwoChosenFilesShowsItAgain) {
  AddPicture(L"1.bmp");
  AddFourPages();
  RunAndClose([](HWND dialog) {
    for (const char* const focus : {"the focus on the other row", "the focus on this row"}) {
      SCOPED_TRACE(focus);
      Choose(dialog, {0, 1});
      WaitForPicture(dialog, false);
      ExpectPageControls(dialog, false);
      ClickRow(dialog, 1);
      WaitUntilChosen(dialog, {1});
      WaitForPicture(dialog, true);
      ExpectPageControls(dialog, true);
      EXPECT_EQ(L"1/4", TextOf(dialog, IDT_CONV_PAGE_OF));
      EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_FILE_INFO));
    }
  });
}

TEST_F(ConversionPreview, AnArrowKeyToOneOfTwoChosenFilesShowsItAgain) {
  AddFourPages();
  AddPicture(L"2.bmp");
  RunAndClose([](HWND dialog) {
    Choose(dialog, {0, 1});
    FocusRow(dialog, 1);
    WaitForPicture(dialog, false);
    PressKey(dialog, VK_UP);
    WaitUntilChosen(dialog, {0});
    WaitForPicture(dialog, true);
    ExpectPageControls(dialog, true);
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_FILE_INFO));
  });
}

TEST_F(ConversionPreview, TheShownPageStaysWhileTheFocusAloneMoves) {
  AddFourPages();
  AddPicture(L"2.bmp");
  RunAndClose([](HWND dialog) {
    Click(dialog, IDB_CONV_PAGE_FORWARD);
    WaitUntil([=] { return TextOf(dialog, IDT_CONV_PAGE_OF) == L"2/4"; }, "the next page");
    FocusRow(dialog, 1);
    EXPECT_EQ(std::vector<int>{0}, Chosen(dialog));
    EXPECT_EQ(L"2/4", TextOf(dialog, IDT_CONV_PAGE_OF));
    FocusRow(dialog, 0);
    EXPECT_EQ(L"2", TextOf(dialog, IDE_CONV_PAGE));
    WaitForPicture(dialog, true);
  });
}

std::atomic<int> pictureLoads = 0;

int32_t CountLoad(const wchar_t* path, BITMAPHANDLE* bitmap, uint32_t bitmapSize, int32_t bitsPerPixel, int32_t order,
                  uint32_t flags, FILELOADCALLBACK callback, void* userData, const LOADFILEOPTION* option,
                  FILEINFO* info) {
  ++pictureLoads;
  return LoadImageFile(path, bitmap, bitmapSize, bitsPerPixel, order, flags, callback, userData, option, info);
}

TEST_F(ConversionPreview, EachStepOfTheUserLoadsItsPictureOnce) {
  const ImportPatch counting(L"zvfiledlg.dll", "LoadImageFile", &CountLoad);
  AddThree();
  const auto expectOneLoad = [](const char* step) {
    WaitUntil([] { return pictureLoads > 0; }, step);
    EXPECT_FALSE(HoldsWithin(300, [] { return pictureLoads > 1; })) << step;
    pictureLoads = 0;
  };
  pictureLoads = 0;
  RunAndClose([&](HWND dialog) {
    expectOneLoad("the start");
    PressKey(dialog, VK_DOWN);
    expectOneLoad("an arrow key");
    Choose(dialog, {0, 2});
    pictureLoads = 0;
    ClickRow(dialog, 1);
    expectOneLoad("a click on a third row");
    Choose(dialog, {0, 1});
    pictureLoads = 0;
    ClickRow(dialog, 0);
    expectOneLoad("a click on one of two chosen rows");
    Click(dialog, IDB_CONV_REMOVE);
    expectOneLoad("the row after a removed one");
  });
}

TEST_F(ConversionPreview, SelectAllOfOneFileKeepsItsPageControlsAndClearsThePreview) {
  AddFourPages();
  RunAndClose([](HWND dialog) {
    Choose(dialog, {});
    ExpectPageControls(dialog, false);
    Click(dialog, IDB_CONV_SELECT_ALL);
    WaitUntilChosen(dialog, {0});
    WaitForPicture(dialog, false);
    ExpectPageControls(dialog, true);
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_FILE_INFO));
    Click(dialog, IDB_CONV_PAGE_FORWARD);
    WaitForPicture(dialog, true);
  });
}

// --- Pages ---

TEST_F(ConversionPreview, AFileOfOnePageHasNoPageControls) {
  AddThree();
  RunAndClose([](HWND dialog) {
    EXPECT_EQ(L"1/1", TextOf(dialog, IDT_CONV_PAGE_OF));
    EXPECT_FALSE(IsEnabled(dialog, IDE_CONV_PAGE));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_PAGE_FORWARD));
  });
}

TEST_F(ConversionPreview, PageButtonsStopAtBothEnds) {
  AddFourPages();
  RunAndClose([](HWND dialog) {
    EXPECT_EQ(L"1/4", TextOf(dialog, IDT_CONV_PAGE_OF));
    EXPECT_TRUE(IsEnabled(dialog, IDE_CONV_PAGE));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_PAGE_BACK));
    for (const wchar_t* text : {L"2/4", L"3/4", L"4/4"}) {
      Click(dialog, IDB_CONV_PAGE_FORWARD);
      WaitUntil([=] { return TextOf(dialog, IDT_CONV_PAGE_OF) == text; }, "the next page");
    }
    EXPECT_EQ(L"4", TextOf(dialog, IDE_CONV_PAGE));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_PAGE_FORWARD));
    Click(dialog, IDB_CONV_PAGE_BACK);
    WaitUntil([=] { return TextOf(dialog, IDT_CONV_PAGE_OF) == L"3/4"; }, "the page before");
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_PAGE_FORWARD));
  });
}

TEST_F(ConversionPreview, ATypedPageOutsideTheFileClearsThePreviewAndBothButtons) {
  AddFourPages();
  RunAndClose([](HWND dialog) {
    WaitForPicture(dialog, true);
    SetText(dialog, IDE_CONV_PAGE, L"9");
    WaitForPicture(dialog, false);
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_PAGE_BACK));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_PAGE_FORWARD));
    EXPECT_EQ(L"1/4", TextOf(dialog, IDT_CONV_PAGE_OF));
    SetText(dialog, IDE_CONV_PAGE, L"3");
    WaitForPicture(dialog, true);
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_PAGE_BACK));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_PAGE_FORWARD));
    EXPECT_EQ(L"3/4", TextOf(dialog, IDT_CONV_PAGE_OF));
  });
}

TEST_F(ConversionPreview, LeavingThePageEditBringsTheNumberBackIntoTheFile) {
  AddFourPages();
  RunAndClose([](HWND dialog) {
    for (const wchar_t* page : {L"9", L"2147483647", L"2147483648", L"9999999999999999999999"}) {
      EnterPage(dialog, page);
      WaitUntil([=] { return TextOf(dialog, IDE_CONV_PAGE) == L"4"; }, "the last page in the edit");
      EXPECT_EQ(L"4/4", TextOf(dialog, IDT_CONV_PAGE_OF));
      WaitForPicture(dialog, true);
      EnterPage(dialog, L"0");
      WaitUntil([=] { return TextOf(dialog, IDE_CONV_PAGE) == L"1"; }, "the first page in the edit");
    }
  });
}

TEST_F(ConversionPreview, ThePageEditTakesDigitsAlone) {
  AddFourPages();
  RunAndClose([](HWND dialog) {
    const HWND edit = Control(dialog, IDE_CONV_PAGE);
    ::SendMessageW(edit, EM_SETSEL, 0, -1);
    ::SendMessageW(edit, WM_CHAR, L'x', 0);
    ::SendMessageW(edit, WM_CHAR, L'-', 0);
    EXPECT_EQ(L"1", TextOf(dialog, IDE_CONV_PAGE));
  });
}

TEST_F(ConversionPreview, SeveralChosenFilesDisableThePageControls) {
  AddFourPages();
  AddPicture(L"2.bmp");
  RunAndClose([](HWND dialog) {
    EXPECT_TRUE(IsEnabled(dialog, IDE_CONV_PAGE));
    Choose(dialog, {0, 1});
    for (const int id : {IDE_CONV_PAGE, IDB_CONV_PAGE_BACK, IDB_CONV_PAGE_FORWARD}) {
      EXPECT_FALSE(IsEnabled(dialog, id)) << id;
    }
    Choose(dialog, {0});
    EXPECT_TRUE(IsEnabled(dialog, IDE_CONV_PAGE));
  });
}

TEST_F(ConversionPreview, AFileThatCannotBeShownLeavesTheListWithAMessage) {
  AddPicture(L"1.bmp");
  const std::wstring broken = AddPicture(L"2.png", {400, 300, FMT_PNG});
  RunAndClose([&](HWND dialog) {
    Damage(broken);
    Choose(dialog, {1});
    ExpectRefusal(broken);
    WaitUntil([=] { return Rows(dialog) == 1; }, "the row is gone");
    WaitForPicture(dialog, false);
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_CONVERT));
    EXPECT_EQ(L"1.bmp", Row(dialog, 0));
  });
}

TEST_F(ConversionPreview, AFileThatCannotBeShownLeavesTheListWithoutAPreviewPaneToo) {
  params.uiFlags &= ~CONVDLG_SHOW_PREVIEW;
  AddPicture(L"1.bmp");
  const std::wstring broken = AddPicture(L"2.png", {400, 300, FMT_PNG});
  RunAndClose([&](HWND dialog) {
    Damage(broken);
    Choose(dialog, {1});
    ExpectRefusal(broken);
    WaitUntil([=] { return Rows(dialog) == 1; }, "the row is gone");
    EXPECT_EQ(L"1.bmp", Row(dialog, 0));
  });
}

// Chooses row 1 and then row 2 before the dialog can handle what it posted to itself over the first.
constexpr UINT kChooseTwiceMessage = WM_APP + 100;
WNDPROC dialogProcedure = nullptr;
LRESULT CALLBACK ChooseTwice(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kChooseTwiceMessage) {
    SelectListViewRows(dialog, IDL_CONV_FILES, {1});
    SelectListViewRows(dialog, IDL_CONV_FILES, {2});
    return 0;
  }
  return ::CallWindowProcW(dialogProcedure, dialog, message, wParam, lParam);
}

TEST_F(ConversionPreview, EveryFileThatCannotBeShownIsToldAndRemoved) {
  AddPicture(L"1.bmp");
  const std::vector<std::wstring> broken = {AddPicture(L"2.png", {400, 300, FMT_PNG}),
                                            AddPicture(L"3.png", {400, 300, FMT_PNG})};
  RunAndClose([&](HWND dialog) {
    for (const std::wstring& path : broken) {
      Damage(path);
    }
    dialogProcedure =
        reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ChooseTwice)));
    ::SendMessageW(dialog, kChooseTwiceMessage, 0, 0);
    ::SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(dialogProcedure));
    for (const std::wstring& path : broken) {
      ExpectRefusal(path);
    }
    WaitUntil([=] { return Rows(dialog) == 1; }, "both rows are gone");
    EXPECT_EQ(L"1.bmp", Row(dialog, 0));
    EXPECT_EQ(nullptr, FindMessageBox());
  });
}

}  // namespace
