// The ICC profile dialog through its export, over the real colour library.
#include <algorithm>
#include <cstring>

#include "tests/dialogs/icc_fixture.h"
#include "tests/support/icc_profiles.h"
#include "tests/support/pictures.h"

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

class IccProfile : public IccDialog {
 protected:
  ~IccProfile() override { Z_FreeICCProfile(&params.iccProfile); }

  FileBytes InRecord() const {
    const auto* data = static_cast<const uint8_t*>(params.iccProfile.data);
    return FileBytes(data, data + params.iccProfile.dataSize);
  }
  std::wstring AddProfile(const FileBytes& bytes) { return folder.AddFile(L"given.icc", bytes); }
  void PassIn(const FileBytes& bytes) {
    ASSERT_EQ(SUCCESS, Z_FillICCProfileFromICCFile(AddProfile(bytes).c_str(), &params.iccProfile));
  }
  std::wstring Picture(const std::wstring& name, const PictureKind& kind) {
    const std::wstring path = folder.File(name);
    EXPECT_TRUE(WritePicture(path, kind)) << "a picture for the test";
    return path;
  }
};

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

// --- Loading and saving ---

TEST_F(IccProfile, LoadsAnIccFileAndHandsItOver) {
  const FileBytes bytes = RgbProfile({2.1});
  const std::wstring path = AddProfile(bytes);
  SetLoadPath(path);
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([&](HWND dialog) {
              const Message message = PressForMessage(dialog, IDB_ICC_LOAD);
              EXPECT_EQ(L"The ICC profile was loaded from this file:\n" + path, message.text);
              EXPECT_EQ(L"Load ICC Profile", message.caption);
              EXPECT_TRUE(IsEnabled(dialog, IDB_ICC_SAVE));
            }));
  EXPECT_EQ(bytes, InRecord());
}

TEST_F(IccProfile, CarriesAProfileFromOneImageToAPageOfAnother) {
  const FileBytes bytes = RgbProfile({4.3, 100'000});
  const std::wstring from = Picture(L"from.jpg", {40, 20, FMT_JPEG});
  ICCPROFILEDATA made = {};
  ASSERT_EQ(SUCCESS, Z_FillICCProfileFromICCFile(AddProfile(bytes).c_str(), &made));
  ASSERT_EQ(SUCCESS, Z_SaveICCProfile(from.c_str(), &made, nullptr));
  Z_FreeICCProfile(&made);
  const std::wstring to = Picture(L"to.tif", {40, 20, FMT_TIFF, 3});
  const FileBytes pixels = PixelsOf(to, 2);
  SetLoadPath(from);
  SetSavePath(to);
  RunAndClose([&](HWND dialog) {
    SelectCombo(dialog, IDC_ICC_LOAD_TYPE, kImage);
    PressForMessage(dialog, IDB_ICC_LOAD);
    SelectCombo(dialog, IDC_ICC_SAVE_TYPE, kImage);
    SetText(dialog, IDE_ICC_SAVE_PAGE, L"2");
    const Message message = PressForMessage(dialog, IDB_ICC_SAVE);
    EXPECT_EQ(L"The ICC profile was saved to this file:\n" + to, message.text);
    EXPECT_EQ(L"Save ICC Profile", message.caption);
  });
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = 2;
  ASSERT_EQ(SUCCESS, Z_LoadICCProfile(to.c_str(), &made, &option));
  EXPECT_EQ(bytes, FileBytes(static_cast<uint8_t*>(made.data), static_cast<uint8_t*>(made.data) + made.dataSize));
  Z_FreeICCProfile(&made);
  option.pageNumber = 1;
  EXPECT_EQ(ERROR_PROFILE_MISSING, Z_LoadICCProfile(to.c_str(), &made, &option));
  EXPECT_EQ(pixels, PixelsOf(to, 2));
}

TEST_F(IccProfile, SavesThePassedInProfileToAnIccFileWhateverThePage) {
  const FileBytes bytes = GrayProfile();
  PassIn(bytes);
  const void* const data = params.iccProfile.data;
  SetSavePath(folder.File(L"out.icc"));
  RunAndClose([](HWND dialog) {
    SelectCombo(dialog, IDC_ICC_SAVE_TYPE, kImage);
    SetText(dialog, IDE_ICC_SAVE_PAGE, L"99");
    SelectCombo(dialog, IDC_ICC_SAVE_TYPE, kIccFile);
    PressForMessage(dialog, IDB_ICC_SAVE);
  });
  EXPECT_EQ(bytes, ReadWholeFile(folder.File(L"out.icc")));
  EXPECT_EQ(data, params.iccProfile.data);
  EXPECT_EQ(bytes, InRecord());
}

TEST_F(IccProfile, APassedInProfileLivesOnWhateverWasLoaded) {
  PassIn(GrayProfile());
  ICCPROFILEDATA former = params.iccProfile;
  SetLoadPath(folder.AddFile(L"other.icc", RgbProfile()));
  EXPECT_EQ(SUCCESS_DLG_CLOSE, Run([](HWND dialog) {
              PressForMessage(dialog, IDB_ICC_LOAD);
              Escape(dialog);
            }));
  EXPECT_EQ(0, std::memcmp(&former, &params.iccProfile, sizeof(former)));
  EXPECT_EQ(GrayProfile(), InRecord());
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) { PressForMessage(dialog, IDB_ICC_LOAD); }));
  EXPECT_EQ(RgbProfile(), InRecord());
  EXPECT_EQ(GrayProfile(),
            FileBytes(static_cast<uint8_t*>(former.data), static_cast<uint8_t*>(former.data) + former.dataSize));
  Z_FreeICCProfile(&former);
}

