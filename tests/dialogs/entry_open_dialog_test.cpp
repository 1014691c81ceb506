// The open dialog through its export: the record it fills for each file, what it does to the caller's records, and that it
// puts back every process-wide setting.
#include <windows.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include "include/zvfiledlg.h"
#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/import_patch.h"
#include "tests/support/pictures.h"

namespace {

using namespace zvtest;

constexpr int kHelp = 1038;
constexpr int kTypeCombo = 1136;
constexpr int kLookInCombo = 1137;
constexpr int kLoadOptions = 9401;
constexpr int kPane = 59648;
constexpr int kPreviewCommand = 41216;

HWND NameBox(HWND dialog) {
  const HWND combo = FindControl(dialog, 1148);
  return combo ? combo : Control(dialog, 1152);
}

void TypeName(HWND dialog, const std::wstring& name) {
  ::SendMessageW(NameBox(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
}

void FreeFiles(OPENFILEDLGPARAMS& params) {
  for (int32_t i = 0; i < params.fileCount; ++i) {
    ::GlobalFree(params.files[i].fileInfo);
    ::GlobalFree(params.files[i].formatOptions);
  }
  ::GlobalFree(params.files);
  params.files = nullptr;
  params.fileCount = 0;
}

class OpenDialog : public ::testing::Test {
 protected:
  OpenDialog() {
    first = AddPicture(L"first one.bmp", 5, 3);
    second = AddPicture(L"second.bmp", 7, 2);
    broken = folder.AddFile(L"broken.bmp", {'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e'});
    openFileName.lStructSize = sizeof(openFileName);
    openFileName.lpstrInitialDir = folder.path().c_str();
    openFileName.lpstrTitle = L"Open pictures";
    params.uStructSize = sizeof(params);
    params.viewMode = 7;
  }
  ~OpenDialog() override { FreeFiles(params); }

  std::wstring AddPicture(const std::wstring& name, int width, int height) {
    EXPECT_TRUE(WritePicture(folder.File(name), {.width = width, .height = height}));
    return folder.File(name);
  }

  int32_t Open(const std::function<void(HWND)>& script) {
    return DriveDialog([this] { return Z_DlgOpen(parent.hwnd(), &openFileName, &params); },
                       [&] { script(WaitForOpenDialog()); });
  }
  static HWND WaitForOpenDialog() {
    const HWND dialog = WaitForDialogTitled(L"Open pictures");
    WaitUntil([=] { return ComboCount(dialog, kLookInCombo) > 0; }, "the dialog shows its folder");
    return dialog;
  }
  int32_t OpenByName(const std::wstring& name) {
    return Open([&](HWND dialog) {
      TypeName(dialog, name);
      Click(dialog, IDOK);
    });
  }

  TemporaryFolder folder;
  ParentWindow parent;
  std::wstring first, second, broken;
  OPENFILENAMEW openFileName = {};
  OPENFILEDLGPARAMS params = {};
};

void PressCancel(HWND dialog) { Click(dialog, IDCANCEL); }

TEST_F(OpenDialog, GivesARecordForTheChosenFile) {
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"first one.bmp"));
  ASSERT_EQ(1, params.fileCount);
  const OPENDLGFILEDATA& file = params.files[0];
  EXPECT_EQ(660u, file.uStructSize);
  EXPECT_EQ(first, file.fileName);
  ASSERT_NE(nullptr, file.fileInfo);
  EXPECT_EQ(2212u, file.fileInfo->uStructSize);
  EXPECT_EQ(5, file.fileInfo->width);
  EXPECT_EQ(3, file.fileInfo->height);
  EXPECT_EQ(FMT_BMP, file.format);
  EXPECT_EQ(16u, file.optionFlags);
  EXPECT_EQ(1, file.pageNumber);
  EXPECT_EQ(0, file.loadCompressed);
  EXPECT_EQ(0, file.loadRotated);
  EXPECT_EQ(nullptr, file.bitmap);
  EXPECT_EQ(nullptr, file.thumbnail);
  EXPECT_EQ(nullptr, file.formatOptions) << "a bitmap file has no load settings of its own";
}

TEST_F(OpenDialog, TakesAFullPath) {
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(second));
  ASSERT_EQ(1, params.fileCount);
  EXPECT_EQ(second, params.files[0].fileName);
}

