// Where everything in the open dialog stands: after its first layout, after it has been resized, on shells of both
// generations, with and without a Help button.
#include <windows.h>

#include <commdlg.h>

#include <map>
#include <vector>

#include "tests/dialogs/open_core_fixture.h"
#include "tests/support/dialog_layout.h"

namespace {

using namespace zvtest;

constexpr int kNameRow[] = {IDOK, kShellNameLabel};
constexpr int kTypeRow[] = {IDCANCEL, kShellTypeCombo, kShellTypeLabel};

void Help(uint32_t, int32_t, void*) {}

// The tops of the shell's controls below the list as the platform places them around the template when nobody moves them.
std::map<int, int> plainTops;
UINT_PTR CALLBACK MeasureAndCancel(HWND hook, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == CDN_INITDONE) {
    const HWND dialog = ::GetParent(hook);
    for (const int id : {static_cast<int>(IDOK), static_cast<int>(IDCANCEL), kShellHelp, kShellTypeCombo,
                         kShellTypeLabel, kShellNameLabel}) {
      plainTops[id] = RectIn(dialog, id).top;
    }
    plainTops[0] = RectOfWindow(dialog, OpenNameBox(dialog)).top;
    ::PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  }
  return 0;
}
void MeasurePlainDialog(int templateId, DWORD flags, DWORD extendedFlags) {
  wchar_t path[MAX_PATH] = {};
  OPENFILENAMEW dialog = {sizeof(dialog)};
  dialog.hInstance = ::GetModuleHandleW(L"zvfiledlg.dll");
  dialog.lpTemplateName = MAKEINTRESOURCEW(templateId);
  dialog.lpstrFile = path;
  dialog.nMaxFile = MAX_PATH;
  dialog.lpfnHook = MeasureAndCancel;
  dialog.Flags = OFN_EXPLORER | OFN_ENABLETEMPLATE | OFN_ENABLEHOOK | OFN_HIDEREADONLY | flags;
  dialog.FlagsEx = extendedFlags;
  ::GetOpenFileNameW(&dialog);
}

class OpenLayout : public OpenCore {
 protected:
  void ExpectRowsShiftedBy(int shift) {
    Open([=](HWND dialog) {
      for (const int id : {static_cast<int>(IDOK), static_cast<int>(IDCANCEL), kShellHelp, kShellTypeCombo,
                           kShellTypeLabel, kShellNameLabel}) {
        EXPECT_EQ(plainTops[id] + shift, RectIn(dialog, id).top) << id;
      }
      EXPECT_EQ(plainTops[0] + shift, RectOfWindow(dialog, OpenNameBox(dialog)).top);
      Cancel(dialog);
    });
  }
};

TEST_F(OpenLayout, MovesTheRowsDownBy35WithoutHelp) {
  MeasurePlainDialog(9400, 0, 0);
  ExpectRowsShiftedBy(35);
}

TEST_F(OpenLayout, MovesTheRowsDownBy25WithHelp) {
  call.params.helpCallback = Help;
  MeasurePlainDialog(9400, OFN_SHOWHELP, 0);
  ExpectRowsShiftedBy(25);
}

TEST_F(OpenLayout, MovesTheRowsOfOldShellsAsFar) {
  const OldStyleShell oldShell;
  MeasurePlainDialog(9408, 0, OFN_EX_NOPLACESBAR);
  ExpectRowsShiftedBy(35);
}

void ExpectRightEdges(HWND dialog) {
  const int right = OpenClientRight(dialog) - 15;
  const RECT ok = RectIn(dialog, IDOK), cancel = RectIn(dialog, IDCANCEL);
  EXPECT_EQ(right, ok.right);
  EXPECT_EQ(right, cancel.right);
  EXPECT_EQ(ok.left - 15, RectOfWindow(dialog, OpenNameBox(dialog)).right);
  EXPECT_EQ(cancel.left - 15, RectIn(dialog, kShellTypeCombo).right);
  const RECT bar = RectOfWindow(dialog, OpenToolBar(dialog));
  EXPECT_EQ(right, bar.right);
  EXPECT_EQ(bar.left, RectIn(dialog, kShellFolderCombo).right);
  EXPECT_EQ(right, OpenViewRect(dialog).right);
}

void WaitForLayout(HWND dialog) {
  WaitUntil([=] { return OpenViewRect(dialog).right == OpenClientRight(dialog) - 15; }, "the list takes its place");
}

