#include "pickers/file_loader.h"

#include <algorithm>

#include "pickers/format_settings.h"
#include "pickers/page_probe.h"
#include "platform/scope_exit.h"
#include "services/zvfile/zvfile.h"

namespace {

constexpr int32_t kThumbnailSide = 150;
constexpr uint32_t kThumbnailMemory = 1;
// A thumbnail is resampled from a picture at least this many times its size each way, so that it looks as if made from the
// whole image.
constexpr int32_t kReductionMargin = 2;

// An empty bitmap that asks for a picture from which a good thumbnail can be made.
BITMAPHANDLE SufficientForThumbnail(const FILEINFO& info) {
  BITMAPHANDLE bitmap = {};
  bitmap.uStructSize = sizeof(bitmap);
  const ThumbnailSize size = ThumbnailSizeOf(std::max(info.width, 1), std::max(info.height, 1));
  bitmap.width = kReductionMargin * size.width;
  bitmap.height = kReductionMargin * size.height;
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

bool ExchangesSides(const FILEINFO& info) { return info.viewPerspective >= VIEW_LEFT_TOP; }

// What the load says of the file replaces what its header said, but for the number of pages, which a load does not count,
// and for the size of a picture that came in at a smaller scale: the record is about the file.
void TakeOverInfo(const FILEINFO& loaded, FILEINFO& info) {
  const FILEINFO known = info;
  info = loaded;
  info.totalPages = std::max(known.totalPages, loaded.totalPages);
  if (loaded.flags & FILEINFO_REDUCED) {
    const bool turned = ExchangesSides(known) && !ExchangesSides(loaded);
    info.width = turned ? known.height : known.width;
    info.height = turned ? known.width : known.height;
    info.secondSize = known.secondSize;
    info.flags &= ~FILEINFO_REDUCED;
  }
}

int32_t LoadImageOf(OPENDLGFILEDATA& entry, const LOADFILEOPTION& option, uint32_t flags, OpenProgress& progress,
                    BITMAPHANDLE& bitmap) {
  FILEINFO info = *entry.fileInfo;
  if (IsMultiPage(entry.fileName)) {
    info.flags = FILEINFO_LOAD_SIZE_GIVEN;
  }
  const uint32_t compressed = entry.loadCompressed ? LOADFILE_COMPRESSED : 0;
  const int32_t result = LoadImageFile(entry.fileName, &bitmap, sizeof(bitmap), 0, ORDER_BGR_OR_GRAY,
                                       LOADFILE_ALLOCATE | LOADFILE_STORE | compressed | flags,
                                       progress.HasCallback() ? OpenProgress::OnRows : nullptr,
                                       progress.HasCallback() ? &progress : nullptr, &option, &info);
  progress.ClearRows();
  if (result == SUCCESS) {
    TakeOverInfo(info, *entry.fileInfo);
  }
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
    outcome.result = LoadImageOf(entry, option, 0, progress, *entry.bitmap);
    outcome.loaded = outcome.result == SUCCESS;
  }
  if (!outcome.loaded || !entry.thumbnail) {
    return outcome;
  }
  if (HoldsImage(entry.bitmap)) {
    outcome.result = MakeThumbnail(*entry.bitmap, *entry.thumbnail, progress, true);
    return outcome;
  }
  BITMAPHANDLE image = SufficientForThumbnail(*entry.fileInfo);
  const scope_exit freeImage([&image] { FreeBitmap(&image); });
  outcome.result = LoadImageOf(entry, option, LOADFILE_MAY_REDUCE, progress, image);
  outcome.loaded = outcome.result == SUCCESS;
  if (outcome.loaded) {
    outcome.result = MakeThumbnail(image, *entry.thumbnail, progress, false);
  }
  return outcome;
}
