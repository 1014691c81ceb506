// Browsing through a folder with the arrow keys: every file's own picture, never the one before, and nothing left behind.
#include "tests/dialogs/open_preview_fixture.h"

namespace {

using namespace zvtest;

constexpr int kFiles = 200;

COLORREF ColorOf(int index) { return RGB(255 - index, (index * 7) & 0xFF, (index * 53) & 0xFF); }

class Browsing : public OpenPane {
 protected:
  // Every tenth file is damaged, every seventh has two pages.
  Browsing() {
    ::DeleteFileW(folder.File(L"blue.bmp").c_str());
    ::DeleteFileW(folder.File(L"red.bmp").c_str());
    for (int i = 0; i < kFiles; ++i) {
      if (IsDamaged(i)) {
        folder.AddFile(NameOf(i), {'B', 'M', 1, 2, 3});
      } else if (i % 7 == 3) {
        WriteSolid(folder.File(NameOf(i)), ColorOf(i), FMT_TIFF, 1, 200);
        WriteSolid(folder.File(NameOf(i)), kGreen, FMT_TIFF, 2, 200);
      } else {
        WriteSolid(folder.File(NameOf(i)), ColorOf(i), FMT_BMP, 1, 200);
      }
    }
  }
  static bool IsDamaged(int index) { return index % 10 == 9; }
  static std::wstring NameOf(int index) { return std::to_wstring(1000 + index) + L".bmp"; }

  static void Press(HWND dialog, WPARAM key, int times = 1) {
    for (int i = 0; i < times; ++i) {
      ::PostMessageW(OpenFileList(dialog), WM_KEYDOWN, key, 1);
      ::PostMessageW(OpenFileList(dialog), WM_KEYUP, key, 1);
    }
  }
  static void ExpectShown(HWND dialog, int index) {
    WaitUntil([=] { return TextOf(OpenNameBox(dialog)) == NameOf(index); }, "the next file is chosen");
    if (IsDamaged(index)) {
      WaitForNoPreview(dialog);
    } else {
      WaitForColor(dialog, ColorOf(index));
    }
  }
  static void BrowseDown(HWND dialog) {
    for (int i = 1; i < kFiles; ++i) {
      Press(dialog, VK_DOWN);
      ExpectShown(dialog, i);
    }
  }
  static void BrowseUp(HWND dialog) {
    for (int i = kFiles - 2; i >= 0; --i) {
      Press(dialog, VK_UP);
      ExpectShown(dialog, i);
    }
  }
};

TEST_F(Browsing, ShowsTheChosenPictureAndLeavesNothingBehind) {
  Look(
      [](HWND dialog) {
        SelectFile(dialog, NameOf(0));
        ExpectShown(dialog, 0);
        BrowseDown(dialog);
        BrowseUp(dialog);
        const ResourceUse before = CurrentResourceUse();
        const int64_t blocks = CoreBlockCount();
        BrowseDown(dialog);
        BrowseUp(dialog);
        const ResourceUse after = CurrentResourceUse();
        EXPECT_EQ(blocks, CoreBlockCount());
        EXPECT_EQ(before.gdiObjects, after.gdiObjects);
        EXPECT_EQ(before.userObjects, after.userObjects);
        constexpr size_t kCaches = 64 * 1024;
        EXPECT_LE(after.heapBytes, before.heapBytes + kCaches);
      },
      kFiles);
}

TEST_F(Browsing, EndsWithThePictureOfTheLastFileWhenKeysComeFasterThanPictures) {
  Look(
      [](HWND dialog) {
        SelectFile(dialog, NameOf(0));
        ExpectShown(dialog, 0);
        Press(dialog, VK_DOWN, 120);
        ExpectShown(dialog, 120);
        Press(dialog, VK_UP, 60);
        Press(dialog, VK_DOWN, 30);
        ExpectShown(dialog, 90);
        Press(dialog, VK_END);
        ExpectShown(dialog, kFiles - 1);
      },
      kFiles);
}

}  // namespace
