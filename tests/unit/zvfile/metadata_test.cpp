// What travels beside the pixels: comments, Exif, profile, XMP and stamps, read, kept and written again.
#include <gtest/gtest.h>

#include <cstring>

#include "file_test_support.h"

namespace {

using namespace zvtest;

void SetComment(Picture& picture, int32_t number, const std::string& text) {
  ASSERT_EQ(SetBitmapMetadata(&picture, METADATA_COMMENT + number, text.data(), text.size()), SUCCESS);
}

std::string Comment(const std::filesystem::path& path, int32_t number) {
  char text[264];
  const int32_t length = ReadFileComment(Text(path).c_str(), number, text, sizeof text, nullptr);
  if (length < 1) return {};
  EXPECT_EQ(length, static_cast<int32_t>(std::strlen(text)) + 1);
  return text;
}

std::vector<uint8_t> Block(Picture& picture, int32_t kind) {
  const void* bytes = nullptr;
  uint64_t size = 0;
  GetBitmapMetadata(&picture, kind, &bytes, &size);
  const uint8_t* first = static_cast<const uint8_t*>(bytes);
  return size ? std::vector<uint8_t>(first, first + size) : std::vector<uint8_t>();
}

TEST(Comments, OfAllKindsSurviveInPng) {
  TestFolder folder;
  const auto path = folder.Path(u"a.png");
  Picture source = MakePicture(20, 20, 24), loaded;
  const int32_t kinds[] = {COMMENT_DESCRIPTION, COMMENT_AUTHOR,  COMMENT_SOFTWARE, COMMENT_COPYRIGHT,  COMMENT_DATE,
                           COMMENT_TITLE,       COMMENT_COMMENT, COMMENT_SOURCE,   COMMENT_DISCLAIMER, COMMENT_WARNING};
  for (const int32_t kind : kinds) SetComment(source, kind, "text " + std::to_string(kind));
  ASSERT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS);
  for (const int32_t kind : kinds) EXPECT_EQ(Comment(path, kind), "text " + std::to_string(kind));
  EXPECT_EQ(Comment(path, COMMENT_PNG_TITLE), "text 7");
  EXPECT_EQ(Comment(path, COMMENT_PNG_COMMENT), "text 8");
  EXPECT_EQ(Comment(path, COMMENT_PNG_WARNING), "text 11");
  EXPECT_EQ(Comment(path, COMMENT_PNG_DISCLAIMER), "text 10");
  EXPECT_EQ(Comment(path, COMMENT_MAKE), "");
  ASSERT_EQ(Load(path, loaded), SUCCESS);
  EXPECT_EQ(Block(loaded, METADATA_COMMENT + COMMENT_AUTHOR), (std::vector<uint8_t>{'t', 'e', 'x', 't', ' ', '1'}));
}

TEST(Comments, SurviveInJpegAsExifOrPlainComment) {
  for (const int32_t format : {FMT_JPEG, FMT_EXIF_JPEG_422, FMT_EXIF_JPEG_420}) {
    TestFolder folder;
    const auto path = folder.Path(u"a.jpg");
    Picture source = MakePicture(40, 40, 24);
    SetComment(source, COMMENT_DESCRIPTION, "a view of the sea");
    SetComment(source, COMMENT_AUTHOR, "Ann Example");
    SetComment(source, COMMENT_MAKE, "Zorvane");
    SetComment(source, COMMENT_TITLE, "Sea");
    ASSERT_EQ(Save(path, source, format), SUCCESS);
    EXPECT_EQ(Comment(path, COMMENT_DESCRIPTION), "a view of the sea");
    EXPECT_EQ(Comment(path, COMMENT_AUTHOR), "Ann Example");
    EXPECT_EQ(Comment(path, COMMENT_MAKE), "Zorvane");
    EXPECT_EQ(Comment(path, COMMENT_TITLE), "Sea");
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ(info.format, format);
  }
  TestFolder folder;
  Picture source = MakePicture(40, 40, 24);
  SetComment(source, COMMENT_DESCRIPTION, "alone");
  ASSERT_EQ(Save(folder.Path(u"b.jpg"), source, FMT_JPEG), SUCCESS);
  EXPECT_EQ(Comment(folder.Path(u"b.jpg"), COMMENT_DESCRIPTION), "alone");
}

