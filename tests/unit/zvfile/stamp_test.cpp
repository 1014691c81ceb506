// Stamps that other programs and cameras put into files: Exif thumbnails as JPEG and as plain pixels, damaged ones, and those of
// the pages of a TIFF file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "file_test_support.h"
#include "tiff_maker.h"

namespace {

using namespace zvtest;

constexpr uint16_t kShort = 3, kLong = 4;

// An Exif block of two directories: an orientation, and a thumbnail's tags.
class ExifMaker {
 public:
  ExifMaker() { Put(0x002A4949, 4), Put(8, 4); }
  void Begin(uint16_t count) { Put(count, 2); }
  void Tag(uint16_t tag, uint16_t type, uint32_t count, uint32_t value) {
    Put(tag, 2), Put(type, 2), Put(count, 4), Put(value, 4);
  }
  void Put(uint64_t value, int count) {
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
  }
  uint32_t At() const { return static_cast<uint32_t>(bytes.size()); }

  std::vector<uint8_t> bytes;
};

// Puts the block behind the start of a JPEG file.
std::vector<uint8_t> WithExif(const std::vector<uint8_t>& jpeg, const std::vector<uint8_t>& exif) {
  std::vector<uint8_t> result = {0xFF, 0xD8, 0xFF, 0xE1};
  const size_t length = exif.size() + 8;
  result.push_back(static_cast<uint8_t>(length >> 8));
  result.push_back(static_cast<uint8_t>(length));
  for (const char letter : {'E', 'x', 'i', 'f', '\0', '\0'}) result.push_back(static_cast<uint8_t>(letter));
  result.insert(result.end(), exif.begin(), exif.end());
  result.insert(result.end(), jpeg.begin() + 2, jpeg.end());
  return result;
}

// Two by one pixels: red, blue.
std::vector<uint8_t> PixelThumbnail(uint16_t orientation) {
  ExifMaker exif;
  exif.Begin(1);
  exif.Tag(0x0112, kShort, 1, orientation);
  constexpr uint32_t kNext = 8 + 2 + 12 + 4, kTags = 9;
  exif.Put(kNext, 4);
  const uint32_t behind = kNext + 2 + kTags * 12 + 4;
  exif.Begin(kTags);
  exif.Tag(0x0100, kLong, 1, 2);
  exif.Tag(0x0101, kLong, 1, 1);
  exif.Tag(0x0102, kShort, 3, behind);
  exif.Tag(0x0103, kShort, 1, 1);
  exif.Tag(0x0106, kShort, 1, 2);
  exif.Tag(0x0111, kLong, 1, behind + 6);
  exif.Tag(0x0115, kShort, 1, 3);
  exif.Tag(0x0116, kLong, 1, 1);
  exif.Tag(0x0117, kLong, 1, 6);
  exif.Put(0, 4);
  exif.Put(0x000800080008, 6);
  exif.Put(0xFF00000000FF, 6);
  return exif.bytes;
}

std::vector<uint8_t> JpegThumbnail(const std::vector<uint8_t>& stream) {
  ExifMaker exif;
  exif.Begin(1);
  exif.Tag(0x0112, kShort, 1, 1);
  constexpr uint32_t kNext = 8 + 2 + 12 + 4;
  exif.Put(kNext, 4);
  exif.Begin(2);
  exif.Tag(0x0201, kLong, 1, kNext + 2 + 2 * 12 + 4);
  exif.Tag(0x0202, kLong, 1, static_cast<uint32_t>(stream.size()));
  exif.Put(0, 4);
  exif.bytes.insert(exif.bytes.end(), stream.begin(), stream.end());
  return exif.bytes;
}

class StampOf : public testing::Test {
 protected:
  std::vector<uint8_t> Jpeg(int32_t width, int32_t height) {
    Picture source = MakePicture(width, height, 24);
    EXPECT_EQ(Save(folder.Path(u"plain.jpg"), source, FMT_JPEG), SUCCESS);
    return ReadBytes(folder.Path(u"plain.jpg"));
  }
  int32_t Read(Picture& stamp, int32_t page = 1) {
    const LOADFILEOPTION option = LoadOption(page);
    return ReadFileStamp(Text(path).c_str(), &stamp, sizeof(BITMAPHANDLE), &option);
  }

