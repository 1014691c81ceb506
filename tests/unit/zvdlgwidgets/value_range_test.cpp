#include "services/zvdlgwidgets/value_range.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(ValueRange, EndsGivenTheWrongWayRoundAreExchanged) {
  const ValueRange range = ValueRange::Of(9, -3);
  EXPECT_EQ(-3, range.minimum);
  EXPECT_EQ(9, range.maximum);
}

TEST(ValueRange, ValuesOutsideComeToTheNearerEnd) {
  const ValueRange range{1, 100};
  EXPECT_EQ(1, range.Clamp(-5));
  EXPECT_EQ(100, range.Clamp(150));
  EXPECT_EQ(42, range.Clamp(42));
  EXPECT_EQ(100, range.Clamp(INT64_MAX));
}

TEST(ValueRange, PageStepIsATenthButAtLeastOne) {
  EXPECT_EQ(100, (ValueRange{0, 1000}).PageStep());
  EXPECT_EQ(1, (ValueRange{0, 5}).PageStep());
  EXPECT_EQ(1, (ValueRange{7, 7}).PageStep());
  EXPECT_EQ(429496729, (ValueRange{INT_MIN, INT_MAX}).PageStep());
}

TEST(ValueRange, SliderEndsAreTheEndsOfTheRange) {
  const ValueRange range{-128, 127};
  EXPECT_EQ(-128, range.ValueAt(0, 200));
  EXPECT_EQ(127, range.ValueAt(200, 200));
  EXPECT_EQ(-128, range.ValueAt(-50, 200));
  EXPECT_EQ(127, range.ValueAt(999, 200));
  EXPECT_EQ(0, range.PositionOf(-128, 200));
  EXPECT_EQ(200, range.PositionOf(127, 200));
}

TEST(ValueRange, EveryValueOfAWideEnoughSliderIsReachedAndStays) {
  const ValueRange range{0, 100};
  for (int value = 0; value <= 100; ++value) {
    EXPECT_EQ(value, range.ValueAt(range.PositionOf(value, 300), 300));
  }
}

TEST(ValueRange, ARangeOfOneValueAndASliderOfNoLengthAreHarmless) {
  EXPECT_EQ(0, (ValueRange{5, 5}).PositionOf(5, 100));
  EXPECT_EQ(5, (ValueRange{5, 5}).ValueAt(70, 100));
  EXPECT_EQ(3, (ValueRange{3, 9}).ValueAt(10, 0));
}

TEST(ValueRange, FullRangeOfIntegersDoesNotOverflow) {
  const ValueRange range{INT_MIN, INT_MAX};
  EXPECT_EQ(INT_MIN, range.ValueAt(0, 300));
  EXPECT_EQ(INT_MAX, range.ValueAt(300, 300));
  EXPECT_EQ(150, range.PositionOf(0, 300));
}

TEST(WholeNumber, IsReadWithItsSignAndBlanksAround) {
  EXPECT_EQ(12, ParseWholeNumber(L"12"));
  EXPECT_EQ(-7, ParseWholeNumber(L" -7 "));
  EXPECT_EQ(INT_MIN, ParseWholeNumber(L"-2147483648"));
}

TEST(WholeNumber, OtherTextsAreNone) {
  for (const wchar_t* text : {L"", L" ", L"-", L"1.5", L"12a", L"a12", L"2147483648", L"99999999999999999999"}) {
    EXPECT_EQ(std::nullopt, ParseWholeNumber(text));
  }
}

}  // namespace