TEST_F(IccProfile, TheSystemMenuEndsItWithoutTouchingTheRecord) {
  SetLoadPath(AddProfile(RgbProfile()));
  EXPECT_EQ(SUCCESS_DLG_CLOSE, Run([](HWND dialog) {
              PressForMessage(dialog, IDB_ICC_LOAD);
              zvtest::CloseWindow(dialog);
              WaitUntilClosed(dialog);
            }));
  EXPECT_EQ(nullptr, params.iccProfile.data);
  EXPECT_EQ(0u, params.iccProfile.dataSize);
}

struct BadFile {
  const char* name;
  int type;
  FileBytes (*content)();
  const wchar_t* text;
};
class IccBadFile : public IccProfile, public testing::WithParamInterface<BadFile> {};

TEST_P(IccBadFile, IsToldAndLeavesTheRecordClean) {
  SetLoadPath(folder.AddFile(L"bad", GetParam().content()));
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) {
              SelectCombo(dialog, IDC_ICC_LOAD_TYPE, GetParam().type);
              const Message message = PressForMessage(dialog, IDB_ICC_LOAD);
              EXPECT_EQ(GetParam().text, message.text);
              EXPECT_EQ(L"ICC Profile", message.caption);
              EXPECT_FALSE(IsEnabled(dialog, IDB_ICC_SAVE));
            }));
  EXPECT_EQ(0u, params.iccProfile.dataSize);
  EXPECT_EQ(nullptr, params.iccProfile.data);
  EXPECT_EQ(nullptr, params.iccProfile.tags);
}

