#include "naming/tag_parser.h"

#include <gtest/gtest.h>

#include "naming/depositories.h"
#include "naming/string_depository.h"

namespace {

struct Token {
  NamingToken kind;
  std::wstring text;
  int32_t id;
  bool operator==(const Token&) const = default;
};

Token Text(const wchar_t* text) { return {TOKEN_TEXT, text, -1}; }
Token Tag(const wchar_t* text, int32_t id) { return {TOKEN_TAG, text, id}; }
const Token kEnd = {TOKEN_END, L"", -1};

class TagParser : public ::testing::Test {
 protected:
  TagParser() {
    const wchar_t* const texts[] = {L"<NUM>", L"<ALPHA>", L"<ALPHANUM>", L"<DATE>", L"<TIME>", L"<SRC>"};
    for (int32_t id = 0; id < kNamingTagCount; ++id) {
      EXPECT_EQ(1, parser.AddTag(texts[id], id));
    }
  }

  Token Next() {
    CString text = L"left over";
    int32_t id = 99;
    const NamingToken kind = parser.GetNextToken(text, id);
    return {kind, text.str(), id};
  }

  CZVTagParser parser;
};

TEST_F(TagParser, CutsTagsAndTheTextBetweenThem) {
  parser.SetTemplate(L"<SRC>_<NUM>");
  EXPECT_EQ(Tag(L"<SRC>", TAG_SRC), Next());
  EXPECT_EQ(Text(L"_"), Next());
  EXPECT_EQ(Tag(L"<NUM>", TAG_NUM), Next());
  EXPECT_EQ(kEnd, Next());
}

TEST_F(TagParser, KeepsReportingTheEndBehindTheEnd) {
  parser.SetTemplate(L"abc");
  EXPECT_EQ(Text(L"abc"), Next());
  EXPECT_EQ(kEnd, Next());
  EXPECT_EQ(kEnd, Next());
}

TEST_F(TagParser, EndsAtOnceOnAnEmptyTemplate) { EXPECT_EQ(kEnd, Next()); }

TEST_F(TagParser, GivesAnUnclosedBracketAsTextOfItsOwn) {
  parser.SetTemplate(L"a<");
  EXPECT_EQ(Text(L"a"), Next());
  EXPECT_EQ(Text(L"<"), Next());
  EXPECT_EQ(kEnd, Next());
}

TEST_F(TagParser, GivesATagWithoutItsClosingBracketAsText) {
  parser.SetTemplate(L"<NUM");
  EXPECT_EQ(Text(L"<NUM"), Next());
  EXPECT_EQ(kEnd, Next());
}

TEST_F(TagParser, GivesAnUnknownTagAndTheTextBehindItAsTwoTexts) {
  parser.SetTemplate(L"<foo>bar");
  EXPECT_EQ(Text(L"<foo>"), Next());
  EXPECT_EQ(Text(L"bar"), Next());
  EXPECT_EQ(kEnd, Next());
}

TEST_F(TagParser, MatchesTagsWithoutRegardToCase) {
  parser.SetTemplate(L"<Src><num>");
  EXPECT_EQ(Tag(L"<Src>", TAG_SRC), Next());
  EXPECT_EQ(Tag(L"<num>", TAG_NUM), Next());
}

TEST_F(TagParser, DoesNotRestartATagAtABracketInsideIt) {
  parser.SetTemplate(L"<<NUM>x");
  EXPECT_EQ(Text(L"<<NUM>"), Next());
  EXPECT_EQ(Text(L"x"), Next());
}

TEST_F(TagParser, TakesAClosingBracketOutsideATagAsText) {
  parser.SetTemplate(L"a>b<NUM>");
  EXPECT_EQ(Text(L"a>b"), Next());
  EXPECT_EQ(Tag(L"<NUM>", TAG_NUM), Next());
}

TEST_F(TagParser, StartsAnewWithEachTemplate) {
  parser.SetTemplate(L"one");
  Next();
  parser.SetTemplate(L"two");
  EXPECT_EQ(Text(L"two"), Next());
}

TEST_F(TagParser, OverwritesATagOfTheSameTextInAnotherCase) {
  parser.AddTag(L"<num>", 42);
  EXPECT_EQ(42, parser.FindTag(L"<NUM>"));
}

TEST_F(TagParser, FindsNoTagThatWasNotAdded) { EXPECT_EQ(-1, parser.FindTag(L"<foo>")); }

TEST(TagParserWithOneTag, GivesTheOtherTagsAsText) {
  CZVTagParser parser;
  parser.AddTag(L"<SRC>", TAG_SRC);
  parser.SetTemplate(L"<NUM><SRC>");
  CString text;
  int32_t id = 0;
  EXPECT_EQ(TOKEN_TEXT, parser.GetNextToken(text, id));
  EXPECT_STREQ(L"<NUM>", text);
  EXPECT_EQ(TOKEN_TAG, parser.GetNextToken(text, id));
  EXPECT_EQ(TAG_SRC, id);
}

TEST(StringMapKey, HashesByLengthAloneInStepsOfSixteen) {
  EXPECT_EQ(0u, CStringMapKey(L"<ALPHANUM>").Hash());
  EXPECT_EQ(1u, CStringMapKey(L"0123456789abcdef").Hash());
  EXPECT_EQ(HashKey<const CStringMapKey&>(CStringMapKey(L"<NUM>")), HashKey<const CStringMapKey&>(CStringMapKey(L"x")));
}

TEST(StringDepository, GivesAnEmptyTextForAnAbsentId) {
  const CStringDepositoryEntry one(7, L"seven");
  const CStringDepository depository(1, &one);
  EXPECT_STREQ(L"seven", depository.GetString(7));
  EXPECT_TRUE(depository.GetString(8).IsEmpty());
}

TEST(StringDepository, TakesStringsAfterAnEmptyStart) {
  CStringDepository depository(0);
  EXPECT_TRUE(depository.GetString(1).IsEmpty());
  depository.AddString(1, L"first");
  depository.AddString(1, L"second");
  EXPECT_STREQ(L"second", depository.GetString(1));
}

TEST(StringDepository, SetsUpItsBucketsWithItsFirstEntriesOnly) {
  const CStringDepositoryEntry one(1, L"one");
  EXPECT_EQ(257u, CStringDepository(1, &one).GetHashTableSize());
  EXPECT_EQ(17u, CStringDepository(0).GetHashTableSize());
  EXPECT_EQ(17u, CStringDepository(-3).GetHashTableSize());
}

TEST(StringDepository, IsEmptyAfterRemoveAll) {
  CStringDepository depository(0);
  depository.AddString(3, L"three");
  depository.RemoveAll();
  EXPECT_TRUE(depository.GetString(3).IsEmpty());
}

}  // namespace
