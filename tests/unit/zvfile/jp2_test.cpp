// JPEG 2000 files of unusual build: tiles, palettes, inks. Those that our encoder does not write are made of what it writes.
#include <gtest/gtest.h>

#include <cstring>

#include "file_test_support.h"

namespace {

using namespace zvtest;

using Bytes = std::vector<uint8_t>;

void AppendBe(Bytes& to, uint64_t value, int count) {
  for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) to.push_back(static_cast<uint8_t>(value >> shift));
}

void AppendBox(Bytes& to, const char* name, const Bytes& content) {
  AppendBe(to, content.size() + 8, 4);
  to.insert(to.end(), name, name + 4);
  to.insert(to.end(), content.begin(), content.end());
}

// A code stream of our encoder in a file of the given colour boxes.
Bytes Wrap(const Bytes& codeStream, const Picture& picture, uint16_t components, const Bytes& colorBoxes) {
  Bytes file, list, content;
  AppendBox(file, "jP  ", {0x0D, 0x0A, 0x87, 0x0A});
  AppendBox(file, "ftyp", {'j', 'p', '2', ' ', 0, 0, 0, 0, 'j', 'p', '2', ' '});
  AppendBe(content, static_cast<uint32_t>(picture.bitmap.height), 4);
  AppendBe(content, static_cast<uint32_t>(picture.bitmap.width), 4);
  AppendBe(content, components, 2);
  content.insert(content.end(), {7, 7, 0, 0});
  AppendBox(list, "ihdr", content);
  list.insert(list.end(), colorBoxes.begin(), colorBoxes.end());
  AppendBox(file, "jp2h", list);
  AppendBox(file, "jp2c", codeStream);
  return file;
}

Bytes NumberedColors(uint32_t number) {
  Bytes content = {1, 0, 0}, box;
  AppendBe(content, number, 4);
  AppendBox(box, "colr", content);
  return box;
}

class Jp2 : public ::testing::Test {
 protected:
  void SetUp() override { GetDefaultJ2KOptions(&former, sizeof former); }
  void TearDown() override { SetJ2KOptions(&former); }

  void SetTiles(uint32_t width, uint32_t height) {
    J2KSAVEOPTION option = former;
    option.compressionControl = 0;  // lossless
    option.tileWidth = width;
    option.tileHeight = height;
    ASSERT_EQ(SetJ2KOptions(&option), SUCCESS);
  }
  Bytes CodeStreamOf(Picture& picture) {
    EXPECT_EQ(Save(folder.Path(u"a.j2k"), picture, FMT_J2K), SUCCESS);
    return ReadBytes(folder.Path(u"a.j2k"));
  }

  TestFolder folder;
  J2KSAVEOPTION former = {};
};

TEST_F(Jp2, OfTilesLoadsLikeThePicture) {
  for (const auto& [width, height] : {std::pair{64u, 64u}, {200u, 33u}, {17u, 100u}, {1000u, 7u}}) {
    for (const int32_t bits : {8, 24, 32}) {
      SetTiles(width, height);
      Picture source = MakePicture(131, 100, bits), loaded;
      ASSERT_EQ(Save(folder.Path(u"a.jp2"), source, FMT_JP2), SUCCESS);
      ASSERT_EQ(Load(folder.Path(u"a.jp2"), loaded), SUCCESS);
      EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0) << width << "x" << height << " at " << bits;
    }
  }
}

TEST_F(Jp2, OfTilesLoadsAtEveryResolution) {
  Picture source = MakePicture(250, 130, 24);
  SetTiles(0, 0);
  ASSERT_EQ(Save(folder.Path(u"whole.jp2"), source, FMT_JP2), SUCCESS);
  SetTiles(64, 32);
  ASSERT_EQ(Save(folder.Path(u"tiles.jp2"), source, FMT_JP2), SUCCESS);
  for (const int32_t divisor : {1, 2, 4, 8}) {
    SetLoadSize(FMT_JP2, 250 / divisor, 130 / divisor);
    Picture tiles;
    EXPECT_EQ(Load(folder.Path(u"tiles.jp2"), tiles), SUCCESS) << divisor;
    SetLoadSize(FMT_JP2, 0, 0);
    EXPECT_LE(std::abs(tiles->height - 130 / divisor), 1) << divisor;
    EXPECT_LE(std::abs(tiles->width - 250 / divisor), 1) << divisor;
  }
}

struct Steps {
  int32_t calls = 0;
  int32_t stopAt = -1;
};

int32_t ZV_CALL OnRows(FILEINFO*, BITMAPHANDLE*, uint8_t*, uint32_t, int32_t, int32_t, void* user) {
  Steps& steps = *static_cast<Steps*>(user);
  return steps.calls++ == steps.stopAt ? ERROR_USER_ABORT : SUCCESS;
}

TEST_F(Jp2, OfTilesCanBeStoppedBetweenThem) {
  SetTiles(64, 32);
  Picture source = MakePicture(100, 160, 24);
  ASSERT_EQ(Save(folder.Path(u"a.jp2"), source, FMT_JP2), SUCCESS);
  Picture loaded;
  Steps steps;
  steps.stopAt = 1;
  EXPECT_EQ(LoadImageFile(Text(folder.Path(u"a.jp2")).c_str(), &loaded, sizeof(BITMAPHANDLE), 0, ORDER_BGR_OR_GRAY,
                          LOADFILE_ALLOCATE | LOADFILE_STORE, OnRows, &steps, nullptr, nullptr),
            ERROR_USER_ABORT);
  EXPECT_EQ(steps.calls, 2);
  EXPECT_EQ(loaded->data, nullptr);
}

