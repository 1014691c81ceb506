// Profiles into images and out again. A save may change nothing but the profile: pixels are compared as the file library
// decodes them, and the compressed data byte for byte.
#include <algorithm>
#include <string_view>

#include "services/zvcolor/multi_picture.h"
#include "tests/unit/zvcolor/color_test.h"

namespace {

using namespace zvtest;

constexpr uint32_t kSegmentBytes = 65519;

size_t Find(const FileBytes& bytes, std::string_view what, size_t from = 0) {
  const auto found = std::search(bytes.begin() + static_cast<ptrdiff_t>(from), bytes.end(), what.begin(), what.end(),
                                 [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); });
  return static_cast<size_t>(found - bytes.begin());
}
int Count(const FileBytes& bytes, std::string_view what) {
  int count = 0;
  for (size_t at = Find(bytes, what); at < bytes.size(); at = Find(bytes, what, at + 1)) ++count;
  return count;
}
FileBytes Tail(const FileBytes& bytes, size_t from) {
  return {bytes.begin() + static_cast<ptrdiff_t>(from), bytes.end()};
}

// From the first scan of a JPEG to its end.
FileBytes Scans(const FileBytes& jpeg) { return Tail(jpeg, Find(jpeg, "\xFF\xDA")); }
FileBytes WithoutProfile(const FileBytes& jpeg) {
  FileBytes rest = jpeg;
  for (size_t at = Find(rest, "ICC_PROFILE"); at < rest.size(); at = Find(rest, "ICC_PROFILE")) {
    const size_t length = static_cast<size_t>(rest[at - 2]) << 8 | rest[at - 1];
    rest.erase(rest.begin() + static_cast<ptrdiff_t>(at - 4), rest.begin() + static_cast<ptrdiff_t>(at - 2 + length));
  }
  return rest;
}
void Append(FileBytes& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }
void AppendNumber(FileBytes& bytes, uint32_t value, int count) {
  for (int i = count - 1; i >= 0; --i) bytes.push_back(static_cast<uint8_t>(value >> 8 * i));
}

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

// --- JPEG ---

TEST_F(ImageProfile, OfAJpegLeavesEveryOtherByteAlone) {
  const std::wstring path = Picture(L"a.jpg", {200, 100, FMT_JPEG_420});
  const FileBytes before = ReadWholeFile(path);
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile()));
  const FileBytes after = ReadWholeFile(path);
  EXPECT_EQ(Scans(before), Scans(after));
  EXPECT_EQ(before, WithoutProfile(after));
  EXPECT_LT(Find(after, "JFIF"), Find(after, "ICC_PROFILE")) << "JFIF stays first";
}

TEST_F(ImageProfile, OfAJpegReplacesTheFormerOne) {
  const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
  const FileBytes before = ReadWholeFile(path);
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({4.3, 3 * kSegmentBytes})));
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({2.1})));
  EXPECT_EQ(1, Count(ReadWholeFile(path), "ICC_PROFILE"));
  EXPECT_EQ(before, WithoutProfile(ReadWholeFile(path)));
}

TEST_F(ImageProfile, OfAJpegIsCutIntoSegmentsExactlyWhereItMustBe) {
  const auto plain = static_cast<uint32_t>(RgbProfile({4.3, 4}).size()) - 4;
  for (const uint32_t ballast : {kSegmentBytes - plain, kSegmentBytes - plain + 1, 5 * kSegmentBytes}) {
    const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
    const FileBytes bytes = RgbProfile({4.3, ballast});
    ASSERT_EQ(SUCCESS, SaveImage(path, bytes));
    const auto segments = static_cast<int>((bytes.size() + kSegmentBytes - 1) / kSegmentBytes);
    EXPECT_EQ(segments, Count(ReadWholeFile(path), "ICC_PROFILE"));
    ASSERT_EQ(SUCCESS, LoadFrom(path));
    EXPECT_EQ(bytes, Loaded());
  }
}

TEST_F(ImageProfile, OfAJpegMayNeedNoMoreThan255Segments) {
  const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
  const FileBytes before = ReadWholeFile(path);
  EXPECT_EQ(ERROR_LIMIT_EXCEEDED, SaveImage(path, RgbProfile({4.3, 255 * kSegmentBytes})));
  EXPECT_EQ(before, ReadWholeFile(path));
}

