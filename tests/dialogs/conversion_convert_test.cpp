// Whole runs through the batch conversion dialog: queue, pages, deleting, folders.
#include <windows.h>

#include "resources/conversion_tools_ids.h"
#include "tests/dialogs/conversion_run_fixture.h"
#include "tests/support/file_bytes.h"

namespace {

using namespace zvtest;

TEST_F(ConversionRun, ConvertsEveryChosenFileToEveryChosenFormat) {
  AddPicture(L"1.bmp");
  AddPicture(L"2.bmp");
  AddPicture(L"3.bmp");
  RunAndClose([](HWND dialog) {
    ChooseAllFiles(dialog);
    SelectListBoxRows(dialog, IDL_CONV_FORMATS, {0, 1});
    ConvertAndWait(dialog);
    EXPECT_EQ(3, ListViewCount(dialog, IDL_CONV_FILES));
  });
  EXPECT_EQ((std::vector<std::wstring>{L"1.jpg", L"1.png", L"2.jpg", L"2.png", L"3.jpg", L"3.png"}), Outputs());
}

TEST_F(ConversionRun, ConvertsTheChosenFilesAlone) {
  AddPicture(L"1.bmp");
  AddPicture(L"2.bmp");
  RunAndClose([](HWND dialog) {
    SelectListViewRows(dialog, IDL_CONV_FILES, {1});
    ConvertAndWait(dialog);
  });
  EXPECT_EQ(std::vector<std::wstring>{L"2.png"}, Outputs());
}

TEST_F(ConversionRun, DoesNotStartWithoutAChosenFormat) {
  AddPicture(L"1.bmp");
  RunAndClose([](HWND dialog) {
    SelectListBoxRows(dialog, IDL_CONV_FORMATS, {});
    Click(dialog, IDB_CONV_CONVERT);
    EXPECT_FALSE(HoldsWithin(500, [dialog] { return !::IsWindowEnabled(dialog); }));
  });
  EXPECT_TRUE(Outputs().empty());
}

TEST_F(ConversionRun, CanRunAgain) {
  AddPicture(L"1.bmp");
  params.overwriteMode = OVERWRITE_RENAME;
  RunAndClose([](HWND dialog) {
    ConvertAndWait(dialog);
    ConvertAndWait(dialog);
    ConvertAndWait(dialog);
  });
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"10.png", L"11.png"}), Outputs());
}

TEST_F(ConversionRun, WritesBesideTheSources) {
  AddPicture(L"1.bmp");
  params.useOriginalFolder = 1;
  RunAndClose([](HWND dialog) { ConvertAndWait(dialog); });
  EXPECT_TRUE(Outputs().empty());
  EXPECT_TRUE(Exists(in.File(L"1.png")));
}

TEST_F(ConversionRun, GoesOnAfterAFileThatCannotBeRead) {
  AddPicture(L"1.bmp");
  const std::wstring gone = AddPicture(L"2.bmp");
  AddPicture(L"3.bmp");
  RunAndClose([&](HWND dialog) {
    ChooseAllFiles(dialog);
    ::DeleteFileW(gone.c_str());
    ConvertAndWait(dialog);
    EXPECT_EQ(3, ListViewCount(dialog, IDL_CONV_FILES));
  });
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"3.png"}), Outputs());
}

TEST_F(ConversionRun, KeepsAFirstPageWithoutAPageChoice) {
  AddPicture(L"p.tif", {40, 20, FMT_TIFF, 4});
  RunAndClose([](HWND dialog) {
    ConvertAndWait(dialog);
    EXPECT_EQ(L"", ListViewText(dialog, IDL_CONV_FILES, 0, 1));
    EXPECT_EQ(L"1/4", TextOf(dialog, IDT_CONV_PAGE_OF));
  });
  EXPECT_EQ(std::vector<std::wstring>{L"p.png"}, Outputs());
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  ASSERT_EQ(SUCCESS, GetFileInfo(out.File(L"p.png").c_str(), &info, sizeof info, 1, nullptr));
  EXPECT_EQ(40, info.width);
}

