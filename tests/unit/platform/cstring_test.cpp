#include "platform/cstring.h"

#include <gtest/gtest.h>

#include "tests/unit/platform/print_cstring.h"

namespace {

TEST(CString, StartsEmptyAndTakesNullAsEmpty) {
  EXPECT_TRUE(CString().IsEmpty());
  EXPECT_TRUE(CString(static_cast<LPCWSTR>(nullptr)).IsEmpty());
  CString text(L"abc");
  text = static_cast<LPCWSTR>(nullptr);
  EXPECT_EQ(text.GetLength(), 0);
}

TEST(CString, CutsPartsAndClampsWhatLiesOutside) {
  const CString text(L"abcdef");
  EXPECT_EQ(text.Left(2), L"ab");
  EXPECT_EQ(text.Right(2), L"ef");
  EXPECT_EQ(text.Mid(2), L"cdef");
  EXPECT_EQ(text.Mid(2, 3), L"cde");
  EXPECT_EQ(text.Left(99), L"abcdef");
  EXPECT_EQ(text.Right(99), L"abcdef");
  EXPECT_EQ(text.Left(-1), L"");
  EXPECT_EQ(text.Right(-1), L"");
  EXPECT_EQ(text.Mid(6), L"");
  EXPECT_EQ(text.Mid(-3, 2), L"ab");
  EXPECT_EQ(text.Mid(4, 99), L"ef");
}

TEST(CString, FindsCharactersAndTexts) {
  const CString text(L"a.b.c");
  EXPECT_EQ(text.Find(L'.'), 1);
  EXPECT_EQ(text.Find(L'.', 2), 3);
  EXPECT_EQ(text.Find(L"b."), 2);
  EXPECT_EQ(text.Find(L"x"), -1);
  EXPECT_EQ(text.Find(L'a', 99), -1);
  EXPECT_EQ(text.ReverseFind(L'.'), 3);
  EXPECT_EQ(text.ReverseFind(L'x'), -1);
  EXPECT_EQ(text.FindOneOf(L"cb"), 2);
}

TEST(CString, ComparesWithAndWithoutCase) {
  EXPECT_LT(CString(L"abc").Compare(L"abd"), 0);
  EXPECT_GT(CString(L"b").Compare(L"abd"), 0);
  EXPECT_EQ(CString(L"ABC").CompareNoCase(L"abc"), 0);
  EXPECT_LT(CString(L"ABC").CompareNoCase(L"abd"), 0);
  EXPECT_TRUE(CString(L"a") == L"a");
  EXPECT_TRUE(L"a" == CString(L"a"));
  EXPECT_TRUE(CString(L"a") != L"A");
}

TEST(CString, FoldsLettersOfOtherScripts) {
  EXPECT_EQ(CString(L"\u00C4\u0416").CompareNoCase(L"\u00E4\u0436"), 0);
  EXPECT_EQ(CString(L"\u00E4\u0436").MakeUpper(), L"\u00C4\u0416");
  EXPECT_EQ(CString(L"\u00C4\u0416").MakeLower(), L"\u00E4\u0436");
}

TEST(CString, TrimsBlanksOrGivenCharacters) {
  EXPECT_EQ(CString(L" \t a b \r\n").Trim(), L"a b");
  EXPECT_EQ(CString(L"  a ").TrimLeft(), L"a ");
  EXPECT_EQ(CString(L"  a ").TrimRight(), L"  a");
  EXPECT_EQ(CString(L"\\\\a\\").Trim(L'\\'), L"a");
  EXPECT_EQ(CString(L"xyaxy").Trim(L"xy"), L"a");
  EXPECT_EQ(CString(L"   ").Trim(), L"");
}

TEST(CString, ReplacesInsertsAndDeletes) {
  CString text(L"one two two");
  EXPECT_EQ(text.Replace(L"two", L"2two"), 2);
  EXPECT_EQ(text, L"one 2two 2two");
  EXPECT_EQ(text.Replace(L'o', L'0'), 3);
  EXPECT_EQ(text.Remove(L'2'), 2);
  EXPECT_EQ(text, L"0ne tw0 tw0");
  EXPECT_EQ(text.Insert(0, L"> "), 13);
  EXPECT_EQ(text.Delete(0, 2), 11);
  EXPECT_EQ(text.Delete(99, 2), 11);
  EXPECT_EQ(text.Insert(99, L'!'), 12);
  EXPECT_EQ(text.Replace(L"", L"x"), 0);
}

TEST(CString, FormatsWideTextNumbersAndItself) {
  CString text;
  text.Format(L"%s %d %c %05.1f %%", CString(L"name"), 7, L'x', 2.5);
  EXPECT_EQ(text, L"name 7 x 002.5 %");
  text.AppendFormat(L"-%s-%x", L"literal", 255);
  EXPECT_EQ(text, L"name 7 x 002.5 %-literal-ff");
  text.Format(L"%s%s", text, text);
  EXPECT_EQ(text.GetLength(), 54);
  const CString longText(L'z', 5000);
  text.Format(L"<%s>", longText);
  EXPECT_EQ(text.GetLength(), 5002);
}

TEST(CString, LendsItsBuffer) {
  CString text(L"ab");
  LPWSTR buffer = text.GetBuffer(10);
  EXPECT_EQ(buffer[0], L'a');
  buffer[2] = L'c';
  buffer[3] = L'\0';
  text.ReleaseBuffer();
  EXPECT_EQ(text, L"abc");
  text.GetBuffer(10);
  text.ReleaseBuffer(1);
  EXPECT_EQ(text, L"a");
}

TEST(CString, TokenizesBetweenSeparators) {
  const CString text(L",a,,bc;d");
  int start = 0;
  EXPECT_EQ(text.Tokenize(L",;", start), L"a");
  EXPECT_EQ(text.Tokenize(L",;", start), L"bc");
  EXPECT_EQ(text.Tokenize(L",;", start), L"d");
  EXPECT_EQ(text.Tokenize(L",;", start), L"");
  EXPECT_EQ(start, -1);
}

TEST(CString, AddsTextsAndCharacters) {
  CString text = L"a" + CString(L"b") + L"c" + L'd' + CString(L"e");
  text += L"f";
  text += L'g';
  text += CString(L"h");
  EXPECT_EQ(text, L"abcdefgh");
  EXPECT_EQ(CString(L'-', 3), L"---");
}

TEST(SubString, GivesPartsByIndex) {
  CString part;
  EXPECT_TRUE(AfxExtractSubString(part, L"tip\nprompt", 0));
  EXPECT_EQ(part, L"tip");
  EXPECT_TRUE(AfxExtractSubString(part, L"tip\nprompt", 1));
  EXPECT_EQ(part, L"prompt");
  EXPECT_FALSE(AfxExtractSubString(part, L"tip\nprompt", 2));
  EXPECT_TRUE(part.IsEmpty());
  EXPECT_TRUE(AfxExtractSubString(part, L"a;;c", 1, L';'));
  EXPECT_EQ(part, L"");
}

}  // namespace
