// The counters themselves: what is kept on purpose is seen, and a leak check that meets it fails.
#include "tests/support/object_counts.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <vector>

#include "tests/support/leak_check.h"

namespace {

using namespace zvtest;

constexpr int kKept = 3;  // objects a test keeps

std::vector<uint8_t> IconPlane() { return std::vector<uint8_t>(32 * 32 / 8); }

HICON MakeIcon() {
  const std::vector<uint8_t> plane = IconPlane();
  return ::CreateIcon(nullptr, 32, 32, 1, 1, plane.data(), plane.data());
}

HWND MakeWindow(HWND parent) {
  return ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
}

// Expects `make` to raise the count by exactly one each time and `destroy` to bring it back.
template <typename Handle>
void ExpectSeen(ObjectCounts (*count)(), const std::function<Handle()>& make,
                const std::function<void(Handle)>& destroy) {
  destroy(make());  // what the first of its kind makes besides itself
  const int before = Total(count());
  std::vector<Handle> kept;
  for (int i = 0; i < kKept; ++i) {
    kept.push_back(make());
    ASSERT_NE(kept.back(), nullptr);
  }
  EXPECT_EQ(Total(count()), before + kKept);
  for (const Handle handle : kept) destroy(handle);
  EXPECT_EQ(Total(count()), before);
}

void Delete(HGDIOBJ object) { ::DeleteObject(object); }

TEST(ObjectCounts, SeeBrushes) {
  ExpectSeen<HGDIOBJ>(
      CountGdiObjects, [] { return ::CreateSolidBrush(RGB(1, 2, 3)); }, Delete);
}

TEST(ObjectCounts, SeePens) {
  ExpectSeen<HGDIOBJ>(
      CountGdiObjects, [] { return ::CreatePen(PS_SOLID, 1, RGB(1, 2, 3)); }, Delete);
}

TEST(ObjectCounts, SeeBitmaps) {
  ExpectSeen<HGDIOBJ>(
      CountGdiObjects, [] { return ::CreateBitmap(5, 5, 1, 32, nullptr); }, Delete);
}

TEST(ObjectCounts, SeeFonts) {
  LOGFONTW font = {};
  font.lfHeight = 11;
  ExpectSeen<HGDIOBJ>(
      CountGdiObjects, [&] { return ::CreateFontIndirectW(&font); }, Delete);
}

TEST(ObjectCounts, SeeRegions) {
  ExpectSeen<HGDIOBJ>(
      CountGdiObjects, [] { return ::CreateRectRgn(0, 0, 5, 5); }, Delete);
}

TEST(ObjectCounts, SeePalettes) {
  LOGPALETTE palette = {0x300, 1, {{1, 2, 3, 0}}};
  ExpectSeen<HGDIOBJ>(
      CountGdiObjects, [&] { return ::CreatePalette(&palette); }, Delete);
}

TEST(ObjectCounts, SeeDeviceContexts) {
  ExpectSeen<HDC>(
      CountGdiObjects, [] { return ::CreateCompatibleDC(nullptr); }, [](HDC dc) { ::DeleteDC(dc); });
}

TEST(ObjectCounts, SeeWindows) {
  // A thread's first window may bring helper windows with it (input methods), which go with its last.
  const HWND first = MakeWindow(nullptr);
  ExpectSeen<HWND>(
      CountUserObjects, [] { return MakeWindow(nullptr); }, [](HWND window) { ::DestroyWindow(window); });
  ::DestroyWindow(first);
}

TEST(ObjectCounts, SeeMessageOnlyWindows) {
  ExpectSeen<HWND>(
      CountUserObjects, [] { return MakeWindow(HWND_MESSAGE); }, [](HWND window) { ::DestroyWindow(window); });
}

TEST(ObjectCounts, SeeMenus) {
  ExpectSeen<HMENU>(
      CountUserObjects, [] { return ::CreatePopupMenu(); }, [](HMENU menu) { ::DestroyMenu(menu); });
}

TEST(ObjectCounts, SeeIcons) {
  ExpectSeen<HICON>(CountUserObjects, MakeIcon, [](HICON icon) { ::DestroyIcon(icon); });
}

TEST(ObjectCounts, SeeCursors) {
  const std::vector<uint8_t> plane = IconPlane();
  ExpectSeen<HCURSOR>(
      CountUserObjects, [&] { return ::CreateCursor(nullptr, 0, 0, 32, 32, plane.data(), plane.data()); },
      [](HCURSOR cursor) { ::DestroyCursor(cursor); });
}

TEST(ObjectCounts, SeeAcceleratorTables) {
  ACCEL key = {FVIRTKEY, VK_F5, 1};
  ExpectSeen<HACCEL>(
      CountUserObjects, [&] { return ::CreateAcceleratorTableW(&key, 1); },
      [](HACCEL table) { ::DestroyAcceleratorTable(table); });
}

TEST(ObjectCounts, NameWhatGrew) {
  EXPECT_EQ(Growth({{"brush", 2}, {"font", 1}}, {{"brush", 4}, {"font", 1}, {"pen", 1}}), "2 x brush, 1 x pen");
  EXPECT_EQ(Growth({{"brush", 2}}, {{"brush", 1}}), "");
}

const LeakCheck kShort = {.warmUp = 1, .times = 4, .patience = 100};

TEST(LeakChecks, PassWhatCleansUp) {
  ExpectNothingLeftBehind([] { ::DeleteObject(::CreateSolidBrush(RGB(1, 2, 3))); }, kShort);
}

TEST(LeakChecks, FailForABrushLeftBehind) {
  static std::vector<HGDIOBJ> kept;
  EXPECT_NONFATAL_FAILURE(ExpectNothingLeftBehind([] { kept.push_back(::CreateSolidBrush(RGB(1, 2, 3))); }, kShort),
                          "after.gdiObjects");
  for (const HGDIOBJ brush : kept) ::DeleteObject(brush);
}

TEST(LeakChecks, FailForADeviceContextThatIsNotGivenBack) {
  static std::vector<HDC> kept;
  EXPECT_NONFATAL_FAILURE(ExpectNothingLeftBehind([] { kept.push_back(::GetDC(nullptr)); }, kShort), "device context");
  for (const HDC context : kept) ::ReleaseDC(nullptr, context);
}

TEST(LeakChecks, FailForAMenuLeftBehind) {
  static std::vector<HMENU> kept;
  EXPECT_NONFATAL_FAILURE(ExpectNothingLeftBehind([] { kept.push_back(::CreatePopupMenu()); }, kShort),
                          "after.userObjects");
  for (const HMENU menu : kept) ::DestroyMenu(menu);
}

TEST(LeakChecks, FailForMemoryLeftBehind) {
  static std::vector<void*> kept;
  EXPECT_NONFATAL_FAILURE(
      ExpectNothingLeftBehind([] { kept.push_back(::HeapAlloc(::GetProcessHeap(), 0, 1 << 16)); }, kShort),
      "after.heapBytes");
  for (void* block : kept) ::HeapFree(::GetProcessHeap(), 0, block);
}

}  // namespace
