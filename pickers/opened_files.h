// OpenedFiles makes the array of OPENDLGFILEDATA that the open dialog hands to its caller: for each chosen file what it says
// of itself, the load settings of its class and, on request, its bitmap and its thumbnail. Everything is in global memory;
// what has not been handed over is freed with the object.
#pragma once

#include <string>
#include <vector>

#include "include/zvfiledlg_open.h"
#include "pickers/open_progress.h"

struct OpenRequest {
  uint32_t dialogFlags = 0;  // DLG_OPEN_...
  int32_t singlePage = 0;    // page of a selection of one file; 0: the page of its list entry
  OPENDLGSTATUSCALLBACK statusCallback = nullptr;
  void* statusUserData = nullptr;
};

// The list of a selection: one entry a path, with nothing but what dialogFlags say of it.
std::vector<OPENDLGFILEDATA> MakeFileList(const std::vector<std::wstring>& paths, uint32_t dialogFlags);

class OpenedFiles {
 public:
  OpenedFiles() = default;
  OpenedFiles(const OpenedFiles&) = delete;
  OpenedFiles& operator=(const OpenedFiles&) = delete;
  ~OpenedFiles() { FreeAll(); }

  // Reads all files of the list. Blocks that a list entry already holds (fileInfo, formatOptions) are taken over. A file whose
  // header cannot be read ends the work, unless DLG_OPEN_TOLERATE_FAILED_FILES is set: then its entry stays, without format
  // and load settings. A file whose image cannot be loaded stays as well, but when none can be loaded, the code of the first
  // is the result. ERROR_USER_ABORT when the status function stopped it, ERROR_OUT_OF_MEMORY. On failure nothing is held.
  int32_t Read(const std::vector<OPENDLGFILEDATA>& list, const OpenRequest& request);
  // Passes array and count to the record; the caller of the dialog frees them.
  void HandOver(OPENFILEDLGPARAMS& params);

 private:
  int32_t ReadAll(const std::vector<OPENDLGFILEDATA>& list, const OpenRequest& request);
  int32_t Describe(OPENDLGFILEDATA& entry, const OPENDLGFILEDATA& listed, uint32_t dialogFlags);
  void FreeAll();

  OPENDLGFILEDATA* files_ = nullptr;
  int32_t count_ = 0;
};
