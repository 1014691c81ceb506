// The size at which formats that keep several sizes are loaded.
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "file_test_support.h"

namespace {

using namespace zvtest;

// Sets a load size for the length of a scope.
class WithLoadSize {
 public:
  WithLoadSize(int32_t format, int32_t width, int32_t height) : format_(format) {
    EXPECT_EQ(SetLoadSize(format, width, height), SUCCESS);
  }
  WithLoadSize(const WithLoadSize&) = delete;
  WithLoadSize& operator=(const WithLoadSize&) = delete;
  ~WithLoadSize() { SetLoadSize(format_, 0, 0); }

 private:
  int32_t format_;
};

class LoadSizeOf : public testing::Test {
 protected:
  void WriteIcon(int32_t format = FMT_ICO) {
    const IMAGESIZE list[] = {{16, 16}, {32, 32}, {48, 48}, {128, 128}};
    ASSERT_EQ(SetSaveSizeList(4, list), SUCCESS);
    Picture source = MakePicture(256, 256, 24);
    EXPECT_EQ(Save(path, source, format, 32, format == FMT_ICO_PNG ? 6 : 2), SUCCESS);
    EXPECT_EQ(SetSaveSizeList(0, nullptr), SUCCESS);
  }
  int32_t LoadedWidth(int32_t format, int32_t width, int32_t height) {
    const WithLoadSize size(format, width, height);
    Picture loaded;
    EXPECT_EQ(Load(path, loaded), SUCCESS);
    return loaded->width;
  }

  TestFolder folder;
  std::filesystem::path path = folder.Path(u"sizes");
};

TEST_F(LoadSizeOf, AnIconIsMetByTheNextLargerEntry) {
  WriteIcon();
  EXPECT_EQ(LoadedWidth(FMT_ICO, 40, 40), 48);
  EXPECT_EQ(LoadedWidth(FMT_ICO, 48, 48), 48);
  EXPECT_EQ(LoadedWidth(FMT_ICO, 1000, 1000), 128) << "the largest there is";
  EXPECT_EQ(LoadedWidth(FMT_ICO, 0, 0), 128);
}

TEST_F(LoadSizeOf, AWidthAloneDecides) {
  WriteIcon();
  EXPECT_EQ(LoadedWidth(FMT_ICO, 20, 0), 32);
  EXPECT_EQ(LoadedWidth(FMT_ICO, 100, 0), 128);
}

TEST_F(LoadSizeOf, TheFormatGoesBeforeTheOneOfTheFileInformation) {
  WriteIcon();
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_EQ(info.width, 128);
  info.flags = FILEINFO_LOAD_SIZE_GIVEN;
  info.width = info.height = 48;
  Picture given, set;
  FILEINFO copy = info;
  ASSERT_EQ(Load(path, given, 0, ORDER_BGR_OR_GRAY, nullptr, &copy), SUCCESS);
  EXPECT_EQ(given->width, 48);
  const WithLoadSize size(FMT_ICO, 16, 16);
  ASSERT_EQ(Load(path, set, 0, ORDER_BGR_OR_GRAY, nullptr, &info), SUCCESS);
  EXPECT_EQ(set->width, 16);
}

TEST_F(LoadSizeOf, TheFormatIsWhatTheFileInformationTells) {
  WriteIcon();
  const WithLoadSize size(FMT_ICO, 30, 30);
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_EQ(info.width, 32);
}

// Writes a file of one format and asks for another of the same codec at a small size.
struct Relatives {
  int32_t format, other;
};

class LoadSizeOfARelative : public LoadSizeOf, public testing::WithParamInterface<Relatives> {
 protected:
  void WriteFile() {
    const int32_t format = GetParam().format;
    if (format == FMT_ICO || format == FMT_ICO_PNG) {
      WriteIcon(format);
      return;
    }
    Picture source = MakePicture(128, 128, 24);
    ASSERT_EQ(Save(path, source, format), SUCCESS);
  }
};

TEST_P(LoadSizeOfARelative, LeavesTheFileAtItsFullSize) {
  WriteFile();
  const WithLoadSize size(GetParam().other, 16, 16);
  FILEINFO info, loadInfo = {};
  loadInfo.uStructSize = sizeof loadInfo;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_EQ(info.format, GetParam().format);
  EXPECT_EQ(info.width, 128);
  EXPECT_EQ(info.height, 128);
  Picture loaded;
  ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, nullptr, &loadInfo), SUCCESS);
  EXPECT_EQ(loaded->width, 128);
  EXPECT_EQ(loaded->height, 128);
  EXPECT_EQ(loadInfo.width, 128);
}