TEST_F(OpenLayout, AlignsTheRightEdges) {
  Open([](HWND dialog) {
    WaitForLayout(dialog);
    ExpectRightEdges(dialog);
    Cancel(dialog);
  });
}

TEST_F(OpenLayout, GivesHelpTheEdgesOfOk) {
  call.params.helpCallback = Help;
  Open([](HWND dialog) {
    WaitForLayout(dialog);
    EXPECT_EQ(RectIn(dialog, IDOK).left, RectIn(dialog, kShellHelp).left);
    EXPECT_EQ(RectIn(dialog, IDOK).right, RectIn(dialog, kShellHelp).right);
    EXPECT_TRUE(::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP);
    Cancel(dialog);
  });
  call.params.helpCallback = nullptr;
  Open([](HWND dialog) {
    EXPECT_FALSE(::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP);
    Cancel(dialog);
  });
}

TEST_F(OpenLayout, EndsTheListSixPixelsAboveOkInAFixedDialog) {
  Open([](HWND dialog) {
    WaitUntil([=] { return OpenViewRect(dialog).bottom == RectIn(dialog, IDOK).top - 6; }, "the list ends above OK");
    EXPECT_FALSE(::GetWindowLongW(dialog, GWL_STYLE) & WS_THICKFRAME);
    Cancel(dialog);
  });
}

TEST_F(OpenLayout, FollowsTheCornerOfAResizableDialog) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  Open([](HWND dialog) {
    WaitForLayout(dialog);
    EXPECT_TRUE(::GetWindowLongW(dialog, GWL_STYLE) & WS_THICKFRAME);
    const RECT view = OpenViewRect(dialog), ok = RectIn(dialog, IDOK), page = RectIn(dialog, kOpenPageEdit);
    EXPECT_GT(ok.top, view.bottom);
    EXPECT_LT(ok.top - view.bottom, 15) << "no gap between list and name";
    DragCorner(dialog, 120, 80);
    WaitForLayout(dialog);
    WaitUntil([=] { return RectIn(dialog, IDOK).top == ok.top + 80; }, "the rows follow the bottom");
    const RECT wide = OpenViewRect(dialog);
    EXPECT_EQ(view.right + 120, wide.right);
    EXPECT_EQ(view.bottom + 80, wide.bottom);
    WaitUntil([=] { return RectIn(dialog, kOpenPageEdit).top == page.top + 80; }, "our own row follows, too");
    EXPECT_EQ(view.left, wide.left);
    EXPECT_EQ(view.top, wide.top);
    ExpectRightEdges(dialog);
    SaveScreenshot(dialog, L"open_resized");
    DragCorner(dialog, -120, -80);
    WaitUntil([=] { return OpenViewRect(dialog).bottom == view.bottom; }, "the list is as before");
    Cancel(dialog);
  });
}

TEST_F(OpenLayout, TakesItsRowAlongWhereThePlatformLeavesItBehind) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  Open([](HWND dialog) {
    WaitForLayout(dialog);
    const LONG belowCancel = RectIn(dialog, kOpenPageEdit).top - RectIn(dialog, IDCANCEL).bottom;
    for (const int id : {kOpenLoadOptions, kOpenPageLabel, kOpenPageEdit, kOpenDeletePage}) {
      const RECT rect = RectIn(dialog, id);
      ::SetWindowPos(Control(dialog, id), nullptr, rect.left, rect.top - 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }
    DragCorner(dialog, 0, 40);
    WaitUntil([=] { return RectIn(dialog, kOpenPageEdit).top - RectIn(dialog, IDCANCEL).bottom == belowCancel; },
              "the row stands below the shell's as before");
    DragCorner(dialog, 0, -40);
    Cancel(dialog);
  });
}

TEST_F(OpenLayout, StaysAsItIsInAnotherFolder) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  folder.AddFolder(L"sub");
  Open([&](HWND dialog) {
    DragCorner(dialog, 70, 50);
    WaitForLayout(dialog);
    const RECT before = OpenViewRect(dialog);
    const RECT ok = RectIn(dialog, IDOK);
    TypeName(dialog, folder.File(L"sub"));
    Click(dialog, IDOK);
    WaitUntil([=] { return OpenFileList(dialog) && ListedFiles(dialog).empty(); }, "the dialog shows the folder");
    WaitUntil(
        [=] {
          const RECT now = OpenViewRect(dialog);
          return ::EqualRect(&before, &now) != FALSE;
        },
        "the new list stands where the former one stood");
    EXPECT_EQ(ok.top, RectIn(dialog, IDOK).top) << "the rows have moved once and for all";
    DragCorner(dialog, -70, -50);
    Cancel(dialog);
  });
}

