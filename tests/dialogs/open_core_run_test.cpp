// A run of the open dialog from call to result: what it makes of the caller's record, the keys that end it, its settings, help,
// and that one run leaves nothing to the next.
#include <windows.h>

#include <thread>
#include <utility>

#include "tests/dialogs/open_core_fixture.h"
#include "tests/support/leak_check.h"

namespace {

using namespace zvtest;

constexpr DWORD kAlwaysSet = 0x81864;

class OpenRun : public OpenCore {
 protected:
  int32_t OpenByName(const std::wstring& name) {
    return Open([&](HWND dialog) {
      TypeName(dialog, name);
      Click(dialog, IDOK);
    });
  }
};

// --- The caller's record ---

TEST_F(OpenRun, WritesItsFlagsIntoTheCallersRecord) {
  call.openFileName.Flags = OFN_ALLOWMULTISELECT | OFN_SHOWHELP;
  Open(Cancel);
  EXPECT_EQ(kAlwaysSet | OFN_ALLOWMULTISELECT, call.openFileName.Flags);
  call.openFileName.Flags = 0;
  call.params.flags |= DLG_OPEN_RESIZABLE | DLG_OPEN_FILE_MAY_NOT_EXIST | DLG_OPEN_PATH_MAY_NOT_EXIST;
  call.params.helpCallback = [](uint32_t, int32_t, void*) {};
  Open(Cancel);
  EXPECT_EQ((kAlwaysSet | OFN_ENABLESIZING | OFN_SHOWHELP) & ~static_cast<DWORD>(OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST),
            call.openFileName.Flags);
}

TEST_F(OpenRun, LeavesTheRestOfTheCallersRecord) {
  const OPENFILENAMEW before = call.openFileName;
  wchar_t name[300] = L"nothing.bmp";
  call.openFileName.lpstrFile = name;
  call.openFileName.nMaxFile = 300;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"picture.bmp"));
  const OPENFILENAMEW& after = call.openFileName;
  EXPECT_STREQ(L"nothing.bmp", name);
  EXPECT_EQ(300u, after.nMaxFile);
  EXPECT_EQ(before.lStructSize, after.lStructSize);
  EXPECT_EQ(before.hwndOwner, after.hwndOwner);
  EXPECT_EQ(before.hInstance, after.hInstance);
  EXPECT_EQ(before.lpstrTitle, after.lpstrTitle);
  EXPECT_EQ(before.lpstrInitialDir, after.lpstrInitialDir);
  EXPECT_EQ(before.lpfnHook, after.lpfnHook);
  EXPECT_EQ(before.lCustData, after.lCustData);
  EXPECT_EQ(before.FlagsEx, after.FlagsEx);
}

TEST_F(OpenRun, FillsTheCallersFileTitle) {
  wchar_t title[100] = L"";
  call.openFileName.lpstrFileTitle = title;
  call.openFileName.nMaxFileTitle = 100;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"picture.bmp"));
  EXPECT_STREQ(L"picture.bmp", title);
}

TEST_F(OpenRun, PutsBackTheLoadSizesOfTheFormatsWithSeveral) {
  SetLoadSize(FMT_ICO, 48, 48);
  SetLoadSize(FMT_PCD, 384, 256);
  Open([](HWND dialog) {
    SetLoadSize(FMT_ICO, 16, 16);
    SetLoadSize(FMT_PCD, 192, 128);
    Cancel(dialog);
  });
  int32_t width = 0, height = 0;
  GetLoadSize(FMT_ICO, &width, &height, nullptr);
  EXPECT_EQ(48, width);
  EXPECT_EQ(48, height);
  GetLoadSize(FMT_PCD, &width, &height, nullptr);
  EXPECT_EQ(384, width);
  EXPECT_EQ(256, height);
  SetLoadSize(FMT_ICO, 0, 0);
  SetLoadSize(FMT_PCD, 0, 0);
}

TEST_F(OpenRun, ClearsTheStatusFunctionMeanwhile) {
  int marker = 0;
  SetStatusCallback([](int32_t, void*) -> int32_t { return SUCCESS; }, &marker, nullptr, nullptr);
  Open([](HWND dialog) {
    STATUSCALLBACK function = nullptr;
    void* userData = nullptr;
    SetStatusCallback(nullptr, nullptr, &function, &userData);
    EXPECT_EQ(nullptr, function);
    EXPECT_EQ(nullptr, userData);
    Cancel(dialog);
  });
  SetStatusCallback(nullptr, nullptr, nullptr, nullptr);
}

