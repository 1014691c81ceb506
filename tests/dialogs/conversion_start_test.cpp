// How the batch conversion dialog starts and ends: record, offers, keys, help.
#include <windows.h>

#include <commctrl.h>

#include <cstring>

#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

constexpr int kQuietTime = 300;
constexpr int32_t kJpeg = 0;
constexpr int32_t kPng = 1;

class ConversionStart : public ConversionDialog {};

TEST_F(ConversionStart, StartsEmptyWithoutAFileList) {
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) {
              EXPECT_EQ(L"File Conversion", TextOf(dialog));
              EXPECT_EQ(0, ListViewCount(dialog, IDL_CONV_FILES));
              for (const int id : {IDB_CONV_CONVERT, IDB_CONV_FILE_INFO, IDB_CONV_SELECT_ALL, IDB_CONV_PAGE_OPTIONS,
                                   IDB_CONV_REMOVE, IDX_CONV_FULL_PATH, IDX_CONV_DELETE_SOURCE, IDE_CONV_PAGE,
                                   IDB_CONV_PAGE_BACK, IDB_CONV_PAGE_FORWARD}) {
                EXPECT_FALSE(IsEnabled(dialog, id)) << id;
              }
              EXPECT_EQ(L"1", TextOf(dialog, IDE_CONV_PAGE));
            }));
}

TEST_F(ConversionStart, RefusesAnEmptyFileList) {
  params.fileList = L"";
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversion(parent.hwnd(), &params));
}

TEST_F(ConversionStart, RefusesAFormatThatTheCatalogueDoesNotKnow) {
  Offer({kJpeg, 9999});
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversion(parent.hwnd(), &params));
}

TEST_F(ConversionStart, RefusesARecordOfAnotherSize) {
  params.uStructSize = 1120;
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_DlgFileConversion(parent.hwnd(), &params));
}

TEST_F(ConversionStart, RefusesToRunWithoutAParent) {
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversion(nullptr, &params));
}

TEST_F(ConversionStart, LeavesOutUnreadableFilesAndDuplicatesWithoutAWord) {
  const std::wstring first = AddPicture(L"one.bmp");
  AddToList(in.AddFile(L"broken.bmp", {1, 2, 3}));
  AddPicture(L"two.bmp");
  AddToList(first);
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) {
              EXPECT_EQ(2, ListViewCount(dialog, IDL_CONV_FILES));
              EXPECT_EQ(L"one.bmp", ListViewText(dialog, IDL_CONV_FILES, 0, 0));
              EXPECT_EQ(L"two.bmp", ListViewText(dialog, IDL_CONV_FILES, 1, 0));
              EXPECT_EQ(L"", ListViewText(dialog, IDL_CONV_FILES, 0, 1));
              EXPECT_EQ(nullptr, FindMessageBox());
            }));
}

TEST_F(ConversionStart, SelectsTheFirstFileAndEnablesWhatFilesNeed) {
  AddPicture(L"one.bmp");
  AddPicture(L"two.bmp");
  RunAndClose([](HWND dialog) {
    EXPECT_EQ(std::vector<int>{0}, SelectedListViewRows(dialog, IDL_CONV_FILES));
    for (const int id : {IDB_CONV_CONVERT, IDB_CONV_FILE_INFO, IDB_CONV_SELECT_ALL, IDB_CONV_PAGE_OPTIONS,
                         IDB_CONV_REMOVE, IDX_CONV_FULL_PATH, IDX_CONV_DELETE_SOURCE}) {
      EXPECT_TRUE(IsEnabled(dialog, id)) << id;
    }
  });
}

TEST_F(ConversionStart, AnEmptyFolderMeansTheRootOfC) {
  params.destinationFolder[0] = L'\0';
  params.sourceFolder[0] = L'\0';
  RunAndClose([](HWND dialog) { EXPECT_EQ(L"C:\\", TextOf(dialog, IDE_CONV_FOLDER)); });
  EXPECT_STREQ(L"C:\\", params.destinationFolder);
  EXPECT_STREQ(L"C:\\", params.sourceFolder);
}

