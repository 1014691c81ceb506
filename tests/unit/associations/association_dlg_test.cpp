// The association dialog over a registry that refuses, fails and waits as the test says.
#include "associations/file_format_associations_dlg.h"

#include <gmock/gmock.h>

#include "resources/associations_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "tests/support/dialog_driver.h"
#include "tests/unit/associations/fake_registry.h"

namespace {

using namespace zvtest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kProgram[] = L"Zorvane.Test";
constexpr wchar_t kFormats[] = L"One (*.one)\0*.one\0Two (*.two)\0*.two\0Three (*.three)\0*.three\0";
constexpr UINT kEndNow = WM_APP + 50;

// A registry that stops at its first question until the test lets it go.
class WaitingRegistry : public FakeRegistry {
 public:
  std::optional<CString> ReadOwner(const CString& extension) override {
    ::SetEvent(asked);
    ::WaitForSingleObject(go, kPatience);
    return FakeRegistry::ReadOwner(extension);
  }
  HANDLE asked = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HANDLE go = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  ~WaitingRegistry() override {
    ::CloseHandle(asked);
    ::CloseHandle(go);
  }
};

class TestDialog : public CZVFileFormatAssociationsDlg {
 public:
  using CZVFileFormatAssociationsDlg::CZVFileFormatAssociationsDlg;
  bool hasThreads = true;
  bool hasCom = true;

 protected:
  unique_kernel_handle StartWorker() override {
    return hasThreads ? CZVFileFormatAssociationsDlg::StartWorker() : unique_kernel_handle();
  }
  bool EnterCom() override { return hasCom && CZVFileFormatAssociationsDlg::EnterCom(); }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == kEndNow) EndDialog(IDABORT);
    return CZVFileFormatAssociationsDlg::WindowProc(message, wParam, lParam);
  }
};

void WaitUntilReady(HWND dialog) {
  WaitUntil([dialog] { return ::IsWindowEnabled(dialog); }, "the list is filled");
}
bool IsRowChecked(HWND dialog, int row) {
  return ::SendMessageW(Control(dialog, IDL_ASSOC_FORMATS), LVM_GETITEMSTATE, static_cast<WPARAM>(row),
                        LVIS_STATEIMAGEMASK) >>
             12 ==
         2;
}
void Press(HWND dialog, int button) { ::SendMessageW(Control(dialog, button), BM_CLICK, 0, 0); }

class AssociationDialog : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(1, registry.notifications + cancelled) << "the shell hears of every OK"; }

  // Runs the dialog to its end, prepared with `change`.
  int32_t Run(CAssociationRegistry& over, const std::function<void(HWND)>& script,
              const std::function<void(TestDialog&)>& change = {}) {
    return DriveDialog(
        [&] {
          TestDialog dialog(CWnd::FromHandle(parent.hwnd()), kProgram, 0, over);
          dialog.SetFormats(kFormats);
          if (change) change(dialog);
          return static_cast<int32_t>(dialog.DoModal());
        },
        [&] { script(WaitForDialogWith(IDL_ASSOC_FORMATS)); });
  }
  int32_t RunAllAndOk(const std::function<void(HWND)>& then = {}) {
    return Run(registry, [&](HWND dialog) {
      WaitUntilReady(dialog);
      Press(dialog, IDB_ASSOC_SELECT_ALL);
      Click(dialog, IDOK);
      if (then) then(dialog);
      WaitUntilClosed(dialog);
    });
  }
  static void ExpectMessage(UINT textId, UINT captionId) {
    const HWND message = WaitForMessageBox();
    EXPECT_EQ(std::wstring(CZVBaseDialog::GetDlgString(textId)), TextOf(message, 65535));
    EXPECT_EQ(std::wstring(CZVBaseDialog::GetDlgString(captionId)), TextOf(message));
    Click(message, FindControl(message, IDOK) ? IDOK : IDCANCEL);
    WaitUntilClosed(message);
  }

  ParentWindow parent;
  FakeRegistry registry;
  int cancelled = 0;  // 1 in tests that press no OK
};

TEST_F(AssociationDialog, WritesEveryClaimInOrder) {
  registry.owners = {{L".two", L"other"}};
  EXPECT_EQ(IDOK, RunAllAndOk());
  EXPECT_THAT(registry.writes,
              ElementsAre(L".one=Zorvane.Test", L".one user=Zorvane.Test", L".two=Zorvane.Test",
                          L".two user=Zorvane.Test", L".three=Zorvane.Test", L".three user=Zorvane.Test"));
}

TEST_F(AssociationDialog, LeavesLockedRowsAsTheyAreWhateverIsPressed) {
  registry.owners = {{L".one", kProgram}, {L".two", L"other"}};
  registry.lockedAtRead = {L".one", L".two"};
  EXPECT_EQ(IDOK, Run(registry, [](HWND dialog) {
              WaitUntilReady(dialog);
              EXPECT_TRUE(IsRowChecked(dialog, 0));
              EXPECT_FALSE(IsRowChecked(dialog, 1));
              Press(dialog, IDB_ASSOC_SELECT_NONE);
              EXPECT_TRUE(IsRowChecked(dialog, 0)) << "locked and ours";
              Press(dialog, IDB_ASSOC_SELECT_ALL);
              EXPECT_FALSE(IsRowChecked(dialog, 1)) << "locked and theirs";
              EXPECT_TRUE(IsRowChecked(dialog, 2));
              Click(dialog, IDOK);
              WaitUntilClosed(dialog);
            }));
  EXPECT_THAT(registry.attempts, ElementsAre(L".three"));
}

