#include <array>

#include "tests/unit/zvcore/test_bitmap.h"

namespace {

struct Point {
  int32_t x, y;
};

// Where the pixel that is shown at (x, y) is stored, from the table of the orientation tag: which corner of the
// picture as shown the first stored pixel takes, and whether stored rows are shown as columns.
Point StoredOf(Point shown, int32_t width, int32_t height, int perspective) {
  switch (perspective) {
    case VIEW_TOP_LEFT: return shown;
    case VIEW_TOP_RIGHT: return {width - 1 - shown.x, shown.y};
    case VIEW_BOTTOM_RIGHT: return {width - 1 - shown.x, height - 1 - shown.y};
    case VIEW_BOTTOM_LEFT: return {shown.x, height - 1 - shown.y};
    case VIEW_LEFT_TOP: return {shown.y, shown.x};
    case VIEW_RIGHT_TOP: return {shown.y, height - 1 - shown.x};
    case VIEW_RIGHT_BOTTOM: return {width - 1 - shown.y, height - 1 - shown.x};
    default: return {width - 1 - shown.y, shown.x};
  }
}

bool Exchanges(int perspective) { return perspective >= VIEW_LEFT_TOP; }

// What a viewer shows: pixel (x, y) of a bitmap with its perspective applied by the table above.
uint64_t ShownPixel(const TestBitmap& bitmap, Point shown) {
  const Point stored = StoredOf(shown, bitmap->width, bitmap->height, bitmap->viewPerspective);
  return bitmap.Pixel(stored.x, stored.y);
}
Point ShownSize(const TestBitmap& bitmap) {
  return Exchanges(bitmap->viewPerspective) ? Point{bitmap->height, bitmap->width}
                                            : Point{bitmap->width, bitmap->height};
}

// The last two are larger than the pieces that turns are done in.
constexpr std::array<Point, 8> kSizes = {
    {{1, 1}, {3, 2}, {17, 9}, {64, 64}, {67, 131}, {200, 5}, {270, 70}, {67, 530}}};

// Runs an operation on every format, size and perspective; where(x, y, w, h) tells which shown pixel of the original
// must be shown at (x, y), w and h being the original's shown size.
template <typename Operation, typename Where>
void CheckEverywhere(Operation operation, bool turnsSides, Where where) {
  for (const Format& format : AllFormats()) {
    for (const Point size : kSizes) {
      for (int perspective = 1; perspective <= 8; ++perspective) {
        SCOPED_TRACE(NameOf(format) + ", perspective " + std::to_string(perspective) + ", " + std::to_string(size.x) +
                     "x" + std::to_string(size.y));
        TestBitmap bitmap(size.x, size.y, format), original(size.x, size.y, format);
        bitmap.FillWithNoise();
        original.FillWithNoise();
        bitmap->viewPerspective = original->viewPerspective = perspective;
        ASSERT_EQ(operation(&bitmap), SUCCESS);
        const Point before = ShownSize(original), after = ShownSize(bitmap);
        ASSERT_EQ(after.x, turnsSides ? before.y : before.x);
        ASSERT_EQ(after.y, turnsSides ? before.x : before.y);
        for (int32_t y = 0; y < after.y; ++y) {
          for (int32_t x = 0; x < after.x; ++x) {
            const Point from = where(x, y, before.x, before.y);
            ASSERT_EQ(ShownPixel(bitmap, {x, y}), ShownPixel(original, from)) << x << ", " << y;
          }
        }
      }
    }
  }
}

TEST(Orientation, MirrorExchangesLeftAndRightAsShown) {
  CheckEverywhere([](BITMAPHANDLE* b) { return MirrorBitmap(b); }, false,
                  [](int32_t x, int32_t y, int32_t w, int32_t) {
                    return Point{w - 1 - x, y};
                  });
}

TEST(Orientation, FlipExchangesTopAndBottomAsShown) {
  CheckEverywhere([](BITMAPHANDLE* b) { return FlipBitmap(b); }, false,
                  [](int32_t x, int32_t y, int32_t, int32_t h) {
                    return Point{x, h - 1 - y};
                  });
}

TEST(Orientation, QuarterTurnIsClockwiseAsShown) {
  CheckEverywhere([](BITMAPHANDLE* b) { return RotateBitmap(b, 9000, ROTATE_BICUBIC, 0); }, true,
                  [](int32_t x, int32_t y, int32_t, int32_t h) {
                    return Point{y, h - 1 - x};
                  });
}

TEST(Orientation, HalfTurnIsExact) {
  CheckEverywhere([](BITMAPHANDLE* b) { return RotateBitmap(b, -18000, 0, 0); }, false,
                  [](int32_t x, int32_t y, int32_t w, int32_t h) {
                    return Point{w - 1 - x, h - 1 - y};
                  });
}

TEST(Orientation, ThreeQuarterTurnIsAQuarterTurnBack) {
  CheckEverywhere([](BITMAPHANDLE* b) { return RotateBitmap(b, -9000, ROTATE_RESIZE, 0); }, true,
                  [](int32_t x, int32_t y, int32_t w, int32_t) {
                    return Point{w - 1 - y, x};
                  });
}

TEST(Orientation, AppliedPerspectiveShowsTheSameUpright) {
  CheckEverywhere([](BITMAPHANDLE* b) { return ApplyViewPerspective(b); }, false,
                  [](int32_t x, int32_t y, int32_t, int32_t) {
                    return Point{x, y};
                  });
  TestBitmap bitmap(5, 3, {24});
  bitmap->viewPerspective = VIEW_LEFT_BOTTOM;
  ASSERT_EQ(ApplyViewPerspective(&bitmap), SUCCESS);
  EXPECT_EQ(bitmap->viewPerspective, VIEW_TOP_LEFT);
  EXPECT_EQ(bitmap->width, 3);
}

TEST(Orientation, UnusedBitsOfARowStayZero) {
  for (const int bits : {1, 4}) {
    TestBitmap bitmap(13, 7, {bits});
    bitmap.FillWithNoise();
    ASSERT_EQ(RotateBitmap(&bitmap, 9000, 0, 0), SUCCESS);
    ASSERT_EQ(MirrorBitmap(&bitmap), SUCCESS);
    const int used = 7 * bits;
    for (int32_t y = 0; y < 13; ++y) {
      const uint8_t last = bitmap->data[y * bitmap->bytesPerLine + (used - 1) / 8];
      EXPECT_EQ(last & (0xFF >> ((used - 1) % 8 + 1)), 0) << bits;
    }
  }
}

TEST(Orientation, ResolutionsFollowTheSides) {
  TestBitmap bitmap(4, 8, {24});
  bitmap->xResolution = 300;
  bitmap->yResolution = 150;
  ASSERT_EQ(RotateBitmap(&bitmap, 27000, 0, 0), SUCCESS);
  EXPECT_EQ(bitmap->xResolution, 150);
  EXPECT_EQ(bitmap->yResolution, 300);
}

TEST(Orientation, FullTurnsAndZeroChangeNothing) {
  for (const int32_t angle : {0, 36000, -36000}) {
    TestBitmap bitmap(9, 5, {24}), original(9, 5, {24});
    bitmap.FillWithNoise();
    original.FillWithNoise();
    const uint8_t* data = bitmap->data;
    ASSERT_EQ(RotateBitmap(&bitmap, angle, ROTATE_RESIZE, 0), SUCCESS);
    EXPECT_EQ(bitmap->data, data);
    EXPECT_TRUE(SamePixels(bitmap, original));
  }
}

TEST(Orientation, AbortLeavesTheBitmapAsItWas) {
  for (const int32_t angle : {9000, 18000}) {
    TestBitmap bitmap(300, 200, {24}), original(300, 200, {24});
    bitmap.FillWithNoise();
    original.FillWithNoise();
    const StatusProbe probe(0);
    EXPECT_EQ(RotateBitmap(&bitmap, angle, 0, 0), ERROR_USER_ABORT);
    EXPECT_TRUE(SamePixels(bitmap, original));
  }
}

}  // namespace
