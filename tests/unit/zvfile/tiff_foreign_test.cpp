// Pixels of TIFF files as other programs write them: tiled, planar, big-endian, of odd depths and colour spaces.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "tiff_maker.h"

namespace {

using namespace zvtest;

TEST_F(TiffForeign, StripsAndTilesTogetherAndInPlanesInEitherByteOrder) {
  for (const char* mode : {"wl", "wb", "wl8", "wb8"}) {
    for (const uint16_t planar : {PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
      for (const uint16_t compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        for (const bool tiled : {false, true}) {
          SCOPED_TRACE(testing::Message()
                       << mode << " planar " << planar << " compression " << compression << " tiled " << tiled);
          Shape shape;
          shape.planar = planar;
          shape.compression = compression;
          const auto bytes = MakeTiff(mode, [&](TIFF* tiff) {
            SetShape(tiff, shape);
            tiled ? WriteTiles(tiff, shape, 32, 16) : WriteStrips(tiff, shape);
          });
          Picture picture;
          ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
          EXPECT_EQ(picture->bitsPerPixel, 24);
          ExpectLevels(picture, shape);
        }
      }
    }
  }
}

TEST_F(TiffForeign, SixteenBitsInEitherByteOrder) {
  for (const char* mode : {"wl", "wb"}) {
    for (const uint16_t compression : {COMPRESSION_NONE, COMPRESSION_LZW}) {
      Shape shape;
      shape.bits = 16;
      shape.compression = compression;
      const auto bytes = MakeTiff(mode, [&](TIFF* tiff) {
        SetShape(tiff, shape);
        WriteStrips(tiff, shape);
      });
      Picture picture;
      ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
      EXPECT_EQ(picture->bitsPerPixel, 48);
      ExpectLevels(picture, shape);
    }
  }
}

TEST_F(TiffForeign, WhiteIsZeroTurnsOver) {
  Shape shape;
  shape.samples = 1;
  shape.photometric = PHOTOMETRIC_MINISWHITE;
  const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    WriteStrips(tiff, shape);
  });
  Picture picture;
  ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
  EXPECT_EQ(picture->colorOrder, ORDER_GRAY);
  EXPECT_EQ(ColorAt(picture.bitmap, 3, 2).green, (255 - Level(3, 2, 0)) * 257);
}

TEST_F(TiffForeign, GreyOfAnyDepthIsScaledToItsRange) {
  for (const uint16_t bits : {2, 4, 6, 10, 12, 14, 16, 32}) {
    SCOPED_TRACE(bits);
    Shape shape;
    shape.width = 16;
    shape.height = 1;
    shape.bits = bits;
    shape.samples = 1;
    shape.photometric = PHOTOMETRIC_MINISBLACK;
    const uint64_t last = (uint64_t{1} << bits) - 1;
    const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
      SetShape(tiff, shape);
      std::vector<uint8_t> row((16u * bits + 7) / 8);
      for (uint64_t x = 0; x < 16; ++x) {
        const uint64_t value = last * x / 15;
        if (bits == 16 || bits == 32) {
          std::memcpy(&row[x * bits / 8], &value, bits / 8);
          continue;
        }
        for (uint64_t bit = 0; bit < bits; ++bit) {
          const uint64_t at = x * bits + bit;
          if (value >> (bits - 1 - bit) & 1) row[at / 8] = static_cast<uint8_t>(row[at / 8] | 0x80 >> at % 8);
        }
      }
      TIFFWriteScanline(tiff, row.data(), 0, 0);
    });
    Picture picture;
    ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
    for (int32_t x = 0; x < 16; ++x) {
      const double wanted =
          65535.0 * static_cast<double>(last * static_cast<uint64_t>(x) / 15) / static_cast<double>(last);
      EXPECT_NEAR(ColorAt(picture.bitmap, x, 0).green, wanted, bits <= 8 ? 257 : 2) << x;
    }
  }
}

TEST_F(TiffForeign, FloatsAreCutToBlackAndWhite) {
  Shape shape;
  shape.width = 5;
  shape.height = 1;
  shape.bits = 32;
  shape.samples = 1;
  shape.photometric = PHOTOMETRIC_MINISBLACK;
  shape.format = SAMPLEFORMAT_IEEEFP;
  float values[] = {-1.0f, 0.0f, 0.5f, 1.0f, std::nanf("")};
  const auto bytes = MakeTiff("wb", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    TIFFWriteScanline(tiff, values, 0, 0);
  });
  Picture picture;
  ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
  EXPECT_EQ(picture->bitsPerPixel, 16);
  const uint16_t wanted[] = {0, 0, 32768, 65535, 0};
  for (int32_t x = 0; x < 5; ++x) EXPECT_EQ(ColorAt(picture.bitmap, x, 0).green, wanted[x]);
}

