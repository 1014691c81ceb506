// GIF: depths, interlacing, frames composed as a viewer shows them, pages put in and taken out, damaged files.
#include <gtest/gtest.h>

#include <cstring>

#include "file_test_support.h"

namespace {

using namespace zvtest;

SAVEFILEOPTION PageOption(int32_t page, uint32_t flags = 0) {
  SAVEFILEOPTION option = SaveOption();
  option.pageNumber = page;
  option.flags |= flags;
  return option;
}

Picture LoadPage(const std::filesystem::path& path, int32_t page) {
  Picture picture;
  const LOADFILEOPTION option = LoadOption(page);
  EXPECT_EQ(Load(path, picture, 0, ORDER_BGR_OR_GRAY, &option), SUCCESS);
  return picture;
}

TEST(Gif, KeepsEveryDepthPlainAndInterlaced) {
  TestFolder folder;
  for (const auto& [bits, order] : {std::pair{1, ORDER_BGR}, {4, ORDER_BGR}, {8, ORDER_BGR}, {8, ORDER_GRAY}}) {
    for (const uint32_t flags : {0u, uint32_t{SAVEFILE_GIF_INTERLACED}}) {
      for (const auto& [width, height] : {std::pair{67, 41}, {1, 1}, {3, 7}, {300, 2}}) {
        SCOPED_TRACE(testing::Message() << bits << " bits, flags " << flags << ", " << width << " x " << height);
        Picture source = MakePicture(width, height, bits, order);
        const SAVEFILEOPTION option = PageOption(1, flags);
        const auto path = folder.Path(u"a.gif");
        ASSERT_EQ(Save(path, source, FMT_GIF, 0, 0, &option), SUCCESS);
        FILEINFO info;
        ASSERT_EQ(Info(path, info, 1), SUCCESS);
        EXPECT_EQ(info.totalPages, 1);
        EXPECT_EQ(info.bitsPerPixel, bits);
        EXPECT_EQ((info.flags & FILEINFO_INTERLACED) != 0, flags != 0);
        const Picture loaded = LoadPage(path, 1);
        EXPECT_EQ(DifferentPixels(source.bitmap, loaded.bitmap), 0);
      }
    }
  }
}

TEST(Gif, PagesAreAppendedReplacedInsertedAndDeleted) {
  TestFolder folder;
  const auto path = folder.Path(u"pages.gif");
  std::vector<Picture> pictures;
  for (int32_t n = 0; n < 5; ++n) {
    pictures.push_back(MakePicture(40, 30, 8));
    for (int32_t i = 0; i < 256; ++i) pictures.back()->palette[i].red = static_cast<uint8_t>(n * 50);
  }
  const auto expectPages = [&](const std::vector<size_t>& wanted) {
    FILEINFO info;
    ASSERT_EQ(Info(path, info, 1), SUCCESS);
    ASSERT_EQ(static_cast<size_t>(info.totalPages), wanted.size());
    for (size_t page = 0; page < wanted.size(); ++page) {
      const Picture loaded = LoadPage(path, static_cast<int32_t>(page) + 1);
      EXPECT_EQ(DifferentPixels(loaded.bitmap, pictures[wanted[page]].bitmap), 0) << "page " << page + 1;
    }
  };
  const auto save = [&](size_t picture, int32_t page, uint32_t flags) {
    const SAVEFILEOPTION option = PageOption(page, flags);
    return Save(path, pictures[picture], FMT_GIF, 8, 0, &option);
  };
  ASSERT_EQ(save(0, 1, 0), SUCCESS);
  ASSERT_EQ(save(1, 2, 0), SUCCESS);
  ASSERT_EQ(save(2, 3, 0), SUCCESS);
  expectPages({0, 1, 2});
  ASSERT_EQ(save(3, 2, SAVEFILE_REPLACE_PAGE), SUCCESS);
  expectPages({0, 3, 2});
  ASSERT_EQ(save(4, 1, SAVEFILE_INSERT_PAGE), SUCCESS);
  expectPages({4, 0, 3, 2});
  ASSERT_EQ(DeleteFilePage(Text(path).c_str(), 2, 0, nullptr), SUCCESS);
  expectPages({4, 3, 2});
  EXPECT_EQ(save(1, 4, SAVEFILE_REPLACE_PAGE), ERROR_PAGE_MISSING);
  EXPECT_EQ(save(1, 5, SAVEFILE_INSERT_PAGE), ERROR_PAGE_MISSING);
  EXPECT_EQ(DeleteFilePage(Text(path).c_str(), 4, 0, nullptr), ERROR_PAGE_MISSING);
  FILEINFO info;
  ASSERT_EQ(Info(path, info), SUCCESS);
  EXPECT_NE(info.flags & FILEINFO_ANIMATED, 0u);
}

TEST(Gif, AnyPageWithoutOthersIsRefusedToBeDeleted) {
  TestFolder folder;
  Picture picture = MakePicture(9, 9, 4);
  ASSERT_EQ(Save(folder.Path(u"a.gif"), picture, FMT_GIF), SUCCESS);
  EXPECT_EQ(DeleteFilePage(Text(folder.Path(u"a.gif")).c_str(), 1, 0, nullptr), ERROR_FEATURE_UNSUPPORTED);
}

// Builds files of 4 x 4 pixels from frames of one colour; the colours are red, green, blue and the transparent index 3.
class GifFile {
 public:
  GifFile() { Put("GIF89a\x04\0\x04\0\x91\0\0\xFF\0\0\0\xFF\0\0\0\xFF\x80\x80\x80", 25); }

