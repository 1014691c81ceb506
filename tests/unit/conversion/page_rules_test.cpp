#include "conversion/page_rules.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

CZVPageNavigation FourPages() {
  CZVPageNavigation pages;
  pages.Start(4);
  return pages;
}

TEST(PageNavigation, IsOffForAFileOfOnePage) {
  CZVPageNavigation pages;
  pages.Start(1);
  EXPECT_FALSE(pages.EditEnabled());
  EXPECT_FALSE(pages.BackEnabled());
  EXPECT_FALSE(pages.ForwardEnabled());
  EXPECT_EQ(-1, pages.Total());
  EXPECT_EQ(1, pages.Current());
  EXPECT_STREQ(L"1/1", pages.PageOfText());
}

TEST(PageNavigation, IsOffForAFileWhosePagesAreUnknown) {
  CZVPageNavigation pages;
  pages.Start(0);
  EXPECT_EQ(-1, pages.Total());
  EXPECT_FALSE(pages.EditEnabled());
}

TEST(PageNavigation, StartsOnTheFirstOfSeveralPages) {
  const CZVPageNavigation pages = FourPages();
  EXPECT_TRUE(pages.EditEnabled());
  EXPECT_FALSE(pages.BackEnabled());
  EXPECT_TRUE(pages.ForwardEnabled());
  EXPECT_STREQ(L"1/4", pages.PageOfText());
}

TEST(PageNavigation, StopsAtBothEnds) {
  CZVPageNavigation pages = FourPages();
  EXPECT_EQ(4, pages.Clamp(5));
  EXPECT_TRUE(pages.BackEnabled());
  EXPECT_FALSE(pages.ForwardEnabled());
  EXPECT_EQ(1, pages.Clamp(0));
  EXPECT_FALSE(pages.BackEnabled());
  EXPECT_TRUE(pages.ForwardEnabled());
}

TEST(PageNavigation, GoesBothWaysFromAPageInside) {
  CZVPageNavigation pages = FourPages();
  EXPECT_EQ(2, pages.Clamp(2));
  EXPECT_TRUE(pages.BackEnabled());
  EXPECT_TRUE(pages.ForwardEnabled());
  EXPECT_STREQ(L"2/4", pages.PageOfText());
}

TEST(PageNavigation, DisablesBothButtonsWhileANumberOutsideTheFileIsTyped) {
  CZVPageNavigation pages = FourPages();
  pages.Entered(3);
  pages.Entered(9);
  EXPECT_FALSE(pages.BackEnabled());
  EXPECT_FALSE(pages.ForwardEnabled());
  EXPECT_TRUE(pages.EditEnabled());
  EXPECT_EQ(3, pages.Current());
  pages.Entered(0);
  EXPECT_FALSE(pages.BackEnabled());
  EXPECT_FALSE(pages.ForwardEnabled());
}

TEST(PageNavigation, CannotBeUsedOnceDisabled) {
  CZVPageNavigation pages = FourPages();
  pages.Disable();
  EXPECT_FALSE(pages.EditEnabled());
  EXPECT_FALSE(pages.BackEnabled());
  EXPECT_FALSE(pages.ForwardEnabled());
}

TEST(PageNavigation, ShowsOnlyPagesOfTheFile) {
  const CZVPageNavigation pages = FourPages();
  EXPECT_TRUE(pages.IsShowable(1));
  EXPECT_TRUE(pages.IsShowable(4));
  EXPECT_FALSE(pages.IsShowable(5));
  EXPECT_FALSE(pages.IsShowable(0));
}

TEST(PageNavigation, ShowsAnyPageNumberOfAFileOfOnePage) {
  CZVPageNavigation pages;
  pages.Start(1);
  EXPECT_TRUE(pages.IsShowable(7));
  EXPECT_FALSE(pages.IsShowable(0));
}

TEST(PagesColumn, JoinsTheChosenPages) {
  constexpr int32_t kPages[] = {3, 12, 5};
  EXPECT_STREQ(L"3,12,5", PagesColumnText(kPages, 3));
}

TEST(PagesColumn, IsBlankWithoutASelection) {
  constexpr int32_t kPages[] = {3};
  EXPECT_TRUE(PagesColumnText(nullptr, -1).IsEmpty());
  EXPECT_TRUE(PagesColumnText(kPages, 0).IsEmpty());
}

TEST(PagesColumn, CutsATextOf260CharactersTo256AndAnEllipsis) {
  std::vector<int32_t> pages(130, 1);  // "1,1,...": 259 characters
  EXPECT_EQ(259, PagesColumnText(pages.data(), 130).GetLength());
  pages[0] = 10;
  const CString cut = PagesColumnText(pages.data(), 130);
  EXPECT_EQ(259, cut.GetLength());
  EXPECT_STREQ(L"...", cut.Right(3));
  EXPECT_STREQ(L"10,1,", cut.Left(5));
}

}  // namespace
