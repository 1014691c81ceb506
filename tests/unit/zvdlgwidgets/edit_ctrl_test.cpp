#include "services/zvdlgwidgets/edit_ctrl.h"

#include "tests/unit/zvdlgwidgets/widget_host.h"

namespace {

constexpr int kEdit = 101;

class EditCtrl : public testing::Test {
 protected:
  EditCtrl() {
    edit_.SubclassDlgItem(kEdit, &host_);
    edit_.SetNumericsOnly(true);
    edit_.SetFocus();
  }

  WidgetHost host_;
  CZVEditCtrl edit_;
};

TEST_F(EditCtrl, LettersAreRefusedAndDigitsTaken) {
  WidgetHost::Type(L"1a2-.3");
  EXPECT_STREQ(L"123", TextOf(edit_));
}

TEST_F(EditCtrl, UnlimitedEditTakesEverything) {
  edit_.SetNumericsOnly(false);
  WidgetHost::Type(L"1a-");
  EXPECT_STREQ(L"1a-", TextOf(edit_));
}

TEST_F(EditCtrl, SignAndPointAreTakenWhereTheyBelong) {
  edit_.SetAcceptNegative(true);
  edit_.SetAcceptFloat(true);
  edit_.SetFractionalDigitCount(2);
  WidgetHost::Type(L"-1-2,3.456");
  EXPECT_STREQ(L"-12.34", TextOf(edit_)) << "a comma is taken for the point";
  EXPECT_DOUBLE_EQ(-12.34, edit_.GetValue());
}

TEST_F(EditCtrl, TypedTextIsJudgedTogetherWithWhatTheSelectionLeaves) {
  edit_.SetAcceptFloat(true);
  edit_.SetWindowText(L"1.5");
  edit_.SetSel(0, -1);
  WidgetHost::Type(L".7");
  EXPECT_STREQ(L".7", TextOf(edit_));
}

TEST_F(EditCtrl, BackspaceWorks) {
  WidgetHost::Type(L"12\b3");
  EXPECT_STREQ(L"13", TextOf(edit_));
}

TEST_F(EditCtrl, PastedTextMustFitAsAWhole) {
  WidgetHost::Type(L"7");
  host_.PutOnClipboard(L"12ab");
  edit_.Paste();
  EXPECT_STREQ(L"7", TextOf(edit_));
  host_.PutOnClipboard(L"345");
  edit_.Paste();
  EXPECT_STREQ(L"7345", TextOf(edit_));
}

TEST_F(EditCtrl, ValuesAreShownInTheShortestForm) {
  edit_.SetValue(12);
  EXPECT_STREQ(L"12", TextOf(edit_));
  edit_.SetAcceptFloat(true);
  edit_.SetFractionalDigitCount(2);
  edit_.SetValue(45.5);
  EXPECT_STREQ(L"45.5", TextOf(edit_));
  edit_.SetValue(-0.25);
  EXPECT_DOUBLE_EQ(-0.25, edit_.GetValue());
}

TEST_F(EditCtrl, LeavingAChangedBoxCommitsTheValueOnce) {
  WidgetHost::Type(L"5");
  EXPECT_EQ(0, host_.CountOf(kEdit, ZVEN_VALUECOMMITTED)) << "not while typing";
  host_.GetDlgItem(IDOK)->SetFocus();
  EXPECT_EQ(1, host_.CountOf(kEdit, ZVEN_VALUECOMMITTED));
  edit_.SetFocus();
  host_.GetDlgItem(IDOK)->SetFocus();
  EXPECT_EQ(1, host_.CountOf(kEdit, ZVEN_VALUECOMMITTED)) << "nothing changed in between";
}

TEST_F(EditCtrl, EnterCommitsTheValueAndStillReachesTheDialog) {
  WidgetHost::Type(L"5");
  WidgetHost::Press(VK_RETURN);
  EXPECT_EQ(1, host_.CountOf(kEdit, ZVEN_VALUECOMMITTED));
  EXPECT_EQ(1, host_.CountOf(IDOK, BN_CLICKED));
  host_.GetDlgItem(IDOK)->SetFocus();
  EXPECT_EQ(1, host_.CountOf(kEdit, ZVEN_VALUECOMMITTED)) << "already committed";
}

TEST_F(EditCtrl, ValueSetByTheProgramNeedsNoCommit) {
  edit_.SetValue(9);
  host_.GetDlgItem(IDOK)->SetFocus();
  EXPECT_EQ(0, host_.CountOf(kEdit, ZVEN_VALUECOMMITTED));
}

}  // namespace