TEST_F(OpenDialog, GivesARecordForEachOfSeveralFilesInTheirOrder) {
  openFileName.Flags = OFN_ALLOWMULTISELECT;
  params.flags = DLG_OPEN_LOAD_COMPRESSED | DLG_OPEN_LOAD_ROTATED;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"\"second.bmp\" \"first one.bmp\""));
  ASSERT_EQ(2, params.fileCount);
  EXPECT_EQ(second, params.files[0].fileName);
  EXPECT_EQ(first, params.files[1].fileName);
  EXPECT_EQ(7, params.files[0].fileInfo->width);
  EXPECT_EQ(5, params.files[1].fileInfo->width);
  EXPECT_NE(0, params.files[1].loadCompressed);
  EXPECT_NE(0, params.files[1].loadRotated);
}

TEST_F(OpenDialog, TakesAMultipleSelectionOfOne) {
  openFileName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"first one.bmp"));
  ASSERT_EQ(1, params.fileCount);
  EXPECT_EQ(first, params.files[0].fileName);
}

TEST_F(OpenDialog, TakesThreeHundredFilesAtOnce) {
  std::wstring names;
  for (int i = 0; i < 300; ++i) {
    const std::wstring name = L"a picture of a long series " + std::to_wstring(1000 + i) + L".bmp";
    AddPicture(name, 2, 2);
    names += L"\"" + name + L"\" ";
  }
  openFileName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(names));
  ASSERT_EQ(300, params.fileCount);
  EXPECT_EQ(folder.File(L"a picture of a long series 1299.bmp"), params.files[299].fileName);
}

TEST_F(OpenDialog, GivesNoFilesAfterCancel) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Open(PressCancel));
  EXPECT_EQ(nullptr, params.files);
  EXPECT_EQ(0, params.fileCount);
}

TEST_F(OpenDialog, EndsWithTheCodeOfAFileThatCannotBeRead) {
  FILEINFO info = {};
  info.uStructSize = sizeof(info);
  const int32_t code = GetFileInfo(broken.c_str(), &info, sizeof(info), 0, nullptr);
  ASSERT_LT(code, 0);
  openFileName.Flags = OFN_ALLOWMULTISELECT;
  EXPECT_EQ(code, OpenByName(L"\"first one.bmp\" \"broken.bmp\""));
  EXPECT_EQ(nullptr, params.files);
}

TEST_F(OpenDialog, KeepsTheEntryOfAFailedFileWhenAskedTo) {
  openFileName.Flags = OFN_ALLOWMULTISELECT;
  params.flags = DLG_OPEN_TOLERATE_FAILED_FILES;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"\"broken.bmp\" \"second.bmp\""));
  ASSERT_EQ(2, params.fileCount);
  EXPECT_EQ(broken, params.files[0].fileName);
  EXPECT_EQ(0, params.files[0].format);
  EXPECT_EQ(0u, params.files[0].optionFlags);
  EXPECT_NE(nullptr, params.files[0].fileInfo);
  EXPECT_EQ(FMT_BMP, params.files[1].format);
}

TEST_F(OpenDialog, OffersTheFullFilterTableWhenTheCallerHasNone) {
  openFileName.lpstrFilter = L"\0";
  Open([](HWND dialog) {
    EXPECT_EQ(92, ComboCount(dialog, kTypeCombo));
    EXPECT_EQ(L"All Files (*.*)", ComboText(dialog, kTypeCombo, 0));
    EXPECT_EQ(L"JPEG (*.jpg;*.jpeg;*.jtf)", ComboText(dialog, kTypeCombo, 2));
    EXPECT_TRUE(SaveScreenshot(dialog, L"open"));
    PressCancel(dialog);
  });
  EXPECT_STREQ(L"All Files (*.*)", openFileName.lpstrFilter) << "the caller's record names the table";
}

