// Every depth of every format: what is saved is loaded again, with the depth that was asked for and the pixels that the format
// can keep.
#include <gtest/gtest.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

struct Case {
  const char* name;
  int32_t format;
  int32_t bits;
  int32_t order;  // of the source picture
  bool alpha;
  double psnr;  // least; 100 means equal
  int32_t loadedBits;
  int32_t quality;
};

void PrintTo(const Case& item, std::ostream* out) { *out << item.name << " " << item.bits << " bits"; }

class RoundTrip : public testing::TestWithParam<Case> {};

TEST_P(RoundTrip, KeepsDepthAndPixels) {
  const Case& item = GetParam();
  TestFolder folder;
  for (const auto& [width, height] : {std::pair{61, 47}, std::pair{1, 1}, std::pair{1, 33}, std::pair{200, 3}}) {
    Picture source = MakePicture(width, height, item.bits, item.order, item.alpha);
    source->xResolution = 300;
    source->yResolution = 200;
    const auto path = folder.Path(u"picture.bin");
    ASSERT_EQ(Save(path, source, item.format, item.bits, item.quality), SUCCESS);
    EXPECT_EQ(folder.FileCount(), 1u);
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ(info.width, width);
    EXPECT_EQ(info.height, height);
    EXPECT_EQ(info.bitsPerPixel, item.loadedBits);
    EXPECT_EQ(uint64_t{info.firstSize}, ReadBytes(path).size());
    Picture loaded;
    ASSERT_EQ(Load(path, loaded), SUCCESS);
    EXPECT_EQ(loaded->bitsPerPixel, item.loadedBits);
    if (item.psnr >= 100) {
      EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0) << width << " x " << height;
    } else if (width > 60 && height > 40) {
      EXPECT_GE(Psnr(source.bitmap, loaded.bitmap), item.psnr);
    }
  }
}

constexpr int32_t kBgr = ORDER_BGR, kGray = ORDER_GRAY;

INSTANTIATE_TEST_SUITE_P(Png, RoundTrip,
                         testing::Values(Case{"PNG", FMT_PNG, 1, kBgr, false, 100, 1, 6},
                                         Case{"PNG", FMT_PNG, 4, kBgr, false, 100, 4, 6},
                                         Case{"PNG", FMT_PNG, 8, kBgr, false, 100, 8, 6},
                                         Case{"PNG grey", FMT_PNG, 8, kGray, false, 100, 8, 9},
                                         Case{"PNG grey", FMT_PNG, 16, kGray, false, 100, 16, 6},
                                         Case{"PNG", FMT_PNG, 24, kBgr, false, 100, 24, 6},
                                         Case{"PNG", FMT_PNG, 24, ORDER_RGB, false, 100, 24, 0},
                                         Case{"PNG alpha", FMT_PNG, 32, kBgr, true, 100, 32, 1},
                                         Case{"PNG", FMT_PNG, 32, kBgr, false, 100, 32, 6},
                                         Case{"PNG", FMT_PNG, 48, kBgr, false, 100, 48, 6},
                                         Case{"PNG alpha", FMT_PNG, 64, kBgr, true, 100, 64, 6}));

INSTANTIATE_TEST_SUITE_P(Bmp, RoundTrip,
                         testing::Values(Case{"BMP", FMT_BMP, 1, kBgr, false, 100, 1, 0},
                                         Case{"BMP", FMT_BMP, 4, kBgr, false, 100, 4, 0},
                                         Case{"BMP", FMT_BMP, 8, kBgr, false, 100, 8, 0},
                                         Case{"BMP grey", FMT_BMP, 8, kGray, false, 100, 8, 0},
                                         Case{"BMP", FMT_BMP, 16, kBgr, false, 100, 16, 0},
                                         Case{"BMP", FMT_BMP, 24, kBgr, false, 100, 24, 0},
                                         Case{"BMP", FMT_BMP, 32, kBgr, false, 100, 32, 0},
                                         Case{"BMP alpha", FMT_BMP, 32, kBgr, true, 100, 32, 0},
                                         Case{"RLE", FMT_BMP_RLE, 4, kBgr, false, 100, 4, 0},
                                         Case{"RLE", FMT_BMP_RLE, 8, kBgr, false, 100, 8, 0}));

