// Loads that may come in at a smaller scale: a thumbnail made from one is as good as one made from the whole image, which is
// what decides that thumbnails are made this way at all.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ostream>

#include "file_test_support.h"

namespace {

using namespace zvtest;

constexpr double kLevelsAllowed = 2;  // of 255, on average over pixels and channels
constexpr int32_t kThumbnailSide = 150;
constexpr int32_t kMargin = 2;  // the picture loaded has at least this many times the thumbnail's size each way

// Random levels on a grid, the same for the same arguments: a value for each corner of a cell.
double Corner(uint32_t seed, int32_t x, int32_t y) {
  uint32_t state = seed * 374761393u + static_cast<uint32_t>(x) * 668265263u + static_cast<uint32_t>(y) * 2246822519u;
  state = (state ^ (state >> 13)) * 1274126177u;
  return static_cast<double>((state ^ (state >> 16)) & 0xFFFF) / 65535.0;
}

double SmoothNoise(uint32_t seed, double x, double y) {
  const int32_t left = static_cast<int32_t>(x), top = static_cast<int32_t>(y);
  const double dx = x - left, dy = y - top;
  const double sx = dx * dx * (3 - 2 * dx), sy = dy * dy * (3 - 2 * dy);
  const double upper = std::lerp(Corner(seed, left, top), Corner(seed, left + 1, top), sx);
  const double lower = std::lerp(Corner(seed, left, top + 1), Corner(seed, left + 1, top + 1), sx);
  return std::lerp(upper, lower, sy);
}

// What a photograph is made of: levels at all scales with less contrast the finer they are, hard edges, the sensor's noise.
uint8_t PhotographLevel(uint32_t seed, int32_t x, int32_t y, int32_t width) {
  double level = 0, contrast = 0.5;
  for (double cell = width / 3.0; cell > 2; cell /= 2, contrast *= 0.6) {
    level += contrast * SmoothNoise(seed, x / cell, y / cell);
  }
  if (SmoothNoise(77, x * 9.0 / width, y * 9.0 / width) > 0.62) level = 1 - level;  // outlines of things
  const double grain = (Corner(seed + 5, x, y) - 0.5) * 0.06;
  return static_cast<uint8_t>(std::clamp((level + grain) * 235, 0.0, 255.0));
}

Picture Photograph(int32_t width, int32_t height, int32_t bits) {
  Picture picture;
  EXPECT_EQ(CreateBitmap(&picture, sizeof(BITMAPHANDLE), MEMORY_CONVENTIONAL, width, height, bits,
                         bits == 8 ? ORDER_GRAY : ORDER_BGR, nullptr, VIEW_TOP_LEFT, nullptr, 0),
            SUCCESS);
  std::vector<uint8_t> row(static_cast<size_t>(picture->bytesPerLine));
  const int32_t channels = bits / 8;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const uint8_t level = PhotographLevel(1, x, y, width);
      row[static_cast<size_t>(x * channels)] = level;
      for (int32_t c = 1; c < channels; ++c) {
        row[static_cast<size_t>(x * channels + c)] =
            static_cast<uint8_t>((2 * level + PhotographLevel(static_cast<uint32_t>(c + 1), x, y, width)) / 3);
      }
    }
    PutBitmapRow(&picture, row.data(), y, picture->bytesPerLine);
  }
  return picture;
}

IMAGESIZE FitThumbnail(int32_t width, int32_t height) {
  return width > height ? IMAGESIZE{kThumbnailSide, std::max(1, kThumbnailSide * height / width)}
                        : IMAGESIZE{std::max(1, kThumbnailSide * width / height), kThumbnailSide};
}

int32_t LoadReduced(const std::filesystem::path& path, IMAGESIZE sufficient, Picture& picture, FILEINFO* info = nullptr,
                    const LOADFILEOPTION* option = nullptr) {
  picture->width = sufficient.width;
  picture->height = sufficient.height;
  return LoadImageFile(Text(path).c_str(), &picture, sizeof(BITMAPHANDLE), 0, ORDER_BGR_OR_GRAY,
                       LOADFILE_ALLOCATE | LOADFILE_STORE | LOADFILE_MAY_REDUCE, nullptr, nullptr, option, info);
}

