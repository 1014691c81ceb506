// Every compression of the TIFF family with every depth that it can hold, loaded again to the pixel.
#include <gtest/gtest.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

struct Depth {
  int32_t bits;
  int32_t order;
  bool alpha;
};

constexpr Depth kDepths[] = {{1, ORDER_BGR, false},  {4, ORDER_BGR, false},   {8, ORDER_BGR, false},
                             {8, ORDER_GRAY, false}, {16, ORDER_GRAY, false}, {24, ORDER_BGR, false},
                             {24, ORDER_RGB, false}, {32, ORDER_BGR, true},   {48, ORDER_BGR, false},
                             {64, ORDER_BGR, true}};

struct Kind {
  int32_t format;
  const char* name;
  uint32_t depths;  // bits of the rows of kDepths that it holds
  bool exact;
  const char* compression;
};

constexpr uint32_t kAll = 0x3FF, kBilevel = 1, kGray = 1 << 3, kColor = 1 << 5 | 1 << 6, kColorAlpha = 1 << 7;

constexpr Kind kKinds[] = {
    {FMT_TIFF, "Uncompressed", kAll, true, "Uncompressed"},
    {FMT_TIFF_PACKBITS, "PackBits", kAll, true, "PackBits"},
    {FMT_TIFF_LZW, "Lzw", kAll, true, "LZW"},
    {FMT_TIFF_DEFLATE, "Deflate", kAll, true, "Deflate"},
    {FMT_TIFF_LZMA, "Lzma", kAll, true, "LZMA"},
    {FMT_TIFF_ZSTD, "Zstd", kAll, true, "Zstandard"},
    {FMT_BIGTIFF, "BigTiff", kAll, true, "Uncompressed"},
    {FMT_BIGTIFF_DEFLATE, "BigTiffDeflate", kAll, true, "Deflate"},
    {FMT_TIFF_CCITT, "ModifiedHuffman", kBilevel, true, "CCITT RLE"},
    {FMT_TIFF_G3_1D, "Group3", kBilevel, true, "CCITT Group 3"},
    {FMT_TIFF_G3_2D, "Group3TwoDimensional", kBilevel, true, "CCITT Group 3"},
    {FMT_TIFF_G4, "Group4", kBilevel, true, "CCITT Group 4"},
    {FMT_TIFF_WEBP, "Webp", kColor | kColorAlpha, true, "WebP"},  // quality 0: lossless
    {FMT_TIFF_JPEG, "Jpeg", kGray | kColor, false, "JPEG"},
    {FMT_TIFF_JPEG_422, "Jpeg422", kColor, false, "JPEG"},
    {FMT_TIFF_JPEG_420, "Jpeg420", kColor, false, "JPEG"},
    {FMT_TIFF_YCC, "Ycc", kColor, false, "Uncompressed"},
    {FMT_EXIF_TIFF_RGB, "ExifRgb", kColor, true, "Uncompressed"},
    {FMT_EXIF_TIFF_YCC, "ExifYcc", kColor, false, "Uncompressed"},
};

class TiffRoundTrip : public testing::TestWithParam<Kind> {};

// Sub-sampled chroma blurs edges; everything else is near the original.
constexpr double kLeastPsnr = 26;

TEST_P(TiffRoundTrip, KeepsPixelsOfEveryDepthItHolds) {
  const Kind& kind = GetParam();
  TestFolder folder;
  for (size_t row = 0; row < std::size(kDepths); ++row) {
    if (!(kind.depths >> row & 1)) continue;
    const Depth& depth = kDepths[row];
    for (const auto& [width, height] : {std::pair{83, 59}, std::pair{1, 1}, std::pair{17, 1}, std::pair{1, 40}}) {
      SCOPED_TRACE(testing::Message() << depth.bits << " bits, order " << depth.order << ", " << width << " x "
                                      << height);
      Picture source = MakePicture(width, height, depth.bits, depth.order, depth.alpha);
      source->xResolution = 204;
      source->yResolution = 196;
      const auto path = folder.Path(u"page.tif");
      ASSERT_EQ(Save(path, source, kind.format, 0, 0), SUCCESS);
      Picture loaded;
      FILEINFO info = {};
      info.uStructSize = sizeof info;
      ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, nullptr, &info), SUCCESS);
      EXPECT_EQ(loaded->bitsPerPixel, depth.bits);
      EXPECT_EQ(info.xResolution, 204);
      EXPECT_EQ(info.yResolution, 196);
      const std::u16string compression(std::begin(info.compression), std::begin(info.compression) + 20);
      EXPECT_EQ(std::string(compression.begin(), compression.begin() + static_cast<ptrdiff_t>(compression.find(u'\0'))),
                kind.compression);
      if (kind.exact) {
        EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0);
      } else if (width > 50) {
        EXPECT_GT(Psnr(source.bitmap, loaded.bitmap), kLeastPsnr);
      }
    }
  }
}

TEST_P(TiffRoundTrip, TellsItsOwnFormatNumber) {
  const Kind& kind = GetParam();
  TestFolder folder;
  const bool bilevel = kind.depths == kBilevel;
  Picture source = MakePicture(64, 48, bilevel ? 1 : 24);
  ASSERT_EQ(Save(folder.Path(u"page.tif"), source, kind.format, 0, 0), SUCCESS);
  FILEINFO info;
  ASSERT_EQ(Info(folder.Path(u"page.tif"), info), SUCCESS);
  // Without an Exif block a carrier is a plain file of its kind.
  const int32_t plain = kind.format == FMT_EXIF_TIFF_RGB   ? FMT_TIFF
                        : kind.format == FMT_EXIF_TIFF_YCC ? FMT_TIFF_YCC
                                                           : kind.format;
  EXPECT_EQ(info.format, plain);
}

