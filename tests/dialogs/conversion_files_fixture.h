// What the tests of the file list and of the preview beside it share: files, rows, and what the preview shows.
#pragma once

#include "tests/dialogs/conversion_fixture.h"

namespace zvtest {

class ConversionFiles : public ConversionDialog {
 protected:
  void AddThree() {
    AddPicture(L"1.bmp");
    AddPicture(L"2.bmp");
    AddPicture(L"3.bmp");
  }
  void AddFourPages() { AddPicture(L"pages.tif", {40, 20, FMT_TIFF, 4}); }

  static void Choose(HWND dialog, const std::vector<int>& rows) { SelectListViewRows(dialog, IDL_CONV_FILES, rows); }
  static std::vector<int> Chosen(HWND dialog) { return SelectedListViewRows(dialog, IDL_CONV_FILES); }
  static void WaitUntilChosen(HWND dialog, const std::vector<int>& rows) {
    WaitUntil([&] { return Chosen(dialog) == rows; }, "the chosen rows");
  }
  static int Rows(HWND dialog) { return ListViewCount(dialog, IDL_CONV_FILES); }
  static std::wstring Row(HWND dialog, int row) { return ListViewText(dialog, IDL_CONV_FILES, row, 0); }

  // Whether the preview pane shows anything but its background.
  static bool HasPicture(HWND dialog) {
    const HWND pane = Control(dialog, IDV_CONV_PREVIEW);
    const HDC device = ::GetDC(pane);
    RECT client;
    ::GetClientRect(pane, &client);
    ::UpdateWindow(pane);
    const COLORREF middle = ::GetPixel(device, client.right / 4, client.bottom / 2);
    ::ReleaseDC(pane, device);
    return middle == RGB(255, 0, 0);
  }
  static void ExpectPageControls(HWND dialog, bool enabled) {
    EXPECT_EQ(enabled, IsEnabled(dialog, IDE_CONV_PAGE));
    EXPECT_EQ(enabled, IsEnabled(dialog, IDB_CONV_PAGE_FORWARD));
    EXPECT_FALSE(IsEnabled(dialog, IDB_CONV_PAGE_BACK)) << "on the first page";
  }
  static void WaitForPicture(HWND dialog, bool there) {
    WaitUntil([=] { return HasPicture(dialog) == there; }, there ? "a picture in the preview" : "an empty preview");
  }
};

}  // namespace zvtest