TEST_F(ConversionStart, ShowsTheSwitchesOfTheRecord) {
  AddPicture(L"one.bmp");
  params.deleteSource = 1;
  params.logReport = 1;
  params.fullPath = 1;
  params.useOriginalFolder = 1;
  RunAndClose([this](HWND dialog) {
    EXPECT_TRUE(IsChecked(dialog, IDX_CONV_DELETE_SOURCE));
    EXPECT_TRUE(IsChecked(dialog, IDX_CONV_LOG_REPORT));
    EXPECT_TRUE(IsChecked(dialog, IDX_CONV_FULL_PATH));
    EXPECT_TRUE(IsChecked(dialog, IDX_CONV_ORIGINAL_FOLDER));
    EXPECT_FALSE(IsEnabled(dialog, IDE_CONV_FOLDER));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_BROWSE));
    EXPECT_EQ(in.File(L"one.bmp"), ListViewText(dialog, IDL_CONV_FILES, 0, 0));
    EXPECT_EQ(out.path(), TextOf(dialog, IDE_CONV_FOLDER));
  });
}

TEST_F(ConversionStart, CloseWritesTheSwitchesBack) {
  AddPicture(L"one.bmp");
  params.overwriteMode = OVERWRITE_ASK;
  const int32_t result = RunAndClose([](HWND dialog) {
    Check(dialog, IDX_CONV_DELETE_SOURCE, true);
    Check(dialog, IDX_CONV_LOG_REPORT, true);
    Check(dialog, IDX_CONV_FULL_PATH, true);
    Check(dialog, IDX_CONV_ORIGINAL_FOLDER, true);
    SelectCombo(dialog, IDC_CONV_OVERWRITE, 2);
  });
  EXPECT_EQ(SUCCESS_DLG_CLOSE, result);
  EXPECT_EQ(1, params.deleteSource);
  EXPECT_EQ(1, params.logReport);
  EXPECT_EQ(1, params.fullPath);
  EXPECT_EQ(1, params.useOriginalFolder);
  EXPECT_EQ(OVERWRITE_REPLACE, params.overwriteMode);
  EXPECT_EQ(out.path(), params.destinationFolder);
}

TEST_F(ConversionStart, SwitchesOfOtherValuesThanOneComeBackAsTheyCame) {
  AddPicture(L"one.bmp");
  params.deleteSource = 5;
  params.fullPath = -1;
  params.logReport = 2;
  params.useOriginalFolder = 0x100;
  RunAndClose([this](HWND dialog) {
    for (const int id : {IDX_CONV_DELETE_SOURCE, IDX_CONV_FULL_PATH, IDX_CONV_LOG_REPORT, IDX_CONV_ORIGINAL_FOLDER}) {
      EXPECT_TRUE(IsChecked(dialog, id)) << id;
    }
    EXPECT_EQ(in.File(L"one.bmp"), ListViewText(dialog, IDL_CONV_FILES, 0, 0));
    ClickAndWait(dialog, IDX_CONV_ORIGINAL_FOLDER);
  });
  EXPECT_EQ(5, params.deleteSource);
  EXPECT_EQ(-1, params.fullPath);
  EXPECT_EQ(2, params.logReport);
  EXPECT_EQ(0x100, params.useOriginalFolder);
}

TEST_F(ConversionStart, ASwitchThatTheUserSetsAgainIsOne) {
  AddPicture(L"one.bmp");
  params.deleteSource = params.fullPath = params.logReport = params.useOriginalFolder = 5;
  RunAndClose([](HWND dialog) {
    for (const int id : {IDX_CONV_DELETE_SOURCE, IDX_CONV_FULL_PATH, IDX_CONV_LOG_REPORT}) {
      Check(dialog, id, false);
      Check(dialog, id, true);
    }
    Check(dialog, IDX_CONV_GIVEN_FOLDER, true);
    Check(dialog, IDX_CONV_ORIGINAL_FOLDER, true);
  });
  EXPECT_EQ(1, params.deleteSource);
  EXPECT_EQ(1, params.fullPath);
  EXPECT_EQ(1, params.logReport);
  EXPECT_EQ(1, params.useOriginalFolder);
}

TEST_F(ConversionStart, EscLeavesTheWholeRecordAsItWas) {
  AddPicture(L"one.bmp");
  Offer({kPng});
  const std::wstring other = out.AddFolder(L"other");
  FILECONVERSIONDLGPARAMS before;
  const int32_t result = Run([&](HWND dialog) {
    before = params;
    SetText(dialog, IDE_CONV_FOLDER, other);
    SelectCombo(dialog, IDC_CONV_OVERWRITE, OVERWRITE_RENAME);
    ConvertAndWait(dialog);
    EXPECT_TRUE(Exists(other + L"\\one.png")) << "the dialog has taken the folder";
    Check(dialog, IDX_CONV_FULL_PATH, true);
    Check(dialog, IDX_CONV_DELETE_SOURCE, true);
    Check(dialog, IDX_CONV_LOG_REPORT, true);
    Check(dialog, IDX_CONV_ORIGINAL_FOLDER, true);
    PressKey(dialog, VK_ESCAPE);
    WaitUntilClosed(dialog);
  });
  EXPECT_EQ(SUCCESS_DLG_CLOSE, result);
  EXPECT_EQ(0, memcmp(&before, &params, sizeof params));
}