// --- File types ---

TEST_F(OpenRun, OffersTheCallersCustomFilterToo) {
  wchar_t custom[100] = L"Last used\0*.tif\0";
  call.openFileName.lpstrCustomFilter = custom;
  call.openFileName.nMaxCustFilter = 100;
  call.openFileName.lpstrFilter = L"All\0*.*\0";
  call.openFileName.nFilterIndex = 1;
  Open([](HWND dialog) {
    EXPECT_EQ(2, ComboCount(dialog, kShellTypeCombo));
    EXPECT_EQ(L"Last used", ComboText(dialog, kShellTypeCombo, 0));
    Cancel(dialog);
  });
}

// Writes down the default extensions that the platform's dialog is told while it lives. Wine's dialog does not use them.
class ExtensionListener {
 public:
  explicit ExtensionListener(HWND dialog) : dialog_(dialog) {
    told.clear();
    former = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ExtensionListener::Procedure)));
  }
  ExtensionListener(const ExtensionListener&) = delete;
  ExtensionListener& operator=(const ExtensionListener&) = delete;
  ~ExtensionListener() { ::SetWindowLongPtrW(dialog_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former)); }

  std::vector<std::wstring> ToldAtType(int row) const {
    SelectCombo(dialog_, kShellTypeCombo, row);
    WaitUntilAnswering(dialog_);
    return std::exchange(told, {});
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == CDM_SETDEFEXT) {
      told.emplace_back(reinterpret_cast<const wchar_t*>(lParam));
    }
    return ::CallWindowProcW(former, window, message, wParam, lParam);
  }
  inline static std::vector<std::wstring> told;
  inline static WNDPROC former = nullptr;
  HWND dialog_;
};

TEST_F(OpenRun, TakesTheDefaultExtensionFromTheChosenPatternAndKeepsItUnderAllFiles) {
  call.openFileName.lpstrFilter = L"All\0*.*\0JPEG\0*.jpg;*.jpeg\0TIFF\0*.tif\0";
  Open([](HWND dialog) {
    const ExtensionListener listener(dialog);
    EXPECT_EQ(std::vector<std::wstring>{L"jpg"}, listener.ToldAtType(1));
    EXPECT_EQ(std::vector<std::wstring>{}, listener.ToldAtType(0));
    EXPECT_EQ(std::vector<std::wstring>{L"tif"}, listener.ToldAtType(2));
    Cancel(dialog);
  });
}

TEST_F(OpenRun, TakesTheDefaultExtensionFromTheShownRowBelowACustomFilterToo) {
  wchar_t custom[100] = L"Last used\0*.tif\0";
  call.openFileName.lpstrCustomFilter = custom;
  call.openFileName.nMaxCustFilter = 100;
  call.openFileName.lpstrFilter = L"All\0*.*\0JPEG\0*.jpg;*.jpeg\0PNG\0*.png\0";
  call.openFileName.nFilterIndex = 1;
  Open([](HWND dialog) {
    const ExtensionListener listener(dialog);
    EXPECT_EQ(std::vector<std::wstring>{L"jpg"}, listener.ToldAtType(2));
    EXPECT_EQ(std::vector<std::wstring>{}, listener.ToldAtType(1));
    EXPECT_EQ(std::vector<std::wstring>{L"png"}, listener.ToldAtType(3));
    EXPECT_EQ(std::vector<std::wstring>{L"tif"}, listener.ToldAtType(0));
    Cancel(dialog);
  });
}

TEST_F(OpenRun, KeepsALongTypedTextThroughAChangeOfType) {
  call.openFileName.lpstrFilter = L"All\0*.*\0TIFF\0*.tif\0";
  const std::wstring names = L"\"" + std::wstring(150, L'a') + L"\" \"" + std::wstring(150, L'b') + L"\"";
  Open([&](HWND dialog) {
    TypeName(dialog, names);
    SelectCombo(dialog, kShellTypeCombo, 1);
    WaitUntil([=] { return ListedFiles(dialog).size() == 1; }, "the list holds the chosen type alone");
    EXPECT_EQ(names, TextOf(OpenNameBox(dialog)));
    Cancel(dialog);
  });
}