TEST_F(OpenDialog, OffersTheVectorTableWhenAskedTo) {
  params.flags = DLG_OPEN_VECTOR_ONLY;
  Open([](HWND dialog) {
    EXPECT_EQ(20, ComboCount(dialog, kTypeCombo));
    PressCancel(dialog);
  });
}

TEST_F(OpenDialog, KeepsTheCallersFilterAndGivesTheChosenTypeBack) {
  openFileName.lpstrFilter = L"All\0*.*\0Bitmaps\0*.bmp\0";
  openFileName.nFilterIndex = 1;
  Open([](HWND dialog) {
    EXPECT_EQ(2, ComboCount(dialog, kTypeCombo));
    SelectCombo(dialog, kTypeCombo, 1);
    TypeName(dialog, L"second.bmp");
    Click(dialog, IDOK);
  });
  EXPECT_EQ(2u, openFileName.nFilterIndex);
}

TEST_F(OpenDialog, TellsTheCallerOfItsLargeBuffer) {
  wchar_t name[100] = L"";
  openFileName.lpstrFile = name;
  openFileName.nMaxFile = 100;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"second.bmp"));
  EXPECT_EQ(26'000u, openFileName.nMaxFile);
  EXPECT_STREQ(L"", name) << "names come back through the records alone";
}

TEST_F(OpenDialog, KeepsABufferLengthFrom260On) {
  openFileName.nMaxFile = 260;
  Open(PressCancel);
  EXPECT_EQ(260u, openFileName.nMaxFile);
}

TEST_F(OpenDialog, StartsWithTheCallersName) {
  wchar_t name[MAX_PATH] = L"second.bmp";
  openFileName.lpstrFile = name;
  openFileName.nMaxFile = MAX_PATH;
  const int32_t result = Open([](HWND dialog) {
    EXPECT_EQ(L"second.bmp", TextOf(NameBox(dialog)));
    Click(dialog, IDOK);
  });
  ASSERT_EQ(SUCCESS_DLG_OK, result);
  EXPECT_EQ(second, params.files[0].fileName);
}

TEST_F(OpenDialog, RefusesANullOpenFileName) {
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgOpen(parent.hwnd(), nullptr, &params));
}

TEST_F(OpenDialog, WorksTheSameWithTheOlderRecord) {
  params.uStructSize = 100;
  params.viewMode = DLG_VIEW_TILES;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"second.bmp"));
  EXPECT_EQ(1, params.fileCount);
}

TEST_F(OpenDialog, ShowsTheTextThatTheKernelHoldsForOk) {
  ASSERT_EQ(SUCCESS, SetDialogStringText(4320, L"Add these"));
  Open([](HWND dialog) {
    EXPECT_EQ(L"Add these", TextOf(dialog, IDOK));
    PressCancel(dialog);
  });
  ASSERT_EQ(SUCCESS, SetDialogStringText(4320, nullptr));
}

int32_t ZV_CALL SomeStatus(int32_t, void*) { return SUCCESS; }

TEST_F(OpenDialog, PutsBackTheSettingsOfTheProcess) {
  int marker = 0;
  SetStatusCallback(SomeStatus, &marker, nullptr, nullptr);
  SetLoadDpi(123, 321);
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"second.bmp"));
  STATUSCALLBACK function = nullptr;
  void* userData = nullptr;
  SetStatusCallback(nullptr, nullptr, &function, &userData);
  EXPECT_EQ(SomeStatus, function);
  EXPECT_EQ(&marker, userData);
  int32_t x = 0, y = 0;
  GetLoadDpi(&x, &y);
  EXPECT_EQ(123, x);
  EXPECT_EQ(321, y);
}

int helpCalls = 0;
void CountHelp(uint32_t dialog, int32_t control, void*) {
  EXPECT_EQ(1u, dialog);
  EXPECT_EQ(-1, control);
  ++helpCalls;
}

TEST_F(OpenDialog, ReportsItsHelpButton) {
  helpCalls = 0;
  params.helpCallback = CountHelp;
  Open([](HWND dialog) {
    Click(dialog, kHelp);
    WaitUntil([] { return helpCalls == 1; }, "the help callback is called");
    PressCancel(dialog);
  });
}

