// The pages of the chosen file in the open dialog: its page edit and the deletion of pages.
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/dialogs/open_selection_fixture.h"

namespace {

using namespace zvtest;

constexpr WORD kValueCommitted = 1;  // notification code of the page edit

std::wstring KernelText(uint32_t id) {
  wchar_t text[512] = L"";
  EXPECT_EQ(SUCCESS, GetDialogStringText(id, text, 512));
  return text;
}

int32_t PagesOf(const std::wstring& path) {
  FILEINFO info = {};
  info.uStructSize = sizeof(info);
  return GetFileInfo(path.c_str(), &info, sizeof(info), 1, nullptr) == SUCCESS ? info.totalPages : -1;
}

// Asks without opening the file, which would be in the way of its replacement.
DWORD BytesOf(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  ::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
  return data.nFileSizeLow;
}

class OpenPages : public OpenSelectionTest {
 protected:
  OpenPages() {
    tiff = AddPicture(L"pages.tif", {.width = 60, .height = 40, .format = FMT_TIFF, .pages = 3});
    gif = AddPicture(L"pages.gif", {.width = 60, .height = 40, .format = FMT_GIF, .pages = 3, .bits = 8});
    AddPicture(L"single.bmp", {.width = 8});
    call.params.flags = DLG_OPEN_SHOW_PAGE_CONTROLS | DLG_OPEN_SHOW_DELETE_PAGE | DLG_OPEN_SHOW_PREVIEW;
  }

  static void ChoosePages(HWND dialog, const std::wstring& name) {
    ChooseFile(dialog, name);
    WaitUntil([=] { return IsEnabled(dialog, kOpenPageEdit); }, "there are pages to choose from");
  }
  // Deletes the page that is shown, and waits until it is gone from the file.
  static void DeletePage(HWND dialog, const std::wstring& path) {
    const DWORD bytes = BytesOf(path);
    Click(dialog, kOpenDeletePage);
    const HWND question = WaitForMessageBox();
    Click(question, IDYES);
    WaitUntilClosed(question);
    WaitUntil([=] { return BytesOf(path) != bytes; }, "the page is deleted");
  }
  static void CommitPage(HWND dialog) {
    ::SendMessageW(OpenHook(dialog), WM_COMMAND, MAKEWPARAM(kOpenPageEdit, kValueCommitted),
                   reinterpret_cast<LPARAM>(Control(dialog, kOpenPageEdit)));
  }

  std::wstring tiff, gif;
};

TEST_F(OpenPages, OneFileTakesThePageOfTheEdit) {
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ChoosePages(dialog, L"pages.tif");
              SetText(dialog, kOpenPageEdit, L"2");
              Click(dialog, IDOK);
            }));
  ASSERT_EQ(1, call.params.fileCount);
  EXPECT_EQ(2, Opened().pageNumber);
  EXPECT_EQ(61, Opened().fileInfo->width);
  EXPECT_EQ(2, Opened().fileInfo->pageNumber);
}

TEST_F(OpenPages, SeveralFilesBeginAtPageOneWhateverTheEditShows) {
  call.openFileName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              ChoosePages(dialog, L"pages.tif");
              SetText(dialog, kOpenPageEdit, L"3");
              TypeName(dialog, L"\"pages.tif\" \"pages.gif\"");
              Click(dialog, IDOK);
            }));
  ASSERT_EQ(2, call.params.fileCount);
  EXPECT_EQ(1, Opened(0).pageNumber);
  EXPECT_EQ(1, Opened(1).pageNumber);
  EXPECT_EQ(60, Opened(0).fileInfo->width);
}

TEST_F(OpenPages, NothingAndZeroAreReadAsPageOne) {
  for (const wchar_t* const text : {L"0", L"", L"000"}) {
    ASSERT_EQ(SUCCESS_DLG_OK, Open([=](HWND dialog) {
                ChoosePages(dialog, L"pages.tif");
                SetText(dialog, kOpenPageEdit, L"2");
                SetText(dialog, kOpenPageEdit, text);
                EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit)) << text;
                Click(dialog, IDOK);
              }));
    EXPECT_EQ(1, Opened().pageNumber);
    call.FreeFiles();
  }
}

TEST_F(OpenPages, APageBehindTheLastBecomesTheLast) {
  Open([](HWND dialog) {
    ChoosePages(dialog, L"pages.gif");
    SetText(dialog, kOpenPageEdit, L"17");
    EXPECT_EQ(L"3", TextOf(dialog, kOpenPageEdit));
    Click(dialog, IDCANCEL);
  });
}

TEST_F(OpenPages, ACommittedPageThatExistsStays) {
  Open([](HWND dialog) {
    ChoosePages(dialog, L"pages.tif");
    SetText(dialog, kOpenPageEdit, L"2");
    CommitPage(dialog);
    EXPECT_EQ(L"2", TextOf(dialog, kOpenPageEdit));
    Click(dialog, IDCANCEL);
  });
}

TEST_F(OpenPages, ACommittedPageThatHasGoneIsCorrected) {
  Open([this](HWND dialog) {
    ChoosePages(dialog, L"pages.tif");
    SetText(dialog, kOpenPageEdit, L"3");
    ASSERT_TRUE(::CopyFileW(folder.File(L"single.bmp").c_str(), tiff.c_str(), FALSE));
    CommitPage(dialog);
    EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit));
    Click(dialog, IDCANCEL);
  });
}

