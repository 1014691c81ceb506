#include <algorithm>

#include "tests/unit/zvcore/test_bitmap.h"

namespace {

// Straightforward resampling of one axis in double: weights of destination sample i over all source samples.
std::vector<double> ReferenceWeights(int32_t i, int32_t source, int32_t destination, int32_t method) {
  std::vector<double> weights(static_cast<size_t>(source));
  const double ratio = static_cast<double>(source) / destination;
  const auto at = [&](int32_t j) -> double& { return weights[static_cast<size_t>(std::clamp(j, 0, source - 1))]; };
  if (method == SIZE_BICUBIC && ratio >= 1) {
    for (int32_t j = 0; j < source; ++j) {
      at(j) = std::max(0.0, std::min(j + 1.0, (i + 1) * ratio) - std::max<double>(j, i * ratio));
    }
  } else if (method == SIZE_BICUBIC) {
    const double center = (i + 0.5) * ratio - 0.5;
    for (int32_t j = static_cast<int32_t>(std::floor(center)) - 1; j <= static_cast<int32_t>(std::floor(center)) + 2;
         ++j) {
      const double d = std::abs(j - center);
      at(j) += d < 1 ? 1.5 * d * d * d - 2.5 * d * d + 1 : -0.5 * d * d * d + 2.5 * d * d - 4 * d + 2;
    }
  } else {
    const double center = (i + 0.5) * ratio - 0.5, reach = std::max(ratio, 1.0);
    for (int32_t j = 0; j < source; ++j) at(j) = std::max(0.0, 1 - std::abs(j - center) / reach);
  }
  double sum = 0;
  for (const double weight : weights) sum += weight;
  for (double& weight : weights) weight /= sum;
  return weights;
}

// The value a channel has before rounding. Colours are weighted by alpha, and alpha is divided out again.
class Reference {
 public:
  Reference(const TestBitmap& bitmap, int32_t width, int32_t height, int32_t method) : source(bitmap) {
    for (int32_t x = 0; x < width; ++x) columns.push_back(ReferenceWeights(x, bitmap->width, width, method));
    for (int32_t y = 0; y < height; ++y) rows.push_back(ReferenceWeights(y, bitmap->height, height, method));
  }

  double Channel(int32_t x, int32_t y, int c) const {
    const bool alpha = source->flags & BITMAP_FLAG_ALPHA;
    double sum = 0, alphaSum = 0;
    for (int32_t v = 0; v < source->height; ++v) {
      const double down = rows[static_cast<size_t>(y)][static_cast<size_t>(v)];
      if (down == 0) continue;
      for (int32_t u = 0; u < source->width; ++u) {
        const double weight = down * columns[static_cast<size_t>(x)][static_cast<size_t>(u)];
        if (weight == 0) continue;
        const double opacity = alpha ? source.Channel(u, v, 3) : 1;
        alphaSum += weight * opacity;
        sum += weight * source.Channel(u, v, c) * (c < 3 ? opacity : 1);
      }
    }
    if (alpha && c < 3) sum = alphaSum > 0 ? sum / alphaSum : 0;
    return std::clamp(sum, 0.0, static_cast<double>(source.Highest()));
  }