TEST_F(ConversionRun, PressedWithoutAChosenFileDisablesItsButtonAndDoesNothing) {
  AddPicture(L"1.bmp");
  SetDestination(out.File(L"missing"));
  RunAndClose([](HWND dialog) {
    SelectListViewRows(dialog, IDL_CONV_FILES, {});
    const HWND button = Control(dialog, IDB_CONV_CONVERT);
    ::EnableWindow(button, TRUE);
    ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDB_CONV_CONVERT, BN_CLICKED), reinterpret_cast<LPARAM>(button));
    WaitUntil([=] { return !::IsWindowEnabled(button); }, "the button refuses");
    EXPECT_FALSE(HoldsWithin(500, [dialog] { return !::IsWindowEnabled(dialog); })) << "a question, or a run";
  });
  EXPECT_TRUE(Outputs().empty());
}

// --- The page selection of a run ---

class ConversionPages : public ConversionRun {
 protected:
  ConversionPages() {
    Offer({kPng});
    AddPicture(L"1.tif", {40, 20, FMT_TIFF, 4});
    AddPicture(L"2.tif", {40, 20, FMT_TIFF, 3});
  }
  // Both rows get pages 1 and 3, and only the first stays selected.
  static void ChoosePagesOfBoth(HWND dialog) {
    ChooseAllFiles(dialog);
    Click(dialog, IDB_CONV_PAGE_OPTIONS);
    const HWND pages = WaitForDialogWith(IDX_PAGES_ALL);
    ClickAndWait(pages, IDX_PAGES_LIST);
    SetText(pages, IDE_PAGES_LIST, L"1,3");
    CloseWith(pages, IDOK);
    for (const int row : {0, 1}) {
      ASSERT_EQ(L"1,3", ListViewText(dialog, IDL_CONV_FILES, row, 1)) << row;
    }
    SelectListViewRows(dialog, IDL_CONV_FILES, {0});
  }
  // Between a run and the look at the rows after it, the dialog can be used for a moment.
  static void WaitForNoPages(HWND dialog) {
    for (const int row : {0, 1}) {
      WaitUntil([=] { return ListViewText(dialog, IDL_CONV_FILES, row, 1).empty(); }, "a row without a page selection");
    }
  }
};

TEST_F(ConversionPages, AreForgottenByARunOfEveryRow) {
  params.overwriteMode = OVERWRITE_RENAME;
  RunAndClose([this](HWND dialog) {
    ChoosePagesOfBoth(dialog);
    ConvertAndWait(dialog);
    WaitForNoPages(dialog);
    EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"10.png"}), Outputs()) << "two pages of one file";
    ChooseAllFiles(dialog);
    ConvertAndWait(dialog);
  });
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"10.png", L"11.png", L"2.png"}), Outputs()) << "first pages";
}

TEST_F(ConversionPages, AreForgottenByAnAbortedRunAsWell) {
  out.AddFile(L"1.png", {7});
  params.overwriteMode = OVERWRITE_ASK;
  RunAndClose([](HWND dialog) {
    ChoosePagesOfBoth(dialog);
    Click(dialog, IDB_CONV_CONVERT);
    Click(WaitForDialogWith(IDB_CONV_ASK_ABORT), IDB_CONV_ASK_ABORT);
    WaitForNoPages(dialog);
  });
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(out.File(L"1.png")));
}

// --- Deleting the sources ---

TEST_F(ConversionRun, TakesDeletedSourcesOffTheList) {
  const std::wstring first = AddPicture(L"1.bmp");
  const std::wstring second = AddPicture(L"2.bmp");
  params.deleteSource = 1;
  RunAndClose([&](HWND dialog) {
    SelectListViewRows(dialog, IDL_CONV_FILES, {0});
    ConvertAndWait(dialog);
    ASSERT_EQ(1, ListViewCount(dialog, IDL_CONV_FILES));
    EXPECT_EQ(L"2.bmp", ListViewText(dialog, IDL_CONV_FILES, 0, 0));
    EXPECT_FALSE(Exists(first));
    EXPECT_TRUE(Exists(second));
    SelectListViewRows(dialog, IDL_CONV_FILES, {0});
    ConvertAndWait(dialog);
    EXPECT_EQ(0, ListViewCount(dialog, IDL_CONV_FILES));
    for (const int id : {IDB_CONV_CONVERT, IDB_CONV_FILE_INFO, IDB_CONV_PAGE_OPTIONS, IDB_CONV_SELECT_ALL,
                         IDB_CONV_REMOVE, IDX_CONV_FULL_PATH, IDX_CONV_DELETE_SOURCE}) {
      EXPECT_FALSE(IsEnabled(dialog, id)) << id;
    }
  });
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"2.png"}), Outputs());
}

