// The association dialog through its export, against the registry of the prefix that the tests run in. Extensions and program
// identifier are the test's own.
#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "resources/associations_ids.h"
#include "tests/support/dialog_driver.h"

namespace {

using namespace zvtest;

constexpr wchar_t kProgram[] = L"Zorvane.DialogTest.1";
constexpr wchar_t kFormats[] = L"First (*.zvtesta)\0*.zvtesta\0Second (*.zvtestb;*.zvtestbb)\0*.zvtestb;*.zvtestbb\0";
constexpr const wchar_t* kExtensions[] = {L".zvtesta", L".zvtestb", L".zvtestbb"};

std::wstring UserKey(const std::wstring& extension) {
  return L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\" + extension;
}

// "(none)" when there is no key or value.
std::wstring ReadText(HKEY root, const std::wstring& key, const wchar_t* name) {
  wchar_t text[512] = L"";
  DWORD bytes = sizeof(text);
  const LONG status = ::RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &bytes);
  return status == ERROR_SUCCESS ? text : L"(none)";
}
std::wstring OwnerOf(const std::wstring& extension) { return ReadText(HKEY_CLASSES_ROOT, extension, nullptr); }
void SetOwner(const std::wstring& extension, const std::wstring& owner) {
  ::RegSetKeyValueW(HKEY_CLASSES_ROOT, extension.c_str(), nullptr, REG_SZ, owner.c_str(),
                    static_cast<DWORD>((owner.size() + 1) * sizeof(wchar_t)));
}
bool HasKey(const std::wstring& extension) {
  HKEY key = nullptr;
  const bool isThere = ::RegOpenKeyW(HKEY_CLASSES_ROOT, extension.c_str(), &key) == ERROR_SUCCESS;
  ::RegCloseKey(key);
  return isThere;
}

struct HelpCall {
  uint32_t dialog;
  int32_t control;
  void* userData;
};
std::vector<HelpCall> helpCalls;
void ZV_CALL RecordHelp(uint32_t dialog, int32_t control, void* userData) {
  helpCalls.push_back({dialog, control, userData});
}

bool IsRowChecked(HWND dialog, int row) {
  const HWND list = Control(dialog, IDL_ASSOC_FORMATS);
  return ::SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK) >> 12 == 2;
}
void CheckRow(HWND dialog, int row, bool isChecked) {
  LVITEMW item = {};
  item.stateMask = LVIS_STATEIMAGEMASK;
  item.state = INDEXTOSTATEIMAGEMASK(isChecked ? 2u : 1u);
  ::SendMessageW(Control(dialog, IDL_ASSOC_FORMATS), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&item));
}
void Press(HWND dialog, int button) { ::SendMessageW(Control(dialog, button), BM_CLICK, 0, 0); }
void End(HWND dialog, int button) {
  Click(dialog, button);
  WaitUntilClosed(dialog);
}

class Association : public testing::Test {
 protected:
  Association() {
    Clean();
    params.uStructSize = sizeof(params);
    params.pszFormats = kFormats;
    params.pszProgID = kProgram;
  }
  ~Association() override { Clean(); }

  static void Clean() {
    for (const wchar_t* extension : kExtensions) {
      ::RegDeleteTreeW(HKEY_CLASSES_ROOT, extension);
      ::RegDeleteTreeW(HKEY_CURRENT_USER, UserKey(extension).c_str());
    }
  }
  int32_t Run(const std::function<void(HWND)>& script) {
    return DriveDialog([&] { return Z_DlgFilesAssociation(parent.hwnd(), &params); },
                       [&] {
                         const HWND dialog = WaitForDialogWith(IDL_ASSOC_FORMATS);
                         WaitUntil([dialog] { return ::IsWindowEnabled(dialog); }, "the list is filled");
                         script(dialog);
                       });
  }

  ParentWindow parent;
  FILEASSOCIATIONDLGPARAMS params = {};
};

TEST_F(Association, RefusesABadRecordOrParentAndShowsNothing) {
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgFilesAssociation(parent.hwnd(), nullptr));
  params.uStructSize = 0;
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_DlgFilesAssociation(parent.hwnd(), &params));
  params.uStructSize = 52;
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_DlgFilesAssociation(parent.hwnd(), &params));
  params.uStructSize = sizeof(params);
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFilesAssociation(nullptr, &params));
  params.pszFormats = reinterpret_cast<const wchar_t*>(16);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgFilesAssociation(parent.hwnd(), &params));
}

