// OpenProgress turns what the file and bitmap libraries report while files are opened into calls of the status function that
// the caller of the open dialog gave, and remembers whether that function asked to stop. Loading an image is the first half of
// a file when a thumbnail is wanted as well, else all of it. Percentages that would repeat or that fall between two steps are
// dropped.
#pragma once

#include <cstdint>

#include "include/zvfiledlg_open.h"

class OpenProgress {
 public:
  enum Phase { kOverall, kLoad, kThumbnailOfBitmap, kThumbnailOfFile };

  // dialogFlags are DLG_OPEN_...; the callback may be null.
  OpenProgress(OPENDLGSTATUSCALLBACK callback, void* userData, uint32_t dialogFlags, int32_t fileCount);
  OpenProgress(const OpenProgress&) = delete;
  OpenProgress& operator=(const OpenProgress&) = delete;

  bool HasCallback() const { return callback_ != nullptr; }
  // Set for good once the status function asked for it, or a count ran past its end.
  bool IsStopped() const { return stopped_; }

  // The file that the next reports are about; index counts from 0.
  void BeginFile(OPENDLGFILEDATA* file, int32_t index);
  // Counts rows of the current file, of which the picture that comes in has `height`; 1, or ERROR_USER_ABORT to stop the load.
  int32_t AddRows(int32_t rows, int32_t height);
  void ClearRows() { rows_ = 0; }
  // A percentage of the thumbnail's phase; 1, or ERROR_USER_ABORT to stop it.
  int32_t ReportThumbnail(Phase phase, int32_t percent);
  // Gives what the status function answered; 1 for a value that is dropped, 0 for one that is not reported.
  int32_t Report(int32_t phase, int32_t value);

  // Callbacks of the file library and of the status channel; userData is the object.
  static int32_t ZV_CALL OnRows(FILEINFO* info, BITMAPHANDLE* bitmap, uint8_t* buffer, uint32_t flags, int32_t firstRow,
                                int32_t rowCount, void* userData);
  static int32_t ZV_CALL OnThumbnailOfBitmap(int32_t percent, void* userData);
  static int32_t ZV_CALL OnThumbnailOfFile(int32_t percent, void* userData);

 private:
  int32_t CallBack(int32_t filePercent);

  OPENDLGSTATUSCALLBACK callback_;
  void* userData_;
  bool makesThumbnails_;
  int32_t fileCount_;
  OPENDLGFILEDATA* file_ = nullptr;
  int32_t index_ = 0;
  int32_t rows_ = 0;
  int32_t overallPercent_ = 0;
  int32_t filePercent_ = 0;
  bool stopped_ = false;
};
