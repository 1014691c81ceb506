// The open dialog on shells that have no places of their own: its template, its bar of places, and the ways to a folder.
#include <windows.h>

#include <shlobj.h>

#include "services/zvdlgwidgets/shortcut_bar.h"
#include "tests/dialogs/open_core_fixture.h"

namespace {

using namespace zvtest;

constexpr UINT kGetShellBrowser = WM_USER + 7;

// What the bar reports when the user has clicked an item.
void ChoosePlace(HWND dialog, int item) {
  NMSHORTCUTBAR notification = {{Control(dialog, kPlacesBar), kPlacesBar, ZVSBN_ITEMCLICKED}, 0, item};
  ::SendMessageW(OpenHook(dialog), WM_NOTIFY, kPlacesBar, reinterpret_cast<LPARAM>(&notification));
}

std::wstring FolderOf(HWND dialog) {
  wchar_t path[MAX_PATH] = L"";
  ::SendMessageW(dialog, CDM_GETFOLDERPATH, MAX_PATH, reinterpret_cast<LPARAM>(path));
  // Not every system ends it alike.
  std::wstring folder = path;
  return folder.ends_with(L'\\') ? folder.substr(0, folder.size() - 1) : folder;
}

std::wstring SpecialFolder(int id) {
  wchar_t path[MAX_PATH] = L"";
  EXPECT_TRUE(::SHGetSpecialFolderPathW(nullptr, path, id, TRUE));
  return path;
}

class OpenPlaces : public OpenCore {
 protected:
  OldStyleShell oldShell;
};

TEST_F(OpenPlaces, StandLeftOfTheListWithAMarginAllAround) {
  Open([](HWND dialog) {
    const RECT bar = RectIn(dialog, kPlacesBar);
    RECT client;
    ::GetClientRect(dialog, &client);
    EXPECT_EQ(5, bar.left);
    EXPECT_EQ(5, bar.top);
    EXPECT_EQ(93, bar.right);
    EXPECT_EQ(client.bottom - 10, bar.bottom);
    EXPECT_GE(OpenViewRect(dialog).left, bar.right);
    EXPECT_EQ(0, ::GetWindowLongW(Control(dialog, kPlacesBar), GWL_STYLE) & WS_BORDER);
    EXPECT_EQ(nullptr, FindControl(dialog, 1184)) << "the shell's own places";
    SelectFile(dialog, L"picture.bmp");
    SaveScreenshot(dialog, L"open_old_shell");
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, AreThereOnShellsWithoutTheirOwnAlone) {
  const NewStyleShell newShell;
  Open([](HWND dialog) {
    EXPECT_EQ(nullptr, FindControl(dialog, kPlacesBar));
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, FollowTheHeightOfTheDialog) {
  call.params.flags |= DLG_OPEN_RESIZABLE;
  Open([](HWND dialog) {
    DragCorner(dialog, 40, 60);
    WaitUntil(
        [=] {
          RECT client;
          ::GetClientRect(dialog, &client);
          return RectIn(dialog, kPlacesBar).bottom == client.bottom - 10;
        },
        "the bar ends above the new bottom");
    EXPECT_EQ(5, RectIn(dialog, kPlacesBar).top);
    SaveScreenshot(dialog, L"open_old_shell_widened");
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, MoveTheLookInLabelToTheListAndTheFolderBoxBehindIt) {
  Open([](HWND dialog) {
    const RECT label = RectIn(dialog, kShellLookInLabel);
    EXPECT_EQ(OpenViewRect(dialog).left, label.left);
    const RECT folders = RectIn(dialog, kShellFolderCombo);
    EXPECT_EQ(label.right, folders.left);
    EXPECT_EQ(RectOfWindow(dialog, OpenToolBar(dialog)).left, folders.right);
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, TakeTheFileInformationButtonOutOfTheToolBar) {
  Open([](HWND dialog) {
    const HWND bar = OpenToolBar(dialog);
    EXPECT_EQ(-1, ::SendMessageW(bar, TB_COMMANDTOINDEX, kOpenFileInfoCommand, 0));
    EXPECT_EQ(::SendMessageW(bar, TB_BUTTONCOUNT, 0, 0) - 1,
              ::SendMessageW(bar, TB_COMMANDTOINDEX, kOpenPreviewCommand, 0));
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, LeaveTheShellsButtonsWhenNeitherOfOursIsWanted) {
  LRESULT withBoth = 0;
  Open([&](HWND dialog) {
    withBoth = ::SendMessageW(OpenToolBar(dialog), TB_BUTTONCOUNT, 0, 0);
    Cancel(dialog);
  });
  call.params.flags = 0;
  Open([&](HWND dialog) {
    EXPECT_EQ(withBoth - 1, ::SendMessageW(OpenToolBar(dialog), TB_BUTTONCOUNT, 0, 0));
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, GoToTheirFoldersThroughTheShellsBrowser) {
  const std::wstring documents = SpecialFolder(CSIDL_PERSONAL);
  const std::wstring desktop = SpecialFolder(CSIDL_DESKTOPDIRECTORY);
  const std::wstring recent = SpecialFolder(CSIDL_RECENT);
  Open([&](HWND dialog) {
    ChoosePlace(dialog, 1);
    WaitUntil([&] { return FolderOf(dialog) == documents; }, "the dialog shows the documents");
    ChoosePlace(dialog, 2);
    WaitUntil([&] { return FolderOf(dialog) == desktop; }, "the dialog shows the desktop");
    ChoosePlace(dialog, 0);
    WaitUntil([&] { return FolderOf(dialog) == recent; }, "the dialog shows what was used of late");
    Cancel(dialog);
  });
}

// A dialog without the shell's browser: the message is not known to it.
class WithoutBrowser {
 public:
  explicit WithoutBrowser(HWND dialog) : dialog_(dialog) {
    former = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WithoutBrowser::Procedure)));
  }
  WithoutBrowser(const WithoutBrowser&) = delete;
  WithoutBrowser& operator=(const WithoutBrowser&) = delete;
  ~WithoutBrowser() { ::SetWindowLongPtrW(dialog_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former)); }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == kGetShellBrowser ? 0 : ::CallWindowProcW(former, window, message, wParam, lParam);
  }
  inline static WNDPROC former = nullptr;
  HWND dialog_;
};

TEST_F(OpenPlaces, GoThroughTheNameBoxWithoutABrowserAndGiveTheTypedNameBack) {
  const std::wstring documents = SpecialFolder(CSIDL_PERSONAL);
  Open([&](HWND dialog) {
    TypeName(dialog, L"half a na");
    {
      const WithoutBrowser without(dialog);
      ChoosePlace(dialog, 1);
      WaitUntil([&] { return FolderOf(dialog) == documents; }, "the dialog shows the documents");
    }
    WaitUntil([&] { return TextOf(OpenNameBox(dialog)) == L"half a na"; }, "the typed name is back");
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, OfferTheFileInformationWhenItIsWanted) {
  folder.AddFile(L"broken.bmp", {'n', 'o'});
  Open([](HWND dialog) {
    SelectFile(dialog, L"broken.bmp");
    WaitUntil([=] { return TextOf(OpenNameBox(dialog)) == L"broken.bmp"; }, "the file is chosen");
    const HWND bar = Control(dialog, kPlacesBar);
    ::PostMessageW(bar, WM_KEYDOWN, VK_END, 1);
    ::PostMessageW(bar, WM_KEYDOWN, VK_RETURN, 1);
    const HWND message = WaitForMessageBox();
    EXPECT_NE(std::wstring::npos, TextOf(message, 65535).find(L"broken.bmp"));
    Click(message, IDOK);
    WaitUntilClosed(message);
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, EndWithTheDesktopWithoutTheFileInformation) {
  call.params.flags &= ~DLG_OPEN_SHOW_FILE_INFO;
  const std::wstring desktop = SpecialFolder(CSIDL_DESKTOPDIRECTORY);
  Open([&](HWND dialog) {
    const HWND bar = Control(dialog, kPlacesBar);
    ::PostMessageW(bar, WM_KEYDOWN, VK_END, 1);
    ::PostMessageW(bar, WM_KEYDOWN, VK_SPACE, 1);
    WaitUntil([&] { return FolderOf(dialog) == desktop; }, "the last item is the desktop");
    Cancel(dialog);
  });
}

TEST_F(OpenPlaces, AreToldToTheCallerByTheTemplateOfTheRecord) {
  ASSERT_EQ(SUCCESS_DLG_CANCEL, Open(Cancel));
  EXPECT_EQ(MAKEINTRESOURCEW(9408), call.openFileName.lpTemplateName);
  const NewStyleShell newShell;
  ASSERT_EQ(SUCCESS_DLG_CANCEL, Open(Cancel));
  EXPECT_EQ(MAKEINTRESOURCEW(9400), call.openFileName.lpTemplateName);
}

}  // namespace