TEST_F(OpenRun, RefusesOtherFilesThanDrawingsUnderACallersOwnFilter) {
  call.params.flags |= DLG_OPEN_VECTOR_ONLY;
  call.openFileName.lpstrFilter = L"Mine\0*.bmp;*.tif\0";
  Open([](HWND dialog) {
    EXPECT_EQ(1, ComboCount(dialog, kShellTypeCombo));
    EXPECT_EQ(L"Mine", ComboText(dialog, kShellTypeCombo, 0));
    SelectFile(dialog, L"picture.bmp");
    WaitUntil([=] { return TextOf(OpenNameBox(dialog)) == L"picture.bmp"; }, "the file is chosen");
    Command(OpenHook(dialog), kOpenFileInfoCommand);
    const HWND message = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(message, 65535).find(L"picture.bmp"));
    Click(message, IDOK);
    WaitUntilClosed(message);
    Cancel(dialog);
  });
}

// --- View ---

TEST_F(OpenRun, ShowsTheListAsTheRecordAsks) {
  const auto view = [this](int32_t mode, uint32_t tag) {
    call.params.viewMode = mode;
    call.params.uStructSize = tag;
    LONG style = 0;
    Open([&](HWND dialog) {
      style = ::GetWindowLongW(OpenFileList(dialog), GWL_STYLE) & LVS_TYPEMASK;
      Cancel(dialog);
    });
    return style;
  };
  const LONG plain = view(7, 104);
  EXPECT_EQ(LVS_LIST, view(DLG_VIEW_LIST, 104));
  EXPECT_EQ(LVS_ICON, view(DLG_VIEW_LARGE_ICONS, 104));
  EXPECT_EQ(plain, view(DLG_VIEW_LARGE_ICONS, 100)) << "the older record has no view mode";
}

// --- The ends of a run ---

TEST_F(OpenRun, EndsWithCancelOnEsc) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Open([](HWND dialog) { PressKey(dialog, VK_ESCAPE); }));
  EXPECT_EQ(nullptr, call.params.files);
}

TEST_F(OpenRun, OpensTheTypedFileOnEnter) {
  ASSERT_EQ(SUCCESS_DLG_OK, Open([](HWND dialog) {
              TypeName(dialog, L"picture.bmp");
              PressKey(dialog, VK_RETURN);
            }));
  EXPECT_EQ(picture, call.params.files[0].fileName);
}

TEST_F(OpenRun, EndsWithCancelOnTheCloseBox) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Open([](HWND dialog) { zvtest::CloseWindow(dialog); }));
}

TEST_F(OpenRun, StartsAfreshInTheSameProcess) {
  const int32_t first = Open([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    WaitUntil([=] { return IsEnabled(dialog, kOpenPageEdit) && TextOf(OpenNameBox(dialog)) == L"pages.tif"; },
              "pages to choose");
    SetText(dialog, kOpenPageEdit, L"2");
    Click(dialog, IDOK);
  });
  ASSERT_EQ(SUCCESS_DLG_OK, first);
  EXPECT_EQ(2, call.params.files[0].pageNumber);
  call.FreeFiles();
  const int32_t second = Open([](HWND dialog) {
    EXPECT_EQ(L"1", TextOf(dialog, kOpenPageEdit));
    EXPECT_EQ(L"", TextOf(OpenNameBox(dialog)));
    TypeName(dialog, L"pages.tif");
    Click(dialog, IDOK);
  });
  ASSERT_EQ(SUCCESS_DLG_OK, second);
  EXPECT_EQ(1, call.params.files[0].pageNumber);
}

TEST_F(OpenRun, RunsOnOneThreadAfterTheOther) {
  for (int run = 0; run < 2; ++run) {
    int32_t result = 0;
    std::thread([&] {
      // An owner of another thread would join the two threads' input.
      call.parent = nullptr;
      result = OpenByName(L"picture.bmp");
    }).join();
    ASSERT_EQ(SUCCESS_DLG_OK, result) << run;
    ASSERT_EQ(1, call.params.fileCount);
    EXPECT_EQ(picture, call.params.files[0].fileName);
    call.FreeFiles();
  }
}

// --- Settings ---

constexpr wchar_t kSettings[] = L"Software\\Zorvane\\zvfiledlg\\CZVOpenDlg Settings";

