// Loading and saving with the ICC profile dialog: what it makes of good, bad and missing files, and what it leaves behind.
#include <cstring>

#include "tests/dialogs/icc_profile_fixture.h"

namespace {

using namespace zvtest;

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
