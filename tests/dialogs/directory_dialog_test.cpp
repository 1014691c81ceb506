// The folder picker through its export: what it shows, what it gives back, and that it leaves nothing behind.
#include <gtest/gtest.h>

#include <algorithm>

#include "include/zvfiledlg.h"
#include "tests/support/dialog_driver.h"

namespace {

using namespace zvtest;

constexpr int kFolderEdit = 4201;
constexpr int kFolderLabel = 4202;
constexpr int kHelp = 1038;
constexpr int kTypeLabel = 1089;
constexpr int kNameLabel = 1090;
constexpr int kLookInLabel = 1091;
constexpr int kList = 1120;
constexpr int kTypeCombo = 1136;
constexpr int kLookInCombo = 1137;

std::wstring KernelText(uint32_t id) {
  wchar_t text[200] = {};
  EXPECT_EQ(SUCCESS, GetDialogStringText(id, text, 200));
  return text;
}

struct HelpCall {
  uint32_t dialog = 0;
  int32_t control = 0;
  void* userData = nullptr;
  int count = 0;
};

void RememberHelp(uint32_t dialog, int32_t control, void* userData) {
  auto* const call = static_cast<HelpCall*>(userData);
  call->dialog = dialog;
  call->control = control;
  call->userData = userData;
  ++call->count;
}

class DirectoryDialog : public ::testing::Test {
 protected:
  DirectoryDialog() : start(folder.AddFolder(L"start")), inner(folder.AddFolder(L"start\\inner")) {
    params.uStructSize = sizeof(params);
    UseBuffer(MAX_PATH);
    params.position = {40, 30};
  }

  void UseBuffer(size_t length) {
    buffer.assign(length, L'\0');
    StartIn(start);
    params.directoryBuffer = buffer.data();
    params.bufferLength = static_cast<int32_t>(length);
  }

  void StartIn(const std::wstring& path) {
    std::ranges::fill(buffer, L'\0');
    path.copy(buffer.data(), buffer.size() - 1);
  }
  // From the inner folder to the one that it stands in.
  void GoUp(HWND dialog) const {
    SelectCombo(dialog, kLookInCombo, ComboSelection(dialog, kLookInCombo) - 1);
    WaitUntil([&] { return TextOf(dialog, kFolderEdit) == start; }, "the folder above is shown");
  }

  // Shows the picker; the script gets it once the folder is shown.
  int32_t Pick(const std::function<void(HWND)>& script) {
    return DriveDialog([this] { return Z_DlgGetDirectory(parent.hwnd(), &params); },
                       [&] {
                         const HWND dialog = WaitForDialogWith(kFolderEdit);
                         WaitUntil([=] { return ::IsWindowVisible(dialog) && !TextOf(dialog, kFolderEdit).empty(); },
                                   "the folder is shown");
                         script(dialog);
                       });
  }

  std::wstring Chosen() const { return buffer.c_str(); }

  TemporaryFolder folder;
  ParentWindow parent;
  std::wstring start;
  std::wstring inner;
  std::wstring buffer;
  DIRECTORYDLGPARAMS params = {};
};

void PressOk(HWND dialog) { Click(dialog, IDOK); }
void PressCancel(HWND dialog) { Click(dialog, IDCANCEL); }

TEST_F(DirectoryDialog, GivesTheFolderItStartedInOnOk) {
  EXPECT_EQ(SUCCESS_DLG_OK, Pick([this](HWND dialog) {
              EXPECT_EQ(start, TextOf(dialog, kFolderEdit));
              EXPECT_TRUE(SaveScreenshot(dialog, L"directory_compact"));
              PressOk(dialog);
            }));
  EXPECT_EQ(start, Chosen());
}

TEST_F(DirectoryDialog, AcceptsANullParent) {
  const int32_t result = DriveDialog([this] { return Z_DlgGetDirectory(nullptr, &params); },
                                     [] { PressOk(WaitForDialogWith(kFolderEdit)); });
  EXPECT_EQ(SUCCESS_DLG_OK, result);
}

TEST_F(DirectoryDialog, GivesTheFolderLastShownAfterCancel) {
  StartIn(inner);
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Pick([this](HWND dialog) {
              GoUp(dialog);
              PressCancel(dialog);
            }));
  EXPECT_EQ(start, Chosen());
}

