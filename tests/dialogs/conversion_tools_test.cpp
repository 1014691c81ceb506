// Page selection, resize, rotate and log report, opened from the conversion dialog.
#include <windows.h>

#include <commctrl.h>

#include "resources/conversion_tools_ids.h"
#include "resources/naming_ids.h"
#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

class ConversionTools : public ConversionDialog {
 protected:
  void With(int button, int controlId, const std::function<void(HWND conversion, HWND tool)>& script) {
    RunAndClose([&](HWND dialog) {
      Click(dialog, button);
      script(dialog, WaitForDialogWith(controlId));
    });
  }
  static HWND Reopen(HWND conversion, int button, int controlId) {
    Click(conversion, button);
    return WaitForDialogWith(controlId);
  }
};

TEST_F(ConversionTools, ResizeEnablesItsControlsWithTheCheck) {
  With(IDB_CONV_RESIZE, IDX_RESIZE_ENABLE, [](HWND, HWND resize) {
    EXPECT_FALSE(IsEnabled(resize, IDC_RESIZE_WIDTH));
    EXPECT_FALSE(IsEnabled(resize, IDC_RESIZE_METHOD));
    Check(resize, IDX_RESIZE_ENABLE, true);
    EXPECT_TRUE(IsEnabled(resize, IDC_RESIZE_WIDTH));
    EXPECT_TRUE(IsEnabled(resize, IDC_RESIZE_METHOD));
    SaveScreenshot(resize, L"resize");
    CloseWith(resize, IDCANCEL);
  });
}

TEST_F(ConversionTools, ResizeKeepsPixelsWithinPercentAndBack) {
  With(IDB_CONV_RESIZE, IDX_RESIZE_ENABLE, [](HWND, HWND resize) {
    Check(resize, IDX_RESIZE_ENABLE, true);
    SetText(resize, IDC_RESIZE_WIDTH, L"500");
    SelectCombo(resize, IDC_RESIZE_UNIT, 1);
    EXPECT_EQ(L"100", TextOf(resize, IDC_RESIZE_WIDTH));
    EXPECT_TRUE(IsShown(resize, IDT_RESIZE_WIDTH_PERCENT));
    SelectCombo(resize, IDC_RESIZE_UNIT, 0);
    EXPECT_EQ(L"100", TextOf(resize, IDC_RESIZE_WIDTH));
    EXPECT_FALSE(IsShown(resize, IDT_RESIZE_WIDTH_PERCENT));
    CloseWith(resize, IDCANCEL);
  });
}

TEST_F(ConversionTools, ResizeKeepsTheStoredSizeWhenItIsSwitchedOff) {
  With(IDB_CONV_RESIZE, IDX_RESIZE_ENABLE, [](HWND conversion, HWND resize) {
    Check(resize, IDX_RESIZE_ENABLE, true);
    SetText(resize, IDC_RESIZE_WIDTH, L"640");
    SetText(resize, IDC_RESIZE_HEIGHT, L"480");
    CloseWith(resize, IDOK);
    resize = Reopen(conversion, IDB_CONV_RESIZE, IDX_RESIZE_ENABLE);
    SetText(resize, IDC_RESIZE_WIDTH, L"10");
    Check(resize, IDX_RESIZE_ENABLE, false);
    CloseWith(resize, IDOK);
    resize = Reopen(conversion, IDB_CONV_RESIZE, IDX_RESIZE_ENABLE);
    EXPECT_FALSE(IsChecked(resize, IDX_RESIZE_ENABLE));
    EXPECT_EQ(L"640", TextOf(resize, IDC_RESIZE_WIDTH));
    EXPECT_EQ(L"480", TextOf(resize, IDC_RESIZE_HEIGHT));
    CloseWith(resize, IDCANCEL);
  });
}

TEST_F(ConversionTools, ResizeBringsThePicturesOfARunToTheSize) {
  AddPicture(L"one.bmp");
  With(IDB_CONV_RESIZE, IDX_RESIZE_ENABLE, [](HWND conversion, HWND resize) {
    Check(resize, IDX_RESIZE_ENABLE, true);
    SetText(resize, IDC_RESIZE_WIDTH, L"33");
    SetText(resize, IDC_RESIZE_HEIGHT, L"21");
    CloseWith(resize, IDOK);
    ConvertAndWait(conversion);
  });
  FILEINFO info{};
  info.uStructSize = sizeof info;
  ASSERT_EQ(SUCCESS, GetFileInfo(out.File(L"one.jpg").c_str(), &info, sizeof info, 0, nullptr));
  EXPECT_EQ(33, info.width);
  EXPECT_EQ(21, info.height);
}

