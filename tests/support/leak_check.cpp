#include "tests/support/leak_check.h"

#include <windows.h>

#include <commdlg.h>

#include <gtest/gtest.h>

namespace zvtest {

namespace {

constexpr DWORD kPollInterval = 50;  // milliseconds

size_t BusyHeapBytes() {
  size_t bytes = 0;
  HANDLE heaps[64];
  const DWORD count = ::GetProcessHeaps(64, heaps);
  for (DWORD i = 0; i < count && i < 64; ++i) {
    ::HeapLock(heaps[i]);
    PROCESS_HEAP_ENTRY entry = {};
    while (::HeapWalk(heaps[i], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
    ::HeapUnlock(heaps[i]);
  }
  return bytes;
}

bool Repeat(const std::function<void()>& step, int times) {
  for (int i = 0; i < times && !::testing::Test::HasFailure(); ++i) step();
  return !::testing::Test::HasFailure();
}

// Wine keeps a device context for each window that was painted lately, 64 at most; how many of them there are is a matter of which
// windows happened to be painted before they closed. With so many in use at once there are as many and those that somebody has
// not given back, each time they are counted.
void FillDeviceContextCache() {
  HDC contexts[64];
  for (HDC& context : contexts) context = ::GetDC(nullptr);
  for (HDC& context : contexts) ::ReleaseDC(nullptr, context);
}

struct Bounds {
  int gdiObjects;
  int userObjects;
  size_t heapBytes;
};

Bounds BoundsAfter(const ResourceUse& before, const LeakCheck& check) {
  const int cached = check.times / 10;
  const int system = Total(check.systemLeaves) * check.times;
  return {before.gdiObjects + cached, before.userObjects + cached + system, before.heapBytes + check.heapSlack};
}

bool IsWithin(const ResourceUse& use, const Bounds& bounds) {
  return use.gdiObjects <= bounds.gdiObjects && use.userObjects <= bounds.userObjects &&
         use.heapBytes <= bounds.heapBytes;
}

UINT_PTR CALLBACK CancelWhenShown(HWND page, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == CDN_INITDONE) {
    ::PostMessageW(::GetParent(page), WM_COMMAND, IDCANCEL, 0);
  }
  return 0;
}

void OpenSystemDialog() {
  wchar_t path[MAX_PATH] = {};
  OPENFILENAMEW dialog = {sizeof(dialog)};
  dialog.lpstrFile = path;
  dialog.nMaxFile = MAX_PATH;
  dialog.Flags = OFN_EXPLORER | OFN_ENABLEHOOK | OFN_ENABLESIZING;
  dialog.lpfnHook = CancelWhenShown;
  ::GetOpenFileNameW(&dialog);
}

}  // namespace

ResourceUse CurrentResourceUse() {
  FillDeviceContextCache();
  ResourceUse use;
  use.gdiKinds = CountGdiObjects();
  use.userKinds = CountUserObjects();
  use.gdiObjects = Total(use.gdiKinds);
  use.userObjects = Total(use.userKinds);
  use.heapBytes = BusyHeapBytes();
  return use;
}

void ExpectNothingLeftBehind(const std::function<void()>& step, const LeakCheck& check) {
  if (!Repeat(step, check.warmUp)) return;
  const ResourceUse before = CurrentResourceUse();
  if (!Repeat(step, check.times)) return;
  const Bounds bounds = BoundsAfter(before, check);
  ResourceUse after = CurrentResourceUse();
  for (const DWORD start = ::GetTickCount(); !IsWithin(after, bounds) && ::GetTickCount() - start < check.patience;) {
    ::Sleep(kPollInterval);
    after = CurrentResourceUse();
  }
  EXPECT_LE(after.gdiObjects, bounds.gdiObjects) << "left behind: " << Growth(before.gdiKinds, after.gdiKinds);
  EXPECT_LE(after.userObjects, bounds.userObjects) << "left behind: " << Growth(before.userKinds, after.userKinds);
  EXPECT_LE(after.heapBytes, bounds.heapBytes);
}

ObjectCounts SystemOpenDialogLeaves() {
  constexpr int kOpenings = 8;
  OpenSystemDialog();
  const ObjectCounts before = CountUserObjects();
  for (int i = 0; i < kOpenings; ++i) OpenSystemDialog();
  ObjectCounts leaves;
  for (const auto& [kind, count] : CountUserObjects()) {
    const auto old = before.find(kind);
    const int each = (count - (old == before.end() ? 0 : old->second)) / kOpenings;
    if (each > 0) leaves[kind] = each;
  }
  return leaves;
}

}  // namespace zvtest
