#include "services/zveffects/zveffects.h"
#include "tests/unit/zvcore/test_bitmap.h"

namespace {

constexpr uint32_t kRed = 0x0000FF;
constexpr uint32_t kGreen = 0x00FF00;

TEST(CombineBitmap, PlacesTheSourceAndTouchesNothingElse) {
  TestBitmap target(20, 10, {24}), before(20, 10, {24}), source(6, 5, {24});
  target.FillWithNoise(1);
  before.FillWithNoise(1);
  source.FillWithNoise(2);
  ASSERT_EQ(CombineBitmap(&target, 4, 3, 5, 4, &source, 1, 1, COMBINE_COPY, 0), SUCCESS);
  for (int32_t y = 0; y < 10; ++y) {
    for (int32_t x = 0; x < 20; ++x) {
      const bool covered = x >= 4 && x < 9 && y >= 3 && y < 7;
      ASSERT_EQ(target.Pixel(x, y), covered ? source.Pixel(x - 3, y - 2) : before.Pixel(x, y)) << x << ", " << y;
    }
  }
}

TEST(CombineBitmap, ClipsOnEverySideOfBothPictures) {
  TestBitmap source(6, 5, {24});
  source.FillWithNoise(2);
  for (int32_t y = -8; y <= 12; ++y) {
    for (int32_t x = -8; x <= 12; ++x) {
      for (const int32_t from : {-3, 0, 4, 9}) {
        TestBitmap target(10, 10, {24});
        ASSERT_EQ(CombineBitmap(&target, x, y, 6, 5, &source, from, from / 2, COMBINE_COPY, 0), SUCCESS);
        for (int32_t v = 0; v < 10; ++v) {
          for (int32_t u = 0; u < 10; ++u) {
            const int32_t sx = u - x + from, sy = v - y + from / 2;
            const bool covered = u >= x && u < x + 6 && v >= y && v < y + 5 && sx >= 0 && sx < 6 && sy >= 0 && sy < 5;
            ASSERT_EQ(target.Pixel(u, v), covered ? source.Pixel(sx, sy) : 0u);
          }
        }
      }
    }
  }
}

TEST(CombineBitmap, AtTheEdgesOfTheNumberRangeDoesNothing) {
  TestBitmap target(10, 10, {24}), source(6, 5, {24});
  source.FillWithNoise(2);
  for (const int32_t extreme : {INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(CombineBitmap(&target, extreme, 0, INT32_MAX, 5, &source, 0, 0, COMBINE_COPY, 0), SUCCESS);
    EXPECT_EQ(CombineBitmap(&target, 0, 0, INT32_MAX, 5, &source, extreme, extreme, COMBINE_COPY, 0), SUCCESS);
  }
  EXPECT_EQ(target.Pixel(0, 0), 0u);
}

TEST(CombineBitmap, ConvertsEveryFormatIntoEveryOther) {
  for (const Format& from : AllFormats()) {
    for (const Format& to : AllFormats()) {
      if (!from.topDown) continue;
      SCOPED_TRACE(NameOf(from) + " into " + NameOf(to));
      TestBitmap source(5, 5, from), target(9, 9, to), expected(1, 1, to);
      FillBitmap(&source, 0x00FFFFFF);
      FillBitmap(&expected, 0x00FFFFFF);
      ASSERT_EQ(CombineBitmap(&target, 2, 2, 5, 5, &source, 0, 0, COMBINE_COPY, 0), SUCCESS);
      EXPECT_EQ(target.Pixel(3, 3), expected.Pixel(0, 0));
      EXPECT_EQ(target.Pixel(1, 3), 0u);
      EXPECT_EQ(target.Pixel(7, 3), 0u);
    }
  }
}

TEST(CombineBitmap, PlacesAsShownUnderEveryPairOfPerspectives) {
  for (int of = 1; of <= 8; ++of) {
    for (int to = 1; to <= 8; ++to) {
      SCOPED_TRACE(std::to_string(of) + " onto " + std::to_string(to));
      TestBitmap source(7, 5, {24}), target(20, 12, {24});
      source.FillWithNoise(3);
      source->viewPerspective = of;
      target->viewPerspective = to;
      ASSERT_EQ(CombineBitmap(&target, 2, 3, 4, 3, &source, 1, 1, COMBINE_COPY, 0), SUCCESS);
      ASSERT_EQ(ApplyViewPerspective(&target), SUCCESS);
      ASSERT_EQ(ApplyViewPerspective(&source), SUCCESS);
      for (int32_t y = 0; y < target->height; ++y) {
        for (int32_t x = 0; x < target->width; ++x) {
          const bool covered = x >= 2 && x < 6 && y >= 3 && y < 6;
          ASSERT_EQ(target.Pixel(x, y), covered ? source.Pixel(x - 1, y - 2) : 0u);
        }
      }
    }
  }
}

TEST(CombineBitmap, BlendsByAlpha) {
  for (const int bits : {32, 64}) {
    TestBitmap source(3, 1, {bits, ORDER_BGR, true, true}), target(3, 1, {24});
    FillBitmap(&source, kRed);
    source.SetChannel(0, 0, 3, 0);
    source.SetChannel(1, 0, 3, source.Highest() / 5);
    FillBitmap(&target, kGreen);
    ASSERT_EQ(CombineBitmap(&target, 0, 0, 3, 1, &source, 0, 0, COMBINE_BLEND, 0), SUCCESS);
    EXPECT_EQ(target.Pixel(0, 0), 0x00FF00u);
    EXPECT_NEAR(target.Channel(1, 0, 2), 51, 1);
    EXPECT_NEAR(target.Channel(1, 0, 1), 204, 1);
    EXPECT_EQ(target.Pixel(2, 0), 0xFF0000u);
  }
}

TEST(CombineBitmap, RefusesMissingImagesAndUnknownFlags) {
  TestBitmap target(10, 10, {24}), source(6, 5, {24});
  BITMAPHANDLE none = {};
  EXPECT_EQ(CombineBitmap(&none, 0, 0, 1, 1, &source, 0, 0, COMBINE_COPY, 0), ERROR_NO_IMAGE);
  EXPECT_EQ(CombineBitmap(&target, 0, 0, 1, 1, &none, 0, 0, COMBINE_COPY, 0), ERROR_NO_IMAGE);
  EXPECT_EQ(CombineBitmap(&target, 0, 0, 1, 1, nullptr, 0, 0, COMBINE_COPY, 0), ERROR_NO_IMAGE);
  EXPECT_EQ(CombineBitmap(&target, 0, 0, 1, 1, &source, 0, 0, 0, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(CombineBitmap(&target, 0, 0, -1, 1, &source, 0, 0, COMBINE_COPY, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(CombineBitmap(&target, 0, 0, 1, 1, &target, 0, 0, COMBINE_COPY, 0), ERROR_BAD_ARGUMENT);
}

TEST(CombineBitmap, LeaksNothing) {
  const int64_t before = CoreBlockCount();
  {
    TestBitmap target(10, 10, {8}), source(6, 5, {64, ORDER_BGR, true, true});
    ASSERT_EQ(CombineBitmap(&target, 0, 0, 6, 5, &source, 0, 0, COMBINE_BLEND, 0), SUCCESS);
  }
  EXPECT_EQ(CoreBlockCount(), before);
}

}  // namespace
