#include "pickers/opened_files.h"

#include "pickers/format_options.h"
#include "services/zvfile/zvfile.h"

namespace {

constexpr uint32_t kOptionsSettled = 16;
constexpr uint32_t kCountPages = 1;

int32_t ReadInfo(const std::wstring& path, int32_t page, uint32_t dialogFlags, FILEINFO& info) {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = page;
  const uint32_t flags = dialogFlags & DLG_OPEN_FULL_FILE_INFO ? kCountPages : 0;
  return GetFileInfo(path.c_str(), &info, sizeof(info), flags, &option);
}

}  // namespace

int32_t OpenedFiles::Read(const std::vector<std::wstring>& paths, uint32_t dialogFlags) {
  FreeAll();
  files_ = static_cast<OPENDLGFILEDATA*>(::GlobalAlloc(GPTR, paths.size() * sizeof(OPENDLGFILEDATA)));
  if (!files_) {
    return ERROR_OUT_OF_MEMORY;
  }
  count_ = static_cast<int32_t>(paths.size());
  for (int32_t i = 0; i < count_; ++i) {
    const int32_t status = ReadEntry(paths[static_cast<size_t>(i)], dialogFlags, files_[i]);
    if (status != SUCCESS) {
      FreeAll();
      return status;
    }
  }
  return SUCCESS;
}

int32_t OpenedFiles::ReadEntry(const std::wstring& path, uint32_t dialogFlags, OPENDLGFILEDATA& entry) {
  entry.uStructSize = sizeof(entry);
  entry.loadCompressed = (dialogFlags & DLG_OPEN_LOAD_COMPRESSED) != 0;
  entry.loadRotated = (dialogFlags & DLG_OPEN_LOAD_ROTATED) != 0;
  entry.pageNumber = 1;
  ::lstrcpynW(entry.fileName, path.c_str(), ZVDLG_PATH_LENGTH);

  entry.fileInfo = static_cast<FILEINFO*>(::GlobalAlloc(GPTR, sizeof(FILEINFO)));
  if (!entry.fileInfo) {
    return ERROR_OUT_OF_MEMORY;
  }
  entry.fileInfo->uStructSize = sizeof(FILEINFO);
  const int32_t status = ReadInfo(path, entry.pageNumber, dialogFlags, *entry.fileInfo);
  if (status != SUCCESS) {
    return dialogFlags & DLG_OPEN_TOLERATE_FAILED_FILES ? SUCCESS : status;
  }
  entry.optionFlags = kOptionsSettled;
  entry.format = entry.fileInfo->format;
  void* options = nullptr;
  const bool made = MakeFormatOptions(entry.format, &options);
  entry.formatOptions = options;
  return made ? SUCCESS : ERROR_OUT_OF_MEMORY;
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
  }
  ::GlobalFree(files_);
  files_ = nullptr;
  count_ = 0;
}
