#include "naming/naming_template_processor.h"

#include <gtest/gtest.h>

#include <set>

#include "naming/depositories.h"
#include "naming/unique_name.h"
#include "services/zvdlgbase/zvdlgbase.h"

namespace {

class NamingTemplate : public ::testing::Test {
 protected:
  CString Expand(const CString& namingTemplate, const CString& source = L"name") {
    return processor.ProcessTemplate(namingTemplate, source);
  }
  void Configure() { EXPECT_EQ(1, processor.Configure(settings)); }

  NAMINGTEMPLATESETTINGS settings;
  CZVNamingTemplateProcessor processor;
};

TEST_F(NamingTemplate, ShowsOneNumberPerExpansionHoweverOftenItStands) {
  EXPECT_STREQ(L"0-0", Expand(L"<NUM>-<NUM>"));
  EXPECT_STREQ(L"1-1", Expand(L"<NUM>-<NUM>"));
}

TEST_F(NamingTemplate, RaisesCountersThatItDoesNotShow) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_STREQ(L"name", Expand(L"<SRC>"));
  }
  EXPECT_STREQ(L"3", Expand(L"<NUM>"));
  EXPECT_STREQ(L"e", Expand(L"<ALPHA>"));
  EXPECT_STREQ(L"5", Expand(L"<ALPHANUM>"));
}

TEST_F(NamingTemplate, IsEmptyAndMovesNoCounterWhenEmpty) {
  EXPECT_TRUE(Expand(L"").IsEmpty());
  EXPECT_STREQ(L"0", Expand(L"<NUM>"));
}

TEST_F(NamingTemplate, SwapsTheCaseOfTheSourceNameAlone) {
  settings.caseMode = CASE_SWAP;
  Configure();
  EXPECT_STREQ(L"Ab1x", Expand(L"<SRC>x", L"aB1"));
}

TEST_F(NamingTemplate, UpperAndLowerCasesTheSourceNameAlone) {
  settings.caseMode = CASE_UPPER;
  Configure();
  EXPECT_STREQ(L"ABx", Expand(L"<SRC>x", L"aB"));
  settings.caseMode = CASE_LOWER;
  Configure();
  EXPECT_STREQ(L"abX", Expand(L"<SRC>X", L"aB"));
}

TEST_F(NamingTemplate, LeavesTheSourceNameAloneInAnUnknownCaseMode) {
  settings.caseMode = 9;
  Configure();
  EXPECT_STREQ(L"aB", Expand(L"<SRC>", L"aB"));
}

TEST_F(NamingTemplate, KeepsDisabledTagsAsText) {
  processor.SetEnabledTags(32);
  EXPECT_STREQ(L"<NUM>name", Expand(L"<NUM><SRC>"));
}

TEST_F(NamingTemplate, KeepsUnknownTagsAsText) { EXPECT_STREQ(L"<foo>name<", Expand(L"<foo><SRC><")); }

TEST_F(NamingTemplate, KeepsItsNumberWithIncrementZero) {
  settings.numericIncrement = 0;
  settings.numericStart = 4;
  Configure();
  EXPECT_STREQ(L"4", Expand(L"<NUM>"));
  EXPECT_STREQ(L"4", Expand(L"<NUM>"));
}

TEST_F(NamingTemplate, RestartsItsCountersWhenConfigured) {
  settings.numericStart = 7;
  settings.alphaStart = 1;
  settings.alnumStart = 10;
  Configure();
  EXPECT_STREQ(L"7ba", Expand(L"<NUM><ALPHA><ALPHANUM>"));
  EXPECT_STREQ(L"8cb", Expand(L"<NUM><ALPHA><ALPHANUM>"));
  Configure();
  EXPECT_STREQ(L"7ba", Expand(L"<NUM><ALPHA><ALPHANUM>"));
}

TEST_F(NamingTemplate, KeepsTheEnabledTagsWhenConfigured) {
  processor.SetEnabledTags(32);
  Configure();
  EXPECT_STREQ(L"<NUM>", Expand(L"<NUM>"));
}