TEST_F(Association, ShowsTheBuiltInFormatsInTheirOrder) {
  params.pszFormats = nullptr;
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              EXPECT_EQ(L"Image Formats' File Association", TextOf(dialog));
              EXPECT_EQ(L"Select All", TextOf(dialog, IDB_ASSOC_SELECT_ALL));
              EXPECT_EQ(L"Select None", TextOf(dialog, IDB_ASSOC_SELECT_NONE));
              EXPECT_EQ(87, ListViewCount(dialog, IDL_ASSOC_FORMATS));
              EXPECT_EQ(L".CMP", ListViewText(dialog, IDL_ASSOC_FORMATS, 0, 0));
              EXPECT_EQ(L"Zorvane", ListViewText(dialog, IDL_ASSOC_FORMATS, 0, 1));
              EXPECT_EQ(L".JTF", ListViewText(dialog, IDL_ASSOC_FORMATS, 4, 0));
              EXPECT_EQ(L"JPEG", ListViewText(dialog, IDL_ASSOC_FORMATS, 4, 1));
              EXPECT_EQ(L".XLS", ListViewText(dialog, IDL_ASSOC_FORMATS, 86, 0));
              EXPECT_TRUE(SaveScreenshot(dialog, L"association"));
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, ShowsTheListAsItShouldLook) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              const HWND list = Control(dialog, IDL_ASSOC_FORMATS);
              EXPECT_EQ(53, ::SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0) & 53);
              EXPECT_EQ(0xC0C0C0, ::SendMessageW(list, LVM_GETBKCOLOR, 0, 0));
              EXPECT_EQ(0xC0C0C0, ::SendMessageW(list, LVM_GETTEXTBKCOLOR, 0, 0));
              EXPECT_EQ(0, ::SendMessageW(list, LVM_GETTEXTCOLOR, 0, 0)) << "black, not the user's window text";
              const auto images = reinterpret_cast<HIMAGELIST>(::SendMessageW(list, LVM_GETIMAGELIST, LVSIL_STATE, 0));
              EXPECT_EQ(2, ::ImageList_GetImageCount(images));
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, StartsWithWhatTheRegistrySays) {
  SetOwner(L".zvtesta", L"zorvane.DIALOGTEST.1");
  SetOwner(L".zvtestb", L"somebody.else");
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              EXPECT_TRUE(IsRowChecked(dialog, 0));
              EXPECT_FALSE(IsRowChecked(dialog, 1));
              EXPECT_FALSE(IsRowChecked(dialog, 2));
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, StartsWithWhatTheCallerSelected) {
  params.pszSelected = L"ZVTESTB\0\0\0";
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              EXPECT_FALSE(IsRowChecked(dialog, 0));
              EXPECT_TRUE(IsRowChecked(dialog, 1));
              EXPECT_FALSE(IsRowChecked(dialog, 2)) << "a shorter text selects no longer extension";
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, ALongerSelectedExtensionSelectsTheShorterOneInsideItToo) {
  params.pszSelected = L".zvtestbb\0\0\0";
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              EXPECT_TRUE(IsRowChecked(dialog, 1));
              EXPECT_TRUE(IsRowChecked(dialog, 2));
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, ClaimsWhatIsCheckedOnOk) {
  HKEY key = nullptr;
  ::RegCreateKeyW(HKEY_CURRENT_USER, UserKey(L".zvtesta").c_str(), &key);
  ::RegCloseKey(key);
  SetOwner(L".zvtestb", L"somebody.else");
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              CheckRow(dialog, 0, true);
              CheckRow(dialog, 1, true);
              End(dialog, IDOK);
            }));
  EXPECT_EQ(kProgram, OwnerOf(L".zvtesta"));
  EXPECT_EQ(kProgram, ReadText(HKEY_CURRENT_USER, UserKey(L".zvtesta"), L"ProgID"));
  EXPECT_EQ(kProgram, ReadText(HKEY_CURRENT_USER, UserKey(L".zvtesta"), L"Application"));
  EXPECT_EQ(kProgram, OwnerOf(L".zvtestb"));
  EXPECT_EQ(L"(none)", ReadText(HKEY_CURRENT_USER, UserKey(L".zvtestb"), L"ProgID")) << "the shell knew no such key";
  EXPECT_FALSE(HasKey(L".zvtestbb"));
}

