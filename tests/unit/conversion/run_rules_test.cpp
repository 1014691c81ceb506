#include "conversion/run_rules.h"

#include <gtest/gtest.h>

namespace {

TEST(ConversionQueue, TakesAllFilesThroughOneFormatBeforeTheNext) {
  CArray<CONVERSIONLISTITEM> queue;
  BuildConversionQueue({2, 5}, {0, 1, 7}, queue);
  ASSERT_EQ(6, queue.GetSize());
  constexpr int kExpected[6][2] = {{0, 2}, {1, 2}, {7, 2}, {0, 5}, {1, 5}, {7, 5}};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(kExpected[i][0], queue[i].fileRow);
    EXPECT_EQ(kExpected[i][1], queue[i].formatRow);
  }
}

TEST(ConversionQueue, IsEmptyWithoutAFormat) {
  CArray<CONVERSIONLISTITEM> queue;
  BuildConversionQueue({}, {0, 1}, queue);
  EXPECT_TRUE(queue.IsEmpty());
}

TEST(ConversionRecords, StartAsDocumented) {
  const CONVERSIONLISTITEM item;
  EXPECT_EQ(-1, item.fileRow);
  EXPECT_EQ(-1, item.formatRow);
  EXPECT_EQ(CONVERSION_FAILED, LOGREPORTITEM().status);
  const CONVERSIONFILEOPTIONS options;
  EXPECT_EQ(1, options.pageTotal);
  EXPECT_EQ(-1, options.pageCount);
  EXPECT_EQ(nullptr, options.pages);
  EXPECT_EQ(-1, options.loadXResolution);
  EXPECT_EQ(-1, options.loadYResolution);
  EXPECT_EQ(0u, options.loadFlags);
  EXPECT_EQ(-1, options.loadPasses);
  EXPECT_EQ(24u, CONVERSIONROTATEOPTIONS().uStructSize);
  EXPECT_EQ(28u, CONVERSIONRESIZEOPTIONS().uStructSize);
}

TEST(OverwriteQuestion, AnswersStandForModes) {
  EXPECT_EQ(OVERWRITE_REPLACE, OverwriteModeOfAnswer(ANSWER_REPLACE));
  EXPECT_EQ(OVERWRITE_RENAME, OverwriteModeOfAnswer(ANSWER_RENAME));
  EXPECT_EQ(OVERWRITE_SKIP, OverwriteModeOfAnswer(ANSWER_SKIP));
}

TEST(OverwriteDecision, SkipConvertsNothing) {
  const OverwriteDecision decision = DecideOverwrite(OVERWRITE_SKIP, L"a", L"b", L"");
  EXPECT_FALSE(decision.goAhead);
  EXPECT_FALSE(decision.mayDeleteSource);
}

TEST(OverwriteDecision, ReplaceNeverDeletesASourceThatIsItsOwnDestination) {
  EXPECT_TRUE(DecideOverwrite(OVERWRITE_REPLACE, L"C:\\a.jpg", L"C:\\a.jpg", L"").goAhead);
  EXPECT_FALSE(DecideOverwrite(OVERWRITE_REPLACE, L"C:\\a.jpg", L"C:\\a.jpg", L"").mayDeleteSource);
  EXPECT_TRUE(DecideOverwrite(OVERWRITE_REPLACE, L"C:\\a.jpg", L"C:\\b.jpg", L"").mayDeleteSource);
}

TEST(OverwriteDecision, ReplaceComparesPathsWithCase) {
  EXPECT_TRUE(DecideOverwrite(OVERWRITE_REPLACE, L"C:\\A.jpg", L"C:\\a.jpg", L"").mayDeleteSource);
}

TEST(OverwriteDecision, RenameNeedsAFreeName) {
  EXPECT_TRUE(DecideOverwrite(OVERWRITE_RENAME, L"a", L"b", L"b0").goAhead);
  EXPECT_TRUE(DecideOverwrite(OVERWRITE_RENAME, L"a", L"b", L"b0").mayDeleteSource);
  EXPECT_FALSE(DecideOverwrite(OVERWRITE_RENAME, L"a", L"b", L"").goAhead);
}

