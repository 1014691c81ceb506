// What a row of the file list shows of a path: any of folder, name and extension, by display flags. Pure text work.
#pragma once

#include <cstdint>

#include "platform/cstring.h"

enum FileRowDisplay : uint32_t {
  SHOW_FOLDER = 1,
  SHOW_NAME = 2,       // file name without its extension
  SHOW_EXTENSION = 4,  // with its dot
  REFUSE_DUPLICATES = 8,
};

inline constexpr uint32_t kShowFullPath = SHOW_FOLDER | SHOW_NAME | SHOW_EXTENSION | REFUSE_DUPLICATES;
inline constexpr uint32_t kShowFileName = SHOW_NAME | SHOW_EXTENSION | REFUSE_DUPLICATES;

CString FileRowText(const CString& path, uint32_t displayFlags);
