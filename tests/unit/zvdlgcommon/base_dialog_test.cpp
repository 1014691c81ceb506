#include "services/zvdlgcommon/base_dialog.h"

#include <gmock/gmock.h>

#include <tuple>
#include <vector>

#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/support/leak_check.h"

namespace {

constexpr UINT kTemplate = 100;
constexpr UINT kHelpNumber = 77;
constexpr int kElsewhere = 101;

using HelpCall = std::tuple<uint32_t, int32_t, void*>;
std::vector<HelpCall> helpCalls;

void RecordHelp(uint32_t dialogNumber, int32_t controlId, void* userData) {
  helpCalls.emplace_back(dialogNumber, controlId, userData);
}

// Modeless, so that a test sees it while it is up.
class TestDialog : public CZVBaseDialog {
 public:
  TestDialog() : CZVBaseDialog(kTemplate, nullptr, kHelpNumber) {}

  void Open() { ASSERT_TRUE(Create(kTemplate)); }
  CRect Place(int id) const {
    HWND control = nullptr;
    GetDlgItem(id, &control);
    CRect place;
    ::GetWindowRect(control, &place);
    ScreenToClient(&place);
    return place;
  }
  bool Shows(int id) const {
    HWND control = nullptr;
    GetDlgItem(id, &control);
    return ::GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE;
  }
  CString Text(int id) const {
    CString text;
    GetDlgItemText(id, text);
    return text;
  }