TEST(Comments, TravelFromOneFormatToTheOther) {
  TestFolder folder;
  Picture source = MakePicture(40, 40, 24), loaded, back;
  SetComment(source, COMMENT_COPYRIGHT, "(c) nobody");
  ASSERT_EQ(Save(folder.Path(u"a.jpg"), source, FMT_JPEG), SUCCESS);
  ASSERT_EQ(Load(folder.Path(u"a.jpg"), loaded), SUCCESS);
  ASSERT_EQ(Save(folder.Path(u"a.png"), loaded, FMT_PNG, 24, 6), SUCCESS);
  EXPECT_EQ(Comment(folder.Path(u"a.png"), COMMENT_COPYRIGHT), "(c) nobody");
  ASSERT_EQ(Load(folder.Path(u"a.png"), back), SUCCESS);
  ASSERT_EQ(Save(folder.Path(u"b.webp"), back, FMT_WEBP), SUCCESS);
  EXPECT_EQ(Comment(folder.Path(u"b.webp"), COMMENT_COPYRIGHT), "(c) nobody");
}

TEST(Comments, AreCutToTheBufferAndTellTheirWholeLength) {
  TestFolder folder;
  const auto path = folder.Path(u"a.png");
  Picture source = MakePicture(20, 20, 24);
  SetComment(source, COMMENT_DESCRIPTION, "0123456789");
  ASSERT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS);
  char text[5];
  EXPECT_EQ(ReadFileComment(Text(path).c_str(), COMMENT_DESCRIPTION, text, sizeof text, nullptr), 11);
  EXPECT_STREQ(text, "0123");
  EXPECT_LT(ReadFileComment(Text(path).c_str(), COMMENT_AUTHOR, text, sizeof text, nullptr), 1);
}

// An Exif block with a camera's make, a maker note at a fixed offset and orientation 6, big-endian.
std::vector<uint8_t> CameraExif() {
  std::vector<uint8_t> block = {'M',  'M',  0, 42, 0, 0,  0, 8, 0,   3,   0x01, 0x0F, 0, 2, 0, 0,
                                0,    8,    0, 0,  0, 50,                           // make
                                0x01, 0x12, 0, 3,  0, 0,  0, 1, 0,   6,   0,    0,  // orientation
                                0x92, 0x7C, 0, 7,  0, 0,  0, 4, 'n', 'o', 't',  'e',  0, 0, 0, 0};
  for (const char letter : {'C', 'a', 'm', 'e', 'r', 'a', '1', '\0'}) block.push_back(static_cast<uint8_t>(letter));
  return block;
}

TEST(Exif, IsKeptWithOrientationResetAndNothingMoved) {
  const std::vector<uint8_t> exif = CameraExif();
  for (const int32_t format : {FMT_JPEG, FMT_PNG, FMT_WEBP}) {
    TestFolder folder;
    const auto path = folder.Path(u"a");
    Picture source = MakePicture(40, 30, 24), loaded;
    ASSERT_EQ(SetBitmapMetadata(&source, METADATA_EXIF, exif.data(), exif.size()), SUCCESS);
    source->viewPerspective = VIEW_RIGHT_TOP;
    ASSERT_EQ(Save(path, source, format), SUCCESS);
    ASSERT_EQ(Load(path, loaded), SUCCESS);
    EXPECT_EQ(loaded->viewPerspective, VIEW_TOP_LEFT) << format;
    EXPECT_EQ(loaded->width, 30);
    EXPECT_EQ(Comment(path, COMMENT_MAKE), "Camera1");
    const std::vector<uint8_t> kept = Block(loaded, METADATA_EXIF);
    ASSERT_GT(kept.size(), exif.size());
    EXPECT_TRUE(std::equal(exif.begin() + 8, exif.end(), kept.begin() + 8))
        << "old bytes stay where maker notes expect them";
  }
}