TEST_F(DirectoryDialog, CancelsWithEscape) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Pick([](HWND dialog) { PressKey(dialog, VK_ESCAPE); }));
}

TEST_F(DirectoryDialog, CancelsWithItsCloseBox) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Pick([](HWND dialog) { zvtest::CloseWindow(dialog); }));
}

TEST_F(DirectoryDialog, TakesABufferOneCharacterLongerThanTheFolder) {
  UseBuffer(start.size() + 1);
  EXPECT_EQ(SUCCESS_DLG_OK, Pick(PressOk));
  EXPECT_EQ(start, Chosen());
}

TEST_F(DirectoryDialog, RefusesABufferExactlyAsLongAsTheFolderAfterOkAndAfterCancel) {
  for (const auto press : {PressOk, PressCancel}) {
    buffer = start;  // fills the buffer without a terminator of its own
    params.bufferLength = static_cast<int32_t>(start.size());
    EXPECT_EQ(ERROR_BUFFER_TOO_SMALL, Pick(press));
    EXPECT_EQ(start, buffer) << "a buffer that is too small is left alone";
  }
}

TEST_F(DirectoryDialog, FollowsTheUserToAnotherFolder) {
  StartIn(inner);
  const int32_t result = Pick([this](HWND dialog) {
    EXPECT_EQ(inner, TextOf(dialog, kFolderEdit));
    GoUp(dialog);
    PressOk(dialog);
  });
  EXPECT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(start, Chosen());
}

TEST_F(DirectoryDialog, RefusesBadFieldsWithoutShowing) {
  params.filterIndex = -1;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgGetDirectory(parent.hwnd(), &params));
  params.filterIndex = 0;
  params.bufferLength = 0;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgGetDirectory(parent.hwnd(), &params));
  params.bufferLength = -5;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgGetDirectory(parent.hwnd(), &params));
  params.bufferLength = MAX_PATH;
  params.directoryBuffer = nullptr;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgGetDirectory(parent.hwnd(), &params));
}

TEST_F(DirectoryDialog, ShowsTheKernelsTexts) {
  params.filter = L"All (*.*)\0*.*\0Text\0*.txt\0";
  Pick([](HWND dialog) {
    EXPECT_EQ(KernelText(1418), TextOf(dialog));
    EXPECT_EQ(KernelText(1419), TextOf(dialog, kLookInLabel));
    EXPECT_EQ(KernelText(1420), TextOf(dialog, kTypeLabel));
    EXPECT_EQ(KernelText(1422), TextOf(dialog, kFolderLabel));
    EXPECT_EQ(KernelText(1421), TextOf(dialog, IDOK));
    EXPECT_EQ(KernelText(1), TextOf(dialog, IDCANCEL));
    PressCancel(dialog);
  });
}

TEST_F(DirectoryDialog, ShowsTheCallersTitleInsteadOfItsOwn) {
  params.title = L"Where to?";
  Pick([](HWND dialog) {
    EXPECT_EQ(L"Where to?", TextOf(dialog));
    PressCancel(dialog);
  });
}

TEST_F(DirectoryDialog, HidesTheNameRowAndWithoutAFilterTheTypeRow) {
  Pick([](HWND dialog) {
    EXPECT_FALSE(IsShown(dialog, kNameLabel));
    EXPECT_FALSE(IsShown(dialog, kTypeLabel));
    EXPECT_FALSE(IsShown(dialog, kTypeCombo));
    EXPECT_TRUE(IsShown(dialog, kFolderEdit));
    PressCancel(dialog);
  });
}

