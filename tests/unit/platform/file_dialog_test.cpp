#include "platform/file_dialog.h"

#include <dlgs.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "platform/controls.h"
#include "platform/unique_handle.h"
#include "tests/unit/platform/dialog_template.h"
#include "tests/unit/platform/print_cstring.h"

namespace {

constexpr UINT kStep = WM_APP + 3;
constexpr WORD kOwnButton = 4711;

// A folder with one file in it, removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    wchar_t base[MAX_PATH];
    ::GetTempPathW(MAX_PATH, base);
    folder.Format(L"%szvplatform %lu", base, ::GetCurrentProcessId());
    file = folder + L"\\picture.txt";
    ::CreateDirectoryW(folder, nullptr);
    unique_hfile(::CreateFileW(file, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    ::DeleteFileW(file);
    ::RemoveDirectoryW(folder);
  }

  CString folder;
  CString file;
};

class PickerDialog : public CFileDialog {
 public:
  explicit PickerDialog(const TemporaryFolder& place)
      : CFileDialog(TRUE, L"txt", place.file, OFN_SHOWHELP | OFN_FILEMUSTEXIST, L"Text|*.txt|All|*.*||"),
        template_(L"", WS_CHILD | WS_CLIPSIBLINGS | DS_3DLOOK | DS_CONTROL, 200, 40) {
    template_.Button(kOwnButton, L"Own");
    m_ofn.lpstrInitialDir = place.folder;
    m_ofn.hInstance = reinterpret_cast<HINSTANCE>(const_cast<DLGTEMPLATE*>(template_.Get()));
    m_ofn.Flags |= OFN_ENABLETEMPLATEHANDLE;
  }

  HWND Outer() const { return ::GetParent(m_hWnd); }
  void Accept() { ::PostMessageW(Outer(), WM_COMMAND, IDOK, 0); }
  void Cancel() { ::PostMessageW(Outer(), WM_COMMAND, IDCANCEL, 0); }

  std::function<void(PickerDialog&)> onStep;
  CString log;
  int refusals = 0;
  bool failInit = false;

 protected:
  BOOL OnInitDialog() override {
    log += L"init;";
    return CFileDialog::OnInitDialog();
  }
  void OnInitDone() override {
    log += L"done;";
    if (failInit) {
      throw std::runtime_error("while the picker comes up");
    }
    PostMessage(kStep);
  }
  BOOL OnFileNameOK() override {
    log += L"ok;";
    if (refusals > 0) {
      --refusals;
      Accept();
      return TRUE;
    }
    return FALSE;
  }
  afx_msg LRESULT OnStep(WPARAM, LPARAM) {
    onStep(*this);
    return 0;
  }
  afx_msg void OnOwnButton() { log += L"own button;"; }
  afx_msg void OnHelp() { log += L"help command;"; }
  afx_msg LRESULT OnHelpInfo(WPARAM, LPARAM lParam) {
    log.AppendFormat(L"help %d;", reinterpret_cast<HELPINFO*>(lParam)->iCtrlId);
    return TRUE;
  }
  DECLARE_MESSAGE_MAP()

