// Whole runs through the batch conversion dialog: queue, overwriting, folders, deleting, stopping.
#include <windows.h>

#include <commctrl.h>

#include "resources/conversion_tools_ids.h"
#include "tests/dialogs/conversion_fixture.h"
#include "tests/support/file_bytes.h"

namespace {

using namespace zvtest;

constexpr int32_t kJpeg = 0;
constexpr int32_t kPng = 1;

class ConversionRun : public ConversionDialog {
 protected:
  ConversionRun() { Offer({kPng, kJpeg}); }

  static void ChooseAllFiles(HWND dialog) {
    Click(dialog, IDB_CONV_SELECT_ALL);
    WaitUntil(
        [=] {
          return static_cast<int>(SelectedListViewRows(dialog, IDL_CONV_FILES).size()) ==
                 ListViewCount(dialog, IDL_CONV_FILES);
        },
        "all files chosen");
  }
  static void WaitUntilRunEnds(HWND dialog) { WaitUntilIdle(dialog); }
};

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
    WaitUntilRunEnds(dialog);
    EXPECT_EQ(1, ListViewCount(dialog, IDL_CONV_FILES));
  });
  ::CloseHandle(held);
  EXPECT_TRUE(Exists(source));
}

// --- The overwrite question ---

class OverwriteQuestion : public ConversionRun {
 protected:
  OverwriteQuestion() {
    AddPicture(L"1.bmp");
    AddPicture(L"2.bmp");
    out.AddFile(L"1.png", {7});
    params.overwriteMode = OVERWRITE_ASK;
  }
  void RunAnswering(const std::function<void(HWND)>& answer) {
    RunAndClose([&](HWND dialog) {
      ChooseAllFiles(dialog);
      Click(dialog, IDB_CONV_CONVERT);
      const HWND ask = WaitForDialogWith(IDB_CONV_ASK_REPLACE);
      EXPECT_NE(std::wstring::npos, TextOf(ask, IDE_CONV_ASK_MESSAGE).find(out.File(L"1.png")));
      answer(ask);
      WaitUntilRunEnds(dialog);
    });
  }
};

TEST_F(OverwriteQuestion, ReplaceWritesOver) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_REPLACE); });
  EXPECT_GT(ReadWholeFile(out.File(L"1.png")).size(), 1u);
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"2.png"}), Outputs());
}

TEST_F(OverwriteQuestion, RenameFindsAFreeName) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_RENAME); });
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(out.File(L"1.png")));
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"10.png", L"2.png"}), Outputs());
}

TEST_F(OverwriteQuestion, SkipGoesOnWithTheNextFile) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_SKIP); });
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(out.File(L"1.png")));
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"2.png"}), Outputs());
}

TEST_F(OverwriteQuestion, AbortEndsTheRun) {
  RunAnswering([](HWND ask) { Click(ask, IDB_CONV_ASK_ABORT); });
  EXPECT_EQ(std::vector<std::wstring>{L"1.png"}, Outputs());
}

TEST_F(OverwriteQuestion, EscIsAbort) {
  RunAnswering([](HWND ask) { PressKey(ask, VK_ESCAPE); });
  EXPECT_EQ(std::vector<std::wstring>{L"1.png"}, Outputs());
}

TEST_F(OverwriteQuestion, TheCloseBoxIsAbort) {
  RunAnswering([](HWND ask) { zvtest::CloseWindow(ask); });
  EXPECT_EQ(std::vector<std::wstring>{L"1.png"}, Outputs());
}

TEST_F(OverwriteQuestion, EnterLosesNothing) {
  RunAnswering([](HWND ask) { PressKey(ask, VK_RETURN); });
  EXPECT_EQ(FileBytes{7}, ReadWholeFile(out.File(L"1.png")));
  EXPECT_EQ((std::vector<std::wstring>{L"1.png", L"2.png"}), Outputs());
}