TEST_F(ConversionStart, TheFolderCannotBeLongerThanTheFieldOfTheRecord) {
  RunAndClose(
      [](HWND dialog) { EXPECT_EQ(263, ::SendMessageW(Control(dialog, IDE_CONV_FOLDER), EM_GETLIMITTEXT, 0, 0)); });
}

TEST_F(ConversionStart, TheCloseBoxLeavesTheRecordAsItWas) {
  AddPicture(L"one.bmp");
  EXPECT_EQ(SUCCESS_DLG_CLOSE, Run([](HWND dialog) {
              Check(dialog, IDX_CONV_FULL_PATH, true);
              zvtest::CloseWindow(dialog);
              WaitUntilClosed(dialog);
            }));
  EXPECT_EQ(0, params.fullPath);
}

TEST_F(ConversionStart, EnterConverts) {
  AddPicture(L"one.bmp");
  Offer({kPng});
  RunAndClose([this](HWND dialog) {
    PressKey(dialog, VK_RETURN);
    WaitUntil([this] { return !Outputs().empty(); }, "the run has written");
    WaitUntilIdle(dialog);
  });
  EXPECT_EQ(std::vector<std::wstring>{L"one.png"}, Outputs());
}

TEST_F(ConversionStart, EnterDoesNothingWhileThereIsNothingToConvert) {
  Run([](HWND dialog) {
    PressKey(dialog, VK_RETURN);
    EXPECT_FALSE(HoldsWithin(kQuietTime, [dialog] { return !::IsWindowVisible(dialog); }));
    PressKey(dialog, VK_ESCAPE);
    WaitUntilClosed(dialog);
  });
}

TEST_F(ConversionStart, WithoutOffersShowsNoChoicesAndStillConverts) {
  AddPicture(L"one.bmp");
  Offer({kPng});
  params.uiFlags = 0;
  params.overwriteMode = OVERWRITE_REPLACE;
  RunAndClose([](HWND dialog) {
    for (const int id : {IDV_CONV_PREVIEW, IDT_CONV_PREVIEW, IDE_CONV_PAGE, IDB_CONV_PAGE_BACK, IDB_CONV_PAGE_FORWARD,
                         IDT_CONV_PAGE_OF, IDT_CONV_PAGE, IDB_CONV_PAGE_OPTIONS, IDB_CONV_FILE_INFO, IDB_CONV_RESIZE,
                         IDB_CONV_ROTATE, IDB_CONV_NAMING, IDC_CONV_OVERWRITE, IDT_CONV_OVERWRITE, IDB_CONV_ADD_FILES,
                         IDB_CONV_ADD_FOLDER, IDB_CONV_REMOVE, IDB_CONV_SELECT_ALL, IDX_CONV_DELETE_SOURCE}) {
      EXPECT_FALSE(IsShown(dialog, id)) << id;
    }
    EXPECT_EQ(0, ComboCount(dialog, IDC_CONV_OVERWRITE));
    ConvertAndWait(dialog);
  });
  EXPECT_EQ(std::vector<std::wstring>{L"one.png"}, Outputs());
  EXPECT_EQ(OVERWRITE_REPLACE, params.overwriteMode);
}

struct Offered {
  uint32_t flag;
  std::vector<int> controls;
};

