// Opening and closing the batch conversion dialog again and again leaves nothing behind.
#include "tests/dialogs/conversion_fixture.h"

namespace {

using namespace zvtest;

class ConversionLeaks : public ConversionDialog {};

TEST_F(ConversionLeaks, OpeningAndClosingLeavesNothingBehind) {
  AddPicture(L"1.bmp");
  AddPicture(L"2.tif", {40, 20, FMT_TIFF, 3});
  ExpectNothingLeftBehind([this] { RunAndClose([](HWND) {}); });
}

TEST_F(ConversionLeaks, EscLeavesNothingBehind) {
  AddPicture(L"1.bmp");
  ExpectNothingLeftBehind([this] {
    Run([](HWND dialog) {
      PressKey(dialog, VK_ESCAPE);
      WaitUntilClosed(dialog);
    });
  });
}

TEST_F(ConversionLeaks, ARefusedStartLeavesNothingBehind) {
  params.fileList = L"";
  ExpectNothingLeftBehind([this] { EXPECT_EQ(ERROR_DIALOG_FAILED, Z_DlgFileConversion(parent.hwnd(), &params)); });
}

}  // namespace
