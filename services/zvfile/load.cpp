// The loading entry points.
#include <algorithm>
#include <cstring>
#include <memory>

#include "services/zvfile/file_info.h"
#include "services/zvfile/operation.h"
#include "services/zvfile/settings.h"

namespace zvfile {
namespace {

constexpr int32_t kKnownOrders[] = {ORDER_RGB, ORDER_BGR, ORDER_GRAY, ORDER_BGR_OR_GRAY};
constexpr int32_t kKnownDepths[] = {0, 1, 4, 8, 16, 24, 32, 48, 64};

bool IsKnown(std::span<const int32_t> known, int32_t value) {
  return std::find(known.begin(), known.end(), value) != known.end();
}

// Frees what a failed load has allocated; the caller's own pixels stay.
void DropBitmap(const SinkRequest& target) {
  if (target.flags & LOADFILE_ALLOCATE) FreeBitmap(target.bitmap);
}

int32_t LoadFile(const ZVCHAR* path, SinkRequest& target, const LOADFILEOPTION* option, FILEINFO* info) {
  LoadRequest request = MakeLoadRequest(path, option, info);
  if (target.flags & LOADFILE_MAY_REDUCE) request.sufficientSize = {target.bitmap->width, target.bitmap->height};
  FILEINFO ownInfo;
  target.info = info ? info : &ownInfo;
  target.upright = option && (option->flags & LOADFILE_ROTATED) != 0;
  StartFileInfo(path, 0, *target.info);
  if (target.flags & LOADFILE_ALLOCATE) target.bitmap->flags &= ~BITMAP_FLAG_ALLOCATED;
  std::unique_ptr<FileSource> source;
  const int32_t opened = FileSource::Open(path, source);
  if (opened != SUCCESS) return opened;
  target.info->firstSize = source->Size();
  return LoadFromSource(*source, request, target);
}

int32_t LoadStamp(const ZVCHAR* path, SinkRequest& target, const LOADFILEOPTION* option) {
  LoadRequest request = MakeLoadRequest(path, option, nullptr);
  FILEINFO info;
  target.info = &info;
  target.bitmap->flags &= ~BITMAP_FLAG_ALLOCATED;
  StartFileInfo(path, 0, info);
  std::unique_ptr<FileSource> source;
  const int32_t opened = FileSource::Open(path, source);
  if (opened != SUCCESS) return opened;
  return ForDetectedCodec(*source, request, [&](const Codec& codec) -> int32_t {
    if (!codec.stamp) return ERROR_NO_STAMP;
    RowSink sink(target);
    int32_t result = codec.stamp(*source, request, sink);
    if (result == SUCCESS) result = sink.Finish();
    return result;
  });
}

}  // namespace

bool IsValidOption(const LOADFILEOPTION* option) { return !option || option->uStructSize == sizeof *option; }

LoadRequest MakeLoadRequest(const ZVCHAR* path, const LOADFILEOPTION* option, const FILEINFO* info) {
  LoadRequest request;
  request.extension = ExtensionOfPath(path);
  LoadDpiSetting(request.xDpi, request.yDpi);
  if (option) {
    request.page = std::max(option->pageNumber, 1);
    request.passes = option->passes;
    if (option->flags & LOADFILE_USE_POSITION) request.filePosition = option->filePosition;
    if (option->xResolution >= 1) request.xDpi = option->xResolution;
    if (option->yResolution >= 1) request.yDpi = option->yResolution;
  }
  if (info && (info->flags & FILEINFO_LOAD_SIZE_GIVEN)) request.givenSize = {info->width, info->height};
  return request;
}

int32_t LoadFromSource(ByteSource& source, LoadRequest& request, SinkRequest& target) {
  request.loadSizes = LoadSizeSettings();
  request.fonts = FontSubstitutionSetting();
  return ForDetectedCodec(source, request, [&](const Codec& codec) {
    RowSink sink(target);
    int32_t result = codec.load(source, request, sink);
    if (result == SUCCESS) result = sink.Finish();
    return result;
  });
}

}  // namespace zvfile

using zvfile::Barrier;
using zvfile::SinkRequest;

int32_t LoadImageFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, uint32_t recordSize, int32_t bitsPerPixel,
                      int32_t order, uint32_t flags, FILELOADCALLBACK callback, void* userData,
                      const LOADFILEOPTION* option, FILEINFO* info) {
  SinkRequest target;
  const int32_t result = Barrier([&]() -> int32_t {
    if (!path || !*path || !bitmap) return ERROR_BAD_ARGUMENT;
    if (recordSize != sizeof(BITMAPHANDLE) || !zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    if (!zvfile::IsKnown(zvfile::kKnownDepths, bitsPerPixel) || !zvfile::IsKnown(zvfile::kKnownOrders, order)) {
      return ERROR_BAD_ARGUMENT;
    }
    target = {bitmap, bitsPerPixel, order, flags, false, callback, userData, nullptr, {}};
    return zvfile::LoadFile(path, target, option, info);
  });
  if (result != SUCCESS && target.bitmap) zvfile::DropBitmap(target);
  return result;
}

int32_t LoadBitmapFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, uint32_t recordSize, int32_t bitsPerPixel,
                       int32_t order, const LOADFILEOPTION* option, FILEINFO* info) {
  return LoadImageFile(path, bitmap, recordSize, bitsPerPixel, order, LOADFILE_ALLOCATE | LOADFILE_STORE, nullptr,
                       nullptr, option, info);
}

int32_t ReadFileStamp(const ZVCHAR* path, BITMAPHANDLE* bitmap, uint32_t recordSize, const LOADFILEOPTION* option) {
  SinkRequest target;
  const int32_t result = Barrier([&]() -> int32_t {
    if (!path || !*path || !bitmap) return ERROR_BAD_ARGUMENT;
    if (recordSize != sizeof(BITMAPHANDLE) || !zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    target.bitmap = bitmap;
    return zvfile::LoadStamp(path, target, option);
  });
  if (result != SUCCESS && target.bitmap) zvfile::DropBitmap(target);
  return result;
}