TEST_F(Association, UnclaimingLeavesAnEmptyKeyAndTheUsersChoice) {
  SetOwner(L".zvtesta", kProgram);
  ::RegSetKeyValueW(HKEY_CURRENT_USER, UserKey(L".zvtesta").c_str(), L"ProgID", REG_SZ, kProgram, sizeof(kProgram));
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              CheckRow(dialog, 0, false);
              End(dialog, IDOK);
            }));
  EXPECT_EQ(L"", OwnerOf(L".zvtesta"));
  EXPECT_EQ(kProgram, ReadText(HKEY_CURRENT_USER, UserKey(L".zvtesta"), L"ProgID"));
}

TEST_F(Association, AnUncheckedRowOfAnotherProgramKeepsIt) {
  SetOwner(L".zvtesta", L"somebody.else");
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) { End(dialog, IDOK); }));
  EXPECT_EQ(L"somebody.else", OwnerOf(L".zvtesta"));
}

TEST_F(Association, SelectAllAndNoneReachEveryRow) {
  SetOwner(L".zvtestb", kProgram);
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              Press(dialog, IDB_ASSOC_SELECT_ALL);
              EXPECT_TRUE(IsRowChecked(dialog, 0) && IsRowChecked(dialog, 1) && IsRowChecked(dialog, 2));
              Press(dialog, IDB_ASSOC_SELECT_NONE);
              EXPECT_FALSE(IsRowChecked(dialog, 0) || IsRowChecked(dialog, 1) || IsRowChecked(dialog, 2));
              Press(dialog, IDB_ASSOC_SELECT_ALL);
              End(dialog, IDOK);
            }));
  for (const wchar_t* extension : kExtensions) EXPECT_EQ(kProgram, OwnerOf(extension));
}

TEST_F(Association, CancelEscAndCloseChangeNothing) {
  const std::function<void(HWND)> endings[] = {[](HWND dialog) { Click(dialog, IDCANCEL); },
                                               [](HWND dialog) { PressKey(dialog, VK_ESCAPE); },
                                               [](HWND dialog) { zvtest::CloseWindow(dialog); }};
  for (const auto& end : endings) {
    EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([&](HWND dialog) {
                Press(dialog, IDB_ASSOC_SELECT_ALL);
                end(dialog);
                WaitUntilClosed(dialog);
              }));
    EXPECT_FALSE(HasKey(L".zvtesta"));
  }
}

TEST_F(Association, EnterIsOk) {
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              PressKey(dialog, VK_RETURN);
              WaitUntilClosed(dialog);
            }));
}

TEST_F(Association, AnExtensionThatStandsTwiceHasTwoRowsAndIsWrittenTwice) {
  params.pszFormats = L"One (*.zvtesta)\0*.zvtesta\0Two (*.zvtesta)\0*.zvtesta\0";
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              EXPECT_EQ(2, ListViewCount(dialog, IDL_ASSOC_FORMATS));
              Press(dialog, IDB_ASSOC_SELECT_ALL);
              End(dialog, IDOK);
            }));
  EXPECT_EQ(kProgram, OwnerOf(L".zvtesta"));
}

TEST_F(Association, WithoutAProgramIdentifierAnEmptyKeyIsOursAndAClaimWritesAnEmptyText) {
  params.pszProgID = nullptr;
  SetOwner(L".zvtesta", L"");
  SetOwner(L".zvtestb", L"somebody.else");
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              EXPECT_TRUE(IsRowChecked(dialog, 0));
              EXPECT_FALSE(IsRowChecked(dialog, 1));
              CheckRow(dialog, 1, true);
              End(dialog, IDOK);
            }));
  EXPECT_EQ(L"", OwnerOf(L".zvtestb"));
}

TEST_F(Association, WithAnEmptyListThereAreNoRowsAndOkEnds) {
  params.pszFormats = L"\0";
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              EXPECT_EQ(0, ListViewCount(dialog, IDL_ASSOC_FORMATS));
              Press(dialog, IDB_ASSOC_SELECT_ALL);
              End(dialog, IDOK);
            }));
}

TEST_F(Association, LeavesTheRecordAsItWas) {
  const FILEASSOCIATIONDLGPARAMS before = params;
  EXPECT_EQ(SUCCESS_DLG_OK, Run([](HWND dialog) {
              Press(dialog, IDB_ASSOC_SELECT_ALL);
              End(dialog, IDOK);
            }));
  EXPECT_EQ(0, std::memcmp(&before, &params, sizeof(params)));
}