FileBytes WithNumberAt(size_t at, uint8_t a, uint8_t b, uint8_t c, uint8_t d) {
  FileBytes bytes = RgbProfile();
  std::copy_n(std::initializer_list<uint8_t>{a, b, c, d}.begin(), 4, bytes.begin() + static_cast<ptrdiff_t>(at));
  return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    Files, IccBadFile,
    testing::Values(
        BadFile{"TruncatedTagTable", kIccFile,
                [] {
                  FileBytes bytes = RgbProfile();
                  bytes.resize(150);
                  return bytes;
                },
                L"The ICC profile is damaged."},
        BadFile{"WrongSize", kIccFile, [] { return WithNumberAt(0, 0, 0, 1, 0); }, L"The ICC profile is damaged."},
        BadFile{"FourGigabytes", kIccFile, [] { return WithNumberAt(0, 255, 255, 255, 255); },
                L"The ICC profile is damaged."},
        BadFile{"Version5", kIccFile, [] { return WithNumberAt(8, 5, 0, 0, 0); },
                L"The version of the ICC profile is not known."},
        BadFile{"NoIccFile", kIccFile, [] { return FileBytes(1000, 'x'); }, L"The format of the file is not known."},
        BadFile{"NoImage", kImage, [] { return FileBytes(1000, 'x'); }, L"The format of the file is not known."},
        BadFile{"ImageOfAFormatWithoutProfiles", kImage,
                [] {
                  return FileBytes({'%', '!', 'P', 'S', '-', 'A', 'd', 'o', 'b', 'e', '\n'});
                },
                L"A file of this format cannot hold an ICC profile."}),
    [](const auto& test) { return test.param.name; });

TEST_F(IccProfile, AnEmptyPathIsForTheColorLibraryToRefuse) {
  RunAndClose([](HWND dialog) {
    EXPECT_EQ(L"The file could not be opened.", PressForMessage(dialog, IDB_ICC_LOAD).text);
    SelectCombo(dialog, IDC_ICC_LOAD_TYPE, kImage);
    EXPECT_EQ(L"The file could not be opened.", PressForMessage(dialog, IDB_ICC_LOAD).text);
  });
}

TEST_F(IccProfile, AnImageWithoutAProfileIsToldSo) {
  SetLoadPath(Picture(L"plain.png", {40, 20, FMT_PNG}));
  RunAndClose([](HWND dialog) {
    SelectCombo(dialog, IDC_ICC_LOAD_TYPE, kImage);
    EXPECT_EQ(L"The file holds no ICC profile.", PressForMessage(dialog, IDB_ICC_LOAD).text);
  });
}

TEST_F(IccProfile, TheEightBitTwinLeavesItsRecordAsItWasAndNoMemoryBehind) {
  const std::wstring path = AddProfile(RgbProfile());
  ICCPROFILEDLGPARAMSA narrow = {};
  narrow.uStructSize = sizeof(narrow);
  narrow.flags = kBothGroups;
  ::WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, narrow.loadPath, ZVDLG_PATH_LENGTH, nullptr, nullptr);
  const ICCPROFILEDLGPARAMSA before = narrow;
  const int64_t blocks = CoreBlockCount();
  EXPECT_EQ(SUCCESS_DLG_CLOSE, DriveDialog([&] { return Z_DlgICCProfileA(parent.hwnd(), &narrow); },
                                           [] {
                                             const HWND dialog = WaitForDialogWith(IDB_ICC_HELP);
                                             PressForMessage(dialog, IDB_ICC_LOAD);
                                             Close(dialog);
                                           }));
  EXPECT_EQ(0, std::memcmp(&before, &narrow, sizeof(narrow)));
  EXPECT_EQ(blocks, CoreBlockCount());
}

TEST_F(IccProfile, OpeningLoadingAndClosingLeavesNothingBehind) {
  SetLoadPath(AddProfile(RgbProfile()));
  const int64_t blocks = CoreBlockCount();
  int opening = 0;
  ExpectNothingLeftBehind([&] {
    ++opening;
    Run([&](HWND dialog) {
      if (opening % 4 == 0) PressForMessage(dialog, IDB_ICC_LOAD);
      opening % 2 ? Escape(dialog) : Close(dialog);
    });
    Z_FreeICCProfile(&params.iccProfile);
  });
  EXPECT_EQ(blocks, CoreBlockCount());
}

}  // namespace
