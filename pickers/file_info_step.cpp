#include "pickers/file_info_step.h"

#include "preview/format_sets.h"
#include "preview/path_kind.h"
#include "services/zvfile/zvfile.h"

namespace {

constexpr uint32_t kCountPages = 1;

LOADFILEOPTION OptionOf(const FileInfoRequest& request) {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = request.page;
  return option;
}

int32_t Ask(FileInfoReading& reading, uint32_t flags, const LOADFILEOPTION& option) {
  return GetFileInfo(reading.path.c_str(), &reading.info, sizeof(reading.info), flags, &option);
}

int32_t ReadFirst(const FileInfoRequest& request, FileInfoReading& reading) {
  if (IsFolder(reading.path)) {
    return ERROR_FILE_MISSING;
  }
  SetLoadDpi(request.xDpi, request.yDpi);
  if (!IsFile(reading.path)) {
    if (request.defaultExtension.empty()) {
      return ERROR_FILE_MISSING;
    }
    reading.path += L"." + request.defaultExtension;
    if (!IsFile(reading.path)) {
      return ERROR_FILE_MISSING;
    }
  }
  const bool full = (request.dialogFlags & DLG_OPEN_FULL_FILE_INFO) && !IsCostlyToCountPages(request.held.format);
  return Ask(reading, full ? kCountPages : 0, OptionOf(request));
}

// Formats without a size of their own are asked again at the size that the preview has found.
void ReadAtHeldSize(const FileInfoRequest& request, FileInfoReading& reading) {
  const FILEINFO& held = request.held;
  if (IsLoadedAtResolution(held.format) && held.xResolution > 0 && held.yResolution > 0) {
    SetLoadDpi(held.xResolution, held.yResolution);
    Ask(reading, 0, OptionOf(request));
  }
  if (held.format == FMT_JP2) {
    const int32_t width = reading.info.width;
    const int32_t height = reading.info.height;
    SetLoadSize(FMT_JP2, 0, 0);
    Ask(reading, 0, OptionOf(request));
    SetLoadSize(FMT_JP2, width, height);
  }
}

}  // namespace

FileInfoReading ReadFileInfo(const FileInfoRequest& request) {
  FileInfoReading reading;
  reading.path = request.path;
  reading.info.uStructSize = sizeof(reading.info);
  reading.status = ReadFirst(request, reading);
  if (reading.status != SUCCESS) {
    return reading;
  }
  reading.refused = (request.dialogFlags & DLG_OPEN_VECTOR_ONLY) && !IsVectorFormat(request.held.format);
  if (!reading.refused) {
    ReadAtHeldSize(request, reading);
  }
  return reading;
}

int32_t ShowFileInfo(const FileInfoDialogs& dialogs, const FileInfoReading& reading, uint32_t dialogFlags) {
  FILEINFODLGDATA data = {};
  data.uStructSize = sizeof(data);
  data.strFileName = reading.path.c_str();
  data.bMultiPage = dialogFlags & DLG_OPEN_FULL_FILE_INFO;
  data.bContextHelp = dialogFlags & DLG_OPEN_CONTEXT_HELP;
  data.fileInfo = reading.info;
  const int32_t format = reading.info.format;
  const bool isDicom = format == FMT_DICOM_GRAY || format == FMT_DICOM_COLOR;
  const auto& show = isDicom ? dialogs.dicom : dialogs.image;
  return !show || show(data) == IDOK ? SUCCESS : ERROR_FILE_MISSING;
}
