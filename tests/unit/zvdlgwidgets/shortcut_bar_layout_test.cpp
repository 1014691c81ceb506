#include "services/zvdlgwidgets/shortcut_bar_layout.h"

#include <gtest/gtest.h>

namespace {

const ShortcutBarMetrics kMetrics{CSize(80, 300), 20, 60};

TEST(ShortcutBarLayout, OneGroupHasItsItemsBelowTheHeader) {
  const ShortcutBarLayout layout = LayOutShortcutBar(kMetrics, 1, 0, 2, 0);
  ASSERT_EQ(1u, layout.headers.size());
  EXPECT_EQ(CRect(0, 0, 80, 20), layout.headers[0]);
  EXPECT_EQ(CRect(0, 20, 80, 300), layout.itemArea);
  ASSERT_EQ(2u, layout.items.size());
  EXPECT_EQ(CRect(0, 20, 80, 80), layout.items[0]);
  EXPECT_EQ(CRect(0, 80, 80, 140), layout.items[1]);
}

TEST(ShortcutBarLayout, HeadersBehindTheExpandedGroupStandAtTheBottom) {
  const ShortcutBarLayout layout = LayOutShortcutBar(kMetrics, 3, 1, 0, 0);
  EXPECT_EQ(0, layout.headers[0].top);
  EXPECT_EQ(20, layout.headers[1].top);
  EXPECT_EQ(280, layout.headers[2].top);
  EXPECT_EQ(CRect(0, 40, 80, 280), layout.itemArea);
}

TEST(ShortcutBarLayout, WithoutGroupsThereIsNothing) {
  const ShortcutBarLayout layout = LayOutShortcutBar(kMetrics, 0, -1, 5, 0);
  EXPECT_TRUE(layout.headers.empty());
  EXPECT_TRUE(layout.items.empty());
}

TEST(ShortcutBarLayout, ScrollingMovesToTheNearestPlaceThatShowsTheItem) {
  // 280 pixels of area, ten items of 60.
  EXPECT_EQ(0, ScrollToShortcutItem(kMetrics, 1, 0, 10, 0));
  EXPECT_EQ(0, ScrollToShortcutItem(kMetrics, 1, 3, 10, 0)) << "it is in sight already";
  EXPECT_EQ(80, ScrollToShortcutItem(kMetrics, 1, 5, 10, 0));
  EXPECT_EQ(320, ScrollToShortcutItem(kMetrics, 1, 9, 10, 0));
  EXPECT_EQ(60, ScrollToShortcutItem(kMetrics, 1, 1, 10, 320));
}

TEST(ShortcutBarLayout, AnAreaLowerThanAnItemShowsItsTop) {
  const ShortcutBarMetrics low{CSize(80, 50), 20, 60};
  EXPECT_EQ(60, ScrollToShortcutItem(low, 1, 1, 2, 0));
}

}  // namespace
