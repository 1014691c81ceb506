// The eight view perspectives: what is saved is upright, whatever the stored rows are, and what a file says of its orientation
// arrives at the bitmap.
#include <gtest/gtest.h>

#include <tuple>

#include "file_test_support.h"

namespace {

using namespace zvtest;

// The stored pixel that stands at (x, y) of the picture as it is looked at: TIFF 6.0, orientation; width and height are those
// of the stored rows.
std::pair<int32_t, int32_t> StoredAt(int32_t perspective, int32_t x, int32_t y, int32_t width, int32_t height) {
  switch (perspective) {
    case 2: return {width - 1 - x, y};
    case 3: return {width - 1 - x, height - 1 - y};
    case 4: return {x, height - 1 - y};
    case 5: return {y, x};
    case 6: return {y, height - 1 - x};
    case 7: return {width - 1 - y, height - 1 - x};
    case 8: return {width - 1 - y, x};
    default: return {x, y};
  }
}

int64_t WrongPixels(const BITMAPHANDLE& stored, int32_t perspective, const BITMAPHANDLE& upright) {
  int64_t wrong = 0;
  for (int32_t y = 0; y < upright.height; ++y) {
    for (int32_t x = 0; x < upright.width; ++x) {
      const auto [column, row] = StoredAt(perspective, x, y, stored.width, stored.height);
      wrong += ColorAt(stored, column, row) == ColorAt(upright, x, y) ? 0 : 1;
    }
  }
  return wrong;
}

int32_t ZV_CALL RowsOf(BITMAPHANDLE* bitmap, uint8_t* buffer, int32_t first, int32_t count, void*) {
  for (int32_t i = 0; i < count; ++i) {
    const int32_t copied = CopyBitmapRow(bitmap, buffer + i * bitmap->bytesPerLine, first + i, bitmap->bytesPerLine);
    if (copied < 1) return copied;
  }
  return SUCCESS;
}

class Perspective : public testing::TestWithParam<std::tuple<int32_t, int32_t, bool>> {};

TEST_P(Perspective, IsAppliedToWhatIsSaved) {
  const auto [perspective, bits, callback] = GetParam();
  TestFolder folder;
  Picture source = MakePicture(43, 37, bits, ORDER_BGR, bits == 64);
  source->viewPerspective = perspective;
  const auto path = folder.Path(u"turned.png");
  const int32_t saved = callback ? SaveFile(Text(path).c_str(), &source, FMT_PNG, 0, 6, SAVEFILE_ROWS_FROM_CALLBACK,
                                            RowsOf, nullptr, nullptr)
                                 : Save(path, source, FMT_PNG, 0, 6);
  ASSERT_EQ(saved, SUCCESS);
  Picture loaded;
  ASSERT_EQ(Load(path, loaded), SUCCESS);
  EXPECT_EQ(loaded->viewPerspective, VIEW_TOP_LEFT);
  ASSERT_EQ(loaded->width, perspective >= 5 ? 37 : 43);
  EXPECT_EQ(WrongPixels(source.bitmap, perspective, loaded.bitmap), 0);
}

INSTANTIATE_TEST_SUITE_P(All, Perspective,
                         testing::Combine(testing::Range(1, 9), testing::Values(1, 4, 8, 24, 32, 48, 64),
                                          testing::Bool()));

// A JPEG file with an Exif segment of the given orientation put behind its start marker.
void SaveWithOrientation(const std::filesystem::path& path, Picture& picture, uint8_t orientation) {
  ASSERT_EQ(Save(path, picture, FMT_JPEG), SUCCESS);
  std::vector<uint8_t> bytes = ReadBytes(path);
  const std::vector<uint8_t> segment = {0xFF, 0xE1, 0, 34, 'E', 'x',         'i', 'f', 0, 0,    'M', 'M',
                                        0,    42,   0, 0,  0,   8,           0,   1,   1, 0x12, 0,   3,
                                        0,    0,    0, 1,  0,   orientation, 0,   0,   0, 0,    0,   0};
  bytes.insert(bytes.begin() + 2, segment.begin(), segment.end());
  WriteBytes(path, bytes);
}

TEST(ExifOrientation, BecomesTheViewPerspective) {
  for (uint8_t orientation = 1; orientation <= 8; ++orientation) {
    TestFolder folder;
    Picture source = MakePicture(48, 32, 24);
    const auto path = folder.Path(u"camera.jpg");
    SaveWithOrientation(path, source, orientation);
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ(info.viewPerspective, orientation);
    EXPECT_EQ(info.width, 48);
    Picture loaded;
    ASSERT_EQ(Load(path, loaded), SUCCESS);
    EXPECT_EQ(loaded->viewPerspective, orientation);
    EXPECT_EQ(loaded->width, 48);
  }
}

TEST(ExifOrientation, IsAppliedWhenAskedForAndResetWhenSaved) {
  for (uint8_t orientation = 1; orientation <= 8; ++orientation) {
    TestFolder folder;
    Picture source = MakePicture(48, 32, 24);
    const auto path = folder.Path(u"camera.jpg"), again = folder.Path(u"again.jpg"), png = folder.Path(u"again.png");
    SaveWithOrientation(path, source, orientation);
    Picture stored, upright;
    ASSERT_EQ(Load(path, stored), SUCCESS);
    LOADFILEOPTION option = LoadOption();
    option.flags |= LOADFILE_ROTATED;
    FILEINFO info = {};
    ASSERT_EQ(Load(path, upright, 0, ORDER_BGR_OR_GRAY, &option, &info), SUCCESS);
    EXPECT_EQ(upright->viewPerspective, VIEW_TOP_LEFT);
    EXPECT_EQ(info.width, upright->width);
    EXPECT_EQ(WrongPixels(stored.bitmap, orientation, upright.bitmap), 0);
    ASSERT_EQ(Save(again, stored, FMT_JPEG), SUCCESS);
    ASSERT_EQ(Save(png, stored, FMT_PNG, 0, 6), SUCCESS);
    for (const auto& saved : {again, png}) {
      ASSERT_EQ(Info(saved, info), SUCCESS);
      EXPECT_EQ(info.viewPerspective, VIEW_TOP_LEFT);
      EXPECT_EQ(info.width, orientation >= 5 ? 32 : 48);
    }
  }
}

}  // namespace