TEST_F(ConversionTools, RotateKeepsEditAndTrackBarInStep) {
  With(IDB_CONV_ROTATE, IDE_ROTATE_ANGLE, [](HWND, HWND rotate) {
    const HWND bar = Control(rotate, IDS_ROTATE_ANGLE_BAR);
    SetText(rotate, IDE_ROTATE_ANGLE, L"12.5");
    EXPECT_EQ(1250, ::SendMessageW(bar, TBM_GETPOS, 0, 0));
    ::SendMessageW(bar, TBM_SETPOS, TRUE, -9050);
    ::SendMessageW(rotate, WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(bar));
    EXPECT_EQ(L"-90.5", TextOf(rotate, IDE_ROTATE_ANGLE));
    SaveScreenshot(rotate, L"rotate");
    CloseWith(rotate, IDCANCEL);
  });
}

TEST_F(ConversionTools, RotateKeepsTheLastValidAngleWhileAnotherIsTypedAndClampsAtTheEnd) {
  With(IDB_CONV_ROTATE, IDE_ROTATE_ANGLE, [](HWND, HWND rotate) {
    const HWND bar = Control(rotate, IDS_ROTATE_ANGLE_BAR);
    SetText(rotate, IDE_ROTATE_ANGLE, L"36");
    SetText(rotate, IDE_ROTATE_ANGLE, L"360.5");
    EXPECT_EQ(3600, ::SendMessageW(bar, TBM_GETPOS, 0, 0));
    ::SendMessageW(rotate, WM_COMMAND, MAKEWPARAM(IDE_ROTATE_ANGLE, 1),
                   reinterpret_cast<LPARAM>(Control(rotate, IDE_ROTATE_ANGLE)));
    EXPECT_EQ(L"360", TextOf(rotate, IDE_ROTATE_ANGLE));
    CloseWith(rotate, IDCANCEL);
  });
}

TEST_F(ConversionTools, RotateOpensWithWhatOKLeft) {
  With(IDB_CONV_ROTATE, IDE_ROTATE_ANGLE, [](HWND conversion, HWND rotate) {
    SetText(rotate, IDE_ROTATE_ANGLE, L"45");
    SelectCombo(rotate, IDC_ROTATE_INTERPOLATION, 2);
    Check(rotate, IDX_ROTATE_RESIZE, true);
    CloseWith(rotate, IDOK);
    rotate = Reopen(conversion, IDB_CONV_ROTATE, IDE_ROTATE_ANGLE);
    EXPECT_EQ(L"45", TextOf(rotate, IDE_ROTATE_ANGLE));
    EXPECT_EQ(2, ComboSelection(rotate, IDC_ROTATE_INTERPOLATION));
    EXPECT_TRUE(IsChecked(rotate, IDX_ROTATE_RESIZE));
    CloseWith(rotate, IDCANCEL);
  });
}

bool HasQuestionMark(HWND dialog) { return ::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP; }

TEST_F(ConversionTools, AllHaveAQuestionMarkWhenTheConversionDialogHasOne) {
  constexpr std::pair<int, int> kTools[] = {{IDB_CONV_NAMING, IDE_NAMING_TEMPLATE},
                                            {IDB_CONV_CUSTOMIZE, IDX_RENAME_PREFIX},
                                            {IDB_CONV_RESIZE, IDX_RESIZE_ENABLE},
                                            {IDB_CONV_ROTATE, IDE_ROTATE_ANGLE},
                                            {IDB_CONV_PAGE_OPTIONS, IDX_PAGES_ALL}};
  params.overwriteMode = OVERWRITE_RENAME;
  AddPicture(L"one.bmp");
  for (const bool wanted : {false, true}) {
    params.uiFlags = kOfferEverything | (wanted ? CONVDLG_CONTEXT_HELP : 0);
    RunAndClose([&](HWND dialog) {
      for (const auto& [button, control] : kTools) {
        Click(dialog, button);
        const HWND tool = WaitForDialogWith(control);
        EXPECT_EQ(wanted, HasQuestionMark(tool)) << button;
        EXPECT_FALSE(IsShown(tool, IDB_TOOLS_HELP)) << button;
        CloseWith(tool, IDCANCEL);
      }
    });
  }
}