TEST_F(ImageProfile, OfAJpegIsJoinedWhateverTheOrderOfItsSegments) {
  const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
  const FileBytes profile = RgbProfile({4.3, kSegmentBytes});
  ASSERT_EQ(SUCCESS, SaveImage(path, profile));
  FileBytes bytes = ReadWholeFile(path);
  const auto first = bytes.begin() + static_cast<ptrdiff_t>(Find(bytes, "ICC_PROFILE") - 4);
  const auto second =
      bytes.begin() + static_cast<ptrdiff_t>(Find(bytes, "ICC_PROFILE", Find(bytes, "ICC_PROFILE") + 1) - 4);
  const size_t length = static_cast<size_t>(*(second + 2)) << 8 | *(second + 3);
  std::rotate(first, second, second + static_cast<ptrdiff_t>(length + 2));
  ASSERT_EQ(SUCCESS, LoadFrom(folder.AddFile(L"turned.jpg", bytes)));
  EXPECT_EQ(profile, Loaded());
}

TEST_F(ImageProfile, OfAJpegThatLacksASegmentOrHasOneTwiceIsDamaged) {
  const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({4.3, 2 * kSegmentBytes})));
  const FileBytes whole = ReadWholeFile(path);
  const size_t number = Find(whole, "ICC_PROFILE") + 12;
  FileBytes lacking = whole;
  lacking[number - 3] = 'X';  // no profile segment any more
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadFrom(folder.AddFile(L"lacking.jpg", lacking)));
  FileBytes twice = whole;
  twice[number] = 2;
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadFrom(folder.AddFile(L"twice.jpg", twice)));
  FileBytes outside = whole;
  outside[number] = 9;
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadFrom(folder.AddFile(L"outside.jpg", outside)));
}

TEST_F(ImageProfile, OfAJpegWithFurtherPicturesLeavesTheirIndexPointingAtThem) {
  using namespace std::string_view_literals;
  const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({4.3, 500})));
  FileBytes jpeg = ReadWholeFile(path);
  const FileBytes second = ReadWholeFile(Picture(L"b.jpg", {24, 8, FMT_JPEG}));
  // The index stands before the profile, as cameras have it.
  FileBytes segment;
  Append(segment, "\xFF\xE2\0\x40MPF\0MM\0\x2A\0\0\0\x08\0\x01\xB0\x02\0\x07\0\0\0\x20\0\0\0\x1A\0\0\0\0"sv);
  const size_t index = Find(jpeg, "ICC_PROFILE") - 4 + 8;
  const size_t whole = jpeg.size() + 66;
  for (const size_t value :
       {size_t{0x30000}, whole, size_t{0}, size_t{0}, size_t{0}, second.size(), whole - index, size_t{0}}) {
    AppendNumber(segment, static_cast<uint32_t>(value), 4);
  }
  ASSERT_EQ(66u, segment.size());
  jpeg.insert(jpeg.begin() + static_cast<ptrdiff_t>(index - 8), segment.begin(), segment.end());
  jpeg.insert(jpeg.end(), second.begin(), second.end());
  const std::wstring camera = folder.AddFile(L"camera.jpg", jpeg);
  for (const uint32_t ballast : {100'000u, 0u, 3000u}) {
    ASSERT_EQ(SUCCESS, SaveImage(camera, RgbProfile({4.3, ballast})));
    const FileBytes after = ReadWholeFile(camera);
    const size_t moved = Find(after, "MPF") + 4;
    const auto number = [&](size_t at) {
      return static_cast<size_t>(after[moved + at]) << 24 | static_cast<size_t>(after[moved + at + 1]) << 16 |
             static_cast<size_t>(after[moved + at + 2]) << 8 | after[moved + at + 3];
    };
    EXPECT_EQ(after.size() - second.size(), number(30)) << "the first picture's size";
    EXPECT_EQ(second, Tail(after, moved + number(50)));
  }
}

TEST_F(ImageProfile, OfAGreyJpegIsGrey) {
  FileBytes jpeg = ReadWholeFile(Picture(L"a.jpg", {16, 16, FMT_JPEG}));
  // A file of one component, as far as its frame header says.
  jpeg[Find(jpeg, "\xFF\xC0") + 9] = 1;
  const std::wstring path = folder.AddFile(L"grey.jpg", jpeg);
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, SaveImage(path, RgbProfile()));
  EXPECT_EQ(SUCCESS, SaveImage(path, GrayProfile()));
}

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

