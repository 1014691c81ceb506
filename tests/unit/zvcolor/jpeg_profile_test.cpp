// Profiles in JPEG files, which hold them in segments.
#include <algorithm>
#include <string_view>

#include "tests/unit/zvcolor/byte_search.h"
#include "tests/unit/zvcolor/color_test.h"

namespace {

using namespace zvtest;

constexpr uint32_t kSegmentBytes = 65519;

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

class JpegProfile : public ColorTest {};

TEST_F(JpegProfile, LeavesEveryOtherByteAlone) {
  const std::wstring path = Picture(L"a.jpg", {200, 100, FMT_JPEG_420});
  const FileBytes before = ReadWholeFile(path);
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile()));
  const FileBytes after = ReadWholeFile(path);
  EXPECT_EQ(Scans(before), Scans(after));
  EXPECT_EQ(before, WithoutProfile(after));
  EXPECT_LT(Find(after, "JFIF"), Find(after, "ICC_PROFILE")) << "JFIF stays first";
}

TEST_F(JpegProfile, ReplacesTheFormerOne) {
  const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
  const FileBytes before = ReadWholeFile(path);
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({4.3, 3 * kSegmentBytes})));
  ASSERT_EQ(SUCCESS, SaveImage(path, RgbProfile({2.1})));
  EXPECT_EQ(1, Count(ReadWholeFile(path), "ICC_PROFILE"));
  EXPECT_EQ(before, WithoutProfile(ReadWholeFile(path)));
}

TEST_F(JpegProfile, IsCutIntoSegmentsExactlyWhereItMustBe) {
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

TEST_F(JpegProfile, MayNeedNoMoreThan255Segments) {
  const std::wstring path = Picture(L"a.jpg", {40, 20, FMT_JPEG});
  const FileBytes before = ReadWholeFile(path);
  EXPECT_EQ(ERROR_LIMIT_EXCEEDED, SaveImage(path, RgbProfile({4.3, 255 * kSegmentBytes})));
  EXPECT_EQ(before, ReadWholeFile(path));
}

TEST_F(JpegProfile, IsJoinedWhateverTheOrderOfItsSegments) {
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

TEST_F(JpegProfile, ThatLacksASegmentOrHasOneTwiceIsDamaged) {
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

TEST_F(JpegProfile, WithFurtherPicturesLeavesTheirIndexPointingAtThem) {
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

TEST_F(JpegProfile, OfAGreyPictureIsGrey) {
  FileBytes jpeg = ReadWholeFile(Picture(L"a.jpg", {16, 16, FMT_JPEG}));
  // A file of one component, as far as its frame header says.
  jpeg[Find(jpeg, "\xFF\xC0") + 9] = 1;
  const std::wstring path = folder.AddFile(L"grey.jpg", jpeg);
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, SaveImage(path, RgbProfile()));
  EXPECT_EQ(SUCCESS, SaveImage(path, GrayProfile()));
}

}  // namespace