TEST_F(ConversionRun, AnUndeletableSourceGivesAMessageAndStays) {
  const std::wstring source = AddPicture(L"1.bmp");
  params.deleteSource = 1;
  const HANDLE held = ::CreateFileW(source.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, held);
  RunAndClose([&](HWND dialog) {
    Click(dialog, IDB_CONV_CONVERT);
    const HWND box = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(box, 65535).find(source));
    Dismiss(box);
    WaitUntilIdle(dialog);
    EXPECT_EQ(1, ListViewCount(dialog, IDL_CONV_FILES));
  });
  ::CloseHandle(held);
  EXPECT_TRUE(Exists(source));
}

// --- The destination folder ---

class DestinationFolder : public ConversionRun {
 protected:
  DestinationFolder() {
    AddPicture(L"1.bmp");
    missing = out.File(L"one\\two");
    SetDestination(missing);
  }
  std::wstring missing;
};

TEST_F(DestinationFolder, YesCreatesEveryMissingFolder) {
  RunAndClose([&](HWND dialog) {
    Click(dialog, IDB_CONV_CONVERT);
    const HWND box = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(box, 65535).find(missing));
    Click(box, IDYES);
    WaitUntilClosed(box);
    WaitUntilIdle(dialog);
    WaitUntil([&] { return Exists(missing + L"\\1.png"); }, "the output");
  });
  EXPECT_EQ(missing, params.destinationFolder);
}

TEST_F(DestinationFolder, NoRunsAllTheSameAndEachFileFails) {
  RunAndClose([&](HWND dialog) {
    Click(dialog, IDB_CONV_CONVERT);
    const HWND box = WaitForMessageBox();
    Click(box, IDNO);
    WaitUntilClosed(box);
    WaitForDialogTitled(L"Converting...");
    WaitUntilIdle(dialog);
    EXPECT_EQ(1, ListViewCount(dialog, IDL_CONV_FILES));
  });
  EXPECT_FALSE(Exists(missing));
  EXPECT_TRUE(Exists(in.File(L"1.bmp")));
}

TEST_F(DestinationFolder, NoLeavesTheLogWithARowOfFailureForEachFile) {
  AddPicture(L"2.bmp");
  Offer({kPng});
  params.logReport = 1;
  RunAndClose([&](HWND dialog) {
    ChooseAllFiles(dialog);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND box = WaitForMessageBox();
    Click(box, IDNO);
    WaitUntilClosed(box);
    const HWND log = WaitForDialogWith(IDL_LOG);
    ASSERT_EQ(2, ListViewCount(log, IDL_LOG));
    std::vector<std::wstring> destinations;
    for (const int row : {0, 1}) {
      EXPECT_EQ(L"Failed", ListViewText(log, IDL_LOG, row, 0)) << row;
      destinations.push_back(ListViewText(log, IDL_LOG, row, 2));
    }
    std::sort(destinations.begin(), destinations.end());
    EXPECT_EQ((std::vector<std::wstring>{missing + L"\\1.png", missing + L"\\2.png"}), destinations);
    CloseWith(log, IDOK);
  });
  EXPECT_FALSE(Exists(missing));
}

TEST_F(DestinationFolder, AFolderThatCannotBeCreatedGivesAMessage) {
  out.AddFile(L"one", {1});
  RunAndClose([&](HWND dialog) {
    Click(dialog, IDB_CONV_CONVERT);
    const HWND question = WaitForMessageBox();
    Click(question, IDYES);
    WaitUntilClosed(question);
    const HWND message = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(message, 65535).find(missing));
    Dismiss(message);
    WaitUntilIdle(dialog);
  });
  EXPECT_FALSE(Exists(missing));
}

TEST_F(DestinationFolder, IsCheckedEvenWhenTheOriginalFolderIsUsed) {
  params.useOriginalFolder = 1;
  RunAndClose([&](HWND dialog) {
    Click(dialog, IDB_CONV_CONVERT);
    const HWND box = WaitForMessageBox();
    Click(box, IDNO);
    WaitUntilClosed(box);
    WaitUntil([&] { return Exists(in.File(L"1.png")); }, "the output beside the source");
    WaitUntilIdle(dialog);
  });
}

}  // namespace