TEST_F(TiffForeign, AlphaIsStraightWhetherStoredMultipliedOrNot) {
  for (const uint16_t kind : {EXTRASAMPLE_ASSOCALPHA, EXTRASAMPLE_UNASSALPHA}) {
    Shape shape;
    shape.width = 2;
    shape.height = 1;
    shape.samples = 4;
    const bool multiplied = kind == EXTRASAMPLE_ASSOCALPHA;
    uint8_t row[] = {
        static_cast<uint8_t>(multiplied ? 100 : 200), 0, static_cast<uint8_t>(multiplied ? 20 : 40), 128, 9, 9, 9, 0};
    const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
      SetShape(tiff, shape);
      TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
      TIFFWriteScanline(tiff, row, 0, 0);
    });
    Picture picture;
    ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
    EXPECT_EQ(picture->bitsPerPixel, 32);
    EXPECT_NE(picture->flags & BITMAP_FLAG_ALPHA, 0u);
    const Color color = ColorAt(picture.bitmap, 0, 0);
    EXPECT_NEAR(color.red / 257, 200, 1);
    EXPECT_NEAR(color.blue / 257, 40, 1);
    EXPECT_EQ(color.alpha, 128 * 257);
    EXPECT_EQ(ColorAt(picture.bitmap, 1, 0).alpha, 0);
  }
}

TEST_F(TiffForeign, InksMixWithoutAProfile) {
  Shape shape;
  shape.width = 4;
  shape.height = 1;
  shape.samples = 4;
  shape.photometric = PHOTOMETRIC_SEPARATED;
  uint8_t row[] = {0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255, 0, 128, 0, 0};
  const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    TIFFWriteScanline(tiff, row, 0, 0);
  });
  Picture picture;
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  ASSERT_EQ(LoadBytes(bytes, picture, &info), SUCCESS);
  EXPECT_EQ(info.format, FMT_TIFF_CMYK);
  EXPECT_EQ(ColorAt(picture.bitmap, 0, 0), (Color{65535, 65535, 65535, 65535}));
  EXPECT_EQ(ColorAt(picture.bitmap, 1, 0), (Color{0, 65535, 65535, 65535}));
  EXPECT_EQ(ColorAt(picture.bitmap, 2, 0), (Color{0, 0, 0, 65535}));
  EXPECT_EQ(ColorAt(picture.bitmap, 3, 0), (Color{65535, 127 * 257, 65535, 65535}));
}

TEST_F(TiffForeign, LabBecomesRgb) {
  Shape shape;
  shape.width = 3;
  shape.height = 1;
  shape.photometric = PHOTOMETRIC_CIELAB;
  uint8_t row[] = {255, 0, 0, 0, 0, 0, 136, 80, 67};  // white, black, a red: L 53.3, a 80, b 67
  const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    TIFFWriteScanline(tiff, row, 0, 0);
  });
  Picture picture;
  ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
  EXPECT_NEAR(ColorAt(picture.bitmap, 0, 0).red / 257, 255, 2);
  EXPECT_NEAR(ColorAt(picture.bitmap, 1, 0).red / 257, 0, 2);
  const Color red = ColorAt(picture.bitmap, 2, 0);
  EXPECT_GT(red.red / 257, 240);
  EXPECT_LT(red.green / 257, 40);
  EXPECT_LT(red.blue / 257, 40);
}

// Rows of any length could be claimed at the price of no bytes.
TEST_F(TiffForeign, AFaxOfSeveralSamplesAPixelIsDamaged) {
  for (const uint16_t compression :
       {COMPRESSION_CCITTRLE, COMPRESSION_CCITTRLEW, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4}) {
    Shape shape;
    shape.bits = 1;
    shape.samples = 1600;
    shape.compression = compression;
    const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
      SetShape(tiff, shape);
      uint8_t byte = 0;
      ASSERT_EQ(TIFFWriteRawStrip(tiff, 0, &byte, 1), 1);
    });
    WriteBytes(folder.Path(u"fax.tif"), bytes);
    FILEINFO info;
    EXPECT_EQ(Info(folder.Path(u"fax.tif"), info, 1), ERROR_FILE_DAMAGED) << compression;
  }
}

TEST_F(TiffForeign, OrientationBecomesTheViewPerspective) {
  for (uint16_t orientation = 1; orientation <= 8; ++orientation) {
    Shape shape;
    const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
      SetShape(tiff, shape);
      TIFFSetField(tiff, TIFFTAG_ORIENTATION, orientation);
      WriteStrips(tiff, shape);
    });
    Picture picture;
    ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
    EXPECT_EQ(picture->viewPerspective, orientation);
    ExpectLevels(picture, shape);
  }
}

TEST_F(TiffForeign, ResolutionInCentimetresComesInInches) {
  Shape shape;
  const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_CENTIMETER);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 118.11);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 59.055);
    WriteStrips(tiff, shape);
  });
  Picture picture;
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  ASSERT_EQ(LoadBytes(bytes, picture, &info), SUCCESS);
  EXPECT_EQ(info.xResolution, 300);
  EXPECT_EQ(info.yResolution, 150);
}

}  // namespace