TEST_F(OpenPages, AnotherFileBeginsAtItsFirstPage) {
  Open([](HWND dialog) {
    ChoosePages(dialog, L"pages.tif");
    SetText(dialog, kOpenPageEdit, L"3");
    ChooseFile(dialog, L"pages.gif");
    WaitUntil([=] { return TextOf(dialog, kOpenPageEdit) == L"1"; }, "the page goes back");
    EXPECT_TRUE(IsEnabled(dialog, kOpenPageEdit));
    ChooseFile(dialog, L"single.bmp");
    WaitUntil([=] { return !IsEnabled(dialog, kOpenPageEdit); }, "a file of one page has none to choose");
    EXPECT_FALSE(IsEnabled(dialog, kOpenDeletePage));
    Click(dialog, IDCANCEL);
  });
}

TEST_F(OpenPages, DeletingAsksWithThePageNumber) {
  Open([this](HWND dialog) {
    ChoosePages(dialog, L"pages.tif");
    SetText(dialog, kOpenPageEdit, L"2");
    Click(dialog, kOpenDeletePage);
    const HWND question = WaitForMessageBox();
    EXPECT_EQ(KernelText(IDS_OPEN_DELETE_PAGE_CAPTION), TextOf(question));
    wchar_t expected[512];
    ::wsprintfW(expected, KernelText(IDS_OPEN_DELETE_PAGE_TEXT).c_str(), 2);
    EXPECT_EQ(expected, TextOf(question, 65535));
    EXPECT_TRUE(SaveScreenshot(question, L"open_delete_page"));
    Click(question, IDNO);
    WaitUntilClosed(question);
    Click(dialog, IDCANCEL);
  });
  EXPECT_EQ(3, PagesOf(tiff)) << "No deletes nothing";
}

class OpenPagesOf : public OpenPages, public ::testing::WithParamInterface<const wchar_t*> {
 protected:
  std::wstring name = GetParam();
  std::wstring path = folder.File(name);
};

TEST_P(OpenPagesOf, AFirstPageIsDeletedAndTheNextTakesItsPlace) {
  ASSERT_EQ(SUCCESS_DLG_OK, Open([this](HWND dialog) {
              ChoosePages(dialog, name);
              DeletePage(dialog, path);
              WaitUntil([=] { return TextOf(dialog, kOpenPageEdit) == L"1"; }, "the first page is shown");
              EXPECT_TRUE(IsEnabled(dialog, kOpenPageEdit));
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(1, Opened().pageNumber);
  EXPECT_EQ(2, PagesOf(path));
}

TEST_P(OpenPagesOf, DeletingTheLastPageShowsTheOneBeforeIt) {
  ASSERT_EQ(SUCCESS_DLG_OK, Open([this](HWND dialog) {
              ChoosePages(dialog, name);
              SetText(dialog, kOpenPageEdit, L"3");
              DeletePage(dialog, path);
              WaitUntil([=] { return TextOf(dialog, kOpenPageEdit) == L"2"; }, "the page before it is shown");
              EXPECT_TRUE(IsEnabled(dialog, kOpenPageEdit));
              EXPECT_TRUE(IsEnabled(dialog, kOpenDeletePage));
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(2, Opened().pageNumber);
  EXPECT_EQ(2, PagesOf(path));
}

TEST_P(OpenPagesOf, TheControlsEndWithTheLastPageButOne) {
  Open([this](HWND dialog) {
    ChoosePages(dialog, name);
    DeletePage(dialog, path);
    SetText(dialog, kOpenPageEdit, L"2");
    DeletePage(dialog, path);
    WaitUntil([=] { return !IsEnabled(dialog, kOpenDeletePage); }, "the only page is not to be deleted");
    EXPECT_FALSE(IsEnabled(dialog, kOpenPageEdit));
    EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit));
    Click(dialog, IDCANCEL);
  });
  EXPECT_EQ(1, PagesOf(path));
}

TEST_P(OpenPagesOf, AReadOnlyFileKeepsItsPagesAndTheUserIsTold) {
  ASSERT_TRUE(::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
  Open([this](HWND dialog) {
    ChoosePages(dialog, name);
    SetText(dialog, kOpenPageEdit, L"2");
    Click(dialog, kOpenDeletePage);
    const HWND question = WaitForMessageBox();
    Click(question, IDYES);
    WaitUntilClosed(question);
    const HWND message = WaitForMessageBox();
    EXPECT_EQ(KernelText(IDS_OPEN_DELETE_PAGE_CAPTION), TextOf(message));
    EXPECT_EQ(KernelText(IDS_OPEN_DELETE_PAGE_FAILED), TextOf(message, 65535));
    Click(message, FindControl(message, IDOK) ? IDOK : IDCANCEL);
    WaitUntilClosed(message);
    EXPECT_EQ(L"2", TextOf(dialog, kOpenPageEdit)) << "nothing else changes";
    EXPECT_TRUE(IsEnabled(dialog, kOpenDeletePage));
    Click(dialog, IDCANCEL);
  });
  EXPECT_EQ(3, PagesOf(path));
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

INSTANTIATE_TEST_SUITE_P(Kinds, OpenPagesOf, ::testing::Values(L"pages.tif", L"pages.gif"));

}  // namespace
