// The record that the open dialog and the load options frame share for the length of one run: the chosen files, each with what
// is known of it and the settings it is to be loaded with, and which pages of settings may be offered. The open dialog owns
// it. Blocks that the frame puts into entries (fileInfo, formatOptions) are of GlobalAlloc and go with their entry.
#pragma once

#include <cstddef>
#include <cstdint>

#include "include/zvfiledlg_open.h"
#include "platform/array.h"

// pageFlags: what the frame may offer.
inline constexpr uint32_t LOADPAGE_PROGRESSIVE = 0x001;
inline constexpr uint32_t LOADPAGE_PAGENUMBER = 0x002;
inline constexpr uint32_t LOADPAGE_ROTATED = 0x004;
inline constexpr uint32_t LOADPAGE_COMPRESSED = 0x008;
inline constexpr uint32_t LOADPAGE_RASTER = 0x010;
inline constexpr uint32_t LOADPAGE_PDF = 0x020;
inline constexpr uint32_t LOADPAGE_VECTOR = 0x040;
inline constexpr uint32_t LOADPAGE_XPS = 0x080;
inline constexpr uint32_t LOADPAGE_XLS = 0x100;
inline constexpr uint32_t LOADPAGE_RASTERIZEDOC = 0x200;

struct FILELOADOPTIONSDLGDATA {
  uint32_t uStructSize = 80;                       //  0
  uint32_t reserved4 = 0;                          //  4
  CArray<OPENDLGFILEDATA, OPENDLGFILEDATA> files;  //  8: an entry for each chosen file
  uint8_t reserved40[8] = {};  // 40: an array takes 40 bytes of the record, whatever its class needs
  int32_t defaultPage = 1;     // 48: from the open dialog's page edit
  int32_t defaultXDpi = 0;     // 52: load resolution in force before the dialog
  int32_t defaultYDpi = 0;     // 56
  uint32_t pageHelp = 0;       // 60: non-zero: the pages report their help requests
  void* reserved64 = nullptr;  // 64
  uint32_t pageFlags = 0;      // 72: LOADPAGE_...
  uint32_t reserved76 = 0;     // 76
};

// With its array the record is no plain one, but its offsets are as fixed as those of the others.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(FILELOADOPTIONSDLGDATA) == 80, "wire format");
static_assert(offsetof(FILELOADOPTIONSDLGDATA, files) == 8, "wire format");
static_assert(offsetof(FILELOADOPTIONSDLGDATA, defaultPage) == 48, "wire format");
static_assert(offsetof(FILELOADOPTIONSDLGDATA, defaultXDpi) == 52, "wire format");
static_assert(offsetof(FILELOADOPTIONSDLGDATA, defaultYDpi) == 56, "wire format");
static_assert(offsetof(FILELOADOPTIONSDLGDATA, pageHelp) == 60, "wire format");
static_assert(offsetof(FILELOADOPTIONSDLGDATA, reserved64) == 64, "wire format");
static_assert(offsetof(FILELOADOPTIONSDLGDATA, pageFlags) == 72, "wire format");
#pragma GCC diagnostic pop