INSTANTIATE_TEST_SUITE_P(Jpeg, RoundTrip,
                         testing::Values(Case{"grey", FMT_JPEG, 8, kGray, false, 45, 8, 2},
                                         Case{"4:4:4", FMT_JPEG, 24, kBgr, false, 40, 24, 2},
                                         Case{"4:2:2", FMT_JPEG_422, 24, kBgr, false, 33, 24, 2},
                                         Case{"4:2:0", FMT_JPEG_420, 24, kBgr, false, 30, 24, 2},
                                         Case{"Exif 4:2:2", FMT_EXIF_JPEG_422, 24, kBgr, false, 33, 24, 2},
                                         Case{"Exif 4:2:0", FMT_EXIF_JPEG_420, 24, kBgr, false, 30, 24, 2}));

INSTANTIATE_TEST_SUITE_P(Cmp, RoundTrip,
                         testing::Values(Case{"CMP grey", FMT_CMP, 8, kGray, false, 45, 8, 2},
                                         Case{"CMP", FMT_CMP, 24, kBgr, false, 40, 24, 2},
                                         Case{"CMP best level", FMT_CMP, 24, kBgr, false, 38, 24, -1},
                                         Case{"CMP smallest level", FMT_CMP, 24, kBgr, false, 20, 24, -9}));

INSTANTIATE_TEST_SUITE_P(Webp, RoundTrip,
                         testing::Values(Case{"lossless", FMT_WEBP, 24, kBgr, false, 100, 24, 2},
                                         Case{"lossless", FMT_WEBP, 32, kBgr, true, 100, 32, 2},
                                         Case{"lossy", FMT_WEBP, 24, kBgr, false, 28, 24, 20}));

INSTANTIATE_TEST_SUITE_P(J2k, RoundTrip,
                         testing::Values(Case{"JP2", FMT_JP2, 24, kBgr, false, 40, 24, 2},
                                         Case{"JP2 grey", FMT_JP2, 8, kGray, false, 40, 8, 2},
                                         Case{"J2K", FMT_J2K, 24, kBgr, false, 40, 24, 2},
                                         Case{"JP2 alpha", FMT_JP2, 32, kBgr, true, 35, 32, 2}));

INSTANTIATE_TEST_SUITE_P(Icon, RoundTrip,
                         testing::Values(Case{"icon", FMT_ICO, 32, kBgr, true, 100, 32, 0},
                                         Case{"PNG icon", FMT_ICO_PNG, 32, kBgr, true, 100, 32, 6}));

TEST(Jpeg2000, IsLosslessWhenTheOptionsSaySo) {
  TestFolder folder;
  J2KSAVEOPTION before, lossless;
  ASSERT_EQ(GetJ2KOptions(&before, sizeof before), SUCCESS);
  lossless = before;
  lossless.compressionControl = 0;
  ASSERT_EQ(SetJ2KOptions(&lossless), SUCCESS);
  Picture source = MakePicture(90, 70, 24);
  EXPECT_EQ(Save(folder.Path(u"a.jp2"), source, FMT_JP2), SUCCESS);
  EXPECT_EQ(SetJ2KOptions(&before), SUCCESS);
  Picture loaded;
  ASSERT_EQ(Load(folder.Path(u"a.jp2"), loaded), SUCCESS);
  EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0);
}

