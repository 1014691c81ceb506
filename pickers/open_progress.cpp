#include "pickers/open_progress.h"

#include "services/zvfile/zvfile.h"

namespace {

// The bits of the status function's answer that ask to stop: none of them is set in the small answers that mean "go on",
// some are in ERROR_USER_ABORT.
constexpr uint32_t kStopMask = 0xFFFFFF9C;
constexpr int32_t kAll = 100;

bool IsOdd(int32_t value) { return (value & 1) != 0; }

}  // namespace

OpenProgress::OpenProgress(OPENDLGSTATUSCALLBACK callback, void* userData, uint32_t dialogFlags, int32_t fileCount)
    : callback_(callback),
      userData_(userData),
      makesThumbnails_((dialogFlags & DLG_OPEN_MAKE_THUMBNAIL) != 0),
      fileCount_(fileCount) {}

void OpenProgress::BeginFile(OPENDLGFILEDATA* file, int32_t index) {
  file_ = file;
  index_ = index;
  rows_ = 0;
}

int32_t OpenProgress::AddRows(int32_t rows, int32_t height) {
  if (stopped_ || !file_) {
    return ERROR_USER_ABORT;
  }
  rows_ += rows;
  const int32_t percent = ::MulDiv(rows_, kAll, height);
  if (percent > kAll) {
    stopped_ = true;
    return ERROR_USER_ABORT;
  }
  if (percent != filePercent_) {
    Report(kLoad, percent);
  }
  return SUCCESS;
}

int32_t OpenProgress::ReportThumbnail(Phase phase, int32_t percent) {
  if (percent > kAll) {
    stopped_ = true;
  }
  if (stopped_ || !file_) {
    return ERROR_USER_ABORT;
  }
  if (percent != filePercent_) {
    Report(phase, percent);
  }
  return SUCCESS;
}

int32_t OpenProgress::Report(int32_t phase, int32_t value) {
  if (!callback_) {
    return SUCCESS;
  }
  switch (phase) {
    case kOverall: overallPercent_ = value; return CallBack(filePercent_);
    case kLoad:
      if (!makesThumbnails_) {
        return CallBack(value);
      }
      return IsOdd(value) ? SUCCESS : CallBack(value / 2);
    case kThumbnailOfBitmap:
    case kThumbnailOfFile: return value == 0 || IsOdd(value) ? SUCCESS : CallBack(value / 2 + kAll / 2);
    default: return 0;
  }
}

int32_t OpenProgress::CallBack(int32_t filePercent) {
  filePercent_ = filePercent;
  if (filePercent_ == 0) {
    return 0;
  }
  if (filePercent_ == kAll) {
    overallPercent_ = ::MulDiv(index_ + 1, kAll, fileCount_);
  }
  const int32_t answer = callback_(file_, overallPercent_, filePercent_, userData_);
  stopped_ = (static_cast<uint32_t>(answer) & kStopMask) != 0;
  return answer;
}

int32_t ZV_CALL OpenProgress::OnRows(FILEINFO* info, BITMAPHANDLE*, uint8_t*, uint32_t, int32_t, int32_t rowCount,
                                     void* userData) {
  return userData ? static_cast<OpenProgress*>(userData)->AddRows(rowCount, info->height) : ERROR_USER_ABORT;
}

int32_t ZV_CALL OpenProgress::OnThumbnailOfBitmap(int32_t percent, void* userData) {
  return static_cast<OpenProgress*>(userData)->ReportThumbnail(kThumbnailOfBitmap, percent);
}

int32_t ZV_CALL OpenProgress::OnThumbnailOfFile(int32_t percent, void* userData) {
  return static_cast<OpenProgress*>(userData)->ReportThumbnail(kThumbnailOfFile, percent);
}
