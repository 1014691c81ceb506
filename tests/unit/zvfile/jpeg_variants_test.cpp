// JPEG files that our writer does not make, through libjpeg itself: inks with and without Adobe's inversion; and what the
// QFactor, sub-sampling and progressive settings do to the stream.
#include <gtest/gtest.h>

#include <cstdio>

#include <jpeglib.h>

#include "file_test_support.h"

namespace {

using namespace zvtest;

constexpr int32_t kSide = 64;

// A file of one ink colour, as values 0 (none) to 255.
std::vector<uint8_t> MakeInks(const uint8_t (&inks)[4], J_COLOR_SPACE space, bool adobe) {
  jpeg_compress_struct info = {};
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &buffer, &size);
  info.image_width = info.image_height = kSide;
  info.input_components = 4;
  info.in_color_space = JCS_CMYK;
  jpeg_set_defaults(&info);
  jpeg_set_colorspace(&info, space);
  jpeg_set_quality(&info, 100, TRUE);
  info.write_Adobe_marker = adobe ? TRUE : FALSE;
  jpeg_start_compress(&info, TRUE);
  std::vector<uint8_t> row;
  for (int32_t x = 0; x < kSide; ++x) {
    for (const uint8_t ink : inks) row.push_back(adobe ? static_cast<uint8_t>(255 - ink) : ink);
  }
  JSAMPROW pointer = row.data();
  for (int32_t y = 0; y < kSide; ++y) jpeg_write_scanlines(&info, &pointer, 1);
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  std::vector<uint8_t> bytes(buffer, buffer + size);
  std::free(buffer);
  return bytes;
}

TEST(JpegInks, MixToTheSameColorInEveryEncoding) {
  TestFolder folder;
  const auto path = folder.Path(u"inks.jpg");
  const uint8_t inks[4] = {200, 60, 0, 40};
  // R = (255 - C) (255 - K) / 255 and so on.
  const int32_t expected[3] = {55 * 215 / 255, 195 * 215 / 255, 215};
  for (const auto& [space, adobe] :
       {std::pair{JCS_CMYK, false}, std::pair{JCS_CMYK, true}, std::pair{JCS_YCCK, true}}) {
    WriteBytes(path, MakeInks(inks, space, adobe));
    Picture loaded;
    ASSERT_EQ(Load(path, loaded), SUCCESS);
    EXPECT_EQ(loaded->bitsPerPixel, 24);
    const Color color = ColorAt(loaded.bitmap, 20, 30);
    EXPECT_NEAR(color.red / 257, expected[0], 3);
    EXPECT_NEAR(color.green / 257, expected[1], 3);
    EXPECT_NEAR(color.blue / 257, expected[2], 3);
  }
}

struct Stream {
  int horizontal = 0, vertical = 0;
  bool progressive = false;
  uint16_t firstQuantizer = 0;
};

Stream Inspect(const std::vector<uint8_t>& file) {
  jpeg_decompress_struct info = {};
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, file.data(), static_cast<unsigned long>(file.size()));
  jpeg_read_header(&info, TRUE);
  const Stream stream = {info.comp_info[0].h_samp_factor, info.comp_info[0].v_samp_factor,
                         info.progressive_mode != FALSE, info.quant_tbl_ptrs[0]->quantval[0]};
  jpeg_destroy_decompress(&info);
  return stream;
}

TEST(JpegFormat, DecidesTheSubSampling) {
  TestFolder folder;
  const auto path = folder.Path(u"a.jpg");
  Picture source = MakePicture(64, 64, 24);
  for (const auto& [format, horizontal, vertical] :
       {std::tuple{FMT_JPEG, 1, 1}, std::tuple{FMT_JPEG_422, 2, 1}, std::tuple{FMT_JPEG_420, 2, 2}}) {
    ASSERT_EQ(Save(path, source, format, 24, 20), SUCCESS);
    const Stream stream = Inspect(ReadBytes(path));
    EXPECT_EQ(stream.horizontal, horizontal);
    EXPECT_EQ(stream.vertical, vertical);
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ(info.format, format);
  }
}

TEST(JpegPasses, MakeTheFileProgressive) {
  TestFolder folder;
  const auto path = folder.Path(u"a.jpg");
  Picture source = MakePicture(64, 64, 24);
  for (const int32_t passes : {0, -1, -2, 5}) {
    SAVEFILEOPTION option = SaveOption();
    option.passes = passes;
    ASSERT_EQ(Save(path, source, FMT_JPEG, 24, 20, &option), SUCCESS);
    EXPECT_EQ(Inspect(ReadBytes(path)).progressive, passes != 0);
    FILEINFO info;
    ASSERT_EQ(Info(path, info), SUCCESS);
    EXPECT_EQ((info.flags & FILEINFO_PROGRESSIVE) != 0, passes != 0);
  }
}

TEST(JpegQFactor, RunsFromBestAtTwoToSmallestAt255) {
  TestFolder folder;
  const auto path = folder.Path(u"a.jpg");
  Picture source = MakePicture(64, 64, 24);
  size_t last = SIZE_MAX;
  for (const int32_t qFactor : {2, 20, 60, 120, 200, 255}) {
    ASSERT_EQ(Save(path, source, FMT_JPEG, 24, qFactor), SUCCESS);
    const size_t size = ReadBytes(path).size();
    EXPECT_LT(size, last) << qFactor;
    last = size;
  }
  ASSERT_EQ(Save(path, source, FMT_JPEG, 24, 2), SUCCESS);
  EXPECT_EQ(Inspect(ReadBytes(path)).firstQuantizer, 1) << "quality 100";
  ASSERT_EQ(Save(path, source, FMT_JPEG, 24, 40), SUCCESS);
  // Quality 85: the standard table's 16 at 2 * (100 - 85) percent.
  EXPECT_EQ(Inspect(ReadBytes(path)).firstQuantizer, 5);
}

TEST(JpegSize, BeyondTheFormatIsRefused) {
  TestFolder folder;
  Picture source = MakePicture(65501, 1, 8, ORDER_GRAY);
  EXPECT_EQ(Save(folder.Path(u"a.jpg"), source, FMT_JPEG), ERROR_LIMIT_EXCEEDED);
  EXPECT_EQ(folder.FileCount(), 0u);
}

TEST(JpegEndMarker, ThatIsMissingIsForgivenWhenAllPixelsAreThere) {
  TestFolder folder;
  const auto path = folder.Path(u"a.jpg");
  Picture source = MakePicture(64, 64, 24), whole, cut;
  ASSERT_EQ(Save(path, source, FMT_JPEG, 24, 20), SUCCESS);
  ASSERT_EQ(Load(path, whole), SUCCESS);
  std::vector<uint8_t> bytes = ReadBytes(path);
  bytes.resize(bytes.size() - 2);
  WriteBytes(path, bytes);
  ASSERT_EQ(Load(path, cut), SUCCESS);
  EXPECT_EQ(DifferentPixels(whole.bitmap, cut.bitmap), 0);
}

}  // namespace