TEST(OverwriteDecision, AModeOutOfRangeSkips) { EXPECT_FALSE(DecideOverwrite(17, L"a", L"b", L"").goAhead); }

TEST(DestinationPath, ClosesTheFolder) {
  EXPECT_STREQ(L"C:\\out\\n.png", JoinDestinationPath(L"C:\\out", L"n", L"png"));
  EXPECT_STREQ(L"C:\\out\\n.png", JoinDestinationPath(L"C:\\out\\", L"n", L"png"));
}

TEST(Percent, RoundsToTheNearest) {
  EXPECT_EQ(0, Percent(0, 1));
  EXPECT_EQ(33, Percent(1, 3));
  EXPECT_EQ(67, Percent(2, 3));
  EXPECT_EQ(100, Percent(7, 7));
  EXPECT_EQ(200, Percent(14, 7));
}

TEST(Percent, OnlyEvenOnesAreReported) {
  EXPECT_TRUE(IsReportedPercent(0));
  EXPECT_FALSE(IsReportedPercent(51));
  EXPECT_TRUE(IsReportedPercent(100));
  EXPECT_FALSE(IsReportedPercent(Percent(5, 0)));
}

BITMAPHANDLE Bitmap(int width, int height, int viewPerspective) {
  BITMAPHANDLE bitmap = {};
  bitmap.width = width;
  bitmap.height = height;
  bitmap.viewPerspective = viewPerspective;
  return bitmap;
}

TEST(ResizedSize, PixelsStandAsTheyAre) {
  CONVERSIONRESIZEOPTIONS options;
  options.width = 320;
  options.height = 200;
  const PixelSize size = ResizedSize(options, Bitmap(1000, 500, VIEW_RIGHT_TOP));
  EXPECT_EQ(320, size.width);
  EXPECT_EQ(200, size.height);
}

TEST(ResizedSize, PercentIsOfTheSidesAsShown) {
  CONVERSIONRESIZEOPTIONS options;
  options.unit = RESIZE_UNIT_PERCENT;
  options.width = 50;
  options.height = 10;
  const PixelSize upright = ResizedSize(options, Bitmap(1000, 500, VIEW_TOP_LEFT));
  EXPECT_EQ(500, upright.width);
  EXPECT_EQ(50, upright.height);
  for (int perspective = VIEW_LEFT_TOP; perspective <= VIEW_LEFT_BOTTOM; ++perspective) {
    const PixelSize turned = ResizedSize(options, Bitmap(1000, 500, perspective));
    EXPECT_EQ(250, turned.width);
    EXPECT_EQ(100, turned.height);
  }
}

TEST(ResizeMethod, MapsToTheMethodsOfTheBitmapLibrary) {
  EXPECT_EQ(SIZE_NEAREST, SizeMethod(0));
  EXPECT_EQ(SIZE_BILINEAR, SizeMethod(2));
  EXPECT_EQ(SIZE_BICUBIC, SizeMethod(4));
  EXPECT_EQ(SIZE_NEAREST, SizeMethod(3));
}

TEST(RunRules, FreeAnglesAndSmoothResizesBlendPixels) {
  CONVERSIONROTATEOPTIONS rotate;
  CONVERSIONRESIZEOPTIONS resize;
  EXPECT_FALSE(BlendsPixels(rotate, resize));
  for (const int32_t turn : {9000, -18000, 36000}) {
    rotate.angle = turn;
    EXPECT_FALSE(BlendsPixels(rotate, resize)) << turn;
  }
  rotate.angle = 1250;
  EXPECT_TRUE(BlendsPixels(rotate, resize));
  rotate.angle = 0;
  resize.method = 4;
  EXPECT_FALSE(BlendsPixels(rotate, resize)) << "resizing is off";
  resize.enabled = 1;
  EXPECT_TRUE(BlendsPixels(rotate, resize));
  resize.method = 0;
  EXPECT_FALSE(BlendsPixels(rotate, resize));
}

}  // namespace
