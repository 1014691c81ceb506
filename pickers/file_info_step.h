// What the open dialog reads of the chosen file before its file information dialog shows: the steps from the path to the record
// that goes to that dialog. Settings of the process are changed on the way; the open dialog puts them back when it ends.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "fileinfo/file_info_data.h"
#include "include/zvfiledlg_open.h"
#include "platform/win32.h"

struct FileInfoRequest {
  std::wstring path;
  std::wstring defaultExtension;  // tried when nothing stands at the path; may be empty
  int32_t page = 1;
  uint32_t dialogFlags = 0;  // DLG_OPEN_...
  FILEINFO held = {};        // of the last preview; its format decides what is asked for
  int32_t xDpi = 0;          // load resolution that was in force before the dialog
  int32_t yDpi = 0;
};

struct FileInfoReading {
  int32_t status = 0;    // of the reading
  bool refused = false;  // read, but not of a kind that the dialog accepts
  std::wstring path;     // with the extension by which the file was found
  FILEINFO info = {};
};

FileInfoReading ReadFileInfo(const FileInfoRequest& request);

// The dialogs that show what was read: of DICOM files, which have one of their own, and of all others. They answer IDOK. One
// that is missing shows nothing.
struct FileInfoDialogs {
  std::function<INT_PTR(FILEINFODLGDATA& data)> image;
  std::function<INT_PTR(FILEINFODLGDATA& data)> dicom;
};
// SUCCESS, or ERROR_FILE_MISSING for a dialog that ended in any other way.
int32_t ShowFileInfo(const FileInfoDialogs& dialogs, const FileInfoReading& reading, uint32_t dialogFlags);