TEST_F(Jp2, WithAPaletteLoadsInItsColours) {
  Picture indices = MakePicture(40, 30, 8);
  indices->colorOrder = ORDER_GRAY;
  for (const bool tiles : {false, true}) {
    SetTiles(tiles ? 16 : 0, tiles ? 16 : 0);
    Picture loaded;
    Bytes palette, boxes = NumberedColors(16), mapping;
    AppendBe(palette, 256, 2);
    palette.insert(palette.end(), {3, 7, 7, 7});
    for (int i = 0; i < 256; ++i) {
      palette.insert(palette.end(),
                     {static_cast<uint8_t>(i), static_cast<uint8_t>(255 - i), static_cast<uint8_t>(i / 2)});
    }
    AppendBox(boxes, "pclr", palette);
    for (uint8_t column = 0; column < 3; ++column) mapping.insert(mapping.end(), {0, 0, 1, column});
    AppendBox(boxes, "cmap", mapping);
    WriteBytes(folder.Path(u"p.jp2"), Wrap(CodeStreamOf(indices), indices, 1, boxes));
    FILEINFO info;
    ASSERT_EQ(Info(folder.Path(u"p.jp2"), info), SUCCESS);
    EXPECT_EQ(info.bitsPerPixel, 24);
    ASSERT_EQ(Load(folder.Path(u"p.jp2"), loaded), SUCCESS);
    ASSERT_EQ(loaded->bitsPerPixel, 24);
    Bytes row(static_cast<size_t>(indices->bytesPerLine)), colors(static_cast<size_t>(loaded->bytesPerLine));
    for (const int32_t y : {0, 17, 29}) {
      CopyBitmapRow(&indices, row.data(), y, indices->bytesPerLine);
      CopyBitmapRow(&loaded, colors.data(), y, loaded->bytesPerLine);
      for (size_t x = 0; x < 40; ++x) {
        EXPECT_EQ(colors[3 * x + 2], row[x]);
        EXPECT_EQ(colors[3 * x + 1], 255 - row[x]);
        EXPECT_EQ(colors[3 * x], row[x] / 2);
      }
    }
  }
}

TEST_F(Jp2, OfInksBecomesRgb) {
  // Our alpha channel stands in for black: the same code stream under another label.
  Picture source = MakePicture(20, 16, 32), loaded;
  source->flags |= BITMAP_FLAG_ALPHA;
  SetTiles(0, 0);
  J2KSAVEOPTION option;
  GetJ2KOptions(&option, sizeof option);
  option.useColorTransform = 0;
  SetJ2KOptions(&option);
  WriteBytes(folder.Path(u"i.jp2"), Wrap(CodeStreamOf(source), source, 4, NumberedColors(12)));
  FILEINFO info;
  ASSERT_EQ(Info(folder.Path(u"i.jp2"), info), SUCCESS);
  EXPECT_EQ(info.bitsPerPixel, 24);
  ASSERT_EQ(Load(folder.Path(u"i.jp2"), loaded), SUCCESS);
  ASSERT_EQ(loaded->bitsPerPixel, 24);
  Bytes inks(static_cast<size_t>(source->bytesPerLine)), colors(static_cast<size_t>(loaded->bytesPerLine));
  for (const int32_t y : {0, 15}) {
    CopyBitmapRow(&source, inks.data(), y, source->bytesPerLine);
    CopyBitmapRow(&loaded, colors.data(), y, loaded->bytesPerLine);
    for (size_t x = 0; x < 20; ++x) {
      const int paper = 255 - inks[4 * x + 3];
      for (size_t c = 0; c < 3; ++c) EXPECT_NEAR(colors[3 * x + c], (255 - inks[4 * x + c]) * paper / 255.0, 1);
    }
  }
}

TEST_F(Jp2, WithDamagedBoxesLosesThoseAlone) {
  Picture source = MakePicture(20, 16, 24), whole;
  const Bytes codeStream = CodeStreamOf(source);
  for (const char* name : {"res ", "colr", "pclr", "cdef", "uuid"}) {
    for (size_t size = 0; size < 24; ++size) {
      Bytes boxes = NumberedColors(16);
      if (std::strcmp(name, "uuid") != 0) AppendBox(boxes, name, Bytes(size, 0xFF));
      Bytes file = Wrap(codeStream, source, 3, boxes);
      if (std::strcmp(name, "uuid") == 0) AppendBox(file, name, Bytes(size, 0xFF));
      WriteBytes(folder.Path(u"d.jp2"), file);
      FILEINFO info;
      Picture loaded;
      Info(folder.Path(u"d.jp2"), info);
      Load(folder.Path(u"d.jp2"), loaded);  // may fail, must not crash
    }
  }
  ASSERT_EQ(Load(folder.Path(u"a.j2k"), whole), SUCCESS);
  EXPECT_EQ(whole->width, 20);
}

}  // namespace
