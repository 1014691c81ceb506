// Opening and closing the batch conversion dialog again and again leaves nothing behind.
#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

constexpr int kOpenings = 200;
constexpr size_t kHeapSlack = 64 * 1024;  // what the system's own caches may grow by

class ConversionLeaks : public ConversionDialog {
 protected:
  void ExpectNoGrowth(const std::function<void()>& open) {
    for (int i = 0; i < 10; ++i) {
      open();
    }
    const ResourceUse before = CurrentResourceUse();
    for (int i = 0; i < kOpenings; ++i) {
      open();
    }
    const ResourceUse after = CurrentResourceUse();
    EXPECT_LE(after.gdiObjects, before.gdiObjects);
    EXPECT_LE(after.userObjects, before.userObjects);
    EXPECT_LE(after.heapBytes, before.heapBytes + kHeapSlack);
  }
};

TEST_F(ConversionLeaks, OpeningAndClosingLeavesNothingBehind) {
  AddPicture(L"1.bmp");
  AddPicture(L"2.tif", {40, 20, FMT_TIFF, 3});
  ExpectNoGrowth([this] { RunAndClose([](HWND) {}); });
}

TEST_F(ConversionLeaks, EscLeavesNothingBehind) {
  AddPicture(L"1.bmp");
  ExpectNoGrowth([this] {
    Run([](HWND dialog) {
      PressKey(dialog, VK_ESCAPE);
      WaitUntilClosed(dialog);
    });
  });
}

TEST_F(ConversionLeaks, ARefusedStartLeavesNothingBehind) {
  params.fileList = L"";
  ExpectNoGrowth([this] { EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversion(parent.hwnd(), &params)); });
}

}  // namespace