TEST_F(OpenLayout, KeepsRoomForTheListWhenNarrowed) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  Open([](HWND dialog) {
    WaitForLayout(dialog);
    RECT frame;
    ::GetWindowRect(dialog, &frame);
    const RECT view = OpenViewRect(dialog);
    MINMAXINFO limits = {};
    ::SendMessageW(dialog, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    EXPECT_GE(limits.ptMinTrackSize.x, frame.right - frame.left - (view.right - view.left) + 50);
    Cancel(dialog);
  });
}

// Faults of the platform's own part are not ours to judge.
void ExpectOurRowToBeClear(HWND dialog) {
  const HWND hook = OpenHook(dialog);
  const std::string faults = TextFaults(hook) + OverlapFaults(hook);
  EXPECT_EQ("", faults);
  RECT client;
  ::GetClientRect(dialog, &client);
  const RECT last = RectIn(dialog, kOpenDeletePage);
  EXPECT_LE(last.bottom, client.bottom);
  for (const int id : {kOpenLoadOptions, kOpenPageLabel, kOpenPageEdit, kOpenDeletePage}) {
    const RECT ours = RectIn(dialog, id);
    for (const int other : {static_cast<int>(IDOK), static_cast<int>(IDCANCEL), kShellHelp, kShellTypeCombo}) {
      const HWND control = FindControl(dialog, other);
      const RECT theirs = control ? RectOfWindow(dialog, control) : RECT{};
      RECT both;
      EXPECT_FALSE(control && ::IsWindowVisible(control) && ::IntersectRect(&both, &ours, &theirs))
          << id << " and " << other;
    }
  }
}

TEST_F(OpenLayout, CoversNoneOfItsControls) {
  call.params.flags |= DLG_OPEN_SHOW_LOAD_OPTIONS;
  for (const HELPCALLBACK help : {HELPCALLBACK{}, HELPCALLBACK{Help}}) {
    call.params.helpCallback = help;
    Open([](HWND dialog) {
      WaitForLayout(dialog);
      ExpectOurRowToBeClear(dialog);
      SaveScreenshot(dialog, L"open_new_shell_row");
      Cancel(dialog);
    });
    const OldStyleShell oldShell;
    Open([](HWND dialog) {
      WaitForLayout(dialog);
      ExpectOurRowToBeClear(dialog);
      SaveScreenshot(dialog, L"open_old_shell_row");
      Cancel(dialog);
    });
  }
}

TEST_F(OpenLayout, LeavesTheFocusToTheNameBox) {
  Open([](HWND dialog) {
    GUITHREADINFO info = {sizeof(info)};
    WaitUntil(
        [&] {
          ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info);
          return info.hwndFocus != nullptr;
        },
        "something has the focus");
    const HWND box = OpenNameBox(dialog);
    EXPECT_TRUE(info.hwndFocus == box || ::IsChild(box, info.hwndFocus));
    Cancel(dialog);
  });
}

TEST_F(OpenLayout, LetsTheKeyboardReachItsRow) {
  call.params.flags |= DLG_OPEN_SHOW_LOAD_OPTIONS;
  Open([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    WaitUntil([=] { return IsEnabled(dialog, kOpenPageEdit); }, "pages to choose");
    const auto focus = [=] {
      GUITHREADINFO info = {sizeof(info)};
      ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info);
      return info.hwndFocus;
    };
    std::vector<int> reached;
    constexpr int kMoreThanThereAre = 25;
    for (int i = 0; i < kMoreThanThereAre; ++i) {
      const HWND before = focus();
      PressKey(dialog, VK_TAB);
      WaitUntil([&] { return focus() != before; }, "the focus moves on");
      const int id = ::GetDlgCtrlID(focus());
      if (::GetParent(focus()) == OpenHook(dialog)) {
        reached.push_back(id);
      }
    }
    ASSERT_GE(reached.size(), 3u);
    reached.resize(3);
    EXPECT_EQ((std::vector<int>{kOpenLoadOptions, kOpenPageEdit, kOpenDeletePage}), reached);
    Cancel(dialog);
  });
}

}  // namespace
