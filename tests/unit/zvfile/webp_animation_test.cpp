// Animated WebP: pages are what is on show when a frame has been drawn. The files are put together from still ones.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "file_test_support.h"

namespace {

using namespace zvtest;

using Bytes = std::vector<uint8_t>;

void AppendLe(Bytes& to, uint64_t value, int count) {
  for (int i = 0; i < count; ++i) to.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

void AppendChunk(Bytes& to, const char* name, const Bytes& content) {
  to.insert(to.end(), name, name + 4);
  AppendLe(to, content.size(), 4);
  to.insert(to.end(), content.begin(), content.end());
  if (content.size() % 2) to.push_back(0);
}

class WebpAnimation : public ::testing::Test {
 protected:
  // The image chunk of a picture saved without loss.
  Bytes StillOf(Picture& picture) {
    EXPECT_EQ(Save(folder.Path(u"still.webp"), picture, FMT_WEBP, 24, 2), SUCCESS);
    const Bytes file = ReadBytes(folder.Path(u"still.webp"));
    constexpr size_t kRiffHeaderBytes = 12;
    return {file.begin() + kRiffHeaderBytes, file.end()};
  }

  void AddFrame(Picture& picture, uint32_t left, uint32_t top, bool disposed) {
    constexpr uint8_t kDispose = 1, kDoNotBlend = 2;
    Bytes frame;
    AppendLe(frame, left / 2, 3);
    AppendLe(frame, top / 2, 3);
    AppendLe(frame, static_cast<uint32_t>(picture.bitmap.width - 1), 3);
    AppendLe(frame, static_cast<uint32_t>(picture.bitmap.height - 1), 3);
    AppendLe(frame, 100, 3);  // milliseconds
    frame.push_back(kDoNotBlend | (disposed ? kDispose : 0));
    const Bytes still = StillOf(picture);
    frame.insert(frame.end(), still.begin(), still.end());
    AppendChunk(frames, "ANMF", frame);
  }

  Bytes Finish(uint32_t width, uint32_t height) const {
    constexpr uint8_t kAnimated = 2, kHasAlpha = 16;
    Bytes extended = {kAnimated | kHasAlpha, 0, 0, 0}, body = {'W', 'E', 'B', 'P'}, file = {'R', 'I', 'F', 'F'};
    AppendLe(extended, width - 1, 3);
    AppendLe(extended, height - 1, 3);
    AppendChunk(body, "VP8X", extended);
    AppendChunk(body, "ANIM", {0, 0, 0, 0, 0, 0});
    body.insert(body.end(), frames.begin(), frames.end());
    AppendLe(file, body.size(), 4);
    file.insert(file.end(), body.begin(), body.end());
    return file;
  }

  int32_t LoadPage(const Bytes& file, int32_t page, Picture& picture) {
    WriteBytes(folder.Path(u"animation.webp"), file);
    const LOADFILEOPTION option = LoadOption(page);
    return Load(folder.Path(u"animation.webp"), picture, 0, ORDER_BGR_OR_GRAY, &option);
  }

  static std::array<uint8_t, 4> PixelOf(Picture& picture, int32_t x, int32_t y) {
    Bytes row(static_cast<size_t>(picture->bytesPerLine));
    CopyBitmapRow(&picture, row.data(), y, picture->bytesPerLine);
    const size_t bytes = static_cast<size_t>(picture->bitsPerPixel / 8), at = static_cast<size_t>(x) * bytes;
    return {row[at], row[at + 1], row[at + 2], bytes == 4 ? row[at + 3] : uint8_t{255}};
  }

  TestFolder folder;
  Bytes frames;
};

TEST_F(WebpAnimation, ShowsEachFrameOnWhatWasBeforeIt) {
  Picture ground = MakePicture(40, 30, 24), patch = MakePicture(10, 8, 24);
  AddFrame(ground, 0, 0, false);
  AddFrame(patch, 20, 12, true);
  AddFrame(patch, 0, 0, false);
  const Bytes file = Finish(40, 30);
  Picture pages[3];
  for (int32_t page = 1; page <= 3; ++page) {
    Picture& shown = pages[page - 1];
    ASSERT_EQ(LoadPage(file, page, shown), SUCCESS) << page;
    ASSERT_EQ(shown->width, 40);
    ASSERT_EQ(shown->height, 30);
    for (const auto& [x, y] : {std::pair{0, 0}, {9, 7}, {19, 12}, {20, 12}, {29, 19}, {30, 20}, {39, 29}}) {
      const bool inSecond = x >= 20 && x < 30 && y >= 12 && y < 20, inThird = x < 10 && y < 8;
      std::array<uint8_t, 4> wanted = PixelOf(ground, x, y);
      if (page == 2 && inSecond) wanted = PixelOf(patch, x - 20, y - 12);
      if (page == 3 && inSecond) wanted = {0, 0, 0, 0};  // bare ground
      if (page == 3 && inThird) wanted = PixelOf(patch, x, y);
      EXPECT_EQ(PixelOf(shown, x, y), wanted) << "page " << page << " at " << x << ", " << y;
    }
  }
}

TEST_F(WebpAnimation, CountsItsFramesAsPages) {
  Picture ground = MakePicture(12, 10, 24);
  for (int i = 0; i < 5; ++i) AddFrame(ground, 0, 0, false);
  WriteBytes(folder.Path(u"animation.webp"), Finish(12, 10));
  FILEINFO info;
  ASSERT_EQ(Info(folder.Path(u"animation.webp"), info), SUCCESS);
  EXPECT_EQ(info.totalPages, 5);
  EXPECT_NE(info.flags & FILEINFO_ANIMATED, 0u);
  Picture missing;
  EXPECT_EQ(LoadPage(Finish(12, 10), 6, missing), ERROR_PAGE_MISSING);
}

TEST_F(WebpAnimation, CutShortAnywhereFailsWithoutHarm) {
  Picture ground = MakePicture(20, 10, 24), patch = MakePicture(6, 4, 24);
  AddFrame(ground, 0, 0, false);
  AddFrame(patch, 2, 2, false);
  const Bytes file = Finish(20, 10);
  for (size_t length = 0; length + 1 < file.size(); ++length) {
    Picture shown;
    EXPECT_NE(LoadPage({file.begin(), file.begin() + static_cast<ptrdiff_t>(length)}, 2, shown), SUCCESS) << length;
    EXPECT_EQ(shown->data, nullptr);
  }
}

}  // namespace
