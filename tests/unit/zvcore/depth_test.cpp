#include <algorithm>
#include <set>

#include "tests/unit/zvcore/test_bitmap.h"

namespace {

struct Color {
  int red, green, blue, alpha;
};

// A pixel as 8-bit colour, read without the module.
Color ColorOf(const TestBitmap& bitmap, int32_t x, int32_t y) {
  const bool rgb = bitmap->colorOrder == ORDER_RGB, gray = bitmap->colorOrder == ORDER_GRAY;
  const uint64_t pixel = bitmap.Pixel(x, y);
  const auto narrow = [](uint64_t value) {
    return static_cast<int>(std::lround(static_cast<double>(value & 0xFFFF) * 255 / 65535));
  };
  int channel[4] = {0, 0, 0, 255};
  switch (bitmap->bitsPerPixel) {
    case 1:
    case 4:
    case 8: {
      if (gray && bitmap->bitsPerPixel == 8)
        return {static_cast<int>(pixel), static_cast<int>(pixel), static_cast<int>(pixel), 255};
      const ZVPALETTEENTRY entry = bitmap->palette[pixel];
      return {entry.red, entry.green, entry.blue, 255};
    }
    case 16: {
      if (gray) return {narrow(pixel), narrow(pixel), narrow(pixel), 255};
      const auto widen = [](uint64_t five) {
        return static_cast<int>(std::lround(static_cast<double>(five & 31) * 255 / 31));
      };
      return {widen(pixel >> 10), widen(pixel >> 5), widen(pixel), 255};
    }
    case 24:
    case 32:
      for (int c = 0; c < bitmap->bitsPerPixel / 8; ++c) channel[c] = static_cast<int>(pixel >> (8 * c) & 255);
      break;
    default:
      for (int c = 0; c < bitmap->bitsPerPixel / 16; ++c) channel[c] = narrow(pixel >> (16 * c));
  }
  if (!(bitmap->flags & BITMAP_FLAG_ALPHA)) channel[3] = 255;
  return {channel[rgb ? 0 : 2], channel[1], channel[rgb ? 2 : 0], channel[3]};
}

Color OnWhite(Color color) {
  const auto blend = [&](int value) {
    return static_cast<int>(std::lround(value * color.alpha / 255.0 + 255 - color.alpha));
  };
  return {blend(color.red), blend(color.green), blend(color.blue), 255};
}

void ExpectNear(Color actual, Color expected, int tolerance) {
  EXPECT_NEAR(actual.red, expected.red, tolerance);
  EXPECT_NEAR(actual.green, expected.green, tolerance);
  EXPECT_NEAR(actual.blue, expected.blue, tolerance);
}

TEST(DepthConversion, BetweenAllTrueColourFormatsKeepsColours) {
  for (const Format& from : AllFormats()) {
    for (const Format& to : AllFormats()) {
      if (to.bits <= 8 || to.order == ORDER_GRAY || to.alpha || !to.topDown) continue;
      SCOPED_TRACE(NameOf(from) + " to " + NameOf(to));
      TestBitmap bitmap(19, 3, from), original(19, 3, from);
      bitmap.FillWithNoise();
      original.FillWithNoise();
      ASSERT_EQ(ConvertBitmapDepth(&bitmap, to.bits, to.order, nullptr, 0), SUCCESS);
      ASSERT_EQ(bitmap->bitsPerPixel, to.bits);
      ASSERT_EQ(bitmap->colorOrder, to.order);
      const bool keepsAlpha = from.alpha && (to.bits == 32 || to.bits == 64);
      EXPECT_EQ((bitmap->flags & BITMAP_FLAG_ALPHA) != 0, keepsAlpha);
      const int tolerance = to.bits == 16 ? 5 : 1;
      for (int32_t y = 0; y < 3; ++y) {
        for (int32_t x = 0; x < 19; ++x) {
          const Color before = ColorOf(original, x, y), after = ColorOf(bitmap, x, y);
          ExpectNear(after, keepsAlpha ? before : OnWhite(before), tolerance);
          EXPECT_EQ(after.alpha, keepsAlpha ? before.alpha : 255);
          if (HasFailure()) return;
        }
      }
    }
  }
}

TEST(DepthConversion, ToGreyIsLumaOfRec601) {
  TestBitmap bitmap(3, 1, {24});
  bitmap.SetPixel(0, 0, 0xFF0000);
  bitmap.SetPixel(1, 0, 0x00FF00);
  bitmap.SetPixel(2, 0, 0x0000FF);
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 8, ORDER_GRAY, nullptr, 0), SUCCESS);
  EXPECT_EQ(bitmap->colorOrder, ORDER_GRAY);
  EXPECT_EQ(bitmap.Pixel(0, 0), 76u);
  EXPECT_EQ(bitmap.Pixel(1, 0), 150u);
  EXPECT_EQ(bitmap.Pixel(2, 0), 29u);
}

