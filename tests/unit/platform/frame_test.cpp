#include "platform/frame_wnd.h"

#include <gtest/gtest.h>

#include "platform/dialog_bar.h"
#include "platform/menu.h"
#include "platform/status_bar.h"
#include "platform/view.h"
#include "tests/unit/platform/dialog_template.h"
#include "tests/unit/platform/print_cstring.h"

namespace {

constexpr UINT kViewCommand = 0x8001;
constexpr UINT kFrameCommand = 0x8002;
constexpr UINT kCheckedCommand = 0x8003;
constexpr UINT kNobodysCommand = 0x8004;

int framesAlive = 0;
int viewsAlive = 0;

class TestView : public CView {
  DECLARE_DYNCREATE(TestView)

 public:
  TestView() { ++viewsAlive; }
  ~TestView() override { --viewsAlive; }
  void OnDraw(CDC*) override { ++drawn; }
  void OnInitialUpdate() override { ++updated; }

  int commands = 0;
  int drawn = 0;
  int updated = 0;

 protected:
  afx_msg void OnViewCommand() { ++commands; }
  DECLARE_MESSAGE_MAP()
};

IMPLEMENT_DYNCREATE(TestView, CView)

BEGIN_MESSAGE_MAP(TestView, CView)
  ON_COMMAND(kViewCommand, OnViewCommand)
END_MESSAGE_MAP()

class TestFrame : public CFrameWnd {
 public:
  TestFrame() { ++framesAlive; }
  ~TestFrame() override { --framesAlive; }

  BOOL Open() {
    CCreateContext context;
    context.m_pNewViewClass = RUNTIME_CLASS(TestView);
    context.m_pCurrentFrame = this;
    return Create(nullptr, L"frame", WS_OVERLAPPEDWINDOW, CRect(20, 20, 520, 420), nullptr, nullptr, 0, &context);
  }
  TestView& View() { return dynamic_cast<TestView&>(*GetActiveView()); }

  CStatusBar statusBar;
  CToolBar toolBar;
  CDialogBar dialogBar;
  int commands = 0;
  BOOL checkedEnabled = TRUE;

 protected:
  afx_msg int OnCreate(LPCREATESTRUCT create) {
    if (CFrameWnd::OnCreate(create) == -1 || !statusBar.Create(this) || !toolBar.Create(this)) {
      return -1;
    }
    const UINT panes[] = {0, 0};
    statusBar.SetIndicators(panes, 2);
    statusBar.SetPaneInfo(1, 0, SBPS_NORMAL, 85);
    const UINT ids[] = {kViewCommand, ID_SEPARATOR, kFrameCommand, kCheckedCommand, kNobodysCommand};
    toolBar.SetButtons(ids, 5);
    DockControlBar(&toolBar);
    zvtest::DialogTemplate strip(L"", WS_CHILD, 60, 100);
    strip.Button(77, L"In the strip");
    return dialogBar.Create(this, strip.Get(), CBRS_LEFT, 1) ? 0 : -1;
  }
  afx_msg void OnFrameCommand() { ++commands; }
  afx_msg void OnUpdateChecked(CCmdUI* ui) {
    ui->Enable(checkedEnabled);
    ui->SetCheck(1);
  }
  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(TestFrame, CFrameWnd)
  ON_WM_CREATE()
  ON_COMMAND(kFrameCommand, OnFrameCommand)
  ON_COMMAND(kCheckedCommand, OnFrameCommand)
  ON_BN_CLICKED(77, OnFrameCommand)
  ON_UPDATE_COMMAND_UI(kCheckedCommand, OnUpdateChecked)
END_MESSAGE_MAP()

class FrameTest : public testing::Test {
 protected:
  FrameTest() : frame_(new TestFrame) {
    EXPECT_TRUE(frame_->Open());
    frame_->InitialUpdateFrame(TRUE);
    frame_->RecalcLayout();
  }
  ~FrameTest() override {
    if (framesAlive) {
      frame_->DestroyWindow();
    }
  }

  CRect PlaceOf(const CWnd& child) const {
    CRect rect;
    child.GetWindowRect(rect);
    frame_->ScreenToClient(rect);
    return rect;
  }

