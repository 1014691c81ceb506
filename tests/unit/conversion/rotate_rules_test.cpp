#include "conversion/rotate_rules.h"

#include <gtest/gtest.h>

#include "conversion/resize_rules.h"

namespace {

TEST(Angle, IsCutToHundredthsTowardsZero) {
  EXPECT_EQ(AngleFromDegrees(12.5), 1250);
  EXPECT_EQ(AngleFromDegrees(12.349), 1234);
  EXPECT_EQ(AngleFromDegrees(-0.999), -99);
}

TEST(Angle, BeyondAFullTurnIsOutOfRange) {
  EXPECT_TRUE(IsAngleInRange(AngleFromDegrees(360)));
  EXPECT_TRUE(IsAngleInRange(AngleFromDegrees(-360)));
  EXPECT_FALSE(IsAngleInRange(AngleFromDegrees(360.5)));
  EXPECT_FALSE(IsAngleInRange(AngleFromDegrees(1e300)));
}

TEST(Angle, FromARecordOutOfRangeCountsAsNone) {
  EXPECT_EQ(UsableAngle(36001), 0);
  EXPECT_EQ(UsableAngle(-36000), -36000);
}

TEST(Interpolation, PrefersBilinearWhenBothFlagsStand) {
  EXPECT_EQ(InterpolationIndex(0), 0);
  EXPECT_EQ(InterpolationIndex(ROTATE_RESAMPLE | ROTATE_BICUBIC), 1);
  EXPECT_EQ(InterpolationIndex(ROTATE_BICUBIC), 2);
}

TEST(Interpolation, ChangeReplacesTheFlagAndKeepsTheCanvasFlag) {
  EXPECT_EQ(WithInterpolation(ROTATE_RESAMPLE | ROTATE_RESIZE, 2), ROTATE_BICUBIC | ROTATE_RESIZE);
  EXPECT_EQ(WithInterpolation(ROTATE_BICUBIC | ROTATE_RESIZE, 0), ROTATE_RESIZE);
}

TEST(FlagsLeftByOK, KeepNothingButTheCanvasFlagWithoutInterpolation) {
  EXPECT_EQ(FlagsAtOK(0xFFu, 0, true), ROTATE_RESIZE);
  EXPECT_EQ(FlagsAtOK(0xFFu, 0, false), 0u);
}

TEST(FlagsLeftByOK, PutTheInterpolationOnTopOfWhatIsThere) {
  EXPECT_EQ(FlagsAtOK(ROTATE_BICUBIC, 1, false), ROTATE_BICUBIC | ROTATE_RESAMPLE);
  EXPECT_EQ(FlagsAtOK(ROTATE_RESIZE, 2, false), ROTATE_BICUBIC);
}

TEST(LargestSize, IsInPercentOrPixels) {
  EXPECT_EQ(LargestSize(RESIZE_UNIT_PERCENT), 100);
  EXPECT_EQ(LargestSize(RESIZE_UNIT_PIXELS), 30000);
}

}  // namespace
