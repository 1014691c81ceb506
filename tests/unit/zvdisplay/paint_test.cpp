#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "tests/support/import_patch.h"
#include "tests/support/leak_check.h"
#include "tests/unit/zvdisplay/canvas.h"

namespace {

using namespace zvtest;

struct Turned {
  int perspective;
  COLORREF topLeft, topRight, bottomLeft, bottomRight;
};

class PaintPerspective : public testing::TestWithParam<Turned> {};

TEST_P(PaintPerspective, ShowsThePictureAsItIsToBeLookedAt) {
  FourColors picture;
  picture.handle.viewPerspective = GetParam().perspective;
  Canvas canvas(8, 8);
  ASSERT_EQ(Paint(canvas, picture.handle), SUCCESS);
  EXPECT_EQ(canvas.At(1, 1), GetParam().topLeft);
  EXPECT_EQ(canvas.At(6, 1), GetParam().topRight);
  EXPECT_EQ(canvas.At(1, 6), GetParam().bottomLeft);
  EXPECT_EQ(canvas.At(6, 6), GetParam().bottomRight);
}

INSTANTIATE_TEST_SUITE_P(All, PaintPerspective,
                         testing::Values(Turned{VIEW_TOP_LEFT, kRed, kGreen, kBlue, kWhite},
                                         Turned{VIEW_TOP_RIGHT, kGreen, kRed, kWhite, kBlue},
                                         Turned{VIEW_BOTTOM_RIGHT, kWhite, kBlue, kGreen, kRed},
                                         Turned{VIEW_BOTTOM_LEFT, kBlue, kWhite, kRed, kGreen},
                                         Turned{VIEW_LEFT_TOP, kRed, kBlue, kGreen, kWhite},
                                         Turned{VIEW_RIGHT_TOP, kBlue, kRed, kWhite, kGreen},
                                         Turned{VIEW_RIGHT_BOTTOM, kWhite, kGreen, kBlue, kRed},
                                         Turned{VIEW_LEFT_BOTTOM, kGreen, kWhite, kRed, kBlue}),
                         [](const auto& info) { return "Perspective" + std::to_string(info.param.perspective); });

TEST(Paint, TakesTheSourceRectangleOfTheTurnedPicture) {
  FourColors picture;
  picture.handle.viewPerspective = VIEW_RIGHT_TOP;
  Canvas canvas(4, 4);
  const RECT source{1, 0, 2, 1};
  ASSERT_EQ(Paint(canvas, picture.handle, &source), SUCCESS);
  EXPECT_EQ(canvas.At(0, 0), kRed);
  EXPECT_EQ(canvas.At(3, 3), kRed);
}

TEST(Paint, TouchesNothingOutsideTheDestinationClip) {
  FourColors picture;
  Canvas canvas(8, 8);
  const RECT clip{0, 0, 4, 8};
  ASSERT_EQ(Paint(canvas, picture.handle, nullptr, &clip), SUCCESS);
  EXPECT_EQ(canvas.At(1, 1), kRed);
  EXPECT_EQ(canvas.At(6, 1), kWhite);
}

TEST(Paint, AveragesWhatItMakesSmaller) {
  Picture picture(64, 64, 8, ORDER_GRAY);
  for (int row = 0; row < 64; ++row) picture.SetRow(row, std::vector<uint8_t>(64, row % 2 ? 200 : 100));
  Canvas canvas(8, 8);
  ASSERT_EQ(Paint(canvas, picture.handle), SUCCESS);
  EXPECT_NEAR(GetRValue(canvas.At(4, 4)), 150, 1);
}

TEST(Paint, ShowsAFaxPageInGreys) {
  Picture page(1728, 2200, 1);
  for (int row = 0; row < 2200; ++row) page.SetRow(row, std::vector<uint8_t>(216, 0xAA));
  Canvas canvas(108, 100);
  ASSERT_EQ(Paint(canvas, page.handle), SUCCESS);
  EXPECT_NEAR(GetGValue(canvas.At(50, 50)), 127, 3);
}

TEST(Paint, BlendsAlphaOntoTheDevice) {
  Picture picture(2, 1, 32);
  picture.handle.flags |= BITMAP_FLAG_ALPHA;
  picture.SetRow(0, {0, 0, 255, 0, 0, 0, 255, 255});
  Canvas canvas(4, 2);
  ASSERT_EQ(Paint(canvas, picture.handle), SUCCESS);
  EXPECT_EQ(canvas.At(0, 0), kWhite);
  EXPECT_EQ(canvas.At(3, 1), kRed);
}

TEST(Paint, RefusesWhatHasNoPixels) {
  Canvas canvas(2, 2);
  BITMAPHANDLE empty{};
  empty.uStructSize = sizeof empty;
  EXPECT_EQ(Paint(canvas, empty), ERROR_NO_IMAGE);
  EXPECT_EQ(PaintBitmap(canvas.device(), nullptr, nullptr, nullptr, nullptr, nullptr, SRCCOPY), ERROR_BAD_ARGUMENT);
}

TEST(Paint, ShowsAMirroredPictureInADestinationWithItsSidesExchanged) {
  FourColors picture;
  Canvas canvas(8, 8);
  const RECT mirrored{8, 0, 0, 8}, turned{8, 8, 0, 0};
  ASSERT_EQ(PaintBitmap(canvas.device(), &picture.handle, nullptr, nullptr, &mirrored, nullptr, SRCCOPY), SUCCESS);
  EXPECT_EQ(canvas.At(1, 1), kGreen);
  EXPECT_EQ(canvas.At(6, 6), kBlue);
  ASSERT_EQ(PaintBitmap(canvas.device(), &picture.handle, nullptr, nullptr, &turned, nullptr, 0), SUCCESS);
  EXPECT_EQ(canvas.At(1, 1), kWhite);
  EXPECT_EQ(canvas.At(6, 6), kRed);
}

TEST(Paint, InPiecesIsTheSameAsAtOnce) {
  Picture picture(300, 200, 24);
  for (int row = 0; row < 200; ++row) {
    std::vector<uint8_t> bytes(900);
    for (int i = 0; i < 900; ++i) bytes[size_t(i)] = uint8_t(i * 7 + row * row);
    picture.SetRow(row, bytes);
  }
  for (const int perspective : {VIEW_TOP_LEFT, VIEW_RIGHT_TOP}) {
    picture.handle.viewPerspective = perspective;
    Canvas whole(91, 67), pieces(91, 67);
    ASSERT_EQ(Paint(whole, picture.handle), SUCCESS);
    for (int y = 0; y < 67; y += 13) {
      for (int x = 0; x < 91; x += 17) {
        const RECT clip{x, y, x + 17, y + 13};
        ASSERT_EQ(Paint(pieces, picture.handle, nullptr, &clip), SUCCESS);
      }
    }
    for (int y = 0; y < 67; ++y) {
      for (int x = 0; x < 91; ++x) ASSERT_EQ(whole.At(x, y), pieces.At(x, y)) << x << ", " << y;
    }
  }
}

TEST(Paint, FollowsTheMappingOfTheDeviceAndLeavesItAsItWas) {
  FourColors picture;
  Canvas canvas(80, 80);
  SetMapMode(canvas.device(), MM_ANISOTROPIC);
  SetWindowExtEx(canvas.device(), 100, 100, nullptr);
  SetViewportExtEx(canvas.device(), 40, 40, nullptr);
  SetViewportOrgEx(canvas.device(), 20, 20, nullptr);
  const RECT place{0, 0, 100, 100};
  ASSERT_EQ(PaintBitmap(canvas.device(), &picture.handle, nullptr, nullptr, &place, nullptr, SRCCOPY), SUCCESS);
  EXPECT_EQ(canvas.At(19, 19), kWhite);
  EXPECT_EQ(canvas.At(20, 20), kRed);
  EXPECT_EQ(canvas.At(39, 59), kBlue);
  EXPECT_EQ(canvas.At(60, 20), kWhite);
  EXPECT_EQ(GetMapMode(canvas.device()), MM_ANISOTROPIC);
  POINT origin{};
  GetViewportOrgEx(canvas.device(), &origin);
  EXPECT_EQ(origin.x, 20);
}

TEST(Paint, TakesOnlyWhatTheSourceClipLeaves) {
  FourColors picture;
  Canvas canvas(8, 8);
  const RECT all = canvas.All(), clip{1, 0, 2, 2};
  ASSERT_EQ(PaintBitmap(canvas.device(), &picture.handle, nullptr, &clip, &all, nullptr, SRCCOPY), SUCCESS);
  EXPECT_EQ(canvas.At(1, 1), kWhite);
  EXPECT_EQ(canvas.At(6, 1), kGreen);
}

TEST(Paint, EnlargesSmoothlyWhenAskedTo) {
  FourColors picture;
  Canvas squares(8, 8), smooth(8, 8);
  ASSERT_EQ(Paint(squares, picture.handle), SUCCESS);
  const uint32_t former = SetDisplayMode(DISPLAY_MODE_SMOOTH_ENLARGE, DISPLAY_MODE_SMOOTH_ENLARGE);
  ASSERT_EQ(Paint(smooth, picture.handle), SUCCESS);
  SetDisplayMode(~0u, former);
  EXPECT_EQ(squares.At(3, 0), kRed);
  EXPECT_GT(GetGValue(smooth.At(3, 0)), 50);
}

TEST(Paint, OfACloseLookAtAHugePictureCostsOnlyWhatIsSeen) {
  FourColors picture;
  Canvas canvas(40, 40);
  const RECT huge{-400000, -400000, 400000, 400000};
  ASSERT_EQ(PaintBitmap(canvas.device(), &picture.handle, nullptr, nullptr, &huge, nullptr, SRCCOPY), SUCCESS);
  EXPECT_EQ(canvas.At(39, 39), kWhite);
  const RECT offside{-400000, -400000, 800000, 0};
  ASSERT_EQ(PaintBitmap(canvas.device(), &picture.handle, nullptr, nullptr, &offside, nullptr, SRCCOPY),
            ERROR_BAD_ARGUMENT);
}

TEST(Paint, LeaksNeitherMemoryNorGdiObjects) {
  Picture picture(100, 100, 32);
  picture.handle.flags |= BITMAP_FLAG_ALPHA;
  Canvas canvas(30, 30);
  const int64_t blocks = CoreBlockCount();
  zvtest::ExpectNothingLeftBehind([&] { EXPECT_EQ(Paint(canvas, picture.handle), SUCCESS); }, {.times = 50});
  EXPECT_EQ(CoreBlockCount(), blocks);
}

TEST(Paint, ReportsNoProgress) {
  FourColors picture;
  picture.handle.viewPerspective = VIEW_RIGHT_TOP;
  Canvas canvas(8, 8);
  int calls = 0;
  SetStatusCallback([](int32_t, void* count) -> int32_t { return ++*static_cast<int*>(count); }, &calls, nullptr,
                    nullptr);
  EXPECT_EQ(Paint(canvas, picture.handle), SUCCESS);
  SetStatusCallback(nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(calls, 0);
}

TEST(Print, LaysAlphaOverWhiteAndTakesTheNaturalSize) {
  Picture picture(10, 10, 32);
  picture.handle.flags |= BITMAP_FLAG_ALPHA;
  picture.handle.xResolution = picture.handle.yResolution = 48;
  Canvas canvas(100, 100);
  const RECT all = canvas.All();
  FillRect(canvas.device(), &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  ASSERT_EQ(PrintBitmap(canvas.device(), &picture.handle, 5, 5, 0, 0, 0), SUCCESS);
  const int size = 10 * GetDeviceCaps(canvas.device(), LOGPIXELSX) / 48;
  EXPECT_EQ(canvas.At(4, 5), RGB(0, 0, 0));
  EXPECT_EQ(canvas.At(5, 5), kWhite);
  EXPECT_EQ(canvas.At(4 + size, 4 + size), kWhite);
  EXPECT_EQ(canvas.At(5 + size, 5 + size), RGB(0, 0, 0));
}

TEST(Print, FillsTheRectangleBandByBand) {
  Picture picture(16, 3000, 24);
  ASSERT_EQ(FillBitmap(&picture.handle, kBlue), SUCCESS);
  Canvas canvas(20, 300);
  ASSERT_EQ(PrintBitmap(canvas.device(), &picture.handle, 2, 0, 16, 300, 0), SUCCESS);
  for (int y = 0; y < 300; ++y) ASSERT_EQ(canvas.At(9, y), kBlue) << y;
  EXPECT_EQ(canvas.At(0, 0), kWhite);
}

// What the system answers when it fails, and also when it had nothing to draw.
int WINAPI StretchNoRow(HDC, int, int, int, int, int, int, int, int, const void*, const BITMAPINFO*, UINT, DWORD) {
  return 0;
}

TEST(Drawing, FailsWhenTheSystemDrawsNothingOfWhatCanBeSeen) {
  const FourColors picture;
  const Canvas canvas(4, 4);
  const zvtest::ImportPatch stretch(L"zvdisplay.dll", "StretchDIBits", &StretchNoRow);
  EXPECT_EQ(Paint(canvas, picture.handle), ERROR_FEATURE_UNSUPPORTED);
  EXPECT_EQ(PrintBitmap(canvas.device(), &picture.handle, 0, 0, 4, 4, 0), ERROR_FEATURE_UNSUPPORTED);
  EXPECT_EQ(PrintBitmap(canvas.device(), &picture.handle, 3, 3, 4, 4, 0), ERROR_FEATURE_UNSUPPORTED) << "in part";
}

TEST(Drawing, OfWhatCannotBeSeenIsNoFailure) {
  const FourColors picture;
  for (const bool drawsNoRow : {true, false}) {
    std::optional<zvtest::ImportPatch> stretch;
    if (drawsNoRow) stretch.emplace(L"zvdisplay.dll", "StretchDIBits", &StretchNoRow);
    const Canvas canvas(4, 4);
    EXPECT_EQ(PrintBitmap(canvas.device(), &picture.handle, 40, 0, 4, 4, 0), SUCCESS) << "beside the device";
    const HRGN nothing = CreateRectRgn(0, 0, 0, 0);
    SelectClipRgn(canvas.device(), nothing);
    DeleteObject(nothing);
    EXPECT_EQ(Paint(canvas, picture.handle), SUCCESS);
    EXPECT_EQ(PrintBitmap(canvas.device(), &picture.handle, 0, 0, 4, 4, 0), SUCCESS);
    EXPECT_EQ(canvas.At(0, 0), kWhite);
  }
}

}  // namespace