  TestFrame* frame_;
};

TEST_F(FrameTest, MakesItsViewAndTellsItWhenAllIsReady) {
  EXPECT_EQ(frame_->View().updated, 1);
  frame_->View().Invalidate();
  frame_->View().UpdateWindow();
  EXPECT_GT(frame_->View().drawn, 0);
  EXPECT_EQ(frame_->View().GetParentFrame(), frame_);
}

TEST_F(FrameTest, BarsAndViewShareTheClientAreaWithoutOverlap) {
  CRect client;
  frame_->GetClientRect(client);
  const CRect status = PlaceOf(frame_->statusBar);
  const CRect tools = PlaceOf(frame_->toolBar);
  const CRect strip = PlaceOf(frame_->dialogBar);
  const CRect view = PlaceOf(frame_->View());
  EXPECT_EQ(status.bottom, client.bottom);
  EXPECT_EQ(status.Width(), client.Width());
  EXPECT_GE(tools.top, 0);
  EXPECT_GT(tools.Height(), 0);
  EXPECT_EQ(strip.left, 0);
  EXPECT_GE(strip.top, tools.bottom);
  EXPECT_EQ(view.left, strip.right);
  EXPECT_EQ(view.right, client.right);
  EXPECT_EQ(view.bottom, status.top);
  EXPECT_EQ(view.top, strip.top);
}

TEST_F(FrameTest, HidingABarGivesItsPlaceToTheView) {
  const CRect before = PlaceOf(frame_->View());
  frame_->ShowControlBar(&frame_->statusBar, FALSE);
  EXPECT_GT(PlaceOf(frame_->View()).bottom, before.bottom);
  frame_->ShowControlBar(&frame_->dialogBar, FALSE);
  EXPECT_EQ(PlaceOf(frame_->View()).left, 0);
  frame_->ShowControlBar(&frame_->toolBar, FALSE);
  EXPECT_LT(PlaceOf(frame_->View()).top, before.top);
  EXPECT_FALSE(frame_->toolBar.IsVisible());
  frame_->ShowControlBar(&frame_->toolBar, TRUE);
  frame_->ShowControlBar(&frame_->statusBar, TRUE);
  frame_->ShowControlBar(&frame_->dialogBar, TRUE);
  EXPECT_EQ(PlaceOf(frame_->View()), before);
}

TEST_F(FrameTest, CommandsGoToTheViewFirstThenToTheFrame) {
  frame_->SendMessage(WM_COMMAND, kViewCommand);
  frame_->SendMessage(WM_COMMAND, kFrameCommand);
  EXPECT_EQ(frame_->View().commands, 1);
  EXPECT_EQ(frame_->commands, 1);
}

TEST_F(FrameTest, ControlsInABarNotifyTheFrame) {
  frame_->dialogBar.SendDlgItemMessage(77, BM_CLICK);
  EXPECT_EQ(frame_->commands, 1);
}

TEST_F(FrameTest, ToolBarClickReachesTheCommand) {
  CRect button;
  frame_->toolBar.GetToolBarCtrl().GetItemRect(2, button);
  const LPARAM point = MAKELPARAM(button.CenterPoint().x, button.CenterPoint().y);
  frame_->toolBar.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, point);
  frame_->toolBar.SendMessage(WM_LBUTTONUP, 0, point);
  EXPECT_EQ(frame_->commands, 1);
}

TEST_F(FrameTest, ToolBarFollowsItsCommandsAtIdleTime) {
  frame_->SendMessageToIdleWindows();
  CToolBarCtrl& bar = frame_->toolBar.GetToolBarCtrl();
  EXPECT_TRUE(bar.IsButtonEnabled(kViewCommand));
  EXPECT_TRUE(bar.IsButtonChecked(kCheckedCommand));
  EXPECT_FALSE(bar.IsButtonEnabled(kNobodysCommand));
  frame_->checkedEnabled = FALSE;
  frame_->SendMessageToIdleWindows();
  EXPECT_FALSE(bar.IsButtonEnabled(kCheckedCommand));
}

TEST_F(FrameTest, MenuFollowsItsCommandsWhenItOpens) {
  CMenu menu;
  menu.CreatePopupMenu();
  menu.AppendMenu(MF_STRING, kCheckedCommand, L"&Checked");
  menu.AppendMenu(MF_SEPARATOR);
  menu.AppendMenu(MF_STRING, kNobodysCommand, L"&Nobody's");
  frame_->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.GetSafeHmenu()), MAKELPARAM(0, FALSE));
  EXPECT_TRUE(menu.GetMenuState(0, MF_BYPOSITION) & MF_CHECKED);
  EXPECT_TRUE(menu.GetMenuState(2, MF_BYPOSITION) & MF_GRAYED);
}

TEST_F(FrameTest, StatusBarShowsPromptsAndPanes) {
  frame_->SetMessageText(L"a prompt");
  EXPECT_EQ(frame_->statusBar.GetPaneText(0), L"a prompt");
  frame_->statusBar.SetPaneText(1, L"Page 1");
  wchar_t shown[64] = L"";
  frame_->statusBar.SendMessage(SB_GETTEXTW, 1, reinterpret_cast<LPARAM>(shown));
  EXPECT_STREQ(shown, L"Page 1");
  frame_->statusBar.SetPaneStyle(1, SBPS_DISABLED);
  frame_->statusBar.SendMessage(SB_GETTEXTW, 1, reinterpret_cast<LPARAM>(shown));
  EXPECT_STREQ(shown, L"");
  EXPECT_EQ(frame_->statusBar.GetPaneText(1), L"Page 1");
}

TEST_F(FrameTest, DeletesItselfAndItsViewWithItsWindow) {
  EXPECT_EQ(framesAlive, 1);
  EXPECT_EQ(viewsAlive, 1);
  frame_->SendMessage(WM_CLOSE);
  EXPECT_EQ(framesAlive, 0);
  EXPECT_EQ(viewsAlive, 0);
}

TEST_F(FrameTest, RunsAModalLoopOfItsOwn) {
  frame_->SetTimer(1, 1, [](HWND window, UINT, UINT_PTR id, DWORD) {
    ::KillTimer(window, id);
    CWnd::FromHandlePermanent(window)->EndModalLoop(3);
  });
  EXPECT_EQ(frame_->RunModalLoop(), 3);
}

TEST(FrameCreation, DeletesTheObjectWhenThereIsNoMenu) {
  auto* const frame = new TestFrame;
  EXPECT_EQ(framesAlive, 1);
  EXPECT_FALSE(frame->Create(nullptr, L"", WS_OVERLAPPEDWINDOW, CFrameWnd::rectDefault, nullptr, L"NOSUCHMENU"));
  EXPECT_EQ(framesAlive, 0);
}

TEST(FrameCreation, DeletesTheObjectWhenTheClassIsUnknown) {
  auto* const frame = new TestFrame;
  EXPECT_FALSE(frame->Create(L"no such window class", L""));
  EXPECT_EQ(framesAlive, 0);
}

}  // namespace
