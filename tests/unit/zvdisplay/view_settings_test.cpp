// The settings that change how a picture is painted: those that its handle keeps, and those of the library.
#include <gtest/gtest.h>

#include "tests/unit/zvdisplay/canvas.h"

namespace {

using namespace zvtest;

COLORREF Painted(const Picture& picture) {
  const Canvas canvas(2, 2);
  EXPECT_EQ(Paint(canvas, picture.handle), SUCCESS);
  return canvas.At(1, 1);
}

TEST(ViewValues, AddBrightnessToEveryChannel) {
  Picture picture(1, 1, 24);
  picture.SetRow(0, {10, 20, 30});
  ASSERT_EQ(SetBitmapViewValueA(&picture.handle, 100), SUCCESS);
  EXPECT_EQ(Painted(picture), RGB(130, 120, 110));
  ASSERT_EQ(SetBitmapViewValueA(&picture.handle, -15), SUCCESS);
  EXPECT_EQ(Painted(picture), RGB(15, 5, 0));
  ASSERT_EQ(SetBitmapViewValueA(&picture.handle, 250), SUCCESS);
  EXPECT_EQ(Painted(picture), kWhite);
}

TEST(ViewValues, StretchTheChannelsAboutTheMiddleGreyByContrast) {
  Picture picture(1, 1, 24);
  picture.SetRow(0, {50, 127, 200});
  ASSERT_EQ(SetBitmapViewValueB(&picture.handle, 200), SUCCESS);
  EXPECT_EQ(Painted(picture), RGB(255, 127, 0));
  ASSERT_EQ(SetBitmapViewValueB(&picture.handle, 50), SUCCESS);
  EXPECT_EQ(Painted(picture), RGB(164, 127, 89));
  ASSERT_EQ(SetBitmapViewValueB(&picture.handle, 0), SUCCESS);
  EXPECT_EQ(Painted(picture), RGB(200, 127, 50)) << "never been set";
}

TEST(ViewValues, TurnColoursFromRedTowardsGreenByHue) {
  Picture red(1, 1, 24), grey(1, 1, 24);
  red.SetRow(0, {0, 0, 255});
  grey.SetRow(0, {90, 90, 90});
  for (const auto& [angle, color] : {std::pair{12000, kGreen}, {24000, kBlue}, {36000, kRed}, {-12000, kBlue}}) {
    ASSERT_EQ(SetBitmapViewValueC(&red.handle, angle), SUCCESS);
    ASSERT_EQ(SetBitmapViewValueC(&grey.handle, angle), SUCCESS);
    EXPECT_EQ(Painted(red), color) << angle;
    EXPECT_EQ(Painted(grey), RGB(90, 90, 90)) << angle;
  }
}

TEST(ViewValues, AreKeptInTheHandleAndLeaveItsPixelsAlone) {
  FourColors picture;
  ASSERT_EQ(SetBitmapViewValueA(&picture.handle, -7), SUCCESS);
  ASSERT_EQ(SetBitmapViewValueB(&picture.handle, 130), SUCCESS);
  ASSERT_EQ(SetBitmapViewValueC(&picture.handle, 900), SUCCESS);
  Painted(picture);
  EXPECT_EQ(GetBitmapViewValueA(&picture.handle), -7);
  EXPECT_EQ(GetBitmapViewValueB(&picture.handle), 130);
  EXPECT_EQ(GetBitmapViewValueC(&picture.handle), 900);
  std::vector<uint8_t> row(kRedGreen.size());
  ASSERT_EQ(CopyBitmapRow(&picture.handle, row.data(), 0, int(row.size())), int(row.size()));
  EXPECT_EQ(row, kRedGreen);
}

TEST(ViewValues, AreNeutralAndRefusedWithoutAHandle) {
  EXPECT_EQ(GetBitmapViewValueA(nullptr), 0);
  EXPECT_EQ(GetBitmapViewValueB(nullptr), 100);
  EXPECT_EQ(GetBitmapViewValueC(nullptr), 0);
  EXPECT_EQ(SetBitmapViewValueA(nullptr, 1), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SetBitmapViewValueB(nullptr, 1), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SetBitmapViewValueC(nullptr, 1), ERROR_BAD_ARGUMENT);
}

TEST(ViewValues, AreNeutralInAFreshHandle) {
  Picture picture(1, 1, 24);
  EXPECT_EQ(GetBitmapViewValueA(&picture.handle), 0);
  EXPECT_EQ(GetBitmapViewValueB(&picture.handle), 100);
  EXPECT_EQ(GetBitmapViewValueC(&picture.handle), 0);
}

TEST(DisplayMode, ChangesTheBitsOfTheMaskAlone) {
  const uint32_t former = SetDisplayMode(DISPLAY_MODE_SCALE_QUALITY, 0);
  EXPECT_EQ(former & DISPLAY_MODE_SCALE_QUALITY, DISPLAY_MODE_SCALE_QUALITY);
  EXPECT_EQ(SetDisplayMode(DISPLAY_MODE_SCALE_QUALITY, DISPLAY_MODE_SCALE_QUALITY),
            former & ~DISPLAY_MODE_SCALE_QUALITY);
}

}  // namespace