TEST(Jpeg2000, LoadsAtTheResolutionLevelThatFitsTheLoadSize) {
  TestFolder folder;
  Picture source = MakePicture(200, 120, 24);
  const auto path = folder.Path(u"a.jp2");
  ASSERT_EQ(Save(path, source, FMT_JP2), SUCCESS);
  FORMATRESOLUTIONS resolutions = {};
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), nullptr, &resolutions, nullptr), SUCCESS);
  ASSERT_GE(resolutions.count, 3);
  std::vector<IMAGESIZE> sizes(static_cast<size_t>(resolutions.count));
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), sizes.data(), &resolutions, nullptr), SUCCESS);
  EXPECT_EQ(sizes[0].width, 200);
  EXPECT_EQ(sizes[1].width, 100);
  EXPECT_EQ(sizes[1].height, 60);
  ASSERT_EQ(SetLoadSize(FMT_JP2, 90, 50), SUCCESS);
  Picture small;
  EXPECT_EQ(Load(path, small), SUCCESS);
  EXPECT_EQ(SetLoadSize(FMT_JP2, 0, 0), SUCCESS);
  EXPECT_EQ(small->width, 100);
  EXPECT_EQ(small->height, 60);
}

TEST(Icon, HoldsTheListedSizesAndLoadsTheOneAskedFor) {
  TestFolder folder;
  const IMAGESIZE list[] = {{16, 16}, {32, 32}, {48, 48}};
  ASSERT_EQ(SetSaveSizeList(3, list), SUCCESS);
  Picture source = MakePicture(300, 200, 24);
  const auto path = folder.Path(u"a.ico");
  EXPECT_EQ(Save(path, source, FMT_ICO, 32), SUCCESS);
  EXPECT_EQ(SetSaveSizeList(0, nullptr), SUCCESS);
  FORMATRESOLUTIONS resolutions = {.count = 16, .reserved4 = {}};
  IMAGESIZE sizes[16];
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), sizes, &resolutions, nullptr), SUCCESS);
  ASSERT_EQ(resolutions.count, 3);
  EXPECT_EQ(sizes[0].width, 48);
  EXPECT_EQ(sizes[2].width, 16);
  Picture largest, small;
  ASSERT_EQ(Load(path, largest), SUCCESS);
  EXPECT_EQ(largest->width, 48);
  EXPECT_EQ(ColorAt(largest.bitmap, 24, 0).alpha, 0) << "the picture is not square";
  EXPECT_EQ(ColorAt(largest.bitmap, 24, 24).alpha, 65535);
  ASSERT_EQ(SetLoadSize(FMT_ICO, 20, 20), SUCCESS);
  EXPECT_EQ(Load(path, small), SUCCESS);
  EXPECT_EQ(SetLoadSize(FMT_ICO, 0, 0), SUCCESS);
  EXPECT_EQ(small->width, 32);
}

TEST(SavedDepth, IsTheNearestThatTheFormatHasWhenNoneIsAskedFor) {
  struct Step {
    int32_t bits, order, format, expected;
  };
  TestFolder folder;
  for (const Step& step : {Step{1, kBgr, FMT_JPEG, 8}, Step{4, kBgr, FMT_JPEG, 24}, Step{8, kBgr, FMT_JPEG, 24},
                           Step{32, kBgr, FMT_JPEG, 24}, Step{64, kBgr, FMT_JPEG, 24}, Step{16, kGray, FMT_JPEG, 8},
                           Step{48, kBgr, FMT_BMP, 24}, Step{16, kGray, FMT_BMP, 8}, Step{16, kGray, FMT_PNG, 16},
                           Step{16, kBgr, FMT_PNG, 24}, Step{24, kBgr, FMT_BMP_RLE, 8}}) {
    Picture source = MakePicture(40, 30, step.bits, step.order);
    const auto path = folder.Path(u"a");
    ASSERT_EQ(Save(path, source, step.format, 0), SUCCESS) << step.bits << " to format " << step.format;
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ(info.bitsPerPixel, step.expected) << step.bits << " to format " << step.format;
  }
}

