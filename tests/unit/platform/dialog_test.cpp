#include "platform/dialog.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/property_page.h"
#include "tests/support/leak_check.h"
#include "tests/unit/platform/dialog_template.h"

namespace {

using zvtest::DialogTemplate;

constexpr UINT kStep = WM_APP + 1;

// A dialog whose work is given as a function, run from a message that it posts to itself.
class StepDialog : public CDialog {
 public:
  explicit StepDialog(CWnd* parent = nullptr) : template_(L"Step") {
    template_.Button(IDOK, L"OK", BS_DEFPUSHBUTTON | WS_TABSTOP)
        .Button(IDCANCEL, L"Cancel")
        .Edit(100)
        .Button(101, L"&Go");
    InitModalIndirect(template_.Get(), parent);
  }

  BOOL OnInitDialog() override {
    CDialog::OnInitDialog();
    if (onInit) {
      onInit(*this);
    }
    PostMessage(kStep);
    return TRUE;
  }

  std::function<void(StepDialog&)> onInit;
  std::function<void(StepDialog&)> onStep;
  int clicks = 0;
  int changes = 0;
  std::vector<LPARAM> kicks;

 protected:
  LRESULT OnStep(WPARAM, LPARAM) {
    if (onStep) {
      onStep(*this);
    }
    return 0;
  }
  void OnGo() { ++clicks; }
  void OnEditChange() { ++changes; }
  LRESULT OnKickIdle(WPARAM reason, LPARAM count) {
    EXPECT_EQ(reason, static_cast<WPARAM>(MSGF_DIALOGBOX));
    kicks.push_back(count);
    if (kicks.size() == 3) {
      PostMessage(kStep);
    }
    return kicks.size() < 3;
  }
  DECLARE_MESSAGE_MAP()

 private:
  DialogTemplate template_;
};

BEGIN_MESSAGE_MAP(StepDialog, CDialog)
  ON_MESSAGE(kStep, OnStep)
  ON_MESSAGE(WM_KICKIDLE, OnKickIdle)
  ON_BN_CLICKED(101, OnGo)
  ON_EN_CHANGE(100, OnEditChange)
END_MESSAGE_MAP()

// A visible top-level window that may own a dialog.
class OwnerWindow : public CWnd {
 public:
  OwnerWindow() {
    CreateEx(0, nullptr, L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(50, 50, 400, 300), nullptr, 0);
  }
};

TEST(ModalDialog, ReturnsWhatEndDialogGets) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog& self) { self.EndDialog(42); };
  EXPECT_EQ(dialog.DoModal(), 42);
  EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST(ModalDialog, RunsAgainAfterItEnded) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog& self) { self.OnOK(); };
  EXPECT_EQ(dialog.DoModal(), IDOK);
  dialog.onStep = [](StepDialog& self) { self.OnCancel(); };
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

TEST(ModalDialog, EndsBeforeItsLoopWhenToldSoInOnInitDialog) {
  StepDialog dialog;
  dialog.onInit = [](StepDialog& self) { self.EndDialog(7); };
  EXPECT_EQ(dialog.DoModal(), 7);
}

TEST(ModalDialog, IsVisibleBeforeItsPostedWorkBegins) {
  StepDialog dialog;
  BOOL visible = FALSE;
  dialog.onStep = [&](StepDialog& self) {
    visible = self.IsWindowVisible();
    self.EndDialog(1);
  };
  dialog.DoModal();
  EXPECT_TRUE(visible);
}

