// The ICC profile dialog through its export: its record, what it shows, and its controls.
#include <cstring>

#include "tests/dialogs/icc_profile_fixture.h"

namespace {

using namespace zvtest;

constexpr int kLoadControls[] = {IDG_ICC_LOAD, IDC_ICC_LOAD_TYPE, IDE_ICC_LOAD_PATH, IDB_ICC_LOAD_BROWSE,
                                 IDB_ICC_LOAD, IDT_ICC_LOAD_PAGE, IDE_ICC_LOAD_PAGE};
constexpr int kSaveControls[] = {IDG_ICC_SAVE, IDC_ICC_SAVE_TYPE, IDE_ICC_SAVE_PATH, IDB_ICC_SAVE_BROWSE,
                                 IDB_ICC_SAVE, IDT_ICC_SAVE_PAGE, IDE_ICC_SAVE_PAGE};
constexpr int kFileNameList = 0x470 + 12, kFileTypes = 0x470;  // cmb13 and cmb1 of the system's file dialog

struct HelpCall {
  uint32_t dialog;
  int32_t control;
  void* userData;
};
std::vector<HelpCall> helpCalls;
void ZV_CALL RecordHelp(uint32_t dialog, int32_t control, void* userData) {
  helpCalls.push_back({dialog, control, userData});
}

bool operator==(const RECT& a, const RECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

// --- The record ---

TEST_F(IccProfile, RefusesABadRecordOrParentAndShowsNothing) {
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgICCProfile(parent.hwnd(), nullptr));
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgICCProfile(nullptr, &params));
  for (const uint32_t tag : {0u, 616u, 1143u, 1145u}) {
    params.uStructSize = tag;
    EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_DlgICCProfile(parent.hwnd(), &params)) << tag;
  }
}

TEST_F(IccProfile, RefusesARecordThatShowsNoGroup) {
  for (const uint32_t flags : {0u, DLG_ICC_CONTEXTHELP}) {
    params.flags = flags;
    EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgICCProfile(parent.hwnd(), &params));
  }
}

TEST_F(IccProfile, LeavesPathsAndFlagsOfTheRecord) {
  SetLoadPath(L"C:\\in.icc");
  SetSavePath(L"C:\\out.icc");
  const ICCPROFILEDLGPARAMS before = params;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) {
              EXPECT_EQ(L"C:\\in.icc", TextOf(dialog, IDE_ICC_LOAD_PATH));
              EXPECT_EQ(L"C:\\out.icc", TextOf(dialog, IDE_ICC_SAVE_PATH));
            }));
  EXPECT_EQ(0, std::memcmp(&before, &params, sizeof(params)));
}

// --- What is shown ---

struct Shown {
  uint32_t flags;
  const wchar_t* title;
  const wchar_t* picture;
};
class IccLayout : public IccProfile, public testing::WithParamInterface<std::tuple<Shown, bool, bool>> {};

TEST_P(IccLayout, ShowsTheGroupsThatWereAskedFor) {
  const auto [shown, hasQuestionMark, hasHelp] = GetParam();
  params.flags = shown.flags | (hasQuestionMark ? DLG_ICC_CONTEXTHELP : 0);
  params.helpCallback = hasHelp ? &RecordHelp : nullptr;
  EXPECT_EQ(SUCCESS_DLG_CLOSE,
            RunAndClose([&, shown = shown, hasQuestionMark = hasQuestionMark, hasHelp = hasHelp](HWND dialog) {
              EXPECT_EQ(shown.title, TextOf(dialog));
              for (const int id : kLoadControls)
                EXPECT_EQ((shown.flags & DLG_ICC_SHOW_LOAD) != 0, IsShown(dialog, id)) << id;
              for (const int id : kSaveControls)
                EXPECT_EQ((shown.flags & DLG_ICC_SHOW_SAVE) != 0, IsShown(dialog, id)) << id;
              EXPECT_EQ(hasHelp, IsShown(dialog, IDB_ICC_HELP));
              const bool hasStyle = ::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP;
              EXPECT_EQ(hasQuestionMark || hasHelp, hasStyle);
              EXPECT_EQ(L"Close", TextOf(dialog, IDB_ICC_CLOSE));
              RECT client;
              ::GetClientRect(dialog, &client);
              const RECT close = RectIn(dialog, IDB_ICC_CLOSE), line = RectIn(dialog, IDT_ICC_LINE);
              EXPECT_LT(line.bottom, close.top);
              EXPECT_LT(close.bottom, client.bottom);
              EXPECT_LE(client.bottom - close.bottom, 20) << "no empty space below";
              if (!hasHelp) {
                EXPECT_NEAR(client.right, close.left + close.right, 2) << "alone in the middle";
              }
              const std::wstring name = std::wstring(shown.picture) + (hasHelp ? L"_help" : L"");
              if (!hasQuestionMark) {
                EXPECT_TRUE(SaveScreenshot(dialog, name));
              }
            }));
}

