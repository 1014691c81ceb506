// The saving entry points: which depth and page operation a save means, and the order of steps that keeps the old file until
// the new one is complete.
#include <algorithm>
#include <cstring>
#include <memory>

#include "services/zvfile/file_info.h"
#include "services/zvfile/operation.h"
#include "services/zvfile/settings.h"
#include "services/zvfile/stamp.h"

namespace zvfile {
namespace {

struct DepthRule {
  uint32_t bit;
  Layout layout;
};

// In the order of what a depth can hold.
constexpr DepthRule kDepths[] = {{kSave1, Layout::kIndex1},      {kSave4, Layout::kIndex4},
                                 {kSave8Index, Layout::kIndex8}, {kSave8Gray, Layout::kGray8},
                                 {kSave16Gray, Layout::kGray16}, {kSave16Color, Layout::kBgr555},
                                 {kSave24, Layout::kBgr24},      {kSave32, Layout::kBgra32},
                                 {kSave48, Layout::kBgr48},      {kSave64, Layout::kBgra64}};

bool Allows(uint32_t depths, uint32_t bit) { return (depths & bit) != 0; }

bool HasClearColors(const BITMAPHANDLE& bitmap) {
  if (!IsIndexed(LayoutOf(bitmap)) || !bitmap.palette) return false;
  return TellsAlpha(Palette(bitmap.palette, bitmap.palette + std::max(bitmap.paletteCount, 0)));
}

// The layout for a depth that was asked for by number; false when the format cannot hold it.
bool LayoutForRequest(uint32_t depths, int32_t bits, const BITMAPHANDLE& bitmap, Layout& layout) {
  const Layout stored = LayoutOf(bitmap);
  const bool gray = IsGray(stored), alpha = HasAlpha(stored) || HasClearColors(bitmap);
  const auto choose = [&](uint32_t bit, Layout chosen) {
    layout = chosen;
    return Allows(depths, bit);
  };
  switch (bits) {
    case 1: return choose(kSave1, Layout::kIndex1);
    case 4: return choose(kSave4, Layout::kIndex4);
    case 8:
      if (gray && choose(kSave8Gray, Layout::kGray8)) return true;
      return choose(kSave8Index, Layout::kIndex8) || choose(kSave8Gray, Layout::kGray8);
    case 16:
      if (gray && choose(kSave16Gray, Layout::kGray16)) return true;
      return choose(kSave16Color, Layout::kBgr555) || choose(kSave16Gray, Layout::kGray16);
    case 24: return choose(kSave24, Layout::kBgr24);
    case 32: return choose(kSave32, LayoutForDepth(32, false, alpha, false));
    case 48: return choose(kSave48, Layout::kBgr48);
    case 64: return choose(kSave64, LayoutForDepth(64, false, alpha, false));
    default: return false;
  }
}

bool ShowsGray(const BITMAPHANDLE& bitmap) {
  const Layout layout = LayoutOf(bitmap);
  if (!IsIndexed(layout)) return IsGray(layout);
  return std::all_of(bitmap.palette, bitmap.palette + (bitmap.palette ? bitmap.paletteCount : 0),
                     [](const ZVPALETTEENTRY& entry) { return entry.red == entry.green && entry.green == entry.blue; });
}

// How many bits of a pixel's colour (or of its grey) a layout holds.
int32_t Capacity(Layout layout, bool gray, bool alpha) {
  const int32_t bits = BitsPerPixel(layout);
  if (gray && !alpha) return IsDeep(layout) ? 16 : std::min(bits, 8);
  if (!alpha && bits == 32) return 24;
  return !alpha && bits == 64 ? 48 : bits;
}

// For a save in the bitmap's own depth: that depth, else the least that loses nothing, else the one that loses least.
bool LayoutForOwnDepth(uint32_t depths, const BITMAPHANDLE& bitmap, Layout& layout) {
  const Layout stored = LayoutOf(bitmap);
  const bool gray = ShowsGray(bitmap), alpha = HasAlpha(stored);
  const auto usable = [&](int32_t bits, Layout& candidate) {
    if (!LayoutForRequest(depths, bits, bitmap, candidate)) return false;
    if (candidate == Layout::kBgr555) return stored == candidate;
    return gray || !IsGray(candidate);
  };
  if (usable(bitmap.bitsPerPixel, layout)) return true;
  const int32_t needed = Capacity(stored, gray, alpha);
  int32_t best = -1;
  for (const DepthRule& rule : kDepths) {
    Layout candidate;
    if (best >= needed || !Allows(depths, rule.bit) || !usable(BitsPerPixel(rule.layout), candidate)) continue;
    if (Capacity(candidate, gray, alpha) <= best) continue;
    best = Capacity(candidate, gray, alpha);
    layout = candidate;
  }
  return best >= 0 || LayoutForRequest(depths, 8, bitmap, layout) || LayoutForRequest(depths, 16, bitmap, layout);
}

// The other pages are kept when a page of an existing file of this codec is meant.
PageOp PageOpOf(const SAVEFILEOPTION& option) {
  if (option.flags & SAVEFILE_REPLACE_PAGE) return PageOp::kReplace;
  if (option.flags & SAVEFILE_INSERT_PAGE) return PageOp::kInsert;
  return option.pageNumber >= 2 ? PageOp::kAppend : PageOp::kOverwrite;
}

int32_t OpenExisting(const ZVCHAR* path, const Codec& codec, SaveRequest& request,
                     std::unique_ptr<FileSource>& existing) {
  request.page = std::max(request.option.pageNumber, 1);
  if (!(codec.flags & kMultiPageSave)) return SUCCESS;
  const PageOp op = PageOpOf(request.option);
  if (op == PageOp::kOverwrite) return SUCCESS;
  const int32_t opened = FileSource::Open(path, existing);
  if (opened == ERROR_FILE_MISSING || opened == ERROR_FILE_EMPTY) {
    existing.reset();
    return op == PageOp::kReplace && request.page > 1 ? ERROR_PAGE_MISSING : SUCCESS;
  }
  if (opened != SUCCESS) return opened;
  if (DetectCodec(*existing, {}) != &codec) return ERROR_FILE_FORMAT;
  existing->Seek(0);
  request.existing = existing.get();
  request.pageOp = op;
  return SUCCESS;
}

int32_t CheckBitmap(const BITMAPHANDLE& bitmap, bool needsPixels) {
  if (bitmap.uStructSize != sizeof bitmap) return ERROR_BAD_RECORD_SIZE;
  if (bitmap.flags & BITMAP_FLAG_COMPRESSED) return ERROR_FEATURE_UNSUPPORTED;
  if (needsPixels && (!(bitmap.flags & BITMAP_FLAG_ALLOCATED) || !bitmap.data)) return ERROR_NO_IMAGE;
  constexpr int32_t kKnown[] = {1, 4, 8, 16, 24, 32, 48, 64};
  const bool knownDepth = std::find(std::begin(kKnown), std::end(kKnown), bitmap.bitsPerPixel) != std::end(kKnown);
  const auto badSide = [](int32_t side) { return side < 1 || side > BITMAP_MAX_SIDE; };
  return !knownDepth || badSide(bitmap.width) || badSide(bitmap.height) ? ERROR_BAD_ARGUMENT : SUCCESS;
}

struct SaveArguments {
  const ZVCHAR* path;
  BITMAPHANDLE* bitmap;
  int32_t format, bitsPerPixel, quality;
  FILESAVECALLBACK callback;
  void* userData;
};

int32_t WriteFile(const SaveArguments& arguments, const Codec& codec, SaveRequest& request, RowSource& rows) {
  std::unique_ptr<FileSource> existing;
  int32_t result = OpenExisting(arguments.path, codec, request, existing);
  if (result != SUCCESS) return result;
  std::unique_ptr<AtomicFile> file;
  result = AtomicFile::Create(arguments.path, file);
  if (result != SUCCESS) return result;
  result = codec.save(*file, request, rows);
  if (file->Failed()) return ERROR_FILE_WRITE;
  if (result != SUCCESS) return result;
  existing.reset();  // it may be the very file that is replaced now
  return file->Commit();
}

int32_t Save(const SaveArguments& arguments, const SAVEFILEOPTION& option) {
  const Codec* codec = CodecForSaving(arguments.format);
  if (!codec) return ERROR_FEATURE_UNSUPPORTED;
  const FormatRow& row = *FindFormatRow(*codec, arguments.format);
  Layout layout;
  const bool possible = arguments.bitsPerPixel == 0
                            ? LayoutForOwnDepth(row.saveDepths, *arguments.bitmap, layout)
                            : LayoutForRequest(row.saveDepths, arguments.bitsPerPixel, *arguments.bitmap, layout);
  if (!possible) return ERROR_BIT_DEPTH;
  SaveRequest request;
  request.format = arguments.format;
  request.quality = arguments.quality;
  request.option = option;
  request.j2k = J2kSetting();
  request.sizeList = SaveSizeListSetting();
  request.metadata = MetadataOf(*arguments.bitmap);
  MakeXmpUpright(request.metadata.xmp);
  request.xResolution = arguments.bitmap->xResolution;
  request.yResolution = arguments.bitmap->yResolution;
  if (arguments.bitmap->viewPerspective >= VIEW_LEFT_TOP) std::swap(request.xResolution, request.yResolution);
  StampBitmap stamp;
  if (option.flags & SAVEFILE_STAMP) request.stamp = stamp.Make(*arguments.bitmap, option);
  RowSource rows(arguments.bitmap, arguments.callback, arguments.userData);
  const int32_t prepared = rows.Prepare(layout, (codec->flags & kPaletteAlpha) != 0);
  return prepared == SUCCESS ? WriteFile(arguments, *codec, request, rows) : prepared;
}

int32_t DeletePage(const ZVCHAR* path, int32_t page) {
  std::unique_ptr<FileSource> existing;
  int32_t result = FileSource::Open(path, existing);
  if (result != SUCCESS) return result;
  const Codec* codec = DetectCodec(*existing, ExtensionOfPath(path));
  if (!codec) return ERROR_FILE_FORMAT;
  if (!codec->deletePage) return ERROR_FEATURE_UNSUPPORTED;
  std::unique_ptr<AtomicFile> file;
  result = AtomicFile::Create(path, file);
  if (result != SUCCESS) return result;
  existing->Seek(0);
  result = codec->deletePage(*existing, page, *file);
  if (file->Failed()) return ERROR_FILE_WRITE;
  if (result != SUCCESS) return result;
  existing.reset();
  return file->Commit();
}

}  // namespace

bool IsValidOption(const SAVEFILEOPTION* option) { return !option || option->uStructSize == sizeof *option; }

}  // namespace zvfile

