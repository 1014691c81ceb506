#include "tests/support/leak_check.h"

#include <windows.h>

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

bool Grew(const ResourceUse& before, const ResourceUse& after, const LeakCheck& check) {
  return after.gdiObjects > before.gdiObjects || after.userObjects > before.userObjects ||
         after.heapBytes > before.heapBytes + check.heapSlack;
}

}  // namespace

ResourceUse CurrentResourceUse() {
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
  ResourceUse after = CurrentResourceUse();
  for (const DWORD start = ::GetTickCount(); Grew(before, after, check) && ::GetTickCount() - start < check.patience;) {
    ::Sleep(kPollInterval);
    after = CurrentResourceUse();
  }
  EXPECT_LE(after.gdiObjects, before.gdiObjects) << "left behind: " << Growth(before.gdiKinds, after.gdiKinds);
  EXPECT_LE(after.userObjects, before.userObjects) << "left behind: " << Growth(before.userKinds, after.userKinds);
  EXPECT_LE(after.heapBytes, before.heapBytes + check.heapSlack);
}

}  // namespace zvtest
