#include "platform/message_map.h"

#include <gtest/gtest.h>

#include "platform/controls.h"
#include "platform/module_context.h"
#include "tests/unit/platform/print_cstring.h"

namespace {

constexpr UINT kPrivate = WM_APP + 7;
const UINT kRegistered = ::RegisterWindowMessageW(L"zvplatform message map test");

class BaseWindow : public CWnd {
 public:
  CString log;

 protected:
  afx_msg void OnFirst() { log += L"first;"; }
  afx_msg void OnSecond() { log += L"base second;"; }
  afx_msg void OnRange(UINT id) { log.AppendFormat(L"range %u;", id); }
  afx_msg LRESULT OnPrivate(WPARAM wParam, LPARAM lParam) { return static_cast<LRESULT>(wParam) + lParam; }
  afx_msg LRESULT OnRegistered(WPARAM, LPARAM) { return 77; }
  afx_msg void OnNumbered(NMHDR* header, LRESULT* result) {
    log.AppendFormat(L"notify %d;", static_cast<int>(header->code));
    *result = 9;
  }
  afx_msg BOOL OnMaybe(UINT, NMHDR*, LRESULT*) {
    log += L"maybe;";
    return FALSE;
  }
  afx_msg void OnChanged() { log += L"changed;"; }
  afx_msg void OnUpdateDisabled(CCmdUI* ui) { ui->Enable(FALSE); }
  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(BaseWindow, CWnd)
  ON_COMMAND(1, OnFirst)
  ON_COMMAND(2, OnSecond)
  ON_COMMAND(5, OnFirst)
  ON_UPDATE_COMMAND_UI(5, OnUpdateDisabled)
  ON_COMMAND_RANGE(10, 12, OnRange)
  ON_MESSAGE(kPrivate, OnPrivate)
  ON_REGISTERED_MESSAGE(kRegistered, OnRegistered)
  ON_NOTIFY_EX(NM_CLICK, 30, OnMaybe)
  ON_NOTIFY(NM_CLICK, 31, OnNumbered)
  ON_CONTROL(EN_CHANGE, 40, OnChanged)
END_MESSAGE_MAP()

class DerivedWindow : public BaseWindow {
 protected:
  afx_msg void OnSecond() {
    log += L"derived second;";
    BaseWindow::OnSecond();
  }
  afx_msg void OnSize(UINT type, int cx, int cy) {
    CWnd::OnSize(type, cx, cy);
    log.AppendFormat(L"size %d %d;", cx, cy);
  }
  afx_msg void OnMouseMove(UINT flags, CPoint point) { log.AppendFormat(L"move %u %d %d;", flags, point.x, point.y); }
  afx_msg BOOL OnEraseBkgnd(CDC* dc) {
    log += dc->GetSafeHdc() ? L"erase;" : L"erase nothing;";
    return TRUE;
  }
  afx_msg BOOL OnMouseWheel(UINT, short delta, CPoint) {
    log.AppendFormat(L"wheel %d;", delta);
    return TRUE;
  }
  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(DerivedWindow, BaseWindow)
  ON_COMMAND(2, OnSecond)
  ON_WM_SIZE()
  ON_WM_MOUSEMOVE()
  ON_WM_ERASEBKGND()
  ON_WM_MOUSEWHEEL()
END_MESSAGE_MAP()

class MessageMapTest : public testing::Test {
 protected:
  MessageMapTest() {
    window_.CreateEx(0, nullptr, L"map", WS_POPUP, CRect(0, 0, 100, 80), nullptr, 0);
    window_.log.Empty();
  }
  CString Command(UINT id) {
    window_.SendMessage(WM_COMMAND, id);
    return window_.log;
  }
  DerivedWindow window_;
};

TEST_F(MessageMapTest, CommandReachesTheBaseClassesHandler) { EXPECT_EQ(Command(1), L"first;"); }

TEST_F(MessageMapTest, DerivedHandlerComesFirstAndMayCallTheBase) {
  EXPECT_EQ(Command(2), L"derived second;base second;");
}

TEST_F(MessageMapTest, RangeTellsWhichIdItWas) {
  Command(10);
  Command(12);
  EXPECT_EQ(Command(13), L"range 10;range 12;");
}

TEST_F(MessageMapTest, DisabledCommandDoesNothing) { EXPECT_EQ(Command(5), L""); }

TEST_F(MessageMapTest, PrivateAndRegisteredMessagesReturnTheirResults) {
  EXPECT_EQ(window_.SendMessage(kPrivate, 3, 4), 7);
  EXPECT_EQ(window_.SendMessage(kRegistered), 77);
}

TEST_F(MessageMapTest, NotificationsGoByIdAndCode) {
  const auto notify = [&](UINT_PTR id, int code) {
    NMHDR header = {nullptr, id, static_cast<UINT>(code)};
    return window_.SendMessage(WM_NOTIFY, id, reinterpret_cast<LPARAM>(&header));
  };
  EXPECT_EQ(notify(31, NM_CLICK), 9);
  EXPECT_EQ(notify(31, NM_DBLCLK), 0);
  EXPECT_EQ(notify(30, NM_CLICK), 0);
  EXPECT_EQ(notify(32, NM_CLICK), 0);
  CString expected;
  expected.Format(L"notify %d;maybe;", static_cast<int>(NM_CLICK));
  EXPECT_EQ(window_.log, expected);
}

TEST_F(MessageMapTest, WindowMessagesAreUnpackedForTheirHandlers) {
  window_.SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200));
  window_.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(static_cast<WORD>(-5), 6));
  window_.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)), 0);
  EXPECT_EQ(window_.log, L"size 300 200;move 1 -5 6;wheel -120;");
}