TEST_F(OpenDialog, IsPlacedAtTheRecordsPoint) {
  params.position = {150, 60};
  Open([](HWND dialog) {
    RECT frame;
    ::GetWindowRect(dialog, &frame);
    EXPECT_EQ(150, frame.left);
    EXPECT_EQ(60, frame.top);
    PressCancel(dialog);
  });
}

// The same dialog through its 8-bit export.
class OpenDialogA : public OpenDialog {
 protected:
  OpenDialogA() {
    ::WideCharToMultiByte(CP_ACP, 0, folder.path().c_str(), -1, initial, MAX_PATH, nullptr, nullptr);
    ansiName.lStructSize = sizeof(ansiName);
    ansiName.lpstrInitialDir = initial;
    ansiName.lpstrTitle = "Open pictures";
    ansi.uStructSize = sizeof(ansi);
  }
  ~OpenDialogA() override {
    for (int32_t i = 0; ansi.files && i < ansi.fileCount; ++i) {
      CoreFree(ansi.files[i].fileInfo, 0, nullptr);
      if (ansi.files[i].bitmap) {
        FreeBitmap(ansi.files[i].bitmap);
        ::GlobalFree(ansi.files[i].bitmap);
      }
    }
    if (ansi.files != callersFiles) {
      CoreFree(ansi.files, 0, nullptr);
    }
  }

  int32_t OpenA(const std::function<void(HWND)>& script) {
    return DriveDialog([this] { return Z_DlgOpenA(parent.hwnd(), &ansiName, &ansi); },
                       [&] { script(WaitForOpenDialog()); });
  }
  int32_t OpenByNameA(const std::wstring& name) {
    return OpenA([&](HWND dialog) {
      TypeName(dialog, name);
      Click(dialog, IDOK);
    });
  }

  char initial[MAX_PATH] = {};
  OPENFILENAMEA ansiName = {};
  OPENFILEDLGPARAMSA ansi = {};
  OPENDLGFILEDATAA callersFiles[2] = {};
};

TEST_F(OpenDialogA, GivesEightBitRecords) {
  const char filter[] = "All\0*.*\0Bitmaps\0*.bmp\0";
  ansiName.lpstrFilter = filter;
  ansiName.nFilterIndex = 1;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenA([](HWND dialog) {
              SelectCombo(dialog, kTypeCombo, 1);
              TypeName(dialog, L"first one.bmp");
              Click(dialog, IDOK);
            }));
  ASSERT_EQ(1, ansi.fileCount);
  EXPECT_EQ(396u, ansi.files[0].uStructSize);
  EXPECT_EQ(std::string(initial) + "\\first one.bmp", ansi.files[0].fileName);
  ASSERT_NE(nullptr, ansi.files[0].fileInfo);
  EXPECT_EQ(5, ansi.files[0].fileInfo->width);
  EXPECT_EQ(1u, ansiName.nFilterIndex) << "nothing of the name record comes back";
  EXPECT_STREQ("*.bmp", ansiName.lpstrFilter) << "the pointer is left at the last string";
}

TEST_F(OpenDialogA, FillsTheCallersOwnArray) {
  ansi.files = callersFiles;
  ansiName.Flags = OFN_ALLOWMULTISELECT;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByNameA(L"\"second.bmp\" \"first one.bmp\""));
  ASSERT_EQ(callersFiles, ansi.files);
  ASSERT_EQ(2, ansi.fileCount);
  EXPECT_EQ(std::string(initial) + "\\second.bmp", callersFiles[0].fileName);
  EXPECT_EQ(std::string(initial) + "\\first one.bmp", callersFiles[1].fileName);
  ASSERT_NE(nullptr, callersFiles[1].fileInfo);
  EXPECT_EQ(5, callersFiles[1].fileInfo->width);
}

void* ZV_CALL RefuseEntries(size_t count, size_t elementSize, int32_t line, const char* file) {
  return elementSize == sizeof(OPENDLGFILEDATAA) ? nullptr : CoreAlloc(count, elementSize, line, file);
}

