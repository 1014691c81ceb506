// Owners of the converted texts that the 8-bit adapters need for the length of a call, and the conversions themselves. The
// blocks come from the core module and are tagged with the place that asked for them.
#pragma once

#include <cstring>
#include <memory>
#include <source_location>

#include "services/zvcore/zvcore.h"

// A zeroed block of the core module that outlives the step that made it, so it is also registered.
struct CoreBlockDeleter {
  std::source_location place;
  void operator()(void* block) const {
    TrackFree(1, block, static_cast<int32_t>(place.line()), place.file_name());
    CoreFree(block, static_cast<int32_t>(place.line()), place.file_name());
  }
};

template <class Element>
using CoreBlock = std::unique_ptr<Element[], CoreBlockDeleter>;

// Null when memory runs out.
template <class Element>
CoreBlock<Element> NewCoreBlock(size_t count, std::source_location place = std::source_location::current()) {
  const auto line = static_cast<int32_t>(place.line());
  auto* const block = static_cast<Element*>(CoreAlloc(count, sizeof(Element), line, place.file_name()));
  if (block) {
    TrackAllocation(1, block, line, place.file_name());
  }
  return CoreBlock<Element>(block, CoreBlockDeleter{place});
}

struct WideDupDeleter {
  void operator()(void* text) const { FreeWideDup(text); }
};
using WideDup = std::unique_ptr<wchar_t, WideDupDeleter>;

// Null for null.
inline WideDup ToWide(const char* text) { return WideDup(AnsiToWideDup(text)); }

// Between text fields of equal room. SUCCESS when all of the text went over; what is too long goes over in part.
template <size_t count>
int32_t ConvertField(const char (&source)[count], wchar_t (&destination)[count]) {
  return Z_A2W::Convert(source, destination, static_cast<int32_t>(count));
}
template <size_t count>
int32_t ConvertField(const wchar_t (&source)[count], char (&destination)[count]) {
  return Z_W2A::Convert(source, destination, static_cast<int32_t>(count));
}

// Bytes of a list of strings that ends with an empty one, without the final zero byte. A list without strings has none.
size_t ListLength(const char* list);
// The wide form of `bytes` bytes, zero bytes included, with two terminators behind it. Null when memory runs out.
CoreBlock<wchar_t> ConvertBlock(const char* text, size_t bytes);
// Moves the caller's own pointer to the last string of its list, where callers of these exports have always found it.
void MoveToLastString(const char** list);
