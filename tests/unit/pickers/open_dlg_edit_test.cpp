#include "pickers/open_dlg_edit.h"

#include <gtest/gtest.h>

#include "pickers/navigating_mark.h"

namespace {

class NameBox : public testing::Test {
 protected:
  NameBox() {
    EXPECT_TRUE(host_.CreateEx(0, AfxRegisterWndClass(0), nullptr, WS_POPUP, CRect(0, 0, 100, 100), nullptr, 0));
    EXPECT_TRUE(edit_.Create(WS_CHILD, CRect(0, 0, 90, 20), &host_, 1));
    edit_.SetWindowText(L"C:\\Documents");
  }
  ~NameBox() override { navigatingThroughNameBox = false; }

  std::wstring TextAfterAKey() {
    edit_.SendMessage(WM_KEYUP, VK_RETURN, 0);
    CString text;
    edit_.GetWindowText(text);
    return std::wstring(text);
  }

  CWnd host_;
  CZVOpenDlgEdit edit_;
};

TEST_F(NameBox, EmptiesItselfOnceAfterAPathHasBeenPutIntoIt) {
  navigatingThroughNameBox = true;
  EXPECT_EQ(L"", TextAfterAKey());
  EXPECT_FALSE(navigatingThroughNameBox);
  edit_.SetWindowText(L"picture.bmp");
  EXPECT_EQ(L"picture.bmp", TextAfterAKey());
}

TEST_F(NameBox, KeepsWhatTheUserTyped) { EXPECT_EQ(L"C:\\Documents", TextAfterAKey()); }

}  // namespace