TEST(SavedDepth, IsRefusedWhenTheFormatCannotHoldIt) {
  TestFolder folder;
  Picture source = MakePicture(10, 10, 24);
  for (const auto& [format, bits] : {std::pair{FMT_JPEG, 32}, std::pair{FMT_JPEG, 1}, std::pair{FMT_BMP, 48},
                                     std::pair{FMT_PNG, 2}, std::pair{FMT_CMP, 16}}) {
    EXPECT_EQ(Save(folder.Path(u"a"), source, format, bits), ERROR_BIT_DEPTH);
  }
  EXPECT_EQ(folder.FileCount(), 0u);
}

TEST(SavedDepth, ConvertsRowsOnTheWay) {
  TestFolder folder;
  Picture source = MakePicture(120, 80, 24);
  for (const int32_t bits : {4, 8, 24, 32, 48, 64}) {
    const auto path = folder.Path(u"a.png");
    ASSERT_EQ(Save(path, source, FMT_PNG, bits, 6), SUCCESS);
    Picture loaded;
    ASSERT_EQ(Load(path, loaded), SUCCESS);
    EXPECT_EQ(loaded->bitsPerPixel, bits);
    EXPECT_GE(Psnr(source.bitmap, loaded.bitmap), bits == 4 ? 15 : bits == 8 ? 26 : 100) << bits;
  }
}

TEST(SavedDepth, LaysTransparencyOverWhite) {
  TestFolder folder;
  Picture source = MakePicture(8, 8, 32, ORDER_BGR, true);
  for (int32_t y = 0; y < 8; ++y) {
    uint8_t row[32];
    for (int32_t x = 0; x < 8; ++x) {
      const uint8_t pixel[4] = {0, 0, 200, static_cast<uint8_t>(x < 4 ? 0 : 255)};
      std::copy(pixel, pixel + 4, row + x * 4);
    }
    PutBitmapRow(&source, row, y, 32);
  }
  const auto path = folder.Path(u"flat.bmp");
  ASSERT_EQ(Save(path, source, FMT_BMP, 24), SUCCESS);
  Picture loaded;
  ASSERT_EQ(Load(path, loaded), SUCCESS);
  EXPECT_EQ(ColorAt(loaded.bitmap, 0, 0), (Color{65535, 65535, 65535, 65535}));
  EXPECT_EQ(ColorAt(loaded.bitmap, 7, 7), (Color{200 * 257, 0, 0, 65535}));
}

TEST(SavedDepth, RoundsSixteenBitsToEight) {
  TestFolder folder;
  Picture source = MakePicture(256, 1, 16, ORDER_GRAY);
  uint16_t row[256];
  for (uint32_t i = 0; i < 256; ++i) row[i] = static_cast<uint16_t>(std::min(i * 257 + 128, 65535u));
  PutBitmapRow(&source, row, 0, sizeof row);
  const auto path = folder.Path(u"a.png");
  ASSERT_EQ(Save(path, source, FMT_PNG, 8, 6), SUCCESS);
  Picture loaded;
  ASSERT_EQ(Load(path, loaded), SUCCESS);
  // v * 255 / 65535 with v = 257 i + 128 is i + 0.498, which rounds to i.
  for (int32_t i = 0; i < 255; ++i) EXPECT_EQ(ColorAt(loaded.bitmap, i, 0).red, i * 257);
}

TEST(LoadedDepth, IsTheOneAskedFor) {
  TestFolder folder;
  Picture source = MakePicture(50, 40, 24);
  const auto path = folder.Path(u"a.png");
  ASSERT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS);
  for (const int32_t bits : {1, 4, 8, 16, 24, 32, 48, 64}) {
    Picture loaded;
    ASSERT_EQ(Load(path, loaded, bits), SUCCESS);
    EXPECT_EQ(loaded->bitsPerPixel, bits);
    EXPECT_GE(Psnr(source.bitmap, loaded.bitmap), bits >= 24 ? 100 : bits == 16 ? 30 : bits == 1 ? 3 : 14) << bits;
  }
}

