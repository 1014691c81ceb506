// What the tests of the open dialog's preview share: pictures of one colour each, so that a look at the pane tells which one it
// shows, and a call of the dialog on their folder.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "include/zvfiledlg.h"
#include "services/zvfile/zvfile.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/open_driver.h"

namespace zvtest {

inline constexpr COLORREF kRed = RGB(255, 0, 0), kGreen = RGB(0, 255, 0), kBlue = RGB(0, 0, 255);

// A bitmap of one colour, 24 bits; the caller frees it.
inline BITMAPHANDLE MakeSolid(COLORREF color, int side = 400) {
  BITMAPHANDLE bitmap = {};
  EXPECT_EQ(SUCCESS, InitBitmapHandle(&bitmap, sizeof(bitmap), side, side, 24));
  EXPECT_EQ(SUCCESS, AllocateBitmap(&bitmap, MEMORY_CONVENTIONAL));
  EXPECT_EQ(SUCCESS, FillBitmap(&bitmap, color));
  return bitmap;
}

// Writes a page of one colour; page 2 and above are appended.
inline void WriteSolid(const std::wstring& path, COLORREF color, int32_t format = FMT_BMP, int32_t page = 1,
                       int side = 400) {
  BITMAPHANDLE bitmap = MakeSolid(color, side);
  SAVEFILEOPTION option = {};
  GetDefaultSaveFileOption(&option, sizeof(option));
  option.pageNumber = page;
  EXPECT_EQ(SUCCESS, SaveBitmapToFile(path.c_str(), &bitmap, format, 0, 2, &option));
  FreeBitmap(&bitmap);
}

// A PNG of one colour and opacity.
inline void WriteTransparent(const std::wstring& path, COLORREF color, uint8_t alpha, int side = 400) {
  BITMAPHANDLE bitmap = {};
  EXPECT_EQ(SUCCESS, InitBitmapHandle(&bitmap, sizeof(bitmap), side, side, 32));
  bitmap.flags |= BITMAP_FLAG_ALPHA;
  EXPECT_EQ(SUCCESS, AllocateBitmap(&bitmap, MEMORY_CONVENTIONAL));
  std::vector<uint8_t> row;
  for (int x = 0; x < side; ++x) {
    row.insert(row.end(), {GetBValue(color), GetGValue(color), GetRValue(color), alpha});
  }
  for (int y = 0; y < side; ++y) {
    EXPECT_LT(0, PutBitmapRow(&bitmap, row.data(), y, bitmap.bytesPerLine));
  }
  EXPECT_EQ(SUCCESS, SaveBitmapToFile(path.c_str(), &bitmap, FMT_PNG, 32, 2, nullptr));
  FreeBitmap(&bitmap);
}

inline std::vector<uint8_t> ContentOf(const std::wstring& path) {
  std::ifstream file{std::filesystem::path(path), std::ios::binary};
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A container file whose stamp has another colour than its picture; nothing that saves would make one.
inline void WriteStamped(const TemporaryFolder& folder, const std::wstring& name, COLORREF stamp, COLORREF picture) {
  const auto stream = [&](COLORREF color, int side) {
    WriteSolid(folder.File(L"stream.tmp"), color, FMT_JPEG, 1, side);
    const std::vector<uint8_t> bytes = ContentOf(folder.File(L"stream.tmp"));
    ::DeleteFileW(folder.File(L"stream.tmp").c_str());
    return bytes;
  };
  constexpr uint64_t kHeader = 32, kEntry = 48;
  const std::vector<uint8_t> small = stream(stamp, 100), large = stream(picture, 400);
  std::vector<uint8_t> file = {'Z', 'C', 'M', 'P', '\r', '\n', 0x1A, '\n', 1, 0, kHeader, 0};
  const auto append = [&](uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
      file.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
  };
  append(1, 4);
  append(kHeader + small.size() + large.size(), 8);
  append(0, 8);
  file.insert(file.end(), small.begin(), small.end());
  file.insert(file.end(), large.begin(), large.end());
  append(kHeader + small.size(), 8);
  append(large.size(), 8);
  append(kHeader, 8);
  append(small.size(), 4);
  append(400, 4);
  append(400, 4);
  append(24, 4);
  append(96, 4);
  append(96, 4);
  ASSERT_EQ(kHeader + small.size() + large.size() + kEntry, file.size());
  folder.AddFile(name, file);
}

// Beside the middle of the pane: inside any picture, and above the line of the no-preview text.
inline COLORREF PaneColor(HWND dialog) {
  const HWND pane = FindControl(dialog, kOpenPane);
  RECT client;
  ::GetClientRect(pane, &client);
  const HDC device = ::GetDC(pane);
  const COLORREF color = ::GetPixel(device, client.right / 2, client.bottom * 2 / 5);
  ::ReleaseDC(pane, device);
  return color;
}

inline bool IsNear(COLORREF a, COLORREF b) {
  constexpr int kJpegRounding = 4;
  const auto near1 = [](int x, int y) { return std::abs(x - y) <= kJpegRounding; };
  return near1(GetRValue(a), GetRValue(b)) && near1(GetGValue(a), GetGValue(b)) && near1(GetBValue(a), GetBValue(b));
}

inline void WaitForColor(HWND dialog, COLORREF color) {
  WaitUntil([=] { return IsNear(PaneColor(dialog), color); }, "the pane shows the picture of that colour");
}

// The no-preview text on the colour of buttons. The text is ink in the line through the middle.
inline bool ShowsNoPreviewText(HWND dialog) {
  const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
  const HWND pane = FindControl(dialog, kOpenPane);
  RECT client;
  ::GetClientRect(pane, &client);
  const HDC device = ::GetDC(pane);
  int ink = 0, elsewhere = 0;
  for (int x = 4; x < client.right - 4; ++x) {
    for (int y = client.bottom / 2 - 6; y <= client.bottom / 2 + 6; y += 2) {
      ink += ::GetPixel(device, x, y) != face;
    }
    elsewhere += ::GetPixel(device, x, client.bottom / 4) != face;
  }
  ::ReleaseDC(pane, device);
  return ink > 10 && elsewhere == 0;
}

inline void WaitForNoPreview(HWND dialog) {
  WaitUntil([=] { return ShowsNoPreviewText(dialog); }, "the pane says that there is no preview");
}

class OpenPane : public ::testing::Test {
 protected:
  OpenPane() {
    WriteSolid(folder.File(L"blue.bmp"), kBlue);
    WriteSolid(folder.File(L"red.bmp"), kRed);
    call.parent = parent.hwnd();
    call.params.flags = DLG_OPEN_SHOW_PAGE_CONTROLS | DLG_OPEN_SHOW_DELETE_PAGE | DLG_OPEN_SHOW_PREVIEW;
    call.params.showPreview = 1;
  }
  // Runs the script on the dialog and cancels it.
  void Look(const std::function<void(HWND)>& script, int listed = 2) {
    const int32_t result = call.Drive(
        [&](HWND dialog) {
          script(dialog);
          EXPECT_EQ(nullptr, FindMessageBox()) << "no message";
          Click(dialog, IDCANCEL);
        },
        listed);
    EXPECT_EQ(SUCCESS_DLG_CANCEL, result);
  }

  TemporaryFolder folder;
  ParentWindow parent;
  OpenCall call{folder.path()};
};

}  // namespace zvtest
