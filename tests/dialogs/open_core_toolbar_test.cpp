// Our buttons in the shell's tool bar: how they look, what they say, where their commands go, and which of them stay.
#include "tests/dialogs/open_core_fixture.h"

namespace {

using namespace zvtest;

TBBUTTONINFOW ButtonInfo(HWND bar, int command) {
  TBBUTTONINFOW info = {};
  info.cbSize = sizeof(info);
  info.dwMask = TBIF_STYLE | TBIF_STATE | TBIF_IMAGE;
  EXPECT_GE(::SendMessageW(bar, TB_GETBUTTONINFOW, static_cast<WPARAM>(command), reinterpret_cast<LPARAM>(&info)), 0);
  return info;
}

int CommandAt(HWND bar, int index) {
  TBBUTTON button = {};
  ::SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&button));
  return button.idCommand;
}

int ButtonCount(HWND bar) { return static_cast<int>(::SendMessageW(bar, TB_BUTTONCOUNT, 0, 0)); }

bool HasButton(HWND bar, int command) {
  return ::SendMessageW(bar, TB_COMMANDTOINDEX, static_cast<WPARAM>(command), 0) >= 0;
}

// Writes down what reaches the platform's dialog while it lives.
class OuterListener {
 public:
  explicit OuterListener(HWND dialog) : dialog_(dialog) {
    commands.clear();
    tips = 0;
    former = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OuterListener::Procedure)));
  }
  OuterListener(const OuterListener&) = delete;
  OuterListener& operator=(const OuterListener&) = delete;
  ~OuterListener() { ::SetWindowLongPtrW(dialog_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former)); }

  inline static std::vector<int> commands;
  inline static int tips = 0;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND) {
      commands.push_back(LOWORD(wParam));
      return 0;
    }
    const UINT code = message == WM_NOTIFY ? reinterpret_cast<const NMHDR*>(lParam)->code : 0;
    if (code == TTN_NEEDTEXTW || code == TTN_NEEDTEXTA) {
      ++tips;
      return 0;
    }
    return ::CallWindowProcW(former, window, message, wParam, lParam);
  }
  inline static WNDPROC former = nullptr;
  HWND dialog_;
};

class OpenToolBarTest : public OpenCore {};