TEST(LoadedOrder, IsTheOneAskedFor) {
  TestFolder folder;
  Picture color = MakePicture(50, 40, 24), gray = MakePicture(50, 40, 8, ORDER_GRAY);
  const auto colorPath = folder.Path(u"c.png"), grayPath = folder.Path(u"g.png");
  ASSERT_EQ(Save(colorPath, color, FMT_PNG, 24, 6), SUCCESS);
  ASSERT_EQ(Save(grayPath, gray, FMT_PNG, 8, 6), SUCCESS);
  for (const int32_t order : {ORDER_RGB, ORDER_BGR, ORDER_BGR_OR_GRAY}) {
    Picture loaded;
    ASSERT_EQ(Load(colorPath, loaded, 0, order), SUCCESS);
    EXPECT_EQ(loaded->colorOrder, order == ORDER_RGB ? ORDER_RGB : ORDER_BGR);
    EXPECT_EQ(DifferentPixels(color.bitmap, loaded.bitmap), 0);
  }
  Picture asGray;
  ASSERT_EQ(Load(colorPath, asGray, 0, ORDER_GRAY), SUCCESS);
  EXPECT_EQ(asGray->bitsPerPixel, 8);
  EXPECT_EQ(asGray->colorOrder, ORDER_GRAY);
  Picture stillGray;
  ASSERT_EQ(Load(grayPath, stillGray), SUCCESS);
  EXPECT_EQ(stillGray->colorOrder, ORDER_GRAY);
  Picture asColor;
  ASSERT_EQ(Load(grayPath, asColor, 24, ORDER_BGR), SUCCESS);
  EXPECT_EQ(DifferentPixels(gray.bitmap, asColor.bitmap), 0);
}

TEST(Resolution, SurvivesInEveryFormatThatHasIt) {
  TestFolder folder;
  for (const int32_t format : {FMT_JPEG, FMT_PNG, FMT_BMP, FMT_CMP}) {
    Picture source = MakePicture(20, 20, 24);
    source->xResolution = 300;
    source->yResolution = 150;
    ASSERT_EQ(Save(folder.Path(u"a"), source, format), SUCCESS);
    FILEINFO info;
    ASSERT_EQ(Info(folder.Path(u"a"), info), SUCCESS);
    EXPECT_EQ(info.xResolution, 300) << format;
    EXPECT_EQ(info.yResolution, 150) << format;
    Picture loaded;
    ASSERT_EQ(Load(folder.Path(u"a"), loaded), SUCCESS);
    EXPECT_EQ(loaded->xResolution, 300) << format;
  }
}

TEST(LargePng, IsStreamedWhenItDoesNotFitTheBudget) {
  TestFolder folder;
  // 5000 x 5000 x 24 bits is beyond the 64 MB that are compressed in one go.
  Picture source;
  ASSERT_EQ(CreateBitmap(&source, sizeof(BITMAPHANDLE), MEMORY_CONVENTIONAL, 5000, 5000, 24, ORDER_BGR, nullptr,
                         VIEW_TOP_LEFT, nullptr, 0),
            SUCCESS);
  for (int32_t y = 0; y < 5000; y += 7) {
    std::vector<uint8_t> row(15000, static_cast<uint8_t>(y));
    PutBitmapRow(&source, row.data(), y, 15000);
  }
  const auto path = folder.Path(u"large.png");
  ASSERT_EQ(Save(path, source, FMT_PNG, 24, 1), SUCCESS);
  Picture loaded;
  ASSERT_EQ(Load(path, loaded), SUCCESS);
  ASSERT_EQ(source->bytesPerLine, loaded->bytesPerLine);
  for (int32_t y = 0; y < 5000; ++y) {
    std::vector<uint8_t> a(15000), b(15000);
    CopyBitmapRow(&source, a.data(), y, 15000);
    CopyBitmapRow(&loaded, b.data(), y, 15000);
    ASSERT_EQ(a, b) << "row " << y;
  }
}

}  // namespace