INSTANTIATE_TEST_SUITE_P(Compressions, TiffRoundTrip, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& test) { return std::string(test.param.name); });

TEST(TiffSave, RefusesDepthsThatTheCompressionCannotHold) {
  TestFolder folder;
  Picture color = MakePicture(20, 20, 24);
  EXPECT_EQ(Save(folder.Path(u"a.tif"), color, FMT_TIFF_G4, 24), ERROR_BIT_DEPTH);
  EXPECT_EQ(Save(folder.Path(u"a.tif"), color, FMT_TIFF_JPEG, 1), ERROR_BIT_DEPTH);
  EXPECT_EQ(Save(folder.Path(u"a.tif"), color, FMT_TIFF_CMYK, 24), ERROR_FEATURE_UNSUPPORTED);
  EXPECT_EQ(folder.FileCount(), 0u);
}

TEST(TiffSave, FaxPagesHaveBlackAsOneWhateverThePalette) {
  TestFolder folder;
  Picture normal = MakePicture(40, 30, 1);
  Picture swapped = MakePicture(40, 30, 1);
  std::swap(swapped->palette[0], swapped->palette[1]);
  ASSERT_EQ(Save(folder.Path(u"normal.tif"), normal, FMT_TIFF_G4), SUCCESS);
  ASSERT_EQ(Save(folder.Path(u"swapped.tif"), swapped, FMT_TIFF_G4), SUCCESS);
  Picture a, b;
  ASSERT_EQ(Load(folder.Path(u"normal.tif"), a), SUCCESS);
  ASSERT_EQ(Load(folder.Path(u"swapped.tif"), b), SUCCESS);
  EXPECT_EQ(DifferentPixels(normal.bitmap, a.bitmap), 0);
  EXPECT_EQ(DifferentPixels(swapped.bitmap, b.bitmap), 0);
  EXPECT_EQ(a->palette[0].red, 255);
  EXPECT_EQ(b->palette[0].red, 255);
}

TEST(TiffSave, KeepsAColouredTwoColourPalette) {
  TestFolder folder;
  Picture source = MakePicture(40, 30, 1);
  source->palette[0] = {10, 20, 200, 255};
  source->palette[1] = {220, 240, 30, 255};
  ASSERT_EQ(Save(folder.Path(u"a.tif"), source, FMT_TIFF_LZW), SUCCESS);
  Picture loaded;
  ASSERT_EQ(Load(folder.Path(u"a.tif"), loaded), SUCCESS);
  EXPECT_EQ(loaded->bitsPerPixel, 1);
  EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0);
}

TEST(TiffSave, LowerQualityMakesSmallerJpegPages) {
  TestFolder folder;
  Picture source = MakePicture(300, 200, 24);
  ASSERT_EQ(Save(folder.Path(u"good.tif"), source, FMT_TIFF_JPEG_420, 24, 2), SUCCESS);
  ASSERT_EQ(Save(folder.Path(u"poor.tif"), source, FMT_TIFF_JPEG_420, 24, 200), SUCCESS);
  EXPECT_LT(ReadBytes(folder.Path(u"poor.tif")).size() * 2, ReadBytes(folder.Path(u"good.tif")).size());
}

TEST(TiffSave, PaddedPixelsAreStoredWithoutTheirPadding) {
  TestFolder folder;
  Picture source = MakePicture(33, 21, 32, ORDER_BGR, false);
  ASSERT_EQ(Save(folder.Path(u"a.tif"), source, FMT_TIFF), SUCCESS);
  Picture loaded;
  ASSERT_EQ(Load(folder.Path(u"a.tif"), loaded), SUCCESS);
  EXPECT_EQ(loaded->bitsPerPixel, 24);
  EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0);
}

TEST(TiffStamp, IsWrittenAsASubImageAndReadBack) {
  TestFolder folder;
  Picture source = MakePicture(400, 300, 24);
  SAVEFILEOPTION option = SaveOption();
  option.flags |= SAVEFILE_STAMP;
  option.stampWidth = 80;
  option.stampHeight = 80;
  option.stampBitsPerPixel = 24;
  ASSERT_EQ(Save(folder.Path(u"a.tif"), source, FMT_TIFF_LZW, 24, 0, &option), SUCCESS);
  FILEINFO info;
  ASSERT_EQ(Info(folder.Path(u"a.tif"), info, 1), SUCCESS);
  EXPECT_EQ(info.totalPages, 1);
  EXPECT_NE(info.flags & FILEINFO_HAS_STAMP, 0u);
  Picture stamp;
  ASSERT_EQ(ReadFileStamp(Text(folder.Path(u"a.tif")).c_str(), &stamp, sizeof(BITMAPHANDLE), nullptr), SUCCESS);
  EXPECT_EQ(stamp->width, 80);
  EXPECT_EQ(stamp->height, 60);
  Picture plain = MakePicture(20, 20, 24);
  ASSERT_EQ(Save(folder.Path(u"b.tif"), plain, FMT_TIFF), SUCCESS);
  Picture none;
  EXPECT_EQ(ReadFileStamp(Text(folder.Path(u"b.tif")).c_str(), &none, sizeof(BITMAPHANDLE), nullptr), ERROR_NO_STAMP);
}

}  // namespace
