// OpenedFiles makes the array of OPENDLGFILEDATA that the open dialog hands to its caller: for each chosen path what the file
// says of itself and the load settings of its class. Everything is in global memory; what has not been handed over is freed
// with the object.
#pragma once

#include <string>
#include <vector>

#include "include/zvfiledlg_open.h"

class OpenedFiles {
 public:
  OpenedFiles() = default;
  OpenedFiles(const OpenedFiles&) = delete;
  OpenedFiles& operator=(const OpenedFiles&) = delete;
  ~OpenedFiles() { FreeAll(); }

  // Reads all files; dialogFlags are DLG_OPEN_.... The code of the first file that cannot be read ends the work, unless
  // DLG_OPEN_TOLERATE_FAILED_FILES is set: then its entry stays, without format and load settings. SUCCESS or that code,
  // ERROR_OUT_OF_MEMORY.
  int32_t Read(const std::vector<std::wstring>& paths, uint32_t dialogFlags);
  // Passes array and count to the record; the caller of the dialog frees them.
  void HandOver(OPENFILEDLGPARAMS& params);

 private:
  int32_t ReadEntry(const std::wstring& path, uint32_t dialogFlags, OPENDLGFILEDATA& entry);
  void FreeAll();

  OPENDLGFILEDATA* files_ = nullptr;
  int32_t count_ = 0;
};
