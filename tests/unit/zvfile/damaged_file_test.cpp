// Bad input: cut short, changed, empty, forged sizes, wrong names. The answer is a failure code, never a crash or a hang.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>

#include "file_test_support.h"

namespace {

using namespace zvtest;

struct Sample {
  const char* name;
  int32_t format;
  int32_t bits;
  int32_t passes;
  int32_t quality;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }

class Damaged : public testing::TestWithParam<Sample> {
 protected:
  std::vector<uint8_t> MakeFile() {
    Picture source = MakePicture(120, 90, GetParam().bits);
    SAVEFILEOPTION option = SaveOption();
    option.passes = GetParam().passes;
    EXPECT_EQ(Save(path_, source, GetParam().format, GetParam().bits, GetParam().quality, &option), SUCCESS);
    return ReadBytes(path_);
  }

  TestFolder folder_;
  std::filesystem::path path_ = folder_.Path(u"sample");
};

TEST_P(Damaged, CutShortAnywhereGivesAFailureCode) {
  const std::vector<uint8_t> whole = MakeFile();
  for (size_t sixteenth = 1; sixteenth < 16; ++sixteenth) {
    WriteBytes(path_, {whole.begin(), whole.begin() + static_cast<ptrdiff_t>(whole.size() * sixteenth / 16)});
    Picture loaded;
    const int32_t result = Load(path_, loaded);
    EXPECT_TRUE(result == ERROR_FILE_DAMAGED || result == ERROR_FILE_FORMAT) << result << " at " << sixteenth << "/16";
    EXPECT_FALSE(loaded->flags & BITMAP_FLAG_ALLOCATED);
  }
}

TEST_P(Damaged, HeadCutShortGivesAFailureCodeToInformationToo) {
  const std::vector<uint8_t> whole = MakeFile();
  for (size_t bytes = 1; bytes < std::min<size_t>(whole.size(), 64); ++bytes) {
    WriteBytes(path_, {whole.begin(), whole.begin() + static_cast<ptrdiff_t>(bytes)});
    Picture loaded;
    EXPECT_NE(Load(path_, loaded), SUCCESS) << bytes << " bytes";
    FILEINFO info;
    const int32_t result = Info(path_, info, 1);
    EXPECT_TRUE(result == SUCCESS || result < 0);
  }
}

TEST_P(Damaged, ChangedBytesNeverDoMoreThanFail) {
  const std::vector<uint8_t> whole = MakeFile();
  uint32_t random = 12345;
  for (int32_t round = 0; round < 300; ++round) {
    std::vector<uint8_t> changed = whole;
    for (int32_t i = 0; i < 1 + round % 4; ++i) {
      random = random * 1664525u + 1013904223u;
      // Half of the changes hit the first 200 bytes, where the headers are.
      const size_t range = round % 2 ? whole.size() : std::min<size_t>(whole.size(), 200);
      changed[(random >> 8) % range] = static_cast<uint8_t>(random >> 24);
    }
    WriteBytes(path_, changed);
    Picture loaded, stamp;
    FILEINFO info;
    const int32_t result = Load(path_, loaded);
    EXPECT_TRUE(result == SUCCESS || result < 0);
    EXPECT_EQ(result == SUCCESS, (loaded->flags & BITMAP_FLAG_ALLOCATED) != 0);
    Info(path_, info, 1);
    ReadFileStamp(Text(path_).c_str(), &stamp, sizeof(BITMAPHANDLE), nullptr);
    char text[264];
    ReadFileComment(Text(path_).c_str(), COMMENT_DESCRIPTION, text, sizeof text, nullptr);
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, Damaged,
                         testing::Values(Sample{"JPEG", FMT_JPEG_420, 24, 0, 2},
                                         Sample{"progressive JPEG", FMT_JPEG, 24, -1, 2},
                                         Sample{"grey JPEG", FMT_JPEG, 8, 0, 20}, Sample{"PNG", FMT_PNG, 24, 0, 6},
                                         Sample{"PNG palette", FMT_PNG, 4, 0, 9}, Sample{"BMP", FMT_BMP, 24, 0, 0},
                                         Sample{"BMP palette", FMT_BMP, 1, 0, 0},
                                         Sample{"BMP RLE", FMT_BMP_RLE, 8, 0, 0}, Sample{"CMP", FMT_CMP, 24, 0, 2},
                                         Sample{"WebP", FMT_WEBP, 24, 0, 20},
                                         Sample{"WebP lossless", FMT_WEBP, 24, 0, 2}, Sample{"JP2", FMT_JP2, 24, 0, 2},
                                         Sample{"J2K", FMT_J2K, 24, 0, 2}, Sample{"icon", FMT_ICO, 32, 0, 0},
                                         Sample{"PNG icon", FMT_ICO_PNG, 32, 0, 6}));

int32_t LoadOf(const std::filesystem::path& path) {
  Picture loaded;
  return Load(path, loaded);
}

TEST(BadPath, GivesItsOwnCode) {
  TestFolder folder;
  FILEINFO info;
  EXPECT_EQ(LoadOf(folder.Path(u"nothing.png")), ERROR_FILE_MISSING);
  EXPECT_EQ(Info(folder.Path(u"nothing.png"), info), ERROR_FILE_MISSING);
  EXPECT_EQ(LoadOf(folder.Path(u"no folder") / "a.png"), ERROR_FILE_MISSING);
  EXPECT_EQ(LoadOf(folder.Folder()), ERROR_FILE_MISSING);
  WriteBytes(folder.Path(u"empty.png"), {});
  EXPECT_EQ(LoadOf(folder.Path(u"empty.png")), ERROR_FILE_EMPTY);
  EXPECT_EQ(Info(folder.Path(u"empty.png"), info), ERROR_FILE_EMPTY);
  WriteBytes(folder.Path(u"text.png"), {'h', 'e', 'l', 'l', 'o', ' ', 'w', 'o', 'r', 'l', 'd'});
  EXPECT_EQ(LoadOf(folder.Path(u"text.png")), ERROR_FILE_FORMAT);
  EXPECT_EQ(Info(folder.Path(u"text.png"), info), ERROR_FILE_FORMAT);
}

TEST(BadArgument, IsRefused) {
  TestFolder folder;
  Picture picture = MakePicture(4, 4, 24);
  const ZvText path = Text(folder.Path(u"a.png"));
  FILEINFO info = {};
  LOADFILEOPTION wrongTag = LoadOption();
  wrongTag.uStructSize = 47;
  EXPECT_EQ(GetFileInfo(nullptr, &info, sizeof info, 0, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(GetFileInfo(path.c_str(), nullptr, sizeof info, 0, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(GetFileInfo(path.c_str(), &info, sizeof info - 1, 0, nullptr), ERROR_BAD_RECORD_SIZE);
  EXPECT_EQ(GetFileInfo(path.c_str(), &info, sizeof info, 0, &wrongTag), ERROR_BAD_RECORD_SIZE);
  Picture loaded;
  EXPECT_EQ(LoadBitmapFile(path.c_str(), &loaded, 271, 0, 4, nullptr, nullptr), ERROR_BAD_RECORD_SIZE);
  EXPECT_EQ(LoadBitmapFile(path.c_str(), &loaded, 272, 5, 4, nullptr, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(LoadBitmapFile(path.c_str(), &loaded, 272, 0, 9, nullptr, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SaveBitmapToFile(path.c_str(), nullptr, FMT_PNG, 24, 6, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SaveBitmapToFile(path.c_str(), &picture, 99999, 24, 6, nullptr), ERROR_FEATURE_UNSUPPORTED);
  EXPECT_EQ(SaveBitmapToFile(path.c_str(), &picture, FMT_CMP_OLD, 24, 6, nullptr), ERROR_FEATURE_UNSUPPORTED);
  Picture empty;
  InitBitmapHandle(&empty, sizeof(BITMAPHANDLE), 4, 4, 24);
  EXPECT_EQ(SaveBitmapToFile(path.c_str(), &empty, FMT_PNG, 24, 6, nullptr), ERROR_NO_IMAGE);
  char text[8];
  EXPECT_EQ(ReadFileComment(path.c_str(), -1, text, 8, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(DeleteFilePage(nullptr, 1, 0, nullptr), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(folder.FileCount(), 0u);
}

TEST(WrongName, IsOfNoConsequenceToSignedFormats) {
  TestFolder folder;
  Picture source = MakePicture(20, 20, 24);
  ASSERT_EQ(Save(folder.Path(u"really_png.jpg"), source, FMT_PNG, 24, 6), SUCCESS);
  ASSERT_EQ(Save(folder.Path(u"no_extension"), source, FMT_BMP), SUCCESS);
  FILEINFO info;
  ASSERT_EQ(Info(folder.Path(u"really_png.jpg"), info), SUCCESS);
  EXPECT_EQ(info.format, FMT_PNG);
  ASSERT_EQ(Info(folder.Path(u"no_extension"), info), SUCCESS);
  EXPECT_EQ(info.format, FMT_BMP);
}

TEST(PageNumber, BeyondTheLastGivesItsCode) {
  TestFolder folder;
  Picture source = MakePicture(20, 20, 24);
  for (const int32_t format : {FMT_JPEG, FMT_PNG, FMT_BMP, FMT_CMP, FMT_WEBP, FMT_JP2, FMT_GIF, FMT_TIFF}) {
    const auto path = folder.Path(u"one");
    ASSERT_EQ(Save(path, source, format), SUCCESS);
    const LOADFILEOPTION second = LoadOption(2);
    Picture loaded;
    FILEINFO info;
    EXPECT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, &second), ERROR_PAGE_MISSING) << format;
    EXPECT_EQ(Info(path, info, 0, 2), ERROR_PAGE_MISSING) << format;
  }
}

uint32_t Crc(const std::vector<uint8_t>& bytes, size_t from, size_t count) {
  uint32_t sum = 0xFFFFFFFFu;
  for (size_t i = from; i < from + count; ++i) {
    sum ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ (sum & 1 ? 0xEDB88320u : 0);
  }
  return ~sum;
}

// Loads a forged file and expects a refusal that does not take the time or memory that the forged size would.
void ExpectQuickRefusal(const std::filesystem::path& path) {
  const auto start = std::chrono::steady_clock::now();
  const int32_t result = LoadOf(path);
  EXPECT_TRUE(result == ERROR_FILE_DAMAGED || result == ERROR_LIMIT_EXCEEDED) << result;
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST(ForgedSize, IsRefusedBeforeMemoryIsTaken) {
  TestFolder folder;
  Picture source = MakePicture(40, 40, 24);
  const auto path = folder.Path(u"forged");
  for (const uint32_t side : {30000u, 999999u, 2000000u, 0x7FFFFFFFu}) {
    ASSERT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS);
    std::vector<uint8_t> png = ReadBytes(path);
    for (size_t i = 0; i < 8; ++i) png[16 + i] = static_cast<uint8_t>(side >> (24 - 8 * (i % 4)));
    const uint32_t sum = Crc(png, 12, 17);
    for (size_t i = 0; i < 4; ++i) png[29 + i] = static_cast<uint8_t>(sum >> (24 - 8 * i));
    WriteBytes(path, png);
    ExpectQuickRefusal(path);
    ASSERT_EQ(Save(path, source, FMT_BMP), SUCCESS);
    std::vector<uint8_t> bmp = ReadBytes(path);
    for (size_t i = 0; i < 8; ++i) bmp[18 + i] = static_cast<uint8_t>(side >> (8 * (i % 4)));
    WriteBytes(path, bmp);
    ExpectQuickRefusal(path);
  }
  ASSERT_EQ(Save(path, source, FMT_JPEG, 24, 20), SUCCESS);
  std::vector<uint8_t> jpeg = ReadBytes(path);
  for (size_t i = 2; i + 9 < jpeg.size(); ++i) {
    if (jpeg[i] == 0xFF && jpeg[i + 1] == 0xC0) {
      for (size_t k = 5; k < 9; ++k) jpeg[i + k] = 0xFD;
      break;
    }
  }
  WriteBytes(path, jpeg);
  ExpectQuickRefusal(path);
}

// The decoder would take kilobytes for each tile before it looks for one.
TEST(ForgedTiles, MoreOfThemThanTheFileHasRoomForAreRefusedWithTheHeader) {
  TestFolder folder;
  const auto path = folder.Path(u"forged.j2k");
  Picture source = MakePicture(40, 40, 24);
  ASSERT_EQ(Save(path, source, FMT_J2K), SUCCESS);
  std::vector<uint8_t> bytes = ReadBytes(path);
  constexpr size_t kTileSizes = 24;
  for (size_t i = 0; i < 8; ++i) bytes[kTileSizes + i] = i % 4 == 3 ? 1 : 0;
  WriteBytes(path, bytes);
  FILEINFO info;
  EXPECT_EQ(Info(path, info, 1), ERROR_FILE_DAMAGED) << "1,600 tiles in " << bytes.size() << " bytes";
}

}  // namespace