TEST_F(ConversionTools, TheRunsDialogsHaveAQuestionMarkWhenTheConversionDialogHasOne) {
  params.uiFlags |= CONVDLG_CONTEXT_HELP;
  params.logReport = 1;
  params.overwriteMode = OVERWRITE_ASK;
  AddPicture(L"one.bmp");
  out.AddFile(L"one.jpg", {1});
  RunAndClose([](HWND dialog) {
    Click(dialog, IDB_CONV_CONVERT);
    const HWND ask = WaitForDialogWith(IDB_CONV_ASK_SKIP);
    EXPECT_TRUE(HasQuestionMark(ask));
    EXPECT_TRUE(HasQuestionMark(WaitForDialogWith(IDP_CONV_TOTAL)));
    Click(ask, IDB_CONV_ASK_SKIP);
    const HWND log = WaitForDialogWith(IDL_LOG);
    EXPECT_TRUE(HasQuestionMark(log));
    CloseWith(log, IDOK);
  });
}

TEST_F(ConversionTools, PagesRefuseABadListAndStayOpen) {
  AddPicture(L"one.bmp");
  With(IDB_CONV_PAGE_OPTIONS, IDX_PAGES_ALL, [](HWND, HWND pages) {
    EXPECT_TRUE(IsChecked(pages, IDX_PAGES_ALL));
    EXPECT_FALSE(IsEnabled(pages, IDE_PAGES_LIST));
    ClickAndWait(pages, IDX_PAGES_LIST);
    WaitUntil([pages] { return IsEnabled(pages, IDE_PAGES_LIST); }, "the page list can be typed");
    EXPECT_EQ(L"1", TextOf(pages, IDE_PAGES_LIST));
    SetText(pages, IDE_PAGES_LIST, L"1-2-3");
    Click(pages, IDOK);
    Dismiss(WaitForMessageBox());
    EXPECT_TRUE(::IsWindow(pages));
    SaveScreenshot(pages, L"pages");
    CloseWith(pages, IDCANCEL);
  });
}

TEST_F(ConversionTools, PagesAreClippedToEachFileAndShownInItsRow) {
  AddPicture(L"one.bmp");
  With(IDB_CONV_PAGE_OPTIONS, IDX_PAGES_ALL, [](HWND conversion, HWND pages) {
    ClickAndWait(pages, IDX_PAGES_LIST);
    SetText(pages, IDE_PAGES_LIST, L"1,3-5");
    CloseWith(pages, IDOK);
    EXPECT_EQ(L"1", ListViewText(conversion, IDL_CONV_FILES, 0, 1));
  });
}

TEST_F(ConversionTools, PagesAreClippedToEachOfSeveralFiles) {
  AddPicture(L"five.tif", {60, 40, FMT_TIFF, 5});
  AddPicture(L"two.tif", {60, 40, FMT_TIFF, 2});
  AddPicture(L"left.tif", {60, 40, FMT_TIFF, 4});
  RunAndClose([](HWND dialog) {
    SelectListViewRows(dialog, IDL_CONV_FILES, {0, 1});
    Click(dialog, IDB_CONV_PAGE_OPTIONS);
    const HWND pages = WaitForDialogWith(IDX_PAGES_ALL);
    ClickAndWait(pages, IDX_PAGES_LIST);
    SetText(pages, IDE_PAGES_LIST, L"1,3,9");
    CloseWith(pages, IDOK);
    EXPECT_EQ(L"1,3", ListViewText(dialog, IDL_CONV_FILES, 0, 1));
    EXPECT_EQ(L"1", ListViewText(dialog, IDL_CONV_FILES, 1, 1));
    EXPECT_EQ(L"", ListViewText(dialog, IDL_CONV_FILES, 2, 1)) << "a row that was not selected";
  });
}

TEST_F(ConversionTools, AllPagesNameEachPageOfTheFile) {
  AddPicture(L"five.tif", {60, 40, FMT_TIFF, 5});
  With(IDB_CONV_PAGE_OPTIONS, IDX_PAGES_ALL, [](HWND conversion, HWND pages) {
    EXPECT_TRUE(IsChecked(pages, IDX_PAGES_ALL));
    CloseWith(pages, IDOK);
    EXPECT_EQ(L"1,2,3,4,5", ListViewText(conversion, IDL_CONV_FILES, 0, 1));
  });
}

