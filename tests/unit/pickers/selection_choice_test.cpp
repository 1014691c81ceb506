#include "pickers/selection_choice.h"

#include <gtest/gtest.h>

namespace {

constexpr SystemVersion kOldest[] = {{1, 4, 0}, {1, 4, 10}, {1, 4, 90}};
constexpr SystemVersion kLater[] = {{2, 4, 0}, {2, 5, 1}, {2, 6, 2}, {2, 10, 0}, {1, 4, 3}, {1, 3, 10}};

TEST(TextOfASelection, IsTheFileBufferForSeveralNames) {
  for (const SystemVersion& system : kLater) {
    EXPECT_EQ(SelectionText::kBufferAsList, ChooseSelectionText(system, true, true));
    EXPECT_EQ(SelectionText::kAnswerAsList, ChooseSelectionText(system, true, false));
  }
}

TEST(TextOfASelection, IsQuotedWithoutAFileBuffer) {
  for (const SystemVersion& system : kLater) {
    EXPECT_EQ(SelectionText::kAnswerAsQuotedNames, ChooseSelectionText(system, false, true));
    EXPECT_EQ(SelectionText::kAnswerAsQuotedNames, ChooseSelectionText(system, false, false));
  }
}

TEST(TextOfASelection, IsQuotedForSeveralNamesOnTheOldestSystems) {
  for (const SystemVersion& system : kOldest) {
    for (const bool hasBuffer : {false, true}) {
      EXPECT_EQ(SelectionText::kAnswerAsQuotedNames, ChooseSelectionText(system, hasBuffer, true));
      EXPECT_EQ(SelectionText::kAnswerAsList, ChooseSelectionText(system, hasBuffer, false));
    }
  }
}

TEST(TextOfASelection, IsReadByTheParserThatGoesWithIt) {
  constexpr wchar_t kAnswer[] = L"C:\\pictures\"one.bmp\" \"two.bmp\"\0";
  constexpr wchar_t kBuffer[] = L"C:\\pictures\0three.bmp\0four.bmp\0";
  EXPECT_EQ((std::vector<std::wstring>{L"C:\\pictures\\one.bmp", L"C:\\pictures\\two.bmp"}),
            ParseSelection(SelectionText::kAnswerAsQuotedNames, kAnswer, nullptr));
  EXPECT_EQ((std::vector<std::wstring>{L"C:\\pictures\\three.bmp", L"C:\\pictures\\four.bmp"}),
            ParseSelection(SelectionText::kBufferAsList, kAnswer, kBuffer));
  constexpr wchar_t kOne[] = L"C:\\pictures\\a name with blanks.and.dots.bmp\0";
  EXPECT_EQ((std::vector<std::wstring>{kOne}), ParseSelection(SelectionText::kAnswerAsList, kOne, kBuffer));
}

TEST(TextOfASelection, KeepsNamesInAnyScript) {
  const std::wstring list(L"C:\\\x5199\x771F\0\x6E56 \x5C71.jpg\0\xD83D\xDE00 party.png\0\0", 31);
  EXPECT_EQ(
      (std::vector<std::wstring>{L"C:\\\x5199\x771F\\\x6E56 \x5C71.jpg", L"C:\\\x5199\x771F\\\xD83D\xDE00 party.png"}),
      ParseSelection(SelectionText::kBufferAsList, L"", list.c_str()));
}

TEST(TextOfASelection, HoldsHundredsOfFiles) {
  std::wstring list = L"D:" + std::wstring(1, L'\0');
  for (int i = 0; i < 700; ++i) {
    list += L"picture " + std::to_wstring(i) + L".jpeg" + std::wstring(1, L'\0');
  }
  const std::vector<std::wstring> paths = ParseSelection(SelectionText::kBufferAsList, L"", list.c_str());
  ASSERT_EQ(700u, paths.size());
  EXPECT_EQ(L"D:\\picture 699.jpeg", paths.back());
}

}  // namespace
