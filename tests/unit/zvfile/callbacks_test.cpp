// The row callbacks of load and save: each row once and from the top, abort at any of them, and where the rows go.
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstring>

#include "file_test_support.h"

namespace {

using namespace zvtest;

struct Trace {
  int32_t calls = 0;
  int32_t rows = 0;
  int32_t abortAt = -1;  // call that answers with an abort
  bool inOrder = true;
  std::vector<uint8_t> content;  // of all rows
};

int32_t ZV_CALL OnLoadRows(FILEINFO* info, BITMAPHANDLE* bitmap, uint8_t* buffer, uint32_t, int32_t first,
                           int32_t count, void* user) {
  Trace& trace = *static_cast<Trace*>(user);
  if (trace.calls++ == trace.abortAt) return ERROR_USER_ABORT;
  trace.inOrder = trace.inOrder && first == trace.rows && count > 0 && first + count <= info->height;
  trace.rows += count;
  const size_t stride = static_cast<size_t>(bitmap->bytesPerLine);
  trace.content.insert(trace.content.end(), buffer, buffer + stride * static_cast<size_t>(count));
  return SUCCESS;
}

int32_t ZV_CALL OnSaveRows(BITMAPHANDLE* bitmap, uint8_t* buffer, int32_t first, int32_t count, void* user) {
  Trace& trace = *static_cast<Trace*>(user);
  if (trace.calls++ == trace.abortAt) return ERROR_USER_ABORT;
  trace.inOrder = trace.inOrder && first == trace.rows && count > 0 && first + count <= bitmap->height;
  trace.rows += count;
  for (int32_t i = 0; i < count; ++i)
    CopyBitmapRow(bitmap, buffer + i * bitmap->bytesPerLine, first + i, bitmap->bytesPerLine);
  return SUCCESS;
}

int32_t LoadTraced(const std::filesystem::path& path, Picture& picture, Trace& trace, uint32_t flags = 3,
                   int32_t bits = 0) {
  return LoadImageFile(Text(path).c_str(), &picture, sizeof(BITMAPHANDLE), bits, ORDER_BGR_OR_GRAY, flags, OnLoadRows,
                       &trace, nullptr, nullptr);
}

void SaveInterlacedPng(const std::filesystem::path& path, const BITMAPHANDLE& picture) {
  std::vector<uint8_t> bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(
      png, &bytes,
      [](png_structp self, png_bytep data, size_t count) {
        auto* all = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(self));
        all->insert(all->end(), data, data + count);
      },
      nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height), 8,
               PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  png_set_bgr(png);
  std::vector<png_bytep> rows;
  for (int32_t y = 0; y < picture.height; ++y)
    rows.push_back(picture.data + static_cast<ptrdiff_t>(y) * picture.bytesPerLine);
  png_write_image(png, rows.data());
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  WriteBytes(path, bytes);
}

// Files of every way in which rows can arrive.
std::vector<std::filesystem::path> SaveSamples(const TestFolder& folder, Picture& source) {
  std::vector<std::filesystem::path> paths;
  const auto add = [&](const char16_t* name, int32_t format, int32_t bits, const SAVEFILEOPTION* option) {
    paths.push_back(folder.Path(name));
    EXPECT_EQ(Save(paths.back(), source, format, bits, 6, option), SUCCESS);
  };
  SAVEFILEOPTION progressive = SaveOption();
  progressive.passes = -1;
  add(u"a.jpg", FMT_JPEG_420, 24, nullptr);
  add(u"progressive.jpg", FMT_JPEG_420, 24, &progressive);
  add(u"a.png", FMT_PNG, 24, nullptr);
  add(u"a.bmp", FMT_BMP, 24, nullptr);
  add(u"rle.bmp", FMT_BMP_RLE, 8, nullptr);
  add(u"a.cmp", FMT_CMP, 24, nullptr);
  add(u"a.webp", FMT_WEBP, 24, nullptr);
  add(u"a.jp2", FMT_JP2, 24, nullptr);
  paths.push_back(folder.Path(u"interlaced.png"));
  SaveInterlacedPng(paths.back(), source.bitmap);
  return paths;
}