TEST_P(LoadSizeOfARelative, DoesNotStandInTheWayOfItsOwn) {
  WriteFile();
  const WithLoadSize other(GetParam().other, 16, 16);
  const WithLoadSize own(GetParam().format, 32, 32);
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_EQ(info.format, GetParam().format) << "a size does not change what the file is";
  EXPECT_EQ(info.width, 32);
  Picture loaded;
  ASSERT_EQ(Load(path, loaded), SUCCESS);
  EXPECT_EQ(loaded->width, 32);
}

TEST_P(LoadSizeOfARelative, DoesNotStandInTheWayOfTheSizeThatTheFileInformationGives) {
  WriteFile();
  const WithLoadSize other(GetParam().other, 16, 16);
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  info.flags = FILEINFO_LOAD_SIZE_GIVEN;
  info.width = info.height = 32;
  Picture loaded;
  ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, nullptr, &info), SUCCESS);
  EXPECT_EQ(loaded->width, 32);
}

INSTANTIATE_TEST_SUITE_P(ByFormats, LoadSizeOfARelative,
                         testing::Values(Relatives{FMT_J2K, FMT_JP2}, Relatives{FMT_JP2, FMT_J2K},
                                         Relatives{FMT_J2K, FMT_JPX}, Relatives{FMT_ICO, FMT_ICO_PNG},
                                         Relatives{FMT_ICO_PNG, FMT_ICO}, Relatives{FMT_ICO, FMT_CUR}),
                         [](const auto& formats) {
                           return std::to_string(formats.param.format) + "Beside" + std::to_string(formats.param.other);
                         });

// An icon as programs have them: small pictures as bitmaps, the large one as PNG.
TEST_F(LoadSizeOf, AnIconOfBothCompressionsIsThatOfItsLargestEntry) {
  WriteIcon(FMT_ICO_PNG);
  const std::vector<uint8_t> compressed = ReadBytes(path);
  WriteIcon(FMT_ICO);
  std::vector<uint8_t> icon = ReadBytes(path);
  const auto entry = [](const std::vector<uint8_t>& file, uint8_t side) {
    size_t at = 6;
    while (file[at] != side) at += 16;
    return at;
  };
  const auto value = [](const std::vector<uint8_t>& file, size_t at) {
    return size_t{file[at]} | size_t{file[at + 1]} << 8 | size_t{file[at + 2]} << 16 | size_t{file[at + 3]} << 24;
  };
  const size_t from = entry(compressed, 128), to = entry(icon, 128);
  const size_t bytes = value(compressed, from + 8), offset = value(compressed, from + 12), end = icon.size();
  for (int i = 0; i < 4; ++i) {
    icon[to + 8 + static_cast<size_t>(i)] = static_cast<uint8_t>(bytes >> (8 * i));
    icon[to + 12 + static_cast<size_t>(i)] = static_cast<uint8_t>(end >> (8 * i));
  }
  icon.insert(icon.end(), compressed.begin() + static_cast<ptrdiff_t>(offset),
              compressed.begin() + static_cast<ptrdiff_t>(offset + bytes));
  WriteBytes(path, icon);
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_ICO_PNG);
  EXPECT_EQ(info.width, 128);
  EXPECT_EQ(LoadedWidth(FMT_ICO, 40, 40), 128) << "the size of another number";
  const WithLoadSize size(FMT_ICO_PNG, 40, 40);
  Picture loaded;
  ASSERT_EQ(Load(path, loaded, 0, ORDER_BGR_OR_GRAY, nullptr, &info), SUCCESS);
  EXPECT_EQ(loaded->width, 48);
  EXPECT_EQ(info.format, FMT_ICO_PNG);
}

