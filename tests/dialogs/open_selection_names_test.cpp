// How files are chosen in the open dialog: by clicks in its list, by names, patterns and folders in its name box.
#include "tests/dialogs/open_selection_fixture.h"

namespace {

using namespace zvtest;

constexpr int kTypeCombo = 1136;

using Names = std::vector<std::wstring>;

class OpenNames : public OpenSelectionTest {
 protected:
  OpenNames() {
    for (const wchar_t* const name : {L"a.bmp", L"b.bmp", L"c.bmp", L"d.bmp", L"e.bmp"}) {
      AddPicture(name);
    }
  }
};

TEST_F(OpenNames, DoubleClickOpensTheFile) {
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) { ClickFile(dialog, L"c.bmp", 0, true); }));
  EXPECT_EQ(Names{L"c.bmp"}, NamesOpened());
}

TEST_F(OpenNames, ClickAndOkOpenTheFile) {
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ClickFile(dialog, L"b.bmp");
              WaitUntil([=] { return TextOf(OpenNameBox(dialog)) == L"b.bmp"; }, "the name box shows the file");
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(Names{L"b.bmp"}, NamesOpened());
}

TEST_F(OpenNames, ControlClickAddsToTheSelectionAndTakesFromIt) {
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ClickFile(dialog, L"a.bmp");
              WaitForSelection(dialog, 1);
              ClickFile(dialog, L"c.bmp", MK_CONTROL);
              WaitForSelection(dialog, 2);
              ClickFile(dialog, L"e.bmp", MK_CONTROL);
              WaitForSelection(dialog, 3);
              ClickFile(dialog, L"c.bmp", MK_CONTROL);
              WaitForSelection(dialog, 2);
              Click(dialog, IDOK);
            }));
  EXPECT_EQ((Names{L"a.bmp", L"e.bmp"}), NamesOpened());
}

TEST_F(OpenNames, ShiftClickSelectsARange) {
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ClickFile(dialog, L"b.bmp");
              WaitForSelection(dialog, 1);
              ClickFile(dialog, L"d.bmp", MK_SHIFT);
              WaitForSelection(dialog, 3);
              Click(dialog, IDOK);
            }));
  EXPECT_EQ((Names{L"b.bmp", L"c.bmp", L"d.bmp"}), NamesOpened());
}

TEST_F(OpenNames, OneOfSeveralSelectableIsOneFile) {
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ChooseFile(dialog, L"d.bmp");
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(Names{L"d.bmp"}, NamesOpened());
}

TEST_F(OpenNames, AWholeFolderOfHundredsCanBeSelected) {
  for (int i = 0; i < 300; ++i) {
    AddPicture(L"series " + std::to_wstring(1000 + i) + L".bmp", {.width = 2, .height = 2});
  }
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              SelectAllFiles(dialog);
              WaitForSelection(dialog, 305);
              Click(dialog, IDOK);
            }));
  const Names names = NamesOpened();
  ASSERT_EQ(305u, names.size());
  EXPECT_EQ(L"a.bmp", names.front());
  EXPECT_EQ(L"series 1299.bmp", names.back());
  EXPECT_EQ(FMT_BMP, Opened(304).format);
}

TEST_F(OpenNames, ATypedPatternListsWhatItMatches) {
  AddPicture(L"other.png", {.format = FMT_PNG});
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              TypeName(dialog, L"*.png");
              Click(dialog, IDOK);
              WaitUntil([=] { return ListedFiles(dialog) == Names{L"other.png"}; }, "the pattern filters the list");
              TypeName(dialog, L"other.png");
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(Names{L"other.png"}, NamesOpened());
}

TEST_F(OpenNames, ATypedFolderIsEntered) {
  folder.AddFolder(L"inner");
  ASSERT_TRUE(WritePicture(folder.File(L"inner\\deep.bmp"), {.width = 9}));
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              TypeName(dialog, L"inner");
              Click(dialog, IDOK);
              WaitUntil([=] { return ListedFiles(dialog) == Names{L"deep.bmp"}; }, "the folder is entered");
              TypeName(dialog, L"deep.bmp");
              Click(dialog, IDOK);
            }));
  ASSERT_EQ(1, call.params.fileCount);
  EXPECT_EQ(folder.File(L"inner\\deep.bmp"), Opened().fileName);
  EXPECT_EQ(9, Opened().fileInfo->width);
}

TEST_F(OpenNames, AnotherTypeListsItsFiles) {
  AddPicture(L"other.png", {.format = FMT_PNG});
  call.openFileName.lpstrFilter = L"All\0*.*\0Network\0*.png\0";
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              SelectCombo(dialog, kTypeCombo, 1);
              WaitUntil([=] { return ListedFiles(dialog) == Names{L"other.png"}; }, "the type filters the list");
              ChooseFile(dialog, L"other.png");
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(Names{L"other.png"}, NamesOpened());
  EXPECT_EQ(2u, call.openFileName.nFilterIndex);
}

TEST_F(OpenNames, ANameWithoutExtensionIsTheFileThatTheShellMakesOfIt) {
  // Not every shell adds the extension before it looks whether the file exists.
  call.params.flags = DLG_OPEN_FILE_MAY_NOT_EXIST;
  call.openFileName.lpstrFilter = L"Bitmaps\0*.bmp\0";
  call.openFileName.lpstrDefExt = L"bmp";
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"c"));
  EXPECT_EQ(Names{L"c.bmp"}, NamesOpened());
}