TEST(ModalDialog, DisablesItsOwnerAndEnablesItAgain) {
  OwnerWindow owner;
  StepDialog dialog(&owner);
  BOOL enabledDuring = TRUE;
  BOOL enabledAfterEnd = FALSE;
  HWND ownerDuring = nullptr;
  dialog.onStep = [&](StepDialog& self) {
    enabledDuring = owner.IsWindowEnabled();
    ownerDuring = ::GetWindow(self.m_hWnd, GW_OWNER);
    self.EndDialog(1);
    enabledAfterEnd = owner.IsWindowEnabled();
  };
  dialog.DoModal();
  EXPECT_FALSE(enabledDuring);
  EXPECT_TRUE(enabledAfterEnd);
  EXPECT_EQ(ownerDuring, owner.m_hWnd);
  EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST(ModalDialog, LeavesAnOwnerDisabledThatWasDisabledBefore) {
  OwnerWindow owner;
  owner.EnableWindow(FALSE);
  StepDialog dialog(&owner);
  dialog.onStep = [](StepDialog& self) { self.EndDialog(1); };
  dialog.DoModal();
  EXPECT_FALSE(owner.IsWindowEnabled());
}

TEST(ModalDialog, NestsInsideAHandlerOfAnother) {
  StepDialog outer;
  INT_PTR innerResult = 0;
  BOOL outerEnabledDuring = TRUE;
  outer.onStep = [&](StepDialog& self) {
    StepDialog inner(&self);
    inner.onStep = [&](StepDialog& innerSelf) {
      outerEnabledDuring = outer.IsWindowEnabled();
      innerSelf.EndDialog(11);
    };
    innerResult = inner.DoModal();
    EXPECT_TRUE(self.IsWindowEnabled());
    self.EndDialog(12);
  };
  EXPECT_EQ(outer.DoModal(), 12);
  EXPECT_EQ(innerResult, 11);
  EXPECT_FALSE(outerEnabledDuring);
}

TEST(ModalDialog, OuterEndedByInnerHandlerStillWaitsForTheInnerOne) {
  StepDialog outer;
  INT_PTR innerResult = 0;
  outer.onStep = [&](StepDialog& self) {
    StepDialog inner(&self);
    inner.onStep = [&](StepDialog& innerSelf) {
      outer.EndDialog(1);
      innerSelf.EndDialog(2);
    };
    innerResult = inner.DoModal();
  };
  EXPECT_EQ(outer.DoModal(), 1);
  EXPECT_EQ(innerResult, 2);
}

TEST(ModalDialog, PassesWmQuitOnToTheLoopOutside) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog&) { ::PostQuitMessage(5); };
  EXPECT_EQ(dialog.DoModal(), -1);
  MSG message = {};
  ASSERT_TRUE(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 5u);
}

TEST(ModalDialog, EndsWhenItsWindowIsDestroyedUnderIt) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog& self) { ::DestroyWindow(self.m_hWnd); };
  EXPECT_EQ(dialog.DoModal(), -1);
}

TEST(ModalDialog, FailsWithoutItsTemplate) {
  CDialog dialog(31999);
  EXPECT_EQ(dialog.DoModal(), -1);
}

TEST(ModalDialog, SendsIdleKicksUntilNobodyWantsMore) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog& self) {
    if (self.kicks.size() >= 3) {
      self.EndDialog(1);
    }
  };
  dialog.DoModal();
  EXPECT_EQ(dialog.kicks, (std::vector<LPARAM>{0, 1, 2}));
}

TEST(ModalDialog, RoutesControlNotificationsByIdAndCode) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog& self) {
    self.changes = 0;
    ::SendMessageW(::GetDlgItem(self.m_hWnd, 101), BM_CLICK, 0, 0);
    self.SetDlgItemText(100, L"x");
    self.EndDialog(1);
  };
  dialog.DoModal();
  EXPECT_EQ(dialog.clicks, 1);
  EXPECT_EQ(dialog.changes, 1);
}

// Posts a key to the focused control, as the keyboard would.
void PressKey(WPARAM key) { ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1); }

TEST(ModalDialog, EnterIsOkAndEscapeIsCancel) {
  for (const auto& [key, result] : {std::pair<WPARAM, INT_PTR>{VK_RETURN, IDOK}, {VK_ESCAPE, IDCANCEL}}) {
    StepDialog dialog;
    dialog.onStep = [key = key](StepDialog& self) {
      ::SetFocus(::GetDlgItem(self.m_hWnd, 100));
      PressKey(key);
    };
    EXPECT_EQ(dialog.DoModal(), result);
  }
}

