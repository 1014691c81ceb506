// The palette for devices of few colours. No device here is one, so the system is made to answer that it is.
#include <gtest/gtest.h>

#include <vector>

#include "tests/support/import_patch.h"
#include "tests/unit/zvdisplay/canvas.h"

namespace {

using namespace zvtest;

int WINAPI FewColors(HDC device, int index) {
  return ::GetDeviceCaps(device, index) | (index == RASTERCAPS ? RC_PALETTE : 0);
}

std::vector<COLORREF> ColorsOf(HPALETTE palette) {
  std::vector<PALETTEENTRY> entries(GetPaletteEntries(palette, 0, 0, nullptr));
  GetPaletteEntries(palette, 0, UINT(entries.size()), entries.data());
  std::vector<COLORREF> colors;
  for (const PALETTEENTRY& entry : entries) colors.push_back(RGB(entry.peRed, entry.peGreen, entry.peBlue));
  return colors;
}

class PaintPalette : public testing::Test {
 protected:
  ~PaintPalette() override {
    if (palette) DeleteObject(palette);
  }
  const Canvas canvas{2, 2};
  HPALETTE palette = nullptr;
};

TEST_F(PaintPalette, IsNotNeededOnADeviceOfAllColours) {
  const FourColors picture;
  EXPECT_EQ(CreatePaintPalette(canvas.device(), &picture.handle), nullptr);
}

TEST_F(PaintPalette, HasTheColoursOfAnIndexedPicture) {
  Picture picture(4, 1, 4);
  picture.handle.palette[3] = {10, 20, 30, 0};
  picture.handle.palette[15] = {250, 240, 230, 0};
  const ImportPatch caps(L"zvdisplay.dll", "GetDeviceCaps", &FewColors);
  palette = CreatePaintPalette(canvas.device(), &picture.handle);
  const std::vector<COLORREF> colors = ColorsOf(palette);
  ASSERT_EQ(colors.size(), 16u);
  EXPECT_EQ(colors[3], RGB(30, 20, 10));
  EXPECT_EQ(colors[15], RGB(230, 240, 250));
}

TEST_F(PaintPalette, HasEvenStepsOfEachChannelForAPictureOfManyColours) {
  const FourColors picture;
  const ImportPatch caps(L"zvdisplay.dll", "GetDeviceCaps", &FewColors);
  palette = CreatePaintPalette(canvas.device(), &picture.handle);
  const std::vector<COLORREF> colors = ColorsOf(palette);
  ASSERT_EQ(colors.size(), 216u);
  EXPECT_EQ(colors[0], RGB(0, 0, 0));
  EXPECT_EQ(colors[1], RGB(0, 0, 51));
  EXPECT_EQ(colors[6], RGB(0, 51, 0));
  EXPECT_EQ(colors[36], RGB(51, 0, 0));
  EXPECT_EQ(colors[215], kWhite);
}

TEST_F(PaintPalette, IsNoneWithoutAPicture) {
  const ImportPatch caps(L"zvdisplay.dll", "GetDeviceCaps", &FewColors);
  BITMAPHANDLE empty{};
  empty.uStructSize = sizeof empty;
  EXPECT_EQ(CreatePaintPalette(canvas.device(), &empty), nullptr);
  EXPECT_EQ(CreatePaintPalette(canvas.device(), nullptr), nullptr);
}

}  // namespace