 private:
  const TestBitmap& source;
  std::vector<std::vector<double>> columns, rows;
};

struct Geometry {
  int32_t width, height, newWidth, newHeight;
};

const Geometry kGeometries[] = {
    {40, 30, 20, 15}, {40, 30, 13, 7}, {40, 30, 80, 60}, {40, 30, 41, 29}, {40, 30, 25, 77}, {40, 30, 77, 11},
    {200, 150, 3, 2}, {5, 4, 64, 64},  {1, 1, 9, 9},     {2, 2, 1, 1},     {1, 50, 7, 10},   {90, 1, 33, 1},
    {7, 7, 7, 3},     {7, 7, 3, 7},    {33, 33, 32, 34}, {600, 3, 17, 5},  {3, 600, 5, 17}};

std::vector<Format> ChannelFormats() {
  std::vector<Format> formats;
  for (const Format& format : AllFormats()) {
    const bool gray = format.order == ORDER_GRAY;
    if (gray || format.bits >= 24) formats.push_back(format);
  }
  return formats;
}

class ResizeMethods : public testing::TestWithParam<int32_t> {};

TEST_P(ResizeMethods, StayWithinALevelOfTheReferenceInEveryFormatOfChannels) {
  for (const Format& format : ChannelFormats()) {
    for (const Geometry& g : kGeometries) {
      SCOPED_TRACE(NameOf(format) + " " + std::to_string(g.width) + "x" + std::to_string(g.height) + " to " +
                   std::to_string(g.newWidth) + "x" + std::to_string(g.newHeight));
      TestBitmap source(g.width, g.height, format), bitmap(g.width, g.height, format);
      source.FillWithNoise();
      bitmap.FillWithNoise();
      ASSERT_EQ(SizeBitmap(&bitmap, g.newWidth, g.newHeight, GetParam()), SUCCESS);
      ASSERT_EQ(bitmap->width, g.newWidth);
      ASSERT_EQ(bitmap->height, g.newHeight);
      const Reference reference(source, g.newWidth, g.newHeight, GetParam());
      // Half a level is rounding; a colour at low alpha is worth less than a level of what is seen.
      const double tolerance = format.bits >= 48 || format.bits == 16 ? 4.0 : 1.0;
      for (int32_t y = 0; y < g.newHeight; ++y) {
        for (int32_t x = 0; x < g.newWidth; ++x) {
          const double opacity = format.alpha ? reference.Channel(x, y, 3) / bitmap.Highest() : 1;
          for (int c = 0; c < bitmap.Channels(); ++c) {
            const double weight = format.alpha && c < 3 ? opacity : 1;
            ASSERT_NEAR(bitmap.Channel(x, y, c) * weight, reference.Channel(x, y, c) * weight, tolerance)
                << x << ", " << y << ", channel " << c;
          }
        }
      }
    }
  }
}

TEST_P(ResizeMethods, KeepAnEvenSurfaceEven) {
  for (const Format& format : ChannelFormats()) {
    for (const Geometry& g : kGeometries) {
      SCOPED_TRACE(NameOf(format));
      TestBitmap bitmap(g.width, g.height, format);
      const uint64_t pixel = 0xFFFF33338888CCCC & (format.bits == 64 ? ~uint64_t{0} : (uint64_t{1} << format.bits) - 1);
      for (int32_t y = 0; y < g.height; ++y) {
        for (int32_t x = 0; x < g.width; ++x) bitmap.SetPixel(x, y, pixel);
      }
      ASSERT_EQ(SizeBitmap(&bitmap, g.newWidth, g.newHeight, GetParam()), SUCCESS);
      for (int32_t y = 0; y < g.newHeight; ++y) {
        for (int32_t x = 0; x < g.newWidth; ++x) {
          for (int c = 0; c < bitmap.Channels(); ++c) {
            const int width = bitmap.Highest() == 255 ? 8 : 16;
            const int expected = static_cast<int>(pixel >> (c * width) & static_cast<unsigned>(bitmap.Highest()));
            ASSERT_NEAR(bitmap.Channel(x, y, c), expected, bitmap.Highest() > 255 ? 1 : 0);
          }
        }
      }
    }
  }
}

TEST_P(ResizeMethods, KeepDepthOrderPaletteAndValuesOfEveryFormat) {
  for (const Format& format : AllFormats()) {
    SCOPED_TRACE(NameOf(format));
    TestBitmap bitmap(31, 23, format);
    bitmap.FillWithNoise();
    bitmap->carriedValues[0] = 5;
    bitmap->xResolution = 300;
    if (format.bits == 4) bitmap->palette[3] = {200, 10, 30, 255};
    ASSERT_EQ(SizeBitmap(&bitmap, 20, 40, GetParam()), SUCCESS);
    EXPECT_EQ(bitmap->bitsPerPixel, format.bits);
    EXPECT_EQ(bitmap->colorOrder, format.order);
    EXPECT_EQ((bitmap->flags & BITMAP_FLAG_TOP_DOWN) != 0, format.topDown);
    EXPECT_EQ((bitmap->flags & BITMAP_FLAG_ALPHA) != 0, format.alpha);
    EXPECT_EQ(bitmap->carriedValues[0], 5);
    EXPECT_EQ(bitmap->xResolution, 300);
    if (format.bits == 4) {
      EXPECT_EQ(bitmap->palette[3].blue, 200);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sampled, ResizeMethods, testing::Values(SIZE_BILINEAR, SIZE_BICUBIC));

TEST(ResizeNearest, TakesThePixelUnderTheCentreInEveryFormat) {
  for (const Format& format : AllFormats()) {
    for (const Geometry& g : kGeometries) {
      SCOPED_TRACE(NameOf(format));
      TestBitmap source(g.width, g.height, format), bitmap(g.width, g.height, format);
      source.FillWithNoise();
      bitmap.FillWithNoise();
      ASSERT_EQ(SizeBitmap(&bitmap, g.newWidth, g.newHeight, SIZE_NEAREST), SUCCESS);
      for (int32_t y = 0; y < g.newHeight; ++y) {
        for (int32_t x = 0; x < g.newWidth; ++x) {
          const auto fromX = static_cast<int32_t>((x + 0.5) * g.width / g.newWidth);
          const auto fromY = static_cast<int32_t>((y + 0.5) * g.height / g.newHeight);
          ASSERT_EQ(bitmap.Pixel(x, y), source.Pixel(fromX, fromY)) << x << ", " << y;
        }
      }
    }
  }
}

TEST(ResizePalette, BlendsInColourAndMapsBackToTheNearestEntry) {
  for (const bool topDown : {true, false}) {
    TestBitmap bitmap(4, 2, {4, ORDER_BGR, topDown});
    for (int i = 0; i < 16; ++i) bitmap->palette[i] = {0, 0, 0, 255};
    bitmap->palette[1] = {0, 0, 200, 255};
    bitmap->palette[2] = {200, 0, 0, 255};
    bitmap->palette[9] = {102, 0, 99, 255};  // next to the mean of both
    for (int32_t y = 0; y < 2; ++y) {
      for (int32_t x = 0; x < 4; ++x) bitmap.SetPixel(x, y, x < 2 ? static_cast<uint64_t>(1 + (x + y) % 2) : 2);
    }
    ASSERT_EQ(SizeBitmap(&bitmap, 2, 1, SIZE_BICUBIC), SUCCESS);
    EXPECT_EQ(bitmap.Pixel(0, 0), 9u);
    EXPECT_EQ(bitmap.Pixel(1, 0), 2u);
  }
}

TEST(ResizePalette, OfBlackAndWhiteGivesTheMajority) {
  TestBitmap bitmap(16, 16, {1});
  for (int32_t y = 0; y < 16; ++y) {
    for (int32_t x = 0; x < 16; ++x) bitmap.SetPixel(x, y, (x % 4 == 0 && y % 4 == 0) != (x < 8) ? 1 : 0);
  }
  ASSERT_EQ(SizeBitmap(&bitmap, 4, 4, SIZE_BICUBIC), SUCCESS);
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 4; ++x) EXPECT_EQ(bitmap.Pixel(x, y), x < 2 ? 1u : 0u);
  }
}

TEST(Resize555, KeepsBlackWhiteAndMiddleGrey) {
  TestBitmap bitmap(4, 2, {16});
  for (int32_t y = 0; y < 2; ++y) {
    bitmap.SetPixel(0, y, 0x7FFF);
    bitmap.SetPixel(1, y, 0x7FFF);
    bitmap.SetPixel(2, y, y ? 0x7FFF : 0);
    bitmap.SetPixel(3, y, y ? 0 : 0x7FFF);
  }
  ASSERT_EQ(SizeBitmap(&bitmap, 2, 1, SIZE_BICUBIC), SUCCESS);
  EXPECT_EQ(bitmap.Pixel(0, 0), 0x7FFFu);
  EXPECT_EQ(bitmap.Pixel(1, 0) & 31, 16u);
}

TEST(ResizeAlpha, InvisibleColoursDoNotBleed) {
  for (const int bits : {32, 64}) {
    TestBitmap bitmap(2, 1, {bits, ORDER_BGR, true, true});
    bitmap.SetChannel(0, 0, 0, bitmap.Highest());  // blue, invisible
    bitmap.SetChannel(1, 0, 2, bitmap.Highest());  // red, opaque
    bitmap.SetChannel(1, 0, 3, bitmap.Highest());
    ASSERT_EQ(SizeBitmap(&bitmap, 1, 1, SIZE_BICUBIC), SUCCESS);
    EXPECT_EQ(bitmap.Channel(0, 0, 0), 0);
    EXPECT_EQ(bitmap.Channel(0, 0, 2), bitmap.Highest());
    EXPECT_NEAR(bitmap.Channel(0, 0, 3), bitmap.Highest() / 2.0, 0.6);
  }
}

TEST(ResizeAlpha, PremultipliedColoursNeverExceedTheirAlpha) {
  TestBitmap bitmap(8, 8, {32, ORDER_BGR, true, true});
  bitmap->flags |= BITMAP_FLAG_PREMULTIPLIED;
  for (int32_t y = 0; y < 8; ++y) {
    for (int32_t x = 0; x < 8; ++x) bitmap.SetPixel(x, y, (x + y) % 2 ? 0xFFFFFFFF : 0x40404040);
  }
  ASSERT_EQ(SizeBitmap(&bitmap, 31, 31, SIZE_BICUBIC), SUCCESS);
  for (int32_t y = 0; y < 31; ++y) {
    for (int32_t x = 0; x < 31; ++x) {
      for (int c = 0; c < 3; ++c) ASSERT_LE(bitmap.Channel(x, y, c), bitmap.Channel(x, y, 3));
    }
  }
}

TEST(Resize, SidesAreThoseShown) {
  for (int perspective = 0; perspective <= 8; ++perspective) {
    TestBitmap bitmap(20, 10, {24});
    bitmap->viewPerspective = perspective;
    ASSERT_EQ(SizeBitmap(&bitmap, 6, 4, SIZE_BICUBIC), SUCCESS);
    EXPECT_EQ(bitmap->width, perspective >= 5 ? 4 : 6);
    EXPECT_EQ(bitmap->height, perspective >= 5 ? 6 : 4);
    EXPECT_EQ(bitmap->viewPerspective, perspective);
  }
}

TEST(Resize, VeryLargeReductionsAveragePrecisely) {
  TestBitmap bitmap(20000, 60, {8, ORDER_GRAY});
  for (int32_t y = 0; y < 60; ++y) {
    for (int32_t x = 0; x < 20000; ++x) bitmap.SetPixel(x, y, x < 10000 ? 10 : x % 2 ? 255 : 100);
  }
  ASSERT_EQ(SizeBitmap(&bitmap, 2, 1, SIZE_BICUBIC), SUCCESS);
  EXPECT_EQ(bitmap.Pixel(0, 0), 10u);
  EXPECT_NEAR(static_cast<double>(bitmap.Pixel(1, 0)), 177.5, 0.6);
}

TEST(Resize, LongestSideBothWays) {
  TestBitmap bitmap(1000000, 1, {8, ORDER_GRAY});
  for (int32_t x = 0; x < 1000000; ++x) bitmap.SetPixel(x, 0, static_cast<uint64_t>(x / 4000));
  ASSERT_EQ(SizeBitmap(&bitmap, 1, 1000000, SIZE_BILINEAR), SUCCESS);
  EXPECT_NEAR(static_cast<double>(bitmap.Pixel(0, 999999)), 124.5, 1.0);
  ASSERT_EQ(SizeBitmap(&bitmap, 3, 2, SIZE_BICUBIC), SUCCESS);
  EXPECT_NEAR(static_cast<double>(bitmap.Pixel(2, 1)), 124.5, 1.0);
}

TEST(Resize, RefusesImpossibleSidesAndMethods) {
  TestBitmap bitmap(4, 4, {24});
  EXPECT_EQ(SizeBitmap(&bitmap, 0, 4, SIZE_BICUBIC), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SizeBitmap(&bitmap, 4, -1, SIZE_BICUBIC), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SizeBitmap(&bitmap, 1000001, 4, SIZE_BICUBIC), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SizeBitmap(&bitmap, 8, 8, 4), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(SizeBitmap(&bitmap, 1000000, 1000000, SIZE_NEAREST), ERROR_LIMIT_EXCEEDED);
  EXPECT_EQ(bitmap->width, 4);
  BITMAPHANDLE none = {};
  EXPECT_EQ(SizeBitmap(&none, 4, 4, SIZE_NEAREST), ERROR_NO_IMAGE);
  EXPECT_EQ(SizeBitmap(nullptr, 4, 4, SIZE_NEAREST), ERROR_NO_IMAGE);
}

TEST(Resize, ToTheSameSizeChangesNothing) {
  TestBitmap bitmap(9, 7, {24});
  const uint8_t* data = bitmap->data;
  EXPECT_EQ(SizeBitmap(&bitmap, 9, 7, SIZE_BICUBIC), SUCCESS);
  EXPECT_EQ(bitmap->data, data);
}

TEST(Resize, AbortLeavesTheBitmapAndLeaksNothing) {
  const int64_t before = CoreBlockCount();
  {
    TestBitmap bitmap(300, 200, {24}), original(300, 200, {24});
    bitmap.FillWithNoise();
    original.FillWithNoise();
    const StatusProbe probe(50);
    EXPECT_EQ(SizeBitmap(&bitmap, 100, 100, SIZE_BICUBIC), ERROR_USER_ABORT);
    EXPECT_EQ(probe.last, 50);
    EXPECT_TRUE(SamePixels(bitmap, original));
  }
  EXPECT_EQ(CoreBlockCount(), before);
}

TEST(ResizeInto, GivesTheSameAsResizingInPlace) {
  for (const Format& format : AllFormats()) {
    SCOPED_TRACE(NameOf(format));
    TestBitmap source(50, 40, format), target(23, 61, format);
    source.FillWithNoise();
    ASSERT_EQ(ResizeBitmapInto(&source, &target, RESIZE_FAVOR_QUALITY), SUCCESS);
    ASSERT_EQ(SizeBitmap(&source, 23, 61, SIZE_BICUBIC), SUCCESS);
    EXPECT_TRUE(SamePixels(source, target));
  }
}

TEST(ResizeInto, KeepsTheDestinationsOwnOrderAndPalette) {
  TestBitmap source(4, 4, {24, ORDER_BGR}), target(2, 2, {24, ORDER_RGB});
  ASSERT_EQ(FillBitmap(&source, 0x000000FF), SUCCESS);
  ASSERT_EQ(ResizeBitmapInto(&source, &target, RESIZE_FAVOR_QUALITY), SUCCESS);
  EXPECT_EQ(target.Channel(1, 1, 0), 255);
  TestBitmap indexed(4, 4, {8}), other(2, 2, {8});
  indexed->palette[0] = {10, 20, 250, 255};
  other->palette[33] = {12, 20, 250, 255};
  ASSERT_EQ(ResizeBitmapInto(&indexed, &other, RESIZE_FAVOR_QUALITY), SUCCESS);
  EXPECT_EQ(other.Pixel(0, 0), 33u);
}

TEST(ResizeInto, RefusesOtherDepthsAndItself) {
  TestBitmap source(4, 4, {24}), target(2, 2, {32});
  EXPECT_EQ(ResizeBitmapInto(&source, &target, 2), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ResizeBitmapInto(&source, &source, 2), ERROR_BAD_ARGUMENT);
  BITMAPHANDLE none = {};
  EXPECT_EQ(ResizeBitmapInto(&source, &none, 2), ERROR_NO_IMAGE);
}

}  // namespace