TEST_F(DirectoryDialog, StandsButtonsUnderTheFolderWithoutAFilter) {
  Pick([](HWND dialog) {
    const RECT ok = RectIn(dialog, IDOK);
    const RECT cancel = RectIn(dialog, IDCANCEL);
    const RECT edit = RectIn(dialog, kFolderEdit);
    EXPECT_EQ(ok.top, cancel.top);
    EXPECT_LT(ok.right, cancel.left);
    EXPECT_GE(ok.top, edit.bottom);
    EXPECT_GE(edit.top, RectIn(dialog, kList).bottom);
    PressCancel(dialog);
  });
}

TEST_F(DirectoryDialog, LinesTheTypeRowUpWithOkAndGivesTheChosenTypeBack) {
  params.filter = L"All (*.*)\0*.*\0Text\0*.txt\0";
  params.filterIndex = 1;
  const int32_t result = Pick([](HWND dialog) {
    EXPECT_TRUE(SaveScreenshot(dialog, L"directory_filter"));
    EXPECT_EQ(RectIn(dialog, IDOK).top, RectIn(dialog, kTypeCombo).top);
    EXPECT_EQ(RectIn(dialog, IDOK).top, RectIn(dialog, kTypeLabel).top);
    SelectCombo(dialog, kTypeCombo, 1);
    PressOk(dialog);
  });
  EXPECT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(2, params.filterIndex);
}

TEST_F(DirectoryDialog, KeepsTheFilterIndexAfterCancel) {
  params.filter = L"All (*.*)\0*.*\0Text\0*.txt\0";
  params.filterIndex = 1;
  Pick([](HWND dialog) {
    SelectCombo(dialog, kTypeCombo, 1);
    PressCancel(dialog);
  });
  EXPECT_EQ(1, params.filterIndex);
}

TEST_F(DirectoryDialog, IsPlacedAtTheRecordsPoint) {
  params.position = {120, 90};
  Pick([](HWND dialog) {
    RECT frame;
    ::GetWindowRect(dialog, &frame);
    EXPECT_EQ(120, frame.left);
    EXPECT_EQ(90, frame.top);
    PressCancel(dialog);
  });
}

TEST_F(DirectoryDialog, HasNoHelpButtonWithoutACallback) {
  Pick([](HWND dialog) {
    const HWND help = FindControl(dialog, kHelp);
    EXPECT_TRUE(!help || !::IsWindowVisible(help));
    PressCancel(dialog);
  });
}

TEST_F(DirectoryDialog, ReportsItsHelpButtonAndContextHelp) {
  HelpCall call;
  params.helpCallback = RememberHelp;
  params.helpUserData = &call;
  Pick([&](HWND dialog) {
    EXPECT_TRUE(SaveScreenshot(dialog, L"directory_help"));
    EXPECT_LT(RectIn(dialog, IDCANCEL).right, RectIn(dialog, kHelp).left);
    Click(dialog, kHelp);
    WaitUntil([&] { return call.count == 1; }, "the help callback is called");
    EXPECT_EQ(13u, call.dialog);
    EXPECT_EQ(-1, call.control);
    EXPECT_EQ(&call, call.userData);

    HELPINFO info = {};
    info.cbSize = sizeof(info);
    info.iContextType = HELPINFO_WINDOW;
    info.iCtrlId = kFolderEdit;
    info.hItemHandle = Control(dialog, kFolderEdit);
    EXPECT_NE(0,
              ::SendMessageW(::GetParent(Control(dialog, kFolderEdit)), WM_HELP, 0, reinterpret_cast<LPARAM>(&info)));
    EXPECT_EQ(2, call.count);
    EXPECT_EQ(kFolderEdit, call.control);
    PressCancel(dialog);
  });
}

