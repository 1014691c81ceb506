// The activation context that decides over the version of the common controls is the caller's again after every export.
#include <gtest/gtest.h>

#include <string>

#include "include/zvfiledlg.h"
#include "resources/conversion_ids.h"
#include "tests/support/dialog_driver.h"

namespace {

using namespace zvtest;

HANDLE CurrentContext() {
  HANDLE context = nullptr;
  EXPECT_TRUE(::GetCurrentActCtx(&context));
  ::ReleaseActCtx(context);  // of the reference that the question adds
  return context;
}

// A caller with a context of its own.
class ActivationContext : public ::testing::Test {
 protected:
  ActivationContext() {
    const std::string manifest =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">"
        "<assemblyIdentity name=\"Zorvane.Caller\" version=\"1.0.0.0\" type=\"win32\" processorArchitecture=\"amd64\"/>"
        "</assembly>";
    path = folder.AddFile(L"caller.manifest", {manifest.begin(), manifest.end()});
    ACTCTXW request = {};
    request.cbSize = sizeof(request);
    request.lpSource = path.c_str();
    context = ::CreateActCtxW(&request);
    EXPECT_NE(INVALID_HANDLE_VALUE, context);
    EXPECT_TRUE(::ActivateActCtx(context, &cookie));
    conversion.uStructSize = sizeof(conversion);
  }
  ~ActivationContext() override {
    ::DeactivateActCtx(0, cookie);
    ::ReleaseActCtx(context);
  }

  TemporaryFolder folder;
  ParentWindow parent;
  std::wstring path;
  HANDLE context = nullptr;
  ULONG_PTR cookie = 0;
  FILECONVERSIONDLGPARAMS conversion = {};
};

TEST_F(ActivationContext, IsTheCallersAfterARefusedCall) {
  ASSERT_EQ(context, CurrentContext());
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_DlgFileConversion(parent.hwnd(), nullptr));
  EXPECT_EQ(context, CurrentContext());
  EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversion(nullptr, &conversion));
  EXPECT_EQ(context, CurrentContext());
  conversion.uStructSize = 1;
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_DlgFileConversion(parent.hwnd(), &conversion));
  EXPECT_EQ(context, CurrentContext());
}

TEST_F(ActivationContext, IsTheCallersAfterAnInitialiserThatRefuses) {
  ICCPROFILEDLGPARAMS profile = {};
  profile.uStructSize = sizeof(profile);
  EXPECT_NE(SUCCESS_DLG_CLOSE, Z_DlgICCProfile(parent.hwnd(), &profile)) << "neither group is shown";
  EXPECT_EQ(context, CurrentContext());
}

HANDLE contextInDialog = nullptr;
void ZV_CALL NoteContext(uint32_t, int32_t, void*) { contextInDialog = CurrentContext(); }

TEST_F(ActivationContext, IsTheLibrarysInADialogAndTheCallersAfterIt) {
  contextInDialog = nullptr;
  conversion.helpCallback = NoteContext;
  ASSERT_EQ(SUCCESS_DLG_CLOSE, DriveDialog([this] { return Z_DlgFileConversion(parent.hwnd(), &conversion); },
                                           [] {
                                             const HWND dialog = WaitForDialogWith(IDB_CONV_CLOSE);
                                             Command(dialog, IDHELP);
                                             WaitUntil([] { return contextInDialog; }, "the help callback is called");
                                             Click(dialog, IDB_CONV_CLOSE);
                                           }));
  EXPECT_NE(context, contextInDialog);
  EXPECT_EQ(context, CurrentContext());
}

}  // namespace
