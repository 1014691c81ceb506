#include "platform/afx.h"

#include <cstdint>

#include "platform/win_app.h"

namespace {

constexpr DWORD kWritable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

// The first address behind the region of `address` when the region allows the access, else 0.
std::uintptr_t AccessibleUpTo(std::uintptr_t address, DWORD protections) {
  MEMORY_BASIC_INFORMATION region;
  if (!::VirtualQuery(reinterpret_cast<const void*>(address), &region, sizeof(region))) {
    return 0;
  }
  const bool accessible =
      region.State == MEM_COMMIT && (region.Protect & protections) && !(region.Protect & PAGE_GUARD);
  return accessible ? reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize : 0;
}

}  // namespace

BOOL AfxIsValidAddress(const void* address, UINT_PTR size, BOOL write) {
  if (!address) {
    return FALSE;
  }
  const auto first = reinterpret_cast<std::uintptr_t>(address);
  const std::uintptr_t end = first + (size ? size : 1);
  if (end < first) {
    return FALSE;
  }
  std::uintptr_t reached = first;
  while (reached < end) {
    reached = AccessibleUpTo(reached, write ? kWritable : kReadable);
    if (reached == 0) {
      return FALSE;
    }
  }
  return TRUE;
}

BOOL AfxIsValidString(LPCWSTR text, int length) {
  if (length >= 0) {
    return AfxIsValidAddress(text, static_cast<UINT_PTR>(length) * sizeof(wchar_t), FALSE);
  }
  std::uintptr_t reached = 0;
  for (;; ++text) {
    const std::uintptr_t last = reinterpret_cast<std::uintptr_t>(text) + sizeof(wchar_t) - 1;
    if (last >= reached) {
      if (!AfxIsValidAddress(text, sizeof(wchar_t), FALSE)) {
        return FALSE;
      }
      reached = AccessibleUpTo(last, kReadable);
    }
    if (*text == L'\0') {
      return TRUE;
    }
  }
}

int AfxMessageBox(LPCWSTR text, UINT type, UINT /*helpId*/) {
  if ((type & MB_ICONMASK) == 0) {
    type |= (type & MB_TYPEMASK) == MB_YESNO || (type & MB_TYPEMASK) == MB_YESNOCANCEL ? MB_ICONQUESTION
                                                                                       : MB_ICONEXCLAMATION;
  }
  HWND owner = ::GetActiveWindow();
  if (owner) {
    owner = ::GetLastActivePopup(owner);
  }
  return ::MessageBoxW(owner, text, AfxGetAppName(), type);
}

int AfxMessageBox(UINT textId, UINT type, UINT helpId) {
  CString text;
  text.LoadString(textId);
  return AfxMessageBox(text, type, helpId);
}