Picture ThumbnailOf(Picture& source, IMAGESIZE size) {
  Picture thumbnail;
  EXPECT_EQ(InitBitmapHandle(&thumbnail, sizeof(BITMAPHANDLE), size.width, size.height, source->bitsPerPixel), SUCCESS);
  EXPECT_EQ(AllocateBitmap(&thumbnail, MEMORY_CONVENTIONAL), SUCCESS);
  thumbnail->colorOrder = source->colorOrder;
  EXPECT_EQ(ResizeBitmapInto(&source, &thumbnail, RESIZE_FAVOR_QUALITY), SUCCESS);
  return thumbnail;
}

double AverageDifference(const BITMAPHANDLE& a, const BITMAPHANDLE& b) {
  const size_t samples = static_cast<size_t>(a.width) * static_cast<size_t>(a.bitsPerPixel / 8);
  std::vector<uint8_t> first(static_cast<size_t>(a.bytesPerLine)), second(first.size());
  int64_t sum = 0;
  for (int32_t y = 0; y < a.height; ++y) {
    CopyBitmapRow(&a, first.data(), y, a.bytesPerLine);
    CopyBitmapRow(&b, second.data(), y, b.bytesPerLine);
    for (size_t i = 0; i < samples; ++i) sum += std::abs(first[i] - second[i]);
  }
  return static_cast<double>(sum) / static_cast<double>(samples * static_cast<size_t>(a.height));
}

struct PhotographKind {
  int32_t width, height;
  int32_t bits;
  int32_t format;   // full, half or quarter colour resolution
  int32_t quality;  // 2 (best) to 255
};

void PrintTo(const PhotographKind& kind, std::ostream* out) {
  *out << kind.width << "x" << kind.height << " bits " << kind.bits << " format " << kind.format << " quality "
       << kind.quality;
}

class ReducedPhotograph : public testing::TestWithParam<PhotographKind> {};

TEST_P(ReducedPhotograph, MakesTheSameThumbnailAsTheWholeImage) {
  const PhotographKind kind = GetParam();
  TestFolder folder;
  const auto path = folder.Path(u"photograph.jpg");
  {
    Picture original = Photograph(kind.width, kind.height, kind.bits);
    ASSERT_EQ(Save(path, original, kind.format, 0, kind.quality), SUCCESS);
  }
  const IMAGESIZE size = FitThumbnail(kind.width, kind.height);
  Picture whole, reduced;
  ASSERT_EQ(Load(path, whole), SUCCESS);
  ASSERT_EQ(LoadReduced(path, {kMargin * size.width, kMargin * size.height}, reduced), SUCCESS);
  EXPECT_LT(reduced->width, whole->width);
  EXPECT_GE(reduced->width, kMargin * size.width);
  EXPECT_GE(reduced->height, kMargin * size.height);
  Picture expected = ThumbnailOf(whole, size), made = ThumbnailOf(reduced, size);
  const double difference = AverageDifference(expected.bitmap, made.bitmap);
  RecordProperty("averageDifference", std::to_string(difference));
  EXPECT_LT(difference, kLevelsAllowed);
}

INSTANTIATE_TEST_SUITE_P(
    Jpeg, ReducedPhotograph,
    testing::Values(PhotographKind{4000, 3000, 24, FMT_JPEG_420, 20}, PhotographKind{2400, 1800, 24, FMT_JPEG, 2},
                    PhotographKind{1601, 1207, 24, FMT_JPEG_422, 60}, PhotographKind{1203, 1999, 24, FMT_JPEG_420, 120},
                    PhotographKind{803, 597, 24, FMT_JPEG_420, 20}, PhotographKind{350, 500, 24, FMT_JPEG_420, 20},
                    PhotographKind{1333, 1000, 8, FMT_JPEG, 20}));

TEST(ReducedLoad, KeepsAnImageThatIsNotLargerThanNeeded) {
  TestFolder folder;
  const auto path = folder.Path(u"small.jpg");
  Picture original = Photograph(200, 120, 24);
  ASSERT_EQ(Save(path, original, FMT_JPEG), SUCCESS);
  Picture loaded, whole;
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  ASSERT_EQ(LoadReduced(path, {200, 120}, loaded, &info), SUCCESS);
  EXPECT_EQ(loaded->width, 200);
  EXPECT_EQ(loaded->height, 120);
  EXPECT_FALSE(info.flags & FILEINFO_REDUCED);
  ASSERT_EQ(Load(path, whole), SUCCESS);
  EXPECT_EQ(DifferentPixels(loaded.bitmap, whole.bitmap), 0);
}