  // disposal as in the graphic control extension; index 3 is see-through.
  void Add(uint8_t left, uint8_t top, uint8_t width, uint8_t height, uint8_t index, uint8_t disposal) {
    const uint8_t control[] = {0x21, 0xF9, 4, static_cast<uint8_t>(disposal << 2 | 1), 10, 0, 3, 0};
    const uint8_t image[] = {0x2C, left, 0, top, 0, width, 0, height, 0, 0, 2};
    bytes.insert(bytes.end(), std::begin(control), std::end(control));
    bytes.insert(bytes.end(), std::begin(image), std::end(image));
    PutPixels(static_cast<size_t>(width) * height, index);
  }

  std::vector<uint8_t> Finish() const {
    auto whole = bytes;
    whole.push_back(0x3B);
    return whole;
  }

 private:
  void Put(const char* data, size_t size) { bytes.insert(bytes.end(), data, data + size); }

  // A clear code before each pixel keeps all codes at three bits.
  void PutPixels(size_t count, uint8_t index) {
    std::vector<uint8_t> packed;
    uint32_t pending = 0;
    int bits = 0;
    const auto put = [&](uint32_t code) {
      pending |= code << bits;
      for (bits += 3; bits >= 8; bits -= 8, pending >>= 8) packed.push_back(static_cast<uint8_t>(pending));
    };
    for (size_t i = 0; i < count; ++i) {
      put(4);
      put(index);
    }
    put(5);
    if (bits > 0) packed.push_back(static_cast<uint8_t>(pending));
    bytes.push_back(static_cast<uint8_t>(packed.size()));
    bytes.insert(bytes.end(), packed.begin(), packed.end());
    bytes.push_back(0);
  }

