// PNG files as other programs write them: every colour type and depth, transparency and interlacing, made with libpng itself
// and checked sample by sample; and our own files read back by libpng.
#include <gtest/gtest.h>
#include <png.h>

#include <tuple>

#include "file_test_support.h"

namespace {

using namespace zvtest;

constexpr int32_t kWidth = 29, kHeight = 21;

struct Variant {
  int type;
  int depth;
  bool interlaced;
  bool transparent;  // a tRNS chunk
};

int Channels(int type) {
  switch (type) {
    case PNG_COLOR_TYPE_RGB: return 3;
    case PNG_COLOR_TYPE_RGB_ALPHA: return 4;
    case PNG_COLOR_TYPE_GRAY_ALPHA: return 2;
    default: return 1;
  }
}

uint32_t Sample(int32_t x, int32_t y, int channel, int depth) {
  const uint32_t value = static_cast<uint32_t>(x * 2654435 + y * 40503 + channel * 7919) * 2246822519u;
  return (value >> 13) & ((1u << depth) - 1);
}

png_color PaletteColor(uint32_t index) {
  return {static_cast<png_byte>(index * 5 + 3), static_cast<png_byte>(255 - index), static_cast<png_byte>(index * 11)};
}

uint8_t PaletteAlpha(uint32_t index) { return index < 3 ? static_cast<uint8_t>(index * 100) : 255; }

void Append(png_structp png, png_bytep data, size_t count) {
  auto* all = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
  all->insert(all->end(), data, data + count);
}

// The row as PNG packs it: big-endian, leftmost pixel highest.
std::vector<uint8_t> PackRow(int32_t y, const Variant& variant) {
  const int channels = Channels(variant.type);
  std::vector<uint8_t> row((static_cast<size_t>(kWidth * channels * variant.depth) + 7) / 8);
  for (int32_t x = 0; x < kWidth; ++x) {
    for (int c = 0; c < channels; ++c) {
      const uint32_t sample = Sample(x, y, c, variant.depth);
      const size_t bit = static_cast<size_t>((x * channels + c) * variant.depth);
      if (variant.depth == 16) {
        row[bit / 8] = static_cast<uint8_t>(sample >> 8);
        row[bit / 8 + 1] = static_cast<uint8_t>(sample);
      } else {
        row[bit / 8] |= static_cast<uint8_t>(sample << (8 - variant.depth - static_cast<int>(bit % 8)));
      }
    }
  }
  return row;
}

std::vector<uint8_t> MakePng(const Variant& variant) {
  std::vector<uint8_t> bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &bytes, Append, nullptr);
  png_set_IHDR(png, info, kWidth, kHeight, variant.depth, variant.type,
               variant.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (variant.type == PNG_COLOR_TYPE_PALETTE) {
    std::vector<png_color> palette;
    std::vector<png_byte> alphas;
    for (uint32_t i = 0; i < (1u << variant.depth); ++i) {
      palette.push_back(PaletteColor(i));
      alphas.push_back(PaletteAlpha(i));
    }
    png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    if (variant.transparent) png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), nullptr);
  } else if (variant.transparent) {
    png_color_16 key = {};
    key.gray = static_cast<png_uint_16>(Sample(0, 0, 0, variant.depth));
    key.red = key.gray;
    key.green = static_cast<png_uint_16>(Sample(0, 0, 1, variant.depth));
    key.blue = static_cast<png_uint_16>(Sample(0, 0, 2, variant.depth));
    png_set_tRNS(png, info, nullptr, 0, &key);
  }
  png_write_info(png, info);
  std::vector<std::vector<uint8_t>> rows;
  std::vector<png_bytep> pointers;
  for (int32_t y = 0; y < kHeight; ++y) rows.push_back(PackRow(y, variant));
  for (auto& row : rows) pointers.push_back(row.data());
  png_write_image(png, pointers.data());
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return bytes;
}

Color ExpectedAt(int32_t x, int32_t y, const Variant& variant) {
  const auto full = [&](uint32_t sample) {
    return static_cast<uint16_t>(sample * 65535u / ((1u << variant.depth) - 1));
  };
  uint32_t s[4];
  for (int c = 0; c < 4; ++c) s[c] = Sample(x, y, c, variant.depth);
  const auto keyed = [&](int channels) {
    bool same = variant.transparent;
    for (int c = 0; c < channels; ++c) same = same && s[c] == Sample(0, 0, c, variant.depth);
    return static_cast<uint16_t>(same ? 0 : 65535);
  };
  switch (variant.type) {
    case PNG_COLOR_TYPE_PALETTE: {
      const png_color color = PaletteColor(s[0]);
      const auto wide = [](uint32_t value) { return static_cast<uint16_t>(value * 257); };
      return {wide(color.red), wide(color.green), wide(color.blue),
              variant.transparent ? wide(PaletteAlpha(s[0])) : uint16_t{65535}};
    }
    case PNG_COLOR_TYPE_GRAY: return {full(s[0]), full(s[0]), full(s[0]), keyed(1)};
    case PNG_COLOR_TYPE_GRAY_ALPHA: return {full(s[0]), full(s[0]), full(s[0]), full(s[1])};
    case PNG_COLOR_TYPE_RGB: return {full(s[0]), full(s[1]), full(s[2]), keyed(3)};
    default: return {full(s[0]), full(s[1]), full(s[2]), full(s[3])};
  }
}

