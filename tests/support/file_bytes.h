// What stands in a file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace zvtest {

using FileBytes = std::vector<uint8_t>;

// Nothing when it cannot be opened.
inline FileBytes ReadWholeFile(const std::wstring& path) {
  FileBytes bytes;
  if (FILE* file = _wfopen(path.c_str(), L"rb")) {
    uint8_t buffer[65536];
    for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, file)) > 0;) {
      bytes.insert(bytes.end(), buffer, buffer + got);
    }
    std::fclose(file);
  }
  return bytes;
}

}  // namespace zvtest
