#include <algorithm>
#include <numbers>

#include "tests/unit/zvcore/test_bitmap.h"

namespace {

double CubicKernel(double distance) {
  const double d = std::abs(distance);
  if (d < 1) return 1.5 * d * d * d - 2.5 * d * d + 1;
  return d < 2 ? -0.5 * d * d * d + 2.5 * d * d - 4 * d + 2 : 0;
}
double LinearKernel(double distance) { return std::max(0.0, 1 - std::abs(distance)); }

// Straightforward rotation in double: where a canvas pixel comes from, and its channel before rounding.
class Reference {
 public:
  Reference(const TestBitmap& bitmap, int32_t canvasWidth, int32_t canvasHeight, int32_t angle, uint32_t flags)
      : source(bitmap), cubic(flags & ROTATE_BICUBIC), middleX(canvasWidth / 2.0), middleY(canvasHeight / 2.0) {
    const double radians = angle / 18000.0 * std::numbers::pi;
    sine = std::sin(radians);
    cosine = std::cos(radians);
  }

  // In pixel indices of the source, pixel centres at whole numbers.
  double SourceX(int32_t x, int32_t y) const {
    return (x + 0.5 - middleX) * cosine + (y + 0.5 - middleY) * sine + source->width / 2.0 - 0.5;
  }
  double SourceY(int32_t x, int32_t y) const {
    return -(x + 0.5 - middleX) * sine + (y + 0.5 - middleY) * cosine + source->height / 2.0 - 0.5;
  }
  double Channel(int32_t x, int32_t y, int c, int fill) const {
    const double atX = SourceX(x, y), atY = SourceY(x, y);
    const auto left = static_cast<int32_t>(std::floor(atX)), top = static_cast<int32_t>(std::floor(atY));
    double sum = 0;
    for (int32_t v = top - 1; v <= top + 2; ++v) {
      for (int32_t u = left - 1; u <= left + 2; ++u) {
        const bool inside = u >= 0 && v >= 0 && u < source->width && v < source->height;
        const double weight =
            cubic ? CubicKernel(u - atX) * CubicKernel(v - atY) : LinearKernel(u - atX) * LinearKernel(v - atY);
        sum += weight * (inside ? source.Channel(u, v, c) : fill);
      }
    }
    return std::clamp(sum, 0.0, static_cast<double>(source.Highest()));
  }