int32_t ExpectedBits(const Variant& variant) {
  const bool deep = variant.depth == 16;
  const bool alpha = variant.transparent || (variant.type & PNG_COLOR_MASK_ALPHA);
  if (alpha) return deep ? 64 : 32;
  if (variant.type == PNG_COLOR_TYPE_RGB) return deep ? 48 : 24;
  return variant.depth == 2 ? 4 : variant.depth;
}

class PngVariants : public testing::TestWithParam<std::tuple<std::pair<int, int>, bool, bool>> {};

TEST_P(PngVariants, AreReadSampleBySample) {
  const auto& [kind, interlaced, transparent] = GetParam();
  const Variant variant = {kind.first, kind.second, interlaced, transparent};
  TestFolder folder;
  const auto path = folder.Path(u"a.png");
  WriteBytes(path, MakePng(variant));
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_EQ((info.flags & FILEINFO_INTERLACED) != 0, interlaced);
  for (const int32_t order : {ORDER_BGR_OR_GRAY, ORDER_RGB}) {
    Picture loaded;
    ASSERT_EQ(Load(path, loaded, 0, order), SUCCESS);
    if (order == ORDER_BGR_OR_GRAY) {
      EXPECT_EQ(loaded->bitsPerPixel, ExpectedBits(variant));
    }
    int64_t wrong = 0;
    for (int32_t y = 0; y < kHeight; ++y) {
      for (int32_t x = 0; x < kWidth; ++x) wrong += ColorAt(loaded.bitmap, x, y) == ExpectedAt(x, y, variant) ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0);
  }
}

using Kind = std::pair<int, int>;
INSTANTIATE_TEST_SUITE_P(
    Opaque, PngVariants,
    testing::Combine(testing::Values(Kind{PNG_COLOR_TYPE_GRAY, 1}, Kind{PNG_COLOR_TYPE_GRAY, 2},
                                     Kind{PNG_COLOR_TYPE_GRAY, 4}, Kind{PNG_COLOR_TYPE_GRAY, 8},
                                     Kind{PNG_COLOR_TYPE_GRAY, 16}, Kind{PNG_COLOR_TYPE_PALETTE, 1},
                                     Kind{PNG_COLOR_TYPE_PALETTE, 2}, Kind{PNG_COLOR_TYPE_PALETTE, 4},
                                     Kind{PNG_COLOR_TYPE_PALETTE, 8}, Kind{PNG_COLOR_TYPE_RGB, 8},
                                     Kind{PNG_COLOR_TYPE_RGB, 16}),
                     testing::Bool(), testing::Bool()));
// Files with alpha cannot have a transparent colour as well.
INSTANTIATE_TEST_SUITE_P(
    WithAlpha, PngVariants,
    testing::Combine(testing::Values(Kind{PNG_COLOR_TYPE_GRAY_ALPHA, 8}, Kind{PNG_COLOR_TYPE_GRAY_ALPHA, 16},
                                     Kind{PNG_COLOR_TYPE_RGB_ALPHA, 8}, Kind{PNG_COLOR_TYPE_RGB_ALPHA, 16}),
                     testing::Bool(), testing::Values(false)));

// Reads a file with libpng's simplified interface, as 8-bit RGBA.
std::vector<uint8_t> ReadWithLibpng(const std::vector<uint8_t>& file) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&image, file.data(), file.size())) return {};
  image.format = PNG_FORMAT_RGBA;
  std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) || image.warning_or_error) pixels.clear();
  return pixels;
}

TEST(WrittenPng, IsReadByLibpngWithoutAWarning) {
  TestFolder folder;
  const auto path = folder.Path(u"a.png");
  for (const int32_t bits : {1, 4, 8, 24, 32}) {
    for (const int32_t level : {0, 1, 6, 9}) {
      for (const auto& [width, height] : {std::pair{1, 1}, std::pair{5, 3}, std::pair{16, 4}, std::pair{33, 40}}) {
        Picture source = MakePicture(width, height, bits, ORDER_BGR, bits == 32);
        source->xResolution = source->yResolution = 300;
        SetBitmapMetadata(&source, METADATA_COMMENT + COMMENT_TITLE, "\xC3\xA9t\xC3\xA9", 5);
        ASSERT_EQ(Save(path, source, FMT_PNG, bits, level), SUCCESS);
        const std::vector<uint8_t> pixels = ReadWithLibpng(ReadBytes(path));
        ASSERT_EQ(pixels.size(), static_cast<size_t>(width * height * 4)) << bits << " bits, level " << level;
        int64_t wrong = 0;
        for (int32_t i = 0; i < width * height; ++i) {
          const Color color = ColorAt(source.bitmap, i % width, i / width);
          const uint8_t* pixel = &pixels[static_cast<size_t>(i) * 4];
          wrong += pixel[0] * 257 == color.red && pixel[1] * 257 == color.green && pixel[2] * 257 == color.blue &&
                           pixel[3] * 257 == color.alpha
                       ? 0
                       : 1;
        }
        EXPECT_EQ(wrong, 0) << bits << " bits, level " << level << ", " << width << " x " << height;
      }
    }
  }
}

TEST(WrittenPng, UsesEveryFilterWhereItPays) {
  TestFolder folder;
  const auto path = folder.Path(u"a.png");
  Picture smooth = MakePicture(300, 200, 24);
  ASSERT_EQ(Save(path, smooth, FMT_PNG, 24, 0), SUCCESS);
  const size_t stored = ReadBytes(path).size();
  ASSERT_EQ(Save(path, smooth, FMT_PNG, 24, 6), SUCCESS);
  EXPECT_LT(ReadBytes(path).size(), stored * 6 / 10);
}

}  // namespace
