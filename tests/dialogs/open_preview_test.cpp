// The preview's own controls in the open dialog, through its export: page controls, the pane's start, its toggle and its place.
#include "tests/dialogs/open_preview_fixture.h"

#include <commctrl.h>

namespace {

using namespace zvtest;

class OpenPreview : public OpenPane {
 protected:
  OpenPreview() {
    WriteSolid(folder.File(L"pages.tif"), kGreen, FMT_TIFF);
    WriteSolid(folder.File(L"pages.tif"), kBlue, FMT_TIFF, 2);
    folder.AddFile(L"broken.bmp", {'n', 'o'});
    call.params.flags |= DLG_OPEN_SHOW_FILE_INFO;
  }
  void LookAtAll(const std::function<void(HWND)>& script) { Look(script, 4); }
};

RECT ViewRect(HWND dialog) {
  RECT rect;
  ::GetWindowRect(OpenShellView(dialog), &rect);
  ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

// In the tool bar of the top row, which alone has such a button.
bool IsPreviewButtonChecked(HWND dialog) {
  HWND bar = nullptr;
  while ((bar = ::FindWindowExW(dialog, bar, TOOLBARCLASSNAMEW, nullptr)) != nullptr) {
    if (::SendMessageW(bar, TB_COMMANDTOINDEX, kOpenPreviewCommand, 0) >= 0) {
      return ::SendMessageW(bar, TB_ISBUTTONCHECKED, kOpenPreviewCommand, 0) != 0;
    }
  }
  throw DriverTimeout("there is no preview button");
}

TEST_F(OpenPreview, ShowsItsControlsAsTheFlagsSay) {
  call.params.flags |= DLG_OPEN_SHOW_LOAD_OPTIONS;
  LookAtAll([](HWND dialog) {
    for (const int id : {kOpenPageEdit, kOpenPageLabel, kOpenDeletePage, kOpenLoadOptions}) {
      EXPECT_TRUE(IsShown(dialog, id)) << id;
    }
    EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit));
  });
  call.params.flags = 0;
  LookAtAll([](HWND dialog) {
    for (const int id : {kOpenPageEdit, kOpenPageLabel, kOpenDeletePage, kOpenLoadOptions}) {
      EXPECT_FALSE(IsShown(dialog, id)) << id;
    }
    EXPECT_EQ(nullptr, FindControl(dialog, kOpenPane));
  });
}

TEST_F(OpenPreview, StartsWithThePaneAsTheRecordSays) {
  LookAtAll([](HWND dialog) {
    EXPECT_TRUE(::IsWindowVisible(Control(dialog, kOpenPane)));
    EXPECT_TRUE(IsPreviewButtonChecked(dialog));
    SaveScreenshot(dialog, L"open_pane_open");
  });
  call.params.showPreview = 0;
  LookAtAll([](HWND dialog) {
    EXPECT_EQ(nullptr, FindControl(dialog, kOpenPane));
    EXPECT_FALSE(IsPreviewButtonChecked(dialog));
    SaveScreenshot(dialog, L"open_pane_closed");
  });
}

TEST_F(OpenPreview, TogglesThePaneAndReportsItsStateAtOk) {
  const int32_t result = call.Drive([](HWND dialog) {
    Control(dialog, kOpenPane);
    Command(OpenHook(dialog), kOpenPreviewCommand);
    WaitUntil([=] { return !FindControl(dialog, kOpenPane); }, "the pane closes");
    EXPECT_FALSE(IsPreviewButtonChecked(dialog));
    Command(OpenHook(dialog), kOpenPreviewCommand);
    WaitUntil([=] { return FindControl(dialog, kOpenPane) != nullptr; }, "the pane opens again");
    EXPECT_TRUE(IsPreviewButtonChecked(dialog));
    Command(OpenHook(dialog), kOpenPreviewCommand);
    WaitUntil([=] { return !FindControl(dialog, kOpenPane); }, "the pane closes");
    TypeName(dialog, L"red.bmp");
    Click(dialog, IDOK);
  });
  EXPECT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(0, call.params.showPreview);
}

TEST_F(OpenPreview, EnablesThePageControlsForFilesWithPagesAlone) {
  LookAtAll([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    WaitForColor(dialog, kGreen);
    EXPECT_TRUE(IsEnabled(dialog, kOpenPageEdit));
    EXPECT_TRUE(IsEnabled(dialog, kOpenDeletePage));
    SaveScreenshot(dialog, L"open_multi_page");
    SelectFile(dialog, L"red.bmp");
    WaitForColor(dialog, kRed);
    EXPECT_FALSE(IsEnabled(dialog, kOpenPageEdit));
    EXPECT_FALSE(IsEnabled(dialog, kOpenDeletePage));
    SelectFile(dialog, L"broken.bmp");
    WaitForNoPreview(dialog);
    EXPECT_FALSE(IsEnabled(dialog, kOpenPageEdit));
    SaveScreenshot(dialog, L"open_no_preview");
  });
}

TEST_F(OpenPreview, KeepsThePanesWidthWhenTheDialogIsWidened) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  LookAtAll([](HWND dialog) {
    const RECT before = OpenPaneRect(dialog);
    RECT frame;
    ::GetWindowRect(dialog, &frame);
    ::SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left + 100, frame.bottom - frame.top,
                   SWP_NOMOVE | SWP_NOZORDER);
    WaitUntil([=] { return OpenPaneRect(dialog).left == before.left + 100; }, "the pane follows the right edge");
    const RECT after = OpenPaneRect(dialog);
    EXPECT_EQ(before.right - before.left, after.right - after.left);
    SaveScreenshot(dialog, L"open_widened");
  });
}

TEST_F(OpenPreview, LaysTheListOutBesideThePane) {
  LookAtAll([](HWND dialog) {
    RECT client;
    ::GetClientRect(dialog, &client);
    WaitUntil([=] { return ViewRect(dialog).right == OpenPaneRect(dialog).left; },
              "the list ends where the pane begins");
    EXPECT_EQ(ViewRect(dialog).top, OpenPaneRect(dialog).top);
    EXPECT_EQ(ViewRect(dialog).bottom, OpenPaneRect(dialog).bottom);
    EXPECT_EQ(client.right, OpenPaneRect(dialog).right) << "without a margin";
    Command(OpenHook(dialog), kOpenPreviewCommand);
    WaitUntil([=] { return ViewRect(dialog).right == client.right - 15; }, "the list takes the pane's place");
  });
}

TEST_F(OpenPreview, DoesNotMoveTheSplitterWithoutAButton) {
  LookAtAll([](HWND dialog) {
    const RECT before = OpenPaneRect(dialog);
    const LONG y = (before.top + before.bottom) / 2;
    ::SendMessageW(OpenHook(dialog), WM_MOUSEMOVE, 0, MAKELPARAM(before.left, y));
    ::SendMessageW(OpenHook(dialog), WM_MOUSEMOVE, 0, MAKELPARAM(before.left - 60, y));
    EXPECT_EQ(before.left, OpenPaneRect(dialog).left);
  });
}

}  // namespace
