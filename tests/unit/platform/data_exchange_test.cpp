#include "platform/data_exchange.h"

#include <gtest/gtest.h>

#include "platform/controls.h"
#include "platform/dialog.h"
#include "tests/unit/platform/dialog_template.h"

namespace {

using zvtest::DialogTemplate;

enum Id : WORD { kText = 100, kNumber, kReal, kCheck, kRadio0, kRadio1, kRadio2, kCombo, kAfterGroup };

class ExchangeDialog : public CDialog {
 public:
  ExchangeDialog() {
    DialogTemplate dialogTemplate(L"Exchange");
    dialogTemplate.Edit(kText).Edit(kNumber).Edit(kReal).Button(kCheck, L"check", BS_AUTOCHECKBOX);
    dialogTemplate.Button(kRadio0, L"0", BS_AUTORADIOBUTTON | WS_GROUP).Button(kRadio1, L"1", BS_AUTORADIOBUTTON);
    dialogTemplate.Button(kRadio2, L"2", BS_AUTORADIOBUTTON).Combo(kCombo, CBS_DROPDOWNLIST | WS_GROUP);
    CreateIndirect(dialogTemplate.Get());
  }

  BOOL OnInitDialog() override {
    CDialog::OnInitDialog();
    combo.AddString(L"one");
    combo.AddString(L"two");
    return TRUE;
  }

  CString text;
  int number = 5;
  double real = 1.5;
  int check = 0;
  int radio = 1;
  int index = -1;
  int minimum = -100;
  CComboBox combo;

 protected:
  void DoDataExchange(CDataExchange* exchange) override {
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, kCombo, combo);
    DDX_Text(exchange, kText, text);
    DDX_Text(exchange, kNumber, number);
    DDV_MinMaxInt(exchange, number, minimum, 100);
    DDX_Text(exchange, kReal, real);
    DDX_Check(exchange, kCheck, check);
    DDX_Radio(exchange, kRadio0, radio);
    DDX_CBIndex(exchange, kCombo, index);
  }
};

TEST(DataExchange, BindsControlsOnce) {
  ExchangeDialog dialog;
  EXPECT_EQ(dialog.combo.m_hWnd, ::GetDlgItem(dialog.m_hWnd, kCombo));
  EXPECT_TRUE(dialog.UpdateData(FALSE));
  EXPECT_EQ(dialog.combo.GetCount(), 2);
}

TEST(DataExchange, ShowsMembersInControls) {
  ExchangeDialog dialog;
  dialog.text = L"shown";
  dialog.number = -7;
  dialog.real = 0.1;
  dialog.check = 1;
  dialog.radio = 2;
  dialog.index = 1;
  ASSERT_TRUE(dialog.UpdateData(FALSE));
  CString shown;
  dialog.GetDlgItemText(kText, shown);
  EXPECT_EQ(shown, L"shown");
  dialog.GetDlgItemText(kNumber, shown);
  EXPECT_EQ(shown, L"-7");
  dialog.GetDlgItemText(kReal, shown);
  EXPECT_EQ(shown, L"0.1");
  EXPECT_EQ(dialog.IsDlgButtonChecked(kCheck), static_cast<UINT>(BST_CHECKED));
  EXPECT_EQ(dialog.GetCheckedRadioButton(kRadio0, kRadio2), kRadio2);
  EXPECT_EQ(dialog.combo.GetCurSel(), 1);
}

TEST(DataExchange, ReadsControlsIntoMembers) {
  ExchangeDialog dialog;
  dialog.SetDlgItemText(kText, L"typed");
  dialog.SetDlgItemText(kNumber, L" 42 ");
  dialog.SetDlgItemText(kReal, L"2.25");
  dialog.CheckDlgButton(kCheck, BST_CHECKED);
  dialog.CheckRadioButton(kRadio0, kRadio2, kRadio0);
  dialog.combo.SetCurSel(0);
  ASSERT_TRUE(dialog.UpdateData(TRUE));
  EXPECT_EQ(dialog.text, L"typed");
  EXPECT_EQ(dialog.number, 42);
  EXPECT_EQ(dialog.real, 2.25);
  EXPECT_EQ(dialog.check, 1);
  EXPECT_EQ(dialog.radio, 0);
  EXPECT_EQ(dialog.index, 0);
}

TEST(DataExchange, TellsThatNoRadioButtonIsChecked) {
  ExchangeDialog dialog;
  dialog.radio = -1;
  ASSERT_TRUE(dialog.UpdateData(FALSE));
  dialog.radio = 2;
  ASSERT_TRUE(dialog.UpdateData(TRUE));
  EXPECT_EQ(dialog.radio, -1);
}

class BadNumber : public testing::TestWithParam<const wchar_t*> {};

TEST_P(BadNumber, StopsTheExchangeAndSelectsTheField) {
  ExchangeDialog dialog;
  dialog.ShowWindow(SW_SHOW);
  dialog.SetDlgItemText(kNumber, GetParam());
  dialog.SetDlgItemText(kReal, L"9");
  EXPECT_FALSE(dialog.UpdateData(TRUE));
  EXPECT_EQ(dialog.real, 1.5);
  EXPECT_EQ(::GetFocus(), ::GetDlgItem(dialog.m_hWnd, kNumber));
  DWORD first = 1;
  DWORD last = 0;
  dialog.SendDlgItemMessage(kNumber, EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&last));
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, wcslen(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(DataExchange, BadNumber,
                         testing::Values(L"", L"  ", L"abc", L"12x", L"99999999999999999999", L"3000000000", L"101"));

TEST(DataExchange, AMissingControlIsAnErrorOfTheProgram) {
  ExchangeDialog dialog;
  CButton missing;
  CDataExchange exchange(&dialog, FALSE);
  try {
    DDX_Control(&exchange, 9999, missing);
    FAIL() << "nothing was thrown";
  } catch (CNotSupportedException* e) {
    e->Delete();
  }
}

}  // namespace
