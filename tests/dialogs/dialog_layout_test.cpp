// Every dialog that the batch conversion, the ICC profiles, the associations and the folder picker show is looked at for the
// layout faults that a machine can see; the pictures are for the eye. The last test looks at every template of the module.
#include <windows.h>

#include <commctrl.h>

#include "resources/associations_ids.h"
#include "resources/conversion_tools_ids.h"
#include "resources/iccprofile_ids.h"
#include "resources/naming_ids.h"
#include "tests/dialogs/conversion_fixture.h"
#include "tests/support/dialog_layout.h"
#include "tests/support/open_driver.h"

namespace {

using namespace zvtest;

void ZV_CALL IgnoreHelp(uint32_t, int32_t, void*) {}

// `given`: the faults that the interface asks for.
void ExpectGoodLayout(HWND dialog, const std::wstring& picture, const std::string& given = "") {
  EXPECT_EQ(given, LayoutFaults(dialog)) << std::string(picture.begin(), picture.end());
  EXPECT_TRUE(SaveScreenshot(dialog, picture));
}

// --- The batch conversion and the dialogs behind its buttons ---

// The labels of the conversion dialog are given, more of them than there are letters: a key that two share goes from one to
// the other.
constexpr char kGivenSharedKeys[] =
    "5335 \"Op&tions...\" and 5330 \"File &Type:\" have the same key\n"
    "5335 \"Op&tions...\" and 5313 \"Se&ttings...\" have the same key\n"
    "5341 \"F&ull Path\" and 5331 \"Res&ulted File(s):\" have the same key\n"
    "5326 \"Fi&le Info...\" and 5332 \"&Log Report\" have the same key\n";
constexpr char kGivenSharedKeysOfAFew[] =
    "5330 \"File &Type:\" and 5313 \"Se&ttings...\" have the same key\n"
    "5341 \"F&ull Path\" and 5331 \"Res&ulted File(s):\" have the same key\n";

// With and without the Help button, since its row closes up.
class ConversionLayout : public ConversionDialog, public ::testing::WithParamInterface<bool> {
 protected:
  // The layout is that of the system's resolution, not of 96 dpi stretched.
  static void SetUpTestSuite() { ::SetProcessDPIAware(); }

  ConversionLayout() {
    params.helpCallback = GetParam() ? &IgnoreHelp : nullptr;
    params.overwriteMode = OVERWRITE_RENAME;
  }
  static std::wstring Picture(const std::wstring& name) { return GetParam() ? name + L"_help" : name; }

