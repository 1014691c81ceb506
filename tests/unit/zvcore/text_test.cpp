#include <cstring>
#include <string>

#include "services/zvcore/zvcore.h"
#include "tests/unit/zvcore/test_bitmap.h"

namespace {

using WideString = std::basic_string<ZVCHAR>;

WideString Wide(const char* ascii) { return WideString(ascii, ascii + std::strlen(ascii)); }

TEST(TextConversion, AsciiGoesBothWays) {
  ZVCHAR wide[8];
  EXPECT_EQ(Z_A2W::Convert("abc", wide, 8), SUCCESS);
  EXPECT_EQ(WideString(wide), Wide("abc"));
  char narrow[8];
  EXPECT_EQ(Z_W2A::Convert(wide, narrow, 8), SUCCESS);
  EXPECT_STREQ(narrow, "abc");
}

TEST(TextConversion, ExactRoomSuffices) {
  ZVCHAR wide[4];
  EXPECT_EQ(ConvertAnsiToWide("abc", wide, 4), SUCCESS);
  EXPECT_EQ(WideString(wide), Wide("abc"));
}

TEST(TextConversion, CutTextIsTerminatedAndReported) {
  ZVCHAR wide[3] = {1, 1, 1};
  EXPECT_EQ(ConvertAnsiToWide("abc", wide, 3), ERROR_BUFFER_TOO_SMALL);
  EXPECT_EQ(WideString(wide), Wide("ab"));
  char narrow[3] = {1, 1, 1};
  EXPECT_EQ(ConvertWideToAnsi(Wide("abc").c_str(), narrow, 3), ERROR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(narrow, "ab");
  char one[1] = {1};
  EXPECT_EQ(ConvertWideToAnsi(Wide("abc").c_str(), one, 1), ERROR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(one, "");
}

TEST(TextConversion, EmptyTextConvertsToEmptyText) {
  ZVCHAR wide[1] = {1};
  EXPECT_EQ(ConvertAnsiToWide("", wide, 1), SUCCESS);
  EXPECT_EQ(wide[0], 0);
}

TEST(TextConversion, BadArgumentsAreRefused) {
  ZVCHAR wide[2];
  char narrow[2];
  EXPECT_EQ(ConvertAnsiToWide(nullptr, wide, 2), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertAnsiToWide("a", nullptr, 2), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertAnsiToWide("a", wide, 0), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertWideToAnsi(nullptr, narrow, 2), ERROR_BAD_ARGUMENT);
  EXPECT_EQ(ConvertWideToAnsi(Wide("a").c_str(), narrow, -1), ERROR_BAD_ARGUMENT);
}

TEST(TextCopies, AreNewBlocksThatCanBeFreed) {
  const int64_t before = CoreBlockCount();
  ZVCHAR* wide = AnsiToWideDup("copy me");
  ASSERT_NE(wide, nullptr);
  EXPECT_EQ(WideString(wide), Wide("copy me"));
  char* narrow = WideToAnsiDup(wide);
  ASSERT_NE(narrow, nullptr);
  EXPECT_STREQ(narrow, "copy me");
  EXPECT_EQ(CoreBlockCount(), before + 2);
  FreeWideDup(wide);
  FreeWideDup(narrow);
  EXPECT_EQ(CoreBlockCount(), before);
}

TEST(TextCopies, OfNullAreNull) {
  EXPECT_EQ(AnsiToWideDup(nullptr), nullptr);
  EXPECT_EQ(WideToAnsiDup(nullptr), nullptr);
  FreeWideDup(nullptr);
}

TEST(CoreMemory, BlocksAreZeroedAndCounted) {
  const int64_t before = CoreBlockCount();
  auto* block = static_cast<unsigned char*>(CoreAlloc(10, 7, __LINE__, __FILE__));
  ASSERT_NE(block, nullptr);
  for (int i = 0; i < 70; ++i) EXPECT_EQ(block[i], 0);
  EXPECT_EQ(CoreBlockCount(), before + 1);
  EXPECT_EQ(TrackAllocation(1, block, __LINE__, __FILE__), SUCCESS);
  EXPECT_EQ(TrackFree(1, block, __LINE__, __FILE__), SUCCESS);
  EXPECT_EQ(CoreFree(block, __LINE__, __FILE__), SUCCESS);
  EXPECT_EQ(CoreFreeBuffer(nullptr, __LINE__, __FILE__), SUCCESS);
  EXPECT_EQ(CoreBlockCount(), before);
}

TEST(CoreMemory, SizesThatOverflowAreRefused) {
  EXPECT_EQ(CoreAlloc(SIZE_MAX / 2, 3, 0, nullptr), nullptr);
  EXPECT_EQ(CoreAlloc(SIZE_MAX, SIZE_MAX, 0, nullptr), nullptr);
}

#ifndef _WIN32
TEST(TextConversion, Utf8CharactersOfEveryLengthGoBothWays) {
  const std::u16string expected = u"a\u00e9\u20ac\U0001F600";
  ZVCHAR wide[16];
  ASSERT_EQ(ConvertAnsiToWide("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", wide, 16), SUCCESS);
  EXPECT_EQ(WideString(wide), expected);
  char narrow[16];
  ASSERT_EQ(ConvertWideToAnsi(wide, narrow, 16), SUCCESS);
  EXPECT_STREQ(narrow, "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(TextConversion, CharactersAreNeverCutInTheMiddle) {
  ZVCHAR wide[2];
  EXPECT_EQ(ConvertAnsiToWide("\xF0\x9F\x98\x80", wide, 2), ERROR_BUFFER_TOO_SMALL);
  EXPECT_EQ(wide[0], 0);
  char narrow[4];
  EXPECT_EQ(ConvertWideToAnsi(u"a\u20ac", narrow, 4), ERROR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(narrow, "a");
}

TEST(TextConversion, InvalidUtf8BecomesReplacementCharacters) {
  ZVCHAR wide[16];
  // A lone continuation, an overlong slash, a surrogate half, a truncated sequence.
  ASSERT_EQ(ConvertAnsiToWide("\x80|\xC0\xAF|\xED\xA0\x80|\xE2\x82", wide, 16), SUCCESS);
  EXPECT_EQ(WideString(wide), u"\uFFFD|\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD");
}

TEST(TextConversion, LoneSurrogatesBecomeReplacementCharacters) {
  const ZVCHAR lone[] = {0xD83D, u'a', 0xDE00, 0};
  char narrow[16];
  ASSERT_EQ(ConvertWideToAnsi(lone, narrow, 16), SUCCESS);
  EXPECT_STREQ(narrow,
               "\xEF\xBF\xBD"
               "a\xEF\xBF\xBD");
}
#else
TEST(TextConversion, CharactersOfTheSystemsCodePageGoBothWays) {
  char expected[16] = {};
  ASSERT_GT(WideCharToMultiByte(CP_ACP, 0, L"\u00e9\u20ac", -1, expected, 16, nullptr, nullptr), 0);
  char narrow[16];
  ASSERT_EQ(ConvertWideToAnsi(L"\u00e9\u20ac", narrow, 16), SUCCESS);
  EXPECT_STREQ(narrow, expected);
  wchar_t expectedWide[16] = {};
  ASSERT_GT(MultiByteToWideChar(CP_ACP, 0, expected, -1, expectedWide, 16), 0);
  wchar_t wide[16];
  ASSERT_EQ(ConvertAnsiToWide(expected, wide, 16), SUCCESS);
  EXPECT_STREQ(wide, expectedWide);
}

TEST(TrackedDevice, IsGivenAndTakenBack) {
  HDC device = GetTrackedDC(nullptr, __LINE__, __FILE__);
  ASSERT_NE(device, nullptr);
  EXPECT_EQ(ReleaseTrackedDC(nullptr, device, __LINE__, __FILE__), SUCCESS);
  EXPECT_EQ(ReleaseTrackedDC(nullptr, nullptr, __LINE__, __FILE__), ERROR_BAD_ARGUMENT);
}
#endif

}  // namespace
