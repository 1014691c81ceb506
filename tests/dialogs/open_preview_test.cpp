// The parts of the open dialog that are ours, through its export: page controls, preview pane, splitter, tool bar buttons.
#include <windows.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include "include/zvfiledlg.h"
#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

constexpr int kPageEdit = 9402;
constexpr int kPageLabel = 9404;
constexpr int kDeletePage = 9403;
constexpr int kLoadOptions = 9401;
constexpr int kPane = 59648;
constexpr int kPreviewCommand = 41216;
constexpr int kFileInfoCommand = 41217;
constexpr int kLookInCombo = 1137;
constexpr uint32_t kAllControls =
    DLG_OPEN_SHOW_PAGE_CONTROLS | DLG_OPEN_SHOW_DELETE_PAGE | DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_SHOW_FILE_INFO;

HWND NameBox(HWND dialog) {
  const HWND combo = FindControl(dialog, 1148);
  return combo ? combo : Control(dialog, 1152);
}

void TypeName(HWND dialog, const std::wstring& name) {
  ::SendMessageW(NameBox(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

// That of the top row, not the one of the places.
HWND ToolBar(HWND dialog) {
  HWND bar = nullptr;
  do {
    bar = ::FindWindowExW(dialog, bar, TOOLBARCLASSNAMEW, nullptr);
  } while (bar && ::GetDlgCtrlID(bar) == 1184);
  return bar;
}
HWND Hook(HWND dialog) { return ::GetParent(Control(dialog, kPageEdit)); }

HWND FileList(HWND dialog) {
  const HWND view = ::FindWindowExW(dialog, nullptr, L"SHELLDLL_DefView", nullptr);
  return view ? ::FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr) : nullptr;
}

// Selects the file of that name in the shell's list, as a click does.
void SelectFile(HWND dialog, const std::wstring& name) {
  const HWND list = FileList(dialog);
  const int count = static_cast<int>(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
  for (int row = 0; row < count; ++row) {
    wchar_t text[MAX_PATH] = L"";
    LVITEMW item = {};
    item.pszText = text;
    item.cchTextMax = MAX_PATH;
    ::SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    if (name == text) {
      item = {};
      item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
      ::SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
      return;
    }
  }
  ADD_FAILURE() << "the file is not in the list";
}

RECT PaneRect(HWND dialog) { return RectIn(dialog, kPane); }

class OpenPreview : public ::testing::Test {
 protected:
  OpenPreview() {
    EXPECT_TRUE(WritePicture(picture, {.width = 300, .height = 200}));
    EXPECT_TRUE(WritePicture(pages, {.width = 60, .height = 40, .format = FMT_TIFF, .pages = 3}));
    broken = folder.AddFile(L"broken.bmp", {'n', 'o'});
    openFileName.lStructSize = sizeof(openFileName);
    openFileName.lpstrInitialDir = folder.path().c_str();
    openFileName.lpstrTitle = L"Open pictures";
    params.uStructSize = sizeof(params);
    params.viewMode = DLG_VIEW_LIST;
    params.flags = kAllControls;
    params.showPreview = 1;
  }
  ~OpenPreview() override {
    for (int32_t i = 0; i < params.fileCount; ++i) {
      ::GlobalFree(params.files[i].fileInfo);
      ::GlobalFree(params.files[i].formatOptions);
    }
    ::GlobalFree(params.files);
  }
  int32_t Open(const std::function<void(HWND)>& script) {
    return DriveDialog([this] { return Z_DlgOpen(parent.hwnd(), &openFileName, &params); },
                       [&] {
                         const HWND dialog = WaitForDialogTitled(L"Open pictures");
                         WaitUntil([=] { return ComboCount(dialog, kLookInCombo) > 0; }, "the dialog shows its folder");
                         WaitUntil([=] { return FileList(dialog) != nullptr; }, "the dialog shows its files");
                         WaitUntil([=] { return ::SendMessageW(FileList(dialog), LVM_GETITEMCOUNT, 0, 0) >= 3; },
                                   "the files are listed");
                         script(dialog);
                       });
  }

  TemporaryFolder folder;
  ParentWindow parent;
  std::wstring picture = folder.File(L"picture.bmp");
  std::wstring pages = folder.File(L"pages.tif");
  std::wstring broken;
  OPENFILENAMEW openFileName = {};
  OPENFILEDLGPARAMS params = {};
};

void Cancel(HWND dialog) { Click(dialog, IDCANCEL); }

TEST_F(OpenPreview, ShowsItsControlsAsTheFlagsSay) {
  params.flags |= DLG_OPEN_SHOW_LOAD_OPTIONS;
  Open([](HWND dialog) {
    for (const int id : {kPageEdit, kPageLabel, kDeletePage, kLoadOptions}) {
      EXPECT_TRUE(IsShown(dialog, id)) << id;
    }
    EXPECT_EQ(L"1", TextOf(dialog, kPageEdit));
    Cancel(dialog);
  });
  params.flags = 0;
  Open([](HWND dialog) {
    for (const int id : {kPageEdit, kPageLabel, kDeletePage, kLoadOptions}) {
      EXPECT_FALSE(IsShown(dialog, id)) << id;
    }
    EXPECT_EQ(nullptr, FindControl(dialog, kPane));
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, StartsWithThePaneAsTheRecordSays) {
  Open([](HWND dialog) {
    EXPECT_TRUE(::IsWindowVisible(Control(dialog, kPane)));
    SaveScreenshot(dialog, L"open_pane_open");
    Cancel(dialog);
  });
  params.showPreview = 0;
  Open([](HWND dialog) {
    EXPECT_EQ(nullptr, FindControl(dialog, kPane));
    SaveScreenshot(dialog, L"open_pane_closed");
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, TogglesThePaneAndReportsItsStateAtOk) {
  const int32_t result = Open([](HWND dialog) {
    Control(dialog, kPane);
    Command(Hook(dialog), kPreviewCommand);
    WaitUntil([=] { return !FindControl(dialog, kPane); }, "the pane closes");
    EXPECT_EQ(0, ::SendMessageW(ToolBar(dialog), TB_ISBUTTONCHECKED, kPreviewCommand, 0));
    Command(Hook(dialog), kPreviewCommand);
    WaitUntil([=] { return FindControl(dialog, kPane) != nullptr; }, "the pane opens again");
    EXPECT_NE(0, ::SendMessageW(ToolBar(dialog), TB_ISBUTTONCHECKED, kPreviewCommand, 0));
    Command(Hook(dialog), kPreviewCommand);
    WaitUntil([=] { return !FindControl(dialog, kPane); }, "the pane closes");
    TypeName(dialog, L"picture.bmp");
    Click(dialog, IDOK);
  });
  EXPECT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(0, params.showPreview);
}

TEST_F(OpenPreview, EnablesThePageControlsForFilesWithPagesAlone) {
  Open([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    WaitUntil([=] { return IsEnabled(dialog, kPageEdit) && TextOf(NameBox(dialog)) == L"pages.tif"; },
              "pages to choose");
    EXPECT_TRUE(IsEnabled(dialog, kDeletePage));
    SaveScreenshot(dialog, L"open_multi_page");
    SelectFile(dialog, L"picture.bmp");
    WaitUntil([=] { return !IsEnabled(dialog, kPageEdit); }, "no page to choose");
    EXPECT_FALSE(IsEnabled(dialog, kDeletePage));
    SaveScreenshot(dialog, L"open_preview_picture");
    SelectFile(dialog, L"broken.bmp");
    WaitUntil([=] { return TextOf(NameBox(dialog)) == L"broken.bmp"; }, "the next file is chosen");
    EXPECT_FALSE(IsEnabled(dialog, kPageEdit));
    SaveScreenshot(dialog, L"open_no_preview");
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, OpensTheTypedPageOfOneFile) {
  const int32_t result = Open([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    WaitUntil([=] { return IsEnabled(dialog, kPageEdit) && TextOf(NameBox(dialog)) == L"pages.tif"; },
              "pages to choose");
    SetText(dialog, kPageEdit, L"3");
    EXPECT_EQ(L"3", TextOf(dialog, kPageEdit));
    Click(dialog, IDOK);
  });
  ASSERT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(3, params.files[0].pageNumber);
  EXPECT_EQ(62, params.files[0].fileInfo->width);
}

TEST_F(OpenPreview, FallsBackToPageOneForAPageThatIsNone) {
  Open([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    WaitUntil([=] { return IsEnabled(dialog, kPageEdit) && TextOf(NameBox(dialog)) == L"pages.tif"; },
              "pages to choose");
    for (const wchar_t* const text : {L"0", L""}) {
      SetText(dialog, kPageEdit, text);
      EXPECT_EQ(L"1", TextOf(dialog, kPageEdit)) << text;
    }
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, DeletesAPageAfterAsking) {
  Open([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    WaitUntil([=] { return IsEnabled(dialog, kPageEdit) && TextOf(NameBox(dialog)) == L"pages.tif"; },
              "pages to choose");
    Click(dialog, kDeletePage);
    HWND question = WaitForMessageBox();
    Click(question, IDNO);
    WaitUntilClosed(question);
    Click(dialog, kDeletePage);
    question = WaitForMessageBox();
    Click(question, IDYES);
    WaitUntilClosed(question);
    Cancel(dialog);
  });
  FILEINFO info = {};
  info.uStructSize = sizeof(info);
  ASSERT_EQ(SUCCESS, GetFileInfo(pages.c_str(), &info, sizeof(info), 1, nullptr));
  EXPECT_EQ(2, info.totalPages);
  EXPECT_EQ(61, info.width);
}

TEST_F(OpenPreview, KeepsTheOpenDialogWhileLoadOptionsAreWanted) {
  params.flags |= DLG_OPEN_SHOW_LOAD_OPTIONS;
  params.showLoadOptions = 1;
  const int32_t result = Open([](HWND dialog) {
    EXPECT_TRUE(IsChecked(dialog, kLoadOptions));
    TypeName(dialog, L"picture.bmp");
    Click(dialog, IDOK);
    EXPECT_FALSE(HoldsWithin(300, [=] { return !::IsWindow(dialog); })) << "it stays";
    Check(dialog, kLoadOptions, false);
    TypeName(dialog, L"picture.bmp");
    Click(dialog, IDOK);
  });
  EXPECT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(0, params.showLoadOptions);
}

TEST_F(OpenPreview, DragsTheSplitterWithinItsLimits) {
  Open([](HWND dialog) {
    const HWND hook = Hook(dialog);
    const RECT before = PaneRect(dialog);
    const int y = (before.top + before.bottom) / 2;
    const auto drag = [&](int from, int to) {
      ::SendMessageW(hook, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from, y));
      ::SendMessageW(hook, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to, y));
      ::SendMessageW(hook, WM_LBUTTONUP, 0, MAKELPARAM(to, y));
    };
    drag(before.left, before.left - 60);
    EXPECT_EQ(before.left - 65, PaneRect(dialog).left) << "five pixels left of the pointer";
    drag(PaneRect(dialog).left, 20);
    EXPECT_EQ(165, PaneRect(dialog).left) << "the pointer stops at 170";
    RECT client;
    ::GetClientRect(dialog, &client);
    EXPECT_EQ(client.right, PaneRect(dialog).right) << "no margin to the right";
    const int left = PaneRect(dialog).left;
    ::SendMessageW(hook, WM_MOUSEMOVE, 0, MAKELPARAM(400, y));
    EXPECT_EQ(left, PaneRect(dialog).left) << "without a button nothing moves";
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, KeepsThePanesWidthWhenTheDialogIsWidened) {
  params.flags |= DLG_OPEN_RESIZABLE;
  Open([](HWND dialog) {
    const RECT before = PaneRect(dialog);
    RECT frame;
    ::GetWindowRect(dialog, &frame);
    ::SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left + 100, frame.bottom - frame.top,
                   SWP_NOMOVE | SWP_NOZORDER);
    WaitUntil([=] { return PaneRect(dialog).left == before.left + 100; }, "the pane follows the right edge");
    const RECT after = PaneRect(dialog);
    EXPECT_EQ(before.right - before.left, after.right - after.left);
    SaveScreenshot(dialog, L"open_widened");
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, AddsItsButtonsToTheShellsToolBar) {
  Open([](HWND dialog) {
    const HWND bar = ToolBar(dialog);
    const LRESULT count = ::SendMessageW(bar, TB_BUTTONCOUNT, 0, 0);
    EXPECT_EQ(count - 1, ::SendMessageW(bar, TB_COMMANDTOINDEX, kPreviewCommand, 0));
    EXPECT_EQ(count - 2, ::SendMessageW(bar, TB_COMMANDTOINDEX, kFileInfoCommand, 0));
    Cancel(dialog);
  });
}

RECT ViewRect(HWND dialog) {
  RECT rect;
  ::GetWindowRect(::FindWindowExW(dialog, nullptr, L"SHELLDLL_DefView", nullptr), &rect);
  ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

TEST_F(OpenPreview, LaysTheListOutBesideThePaneAndAboveTheButtons) {
  Open([](HWND dialog) {
    RECT client;
    ::GetClientRect(dialog, &client);
    WaitUntil([=] { return ViewRect(dialog).right == PaneRect(dialog).left; }, "the list ends where the pane begins");
    EXPECT_EQ(RectIn(dialog, IDOK).top - 6, ViewRect(dialog).bottom);
    EXPECT_EQ(ViewRect(dialog).top, PaneRect(dialog).top);
    EXPECT_EQ(ViewRect(dialog).bottom, PaneRect(dialog).bottom);
    EXPECT_EQ(client.right - 15, RectIn(dialog, IDOK).right);
    EXPECT_EQ(client.right - 15, RectIn(dialog, IDCANCEL).right);
    Command(Hook(dialog), kPreviewCommand);
    WaitUntil([=] { return ViewRect(dialog).right == client.right - 15; }, "the list takes the pane's place");
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, LeavesTheFileInformationButtonWhenNeitherIsWanted) {
  params.flags = 0;
  Open([](HWND dialog) {
    const HWND bar = ToolBar(dialog);
    EXPECT_EQ(-1, ::SendMessageW(bar, TB_COMMANDTOINDEX, kPreviewCommand, 0));
    const LRESULT count = ::SendMessageW(bar, TB_BUTTONCOUNT, 0, 0);
    EXPECT_EQ(count - 1, ::SendMessageW(bar, TB_COMMANDTOINDEX, kFileInfoCommand, 0))
        << "the shell's button in front of it goes instead";
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, SaysThatAFileCannotBeRead) {
  Open([](HWND dialog) {
    SelectFile(dialog, L"broken.bmp");
    WaitUntil([=] { return TextOf(NameBox(dialog)) == L"broken.bmp"; }, "the file is chosen");
    Command(Hook(dialog), kFileInfoCommand);
    const HWND message = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(message, 65535).find(L"broken.bmp"));
    Click(message, IDOK);
    WaitUntilClosed(message);
    Cancel(dialog);
  });
}

TEST_F(OpenPreview, LeavesNothingBehind) {
  ExpectNothingLeftBehind(
      [this] {
        Open([](HWND dialog) {
          SelectFile(dialog, L"picture.bmp");
          Cancel(dialog);
        });
      },
      {.systemLeaves = SystemOpenDialogLeaves()});
}

}  // namespace
