#include "preview/raster_file_viewer.h"

#include <gtest/gtest.h>

#include "services/zvdisplay/zvdisplay.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/pictures.h"
#include "tests/unit/preview/viewer_stage.h"

namespace {

using namespace zvtest;

constexpr COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);

class RasterViewer : public ::testing::Test {
 protected:
  // Red on the left, blue on the right.
  void Show(int width, int height) {
    ASSERT_TRUE(WritePicture(path, {.width = width, .height = height}));
    BITMAPHANDLE bitmap = {};
    bitmap.uStructSize = sizeof(bitmap);
    ASSERT_EQ(SUCCESS, LoadBitmapFile(path.c_str(), &bitmap, sizeof(bitmap), 0, ORDER_BGR, nullptr, nullptr));
    ASSERT_EQ(1, SetViewerBitmap(viewer, &bitmap));
    EXPECT_FALSE(bitmap.flags & BITMAP_FLAG_ALLOCATED) << "the pixels are the viewer's now";
  }

  // Green of that opacity.
  void ShowTransparent(int width, int height, uint8_t alpha) {
    BITMAPHANDLE bitmap = {};
    ASSERT_EQ(SUCCESS, InitBitmapHandle(&bitmap, sizeof(bitmap), width, height, 32));
    bitmap.flags |= BITMAP_FLAG_ALPHA;
    ASSERT_EQ(SUCCESS, AllocateBitmap(&bitmap, MEMORY_CONVENTIONAL));
    std::vector<uint8_t> row;
    for (int x = 0; x < width; ++x) {
      row.insert(row.end(), {0, 255, 0, alpha});
    }
    for (int y = 0; y < height; ++y) {
      ASSERT_LT(0, PutBitmapRow(&bitmap, row.data(), y, static_cast<int32_t>(row.size())));
    }
    ASSERT_EQ(1, SetViewerBitmap(viewer, &bitmap));
  }

  TemporaryFolder folder;
  std::wstring path = folder.File(L"picture.bmp");
  CZVRasterFileViewer viewer;
  Canvas canvas{200, 100};
  const CRect client{0, 0, 200, 100};
  const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
};

TEST_F(RasterViewer, PaintsNothingWithoutAPicture) {
  EXPECT_EQ(0, viewer.HasImage());
  EXPECT_EQ(0, viewer.Draw(canvas.device, client));
  EXPECT_EQ(RGB(255, 255, 255), canvas.At(100, 50)) << "another viewer's turn";
}

TEST_F(RasterViewer, PaintsASmallPictureInTheMiddleLessThreePixelsAllAround) {
  Show(40, 20);
  ASSERT_EQ(1, viewer.Draw(canvas.device, client));
  EXPECT_EQ(face, canvas.At(82, 50));
  EXPECT_EQ(kRed, canvas.At(83, 43));
  EXPECT_EQ(kBlue, canvas.At(116, 56));
  EXPECT_EQ(face, canvas.At(117, 50));
  EXPECT_EQ(face, canvas.At(100, 42));
  EXPECT_EQ(face, canvas.At(100, 57));
  EXPECT_EQ(face, canvas.At(0, 0)) << "and the rest in the colour of buttons";
  EXPECT_EQ(face, canvas.At(199, 99));
}

TEST_F(RasterViewer, ReducesALargePictureToThePane) {
  Show(4000, 1000);
  ASSERT_EQ(1, viewer.Draw(canvas.device, client));
  EXPECT_EQ(face, canvas.At(2, 50));
  EXPECT_EQ(kRed, canvas.At(3, 50));
  EXPECT_EQ(kBlue, canvas.At(196, 50));
  EXPECT_EQ(face, canvas.At(100, 27));
  EXPECT_EQ(kBlue, canvas.At(150, 28));
}

TEST_F(RasterViewer, PaintsATransparentPictureOverTheColourOfButtonsWhateverStoodThere) {
  ShowTransparent(40, 20, 128);
  Canvas fresh(200, 100);
  ::FillRect(fresh.device, client, ::GetSysColorBrush(COLOR_BTNFACE));
  ASSERT_EQ(1, viewer.Draw(fresh.device, client));
  const COLORREF once = fresh.At(100, 50);
  EXPECT_NEAR((255 + GetGValue(face)) / 2, GetGValue(once), 2) << "half of the picture's green";
  EXPECT_NEAR(GetRValue(face) / 2, GetRValue(once), 2);
  canvas.device.FillSolidRect(client, kRed);
  for (int paint = 1; paint <= 2; ++paint) {
    const int saved = canvas.device.SaveDC();
    ASSERT_EQ(1, viewer.Draw(canvas.device, client));
    canvas.device.RestoreDC(saved);
    for (int x = 0; x < 200; x += 3) {
      for (int y = 0; y < 100; y += 3) {
        ASSERT_EQ(fresh.At(x, y), canvas.At(x, y)) << "at " << x << ", " << y << " of paint " << paint;
      }
    }
  }
}

