// The progress dialogs of adding a folder and of refreshing the list, over jobs of the test's own. A job runs inside the
// dialog's own loop, so it is the place to look at the window.
#include <windows.h>

#include <commctrl.h>

#include "conversion/add_progress_dlg.h"
#include "conversion/update_list_progress_dlg.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"
#include "tests/support/dialog_layout.h"
#include "tests/unit/conversion/tool_dialog_fixture.h"

namespace {

using namespace zvtest;

constexpr int kLeft = 2;

std::wstring KernelText(UINT id) { return LoadDialogString(id).str(); }
int BarOf(HWND dialog, int bar) {
  return static_cast<int>(::SendMessageW(::GetDlgItem(dialog, bar), PBM_GETPOS, 0, 0));
}

class AddProgress : public ToolDialog {
 protected:
  INT_PTR Run(std::function<void(HWND dialog, const CString& path)> job) {
    CZVFileConversionDlgAddProgressDlg dialog(CWnd::FromHandle(parent.hwnd()));
    EXPECT_TRUE(dialog.Initialize([&](const CString& path) { job(dialog.m_hWnd, path); }, &paths));
    return dialog.DoModal();
  }

  CStringArray paths;
};

TEST_F(AddProgress, RefusesNoJobAndNoPaths) {
  CZVFileConversionDlgAddProgressDlg dialog(nullptr);
  EXPECT_FALSE(dialog.Initialize({}, &paths));
  EXPECT_FALSE(dialog.Initialize([](const CString&) {}, nullptr));
}

TEST_F(AddProgress, DoesItsJobForEachPathInOrderAndEnds) {
  for (const wchar_t* const path : {L"C:\\a.bmp", L"C:\\b.bmp", L"C:\\c.bmp"}) paths.Add(path);
  std::vector<std::wstring> done;
  EXPECT_EQ(kLeft, Run([&](HWND, const CString& path) { done.push_back(path.str()); }));
  EXPECT_EQ((std::vector<std::wstring>{L"C:\\a.bmp", L"C:\\b.bmp", L"C:\\c.bmp"}), done);
}

TEST_F(AddProgress, ShowsTheStateBeforeTheFileInWork) {
  for (const wchar_t* const path : {L"C:\\a.bmp", L"C:\\b.bmp", L"C:\\c.bmp", L"C:\\d.bmp"}) paths.Add(path);
  std::vector<int> bars;
  std::wstring line;
  Run([&](HWND dialog, const CString& path) {
    EXPECT_TRUE(::IsWindowVisible(dialog));
    bars.push_back(BarOf(dialog, IDP_CONV_ADD));
    if (path == L"C:\\b.bmp") line = TextOf(dialog, IDT_CONV_ADD_PATH);
  });
  EXPECT_EQ((std::vector<int>{0, 0, 25, 50}), bars);
  CString expected;
  expected.Format(LoadDialogString(IDS_ADD_LINE), L"C:\\a.bmp");
  EXPECT_EQ(expected.str(), line);
}

TEST_F(AddProgress, AbortAndEscEndItBehindTheFileInWork) {
  for (int i = 0; i < 3; ++i) paths.Add(L"C:\\a.bmp");
  for (const int command : {IDB_CONV_ADD_ABORT, IDCANCEL}) {
    int done = 0;
    EXPECT_EQ(kLeft, Run([&](HWND dialog, const CString&) {
                if (++done == 2) ::SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(command), 0);
              }));
    EXPECT_EQ(2, done) << command;
  }
}

// What the user does arrives in the pause behind a file; the file after it is still added.
TEST_F(AddProgress, SeesTheUserBetweenTwoFiles) {
  const std::function<void(HWND)> ways[] = {
      [](HWND dialog) { ::PostMessageW(::GetDlgItem(dialog, IDB_CONV_ADD_ABORT), BM_CLICK, 0, 0); },
      [](HWND dialog) { zvtest::CloseWindow(dialog); }};
  for (int i = 0; i < 50; ++i) paths.Add(L"C:\\a.bmp");
  for (const auto& stop : ways) {
    int done = 0;
    Run([&](HWND dialog, const CString&) {
      if (++done == 3) stop(dialog);
    });
    EXPECT_EQ(4, done);
  }
}

TEST_F(AddProgress, HasAGoodLayout) {
  paths.Add(L"C:\\pictures\\harbour at dawn.bmp");
  Run([&](HWND dialog, const CString&) {
    EXPECT_EQ("", LayoutFaults(dialog));
    EXPECT_EQ(KernelText(IDS_ADD_TITLE), TextOf(dialog));
    EXPECT_EQ(KernelText(IDS_ADD_ABORT), TextOf(dialog, IDB_CONV_ADD_ABORT));
  });
}

class UpdateListProgress : public ToolDialog {
 protected:
  INT_PTR Run(int32_t rows, std::function<void(HWND dialog, int row)> job) {
    CZVFileConversionDlgUpdateListProgressDlg dialog(CWnd::FromHandle(parent.hwnd()));
    EXPECT_TRUE(dialog.Initialize([&](int row) { job(dialog.m_hWnd, row); }, &rows));
    return dialog.DoModal();
  }
};

TEST_F(UpdateListProgress, EndsAtOnceWithoutRows) {
  EXPECT_EQ(kLeft, Run(0, [](HWND, int) { ADD_FAILURE() << "there is no row"; }));
}

TEST_F(UpdateListProgress, ShowsTheStateBeforeTheRowInWork) {
  std::vector<int> bars;
  EXPECT_EQ(kLeft, Run(4, [&](HWND dialog, int row) {
              EXPECT_EQ(static_cast<size_t>(row), bars.size());
              bars.push_back(BarOf(dialog, IDP_CONV_UPDATE));
            }));
  EXPECT_EQ((std::vector<int>{0, 0, 25, 50}), bars);
}

TEST_F(UpdateListProgress, CannotBeClosedByTheUser) {
  int done = 0;
  EXPECT_EQ(kLeft, Run(3, [&](HWND dialog, int) {
              ++done;
              ::SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
              ::SendMessageW(dialog, WM_COMMAND, IDOK, 0);
              ::SendMessageW(dialog, WM_CLOSE, 0, 0);
            }));
  EXPECT_EQ(3, done);
}

TEST_F(UpdateListProgress, HasAGoodLayout) {
  Run(1, [](HWND dialog, int) {
    EXPECT_EQ("", LayoutFaults(dialog));
    EXPECT_EQ(KernelText(IDS_UPDATE_TITLE), TextOf(dialog));
    EXPECT_EQ(KernelText(IDS_UPDATE_MESSAGE), TextOf(dialog, IDT_CONV_UPDATE));
  });
}

}  // namespace
