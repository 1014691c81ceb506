// TIFF files as other programs write them: tiled, planar, big-endian, of odd depths and colour spaces, damaged. They are written
// here with the library itself, tag by tag.
#include <gtest/gtest.h>
#include <tiffio.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <span>

#include "file_test_support.h"

namespace {

using namespace zvtest;

// Collects what the library writes; it reads back directories while it links them.
struct MemoryFile {
  std::vector<uint8_t> bytes;
  size_t position = 0;
};

tmsize_t ReadMemory(thandle_t handle, void* buffer, tmsize_t size) {
  auto& file = *static_cast<MemoryFile*>(handle);
  const size_t some =
      std::min(static_cast<size_t>(size), file.bytes.size() - std::min(file.position, file.bytes.size()));
  std::memcpy(buffer, file.bytes.data() + file.position, some);
  file.position += some;
  return static_cast<tmsize_t>(some);
}

tmsize_t WriteMemory(thandle_t handle, void* buffer, tmsize_t size) {
  auto& file = *static_cast<MemoryFile*>(handle);
  file.bytes.resize(std::max(file.bytes.size(), file.position + static_cast<size_t>(size)));
  std::memcpy(file.bytes.data() + file.position, buffer, static_cast<size_t>(size));
  file.position += static_cast<size_t>(size);
  return size;
}

toff_t SeekMemory(thandle_t handle, toff_t offset, int whence) {
  auto& file = *static_cast<MemoryFile*>(handle);
  const size_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.position : file.bytes.size();
  file.position = base + static_cast<size_t>(offset);
  return file.position;
}

toff_t SizeOfMemory(thandle_t handle) { return static_cast<MemoryFile*>(handle)->bytes.size(); }

// Writes a TIFF in memory; `write` sets tags and pixels.
std::vector<uint8_t> MakeTiff(const char* mode, const std::function<void(TIFF*)>& write) {
  MemoryFile file;
  TIFF* tiff = TIFFClientOpen(
      "memory", mode, &file, ReadMemory, WriteMemory, SeekMemory, [](thandle_t) { return 0; }, SizeOfMemory, nullptr,
      nullptr);
  if (!tiff) return {};
  write(tiff);
  TIFFClose(tiff);
  return file.bytes;
}

struct Shape {
  uint32_t width = 50, height = 37;
  uint16_t bits = 8, samples = 3, photometric = PHOTOMETRIC_RGB, planar = PLANARCONFIG_CONTIG;
  uint16_t format = SAMPLEFORMAT_UINT, compression = COMPRESSION_NONE;
};

void SetShape(TIFF* tiff, const Shape& shape) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, shape.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, shape.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, shape.bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, shape.samples);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, shape.photometric);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, shape.planar);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, shape.format);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, shape.compression);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 10u);
}

// A level of 0 to 255 that differs from pixel to pixel and sample to sample.
uint32_t Level(uint32_t x, uint32_t y, uint32_t sample) { return (x * 5 + y * 3 + sample * 71) & 255; }

void WriteStrips(TIFF* tiff, const Shape& shape) {
  const bool separate = shape.planar == PLANARCONFIG_SEPARATE;
  for (uint16_t plane = 0; plane < (separate ? shape.samples : 1); ++plane) {
    for (uint32_t y = 0; y < shape.height; ++y) {
      std::vector<uint8_t> row;
      for (uint32_t x = 0; x < shape.width; ++x) {
        for (uint16_t s = separate ? plane : 0; s < (separate ? plane + 1 : shape.samples); ++s) {
          const uint32_t level = Level(x, y, s);
          if (shape.bits == 16) row.push_back(static_cast<uint8_t>(level));
          row.push_back(static_cast<uint8_t>(level));
        }
      }
      ASSERT_EQ(TIFFWriteScanline(tiff, row.data(), y, plane), 1);
    }
  }
}

