// The record that the file information dialogs show. Its caller has read the file and owns the record and the path.
#pragma once

#include <cstddef>

#include "services/zvfile/option_records.h"

#pragma pack(push, 1)

typedef struct tagFILEINFODLGDATA {
  uint32_t uStructSize; /*  0: 2240 */
  uint32_t reserved4;
  const wchar_t* strFileName; /*  8: the file's path */
  uint32_t reserved16;
  uint32_t bMultiPage;   /* 20: non-zero shows the page count */
  uint32_t bContextHelp; /* 24: non-zero gives the title bar a help button */
  FILEINFO fileInfo;     /* 28 */
} FILEINFODLGDATA;
static_assert(sizeof(FILEINFODLGDATA) == 2240, "wire format");
static_assert(offsetof(FILEINFODLGDATA, strFileName) == 8, "wire format");
static_assert(offsetof(FILEINFODLGDATA, bMultiPage) == 20, "wire format");
static_assert(offsetof(FILEINFODLGDATA, bContextHelp) == 24, "wire format");
static_assert(offsetof(FILEINFODLGDATA, fileInfo) == 28, "wire format");

#pragma pack(pop)