// --- TIFF ---

class TiffPages : public ColorTest, public testing::WithParamInterface<int> {};

TEST_P(TiffPages, HaveProfilesOfTheirOwn) {
  const std::wstring path = Picture(L"a.tif", {40, 20, GetParam(), 3});
  const FileBytes pixels[] = {PixelsOf(path, 1), PixelsOf(path, 2), PixelsOf(path, 3)};
  ASSERT_FALSE(pixels[2].empty());
  const FileBytes second = RgbProfile({4.3, 64, false, 2}), third = RgbProfile({2.1, 96, false, 3});
  ASSERT_EQ(SUCCESS, SaveImage(path, second, 2));
  ASSERT_EQ(SUCCESS, SaveImage(path, third, 3));
  EXPECT_EQ(ERROR_PROFILE_MISSING, LoadFrom(path, 1));
  ASSERT_EQ(SUCCESS, LoadFrom(path, 2));
  EXPECT_EQ(second, Loaded());
  ASSERT_EQ(SUCCESS, LoadFrom(path, 3));
  EXPECT_EQ(third, Loaded());
  EXPECT_EQ(ERROR_PAGE_MISSING, LoadFrom(path, 4));
  for (int page = 1; page <= 3; ++page) EXPECT_EQ(pixels[page - 1], PixelsOf(path, page));
  FILEINFO info = {};
  EXPECT_EQ(SUCCESS, GetFileInfo(path.c_str(), &info, sizeof(info), 1, nullptr));
  EXPECT_EQ(3, info.totalPages);
}

TEST_P(TiffPages, KeepAllTheirBytesWhereTheyAre) {
  const std::wstring path = Picture(L"a.tif", {40, 20, GetParam(), 2});
  const FileBytes before = ReadWholeFile(path);
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile(), 2));
  const FileBytes after = ReadWholeFile(path);
  ASSERT_GT(after.size(), before.size());
  int changed = 0;
  for (size_t i = 0; i < before.size(); ++i) changed += before[i] != after[i];
  EXPECT_LE(changed, 8) << "no more than the pointer to the page's directory";
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({2.1}), 2));
  const FileBytes again = ReadWholeFile(path);
  changed = 0;
  for (size_t i = 0; i < after.size(); ++i) changed += after[i] != again[i];
  EXPECT_LE(changed, 16) << "no more than the tag's size and place";
}

INSTANTIATE_TEST_SUITE_P(Tiff, TiffPages, testing::Values(FMT_TIFF, FMT_TIFF_LZW, FMT_BIGTIFF));

TEST_F(ImageProfile, OfABigEndianTiffIsWrittenInItsOrder) {
  using namespace std::string_view_literals;
  FileBytes tiff;
  Append(tiff, "MM\0\x2A\0\0\0\x08"sv);
  struct {
    uint16_t tag, type;
    uint32_t count, value;
  } const entries[] = {{256, 4, 1, 1},        {257, 4, 1, 1},        {258, 3, 1, 8u << 16},
                       {259, 3, 1, 1u << 16}, {262, 3, 1, 1u << 16}, {273, 4, 1, 8 + 2 + 9 * 12 + 4},
                       {277, 3, 1, 1u << 16}, {278, 4, 1, 1},        {279, 4, 1, 1}};
  AppendNumber(tiff, 9, 2);
  for (const auto& entry : entries) {
    AppendNumber(tiff, entry.tag, 2);
    AppendNumber(tiff, entry.type, 2);
    AppendNumber(tiff, entry.count, 4);
    AppendNumber(tiff, entry.value, 4);
  }
  AppendNumber(tiff, 0, 4);
  tiff.push_back(0x5A);  // the one pixel; the file's size is odd
  const std::wstring path = folder.AddFile(L"big.tif", tiff);
  const FileBytes pixels = PixelsOf(path);
  ASSERT_FALSE(pixels.empty());
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, SaveImage(path, RgbProfile())) << "the picture is grey";
  ASSERT_EQ(SUCCESS, SaveImage(path, GrayProfile()));
  ASSERT_EQ(SUCCESS, LoadFrom(path));
  EXPECT_EQ(GrayProfile(), Loaded());
  EXPECT_EQ(pixels, PixelsOf(path));
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
