#include "pickers/opened_files.h"

#include <algorithm>

#include "pickers/file_loader.h"
#include "pickers/format_options.h"
#include "services/zvfile/zvfile.h"

namespace {

constexpr uint32_t kOptionsSettled = 16;
constexpr uint32_t kCountPages = 1;

int32_t ReadInfo(const OPENDLGFILEDATA& entry, uint32_t dialogFlags) {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = entry.pageNumber;
  const uint32_t flags = dialogFlags & DLG_OPEN_FULL_FILE_INFO ? kCountPages : 0;
  return GetFileInfo(entry.fileName, entry.fileInfo, sizeof(FILEINFO), flags, &option);
}

void StartEntry(OPENDLGFILEDATA& entry, const OPENDLGFILEDATA& listed, int32_t page) {
  entry.uStructSize = sizeof(entry);
  entry.loadCompressed = listed.loadCompressed;
  entry.loadRotated = listed.loadRotated;
  entry.passes = listed.passes;
  entry.pageNumber = page;
  ::lstrcpynW(entry.fileName, listed.fileName, ZVDLG_PATH_LENGTH);
  entry.fileInfo = listed.fileInfo;
  entry.formatOptions = listed.formatOptions;
}

BITMAPHANDLE* NewBitmapHandle() {
  auto* const bitmap = static_cast<BITMAPHANDLE*>(::GlobalAlloc(GPTR, sizeof(BITMAPHANDLE)));
  if (bitmap) {
    bitmap->uStructSize = sizeof(*bitmap);
  }
  return bitmap;
}

bool MakeBitmapHandles(OPENDLGFILEDATA& entry, uint32_t dialogFlags) {
  if (dialogFlags & DLG_OPEN_LOAD_BITMAP) {
    entry.bitmap = NewBitmapHandle();
    if (!entry.bitmap) {
      return false;
    }
  }
  if (dialogFlags & DLG_OPEN_MAKE_THUMBNAIL) {
    entry.thumbnail = NewBitmapHandle();
    return entry.thumbnail != nullptr;
  }
  return true;
}

void FreeBitmapHandle(BITMAPHANDLE* bitmap) {
  if (bitmap) {
    FreeBitmap(bitmap);
    ::GlobalFree(bitmap);
  }
}

int32_t PageOf(const std::vector<OPENDLGFILEDATA>& list, size_t index, const OpenRequest& request) {
  const int32_t page = list.size() == 1 && request.singlePage != 0 ? request.singlePage : list[index].pageNumber;
  return page == 0 ? 1 : page;
}

}  // namespace

std::vector<OPENDLGFILEDATA> MakeFileList(const std::vector<std::wstring>& paths, uint32_t dialogFlags) {
  std::vector<OPENDLGFILEDATA> list(paths.size(), OPENDLGFILEDATA{});
  for (size_t i = 0; i < paths.size(); ++i) {
    list[i].uStructSize = sizeof(OPENDLGFILEDATA);
    ::lstrcpynW(list[i].fileName, paths[i].c_str(), ZVDLG_PATH_LENGTH);
    list[i].loadCompressed = (dialogFlags & DLG_OPEN_LOAD_COMPRESSED) != 0;
    list[i].loadRotated = (dialogFlags & DLG_OPEN_LOAD_ROTATED) != 0;
  }
  return list;
}

int32_t OpenedFiles::Read(const std::vector<OPENDLGFILEDATA>& list, const OpenRequest& request) {
  FreeAll();
  files_ = static_cast<OPENDLGFILEDATA*>(::GlobalAlloc(GPTR, list.size() * sizeof(OPENDLGFILEDATA)));
  if (!files_) {
    for (const OPENDLGFILEDATA& listed : list) {
      ::GlobalFree(listed.fileInfo);
      ::GlobalFree(listed.formatOptions);
    }
    return ERROR_OUT_OF_MEMORY;
  }
  count_ = static_cast<int32_t>(list.size());
  for (size_t i = 0; i < list.size(); ++i) {
    StartEntry(files_[i], list[i], PageOf(list, i, request));
  }
  const int32_t status = ReadAll(list, request);
  if (status != SUCCESS) {
    FreeAll();
  }
  return status;
}

int32_t OpenedFiles::ReadAll(const std::vector<OPENDLGFILEDATA>& list, const OpenRequest& request) {
  OpenProgress progress(request.statusCallback, request.statusUserData, request.dialogFlags, count_);
  std::vector<int32_t> results;
  for (int32_t i = 0; i < count_; ++i) {
    OPENDLGFILEDATA& entry = files_[i];
    const int32_t described = Describe(entry, list[static_cast<size_t>(i)], request.dialogFlags);
    if (described != SUCCESS) {
      return described;
    }
    progress.BeginFile(&entry, i);
    const LoadOutcome outcome = LoadOpenedFile(entry, progress);
    results.push_back(outcome.result);
    if (outcome.loaded && progress.IsStopped()) {
      return ERROR_USER_ABORT;
    }
  }
  const bool anySucceeded = std::ranges::find(results, SUCCESS) != results.end();
  const bool tolerant = (request.dialogFlags & DLG_OPEN_TOLERATE_FAILED_FILES) != 0;
  return tolerant || anySucceeded || results.empty() ? SUCCESS : results.front();
}

int32_t OpenedFiles::Describe(OPENDLGFILEDATA& entry, const OPENDLGFILEDATA& listed, uint32_t dialogFlags) {
  bool known = listed.fileInfo != nullptr;
  if (!known) {
    entry.fileInfo = static_cast<FILEINFO*>(::GlobalAlloc(GPTR, sizeof(FILEINFO)));
    if (!entry.fileInfo) {
      return ERROR_OUT_OF_MEMORY;
    }
    entry.fileInfo->uStructSize = sizeof(FILEINFO);
    const int32_t status = ReadInfo(entry, dialogFlags);
    known = status == SUCCESS;
    if (!known && !(dialogFlags & DLG_OPEN_TOLERATE_FAILED_FILES)) {
      return status;
    }
  }
  if (known) {
    entry.optionFlags = kOptionsSettled;
    entry.format = entry.fileInfo->format;
    void* options = entry.formatOptions;
    if (!options && !MakeFormatOptions(entry.format, &options)) {
      return ERROR_OUT_OF_MEMORY;
    }
    entry.formatOptions = options;
  }
  return MakeBitmapHandles(entry, dialogFlags) ? SUCCESS : ERROR_OUT_OF_MEMORY;
}

void OpenedFiles::HandOver(OPENFILEDLGPARAMS& params) {
  params.files = files_;
  params.fileCount = count_;
  files_ = nullptr;
  count_ = 0;
}

void OpenedFiles::FreeAll() {
  for (int32_t i = 0; i < count_; ++i) {
    ::GlobalFree(files_[i].fileInfo);
    ::GlobalFree(files_[i].formatOptions);
    FreeBitmapHandle(files_[i].bitmap);
    FreeBitmapHandle(files_[i].thumbnail);
  }
  ::GlobalFree(files_);
  files_ = nullptr;
  count_ = 0;
}
