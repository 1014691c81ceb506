#include "preview/preview_geometry.h"

#include <gtest/gtest.h>

namespace {

TEST(PreviewFit, LeavesASmallPictureAtItsSizeLessTheFrame) {
  const CRect fitted = FitPreview({40, 20}, {0, 0, 200, 100});
  EXPECT_EQ(CRect(83, 43, 117, 57), fitted);
}

TEST(PreviewFit, ReducesAWidePictureToTheWidth) {
  EXPECT_EQ(CRect(3, 28, 197, 72), FitPreview({4000, 1000}, {0, 0, 200, 100}));
}

TEST(PreviewFit, ReducesATallPictureToTheHeight) {
  EXPECT_EQ(CRect(78, 3, 122, 97), FitPreview({500, 1000}, {0, 0, 200, 100}));
}

TEST(PreviewFit, FollowsTheTargetsOrigin) {
  EXPECT_EQ(CRect(1083, 543, 1117, 557), FitPreview({40, 20}, {1000, 500, 1200, 600}));
}

TEST(PreviewFit, DoesNotOverflowWithLargePictures) {
  EXPECT_EQ(CRect(3, 3, 997, 997), FitPreview({1'000'000, 1'000'000}, {0, 0, 1000, 1000}));
}

TEST(PaneLeft, StaysBetweenItsLimits) {
  EXPECT_EQ(170, LimitPaneLeft(10, 800));
  EXPECT_EQ(400, LimitPaneLeft(400, 800));
  EXPECT_EQ(775, LimitPaneLeft(900, 800));
  EXPECT_EQ(170, LimitPaneLeft(400, 150)) << "the left limit wins in a narrow dialog";
}

TEST(Splitter, ReachesFivePixelsToBothSides) {
  EXPECT_EQ(CRect(395, 20, 405, 300), SplitterRectOf({400, 20, 800, 300}));
}

}  // namespace