TEST_F(LoadSizeOf, TheSizesOfAFileAreThoseOfItsFullSizeWhateverIsSet) {
  Picture source = MakePicture(128, 64, 24);
  ASSERT_EQ(Save(path, source, FMT_J2K), SUCCESS);
  const WithLoadSize size(FMT_J2K, 16, 8);
  FORMATRESOLUTIONS resolutions = {};
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), nullptr, &resolutions, nullptr), SUCCESS);
  ASSERT_EQ(resolutions.count, 4) << "the file, and three halvings that leave eight rows";
  std::vector<IMAGESIZE> sizes(4);
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), sizes.data(), &resolutions, nullptr), SUCCESS);
  EXPECT_EQ(sizes[0].width, 128);
  EXPECT_EQ(sizes[3].width, 16);
}

TEST_F(LoadSizeOf, TheSizesOfAFileNeedRoomForAll) {
  WriteIcon();
  FORMATRESOLUTIONS resolutions;
  std::fill_n(reinterpret_cast<uint8_t*>(&resolutions), sizeof resolutions, uint8_t{0xA5});
  resolutions.count = 3;
  IMAGESIZE sizes[4] = {{0, 0}, {0, 0}, {0, 0}, {-1, -1}};
  EXPECT_EQ(GetFormatResolutions(Text(path).c_str(), sizes, &resolutions, nullptr), ERROR_BUFFER_TOO_SMALL);
  EXPECT_EQ(resolutions.count, 3);
  EXPECT_EQ(sizes[2].width, 32);
  EXPECT_EQ(sizes[3].width, -1) << "nothing is written beyond the room";
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), nullptr, &resolutions, nullptr), SUCCESS);
  EXPECT_EQ(resolutions.count, 4) << "stands at the very start of the record";
  EXPECT_TRUE(std::all_of(std::begin(resolutions.reserved4), std::end(resolutions.reserved4),
                          [](uint8_t byte) { return byte == 0xA5; }));
}

TEST_F(LoadSizeOf, TheSizesOfAFormatWithOneAreThatAlone) {
  Picture source = MakePicture(70, 50, 24);
  ASSERT_EQ(Save(path, source, FMT_PNG, 0, 6), SUCCESS);
  FORMATRESOLUTIONS resolutions = {.count = 1, .reserved4 = {}};
  IMAGESIZE size = {};
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), &size, &resolutions, nullptr), SUCCESS);
  EXPECT_EQ(resolutions.count, 1);
  EXPECT_EQ(size.width, 70);
  EXPECT_EQ(size.height, 50);
}

// The three sizes that are stored plainly, all of them grey; turned images stand on their side.
std::vector<uint8_t> MakePhotoCd(bool turned) {
  constexpr size_t kSector = 2048;
  std::vector<uint8_t> bytes(389 * kSector, 128);
  std::fill_n(bytes.begin(), 3 * kSector, uint8_t{0});
  constexpr std::string_view kMark = "PCD_IPI";
  std::copy(kMark.begin(), kMark.end(), bytes.begin() + kSector);
  bytes[0x0E02] = turned ? 1 : 0;
  return bytes;
}

TEST_F(LoadSizeOf, APhotoCdImageIsMetByTheNextLargerStoredSize) {
  path = folder.Path(u"image.pcd");
  WriteBytes(path, MakePhotoCd(false));
  FORMATRESOLUTIONS resolutions = {.count = 8, .reserved4 = {}};
  IMAGESIZE sizes[8];
  ASSERT_EQ(GetFormatResolutions(Text(path).c_str(), sizes, &resolutions, nullptr), SUCCESS);
  ASSERT_EQ(resolutions.count, 3);
  EXPECT_EQ(sizes[0].width, 768);
  EXPECT_EQ(sizes[2].width, 192);
  EXPECT_EQ(LoadedWidth(FMT_PCD, 250, 0), 384);
  EXPECT_EQ(LoadedWidth(FMT_PCD, 192, 128), 192);
  EXPECT_EQ(LoadedWidth(FMT_PCD, 2000, 0), 768) << "the largest there is";
  EXPECT_EQ(LoadedWidth(FMT_PCD, 0, 0), 768);
}

TEST_F(LoadSizeOf, APhotoCdImageOnItsSideIsComparedAsItIsShown) {
  path = folder.Path(u"image.pcd");
  WriteBytes(path, MakePhotoCd(true));
  EXPECT_EQ(LoadedWidth(FMT_PCD, 200, 0), 256);
  EXPECT_EQ(LoadedWidth(FMT_PCD, 300, 0), 512);
}

}  // namespace