TEST_F(ConversionRun, BelowAQuestionTheProgressIsThatOfTheFilesBefore) {
  for (const wchar_t* name : {L"1.bmp", L"2.bmp", L"3.bmp"}) {
    AddPicture(name);
  }
  out.AddFile(L"3.png", {7});
  params.overwriteMode = OVERWRITE_ASK;
  RunAndClose([&](HWND dialog) {
    ChooseAllFiles(dialog);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND ask = WaitForDialogWith(IDB_CONV_ASK_REPLACE);
    const HWND progress = WaitForDialogWith(IDP_CONV_TOTAL);
    EXPECT_NE(std::wstring::npos, TextOf(progress, IDT_CONV_LAST_FILE).find(out.File(L"2.png")));
    EXPECT_EQ(33, ::SendMessageW(Control(progress, IDP_CONV_TOTAL), PBM_GETPOS, 0, 0))
        << "one of three, and the second";
    EXPECT_EQ(0, ::SendMessageW(Control(progress, IDP_CONV_FILE), PBM_GETPOS, 0, 0));
    Click(ask, IDB_CONV_ASK_SKIP);
    WaitUntilRunEnds(dialog);
  });
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
    WaitUntilRunEnds(dialog);
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
    WaitUntilRunEnds(dialog);
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
    WaitUntilRunEnds(dialog);
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
    WaitUntilRunEnds(dialog);
  });
}

// --- Stopping ---

class StoppedRun : public ConversionRun {
 protected:
  StoppedRun() {
    Offer({kPng});
    for (int i = 0; i < 4; ++i) {
      sources.push_back(AddPicture(L"big" + std::to_wstring(i) + L".bmp", {3000, 2000}));
    }
  }
  // Starts a run over all files, stops it in a file, and waits for its end. That file alone fails, and none comes after it.
  void RunStopping(const std::function<void(HWND)>& stop) {
    params.logReport = 1;
    RunAndClose([&](HWND dialog) {
      ChooseAllFiles(dialog);
      Click(dialog, IDB_CONV_CONVERT);
      const HWND progress = WaitForDialogWith(IDP_CONV_TOTAL);
      const HWND bar = Control(progress, IDP_CONV_FILE);
      WaitUntil([=] { return ::SendMessageW(bar, PBM_GETPOS, 0, 0) > 0; }, "a file in work");
      stop(progress);
      WaitUntilClosed(progress);
      const HWND log = WaitForDialogWith(IDL_LOG);
      const auto rows = static_cast<size_t>(ListViewCount(log, IDL_LOG));
      EXPECT_EQ(Outputs().size() + 1, rows);
      EXPECT_LT(rows, 4u);
      Click(log, IDOK);
      WaitUntilClosed(log);
      WaitUntilRunEnds(dialog);
      EXPECT_EQ(4, ListViewCount(dialog, IDL_CONV_FILES));
    });
    for (const std::wstring& source : sources) {
      EXPECT_TRUE(Exists(source));
    }
    for (const std::wstring& name : Outputs()) {
      FILEINFO info = {};
      info.uStructSize = sizeof info;
      EXPECT_EQ(L".png", name.substr(name.size() - 4));
      EXPECT_EQ(SUCCESS, GetFileInfo(out.File(name).c_str(), &info, sizeof info, 1, nullptr));
      EXPECT_EQ(3000, info.width);
    }
  }
  std::vector<std::wstring> sources;
};

TEST_F(StoppedRun, AbortLeavesSourcesAndWholeOutputsAlone) {
  RunStopping([](HWND progress) { Click(progress, IDB_CONV_ABORT); });
}

TEST_F(StoppedRun, EscActsLikeAbort) {
  RunStopping([](HWND progress) { PressKey(progress, VK_ESCAPE); });
}

TEST_F(StoppedRun, EnterPressesAbort) {
  RunStopping([](HWND progress) { PressKey(progress, VK_RETURN); });
}

TEST_F(StoppedRun, TheCloseBoxActsLikeAbort) {
  RunStopping([](HWND progress) { zvtest::CloseWindow(progress); });
}

TEST_F(StoppedRun, TheEndOfTheProgramEndsTheRun) {
  const DWORD thread = ::GetCurrentThreadId();
  const int32_t result = Run([&](HWND dialog) {
    ChooseAllFiles(dialog);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND bar = Control(WaitForDialogWith(IDP_CONV_TOTAL), IDP_CONV_FILE);
    WaitUntil([=] { return ::SendMessageW(bar, PBM_GETPOS, 0, 0) > 0; }, "a file in work");
    ::PostThreadMessageW(thread, WM_QUIT, 3, 0);
    WaitUntilClosed(dialog);
  });
  EXPECT_EQ(ERROR_DIALOG_FAILED, result);
  MSG quit = {};
  EXPECT_TRUE(::PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the caller's own loop is to end as well";
  EXPECT_LE(Outputs().size(), 2u);
  for (const std::wstring& name : Outputs()) {
    EXPECT_EQ(L".png", name.substr(name.size() - 4));
  }
  for (const std::wstring& source : sources) {
    EXPECT_TRUE(Exists(source));
  }
}

}  // namespace