TEST_F(OpenNames, TheExtensionOfTheTypeIsForPreviewAndInformationAlone) {
  call.openFileName.lpstrFilter = L"Bitmaps\0*.bmp\0";
  call.params.flags = DLG_OPEN_FILE_MAY_NOT_EXIST | DLG_OPEN_SHOW_FILE_INFO | DLG_OPEN_SHOW_PREVIEW;
  EXPECT_EQ(ERROR_FILE_MISSING, Open([](HWND dialog) {
              TypeName(dialog, L"missing");
              Command(OpenHook(dialog), kOpenFileInfoCommand);
              const HWND message = WaitForMessageBox();
              EXPECT_NE(std::wstring::npos, TextOf(message, 65535).find(L"missing.bmp")) << "tried with the extension";
              Click(message, IDOK);
              WaitUntilClosed(message);
              TypeName(dialog, L"c");
              ::SendMessageW(OpenHook(dialog), WM_COMMAND, kOpenFileInfoCommand, 0);
              EXPECT_EQ(nullptr, FindMessageBox()) << "found with the extension";
              Click(dialog, IDOK);
            }))
      << "at OK the name counts as it is handed over";
}

TEST_F(OpenNames, ANameThatIsNoFileKeepsTheDialogOpen) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Open([](HWND dialog) {
              TypeName(dialog, L"not there.bmp");
              Click(dialog, IDOK);
              const HWND message = WaitForMessageBox();
              Click(message, IDOK);
              WaitUntilClosed(message);
              Click(dialog, IDCANCEL);
            }));
  EXPECT_EQ(nullptr, call.params.files);
}

TEST_F(OpenNames, AFileThatMayBeMissingEndsWithItsCode) {
  call.params.flags = DLG_OPEN_FILE_MAY_NOT_EXIST;
  EXPECT_EQ(ERROR_FILE_MISSING, OpenByName(L"not there.bmp"));
  EXPECT_EQ(nullptr, call.params.files);
  EXPECT_EQ(0, call.params.fileCount);
}

class OpenManyLongNames : public OpenSelectionTest {
 protected:
  OpenManyLongNames() {
    for (int i = 0; i < 30; ++i) {
      const std::wstring name = L"a rather long name for such a small picture " + std::to_wstring(10 + i) + L".bmp";
      AddPicture(name, {.width = 2, .height = 2});
      typed += L"\"" + name + L"\" ";
    }
    call.openFileName.Flags = OFN_ALLOWMULTISELECT;
    call.openFileName.nMaxFile = MAX_PATH;
  }
  std::wstring typed;
};

TEST_F(OpenManyLongNames, AreOpenedFromTheListWhateverTheCallersBufferTakes) {
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              SelectAllFiles(dialog);
              WaitForSelection(dialog, 30);
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(30u, NamesOpened().size());
  EXPECT_EQ(260u, call.openFileName.nMaxFile);
}

TEST_F(OpenManyLongNames, AreOpenedFromTheNameBoxWhateverTheCallersBufferTakes) {
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(typed));
  EXPECT_EQ(30u, NamesOpened().size());
}

TEST_F(OpenNames, TheSelectionStaysWhileThereAreNoLoadOptionsToShow) {
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  call.params.flags = DLG_OPEN_SHOW_LOAD_OPTIONS | DLG_OPEN_LOADPAGE_ROTATED;
  call.params.showLoadOptions = 1;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ClickFile(dialog, L"b.bmp");
              WaitForSelection(dialog, 1);
              ClickFile(dialog, L"d.bmp", MK_CONTROL);
              WaitForSelection(dialog, 2);
              const std::wstring names = TextOf(OpenNameBox(dialog));
              ::SendMessageW(Control(dialog, IDOK), BM_CLICK, 0, 0);
              EXPECT_EQ(2, SelectedFiles(dialog));
              EXPECT_EQ(names, TextOf(OpenNameBox(dialog)));
              Check(dialog, kOpenLoadOptions, false);
              Click(dialog, IDOK);
            }));
  EXPECT_EQ((Names{L"b.bmp", L"d.bmp"}), NamesOpened());
  EXPECT_EQ(0, call.params.showLoadOptions);
}

class OpenStrangeName : public OpenSelectionTest, public ::testing::WithParamInterface<const wchar_t*> {};

TEST_P(OpenStrangeName, IsOpenedByTypingByClickingAndAmongOthers) {
  const std::wstring name = GetParam();
  AddPicture(name, {.width = 11});
  AddPicture(L"plain.bmp");
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(name)) << "typed";
  EXPECT_EQ(Names{name}, NamesOpened());
  call.FreeFiles();
  ASSERT_EQ(SUCCESS_DLG_OK, Open([&](HWND dialog) {
              ChooseFile(dialog, name);
              Click(dialog, IDOK);
            }))
      << "clicked";
  EXPECT_EQ(Names{name}, NamesOpened());
  call.FreeFiles();
  call.openFileName.Flags |= OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"\"plain.bmp\" \"" + name + L"\"")) << "among others";
  ASSERT_EQ(2, call.params.fileCount);
  EXPECT_EQ(folder.File(name), Opened(1).fileName);
  EXPECT_EQ(11, Opened(1).fileInfo->width);
}

INSTANTIATE_TEST_SUITE_P(Names, OpenStrangeName,
                         ::testing::Values(L"with several  blanks.bmp", L"dots.in.the.name.bmp",
                                           L"comma, semicolon; & co.bmp", L"brackets [1] {2} (3)'.bmp",
                                           L"\x5199\x771F \x6E56.bmp", L"\xD83D\xDE00 party \xD83C\xDF89.bmp",
                                           L"\x0645\x0631\x062D\x0628\x0627.bmp", L"a\x0308 combining.bmp",
                                           L"no extension"));

}  // namespace
