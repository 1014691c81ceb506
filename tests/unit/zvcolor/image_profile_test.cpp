// Profiles into images and out again. A save may change nothing but the profile: pixels are compared as the file library
// decodes them, and the compressed data byte for byte.
#include <string_view>

#include "tests/unit/zvcolor/byte_search.h"
#include "tests/unit/zvcolor/color_test.h"

namespace {

using namespace zvtest;

// A PSD of 2 x 1 pixels with one resource of another kind, of an odd name and size.
FileBytes SmallPsd() {
  using namespace std::string_view_literals;
  FileBytes bytes;
  Append(bytes, "8BPS\0\x01\0\0\0\0\0\0"sv);
  AppendNumber(bytes, 3, 2);
  AppendNumber(bytes, 1, 4);
  AppendNumber(bytes, 2, 4);
  AppendNumber(bytes, 8, 2);
  AppendNumber(bytes, 3, 2);
  AppendNumber(bytes, 0, 4);  // colour table
  FileBytes resource;
  Append(resource, "8BIM"sv);
  AppendNumber(resource, 1060, 2);
  Append(resource, "\x02xy\0"sv);
  AppendNumber(resource, 3, 4);
  Append(resource, "abc\0"sv);
  AppendNumber(bytes, static_cast<uint32_t>(resource.size()), 4);
  bytes.insert(bytes.end(), resource.begin(), resource.end());
  AppendNumber(bytes, 0, 4);  // layers
  AppendNumber(bytes, 0, 2);  // not compressed
  Append(bytes, "\xFF\x01\x02\x03\x04\x05"sv);
  return bytes;
}

// One pixel.
FileBytes SmallGif() {
  using namespace std::string_view_literals;
  FileBytes bytes;
  Append(bytes, "GIF89a\x01\0\x01\0\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0\x01\0\x01\0\0\x02\x02\x44\x01\0;"sv);
  return bytes;
}

class ImageProfile : public ColorTest {};

// --- Every container ---

struct Container {
  const char* name;
  const wchar_t* file;
  int format;
};
class AnyContainer : public ColorTest, public testing::WithParamInterface<Container> {
 protected:
  std::wstring Make() {
    if (GetParam().format == FMT_PSD) return folder.AddFile(GetParam().file, SmallPsd());
    return Picture(GetParam().file, {61, 33, GetParam().format});
  }
};

TEST_P(AnyContainer, GivesBackWhatWasSavedAndKeepsItsPixels) {
  const std::wstring path = Make();
  const FileBytes pixels = PixelsOf(path);
  EXPECT_FALSE(pixels.empty());
  for (const double version : {2.1, 4.3}) {
    const FileBytes bytes = RgbProfile({version});
    ASSERT_EQ(SUCCESS, SaveImage(path, bytes));
    ASSERT_EQ(SUCCESS, LoadFrom(path));
    EXPECT_EQ(bytes, Loaded());
    EXPECT_EQ(pixels, PixelsOf(path));
  }
  EXPECT_EQ(1, CountFiles()) << "nothing stands beside it";
}

TEST_P(AnyContainer, WithoutAProfileSaysSo) {
  EXPECT_EQ(ERROR_PROFILE_MISSING, LoadFrom(Make()));
  EXPECT_TRUE(IsEmpty());
}

TEST_P(AnyContainer, RefusesAProfileOfOtherColorsAndStaysAsItWas) {
  const std::wstring path = Make();
  const FileBytes before = ReadWholeFile(path);
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, SaveImage(path, GrayProfile()));
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, SaveImage(path, LabProfile()));
  EXPECT_EQ(before, ReadWholeFile(path));
  EXPECT_EQ(1, CountFiles());
}

TEST_P(AnyContainer, RefusesADamagedOrEmptyProfileAndStaysAsItWas) {
  const std::wstring path = Make();
  const FileBytes before = ReadWholeFile(path);
  FileBytes damaged = RgbProfile();
  damaged.pop_back();
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, SaveImage(path, damaged));
  EXPECT_EQ(ERROR_PROFILE_EMPTY, SaveImage(path, {}));
  EXPECT_EQ(before, ReadWholeFile(path));
}

TEST_P(AnyContainer, HasNoPageBehindItsLast) {
  const std::wstring path = Make();
  EXPECT_EQ(ERROR_PAGE_MISSING, LoadFrom(path, 2));
  EXPECT_EQ(ERROR_PAGE_MISSING, SaveImage(path, RgbProfile(), 2));
  EXPECT_EQ(ERROR_PAGE_MISSING, LoadFrom(path, 0));
}

