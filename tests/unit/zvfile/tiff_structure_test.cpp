// Chains of pages and thumbnails, metadata and damage in TIFF files that other programs wrote.
#include <gtest/gtest.h>

#include <cstring>

#include "tiff_maker.h"

namespace {

using namespace zvtest;

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
  // What is no profile of the right colours is not written again.
  std::vector<uint8_t> profile(200, 7);
  std::memcpy(profile.data() + 16, "RGB ", 4);
  std::memcpy(profile.data() + 36, "acsp", 4);
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
