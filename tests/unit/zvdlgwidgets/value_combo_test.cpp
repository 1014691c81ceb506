#include "services/zvdlgwidgets/value_combo.h"

#include "tests/unit/zvdlgwidgets/widget_host.h"

namespace {

constexpr int kCombo = 102;

class ValueCombo : public testing::Test {
 protected:
  ValueCombo() {
    combo_.SubclassDlgItem(kCombo, &host_);
    combo_.SetFocus();
  }
  ~ValueCombo() override { combo_.SendMessage(ZVVCM_SHOWDROPDOWN, FALSE); }

  int Changes() const { return host_.CountOf(kCombo, ZVN_VALUECHANGED); }
  bool IsDropped() const { return combo_.SendMessage(ZVVCM_GETDROPPEDSTATE) != 0; }
  void TypeOver(LPCWSTR text) {
    combo_.SendMessage(EM_SETSEL, 0, -1);
    WidgetHost::Type(text);
  }
  // Presses, moves and releases the mouse at a share of the slider's width.
  static void Mouse(UINT message, double share) {
    const HWND popup = ::GetCapture();
    RECT client{};
    ::GetClientRect(popup, &client);
    const auto x = static_cast<LONG>(client.right * share);
    ::SendMessageW(popup, message, MK_LBUTTON, MAKELPARAM(x, client.bottom / 2));
  }