TEST_F(Association, WithoutAHelpCallbackThereIsNoHelpButton) {
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              EXPECT_FALSE(IsShown(dialog, IDB_ASSOC_HELP));
              EXPECT_FALSE(::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP);
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, TheFlagAloneGivesTheQuestionMark) {
  params.uFlags = DLG_ASSOCIATION_CONTEXT_HELP;
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              EXPECT_FALSE(IsShown(dialog, IDB_ASSOC_HELP));
              EXPECT_TRUE(::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTEXTHELP);
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, HelpReachesTheCallbackWithTheDialogsNumber) {
  helpCalls.clear();
  int token = 0;
  params.pfnHelpCallback = &RecordHelp;
  params.pHelpUserData = &token;
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              EXPECT_TRUE(IsShown(dialog, IDB_ASSOC_HELP));
              Press(dialog, IDB_ASSOC_HELP);
              HELPINFO info = {sizeof(info), HELPINFO_WINDOW, IDL_ASSOC_FORMATS, nullptr, 0, {}};
              ::SendMessageW(dialog, WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
              EXPECT_TRUE(SaveScreenshot(dialog, L"association_help"));
              End(dialog, IDCANCEL);
            }));
  ASSERT_EQ(2u, helpCalls.size());
  EXPECT_EQ(57u, helpCalls[0].dialog);
  EXPECT_EQ(-1, helpCalls[0].control);
  EXPECT_EQ(&token, helpCalls[0].userData);
  EXPECT_EQ(IDL_ASSOC_FORMATS, helpCalls[1].control);
}

TEST_F(Association, StandsWhereTheCallerWantsIt) {
  const POINT place = {120, 80};
  params.ptPosition = &place;
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([](HWND dialog) {
              RECT window;
              ::GetWindowRect(dialog, &window);
              EXPECT_EQ(120, window.left);
              EXPECT_EQ(80, window.top);
              End(dialog, IDCANCEL);
            }));
}

TEST_F(Association, TheEightBitTwinDoesTheSame) {
  FILEASSOCIATIONDLGPARAMSA narrow = {};
  narrow.uStructSize = sizeof(narrow);
  narrow.pszFormats = "First (*.zvtesta)\0*.zvtesta\0";
  narrow.pszSelected = "zvtesta\0\0\0";
  narrow.pszProgID = "Zorvane.DialogTest.1";
  EXPECT_EQ(SUCCESS_DLG_OK, DriveDialog([&] { return Z_DlgFilesAssociationA(parent.hwnd(), &narrow); },
                                        [] {
                                          const HWND dialog = WaitForDialogWith(IDL_ASSOC_FORMATS);
                                          WaitUntil([dialog] { return ::IsWindowEnabled(dialog); },
                                                    "the list is filled");
                                          EXPECT_TRUE(IsRowChecked(dialog, 0));
                                          End(dialog, IDOK);
                                        }));
  EXPECT_EQ(kProgram, OwnerOf(L".zvtesta"));
}

TEST_F(Association, FiveThousandExtensionsFillInUnderTwoSeconds) {
  std::wstring formats;
  for (int i = 0; i < 5000; ++i) {
    const std::wstring patterns = L"*.zvmany" + std::to_wstring(i);
    formats += L"Many (" + patterns + L")" + L'\0' + patterns + L'\0';
  }
  params.pszFormats = formats.c_str();
  const auto start = std::chrono::steady_clock::now();
  std::chrono::duration<double> taken = {};
  EXPECT_EQ(SUCCESS_DLG_CANCEL, Run([&](HWND dialog) {
              taken = std::chrono::steady_clock::now() - start;
              EXPECT_EQ(5000, ListViewCount(dialog, IDL_ASSOC_FORMATS));
              End(dialog, IDCANCEL);
            }));
  EXPECT_LT(taken.count(), 2.0);
}

TEST_F(Association, OpeningAndClosingLeavesNothingBehind) {
  bool takesOver = false;
  ExpectNothingLeftBehind([&] {
    takesOver = !takesOver;
    Run([&](HWND dialog) { End(dialog, takesOver ? IDOK : IDCANCEL); });
  });
}

}  // namespace