TEST(Exif, OfRandomBytesDoesNoHarm) {
  TestFolder folder;
  uint32_t random = 99;
  for (int32_t round = 0; round < 200; ++round) {
    std::vector<uint8_t> exif = CameraExif();
    exif.resize(exif.size() + static_cast<size_t>(round % 50));
    for (size_t i = 4; i < exif.size(); ++i) {
      random = random * 1664525u + 1013904223u;
      if ((random >> 28) < 4) exif[i] = static_cast<uint8_t>(random >> 16);
    }
    Picture source = MakePicture(9, 9, 24), loaded;
    SetBitmapMetadata(&source, METADATA_EXIF, exif.data(), exif.size());
    const auto path = folder.Path(u"a.jpg");
    ASSERT_EQ(Save(path, source, FMT_JPEG), SUCCESS);
    EXPECT_EQ(Load(path, loaded), SUCCESS);
  }
}

// The least that passes for a profile: a header with signature and colour space.
std::vector<uint8_t> FakeProfile(const char* space) {
  std::vector<uint8_t> profile(300, 7);
  std::memcpy(profile.data() + 16, space, 4);
  std::memcpy(profile.data() + 36, "acsp", 4);
  return profile;
}

TEST(Profile, IsKeptWhereItFitsThePixels) {
  TestFolder folder;
  const auto path = folder.Path(u"a");
  for (const int32_t format : {FMT_JPEG, FMT_WEBP, FMT_CMP, FMT_TIFF_LZW, FMT_JP2}) {
    for (const char* space : {"RGB ", "CMYK"}) {
      Picture source = MakePicture(40, 30, 24), loaded;
      const std::vector<uint8_t> profile = FakeProfile(space);
      SetBitmapMetadata(&source, METADATA_ICC_PROFILE, profile.data(), profile.size());
      ASSERT_EQ(Save(path, source, format), SUCCESS);
      ASSERT_EQ(Load(path, loaded), SUCCESS);
      const bool fits = std::strcmp(space, "RGB ") == 0;
      EXPECT_EQ(Block(loaded, METADATA_ICC_PROFILE), fits ? profile : std::vector<uint8_t>()) << format << space;
      FILEINFO info;
      ASSERT_EQ(Info(path, info), SUCCESS);
      EXPECT_EQ((info.flags & FILEINFO_HAS_PROFILE) != 0, fits);
    }
  }
}

TEST(Xmp, IsKept) {
  TestFolder folder;
  const std::string packet = "<x:xmpmeta xmlns:x='adobe:ns:meta/'/>";
  for (const int32_t format : {FMT_JPEG, FMT_PNG, FMT_WEBP, FMT_TIFF_LZW, FMT_JP2}) {
    Picture source = MakePicture(40, 30, 24), loaded;
    SetBitmapMetadata(&source, METADATA_XMP, packet.data(), packet.size());
    ASSERT_EQ(Save(folder.Path(u"a"), source, format), SUCCESS);
    ASSERT_EQ(Load(folder.Path(u"a"), loaded), SUCCESS);
    EXPECT_EQ(Block(loaded, METADATA_XMP), std::vector<uint8_t>(packet.begin(), packet.end())) << format;
  }
}

// The packet as a saved file has it.
std::string SavedXmp(const std::string& packet) {
  TestFolder folder;
  Picture source = MakePicture(8, 8, 24), loaded;
  SetBitmapMetadata(&source, METADATA_XMP, packet.data(), packet.size());
  EXPECT_EQ(Save(folder.Path(u"a"), source, FMT_PNG), SUCCESS);
  EXPECT_EQ(Load(folder.Path(u"a"), loaded), SUCCESS);
  const std::vector<uint8_t> saved = Block(loaded, METADATA_XMP);
  return std::string(saved.begin(), saved.end());
}

TEST(Xmp, TellsViewersOfASavedPictureNotToTurnIt) {
  EXPECT_EQ(SavedXmp("<d tiff:Orientation=\"6\" a='6'/>"), "<d tiff:Orientation=\"1\" a='6'/>");
  EXPECT_EQ(SavedXmp("<d tiff:Orientation = '8'/>"), "<d tiff:Orientation = '1'/>");
  EXPECT_EQ(SavedXmp("<tiff:Orientation>3</tiff:Orientation>"), "<tiff:Orientation>1</tiff:Orientation>");
  EXPECT_EQ(SavedXmp("<tiff:Orientation>1</tiff:Orientation>"), "<tiff:Orientation>1</tiff:Orientation>");
}

