// Small pictures for tests, written through zvfile.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "services/zvfile/zvfile.h"

namespace zvtest {

struct PictureKind {
  int width = 40;
  int height = 20;
  int format = FMT_BMP;
  int pages = 1;  // each page is a pixel wider than the one before
  int bits = 24;  // of the file
};

// Left half red, right half blue. False when something could not be written.
inline bool WritePicture(const std::wstring& path, const PictureKind& kind = {}) {
  uint32_t memory = 0;
  GetDefaultBitmapMemoryFlags(&memory);
  for (int page = 1; page <= kind.pages; ++page) {
    BITMAPHANDLE bitmap = {};
    if (InitBitmapHandle(&bitmap, sizeof bitmap, kind.width + page - 1, kind.height, 24) != SUCCESS ||
        AllocateBitmap(&bitmap, memory) != SUCCESS) {
      return false;
    }
    std::vector<uint8_t> row(static_cast<size_t>(bitmap.bytesPerLine));
    for (int x = 0; x < bitmap.width; ++x) {
      row[static_cast<size_t>(3 * x + (x < kind.width / 2 ? 2 : 0))] = 255;
    }
    for (int y = 0; y < kind.height; ++y) {
      PutBitmapRow(&bitmap, row.data(), y, bitmap.bytesPerLine);
    }
    SAVEFILEOPTION option = {};
    GetDefaultSaveFileOption(&option, sizeof option);
    option.pageNumber = page;
    const int32_t saved = SaveBitmapToFile(path.c_str(), &bitmap, kind.format, kind.bits, 2, &option);
    FreeBitmap(&bitmap);
    if (saved != SUCCESS) {
      return false;
    }
  }
  return true;
}

}  // namespace zvtest
