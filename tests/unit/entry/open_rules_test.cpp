#include "pickers/open_rules.h"

#include <gtest/gtest.h>

#include <set>

#include "include/zvfiledlg_open.h"
#include "pickers/open_filters.h"
#include "pickers/picker_position.h"
#include "pickers/view_command.h"

namespace {

using Paths = std::vector<std::wstring>;

struct FilterPair {
  std::wstring name;
  std::wstring pattern;
};

std::vector<FilterPair> Pairs(const wchar_t* filter) {
  std::vector<FilterPair> pairs;
  while (*filter) {
    FilterPair pair;
    pair.name = filter;
    filter += pair.name.size() + 1;
    pair.pattern = filter;
    filter += pair.pattern.size() + 1;
    pairs.push_back(pair);
  }
  return pairs;
}

std::wstring InLastParentheses(const std::wstring& name) {
  const size_t open = name.rfind(L'(');
  return name.substr(open + 1, name.rfind(L')') - open - 1);
}

TEST(OpenFilter, HasItsPairsAndEveryNameEndsInItsPattern) {
  const std::vector<FilterPair> pairs = Pairs(kOpenFilter);
  ASSERT_EQ(static_cast<size_t>(kOpenFilterPairs), pairs.size());
  for (const FilterPair& pair : pairs) {
    if (pair.name.rfind(L"Scitex", 0) == 0) {
      EXPECT_EQ(L"*.sct; *.ct", pair.pattern);
    } else {
      EXPECT_EQ(InLastParentheses(pair.name), pair.pattern);
    }
  }
  EXPECT_EQ(L"All Files (*.*)", pairs.front().name);
  EXPECT_EQ(L"JPEG (*.jpg;*.jpeg;*.jtf)", pairs[2].name);
  EXPECT_EQ(L"TIFF (*.tif;*.tiff)", pairs[5].name);
  EXPECT_EQ(L"Profession Digital Camera (*.dcr)", pairs[67].name);
  EXPECT_EQ(L"Microsoft Office Excel Workbook (*.xls)", pairs.back().name);
}

TEST(VectorFilter, HasItsPairsAndEveryNameEndsInItsPattern) {
  const std::vector<FilterPair> pairs = Pairs(kVectorFilter);
  ASSERT_EQ(static_cast<size_t>(kVectorFilterPairs), pairs.size());
  for (const FilterPair& pair : pairs) {
    EXPECT_EQ(InLastParentheses(pair.name), pair.pattern);
  }
  EXPECT_EQ(L"Vector WordPerfect Graphic (*.wpg)", pairs.back().name);
}

TEST(ChosenFilter, IsTheCallersUnlessMissingOrEmpty) {
  const wchar_t own[] = L"Mine\0*.x\0";
  EXPECT_EQ(own, ChooseOpenFilter(own, 0));
  EXPECT_EQ(own, ChooseOpenFilter(own, DLG_OPEN_VECTOR_ONLY));
  EXPECT_EQ(kOpenFilter, ChooseOpenFilter(nullptr, 0));
  EXPECT_EQ(kOpenFilter, ChooseOpenFilter(L"\0", 0));
  EXPECT_EQ(kVectorFilter, ChooseOpenFilter(nullptr, DLG_OPEN_VECTOR_ONLY));
}

TEST(OpenFlags, AddWhatTheDialogNeeds) {
  EXPECT_EQ(0x81864u, OpenDialogFlags(0, 0, false));
  EXPECT_EQ(0x81864u | OFN_ALLOWMULTISELECT, OpenDialogFlags(OFN_ALLOWMULTISELECT, 0, false));
}

TEST(OpenFlags, FollowTheRecordsThreeSwitches) {
  EXPECT_TRUE(OpenDialogFlags(0, DLG_OPEN_RESIZABLE, false) & OFN_ENABLESIZING);
  EXPECT_FALSE(OpenDialogFlags(0, DLG_OPEN_FILE_MAY_NOT_EXIST, false) & OFN_FILEMUSTEXIST);
  EXPECT_FALSE(OpenDialogFlags(OFN_FILEMUSTEXIST, DLG_OPEN_FILE_MAY_NOT_EXIST, false) & OFN_FILEMUSTEXIST);
  EXPECT_FALSE(OpenDialogFlags(0, DLG_OPEN_PATH_MAY_NOT_EXIST, false) & OFN_PATHMUSTEXIST);
}

TEST(OpenFlags, ShowHelpExactlyWithACallback) {
  EXPECT_TRUE(OpenDialogFlags(0, 0, true) & OFN_SHOWHELP);
  EXPECT_FALSE(OpenDialogFlags(OFN_SHOWHELP, 0, false) & OFN_SHOWHELP);
}

TEST(SelectionBuffer, IsTheCallersLengthFrom260OnAndLargeBelow) {
  EXPECT_EQ(26'000u, SelectionLengthFor(0));
  EXPECT_EQ(26'000u, SelectionLengthFor(259));
  EXPECT_EQ(260u, SelectionLengthFor(260));
  EXPECT_EQ(100'000u, SelectionLengthFor(100'000));
}

TEST(DefaultExtensionOfAFilter, IsTheStartOfThePatternsFirst) {
  const FileTypeRows rows = {L"All\0*.*\0JPEG\0*.jpg;*.jpeg\0PS\0*.ps\0TIFF\0*.tiff\0", nullptr, 4};
  EXPECT_EQ(L"jpg", DefaultExtension(rows, 1));
  EXPECT_EQ(L"ps", DefaultExtension(rows, 2));
  EXPECT_EQ(L"tif", DefaultExtension(rows, 3)) << "three characters at most";
}

TEST(DefaultExtensionOfAFilter, StaysAsItIsForAllFilesAndWithoutAChoice) {
  EXPECT_EQ(std::nullopt, DefaultExtension({L"All\0*.*\0", nullptr, 1}, 0));
  EXPECT_EQ(std::nullopt, DefaultExtension({L"JPEG\0*.jpg\0", nullptr, 1}, -1));
  EXPECT_EQ(std::nullopt, DefaultExtension({L"JPEG\0*.jpg\0", nullptr, 1}, 1)) << "there is no such row";
  EXPECT_EQ(std::nullopt, DefaultExtension({L"JPEG\0*.jpg\0PNG\0", nullptr, 2}, 2)) << "nor behind a missing pattern";
}

TEST(DefaultExtensionOfAFilter, IsRemovedWithoutAFilter) { EXPECT_EQ(L"", DefaultExtension({nullptr, nullptr, 0}, 0)); }

TEST(DefaultExtensionOfAFilter, IsThatOfTheCustomPairInTheFirstRowWhereThatPairIsShown) {
  const wchar_t filter[] = L"All\0*.*\0JPEG\0*.jpg\0";
  const wchar_t custom[] = L"Last used\0*.png\0";
  const FileTypeRows shown = {filter, custom, 3};
  EXPECT_EQ(L"png", DefaultExtension(shown, 0));
  EXPECT_EQ(std::nullopt, DefaultExtension(shown, 1));
  EXPECT_EQ(L"jpg", DefaultExtension(shown, 2));
  const FileTypeRows leftOut = {filter, custom, 2};
  EXPECT_EQ(std::nullopt, DefaultExtension(leftOut, 0));
  EXPECT_EQ(L"jpg", DefaultExtension(leftOut, 1));
}

TEST(SelectionList, IsOneFileWhenItStandsAlone) {
  EXPECT_EQ((Paths{L"C:\\a\\b.jpg"}), ParseSelectionList(L"C:\\a\\b.jpg\0"));
}

TEST(SelectionList, IsAFolderAndItsFilesInTheirOrder) {
  EXPECT_EQ((Paths{L"C:\\a\\z.jpg", L"C:\\a\\b c.png"}), ParseSelectionList(L"C:\\a\0z.jpg\0b c.png\0"));
  EXPECT_EQ((Paths{L"C:\\z.jpg"}), ParseSelectionList(L"C:\\\0z.jpg\0")) << "no second backslash behind a root";
}

TEST(SelectionList, IsEmptyWithoutText) { EXPECT_TRUE(ParseSelectionList(L"\0").empty()); }

TEST(QuotedSelection, IsOneFileWithoutQuotationMarks) {
  EXPECT_EQ((Paths{L"C:\\a b\\c.jpg"}), ParseQuotedSelection(L"C:\\a b\\c.jpg"));
  EXPECT_TRUE(ParseQuotedSelection(L"").empty());
}

TEST(QuotedSelection, IsAFolderAndQuotedNames) {
  EXPECT_EQ((Paths{L"C:\\a\\one.jpg", L"C:\\a\\two three.png"}),
            ParseQuotedSelection(L"C:\\a\"one.jpg\" \"two three.png\""));
  EXPECT_EQ((Paths{L"C:\\one.jpg"}), ParseQuotedSelection(L"C:\\\"one.jpg\""));
}

TEST(QuotedSelection, EndsAtAnEmptyName) {
  EXPECT_EQ((Paths{L"C:\\one.jpg"}), ParseQuotedSelection(L"C:\\\"one.jpg\" \"\" \"two.jpg\""));
}

constexpr DWORD kNt = VER_PLATFORM_WIN32_NT;
constexpr DWORD kOlderFamily = VER_PLATFORM_WIN32_WINDOWS;

TEST(ShellGeneration, IsNewForVersion51AndMajor6Alone) {
  EXPECT_FALSE(IsOldStyleShell({kNt, 5, 1}));
  EXPECT_FALSE(IsOldStyleShell({kNt, 6, 0}));
  EXPECT_FALSE(IsOldStyleShell({kNt, 6, 2}));
  EXPECT_TRUE(IsOldStyleShell({kNt, 5, 0}));
  EXPECT_TRUE(IsOldStyleShell({kNt, 5, 2}));
  EXPECT_TRUE(IsOldStyleShell({kOlderFamily, 4, 10}));
  EXPECT_TRUE(IsOldStyleShell({kNt, 10, 0}));
}

TEST(ShellGeneration, IsReadFromTheSystemsAnswer) {
  const SystemVersion seven = SystemVersionOf(0x1DB10106);
  EXPECT_EQ(kNt, seven.platform);
  EXPECT_EQ(6u, seven.major);
  EXPECT_EQ(1u, seven.minor);
  const SystemVersion older = SystemVersionOf(0xC0000A04);
  EXPECT_EQ(kOlderFamily, older.platform);
  EXPECT_EQ(4u, older.major);
  EXPECT_EQ(10u, older.minor);
}

TEST(EndOfTheList, IsSetByTheLayoutUnlessTheDialogIsResizable) {
  EXPECT_TRUE(LayoutEndsList(0, {kNt, 6, 1}));
  EXPECT_FALSE(LayoutEndsList(OFN_ENABLESIZING, {kNt, 6, 1}));
  EXPECT_FALSE(LayoutEndsList(OFN_ENABLESIZING, {kNt, 5, 2}));
  EXPECT_FALSE(LayoutEndsList(OFN_ENABLESIZING, {kOlderFamily, 4, 10}));
}

TEST(EndOfTheList, IsAlwaysSetOnTheTwoOldestSystems) {
  EXPECT_TRUE(LayoutEndsList(OFN_ENABLESIZING, {kNt, 4, 0}));
  EXPECT_TRUE(LayoutEndsList(OFN_ENABLESIZING, {kOlderFamily, 4, 0}));
}

TEST(ViewMode, HasACommandForItsFourValuesOnly) {
  EXPECT_EQ(28715u, ViewCommandOf(DLG_VIEW_LIST));
  EXPECT_EQ(28713u, ViewCommandOf(DLG_VIEW_LARGE_ICONS));
  EXPECT_EQ(28718u, ViewCommandOf(DLG_VIEW_TILES));
  EXPECT_EQ(28717u, ViewCommandOf(DLG_VIEW_THUMBNAILS));
  EXPECT_EQ(0u, ViewCommandOf(4));
  EXPECT_EQ(0u, ViewCommandOf(7));
  EXPECT_EQ(0u, ViewCommandOf(-1));
}

TEST(PickerPositions, AreOnePerFamilyAndTheLastOneCounts) {
  StorePickerPosition(PickerFamily::kDirectory, {1, 2});
  StorePickerPosition(PickerFamily::kOpen, {3, 4});
  StorePickerPosition(PickerFamily::kSave, {5, 6});
  StorePickerPosition(PickerFamily::kOpen, {7, 8});
  EXPECT_EQ(1, StoredPickerPosition(PickerFamily::kDirectory).x);
  EXPECT_EQ(8, StoredPickerPosition(PickerFamily::kOpen).y);
  EXPECT_EQ(5, StoredPickerPosition(PickerFamily::kSave).x);
}

}  // namespace
