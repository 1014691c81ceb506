#include <gtest/gtest.h>

#include <cwctype>

#include "naming/date_generator.h"
#include "naming/depositories.h"
#include "naming/numbering_generator.h"

namespace {

CString At(CZVNumberingGenerator& generator, int32_t counter) {
  generator.SetCounter(counter);
  return generator.Generate();
}

TEST(NumericNumbering, WritesSignedDecimalsWithoutPadding) {
  CZVNumberingGenerator generator(NUMBERING_NUMERIC);
  EXPECT_STREQ(L"0", generator.Generate());
  EXPECT_STREQ(L"1234", At(generator, 1234));
  EXPECT_STREQ(L"-5", At(generator, -5));
}

TEST(NumericNumbering, IgnoresRangesAndUpperCase) {
  CZVNumberingGenerator generator(NUMBERING_NUMERIC);
  generator.SetNumericFrom(L'3');
  generator.SetNumericTo(L'5');
  generator.SetUpperCase(1);
  EXPECT_STREQ(L"9", At(generator, 9));
}

TEST(AlphaNumbering, IsPositionalAndNotTheSpreadsheetScheme) {
  CZVNumberingGenerator generator(NUMBERING_ALPHA);
  EXPECT_STREQ(L"a", generator.Generate());
  EXPECT_STREQ(L"z", At(generator, 25));
  EXPECT_STREQ(L"ba", At(generator, 26));
  EXPECT_STREQ(L"bb", At(generator, 27));
  EXPECT_STREQ(L"zz", At(generator, 26 * 26 - 1));
  EXPECT_STREQ(L"baa", At(generator, 26 * 26));
}

TEST(AlphaNumbering, TakesItsRangeInEitherOrder) {
  CZVNumberingGenerator forward(NUMBERING_ALPHA);
  CZVNumberingGenerator backward(NUMBERING_ALPHA);
  backward.SetAlphaFrom(L'z');
  backward.SetAlphaTo(L'a');
  for (const int32_t counter : {0, 1, 25, 26, 700, 12345}) {
    EXPECT_EQ(At(forward, counter), At(backward, counter)) << counter;
  }
}

TEST(AlphaNumbering, CountsInUnaryWithOneLetter) {
  CZVNumberingGenerator generator(NUMBERING_ALPHA);
  generator.SetAlphaFrom(L'c');
  generator.SetAlphaTo(L'c');
  EXPECT_STREQ(L"c", At(generator, 0));
  EXPECT_STREQ(L"cc", At(generator, 1));
  EXPECT_STREQ(L"ccc", At(generator, 2));
  EXPECT_STREQ(L"", At(generator, -1));
}

TEST(AlphaNumbering, CountsInBinaryWithTwoLetters) {
  CZVNumberingGenerator generator(NUMBERING_ALPHA);
  generator.SetAlphaFrom(L'a');
  generator.SetAlphaTo(L'b');
  const wchar_t* const expected[] = {L"a", L"b", L"ba", L"bb", L"baa"};
  for (int32_t counter = 0; counter < 5; ++counter) {
    EXPECT_STREQ(expected[counter], At(generator, counter));
  }
}

TEST(AlphaNumbering, UpperCasesEachCharacter) {
  CZVNumberingGenerator generator(NUMBERING_ALPHA);
  generator.SetUpperCase(1);
  EXPECT_STREQ(L"BA", At(generator, 26));
}

TEST(AlphanumNumbering, HasDigitsBeforeLetters) {
  CZVNumberingGenerator generator(NUMBERING_ALPHANUM);
  EXPECT_STREQ(L"0", At(generator, 0));
  EXPECT_STREQ(L"9", At(generator, 9));
  EXPECT_STREQ(L"a", At(generator, 10));
  EXPECT_STREQ(L"z", At(generator, 35));
  EXPECT_STREQ(L"10", At(generator, 36));
}

TEST(AlphanumNumbering, UsesTheTwoRangesAsOneAlphabet) {
  CZVNumberingGenerator generator(NUMBERING_ALPHANUM);
  generator.SetNumericFrom(L'5');
  generator.SetNumericTo(L'3');
  generator.SetAlphaFrom(L'x');
  generator.SetAlphaTo(L'y');
  EXPECT_STREQ(L"3", At(generator, 0));
  EXPECT_STREQ(L"5", At(generator, 2));
  EXPECT_STREQ(L"x", At(generator, 3));
  EXPECT_STREQ(L"y", At(generator, 4));
  EXPECT_STREQ(L"43", At(generator, 5));
}

TEST(AlphanumNumbering, UpperCasesItsLetters) {
  CZVNumberingGenerator generator(NUMBERING_ALPHANUM);
  generator.SetUpperCase(1);
  EXPECT_STREQ(L"Z", At(generator, 35));
}

TEST(NumberingMask, IsAPrefixWhenAtLeastAsLongAsTheText) {
  CZVNumberingGenerator generator(NUMBERING_NUMERIC);
  generator.SetMask(L"000");
  EXPECT_STREQ(L"0005", At(generator, 5));
  EXPECT_STREQ(L"000123", At(generator, 123));
  generator.SetMask(L"IMG");
  EXPECT_STREQ(L"IMG7", At(generator, 7));
}

TEST(NumberingMask, CutsALongerTextToItsOwnLength) {
  CZVNumberingGenerator generator(NUMBERING_NUMERIC);
  generator.SetMask(L"000");
  EXPECT_STREQ(L"123", At(generator, 1234));
  generator.SetMask(L"IMG");
  EXPECT_STREQ(L"100", At(generator, 1000));
}

TEST(NumberingMask, HoldsForLettersToo) {
  CZVNumberingGenerator generator(NUMBERING_ALPHA);
  generator.SetMask(L"no ");
  EXPECT_STREQ(L"no ba", At(generator, 26));
  generator.SetMask(L"xy");
  EXPECT_STREQ(L"xyzz", At(generator, 26 * 26 - 1));
  EXPECT_STREQ(L"ba", At(generator, 26 * 26)) << "of baa";
}

TEST(NumberingMask, HoldsForDigitsAndLettersTogether) {
  CZVNumberingGenerator generator(NUMBERING_ALPHANUM);
  generator.SetMask(L"p_");
  EXPECT_STREQ(L"p_z", At(generator, 35));
  EXPECT_STREQ(L"p_1a", At(generator, 36 + 10));
  EXPECT_STREQ(L"10", At(generator, 36 * 36)) << "of 100";
  generator.SetUpperCase(1);
  EXPECT_STREQ(L"p_1A", At(generator, 36 + 10)) << "the mask keeps its case";
}

TEST(NumberingOfAnUnknownType, IsTheMaskAlone) {
  CZVNumberingGenerator generator(7);
  EXPECT_STREQ(L"", generator.Generate());
  generator.SetMask(L"M");
  EXPECT_STREQ(L"M", generator.Generate());
}

TEST(Numbering, IsRaisedByAdvanceAndNotByGenerate) {
  CZVNumberingGenerator generator(NUMBERING_NUMERIC);
  generator.SetCounter(10);
  generator.SetIncrement(5);
  EXPECT_STREQ(L"10", generator.Generate());
  EXPECT_STREQ(L"10", generator.Generate());
  EXPECT_EQ(1, generator.Advance());
  EXPECT_STREQ(L"15", generator.Generate());
}

// The first moment of the day: the local time of the test machine may be any, so the tests build the moment from it.
std::time_t LocalMoment(int hour, int minute, int second) {
  std::tm local = {};
  local.tm_year = 2026 - 1900;
  local.tm_mon = 2;
  local.tm_mday = 5;
  local.tm_hour = hour;
  local.tm_min = minute;
  local.tm_sec = second;
  local.tm_isdst = -1;
  return std::mktime(&local);
}

TEST(DateFormats, WriteDatesInALongAndAShortForm) {
  const std::time_t moment = LocalMoment(12, 0, 0);
  EXPECT_STREQ(L"Thursday, March 05, 2026", FormatLocalTime(moment, DateFormats().GetString(0)));
  EXPECT_STREQ(L"Thu, Mar 05, 26", FormatLocalTime(moment, DateFormats().GetString(1)));
}

TEST(DateFormats, WriteHoursWithoutAndMinutesWithLeadingZeros) {
  const std::time_t moment = LocalMoment(9, 4, 7);
  EXPECT_STREQ(L"9-04-07", FormatLocalTime(moment, DateFormats().GetString(2)));
  EXPECT_STREQ(L"9-04", FormatLocalTime(moment, DateFormats().GetString(3)));
  EXPECT_STREQ(L"9-04-07 AM", FormatLocalTime(moment, DateFormats().GetString(4)));
  EXPECT_STREQ(L"9-04 AM", FormatLocalTime(moment, DateFormats().GetString(5)));
}

TEST(DateFormats, CountTheAfternoonInTheirOwnWay) {
  const std::time_t moment = LocalMoment(21, 30, 0);
  EXPECT_STREQ(L"21-30-00", FormatLocalTime(moment, DateFormats().GetString(2)));
  EXPECT_STREQ(L"9-30 PM", FormatLocalTime(moment, DateFormats().GetString(5)));
}

TEST(LocalTime, IsEmptyForAnEmptyFormatATooLongTextAndABadMoment) {
  EXPECT_TRUE(FormatLocalTime(LocalMoment(1, 2, 3), L"").IsEmpty());
  EXPECT_TRUE(FormatLocalTime(LocalMoment(1, 2, 3), CString(L'x', 128)).IsEmpty());
  EXPECT_EQ(127, FormatLocalTime(LocalMoment(1, 2, 3), CString(L'x', 127)).GetLength());
  EXPECT_TRUE(FormatLocalTime(static_cast<std::time_t>(-1), L"%Y").IsEmpty());
}

TEST(DateGenerator, IsEmptyForAnUnknownFormatId) {
  CZVDateGenerator generator;
  generator.SetFormatId(6);
  EXPECT_TRUE(generator.Generate().IsEmpty());
}

TEST(DateGenerator, ShowsThePresentTime) {
  CZVDateGenerator generator;
  generator.SetFormatId(0);
  const CString before = FormatLocalTime(std::time(nullptr), DateFormats().GetString(0));
  const CString generated = generator.Generate();
  const CString after = FormatLocalTime(std::time(nullptr), DateFormats().GetString(0));
  EXPECT_TRUE(generated == before || generated == after) << "a day may end between the three";
}

TEST(DateGenerator, StartsWithTheTwelveHourTimeWithSeconds) {
  const CString text = CZVDateGenerator().Generate();
  EXPECT_TRUE(text.Right(3) == L" AM" || text.Right(3) == L" PM");
}

}  // namespace