TEST_F(AssociationDialog, TellsOfADeniedRowAndEndsWithOk) {
  registry.refusals = {{L".two", ERROR_ACCESS_DENIED}};
  EXPECT_EQ(IDOK, RunAllAndOk([](HWND) { ExpectMessage(IDS_ASSOC_DENIED_TEXT, IDS_ASSOC_DENIED_CAPTION); }));
  EXPECT_THAT(registry.attempts, ElementsAre(L".one", L".two", L".three"));
}

TEST_F(AssociationDialog, TellsOfAFailedRowAndEndsWithOk) {
  registry.refusals = {{L".one", ERROR_REGISTRY_CORRUPT}};
  EXPECT_EQ(IDOK, RunAllAndOk([](HWND) { ExpectMessage(IDS_ASSOC_FAILED_TEXT, IDS_ASSOC_FAILED_CAPTION); }));
  EXPECT_THAT(registry.attempts, ElementsAre(L".one", L".two", L".three"));
}

TEST_F(AssociationDialog, TellsOfAFailureAloneWhenARowWasDeniedToo) {
  registry.refusals = {{L".one", ERROR_ACCESS_DENIED}, {L".three", ERROR_REGISTRY_CORRUPT}};
  EXPECT_EQ(IDOK, RunAllAndOk([](HWND) { ExpectMessage(IDS_ASSOC_FAILED_TEXT, IDS_ASSOC_FAILED_CAPTION); }));
}

TEST_F(AssociationDialog, IgnoresOkCancelEscAndCloseWhileTheWorkerRuns) {
  WaitingRegistry waiting;
  cancelled = 1;
  EXPECT_EQ(IDCANCEL, Run(waiting, [&](HWND dialog) {
              ::WaitForSingleObject(waiting.asked, kPatience);
              EXPECT_FALSE(::IsWindowEnabled(dialog));
              ::SendMessageW(dialog, WM_COMMAND, IDOK, 0);
              ::SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
              ::SendMessageW(dialog, WM_CLOSE, 0, 0);
              PressKey(dialog, VK_ESCAPE);
              PressKey(dialog, VK_RETURN);
              EXPECT_FALSE(HoldsWithin(200, [dialog] { return !::IsWindow(dialog); }));
              ::SetEvent(waiting.go);
              WaitUntilReady(dialog);
              EXPECT_EQ(3, ListViewCount(dialog, IDL_ASSOC_FORMATS));
              PressKey(dialog, VK_ESCAPE);
              WaitUntilClosed(dialog);
            }));
  EXPECT_THAT(waiting.attempts, IsEmpty());
}

TEST_F(AssociationDialog, WaitsForItsWorkerWhenItEndsOtherwise) {
  WaitingRegistry waiting;
  cancelled = 1;
  EXPECT_EQ(IDABORT, Run(waiting, [&](HWND dialog) {
              ::WaitForSingleObject(waiting.asked, kPatience);
              ::PostMessageW(dialog, kEndNow, 0, 0);
              EXPECT_FALSE(HoldsWithin(100, [dialog] { return !::IsWindow(dialog); })) << "the worker still needs it";
              ::SetEvent(waiting.go);
              WaitUntilClosed(dialog);
            }));
}

TEST_F(AssociationDialog, FillsTheListItselfWithoutAThread) {
  registry.owners = {{L".two", kProgram}};
  EXPECT_EQ(IDOK, Run(
                      registry,
                      [](HWND dialog) {
                        WaitUntilReady(dialog);
                        EXPECT_EQ(3, ListViewCount(dialog, IDL_ASSOC_FORMATS));
                        EXPECT_TRUE(IsRowChecked(dialog, 1));
                        Click(dialog, IDOK);
                        WaitUntilClosed(dialog);
                      },
                      [](TestDialog& dialog) { dialog.hasThreads = false; }));
}

TEST_F(AssociationDialog, OpensEmptyAndWritesNothingWithoutCom) {
  EXPECT_EQ(IDOK, Run(
                      registry,
                      [](HWND dialog) {
                        WaitUntilReady(dialog);
                        EXPECT_EQ(0, ListViewCount(dialog, IDL_ASSOC_FORMATS));
                        Click(dialog, IDOK);
                        WaitUntilClosed(dialog);
                      },
                      [](TestDialog& dialog) { dialog.hasCom = false; }));
  EXPECT_THAT(registry.attempts, IsEmpty());
}

TEST_F(AssociationDialog, FollowsClicksOnTheBoxesOfFreeRowsAlone) {
  registry.owners = {{L".one", L"other"}};
  registry.lockedAtRead = {L".one"};
  cancelled = 1;
  EXPECT_EQ(IDCANCEL, Run(registry, [](HWND dialog) {
              WaitUntilReady(dialog);
              const HWND list = Control(dialog, IDL_ASSOC_FORMATS);
              for (const int row : {0, 1}) {
                RECT box = {LVIR_BOUNDS, 0, 0, 0};
                ::SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&box));
                const LPARAM at = MAKELPARAM(box.left + 8, (box.top + box.bottom) / 2);
                ::PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, at);
                ::PostMessageW(list, WM_LBUTTONUP, 0, at);
              }
              WaitUntil([dialog] { return IsRowChecked(dialog, 1); }, "the click has checked the free row");
              EXPECT_FALSE(IsRowChecked(dialog, 0));
              Click(dialog, IDCANCEL);
              WaitUntilClosed(dialog);
            }));
}

}  // namespace
