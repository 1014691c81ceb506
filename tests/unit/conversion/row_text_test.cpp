#include "conversion/row_text.h"

#include <gtest/gtest.h>

namespace {

constexpr uint32_t kNameOnly = SHOW_NAME | SHOW_EXTENSION;

TEST(FileRowText, ShowsTheFileNameWithoutItsFolder) {
  EXPECT_STREQ(L"b.jpg", FileRowText(L"C:\\a\\b.jpg", kShowFileName));
}

TEST(FileRowText, ShowsTheWholePathWhenAllPartsAreOn) {
  EXPECT_STREQ(L"C:\\a\\b.jpg", FileRowText(L"C:\\a\\b.jpg", kShowFullPath));
}

TEST(FileRowText, GivesANameWithoutExtensionTheBackslashOfItsFolder) {
  EXPECT_STREQ(L"\\readme", FileRowText(L"C:\\a\\readme", kShowFileName));
}

TEST(FileRowText, CutsTheNameBeforeItsLastDot) {
  EXPECT_STREQ(L"b.tar", FileRowText(L"C:\\a\\b.tar.gz", SHOW_NAME));
  EXPECT_STREQ(L".gz", FileRowText(L"C:\\a\\b.tar.gz", SHOW_EXTENSION));
}

TEST(FileRowText, TakesTheExtensionFromTheLastDotOfThePath) {
  EXPECT_STREQ(L".b\\readme", FileRowText(L"C:\\a.b\\readme", kNameOnly));
}

TEST(FileRowText, JoinsFolderAndNameWithABackslashOnlyWhenBothAreThere) {
  EXPECT_STREQ(L"C:\\a", FileRowText(L"C:\\a\\b.jpg", SHOW_FOLDER));
  EXPECT_STREQ(L"C:\\a\\.jpg", FileRowText(L"C:\\a\\b.jpg", SHOW_FOLDER | SHOW_EXTENSION));
  EXPECT_STREQ(L"b.jpg", FileRowText(L"b.jpg", kShowFullPath));
}

TEST(FileRowText, KeepsNamesOfAllScriptsAndWithSpaces) {
  EXPECT_STREQ(L"\x5BAB \xD83D\xDE00 e\x0301.png",
               FileRowText(L"C:\\\x4E2D\\\x5BAB \xD83D\xDE00 e\x0301.png", kShowFileName));
}

TEST(FileRowText, IsEmptyForNoPartsAndForAnEmptyPath) {
  EXPECT_TRUE(FileRowText(L"C:\\a\\b.jpg", 0).IsEmpty());
  EXPECT_TRUE(FileRowText(L"", kShowFullPath).IsEmpty());
}

}  // namespace