std::optional<DWORD> Setting(const wchar_t* name) {
  DWORD value = 0, size = sizeof(value);
  const LSTATUS status = ::RegGetValueW(HKEY_CURRENT_USER, kSettings, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
  return status == ERROR_SUCCESS ? std::optional(value) : std::nullopt;
}
void SetSetting(const wchar_t* name, DWORD value) {
  EXPECT_EQ(ERROR_SUCCESS, ::RegSetKeyValueW(HKEY_CURRENT_USER, kSettings, name, REG_DWORD, &value, sizeof(value)));
}

TEST_F(OpenRun, WritesThePanesStateToItsSettings) {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, kSettings);
  call.params.showPreview = 1;
  Open([](HWND dialog) {
    Control(dialog, kOpenPane);
    HKEY section = nullptr;
    EXPECT_EQ(ERROR_SUCCESS, ::RegOpenKeyExW(HKEY_CURRENT_USER, kSettings, 0, KEY_READ, &section))
        << "the section stands as soon as the dialog does";
    ::RegCloseKey(section);
    EXPECT_EQ(std::nullopt, Setting(L"Preview"));
    Cancel(dialog);
  });
  EXPECT_EQ(1u, Setting(L"Preview"));
  EXPECT_EQ(0u, Setting(L"Preview Window Offset"));
  call.params.showPreview = 0;
  Open(Cancel);
  EXPECT_EQ(0u, Setting(L"Preview"));
}

TEST_F(OpenRun, OpensThePaneAsTheRecordSaysWhateverTheSettingsHold) {
  SetSetting(L"Preview", 1);
  SetSetting(L"Preview Window Offset", 77);
  call.params.showPreview = 0;
  Open([](HWND dialog) {
    EXPECT_EQ(nullptr, FindControl(dialog, kOpenPane));
    Cancel(dialog);
  });
  EXPECT_EQ(0u, Setting(L"Preview Window Offset"));
  SetSetting(L"Preview", 0);
  call.params.showPreview = 1;
  Open([](HWND dialog) {
    EXPECT_TRUE(::IsWindowVisible(Control(dialog, kOpenPane)));
    Cancel(dialog);
  });
}

// --- Help ---

std::vector<std::pair<uint32_t, int32_t>> helpCalls;
void RecordHelp(uint32_t dialog, int32_t control, void* userData) {
  helpCalls.emplace_back(dialog, control);
  EXPECT_EQ(&helpCalls, userData);
}

TEST_F(OpenRun, CallsHelpOncePerPressOfItsButton) {
  helpCalls.clear();
  call.params.helpCallback = RecordHelp;
  call.params.helpUserData = &helpCalls;
  Open([](HWND dialog) {
    ClickAndWait(dialog, kShellHelp);
    ClickAndWait(dialog, kShellHelp);
    Cancel(dialog);
  });
  EXPECT_EQ((std::vector<std::pair<uint32_t, int32_t>>{{1, -1}, {1, -1}}), helpCalls);
}

TEST_F(OpenRun, NamesTheControlThatHelpIsWantedFor) {
  helpCalls.clear();
  call.params.helpCallback = RecordHelp;
  call.params.helpUserData = &helpCalls;
  Open([](HWND dialog) {
    for (const HWND control : {Control(dialog, kOpenPageEdit), Control(dialog, IDOK)}) {
      HELPINFO info = {sizeof(info), HELPINFO_WINDOW, ::GetDlgCtrlID(control), control, 0, {}};
      ::SendMessageW(control, WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
    }
    Cancel(dialog);
  });
  EXPECT_EQ((std::vector<std::pair<uint32_t, int32_t>>{{1, kOpenPageEdit}, {1, IDOK}}), helpCalls);
}

// --- Resources ---

TEST_F(OpenRun, LeavesNothingBehindAfterTwoHundredOpeningsWithThePane) {
  call.params.showPreview = 1;
  ExpectNothingLeftBehind(
      [this] {
        Open([](HWND dialog) {
          SelectFile(dialog, L"picture.bmp");
          Cancel(dialog);
        });
      },
      {.systemLeaves = SystemOpenDialogLeaves()});
}

TEST_F(OpenRun, LeavesNothingBehindOnOldShells) {
  const OldStyleShell oldShell;
  ExpectNothingLeftBehind([this] { Open(Cancel); }, {.times = 50, .systemLeaves = SystemOpenDialogLeaves()});
}

}  // namespace