TEST_F(MessageMapTest, BorrowedDeviceContextIsNotDeleted) {
  CClientDC dc(&window_);
  EXPECT_EQ(window_.SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc.GetSafeHdc())), 1);
  EXPECT_EQ(window_.log, L"erase;");
  EXPECT_NE(::GetDeviceCaps(dc, HORZRES), 0);
}

TEST_F(MessageMapTest, UnmappedMessagesGoToTheDefault) {
  window_.SetWindowText(L"kept by the default procedure");
  CString text;
  window_.GetWindowText(text);
  EXPECT_EQ(text, L"kept by the default procedure");
}

class ReflectingEdit : public CEdit {
 public:
  int changes = 0;
  int kills = 0;
  BOOL consume = TRUE;
  CBrush brush{RGB(1, 2, 3)};
  bool ownColours = true;

 protected:
  afx_msg BOOL OnChange() {
    ++changes;
    return consume;
  }
  afx_msg void OnKill() { ++kills; }
  afx_msg HBRUSH CtlColor(CDC*, UINT kind) {
    EXPECT_EQ(kind, static_cast<UINT>(CTLCOLOR_EDIT));
    return ownColours ? static_cast<HBRUSH>(brush) : nullptr;
  }
  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ReflectingEdit, CEdit)
  ON_CONTROL_REFLECT_EX(EN_CHANGE, OnChange)
  ON_CONTROL_REFLECT(EN_KILLFOCUS, OnKill)
  ON_WM_CTLCOLOR_REFLECT()
END_MESSAGE_MAP()

TEST_F(MessageMapTest, ControlSeesItsNotificationBeforeTheParent) {
  ReflectingEdit edit;
  ASSERT_TRUE(edit.Create(WS_CHILD, CRect(0, 0, 50, 20), &window_, 40));
  edit.SetWindowText(L"a");
  EXPECT_EQ(edit.changes, 1);
  EXPECT_EQ(window_.log, L"");
  edit.consume = FALSE;
  edit.SetWindowText(L"b");
  EXPECT_EQ(edit.changes, 2);
  EXPECT_EQ(window_.log, L"changed;");
}

TEST_F(MessageMapTest, ControlMayChooseItsColours) {
  ReflectingEdit edit;
  ASSERT_TRUE(edit.Create(WS_CHILD, CRect(0, 0, 50, 20), &window_, 40));
  CClientDC dc(&edit);
  const auto ask = [&] {
    return window_.SendMessage(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.GetSafeHdc()),
                               reinterpret_cast<LPARAM>(edit.m_hWnd));
  };
  EXPECT_EQ(ask(), reinterpret_cast<LRESULT>(static_cast<HBRUSH>(edit.brush)));
  edit.ownColours = false;
  EXPECT_NE(ask(), reinterpret_cast<LRESULT>(static_cast<HBRUSH>(edit.brush)));
  EXPECT_NE(ask(), 0);
}

class DrawnButton : public CButton {
 public:
  int drawn = 0;
  void DrawItem(LPDRAWITEMSTRUCT item) override { drawn += item->CtlType == ODT_BUTTON; }
};