TEST_F(NamingTemplate, PassesMasksRangesAndCaseToTheirGenerators) {
  settings.numericMask = L"000";
  settings.alphaMask = L"__";
  settings.alphaUpperCase = 1;
  settings.alphaFrom = L'c';
  settings.alphaTo = L'd';
  settings.alnumUpperCase = 1;
  settings.alnumNumericFrom = L'3';
  settings.alnumNumericTo = L'5';
  settings.alnumAlphaFrom = L'x';
  settings.alnumAlphaTo = L'y';
  settings.alnumMask = L"#-";
  settings.alnumStart = 4;
  settings.numericIncrement = 10;
  settings.alphaIncrement = 2;
  settings.alnumIncrement = 3;
  Configure();
  EXPECT_STREQ(L"0000 __C #-Y", Expand(L"<NUM> <ALPHA> <ALPHANUM>"));
  EXPECT_STREQ(L"00010 __DC #-45", Expand(L"<NUM> <ALPHA> <ALPHANUM>"));
  EXPECT_STREQ(L"00020 DC #-53", Expand(L"<NUM> <ALPHA> <ALPHANUM>")) << "letters longer than their mask are cut";
  settings.alphaUpperCase = 0;
  Configure();
  EXPECT_STREQ(L"__c #-Y", Expand(L"<ALPHA> <ALPHANUM>"));
  settings.alphaUpperCase = 1;
  settings.alnumUpperCase = 0;
  Configure();
  EXPECT_STREQ(L"__C #-y", Expand(L"<ALPHA> <ALPHANUM>"));
}

TEST_F(NamingTemplate, ChoosesDateAndTimeFormatsByType) {
  const auto now = [](int32_t format) { return FormatLocalTime(std::time(nullptr), DateFormats().GetString(format)); };
  for (int32_t type = 0; type < kTimeTypeCount; ++type) {
    settings.dateType = type;  // 2 and 3 leave the format as it was
    settings.timeType = type;
    Configure();
    CString before, expanded;
    do {  // until no second ends in between
      before = now(type < 2 ? type : 1) + L"|" + now(kFirstTimeFormat + type);
      expanded = Expand(L"<DATE>|<TIME>");
    } while (before != now(type < 2 ? type : 1) + L"|" + now(kFirstTimeFormat + type));
    EXPECT_EQ(before, expanded) << type;
  }
}

TEST_F(NamingTemplate, FollowsAChangeOfTheTagTextsWithTheNextProcessor) {
  ASSERT_EQ(SUCCESS, SetDialogStringText(4571, L"<ZAHL>"));
  CZVNamingTemplateProcessor later;
  EXPECT_STREQ(L"0<NUM>", later.ProcessTemplate(L"<zahl><NUM>", L""));
  ASSERT_EQ(SUCCESS, SetDialogStringText(4571, nullptr));
  CZVNamingTemplateProcessor restored;
  EXPECT_STREQ(L"<zahl>0", restored.ProcessTemplate(L"<zahl><NUM>", L""));
}

CString KernelText(uint32_t id) {
  wchar_t text[100] = {};
  EXPECT_EQ(SUCCESS, GetDialogStringText(id, text, 100)) << id;
  return text;
}

TEST(NamingDepositories, HoldTheKernelsTexts) {
  const wchar_t* const tags[] = {L"<NUM>", L"<ALPHA>", L"<ALPHANUM>", L"<DATE>", L"<TIME>", L"<SRC>"};
  for (int32_t tag = 0; tag < kNamingTagCount; ++tag) {
    EXPECT_STREQ(tags[tag], TagTexts().GetString(tag));
  }
  constexpr uint32_t kFirstTimeTypeName = 4418, kFirstCaseName = 4412;
  for (int32_t id = 0; id < 4; ++id) {
    EXPECT_STREQ(KernelText(kFirstTimeTypeName + static_cast<uint32_t>(id)), TimeTypeNames().GetString(id));
    EXPECT_STREQ(KernelText(kFirstCaseName + static_cast<uint32_t>(id)), CaseNames().GetString(id));
    for (int32_t other = 0; other < id; ++other) {
      EXPECT_STRNE(TimeTypeNames().GetString(other), TimeTypeNames().GetString(id)) << "each has a text of its own";
      EXPECT_STRNE(CaseNames().GetString(other), CaseNames().GetString(id));
    }
  }
}