TEST(LoadCallback, GetsEachRowOnceFromTheTopWithItsPixels) {
  TestFolder folder;
  Picture source = MakePicture(70, 53, 24);
  for (const auto& path : SaveSamples(folder, source)) {
    Picture loaded;
    Trace trace;
    ASSERT_EQ(LoadTraced(path, loaded, trace), SUCCESS) << path;
    EXPECT_TRUE(trace.inOrder) << path;
    EXPECT_EQ(trace.rows, 53) << path;
    EXPECT_GE(trace.calls, 4) << path << ": progress comes in steps";
    ASSERT_EQ(trace.content.size(), loaded->dataSize);
    EXPECT_EQ(std::memcmp(trace.content.data(), loaded->data, trace.content.size()), 0) << path;
  }
}

TEST(LoadCallback, GetsConvertedRowsWhenADepthIsAskedFor) {
  TestFolder folder;
  Picture source = MakePicture(70, 53, 24);
  const auto path = folder.Path(u"a.png");
  ASSERT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS);
  for (const int32_t bits : {8, 32, 48}) {
    Picture loaded;
    Trace trace;
    ASSERT_EQ(LoadTraced(path, loaded, trace, 3, bits), SUCCESS);
    EXPECT_TRUE(trace.inOrder);
    EXPECT_EQ(trace.rows, 53);
    ASSERT_EQ(trace.content.size(), loaded->dataSize);
    EXPECT_EQ(std::memcmp(trace.content.data(), loaded->data, trace.content.size()), 0) << bits;
  }
}

TEST(LoadCallback, GetsRowsThatAreNotStored) {
  TestFolder folder;
  Picture source = MakePicture(70, 53, 24);
  for (const auto& path : SaveSamples(folder, source)) {
    Picture stored, passed;
    Trace storedTrace, passedTrace;
    ASSERT_EQ(LoadTraced(path, stored, storedTrace), SUCCESS);
    ASSERT_EQ(LoadTraced(path, passed, passedTrace, 0), SUCCESS) << path;
    EXPECT_FALSE(passed->flags & BITMAP_FLAG_ALLOCATED);
    EXPECT_EQ(passed->width, 70);
    EXPECT_EQ(storedTrace.content, passedTrace.content) << path;
  }
}

TEST(LoadCallback, StopsTheLoadWithItsCodeAndLeavesNoPixels) {
  TestFolder folder;
  Picture source = MakePicture(70, 53, 24);
  for (const auto& path : SaveSamples(folder, source)) {
    for (int32_t call = 0; call < 4; ++call) {
      Picture loaded;
      Trace trace;
      trace.abortAt = call;
      EXPECT_EQ(LoadTraced(path, loaded, trace), ERROR_USER_ABORT) << path;
      EXPECT_EQ(trace.calls, call + 1) << "nothing comes after the abort";
      EXPECT_FALSE(loaded->flags & BITMAP_FLAG_ALLOCATED);
    }
  }
}

TEST(LoadInto, AnOwnBitmapWorksWhenItFits) {
  TestFolder folder;
  Picture source = MakePicture(30, 20, 24);
  const auto path = folder.Path(u"a.png");
  ASSERT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS);
  Picture own = MakePicture(30, 20, 24), tooSmall = MakePicture(29, 20, 24);
  own->data[0] ^= 0xFF;
  EXPECT_EQ(LoadImageFile(Text(path).c_str(), &own, sizeof(BITMAPHANDLE), 0, ORDER_BGR, LOADFILE_STORE, nullptr,
                          nullptr, nullptr, nullptr),
            SUCCESS);
  EXPECT_EQ(DifferentPixels(source.bitmap, own.bitmap), 0);
  EXPECT_EQ(LoadImageFile(Text(path).c_str(), &tooSmall, sizeof(BITMAPHANDLE), 0, ORDER_BGR, LOADFILE_STORE, nullptr,
                          nullptr, nullptr, nullptr),
            ERROR_BAD_ARGUMENT);
  EXPECT_TRUE(tooSmall->flags & BITMAP_FLAG_ALLOCATED) << "the caller's pixels stay the caller's";
}