TEST_F(RasterViewer, ShowsTheColourOfButtonsWhereAPictureIsClear) {
  ShowTransparent(400, 20, 0);
  canvas.device.FillSolidRect(client, kRed);
  ASSERT_EQ(1, viewer.Draw(canvas.device, client));
  EXPECT_EQ(face, canvas.At(100, 50));
}

TEST_F(RasterViewer, SurvivesAPaneWithoutRoom) {
  Show(40, 20);
  EXPECT_EQ(1, viewer.Draw(canvas.device, CRect(0, 0, 4, 4)));
  EXPECT_EQ(1, viewer.Draw(canvas.device, CRect(0, 0, 0, 0)));
}

TEST_F(RasterViewer, SetsTheDisplayModeOnlyWhileItPaints) {
  constexpr uint32_t kOfPainting = 528;
  Show(40, 20);
  SetDisplayMode(kOfPainting, 0);
  viewer.Draw(canvas.device, client);
  EXPECT_EQ(0u, SetDisplayMode(0, 0) & kOfPainting);
}

TEST_F(RasterViewer, LosesItsPictureToAnEmptyBitmap) {
  Show(40, 20);
  EXPECT_EQ(0, SetViewerBitmap(viewer, nullptr));
  EXPECT_EQ(0, viewer.HasImage());
  Show(40, 20);
  BITMAPHANDLE empty = {};
  empty.uStructSize = sizeof(empty);
  EXPECT_EQ(0, SetViewerBitmap(viewer, &empty));
  EXPECT_EQ(0, viewer.Draw(canvas.device, client));
}

TEST_F(RasterViewer, LoadsAFileItselfWhenAskedTo) {
  ASSERT_TRUE(WritePicture(path, {.width = 40, .height = 20}));
  EXPECT_EQ(1, viewer.OnFileChange(path.c_str(), 0));
  EXPECT_EQ(40, viewer.image.GetSize().cx);
  EXPECT_EQ(0, viewer.OnFileChange(path.c_str(), 1)) << "a folder";
  EXPECT_TRUE(viewer.image.IsEmpty());
  EXPECT_EQ(1, viewer.OnFileChange(path.c_str(), 0));
  EXPECT_EQ(0, viewer.OnFileChange(L"", 0));
  EXPECT_TRUE(viewer.image.IsEmpty());
  EXPECT_EQ(0, viewer.OnFileChange(folder.File(L"missing.bmp").c_str(), 0));
  const std::wstring broken = folder.AddFile(L"broken.bmp", {'n', 'o'});
  EXPECT_EQ(1, viewer.OnFileChange(path.c_str(), 0));
  EXPECT_EQ(0, viewer.OnFileChange(broken.c_str(), 0));
  EXPECT_TRUE(viewer.image.IsEmpty());
  EXPECT_EQ(0, viewer.HasImage());
}

TEST_F(RasterViewer, AnswersForThePaletteWhileItHasAPicture) {
  PaneHost host;
  viewer.dialog = &host;
  EXPECT_EQ(0, viewer.QueryNewPalette(host.PreviewPane()));
  Show(40, 20);
  EXPECT_EQ(1, viewer.QueryNewPalette(host.PreviewPane()));
  EXPECT_EQ(1, viewer.QueryNewPalette(nullptr)) << "also for another window";
  host.isOpen = false;
  EXPECT_EQ(1, viewer.QueryNewPalette(nullptr));
}

TEST_F(RasterViewer, HoldsOnePictureAtATime) {
  Show(40, 20);
  const int64_t blocks = CoreBlockCount();
  for (int round = 0; round < 10; ++round) {
    Show(40, 20);
  }
  EXPECT_EQ(blocks, CoreBlockCount());
}

TEST(FileViewer, DoesNothingByDefault) {
  CZVFileViewer viewer;
  Canvas canvas(10, 10);
  EXPECT_EQ(0, viewer.OnFileChange(L"C:\\picture.bmp", 0));
  EXPECT_EQ(0, viewer.Draw(canvas.device, CRect(0, 0, 10, 10)));
  EXPECT_EQ(0, viewer.QueryNewPalette(nullptr));
  viewer.OnPaneSize();
  viewer.OnPaneShown(true);
  viewer.OnPaneCreated(nullptr);
  viewer.OnPaneDestroyed(nullptr);
  EXPECT_EQ(0, viewer.HasImage());
  viewer.hasImage = 1;
  EXPECT_EQ(1, viewer.HasImage());
}

}  // namespace
