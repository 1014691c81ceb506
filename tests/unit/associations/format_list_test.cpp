#include "associations/format_list.h"

#include <gmock/gmock.h>

#include <cwchar>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

std::wstring Name(const wchar_t* text) { return FormatName(text).GetString(); }

std::vector<std::wstring> Extensions(const wchar_t* patterns) {
  CFormatArray formats;
  AppendExtensions(patterns, L"", formats);
  std::vector<std::wstring> extensions;
  for (const FORMATSTRUCT& format : formats) extensions.push_back(format.extension.GetString());
  return extensions;
}

struct Rows {
  explicit Rows(const wchar_t* list) { ParseFormats(list, formats); }
  CFormatArray formats;
};

std::wstring Joined(const wchar_t* list) { return JoinSelected(list).GetString(); }

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FormatName, IsCutAtTheBlankBeforeTheBracket) {
  EXPECT_EQ(L"JPEG", Name(L"JPEG (*.jpg;*.jpeg;*.jtf)"));
  EXPECT_EQ(L"JPEG 2000", Name(L"JPEG 2000 (*.j2k;*.jp2;*.jpx)"));
}

TEST(FormatName, IsCutAtTheLastBlankWhenTheBracketTouchesIt) {
  EXPECT_EQ(L"Wireless", Name(L"Wireless Bitmap(*.wbmp)"));
  EXPECT_EQ(L"Scitex Continuous", Name(L"Scitex Continuous Tone(*.sct;*.ct)"));
}

TEST(FormatName, IsCutAtTheBracketWhenABlankStandsInside) { EXPECT_EQ(L"Two ", Name(L"Two (*.a; *.b)")); }

TEST(FormatName, IsKeptWholeWithoutABracketOrWithOneInFront) {
  EXPECT_EQ(L"Raw camera data", Name(L"Raw camera data"));
  EXPECT_EQ(L"(all) of them", Name(L"(all) of them"));
  EXPECT_EQ(L"", Name(L""));
}

TEST(FormatName, IsEmptyWithABracketAndNoBlank) { EXPECT_EQ(L"", Name(L"PNG(*.png)")); }

TEST(Extensions, RunFromAPointToASemicolonOrTheEnd) {
  EXPECT_THAT(Extensions(L"*.jpg;*.jpeg;*.jtf"), ElementsAre(L".jpg", L".jpeg", L".jtf"));
  EXPECT_THAT(Extensions(L"*.png"), ElementsAre(L".png"));
}

TEST(Extensions, KeepTheCaseAndWhateverFollowsThePoint) {
  EXPECT_THAT(Extensions(L"*.JpG;x.tar.gz;."), ElementsAre(L".JpG", L".tar.gz", L"."));
}

TEST(Extensions, OfAnEmptyTextAreNone) {
  EXPECT_THAT(Extensions(L""), IsEmpty());
  EXPECT_THAT(Extensions(L"*;*"), IsEmpty());
}

TEST(FormatList, HasOneEntryAnExtensionAllWithThePairsName) {
  const Rows rows(L"JPEG (*.jpg;*.jpeg)\0*.jpg;*.jpeg\0Nothing\0\0PNG (*.png)\0*.png\0");
  ASSERT_EQ(3, rows.formats.GetSize());
  EXPECT_STREQ(L".jpg", rows.formats[0].extension);
  EXPECT_STREQ(L"JPEG", rows.formats[0].name);
  EXPECT_STREQ(L".jpeg", rows.formats[1].extension);
  EXPECT_STREQ(L"JPEG", rows.formats[1].name);
  EXPECT_STREQ(L".png", rows.formats[2].extension);
}

TEST(FormatList, EndsAtAnEmptyName) {
  EXPECT_EQ(0, Rows(L"\0*.png\0").formats.GetSize());
  EXPECT_EQ(1, Rows(L"A (*.a)\0*.a\0\0B (*.b)\0*.b\0").formats.GetSize());
}

TEST(BuiltInFormats, Are72PairsAnd87Extensions) {
  int pairs = 0;
  for (const wchar_t* at = kBuiltInFormats; *at; ++pairs) {
    at += std::wcslen(at) + 1;
    at += std::wcslen(at) + 1;
  }
  EXPECT_EQ(72, pairs);
  EXPECT_EQ(87, Rows(kBuiltInFormats).formats.GetSize());
}

TEST(BuiltInFormats, RepeatTheirPatternsInTheBracket) {
  for (const wchar_t* at = kBuiltInFormats; *at;) {
    const std::wstring name = at;
    at += name.size() + 1;
    const std::wstring patterns = at;
    at += patterns.size() + 1;
    EXPECT_EQ(L"(" + patterns + L")", name.substr(name.find(L'(')));
  }
}

TEST(BuiltInFormats, NameTheirRowsByTheRule) {
  const Rows rows(kBuiltInFormats);
  std::multimap<std::wstring, std::wstring> names;
  for (const FORMATSTRUCT& format : rows.formats) names.emplace(format.extension.GetString(), format.name.GetString());
  const auto nameOf = [&](const wchar_t* extension) { return names.find(extension)->second; };
  EXPECT_EQ(L"Zorvane", nameOf(L".cmp"));
  EXPECT_EQ(L"JPEG 2000", nameOf(L".jpx"));
  EXPECT_EQ(L"MODCA or IOCA", nameOf(L".ica"));
  EXPECT_EQ(L"Wireless", nameOf(L".wbmp"));
  EXPECT_EQ(L"MO:DCA", nameOf(L".ptk"));
  EXPECT_EQ(L"Scitex Continuous", nameOf(L".ct"));
  EXPECT_EQ(L"Printer Command", nameOf(L".pcl"));
  EXPECT_EQ(L"Environmental Systems Research Institute", nameOf(L".shp"));
  EXPECT_EQ(L"Scalable Vector", nameOf(L".svg"));
  EXPECT_EQ(L"Thumbs.db", nameOf(L".db"));
  EXPECT_EQ(L"Microsoft Office Excel Workbook", nameOf(L".xls"));
}

TEST(BuiltInFormats, HaveTwoRowsForIcoAndAfpAndOneForAllOthers) {
  const Rows rows(kBuiltInFormats);
  std::map<std::wstring, int> counts;
  for (const FORMATSTRUCT& format : rows.formats) ++counts[format.extension.GetString()];
  for (const auto& [extension, count] : counts) EXPECT_EQ(extension == L".ico" || extension == L".afp" ? 2 : 1, count);
  EXPECT_EQ(85u, counts.size());
}

TEST(Selected, EntriesAreFollowedByTwoZeros) { EXPECT_EQ(L".PNG.TIF", Joined(L"png\0\0.tif\0\0\0")); }

TEST(Selected, APointIsAddedWhereItIsMissing) { EXPECT_EQ(L".JPG.JPEG", Joined(L".jpg\0\0jpeg\0\0\0")); }

TEST(Selected, AnEntryBehindOneZeroLosesItsFirstCharacter) { EXPECT_EQ(L".PNG.IF", Joined(L".png\0tif\0\0\0")); }

TEST(Selected, NothingIsSelectedByNullOrAnEmptyList) {
  EXPECT_EQ(L"", Joined(nullptr));
  EXPECT_EQ(L"", Joined(L"\0\0"));
}

}  // namespace