TEST(LoadCompressed, IsAPlainLoadOfFormatsThatDoNotKeepTheirStream) {
  TestFolder folder;
  Picture source = MakePicture(70, 53, 24);
  for (const auto& path : SaveSamples(folder, source)) {
    Picture plain, compressed;
    ASSERT_EQ(Load(path, plain), SUCCESS);
    ASSERT_EQ(
        LoadImageFile(Text(path).c_str(), &compressed, sizeof(BITMAPHANDLE), 0, ORDER_BGR_OR_GRAY,
                      LOADFILE_ALLOCATE | LOADFILE_STORE | LOADFILE_COMPRESSED, nullptr, nullptr, nullptr, nullptr),
        SUCCESS)
        << path;
    EXPECT_FALSE(compressed->flags & BITMAP_FLAG_COMPRESSED);
    EXPECT_EQ(DifferentPixels(plain.bitmap, compressed.bitmap), 0) << path;
  }
}

constexpr int32_t kSavedFormats[] = {FMT_JPEG, FMT_PNG, FMT_BMP, FMT_CMP, FMT_WEBP, FMT_JP2, FMT_TIFF, FMT_TIFF_LZW};

TEST(SaveCallback, IsAskedForEachRowOnceFromTheTop) {
  TestFolder folder;
  for (const int32_t format : kSavedFormats) {
    for (const int32_t perspective : {1, 3, 6}) {
      Picture source = MakePicture(41, 53, 24);
      source->viewPerspective = perspective;
      Trace trace;
      const auto path = folder.Path(u"a");
      ASSERT_EQ(SaveFile(Text(path).c_str(), &source, format, 24, 2, 2, OnSaveRows, &trace, nullptr), SUCCESS)
          << format;
      EXPECT_TRUE(trace.inOrder);
      EXPECT_EQ(trace.rows, 53) << format;
      Picture loaded;
      ASSERT_EQ(Load(path, loaded), SUCCESS);
      EXPECT_EQ(loaded->width, perspective == 6 ? 53 : 41);
    }
  }
}

TEST(SaveCallback, AbortLeavesTheOldFileAndNothingElse) {
  TestFolder folder;
  const auto path = folder.Path(u"kept");
  const std::vector<uint8_t> old = {'o', 'l', 'd'};
  for (const int32_t format : kSavedFormats) {
    for (const int32_t bits : {24, 8}) {
      for (int32_t call = 0; call < 4; ++call) {
        WriteBytes(path, old);
        Picture source = MakePicture(41, 53, 24);
        Trace trace;
        trace.abortAt = call;
        const int32_t result = SaveFile(Text(path).c_str(), &source, format, bits, 2, 2, OnSaveRows, &trace, nullptr);
        if (result == ERROR_BIT_DEPTH) continue;
        EXPECT_EQ(result, ERROR_USER_ABORT) << format;
        EXPECT_EQ(trace.calls, call + 1);
        EXPECT_EQ(ReadBytes(path), old) << format;
        EXPECT_EQ(folder.FileCount(), 1u) << format;
      }
    }
  }
}

struct Percentages {
  std::vector<int32_t> seen;
  int32_t stopAt = 101;
};

int32_t ZV_CALL OnStatus(int32_t percent, void* user) {
  Percentages& percentages = *static_cast<Percentages*>(user);
  percentages.seen.push_back(percent);
  return percent >= percentages.stopAt ? 0 : SUCCESS;
}

TEST(StatusChannel, FollowsLoadAndSaveAndStopsThem) {
  TestFolder folder;
  Picture source = MakePicture(64, 400, 24);
  const auto path = folder.Path(u"a.png");
  Percentages all;
  STATUSCALLBACK old;
  void* oldUser;
  ASSERT_EQ(SetStatusCallback(OnStatus, &all, &old, &oldUser), SUCCESS);
  EXPECT_EQ(Save(path, source, FMT_PNG, 24, 6), SUCCESS);
  EXPECT_EQ(all.seen.back(), 100);
  EXPECT_TRUE(std::is_sorted(all.seen.begin(), all.seen.end()));
  Picture loaded, stopped;
  all.seen.clear();
  EXPECT_EQ(Load(path, loaded), SUCCESS);
  EXPECT_EQ(all.seen.back(), 100);
  Percentages half;
  half.stopAt = 50;
  SetStatusCallback(OnStatus, &half, nullptr, nullptr);
  EXPECT_EQ(Load(path, stopped), ERROR_USER_ABORT);
  EXPECT_EQ(Save(folder.Path(u"b.png"), source, FMT_PNG, 24, 6), ERROR_USER_ABORT);
  SetStatusCallback(old, oldUser, nullptr, nullptr);
  EXPECT_EQ(folder.FileCount(), 1u);
}

}  // namespace
