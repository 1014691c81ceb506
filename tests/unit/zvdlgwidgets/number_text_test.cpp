#include "services/zvdlgwidgets/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(NumberText, WithoutTheRuleEveryTextPasses) { EXPECT_TRUE(IsNumberInProgress(L"a1,b", NumberTextRules{})); }

TEST(NumberText, DigitsAlonePassByDefault) {
  const NumberTextRules digits{.numericsOnly = true};
  for (const wchar_t* text : {L"", L"0", L"0123456789"}) {
    EXPECT_TRUE(IsNumberInProgress(text, digits)) << CString(text).str().size();
  }
  for (const wchar_t* text : {L"-", L"-1", L"1.", L"1,5", L"a", L"1a", L" 1", L"+1"}) {
    EXPECT_FALSE(IsNumberInProgress(text, digits)) << CString(text).str().size();
  }
}

TEST(NumberText, ASignStandsInFrontAlone) {
  const NumberTextRules rules{.numericsOnly = true, .acceptNegative = true};
  EXPECT_TRUE(IsNumberInProgress(L"-", rules));
  EXPECT_TRUE(IsNumberInProgress(L"-12", rules));
  EXPECT_FALSE(IsNumberInProgress(L"1-2", rules));
  EXPECT_FALSE(IsNumberInProgress(L"--1", rules));
}

TEST(NumberText, OnePointWithTheAllowedDigitsBehindIt) {
  const NumberTextRules rules{.numericsOnly = true, .acceptFloat = true, .fractionalDigits = 2};
  for (const wchar_t* text : {L"1", L"1.", L".5", L"1.25", L"1,25", L"."}) {
    EXPECT_TRUE(IsNumberInProgress(text, rules)) << CString(text).str().size();
  }
  for (const wchar_t* text : {L"1.2.3", L"1.234", L"1..", L"-1.5"}) {
    EXPECT_FALSE(IsNumberInProgress(text, rules)) << CString(text).str().size();
  }
  const NumberTextRules anyDigits{.numericsOnly = true, .acceptFloat = true};
  EXPECT_TRUE(IsNumberInProgress(L"1.2345678901", anyDigits));
}

TEST(NumberText, ParsesWhatStandsInFront) {
  EXPECT_DOUBLE_EQ(12, ParseNumber(L"12"));
  EXPECT_DOUBLE_EQ(-12.5, ParseNumber(L"-12.5"));
  EXPECT_DOUBLE_EQ(0.25, ParseNumber(L",25"));
  EXPECT_DOUBLE_EQ(3, ParseNumber(L"  3 apples"));
  EXPECT_DOUBLE_EQ(1.5, ParseNumber(L"1.5.7"));
  EXPECT_DOUBLE_EQ(360.5, ParseNumber(L"360.5"));
}

TEST(NumberText, WhatIsNoNumberIsZero) {
  for (const wchar_t* text : {L"", L"-", L".", L"abc", L"-."}) {
    EXPECT_DOUBLE_EQ(0, ParseNumber(text));
  }
}

TEST(NumberText, FormatsInTheShortestForm) {
  EXPECT_STREQ(L"45", FormatNumber(45, 2));
  EXPECT_STREQ(L"45.5", FormatNumber(45.5, 2));
  EXPECT_STREQ(L"-0.25", FormatNumber(-0.25, -1));
  EXPECT_STREQ(L"1.05", FormatNumber(1.05, 2));
  EXPECT_STREQ(L"0.333333", FormatNumber(1.0 / 3, -1));
  EXPECT_STREQ(L"2", FormatNumber(1.999, 2)) << "rounding carries over the point";
  EXPECT_STREQ(L"0", FormatNumber(-0.001, 2)) << "no negative zero";
  EXPECT_STREQ(L"13", FormatNumber(12.75, 0));
  EXPECT_STREQ(L"0", FormatNumber(std::numeric_limits<double>::infinity(), 2));
  EXPECT_STREQ(L"0", FormatNumber(std::nan(""), 2));
}

TEST(NumberText, WhatIsFormattedIsParsedBack) {
  for (int hundredths = -36000; hundredths <= 36000; hundredths += 37) {
    const double value = hundredths / 100.0;
    EXPECT_NEAR(value, ParseNumber(FormatNumber(value, 2)), 1e-9);
  }
}

}  // namespace
