// The file list of the batch conversion dialog: choosing, adding, removing.
#include <windows.h>

#include "tests/dialogs/conversion_files_fixture.h"

namespace {

using namespace zvtest;

constexpr int kPickerTree = 0x3741;  // the tree of the system's folder picker

TEST_F(ConversionFiles, WithNothingChosenNothingCanBeConverted) {
  AddThree();
  RunAndClose([](HWND dialog) {
    Choose(dialog, {});
    WaitForPicture(dialog, false);
    for (const int id : {IDB_CONV_CONVERT, IDB_CONV_FILE_INFO, IDB_CONV_REMOVE, IDB_CONV_PAGE_OPTIONS, IDE_CONV_PAGE}) {
      EXPECT_FALSE(IsEnabled(dialog, id)) << id;
    }
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_SELECT_ALL));
    Choose(dialog, {0});
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CONVERT));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_REMOVE));
  });
}

TEST_F(ConversionFiles, SelectAllChoosesEveryRow) {
  AddThree();
  RunAndClose([](HWND dialog) {
    Click(dialog, IDB_CONV_SELECT_ALL);
    WaitUntil([=] { return Chosen(dialog).size() == 3; }, "all rows chosen");
    WaitForPicture(dialog, false);
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_FILE_INFO));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CONVERT));
  });
}

TEST_F(ConversionFiles, RemovingOneRowChoosesTheNext) {
  AddThree();
  RunAndClose([](HWND dialog) {
    Choose(dialog, {1});
    Click(dialog, IDB_CONV_REMOVE);
    WaitUntil([=] { return Rows(dialog) == 2; }, "a row less");
    EXPECT_EQ(L"3.bmp", Row(dialog, 1));
    EXPECT_EQ(std::vector<int>{1}, Chosen(dialog));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CONVERT));
  });
}

TEST_F(ConversionFiles, RemovingSeveralRowsTakesExactlyThose) {
  AddThree();
  AddPicture(L"4.bmp");
  RunAndClose([](HWND dialog) {
    Choose(dialog, {0, 2, 3});
    Click(dialog, IDB_CONV_REMOVE);
    WaitUntil([=] { return Rows(dialog) == 1; }, "one row left");
    EXPECT_EQ(L"2.bmp", Row(dialog, 0));
    EXPECT_EQ(std::vector<int>{0}, Chosen(dialog));
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_FILE_INFO));
  });
}

TEST_F(ConversionFiles, RemovingTheLastRowDisablesWhatFilesNeed) {
  AddFourPages();
  RunAndClose([](HWND dialog) {
    Click(dialog, IDB_CONV_REMOVE);
    WaitUntil([=] { return Rows(dialog) == 0; }, "an empty list");
    WaitForPicture(dialog, false);
    for (const int id :
         {IDB_CONV_CONVERT, IDB_CONV_FILE_INFO, IDB_CONV_SELECT_ALL, IDB_CONV_PAGE_OPTIONS, IDB_CONV_REMOVE,
          IDX_CONV_FULL_PATH, IDX_CONV_DELETE_SOURCE, IDE_CONV_PAGE, IDB_CONV_PAGE_FORWARD}) {
      EXPECT_FALSE(IsEnabled(dialog, id)) << id;
    }
  });
}

TEST_F(ConversionFiles, TheDeleteKeyRemoves) {
  AddThree();
  RunAndClose([](HWND dialog) {
    PressKey(dialog, VK_DELETE);
    WaitUntil([=] { return Rows(dialog) == 2; }, "a row less");
    EXPECT_EQ(L"2.bmp", Row(dialog, 0));
  });
}

TEST_F(ConversionFiles, FullPathRewritesTheRowsAndKeepsTheChoice) {
  AddThree();
  RunAndClose([this](HWND dialog) {
    Choose(dialog, {1});
    Check(dialog, IDX_CONV_FULL_PATH, true);
    EXPECT_EQ(in.File(L"2.bmp"), Row(dialog, 1));
    EXPECT_EQ(std::vector<int>{1}, Chosen(dialog));
    Check(dialog, IDX_CONV_FULL_PATH, false);
    EXPECT_EQ(L"2.bmp", Row(dialog, 1));
  });
}

TEST_F(ConversionFiles, NamesOfAllScriptsShow) {
  AddPicture(L"\x5BAB \xD83D\xDE00 e\x0301.x.bmp");
  RunAndClose([](HWND dialog) { EXPECT_EQ(L"\x5BAB \xD83D\xDE00 e\x0301.x.bmp", Row(dialog, 0)); });
}