TEST_F(DirectoryDialog, StaysOpenOnAFolderWithoutAPath) {
  const int32_t result = Pick([](HWND dialog) {
    // Up the look-in list, to the first place that the folder edit does not follow: the computer itself.
    const int row = ComboSelection(dialog, kLookInCombo);
    bool reached = false;
    for (int above = row - 1; above >= 0 && !reached; --above) {
      const std::wstring before = TextOf(dialog, kFolderEdit);
      SelectCombo(dialog, kLookInCombo, above);
      reached = TextOf(dialog, kFolderEdit) == before;
    }
    ASSERT_TRUE(reached) << "this system's look-in list has only folders with a path";
    Click(dialog, IDOK);
    EXPECT_FALSE(HoldsWithin(500, [=] { return !::IsWindowVisible(dialog); })) << "OK must not take it";
    PressCancel(dialog);
  });
  EXPECT_EQ(SUCCESS_DLG_CANCEL, result);
  EXPECT_EQ(L"", Chosen()) << "the place last shown has no path to give";
}

TEST_F(DirectoryDialog, LeavesTheWorkingDirectoryAlone) {
  wchar_t before[MAX_PATH], after[MAX_PATH];
  ::GetCurrentDirectoryW(MAX_PATH, before);
  Pick(PressOk);
  ::GetCurrentDirectoryW(MAX_PATH, after);
  EXPECT_STREQ(before, after);
}

TEST_F(DirectoryDialog, TakesEightBitRecords) {
  char ansiFolder[MAX_PATH] = {};
  ::WideCharToMultiByte(CP_ACP, 0, start.c_str(), -1, ansiFolder, MAX_PATH, nullptr, nullptr);
  const char filter[] = "All (*.*)\0*.*\0Text\0*.txt\0";
  DIRECTORYDLGPARAMSA ansi = {};
  ansi.uStructSize = sizeof(ansi);
  ansi.directoryBuffer = ansiFolder;
  ansi.bufferLength = MAX_PATH;
  ansi.filter = filter;
  ansi.filterIndex = 1;
  ansi.title = "Eight bits";
  const std::string before = ansiFolder;
  const int32_t result = DriveDialog([&] { return Z_DlgGetDirectoryA(parent.hwnd(), &ansi); },
                                     [] {
                                       const HWND dialog = WaitForDialogTitled(L"Eight bits");
                                       SelectCombo(dialog, kTypeCombo, 1);
                                       PressOk(dialog);
                                     });
  EXPECT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(before, ansiFolder);
  EXPECT_EQ(2, ansi.filterIndex);
  EXPECT_STREQ("*.txt", ansi.filter) << "the pointer is left at the last string";
}

TEST_F(DirectoryDialog, GivesEightBitCallersNothingBackAfterCancel) {
  char ansiFolder[MAX_PATH] = {};
  ::WideCharToMultiByte(CP_ACP, 0, inner.c_str(), -1, ansiFolder, MAX_PATH, nullptr, nullptr);
  const std::string before = ansiFolder;
  DIRECTORYDLGPARAMSA ansi = {};
  ansi.uStructSize = 59;  // not what the dialog's own record has
  ansi.directoryBuffer = ansiFolder;
  ansi.bufferLength = MAX_PATH;
  ansi.title = "Eight bits";
  const int32_t result =
      DriveDialog([&] { return Z_DlgGetDirectoryA(parent.hwnd(), &ansi); },
                  [&] {
                    const HWND dialog = WaitForDialogTitled(L"Eight bits");
                    WaitUntil([&] { return TextOf(dialog, kFolderEdit) == inner; }, "the folder is shown");
                    GoUp(dialog);
                    PressCancel(dialog);
                  });
  EXPECT_EQ(SUCCESS_DLG_CANCEL, result);
  EXPECT_EQ(before, ansiFolder) << "the folder last shown is not told";
  EXPECT_EQ(59u, ansi.uStructSize);
  EXPECT_EQ(MAX_PATH, ansi.bufferLength);
}

TEST_F(DirectoryDialog, LeavesNothingBehindAfterTwoHundredOpenings) {
  ExpectNothingLeftBehind([this] { EXPECT_EQ(SUCCESS_DLG_OK, Pick(PressOk)); },
                          {.systemLeaves = SystemOpenDialogLeaves()});
}

}  // namespace