TEST(DepthConversion, DeepGreyKeepsItsDepthInDeepFormats) {
  TestBitmap bitmap(2, 1, {16, ORDER_GRAY});
  bitmap.SetPixel(0, 0, 12345);
  bitmap.SetPixel(1, 0, 65535);
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 48, ORDER_RGB, nullptr, 0), SUCCESS);
  EXPECT_EQ(bitmap.Channel(0, 0, 1), 12345);
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 16, ORDER_GRAY, nullptr, 0), SUCCESS);
  EXPECT_EQ(bitmap.Pixel(0, 0), 12345u);
  EXPECT_EQ(bitmap.Pixel(1, 0), 65535u);
}

TEST(DepthConversion, OrderFourKeepsGreyGreyAndColourInBlueFirstOrder) {
  TestBitmap gray(2, 2, {16, ORDER_GRAY}), color(2, 2, {48, ORDER_RGB});
  ASSERT_EQ(ConvertBitmapDepth(&gray, 8, ORDER_BGR_OR_GRAY, nullptr, 0), SUCCESS);
  EXPECT_EQ(gray->colorOrder, ORDER_GRAY);
  ASSERT_EQ(ConvertBitmapDepth(&color, 24, ORDER_BGR_OR_GRAY, nullptr, 0), SUCCESS);
  EXPECT_EQ(color->colorOrder, ORDER_BGR);
}

TEST(DepthConversion, FewColoursAreKeptExactly) {
  for (const int bits : {1, 4, 8}) {
    for (const int dither : {0, 1}) {
      TestBitmap bitmap(40, 40, {24}), original(40, 40, {24});
      const int colors = 1 << bits;
      for (int32_t y = 0; y < 40; ++y) {
        for (int32_t x = 0; x < 40; ++x) {
          const auto color = static_cast<uint64_t>((y * 40 + x) % colors * 0x010F1D & 0xFFFFFF);
          bitmap.SetPixel(x, y, color);
          original.SetPixel(x, y, color);
        }
      }
      ASSERT_EQ(ConvertBitmapDepth(&bitmap, bits, ORDER_BGR, nullptr, dither), SUCCESS);
      for (int32_t y = 0; y < 40; ++y) {
        for (int32_t x = 0; x < 40; ++x) ExpectNear(ColorOf(bitmap, x, y), ColorOf(original, x, y), 0);
      }
      if (HasFailure()) return;
    }
  }
}

void PaintGradient(TestBitmap& bitmap) {
  for (int32_t y = 0; y < bitmap->height; ++y) {
    for (int32_t x = 0; x < bitmap->width; ++x) {
      bitmap.SetChannel(x, y, 0, x * 255 / (bitmap->width - 1));
      bitmap.SetChannel(x, y, 1, y * 255 / (bitmap->height - 1));
      bitmap.SetChannel(x, y, 2, (x + y) % 64 + 100);
    }
  }
}

TEST(DepthConversion, ManyColoursGetAPaletteThatFollowsThem) {
  TestBitmap bitmap(128, 128, {24}), original(128, 128, {24});
  PaintGradient(bitmap);
  PaintGradient(original);
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 8, ORDER_BGR, nullptr, 0), SUCCESS);
  std::set<uint64_t> used;
  double squares = 0;
  for (int32_t y = 0; y < 128; ++y) {
    for (int32_t x = 0; x < 128; ++x) {
      used.insert(bitmap.Pixel(x, y));
      const Color a = ColorOf(bitmap, x, y), b = ColorOf(original, x, y);
      squares += (a.red - b.red) * (a.red - b.red) + (a.green - b.green) * (a.green - b.green) +
                 (a.blue - b.blue) * (a.blue - b.blue);
    }
  }
  EXPECT_GT(used.size(), 250u);
  // A fixed 6 x 6 x 6 cube would be about 15 levels off a channel on average.
  EXPECT_LT(std::sqrt(squares / (128 * 128 * 3)), 8.0);
}

