#include "pickers/file_loader.h"

#include <algorithm>

#include "pickers/format_settings.h"
#include "pickers/page_probe.h"
#include "platform/scope_exit.h"
#include "services/zvfile/zvfile.h"

namespace {

constexpr int32_t kThumbnailSide = 150;
constexpr uint32_t kThumbnailMemory = 1;

BITMAPHANDLE EmptyBitmap() {
  BITMAPHANDLE bitmap = {};
  bitmap.uStructSize = sizeof(bitmap);
  return bitmap;
}

bool HoldsImage(const BITMAPHANDLE* bitmap) { return bitmap && (bitmap->flags & BITMAP_FLAG_ALLOCATED); }

LOADFILEOPTION LoadOptionOf(const OPENDLGFILEDATA& entry) {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.flags &= ~(LOADFILE_ROTATED | LOADFILE_DEFERRED);
  if (entry.loadRotated) {
    option.flags |= LOADFILE_ROTATED;
  }
  option.passes = entry.passes;
  option.pageNumber = entry.pageNumber;
  return option;
}

int32_t LoadImageOf(OPENDLGFILEDATA& entry, const LOADFILEOPTION& option, OpenProgress& progress,
                    BITMAPHANDLE& bitmap) {
  if (IsMultiPage(entry.fileName)) {
    entry.fileInfo->flags = FILEINFO_LOAD_SIZE_GIVEN;
  }
  const uint32_t compressed = entry.loadCompressed ? LOADFILE_COMPRESSED : 0;
  const int32_t result = LoadImageFile(entry.fileName, &bitmap, sizeof(bitmap), 0, ORDER_BGR_OR_GRAY,
                                       LOADFILE_ALLOCATE | LOADFILE_STORE | compressed,
                                       progress.HasCallback() ? OpenProgress::OnRows : nullptr,
                                       progress.HasCallback() ? &progress : nullptr, &option, entry.fileInfo);
  progress.ClearRows();
  return result;
}

// Installs the status function of a thumbnail's phase for a scope.
class ThumbnailStatus {
 public:
  ThumbnailStatus(OpenProgress& progress, bool ofBitmap) : installed_(progress.HasCallback()) {
    if (installed_) {
      const STATUSCALLBACK function = ofBitmap ? OpenProgress::OnThumbnailOfBitmap : OpenProgress::OnThumbnailOfFile;
      SetStatusCallback(function, &progress, &formerFunction_, &formerUserData_);
    }
  }
  ThumbnailStatus(const ThumbnailStatus&) = delete;
  ThumbnailStatus& operator=(const ThumbnailStatus&) = delete;
  ~ThumbnailStatus() {
    if (installed_) {
      SetStatusCallback(formerFunction_, formerUserData_, nullptr, nullptr);
    }
  }

 private:
  bool installed_;
  STATUSCALLBACK formerFunction_ = nullptr;
  void* formerUserData_ = nullptr;
};

int32_t MakeThumbnail(const BITMAPHANDLE& source, BITMAPHANDLE& thumbnail, OpenProgress& progress, bool ofBitmap) {
  const ThumbnailSize size = ThumbnailSizeOf(source.width, source.height);
  int32_t result = InitBitmapHandle(&thumbnail, sizeof(thumbnail), size.width, size.height, source.bitsPerPixel);
  if (result == SUCCESS) {
    result = AllocateBitmap(&thumbnail, kThumbnailMemory);
  }
  if (result != SUCCESS) {
    return result;
  }
  CopyBitmapPalette(&thumbnail, &source);
  thumbnail.viewPerspective = source.viewPerspective;
  thumbnail.colorOrder = source.colorOrder;
  thumbnail.carriedValues[0] = source.carriedValues[0];
  thumbnail.carriedValues[1] = source.carriedValues[1];
  const ThumbnailStatus status(progress, ofBitmap);
  return ResizeBitmapInto(&source, &thumbnail, RESIZE_FAVOR_QUALITY);
}

}  // namespace

ThumbnailSize ThumbnailSizeOf(int32_t width, int32_t height) {
  ThumbnailSize size = {::MulDiv(kThumbnailSide, width, height), kThumbnailSide};
  if (size.width > kThumbnailSide) {
    size = {kThumbnailSide, ::MulDiv(kThumbnailSide, height, width)};
  }
  return {std::max(size.width, 1), std::max(size.height, 1)};
}

LoadOutcome LoadOpenedFile(OPENDLGFILEDATA& entry, OpenProgress& progress) {
  const LOADFILEOPTION option = LoadOptionOf(entry);
  const FormatSettings settings(entry, option);
  LoadOutcome outcome = {true, SUCCESS};
  if (entry.bitmap) {
    outcome.result = LoadImageOf(entry, option, progress, *entry.bitmap);
    outcome.loaded = outcome.result == SUCCESS;
  }
  if (!outcome.loaded || !entry.thumbnail) {
    return outcome;
  }
  if (HoldsImage(entry.bitmap)) {
    outcome.result = MakeThumbnail(*entry.bitmap, *entry.thumbnail, progress, true);
    return outcome;
  }
  BITMAPHANDLE image = EmptyBitmap();
  const scope_exit freeImage([&image] { FreeBitmap(&image); });
  outcome.result = LoadImageOf(entry, option, progress, image);
  outcome.loaded = outcome.result == SUCCESS;
  if (outcome.loaded) {
    outcome.result = MakeThumbnail(image, *entry.thumbnail, progress, false);
  }
  return outcome;
}