 protected:
  void SetDialogStrings() override {
    CZVBaseDialog::SetDialogStrings();
    SetWindowText(GetDlgString(819));
    EXPECT_FALSE(SetControlString(555, 0)) << "there is no such control";
  }
};

TEST(BaseDialog, CommonTextsComeFromTheStringTable) {
  TestDialog dialog;
  dialog.Open();
  EXPECT_STREQ(L"OK", dialog.Text(IDOK));
  EXPECT_STREQ(L"Cancel", dialog.Text(IDCANCEL));
  EXPECT_STREQ(L"Help", dialog.Text(IDHELP));
  EXPECT_STREQ(L"Elsewhere", dialog.Text(kElsewhere));
  CString title;
  dialog.GetWindowText(title);
  EXPECT_STREQ(L"File Conversion", title);
}

TEST(BaseDialog, UnknownStringIdGivesAnEmptyText) { EXPECT_TRUE(CZVBaseDialog::GetDlgString(60000).IsEmpty()); }

TEST(BaseDialog, WithoutACallbackTheHelpButtonHidesAndItsRowClosesUp) {
  TestDialog dialog;
  dialog.Open();
  EXPECT_FALSE(dialog.Shows(IDHELP));
  EXPECT_TRUE(dialog.Shows(IDOK));
  EXPECT_FALSE(dialog.GetExStyle() & WS_EX_CONTEXTHELP);
  CRect client;
  dialog.GetClientRect(&client);
  const CRect ok = dialog.Place(IDOK), cancel = dialog.Place(IDCANCEL);
  EXPECT_NEAR(ok.left, client.right - cancel.right, 1) << "the pair stands in the middle";
  EXPECT_LT(ok.right, cancel.left);
  CRect elsewhere(10, 10, 70, 24);
  dialog.MapDialogRect(&elsewhere);
  EXPECT_EQ(elsewhere.left, dialog.Place(kElsewhere).left) << "buttons outside the row stay";
}

TEST(BaseDialog, WithACallbackTheHelpButtonShowsAndTheWindowAsksForContextHelp) {
  TestDialog dialog;
  dialog.SetHelpCallback(&RecordHelp);
  dialog.Open();
  EXPECT_TRUE(dialog.Shows(IDHELP));
  EXPECT_TRUE(dialog.GetExStyle() & WS_EX_CONTEXTHELP);
  CRect ok(30, 80, 70, 94);
  dialog.MapDialogRect(&ok);
  EXPECT_EQ(ok.left, dialog.Place(IDOK).left) << "the row stays as the template has it";
}

TEST(BaseDialog, HelpButtonIsReportedWithMinusOne) {
  helpCalls.clear();
  int userData = 0;
  TestDialog dialog;
  dialog.SetHelpCallback(&RecordHelp);
  dialog.SetHelpCallBackUserData(&userData);
  dialog.Open();
  dialog.SendDlgItemMessage(IDHELP, BM_CLICK);
  EXPECT_THAT(helpCalls, testing::ElementsAre(HelpCall(kHelpNumber, -1, &userData)));
}

TEST(BaseDialog, ContextHelpIsReportedWithTheControl) {
  helpCalls.clear();
  TestDialog dialog;
  dialog.SetHelpCallback(&RecordHelp);
  dialog.Open();
  HELPINFO info{};
  info.cbSize = sizeof info;
  info.iCtrlId = kElsewhere;
  dialog.SendMessage(WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
  EXPECT_THAT(helpCalls, testing::ElementsAre(HelpCall(kHelpNumber, kElsewhere, nullptr)));
}

TEST(BaseDialog, HelpWithoutACallbackDoesNothing) {
  helpCalls.clear();
  TestDialog dialog;
  dialog.Open();
  HELPINFO info{};
  info.cbSize = sizeof info;
  dialog.SendMessage(WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
  dialog.SendMessage(WM_COMMAND, IDHELP, 0);
  EXPECT_THAT(helpCalls, testing::IsEmpty());
}

TEST(BaseDialog, HelpIsHandedOnToADialogThatThisOneOpens) {
  int userData = 0;
  TestDialog opener, opened;
  opener.SetHelpCallback(&RecordHelp);
  opener.SetHelpCallBackUserData(&userData);
  opened.InheritHelp(opener);
  EXPECT_EQ(&RecordHelp, opened.GetHelpCallback());
  EXPECT_EQ(&userData, opened.GetHelpCallBackUserData());
}

TEST(BaseDialog, QuestionMarkIsHandedOnWithoutACallback) {
  class Asking : public TestDialog {
   public:
    using TestDialog::AddContextHelpStyle;
  } opener;
  opener.Open();
  opener.AddContextHelpStyle();
  TestDialog opened;
  opened.InheritHelp(opener);
  opened.Open();
  EXPECT_TRUE(opened.GetExStyle() & WS_EX_CONTEXTHELP);
  EXPECT_FALSE(opened.Shows(IDHELP));
}

TEST(BaseDialog, PositionPointPlacesTheNextDialogAlone) {
  POINT point = {123, 45};
  EXPECT_EQ(nullptr, CZVBaseDialog::SetPositionPoint(&point));
  TestDialog first, second;
  first.Open();
  second.Open();
  CRect firstPlace, secondPlace;
  first.GetWindowRect(&firstPlace);
  second.GetWindowRect(&secondPlace);
  EXPECT_EQ(CPoint(123, 45), firstPlace.TopLeft());
  EXPECT_FALSE(CPoint(123, 45) == secondPlace.TopLeft());
}

TEST(BaseDialog, PositionPointIsReadAtOnceAndGivenBack) {
  POINT point = {60, 70};
  CZVBaseDialog::SetPositionPoint(&point);
  point = {500, 500};
  POINT other = {1, 2};
  EXPECT_EQ(&point, CZVBaseDialog::SetPositionPoint(&other));
  EXPECT_EQ(&other, CZVBaseDialog::SetPositionPoint(nullptr));
  EXPECT_EQ(nullptr, CZVBaseDialog::SetPositionPoint(nullptr));
}

// Ends itself as soon as its loop runs.
class ModalDialog : public CZVBaseDialog {
 public:
  explicit ModalDialog(int command) : CZVBaseDialog(kTemplate, nullptr, 0), command_(command) {}

 protected:
  BOOL OnInitDialog() override {
    CZVBaseDialog::OnInitDialog();
    PostMessage(WM_COMMAND, static_cast<WPARAM>(command_));
    return TRUE;
  }

 private:
  int command_;
};

TEST(BaseDialog, OkEndsWithOneAndCancelWithTwo) {
  EXPECT_EQ(1, ModalDialog(IDOK).DoModal());
  EXPECT_EQ(2, ModalDialog(IDCANCEL).DoModal());
}

TEST(BaseDialog, MissingTemplateFailsTheRun) {
  class Missing : public CZVBaseDialog {
   public:
    Missing() : CZVBaseDialog(4711, nullptr, 0) {}
  };
  EXPECT_EQ(-1, Missing().DoModal());
}

TEST(BaseDialog, OpeningOftenLeavesNoObjectsBehind) {
  zvtest::ExpectNothingLeftBehind([] { ModalDialog(IDOK).DoModal(); }, {.times = 50});
}

}  // namespace