TEST_F(OpenDialogA, GivesNoFilesWhenTheirArrayCannotBeHad) {
  const ImportPatch allocate(L"zvfiledlg.dll", "CoreAlloc", &RefuseEntries);
  ansi.flags = DLG_OPEN_LOAD_BITMAP;
  const int64_t blocks = CoreBlockCount();
  EXPECT_EQ(ERROR_OUT_OF_MEMORY, OpenByNameA(L"second.bmp"));
  EXPECT_EQ(nullptr, ansi.files);
  EXPECT_EQ(0, ansi.fileCount);
  EXPECT_EQ(blocks, CoreBlockCount()) << "the picture is freed as well";
}

TEST_F(OpenDialogA, TakesTheSwitchesInAndGivesTheirStateBack) {
  ansi.flags = DLG_OPEN_SHOW_PREVIEW | DLG_OPEN_SHOW_LOAD_OPTIONS;
  ansi.showLoadOptions = 1;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenA([](HWND dialog) {
              EXPECT_TRUE(IsChecked(dialog, kLoadOptions));
              EXPECT_EQ(nullptr, FindControl(dialog, kPane));
              Check(dialog, kLoadOptions, false);
              Command(::GetParent(Control(dialog, kLoadOptions)), kPreviewCommand);
              Control(dialog, kPane);
              TypeName(dialog, L"second.bmp");
              Click(dialog, IDOK);
            }));
  EXPECT_EQ(0, ansi.showLoadOptions);
  EXPECT_EQ(1, ansi.showPreview);
}

int reports = 0;
int32_t ZV_CALL CountReport(OPENDLGFILEDATA*, int32_t, int32_t, void*) {
  ++reports;
  return SUCCESS;
}
int32_t ZV_CALL CountReportA(OPENDLGFILEDATAA*, int32_t, int32_t, void*) {
  ++reports;
  return SUCCESS;
}

TEST_F(OpenDialogA, NeverCallsTheStatusFunction) {
  AddPicture(L"tall.bmp", 20, 400);
  params.flags = ansi.flags = DLG_OPEN_LOAD_BITMAP;
  params.statusCallback = CountReport;
  ansi.statusCallback = CountReportA;
  reports = 0;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByName(L"tall.bmp"));
  EXPECT_LT(0, reports) << "as the wide dialog does";
  FreeBitmap(params.files[0].bitmap);
  ::GlobalFree(params.files[0].bitmap);
  reports = 0;
  ASSERT_EQ(SUCCESS_DLG_OK, OpenByNameA(L"tall.bmp"));
  ASSERT_NE(nullptr, ansi.files[0].bitmap);
  EXPECT_EQ(0, reports);
}

TEST_F(OpenDialogA, AlwaysShowsTheList) {
  const auto viewOf = [](HWND dialog) {
    const auto list = [=] {
      const HWND view = ::FindWindowExW(dialog, nullptr, L"SHELLDLL_DefView", nullptr);
      return view ? ::FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr) : nullptr;
    };
    WaitUntil([=] { return list() && ::SendMessageW(list(), LVM_GETITEMCOUNT, 0, 0) > 0; }, "the files are listed");
    return ::GetWindowLongW(list(), GWL_STYLE) & LVS_TYPEMASK;
  };
  params.viewMode = ansi.viewMode = DLG_VIEW_LARGE_ICONS;
  Open([=](HWND dialog) {
    EXPECT_EQ(LVS_ICON, viewOf(dialog)) << "as the wide dialog does";
    PressCancel(dialog);
  });
  for (const uint32_t tag : {104u, 100u}) {
    ansi.uStructSize = tag;
    OpenA([=](HWND dialog) {
      EXPECT_EQ(LVS_LIST, viewOf(dialog));
      PressCancel(dialog);
    });
  }
}

TEST_F(OpenDialog, LeavesNothingBehindAfterTwoHundredOpenings) {
  openFileName.lpstrFilter = L"Bitmaps\0*.bmp\0";
  ExpectNothingLeftBehind(
      [this] {
        EXPECT_EQ(SUCCESS_DLG_OK, OpenByName(L"second.bmp"));
        FreeFiles(params);
      },
      {.systemLeaves = SystemOpenDialogLeaves()});
}

}  // namespace
