#include "services/zvdlgwidgets/image_viewer.h"

#include "platform/dc.h"
#include "tests/unit/zvdlgwidgets/widget_host.h"

namespace {

constexpr int kPane = 106;
constexpr COLORREF kGreen = RGB(0, 160, 0);

using Fit = CZVImageViewer::Fit;

TEST(ImageViewerFit, WidePictureMeetsTheSidesAndIsCentred) {
  EXPECT_EQ(CRect(0, 25, 100, 75), CZVImageViewer::FitRectangle(CSize(400, 200), CRect(0, 0, 100, 100), Fit::kWindow));
}

TEST(ImageViewerFit, HighPictureMeetsTopAndBottom) {
  EXPECT_EQ(CRect(35, 10, 85, 110),
            CZVImageViewer::FitRectangle(CSize(50, 100), CRect(10, 10, 110, 110), Fit::kWindow));
}

TEST(ImageViewerFit, SmallPictureGrowsOnlyWhereItMay) {
  const CRect pane(0, 0, 100, 100);
  EXPECT_EQ(pane, CZVImageViewer::FitRectangle(CSize(10, 10), pane, Fit::kWindow));
  EXPECT_EQ(CRect(45, 45, 55, 55), CZVImageViewer::FitRectangle(CSize(10, 10), pane, Fit::kShrinkOnly));
  EXPECT_EQ(CRect(0, 25, 100, 75), CZVImageViewer::FitRectangle(CSize(200, 100), pane, Fit::kShrinkOnly));
}

TEST(ImageViewerFit, ExtremeShapesKeepAPixelEachWayAndDoNotOverflow) {
  const CRect pane(0, 0, 200, 100);
  EXPECT_EQ(1, CZVImageViewer::FitRectangle(CSize(1000000, 1), pane, Fit::kWindow).Height());
  EXPECT_EQ(1, CZVImageViewer::FitRectangle(CSize(1, 1000000), pane, Fit::kWindow).Width());
  EXPECT_EQ(CRect(50, 0, 150, 100), CZVImageViewer::FitRectangle(CSize(1000000, 1000000), pane, Fit::kWindow));
}

CZVBitmap PlainBitmap(int width, int height, COLORREF color) {
  BITMAPHANDLE handle{};
  EXPECT_EQ(SUCCESS, CreateBitmap(&handle, sizeof handle, MEMORY_CONVENTIONAL, width, height, 24, ORDER_BGR, nullptr,
                                  VIEW_TOP_LEFT, nullptr, 0));
  EXPECT_EQ(SUCCESS, FillBitmap(&handle, color));
  CZVBitmap bitmap;
  bitmap.Attach(handle);
  return bitmap;
}

class ImageViewer : public testing::Test {
 protected:
  ImageViewer() {
    host_.GetDlgItem(kPane)->GetWindowRect(&templatePlace_);
    EXPECT_TRUE(viewer_.CreateInPlaceOf(&host_, kPane));
  }

  // The colour at shares of the pane's width and height.
  COLORREF At(double x, double y) {
    viewer_.RedrawWindow();
    CRect client;
    viewer_.GetClientRect(&client);
    const CClientDC device(&viewer_);
    return device.GetPixel(static_cast<int>(client.Width() * x), static_cast<int>(client.Height() * y));
  }

  WidgetHost host_;
  CRect templatePlace_;
  CZVImageViewer viewer_;
};

TEST_F(ImageViewer, TakesPlaceAndIdOfTheStaticThatItReplaces) {
  CRect place;
  viewer_.GetWindowRect(&place);
  EXPECT_EQ(templatePlace_, place);
  EXPECT_EQ(viewer_.m_hWnd, ::GetDlgItem(host_, kPane));
  EXPECT_FALSE(viewer_.GetStyle() & WS_TABSTOP);
  EXPECT_TRUE(viewer_.GetStyle() & WS_VISIBLE);
}

TEST_F(ImageViewer, EmptyPaneShowsTheBackground) {
  EXPECT_FALSE(viewer_.HasBitmap());
  EXPECT_EQ(::GetSysColor(COLOR_BTNFACE), At(0.5, 0.5));
  viewer_.SetBackgroundSysColor(COLOR_WINDOW);
  EXPECT_EQ(::GetSysColor(COLOR_WINDOW), At(0.5, 0.5));
}

TEST_F(ImageViewer, PictureStandsInTheMiddleOnTheBackground) {
  viewer_.SetBitmap(PlainBitmap(400, 40, kGreen));
  EXPECT_EQ(kGreen, At(0.5, 0.5));
  EXPECT_EQ(kGreen, At(0.02, 0.5));
  EXPECT_EQ(::GetSysColor(COLOR_BTNFACE), At(0.5, 0.05));
}

TEST_F(ImageViewer, PictureFollowsTheSizeOfThePane) {
  viewer_.SetBitmap(PlainBitmap(40, 40, kGreen));
  EXPECT_EQ(kGreen, At(0.5, 0.5));
  viewer_.SetWindowPos(nullptr, 0, 0, 60, 20, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_EQ(kGreen, At(0.5, 0.5));
  EXPECT_EQ(::GetSysColor(COLOR_BTNFACE), At(0.05, 0.5));
}

TEST_F(ImageViewer, CopiedPictureIsItsOwnersNoLonger) {
  CZVBitmap original = PlainBitmap(30, 30, kGreen);
  viewer_.SetBitmap(original.GetHandle());
  original.Empty();
  EXPECT_EQ(kGreen, At(0.5, 0.5));
}

TEST_F(ImageViewer, ClearedPaneIsEmptyAgain) {
  viewer_.SetBitmap(PlainBitmap(30, 30, kGreen));
  EXPECT_EQ(kGreen, At(0.5, 0.5));
  viewer_.Clear();
  EXPECT_FALSE(viewer_.HasBitmap());
  EXPECT_EQ(::GetSysColor(COLOR_BTNFACE), At(0.5, 0.5));
}

TEST(ImageViewerWithoutStatic, CannotReplaceWhatIsNotThere) {
  WidgetHost host;
  CZVImageViewer viewer;
  EXPECT_FALSE(viewer.CreateInPlaceOf(&host, 4711));
}

}  // namespace
