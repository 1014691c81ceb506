#include <cstring>

#include "services/zvcore/memory.h"
#include "services/zvcore/platform_core.h"

namespace zvcore {

ZVCHAR* NewWideFromAnsi(const char* text) noexcept {
  const int units = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
  if (units <= 0) return nullptr;
  auto* copy = static_cast<ZVCHAR*>(AllocateZeroed(static_cast<size_t>(units) * sizeof(ZVCHAR)));
  if (copy) MultiByteToWideChar(CP_ACP, 0, text, -1, copy, units);
  return copy;
}

char* NewAnsiFromWide(const ZVCHAR* text) noexcept {
  const int bytes = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (bytes <= 0) return nullptr;
  auto* copy = static_cast<char*>(AllocateZeroed(static_cast<size_t>(bytes)));
  if (copy) WideCharToMultiByte(CP_ACP, 0, text, -1, copy, bytes, nullptr, nullptr);
  return copy;
}

size_t AnsiPrefixLength(const char* text, size_t limit) noexcept {
  const size_t length = std::strlen(text);
  if (length <= limit) return length;
  const UINT codePage = GetACP();
  if (codePage == CP_UTF8) {
    while (limit > 0 && (text[limit] & 0xC0) == 0x80) --limit;
    return limit;
  }
  size_t at = 0;
  while (at < limit) {
    const size_t step = IsDBCSLeadByteEx(codePage, static_cast<BYTE>(text[at])) ? 2 : 1;
    if (at + step > limit) break;
    at += step;
  }
  return at;
}

}  // namespace zvcore

HDC GetTrackedDC(HWND window, int32_t, const char*) { return GetDC(window); }

int32_t ReleaseTrackedDC(HWND window, HDC device, int32_t, const char*) {
  if (!device) return ERROR_BAD_ARGUMENT;
  return ReleaseDC(window, device) ? SUCCESS : ERROR_BAD_ARGUMENT;
}