TEST_P(AnyContainer, ThatIsReadOnlyStaysAsItWas) {
  const std::wstring path = Make();
  const FileBytes before = ReadWholeFile(path);
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(ERROR_FILE_OPEN, SaveImage(path, RgbProfile()));
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(before, ReadWholeFile(path));
  EXPECT_EQ(1, CountFiles());
}

INSTANTIATE_TEST_SUITE_P(Images, AnyContainer,
                         testing::Values(Container{"Jpeg", L"a.jpg", FMT_JPEG}, Container{"Png", L"a.png", FMT_PNG},
                                         Container{"Tiff", L"a.tif", FMT_TIFF},
                                         Container{"TiffLzw", L"b.tif", FMT_TIFF_LZW},
                                         Container{"TiffJpeg", L"c.tif", FMT_TIFF_JPEG},
                                         Container{"Psd", L"a.psd", FMT_PSD}),
                         [](const auto& test) { return test.param.name; });

// A PNG keeps its profile compressed, so that nothing in it can be changed unnoticed.
class PlainContainer : public AnyContainer {};

TEST_P(PlainContainer, WithABadProfileInsideIsTold) {
  const std::wstring path = Make();
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({2.1})));
  FileBytes bytes = ReadWholeFile(path);
  const size_t signature = Find(bytes, "acsp");
  ASSERT_LT(signature, bytes.size());
  bytes[signature] = 'x';
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadFrom(folder.AddFile(L"bad", bytes)));
  EXPECT_TRUE(IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Images, PlainContainer,
                         testing::Values(Container{"Jpeg", L"a.jpg", FMT_JPEG}, Container{"Tiff", L"a.tif", FMT_TIFF},
                                         Container{"Psd", L"a.psd", FMT_PSD}),
                         [](const auto& test) { return test.param.name; });

TEST_F(ImageProfile, IsReadByTheFileLibraryToo) {
  for (const Container& kind :
       {Container{"", L"a.jpg", FMT_JPEG}, Container{"", L"a.png", FMT_PNG}, Container{"", L"a.tif", FMT_TIFF}}) {
    const std::wstring path = Picture(kind.file, {40, 20, kind.format});
    const FileBytes profile = RgbProfile({2.1, 100000});
    ASSERT_EQ(SUCCESS, SaveImage(path, profile));
    BITMAPHANDLE bitmap = {};
    ASSERT_EQ(SUCCESS, LoadBitmapFile(path.c_str(), &bitmap, sizeof(bitmap), 0, ORDER_BGR, nullptr, nullptr));
    const void* bytes = nullptr;
    uint64_t size = 0;
    GetBitmapMetadata(&bitmap, METADATA_ICC_PROFILE, &bytes, &size);
    const auto* first = static_cast<const uint8_t*>(bytes);
    EXPECT_EQ(profile, FileBytes(first, first + size));
    FreeBitmap(&bitmap);
  }
}

// --- PNG ---

TEST_F(ImageProfile, OfAPngLeavesEveryOtherChunkButSrgbAlone) {
  using namespace std::string_view_literals;
  const std::wstring path = Picture(L"a.png", {40, 20, FMT_PNG});
  const FileBytes plain = ReadWholeFile(path);
  FileBytes tagged = plain;
  const auto header = tagged.begin() + 33;
  const auto chunk = "\0\0\0\x01sRGB\0\xAE\xCE\x1C\xE9"sv;
  tagged.insert(header, chunk.begin(), chunk.end());
  const std::wstring target = folder.AddFile(L"b.png", tagged);
  ASSERT_EQ(SUCCESS, SaveImage(target, RgbProfile()));
  const FileBytes after = ReadWholeFile(target);
  EXPECT_EQ(0, Count(after, "sRGB"));
  EXPECT_EQ(1, Count(after, "iCCP"));
  EXPECT_EQ(FileBytes(plain.begin(), plain.begin() + 33), FileBytes(after.begin(), after.begin() + 33));
  const size_t profileEnd = Find(after, "iCCP") + 8 + (static_cast<size_t>(after[35]) << 8 | after[36]);
  EXPECT_EQ(Tail(plain, 33), Tail(after, profileEnd));
}