  WidgetHost host_;
  CZVValueCombo combo_{1, 100, 10};
};

TEST_F(ValueCombo, ConstructorsNumbersReachTheWindow) {
  EXPECT_EQ(10, combo_.GetValue());
  EXPECT_EQ(1, combo_.GetMinRangeValue());
  EXPECT_EQ(100, combo_.GetMaxRangeValue());
  EXPECT_STREQ(L"10", TextOf(combo_));
  EXPECT_EQ(1, combo_.SendMessage(ZVVCM_GETMINIMUM));
  EXPECT_EQ(100, combo_.SendMessage(ZVVCM_GETMAXIMUM));
  EXPECT_EQ(0, Changes());
}

TEST_F(ValueCombo, FocusGoesToTheFieldInside) { EXPECT_EQ(combo_.m_hWnd, ::GetParent(::GetFocus())); }

TEST_F(ValueCombo, SetValueIsSilentAndStaysInTheRange) {
  combo_.SetValue(500);
  EXPECT_EQ(100, combo_.GetValue());
  combo_.SetValue(-3);
  EXPECT_EQ(1, combo_.GetValue());
  EXPECT_EQ(0, Changes());
}

TEST_F(ValueCombo, NarrowerRangeBringsTheValueIn) {
  combo_.SetValue(90);
  combo_.SetRange(50, 20);
  EXPECT_EQ(20, combo_.GetMinRangeValue());
  EXPECT_EQ(50, combo_.GetValue());
  EXPECT_STREQ(L"50", TextOf(combo_));
  EXPECT_EQ(0, Changes());
}

TEST_F(ValueCombo, TypedValueOfTheRangeCountsAtOnce) {
  TypeOver(L"42");
  EXPECT_EQ(42, combo_.GetValue());
  EXPECT_EQ(2, Changes()) << "4 and 42";
}

TEST_F(ValueCombo, TypedValueOutsideIsBroughtInWhenFocusLeaves) {
  TypeOver(L"999");
  EXPECT_STREQ(L"999", TextOf(combo_)) << "not under the user's hands";
  EXPECT_EQ(100, combo_.GetValue()) << "but read as what it will be";
  host_.GetDlgItem(IDOK)->SetFocus();
  EXPECT_STREQ(L"100", TextOf(combo_));
  EXPECT_EQ(100, combo_.GetValue());
}

TEST_F(ValueCombo, EmptiedFieldKeepsTheLastValue) {
  TypeOver(L"\b");
  EXPECT_STREQ(L"", TextOf(combo_));
  EXPECT_EQ(10, combo_.GetValue());
  host_.GetDlgItem(IDOK)->SetFocus();
  EXPECT_STREQ(L"10", TextOf(combo_));
}

TEST_F(ValueCombo, LettersAndASignOutsideTheRangeAreRefused) {
  TypeOver(L"x3-y");
  EXPECT_STREQ(L"3", TextOf(combo_));
}

TEST_F(ValueCombo, NegativeValuesCanBeTypedWhereTheRangeHasThem) {
  combo_.SetRange(-128, -1);
  TypeOver(L"-17");
  EXPECT_EQ(-17, combo_.GetValue());
}

TEST_F(ValueCombo, TextFromOutsideIsAChangeOfTheUsers) {
  combo_.SetWindowText(L"33");
  EXPECT_EQ(33, combo_.GetValue());
  EXPECT_EQ(1, Changes());
}

TEST_F(ValueCombo, ArrowKeysStepAndStopAtTheEnds) {
  WidgetHost::Press(VK_UP);
  EXPECT_EQ(11, combo_.GetValue());
  WidgetHost::Press(VK_DOWN);
  WidgetHost::Press(VK_DOWN);
  EXPECT_EQ(9, combo_.GetValue());
  WidgetHost::Press(VK_NEXT);
  EXPECT_EQ(1, combo_.GetValue());
  const int before = Changes();
  WidgetHost::Press(VK_DOWN);
  EXPECT_EQ(1, combo_.GetValue());
  EXPECT_EQ(before, Changes()) << "no change, no notification";
  WidgetHost::Press(VK_PRIOR);
  EXPECT_EQ(10, combo_.GetValue());
}

TEST_F(ValueCombo, WheelCollectsFineStepsToNotches) {
  for (int i = 0; i < 4; ++i) {
    ::SendMessageW(::GetFocus(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA / 2), 0);
  }
  EXPECT_EQ(12, combo_.GetValue());
  ::SendMessageW(::GetFocus(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
  EXPECT_EQ(11, combo_.GetValue());
}

TEST_F(ValueCombo, F4DropsTheSliderAndFoldsItAgain) {
  WidgetHost::Press(VK_F4);
  EXPECT_TRUE(IsDropped());
  EXPECT_EQ(combo_.m_hWnd, ::GetParent(::GetFocus())) << "the slider takes no focus";
  WidgetHost::Press(VK_F4);
  EXPECT_FALSE(IsDropped());
}

TEST_F(ValueCombo, OpenSliderTakesArrowHomeEndAndKeepsEnterFromTheDialog) {
  WidgetHost::Press(VK_F4);
  WidgetHost::Press(VK_RIGHT);
  EXPECT_EQ(11, combo_.GetValue());
  WidgetHost::Press(VK_END);
  EXPECT_EQ(100, combo_.GetValue());
  WidgetHost::Press(VK_HOME);
  EXPECT_EQ(1, combo_.GetValue());
  WidgetHost::Press(VK_RETURN);
  EXPECT_FALSE(IsDropped());
  EXPECT_EQ(0, host_.CountOf(IDOK, BN_CLICKED));
  WidgetHost::Press(VK_RETURN);
  EXPECT_EQ(1, host_.CountOf(IDOK, BN_CLICKED)) << "with the slider folded, Enter is the dialog's";
}

TEST_F(ValueCombo, EscapePutsTheOldValueBackAndStaysAwayFromTheDialog) {
  WidgetHost::Press(VK_F4);
  WidgetHost::Press(VK_END);
  WidgetHost::Press(VK_ESCAPE);
  EXPECT_FALSE(IsDropped());
  EXPECT_EQ(10, combo_.GetValue());
  EXPECT_EQ(0, host_.CountOf(IDCANCEL, BN_CLICKED));
}

TEST_F(ValueCombo, DraggingReportsEveryStep) {
  combo_.SendMessage(ZVVCM_SHOWDROPDOWN, TRUE);
  Mouse(WM_LBUTTONDOWN, 0.5);
  const int middle = combo_.GetValue();
  EXPECT_NEAR(50, middle, 5);
  Mouse(WM_MOUSEMOVE, 0.75);
  EXPECT_GT(combo_.GetValue(), middle);
  EXPECT_EQ(2, Changes());
  Mouse(WM_LBUTTONUP, 0.75);
  EXPECT_EQ(2, Changes());
  EXPECT_TRUE(IsDropped());
}

TEST_F(ValueCombo, DraggingIsSilentUntilItsEndWhenAskedFor) {
  combo_.SetFlags(FLAGS_NOTRACKNOTIFY);
  combo_.SendMessage(ZVVCM_SHOWDROPDOWN, TRUE);
  Mouse(WM_LBUTTONDOWN, 0.5);
  Mouse(WM_MOUSEMOVE, 0.9);
  EXPECT_EQ(0, Changes());
  Mouse(WM_LBUTTONUP, 0.9);
  EXPECT_EQ(1, Changes());
}

TEST_F(ValueCombo, ClickElsewhereFoldsTheSliderAndKeepsTheValue) {
  combo_.SendMessage(ZVVCM_SHOWDROPDOWN, TRUE);
  Mouse(WM_LBUTTONDOWN, 1.0 / 3);
  Mouse(WM_LBUTTONUP, 1.0 / 3);
  const int chosen = combo_.GetValue();
  Mouse(WM_LBUTTONDOWN, 2.5);
  EXPECT_FALSE(IsDropped());
  EXPECT_EQ(chosen, combo_.GetValue());
}

TEST_F(ValueCombo, LosingFocusOrTheMouseFoldsTheSlider) {
  combo_.SendMessage(ZVVCM_SHOWDROPDOWN, TRUE);
  host_.GetDlgItem(IDOK)->SetFocus();
  EXPECT_FALSE(IsDropped());
  combo_.SendMessage(ZVVCM_SHOWDROPDOWN, TRUE);
  ::ReleaseCapture();
  EXPECT_FALSE(IsDropped());
}

TEST_F(ValueCombo, ADisabledBoxDoesNotDrop) {
  combo_.EnableWindow(FALSE);
  combo_.SendMessage(ZVVCM_SHOWDROPDOWN, TRUE);
  EXPECT_FALSE(IsDropped());
  EXPECT_FALSE(::IsWindowEnabled(::GetWindow(combo_, GW_CHILD)));
}

TEST_F(ValueCombo, TabLeavesItLikeAnyControl) {
  WidgetHost::Press(VK_TAB);
  EXPECT_EQ(103, ::GetDlgCtrlID(::GetFocus()));
}

TEST_F(ValueCombo, DestroyedWithTheSliderOpenItGoesQuietly) {
  combo_.SendMessage(ZVVCM_SHOWDROPDOWN, TRUE);
  const HWND popup = ::GetCapture();
  ASSERT_TRUE(::IsWindow(popup));
  combo_.DestroyWindow();
  EXPECT_FALSE(::IsWindow(popup));
}

TEST(ValueComboWithoutObject, TemplateControlWorksByMessages) {
  WidgetHost host;
  const HWND combo = ::GetDlgItem(host, kCombo);
  ::SendMessageW(combo, ZVVCM_SETRANGE, static_cast<WPARAM>(-5), 5);
  ::SendMessageW(combo, ZVVCM_SETVALUE, static_cast<WPARAM>(-4), 0);
  EXPECT_EQ(-4, static_cast<int>(::SendMessageW(combo, ZVVCM_GETVALUE, 0, 0)));
  wchar_t text[10];
  ::GetWindowTextW(combo, text, 10);
  EXPECT_STREQ(L"-4", text);
}

TEST(ValueComboWithoutWindow, NumbersAreKept) {
  CZVValueCombo combo(0, 9, 20);
  EXPECT_EQ(9, combo.GetValue());
  combo.SetRange(3, 4);
  EXPECT_EQ(4, combo.GetValue());
  combo.SetValue(0);
  EXPECT_EQ(3, combo.GetValue());
}

TEST(ValueComboWithoutTemplate, ItCanBeMadeByCode) {
  WidgetHost host;
  CZVValueCombo combo(0, 9, 7);
  ASSERT_TRUE(combo.Create(WS_VISIBLE | WS_TABSTOP, CRect(5, 5, 100, 25), &host, 300));
  EXPECT_EQ(7, combo.GetValue());
  EXPECT_STREQ(L"7", TextOf(combo));
}

}  // namespace
