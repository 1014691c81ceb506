#include <random>

#include "services/zvcore/channel_math.h"
#include "services/zvcore/color_matcher.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/resample_weights.h"
#include "services/zvcore/rotation_geometry.h"
#include "tests/unit/zvcore/test_bitmap.h"

namespace {

TEST(ColorMatcher, AlwaysFindsWhatALinearSearchFinds) {
  std::mt19937 random(7);
  for (const int count : {1, 2, 16, 100, 256}) {
    ZVPALETTEENTRY palette[256];
    for (ZVPALETTEENTRY& entry : palette) {
      entry = {static_cast<uint8_t>(random()), static_cast<uint8_t>(random()), static_cast<uint8_t>(random()), 255};
    }
    zvcore::ColorMatcher matcher;
    ASSERT_EQ(matcher.Prepare(palette, count), SUCCESS);
    for (int i = 0; i < 50000; ++i) {
      const int r = static_cast<int>(random() & 255), g = static_cast<int>(random() & 255),
                b = static_cast<int>(random() & 255);
      ASSERT_EQ(matcher.Match(r, g, b), zvcore::NearestEntry(palette, count, r, g, b)) << r << " " << g << " " << b;
    }
  }
}

TEST(ColorMatcher, StillAnswersWhenAllColoursAreCandidatesEverywhere) {
  ZVPALETTEENTRY palette[256];
  for (ZVPALETTEENTRY& entry : palette) entry = {128, 128, 128, 255};
  zvcore::ColorMatcher matcher;
  ASSERT_EQ(matcher.Prepare(palette, 256), SUCCESS);
  for (int color = 0; color < 0x1000000; color += 0x739) {
    ASSERT_EQ(matcher.Match(color >> 16, color >> 8 & 255, color & 255), 0u);
  }
}

TEST(ChannelMath, NarrowingIsRoundingEverywhere) {
  for (unsigned value = 0; value <= 65535; ++value) {
    ASSERT_EQ(zvcore::Narrow16(value), std::lround(value * 255.0 / 65535)) << value;
  }
  for (unsigned value = 0; value <= 255; ++value) {
    EXPECT_EQ(zvcore::Narrow5(value), static_cast<unsigned>(std::lround(value * 31.0 / 255)));
    EXPECT_EQ(zvcore::Narrow16(zvcore::Widen8(value)), value);
  }
}

TEST(ChannelMath, LumaOfGreyIsThatGrey) {
  for (int value = 0; value <= 65535; ++value) ASSERT_EQ(zvcore::Luma(value, value, value), value);
}

TEST(AxisWeights, NeverPointOutsideTheSource) {
  using zvcore::AxisFilter;
  for (const AxisFilter filter : {AxisFilter::kArea, AxisFilter::kTriangle, AxisFilter::kCubic}) {
    for (const int32_t source : {1, 2, 3, 5, 17, 100, 999}) {
      for (const int32_t destination : {1, 2, 3, 7, 16, 101, 1000}) {
        if (filter == AxisFilter::kArea && destination > source) continue;
        zvcore::AxisWeights weights;
        ASSERT_EQ(zvcore::BuildRealWeights({filter, source, destination, 0, destination}, weights), SUCCESS);
        for (int32_t i = 0; i < destination; ++i) {
          const zvcore::AxisSpan span = weights.Span(i);
          ASSERT_GE(span.first, 0);
          ASSERT_GE(span.count, 1);
          ASSERT_LE(span.count, weights.stride);
          ASSERT_LE(span.first + span.count, source);
          double sum = 0;
          for (int32_t k = 0; k < span.count; ++k) sum += static_cast<double>(weights.Real(i)[k]);
          ASSERT_NEAR(sum, 1, 1e-4);
        }
      }
    }
  }
}

TEST(RotationGeometry, TurnedSizeIsTheBoundingBox) {
  EXPECT_EQ(zvcore::TurnedSize({100, 100}, 4500).width, 142);
  EXPECT_EQ(zvcore::TurnedSize({300, 200}, 18000).width, 300);
  EXPECT_EQ(zvcore::TurnedSize({300, 200}, 9000).width, 200);
  EXPECT_EQ(zvcore::TurnedSize({1, 1}, 1).width, 2);
}

TEST(RotationGeometry, ColumnsInsideAreExactlyThoseWhosePositionIsInside) {
  const zvcore::Size source = {37, 23};
  for (int32_t angle = 0; angle < 36000; angle += 731) {
    const zvcore::Size canvas = zvcore::TurnedSize(source, angle);
    const zvcore::RotationGeometry geometry(source, canvas, angle);
    for (const int64_t margin : {int64_t{0}, 2 * zvcore::kPositionOne, -2 * zvcore::kPositionOne}) {
      for (int32_t y = 0; y < canvas.height; ++y) {
        const auto width = static_cast<int32_t>(canvas.width);
        const zvcore::ColumnRange range = geometry.ColumnsInside(y, {0, width}, {-margin, margin});
        for (int32_t x = 0; x < width; ++x) {
          const zvcore::Position at = geometry.SourceOf(x, y);
          const bool inside = at.x >= -margin && at.x <= 36 * zvcore::kPositionOne + margin && at.y >= -margin &&
                              at.y <= 22 * zvcore::kPositionOne + margin;
          ASSERT_EQ(inside, x >= range.first && x < range.last) << angle << ": " << x << ", " << y;
        }
      }
    }
  }
}

}  // namespace
