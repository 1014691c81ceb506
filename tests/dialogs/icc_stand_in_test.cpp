// The ICC profile dialog without its colour library, with an incomplete one, and with one that notes how it is called.
#include "tests/dialogs/icc_fixture.h"

namespace {

using namespace zvtest;

std::wstring FolderOfProgram() {
  wchar_t path[MAX_PATH] = L"";
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring whole = path;
  return whole.substr(0, whole.rfind(L'\\'));
}

// Takes the place of the colour library: the system gives the module of that name that is there already.
class StandIn {
 public:
  explicit StandIn(const std::wstring& kind)
      : module_(::LoadLibraryW((FolderOfProgram() + L"\\stand_in\\" + kind + L"\\zvcolor.dll").c_str())) {
    EXPECT_NE(nullptr, module_) << "the stand-in is there";
  }
  StandIn(const StandIn&) = delete;
  StandIn& operator=(const StandIn&) = delete;
  ~StandIn() { ::FreeLibrary(module_); }

  void Reset(int32_t answer) { Get<void (*)(int32_t)>("StandInReset")(answer); }
  std::wstring Calls() { return Get<const wchar_t* (*)()>("StandInCalls")(); }

 private:
  template <class Function>
  Function Get(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module_, name)));
  }
  HMODULE module_;
};

class IccWithoutLibrary : public IccDialog {};

TEST_F(IccWithoutLibrary, AnIncompleteLibraryIsTheSameAsNoneAndIsLetGo) {
  {
    const StandIn incomplete(L"incomplete");
    EXPECT_EQ(ERROR_COLOR_LIBRARY_MISSING, Z_DlgICCProfile(parent.hwnd(), &params));
    params.flags = 0;
    EXPECT_EQ(ERROR_COLOR_LIBRARY_MISSING, Z_DlgICCProfile(parent.hwnd(), &params)) << "the library is asked for first";
  }
  EXPECT_EQ(nullptr, ::GetModuleHandleW(L"zvcolor.dll")) << "nobody holds it any longer";
}

// A copy of this program in a folder that has all modules but the colour library runs this test and no other.
constexpr wchar_t kIsAlone[] = L"ZV_TEST_WITHOUT_COLOR_LIBRARY";

TEST_F(IccWithoutLibrary, AMissingLibraryIsToldByTheResultAlone) {
  if (::GetEnvironmentVariableW(kIsAlone, nullptr, 0)) {
    EXPECT_EQ(nullptr, ::LoadLibraryW(L"zvcolor.dll")) << "it is not to be found";
    EXPECT_EQ(ERROR_COLOR_LIBRARY_MISSING, Z_DlgICCProfile(parent.hwnd(), &params));
    return;
  }
  const std::wstring from = FolderOfProgram() + L"\\";
  for (const wchar_t* name : {L"icc_stand_in_test.exe", L"zvfiledlg.dll", L"zvcore.dll", L"zvfile.dll",
                              L"zvdisplay.dll", L"zvdlgbase.dll", L"zveffects.dll"}) {
    ::CopyFileW((from + name).c_str(), folder.File(name).c_str(), FALSE);
  }
  wchar_t path[32768] = L"";
  ::GetEnvironmentVariableW(L"PATH", path, ARRAYSIZE(path));
  wchar_t system[MAX_PATH] = L"";
  ::GetSystemDirectoryW(system, MAX_PATH);
  ::SetEnvironmentVariableW(L"PATH", system);
  ::SetEnvironmentVariableW(kIsAlone, L"1");
  std::wstring command = L"\"" + folder.File(L"icc_stand_in_test.exe") + L"\" --gtest_filter=*AMissingLibrary*";
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  ASSERT_TRUE(::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.path().c_str(),
                               &startup, &process));
  ::SetEnvironmentVariableW(kIsAlone, nullptr);
  ::SetEnvironmentVariableW(L"PATH", path);
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(process.hProcess, 60'000));
  DWORD code = 99;
  ::GetExitCodeProcess(process.hProcess, &code);
  EXPECT_EQ(0u, code);
  ::CloseHandle(process.hThread);
  ::CloseHandle(process.hProcess);
}

class IccCalls : public IccDialog {
 protected:
  IccCalls() {
    standIn.Reset(SUCCESS);
    SetLoadPath(L"C:\\in.icc");
    SetSavePath(L"C:\\out.icc");
  }
  StandIn standIn{L"complete"};
  uint8_t mine = 1;
};

TEST_F(IccCalls, OpeningAndClosingFreesNothingOfTheCallers) {
  params.iccProfile.dataSize = 1;
  params.iccProfile.data = &mine;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND) {}));
  EXPECT_EQ(L"free(empty)", standIn.Calls());
  EXPECT_EQ(&mine, params.iccProfile.data);
}