TEST_F(OpenToolBarTest, EndsWithFileInformationAndPreview) {
  Open([](HWND dialog) {
    const HWND bar = OpenToolBar(dialog);
    const int count = ButtonCount(bar);
    ASSERT_GT(count, 2);
    EXPECT_EQ(kOpenFileInfoCommand, CommandAt(bar, count - 2));
    EXPECT_EQ(kOpenPreviewCommand, CommandAt(bar, count - 1));
    const TBBUTTONINFOW info = ButtonInfo(bar, kOpenFileInfoCommand), preview = ButtonInfo(bar, kOpenPreviewCommand);
    EXPECT_EQ(BTNS_AUTOSIZE, info.fsStyle);
    EXPECT_EQ(BTNS_AUTOSIZE | BTNS_CHECK, preview.fsStyle);
    EXPECT_EQ(TBSTATE_ENABLED, info.fsState);
    EXPECT_EQ(TBSTATE_ENABLED, preview.fsState);
    EXPECT_NE(info.iImage, preview.iImage) << "each has its own picture";
    EXPECT_GE(info.iImage, 0);
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, IsFlatWithTextsBesidePicturesAndButtonsThatFit) {
  Open([](HWND dialog) {
    const HWND bar = OpenToolBar(dialog);
    const LONG style = ::GetWindowLongW(bar, GWL_STYLE);
    EXPECT_TRUE(style & TBSTYLE_FLAT);
    EXPECT_TRUE(style & TBSTYLE_LIST);
    for (int i = 0; i < ButtonCount(bar); ++i) {
      EXPECT_TRUE(ButtonInfo(bar, CommandAt(bar, i)).fsStyle & BTNS_AUTOSIZE) << i;
    }
    RECT last;
    ::SendMessageW(bar, TB_GETITEMRECT, static_cast<WPARAM>(ButtonCount(bar) - 1), reinterpret_cast<LPARAM>(&last));
    RECT client;
    ::GetClientRect(bar, &client);
    EXPECT_LE(last.right, client.right) << "the bar is wide enough for our buttons";
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, SendsTheShellsCommandsToTheShellAndKeepsOurs) {
  Open([](HWND dialog) {
    const HWND bar = OpenToolBar(dialog);
    const int shells = CommandAt(bar, 0);
    const auto press = [&](int command) {
      ::SendMessageW(OpenHook(dialog), WM_COMMAND, MAKEWPARAM(command, 0), reinterpret_cast<LPARAM>(bar));
    };
    {
      const OuterListener outer(dialog);
      press(shells);
      EXPECT_EQ(std::vector<int>{shells}, OuterListener::commands);
      press(kOpenPreviewCommand);
      EXPECT_EQ(1u, OuterListener::commands.size());
    }
    WaitUntil([=] { return FindControl(dialog, kOpenPane) != nullptr; }, "our command opens the pane");
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, TellsTipsInWideTextAndOnlyMarksNarrowOnesHandled) {
  Open([](HWND dialog) {
    const HWND hook = OpenHook(dialog), bar = OpenToolBar(dialog);
    const HWND tips = reinterpret_cast<HWND>(::SendMessageW(bar, TB_GETTOOLTIPS, 0, 0));
    const auto wide = [&](int command) {
      NMTTDISPINFOW info = {};
      info.hdr = {tips, static_cast<UINT_PTR>(command), TTN_NEEDTEXTW};
      info.lpszText = info.szText;
      ::SendMessageW(hook, WM_NOTIFY, info.hdr.idFrom, reinterpret_cast<LPARAM>(&info));
      return std::wstring(info.szText);
    };
    const OuterListener outer(dialog);
    EXPECT_EQ(L"Show or hide the preview", wide(kOpenPreviewCommand));
    EXPECT_EQ(L"File Information", wide(kOpenFileInfoCommand));
    NMTTDISPINFOA narrow = {};
    narrow.hdr = {tips, kOpenPreviewCommand, TTN_NEEDTEXTA};
    ::SendMessageW(hook, WM_NOTIFY, narrow.hdr.idFrom, reinterpret_cast<LPARAM>(&narrow));
    EXPECT_STREQ("", narrow.szText);
    EXPECT_EQ(0, OuterListener::tips);
    EXPECT_EQ(L"", wide(CommandAt(bar, 0)));
    EXPECT_EQ(1, OuterListener::tips) << "the shell speaks for its own buttons";
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, CutsATipThatIsTooLongForTheNotice) {
  const std::wstring longTip(100, L'x');
  ASSERT_EQ(SUCCESS, SetDialogStringText(4328, longTip.c_str()));
  Open([&](HWND dialog) {
    NMTTDISPINFOW info = {};
    info.hdr = {OpenToolBar(dialog), kOpenPreviewCommand, TTN_NEEDTEXTW};
    ::SendMessageW(OpenHook(dialog), WM_NOTIFY, info.hdr.idFrom, reinterpret_cast<LPARAM>(&info));
    EXPECT_EQ(longTip.substr(0, 79), info.szText);
    Cancel(dialog);
  });
  ASSERT_EQ(SUCCESS, SetDialogStringText(4328, nullptr));
}

TEST_F(OpenToolBarTest, LosesThePreviewButtonWithoutAPreview) {
  call.params.flags &= ~DLG_OPEN_SHOW_PREVIEW;
  call.params.showPreview = 1;
  Open([](HWND dialog) {
    EXPECT_FALSE(HasButton(OpenToolBar(dialog), kOpenPreviewCommand));
    EXPECT_TRUE(HasButton(OpenToolBar(dialog), kOpenFileInfoCommand));
    EXPECT_EQ(nullptr, FindControl(dialog, kOpenPane)) << "and the record's wish for the pane goes with it";
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, LosesTheFileInformationButtonWhenItIsNotOffered) {
  call.params.flags &= ~DLG_OPEN_SHOW_FILE_INFO;
  Open([](HWND dialog) {
    EXPECT_TRUE(HasButton(OpenToolBar(dialog), kOpenPreviewCommand));
    EXPECT_FALSE(HasButton(OpenToolBar(dialog), kOpenFileInfoCommand));
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, LosesAButtonOfTheShellInPlaceOfFileInformationWhenNeitherIsOffered) {
  std::vector<int> shells;
  Open([&](HWND dialog) {
    const HWND bar = OpenToolBar(dialog);
    for (int i = 0; i < ButtonCount(bar) - 2; ++i) {
      shells.push_back(CommandAt(bar, i));
    }
    Cancel(dialog);
  });
  call.params.flags = 0;
  Open([&](HWND dialog) {
    const HWND bar = OpenToolBar(dialog);
    std::vector<int> left;
    for (int i = 0; i < ButtonCount(bar); ++i) {
      left.push_back(CommandAt(bar, i));
    }
    std::vector<int> expected = shells;
    expected.back() = kOpenFileInfoCommand;
    EXPECT_EQ(expected, left);
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, StampsAloneBringNoPaneAndNoButton) {
  call.params.flags = DLG_OPEN_PREVIEW_STAMP_ONLY | DLG_OPEN_SHOW_FILE_INFO;
  call.params.showPreview = 1;
  Open([](HWND dialog) {
    EXPECT_FALSE(HasButton(OpenToolBar(dialog), kOpenPreviewCommand));
    EXPECT_EQ(nullptr, FindControl(dialog, kOpenPane));
    Cancel(dialog);
  });
}

TEST_F(OpenToolBarTest, StaysAsItIsInLaterFolders) {
  folder.AddFolder(L"sub");
  Open([&](HWND dialog) {
    const int before = ButtonCount(OpenToolBar(dialog));
    TypeName(dialog, folder.File(L"sub"));
    Click(dialog, IDOK);
    WaitUntil([=] { return ListedFiles(dialog).empty(); }, "the dialog shows the folder");
    EXPECT_EQ(before, ButtonCount(OpenToolBar(dialog)));
    Cancel(dialog);
  });
}

}  // namespace
