// Does something again and again and expects the process to hold afterwards what it held before: no GDI object, no USER object
// and no heap block more. What is made once and kept (caches, classes, shared icons) is made in a warm-up that is not counted.
// The system keeps some freed objects for later use, as many as were in use at a time, so that one object in ten steps is let
// pass: a step that leaves something behind leaves more.
#pragma once

#include <cstddef>
#include <functional>

#include "tests/support/object_counts.h"

namespace zvtest {

struct ResourceUse {
  int gdiObjects = 0;
  int userObjects = 0;
  size_t heapBytes = 0;  // busy bytes of all heaps of the process
  ObjectCounts gdiKinds;
  ObjectCounts userKinds;
};
ResourceUse CurrentResourceUse();

struct LeakCheck {
  int warmUp = 10;
  int times = 200;
  size_t heapSlack = 64 * 1024;  // bytes that the system's own caches may grow by
  // Milliseconds for threads that the steps started and that are still on their way out, with their windows.
  unsigned patience = 5'000;
  // USER objects that the system itself leaves behind at each step, kind by kind; see SystemOpenDialogLeaves.
  ObjectCounts systemLeaves;
};

// Fails the test, naming the kinds of object, when something stays. A test whose `step` fails ends there.
void ExpectNothingLeftBehind(const std::function<void()>& step, const LeakCheck& check = {});

// The USER objects that one opening of the system's plain dialog for files leaves behind; measured. Wine 8 leaves the
// accelerator table of its folder view, Windows nothing.
ObjectCounts SystemOpenDialogLeaves();

}  // namespace zvtest