INSTANTIATE_TEST_SUITE_P(Flags, IccLayout,
                         testing::Combine(testing::Values(Shown{kBothGroups, L"Load and Save ICC Profile", L"icc_both"},
                                                          Shown{DLG_ICC_SHOW_LOAD, L"Load ICC Profile", L"icc_load"},
                                                          Shown{DLG_ICC_SHOW_SAVE, L"Save ICC Profile", L"icc_save"}),
                                          testing::Bool(), testing::Bool()));

TEST_F(IccProfile, OneGroupAloneStandsInTheFirstPlaceOfAShorterDialog) {
  std::vector<RECT> places;
  int height = 0, shift = 0;
  RECT close = {};
  RunAndClose([&](HWND dialog) {
    for (const int id : kLoadControls) places.push_back(RectIn(dialog, id));
    shift = RectIn(dialog, IDG_ICC_SAVE).bottom - RectIn(dialog, IDG_ICC_LOAD).bottom;
    close = RectIn(dialog, IDB_ICC_CLOSE);
    RECT window;
    ::GetWindowRect(dialog, &window);
    height = window.bottom - window.top;
  });
  ASSERT_GT(shift, 0);
  for (const uint32_t flags : {DLG_ICC_SHOW_LOAD, DLG_ICC_SHOW_SAVE}) {
    params.flags = flags;
    RunAndClose([&](HWND dialog) {
      for (size_t i = 0; i < places.size(); ++i) {
        const RECT place = RectIn(dialog, flags == DLG_ICC_SHOW_SAVE ? kSaveControls[i] : kLoadControls[i]);
        EXPECT_TRUE(place == places[i]) << i;
      }
      RECT window;
      ::GetWindowRect(dialog, &window);
      EXPECT_EQ(height - shift, window.bottom - window.top);
      EXPECT_EQ(close.top - shift, RectIn(dialog, IDB_ICC_CLOSE).top);
    });
  }
}