TEST(NamingDepositories, HoldTheDateTypeNamesInFallingOrderOfTheirIds) {
  EXPECT_STREQ(KernelText(4417), DateTypeNames().GetString(0));
  EXPECT_STREQ(KernelText(4416), DateTypeNames().GetString(1));
}

TEST(EnabledTags, AreTheLowestSixBits) {
  EXPECT_TRUE(IsTagEnabled(1, TAG_NUM));
  EXPECT_TRUE(IsTagEnabled(32, TAG_SRC));
  EXPECT_FALSE(IsTagEnabled(31, TAG_SRC));
  EXPECT_FALSE(IsTagEnabled(0xffffffff, 6));
  EXPECT_FALSE(IsTagEnabled(0xffffffff, -1));
}

TEST(SwapCase, LeavesCharactersWithoutCaseAlone) {
  EXPECT_STREQ(L"Ab1 _", SwapCase(L"aB1 _"));
  EXPECT_STREQ(L"\u00c4\u00f6", SwapCase(L"\u00e4\u00d6"));
  EXPECT_STREQ(L"\u65e5\U0001f600", SwapCase(L"\u65e5\U0001f600"));
  EXPECT_STREQ(L"", SwapCase(L""));
}

class UniqueName : public ::testing::Test {
 protected:
  UniqueName() {
    collision.namingTemplate = L"<SRC><NUM>";
    collision.settings = &settings;
  }
  CString Make(const CString& path) {
    return MakeUniqueName(path, collision, [this](const CString& candidate) {
      asked.push_back(candidate.str());
      return taken.count(candidate.str()) != 0;
    });
  }

  NAMINGTEMPLATESETTINGS settings;
  RENAMETEMPLATEDATA collision;
  std::set<std::wstring> taken;
  std::vector<std::wstring> asked;
};

TEST_F(UniqueName, CountsUpInTheGivenFolderUntilANameIsFree) {
  taken = {L"C:\\out\\x.jpg", L"C:\\out\\x0.jpg", L"C:\\out\\x1.jpg"};
  EXPECT_STREQ(L"C:\\out\\x2.jpg", Make(L"C:\\out\\x.jpg"));
  EXPECT_EQ((std::vector<std::wstring>{L"C:\\out\\x.jpg", L"C:\\out\\x0.jpg", L"C:\\out\\x1.jpg", L"C:\\out\\x2.jpg"}),
            asked);
}

TEST_F(UniqueName, StartsItsNumbersAfreshForEachCollision) {
  taken = {L"C:\\x.jpg", L"C:\\y.jpg"};
  EXPECT_STREQ(L"C:\\x0.jpg", Make(L"C:\\x.jpg"));
  EXPECT_STREQ(L"C:\\y0.jpg", Make(L"C:\\y.jpg"));
}

TEST_F(UniqueName, UsesTheCollisionSettings) {
  settings.numericStart = 5;
  settings.numericIncrement = 2;
  settings.numericMask = L"_0";
  taken = {L"C:\\x.jpg", L"C:\\x_05.jpg"};
  EXPECT_STREQ(L"C:\\x_07.jpg", Make(L"C:\\x.jpg"));
}

TEST_F(UniqueName, IsEmptyForAnEmptyPath) {
  EXPECT_TRUE(Make(L"").IsEmpty());
  EXPECT_TRUE(asked.empty());
}

TEST_F(UniqueName, IsEmptyForAPathThatIsNotTaken) { EXPECT_TRUE(Make(L"C:\\free.jpg").IsEmpty()); }

TEST_F(UniqueName, GivesTheLastCandidateThoughItBeEmpty) {
  collision.namingTemplate = L"";
  taken = {L"x"};
  EXPECT_TRUE(Make(L"x").IsEmpty());
  EXPECT_EQ(2u, asked.size());
}

}  // namespace
