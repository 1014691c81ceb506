#include "services/zvdlgcommon/button_row.h"

#include <gtest/gtest.h>

namespace {

void ExpectRectangle(const RECT& expected, const RECT& actual) {
  EXPECT_EQ(expected.left, actual.left);
  EXPECT_EQ(expected.top, actual.top);
  EXPECT_EQ(expected.right, actual.right);
  EXPECT_EQ(expected.bottom, actual.bottom);
}

TEST(ButtonRow, PairIsCentredWithItsGap) {
  RECT row[] = {{0, 50, 40, 70}, {50, 50, 90, 70}};
  CentreButtonRow(row, 200);
  ExpectRectangle({55, 50, 95, 70}, row[0]);
  ExpectRectangle({105, 50, 145, 70}, row[1]);
}

TEST(ButtonRow, OneButtonIsCentred) {
  RECT row[] = {{3, 50, 43, 70}};
  CentreButtonRow(row, 100);
  ExpectRectangle({30, 50, 70, 70}, row[0]);
}

TEST(ButtonRow, OrderOnScreenCountsAndWidthsStay) {
  RECT row[] = {{100, 0, 130, 10}, {0, 0, 20, 10}, {30, 0, 90, 10}};
  CentreButtonRow(row, 330);
  ExpectRectangle({100, 0, 120, 10}, row[1]);
  ExpectRectangle({130, 0, 190, 10}, row[2]);
  ExpectRectangle({200, 0, 230, 10}, row[0]);
}

TEST(ButtonRow, CentringTwiceChangesNothing) {
  RECT once[] = {{7, 0, 47, 10}, {60, 0, 100, 10}};
  CentreButtonRow(once, 301);
  RECT twice[] = {once[0], once[1]};
  CentreButtonRow(twice, 301);
  ExpectRectangle(once[0], twice[0]);
  ExpectRectangle(once[1], twice[1]);
}

TEST(ButtonRow, NoButtonsIsNoRow) { CentreButtonRow({}, 100); }

TEST(ButtonRow, ButtonsBesideEachOtherAreOneRow) {
  EXPECT_TRUE(IsSameRow({0, 50, 40, 70}, {90, 50, 130, 70}));
  EXPECT_TRUE(IsSameRow({0, 50, 40, 70}, {90, 55, 130, 75}));
  EXPECT_FALSE(IsSameRow({0, 50, 40, 70}, {90, 62, 130, 82}));
  EXPECT_FALSE(IsSameRow({0, 50, 40, 70}, {0, 80, 40, 100}));
  EXPECT_TRUE(IsSameRow({0, 50, 40, 70}, {90, 55, 130, 65})) << "a lower one that stands inside";
}

}  // namespace
