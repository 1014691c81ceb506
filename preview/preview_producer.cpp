#include "preview/preview_producer.h"

#include "preview/format_sets.h"

namespace {

constexpr int32_t kLastPhotoCd = 83;

bool IsFile(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void Empty(BITMAPHANDLE& bitmap) {
  FreeBitmap(&bitmap);
  bitmap = {};
  bitmap.uStructSize = sizeof(bitmap);
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

PreviewProducer::PreviewProducer(PreviewSink& sink) : sink_(sink) {
  Empty(stamp_);
  Empty(full_);
}

PreviewProducer::~PreviewProducer() {
  FreeBitmap(&stamp_);
  FreeBitmap(&full_);
}

void PreviewProducer::DropStamp() { Empty(stamp_); }

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
  if (stamp_.flags & BITMAP_FLAG_ALLOCATED) {
    Empty(stamp_);
    sink_.ShowPreviewBitmap(nullptr);
  }
  const bool hasStamp = LoadStamp(path, option);
  if (!hasStamp && rules.useFullImage) {
    LoadFullImage(path, option, pane);
  }
  sink_.ShowPreviewBitmap(isStamp_ ? &stamp_ : &full_);
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
    Empty(full_);
    CopyBitmapHandle(&full_, request.bitmap, sizeof(full_));
    sink_.ShowPreviewBitmap(&full_);
  }
}

void PreviewProducer::Fail() {
  sink_.OnPreviewFailed();
  Empty(stamp_);
  Empty(full_);
  lastPath_.clear();
  sink_.ShowPreviewBitmap(nullptr);
}

bool PreviewProducer::LoadStamp(const std::wstring& path, LOADFILEOPTION& option) {
  option.flags |= LOADFILE_DEFERRED;
  if (ReadFileStamp(path.c_str(), &stamp_, sizeof(stamp_), &option) != SUCCESS) {
    return false;
  }
  isStamp_ = true;
  return true;
}

void PreviewProducer::LoadFullImage(const std::wstring& path, LOADFILEOPTION& option, SIZE pane) {
  Empty(full_);
  FILEINFO info = info_;
  SuitPane(path, pane, option, info_, info);
  const uint32_t flags = info.flags;
  info.flags = (flags & ~FILEINFO_INTERLACED) | FILEINFO_LOAD_SIZE_GIVEN;
  const int32_t loaded = LoadImageFile(path.c_str(), &full_, sizeof(full_), 0, ORDER_BGR_OR_GRAY,
                                       LOADFILE_ALLOCATE | LOADFILE_STORE, nullptr, nullptr, &option, &info);
  SetLoadSize(info.format, 0, 0);
  if (loaded == SUCCESS) {
    lastPath_ = path;
    isStamp_ = false;
  }
}
