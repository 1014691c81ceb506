// Images cut short at every length and with every byte of their beginning changed: whatever comes of it, an answer comes, and
// a file that was not written to is as it was.
#include "tests/unit/zvcolor/color_test.h"

namespace {

using namespace zvtest;

class DamagedImage : public ColorTest, public testing::WithParamInterface<int> {
 protected:
  FileBytes WithProfile() {
    const std::wstring path = Picture(L"whole", {8, 4, GetParam()});
    EXPECT_EQ(SUCCESS, SaveImage(path, RgbProfile({2.1})));
    return ReadWholeFile(path);
  }
  void ExpectAnAnswer(const FileBytes& bytes) {
    const std::wstring path = folder.AddFile(L"damaged", bytes);
    const int32_t loaded = LoadFrom(path);
    EXPECT_TRUE(loaded == SUCCESS || (loaded < 0 && IsEmpty())) << loaded;
    const int32_t saved = SaveImage(path, RgbProfile());
    EXPECT_TRUE(saved == SUCCESS || (saved < 0 && ReadWholeFile(path) == bytes)) << saved;
    EXPECT_EQ(2, CountFiles());
  }
};

TEST_P(DamagedImage, CutShortIsAnswered) {
  const FileBytes whole = WithProfile();
  const size_t step = std::max<size_t>(1, whole.size() / 150);
  for (size_t size = 1; size < whole.size(); size += size < 64 ? 1 : step) {
    ExpectAnAnswer(FileBytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size)));
  }
}

TEST_P(DamagedImage, WithAChangedByteIsAnswered) {
  const FileBytes whole = WithProfile();
  const size_t step = std::max<size_t>(1, whole.size() / 120);
  for (size_t at = 0; at < whole.size(); at += at < 64 ? 1 : step) {
    for (const uint8_t value : {0x00, 0xFF}) {
      FileBytes changed = whole;
      changed[at] = value;
      ExpectAnAnswer(changed);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Images, DamagedImage, testing::Values(FMT_JPEG, FMT_PNG, FMT_TIFF, FMT_BIGTIFF));

}  // namespace