TEST_F(IccCalls, ARefusedRecordFreesNothingOfTheCallers) {
  params.flags = DLG_ICC_CONTEXTHELP;
  params.iccProfile.data = &mine;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgICCProfile(parent.hwnd(), &params));
  EXPECT_EQ(L"free(empty)", standIn.Calls());
}

TEST_F(IccCalls, LoadingAnIccFileFreesInitialisesAndFills) {
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) {
              PressForMessage(dialog, IDB_ICC_LOAD);
              PressForMessage(dialog, IDB_ICC_LOAD);
            }));
  EXPECT_EQ(L"free(empty) init56 fill[C:\\in.icc] free(full) init56 fill[C:\\in.icc] free(empty)", standIn.Calls());
  EXPECT_NE(nullptr, params.iccProfile.data) << "handed over";
}

TEST_F(IccCalls, LoadingWithoutClosingFreesWhatWasLoaded) {
  params.iccProfile.dataSize = 1;
  params.iccProfile.data = &mine;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, Run([](HWND dialog) {
              PressForMessage(dialog, IDB_ICC_LOAD);
              Escape(dialog);
            }));
  EXPECT_EQ(L"free(empty) init56 fill[C:\\in.icc] free(full)", standIn.Calls());
  EXPECT_EQ(&mine, params.iccProfile.data) << "the caller's is as it was";
}

TEST_F(IccCalls, LoadingAnImageGivesThePage) {
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) {
              SelectCombo(dialog, IDC_ICC_LOAD_TYPE, kImage);
              SetText(dialog, IDE_ICC_LOAD_PAGE, L"12345678");
              PressForMessage(dialog, IDB_ICC_LOAD);
            }));
  EXPECT_EQ(L"free(empty) init56 load[C:\\in.icc]12345678 free(empty)", standIn.Calls());
}

TEST_F(IccCalls, SavingGivesThePageToAnImageAlone) {
  params.iccProfile.dataSize = 1;
  params.iccProfile.data = &mine;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([](HWND dialog) {
              SelectCombo(dialog, IDC_ICC_SAVE_TYPE, kImage);
              SetText(dialog, IDE_ICC_SAVE_PAGE, L"3");
              PressForMessage(dialog, IDB_ICC_SAVE);
              SelectCombo(dialog, IDC_ICC_SAVE_TYPE, kIccFile);
              PressForMessage(dialog, IDB_ICC_SAVE);
            }));
  EXPECT_EQ(L"save(full)[C:\\out.icc]3 generate(full)[C:\\out.icc] free(empty)", standIn.Calls());
}

struct Failure {
  int32_t code;
  const wchar_t* text;
};
class IccFailure : public IccCalls, public testing::WithParamInterface<Failure> {};

TEST_P(IccFailure, OfALoadIsToldAndDisablesSave) {
  standIn.Reset(GetParam().code);
  params.iccProfile.dataSize = 1;
  params.iccProfile.data = &mine;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([&](HWND dialog) {
              EXPECT_TRUE(IsEnabled(dialog, IDB_ICC_SAVE));
              const Message message = PressForMessage(dialog, IDB_ICC_LOAD);
              EXPECT_EQ(GetParam().text, message.text);
              EXPECT_EQ(L"ICC Profile", message.caption);
              EXPECT_FALSE(IsEnabled(dialog, IDB_ICC_SAVE));
            }));
  EXPECT_EQ(nullptr, params.iccProfile.data) << "the record is clean";
  EXPECT_EQ(0u, params.iccProfile.dataSize);
}

TEST_P(IccFailure, OfASaveIsToldAndLeavesSaveEnabled) {
  standIn.Reset(GetParam().code);
  params.iccProfile.dataSize = 1;
  params.iccProfile.data = &mine;
  EXPECT_EQ(SUCCESS_DLG_CLOSE, RunAndClose([&](HWND dialog) {
              EXPECT_EQ(GetParam().text, PressForMessage(dialog, IDB_ICC_SAVE).text);
              EXPECT_TRUE(IsEnabled(dialog, IDB_ICC_SAVE));
            }));
  EXPECT_EQ(&mine, params.iccProfile.data);
}

INSTANTIATE_TEST_SUITE_P(Codes, IccFailure,
                         testing::Values(Failure{-16, L"The file is too large."},
                                         Failure{-812, L"The file holds no ICC profile."},
                                         Failure{-817, L"A file of this format cannot hold an ICC profile."},
                                         Failure{-813, L"The ICC profile is damaged."},
                                         Failure{-1153, L"The version of the ICC profile is not known."},
                                         Failure{-14, L"The format of the file is not known."},
                                         Failure{-5, L"The file could not be opened."},
                                         Failure{-1154, L"There is no ICC profile to save."},
                                         Failure{-17, L"The operation failed (error -17)."},
                                         Failure{0, L"The operation failed (error 0)."}));

}  // namespace