void WriteTiles(TIFF* tiff, const Shape& shape, uint32_t tileWidth, uint32_t tileHeight) {
  TIFFSetField(tiff, TIFFTAG_TILEWIDTH, tileWidth);
  TIFFSetField(tiff, TIFFTAG_TILELENGTH, tileHeight);
  const bool separate = shape.planar == PLANARCONFIG_SEPARATE;
  for (uint16_t plane = 0; plane < (separate ? shape.samples : 1); ++plane) {
    for (uint32_t top = 0; top < shape.height; top += tileHeight) {
      for (uint32_t left = 0; left < shape.width; left += tileWidth) {
        std::vector<uint8_t> tile;
        for (uint32_t y = top; y < top + tileHeight; ++y) {
          for (uint32_t x = left; x < left + tileWidth; ++x) {
            for (uint16_t s = separate ? plane : 0; s < (separate ? plane + 1 : shape.samples); ++s) {
              tile.push_back(static_cast<uint8_t>(Level(x, y, s)));
            }
          }
        }
        ASSERT_GE(TIFFWriteTile(tiff, tile.data(), left, top, 0, plane), 0);
      }
    }
  }
}

class TiffForeign : public testing::Test {
 protected:
  int32_t LoadBytes(const std::vector<uint8_t>& bytes, Picture& picture, FILEINFO* info = nullptr) {
    const auto path = folder.Path(u"foreign.tif");
    WriteBytes(path, bytes);
    return Load(path, picture, 0, ORDER_BGR_OR_GRAY, nullptr, info);
  }
  // Expects red, green and blue to be samples 0 to 2 (or all sample 0 for grey), as levels of 0 to 255.
  void ExpectLevels(Picture& picture, const Shape& shape, bool gray = false) {
    ASSERT_EQ(static_cast<uint32_t>(picture->width), shape.width);
    ASSERT_EQ(static_cast<uint32_t>(picture->height), shape.height);
    for (uint32_t y = 0; y < shape.height; ++y) {
      for (uint32_t x = 0; x < shape.width; ++x) {
        const Color color = ColorAt(picture.bitmap, static_cast<int32_t>(x), static_cast<int32_t>(y));
        ASSERT_EQ(color.red, Level(x, y, 0) * 257) << x << ", " << y;
        ASSERT_EQ(color.green, Level(x, y, gray ? 0 : 1) * 257) << x << ", " << y;
        ASSERT_EQ(color.blue, Level(x, y, gray ? 0 : 2) * 257) << x << ", " << y;
      }
    }
  }
  TestFolder folder;
};

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

TEST_F(TiffForeign, ReducedPagesInTheChainAreStampsAndNoPages) {
  const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
    Shape small, large;
    small.width = 10;
    small.height = 7;
    for (int page = 0; page < 2; ++page) {
      SetShape(tiff, large);
      WriteStrips(tiff, large);
      TIFFWriteDirectory(tiff);
      SetShape(tiff, small);
      TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
      WriteStrips(tiff, small);
      TIFFWriteDirectory(tiff);
    }
  });
  const auto path = folder.Path(u"chain.tif");
  WriteBytes(path, bytes);
  FILEINFO info;
  ASSERT_EQ(Info(path, info, 1), SUCCESS);
  EXPECT_EQ(info.totalPages, 2);
  EXPECT_NE(info.flags & FILEINFO_HAS_STAMP, 0u);
  ASSERT_EQ(Info(path, info, 0, 2), SUCCESS);
  EXPECT_EQ(info.width, 50);
  Picture stamp;
  ASSERT_EQ(ReadFileStamp(Text(path).c_str(), &stamp, sizeof(BITMAPHANDLE), nullptr), SUCCESS);
  EXPECT_EQ(stamp->width, 10);
  ASSERT_EQ(DeleteFilePage(Text(path).c_str(), 1, 0, nullptr), SUCCESS);
  ASSERT_EQ(Info(path, info, 1), SUCCESS);
  EXPECT_EQ(info.totalPages, 1);
  EXPECT_NE(info.flags & FILEINFO_HAS_STAMP, 0u);
}