TEST(ModalDialog, FocusStartsAtTheFirstTabStopAndTabMovesOn) {
  StepDialog dialog;
  HWND first = nullptr;
  HWND afterTab = nullptr;
  HWND ok = nullptr;
  HWND cancel = nullptr;
  int steps = 0;
  dialog.onStep = [&](StepDialog& self) {
    if (steps++ == 0) {
      ok = ::GetDlgItem(self.m_hWnd, IDOK);
      cancel = ::GetDlgItem(self.m_hWnd, IDCANCEL);
      first = ::GetFocus();
      PressKey(VK_TAB);
      self.PostMessage(kStep);
    } else {
      afterTab = ::GetFocus();
      self.EndDialog(1);
    }
  };
  dialog.DoModal();
  EXPECT_EQ(first, ok);
  EXPECT_EQ(afterTab, cancel);
}

TEST(ExceptionBarrier, EndsTheDialogWithAnErrorAndKeepsTheException) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog&) { throw std::runtime_error("broken handler"); };
  EXPECT_EQ(dialog.DoModal(), -1);
  ASSERT_TRUE(dialog.GetFailure());
  EXPECT_THROW(std::rethrow_exception(dialog.GetFailure()), std::runtime_error);
}

TEST(ExceptionBarrier, CatchesWhatOnInitDialogThrows) {
  OwnerWindow owner;
  StepDialog dialog(&owner);
  dialog.onInit = [](StepDialog&) { throw 3; };
  EXPECT_EQ(dialog.DoModal(), -1);
  EXPECT_TRUE(dialog.GetFailure());
  EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST(ExceptionBarrier, ForgetsAFailureAtTheNextRun) {
  StepDialog dialog;
  dialog.onStep = [](StepDialog&) { throw 3; };
  dialog.DoModal();
  dialog.onStep = [](StepDialog& self) { self.EndDialog(4); };
  EXPECT_EQ(dialog.DoModal(), 4);
  EXPECT_FALSE(dialog.GetFailure());
}

class ThrowingButton : public CButton {
 public:
  DECLARE_MESSAGE_MAP()
  LRESULT OnStep(WPARAM, LPARAM) { throw std::runtime_error("in a control"); }
};

BEGIN_MESSAGE_MAP(ThrowingButton, CButton)
  ON_MESSAGE(kStep, OnStep)
END_MESSAGE_MAP()

TEST(ExceptionBarrier, AFailingControlEndsItsDialog) {
  StepDialog dialog;
  ThrowingButton button;
  dialog.onInit = [&](StepDialog& self) { button.SubclassDlgItem(101, &self); };
  dialog.onStep = [&](StepDialog&) { button.SendMessage(kStep); };
  EXPECT_EQ(dialog.DoModal(), -1);
  EXPECT_TRUE(dialog.GetFailure());
}

TEST(ExceptionBarrier, AnInnerDialogsFailureLeavesTheOuterOneRunning) {
  StepDialog outer;
  INT_PTR innerResult = 0;
  outer.onStep = [&](StepDialog& self) {
    StepDialog inner(&self);
    inner.onStep = [](StepDialog&) { throw 1; };
    innerResult = inner.DoModal();
    self.EndDialog(5);
  };
  EXPECT_EQ(outer.DoModal(), 5);
  EXPECT_EQ(innerResult, -1);
  EXPECT_FALSE(outer.GetFailure());
}

TEST(ModalDialog, LeavesNoHandleBehindOverTwoHundredRuns) {
  const auto run = [] {
    StepDialog dialog;
    CButton button;
    CEdit edit;
    dialog.onInit = [&](StepDialog& self) {
      button.SubclassDlgItem(101, &self);
      edit.SubclassDlgItem(100, &self);
    };
    dialog.onStep = [](StepDialog& self) { self.EndDialog(1); };
    ASSERT_EQ(dialog.DoModal(), 1);
  };
  run();
  DWORD handles = 0;
  ::GetProcessHandleCount(::GetCurrentProcess(), &handles);
  zvtest::ExpectNothingLeftBehind(run);
  DWORD handlesAfter = 0;
  ::GetProcessHandleCount(::GetCurrentProcess(), &handlesAfter);
  EXPECT_LE(handlesAfter, handles + 1);
}

TEST(ModelessDialog, LivesUntilDestroyed) {
  DialogTemplate dialogTemplate(L"Modeless");
  CDialog dialog;
  ASSERT_TRUE(dialog.CreateIndirect(dialogTemplate.Get()));
  const HWND window = dialog.m_hWnd;
  EXPECT_EQ(CWnd::FromHandlePermanent(window), &dialog);
  EXPECT_TRUE(dialog.DestroyWindow());
  EXPECT_EQ(dialog.m_hWnd, nullptr);
  EXPECT_FALSE(::IsWindow(window));
}

class HelpedDialog : public StepDialog {
 public:
  int helpedControl = 0;

 protected:
  afx_msg BOOL OnHelpInfo(HELPINFO* help) {
    helpedControl = help->iCtrlId;
    return TRUE;
  }
  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(HelpedDialog, StepDialog)
  ON_WM_HELPINFO()
END_MESSAGE_MAP()

TEST(ModalDialog, HelpAskedAtAControlReachesTheDialog) {
  HelpedDialog dialog;
  dialog.onStep = [](StepDialog& self) {
    HELPINFO help = {};
    help.cbSize = sizeof(help);
    help.iContextType = HELPINFO_WINDOW;
    help.iCtrlId = 100;
    help.hItemHandle = ::GetDlgItem(self.m_hWnd, 100);
    self.SendDlgItemMessage(100, WM_HELP, 0, reinterpret_cast<LPARAM>(&help));
    self.EndDialog(1);
  };
  dialog.DoModal();
  EXPECT_EQ(dialog.helpedControl, 100);
}

// A page with one field, made from memory inside a dialog.
class FieldPage : public CPropertyPage {
 public:
  CString field;
  bool mayLeave = true;
  BOOL OnKillActive() override { return CPropertyPage::OnKillActive() && mayLeave; }

 protected:
  void DoDataExchange(CDataExchange* exchange) override { DDX_Text(exchange, 200, field); }
};

TEST(PropertyPage, MovesItsValuesWhenItIsLeftAndMayRefuse) {
  DialogTemplate pageTemplate(L"", WS_CHILD | DS_CONTROL);
  pageTemplate.Edit(200);
  StepDialog dialog;
  FieldPage page;
  page.field = L"before";
  dialog.onStep = [&](StepDialog& self) {
    ASSERT_TRUE(page.CreateIndirect(pageTemplate.Get(), &self));
    EXPECT_TRUE(page.SetActivePage(TRUE));
    EXPECT_TRUE(page.IsWindowVisible());
    page.SetDlgItemText(200, L"after");
    page.mayLeave = false;
    EXPECT_FALSE(page.SetActivePage(FALSE));
    EXPECT_TRUE(page.IsWindowVisible());
    page.mayLeave = true;
    EXPECT_TRUE(page.SetActivePage(FALSE));
    EXPECT_FALSE(page.IsWindowVisible());
    self.EndDialog(1);
  };
  dialog.DoModal();
  EXPECT_EQ(page.field, L"after");
}

TEST(PropertyPage, LeavesEnterAndEscapeToItsFrame) {
  for (const auto& [key, result] : {std::pair<WPARAM, INT_PTR>{VK_RETURN, IDOK}, {VK_ESCAPE, IDCANCEL}}) {
    DialogTemplate pageTemplate(L"", WS_CHILD | DS_CONTROL);
    pageTemplate.Edit(200);
    StepDialog dialog;
    FieldPage page;
    dialog.onStep = [&, key = key](StepDialog& self) {
      ASSERT_TRUE(page.CreateIndirect(pageTemplate.Get(), &self));
      page.SetActivePage(TRUE);
      ::SetFocus(::GetDlgItem(page.m_hWnd, 200));
      PressKey(key);
    };
    EXPECT_EQ(dialog.DoModal(), result);
  }
}

}  // namespace