 private:
  zvtest::DialogTemplate template_;
};

BEGIN_MESSAGE_MAP(PickerDialog, CFileDialog)
  ON_MESSAGE(kStep, OnStep)
  ON_MESSAGE(WM_HELP, OnHelpInfo)
  ON_BN_CLICKED(kOwnButton, OnOwnButton)
  ON_COMMAND(ID_HELP, OnHelp)
END_MESSAGE_MAP()

TEST(FileDialog, ReturnsTheAcceptedFile) {
  const TemporaryFolder place;
  PickerDialog dialog(place);
  CString folderWhileUp;
  dialog.onStep = [&](PickerDialog& self) {
    folderWhileUp = self.GetFolderPath();
    self.Accept();
  };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(dialog.log, L"init;done;ok;");
  EXPECT_EQ(folderWhileUp.CompareNoCase(place.folder), 0);
  EXPECT_EQ(dialog.GetPathName().CompareNoCase(place.file), 0);
  EXPECT_EQ(dialog.GetFileName(), L"picture.txt");
  EXPECT_EQ(dialog.GetFileTitle(), L"picture");
  EXPECT_EQ(dialog.GetFileExt(), L"txt");
  EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST(FileDialog, StaysOpenWhileTheNameIsRefused) {
  const TemporaryFolder place;
  PickerDialog dialog(place);
  dialog.refusals = 2;
  dialog.onStep = [](PickerDialog& self) { self.Accept(); };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(dialog.log, L"init;done;ok;ok;ok;");
}

TEST(FileDialog, CancelIsNoError) {
  const TemporaryFolder place;
  PickerDialog dialog(place);
  dialog.onStep = [](PickerDialog& self) { self.Cancel(); };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(::CommDlgExtendedError(), 0u);
}

TEST(FileDialog, RoutesItsOwnControlsHelpButtonAndHelpKey) {
  const TemporaryFolder place;
  PickerDialog dialog(place);
  dialog.onStep = [](PickerDialog& self) {
    self.SendDlgItemMessage(kOwnButton, BM_CLICK);
    ::SendMessageW(::GetDlgItem(self.Outer(), pshHelp), BM_CLICK, 0, 0);
    HELPINFO help = {};
    help.cbSize = sizeof(help);
    help.iContextType = HELPINFO_WINDOW;
    help.iCtrlId = cmb1;
    ::SendMessageW(self.Outer(), WM_HELP, 0, reinterpret_cast<LPARAM>(&help));
    self.Cancel();
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  CString expected;
  expected.Format(L"init;done;own button;help command;help %d;", cmb1);
  EXPECT_EQ(dialog.log, expected);
}

TEST(FileDialog, AnExceptionClosesItWithAnError) {
  const TemporaryFolder place;
  for (const bool atStart : {true, false}) {
    PickerDialog dialog(place);
    dialog.failInit = atStart;
    dialog.onStep = [](PickerDialog&) { throw 5; };
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_TRUE(dialog.GetFailure());
  }
}

TEST(FileDialog, RunsADialogOverItself) {
  const TemporaryFolder place;
  PickerDialog dialog(place);
  INT_PTR inner = 0;
  BOOL enabledAfter = FALSE;
  dialog.onStep = [&](PickerDialog& self) {
    PickerDialog second(place);
    second.m_ofn.hwndOwner = self.Outer();
    second.onStep = [](PickerDialog& innerSelf) { innerSelf.Cancel(); };
    inner = second.DoModal();
    enabledAfter = ::IsWindowEnabled(self.Outer());
    self.Cancel();
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(inner, IDCANCEL);
  EXPECT_TRUE(enabledAfter);
}

TEST(FileDialog, HasNoOwnerWithoutAParentAndLeavesTheActiveWindowEnabled) {
  const TemporaryFolder place;
  const unique_hwnd active(::CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 200, 100,
                                             nullptr, nullptr, nullptr, nullptr));
  ::SetActiveWindow(active.get());
  ASSERT_EQ(::GetActiveWindow(), active.get());
  PickerDialog dialog(place);
  dialog.onStep = [&](PickerDialog& self) {
    EXPECT_EQ(::GetWindow(self.Outer(), GW_OWNER), nullptr);
    EXPECT_TRUE(::IsWindowEnabled(active.get()));
    self.Cancel();
  };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(dialog.m_ofn.hwndOwner, nullptr);
}

TEST(FileDialog, ListsTheFilesOfAMultipleSelection) {
  CFileDialog dialog(TRUE, nullptr, nullptr, OFN_ALLOWMULTISELECT);
  wchar_t several[] = L"C:\\folder\0a.txt\0b.txt\0";
  dialog.m_ofn.lpstrFile = several;
  POSITION position = dialog.GetStartPosition();
  EXPECT_EQ(dialog.GetNextPathName(position), L"C:\\folder\\a.txt");
  EXPECT_EQ(dialog.GetNextPathName(position), L"C:\\folder\\b.txt");
  EXPECT_EQ(position, nullptr);
  wchar_t single[] = L"C:\\folder\\a.txt\0";
  dialog.m_ofn.lpstrFile = single;
  position = dialog.GetStartPosition();
  EXPECT_EQ(dialog.GetNextPathName(position), L"C:\\folder\\a.txt");
  EXPECT_EQ(position, nullptr);
}

}  // namespace
