// The progress dialog of a run, over real files and a host of the test's own. What the host does while the run asks it arrives in
// the dialog's own loop.
#include <windows.h>

#include <commctrl.h>

#include "conversion/progress_dlg.h"
#include "platform/afx.h"
#include "resources/conversion_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"
#include "services/zvdlgwidgets/window_classes.h"
#include "tests/unit/conversion/conversion_run_fixture.h"

namespace {

using namespace zvtest;

constexpr int kFiles = 4;

class RunProgress : public ConversionRun {
 protected:
  RunProgress() { RegisterWidgetClasses(AfxGetInstanceHandle()); }

  void SetUp() override {
    ConversionRun::SetUp();
    settings.deleteSource = true;  // so that the host hears of each file that is done
    for (int i = 0; i < kFiles; ++i) {
      AddPicture(L"picture " + std::to_wstring(i) + L".png", 40, 20, FMT_PNG);
      data.queue.Add({i, 0});
    }
  }

  // Runs the queue; `behindFile` is called when a file is done, before the dialog looks at its line.
  void RunQueue(const std::function<void(HWND dialog, int row)>& behindFile) {
    CZVConversionRun run(host, settings);
    CZVFileConversionDlgProgressDlg dialog(CWnd::FromHandle(parent.hwnd()));
    host.onDeleted = [&](int row) { behindFile(dialog.m_hWnd, row); };
    ASSERT_TRUE(dialog.Initialize(&run, &data));
    dialog.DoModal();
    EXPECT_TRUE(::IsWindowEnabled(parent.hwnd()));
  }
  std::vector<int32_t> Statuses() {
    std::vector<int32_t> statuses;
    for (int i = 0; i < data.log.GetSize(); ++i) statuses.push_back(data.log[i].status);
    return statuses;
  }
  static int Bar(HWND dialog, int id) {
    return static_cast<int>(::SendMessageW(::GetDlgItem(dialog, id), PBM_GETPOS, 0, 0));
  }

  ParentWindow parent;
  CONVERSIONRUNDATA data;
};

TEST_F(RunProgress, ShowsTheFilesBeforeTheOneInWork) {
  std::vector<int> totals;
  std::vector<std::wstring> lines;
  RunQueue([&](HWND dialog, int) {
    totals.push_back(Bar(dialog, IDP_CONV_TOTAL));
    lines.push_back(TextOf(dialog, IDT_CONV_LAST_FILE));
  });
  EXPECT_EQ((std::vector<int>{0, 0, 25, 50}), totals);
  ASSERT_EQ(static_cast<size_t>(kFiles), lines.size());
  for (int row = 1; row < kFiles; ++row) {
    CString expected;
    expected.Format(LoadDialogString(IDS_PROGRESS_LINE), data.log[row - 1].source, data.log[row - 1].destination);
    EXPECT_EQ(expected.str(), lines[static_cast<size_t>(row)]);
  }
}

TEST_F(RunProgress, BeginsEachFileWithAnEmptyBar) {
  std::vector<int> bars;
  HWND dialog = nullptr;
  host.onNaming = [&] { bars.push_back(dialog ? Bar(dialog, IDP_CONV_FILE) : 0); };
  RunQueue([&](HWND window, int) {
    dialog = window;
    ::SendMessageW(::GetDlgItem(window, IDP_CONV_FILE), PBM_SETPOS, 40, 0);
  });
  EXPECT_EQ((std::vector<int>{0, 0, 0, 0}), bars);
}

TEST_F(RunProgress, OfOneFileEndsWithoutEverShowingAll) {
  data.queue.SetSize(1);
  int highest = 0;
  RunQueue([&](HWND dialog, int) {
    // The bar's own window procedure, with an eye on the positions that it is given.
    static int* seen;
    static WNDPROC bar;
    seen = &highest;
    const WNDPROC spy = [](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
      if (message == PBM_SETPOS) *seen = std::max(*seen, static_cast<int>(first));
      return ::CallWindowProcW(bar, window, message, first, second);
    };
    bar = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(::GetDlgItem(dialog, IDP_CONV_TOTAL), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(spy)));
  });
  EXPECT_EQ(std::vector<int32_t>{CONVERSION_OK}, Statuses());
  EXPECT_EQ(0, highest);
}

// The line looked at is that of the entry's number, and an entry of several pages shifts the lines behind it.
TEST_F(RunProgress, AnAnswerThatAbortsTheSecondPageEndsTheRunAnEntryLater) {
  std::vector<int32_t> pages = {1, 2, 3};
  AddPicture(L"fax.tif", 40, 20, FMT_TIFF, 3);
  host.options[kFiles].pageTotal = host.options[kFiles].pageCount = 3;
  host.options[kFiles].pages = pages.data();
  data.queue[0].fileRow = kFiles;
  host.nameTemplate = L"<SRC>-<NUM>";
  out.AddFile(L"fax-1.bmp", {7});
  settings.overwriteMode = OVERWRITE_ASK;
  RunQueue([](HWND, int) {});
  EXPECT_EQ((std::vector<int32_t>{CONVERSION_OK, CONVERSION_ABORTED, CONVERSION_OK}), Statuses());
  EXPECT_EQ(1u, host.questions.size());
}

TEST_F(RunProgress, AbortBetweenTwoFilesStopsTheNextOneAtItsStart) {
  RunQueue([](HWND dialog, int row) {
    if (row == 1) ::PostMessageW(::GetDlgItem(dialog, IDB_CONV_ABORT), BM_CLICK, 0, 0);
  });
  EXPECT_EQ((std::vector<int32_t>{CONVERSION_OK, CONVERSION_OK, CONVERSION_FAILED}), Statuses());
  EXPECT_EQ(2u, FileCount(out.path()));
  EXPECT_TRUE(Exists(host.sources[2].str()));
}

TEST_F(RunProgress, EscBetweenTwoFilesClosesAtOnceAndTheNextFileIsTheLast) {
  bool visible = true, enabled = true;
  RunQueue([&](HWND dialog, int row) {
    if (row == 1) {
      ::PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    } else if (row == 2) {
      visible = ::IsWindowVisible(dialog);
      enabled = ::IsWindowEnabled(parent.hwnd());
    }
  });
  EXPECT_FALSE(visible);
  EXPECT_FALSE(enabled) << "a second run could be begun inside this one";
  EXPECT_EQ((std::vector<int32_t>{CONVERSION_OK, CONVERSION_OK, CONVERSION_OK}), Statuses());
  EXPECT_EQ(3u, FileCount(out.path()));
}

}  // namespace