TEST_F(ConversionStart, EachOfferShowsItsControls) {
  const std::vector<Offered> offers = {
      {CONVDLG_SHOW_PREVIEW, {IDV_CONV_PREVIEW, IDT_CONV_PREVIEW}},
      {CONVDLG_SHOW_PAGE_OPTIONS, {IDB_CONV_PAGE_OPTIONS}},
      {CONVDLG_SHOW_FILE_INFO, {IDB_CONV_FILE_INFO}},
      {CONVDLG_SHOW_PREVIEW | CONVDLG_SHOW_PAGE_NAVIGATION,
       {IDE_CONV_PAGE, IDB_CONV_PAGE_BACK, IDB_CONV_PAGE_FORWARD, IDT_CONV_PAGE_OF, IDT_CONV_PAGE}},
      {CONVDLG_SHOW_RESIZE, {IDB_CONV_RESIZE}},
      {CONVDLG_SHOW_ROTATE, {IDB_CONV_ROTATE}},
      {CONVDLG_SHOW_NAMING, {IDB_CONV_NAMING}},
      {CONVDLG_SHOW_OVERWRITE, {IDC_CONV_OVERWRITE, IDT_CONV_OVERWRITE}},
      {CONVDLG_SHOW_ADD_FILE, {IDB_CONV_ADD_FILES}},
      {CONVDLG_SHOW_ADD_FOLDER, {IDB_CONV_ADD_FOLDER}},
      {CONVDLG_SHOW_REMOVE, {IDB_CONV_REMOVE}},
      {CONVDLG_SHOW_SELECT_ALL, {IDB_CONV_SELECT_ALL}},
      {CONVDLG_SHOW_DELETE_SOURCE, {IDX_CONV_DELETE_SOURCE}},
  };
  for (const Offered& offer : offers) {
    params.uiFlags = offer.flag;
    RunAndClose([&](HWND dialog) {
      for (const int id : offer.controls) {
        EXPECT_TRUE(IsShown(dialog, id)) << id;
      }
    });
  }
}

TEST_F(ConversionStart, WithoutAPreviewTheListTakesItsPlace) {
  RECT narrow = {};
  RECT wide = {};
  RECT preview = {};
  RunAndClose([&](HWND dialog) {
    narrow = RectIn(dialog, IDL_CONV_FILES);
    preview = RectIn(dialog, IDV_CONV_PREVIEW);
  });
  params.uiFlags &= ~CONVDLG_SHOW_PREVIEW;
  RunAndClose([&](HWND dialog) { wide = RectIn(dialog, IDL_CONV_FILES); });
  EXPECT_EQ(narrow.left, wide.left);
  EXPECT_EQ(preview.right, wide.right);
}

TEST_F(ConversionStart, WithoutPageOptionsTheListHasNoPagesColumn) {
  const auto columns = [](HWND dialog) {
    const auto header = reinterpret_cast<HWND>(::SendMessageW(Control(dialog, IDL_CONV_FILES), LVM_GETHEADER, 0, 0));
    return ::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
  };
  RunAndClose([&](HWND dialog) { EXPECT_EQ(2, columns(dialog)); });
  params.uiFlags &= ~CONVDLG_SHOW_PAGE_OPTIONS;
  RunAndClose([&](HWND dialog) { EXPECT_EQ(1, columns(dialog)); });
}

TEST_F(ConversionStart, OffersTheOverwriteChoicesWhoseBitsAreSet) {
  params.uiFlags = CONVDLG_SHOW_OVERWRITE | CONVDLG_OVERWRITE_SKIP | CONVDLG_OVERWRITE_RENAME;
  params.overwriteMode = OVERWRITE_RENAME;
  RunAndClose([](HWND dialog) {
    ASSERT_EQ(2, ComboCount(dialog, IDC_CONV_OVERWRITE));
    EXPECT_EQ(L"Skip", ComboText(dialog, IDC_CONV_OVERWRITE, 0));
    EXPECT_EQ(L"Rename", ComboText(dialog, IDC_CONV_OVERWRITE, 1));
    EXPECT_EQ(1, ComboSelection(dialog, IDC_CONV_OVERWRITE));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CUSTOMIZE));
    SelectCombo(dialog, IDC_CONV_OVERWRITE, 0);
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_CUSTOMIZE));
    SelectCombo(dialog, IDC_CONV_OVERWRITE, 1);
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CUSTOMIZE));
  });
}

TEST_F(ConversionStart, AnOverwriteBoxWithoutChoicesLeavesTheModeAlone) {
  params.uiFlags = CONVDLG_SHOW_OVERWRITE;
  params.overwriteMode = OVERWRITE_SKIP;
  RunAndClose([](HWND dialog) { EXPECT_EQ(0, ComboCount(dialog, IDC_CONV_OVERWRITE)); });
  EXPECT_EQ(OVERWRITE_SKIP, params.overwriteMode);
}

TEST_F(ConversionStart, RadiosDecideWhetherAFolderCanBeGiven) {
  RunAndClose([](HWND dialog) {
    EXPECT_TRUE(IsEnabled(dialog, IDE_CONV_FOLDER));
    Check(dialog, IDX_CONV_ORIGINAL_FOLDER, true);
    EXPECT_FALSE(IsEnabled(dialog, IDE_CONV_FOLDER));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_BROWSE));
    Check(dialog, IDX_CONV_GIVEN_FOLDER, true);
    EXPECT_TRUE(IsEnabled(dialog, IDE_CONV_FOLDER));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_BROWSE));
  });
}