TEST_F(TiffForeign, PagesGoIntoABigEndianFileInItsOwnByteOrder) {
  Shape shape;
  const auto path = folder.Path(u"big_endian.tif");
  WriteBytes(path, MakeTiff("wb", [&](TIFF* tiff) {
               SetShape(tiff, shape);
               WriteStrips(tiff, shape);
             }));
  Picture added = MakePicture(30, 20, 48);
  SAVEFILEOPTION option = SaveOption();
  option.pageNumber = 2;
  ASSERT_EQ(Save(path, added, FMT_TIFF_DEFLATE, 48, 0, &option), SUCCESS);
  EXPECT_EQ(ReadBytes(path)[0], 'M');
  Picture first, second;
  const LOADFILEOPTION one = LoadOption(1), two = LoadOption(2);
  ASSERT_EQ(Load(path, first, 0, ORDER_BGR_OR_GRAY, &one), SUCCESS);
  ExpectLevels(first, shape);
  ASSERT_EQ(Load(path, second, 0, ORDER_BGR_OR_GRAY, &two), SUCCESS);
  EXPECT_EQ(DifferentPixels(added.bitmap, second.bitmap), 0);
}

TEST_F(TiffForeign, CommentsAndProfileTravelThroughLoadAndSave) {
  Shape shape;
  const std::vector<uint8_t> profile(200, 7);
  const auto bytes = MakeTiff("wl", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, "A description");
    TIFFSetField(tiff, TIFFTAG_ARTIST, "Somebody");
    TIFFSetField(tiff, TIFFTAG_DATETIME, "2024:01:02 03:04:05");
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<uint32_t>(profile.size()), profile.data());
    WriteStrips(tiff, shape);
  });
  Picture picture;
  ASSERT_EQ(LoadBytes(bytes, picture), SUCCESS);
  const auto copy = folder.Path(u"copy.tif");
  ASSERT_EQ(Save(copy, picture, FMT_TIFF_LZW), SUCCESS);
  char text[264];
  EXPECT_GT(ReadFileComment(Text(copy).c_str(), COMMENT_DESCRIPTION, text, sizeof text, nullptr), 0);
  EXPECT_STREQ(text, "A description");
  EXPECT_GT(ReadFileComment(Text(copy).c_str(), COMMENT_AUTHOR, text, sizeof text, nullptr), 0);
  EXPECT_STREQ(text, "Somebody");
  EXPECT_GT(ReadFileComment(Text(copy).c_str(), COMMENT_DATE, text, sizeof text, nullptr), 0);
  EXPECT_STREQ(text, "2024:01:02 03:04:05");
  EXPECT_LT(ReadFileComment(Text(copy).c_str(), COMMENT_COPYRIGHT, text, sizeof text, nullptr), 1);
  FILEINFO info;
  ASSERT_EQ(Info(copy, info), SUCCESS);
  EXPECT_NE(info.flags & FILEINFO_HAS_PROFILE, 0u);
}

TEST_F(TiffForeign, EveryTruncationFailsWithoutHarm) {
  Shape shape;
  shape.compression = COMPRESSION_LZW;
  const auto whole = MakeTiff("wl", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    WriteStrips(tiff, shape);
  });
  for (size_t length = 1; length < whole.size(); length += 1 + length / 20) {
    Picture picture;
    EXPECT_NE(LoadBytes({whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)}, picture), SUCCESS) << length;
    EXPECT_EQ(picture->data, nullptr);
  }
}

TEST_F(TiffForeign, EveryChangedByteOfTheDirectoryIsSurvived) {
  Shape shape;
  const auto whole = MakeTiff("wl", [&](TIFF* tiff) {
    SetShape(tiff, shape);
    WriteStrips(tiff, shape);
  });
  uint32_t directory = 0;
  std::memcpy(&directory, &whole[4], sizeof directory);
  for (size_t at = directory; at < whole.size(); ++at) {
    for (const uint8_t value : {uint8_t{0}, uint8_t{0x7F}, uint8_t{0xFF}}) {
      auto changed = whole;
      changed[at] = value;
      Picture picture;
      const int32_t result = LoadBytes(changed, picture);
      EXPECT_TRUE(result == SUCCESS || picture->data == nullptr) << "byte " << at;
    }
  }
}

}  // namespace