TEST_F(MessageMapTest, OwnerDrawnButtonDrawsItself) {
  DrawnButton button;
  ASSERT_TRUE(button.Create(L"", BS_OWNERDRAW, CRect(0, 0, 50, 20), &window_, 41));
  DRAWITEMSTRUCT item = {};
  item.CtlType = ODT_BUTTON;
  item.hwndItem = button.m_hWnd;
  window_.SendMessage(WM_DRAWITEM, 41, reinterpret_cast<LPARAM>(&item));
  EXPECT_EQ(button.drawn, 1);
}

class CreatedCombo : public CComboBox {
 public:
  bool created = false;

 protected:
  afx_msg int OnCreate(LPCREATESTRUCT create) {
    created = CWnd::OnCreate(create) == 0;
    return created ? 0 : -1;
  }
  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CreatedCombo, CComboBox)
  ON_WM_CREATE()
END_MESSAGE_MAP()

TEST_F(MessageMapTest, SystemControlGetsWmCreateThroughItsObject) {
  CreatedCombo combo;
  ASSERT_TRUE(combo.Create(CBS_DROPDOWNLIST, CRect(0, 0, 50, 100), &window_, 42));
  EXPECT_TRUE(combo.created);
  // The combo box made children of its own meanwhile; none of them may have taken the object.
  EXPECT_EQ(CWnd::FromHandlePermanent(combo.m_hWnd), &combo);
  EXPECT_EQ(combo.AddString(L"x"), 0);
}

class RefusingWindow : public CWnd {
 protected:
  afx_msg int OnCreate(LPCREATESTRUCT) { return -1; }
  DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(RefusingWindow, CWnd)
  ON_WM_CREATE()
END_MESSAGE_MAP()

TEST(WindowObject, CreationFailsWhenOnCreateRefuses) {
  RefusingWindow window;
  EXPECT_FALSE(window.CreateEx(0, nullptr, L"", WS_POPUP, CRect(0, 0, 10, 10), nullptr, 0));
  EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST(WindowObject, ForgetsItsWindowWhenTheSystemDestroysIt) {
  CWnd window;
  ASSERT_TRUE(window.CreateEx(0, nullptr, L"", WS_POPUP, CRect(0, 0, 10, 10), nullptr, 0));
  ::DestroyWindow(window.m_hWnd);
  EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST(WindowObject, DestroysItsWindowWhenItGoes) {
  HWND handle = nullptr;
  {
    CWnd window;
    ASSERT_TRUE(window.CreateEx(0, nullptr, L"", WS_POPUP, CRect(0, 0, 10, 10), nullptr, 0));
    handle = window.m_hWnd;
  }
  EXPECT_FALSE(::IsWindow(handle));
}

TEST(WindowObject, UnsubclassingPutsTheFormerProcedureBack) {
  const HWND handle = ::CreateWindowExW(0, L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  const auto before = ::GetWindowLongPtrW(handle, GWLP_WNDPROC);
  CEdit edit;
  ASSERT_TRUE(edit.SubclassWindow(handle));
  EXPECT_NE(::GetWindowLongPtrW(handle, GWLP_WNDPROC), before);
  EXPECT_EQ(edit.UnsubclassWindow(), handle);
  EXPECT_EQ(::GetWindowLongPtrW(handle, GWLP_WNDPROC), before);
  EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
  ::DestroyWindow(handle);
}

TEST(WindowObject, TemporaryWrapperIsTheSameForAHandleAndOwnsNothing) {
  const HWND handle = ::CreateWindowExW(0, L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  {
    AFX_MANAGE_STATE(AfxGetStaticModuleState())
    CWnd* const first = CWnd::FromHandle(handle);
    EXPECT_EQ(first->m_hWnd, handle);
    EXPECT_EQ(CWnd::FromHandle(handle), first);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
  }
  EXPECT_TRUE(::IsWindow(handle));
  ::DestroyWindow(handle);
}

TEST(RuntimeClass, KnowsItsAncestors) {
  CWnd window;
  EXPECT_TRUE(window.IsKindOf(RUNTIME_CLASS(CWnd)));
  EXPECT_TRUE(window.IsKindOf(RUNTIME_CLASS(CObject)));
  EXPECT_STREQ(window.GetRuntimeClass()->m_lpszClassName, "CWnd");
}

}  // namespace