  void With(int button, int controlId, const std::function<void(HWND tool)>& script) {
    AddPicture(L"harbour.bmp");
    RunAndClose([&](HWND dialog) {
      Click(dialog, button);
      const HWND tool = WaitForDialogWith(controlId);
      script(tool);
      Click(tool, IDCANCEL);
      WaitUntilClosed(tool);
    });
  }
  void ExpectGoodLayoutForEachTag(int button, int tagList, const std::wstring& picture) {
    With(button, tagList, [&](HWND tool) {
      for (int tag = 0; tag < ComboCount(tool, tagList); ++tag) {
        SelectCombo(tool, tagList, tag);
        ExpectGoodLayout(tool, Picture(picture + std::to_wstring(tag)));
      }
    });
  }
};
INSTANTIATE_TEST_SUITE_P(WithAndWithoutHelp, ConversionLayout, ::testing::Bool());

TEST_P(ConversionLayout, OfTheDialogWithEverythingOffered) {
  AddPicture(L"harbour at dawn.tif", {160, 120, FMT_TIFF, 12});
  AddPicture(L"\x5BAB\x6BBF \x2013 a name that is rather long for a list of files.bmp", {60, 90});
  RunAndClose([](HWND dialog) { ExpectGoodLayout(dialog, Picture(L"conversion"), kGivenSharedKeys); });
}

TEST_P(ConversionLayout, OfTheDialogWithoutOffers) {
  AddPicture(L"harbour at dawn.bmp");
  params.uiFlags = 0;
  params.fullPath = 1;
  RunAndClose([](HWND dialog) { ExpectGoodLayout(dialog, Picture(L"conversion_plain"), kGivenSharedKeysOfAFew); });
}

TEST_P(ConversionLayout, OfTheProgressDialogAndTheOverwriteQuestion) {
  Offer({1});
  for (int i = 0; i < 3; ++i) {
    AddPicture(L"a picture of the harbour at dawn, taken from the old pier " + std::to_wstring(i) + L".bmp",
               {2000, 1500});
  }
  out.AddFile(L"a picture of the harbour at dawn, taken from the old pier 1.png", {1});
  params.overwriteMode = OVERWRITE_ASK;
  RunAndClose([](HWND dialog) {
    ClickAndWait(dialog, IDB_CONV_SELECT_ALL);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND ask = WaitForDialogWith(IDB_CONV_ASK_REPLACE);
    ExpectGoodLayout(ask, L"conversion_overwrite");
    ExpectGoodLayout(WaitForDialogWith(IDP_CONV_TOTAL), L"conversion_progress");
    Click(ask, IDB_CONV_ASK_ABORT);
    WaitUntilIdle(dialog);
  });
}

TEST_P(ConversionLayout, OfTheNamingTemplateWithEachTag) {
  ExpectGoodLayoutForEachTag(IDB_CONV_NAMING, IDC_NAMING_TAG, L"naming_template_tag");
}

TEST_P(ConversionLayout, OfTheCollisionTemplateWithEachTag) {
  ExpectGoodLayoutForEachTag(IDB_CONV_CUSTOMIZE, IDC_RENAME_TAG, L"rename_tag");
}

TEST_P(ConversionLayout, OfTheResizeDialogInPixelsAndPercent) {
  With(IDB_CONV_RESIZE, IDX_RESIZE_ENABLE, [](HWND resize) {
    Check(resize, IDX_RESIZE_ENABLE, true);
    SetText(resize, IDC_RESIZE_WIDTH, L"30000");
    ExpectGoodLayout(resize, Picture(L"resize"));
    SelectCombo(resize, IDC_RESIZE_UNIT, 1);
    ExpectGoodLayout(resize, Picture(L"resize_percent"));
  });
}

TEST_P(ConversionLayout, OfTheRotateDialog) {
  With(IDB_CONV_ROTATE, IDE_ROTATE_ANGLE, [](HWND rotate) {
    SetText(rotate, IDE_ROTATE_ANGLE, L"-359.99");
    ExpectGoodLayout(rotate, Picture(L"rotate"));
  });
}

TEST_P(ConversionLayout, OfThePageSelection) {
  With(IDB_CONV_PAGE_OPTIONS, IDX_PAGES_ALL, [](HWND pages) {
    ClickAndWait(pages, IDX_PAGES_LIST);
    WaitUntil([pages] { return IsEnabled(pages, IDE_PAGES_LIST); }, "the page list can be typed");
    SetText(pages, IDE_PAGES_LIST, L"1,3,5-7");
    ExpectGoodLayout(pages, Picture(L"pages"));
  });
}

TEST_P(ConversionLayout, OfTheLogReport) {
  params.logReport = 1;
  params.overwriteMode = OVERWRITE_REPLACE;
  AddPicture(L"harbour at dawn.bmp");
  AddToList(in.AddFile(L"a name that is rather long for a list of files.bmp"));
  AddPicture(L"old pier.bmp");
  RunAndClose([](HWND dialog) {
    ClickAndWait(dialog, IDB_CONV_SELECT_ALL);
    Click(dialog, IDB_CONV_CONVERT);
    const HWND log = WaitForDialogWith(IDL_LOG);
    ExpectGoodLayout(log, Picture(L"log_report"));
    Click(log, IDOK);
    WaitUntilClosed(log);
  });
}

// --- Exports of their own ---

class OtherLayout : public ::testing::TestWithParam<bool> {
 protected:
  static void SetUpTestSuite() { ::SetProcessDPIAware(); }
  static HELPCALLBACK Help() { return GetParam() ? &IgnoreHelp : nullptr; }
  static std::wstring Picture(const std::wstring& name) { return GetParam() ? name + L"_help" : name; }
  // Ends the dialog with that button after a look at it.
  static void LookAndEnd(HWND dialog, const std::wstring& name, int button) {
    ExpectGoodLayout(dialog, Picture(name));
    Click(dialog, button);
    WaitUntilClosed(dialog);
  }