  std::vector<uint8_t> bytes;
};

constexpr Color kRed = {65535, 0, 0, 65535}, kGreen = {0, 65535, 0, 65535}, kBlue = {0, 0, 65535, 65535};

TEST(GifFrames, LieOverEachOtherAndAreDisposedOf) {
  TestFolder folder;
  GifFile file;
  file.Add(0, 0, 4, 4, 0, 1);  // red everywhere, stays
  file.Add(1, 1, 2, 2, 1, 3);  // a green square that vanishes again
  file.Add(0, 0, 1, 1, 2, 2);  // a blue dot that leaves bare ground
  file.Add(3, 3, 1, 1, 2, 1);
  const auto path = folder.Path(u"frames.gif");
  WriteBytes(path, file.Finish());
  const Picture first = LoadPage(path, 1), second = LoadPage(path, 2), third = LoadPage(path, 3),
                fourth = LoadPage(path, 4);
  EXPECT_EQ(ColorAt(first.bitmap, 1, 1), kRed);
  EXPECT_EQ(ColorAt(second.bitmap, 1, 1), kGreen);
  EXPECT_EQ(ColorAt(second.bitmap, 0, 0), kRed);
  EXPECT_EQ(ColorAt(third.bitmap, 1, 1), kRed);
  EXPECT_EQ(ColorAt(third.bitmap, 0, 0), kBlue);
  EXPECT_EQ(ColorAt(fourth.bitmap, 3, 3), kBlue);
  EXPECT_EQ(ColorAt(fourth.bitmap, 1, 0), kRed);
  ASSERT_EQ(fourth.bitmap.bitsPerPixel, 4);
  EXPECT_EQ(fourth.bitmap.data[0] >> 4, 3) << "bare ground is the transparent index";
  EXPECT_EQ(fourth.bitmap.palette[3].alpha, 0);
}

TEST(GifFrames, SeeThroughPixelsLeaveWhatIsBelow) {
  TestFolder folder;
  GifFile file;
  file.Add(0, 0, 4, 4, 1, 1);
  file.Add(0, 0, 4, 4, 3, 1);
  const auto path = folder.Path(u"frames.gif");
  WriteBytes(path, file.Finish());
  const Picture second = LoadPage(path, 2);
  EXPECT_EQ(ColorAt(second.bitmap, 2, 2), kGreen);
}

TEST(GifFrames, FramesBeyondTheScreenAreCut) {
  TestFolder folder;
  GifFile file;
  file.Add(0, 0, 4, 4, 0, 1);
  file.Add(3, 3, 4, 4, 2, 1);
  const auto path = folder.Path(u"frames.gif");
  WriteBytes(path, file.Finish());
  const Picture second = LoadPage(path, 2);
  ASSERT_EQ(second.bitmap.width, 4);
  EXPECT_EQ(ColorAt(second.bitmap, 3, 3), kBlue);
  EXPECT_EQ(ColorAt(second.bitmap, 2, 3), kRed);
}

TEST(Gif, CommentsAreKept) {
  TestFolder folder;
  GifFile file;
  file.Add(0, 0, 4, 4, 0, 1);
  auto bytes = file.Finish();
  const char comment[] = "\x21\xFE\x05Hello";
  bytes.insert(bytes.begin() + 25, comment, comment + sizeof comment);
  const auto path = folder.Path(u"comment.gif");
  WriteBytes(path, bytes);
  char text[264];
  ASSERT_GT(ReadFileComment(Text(path).c_str(), COMMENT_DESCRIPTION, text, sizeof text, nullptr), 0);
  EXPECT_STREQ(text, "Hello");
  Picture picture = LoadPage(path, 1);
  const auto copy = folder.Path(u"copy.gif");
  ASSERT_EQ(Save(copy, picture, FMT_GIF), SUCCESS);
  ASSERT_GT(ReadFileComment(Text(copy).c_str(), COMMENT_DESCRIPTION, text, sizeof text, nullptr), 0);
  EXPECT_STREQ(text, "Hello");
}

TEST(Gif, EveryTruncationFailsWithoutHarm) {
  TestFolder folder;
  Picture source = MakePicture(60, 40, 8);
  const auto path = folder.Path(u"a.gif");
  ASSERT_EQ(Save(path, source, FMT_GIF), SUCCESS);
  const auto whole = ReadBytes(path);
  for (size_t length = 1; length + 3 < whole.size(); length += 1 + length / 30) {
    WriteBytes(path, {whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)});
    Picture picture;
    EXPECT_NE(Load(path, picture), SUCCESS) << length;
    EXPECT_EQ(picture->data, nullptr);
    EXPECT_EQ(DeleteFilePage(Text(path).c_str(), 1, 0, nullptr) == SUCCESS, false);
  }
}

TEST(Gif, AForgedScreenSizeIsNoReasonToAllocateIt) {
  TestFolder folder;
  GifFile file;
  file.Add(0, 0, 4, 4, 0, 1);
  auto bytes = file.Finish();
  std::memset(&bytes[6], 0xFF, 4);
  WriteBytes(folder.Path(u"a.gif"), bytes);
  Picture picture;
  EXPECT_EQ(Load(folder.Path(u"a.gif"), picture), ERROR_FILE_DAMAGED);
}

}  // namespace
