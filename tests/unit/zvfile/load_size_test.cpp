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
  void WriteIcon() {
    const IMAGESIZE list[] = {{16, 16}, {32, 32}, {48, 48}, {128, 128}};
    ASSERT_EQ(SetSaveSizeList(4, list), SUCCESS);
    Picture source = MakePicture(256, 256, 24);
    EXPECT_EQ(Save(path, source, FMT_ICO, 32), SUCCESS);
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
  FORMATRESOLUTIONS resolutions = {sizeof(FORMATRESOLUTIONS), 8, 0};
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