TEST_F(ImageProfile, OfAPngWithAWrongChecksumOrRubbishInsideIsDamaged) {
  const std::wstring path = Picture(L"a.png", {40, 20, FMT_PNG});
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile()));
  FileBytes bytes = ReadWholeFile(path);
  bytes[Find(bytes, "iCCP") + 40] ^= 0x55;
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadFrom(folder.AddFile(L"bad.png", bytes)));
}

// --- Other files ---

TEST_F(ImageProfile, CannotBeHeldByFormatsWithoutAPlaceForIt) {
  const std::wstring paths[] = {
      Picture(L"a.bmp", {40, 20, FMT_BMP}), folder.AddFile(L"a.gif", SmallGif()),
      folder.AddFile(L"a.eps", FileBytes({'%', '!', 'P', 'S', '-', 'A', 'd', 'o', 'b', 'e', '\n'}))};
  for (const std::wstring& path : paths) {
    const FileBytes before = ReadWholeFile(path);
    EXPECT_EQ(ERROR_PROFILE_REFUSED, LoadFrom(path));
    EXPECT_EQ(ERROR_PROFILE_REFUSED, SaveImage(path, RgbProfile()));
    EXPECT_EQ(before, ReadWholeFile(path));
  }
}

TEST_F(ImageProfile, OfAWebPIsReadButNotWritten) {
  const FileBytes bytes = RgbProfile({2.1});
  uint32_t memory = 0;
  GetDefaultBitmapMemoryFlags(&memory);
  BITMAPHANDLE bitmap = {};
  ASSERT_EQ(SUCCESS, InitBitmapHandle(&bitmap, sizeof(bitmap), 40, 20, 24));
  ASSERT_EQ(SUCCESS, AllocateBitmap(&bitmap, memory));
  const std::wstring plain = folder.File(L"plain.webp"), tagged = folder.File(L"tagged.webp");
  EXPECT_EQ(SUCCESS, SaveBitmapToFile(plain.c_str(), &bitmap, FMT_WEBP, 24, 2, nullptr));
  SetBitmapMetadata(&bitmap, METADATA_ICC_PROFILE, bytes.data(), bytes.size());
  EXPECT_EQ(SUCCESS, SaveBitmapToFile(tagged.c_str(), &bitmap, FMT_WEBP, 24, 2, nullptr));
  FreeBitmap(&bitmap);
  EXPECT_EQ(ERROR_PROFILE_MISSING, LoadFrom(plain));
  ASSERT_EQ(SUCCESS, LoadFrom(tagged));
  EXPECT_EQ(bytes, Loaded());
  EXPECT_EQ(ERROR_PROFILE_REFUSED, SaveImage(tagged, bytes));
}

TEST_F(ImageProfile, CannotBeSoughtInAFileOfNoKnownFormat) {
  const std::wstring path = folder.AddFile(L"notes.jpg", FileBytes(500, 'x'));
  EXPECT_EQ(ERROR_FILE_FORMAT, LoadFrom(path));
  EXPECT_EQ(ERROR_FILE_FORMAT, SaveImage(path, RgbProfile()));
  EXPECT_EQ(ERROR_FILE_FORMAT, LoadFrom(folder.AddFile(L"empty.jpg", {})));
  EXPECT_EQ(FileBytes(500, 'x'), ReadWholeFile(path));
}

TEST_F(ImageProfile, CannotBeSoughtInAFileThatIsNotThere) {
  EXPECT_EQ(ERROR_FILE_OPEN, LoadFrom(folder.File(L"missing.jpg")));
  EXPECT_EQ(ERROR_FILE_OPEN, LoadFrom(L""));
  EXPECT_EQ(ERROR_FILE_OPEN, LoadFrom(folder.path()));
  EXPECT_EQ(ERROR_FILE_OPEN, SaveImage(folder.File(L"missing.jpg"), RgbProfile()))
      << "an image to save into must exist";
  EXPECT_FALSE(::GetFileAttributesW(folder.File(L"missing.jpg").c_str()) != INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_LoadICCProfile(nullptr, &profile, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_LoadICCProfile(L"a", nullptr, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_SaveICCProfile(nullptr, &profile, nullptr));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_SaveICCProfile(L"a", nullptr, nullptr));
}

TEST_F(ImageProfile, WithoutAnOptionIsThatOfTheFirstPage) {
  const std::wstring path = Picture(L"a.tif", {40, 20, FMT_TIFF, 2});
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile(), 1));
  EXPECT_EQ(SUCCESS, Z_LoadICCProfile(path.c_str(), &profile, nullptr));
}

}  // namespace