TEST(DepthConversion, DitheringKeepsLocalAverages) {
  TestBitmap bitmap(64, 64, {8, ORDER_GRAY});
  FillBitmap(&bitmap, 0x00404040);
  const ZVPALETTEENTRY blackAndWhite[2] = {{0, 0, 0, 255}, {255, 255, 255, 255}};
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 1, ORDER_BGR, blackAndWhite, 1), SUCCESS);
  for (int32_t top = 0; top < 64; top += 16) {
    for (int32_t left = 0; left < 64; left += 16) {
      int white = 0;
      for (int32_t y = top; y < top + 16; ++y) {
        for (int32_t x = left; x < left + 16; ++x) white += static_cast<int>(bitmap.Pixel(x, y));
      }
      EXPECT_NEAR(white, 256 * 64 / 255, 6);
    }
  }
}

TEST(DepthConversion, WithoutDitheringTakesTheNearestEntry) {
  TestBitmap bitmap(256, 1, {8, ORDER_GRAY});
  for (int32_t x = 0; x < 256; ++x) bitmap.SetPixel(x, 0, static_cast<uint64_t>(x));
  const ZVPALETTEENTRY blackAndWhite[2] = {{0, 0, 0, 255}, {255, 255, 255, 255}};
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 1, ORDER_BGR, blackAndWhite, 0), SUCCESS);
  for (int32_t x = 0; x < 256; ++x) EXPECT_EQ(bitmap.Pixel(x, 0), x >= 128 ? 1u : 0u);
}

TEST(DepthConversion, GreyOrderGivesSmallDepthsAGreyRamp) {
  TestBitmap bitmap(16, 1, {24});
  for (int32_t x = 0; x < 16; ++x) bitmap.SetPixel(x, 0, static_cast<uint64_t>(x * 0x111111));
  ASSERT_EQ(ConvertBitmapDepth(&bitmap, 4, ORDER_GRAY, nullptr, 0), SUCCESS);
  for (int32_t x = 0; x < 16; ++x) EXPECT_EQ(bitmap.Pixel(x, 0), static_cast<uint64_t>(x));
}

TEST(DepthConversion, ToTheSameFormatChangesNothing) {
  for (const Format& format : AllFormats()) {
    TestBitmap bitmap(5, 5, format);
    const uint8_t* data = bitmap->data;
    EXPECT_EQ(ConvertBitmapDepth(&bitmap, format.bits, format.order, nullptr, 1), SUCCESS);
    EXPECT_EQ(bitmap->data, data) << NameOf(format);
  }
}

TEST(DepthConversion, RefusesUnknownDepthsAndOrders) {
  TestBitmap bitmap(5, 5, {24});
  const ZVPALETTEENTRY palette[2] = {};
  EXPECT_EQ(ConvertBitmapDepth(&bitmap, 2, ORDER_BGR, nullptr, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertBitmapDepth(&bitmap, 8, 3, nullptr, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertBitmapDepth(&bitmap, 24, -1, nullptr, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertBitmapDepth(&bitmap, 24, ORDER_BGR, palette, 0), ERROR_BAD_ARGUMENT);
}

TEST(DepthConversion, AbortLeavesTheBitmap) {
  TestBitmap bitmap(100, 100, {24}), original(100, 100, {24});
  bitmap.FillWithNoise();
  original.FillWithNoise();
  const StatusProbe probe(10);
  EXPECT_EQ(ConvertBitmapDepth(&bitmap, 8, ORDER_BGR, nullptr, 1), ERROR_USER_ABORT);
  EXPECT_TRUE(SamePixels(bitmap, original));
}

TEST(PixelRows, ConvertBetweenFormats) {
  TestBitmap bgr(2, 1, {24}), rgba(2, 1, {32, ORDER_RGB});
  const uint8_t source[6] = {1, 2, 3, 4, 5, 6};
  uint8_t result[8] = {};
  ASSERT_EQ(ConvertPixelRow(&bgr, source, &rgba, result, 2), SUCCESS);
  const uint8_t expected[8] = {3, 2, 1, 255, 6, 5, 4, 255};
  EXPECT_EQ(std::memcmp(result, expected, 8), 0);
  EXPECT_EQ(ConvertPixelRow(&bgr, source, &rgba, result, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertPixelRow(nullptr, source, &rgba, result, 1), ERROR_BAD_ARGUMENT);
}

}  // namespace
