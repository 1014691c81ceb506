#include "preview/preview_producer.h"

#include "preview/format_sets.h"
#include "preview/path_kind.h"

namespace {

constexpr int32_t kLastPhotoCd = 83;

BITMAPHANDLE EmptyBitmap() {
  BITMAPHANDLE bitmap = {};
  bitmap.uStructSize = sizeof(bitmap);
  return bitmap;
}

// Asks for a size near the pane's where the format offers some. `info` is what the load gets.
void SuitPane(const std::wstring& path, SIZE pane, const LOADFILEOPTION& option, const FILEINFO& known,
              FILEINFO& info) {
  const int32_t format = known.format;
  if (format >= FMT_PCD && format <= kLastPhotoCd) {
    SetLoadSize(FMT_PCD, pane.cx, 0);
    info.flags = FILEINFO_LOAD_SIZE_GIVEN;
  } else if (format == FMT_ICO) {
    SetLoadSize(FMT_ICO, pane.cx, 0);
    info.flags = FILEINFO_LOAD_SIZE_GIVEN;
  } else if (format == FMT_J2K || format == FMT_JP2 || format == FMT_JPM) {
    SetLoadSize(format, pane.cx, pane.cy);
  } else if (IsLoadedAtResolution(format)) {
    int32_t xDpi = 0, yDpi = 0;
    GetLoadDpi(&xDpi, &yDpi);
    SetLoadDpi(0, 0);
    GetFileInfo(path.c_str(), &info, sizeof(info), 0, &option);
    if (known.width != 0) {
      SetLoadDpi(xDpi, yDpi);
      info.flags = FILEINFO_LOAD_SIZE_GIVEN;
    }
  }
}

}  // namespace

int32_t PreviewProducer::Produce(std::wstring& path, const std::wstring& defaultExtension, int32_t page, SIZE pane) {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = page;
  const int32_t status = ReadInfo(path, defaultExtension, option);
  if (status != SUCCESS) {
    AskCaller(path, page);
    Fail();
    return status;
  }
  if (rules.vectorOnly && !IsVectorFormat(info_.format)) {
    return 0;
  }
  if (!rules.useStamp) {
    return status;
  }
  // Before anything is loaded, so that two large pictures never stand in memory at once.
  sink_.ShowPreviewBitmap(nullptr);
  option.flags |= LOADFILE_DEFERRED;
  if (!ShowStamp(path, option) && rules.useFullImage) {
    ShowFullImage(path, option, pane);
  }
  return status;
}

int32_t PreviewProducer::ReadInfo(std::wstring& path, const std::wstring& defaultExtension,
                                  const LOADFILEOPTION& option) {
  if (IsFolder(path)) {
    return ERROR_FILE_MISSING;
  }
  if (!IsFile(path)) {
    if (defaultExtension.empty()) {
      return ERROR_FILE_MISSING;
    }
    path += L"." + defaultExtension;
    if (!IsFile(path)) {
      return ERROR_FILE_MISSING;
    }
  }
  info_.uStructSize = sizeof(info_);
  return GetFileInfo(path.c_str(), &info_, sizeof(info_), 0, &option);
}

// The answer is looked at, but the failure stands all the same: the picture goes away again with it.
void PreviewProducer::AskCaller(const std::wstring& path, int32_t page) {
  if (!rules.callback) {
    return;
  }
  OPENDLGPREVIEWREQUEST request = {};
  request.uStructSize = sizeof(request);
  ::lstrcpynW(request.fileName, path.c_str(), ZVDLG_PATH_LENGTH);
  request.pageNumber = page;
  rules.callback(&request, rules.callbackUserData);
  if (request.bitmap && (request.bitmap->flags & BITMAP_FLAG_ALLOCATED)) {
    BITMAPHANDLE picture = EmptyBitmap();
    CopyBitmapHandle(&picture, request.bitmap, sizeof(picture));
    sink_.ShowPreviewBitmap(&picture);
  }
}

void PreviewProducer::Fail() {
  sink_.OnPreviewFailed();
  lastPath_.clear();
  sink_.ShowPreviewBitmap(nullptr);
}

bool PreviewProducer::ShowStamp(const std::wstring& path, const LOADFILEOPTION& option) {
  BITMAPHANDLE stamp = EmptyBitmap();
  if (ReadFileStamp(path.c_str(), &stamp, sizeof(stamp), &option) != SUCCESS) {
    return false;
  }
  isStamp_ = true;
  sink_.ShowPreviewBitmap(&stamp);
  return true;
}

void PreviewProducer::ShowFullImage(const std::wstring& path, const LOADFILEOPTION& option, SIZE pane) {
  FILEINFO info = info_;
  SuitPane(path, pane, option, info_, info);
  info.flags = (info.flags & ~FILEINFO_INTERLACED) | FILEINFO_LOAD_SIZE_GIVEN;
  BITMAPHANDLE image = EmptyBitmap();
  const int32_t loaded = LoadImageFile(path.c_str(), &image, sizeof(image), 0, ORDER_BGR_OR_GRAY,
                                       LOADFILE_ALLOCATE | LOADFILE_STORE, nullptr, nullptr, &option, &info);
  SetLoadSize(info.format, 0, 0);
  if (loaded == SUCCESS) {
    lastPath_ = path;
    isStamp_ = false;
    sink_.ShowPreviewBitmap(&image);
  } else {
    // The pane is empty now: also the file before is to be looked at again when it is chosen next.
    lastPath_.clear();
  }
}