TEST_F(IccProfile, HelpReachesTheCallbackWithTheDialogsNumber) {
  helpCalls.clear();
  int token = 0;
  params.helpCallback = &RecordHelp;
  params.helpUserData = &token;
  RunAndClose([](HWND dialog) {
    ::SendMessageW(Control(dialog, IDB_ICC_HELP), BM_CLICK, 0, 0);
    HELPINFO info = {sizeof(info), HELPINFO_WINDOW, IDB_ICC_LOAD, nullptr, 0, {}};
    ::SendMessageW(dialog, WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
  });
  ASSERT_EQ(2u, helpCalls.size());
  EXPECT_EQ(122u, helpCalls[0].dialog);
  EXPECT_EQ(-1, helpCalls[0].control);
  EXPECT_EQ(&token, helpCalls[0].userData);
  EXPECT_EQ(IDB_ICC_LOAD, helpCalls[1].control);
}

TEST_F(IccProfile, StandsWhereTheCallerWantsIt) {
  const POINT place = {110, 90};
  params.position = &place;
  RunAndClose([](HWND dialog) {
    RECT window;
    ::GetWindowRect(dialog, &window);
    EXPECT_EQ(110, window.left);
    EXPECT_EQ(90, window.top);
  });
}

TEST_F(IccProfile, ListsNameIccFileAndImage) {
  RunAndClose([](HWND dialog) {
    for (const int list : {IDC_ICC_LOAD_TYPE, IDC_ICC_SAVE_TYPE}) {
      EXPECT_EQ(2, ComboCount(dialog, list));
      EXPECT_EQ(0, ComboSelection(dialog, list));
      EXPECT_EQ(L"ICC File", ComboText(dialog, list, kIccFile));
      EXPECT_EQ(L"Image File", ComboText(dialog, list, kImage));
      EXPECT_EQ(0, ::SendMessageW(Control(dialog, list), CB_GETITEMDATA, 0, 0));
      EXPECT_EQ(1, ::SendMessageW(Control(dialog, list), CB_GETITEMDATA, 1, 0));
    }
  });
}

// --- Controls ---

TEST_F(IccProfile, APageCanBeGivenForImagesAlone) {
  SetLoadPath(L"C:\\in.icc");
  RunAndClose([](HWND dialog) {
    for (const auto& [list, label, page] : {std::tuple(IDC_ICC_LOAD_TYPE, IDT_ICC_LOAD_PAGE, IDE_ICC_LOAD_PAGE),
                                            std::tuple(IDC_ICC_SAVE_TYPE, IDT_ICC_SAVE_PAGE, IDE_ICC_SAVE_PAGE)}) {
      EXPECT_EQ(L"1", TextOf(dialog, page));
      EXPECT_FALSE(IsEnabled(dialog, page) || IsEnabled(dialog, label));
      SelectCombo(dialog, list, kImage);
      EXPECT_TRUE(IsEnabled(dialog, page) && IsEnabled(dialog, label));
      SelectCombo(dialog, list, kIccFile);
      EXPECT_FALSE(IsEnabled(dialog, page) || IsEnabled(dialog, label));
    }
    EXPECT_EQ(L"C:\\in.icc", TextOf(dialog, IDE_ICC_LOAD_PATH)) << "the path is kept";
  });
}

TEST_F(IccProfile, APageBelowOneBecomesOneWithItsFirstCharacterSelected) {
  RunAndClose([](HWND dialog) {
    SelectCombo(dialog, IDC_ICC_LOAD_TYPE, kImage);
    SelectCombo(dialog, IDC_ICC_SAVE_TYPE, kImage);
    for (const int page : {IDE_ICC_LOAD_PAGE, IDE_ICC_SAVE_PAGE}) {
      for (const wchar_t* text : {L"0", L"000", L"", L"-4"}) {
        SetText(dialog, page, text);
        EXPECT_EQ(L"1", TextOf(dialog, page));
        EXPECT_EQ(MAKELONG(0, 1), ::SendMessageW(Control(dialog, page), EM_GETSEL, 0, 0));
      }
      SetText(dialog, page, L"42");
      EXPECT_EQ(L"42", TextOf(dialog, page));
      EXPECT_EQ(8, ::SendMessageW(Control(dialog, page), EM_GETLIMITTEXT, 0, 0));
    }
  });
}

TEST_F(IccProfile, PathsCannotBeTyped) {
  RunAndClose([](HWND dialog) {
    EXPECT_TRUE(::GetWindowLongW(Control(dialog, IDE_ICC_LOAD_PATH), GWL_STYLE) & ES_READONLY);
    EXPECT_TRUE(::GetWindowLongW(Control(dialog, IDE_ICC_SAVE_PATH), GWL_STYLE) & ES_READONLY);
  });
}

TEST_F(IccProfile, SaveStartsEnabledExactlyWhenThereIsAProfile) {
  RunAndClose([](HWND dialog) { EXPECT_FALSE(IsEnabled(dialog, IDB_ICC_SAVE)); });
  PassIn(RgbProfile());
  RunAndClose([](HWND dialog) { EXPECT_TRUE(IsEnabled(dialog, IDB_ICC_SAVE)); });
}

TEST_F(IccProfile, BrowsingTakesAPathOrKeepsTheFormerOne) {
  const std::wstring path = AddProfile(RgbProfile());
  SetLoadPath(L"C:\\former.icc");
  RunAndClose([&](HWND dialog) {
    Click(dialog, IDB_ICC_LOAD_BROWSE);
    HWND picker = WaitForDialogWith(kFileTypes);
    EXPECT_EQ(0, ComboSelection(picker, kFileTypes));
    EXPECT_EQ(2, ComboCount(picker, kFileTypes));
    EXPECT_EQ(L"ICC files (*.icc)", ComboText(picker, kFileTypes, 0));
    EXPECT_EQ(L" Image files (*.jpg;*.tif;*.eps;*.pct)", ComboText(picker, kFileTypes, 1));
    Click(picker, IDCANCEL);
    WaitUntilClosed(picker);
    EXPECT_EQ(L"C:\\former.icc", TextOf(dialog, IDE_ICC_LOAD_PATH));
    SelectCombo(dialog, IDC_ICC_LOAD_TYPE, kImage);
    Click(dialog, IDB_ICC_LOAD_BROWSE);
    picker = WaitForDialogWith(kFileTypes);
    EXPECT_EQ(1, ComboSelection(picker, kFileTypes)) << "images were chosen";
    SetText(picker, kFileNameList, path);
    Click(picker, IDOK);
    WaitUntilClosed(picker);
    WaitUntil([&] { return TextOf(dialog, IDE_ICC_LOAD_PATH) == path; }, "the path is shown");
  });
  EXPECT_STREQ(L"C:\\former.icc", params.loadPath) << "the choice ends with the dialog";
}

TEST_F(IccProfile, BrowsingForASaveOffersTheFilesOfTheChosenKind) {
  PassIn(RgbProfile());
  RunAndClose([&](HWND dialog) {
    Click(dialog, IDB_ICC_SAVE_BROWSE);
    HWND picker = WaitForDialogWith(kFileTypes);
    EXPECT_EQ(1, ComboCount(picker, kFileTypes));
    EXPECT_EQ(L"ICC files (*.icc)", ComboText(picker, kFileTypes, 0));
    SetText(picker, kFileNameList, folder.File(L"new.icc"));
    Click(picker, IDOK);
    WaitUntilClosed(picker);
    WaitUntil([&] { return TextOf(dialog, IDE_ICC_SAVE_PATH) == folder.File(L"new.icc"); }, "the path is shown");
    SelectCombo(dialog, IDC_ICC_SAVE_TYPE, kImage);
    Click(dialog, IDB_ICC_SAVE_BROWSE);
    picker = WaitForDialogWith(kFileTypes);
    EXPECT_EQ(1, ComboCount(picker, kFileTypes));
    EXPECT_EQ(L"Image files (*.jpg;*.tif;*.eps;*.pct)", ComboText(picker, kFileTypes, 0));
    Click(picker, IDCANCEL);
    WaitUntilClosed(picker);
  });
}

}  // namespace
