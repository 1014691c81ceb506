#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>

#include <filesystem>
#include <fstream>

#include "tests/support/dialog_driver.h"

namespace zvtest {

namespace {

// The encoder of that name is part of every system since XP.
constexpr CLSID kPngEncoder = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

std::filesystem::path ScreenshotFolder() {
  wchar_t program[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, program, MAX_PATH);
  return std::filesystem::path(program).parent_path().parent_path() / L"screenshots";
}

HBITMAP CopyWindowPixels(HWND window) {
  RECT rect;
  ::GetWindowRect(window, &rect);
  const HDC windowDc = ::GetWindowDC(window);
  const HDC memoryDc = ::CreateCompatibleDC(windowDc);
  const HBITMAP bitmap = ::CreateCompatibleBitmap(windowDc, rect.right - rect.left, rect.bottom - rect.top);
  const HGDIOBJ previous = ::SelectObject(memoryDc, bitmap);
  ::BitBlt(memoryDc, 0, 0, rect.right - rect.left, rect.bottom - rect.top, windowDc, 0, 0, SRCCOPY);
  ::SelectObject(memoryDc, previous);
  ::DeleteDC(memoryDc);
  ::ReleaseDC(window, windowDc);
  return bitmap;
}

// Nothing of the window or below it waits to be painted. Its own thread paints, when it comes to it.
bool IsPainted(HWND window) {
  bool painted = !::GetUpdateRect(window, nullptr, FALSE);
  ::EnumChildWindows(
      window,
      [](HWND child, LPARAM result) -> BOOL {
        if (::IsWindowVisible(child) && ::GetUpdateRect(child, nullptr, FALSE)) {
          *reinterpret_cast<bool*>(result) = false;
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&painted));
  return painted;
}

}  // namespace

bool SaveScreenshot(HWND window, const std::wstring& name) {
  std::error_code ignored;
  std::filesystem::create_directories(ScreenshotFolder(), ignored);
  ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN | RDW_FRAME);
  constexpr DWORD kLongestPaint = 3'000;
  HoldsWithin(kLongestPaint, [=] { return IsPainted(window); });
  // An answer comes only after the painting that is under way.
  DWORD_PTR answer = 0;
  ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kLongestPaint, &answer);

  Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token = 0;
  if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) {
    return false;
  }
  const HBITMAP pixels = CopyWindowPixels(window);
  bool saved = false;
  {
    Gdiplus::Bitmap picture(pixels, nullptr);
    const std::wstring path = (ScreenshotFolder() / (name + L".png")).wstring();
    saved = picture.Save(path.c_str(), &kPngEncoder, nullptr) == Gdiplus::Ok;
  }
  ::DeleteObject(pixels);
  Gdiplus::GdiplusShutdown(token);
  return saved;
}

TemporaryFolder::TemporaryFolder() : TemporaryFolder(std::filesystem::temp_directory_path()) {}

TemporaryFolder::TemporaryFolder(const std::filesystem::path& base) {
  static int serial = 0;
  path_ = base / (L"zvtest" + std::to_wstring(::GetCurrentProcessId()) + L"_" + std::to_wstring(++serial));
  std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::wstring TemporaryFolder::AddFile(const std::wstring& name, const std::vector<uint8_t>& content) const {
  const std::filesystem::path path = File(name);
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
  return path.wstring();
}

std::wstring TemporaryFolder::AddFolder(const std::wstring& name) const {
  std::filesystem::create_directories(File(name));
  return File(name);
}

}  // namespace zvtest