 private:
  const TestBitmap& source;
  bool cubic;
  double middleX, middleY, sine, cosine;
};

// Smooth enough that a thousandth of a pixel is no level, with structure in every direction and channel.
void FillSmoothly(TestBitmap& bitmap) {
  for (int32_t y = 0; y < bitmap->height; ++y) {
    for (int32_t x = 0; x < bitmap->width; ++x) {
      for (int c = 0; c < bitmap.Channels(); ++c) {
        const double wave = std::sin(x * 0.21 + c) * std::cos(y * 0.17 - c) * 0.45 + 0.5;
        bitmap.SetChannel(x, y, c, static_cast<int>(wave * bitmap.Highest()));
      }
    }
  }
}

std::vector<Format> ChannelFormats() {
  std::vector<Format> formats;
  for (const Format& format : AllFormats()) {
    if (!format.alpha && (format.order == ORDER_GRAY || format.bits >= 24)) formats.push_back(format);
  }
  return formats;
}

struct Sides {
  int32_t width, height;
};

class RotateFilters : public testing::TestWithParam<uint32_t> {};

TEST_P(RotateFilters, StayWithinALevelOfTheReferenceAtEveryAngleAndPlace) {
  for (const Format& format : ChannelFormats()) {
    for (const Sides sides : {Sides{61, 40}, Sides{5, 3}, Sides{1, 30}, Sides{1, 1}}) {
      for (const int32_t angle : {1, 500, 4500, 8999, 9001, 13333, 20000, 35999, -123}) {
        SCOPED_TRACE(NameOf(format) + " by " + std::to_string(angle));
        TestBitmap source(sides.width, sides.height, format), bitmap(sides.width, sides.height, format);
        FillSmoothly(source);
        FillSmoothly(bitmap);
        ASSERT_EQ(RotateBitmap(&bitmap, angle, GetParam() | ROTATE_RESIZE, 0x00FFFFFF), SUCCESS);
        const Reference reference(source, bitmap->width, bitmap->height, angle, GetParam());
        const double tolerance = bitmap.Highest() == 255 ? 1.0 : 2.0;
        for (int32_t y = 0; y < bitmap->height; ++y) {
          for (int32_t x = 0; x < bitmap->width; ++x) {
            for (int c = 0; c < bitmap.Channels(); ++c) {
              ASSERT_NEAR(bitmap.Channel(x, y, c), reference.Channel(x, y, c, bitmap.Highest()), tolerance)
                  << x << ", " << y;
            }
          }
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sampled, RotateFilters, testing::Values(ROTATE_RESAMPLE, ROTATE_BICUBIC));

TEST(RotateNearest, TakesThePixelThatThePositionFallsInto) {
  for (const Format& format : AllFormats()) {
    for (const int32_t angle : {100, 3000, 9500, 17777, 30001}) {
      SCOPED_TRACE(NameOf(format) + " by " + std::to_string(angle));
      TestBitmap source(45, 31, format), bitmap(45, 31, format), fill(1, 1, format);
      source.FillWithNoise();
      bitmap.FillWithNoise();
      FillBitmap(&fill, 0x00203040);
      ASSERT_EQ(RotateBitmap(&bitmap, angle, ROTATE_RESIZE, 0x00203040), SUCCESS);
      const Reference reference(source, bitmap->width, bitmap->height, angle, 0);
      for (int32_t y = 0; y < bitmap->height; ++y) {
        for (int32_t x = 0; x < bitmap->width; ++x) {
          const double atX = reference.SourceX(x, y) + 0.5, atY = reference.SourceY(x, y) + 0.5;
          const double distance = std::max(std::abs(atX - std::round(atX)), 1e-6);
          if (distance < 1e-5 || std::abs(atY - std::round(atY)) < 1e-5) continue;  // on the border between two pixels
          const bool inside = atX >= 0 && atY >= 0 && atX < 45 && atY < 31;
          const uint64_t expected =
              inside ? source.Pixel(static_cast<int32_t>(atX), static_cast<int32_t>(atY)) : fill.Pixel(0, 0);
          ASSERT_EQ(bitmap.Pixel(x, y), expected) << x << ", " << y;
        }
      }
    }
  }
}

TEST(RotateCanvas, KeepsItsSizeUnlessAskedToGrow) {
  TestBitmap bitmap(100, 50, {24});
  ASSERT_EQ(RotateBitmap(&bitmap, 3000, 0, 0), SUCCESS);
  EXPECT_EQ(bitmap->width, 100);
  EXPECT_EQ(bitmap->height, 50);
  ASSERT_EQ(RotateBitmap(&bitmap, 3000, ROTATE_RESIZE, 0), SUCCESS);
  EXPECT_EQ(bitmap->width, static_cast<int32_t>(std::ceil(100 * std::cos(std::numbers::pi / 6) + 25)));
  EXPECT_EQ(bitmap->height, static_cast<int32_t>(std::ceil(50 + 50 * std::cos(std::numbers::pi / 6) - 1e-6)));
}

TEST(RotateCanvas, GrownKeepsEveryPixelOfTheSource) {
  TestBitmap bitmap(40, 30, {8, ORDER_GRAY});
  FillBitmap(&bitmap, 0x00FFFFFF);
  ASSERT_EQ(RotateBitmap(&bitmap, 1700, ROTATE_RESIZE | ROTATE_BICUBIC, 0), SUCCESS);
  double sum = 0;
  for (int32_t y = 0; y < bitmap->height; ++y) {
    for (int32_t x = 0; x < bitmap->width; ++x) sum += bitmap.Channel(x, y, 0);
  }
  EXPECT_NEAR(sum / 255, 40 * 30, 40 * 30 * 0.01);
}

TEST(RotateCanvas, IsFilledWhereTheSourceDoesNotReach) {
  for (const uint32_t flags : {0u, ROTATE_RESAMPLE, ROTATE_BICUBIC}) {
    TestBitmap bitmap(40, 40, {24});
    ASSERT_EQ(RotateBitmap(&bitmap, 4500, flags | ROTATE_RESIZE, 0x00102030), SUCCESS);
    EXPECT_EQ(bitmap.Pixel(0, 0), 0x302010u);
    EXPECT_EQ(bitmap.Pixel(bitmap->width - 1, bitmap->height - 1), 0x302010u);
    EXPECT_EQ(bitmap.Pixel(bitmap->width / 2, bitmap->height / 2), 0u);
  }
}

TEST(RotateCanvas, BeyondTheLargestSideIsRefused) {
  TestBitmap bitmap(1000000, 2, {1});
  EXPECT_EQ(RotateBitmap(&bitmap, 5, ROTATE_RESIZE, 0), SUCCESS);
  TestBitmap wide(900000, 900000 / 1000, {1});
  EXPECT_EQ(RotateBitmap(&wide, 4500, ROTATE_RESIZE, 0), ERROR_LIMIT_EXCEEDED);
  EXPECT_EQ(wide->width, 900000);
}

TEST(Rotate, RefusesAnglesBeyondAFullTurnAndMissingImages) {
  TestBitmap bitmap(4, 4, {24});
  EXPECT_EQ(RotateBitmap(&bitmap, 36001, 0, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(RotateBitmap(&bitmap, -36001, 0, 0), ERROR_BAD_ARGUMENT);
  BITMAPHANDLE none = {};
  EXPECT_EQ(RotateBitmap(&none, 0, 0, 0), ERROR_NO_IMAGE);
}

TEST(Rotate, IsClockwiseAsShownUnderEveryPerspective) {
  // A white spot right of the middle goes below it; the middle of a square shown picture stays.
  for (int perspective = 1; perspective <= 8; ++perspective) {
    SCOPED_TRACE(perspective);
    TestBitmap bitmap(41, 41, {8, ORDER_GRAY});
    bitmap->viewPerspective = VIEW_TOP_LEFT;
    for (int32_t d = -2; d <= 2; ++d) {
      for (int32_t e = -2; e <= 2; ++e) bitmap.SetPixel(34 + d, 20 + e, 255);
    }
    // Store it so that the perspective shows it upright: each perspective is undone by itself or by its inverse.
    const int inverse = perspective == 6 ? 8 : perspective == 8 ? 6 : perspective;
    bitmap->viewPerspective = inverse;
    ASSERT_EQ(ApplyViewPerspective(&bitmap), SUCCESS);
    bitmap->viewPerspective = perspective;
    ASSERT_EQ(RotateBitmap(&bitmap, 8990, ROTATE_BICUBIC, 0), SUCCESS);
    EXPECT_EQ(bitmap->viewPerspective, perspective);
    ASSERT_EQ(ApplyViewPerspective(&bitmap), SUCCESS);
    EXPECT_EQ(bitmap.Pixel(20, 34), 255u);
    EXPECT_EQ(bitmap.Pixel(34, 20), 0u);
    EXPECT_EQ(bitmap.Pixel(20, 6), 0u);
  }
}

TEST(Rotate, ManySmallTurnsAddUpToNone) {
  TestBitmap bitmap(81, 81, {48}), original(81, 81, {48});
  const auto paint = [](TestBitmap& target) {
    for (int32_t y = 0; y < 81; ++y) {
      for (int32_t x = 0; x < 81; ++x) {
        for (int c = 0; c < 3; ++c)
          target.SetChannel(
              x, y, c, static_cast<int>(32768 + 25000 * std::sin((x - 40) * 0.06 + c) * std::cos((y - 40) * 0.05)));
      }
    }
  };
  paint(bitmap);
  paint(original);
  for (int i = 0; i < 36; ++i) ASSERT_EQ(RotateBitmap(&bitmap, 1000, ROTATE_BICUBIC, 0), SUCCESS);
  // Inside the circle that never leaves the canvas, rounding is all that may add up.
  for (int32_t y = 0; y < 81; ++y) {
    for (int32_t x = 0; x < 81; ++x) {
      if ((x - 40) * (x - 40) + (y - 40) * (y - 40) > 30 * 30) continue;
      for (int c = 0; c < 3; ++c)
        ASSERT_NEAR(bitmap.Channel(x, y, c), original.Channel(x, y, c), 200) << x << ", " << y;
    }
  }
}

TEST(RotatePalette, KeepsDepthAndMapsBlendsToTheNearestEntry) {
  for (const uint32_t flags : {0u, ROTATE_RESAMPLE, ROTATE_BICUBIC}) {
    for (const int bits : {1, 4, 8}) {
      TestBitmap bitmap(30, 30, {bits});
      bitmap->palette[0] = {0, 0, 255, 255};
      bitmap->palette[1] = {255, 0, 0, 255};
      for (int i = 2; i < bitmap->paletteCount; ++i) bitmap->palette[i] = {0, 255, 0, 255};
      ASSERT_EQ(RotateBitmap(&bitmap, 4500, flags | ROTATE_RESIZE, 0x00FF0000), SUCCESS);
      EXPECT_EQ(bitmap->bitsPerPixel, bits);
      EXPECT_EQ(bitmap.Pixel(bitmap->width / 2, bitmap->height / 2), 0u);
      EXPECT_EQ(bitmap.Pixel(0, 0), 1u);
      for (int32_t y = 0; y < bitmap->height; ++y) {
        for (int32_t x = 0; x < bitmap->width; ++x) ASSERT_LE(bitmap.Pixel(x, y), 1u);
      }
    }
  }
}

TEST(RotateAlpha, InvisibleColoursDoNotBleed) {
  for (const int bits : {32, 64}) {
    for (const uint32_t flags : {ROTATE_RESAMPLE, ROTATE_BICUBIC}) {
      TestBitmap bitmap(40, 40, {bits, ORDER_BGR, true, true});
      for (int32_t y = 0; y < 40; ++y) {
        for (int32_t x = 0; x < 40; ++x) {
          bitmap.SetChannel(x, y, x < 20 ? 0 : 2, bitmap.Highest());  // blue, invisible | red, opaque
          bitmap.SetChannel(x, y, 3, x < 20 ? 0 : bitmap.Highest());
        }
      }
      ASSERT_EQ(RotateBitmap(&bitmap, 1500, flags, 0x000000FF), SUCCESS);
      for (int32_t y = 0; y < 40; ++y) {
        for (int32_t x = 0; x < 40; ++x) {
          if (bitmap.Channel(x, y, 3) == 0) continue;
          ASSERT_LE(bitmap.Channel(x, y, 0), bitmap.Highest() / 100) << x << ", " << y;
        }
      }
    }
  }
}

TEST(Rotate, AbortLeavesTheBitmapAndLeaksNothing) {
  const int64_t before = CoreBlockCount();
  for (const uint32_t flags : {0u, ROTATE_RESAMPLE, ROTATE_BICUBIC}) {
    for (const int bits : {4, 24}) {
      TestBitmap bitmap(200, 300, {bits}), original(200, 300, {bits});
      bitmap.FillWithNoise();
      original.FillWithNoise();
      const StatusProbe probe(40);
      EXPECT_EQ(RotateBitmap(&bitmap, 1234, flags | ROTATE_RESIZE, 0), ERROR_USER_ABORT);
      EXPECT_TRUE(SamePixels(bitmap, original));
    }
  }
  EXPECT_EQ(CoreBlockCount(), before);
}

}  // namespace