struct HelpCalls {
  std::vector<std::pair<uint32_t, int32_t>> calls;
};

void ZV_CALL NoteHelp(uint32_t dialog, int32_t control, void* userData) {
  static_cast<HelpCalls*>(userData)->calls.emplace_back(dialog, control);
}

TEST_F(ConversionStart, HelpGoesToTheCaller) {
  HelpCalls help;
  params.helpCallback = &NoteHelp;
  params.helpUserData = &help;
  RunAndClose([&](HWND dialog) {
    EXPECT_TRUE(IsShown(dialog, IDB_CONVERSION_HELP));
    EXPECT_TRUE(::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP);
    Click(dialog, IDB_CONVERSION_HELP);
    WaitUntil([&] { return !help.calls.empty(); }, "the Help button reaches the caller");
  });
  ASSERT_EQ(1u, help.calls.size());
  EXPECT_EQ(std::make_pair(104u, -1), help.calls[0]);
}

TEST_F(ConversionStart, WithoutHelpItsButtonHidesAndTheOthersStandInTheMiddle) {
  RunAndClose([](HWND dialog) {
    EXPECT_FALSE(IsShown(dialog, IDB_CONVERSION_HELP));
    RECT client;
    ::GetClientRect(dialog, &client);
    const RECT convert = RectIn(dialog, IDB_CONV_CONVERT);
    const RECT close = RectIn(dialog, IDB_CONV_CLOSE);
    EXPECT_NEAR(client.right, convert.left + close.right, 2);
  });
}

TEST_F(ConversionStart, ContextHelpOfTheRecordPutsAQuestionMarkInTheTitle) {
  params.uiFlags |= CONVDLG_CONTEXT_HELP;
  RunAndClose([](HWND dialog) { EXPECT_TRUE(::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP); });
}

TEST_F(ConversionStart, StandsWhereTheRecordSays) {
  const POINT place = {60, 40};
  params.position = &place;
  RunAndClose([&](HWND dialog) {
    RECT window;
    ::GetWindowRect(dialog, &window);
    EXPECT_EQ(place.x, window.left);
    EXPECT_EQ(place.y, window.top);
  });
}

TEST_F(ConversionStart, TabOrderFollowsReadingOrder) {
  AddPicture(L"one.bmp");
  RunAndClose([](HWND dialog) {
    // Within the file controls, the output controls and the buttons at the bottom, each tab stop stands below or right of
    // the one before it, apart from the columns that begin anew.
    const std::vector<std::vector<int>> columns = {
        {IDB_CONV_ADD_FILES, IDB_CONV_ADD_FOLDER, IDB_CONV_REMOVE, IDB_CONV_SELECT_ALL, IDL_CONV_FILES,
         IDX_CONV_FULL_PATH, IDX_CONV_DELETE_SOURCE, IDB_CONV_PAGE_OPTIONS, IDB_CONV_FILE_INFO},
        {IDE_CONV_PAGE, IDB_CONV_PAGE_BACK, IDB_CONV_PAGE_FORWARD},
        {IDL_CONV_FORMATS},
        {IDC_CONV_BPP, IDC_CONV_SUBTYPE, IDB_CONV_SETTINGS},
        {IDX_CONV_ORIGINAL_FOLDER, IDX_CONV_GIVEN_FOLDER, IDE_CONV_FOLDER, IDB_CONV_BROWSE, IDC_CONV_OVERWRITE,
         IDB_CONV_CUSTOMIZE, IDB_CONV_NAMING, IDB_CONV_RESIZE, IDB_CONV_ROTATE, IDX_CONV_LOG_REPORT},
        {IDB_CONV_CONVERT, IDB_CONV_CLOSE}};
    std::vector<int> order;
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
      order.push_back(::GetDlgCtrlID(child));
    }
    int previousPlace = -1;
    for (const std::vector<int>& column : columns) {
      RECT last = {0, -1, 0, 0};
      for (const int id : column) {
        const RECT place = RectIn(dialog, id);
        const bool below = place.top >= last.bottom;
        const bool beside = place.left >= last.right;
        EXPECT_TRUE(below || beside) << id;
        const int position = static_cast<int>(std::find(order.begin(), order.end(), id) - order.begin());
        EXPECT_GT(position, previousPlace) << id;
        previousPlace = position;
        last = place;
      }
    }
  });
}

}  // namespace