TEST_F(ConversionTools, ALongPageSelectionIsCutInItsColumn) {
  AddPicture(L"many.tif", {8, 8, FMT_TIFF, 120});
  With(IDB_CONV_PAGE_OPTIONS, IDX_PAGES_ALL, [](HWND conversion, HWND pages) {
    CloseWith(pages, IDOK);
    const std::wstring shown = ListViewText(conversion, IDL_CONV_FILES, 0, 1);
    EXPECT_EQ(259u, shown.size());
    EXPECT_EQ(L"1,2,3,4,", shown.substr(0, 8));
    EXPECT_EQ(L"...", shown.substr(256));
  });
}

TEST_F(ConversionTools, LogReportShowsARowForEachFileWithFullPaths) {
  params.logReport = 1;
  AddPicture(L"one.bmp");
  AddPicture(L"two.bmp");
  RunAndClose([this](HWND dialog) {
    ClickAndWait(dialog, IDB_CONV_SELECT_ALL);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND log = WaitForDialogWith(IDL_LOG);
    ASSERT_EQ(2, ListViewCount(log, IDL_LOG));
    EXPECT_TRUE(IsChecked(log, IDX_LOG_FULL_PATH));
    // The list sorts by status, so the order of rows with the same one is the list's.
    const int first = ListViewText(log, IDL_LOG, 0, 1) == in.File(L"one.bmp") ? 0 : 1;
    EXPECT_EQ(in.File(L"one.bmp"), ListViewText(log, IDL_LOG, first, 1));
    EXPECT_EQ(out.File(L"one.jpg"), ListViewText(log, IDL_LOG, first, 2));
    EXPECT_EQ(in.File(L"two.bmp"), ListViewText(log, IDL_LOG, 1 - first, 1));
    Check(log, IDX_LOG_FULL_PATH, false);
    EXPECT_EQ(L"one.bmp", ListViewText(log, IDL_LOG, 0, 1));
    EXPECT_EQ(L"two.jpg", ListViewText(log, IDL_LOG, 1, 2));
    SaveScreenshot(log, L"log_report");
    CloseWith(log, IDOK);
  });
}

TEST_F(ConversionTools, LogReportStartsWithFullPathsAfterEachRun) {
  params.logReport = 1;
  params.overwriteMode = OVERWRITE_REPLACE;
  AddPicture(L"one.bmp");
  RunAndClose([](HWND dialog) {
    for (int run = 0; run < 2; ++run) {
      Click(dialog, IDB_CONV_CONVERT);
      const HWND log = WaitForDialogWith(IDL_LOG);
      EXPECT_TRUE(IsChecked(log, IDX_LOG_FULL_PATH)) << run;
      Check(log, IDX_LOG_FULL_PATH, false);
      CloseWith(log, IDOK);
      WaitUntilIdle(dialog);
    }
  });
}

TEST_F(ConversionTools, LogReportOfARunThatWasAbortedAtOnceHasNoRows) {
  params.logReport = 1;
  params.overwriteMode = OVERWRITE_ASK;
  AddPicture(L"one.bmp");
  out.AddFile(L"one.jpg", {1});
  RunAndClose([](HWND dialog) {
    Click(dialog, IDB_CONV_CONVERT);
    Click(WaitForDialogWith(IDB_CONV_ASK_ABORT), IDB_CONV_ASK_ABORT);
    const HWND log = WaitForDialogWith(IDL_LOG);
    EXPECT_EQ(0, ListViewCount(log, IDL_LOG));
    CloseWith(log, IDOK);
  });
}

TEST_F(ConversionTools, LogReportStaysAwayWhenNothingWasQueued) {
  params.logReport = 1;
  AddPicture(L"one.bmp");
  RunAndClose([](HWND dialog) {
    SelectListBoxRows(dialog, IDL_CONV_FORMATS, {});
    ::SendMessageW(Control(dialog, IDB_CONV_CONVERT), BM_CLICK, 0, 0);
    EXPECT_EQ(nullptr, FindDialogTitled(L"Conversion Log-Report "));
    EXPECT_TRUE(::IsWindowEnabled(dialog));
  });
}

TEST_F(ConversionTools, LogReportStaysAwayWhenItIsSwitchedOff) {
  AddPicture(L"one.bmp");
  RunAndClose([](HWND dialog) {
    ConvertAndWait(dialog);
    EXPECT_EQ(nullptr, FindDialogTitled(L"Conversion Log-Report "));
  });
}

}  // namespace
