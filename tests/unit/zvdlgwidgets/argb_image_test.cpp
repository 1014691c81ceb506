#include "services/zvdlgwidgets/argb_image.h"

#include <gmock/gmock.h>

#include "platform/unique_handle.h"

namespace {

using testing::Each;
using testing::ElementsAre;

constexpr uint32_t kMagenta = 0x00FF00FF;
constexpr uint32_t kRed = 0x00FF0000;

TEST(ArgbImage, MagentaIsTransparent) {
  const ArgbImage image = MakeArgbImage(3, 1, {kRed, kMagenta, 0x00123456});
  EXPECT_THAT(image.pixels, ElementsAre(0xFFFF0000u, 0u, 0xFF123456u));
}

TEST(ArgbImage, WithoutMagentaTheCornersColourIsTransparent) {
  const ArgbImage image = MakeArgbImage(2, 2, {0x00C0C0C0, kRed, kRed, 0x00C0C0C0});
  EXPECT_THAT(image.pixels, ElementsAre(0u, 0xFFFF0000u, 0xFFFF0000u, 0u));
}

TEST(ArgbImage, AlphaChannelIsTakenAndMultipliedIn) {
  const ArgbImage image = MakeArgbImage(3, 1, {0xFFFF00FF, 0x80FF0000, 0x00FFFFFF});
  EXPECT_THAT(image.pixels, ElementsAre(0xFFFF00FFu, 0x80800000u, 0u));
}

TEST(ArgbImage, ScalingToItsOwnSizeChangesNothing) {
  const ArgbImage image = MakeArgbImage(2, 1, {kRed, kMagenta});
  EXPECT_EQ(image.pixels, ScaleArgbImage(image, 2, 1).pixels);
}

TEST(ArgbImage, PlainAreaStaysPlainAtEverySize) {
  ArgbImage image{4, 4, std::vector<uint32_t>(16, 0xFF336699)};
  for (const int size : {1, 2, 3, 6, 7, 8, 12}) {
    const ArgbImage scaled = ScaleArgbImage(image, size, size);
    EXPECT_EQ(static_cast<size_t>(size) * size, scaled.pixels.size());
    EXPECT_THAT(scaled.pixels, Each(0xFF336699u)) << size;
  }
}

TEST(ArgbImage, ReductionTakesTheMeanOfWhatItCovers) {
  const ArgbImage image{2, 1, {0xFF000000, 0xFFFFFFFF}};
  const uint32_t mean = ScaleArgbImage(image, 1, 1).pixels.front();
  EXPECT_EQ(0xFFu, mean >> 24);
  EXPECT_NEAR(128, static_cast<int>(mean & 0xFF), 1);
}

TEST(ArgbImage, EnlargementKeepsTheEndsAndStepsBetween) {
  const ArgbImage image{2, 1, {0xFF000000, 0xFFFFFFFF}};
  const std::vector<uint32_t> pixels = ScaleArgbImage(image, 4, 1).pixels;
  EXPECT_EQ(0xFF000000u, pixels.front());
  EXPECT_EQ(0xFFFFFFFFu, pixels.back());
  EXPECT_LT(pixels[0] & 0xFF, pixels[1] & 0xFF);
  EXPECT_LT(pixels[1] & 0xFF, pixels[2] & 0xFF);
}

TEST(ArgbImage, ScaledColoursNeverExceedTheirAlpha) {
  const ArgbImage image =
      MakeArgbImage(3, 3, {kRed, kMagenta, kRed, kMagenta, 0x0000FF00, kMagenta, kRed, kRed, kMagenta});
  for (const int size : {2, 4, 5, 9}) {
    for (const uint32_t pixel : ScaleArgbImage(image, size, size).pixels) {
      const uint32_t alpha = pixel >> 24;
      EXPECT_LE((pixel >> 16) & 0xFF, alpha);
      EXPECT_LE((pixel >> 8) & 0xFF, alpha);
      EXPECT_LE(pixel & 0xFF, alpha);
    }
  }
}

TEST(ArgbImage, GreyPictureIsHalfTransparentAndWithoutColour) {
  const ArgbImage grey = GreyArgbImage(MakeArgbImage(2, 1, {kRed, kMagenta}));
  EXPECT_EQ(0u, grey.pixels[1]);
  EXPECT_EQ(0x7Fu, grey.pixels[0] >> 24);
  EXPECT_EQ((grey.pixels[0] >> 16) & 0xFF, grey.pixels[0] & 0xFF);
  EXPECT_EQ((grey.pixels[0] >> 8) & 0xFF, grey.pixels[0] & 0xFF);
}

TEST(ArgbImage, NothingGivesNothing) {
  EXPECT_TRUE(MakeArgbImage(0, 0, {}).IsEmpty());
  EXPECT_TRUE(ScaleArgbImage({}, 5, 5).IsEmpty());
  EXPECT_TRUE(ScaleArgbImage(MakeArgbImage(1, 1, {kRed}), 0, 5).IsEmpty());
  EXPECT_TRUE(ReadArgbImage(nullptr).IsEmpty());
}

TEST(ArgbImage, BitmapIsReadFromTheTop) {
  const uint32_t rows[] = {0xFF0000FF, 0xFF00FF00};
  const unique_hbitmap bitmap(::CreateBitmap(1, 2, 1, 32, rows));
  EXPECT_THAT(ReadArgbImage(bitmap.get()).pixels, ElementsAre(0xFF0000FFu, 0xFF00FF00u));
}

}  // namespace
