// The long tail of formats that are only read: files are put together here byte by byte.
#include <gtest/gtest.h>

#include <cstring>
#include <string_view>

#include "file_test_support.h"

namespace {

using namespace zvtest;
using namespace std::string_view_literals;

class LongTail : public testing::Test {
 protected:
  int32_t LoadBytes(const std::u16string& name, const std::vector<uint8_t>& bytes, Picture& picture, FILEINFO& info) {
    WriteBytes(folder.Path(name), bytes);
    info = {};
    info.uStructSize = sizeof info;
    return Load(folder.Path(name), picture, 0, ORDER_BGR_OR_GRAY, nullptr, &info);
  }
  TestFolder folder;
};

std::vector<uint8_t> Bytes(std::string_view text) { return {text.begin(), text.end()}; }

void Append(std::vector<uint8_t>& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }

void AppendBe(std::vector<uint8_t>& bytes, uint64_t value, int size) {
  for (int i = size - 1; i >= 0; --i) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

TEST_F(LongTail, PortableMapsComeInTheirDepth) {
  Picture bits, gray, deep, color;
  FILEINFO info;
  ASSERT_EQ(LoadBytes(u"a.pbm", Bytes("P4\n8 1\n\x0F"sv), bits, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_PBM);
  EXPECT_EQ(bits->bitsPerPixel, 1);
  EXPECT_EQ(ColorAt(bits.bitmap, 0, 0).green, 65535);
  EXPECT_EQ(ColorAt(bits.bitmap, 7, 0).green, 0);
  ASSERT_EQ(LoadBytes(u"a.pgm", Bytes("P5\n3 1\n255\n\x00\x80\xFF"sv), gray, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_PGM);
  EXPECT_EQ(gray->bitsPerPixel, 8);
  EXPECT_EQ(gray->colorOrder, ORDER_GRAY);
  EXPECT_EQ(ColorAt(gray.bitmap, 1, 0).green, 128 * 257);
  ASSERT_EQ(LoadBytes(u"b.pgm", Bytes("P5\n2 1\n65535\n\x12\x34\xFF\xFE"sv), deep, info), SUCCESS);
  EXPECT_EQ(deep->bitsPerPixel, 16);
  EXPECT_EQ(ColorAt(deep.bitmap, 0, 0).green, 0x1234);
  ASSERT_EQ(LoadBytes(u"a.ppm", Bytes("P6\n2 1\n255\n\xFF\x10\x00\x01\x02\x03"sv), color, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_PPM);
  EXPECT_EQ(color->bitsPerPixel, 24);
  EXPECT_EQ(ColorAt(color.bitmap, 0, 0), (Color{65535, 16 * 257, 0, 65535}));
}

// A Targa header for a picture without colour map.
std::vector<uint8_t> TargaHead(uint8_t type, uint8_t width, uint8_t height, uint8_t bits, uint8_t descriptor) {
  return {0, 0, type, 0, 0, 0, 0, 0, 0, 0, 0, 0, width, 0, height, 0, bits, descriptor};
}

TEST_F(LongTail, TargaGoesByItsExtensionAndStandsUpright) {
  auto bytes = TargaHead(2, 1, 2, 24, 0);  // the bottom row first
  Append(bytes, "\x00\x00\xFF\xFF\x00\x00"sv);
  Picture picture, unnamed;
  FILEINFO info;
  ASSERT_EQ(LoadBytes(u"a.tga", bytes, picture, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_TGA);
  EXPECT_EQ(picture->viewPerspective, VIEW_TOP_LEFT);
  EXPECT_EQ(ColorAt(picture.bitmap, 0, 0).blue, 65535);
  EXPECT_EQ(ColorAt(picture.bitmap, 0, 1).red, 65535);
  EXPECT_EQ(LoadBytes(u"a.bin", bytes, unnamed, info), ERROR_FILE_FORMAT) << "nothing in the file says what it is";
}

TEST_F(LongTail, TargaAlphaIsKept) {
  auto bytes = TargaHead(2, 1, 1, 32, 0x28);
  Append(bytes, "\x01\x02\x03\x40"sv);
  Picture picture;
  FILEINFO info;
  ASSERT_EQ(LoadBytes(u"a.tga", bytes, picture, info), SUCCESS);
  EXPECT_EQ(picture->bitsPerPixel, 32);
  EXPECT_EQ(ColorAt(picture.bitmap, 0, 0), (Color{3 * 257, 2 * 257, 257, 0x40 * 257}));
}

TEST_F(LongTail, GarbageWithAnExtensionOfAMarklessFormatIsOfUnknownFormat) {
  Picture picture;
  FILEINFO info;
  const auto text = Bytes("A letter that somebody saved under a wrong name, and nothing else.\n"sv);
  for (const char16_t* name :
       {u"a.tga", u"a.cut", u"a.wbmp", u"a.mac", u"a.rla", u"a.tim", u"a.art", u"a.avs", u"a.mtv"}) {
    const int32_t result = LoadBytes(name, text, picture, info);
    EXPECT_NE(result, SUCCESS) << std::filesystem::path(name);
    EXPECT_EQ(picture->data, nullptr);
  }
}

TEST_F(LongTail, PagesOfAMultiPageFileAreCountedAndLoaded) {
  std::vector<uint8_t> bytes;
  for (int page = 1; page <= 3; ++page) {
    Append(bytes, "P5\n" + std::to_string(page) + " 1\n255\n");
    bytes.insert(bytes.end(), static_cast<size_t>(page), static_cast<uint8_t>(page * 10));
  }
  Picture picture;
  FILEINFO info;
  ASSERT_EQ(LoadBytes(u"a.pgm", bytes, picture, info), SUCCESS);
  ASSERT_EQ(Info(folder.Path(u"a.pgm"), info, 1), SUCCESS);
  EXPECT_EQ(info.totalPages, 3);
  const LOADFILEOPTION third = LoadOption(3);
  Picture last;
  ASSERT_EQ(Load(folder.Path(u"a.pgm"), last, 0, ORDER_BGR_OR_GRAY, &third), SUCCESS);
  EXPECT_EQ(last->width, 3);
  EXPECT_EQ(ColorAt(last.bitmap, 2, 0).green, 30 * 257);
  ASSERT_EQ(Info(folder.Path(u"a.pgm"), info, 0, 4), ERROR_PAGE_MISSING);
}

TEST_F(LongTail, ForgedSizesAreRefused) {
  Picture picture;
  FILEINFO info;
  EXPECT_NE(LoadBytes(u"a.ppm", Bytes("P6\n2000000000 2000000000\n255\n\x01"sv), picture, info), SUCCESS);
  EXPECT_NE(LoadBytes(u"b.ppm", Bytes("P6\n60000 60000\n255\n\x01"sv), picture, info), SUCCESS);
  EXPECT_NE(LoadBytes(u"c.ppm", Bytes("P6\n0 0\n255\n"sv), picture, info), SUCCESS);
  EXPECT_EQ(picture->data, nullptr);
}

TEST_F(LongTail, DicomSaysWhetherItIsGreyOrColour) {
  const auto element = [](std::vector<uint8_t>& bytes, uint16_t group, uint16_t number, std::string_view kind,
                          std::string_view value) {
    for (const uint16_t part : {group, number}) {
      bytes.push_back(static_cast<uint8_t>(part));
      bytes.push_back(static_cast<uint8_t>(part >> 8));
    }
    Append(bytes, kind);
    if (kind == "OB") bytes.insert(bytes.end(), 2, 0);
    bytes.push_back(static_cast<uint8_t>(value.size()));
    bytes.push_back(0);
    if (kind == "OB") bytes.insert(bytes.end(), 2, 0);
    Append(bytes, value);
  };
  for (const bool color : {false, true}) {
    std::vector<uint8_t> bytes(128, 0);
    Append(bytes, "DICM");
    element(bytes, 2, 0x10, "UI", "1.2.840.10008.1.2.1\0"sv);
    element(bytes, 0x28, 2, "US", color ? "\3\0"sv : "\1\0"sv);
    element(bytes, 0x28, 4, "CS", color ? "RGB "sv : "MONOCHROME2 "sv);
    if (color) element(bytes, 0x28, 6, "US", "\0\0"sv);
    element(bytes, 0x28, 0x10, "US", "\1\0"sv);
    element(bytes, 0x28, 0x11, "US", "\2\0"sv);
    element(bytes, 0x28, 0x100, "US", "\x08\0"sv);
    element(bytes, 0x28, 0x101, "US", "\x08\0"sv);
    element(bytes, 0x28, 0x102, "US", "\x07\0"sv);
    element(bytes, 0x28, 0x103, "US", "\0\0"sv);
    element(bytes, 0x7FE0, 0x10, "OB", color ? "\xFF\x00\x00\x00\x00\xFF"sv : "\x00\xFF"sv);
    Picture picture;
    FILEINFO info;
    ASSERT_EQ(LoadBytes(u"a.dcm", bytes, picture, info), SUCCESS);
    EXPECT_EQ(info.format, color ? FMT_DICOM_COLOR : FMT_DICOM_GRAY);
    EXPECT_EQ(picture->width, 2);
    EXPECT_EQ(ColorAt(picture.bitmap, 1, 0).blue, 65535);
    // The reader maps stored values through the window of the standard, which is half a step off at its ends.
    EXPECT_NEAR(ColorAt(picture.bitmap, 0, 0).red, color ? 65535 : 0, 257);
  }
}

// A PSD without resources or layers; the picture follows its compression method.
std::vector<uint8_t> PsdHead(uint16_t channels, uint32_t width, uint32_t height, uint16_t depth, uint16_t mode,
                             bool alpha) {
  std::vector<uint8_t> bytes = Bytes("8BPS\0\1\0\0\0\0\0\0"sv);
  AppendBe(bytes, channels, 2);
  AppendBe(bytes, height, 4);
  AppendBe(bytes, width, 4);
  AppendBe(bytes, depth, 2);
  AppendBe(bytes, mode, 2);
  if (mode == 2) {
    AppendBe(bytes, 768, 4);
    for (int channel = 0; channel < 3; ++channel) {
      for (int i = 0; i < 256; ++i)
        bytes.push_back(static_cast<uint8_t>(channel == 0 ? i : channel == 1 ? 255 - i : 7));
    }
  } else {
    AppendBe(bytes, 0, 4);
  }
  AppendBe(bytes, 0, 4);
  AppendBe(bytes, alpha ? 6 : 0, 4);
  if (alpha) {
    AppendBe(bytes, 2, 4);
    AppendBe(bytes, 0xFFFF, 2);  // minus one layer: the merged picture has transparency
  }
  return bytes;
}

TEST_F(LongTail, PhotoshopPlanesAreReadRawAndPacked) {
  Picture raw, packed;
  FILEINFO info;
  auto bytes = PsdHead(3, 2, 1, 8, 3, false);
  auto runs = bytes;
  Append(bytes, "\0\0\x01\x02\x03\x04\x05\x06"sv);
  ASSERT_EQ(LoadBytes(u"a.psd", bytes, raw, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_PSD);
  EXPECT_EQ(ColorAt(raw.bitmap, 0, 0), (Color{257, 3 * 257, 5 * 257, 65535}));
  EXPECT_EQ(ColorAt(raw.bitmap, 1, 0), (Color{2 * 257, 4 * 257, 6 * 257, 65535}));
  Append(runs, "\0\1\0\3\0\3\0\2\x01\x01\x02\x01\x03\x04\xFF\x05"sv);
  ASSERT_EQ(LoadBytes(u"b.psd", runs, packed, info), SUCCESS);
  EXPECT_EQ(ColorAt(packed.bitmap, 0, 0), (Color{257, 3 * 257, 5 * 257, 65535}));
  EXPECT_EQ(ColorAt(packed.bitmap, 1, 0), (Color{2 * 257, 4 * 257, 5 * 257, 65535}));
}

// A zlib stream of one block that is not compressed.
std::vector<uint8_t> Stored(std::string_view content) {
  std::vector<uint8_t> stream = {0x78, 0x01, 0x01};
  const auto length = static_cast<uint16_t>(content.size());
  for (const uint16_t value : {length, static_cast<uint16_t>(~length)}) {
    stream.push_back(static_cast<uint8_t>(value));
    stream.push_back(static_cast<uint8_t>(value >> 8));
  }
  Append(stream, content);
  uint32_t low = 1, high = 0;  // Adler-32
  for (const char byte : content) {
    low = (low + static_cast<uint8_t>(byte)) % 65521;
    high = (high + low) % 65521;
  }
  AppendBe(stream, high << 16 | low, 4);
  return stream;
}

TEST_F(LongTail, PhotoshopPlanesAreReadDeflated) {
  FILEINFO info;
  const auto load = [&](std::vector<uint8_t> bytes, char method, std::string_view planes, Picture& picture) {
    bytes.insert(bytes.end(), {0, static_cast<uint8_t>(method)});
    const std::vector<uint8_t> stream = Stored(planes);
    bytes.insert(bytes.end(), stream.begin(), stream.end());
    return LoadBytes(u"a.psd", bytes, picture, info);
  };
  Picture plain, predicted, deep, damaged, tooShort;
  ASSERT_EQ(load(PsdHead(3, 2, 1, 8, 3, false), 2, "\x01\x02\x03\x04\x05\x06"sv, plain), SUCCESS);
  EXPECT_EQ(ColorAt(plain.bitmap, 0, 0), (Color{257, 3 * 257, 5 * 257, 65535}));
  EXPECT_EQ(ColorAt(plain.bitmap, 1, 0), (Color{2 * 257, 4 * 257, 6 * 257, 65535}));
  ASSERT_EQ(load(PsdHead(3, 2, 1, 8, 3, false), 3, "\x05\xFF\x03\x01\x05\x02"sv, predicted), SUCCESS);
  EXPECT_EQ(ColorAt(predicted.bitmap, 0, 0), (Color{5 * 257, 3 * 257, 5 * 257, 65535}));
  EXPECT_EQ(ColorAt(predicted.bitmap, 1, 0), (Color{4 * 257, 4 * 257, 7 * 257, 65535}));
  // Each row begins anew; the sum carries over the bytes of a sample.
  ASSERT_EQ(load(PsdHead(1, 2, 2, 16, 1, false), 3, "\x12\xFF\0\x02\x80\0\xFF\xFF"sv, deep), SUCCESS);
  EXPECT_EQ(ColorAt(deep.bitmap, 0, 0).green, 0x12FF);
  EXPECT_EQ(ColorAt(deep.bitmap, 1, 0).green, 0x1301);
  EXPECT_EQ(ColorAt(deep.bitmap, 0, 1).green, 0x8000);
  EXPECT_EQ(ColorAt(deep.bitmap, 1, 1).green, 0x7FFF);
  EXPECT_EQ(load(PsdHead(3, 2, 1, 8, 3, false), 2, "\x01\x02"sv, tooShort), ERROR_FILE_DAMAGED);
  EXPECT_EQ(load(PsdHead(3, 2, 1, 8, 3, false), 4, "\x01\x02\x03\x04\x05\x06"sv, damaged), ERROR_FEATURE_UNSUPPORTED);
}

TEST_F(LongTail, PhotoshopModesKeepTheirDepth) {
  Picture bilevel, indexed, gray, alpha, inks;
  FILEINFO info;
  auto bytes = PsdHead(1, 8, 1, 1, 0, false);
  Append(bytes, "\0\0\x0F"sv);
  ASSERT_EQ(LoadBytes(u"a.psd", bytes, bilevel, info), SUCCESS);
  EXPECT_EQ(bilevel->bitsPerPixel, 1);
  EXPECT_EQ(ColorAt(bilevel.bitmap, 0, 0).red, 65535);
  EXPECT_EQ(ColorAt(bilevel.bitmap, 7, 0).red, 0);
  bytes = PsdHead(1, 1, 1, 8, 2, false);
  Append(bytes, "\0\0\x10"sv);
  ASSERT_EQ(LoadBytes(u"b.psd", bytes, indexed, info), SUCCESS);
  EXPECT_EQ(indexed->bitsPerPixel, 8);
  EXPECT_EQ(ColorAt(indexed.bitmap, 0, 0), (Color{16 * 257, 239 * 257, 7 * 257, 65535}));
  bytes = PsdHead(1, 1, 1, 16, 1, false);
  Append(bytes, "\0\0\x12\x34"sv);
  ASSERT_EQ(LoadBytes(u"c.psd", bytes, gray, info), SUCCESS);
  EXPECT_EQ(gray->bitsPerPixel, 16);
  EXPECT_EQ(ColorAt(gray.bitmap, 0, 0).green, 0x1234);
  bytes = PsdHead(4, 1, 1, 8, 3, true);
  Append(bytes, "\0\0\x01\x02\x03\x80"sv);
  ASSERT_EQ(LoadBytes(u"d.psd", bytes, alpha, info), SUCCESS);
  EXPECT_EQ(alpha->bitsPerPixel, 32);
  EXPECT_EQ(ColorAt(alpha.bitmap, 0, 0).alpha, 128 * 257);
  bytes = PsdHead(4, 1, 1, 8, 4, false);
  Append(bytes, "\0\0\x00\xFF\xFF\xFF"sv);
  ASSERT_EQ(LoadBytes(u"e.psd", bytes, inks, info), SUCCESS);
  EXPECT_EQ(ColorAt(inks.bitmap, 0, 0), (Color{0, 65535, 65535, 65535}));
}

TEST_F(LongTail, CutPhotoshopFilesFail) {
  auto whole = PsdHead(3, 20, 20, 8, 3, false);
  Append(whole, "\0\0"sv);
  whole.resize(whole.size() + 1200, 9);
  Picture picture;
  FILEINFO info;
  ASSERT_EQ(LoadBytes(u"a.psd", whole, picture, info), SUCCESS);
  for (size_t length = 6; length < whole.size(); length += 1 + length / 10) {
    Picture cut;
    EXPECT_NE(LoadBytes(u"b.psd", {whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)}, cut, info), SUCCESS)
        << length;
  }
}

TEST_F(LongTail, WindowDumpsWithMasksAreRead) {
  std::vector<uint8_t> bytes;
  for (const uint32_t field : {100u, 7u,        2u,      24u,   2u, 1u, 0u, 1u, 32u, 1u, 32u, 32u, 8u,
                               4u,   0xFF0000u, 0xFF00u, 0xFFu, 8u, 0u, 0u, 2u, 1u,  0u, 0u,  0u}) {
    AppendBe(bytes, field, 4);
  }
  Append(bytes, "\0\x01\x02\x03\0\xFF\x00\x80"sv);
  Picture picture;
  FILEINFO info;
  ASSERT_EQ(LoadBytes(u"a.xwd", bytes, picture, info), SUCCESS);
  EXPECT_EQ(info.format, FMT_XWD);
  EXPECT_EQ(ColorAt(picture.bitmap, 0, 0), (Color{257, 2 * 257, 3 * 257, 65535}));
  EXPECT_EQ(ColorAt(picture.bitmap, 1, 0), (Color{65535, 0, 128 * 257, 65535}));
}

}  // namespace
