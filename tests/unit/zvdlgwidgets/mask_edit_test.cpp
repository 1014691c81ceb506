#include "services/zvdlgwidgets/mask_edit.h"

#include "tests/unit/zvdlgwidgets/widget_host.h"

namespace {

constexpr int kEdit = 103;

class MaskEdit : public testing::Test {
 protected:
  void Bind(CZVMaskEdit& edit) {
    edit.SubclassDlgItem(kEdit, &host_);
    edit.SetFocus();
  }

  WidgetHost host_;
};

TEST_F(MaskEdit, EmptyPlaceShowsAndReadsThePrompt) {
  CZVMaskEdit edit(L"0", L'9');
  Bind(edit);
  EXPECT_STREQ(L"9", TextOf(edit));
}

TEST_F(MaskEdit, OnePlaceIsOverwrittenAgainAndAgain) {
  CZVMaskEdit edit(L"0", L'0');
  Bind(edit);
  WidgetHost::Type(L"3");
  EXPECT_STREQ(L"3", TextOf(edit));
  WidgetHost::Type(L"x");
  EXPECT_STREQ(L"3", TextOf(edit));
  WidgetHost::Type(L"7");
  EXPECT_STREQ(L"7", TextOf(edit));
  EXPECT_GE(host_.CountOf(kEdit, EN_CHANGE), 2);
}

TEST_F(MaskEdit, LetterPlacesKeepTheirCase) {
  CZVMaskEdit lower(L"<>?", L'_');
  Bind(lower);
  WidgetHost::Type(L"QqQ");
  EXPECT_STREQ(L"qQQ", TextOf(lower));
}

TEST_F(MaskEdit, LettersOutsideTheBasicAlphabetAreRefused) {
  CZVMaskEdit edit(L"<", L'a');
  Bind(edit);
  WidgetHost::Type(
      L"\x00E9\x0434"
      L"5");
  EXPECT_STREQ(L"a", TextOf(edit));
}

TEST_F(MaskEdit, LiteralsAreSkipped) {
  CZVMaskEdit edit(L"00:00", L'_');
  Bind(edit);
  EXPECT_STREQ(L"__:__", TextOf(edit));
  edit.SetSel(0, 0);
  WidgetHost::Type(L"1234");
  EXPECT_STREQ(L"12:34", TextOf(edit));
}

TEST_F(MaskEdit, BackspaceAndDeleteEmptyPlaces) {
  CZVMaskEdit edit(L"00:00", L'_');
  Bind(edit);
  edit.SetWindowText(L"1234");
  EXPECT_STREQ(L"12:34", TextOf(edit)) << "a text fills the places";
  edit.SetSel(3, 3);
  WidgetHost::Type(L"\b");
  EXPECT_STREQ(L"1_:34", TextOf(edit)) << "the literal is passed over";
  edit.SetSel(0, 0);
  WidgetHost::Press(VK_DELETE);
  EXPECT_STREQ(L"__:34", TextOf(edit));
  edit.SetSel(0, -1);
  edit.Clear();
  EXPECT_STREQ(L"__:__", TextOf(edit));
}

TEST_F(MaskEdit, TypingOverASelectionEmptiesItFirst) {
  CZVMaskEdit edit(L"0000", L'_');
  Bind(edit);
  edit.SetWindowText(L"1234");
  edit.SetSel(0, -1);
  WidgetHost::Type(L"9");
  EXPECT_STREQ(L"9___", TextOf(edit));
}

TEST_F(MaskEdit, PastedCharactersFillThePlacesThatTheyBelongIn) {
  CZVMaskEdit edit(L"0<0", L'_');
  Bind(edit);
  edit.SetSel(0, 0);
  host_.PutOnClipboard(L"7-Q8");
  edit.Paste();
  EXPECT_STREQ(L"7q8", TextOf(edit));
}

TEST_F(MaskEdit, CutTextLeavesEmptyPlacesAndGoesToTheClipboard) {
  CZVMaskEdit edit(L"0000", L'_');
  Bind(edit);
  edit.SetWindowText(L"1234");
  edit.SetSel(1, 3);
  edit.Cut();
  EXPECT_STREQ(L"1__4", TextOf(edit));
  edit.SetSel(1, 1);
  edit.Paste();
  EXPECT_STREQ(L"1234", TextOf(edit));
}

TEST_F(MaskEdit, ChangingMaskOrPromptEmptiesAllPlaces) {
  CZVMaskEdit edit(L"0", L'0');
  Bind(edit);
  WidgetHost::Type(L"5");
  edit.SetPromptChar(L'9');
  EXPECT_STREQ(L"9", TextOf(edit));
  edit.SetMask(L"<");
  edit.SetPromptChar(L'z');
  EXPECT_STREQ(L"z", TextOf(edit));
}

}  // namespace