  ParentWindow parent;
};
INSTANTIATE_TEST_SUITE_P(WithAndWithoutHelp, OtherLayout, ::testing::Bool());

TEST_P(OtherLayout, OfTheIccDialogWithEachChoiceOfGroups) {
  const std::pair<uint32_t, const wchar_t*> choices[] = {{DLG_ICC_SHOW_LOAD | DLG_ICC_SHOW_SAVE, L"icc_both"},
                                                         {DLG_ICC_SHOW_LOAD, L"icc_load"},
                                                         {DLG_ICC_SHOW_SAVE, L"icc_save"}};
  for (const auto& [groups, name] : choices) {
    ICCPROFILEDLGPARAMS params = {};
    params.uStructSize = sizeof(params);
    params.flags = groups;
    params.iccProfile.uStructSize = sizeof(params.iccProfile);
    params.helpCallback = Help();
    DriveDialog([&] { return Z_DlgICCProfile(parent.hwnd(), &params); },
                [name] { LookAndEnd(WaitForDialogWith(IDB_ICC_HELP), name, IDB_ICC_CLOSE); });
  }
}

TEST_P(OtherLayout, OfTheAssociationDialog) {
  FILEASSOCIATIONDLGPARAMS params = {};
  params.uStructSize = sizeof(params);
  params.pszProgID = L"Zorvane.LayoutTest.1";
  params.pfnHelpCallback = Help();
  DriveDialog([&] { return Z_DlgFilesAssociation(parent.hwnd(), &params); },
              [] {
                const HWND dialog = WaitForDialogWith(IDL_ASSOC_FORMATS);
                WaitUntil([dialog] { return ::IsWindowEnabled(dialog); }, "the list is full");
                LookAndEnd(dialog, L"association", IDCANCEL);
              });
}

// The platform's own controls are the platform's affair.
TEST_P(OtherLayout, OfTheFolderPickersOwnPart) {
  constexpr int kFolderEdit = 4201;
  TemporaryFolder folder;
  std::wstring buffer(MAX_PATH, L'\0');
  folder.path().copy(buffer.data(), MAX_PATH - 1);
  DIRECTORYDLGPARAMS params = {};
  params.uStructSize = sizeof(params);
  params.directoryBuffer = buffer.data();
  params.bufferLength = MAX_PATH;
  params.helpCallback = Help();
  DriveDialog([&] { return Z_DlgGetDirectory(parent.hwnd(), &params); },
              [&] {
                const HWND dialog = WaitForDialogWith(kFolderEdit);
                WaitUntil([=] { return !TextOf(dialog, kFolderEdit).empty(); }, "the folder is shown");
                const HWND own = ::GetParent(Control(dialog, kFolderEdit));
                EXPECT_EQ("", TextFaults(own) + EdgeFaults(own) + OverlapFaults(own) + KeyFaults(own));
                EXPECT_TRUE(SaveScreenshot(dialog, Picture(L"directory_compact")));
                Click(dialog, IDCANCEL);
                WaitUntilClosed(dialog);
              });
}

TEST_P(OtherLayout, OfTheOpenDialogsOwnPart) {
  TemporaryFolder folder;
  EXPECT_TRUE(WritePicture(folder.File(L"pages.tif"), {60, 40, FMT_TIFF, 3}));
  OpenCall call(folder.path());
  call.parent = parent.hwnd();
  call.params.flags = DLG_OPEN_SHOW_PAGE_CONTROLS | DLG_OPEN_SHOW_DELETE_PAGE | DLG_OPEN_SHOW_PREVIEW |
                      DLG_OPEN_SHOW_FILE_INFO | DLG_OPEN_SHOW_LOAD_OPTIONS;
  call.params.helpCallback = Help();
  call.Drive([](HWND dialog) {
    SelectFile(dialog, L"pages.tif");
    const HWND own = OpenHook(dialog);
    EXPECT_EQ("", TextFaults(own) + EdgeFaults(own) + KeyFaults(own));
    EXPECT_TRUE(SaveScreenshot(dialog, Picture(L"open_all")));
    Click(dialog, IDCANCEL);
    WaitUntilClosed(dialog);
  });
}

// --- All templates ---

INT_PTR CALLBACK DoNothing(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

std::vector<LPWSTR> TemplatesOf(HMODULE module) {
  std::vector<LPWSTR> templates;
  ::EnumResourceNamesW(
      module, RT_DIALOG,
      [](HMODULE, LPCWSTR, LPWSTR name, LONG_PTR found) -> BOOL {
        reinterpret_cast<std::vector<LPWSTR>*>(found)->push_back(name);
        return TRUE;
      },
      reinterpret_cast<LONG_PTR>(&templates));
  return templates;
}

// With the texts that stand in the templates. Sets of controls that a dialog swaps stand on top of each other there, so
// nothing is said of overlaps and keys.
constexpr int kOpen = 9400, kOpenOldShell = 9408;
TEST(Templates, HoldTheirTextsAndTheirControls) {
  DIRECTORYDLGPARAMS refused = {};
  refused.uStructSize = sizeof(refused);
  Z_DlgGetDirectory(nullptr, &refused);  // any call registers the window classes
  const HMODULE module = ::GetModuleHandleW(L"zvfiledlg.dll");
  const std::vector<LPWSTR> templates = TemplatesOf(module);
  ASSERT_FALSE(templates.empty());
  const ParentWindow parent;
  for (LPWSTR const name : templates) {
    if (LOWORD(name) == kOpen || LOWORD(name) == kOpenOldShell) {
      continue;  // their places are given
    }
    const HWND dialog = ::CreateDialogParamW(module, name, parent.hwnd(), &DoNothing, 0);
    ASSERT_NE(nullptr, dialog) << "template " << LOWORD(name);
    EXPECT_EQ("", TextFaults(dialog) + EdgeFaults(dialog)) << "template " << LOWORD(name);
    ::DestroyWindow(dialog);
  }
}

}  // namespace