TEST(ReducedLoad, LoadsTheWholeImageWhenNoSizeIsGiven) {
  TestFolder folder;
  const auto path = folder.Path(u"any.jpg");
  Picture original = Photograph(400, 300, 24);
  ASSERT_EQ(Save(path, original, FMT_JPEG), SUCCESS);
  Picture loaded;
  ASSERT_EQ(LoadReduced(path, {0, 0}, loaded), SUCCESS);
  EXPECT_EQ(loaded->width, 400);
}

TEST(ReducedLoad, TellsThatThePictureIsReducedAndCallsForItsRowsAlone) {
  TestFolder folder;
  const auto path = folder.Path(u"rows.jpg");
  Picture original = Photograph(1600, 1200, 24);
  ASSERT_EQ(Save(path, original, FMT_JPEG), SUCCESS);
  Picture loaded;
  loaded->width = 150;
  loaded->height = 112;
  int32_t rows = 0;
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  const auto count = [](FILEINFO*, BITMAPHANDLE*, uint8_t*, uint32_t, int32_t first, int32_t rowCount,
                        void* userData) -> int32_t {
    int32_t& total = *static_cast<int32_t*>(userData);
    EXPECT_EQ(total, first);
    total += rowCount;
    return SUCCESS;
  };
  ASSERT_EQ(LoadImageFile(Text(path).c_str(), &loaded, sizeof(BITMAPHANDLE), 0, ORDER_BGR_OR_GRAY,
                          LOADFILE_ALLOCATE | LOADFILE_STORE | LOADFILE_MAY_REDUCE, count, &rows, nullptr, &info),
            SUCCESS);
  EXPECT_EQ(loaded->width, 200) << "an eighth";
  EXPECT_EQ(loaded->height, 150);
  EXPECT_EQ(rows, 150);
  EXPECT_EQ(info.width, 200);
  EXPECT_EQ(info.height, 150);
  EXPECT_TRUE(info.flags & FILEINFO_REDUCED);
}

TEST(ReducedLoad, ReachesTheStreamsInsideAContainer) {
  TestFolder folder;
  const auto path = folder.Path(u"pages.cmp");
  Picture original = Photograph(800, 600, 24);
  ASSERT_EQ(Save(path, original, FMT_CMP), SUCCESS);
  Picture loaded;
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  ASSERT_EQ(LoadReduced(path, {150, 112}, loaded, &info), SUCCESS);
  EXPECT_EQ(loaded->width, 200) << "two eighths";
  EXPECT_EQ(info.format, FMT_CMP);
  EXPECT_TRUE(info.flags & FILEINFO_REDUCED);
}

TEST(ReducedLoad, OfADamagedFileFails) {
  TestFolder folder;
  const auto path = folder.Path(u"cut.jpg");
  Picture original = Photograph(800, 600, 24);
  ASSERT_EQ(Save(path, original, FMT_JPEG), SUCCESS);
  std::vector<uint8_t> bytes = ReadBytes(path);
  bytes.resize(bytes.size() / 2);
  WriteBytes(path, bytes);
  Picture loaded;
  EXPECT_EQ(LoadReduced(path, {150, 112}, loaded), ERROR_FILE_DAMAGED);
  EXPECT_FALSE(loaded->flags & BITMAP_FLAG_ALLOCATED);
}

TEST(ReducedLoad, IsAWholeLoadForFormatsThatDoNotDecodeAtScales) {
  TestFolder folder;
  const auto path = folder.Path(u"whole.png");
  Picture original = Photograph(400, 300, 24);
  ASSERT_EQ(Save(path, original, FMT_PNG, 0, 6), SUCCESS);
  Picture loaded;
  FILEINFO info = {};
  info.uStructSize = sizeof info;
  ASSERT_EQ(LoadReduced(path, {50, 40}, loaded, &info), SUCCESS);
  EXPECT_EQ(DifferentPixels(loaded.bitmap, original.bitmap), 0);
  EXPECT_FALSE(info.flags & FILEINFO_REDUCED);
}

TEST(ReducedLoad, LeavesOtherLoadsWhole) {
  TestFolder folder;
  const auto path = folder.Path(u"other.jpg");
  Picture original = Photograph(400, 300, 24);
  ASSERT_EQ(Save(path, original, FMT_JPEG), SUCCESS);
  Picture loaded;
  loaded->width = 50;
  loaded->height = 40;
  ASSERT_EQ(Load(path, loaded), SUCCESS) << "the bitmap's former size asks for nothing by itself";
  EXPECT_EQ(loaded->width, 400);
}

}  // namespace