TEST(Xmp, WithAStrangeOrientationIsLeftAlone) {
  for (const char* packet : {"<tiff:Orientation>66</tiff:Orientation>", "<tiff:Orientation>x</tiff:Orientation>",
                             "tiff:Orientation", "tiff:Orientation=\"", "tiff:Orientation=\"6"}) {
    EXPECT_EQ(SavedXmp(packet), packet);
  }
}

TEST(Exif, OfASavedPictureTellsItsResolution) {
  for (const int32_t format : {FMT_WEBP, FMT_EXIF_JPEG_422, FMT_JP2, FMT_PNG, FMT_TIFF_LZW}) {
    TestFolder folder;
    const auto path = folder.Path(u"a");
    Picture source = MakePicture(40, 30, 24);
    source->xResolution = 240;
    source->yResolution = 200;
    ASSERT_EQ(Save(path, source, format), SUCCESS);
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ(info.xResolution, 240) << format;
    EXPECT_EQ(info.yResolution, 200) << format;
  }
}

TEST(Stamp, IsWrittenWhenAskedForAndReadAlone) {
  for (const int32_t format : {FMT_JPEG_420, FMT_EXIF_JPEG_422, FMT_CMP}) {
    for (const int32_t bits : {8, 24}) {
      TestFolder folder;
      const auto path = folder.Path(u"a");
      Picture source = MakePicture(400, 300, 24), stamp;
      SAVEFILEOPTION option = SaveOption();
      option.flags |= SAVEFILE_STAMP;
      option.stampWidth = 100;
      option.stampHeight = 100;
      option.stampBitsPerPixel = bits;
      ASSERT_EQ(Save(path, source, format, 24, 20, &option), SUCCESS);
      FILEINFO info;
      ASSERT_EQ(Info(path, info), SUCCESS);
      EXPECT_TRUE(info.flags & FILEINFO_HAS_STAMP);
      ASSERT_EQ(ReadFileStamp(Text(path).c_str(), &stamp, sizeof(BITMAPHANDLE), nullptr), SUCCESS) << format;
      EXPECT_EQ(stamp->width, 100);
      EXPECT_EQ(stamp->height, 75);
      EXPECT_EQ(stamp->bitsPerPixel, bits);
      Picture small;
      ASSERT_EQ(DuplicateBitmap(&small, &source), SUCCESS);
      ASSERT_EQ(SizeBitmap(&small, 100, 75, SIZE_BICUBIC), SUCCESS);
      if (bits == 24) {
        EXPECT_GT(Psnr(small.bitmap, stamp.bitmap), 24);
      }
    }
  }
}

TEST(Stamp, IsUprightLikeThePicture) {
  TestFolder folder;
  const auto path = folder.Path(u"a.jpg");
  Picture source = MakePicture(400, 300, 24), stamp;
  source->viewPerspective = VIEW_RIGHT_TOP;
  SAVEFILEOPTION option = SaveOption();
  option.flags |= SAVEFILE_STAMP;
  ASSERT_EQ(Save(path, source, FMT_JPEG, 24, 20, &option), SUCCESS);
  ASSERT_EQ(ReadFileStamp(Text(path).c_str(), &stamp, sizeof(BITMAPHANDLE), nullptr), SUCCESS);
  EXPECT_EQ(stamp->width, 90);
  EXPECT_EQ(stamp->height, 120);
}

TEST(Stamp, ThatIsNotThereHasItsCode) {
  TestFolder folder;
  for (const int32_t format : {FMT_JPEG, FMT_PNG, FMT_BMP, FMT_CMP, FMT_WEBP}) {
    Picture source = MakePicture(40, 30, 24), stamp;
    ASSERT_EQ(Save(folder.Path(u"a"), source, format), SUCCESS);
    EXPECT_EQ(ReadFileStamp(Text(folder.Path(u"a")).c_str(), &stamp, sizeof(BITMAPHANDLE), nullptr), ERROR_NO_STAMP);
  }
}

}  // namespace