  TestFolder folder;
  std::filesystem::path path = folder.Path(u"stamped");
};

TEST_F(StampOf, ACameraIsAJpegStreamInTheExifBlock) {
  WriteBytes(path, WithExif(Jpeg(640, 480), JpegThumbnail(Jpeg(160, 120))));
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_TRUE(info.flags & FILEINFO_HAS_STAMP);
  EXPECT_EQ(info.width, 640);
  Picture stamp;
  ASSERT_EQ(Read(stamp), SUCCESS);
  EXPECT_EQ(stamp->width, 160);
  EXPECT_EQ(stamp->height, 120);
}

TEST_F(StampOf, AFileIsReadWithoutItsPicture) {
  const std::vector<uint8_t> thumbnail = JpegThumbnail(Jpeg(160, 120));
  std::vector<uint8_t> file = WithExif(Jpeg(640, 480), thumbnail);
  constexpr size_t kFrameAndTables = 1000;
  file.resize(thumbnail.size() + kFrameAndTables);
  WriteBytes(path, file);
  Picture stamp, picture;
  EXPECT_EQ(Load(path, picture), ERROR_FILE_DAMAGED);
  ASSERT_EQ(Read(stamp), SUCCESS);
  EXPECT_EQ(stamp->width, 160);
}

TEST_F(StampOf, AnOldCameraIsPlainPixelsInTheExifBlock) {
  for (const uint16_t orientation : {1, 3}) {
    WriteBytes(path, WithExif(Jpeg(64, 48), PixelThumbnail(orientation)));
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_TRUE(info.flags & FILEINFO_HAS_STAMP);
    Picture stamp;
    ASSERT_EQ(Read(stamp), SUCCESS);
    ASSERT_EQ(stamp->width, 2);
    ASSERT_EQ(stamp->height, 1);
    EXPECT_EQ(ColorAt(stamp.bitmap, 0, 0), (Color{65535, 0, 0, 65535}));
    EXPECT_EQ(ColorAt(stamp.bitmap, 1, 0), (Color{0, 0, 65535, 65535}));
    EXPECT_EQ(stamp->viewPerspective, orientation) << "it lies as the picture does";
  }
}

TEST_F(StampOf, ADamagedExifBlockFailsAndLeavesThePictureReadable) {
  const std::vector<uint8_t> jpeg = Jpeg(64, 48);
  std::vector<std::vector<uint8_t>> blocks = {PixelThumbnail(1), JpegThumbnail(Jpeg(16, 16)),
                                              JpegThumbnail({'n', 'o'})};
  for (size_t whole = blocks.size(), i = 0; i < whole; ++i) {
    for (size_t kept = 8; kept < blocks[i].size(); kept += 13) {
      blocks.push_back({blocks[i].begin(), blocks[i].begin() + static_cast<ptrdiff_t>(kept)});
    }
  }
  const int64_t before = CoreBlockCount();
  for (size_t i = 2; i < blocks.size(); ++i) {
    WriteBytes(path, WithExif(jpeg, blocks[i]));
    Picture stamp, loaded;
    if (Read(stamp) != SUCCESS) {
      EXPECT_FALSE(stamp->flags & BITMAP_FLAG_ALLOCATED);
    }
    EXPECT_EQ(Load(path, loaded), SUCCESS);
    EXPECT_EQ(loaded->width, 64);
  }
  EXPECT_EQ(CoreBlockCount(), before);
}

void WriteGrayPage(TIFF* tiff, uint32_t width, bool reduced) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 1);
  if (reduced) TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
  std::vector<uint8_t> row(width, 99);
  TIFFWriteScanline(tiff, row.data(), 0, 0);
  TIFFWriteDirectory(tiff);
}

TEST_F(StampOf, ATiffPageIsTheSmallestReducedPictureBehindIt) {
  WriteBytes(path, MakeTiff("w", [](TIFF* tiff) {
               WriteGrayPage(tiff, 400, false);
               WriteGrayPage(tiff, 100, true);
               WriteGrayPage(tiff, 50, true);
               WriteGrayPage(tiff, 500, false);
               WriteGrayPage(tiff, 300, false);
               WriteGrayPage(tiff, 75, true);
             }));
  FILEINFO info;
  ASSERT_EQ(Info(path, info, 1), SUCCESS);
  EXPECT_EQ(info.totalPages, 3);
  Picture first, second, third;
  ASSERT_EQ(Read(first, 1), SUCCESS);
  EXPECT_EQ(first->width, 50);
  EXPECT_EQ(Read(second, 2), ERROR_NO_STAMP) << "that page has none";
  ASSERT_EQ(Read(third, 3), SUCCESS);
  EXPECT_EQ(third->width, 75);
  EXPECT_EQ(Read(second, 4), ERROR_PAGE_MISSING);
}

}  // namespace
