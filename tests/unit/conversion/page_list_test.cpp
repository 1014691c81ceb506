#include "conversion/page_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int32_t> Parsed(const wchar_t* text) {
  std::vector<int32_t> pages;
  EXPECT_TRUE(ParsePageList(text, pages)) << "refused";
  return pages;
}

bool IsRefused(const wchar_t* text) {
  std::vector<int32_t> pages;
  return !ParsePageList(text, pages);
}

TEST(PageList, KeepsTheOrderOfFirstMentionAndExpandsRangesUpwards) {
  EXPECT_THAT(Parsed(L"3,12,5-9"), ElementsAre(3, 12, 5, 6, 7, 8, 9));
  EXPECT_THAT(Parsed(L"9-5"), ElementsAre(5, 6, 7, 8, 9));
}

TEST(PageList, RangeOfOnePageGivesThatPage) { EXPECT_THAT(Parsed(L"5-5"), ElementsAre(5)); }

TEST(PageList, MentionsEachPageOnce) {
  EXPECT_THAT(Parsed(L"2,2,2"), ElementsAre(2));
  EXPECT_THAT(Parsed(L"4,2-5"), ElementsAre(4, 2, 3, 5));
}

TEST(PageList, RangeWhoseFirstEndWasMentionedBeforeTakesTheLastEntryInstead) {
  EXPECT_THAT(Parsed(L"3,7,3-5"), ElementsAre(3, 5, 6, 7));
}

TEST(PageList, IgnoresWhatFollowsTheDigitsOfAnItem) { EXPECT_THAT(Parsed(L" 2 x,3"), ElementsAre(2, 3)); }

TEST(PageList, RefusesEmptyItems) {
  EXPECT_TRUE(IsRefused(L""));
  EXPECT_TRUE(IsRefused(L"2,"));
  EXPECT_TRUE(IsRefused(L",2"));
  EXPECT_TRUE(IsRefused(L"1-"));
  EXPECT_TRUE(IsRefused(L"-1"));
}

TEST(PageList, RefusesNumbersBelowOne) {
  EXPECT_TRUE(IsRefused(L"0"));
  EXPECT_TRUE(IsRefused(L"0-3"));
  EXPECT_TRUE(IsRefused(L"abc"));
}

TEST(PageList, RefusesRangesWithThreeEnds) { EXPECT_TRUE(IsRefused(L"1-2-3")); }

TEST(PageList, TakesTheLargestNumberAsTheEndOfARange) {
  EXPECT_THAT(Parsed(L"2147483647-2147483647"), ElementsAre(2147483647));
  EXPECT_THAT(Parsed(L"2147483646-2147483647"), ElementsAre(2147483646, 2147483647));
}

TEST(PageList, RefusesRangesThatWouldExhaustMemory) { EXPECT_TRUE(IsRefused(L"1-2000000000")); }

TEST(ClippedPages, AreThoseThatTheFileHas) {
  EXPECT_THAT(ClipPages({1, 3, 9}, 5), ElementsAre(1, 3));
  EXPECT_THAT(ClipPages({9}, 5), IsEmpty());
}

TEST(ClippedPages, OfNoSelectionAreAllPages) { EXPECT_THAT(ClipPages({}, 4), ElementsAre(1, 2, 3, 4)); }

TEST(AssignedPages, WithoutEntriesStillGiveAnArrayWhoseFirstEntryIsZero) {
  CONVERSIONFILEOPTIONS options;
  AssignPages(options, {});
  EXPECT_EQ(options.pageCount, 0);
  ASSERT_NE(options.pages, nullptr);
  EXPECT_EQ(options.pages[0], 0);
  FreePages(options);
  EXPECT_EQ(options.pages, nullptr);
  EXPECT_EQ(options.pageCount, -1);
}

}  // namespace