using zvfile::Barrier;

int32_t SaveFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, int32_t format, int32_t bitsPerPixel, int32_t quality,
                 uint32_t flags, FILESAVECALLBACK callback, void* userData, const SAVEFILEOPTION* option) {
  return Barrier([&]() -> int32_t {
    if (!path || !*path || !bitmap) return ERROR_BAD_ARGUMENT;
    if (!zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    const bool useCallback = callback && (flags & SAVEFILE_ROWS_FROM_CALLBACK);
    const int32_t checked = zvfile::CheckBitmap(*bitmap, !useCallback);
    if (checked != SUCCESS) return checked;
    SAVEFILEOPTION chosen;
    if (option) {
      chosen = *option;
    } else {
      GetDefaultSaveFileOption(&chosen, sizeof chosen);
    }
    return zvfile::Save({path, bitmap, format, bitsPerPixel, quality, useCallback ? callback : nullptr, userData},
                        chosen);
  });
}

int32_t SaveBitmapToFile(const ZVCHAR* path, BITMAPHANDLE* bitmap, int32_t format, int32_t bitsPerPixel,
                         int32_t quality, const SAVEFILEOPTION* option) {
  return SaveFile(path, bitmap, format, bitsPerPixel, quality, 0, nullptr, nullptr, option);
}

int32_t DeleteFilePage(const ZVCHAR* path, int32_t page, uint32_t, const SAVEFILEOPTION* option) {
  return Barrier([&]() -> int32_t {
    if (!path || !*path) return ERROR_BAD_ARGUMENT;
    if (page < 1) return ERROR_PAGE_MISSING;
    if (!zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    return zvfile::DeletePage(path, page);
  });
}
