// Looking into the bytes of a file, and putting some together.
#pragma once

#include <algorithm>
#include <string_view>

#include "tests/support/file_bytes.h"

namespace zvtest {

// The size of the bytes when `what` is not in them.
inline size_t Find(const FileBytes& bytes, std::string_view what, size_t from = 0) {
  const auto found = std::search(bytes.begin() + static_cast<ptrdiff_t>(from), bytes.end(), what.begin(), what.end(),
                                 [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); });
  return static_cast<size_t>(found - bytes.begin());
}

inline int Count(const FileBytes& bytes, std::string_view what) {
  int count = 0;
  for (size_t at = Find(bytes, what); at < bytes.size(); at = Find(bytes, what, at + 1)) ++count;
  return count;
}

inline FileBytes Tail(const FileBytes& bytes, size_t from) {
  return {bytes.begin() + static_cast<ptrdiff_t>(from), bytes.end()};
}

inline void Append(FileBytes& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }

// The big end first.
inline void AppendNumber(FileBytes& bytes, uint32_t value, int count) {
  for (int i = count - 1; i >= 0; --i) bytes.push_back(static_cast<uint8_t>(value >> 8 * i));
}

}  // namespace zvtest
