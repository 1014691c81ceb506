#include "services/zvdlgwidgets/shortcut_bar.h"

#include "tests/unit/zvdlgwidgets/widget_host.h"

namespace {

constexpr int kBar = 9155;

class BarHost : public WidgetHost {
 public:
  std::vector<std::pair<int, int>> clicked;  // group and item

 protected:
  BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override {
    const auto* const notification = reinterpret_cast<const NMSHORTCUTBAR*>(lParam);
    if (notification->hdr.code == ZVSBN_ITEMCLICKED && notification->hdr.idFrom == kBar) {
      clicked.emplace_back(notification->group, notification->item);
    }
    return WidgetHost::OnNotify(wParam, lParam, result);
  }
};

class ShortcutBar : public testing::Test {
 protected:
  ShortcutBar() {
    EXPECT_TRUE(bar_.Create(WS_VISIBLE | WS_TABSTOP, ZVSBS_NOBORDER, CRect(0, 0, 90, 200), &host_, kBar));
    EXPECT_EQ(0, bar_.AddGroup(L"Places"));
    EXPECT_EQ(0, bar_.AddItem(0, 0, L"Recent"));
    EXPECT_EQ(1, bar_.AddItem(0, 1, L"Documents"));
    EXPECT_EQ(2, bar_.AddItem(0, 2, L"Desktop"));
  }

  void ClickAt(int y) {
    bar_.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(40, y));
    bar_.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(40, y));
  }

  BarHost host_;
  CZVShortcutBar bar_;
};

TEST_F(ShortcutBar, FirstGroupIsExpanded) {
  EXPECT_EQ(0, bar_.GetExpandedGroup());
  EXPECT_EQ(3, bar_.GetItemCount(0));
  EXPECT_EQ(0, bar_.GetItemCount(7));
  EXPECT_EQ(-1, bar_.AddItem(7, 0, L"nowhere"));
}

TEST_F(ShortcutBar, ArrowKeysReachTheItemsAndEnterChoosesOne) {
  bar_.SetFocus();
  EXPECT_EQ(0, bar_.GetCurrentItem());
  WidgetHost::Press(VK_DOWN);
  WidgetHost::Press(VK_RETURN);
  WidgetHost::Press(VK_END);
  WidgetHost::Press(VK_DOWN);
  WidgetHost::Press(VK_SPACE);
  EXPECT_THAT(host_.clicked, testing::ElementsAre(std::pair(0, 1), std::pair(0, 2)));
  EXPECT_EQ(0, host_.CountOf(IDOK, BN_CLICKED)) << "Enter stayed with the bar";
}

TEST_F(ShortcutBar, ClickChoosesTheItemUnderTheMouse) {
  ClickAt(30);
  EXPECT_THAT(host_.clicked, testing::ElementsAre(std::pair(0, 0)));
}

TEST_F(ShortcutBar, ReleasingElsewhereTakesTheClickBack) {
  bar_.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(40, 30));
  bar_.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(400, 30));
  EXPECT_THAT(host_.clicked, testing::IsEmpty());
}

TEST_F(ShortcutBar, ClickOnAHeaderExpandsItsGroup) {
  EXPECT_EQ(1, bar_.AddGroup(L"More"));
  EXPECT_EQ(0, bar_.AddItem(1, 0, L"File Information"));
  ClickAt(198);
  EXPECT_EQ(1, bar_.GetExpandedGroup());
  EXPECT_THAT(host_.clicked, testing::IsEmpty());
  bar_.SetFocus();
  WidgetHost::Press(VK_PRIOR);
  EXPECT_EQ(0, bar_.GetExpandedGroup());
  WidgetHost::Press(VK_NEXT);
  EXPECT_EQ(1, bar_.GetExpandedGroup());
}

TEST_F(ShortcutBar, TabLeavesIt) {
  bar_.SetFocus();
  WidgetHost::Press(VK_TAB);
  EXPECT_NE(bar_.m_hWnd, ::GetFocus());
}

}  // namespace