// --- Adding ---

// Wine's picker finds its start folder by the time of last change of each folder above it too, and other tests change the
// folder for temporary files while it looks.
class ConversionAddFolder : public ConversionFiles {
 protected:
  ConversionAddFolder() { SetSourceFolder(in.path()); }

  // Whether any label of the window shows the text.
  static bool ShowsText(HWND window, const std::wstring& text) {
    for (HWND child = ::GetWindow(window, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
      wchar_t shown[MAX_PATH] = {};
      ::InternalGetWindowText(child, shown, MAX_PATH);
      if (text == shown) {
        return true;
      }
    }
    return false;
  }
  // The rows that are chosen afterwards tell that the dialog is done with it.
  void AddFolder(HWND dialog, const std::vector<int>& chosenAfterwards) {
    Click(dialog, IDB_CONV_ADD_FOLDER);
    const HWND picker = WaitForDialogWith(kPickerTree);
    WaitUntil([&] { return ShowsText(picker, in.path()); }, "the start folder in the picker");
    Click(picker, IDOK);
    WaitUntilClosed(picker);
    WaitUntilChosen(dialog, chosenAfterwards);
  }

  TemporaryFolder in{L"C:\\"};
};

TEST_F(ConversionAddFolder, TakesTheImagesOfTheFolderAndNothingBelow) {
  WritePicture(in.File(L"a.bmp"));
  WritePicture(in.File(L"b.png"), {40, 20, FMT_PNG});
  in.AddFile(L"notes.txt", {'h', 'i'});
  in.AddFolder(L"below");
  WritePicture(in.File(L"below\\c.bmp"));
  RunAndClose([&](HWND dialog) {
    AddFolder(dialog, {0});
    EXPECT_EQ(2, Rows(dialog));
    WaitForPicture(dialog, true);
    WaitUntil([=] { return IsEnabled(dialog, IDX_CONV_FULL_PATH); }, "the controls for files can be used");
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CONVERT));
    Choose(dialog, {});
    AddFolder(dialog, {0});
    EXPECT_EQ(2, Rows(dialog)) << "the second time all are duplicates";
  });
  EXPECT_EQ(in.path(), params.sourceFolder);
}

TEST_F(ConversionAddFolder, ChoosesTheFirstRowBesideTheChosenOneAndShowsNeither) {
  for (const wchar_t* name : {L"a.tif", L"b.tif"}) {
    WritePicture(in.File(name), {40, 20, FMT_TIFF, 4});
  }
  RunAndClose([&](HWND dialog) {
    AddFolder(dialog, {0});
    Choose(dialog, {1});
    WaitForPicture(dialog, true);
    ExpectPageControls(dialog, true);
    AddFolder(dialog, {0, 1});
    WaitForPicture(dialog, false);
    ExpectPageControls(dialog, false);
    WaitUntil([=] { return IsEnabled(dialog, IDB_CONV_FILE_INFO); }, "the file can be looked at");
    EXPECT_TRUE(IsEnabled(dialog, IDB_CONV_CONVERT));
  });
}

TEST_F(ConversionFiles, AddFilesTakesWhatTheOpenDialogGives) {
  WritePicture(in.File(L"a.bmp"));
  WritePicture(in.File(L"b c.bmp"));
  RunAndClose([this](HWND dialog) {
    Click(dialog, IDB_CONV_ADD_FILES);
    const HWND open = WaitForDialogTitled(L"Add Files");
    const HWND name = Control(open, FindControl(open, 1148) ? 1148 : 1152);
    const std::wstring text = L"\"a.bmp\" \"b c.bmp\"";
    ::SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    Click(open, IDOK);
    WaitUntilChosen(dialog, {0});
    EXPECT_EQ(2, Rows(dialog));
    EXPECT_EQ(L"b c.bmp", Row(dialog, 1));
    WaitUntil([=] { return IsEnabled(dialog, IDB_CONV_CONVERT); }, "the files can be converted");
  });
  EXPECT_EQ(in.path(), params.sourceFolder);
}

TEST_F(ConversionFiles, ACancelledOpenDialogAddsNothing) {
  RunAndClose([](HWND dialog) {
    Click(dialog, IDB_CONV_ADD_FILES);
    const HWND open = WaitForDialogTitled(L"Add Files");
    Click(open, IDCANCEL);
    WaitUntilClosed(open);
    EXPECT_EQ(0, Rows(dialog));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_CONVERT));
  });
}

}  // namespace
