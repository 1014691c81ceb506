#include "services/zvcolor/multi_picture.h"

#include <gtest/gtest.h>

namespace {

using zvcolor::Bytes;
using zvcolor::MoveFurtherPictures;

// An index of a first picture of 1000 bytes and one more at 2000, 50 bytes long.
Bytes Index(bool isBigEndian) {
  Bytes bytes;
  const auto put = [&](uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
      bytes.push_back(static_cast<uint8_t>(value >> 8 * (isBigEndian ? count - 1 - i : i)));
  };
  bytes = isBigEndian ? Bytes{'M', 'M'} : Bytes{'I', 'I'};
  put(42, 2);
  put(8, 4);
  put(1, 2);
  put(0xB002, 2);
  put(7, 2);
  put(32, 4);
  put(26, 4);
  put(0, 4);
  for (const uint32_t value : {0x030000u, 1000u, 0u, 0u, 0u, 50u, 2000u, 0u}) put(value, 4);
  return bytes;
}
uint32_t Number(const Bytes& bytes, size_t at) {
  const bool isBigEndian = bytes[0] == 'M';
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) value = value << 8 | bytes[at + (isBigEndian ? i : 3 - i)];
  return value;
}
constexpr size_t kFirstSize = 30, kFirstOffset = 34, kSecondSize = 46, kSecondOffset = 50;

TEST(FurtherPictures, FollowTheFirstOneInEitherByteOrder) {
  for (const bool isBigEndian : {false, true}) {
    Bytes index = Index(isBigEndian);
    MoveFurtherPictures(index, 300, -200);
    EXPECT_EQ(1300u, Number(index, kFirstSize));
    EXPECT_EQ(0u, Number(index, kFirstOffset));
    EXPECT_EQ(50u, Number(index, kSecondSize));
    EXPECT_EQ(1800u, Number(index, kSecondOffset));
  }
}

TEST(FurtherPictures, OfAnIndexCutShortAreLeftAsFarAsItGoes) {
  const Bytes whole = Index(false);
  for (size_t size = 0; size < whole.size(); ++size) {
    Bytes cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size));
    MoveFurtherPictures(cut, 300, -200);
    EXPECT_EQ(size, cut.size());
  }
}

}  // namespace
